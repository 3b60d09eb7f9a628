#include "Script.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace qlx::host {

namespace {

constexpr std::size_t kDeepestBlock = 32;

bool IsBlank(char inCharacter) {
  return inCharacter == ' ' || inCharacter == '\t' || inCharacter == '\r';
}

// Reads one line: its words, and whether braces stand at its ends.
class ScriptLine {
 public:
  ScriptLine(const std::string& inScript, int inLine, std::string_view inText)
      : fScript(inScript), fLine(inLine), fText(inText) {}

  struct Content {
    std::vector<std::string> fWords;
    bool fOpens = false;
    bool fCloses = false;
  };
  Content Read() {
    Content content;
    while (SkipBlanks()) {
      if (content.fOpens || content.fCloses) {
        Fail("nothing may stand behind a brace on its line");
      }
      if (TakeBrace('{')) {
        content.fOpens = true;
      } else if (TakeBrace('}')) {
        content.fCloses = true;
      } else {
        content.fWords.push_back(TakeWord());
      }
    }
    if (content.fOpens && content.fWords.empty()) {
      Fail("a { stands behind an action, on its line");
    }
    if (content.fCloses && !content.fWords.empty()) {
      Fail("a } stands on a line of its own");
    }
    return content;
  }

 private:
  [[noreturn]] void Fail(const std::string& inProblem) const { throw ScriptError(fScript, fLine, inProblem); }

  // False at the end of the line or at a comment: "#3" is the number of a row, "# 3" and a line's first # are none.
  bool SkipBlanks() {
    while (fNext < fText.size() && IsBlank(fText[fNext])) {
      ++fNext;
    }
    const bool isFirst = fText.substr(0, fNext).find_first_not_of(" \t\r") == std::string_view::npos;
    return fNext < fText.size() &&
           (fText[fNext] != '#' || (!isFirst && fNext + 1 < fText.size() && !IsBlank(fText[fNext + 1])));
  }

  bool TakeBrace(char inBrace) {
    const bool isBrace = fText[fNext] == inBrace && (fNext + 1 == fText.size() || IsBlank(fText[fNext + 1]));
    fNext += isBrace ? 1 : 0;
    return isBrace;
  }

  std::string TakeWord() {
    if (fText[fNext] == '"') {
      return TakeQuoted();
    }
    std::string word;
    while (fNext < fText.size() && !IsBlank(fText[fNext])) {
      word.push_back(fText[fNext++]);
    }
    return word;
  }

  std::string TakeQuoted() {
    std::string word;
    for (++fNext; fNext < fText.size() && fText[fNext] != '"'; ++fNext) {
      if (fText[fNext] == '\\' && ++fNext == fText.size()) {
        break;
      }
      word.push_back(fText[fNext]);
    }
    if (fNext >= fText.size()) {
      Fail("a quoted text does not end on its line");
    }
    ++fNext;
    return word;
  }

  const std::string& fScript;
  int fLine;
  std::string_view fText;
  std::size_t fNext = 0;
};

}  // namespace

ScriptError::ScriptError(const std::string& inScript, int inLine, const std::string& inProblem)
    : UserError(fmt::format("{}, line {}", inScript, inLine), inProblem) {}

std::vector<ScriptStep> ParseScript(const std::string& inScript, std::string_view inText) {
  std::vector<ScriptStep> open(1);  // a step for the whole, then those whose blocks are open
  int line = 0;
  while (!inText.empty()) {
    const std::size_t end = std::min(inText.find('\n'), inText.size());
    ++line;
    ScriptLine::Content content = ScriptLine(inScript, line, inText.substr(0, end)).Read();
    inText.remove_prefix(std::min(end + 1, inText.size()));
    if (content.fCloses) {
      if (open.size() == 1) {
        throw ScriptError(inScript, line, "a } without a { in front of it");
      }
      ScriptStep closed = std::move(open.back());
      open.pop_back();
      open.back().fBlock.push_back(std::move(closed));
      continue;
    }
    if (content.fWords.empty()) {
      continue;
    }
    ScriptStep step{line, std::move(content.fWords), content.fOpens, {}};
    if (!content.fOpens) {
      open.back().fBlock.push_back(std::move(step));
    } else if (open.size() > kDeepestBlock) {
      throw ScriptError(inScript, line, fmt::format("blocks are at most {} deep", kDeepestBlock));
    } else {
      open.push_back(std::move(step));
    }
  }
  if (open.size() > 1) {
    throw ScriptError(inScript, open.back().fLine, "its { is never closed");
  }
  return std::move(open.front().fBlock);
}

std::string TextOfStep(const ScriptStep& inStep) {
  std::string text;
  for (const std::string& word : inStep.fWords) {
    text += text.empty() ? "" : " ";
    if (word.empty() || word.find_first_of(" \t\"") != std::string::npos) {
      text.push_back('"');
      for (const char character : word) {
        text += character == '"' || character == '\\' ? "\\" : "";
        text.push_back(character);
      }
      text.push_back('"');
    } else {
      text += word;
    }
  }
  return text;
}

}  // namespace qlx::host
