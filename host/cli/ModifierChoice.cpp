#include "ModifierChoice.h"

#include <fmt/format.h>

#include "Text.h"
#include "model/ClosestNames.h"

namespace qlx::host {

namespace {

struct ModifierWord {
  const char* fWord;
  MCID fClass;
};

constexpr ModifierWord kModifierWords[] = {{"qlx", "fQLX"_id}, {"pin", "fPIN"_id}, {"slider", "fSLD"_id}};

}  // namespace

PluginModifier& AddModifierTo(Host& inHost, Element& ioElement, const std::string& inWord, const std::string& inPlace) {
  for (const ModifierWord& row : kModifierWords) {
    if (inWord != row.fWord) {
      continue;
    }
    const TMCCountedPtr<PluginModifier> modifier = inHost.CreateModifier(row.fClass);
    if (!modifier) {
      throw UserError(inPlace, fmt::format("the plug-in makes no modifier \"{}\"", inWord));
    }
    ioElement.AddModifier(*modifier, ioElement.GetModifiers().size());
    return *modifier;
  }
  const std::string closest = ClosestText(inWord, {"qlx", "pin", "slider"});
  throw UserError(inPlace, fmt::format("there is no modifier \"{}\"{}", inWord,
                                       closest.empty() ? ": there are qlx, pin and slider" : closest));
}

PluginModifier& NeedModifier(const Element& inElement, uint32 inIndex, const std::string& inPlace) {
  const auto& modifiers = inElement.GetModifiers();
  const std::string name = inElement.GetNameText();
  if (inIndex >= modifiers.size()) {
    throw UserError(inPlace, modifiers.empty() ? fmt::format("\"{}\" has no modifier", name)
                                               : fmt::format("\"{}\" has no modifier {}: it has {}, from number 0",
                                                             name, inIndex, Counted(modifiers.size(), "modifier")));
  }
  auto* const modifier = dynamic_cast<PluginModifier*>(modifiers[inIndex].Get());
  if (!modifier) {
    throw UserError(inPlace, fmt::format("modifier {} of \"{}\" is none of the plug-in", inIndex, name));
  }
  return *modifier;
}

}  // namespace qlx::host
