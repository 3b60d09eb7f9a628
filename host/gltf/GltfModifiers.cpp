#include "GltfModifiers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "GltfExtensions.h"
#include "GltfScene.h"
#include "model/CutText.h"
#include "services/LinkFacts.h"
#include "services/PluginModifier.h"

namespace qlx::host {

namespace {

std::string TextOfID(MCID inID) {
  return {static_cast<char>(inID >> 24), static_cast<char>(inID >> 16), static_cast<char>(inID >> 8),
          static_cast<char>(inID)};
}

MCID ClassOf(const Json& inModifier, const Place& inPlace) {
  const Json* text = FindMember(inModifier, "class");
  if (text == nullptr || !text->is_string() || text->get_ref<const std::string&>().size() != 4) {
    Fail(inPlace.Member("class"), "must be a text of four characters");
  }
  MCID id = 0;
  for (const char each : text->get_ref<const std::string&>()) {
    id = id << 8 | static_cast<uint8>(each);
  }
  return id;
}

void CheckMembers(const Json& inObject, std::initializer_list<std::string_view> inKnown, const Place& inPlace) {
  if (!inObject.is_object()) {
    Fail(inPlace, "must be an object");
  }
  for (const auto& [name, value] : inObject.items()) {
    if (std::find(inKnown.begin(), inKnown.end(), name) == inKnown.end()) {
      Fail(inPlace, "unknown member " + Quoted(name));
    }
  }
}

real32 RealOf(const Json& inValue, const Place& inPlace) {
  if (!inValue.is_number()) {
    Fail(inPlace, "must be a number");
  }
  const auto value = inValue.get<real64>();
  if (!(std::fabs(value) <= static_cast<real64>(std::numeric_limits<real32>::max()))) {
    Fail(inPlace, "is too large for a 32-bit real");
  }
  return static_cast<real32>(value);
}

int32 WholeOf(const Json& inValue, const Place& inPlace) {
  const auto value = inValue.is_number_integer() ? inValue.get<real64>() : 0.5;
  if (value != std::clamp(std::trunc(value), -2147483648.0, 2147483647.0)) {
    Fail(inPlace, "must be a whole number of 32 bits");
  }
  return static_cast<int32>(value);
}

std::string TextOf(const Json& inValue, MCID inType, const Place& inPlace) {
  if (!inValue.is_string()) {
    Fail(inPlace, "must be a text");
  }
  const auto& text = inValue.get_ref<const std::string&>();
  const std::size_t longest = LongestFieldText(inType);
  if (text.size() > longest) {
    Fail(inPlace,
         "is a text of " + std::to_string(text.size()) + " bytes, and " + std::to_string(longest) + " is the most");
  }
  if (text.find('\0') != std::string::npos) {
    Fail(inPlace, "has a NUL in it");
  }
  return text;
}

ParameterValue ValueOf(const ParameterField& inField, const Json& inValue, const Place& inPlace) {
  switch (inField.fType) {
    case "in32"_id:
      return WholeOf(inValue, inPlace);
    case "re32"_id:
      return RealOf(inValue, inPlace);
    case "VEC3"_id: {
      if (!inValue.is_array() || inValue.size() != 3) {
        Fail(inPlace, "must be an array of three numbers");
      }
      return std::array<real32, 3>{RealOf(inValue[0], inPlace.At(0)), RealOf(inValue[1], inPlace.At(1)),
                                   RealOf(inValue[2], inPlace.At(2))};
    }
    case "s255"_id:
    case "sdyn"_id:
      return TextOf(inValue, inField.fType, inPlace);
    default:
      if (!inValue.is_boolean()) {
        Fail(inPlace, "must be true or false");
      }
      return inValue.get<bool>();
  }
}

// A text that was cut inside a character, as a name of 255 bytes may be, gets U+FFFD for what is left of that: the
// document is UTF-8.
Json JsonOfText(const std::string& inText) {
  return Json::parse(Json(inText).dump(-1, ' ', false, Json::error_handler_t::replace));
}

// That may be longer by then than the field takes.
Json JsonOfText(const std::string& inText, MCID inType) {
  return CutText(JsonOfText(inText).get_ref<const std::string&>(), LongestFieldText(inType));
}

Json JsonOf(const ParameterValue& inValue, MCID inType) {
  if (const bool* flag = std::get_if<bool>(&inValue)) {
    return *flag;
  }
  if (const int32* whole = std::get_if<int32>(&inValue)) {
    return *whole;
  }
  if (const real32* real = std::get_if<real32>(&inValue)) {
    return ShortNumber(*real);
  }
  if (const auto* text = std::get_if<std::string>(&inValue)) {
    return JsonOfText(*text, inType);
  }
  const auto& vector = std::get<std::array<real32, 3>>(inValue);
  return Json::array({ShortNumber(vector[0]), ShortNumber(vector[1]), ShortNumber(vector[2])});
}

class ModifierReader {
 public:
  explicit ModifierReader(Host& inHost) : fHost(inHost) {}

