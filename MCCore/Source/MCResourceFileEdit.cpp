// Changes of a resource file.
#include <filesystem>
#include <limits>

#include "MCBigEndian.h"
#include "MCBinaryFileIO.h"
#include "MCFilePath.h"
#include "MCMemory.h"
#include "MCResourceFile.h"
#include "MCResourceMap.h"

namespace qlx {

namespace {

constexpr uint32 kLargestOffset = kResNoData - 1;
constexpr uint32 kLargestFile = std::numeric_limits<int32>::max();

bool WriteAt(TMCFileStream& ioFile, uint32 inPosition, const void* inBytes, uint32 inCount) {
  ioFile.clear();
  return !ioFile.Seek(static_cast<int32>(inPosition), kFromStart).Write(inBytes, static_cast<int32>(inCount)).fail();
}

bool WriteHeader(TMCFileStream& ioFile, const SResHeader& inHeader) {
  uint8 bytes[16];
  PutBig32(bytes, inHeader.rDataOffset);
  PutBig32(bytes + 4, inHeader.rMapOffset);
  PutBig32(bytes + 8, inHeader.rDataLength);
  PutBig32(bytes + 12, inHeader.rMapLength);
  return WriteAt(ioFile, 0, bytes, sizeof bytes);
}

// A block that ends with its owner; empty for no data.
class DataBlock {
 public:
  DataBlock() noexcept = default;
  ~DataBlock() { MCfree(fData); }
  DataBlock(const DataBlock&) = delete;
  DataBlock& operator=(const DataBlock&) = delete;

  bool Copy(const void* inData, uint32 inSize) noexcept {
    fData = inSize > 0 ? static_cast<uint8*>(MCmalloc(inSize)) : nullptr;
    if (fData) {
      MCMemoryCopy(fData, inData, inSize);
    }
    return fData || inSize == 0;
  }
  uint8* Detach() noexcept { return std::exchange(fData, nullptr); }

  uint8* fData = nullptr;
};

}  // namespace

MCResult MCResourceFile::FindToEdit(MCID inType, int16 inID, MCResourceEntry*& outEntry) const noexcept {
  const MCResult result = Find(inType, inID, outEntry);
  if (fMap && !fIsWritable) {
    return Fail(MC_E_NOTVALID, "the file is open for reading alone");
  }
  return result;
}

// ---- data ----

// The data has a sound place, long enough, that no other resource begins in.
bool MCResourceFile::CanStayInPlace(const MCResourceEntry& inEntry, uint32 inSize) const noexcept {
  uint32 position = 0;
  uint32 stored = 0;
  if (inEntry.Offset() == kResNoData || FindData(inEntry, position, stored) != MC_S_OK || stored < inSize) {
    return false;
  }
  const uint32 end = inEntry.Offset() + kResLengthBytes + inSize;
  for (const MCResourceMap::Type& type : fMap->Types()) {
    for (const MCResourceEntry* entry : type.fEntries) {
      if (entry != &inEntry && entry->Offset() >= inEntry.Offset() && entry->Offset() < end) {
        return false;
      }
    }
  }
  return true;
}

// Writes length and data, at the resource's place or at the end of the file, and changes the entry last.
MCResult MCResourceFile::StoreData(MCResourceEntry& ioEntry, const void* inData, uint32 inSize) noexcept {
  const MCResourceTypeText type(ioEntry.fType);
  const SResHeader& header = fMap->fHeader.rHeader;
  const auto length = static_cast<uint32>(fFile->GetLength());
  const bool stays = CanStayInPlace(ioEntry, inSize);
  const uint32 offset = stays ? ioEntry.Offset() : length - header.rDataOffset;
  if (offset > kLargestOffset) {
    return Fail(MC_E_RESTOOLARGE, "the offset of the data of resource %s %d: %u is above the limit of %u", type.fText,
                ioEntry.fID, offset, kLargestOffset);
  }
  if (!stays && (length > kLargestFile - kResLengthBytes || inSize > kLargestFile - kResLengthBytes - length)) {
    return Fail(MC_E_RESTOOLARGE, "the data of resource %s %d: a file of %u bytes has no room for %u more", type.fText,
                ioEntry.fID, length, inSize);
  }
  const uint32 position = header.rDataOffset + offset;
  uint8 bytes[kResLengthBytes];
  PutBig32(bytes, inSize);
  if (!WriteAt(*fFile, position, bytes, sizeof bytes) || !WriteAt(*fFile, position + kResLengthBytes, inData, inSize)) {
    return Fail(MC_E_RESWRITE, "the data of resource %s %d cannot be written", type.fText, ioEntry.fID);
  }
  if (!stays) {
    ioEntry.SetOffset(offset);
    fIsChanged = true;
  }
  return MC_S_OK;
}

MCResult MCResourceFile::ReplaceData(MCID inType, int16 inID, const void* inData, uint32 inSize) noexcept {
  const Guard guard(fLock);
  MCResourceEntry* entry = nullptr;
  MCResult result = FindToEdit(inType, inID, entry);
  if (result != MC_S_OK) {
    return result;
  }
  if (!entry->Has(kResReplaceable) || entry->Has(kResProtected)) {
    return Fail(MC_E_RESPROTECTED, "the attributes of resource %s %d do not allow other data",
                MCResourceTypeText(inType).fText, inID);
  }
  if (!inData && inSize > 0) {
    return Fail(MC_E_INVALIDARG, "no data was given");
  }
  DataBlock copy;  // of a loaded resource; before the file changes, so that both change or none
  if (entry->fResource && !copy.Copy(inData, inSize)) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for resource %s %d", MCResourceTypeText(inType).fText, inID);
  }
  result = StoreData(*entry, inData, inSize);
  if (result == MC_S_OK && entry->fResource) {
    entry->fResource->ReplaceData(copy.Detach(), inSize);
  }
  return result;
}

