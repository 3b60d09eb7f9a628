// Line charts as an SVG drawing, on a light ground, in colours that colour-blind people can tell apart.
//
// A plot is a column of blocks; a block is a title with a legend and panels, three in a row; a panel is one chart. All
// panels share the horizontal axis. Panels of a block with the same unit have the same span, so that heights compare.
#pragma once

#include <string>
#include <vector>

#include "MCTypes.h"

namespace qlx::host {

struct PlotLine {
  std::string fName;            // in the legend; lines of one name in a block look alike
  int fColour = 0;              // 0: the subject of the block; 1 and up: others
  bool fDashed = false;         // what would be
  std::vector<real64> fValues;  // one for each value of the horizontal axis; a gap where one is not finite
};

struct PlotPanel {
  std::string fTitle;
  std::string fUnit;             // empty: of no unit, and with a span of its own
  std::vector<PlotLine> fLines;  // drawn in order, the last on top
};

struct PlotBlock {
  std::string fTitle;
  std::vector<PlotPanel> fPanels;
};

struct Plot {
  std::string fTitle;
  std::string fSubtitle;
  std::string fAxisTitle;
  std::vector<real64> fAxis;  // ascending
  std::vector<PlotBlock> fBlocks;
  std::string fNote;  // below everything
};

std::string DrawSvg(const Plot& inPlot);

}  // namespace qlx::host
