// The words of a text source, with their places.
#pragma once

#include <string>
#include <string_view>

#include "MCTypes.h"

namespace qlx::host {

struct SourcePlace {
  std::string fFile;
  int fLine = 1;
  int fColumn = 1;  // in characters, from 1
};

// Ends the compilation with "resources/dialogs.res:12:7: expected a label in double quotes".
[[noreturn]] void FailAt(const SourcePlace& inPlace, const std::string& inProblem);

struct SourceToken {
  enum class Kind : uint8 {
    kWord,    // radio, same-row, fModifyValue
    kID,      // 'cset'
    kText,    // "Replace", without its quotes
    kNumber,  // -12.5
    kOpen,
    kClose,
    kEnd,
  };

  Kind fKind = Kind::kEnd;
  SourcePlace fPlace;
  std::string fText;  // as a person wrote it; a text is without quotes and escapes
  MCID fID = 0;
  real64 fNumber = 0;
};

// "the word "radio"", "the end of the file"
std::string DescribeToken(const SourceToken& inToken);

// Blanks and line ends only part words; # begins a comment that ends with its line. A text stands in one line and has
// the escapes \" and \\.
class SourceLexer {
 public:
  // Both texts must outlive the lexer. What is not UTF-8 is refused.
  SourceLexer(const std::string& inFile, std::string_view inText);

  SourceToken Next();

 private:
  char Peek() const { return fOffset < fText.size() ? fText[fOffset] : '\0'; }
  void Advance();
  void SkipBlanks();
  void TakeID(SourceToken& ioToken);
  void TakeText(SourceToken& ioToken);
  void TakeNumber(SourceToken& ioToken);

  std::string_view fText;
  std::size_t fOffset = 0;
  SourcePlace fPlace;
};

}  // namespace qlx::host
