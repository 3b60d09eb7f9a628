#include "GltfJson.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace qlx::host {

namespace {

constexpr std::size_t kDeepest = 128;
constexpr std::size_t kMostMembers = 20000;

[[noreturn]] void FailAt(std::string_view inText, std::size_t inOffset, const std::string& inProblem) {
  const std::string_view before = inText.substr(0, inOffset);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t lineStart = before.rfind('\n') + 1;  // 0 when there is no line before
  throw GltfProblem("line " + std::to_string(line) + ", column " + std::to_string(inOffset - lineStart + 1) + ": " +
                    inProblem);
}

// Walks over the text once without recursion. Text that is no JSON gets through: the parser refuses that.
void CheckLimits(std::string_view inText) {
  std::vector<std::size_t> members;
  bool inString = false;
  for (std::size_t i = 0; i < inText.size(); ++i) {
    const char each = inText[i];
    if (inString) {
      i += each == '\\' ? 1 : 0;
      inString = each != '"';
    } else if (each == '"') {
      inString = true;
    } else if (each == '{' || each == '[') {
      members.push_back(0);
      if (members.size() > kDeepest) {
        FailAt(inText, i, "nests deeper than " + std::to_string(kDeepest) + " levels");
      }
    } else if ((each == '}' || each == ']') && !members.empty()) {
      members.pop_back();
    } else if (each == ':' && !members.empty() && ++members.back() > kMostMembers) {
      FailAt(inText, i, "an object has more than " + std::to_string(kMostMembers) + " members");
    }
  }
}

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error while ..." without what stands before
// the problem itself.
std::string ProblemOf(const std::string& inMessage) {
  const std::size_t syntax = inMessage.find("syntax error");
  if (syntax != std::string::npos) {
    return "not valid JSON, " + inMessage.substr(syntax);
  }
  const std::size_t end = inMessage.find("] ");
  return "not valid JSON, " + (end == std::string::npos ? inMessage : inMessage.substr(end + 2));
}

}  // namespace

Json ParseJson(std::string_view inText) {
  CheckLimits(inText);
  try {
    return Json::parse(inText);
  } catch (const Json::parse_error& error) {
    const std::size_t offset = error.byte == 0 ? 0 : error.byte - 1;
    FailAt(inText, std::min(offset, inText.size()), ProblemOf(error.what()));
  } catch (const Json::exception& error) {  // a number that no real holds
    throw GltfProblem(ProblemOf(error.what()));
  }
}

const Json* FindMember(const Json& inObject, const char* inName) {
  const auto found = inObject.find(inName);
  return found == inObject.end() ? nullptr : &*found;
}

Json* FindMember(Json& ioObject, const char* inName) {
  const auto found = ioObject.find(inName);
  return found == ioObject.end() ? nullptr : &*found;
}

const Json& ArrayOf(const Json& inObject, const char* inName) {
  static const Json kEmpty = Json::array();
  const Json* found = FindMember(inObject, inName);
  return found == nullptr ? kEmpty : *found;
}

uint64 NumberOf(const Json& inObject, const char* inName, uint64 inDefault) {
  const Json* found = FindMember(inObject, inName);
  return found == nullptr ? inDefault : found->get<uint64>();
}

std::string ReadableName(std::string inName) {
  std::replace_if(
      inName.begin(), inName.end(), [](char each) { return static_cast<unsigned char>(each) < 0x20 || each == 0x7F; },
      ' ');
  return inName;
}

Json ShortNumber(real32 inValue) {
  char text[32];
  const auto written = std::to_chars(text, text + sizeof text, inValue);
  real64 value = 0;
  std::from_chars(text, written.ptr, value);
  return value;
}

}  // namespace qlx::host