// ---- entries ----

MCResult MCResourceFile::AddResource(MCID inType, int16 inID, const TMCString& inName, uint32 inAttributes,
                                     const void* inData, uint32 inSize) noexcept {
  const Guard guard(fLock);
  MCResourceEntry* there = nullptr;
  const MCResult found = FindToEdit(inType, inID, there);
  const MCResourceTypeText type(inType);
  if (found == MC_S_OK) {
    return Fail(MC_E_RESEXISTS, "there is a resource %s %d already", type.fText, inID);
  }
  if (found != MC_E_RESNOTFOUND) {
    return found;
  }
  if (inName.ByteLength() > 255) {
    return Fail(MC_E_RESTOOLARGE, "the name of resource %s %d: %u bytes are above the limit of 255", type.fText, inID,
                inName.ByteLength());
  }
  TMCSmartPtr<MCResourceEntry> entry(new MCResourceEntry);
  if (entry) {
    entry->fType = inType;
    entry->fID = inID;
    entry->fWord = (inAttributes & kResAttributesMask) | kResNoData;
    entry->fName = inName;
  }
  if (!entry || entry->fName.ByteLength() != inName.ByteLength()) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for resource %s %d", type.fText, inID);
  }
  const MCResult result = inData ? StoreData(*entry, inData, inSize) : MC_S_OK;
  if (result != MC_S_OK) {
    return result;
  }
  fIsChanged = true;
  if (!fMap->Add(entry.Get())) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for resource %s %d", type.fText, inID);
  }
  (void)entry.Detach();
  return MC_S_OK;
}

MCResult MCResourceFile::RemoveResource(MCID inType, int16 inID) noexcept {
  const Guard guard(fLock);
  MCResourceEntry* entry = nullptr;
  const MCResult result = FindToEdit(inType, inID, entry);
  if (result != MC_S_OK) {
    return result;
  }
  if (entry->Has(kResProtected)) {
    return Fail(MC_E_RESPROTECTED, "the attributes of resource %s %d do not allow to remove it",
                MCResourceTypeText(inType).fText, inID);
  }
  MCResource* const resource = entry->fResource;
  if (resource && resource->GetUseCount() > 0) {
    return Fail(MC_E_RESINUSE, "resource %s %d is still used", MCResourceTypeText(inType).fText, inID);
  }
  if (resource) {
    Forget(resource);
    resource->fIsClosed = true;
    delete resource;
  }
  fMap->Remove(entry);
  fIsChanged = true;
  return MC_S_OK;
}

MCResult MCResourceFile::RenameResource(MCID inType, int16 inID, const TMCString& inName) noexcept {
  const Guard guard(fLock);
  MCResourceEntry* entry = nullptr;
  const MCResult result = FindToEdit(inType, inID, entry);
  if (result != MC_S_OK) {
    return result;
  }
  if (inName.ByteLength() > 255) {
    return Fail(MC_E_RESTOOLARGE, "the name of resource %s %d: %u bytes are above the limit of 255",
                MCResourceTypeText(inType).fText, inID, inName.ByteLength());
  }
  TMCDynamicString name(inName);
  if (name.ByteLength() != inName.ByteLength()) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for the name of resource %s %d", MCResourceTypeText(inType).fText, inID);
  }
  entry->fName = name;
  if (entry->fResource) {
    entry->fResource->fName = name;
  }
  fIsChanged = true;
  return MC_S_OK;
}

MCResult MCResourceFile::SetAttributes(MCID inType, int16 inID, uint32 inAttributes) noexcept {
  const Guard guard(fLock);
  MCResourceEntry* entry = nullptr;
  const MCResult result = FindToEdit(inType, inID, entry);
  if (result == MC_S_OK) {
    entry->fWord = (inAttributes & kResAttributesMask) | entry->Offset();
    fIsChanged = true;
  }
  return result;
}

// ---- saving ----

