#include "MCResourceFile.h"

#include <cstdarg>
#include <cstdio>

#include "MCBigEndian.h"
#include "MCBinaryFileIO.h"
#include "MCMemory.h"
#include "MCResourceMap.h"

namespace qlx {

MCResourceFile::~MCResourceFile() {
  Close();
}

MCResult MCResourceFile::Fail(MCResult inResult, const char* inFormat, ...) const noexcept {
  char text[256];
  va_list values;
  va_start(values, inFormat);
  std::vsnprintf(text, sizeof text, inFormat, values);
  va_end(values);
  fProblem = text;
  return inResult;
}

TMCString255 MCResourceFile::GetProblem() const noexcept {
  const Guard guard(fLock);
  return fProblem;
}

MCResult MCResourceFile::CreateEmpty(const TMCString& inPath) noexcept {
  constexpr uint32 kTypeList = sizeof(SResMap);
  constexpr uint32 kNameList = kTypeList + 2;
  // Four bytes end the file where the count of types needs two: the length of the map does not count the other two.
  uint8 bytes[kResHeaderBytes + kTypeList + 4] = {};
  for (uint8* values : {bytes, bytes + kResHeaderBytes}) {
    PutBig32(values, kResHeaderBytes);
    PutBig32(values + 4, kResHeaderBytes);
    PutBig32(values + 8, 0);
    PutBig32(values + 12, kNameList);
  }
  uint8* const map = bytes + kResHeaderBytes;
  PutBig16(map + 24, kTypeList);
  PutBig16(map + 26, kNameList);
  PutBig16(map + kTypeList, 0xFFFF);
  MCBinaryFileIO file;
  const MCResult result = file.Open(inPath, kStreamWritable, 0, nullptr);
  if (result != MC_S_OK) {
    return result;
  }
  return file.Write(bytes, sizeof bytes).fail() ? MC_E_RESWRITE : MC_S_OK;
}

// ---- opening and closing ----

MCResult MCResourceFile::Open(const TMCString& inPath, bool inWritable, bool inLoadMarked) noexcept {
  {
    const Guard guard(fLock);
    if (!MC_ASSERT_TEXT(!fFile, "fFile == NULL")) {
      return Fail(MC_E_NOTVALID, "the file is open already");
    }
    fProblem = "";
    MCResult result = OpenFile(inPath, inWritable);
    if (result == MC_S_OK) {
      result = LoadMap();
    }
    if (result != MC_S_OK) {
      DropFile();
      return result;
    }
    fLoadMarked = inLoadMarked;
    fIsOpen = true;
    if (fLoadMarked) {
      LoadMarked();
    }
  }
  const MCResult result = JoinFiles();
  if (result != MC_S_OK) {
    Close();
  }
  return result;
}

MCResult MCResourceFile::OpenFile(const TMCString& inPath, bool inWritable) noexcept {
  fFile = new MCBinaryFileIO;
  if (!fFile) {
    return Fail(MC_E_OUTOFMEMORY, "no memory");
  }
  const uint32 mode = kStreamReadable | kStreamMustExist | (inWritable ? kStreamWritable : 0U);
  const MCResult result = fFile->Open(inPath, mode, 0, nullptr);
  if (result == MC_E_FILENOTFOUND) {
    return Fail(result, "there is no such file");
  }
  if (result != MC_S_OK) {
    return Fail(result, "the file cannot be opened%s", inWritable ? " for writing" : "");
  }
  fIsWritable = inWritable;
  return MC_S_OK;
}

MCResult MCResourceFile::ReadHeader(SResHeader& outHeader) noexcept {
  uint8 bytes[kResHeaderBytes];
  const MCResult result = ReadBytes(0, bytes, sizeof bytes);
  if (result != MC_S_OK) {
    return Fail(result, "%d bytes are too few for the header of %u", static_cast<int>(fFile->GetLength()),
                kResHeaderBytes);
  }
  outHeader = {ReadBig32(bytes), ReadBig32(bytes + 4), ReadBig32(bytes + 8), ReadBig32(bytes + 12)};
  const SResHeader& header = outHeader;
  if (!MC_ASSERT(header.rMapLength >= sizeof(SResMap))) {
    return Fail(MC_E_BADTOKEN, "a map of %u bytes is shorter than the start of a map", header.rMapLength);
  }
  const auto length = static_cast<uint32>(fFile->GetLength());
  if (header.rDataOffset < kResHeaderBytes || header.rDataOffset > length) {
    return Fail(MC_E_BADTOKEN, "the data area at %u does not lie between the header and the end at %u",
                header.rDataOffset, length);
  }
  if (header.rMapOffset < kResHeaderBytes || header.rMapOffset > length ||
      header.rMapLength > length - header.rMapOffset) {
    return Fail(MC_E_BADTOKEN, "the map of %u bytes at %u does not lie between the header and the end at %u",
                header.rMapLength, header.rMapOffset, length);
  }
  return MC_S_OK;
}

MCResult MCResourceFile::LoadMap() noexcept {
  SResHeader header{};
  MCResult result = ReadHeader(header);
  if (result != MC_S_OK) {
    return result;
  }
  auto* const bytes = static_cast<uint8*>(MCmalloc(header.rMapLength));
  fMap = bytes ? new MCResourceMap : nullptr;
  if (fMap) {
    result = ReadBytes(header.rMapOffset, bytes, header.rMapLength);
    if (result == MC_S_OK) {
      result = fMap->Read(bytes, header.rMapLength, fProblem);
      fMap->fHeader.rHeader = header;
    }
  }
  MCfree(bytes);
  return fMap && result != MC_E_OUTOFMEMORY ? result : Fail(MC_E_OUTOFMEMORY, "no memory for the map");
}

// Marked resources take no more memory together than the file is long: entries may claim the same bytes.
void MCResourceFile::LoadMarked() noexcept {
  auto left = static_cast<uint32>(fFile->GetLength());
  for (const MCResourceMap::Type& type : fMap->Types()) {
    for (MCResourceEntry* entry : type.fEntries) {
      if (!entry->Has(kResPreload)) {
        continue;
      }
      uint32 position = 0;
      uint32 size = 0;
      if (FindData(*entry, position, size) != MC_S_OK || size > left || Load(*entry) != MC_S_OK) {
        break;
      }
      left -= size;
    }
  }
}

void MCResourceFile::Close() noexcept {
  if (fIsOpen) {
    LeaveChain();
    LeaveOpenedFiles();
  }
  const Guard guard(fLock);
  if (fIsOpen) {
    CloseResources();
  }
  DropFile();
}

void MCResourceFile::CloseResources() noexcept {
  for (const MCResourceMap::Type& type : fMap->Types()) {
    for (MCResourceEntry* entry : type.fEntries) {
      MCResource* const resource = std::exchange(entry->fResource, nullptr);
      if (!resource) {
        continue;
      }
      if (resource->GetUseCount() > 0) {
        TMCString31 typeText;
        typeText.FromID(resource->GetType(), true);
        char report[160];
        std::snprintf(report, sizeof report, "Closing file with resource still referenced!\rRes type: %s\rRes ID: %d",
                      typeText.CStr(), static_cast<int>(resource->GetID()));
        MCAssert(__FILE_NAME__, __LINE__, report);
      }
      resource->fIsClosed = true;
      delete resource;
    }
  }
}

void MCResourceFile::DropFile() noexcept {
  delete std::exchange(fMap, nullptr);
  delete std::exchange(fFile, nullptr);
  fLoaded.SetElemSpace(0);
  fIsOpen = fIsWritable = fIsChanged = fLoadMarked = false;
}

void MCResourceFile::Forget(const MCResource* inResource) noexcept {
  const Guard guard(fLock);
  const uint32 place = fLoaded.FindElem(const_cast<MCResource*>(inResource));
  if (!fMap || place == kUnusedIndex) {
    return;
  }
  fLoaded.RemoveElem(place);
  for (const MCResourceMap::Type& type : fMap->Types()) {
    for (MCResourceEntry* entry : type.fEntries) {
      if (entry->fResource == inResource) {
        entry->fResource = nullptr;
        return;
      }
    }
  }
}

// ---- looking up ----

MCResult MCResourceFile::Find(MCID inType, int16 inID, MCResourceEntry*& outEntry) const noexcept {
  outEntry = fMap ? fMap->Find(inType, inID) : nullptr;
  if (outEntry) {
    return MC_S_OK;
  }
  return fMap ? Fail(MC_E_RESNOTFOUND, "there is no resource %s %d", MCResourceTypeText(inType).fText, inID)
              : Fail(MC_E_NOTVALID, "the file is not open");
}

MCResult MCResourceFile::ReadBytes(uint32 inPosition, void* outBytes, uint32 inCount) const noexcept {
  const auto length = static_cast<uint32>(fFile->GetLength());
  if (inPosition > length || inCount > length - inPosition) {
    return MC_E_EOF;
  }
  const auto count = static_cast<int32>(inCount);
  fFile->Seek(static_cast<int32>(inPosition), kFromStart).Read(outBytes, count);
  return fFile->gcount() == count ? MC_S_OK : MC_E_EOF;  // a file may have become shorter since it was opened
}

MCResult MCResourceFile::FindData(const MCResourceEntry& inEntry, uint32& outPosition, uint32& outSize) const noexcept {
  const MCResourceTypeText type(inEntry.fType);
  const SResHeader& header = fMap->fHeader.rHeader;
  outPosition = header.rDataOffset + inEntry.Offset();
  outSize = 0;
  if (inEntry.Offset() == kResNoData) {
    return MC_S_OK;
  }
  uint8 bytes[kResLengthBytes];
  if (ReadBytes(outPosition, bytes, sizeof bytes) != MC_S_OK) {
    return Fail(MC_E_EOF, "the data of resource %s %d at %u begins past the end at %d", type.fText, inEntry.fID,
                outPosition, static_cast<int>(fFile->GetLength()));
  }
  const uint32 size = ReadBig32(bytes);
  const uint32 room = static_cast<uint32>(fFile->GetLength()) - outPosition - kResLengthBytes;
  if (size > room) {
    return Fail(MC_E_EOF, "the data of resource %s %d at %u has a length of %u where %u bytes are left", type.fText,
                inEntry.fID, outPosition, size, room);
  }
  if (outPosition < header.rMapOffset + header.rMapLength && header.rMapOffset < outPosition + kResLengthBytes + size) {
    return Fail(MC_E_BADTOKEN, "the data of resource %s %d at %u overlaps the map at %u", type.fText, inEntry.fID,
                outPosition, header.rMapOffset);
  }
  outSize = size;
  return MC_S_OK;
}

MCResult MCResourceFile::ReadData(const MCResourceEntry& inEntry, uint8*& outData, uint32& outSize) const noexcept {
  uint32 position = 0;
  outData = nullptr;
  MCResult result = FindData(inEntry, position, outSize);
  if (result != MC_S_OK || outSize == 0) {
    return result;
  }
  outData = static_cast<uint8*>(MCmalloc(outSize));
  if (!outData) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for resource %s %d", MCResourceTypeText(inEntry.fType).fText, inEntry.fID);
  }
  result = ReadBytes(position + kResLengthBytes, outData, outSize);
  if (result != MC_S_OK) {
    MCfree(std::exchange(outData, nullptr));
    return Fail(result, "the file ended within the data of resource %s %d", MCResourceTypeText(inEntry.fType).fText,
                inEntry.fID);
  }
  return MC_S_OK;
}

