#include "GltfUri.h"

#include <system_error>

#include "Base64.h"
#include "GltfFiles.h"

namespace qlx::host {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kScheme = "data:";
constexpr std::string_view kEncoding = ";base64";

bool IsLetter(char inEach) {
  return (inEach >= 'a' && inEach <= 'z') || (inEach >= 'A' && inEach <= 'Z');
}

bool IsDigit(char inEach) {
  return inEach >= '0' && inEach <= '9';
}

// What a path part may hold without being encoded. Bytes of UTF-8 stay as they are: glTF takes URIs with them.
bool IsPlain(char inEach) {
  constexpr std::string_view kSigns = "-._~/!$&'()*+,;=@";
  return IsLetter(inEach) || IsDigit(inEach) || kSigns.find(inEach) != std::string_view::npos ||
         static_cast<unsigned char>(inEach) >= 0x80;
}

int HexValue(char inEach) {
  if (IsDigit(inEach)) {
    return inEach - '0';
  }
  const char lower = static_cast<char>(inEach | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool HasScheme(std::string_view inUri) {
  const std::size_t colon = inUri.find(':');
  if (colon == std::string_view::npos || colon == 0 || !IsLetter(inUri[0])) {
    return false;
  }
  for (const char each : inUri.substr(0, colon)) {
    if (!IsLetter(each) && !IsDigit(each) && each != '+' && each != '-' && each != '.') {
      return false;
    }
  }
  return true;
}

std::string DecodePercent(std::string_view inUri, const Place& inPlace) {
  std::string text;
  for (std::size_t i = 0; i < inUri.size(); ++i) {
    char each = inUri[i];
    if (each == '%') {
      const int high = i + 2 < inUri.size() ? HexValue(inUri[i + 1]) : -1;
      const int low = i + 2 < inUri.size() ? HexValue(inUri[i + 2]) : -1;
      if (high < 0 || low < 0) {
        Fail(inPlace, Quoted(inUri) + " has a \"%\" without two hexadecimal digits after it");
      }
      each = static_cast<char>(high << 4 | low);
      i += 2;
    }
    if (each == '\0') {
      Fail(inPlace, "the URI holds a zero byte");
    }
    text += each;
  }
  return text;
}

}  // namespace

bool IsDataUri(std::string_view inUri) {
  return inUri.starts_with(kScheme);
}

std::vector<uint8> DecodeDataUri(std::string_view inUri, const Place& inPlace) {
  const std::size_t comma = inUri.find(',');
  if (comma == std::string_view::npos || !inUri.substr(0, comma).ends_with(kEncoding)) {
    Fail(inPlace, "a data URI must have \";base64,\" ahead of its data");
  }
  auto bytes = DecodeBase64(inUri.substr(comma + 1));
  if (!bytes) {
    Fail(inPlace, "the data of the data URI is not base 64");
  }
  return std::move(*bytes);
}

std::string EncodeDataUri(std::string_view inMimeType, std::span<const uint8> inBytes) {
  std::string uri(kScheme);
  uri.append(inMimeType).append(kEncoding).append(",");
  return uri + EncodeBase64(inBytes);
}

bool IsRelativeUri(std::string_view inUri) {
  return !inUri.empty() && !IsDataUri(inUri) && !HasScheme(inUri) && !inUri.starts_with('/');
}

fs::path FileOfUri(std::string_view inUri, const fs::path& inFolder, const Place& inPlace) {
  const std::string path = DecodePercent(inUri, inPlace);
  try {
    return inFolder / PathOfText(path);
  } catch (const std::exception&) {  // decoded bytes need be no UTF-8, and some systems' paths hold nothing else
    Fail(inPlace, Quoted(inUri) + " is no path");
  }
}

std::string UriOfFile(const fs::path& inFile, const fs::path& inFolder) {
  std::error_code error;
  const fs::path file = fs::weakly_canonical(fs::absolute(inFile, error), error);
  const fs::path folder = fs::weakly_canonical(fs::absolute(inFolder, error), error);
  if (error) {
    return {};
  }
  std::string uri;
  for (const char each : PathText(file.lexically_relative(folder))) {
    constexpr char kHex[] = "0123456789ABCDEF";
    if (IsPlain(each)) {
      uri += each;
    } else {
      const auto byte = static_cast<unsigned char>(each);
      uri += {'%', kHex[byte >> 4], kHex[byte & 15]};
    }
  }
  return uri;
}

}  // namespace qlx::host
