// How a piece of work ends.
#pragma once

#include <gtest/gtest.h>

#include "MCException.h"
#include "SilentReports.h"

namespace qlx::test {

// The code of the exception that the work throws; 0 for none. It must carry the file's name, where one is expected, and
// then a line. Reports are not looked at.
template <class Work>
MCResult CodeOf(Work&& inWork, const char* inFile = nullptr) {
  const SilentReports silence;
  try {
    inWork();
  } catch (const TMCException& problem) {
    if (inFile) {
      EXPECT_STREQ(problem.GetFileName(), inFile);
      EXPECT_GT(problem.GetLine(), 0);
    }
    return problem.GetCode();
  }
  return MC_S_OK;
}

}  // namespace qlx::test