MCResult MCResourceFile::Load(MCResourceEntry& ioEntry) noexcept {
  if (ioEntry.fResource) {
    return MC_S_OK;
  }
  uint8* data = nullptr;
  uint32 size = 0;
  const MCResult result = ReadData(ioEntry, data, size);
  if (result != MC_S_OK) {
    return result;
  }
  auto* const resource = new MCResource(this, ioEntry.fType, ioEntry.fID, ioEntry.fName, size, data);
  if (resource && fLoaded.AddElem(resource)) {
    ioEntry.fResource = resource;
    return MC_S_OK;
  }
  if (resource) {
    resource->fIsClosed = true;
    delete resource;
  } else {
    MCfree(data);
  }
  return Fail(MC_E_OUTOFMEMORY, "no memory for resource %s %d", MCResourceTypeText(ioEntry.fType).fText, ioEntry.fID);
}

MCResult MCResourceFile::GetResource(MCID inType, int16 inID, MCResource** outResource) noexcept {
  if (!outResource) {
    return MC_E_INVALIDARG;
  }
  const Guard guard(fLock);
  *outResource = nullptr;
  MCResourceEntry* entry = nullptr;
  MCResult result = Find(inType, inID, entry);
  if (result == MC_S_OK) {
    result = Load(*entry);
  }
  if (result == MC_S_OK) {
    entry->fResource->AddUse();
    *outResource = entry->fResource;
  }
  return result;
}

