// The plot: round ticks, lines with gaps, and a drawing that stays valid whatever the names are.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "QlxRun.h"
#include "TempFolder.h"
#include "cli/PlotScale.h"
#include "cli/SvgPath.h"
#include "cli/SvgPlot.h"

namespace qlx::host {
namespace {

TEST(PlotScale, MarksRoundNumbersInsideTheRange) {
  struct Row {
    const char* fLabel;
    ValueRange fRange;
    real64 fSmallestStep;
    std::vector<std::string> fExpected;
  };
  const Row rows[] = {
      {"unit", {0, 1}, 0, {"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}},
      {"about zero", {-0.031, 0.031}, 0, {"-0.02", "0.00", "0.02"}},
      {"far from zero", {1000.2, 1000.9}, 0, {"1000.2", "1000.4", "1000.6", "1000.8"}},
      {"whole frames", {0, 2}, 1, {"0", "1", "2"}},
      {"large", {0, 4e9}, 0, {"0", "1e+09", "2e+09", "3e+09", "4e+09"}},
      {"one value", {7, 7}, 0, {"7"}},
  };
  for (const Row& row : rows) {
    const PlotScale scale = MakeScale(row.fRange, 5, row.fSmallestStep);
    std::vector<std::string> labels;
    for (const real64 tick : scale.fTicks) {
      labels.push_back(scale.Label(tick));
    }
    EXPECT_EQ(labels, row.fExpected) << row.fLabel;
  }
}

TEST(PlotScale, RangeLeavesOutWhatIsNotFinite) {
  const real64 infinity = std::numeric_limits<real64>::infinity();
  const ValueRange range = RangeOf({std::nan(""), 3, -2, infinity});
  EXPECT_EQ(range.fLow, -2);
  EXPECT_EQ(range.fHigh, 3);
  EXPECT_EQ(RangeOf({std::nan("")}).GetSpan(), 0);
}

TEST(SvgPath, LiftsThePenOverAGap) {
  const ChartArea area{{0, 3}, {0, 1}, 0, 0, 30, 10};
  EXPECT_EQ(PathOf({0, 1, 2, 3}, {0, 1, std::nan(""), 0.5}, area), "M0.0 10.00L10.0 0.00M30.0 5.00");
}

TEST(SvgPath, KeepsEveryPeakOfALongLineAndStaysSmall) {
  std::vector<real64> across(100000);
  std::vector<real64> up(across.size(), 0.0);
  for (std::size_t i = 0; i < across.size(); ++i) {
    across[i] = static_cast<real64>(i);
  }
  up[54321] = 1;
  up[54322] = -1;
  const std::string path = PathOf(across, up, {{0, 99999}, {-1, 1}, 0, 0, 300, 100});
  EXPECT_LT(path.size(), 60000U);
  EXPECT_NE(path.find(" 0.00"), std::string::npos) << "the peak";
  EXPECT_NE(path.find(" 100.00"), std::string::npos) << "the valley";
}

TEST(SvgPlot, NamesCannotBreakTheDrawing) {
  Plot plot;
  plot.fTitle = "<b> & \"c\" \x01";
  plot.fAxis = {0, 1};
  plot.fBlocks = {{"</text><script>", {{"X", "inches", {{"a<b", 0, false, {1, 2}}}}}}};
  const std::string svg = DrawSvg(plot);
  EXPECT_EQ(svg.find("<script>"), std::string::npos);
  EXPECT_EQ(svg.find('\x01'), std::string::npos);
  EXPECT_NE(svg.find("&lt;b&gt; &amp; &quot;c&quot;"), std::string::npos);
  EXPECT_EQ(svg.find("nan"), std::string::npos);
}

// A line that holds still must look still: rounding is not blown up to the height of the chart.
TEST(SvgPlot, RoundingNoiseIsDrawnFlat) {
  Plot plot;
  plot.fAxis = {0, 1, 2};
  plot.fBlocks = {{"", {{"X", "inches", {{"pinned", 0, false, {47.2441, 47.244104, 47.2441}}}}}}};
  const std::string svg = DrawSvg(plot);
  const std::size_t start = svg.find("d=\"M") + 4;
  const std::string path = svg.substr(start, svg.find('"', start) - start);
  real64 low = 1e9;
  real64 high = -1e9;
  for (std::size_t place = path.find(' '); place != std::string::npos; place = path.find(' ', place + 1)) {
    const real64 y = std::stod(path.substr(place + 1));
    low = std::min(low, y);
    high = std::max(high, y);
  }
  EXPECT_LT(high - low, 1.0) << path;
}

// Followers change alike and share a block with one line for where they would all be; a lamp has no motion, but values.
TEST(MotionPlot, DrawsElementsThatChangeAlikeTogetherAndValuesOfMaterials) {
  struct Row {
    const char* fScene;
    std::vector<const char*> fTexts;
    const char* fAbsent;
  };
  const Row rows[] = {
      {"followers.gltf",
       {"Follower1, Follower2, Follower3, Follower4, Follower5: changed values", ">Follower5<", ">without modifiers<"},
       "position in the scene"},
      {"clock.gltf", {">HourHand: changed values", ">DayHand: changed values", ">with modifiers<"}, "position"},
      {"lamp.gltf", {"shader &quot;Bulb&quot;: changed values", "Emissive colour blue", "Intensity"}, "[]"},
  };
  const TempFolder folder;
  for (const Row& row : rows) {
    const QlxRun run = RunInProcess(
        {"bake", Example(row.fScene), "-o", PathText(folder / "out.glb"), "--plot", PathText(folder / "out.svg")});
    ASSERT_EQ(run.fCode, kExitDone) << row.fScene << run.fErr;
    const std::string drawing = ReadFile(folder / "out.svg");
    for (const char* text : row.fTexts) {
      EXPECT_NE(drawing.find(text), std::string::npos) << row.fScene << ": " << text;
    }
    EXPECT_EQ(drawing.find(row.fAbsent), std::string::npos) << row.fScene;
  }
}

}  // namespace
}  // namespace qlx::host
