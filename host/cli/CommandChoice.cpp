#include "CommandChoice.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "Session.h"
#include "model/ClosestNames.h"
#include "model/IDText.h"
#include "model/KeySelection.h"
#include "ui/PartValue.h"

namespace qlx::host {

namespace {

char LowerOf(char inCharacter) {
  return inCharacter >= 'A' && inCharacter <= 'Z' ? static_cast<char>(inCharacter + ('a' - 'A')) : inCharacter;
}

bool IsSame(std::string_view inA, std::string_view inB) {
  return std::equal(inA.begin(), inA.end(), inB.begin(), inB.end(),
                    [](char inX, char inY) { return LowerOf(inX) == LowerOf(inY); });
}

int32 TimeOfWord(Scene& ioScene, const std::string& inWord, const std::string& inPlace) {
  const std::optional<PartValue> frame = Convert(PartValue(inWord), "in32"_id);
  if (!frame) {
    throw UserError(inPlace, fmt::format("\"{}\" is no frame", inWord));
  }
  return TimeOfFrame(ioScene, std::get<int32>(*frame), inPlace);
}

}  // namespace

const ExtensionRecord& NeedCommand(const Host& inHost, const std::string& inWord, const std::string& inPlace) {
  std::vector<std::string> names;
  for (const ExtensionRecord& record : inHost.GetCatalog()->GetClasses()) {
    if (record.fFamily != "scmd"_id) {
      continue;
    }
    for (const std::string& name : {CommandName(record), record.fLabel, record.fName, TextFromID(record.fID)}) {
      if (IsSame(name, inWord)) {
        return record;
      }
    }
    names.insert(names.end(), {CommandName(record), record.fName, TextFromID(record.fID)});
  }
  const std::string closest = ClosestText(inWord, names);
  throw UserError(inPlace, fmt::format("there is no command \"{}\"{}", inWord,
                                       closest.empty() ? "; `qlx menu` lists those that there are" : closest));
}

void SelectElements(Scene& ioScene, std::span<const std::string> inNames, const std::string& inPlace) {
  std::vector<Element*> elements;
  for (const std::string& name : inNames) {
    elements.push_back(&NeedElement(ioScene, name, inPlace));
  }
  ioScene.Select(std::move(elements));
}

void SelectKeysOf(Scene& ioScene, std::span<const std::string> inWords, const std::string& inPlace) {
  int32 from = 0;
  int32 to = std::numeric_limits<int32>::max();
  if (inWords.size() == 2) {
    from = TimeOfWord(ioScene, inWords[0], inPlace);
    to = TimeOfWord(ioScene, inWords[1], inPlace);
  } else if (inWords.size() == 1 && inWords[0] == "all") {
    from = std::numeric_limits<int32>::min();
  } else if (inWords.size() == 1 && inWords[0] == "none") {
    to = -1;
  } else {
    throw UserError(inPlace, "keys are chosen by all, none, or the first and the last frame");
  }
  for (Element* const element : ioScene.GetSelection()) {
    SelectKeys(*element, from, to);
  }
}

}  // namespace qlx::host