MCResult MCResourceFile::GetStoredSize(MCID inType, int16 inID, uint32& outSize) noexcept {
  const Guard guard(fLock);
  outSize = 0;
  MCResourceEntry* entry = nullptr;
  const MCResult result = Find(inType, inID, entry);
  if (result != MC_S_OK) {
    return result;
  }
  const uint32 dataBytes = entry->Offset();
  if (!MC_ASSERT(dataBytes != 0x00FFFFFF)) {
    return Fail(MC_E_NOTVALID, "resource %s %d has no data in the file", MCResourceTypeText(inType).fText, inID);
  }
  uint32 position = 0;
  return FindData(*entry, position, outSize);
}

void MCResourceFile::UnloadUnused() noexcept {
  const Guard guard(fLock);
  for (uint32 i = fLoaded.GetElemCount(); i > 0; --i) {
    MCResource* const resource = fLoaded[i - 1];
    if (resource->GetUseCount() == 0) {
      Forget(resource);
      resource->fIsClosed = true;
      delete resource;
    }
  }
}

// ---- what the map says ----

SResHeader MCResourceFile::GetHeader() const noexcept {
  const Guard guard(fLock);
  return fMap ? fMap->fHeader.rHeader : SResHeader{};
}

int32 MCResourceFile::GetFileLength() const noexcept {
  const Guard guard(fLock);
  return fFile ? fFile->GetLength() : 0;
}

