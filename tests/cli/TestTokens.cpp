// `qlx tokens`: the tree of a token file, and the place where one is broken.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {
namespace {

const char* const kFile =
    "\xEF\xBB\xBF# saved\r\npset 1\r\nspar \"a \\\"b\\\" {\"\r\ndecy {\r\n dlin 1\r\n {\r\n  }\r\nnone\r\n }\r\n"
    "DATA $00000003\r}\x01$$\r\nint8 \x07\r\n";

TEST(QlxTokens, PrintsGroupsAndValuesAsATree) {
  const TempFolder folder;
  const std::string file = PathText(folder.Write("saved.tok", kFile));
  const QlxRun run = RunInProcess({"tokens", file});
  EXPECT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_EQ(
      run.fOut,
      "pset 1\nspar \"a \\\"b\\\" {\"\ndecy {\n  dlin 1\n  {\n  }\n  none\n}\nDATA $3 bytes: 7D 01 24\nint8 \\x07\n");
  EXPECT_EQ(RunInProcess({"tokens", file, "--check"}).fOut, file + ": whole, 2 groups, 5 values, deepest level 2\n");
  const auto tree = nlohmann::json::parse(RunInProcess({"tokens", file, "--json"}).fOut);
  EXPECT_EQ(tree["items"].size(), 10U);
  EXPECT_EQ(tree["items"][3]["id"], "dlin");
  EXPECT_EQ(tree["items"][3]["depth"], 1);
  EXPECT_EQ(tree["items"][8]["value"], 3);
  const QlxRun captured = RunInProcess({"tokens", PathText(folder.Write("one.tok", "{ a 1 b { c \"x\" } } "))});
  EXPECT_EQ(captured.fOut, "{\n  a 1\n  b {\n    c \"x\"\n  }\n}\n") << "all on one line";
}

TEST(QlxTokens, NamesTheLineAndTheByteThatAreWrong) {
  const struct {
    std::string fContent;
    const char* fPlace;
  } rows[] = {
      {"", "an empty file"},
      {"a 1\r\nb {\r\n c {\r\n}\r\n", "line 2, byte 7: this { is never closed"},
      {"a 1\n}\n", "line 2, byte 4: a } without its {"},
      {"a \"open\r\n", "line 1, byte 2: this text never ends"},
      {"a 1", "line 1, byte 2: the last word is cut"},
      {"a $00000009\rabc$\r\n", "line 1, byte 2: a binary block of 9 bytes, of which 6 are there"},
      {"a $FFFFFFFE\rabc$\r\n", "line 1, byte 2: a binary block of 4294967294 bytes"},
      {"a $00000003\rabc", "line 1, byte 2: this binary block never ends"},
      {"a $FFFFFFFF\rabc", "line 1, byte 2: this binary block never ends"},
      {"a $0000$", "line 1, byte 2: a binary block without the eight digits"},
      {"a $0000000", "line 1, byte 2: a binary block without the eight digits"},
  };
  const TempFolder folder;
  for (const auto& row : rows) {
    const std::string file = PathText(folder.Write("bad.tok", row.fContent));
    const QlxRun run = RunInProcess({"tokens", file, "--check"});
    EXPECT_EQ(run.fCode, kExitFailed) << row.fPlace;
    EXPECT_EQ(run.fOut, "") << row.fPlace;
    EXPECT_EQ(run.fErr.rfind("qlx: " + file + ": " + row.fPlace, 0), 0U) << run.fErr;
  }
  EXPECT_EQ(RunInProcess({"tokens", "no_such.tok"}).fCode, kExitFailed);
}

TEST(QlxTokens, AMillionGroupsInEachOther) {
  const TempFolder folder;
  const std::string depth(1000000, '{');
  const auto file = folder.Write("deep.tok", depth + std::string(1000000, '}'));
  const QlxRun run = RunInProcess({"tokens", PathText(file), "--check"});
  EXPECT_NE(run.fOut.find("1000000 groups, 0 values, deepest level 1000000"), std::string::npos) << run.fErr;
  const QlxRun open = RunInProcess({"tokens", PathText(folder.Write("open.tok", depth)), "--check"});
  EXPECT_NE(open.fErr.find("byte 999999: this { is never closed"), std::string::npos) << open.fErr;
}

}  // namespace
}  // namespace qlx::host
