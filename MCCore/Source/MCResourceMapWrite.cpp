#include <cstdio>
#include <limits>

#include "MCBigEndian.h"
#include "MCResourceMap.h"

namespace qlx {

// Writes a map: its header, the names, the type list, the reference lists. Names come ahead because only offsets are 16
// bits wide: the list that grows most stands last, and there its length does not count.
class MCResourceMap::Writer {
 public:
  Writer(const MCResourceMap& inMap, const TMCArray<uint32>* inWords, TMCString& outProblem) noexcept
      : fMap(inMap), fWords(inWords), fProblem(outProblem) {}

  MCResult Write(MCByteArray& outBytes, SResHeader& ioHeader) noexcept {
    MCResult result = CollectNames();
    if (result == MC_S_OK) {
      result = PlaceLists();
    }
    if (result != MC_S_OK) {
      return result;
    }
    ioHeader.rMapLength = fTypeList + fTypeListBytes;
    uint8 header[sizeof(SResMap)] = {};
    PutBig32(header, ioHeader.rDataOffset);
    PutBig32(header + 4, ioHeader.rMapOffset);
    PutBig32(header + 8, ioHeader.rDataLength);
    PutBig32(header + 12, ioHeader.rMapLength);
    PutBig16(header + 24, static_cast<uint16>(fTypeList));
    PutBig16(header + 26, sizeof(SResMap));
    const bool isKept = outBytes.Append(header, sizeof header) &&
                        outBytes.Append(fNames.BaseAddress(), fNames.GetElemCount()) && AppendTypes(outBytes) &&
                        AppendLists(outBytes);
    return isKept ? MC_S_OK : MC_E_OUTOFMEMORY;
  }

 private:
  static constexpr uint32 kLargestOffset = std::numeric_limits<uint16>::max();
  static constexpr uint32 kLargestCount = 1U << 15;  // counts are signed, minus one

  MCResult TooLarge(const char* inWhat, MCID inType, uint32 inSize, uint32 inLimit) noexcept {
    char text[160];
    std::snprintf(text, sizeof text, "%s %s: %u is above the limit of %u", inWhat, MCResourceTypeText(inType).fText,
                  inSize, inLimit);
    fProblem = text;
    return MC_E_RESTOOLARGE;
  }

  MCResult CollectNames() noexcept {
    for (const Type& type : fMap.fTypes) {
      for (const MCResourceEntry* entry : type.fEntries) {
        const uint32 length = entry->fName.ByteLength();
        if (length == 0) {
          continue;
        }
        const uint32 end = static_cast<uint32>(sizeof(SResMap)) + fNames.GetElemCount() + 1 + length;
        if (end > kLargestOffset) {
          return TooLarge("the names up to those of type", type.fType, end, kLargestOffset);
        }
        if (!fNames.AddElem(static_cast<uint8>(length)) ||
            !fNames.Append(reinterpret_cast<const uint8*>(entry->fName.CStr()), length)) {
          return MC_E_OUTOFMEMORY;
        }
      }
    }
    fTypeList = static_cast<uint32>(sizeof(SResMap)) + fNames.GetElemCount();
    return MC_S_OK;
  }

  static uint32 BytesOf(const Type& inType) noexcept { return inType.fEntries.GetElemCount() * kResReferenceBytes; }

  MCResult PlaceLists() noexcept {
    const uint32 count = fMap.fTypes.GetElemCount();
    uint32 largest = 0;
    for (uint32 i = 1; i < count; ++i) {
      largest = BytesOf(fMap.fTypes[i]) > BytesOf(fMap.fTypes[largest]) ? i : largest;
    }
    if (!fOffsets.SetElemCount(count)) {
      return MC_E_OUTOFMEMORY;
    }
    fTypeListBytes = 2 + count * kResTypeBytes;
    for (uint32 i = 0; i < count; ++i) {
      const MCResult result = i == largest ? MC_S_OK : PlaceList(i);
      if (result != MC_S_OK) {
        return result;
      }
    }
    return count > 0 ? PlaceList(largest) : MC_S_OK;
  }

  MCResult PlaceList(uint32 inIndex) noexcept {
    const Type& type = fMap.fTypes[inIndex];
    if (fTypeListBytes > kLargestOffset) {
      return TooLarge("the offset of the references of type", type.fType, fTypeListBytes, kLargestOffset);
    }
    if (type.fEntries.GetElemCount() > kLargestCount) {
      return TooLarge("the count of resources of type", type.fType, type.fEntries.GetElemCount(), kLargestCount);
    }
    fOffsets[inIndex] = fTypeListBytes;
    fTypeListBytes += BytesOf(type);
    return MC_S_OK;
  }

  bool AppendTypes(MCByteArray& outBytes) const noexcept {
    const uint32 count = fMap.fTypes.GetElemCount();
    uint8 bytes[kResTypeBytes];
    PutBig16(bytes, static_cast<uint16>(count - 1));  // 0xFFFF is none
    bool isKept = outBytes.Append(bytes, 2);
    for (uint32 i = 0; isKept && i < count; ++i) {
      const Type& type = fMap.fTypes[i];
      PutBig32(bytes, type.fType);
      PutBig16(bytes + 4, static_cast<uint16>(type.fEntries.GetElemCount() - 1));
      PutBig16(bytes + 6, static_cast<uint16>(fOffsets[i]));
      isKept = outBytes.Append(bytes, sizeof bytes);
    }
    return isKept;
  }

  // In the order of the types, and the largest list last. Names and words go by the order of the types throughout.
  bool AppendLists(MCByteArray& outBytes) const noexcept {
    uint32 name = 0;
    uint32 entry = 0;
    if (!outBytes.SetElemCount(fTypeList + fTypeListBytes)) {
      return false;
    }
    for (uint32 i = 0; i < fMap.fTypes.GetElemCount(); ++i) {
      uint8* bytes = outBytes.BaseAddress() + fTypeList + fOffsets[i];
      for (const MCResourceEntry* reference : fMap.fTypes[i].fEntries) {
        PutReference(bytes, *reference, fWords ? (*fWords)[entry] : reference->fWord, name);
        bytes += kResReferenceBytes;
        ++entry;
      }
    }
    return true;
  }

  static void PutReference(uint8* outBytes, const MCResourceEntry& inEntry, uint32 inWord, uint32& ioName) noexcept {
    const uint32 length = inEntry.fName.ByteLength();
    PutBig16(outBytes, static_cast<uint16>(inEntry.fID));
    PutBig16(outBytes + 2, length > 0 ? static_cast<uint16>(ioName) : kResNoName);
    PutBig32(outBytes + 4, inWord);
    PutBig32(outBytes + 8, 0);
    ioName += length > 0 ? 1 + length : 0;
  }

  const MCResourceMap& fMap;
  const TMCArray<uint32>* fWords;
  TMCString& fProblem;
  MCByteArray fNames;
  TMCArray<uint32> fOffsets;  // of each type's list, from the start of the type list
  uint32 fTypeList = 0;
  uint32 fTypeListBytes = 0;  // with all lists behind it
};

MCResult MCResourceMap::Write(MCByteArray& outBytes, SResHeader& ioHeader, const TMCArray<uint32>* inWords,
                              TMCString& outProblem) const noexcept {
  return Writer(*this, inWords, outProblem).Write(outBytes, ioHeader);
}

}  // namespace qlx
