#include "CsvTable.h"

#include <fmt/format.h>

#include <functional>
#include <iterator>

#include "ChannelText.h"
#include "MCFrameTime.h"
#include "Text.h"
#include "model/IDText.h"

namespace qlx::host {

namespace {

// A column by its title and its numbers.
struct Column {
  std::string fTitle;
  std::function<real32(std::size_t)> fGet;  // by row
};

std::vector<Column> ColumnsOf(const BakeResult& inBake) {
  std::vector<Column> columns;
  for (const BakedElement& element : inBake.fElements) {
    for (const ChannelInfo* channel : ChannelsOf(element.fChannels)) {
      columns.push_back({fmt::format("{} {} ({})", element.fElement->GetNameText(), TextFromID(channel->fID),
                                     UnitOf(channel->fChannel)),
                         [&element, channel](std::size_t row) { return element.fFrames[row][channel->fChannel]; }});
    }
  }
  for (const BakedValue& value : inBake.fValues) {
    const ValueInfo& info = value.fValues->GetInfo(value.fIndex);
    for (uint32 i = 0; i < WidthOfType(info.fType); ++i) {
      columns.push_back({fmt::format("{} {}{}", value.fValues->GetLabel(), info.fName, NameOfNumber(info.fType, i)),
                         [&value, i](std::size_t row) { return value.fFrames[row][i]; }});
    }
  }
  return columns;
}

std::string Quoted(const std::string& inField) {
  if (inField.find_first_of(",\"\r\n") == std::string::npos) {
    return inField;
  }
  std::string quoted = "\"";
  for (const char character : inField) {
    quoted.append(character == '"' ? 2 : 1, character);
  }
  return quoted + '"';
}

}  // namespace

std::string MakeCsv(const BakeResult& inBake) {
  const std::vector<Column> columns = ColumnsOf(inBake);
  std::string text = "frame,seconds";
  for (const Column& column : columns) {
    text += ',' + Quoted(column.fTitle);
  }
  text += '\n';
  const auto out = std::back_inserter(text);
  for (std::size_t i = 0; i < inBake.fTimes.size(); ++i) {
    fmt::format_to(out, "{},{}", static_cast<int64>(inBake.fRange.fFirst) + static_cast<int64>(i),
                   static_cast<real64>(inBake.fTimes[i]) / kTicksPerSecond);
    for (const Column& column : columns) {
      fmt::format_to(out, ",{}", column.fGet(i));
    }
    text += '\n';
  }
  return text;
}

}  // namespace qlx::host
