// Result codes. 0 is success; every failure that an interface operation answers has the high bit set.
#pragma once

#include "MCTypes.h"

namespace qlx {

using MCResult = int32;

namespace detail {
constexpr MCResult Code(uint32 inBits) {
  return static_cast<MCResult>(inBits);
}
}  // namespace detail

inline constexpr MCResult MC_S_OK = 0;
inline constexpr MCResult MC_E_OUTOFMEMORY = detail::Code(0x80010002);     // an object could not be allocated
inline constexpr MCResult MC_E_PURECALL = detail::Code(0x80010003);        // a pure operation was called
inline constexpr MCResult MC_E_FAULT = detail::Code(0x80010004);           // a processor fault
inline constexpr MCResult MC_E_INVALIDARG = detail::Code(0x80010005);      // a null argument, a failed query
inline constexpr MCResult MC_E_NOTVALID = detail::Code(0x80010006);        // not valid on this object
inline constexpr MCResult MC_E_BADTOKEN = detail::Code(0x80010024);        // a token stream holds something else
inline constexpr MCResult MC_E_EOF = detail::Code(0x80010027);             // a token stream ended early
inline constexpr MCResult MC_E_FILENOTFOUND = detail::Code(0x8001002B);    // a file is missing
inline constexpr MCResult MC_E_CANCEL = detail::Code(0x80010080);          // the user cancelled
inline constexpr MCResult MC_E_SILENT = detail::Code(0x80010081);          // thrown with no report at all
inline constexpr MCResult MC_E_CANCEL2 = detail::Code(0x800101EA);         // a second cancel code
inline constexpr MCResult MC_E_NOTIMPLEMENTED = detail::Code(0x80014001);  // operation not implemented
inline constexpr MCResult MC_E_NOINTERFACE = detail::Code(0x80014002);     // QueryInterface found none
inline constexpr MCResult MC_E_NOTCREATED = detail::Code(0x8001FFFF);      // object not created
inline constexpr MCResult MC_E_OVERRELEASED = detail::Code(0xFFFFFFFE);    // released more often than referenced
inline constexpr MCResult MC_E_NOTCONNECTED = 4;                           // unable to connect

}  // namespace qlx
