#include "CsvTable.h"

#include <fmt/format.h>

#include <iterator>

#include "ChannelText.h"
#include "MCFrameTime.h"
#include "Text.h"

namespace qlx::host {

namespace {

struct Column {
  const BakedElement* fElement;
  const ChannelInfo* fChannel;
};

std::vector<Column> ColumnsOf(const BakeResult& inBake) {
  std::vector<Column> columns;
  for (const BakedElement& element : inBake.fElements) {
    for (const ChannelInfo* channel : ChannelsOf(element.fChannels)) {
      columns.push_back({&element, channel});
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

std::string TitleOf(const Column& inColumn) {
  return fmt::format("{} {} ({})", inColumn.fElement->fElement->GetNameText(), TextFromID(inColumn.fChannel->fID),
                     UnitOf(inColumn.fChannel->fChannel));
}

}  // namespace

std::string MakeCsv(const BakeResult& inBake) {
  const std::vector<Column> columns = ColumnsOf(inBake);
  std::string text = "frame,seconds";
  for (const Column& column : columns) {
    text += ',' + Quoted(TitleOf(column));
  }
  text += '\n';
  const auto out = std::back_inserter(text);
  for (std::size_t i = 0; i < inBake.fTimes.size(); ++i) {
    fmt::format_to(out, "{},{}", static_cast<int64>(inBake.fRange.fFirst) + static_cast<int64>(i),
                   static_cast<real64>(inBake.fTimes[i]) / kTicksPerSecond);
    for (const Column& column : columns) {
      fmt::format_to(out, ",{}", column.fElement->fFrames[i][column.fChannel->fChannel]);
    }
    text += '\n';
  }
  return text;
}

}  // namespace qlx::host
