// How a resource file is laid out (docs/formats/resource-files.md has the whole). All numbers in a file are big-endian;
// the records here hold them in the order of the machine.
#pragma once

#include "MCResult.h"

namespace qlx {

inline constexpr uint32 kResHeaderBytes = 256;    // of which 16 are used
inline constexpr uint32 kResTypeBytes = 8;        // an entry of the type list
inline constexpr uint32 kResReferenceBytes = 12;  // an entry of a reference list
inline constexpr uint32 kResLengthBytes = 4;      // ahead of a resource's data

inline constexpr uint32 kResOffsetMask = 0x00FFFFFF;
inline constexpr uint32 kResNoData = 0x00FFFFFF;  // the offset of a resource that has no data in the file
inline constexpr uint16 kResNoName = 0xFFFF;      // the name offset of a resource without a name

// Attributes, in the top byte of a reference's word. The other bits of that byte are kept and mean nothing here.
inline constexpr uint32 kResAttributesMask = 0xFF000000;
inline constexpr uint32 kResReplaceable = 0x02000000;  // without it, data cannot be replaced
inline constexpr uint32 kResPreload = 0x04000000;      // loaded with the file, if the file asks for that
inline constexpr uint32 kResProtected = 0x08000000;    // with it, data can neither be replaced nor removed

struct SResHeader {
  uint32 rDataOffset;  // of the data area, from the file's start
  uint32 rMapOffset;
  uint32 rDataLength;
  uint32 rMapLength;
};

// The start of a map. The offsets of the lists count from here.
struct SResMap {
  SResHeader rHeader;
  uint32 rReserved;  // three fields that are 0 in a file
  uint16 rFileRef;
  uint16 rFlags;
  uint16 rTypeListOffset;
  uint16 rNameListOffset;
};
static_assert(sizeof(SResMap) == 28);

inline constexpr MCResult MC_E_RESNOTFOUND = detail::Code(0x800100C0);   // no resource of this type and id
inline constexpr MCResult MC_E_RESEXISTS = detail::Code(0x800100C1);     // there is one already
inline constexpr MCResult MC_E_RESTOOLARGE = detail::Code(0x800100C2);   // more than the format can hold
inline constexpr MCResult MC_E_RESINUSE = detail::Code(0x800100C3);      // somebody still holds the resource
inline constexpr MCResult MC_E_RESPROTECTED = detail::Code(0x800100C6);  // the attributes do not allow it
inline constexpr MCResult MC_E_RESWRITE = detail::Code(0x800100C7);      // the file cannot be written

}  // namespace qlx
