// A dynamic library, loaded while the program runs. Paths and texts are UTF-8.
#pragma once

#include <string>

namespace qlx {

// Holds one library. Move-only; the destructor closes it.
//
// The system counts how often a library is open: it leaves memory when the last holder closes it. What was taken out
// of it (functions, objects, types of exceptions) must be gone by then.
class MCLibrary {
 public:
  MCLibrary() noexcept = default;
  MCLibrary(MCLibrary&& ioSource) noexcept;
  MCLibrary& operator=(MCLibrary&& ioSource) noexcept;
  MCLibrary(const MCLibrary&) = delete;
  MCLibrary& operator=(const MCLibrary&) = delete;
  ~MCLibrary();

  // Loads the file and the libraries beside it that it needs; a bare name is a file in the current folder. No box
  // appears on the screen. On failure answers false with the reason in `GetErrorText`, and none is open. Closes the
  // one that was open before, in both cases.
  bool Open(const char* inPath);
  void Close() noexcept;
  bool IsOpen() const noexcept { return fHandle != nullptr; }

  // Null when the library exports no such name, or none is open.
  void* FindSymbol(const char* inName) const noexcept;

  // The exported function of that name, null when there is none: `Find<int32 (*)()>("MCDllCleanUp")`.
  template <class Function>
  Function Find(const char* inName) const noexcept {
    return reinterpret_cast<Function>(FindSymbol(inName));
  }

  // Why the last `Open` failed, in the words of the system; empty when it did not.
  const std::string& GetErrorText() const noexcept { return fErrorText; }

 private:
  void* fHandle = nullptr;
  std::string fErrorText;
};

}  // namespace qlx
