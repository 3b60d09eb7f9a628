#include "MCLibrary.h"

#include <utility>

namespace qlx {

MCLibrary::MCLibrary(MCLibrary&& ioSource) noexcept
    : fHandle(std::exchange(ioSource.fHandle, nullptr)), fErrorText(std::exchange(ioSource.fErrorText, {})) {}

MCLibrary& MCLibrary::operator=(MCLibrary&& ioSource) noexcept {
  std::swap(fHandle, ioSource.fHandle);
  std::swap(fErrorText, ioSource.fErrorText);
  ioSource.Close();
  return *this;
}

MCLibrary::~MCLibrary() {
  Close();
}

}  // namespace qlx
