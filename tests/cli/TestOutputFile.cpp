#include <gtest/gtest.h>

#include "ProblemOf.h"
#include "TempFolder.h"
#include "cli/OutputFile.h"
#include "model/Diagnostics.h"

namespace qlx::host {
namespace {

TEST(OutputFile, ReplacesTheFileOnlyWhenItIsPutInPlace) {
  const TempFolder folder;
  const auto file = folder.Write("table.csv", "old");
  {
    OutputFile output(file, "new");
    EXPECT_EQ(ReadFile(file), "old");
    EXPECT_EQ(folder.List().size(), 2U) << "written beside";
    output.PutInPlace();
  }
  EXPECT_EQ(ReadFile(file), "new");
  EXPECT_EQ(folder.List().size(), 1U);
}

TEST(OutputFile, LeavesNothingWhenItIsGivenUp) {
  const TempFolder folder;
  { const OutputFile output(folder / "table.csv", "never seen"); }
  EXPECT_TRUE(folder.List().empty());
}

TEST(OutputFile, RefusesAPlaceThatCannotHoldAFile) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "taken");
  folder.Write("file", "");
  for (const char* place : {"taken", "missing/table.csv", "file/table.csv"}) {
    const std::string problem = test::ProblemOf([&] { const OutputFile output(folder / place, "text"); });
    EXPECT_NE(problem.find(place), std::string::npos) << problem;
  }
  EXPECT_EQ(folder.List().size(), 2U);
}

}  // namespace
}  // namespace qlx::host
