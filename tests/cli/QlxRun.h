// `qlx`, run in this process: what it answered and what it wrote.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "TempFolder.h"
#include "cli/Qlx.h"
#include "gltf/GltfJson.h"

namespace qlx::host {

struct QlxRun {
  int fCode;
  std::string fOut;
  std::string fErr;
};

inline QlxRun RunInProcess(std::vector<std::string> inArguments) {
  std::ostringstream out;
  std::ostringstream err;
  Console console{out, err};
  const int code = RunQlx(std::move(inArguments), console);
  return {code, out.str(), err.str()};
}

inline std::string Example(const char* inName) {
  return std::string(QLX_EXAMPLES "/") + inName;
}

// A run that fails, and a part of what it says.
struct WrongRun {
  const char* fLabel;
  std::vector<std::string> fWords;
  std::string fSays;
};

// A folder, and runs that are looked at.
class QlxTest : public testing::Test {
 protected:
  std::string At(std::string_view inName = "out.gltf") const { return PathText(fFolder / inName); }

  // What a run that goes well prints.
  static std::string Print(std::vector<std::string> inWords) {
    const QlxRun run = RunInProcess(std::move(inWords));
    EXPECT_EQ(run.fCode, kExitDone);
    EXPECT_EQ(run.fErr, "");
    return run.fOut;
  }
  static Json PrintJson(std::vector<std::string> inWords) {
    inWords.emplace_back("--json");
    return Json::parse(Print(std::move(inWords)));
  }
  static void ExpectPart(const std::string& inPart, const std::string& inText) {
    EXPECT_NE(inText.find(inPart), std::string::npos) << inPart << "\n  in: " << inText;
  }
  // Each is one line, and leaves the folder as it was.
  void ExpectProblems(const std::vector<WrongRun>& inRuns, int inCode = kExitFailed) const {
    const auto before = fFolder.List();
    for (const WrongRun& wrong : inRuns) {
      SCOPED_TRACE(wrong.fLabel);
      const QlxRun run = RunInProcess(wrong.fWords);
      EXPECT_EQ(run.fCode, inCode);
      EXPECT_EQ(run.fOut, "");
      EXPECT_EQ(std::ranges::count(run.fErr, '\n'), 1) << run.fErr;
      EXPECT_EQ(run.fErr.rfind("qlx: ", 0), 0U) << run.fErr;
      ExpectPart(wrong.fSays, run.fErr);
      EXPECT_EQ(fFolder.List(), before);
    }
  }

  TempFolder fFolder;
};

}  // namespace qlx::host
