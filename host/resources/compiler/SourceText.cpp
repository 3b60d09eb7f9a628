#include "SourceText.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

#include "resources/ResourceBytes.h"
#include "resources/ResourceError.h"

namespace qlx::host {

namespace {

using TokenKind = SourceToken::Kind;

bool IsLetter(char inChar) {
  return (inChar >= 'a' && inChar <= 'z') || (inChar >= 'A' && inChar <= 'Z') || inChar == '_';
}

bool IsDigit(char inChar) {
  return inChar >= '0' && inChar <= '9';
}

bool IsLineEnd(char inChar) {
  return inChar == '\n' || inChar == '\r';
}

}  // namespace

void FailAt(const SourcePlace& inPlace, const std::string& inProblem) {
  throw ResourceError(fmt::format("{}:{}:{}: {}", inPlace.fFile, inPlace.fLine, inPlace.fColumn, inProblem));
}

std::string DescribeToken(const SourceToken& inToken) {
  switch (inToken.fKind) {
    case TokenKind::kWord:
      return fmt::format("the word \"{}\"", inToken.fText);
    case TokenKind::kID:
      return fmt::format("the id '{}'", inToken.fText);
    case TokenKind::kText:
      return fmt::format("the text \"{}\"", inToken.fText);
    case TokenKind::kNumber:
      return fmt::format("the number {}", inToken.fText);
    case TokenKind::kOpen:
      return "{";
    case TokenKind::kClose:
      return "}";
    default:
      return "the end of the file";
  }
}

SourceLexer::SourceLexer(const std::string& inFile, std::string_view inText) : fText(inText) {
  fPlace.fFile = inFile;
  const std::size_t good = Utf8StartLength(fText);
  if (good < fText.size()) {
    while (fOffset < good) {
      Advance();
    }
    FailAt(fPlace, "this is not UTF-8");
  }
}

// By one character.
void SourceLexer::Advance() {
  const bool isLineEnd = Peek() == '\n' || (Peek() == '\r' && fText.substr(fOffset + 1, 1) != "\n");
  ++fOffset;
  while ((static_cast<uint8>(Peek()) & 0xC0) == 0x80) {
    ++fOffset;
  }
  if (isLineEnd) {
    ++fPlace.fLine;
    fPlace.fColumn = 1;
  } else {
    ++fPlace.fColumn;
  }
}

void SourceLexer::SkipBlanks() {
  while (fOffset < fText.size()) {
    if (Peek() == '#') {
      while (fOffset < fText.size() && !IsLineEnd(Peek())) {
        Advance();
      }
    } else if (Peek() == ' ' || Peek() == '\t' || IsLineEnd(Peek())) {
      Advance();
    } else {
      return;
    }
  }
}

SourceToken SourceLexer::Next() {
  SkipBlanks();
  SourceToken token;
  token.fPlace = fPlace;
  if (fOffset >= fText.size()) {
    return token;
  }
  const char first = Peek();
  if (first == '{' || first == '}') {
    token.fKind = first == '{' ? TokenKind::kOpen : TokenKind::kClose;
    Advance();
  } else if (first == '\'') {
    TakeID(token);
  } else if (first == '"') {
    TakeText(token);
  } else if (IsDigit(first) || first == '-') {
    TakeNumber(token);
  } else if (IsLetter(first)) {
    token.fKind = TokenKind::kWord;
    while (IsLetter(Peek()) || IsDigit(Peek()) || Peek() == '-') {
      token.fText.push_back(Peek());
      Advance();
    }
  } else {
    FailAt(fPlace,
           fmt::format("no word, id, text or number begins with \"{}\"",
                       IsUtf8Text(fText.substr(fOffset, 1)) ? fText.substr(fOffset, 1) : "a character like this"));
  }
  return token;
}

void SourceLexer::TakeID(SourceToken& ioToken) {
  ioToken.fKind = TokenKind::kID;
  Advance();
  while (fOffset < fText.size() && Peek() != '\'' && !IsLineEnd(Peek())) {
    ioToken.fText.push_back(Peek());
    ioToken.fID = ioToken.fID << 8 | static_cast<uint8>(Peek());
    ++fOffset;
    ++fPlace.fColumn;
  }
  bool isPlain = Peek() == '\'' && ioToken.fText.size() == 4;
  for (const char each : ioToken.fText) {
    isPlain = isPlain && each >= 0x20 && each <= 0x7E;
  }
  if (!isPlain) {
    FailAt(ioToken.fPlace, "an id is four plain characters in single quotes, such as 'cset'");
  }
  Advance();
}

void SourceLexer::TakeText(SourceToken& ioToken) {
  ioToken.fKind = TokenKind::kText;
  Advance();
  while (Peek() != '"') {
    if (fOffset >= fText.size() || IsLineEnd(Peek())) {
      FailAt(ioToken.fPlace, "this text has no \" at its end, which stands in the same line");
    }
    if (Peek() == '\\') {
      Advance();
      if (Peek() != '"' && Peek() != '\\') {
        FailAt(fPlace, "after a \\ stands \" or \\");
      }
    }
    const std::size_t start = fOffset;
    Advance();
    ioToken.fText += fText.substr(start, fOffset - start);
  }
  Advance();
}

void SourceLexer::TakeNumber(SourceToken& ioToken) {
  ioToken.fKind = TokenKind::kNumber;
  do {
    ioToken.fText.push_back(Peek());
    Advance();
  } while (IsDigit(Peek()) || Peek() == '.' || IsLetter(Peek()));
  std::istringstream stream(ioToken.fText);
  stream.imbue(std::locale::classic());
  stream >> ioToken.fNumber;
  if (!stream || stream.peek() != std::istringstream::traits_type::eof() ||
      std::fabs(ioToken.fNumber) > static_cast<real64>(std::numeric_limits<real32>::max())) {
    FailAt(ioToken.fPlace, fmt::format("\"{}\" is no number", ioToken.fText));
  }
}

}  // namespace qlx::host
