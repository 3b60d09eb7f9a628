#include "ModifierText.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

#include "JsonText.h"
#include "model/IDText.h"

namespace qlx::host {

namespace {

std::vector<std::string> LinesOf(PluginModifier& inModifier) {
  std::istringstream text(inModifier.WritePrivate().value_or(""));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) {
    line.erase(line.find_last_not_of("\r\t ") + 1);
    lines.push_back(line.substr(std::min(line.find_first_not_of("\t "), line.size())));
  }
  return lines;
}

}  // namespace

const char* ClassNameOf(const Modifier& inModifier) {
  const auto* const made = dynamic_cast<const PluginModifier*>(&inModifier);
  return made == nullptr ? "unknown class" : made->GetClassName();
}

Json FieldAsJson(const PluginModifier& inModifier, const ParameterField& inField) {
  const ParameterValue value = inModifier.GetField(inField);
  if (const auto* const number = std::get_if<real32>(&value)) {
    return ShortNumber(*number);
  }
  if (const auto* const vector = std::get_if<std::array<real32, 3>>(&value)) {
    return {ShortNumber((*vector)[0]), ShortNumber((*vector)[1]), ShortNumber((*vector)[2])};
  }
  return std::visit([](const auto& plain) { return Json(plain); }, value);
}

std::vector<std::string> SettingsOf(Host& inHost, Modifier& inModifier) {
  std::vector<std::string> settings;
  auto* const made = dynamic_cast<PluginModifier*>(&inModifier);
  const auto fresh =
      made == nullptr ? TMCCountedPtr<PluginModifier>() : PluginModifier::Create(inHost, made->GetModifierClass());
  if (!fresh) {
    return settings;
  }
  if (made->GetParameterMap() != nullptr && fresh->GetParameterMap() != nullptr) {
    for (const ParameterField& field : made->GetParameterMap()->GetFields()) {
      const Json value = FieldAsJson(*made, field);
      if (value != FieldAsJson(*fresh, field)) {
        settings.push_back(fmt::format("{} {}", field.fName, JsonLine(value)));
      }
    }
  }
  const std::vector<std::string> usual = LinesOf(*fresh);
  for (const std::string& line : LinesOf(*made)) {
    if (std::find(usual.begin(), usual.end(), line) == usual.end()) {
      settings.push_back(line);
    }
  }
  return settings;
}

}  // namespace qlx::host