  void Read(const Json& inBlock, Element& ioElement, const Place& inPlace) {
    CheckMembers(inBlock, {"modifiers", "extensions", "extras"}, inPlace);
    const Json* list = FindMember(inBlock, "modifiers");
    const Place place = inPlace.Member("modifiers");
    if (list == nullptr || !list->is_array()) {
      Fail(place, "must be an array");
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
      ReadOne((*list)[i], ioElement, place.At(i));
    }
  }

  bool IsMaking() const { return fHost.GetPlugin() != nullptr; }
  bool HasSeenAny() const { return fHasSeenAny; }

 private:
  void ReadOne(const Json& inModifier, Element& ioElement, const Place& inPlace) {
    fHasSeenAny = true;
    CheckMembers(inModifier, {"class", "enabled", "parameters", "private"}, inPlace);
    const MCID id = ClassOf(inModifier, inPlace);
    const Json* enabled = FindMember(inModifier, "enabled");
    if (enabled != nullptr && !enabled->is_boolean()) {
      Fail(inPlace.Member("enabled"), "must be true or false");
    }
    const ParameterMap* map = fHost.GetCatalog()->FindMap(id);
    if (map == nullptr && !IsMaking()) {
      return;  // of a plug-in that knows more than this program
    }
    TMCCountedPtr<PluginModifier> modifier;
    if (IsMaking()) {
      modifier = Make(id, inPlace);
      map = modifier->GetParameterMap();
    }
    if (const Json* parameters = FindMember(inModifier, "parameters")) {
      ReadParameters(*parameters, map, modifier.Get(), inPlace.Member("parameters"));
    }
    if (modifier) {
      if (const Json* text = FindMember(inModifier, "private")) {
        ReadPrivate(*text, *modifier, inPlace.Member("private"));
      }
      modifier->SetEnabled(enabled == nullptr || enabled->get<bool>());
      ioElement.AddModifier(*modifier, ioElement.GetModifiers().size());
    }
  }

  TMCCountedPtr<PluginModifier> Make(MCID inClass, const Place& inPlace) {
    if (fHost.GetCatalog()->FindClass("modi"_id, inClass) == nullptr) {
      Fail(inPlace.Member("class"), Quoted(TextOfID(inClass)) + " is an unknown class");
    }
    auto modifier = fHost.CreateModifier(inClass);
    if (!modifier) {
      Fail(inPlace.Member("class"), "the plug-in makes no modifier of the class " + Quoted(TextOfID(inClass)));
    }
    return modifier;
  }

  static void ReadParameters(const Json& inParameters, const ParameterMap* inMap, PluginModifier* ioModifier,
                             const Place& inPlace) {
    if (!inParameters.is_object()) {
      Fail(inPlace, "must be an object");
    }
    for (const auto& [name, value] : inParameters.items()) {
      const ParameterField* field = inMap == nullptr ? nullptr : inMap->Find(name);
      if (field == nullptr) {
        Fail(inPlace.Member(name), "the class has no such field");
      }
      const ParameterValue read = ValueOf(*field, value, inPlace.Member(name));
      if (ioModifier != nullptr) {
        ioModifier->SetField(*field, read);
      }
    }
  }

  static void ReadPrivate(const Json& inText, PluginModifier& ioPlugin, const Place& inPlace) {
    if (!inText.is_string()) {
      Fail(inPlace, "must be a text");
    }
    if (const auto problem = ioPlugin.ReadPrivate(inText.get_ref<const std::string&>())) {
      Fail(inPlace, *problem);
    }
  }

