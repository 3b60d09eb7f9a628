#include "TokenFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "MCMemoryStream.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

using MCToken::Kind;

bool IsLineEnd(char inByte) {
  return inByte == '\r' || inByte == '\n';
}

// A word is the id of what follows it in its line; everything else is a value.
class TokenFileReader {
 public:
  TokenFileReader(const std::string& inName, const std::vector<uint8>& inBytes,
                  const std::function<void(const TokenItem&)>& inListener)
      : fName(inName),
        fBytes(reinterpret_cast<const char*>(inBytes.data()), inBytes.size()),
        fListener(inListener),
        fStream(const_cast<uint8*>(inBytes.data()), static_cast<int32>(inBytes.size()), kStreamReadable) {}

  TokenCounts Read() {
    if (fBytes.substr(0, kUtf8MarkedEncoding.fMarkByteCount) == "\xEF\xBB\xBF") {
      fStream.Seek(kUtf8MarkedEncoding.fMarkByteCount, kFromStart);
    }
    for (;;) {
      const Kind kind = MCToken::PeekKind(fStream);
      const std::size_t start = Place();
      if (kind == Kind::kEnd) {
        break;
      }
      if (fHasID && kind != Kind::kOpen && IsOnNextLine(start)) {
        EmitID();
      }
      Take(kind, start);
    }
    EmitID();
    if (!fOpen.empty()) {
      Fail(fOpen.back(), "this { is never closed");
    }
    return fCounts;
  }

 private:
  [[noreturn]] void Fail(std::size_t inOffset, const std::string& inProblem) const {
    std::size_t line = 1;
    for (std::size_t i = 0; i < inOffset; ++i) {
      line += fBytes[i] == '\n' || (fBytes[i] == '\r' && fBytes.substr(i + 1, 1) != "\n") ? 1 : 0;
    }
    throw UserError(fName, fmt::format("line {}, byte {}: {}", line, inOffset, inProblem));
  }

  std::size_t Place() const { return static_cast<std::size_t>(fStream.Tell()); }
  bool IsOnNextLine(std::size_t inStart) const {
    const std::string_view between = fBytes.substr(fIDEnd, inStart - fIDEnd);
    return std::any_of(between.begin(), between.end(), IsLineEnd);
  }

  void Take(Kind inKind, std::size_t inStart) {
    switch (inKind) {
      case Kind::kBlock:
        return TakeBlock(inStart);
      case Kind::kOpen:
        NextToken(inKind, inStart);
        Emit(inKind, {}, inStart);
        fOpen.push_back(inStart);
        ++fCounts.fGroups;
        fCounts.fDeepest = std::max(fCounts.fDeepest, fOpen.size());
        return;
      case Kind::kClose:
        EmitID();
        NextToken(inKind, inStart);
        if (fOpen.empty()) {
          Fail(inStart, "a } without its {");
        }
        fOpen.pop_back();
        return Emit(inKind, {}, inStart);
      default:
        return TakeValue(inKind, inStart);
    }
  }

  void TakeValue(Kind inKind, std::size_t inStart) {
    const std::string_view text = NextToken(inKind, inStart);
    if (inKind == Kind::kWord && !fHasID) {
      fHasID = true;
      fID = text;
      fIDStart = inStart;
      fIDEnd = Place();
      return;
    }
    ++fCounts.fValues;
    Emit(inKind, text, inStart);
  }

  std::string_view NextToken(Kind inKind, std::size_t inStart) {
    MCToken::Buffer buffer;
    if (MCToken::ReadToken(fStream, buffer) != MC_S_OK) {
      Fail(inStart, inKind == Kind::kString ? "this text never ends" : "the last word is cut by the end of the file");
    }
    return fBytes.substr(inStart, Place() - inStart);
  }

  // The header is looked at here, before the reader of the format sees it: that one throws without a place.
  void TakeBlock(std::size_t inStart) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::size_t place = inStart + 1;
    uint32 length = 0;
    for (int digits = 0; digits < 8; ++place) {
      if (place >= fBytes.size() || fBytes[place] == '$') {
        Fail(inStart, "a binary block without the eight digits of its length");
      }
      const std::size_t digit = kDigits.find(fBytes[place]);
      if (digit != std::string_view::npos) {
        length = length << 4 | static_cast<uint32>(digit);
        ++digits;
      }
    }
    const std::size_t data = std::min(place + 1, fBytes.size());
    const bool isKnown = length != MCToken::kUnknownLength;
    if (isKnown && length > fBytes.size() - data) {
      Fail(inStart, fmt::format("a binary block of {} bytes, of which {} are there", length, fBytes.size() - data));
    }
    const std::size_t end = fBytes.find('$', isKnown ? data + length : data);
    if (end == std::string_view::npos) {
      Fail(inStart, "this binary block never ends");
    }
    fStream.Seek(static_cast<int32>(end + 1), kFromStart);
    ++fCounts.fValues;
    Emit(Kind::kBlock, fBytes.substr(data, end - data), inStart);
  }

  void Emit(Kind inKind, std::string_view inText, std::size_t inStart) {
    const std::string_view id = fHasID ? fID : std::string_view();
    fListener({inKind, id, inText, fOpen.size(), fHasID ? fIDStart : inStart});
    fHasID = false;
  }

  void EmitID() {
    if (fHasID) {
      Emit(Kind::kEnd, {}, fIDStart);
    }
  }

  const std::string& fName;
  std::string_view fBytes;
  const std::function<void(const TokenItem&)>& fListener;
  TMCMemoryStream fStream;
  std::vector<std::size_t> fOpen;  // where the groups around the present place begin
  bool fHasID = false;
  std::string_view fID;
  std::size_t fIDStart = 0;
  std::size_t fIDEnd = 0;
  TokenCounts fCounts;
};

}  // namespace

TokenCounts ReadTokenFile(const std::string& inName, const std::vector<uint8>& inBytes,
                          const std::function<void(const TokenItem&)>& inListener) {
  if (inBytes.empty()) {
    throw UserError(inName, "an empty file");
  }
  if (inBytes.size() > static_cast<std::size_t>(std::numeric_limits<int32>::max())) {
    throw UserError(inName, "larger than 2 GiB");
  }
  return TokenFileReader(inName, inBytes, inListener).Read();
}

}  // namespace qlx::host
