#include "cli/ProgressBar.h"

#include <gtest/gtest.h>

#include <algorithm>
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

TEST(ProgressBar, ShowsHowFarALongWorkIsTenTimesASecondAndTakesTheLineAway) {
  const std::string shown = WorkFor(100, true);
  EXPECT_NE(shown.find("baking [###############...............]  50%  frame 50 of 100, 5 s left"), std::string::npos)
      << shown;
  EXPECT_EQ(shown.substr(shown.size() - 4), "\r\x1B[K");
  const std::string often = WorkFor(20, true);  // two seconds, the first of them silent
  const auto updates = std::ranges::count(often, 'b');
  EXPECT_TRUE(updates >= 9 && updates <= 11) << updates;
}

}  // namespace
}  // namespace qlx::host