  Host& fHost;
  bool fHasSeenAny = false;
};

// Adds the ids of the elements that the modifier refers to.
Json JsonOfModifier(Modifier& inModifier, bool inSwitchedOff, std::set<uint32>& ioReferred) {
  Json json = {{"class", TextOfID(inModifier.GetModifierClass())},
               {"enabled", inModifier.IsEnabled() && !inSwitchedOff}};
  auto* plugin = dynamic_cast<PluginModifier*>(&inModifier);
  const ParameterMap* map = plugin == nullptr ? nullptr : plugin->GetParameterMap();
  if (map != nullptr) {
    Json& parameters = json["parameters"] = Json::object();
    for (const ParameterField& field : map->GetFields()) {
      parameters[field.fName] = JsonOf(plugin->GetField(field), field.fType);
    }
  }
  if (const auto text = plugin == nullptr ? std::nullopt : plugin->WritePrivate()) {
    json["private"] = JsonOfText(*text);
    const LinkFacts facts = ReadLinkFacts(*text);
    ioReferred.insert({facts.fControllerID, facts.fSourceID});
  }
  return json;
}

bool IsUsed(const Json& inDocument, const char* inExtension) {
  const Json& nodes = ArrayOf(inDocument, "nodes");
  return std::any_of(nodes.begin(), nodes.end(), [&](const Json& node) {
    const Json* extensions = FindMember(node, "extensions");
    return extensions != nullptr && extensions->contains(inExtension);
  });
}

// Takes an extension from a node, and with the last one their object.
void RemoveExtension(Json& ioNode, const char* inName) {
  Json* extensions = FindMember(ioNode, "extensions");
  if (extensions == nullptr || extensions->erase(inName) == 0) {
    return;
  }
  if (extensions->empty()) {
    ioNode.erase("extensions");
  }
}

void WriteNode(Json& ioNode, const Element& inElement, bool inSwitchedOff, std::size_t inIndex,
               std::set<uint32>& ioReferred) {
  if (!inElement.GetModifiers().empty()) {
    Json list = Json::array();
    for (const auto& modifier : inElement.GetModifiers()) {
      list.push_back(JsonOfModifier(*modifier, inSwitchedOff, ioReferred));
    }
    ioNode["extensions"][kModifiersExtension]["modifiers"] = std::move(list);
  } else {
    RemoveExtension(ioNode, kModifiersExtension);
  }
  const uint32 id = const_cast<Element&>(inElement).GetUniqueID();
  if (!inElement.GetModifiers().empty() || id != DefaultElementID(inIndex)) {
    ioNode["extensions"][kElementExtension]["id"] = id;
  }
}

}  // namespace

bool ReadModifiers(const Json& inDocument, const std::vector<Element*>& inElements, Host& inHost) {
  ModifierReader reader(inHost);
  const Json& nodes = ArrayOf(inDocument, "nodes");
  const Place root;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const Json* extensions = FindMember(nodes[i], "extensions");
    const Json* block = extensions == nullptr ? nullptr : FindMember(*extensions, kModifiersExtension);
    if (block != nullptr) {
      reader.Read(*block, *inElements[i], root.Member("nodes").At(i).Member("extensions").Member(kModifiersExtension));
    }
  }
  if (reader.HasSeenAny() && !reader.IsMaking()) {
    inHost.GetDiagnostics().Warn("no plug-in is loaded: modifiers stay in the file and do nothing");
  }
  return reader.IsMaking();
}

void WriteModifiers(Json& ioDocument, const std::vector<Element*>& inElements, WrittenModifiers inWritten) {
  std::set<uint32> referred;
  for (std::size_t i = 0; i < inElements.size(); ++i) {
    Json& node = ioDocument["nodes"][i];
    if (inWritten == WrittenModifiers::kNone) {
      RemoveExtension(node, kModifiersExtension);
      // No link is left to refer to the element, and without the extension it has this id all the same.
      if (inElements[i]->GetUniqueID() == DefaultElementID(i)) {
        RemoveExtension(node, kElementExtension);
      }
    } else {
      WriteNode(node, *inElements[i], inWritten == WrittenModifiers::kSwitchedOff, i, referred);
    }
  }
  for (std::size_t i = 0; i < inElements.size(); ++i) {
    if (referred.contains(inElements[i]->GetUniqueID())) {
      ioDocument["nodes"][i]["extensions"][kElementExtension]["id"] = inElements[i]->GetUniqueID();
    }
  }
}

void ListOwnExtensions(Json& ioDocument) {
  for (const char* own : {kModifiersExtension, kElementExtension}) {
    if (!IsUsed(ioDocument, own)) {
      UnlistExtension(ioDocument, own);
    } else {
      ListExtension(ioDocument, own);
    }
  }
}

}  // namespace qlx::host
