// What text asks of the operating system.
#pragma once

#include "MCTypes.h"

namespace qlx {

// Order of two texts as a person sorts them, case apart: below 0, 0 or above 0.
int32 PlatformCompareCaseless(const char* inA, const char* inB) noexcept;

// True where the system's code page for byte texts is 1252. Asked once.
bool PlatformHasWesternCodePage() noexcept;

// True for a byte that begins a character of two bytes in that code page.
bool PlatformIsLeadByte(uint8 inByte) noexcept;

}  // namespace qlx
