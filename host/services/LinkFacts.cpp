#include "LinkFacts.h"

#include <string_view>
#include <vector>

#include "TokenFile.h"
#include "model/Diagnostics.h"
#include "model/Scene.h"

namespace qlx::host {

namespace {

// A text as it stands in a token file: between quotes, with a backslash ahead of each quote and backslash.
std::string Unquoted(std::string_view inText) {
  if (inText.size() < 2 || inText.front() != '"') {
    return std::string(inText);
  }
  std::string text;
  for (std::size_t i = 1; i + 1 < inText.size(); ++i) {
    i += inText[i] == '\\' ? 1 : 0;
    text.push_back(inText[i]);
  }
  return text;
}

int DigitOf(char inDigit) {
  const std::size_t value = std::string_view("0123456789abcdef").find(inDigit);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

// 0 for what is no reference of this host.
uint32 IDOfDigits(const std::string& inDigits) {
  std::vector<uint8> bytes;
  for (std::size_t i = 0; i + 1 < inDigits.size(); i += 2) {
    const int high = DigitOf(inDigits[i]);
    const int low = DigitOf(inDigits[i + 1]);
    if (high < 0 || low < 0) {
      return 0;
    }
    bytes.push_back(static_cast<uint8>(high * 16 + low));
  }
  return Scene::IDOfReference(bytes.data(), bytes.size());
}

void TakeFact(const TokenItem& inItem, LinkFacts& ioFacts) {
  const std::string text = Unquoted(inItem.fText);
  if (inItem.fID == "pset") {
    ioFacts.fTargetSet = text != "0";
  } else if (inItem.fID == "cpst") {
    ioFacts.fControllerSet = text != "0";
  } else if (inItem.fID == "cpsl") {
    ioFacts.fTargetPath = text;
  } else if (inItem.fID == "spar") {
    ioFacts.fControllerPath = text;
  } else if (inItem.fID == "sobj") {
    ioFacts.fHasControllerRef = !text.empty();
    ioFacts.fControllerID = IDOfDigits(text);
  } else if (inItem.fID == "bobj") {
    ioFacts.fHasSourceRef = !text.empty();
    ioFacts.fSourceID = IDOfDigits(text);
  }
}

}  // namespace

LinkFacts ReadLinkFacts(const std::string& inPrivate) {
  LinkFacts facts;
  const std::vector<uint8> bytes(inPrivate.begin(), inPrivate.end());
  try {
    ReadTokenFile("", bytes, [&facts](const TokenItem& item) {
      if (item.fDepth == 0) {
        TakeFact(item, facts);
      }
    });
  } catch (const UserError&) {
    return facts;  // up to there
  }
  return facts;
}

}  // namespace qlx::host