int32 MCResourceFile::GetTypeCount() const noexcept {
  const Guard guard(fLock);
  return fMap ? static_cast<int32>(fMap->Types().GetElemCount()) : 0;
}

MCID MCResourceFile::GetType(int32 inIndex) const noexcept {
  const Guard guard(fLock);
  return inIndex >= 0 && inIndex < GetTypeCount() ? fMap->Types()[static_cast<uint32>(inIndex)].fType : 0;
}

int32 MCResourceFile::GetResourceCount(MCID inType) const noexcept {
  const Guard guard(fLock);
  const MCResourceMap::Type* const type = fMap ? fMap->FindType(inType) : nullptr;
  return type ? static_cast<int32>(type->fEntries.GetElemCount()) : 0;
}

void MCResourceFile::DescribeEntry(const MCResourceEntry& inEntry, MCResourceInfo& outInfo) const noexcept {
  outInfo.fType = inEntry.fType;
  outInfo.fID = inEntry.fID;
  outInfo.fAttributes = inEntry.fWord & kResAttributesMask;
  outInfo.fOffset = inEntry.Offset();
  outInfo.fHasData = inEntry.Offset() != kResNoData;
  outInfo.fName = inEntry.fName;
}

MCResult MCResourceFile::GetResourceAt(MCID inType, int32 n, MCResourceInfo& outInfo) const noexcept {
  const Guard guard(fLock);
  const MCResourceMap::Type* const type = fMap ? fMap->FindType(inType) : nullptr;
  if (!type) {
    return Fail(MC_E_RESNOTFOUND, "there are no resources of type %s", MCResourceTypeText(inType).fText);
  }
  const int32 last = static_cast<int32>(type->fEntries.GetElemCount()) - 1;  // the type's `rTotal` in the file
  if (!MC_ASSERT_TEXT(n >= 0 && n <= last, "n >= 0 && n <= thisType->rTotal")) {
    return Fail(MC_E_INVALIDARG, "there is no resource %d among %d of type %s", static_cast<int>(n),
                static_cast<int>(last) + 1, MCResourceTypeText(inType).fText);
  }
  DescribeEntry(*type->fEntries[static_cast<uint32>(n)], outInfo);
  return MC_S_OK;
}

MCResult MCResourceFile::GetInfo(MCID inType, int16 inID, MCResourceInfo& outInfo) const noexcept {
  const Guard guard(fLock);
  MCResourceEntry* entry = nullptr;
  const MCResult result = Find(inType, inID, entry);
  if (result == MC_S_OK) {
    DescribeEntry(*entry, outInfo);
  }
  return result;
}

}  // namespace qlx
