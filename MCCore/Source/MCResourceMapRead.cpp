#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "MCBigEndian.h"
#include "MCResourceMap.h"

namespace qlx {

// Reads a map that anybody may have written: every count and offset is held against the bytes that there are.
class MCResourceMap::Reader {
 public:
  Reader(MCResourceMap& ioMap, const uint8* inBytes, uint32 inSize, TMCString& outProblem) noexcept
      : fMap(ioMap), fBytes(inBytes), fSize(inSize), fProblem(outProblem) {}

  MCResult Read() noexcept {
    MCResult result = ReadHeader();
    if (result == MC_S_OK) {
      result = ReadTypes();
    }
    if (result == MC_S_OK) {
      result = ReadLists();
    }
    return result == MC_S_OK && !fMap.BuildIndex() ? MC_E_OUTOFMEMORY : result;
  }

 private:
  // A reference list, as the type list tells of it.
  struct List {
    uint32 fStart;
    uint32 fCount;
    MCID fType;

    uint32 End() const noexcept { return fStart + fCount * kResReferenceBytes; }
  };

  MCResult Damaged(const char* inFormat, ...) noexcept __attribute__((format(printf, 2, 3))) {
    char text[200];
    va_list values;
    va_start(values, inFormat);
    std::vsnprintf(text, sizeof text, inFormat, values);
    va_end(values);
    fProblem = text;
    return MC_E_BADTOKEN;
  }

  MCResult ReadHeader() noexcept {
    SResMap& header = fMap.fHeader;
    header = {{ReadBig32(fBytes), ReadBig32(fBytes + 4), ReadBig32(fBytes + 8), ReadBig32(fBytes + 12)},
              ReadBig32(fBytes + 16),
              ReadBig16(fBytes + 20),
              ReadBig16(fBytes + 22),
              ReadBig16(fBytes + 24),
              ReadBig16(fBytes + 26)};
    if (header.rTypeListOffset < sizeof(SResMap) || header.rTypeListOffset > fSize - 2) {
      return Damaged("the type list at %u of the map is outside its %u bytes", unsigned{header.rTypeListOffset}, fSize);
    }
    return MC_S_OK;
  }

  MCResult ReadTypes() noexcept {
    const uint32 start = fMap.fHeader.rTypeListOffset;
    const int32 count = static_cast<int16>(ReadBig16(fBytes + start)) + 1;
    if (count < 0 || static_cast<uint32>(count) > (fSize - start - 2) / kResTypeBytes) {
      return Damaged("%d types do not fit into the map", static_cast<int>(count));
    }
    fListsStart = start + 2 + static_cast<uint32>(count) * kResTypeBytes;
    if (!fLists.SetElemSpace(static_cast<uint32>(count)) || !fMap.fTypes.SetElemSpace(static_cast<uint32>(count))) {
      return MC_E_OUTOFMEMORY;
    }
    for (uint32 place = start + 2; place < fListsStart; place += kResTypeBytes) {
      const MCResult result = ReadType(start, fBytes + place);
      if (result != MC_S_OK) {
        return result;
      }
    }
    return CheckLists();
  }

  MCResult ReadType(uint32 inTypeList, const uint8* inBytes) noexcept {
    const MCID type = ReadBig32(inBytes);
    const int32 count = static_cast<int16>(ReadBig16(inBytes + 4)) + 1;
    const uint32 start = inTypeList + ReadBig16(inBytes + 6);
    if (count < 0) {
      return Damaged("a count of %d resources of type %s", static_cast<int>(count), MCResourceTypeText(type).fText);
    }
    if (count > 0 &&
        (start < fListsStart || start > fSize || static_cast<uint32>(count) > (fSize - start) / kResReferenceBytes)) {
      return Damaged("the %d references of type %s, at %u of the map, do not lie in its lists", static_cast<int>(count),
                     MCResourceTypeText(type).fText, start);
    }
    const bool isKept = fMap.AddType(type) && fLists.AddElem({start, static_cast<uint32>(count), type});
    return isKept ? MC_S_OK : MC_E_OUTOFMEMORY;
  }

  // Lists that overlap would make more resources than the map has bytes for.
  MCResult CheckLists() noexcept {
    TMCArray<List> lists(fLists);
    if (lists.GetElemCount() != fLists.GetElemCount()) {
      return MC_E_OUTOFMEMORY;
    }
    std::sort(lists.begin(), lists.end(), [](const List& inA, const List& inB) { return inA.fType < inB.fType; });
    for (uint32 i = 1; i < lists.GetElemCount(); ++i) {
      if (lists[i].fType == lists[i - 1].fType) {
        return Damaged("type %s stands in the map twice", MCResourceTypeText(lists[i].fType).fText);
      }
    }
    std::sort(lists.begin(), lists.end(), [](const List& inA, const List& inB) { return inA.fStart < inB.fStart; });
    const List* earlier = nullptr;
    for (const List& list : lists) {
      if (list.fCount == 0) {
        continue;
      }
      if (earlier && list.fStart < earlier->End()) {
        return Damaged("the references of types %s and %s overlap at %u of the map",
                       MCResourceTypeText(earlier->fType).fText, MCResourceTypeText(list.fType).fText, list.fStart);
      }
      earlier = &list;
    }
    return MC_S_OK;
  }

  MCResult ReadLists() noexcept {
    for (uint32 i = 0; i < fLists.GetElemCount(); ++i) {
      const List& list = fLists[i];
      Type& type = fMap.fTypes[i];
      if (!type.fEntries.SetElemSpace(list.fCount)) {
        return MC_E_OUTOFMEMORY;
      }
      for (uint32 place = list.fStart; place < list.End(); place += kResReferenceBytes) {
        const MCResult result = ReadReference(type, fBytes + place);
        if (result != MC_S_OK) {
          return result;
        }
      }
    }
    return MC_S_OK;
  }

  MCResult ReadReference(Type& ioType, const uint8* inBytes) noexcept {
    auto* const entry = new MCResourceEntry;
    if (!entry || !ioType.fEntries.AddElem(entry)) {
      delete entry;
      return MC_E_OUTOFMEMORY;
    }
    entry->fType = ioType.fType;
    entry->fID = static_cast<int16>(ReadBig16(inBytes));
    entry->fWord = ReadBig32(inBytes + 4);
    return ReadName(*entry, ReadBig16(inBytes + 2));
  }

  MCResult ReadName(MCResourceEntry& ioEntry, uint16 inOffset) noexcept {
    if (inOffset == kResNoName) {
      return MC_S_OK;
    }
    const uint32 place = uint32{fMap.fHeader.rNameListOffset} + inOffset;
    if (place < sizeof(SResMap) || place >= fSize || fBytes[place] > fSize - place - 1) {
      return Damaged("the name of resource %s %d, at %u of the map, is outside its %u bytes",
                     MCResourceTypeText(ioEntry.fType).fText, ioEntry.fID, place, fSize);
    }
    ioEntry.fName.Assign(reinterpret_cast<const char*>(fBytes + place + 1), fBytes[place]);
    return ioEntry.fName.ByteLength() == fBytes[place] ? MC_S_OK : MC_E_OUTOFMEMORY;
  }

  MCResourceMap& fMap;
  const uint8* fBytes;
  uint32 fSize;
  TMCString& fProblem;
  TMCArray<List> fLists;
  uint32 fListsStart = 0;  // the first byte behind the type list
};

MCResult MCResourceMap::Read(const uint8* inBytes, uint32 inSize, TMCString& outProblem) noexcept {
  return Reader(*this, inBytes, inSize, outProblem).Read();
}

}  // namespace qlx
