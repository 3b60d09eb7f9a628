#include "GltfProblem.h"

namespace qlx::host {

std::string Place::GetText() const {
  if (fParent == nullptr) {
    return {};
  }
  std::string text = fParent->GetText();
  if (fName.data() == nullptr) {
    return text + "[" + std::to_string(fIndex) + "]";
  }
  return text.empty() ? std::string(fName) : text + "." + std::string(fName);
}

void Fail(const Place& inPlace, const std::string& inProblem) {
  const std::string place = inPlace.GetText();
  throw GltfProblem(place.empty() ? inProblem : place + ": " + inProblem);
}

std::string Quoted(std::string_view inText) {
  constexpr std::size_t kLongest = 80;
  std::string text = "\"";
  for (const char each : inText.substr(0, kLongest)) {
    const bool isControl = static_cast<unsigned char>(each) < 0x20 || each == 0x7F;
    text += isControl ? '?' : each;
  }
  return text + (inText.size() > kLongest ? "...\"" : "\"");
}

}  // namespace qlx::host
