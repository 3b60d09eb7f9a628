// Small questions to the operating system.
#pragma once

#include <string>
#include <vector>

#include "MCTypes.h"

namespace qlx {

// Number of the calling thread, as the system shows it. Not 0; given again after the thread ended.
uint32 CurrentThreadID() noexcept;

// Keeps the library (or program) that this code is linked into in memory until the process ends, whoever unloads it.
// Too late once its unloading has begun.
void KeepThisLibraryLoaded() noexcept;

// The arguments of `main` as UTF-8, the program's name first.
std::vector<std::string> Utf8Arguments(int inCount, const char* const* inArguments);

// The running program's own file, as a full UTF-8 path; empty when the system does not tell.
std::string ProgramFile();

// What the system calls the file of a dynamic library: "libqlx.so" or "qlx.dll" for "qlx".
std::string LibraryFileName(const std::string& inName);

// Memory that `std::realloc` and `std::free` take, at a multiple of the alignment: a power of two, of a pointer's size
// or more. On Windows, which has no such blocks, it is aligned as that of `std::malloc`. Null when there is none.
void* AllocateAligned(MCSize inSize, MCSize inAlignment) noexcept;

// For the start of a program that walks through much memory: what the C runtime hands out from then on stands in large
// pages, so that the processor finds its addresses sooner. At most an eighth of the machine's memory, and at most 1 GB,
// is set aside for it; none of that is used before it is needed, nor given back before the program ends. Does nothing
// where the system or the runtime has no such pages.
void PreferLargePages() noexcept;

}  // namespace qlx
