// The terminal that a program writes to.
#pragma once

namespace qlx {

// Makes a console show UTF-8 text and understand the escape sequence that clears a line, where the system needs to be
// told. To be called once, by a program's `main`.
void PrepareTerminal() noexcept;

// True when standard error is a terminal on which one line can be written over.
bool IsErrorTerminal() noexcept;

}  // namespace qlx