// Behind all that the file has; the header follows, and only then the new map is in force.
MCResult MCResourceFile::WriteMap(TMCFileStream& ioFile, SResHeader& ioHeader,
                                  const TMCArray<uint32>* inWords) noexcept {
  MCByteArray bytes;
  ioHeader.rMapOffset = static_cast<uint32>(ioFile.GetLength());
  ioHeader.rDataLength = ioHeader.rMapOffset - ioHeader.rDataOffset;
  const MCResult result = fMap->Write(bytes, ioHeader, inWords, fProblem);
  if (result == MC_E_OUTOFMEMORY) {
    return Fail(result, "no memory for the map");
  }
  if (result != MC_S_OK) {
    return result;
  }
  if (bytes.GetElemCount() > kLargestFile - ioHeader.rMapOffset) {
    return Fail(MC_E_RESTOOLARGE, "the map: a file of %u bytes has no room for %u more", ioHeader.rMapOffset,
                bytes.GetElemCount());
  }
  if (!WriteAt(ioFile, ioHeader.rMapOffset, bytes.BaseAddress(), bytes.GetElemCount()) ||
      !WriteHeader(ioFile, ioHeader)) {
    return Fail(MC_E_RESWRITE, "the map cannot be written");
  }
  return MC_S_OK;
}

MCResult MCResourceFile::Save() noexcept {
  const Guard guard(fLock);
  if (!fMap || !fIsWritable) {
    return Fail(MC_E_NOTVALID, fMap ? "the file is open for reading alone" : "the file is not open");
  }
  if (!fIsChanged) {
    return MC_S_OK;
  }
  SResHeader header = fMap->fHeader.rHeader;
  const MCResult result = WriteMap(*fFile, header, nullptr);
  if (result == MC_S_OK) {
    fMap->fHeader.rHeader = header;
    fIsChanged = false;
  }
  return result;
}

MCResult MCResourceFile::WriteCopy(TMCFileStream& ioFile) noexcept {
  const uint8 zeros[kResHeaderBytes] = {};
  TMCArray<uint32> words;
  if (!words.SetElemSpace(fMap->EntryCount())) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for the map");
  }
  bool isWritten = WriteAt(ioFile, 0, zeros, sizeof zeros);
  for (const MCResourceMap::Type& type : fMap->Types()) {
    for (const MCResourceEntry* entry : type.fEntries) {
      const auto end = static_cast<uint32>(ioFile.GetLength());
      words.AddElem(entry->fWord);
      if (entry->Offset() == kResNoData) {
        continue;
      }
      DataBlock data;
      uint32 size = 0;
      const MCResult result = ReadData(*entry, data.fData, size);
      if (result != MC_S_OK) {
        return result;
      }
      if (end - kResHeaderBytes > kLargestOffset || size > kLargestFile - kResLengthBytes - end) {
        return Fail(MC_E_RESTOOLARGE, "the data of resource %s %d: an offset of %u, or the file, is above its limit",
                    MCResourceTypeText(entry->fType).fText, entry->fID, end - kResHeaderBytes);
      }
      uint8 bytes[kResLengthBytes];
      PutBig32(bytes, size);
      isWritten = isWritten && WriteAt(ioFile, end, bytes, sizeof bytes) &&
                  WriteAt(ioFile, end + kResLengthBytes, data.fData, size);
      if (!isWritten) {
        break;
      }
      words[words.GetElemCount() - 1] = (entry->fWord & kResAttributesMask) | (end - kResHeaderBytes);
    }
  }
  SResHeader header{kResHeaderBytes, 0, 0, 0};
  return isWritten ? WriteMap(ioFile, header, &words) : Fail(MC_E_RESWRITE, "the copy cannot be written");
}

MCResult MCResourceFile::SaveCopy(const TMCString& inPath) noexcept {
  const Guard guard(fLock);
  if (!fMap) {
    return Fail(MC_E_NOTVALID, "the file is not open");
  }
  TMCDynamicString part(inPath);
  part += ".part";
  if (part.ByteLength() <= inPath.ByteLength()) {
    return Fail(MC_E_OUTOFMEMORY, "no memory for the path");
  }
  MCBinaryFileIO file;
  MCResult result = file.Open(part, kStreamWritable, 0, nullptr);
  if (result != MC_S_OK) {
    return Fail(result, "the copy cannot be opened for writing");
  }
  result = WriteCopy(file);
  file.Close();
  try {
    std::error_code problem;
    const std::filesystem::path from = PathOfText({part.CStr(), part.ByteLength()});
    if (result == MC_S_OK) {
      std::filesystem::rename(from, PathOfText({inPath.CStr(), inPath.ByteLength()}), problem);
      result = problem ? Fail(MC_E_RESWRITE, "the copy cannot take the place of what is there") : MC_S_OK;
    }
    if (result != MC_S_OK) {
      std::filesystem::remove(from, problem);
    }
  } catch (const std::exception&) {
    result = Fail(MC_E_OUTOFMEMORY, "no memory for the path");
  }
  return result;
}

}  // namespace qlx
