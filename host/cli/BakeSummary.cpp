#include "BakeSummary.h"

#include <fmt/format.h>

#include <algorithm>

#include "ChannelText.h"
#include "JsonText.h"
#include "Text.h"
#include "model/IDText.h"

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

// The names of the changed values of each set, by its label.
std::vector<std::pair<std::string, std::string>> ValueNames(const BakeResult& inResult) {
  std::vector<std::pair<std::string, std::string>> names;
  const ValueSet* last = nullptr;
  for (const BakedValue& value : inResult.fValues) {
    const std::string& name = value.fValues->GetInfo(value.fIndex).fName;
    if (last == value.fValues.get()) {
      names.back().second += ", " + name;
    } else {
      names.emplace_back(value.fValues->GetLabel(), name);
    }
    last = value.fValues.get();
  }
  return names;
}

// "1 element", "2 elements and 1 other value", "3 values"
std::string WhatChanged(const BakeResult& inResult) {
  std::string elements = Counted(inResult.fElements.size(), "element");
  if (inResult.fValues.empty()) {
    return elements;
  }
  return inResult.fElements.empty() ? Counted(inResult.fValues.size(), "value")
                                    : elements + " and " + Counted(inResult.fValues.size(), "other value");
}

Json ValueAsJson(const BakedValue& inValue) {
  const ValueInfo& info = inValue.fValues->GetInfo(inValue.fIndex);
  return {{"of", inValue.fValues->GetLabel()}, {"id", TextFromID(info.fID)}, {"name", info.fName}};
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
  std::vector<std::string> lines;
  for (const BakedElement& element : inResult.fElements) {
    lines.push_back(Printable(element.fElement->GetNameText()) + ": " + ChannelNames(element.fChannels));
  }
  for (const auto& [label, names] : ValueNames(inResult)) {
    lines.push_back(fmt::format("{}: {}", Printable(label), Printable(names)));
  }
  std::string text =
      fmt::format("{}: {} changed on frames {} to {} at {} a second\n", inSummary.fOutput, WhatChanged(inResult),
                  inResult.fRange.fFirst, inResult.fRange.fLast, inSummary.fFrameRate);
  const std::size_t listed = std::min(lines.size(), kElementsListed);
  for (std::size_t i = 0; i < listed; ++i) {
    text += fmt::format("  {}\n", lines[i]);
  }
  if (listed < lines.size()) {
    text += fmt::format("  and {} more\n", lines.size() - listed);
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
  Json values = Json::array();
  for (const BakedValue& value : inResult.fValues) {
    values.push_back(ValueAsJson(value));
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
       {"otherValues", std::move(values)},
       {"warnings", inSummary.fWarnings}});
}

}  // namespace qlx::host
