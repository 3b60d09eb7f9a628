// What `qlx bake` says when it is done.
#pragma once

#include <string>
#include <vector>

#include "model/Bake.h"

namespace qlx::host {

// Files as they were asked for; empty where there is none.
struct BakeSummary {
  std::string fScene;
  std::string fClip;
  real32 fFrameRate = 0;
  std::string fOutput;
  std::string fCsv;
  std::string fPlot;
  std::vector<std::string> fWarnings;
};

std::string SummaryAsText(const BakeSummary& inSummary, const BakeResult& inResult);
std::string SummaryAsJson(const BakeSummary& inSummary, const BakeResult& inResult);

}  // namespace qlx::host
