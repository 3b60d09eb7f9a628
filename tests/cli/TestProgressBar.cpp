#include "cli/ProgressBar.h"

#include <gtest/gtest.h>

#include <sstream>

namespace qlx::host {
namespace {

// A work of 100 frames, `inMilliseconds` each, and what it wrote.
std::string WorkFor(int inMilliseconds, bool inTerminal) {
  std::ostringstream out;
  std::ostringstream err;
  Console console{out, err, inTerminal};
  std::chrono::milliseconds now{5000};
  {
    ProgressBar progress(console, "baking", "frame", [&] { return now; });
    for (int done = 1; done <= 100; ++done) {
      now += std::chrono::milliseconds(inMilliseconds);
      progress.Update(done, 100);
    }
  }
  EXPECT_EQ(out.str(), "");
  return err.str();
}

TEST(ProgressBar, SaysNothingAboutShortWorkOrOffATerminal) {
  EXPECT_EQ(WorkFor(9, true), "");
  EXPECT_EQ(WorkFor(1000, false), "");
}

TEST(ProgressBar, ShowsHowFarALongWorkIsAndTakesTheLineAway) {
  const std::string shown = WorkFor(100, true);
  EXPECT_NE(shown.find("baking [###############...............]  50%  frame 50 of 100, 5 s left"), std::string::npos)
      << shown;
  EXPECT_EQ(shown.substr(shown.size() - 4), "\r\x1B[K");
}

TEST(ProgressBar, WritesAtMostTenTimesASecond) {
  const std::string shown = WorkFor(20, true);  // two seconds, the first of them silent
  std::size_t updates = 0;
  for (std::size_t place = shown.find("baking"); place != std::string::npos; place = shown.find("baking", place + 1)) {
    ++updates;
  }
  EXPECT_GE(updates, 9U);
  EXPECT_LE(updates, 11U);
}

}  // namespace
}  // namespace qlx::host
