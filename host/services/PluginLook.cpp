#include "PluginLook.h"

#include <string>
#include <vector>

#include "ComponentCall.h"
#include "model/Element.h"

namespace qlx::host {

namespace {

struct OpenField {
  const char* fName;
  bool fValue;
};

constexpr OpenField kOpenLink[] = {
    {"fStartOn", false},         {"fEndOn", false},           {"fDelayOn", false},         {"fDecayOn", false},
    {"fGrowOn", false},          {"fOscillateOn", false},     {"fRangeOn", false},         {"fLowerLimitOn", false},
    {"fUpperLimitOn", false},    {"fPositionInvertX", false}, {"fPositionInvertY", false}, {"fPositionInvertZ", false},
    {"fRotationInvertX", false}, {"fRotationInvertY", false}, {"fRotationInvertZ", false}, {"fCombineReplace", true},
};

bool IsSet(const ParameterMap& inMap, const char* inName, const void* inBlock) {
  const ParameterField* const field = inMap.Find(inName);
  const ParameterValue value = field == nullptr ? ParameterValue() : ParameterMap::Read(*field, inBlock);
  const bool* const flag = std::get_if<bool>(&value);
  return flag != nullptr && *flag;
}

void Set(const ParameterMap& inMap, const char* inName, const ParameterValue& inValue, void* ioBlock) {
  if (const ParameterField* const field = inMap.Find(inName)) {
    ParameterMap::Write(*field, inValue, ioBlock);
  }
}

}  // namespace

void OpenForLook(MCID inClass, const ParameterMap& inMap, void* ioBlock) {
  if (inClass != "fQLX"_id) {
    return;
  }
  for (const OpenField& field : kOpenLink) {
    Set(inMap, field.fName, field.fValue, ioBlock);
  }
  if (!IsSet(inMap, "fModifySet", ioBlock)) {
    Set(inMap, "fModifyAdd", true, ioBlock);
    Set(inMap, "fModifyValue", 0.0f, ioBlock);
  }
}

PluginLook::PluginLook(MCID inClass, TMCCountedPtr<IExDataExchanger> inCopy, TMCCountedPtr<I3DExModifier> inModifier)
    : fClass(inClass), fCopy(std::move(inCopy)), fModifier(std::move(inModifier)) {}

PluginLook::~PluginLook() {
  CallComponent("Release", [this] {
    fModifier.Clear();
    fCopy.Clear();
  });
}

TMCCountedPtr<Modifier> PluginLook::Create(MCID inClass, IExDataExchanger* inCopy) {
  auto copy = MCAdopt(inCopy);
  TMCCountedPtr<I3DExModifier> modifier;
  CallComponent("QueryInterface", [&] { modifier = MCQuery<I3DExModifier>(copy); });
  return modifier ? TMCCountedPtr<Modifier>(MakeHosted<PluginLook>(inClass, std::move(copy), std::move(modifier)))
                  : nullptr;
}

void PluginLook::Apply(Element& inElement) {
  CallComponent("SetTreeElement", [&] { fModifier->SetTreeElement(static_cast<TreeElement*>(&inElement)); });
}

}  // namespace qlx::host
