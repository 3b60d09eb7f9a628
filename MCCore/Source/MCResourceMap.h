// The map of a resource file in memory: its types and references, an index to find them, and how they are read and
// written. Knows no file.
//
// The pointer that a reference has room for in memory is 32 bits wide, so the loaded resources stand in these entries
// and the field of the file stays 0.
#pragma once

#include "MCByteArray.h"
#include "MCPtrArray.h"
#include "MCResource.h"

namespace qlx {

// A type as problems name it: quoted, or a number where its bytes are no printable characters.
struct MCResourceTypeText {
  explicit MCResourceTypeText(MCID inType) noexcept;
  char fText[12];
};

struct MCResourceEntry : TMCObject {
  MCID fType = 0;
  int16 fID = 0;
  uint32 fWord = kResNoData;  // attributes and offset
  MCResource* fResource = nullptr;
  TMCDynamicString fName;

  bool Has(uint32 inAttribute) const noexcept { return (fWord & inAttribute) != 0; }
  uint32 Offset() const noexcept { return fWord & kResOffsetMask; }
  void SetOffset(uint32 inOffset) noexcept { fWord = (fWord & kResAttributesMask) | inOffset; }
};

class MCResourceMap : public TMCObject {
 public:
  // One type, with its resources in the order of the file. The map owns them.
  struct Type {
    MCID fType = 0;
    TMCPtrArray<MCResourceEntry> fEntries;
  };

  MCResourceMap() noexcept = default;
  ~MCResourceMap();
  MCResourceMap(const MCResourceMap&) = delete;
  MCResourceMap& operator=(const MCResourceMap&) = delete;

  // Fills an empty map. `MC_E_BADTOKEN` with what is wrong and where, counted from the map's start.
  MCResult Read(const uint8* inBytes, uint32 inSize, TMCString& outProblem) noexcept;
  // Fills an empty array with the bytes of the whole map; the header's length becomes theirs. `inWords` (may be null)
  // has other words for the references, in their order. `MC_E_RESTOOLARGE` with the name of what has no place.
  MCResult Write(MCByteArray& outBytes, SResHeader& ioHeader, const TMCArray<uint32>* inWords,
                 TMCString& outProblem) const noexcept;

  // Of several with one type and id, the first in the file. Null when there is none.
  MCResourceEntry* Find(MCID inType, int16 inID) const noexcept;
  const Type* FindType(MCID inType) const noexcept;
  const TMCClassArray<Type>& Types() const noexcept { return fTypes; }
  uint32 EntryCount() const noexcept { return fIndex.GetElemCount(); }
  // Takes over an entry that is new here. Without memory, false, and the entry stays the caller's.
  bool Add(MCResourceEntry* inEntry) noexcept;
  // Deletes the entry.
  void Remove(MCResourceEntry* inEntry) noexcept;

  SResMap fHeader{};

 private:
  class Reader;
  class Writer;

  Type* AddType(MCID inType) noexcept;
  bool BuildIndex() noexcept;

  TMCClassArray<Type> fTypes;
  TMCPtrArray<MCResourceEntry> fIndex;  // ordered by type and id; those alike in the order of the file
};

}  // namespace qlx
