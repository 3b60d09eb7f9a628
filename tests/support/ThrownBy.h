// What a piece of work throws.
#pragma once

#include <gtest/gtest.h>

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

// The code of it. It must carry the file's name, where one is expected, and then a line.
template <class Work>
MCResult CodeOf(Work&& inWork, const char* inFile = nullptr) {
  const Thrown thrown = ThrownBy(inWork);
  if (inFile && thrown.fCode != MC_S_OK) {
    EXPECT_EQ(thrown.fFile, inFile);
    EXPECT_GT(thrown.fLine, 0);
  }
  return thrown.fCode;
}

}  // namespace qlx::test
