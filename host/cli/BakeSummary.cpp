#include "BakeSummary.h"

#include <fmt/format.h>

#include <algorithm>

#include "ChannelText.h"
#include "JsonText.h"
#include "Text.h"

namespace qlx::host {

namespace {

constexpr std::size_t kElementsListed = 20;

std::string ChannelNames(ChannelMask inMask) {
  std::string names;
  for (const ChannelInfo* channel : ChannelsOf(inMask)) {
    names += (names.empty() ? "" : ", ") + std::string(channel->fName);
  }
  return names;
}

Json ElementAsJson(const BakedElement& inElement) {
  Json channels = Json::array();
  for (const ChannelInfo* channel : ChannelsOf(inElement.fChannels)) {
    channels.push_back({{"id", TextFromID(channel->fID)}, {"path", channel->fPath}, {"name", channel->fName}});
  }
  return {{"id", inElement.fElement->GetUniqueID()},
          {"name", inElement.fElement->GetNameText()},
          {"values", std::move(channels)}};
}

}  // namespace

std::string SummaryAsText(const BakeSummary& inSummary, const BakeResult& inResult) {
  const std::vector<BakedElement>& elements = inResult.fElements;
  std::string text = fmt::format("{}: {} changed on frames {} to {} at {} a second\n", inSummary.fOutput,
                                 Counted(elements.size(), "element"), inResult.fRange.fFirst, inResult.fRange.fLast,
                                 inSummary.fFrameRate);
  const std::size_t listed = std::min(elements.size(), kElementsListed);
  for (std::size_t i = 0; i < listed; ++i) {
    text +=
        fmt::format("  {}: {}\n", Printable(elements[i].fElement->GetNameText()), ChannelNames(elements[i].fChannels));
  }
  if (listed < elements.size()) {
    text += fmt::format("  and {}\n", Counted(elements.size() - listed, "more element"));
  }
  if (!inSummary.fCsv.empty()) {
    text += inSummary.fCsv + ": the changed values as a table\n";
  }
  if (!inSummary.fPlot.empty()) {
    text += inSummary.fPlot + ": the plot\n";
  }
  return text;
}

std::string SummaryAsJson(const BakeSummary& inSummary, const BakeResult& inResult) {
  Json elements = Json::array();
  for (const BakedElement& element : inResult.fElements) {
    elements.push_back(ElementAsJson(element));
  }
  const auto fileOrNull = [](const std::string& file) { return file.empty() ? Json() : Json(file); };
  return JsonText(
      {{"scene", inSummary.fScene},
       {"clip", fileOrNull(inSummary.fClip)},
       {"frameRate", inSummary.fFrameRate},
       {"frames",
        {{"first", inResult.fRange.fFirst}, {"last", inResult.fRange.fLast}, {"count", inResult.fTimes.size()}}},
       {"output", inSummary.fOutput},
       {"csv", fileOrNull(inSummary.fCsv)},
       {"plot", fileOrNull(inSummary.fPlot)},
       {"elements", std::move(elements)},
       {"warnings", inSummary.fWarnings}});
}

}  // namespace qlx::host
