#include "TextPath.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "MCException.h"
#include "TreeWalk.h"

namespace qlx {

namespace {

constexpr std::size_t kKeySize = 4;
constexpr std::size_t kKeyStep = 5;  // a key and its comma

std::string_view ViewOf(const TMCString& inText) {
  return {inText.CStr(), inText.ByteLength()};
}

std::string_view Behind(std::string_view inText, std::size_t inCount) {
  return inText.substr(std::min(inCount, inText.size()));
}

template <class Object>
TMCCountedPtr<I3DShAttributes> QueryAttributes(Object* inObject) {
  auto found = MCQuery<I3DShAttributes>(inObject);
  if (!found) {
    throw TMCException(MC_E_INVALIDARG, "TextPath", __LINE__);
  }
  return found;
}

template <class Object>
TMCCountedPtr<ParamInfo> ResolveBelow(Object* inObject, std::string_view inKeys) {
  return inObject ? ResolveParamKeys(*QueryAttributes(inObject), inKeys) : nullptr;
}

// The decimal count that a text begins with.
std::optional<uint32> ParseDecimal(std::string_view inText) {
  uint32 value = 0;
  const auto [stop, error] = std::from_chars(inText.data(), inText.data() + inText.size(), value);
  return error == std::errc() ? std::optional(value) : std::nullopt;
}

// The element that an object is, or belongs to.
TMCCountedPtr<TreeElement> FindElement(IMCUnknown* inObject) {
  if (const auto owned = MCQuery<I3DShOwned>(inObject)) {
    return MCShare(owned->GetOwnerElement());
  }
  return MCQuery<TreeElement>(inObject);
}

TMCCountedPtr<TreeElement> FindSearchRoot(IMCUnknown* inObject) {
  if (const auto owned = MCQuery<I3DShOwned>(inObject)) {
    TreeElement* const owner = owned->GetOwnerElement();
    return owner ? MCShare(owner->GetParentRaw()) : nullptr;
  }
  auto element = MCQuery<TreeElement>(inObject);
  while (element && !MCQuery<AttributesSet>(element)) {
    element.Share(element->GetParentRaw());
  }
  return element;
}

TMCCountedPtr<ParamInfo> ResolveInNamedElement(IMCUnknown* inObject, std::string_view inText) {
  const std::string_view rest = Behind(inText, 6);
  const std::size_t end = rest.find('>');
  const auto root = FindSearchRoot(inObject);
  if (end == std::string_view::npos || !root) {
    return nullptr;
  }
  const std::string_view name = rest.substr(0, end);
  TreeElement* element = NextBelow(*root, *root);
  while (element && ViewOf(element->GetName()) != name) {
    element = NextBelow(*root, *element);
  }
  return element ? ResolveBelow(element, Behind(rest, end + 1)) : nullptr;
}

TMCCountedPtr<ParamInfo> ResolveMorph(IMCUnknown* inObject, std::string_view inText) {
  const std::size_t comma = inText.find(',');
  if (comma == std::string_view::npos) {
    return nullptr;
  }
  const auto group = ParseDecimal(inText.substr(0, comma));
  const auto morph = ParseDecimal(inText.substr(comma + 1));
  const auto holder = MCQuery<I3DShObjectHolder>(FindElement(inObject));
  I3DShObject* const object = holder ? holder->GetHeldObject() : nullptr;
  if (!group || !morph || !object) {
    return nullptr;
  }
  TMCCountedPtr<IMCUnknown> data;
  object->GetObjectData(data.WriteInto());
  const auto morphs = MCQuery<I3DShMorphData>(data);
  TMCCountedPtr<IMCUnknown> found;
  if (morphs) {
    morphs->GetMorph(found.WriteInto(), *group, *morph);
  }
  return MCQuery<ParamInfo>(found);
}

TMCCountedPtr<ParamInfo> ResolveInShader(IMCUnknown* inObject, std::string_view inText) {
  const auto instance = MCQuery<I3DShInstance>(inObject);
  const int32 index = ParseIndexKey(inText);
  I3DShShader* const shader = instance && index >= 0 ? instance->GetShader(static_cast<uint32>(index)) : nullptr;
  return shader ? ResolveBelow(shader, Behind(inText, kKeyStep)) : nullptr;
}

MCID ReadKey(std::string_view inText) {
  MCID key = 0;
  for (const char byte : inText.substr(0, kKeySize)) {
    key = (key << 8) | static_cast<uint8>(byte);
  }
  return key;
}

}  // namespace

TMCCountedPtr<ParamInfo> ResolveTextPath(IMCUnknown* inObject, const TMCString& inText) {
  const std::string_view text = ViewOf(inText);
  const std::string_view rest = Behind(text, kKeyStep);
  if (!inObject || text.size() < kKeySize) {
    return nullptr;
  }
  switch (ReadKey(text)) {
    case "aset"_id:
      return ResolveInNamedElement(inObject, text);
    case "self"_id:
      return ResolveBelow(inObject, rest);
    case "RMPH"_id:
      return ResolveMorph(inObject, rest);
    case "shdr"_id:
      return ResolveInShader(inObject, rest);
    default:
      return nullptr;
  }
}

TMCCountedPtr<ParamInfo> ResolveParamKeys(I3DShAttributes& inAttributes, std::string_view inKeys) {
  TimeBasedData* const data = inAttributes.GetTimeBasedData();
  if (!data || inKeys.size() < kKeySize) {
    return nullptr;
  }
  const MCID key = ReadKey(inKeys);
  const uint32 count = data->GetParamCount();
  for (uint32 i = 0; i < count; ++i) {
    TMCCountedPtr<ParamInfo> param;
    data->GetParamInfo(param.WriteInto(), i);
    const MCID id = param ? param->GetParamID() : 0;
    // The id decides here whether a parameter is hidden, and the key in property trees, which also give every id below
    // four blanks an index key: the row of such a parameter is not found again.
    if (!param || IsHiddenKey(id) || (id == 0 ? MakeIndexKey(i) : id) != key) {
      continue;
    }
    TimeBasedData* const group = param->GetGroupData();
    if (!group) {
      return param;
    }
    if (group->GetParamCount() > 0) {
      return ResolveBelow(group->GetOwner(), Behind(inKeys, kKeyStep));
    }
  }
  return nullptr;
}

MCID MakeIndexKey(uint32 inPosition) {
  const uint32 thousands = inPosition / 1000;
  const uint32 hundreds = inPosition / 100;
  const uint32 tens = inPosition / 10;
  char text[4 * 10];
  char* end = text;
  for (const uint32 part : {thousands, hundreds, tens, inPosition - tens - hundreds - thousands}) {
    end = std::to_chars(end, text + sizeof(text), part).ptr;
  }
  return ReadKey({text, static_cast<std::size_t>(end - text)});
}

int32 ParseIndexKey(std::string_view inText) {
  int32 value = -53328;  // '0' times 1111
  int32 place = 1000;
  for (const char digit : inText.substr(0, kKeySize)) {
    value += static_cast<uint8>(digit) * place;
    place /= 10;
  }
  return value;
}

bool IsMorphPath(const TMCString& inText) {
  return ViewOf(inText).starts_with("RMPH");
}

bool IsShaderPath(const TMCString& inText) {
  return ViewOf(inText).starts_with("shdr");
}

bool IsModifierPath(const TMCString& inText) {
  return ViewOf(inText).starts_with("self,modi");
}

bool IsHiddenKey(MCID inKey) {
  switch (inKey) {
    case "fiOp"_id:
    case "acLL"_id:
    case "HOTP"_id:
    case "LINK"_id:
    case "ascL"_id:
    case "fleF"_id:
    case "fraF"_id:
    case "mimc"_id:
      return true;
    default:
      return false;
  }
}

}  // namespace qlx
