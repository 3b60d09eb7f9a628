// The pieces of an SVG drawing that are worth a test of their own: the path of a line, and safe text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "PlotScale.h"

namespace qlx::host {

// Where a chart stands on the drawing, and what it shows. Y goes down on the drawing and up in the chart.
struct ChartArea {
  ValueRange fAcross;
  ValueRange fUp;
  real64 fLeft = 0;
  real64 fTop = 0;
  real64 fWidth = 1;
  real64 fHeight = 1;

  real64 X(real64 inValue) const;
  real64 Y(real64 inValue) const;
};

// Path data through the points, with gaps at values that are not finite. Where more than two points fall on one unit of
// width, the first, lowest, highest and last of it stand for all: the drawing looks the same and stays small.
std::string PathOf(const std::vector<real64>& inAcross, const std::vector<real64>& inUp, const ChartArea& inArea);

// Text for XML: markup is escaped, characters that XML cannot hold become U+FFFD.
std::string XmlText(std::string_view inText);
// Characters of UTF-8 text.
std::size_t LetterCount(std::string_view inText);

}  // namespace qlx::host
