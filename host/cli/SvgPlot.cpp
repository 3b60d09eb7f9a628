#include "SvgPlot.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <map>

#include "PlotScale.h"
#include "SvgPath.h"

namespace qlx::host {

namespace {

// The palette of Okabe and Ito, without its yellow, which is too faint on white.
constexpr std::array kColours = {"#0072B2", "#D55E00", "#009E73", "#CC79A7", "#E69F00", "#56B4E9"};

constexpr int kPanelsInRow = 3;
constexpr real64 kMargin = 28;
constexpr real64 kChartWidth = 296;
constexpr real64 kChartHeight = 170;
constexpr real64 kLeftOfChart = 54;
constexpr real64 kRightOfChart = 18;
constexpr real64 kAboveChart = 28;
constexpr real64 kBelowChart = 48;
constexpr real64 kTitleHeight = 62;
constexpr real64 kBlockHead = 54;
constexpr real64 kNoteHeight = 26;
constexpr real64 kWidth = 2 * kMargin + kPanelsInRow * (kLeftOfChart + kChartWidth + kRightOfChart);
constexpr real64 kLegendDash = 30;
constexpr real64 kLegendRow = 18;
constexpr real64 kLetterWidth = 6.6;  // of the legend, a little more than the mean

const char* const kStyle = R"(<style>
  text { font-family: "DejaVu Sans", "Segoe UI", Helvetica, Arial, sans-serif; font-size: 11px; fill: #333; }
  .title { font-size: 18px; font-weight: bold; fill: #111; }
  .block { font-size: 14px; font-weight: bold; fill: #111; }
  .panel { font-size: 12px; fill: #111; }
  .grid { stroke: #E3E3E3; stroke-width: 1; }
  .frame { fill: none; stroke: #8A8A8A; stroke-width: 1; }
  .line { fill: none; stroke-width: 2; stroke-linejoin: round; stroke-linecap: round; }
  .subject { stroke-width: 2.6; }
  .dashed { stroke-width: 1.6; stroke-dasharray: 5 4; stroke-linecap: butt; }
</style>
)";

class Drawing {
 public:
  explicit Drawing(const Plot& inPlot) : fPlot(inPlot), fAxis(MakeScale(RangeOf(inPlot.fAxis), 6, 1)) {}

  std::string Draw() {
    Line(R"(<rect width="{}" height="{}" fill="#FFFFFF"/>)", kWidth, Height());
    Text(kMargin, kMargin + 14, "title", fPlot.fTitle);
    Text(kMargin, kMargin + 36, "", fPlot.fSubtitle);
    real64 top = kTitleHeight + kMargin;
    for (const PlotBlock& block : fPlot.fBlocks) {
      DrawBlock(block, top);
      top += BlockHeight(block);
    }
    Text(kMargin, top + 12, "", fPlot.fNote);
    return fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
        "height=\"{1}\">\n<title>{2}</title>\n{3}{4}</svg>\n",
        kWidth, Height(), XmlText(fPlot.fTitle), kStyle, fOut);
  }

 private:
  static std::size_t RowsOf(const PlotBlock& inBlock) {
    return (inBlock.fPanels.size() + kPanelsInRow - 1) / kPanelsInRow;
  }

  static real64 BlockHeight(const PlotBlock& inBlock) {
    return HeadHeight(inBlock) + static_cast<real64>(RowsOf(inBlock)) * (kAboveChart + kChartHeight + kBelowChart);
  }

  real64 Height() const {
    real64 height = kMargin + kTitleHeight + (fPlot.fNote.empty() ? 0 : kNoteHeight);
    for (const PlotBlock& block : fPlot.fBlocks) {
      height += BlockHeight(block);
    }
    return height;
  }

  void DrawBlock(const PlotBlock& inBlock, real64 inTop) {
    Line(R"(<line class="grid" x1="{}" y1="{}" x2="{}" y2="{}"/>)", kMargin, inTop, kWidth - kMargin, inTop);
    Text(kMargin, inTop + 24, "block", inBlock.fTitle);
    DrawLegend(inBlock, inTop + 44);
    const std::vector<PlotScale> scales = ScalesOf(inBlock);
    for (std::size_t i = 0; i < inBlock.fPanels.size(); ++i) {
      const std::size_t rowIndex = i / kPanelsInRow;
      const auto row = static_cast<real64>(rowIndex);
      const auto column = static_cast<real64>(i % kPanelsInRow);
      const real64 left = kMargin + column * (kLeftOfChart + kChartWidth + kRightOfChart) + kLeftOfChart;
      const real64 top = inTop + HeadHeight(inBlock) + row * (kAboveChart + kChartHeight + kBelowChart) + kAboveChart;
      DrawPanel(inBlock.fPanels[i], scales[i], left, top);
    }
  }

  // The lines of all panels, each name once, from the subject to what lies below it.
  static std::vector<const PlotLine*> LegendOf(const PlotBlock& inBlock) {
    std::vector<const PlotLine*> entries;
    for (const PlotPanel& panel : inBlock.fPanels) {
      for (const PlotLine& line : panel.fLines) {
        const auto same = [&](const PlotLine* entry) { return entry->fName == line.fName; };
        if (std::none_of(entries.begin(), entries.end(), same)) {
          entries.push_back(&line);
        }
      }
    }
    std::reverse(entries.begin(), entries.end());
    return entries;
  }

  // Calls `inPlace(entry, x, row)` for each entry, and answers the count of rows.
  template <class Place>
  static int LayOutLegend(const PlotBlock& inBlock, Place&& inPlace) {
    real64 x = kMargin;
    int row = 0;
    for (const PlotLine* entry : LegendOf(inBlock)) {
      const real64 width = kLegendDash + 24 + kLetterWidth * static_cast<real64>(LetterCount(entry->fName));
      if (x > kMargin && x + width > kWidth - kMargin) {
        x = kMargin;
        ++row;
      }
      inPlace(*entry, x, row);
      x += width;
    }
    return row + 1;
  }

  static real64 HeadHeight(const PlotBlock& inBlock) {
    return kBlockHead + kLegendRow * (LayOutLegend(inBlock, [](const PlotLine&, real64, int) {}) - 1);
  }

  void DrawLegend(const PlotBlock& inBlock, real64 inY) {
    LayOutLegend(inBlock, [&](const PlotLine& line, real64 x, int row) {
      const real64 y = inY + kLegendRow * row;
      Line(R"(<line {} x1="{:.1f}" y1="{}" x2="{:.1f}" y2="{}"/>)", Look(line), x, y - 4, x + kLegendDash, y - 4);
      Text(x + kLegendDash + 6, y, "", line.fName);
    });
  }

  // One scale a panel about its own middle, with one span for all panels of a unit. Without a unit they do not compare.
  static std::vector<PlotScale> ScalesOf(const PlotBlock& inBlock) {
    std::vector<ValueRange> ranges;
    std::map<std::string, real64> spans;
    for (const PlotPanel& panel : inBlock.fPanels) {
      ValueRange range = panel.fLines.empty() ? ValueRange{} : RangeOf(panel.fLines.front().fValues);
      for (const PlotLine& line : panel.fLines) {
        range = Union(range, RangeOf(line.fValues));
      }
      ranges.push_back(range);
      real64& span = spans[SpanKey(panel)];
      span = std::max({span, range.GetSpan(), SmallestSpan(range)});
    }
    std::vector<PlotScale> scales;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
      const real64 half = spans[SpanKey(inBlock.fPanels[i])] * 0.54;
      scales.push_back(MakeScale({ranges[i].GetMiddle() - half, ranges[i].GetMiddle() + half}, 6));
    }
    return scales;
  }

  static std::string SpanKey(const PlotPanel& inPanel) {
    return inPanel.fUnit.empty() ? inPanel.fTitle : '[' + inPanel.fUnit + ']';
  }

  void DrawPanel(const PlotPanel& inPanel, const PlotScale& inScale, real64 inLeft, real64 inTop) {
    const ChartArea area{fAxis.fRange, inScale.fRange, inLeft, inTop, kChartWidth, kChartHeight};
    const real64 bottom = inTop + kChartHeight;
    const std::string unit = inPanel.fUnit.empty() ? "" : fmt::format("  [{}]", inPanel.fUnit);
    Text(inLeft, inTop - 9, "panel", inPanel.fTitle + unit);
    for (const real64 tick : inScale.fTicks) {
      const real64 y = area.Y(tick);
      Line(R"(<line class="grid" x1="{}" y1="{:.1f}" x2="{}" y2="{:.1f}"/>)", inLeft, y, inLeft + kChartWidth, y);
      Text(inLeft - 7, y + 4, "", inScale.Label(tick), "end");
    }
    for (const real64 tick : fAxis.fTicks) {
      const real64 x = area.X(tick);
      Line(R"(<line class="grid" x1="{:.1f}" y1="{}" x2="{:.1f}" y2="{}"/>)", x, inTop, x, bottom);
      Text(x, bottom + 16, "", fAxis.Label(tick), "middle");
    }
    Text(inLeft + kChartWidth / 2, bottom + 32, "", fPlot.fAxisTitle, "middle");
    Line(R"(<rect class="frame" x="{}" y="{}" width="{}" height="{}"/>)", inLeft, inTop, kChartWidth, kChartHeight);
    for (const PlotLine& line : inPanel.fLines) {
      Line(R"(<path {} d="{}"/>)", Look(line), PathOf(fPlot.fAxis, line.fValues, area));
    }
  }

  static std::string Look(const PlotLine& inLine) {
    const char* kind = inLine.fDashed ? " dashed" : (inLine.fColour == 0 ? " subject" : "");
    const auto colour = static_cast<std::size_t>(std::max(inLine.fColour, 0)) % kColours.size();
    return fmt::format(R"(class="line{}" stroke="{}")", kind, kColours[colour]);
  }

  template <class... Arguments>
  void Line(fmt::format_string<Arguments...> inFormat, Arguments&&... inArguments) {
    fmt::format_to(std::back_inserter(fOut), inFormat, std::forward<Arguments>(inArguments)...);
    fOut += '\n';
  }

  void Text(real64 inX, real64 inY, const char* inClass, const std::string& inText, const char* inAnchor = "start") {
    if (!inText.empty()) {
      Line(R"(<text class="{}" x="{:.1f}" y="{:.1f}" text-anchor="{}">{}</text>)", inClass, inX, inY, inAnchor,
           XmlText(inText));
    }
  }

  const Plot& fPlot;
  PlotScale fAxis;
  std::string fOut;
};

}  // namespace

std::string DrawSvg(const Plot& inPlot) {
  return Drawing(inPlot).Draw();
}

}  // namespace qlx::host
