// The chain of open files, and their numbered list.
#include <algorithm>

#include "MCResourceFile.h"

namespace qlx {

TMCPtrArray<MCResourceFile> MCResourceFile::sOpenedFiles;
MCResourceFile* MCResourceFile::sFirstFile = nullptr;
std::recursive_mutex MCResourceFile::sLock;

MCResult MCResourceFile::JoinFiles() noexcept {
  const Guard guard(sLock);
  uint32 place = sOpenedFiles.FindElem(nullptr);
  if (place == kUnusedIndex) {
    place = sOpenedFiles.GetElemCount();
    if (!sOpenedFiles.AddElem(nullptr)) {
      return MC_E_OUTOFMEMORY;
    }
  }
  sOpenedFiles[place] = this;
  fResFileRef = static_cast<int32>(place);
  fNextFile = std::exchange(sFirstFile, this);
  return MC_S_OK;
}

void MCResourceFile::LeaveChain() noexcept {
  const Guard guard(sLock);
  MCResourceFile* const next = std::exchange(fNextFile, nullptr);
  bool isInside = false;
  for (MCResourceFile* file : sOpenedFiles) {
    if (file && file->fNextFile == this) {
      file->fNextFile = next;
      isInside = true;
    }
  }
  if (sFirstFile == this) {
    sFirstFile = next;
  } else if (isInside) {
    // Files are closed in the opposite order of their opening. One in the middle is taken out all the same.
    MCAssert(__FILE_NAME__, __LINE__, "You are breaking the resource chain silly!!!");
  }
}

void MCResourceFile::LeaveOpenedFiles() noexcept {
  const Guard guard(sLock);
  const int32 reference = std::exchange(fResFileRef, -1);
  if (reference == -1) {
    return;
  }
  const auto place = static_cast<uint32>(reference);
  if (MC_ASSERT_TEXT(place < sOpenedFiles.GetElemCount(), "fResFileRef < sOpenedFiles.GetElemCount()")) {
    sOpenedFiles[place] = nullptr;  // the numbers of other files stay
  }
  if (std::all_of(sOpenedFiles.begin(), sOpenedFiles.end(), [](const MCResourceFile* file) { return !file; })) {
    sOpenedFiles.SetElemSpace(0);
  }
}

MCResourceFile* MCResourceFile::GetFirstFile() noexcept {
  const Guard guard(sLock);
  return sFirstFile;
}

MCResourceFile* MCResourceFile::GetNextFile() const noexcept {
  const Guard guard(sLock);
  return fNextFile;
}

MCResult MCResourceFile::SetNextFile(MCResourceFile* inNext) noexcept {
  const Guard guard(sLock);
  if (!fIsOpen || (inNext && !inNext->fIsOpen)) {
    return MC_E_NOTVALID;
  }
  for (const MCResourceFile* file = inNext; file; file = file->fNextFile) {
    if (file == this) {
      return MC_E_INVALIDARG;
    }
  }
  fNextFile = inNext;
  return MC_S_OK;
}

MCResourceFile* MCResourceFile::GetOpenedFile(int32 inResFileRef) noexcept {
  const Guard guard(sLock);
  const bool isThere = static_cast<uint32>(inResFileRef) < sOpenedFiles.GetElemCount();
  MC_ASSERT_TEXT(isThere, "inResFileRef < sOpenedFiles.GetElemCount()");
  return isThere ? sOpenedFiles[static_cast<uint32>(inResFileRef)] : nullptr;
}

MCResult MCResourceFile::GetChainResource(MCID inType, int16 inID, MCResource** outResource) noexcept {
  const Guard guard(sLock);  // before any file's own, here and wherever both are held
  MCResult result = MC_E_RESNOTFOUND;
  for (MCResourceFile* file = this; file && result == MC_E_RESNOTFOUND; file = file->fNextFile) {
    result = file->GetResource(inType, inID, outResource);
  }
  return result;
}

}  // namespace qlx
