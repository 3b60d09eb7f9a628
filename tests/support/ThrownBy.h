// What a piece of work throws to the host.
#pragma once

#include <string>

#include "MCException.h"
#include "SilentReports.h"

namespace qlx::test {

struct Thrown {
  MCResult fCode = MC_S_OK;
  std::string fFile;
  int32 fLine = 0;
  friend bool operator==(const Thrown&, const Thrown&) = default;
};

// Success for nothing. Reports are not looked at.
template <class Work>
Thrown ThrownBy(Work&& inWork) {
  const SilentReports silence;
  try {
    inWork();
  } catch (const TMCException& exception) {
    const char* const file = exception.GetFileName();
    return {exception.GetCode(), file ? file : "", exception.GetLine()};
  }
  return {};
}

}  // namespace qlx::test
