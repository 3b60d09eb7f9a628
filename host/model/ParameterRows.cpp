#include "ParameterRows.h"

#include <fmt/format.h>

#include <cstddef>

#include "Scene.h"
#include "TextPathRows.h"

namespace qlx::host {

namespace {

std::string TextOf(const TMCString& inText) {
  return {inText.CStr(), inText.ByteLength()};
}

// All parameters of this host are its own objects, with values that can have keys.
AnimatedValue* ValueOf(ParamInfo* inParameter) {
  const auto* const own = dynamic_cast<const Parameter*>(inParameter);
  ValueAccess* const value = own == nullptr ? nullptr : own->GetValueAccess();
  return value == nullptr ? nullptr : value->AsAnimated();
}

ValueNumbers NumbersAt(const AnimatedValue& inValue, int32 inTime) {
  alignas(std::max_align_t) uint8 bytes[ParamType::kMaxSize] = {};
  inValue.SampleAt(inTime, bytes);
  return SplitValue(inValue.GetType(), bytes);
}

class RowVisitor final : public TextPathVisitor {
 public:
  RowVisitor(Element& inElement, const std::function<void(const ParameterRow&)>& inVisit)
      : fElement(inElement), fVisit(inVisit) {}

  void VisitRow(const TextPathRow& inRow) override {
    const AnimatedValue* const value = ValueOf(inRow.fParam);
    if (value == nullptr) {
      return;  // a group
    }
    const bool isNumber = inRow.fKind == TextPathRowKind::kComponent;
    ParameterRow row;
    row.fPath = TextOf(inRow.fPath);
    row.fType = value->GetType();
    row.fName = TextOf(inRow.fParam->GetParamName()) + (isNumber ? NameOfNumber(row.fType, inRow.fComponent) : "");
    row.fValue = TextOfNumbers(row.fType, NumbersAt(*value, fElement.GetOwnScene()->GetStart()),
                               isNumber ? static_cast<int>(inRow.fComponent) : -1);
    row.fIsAnimated = value->HasKeys();
    row.fIsFound = ResolveTextPath(static_cast<TreeElement*>(&fElement), inRow.fPath).Get() == inRow.fParam;
    fVisit(row);
  }

 private:
  Element& fElement;
  const std::function<void(const ParameterRow&)>& fVisit;
};

}  // namespace

void ForEachParameter(Element& inElement, const std::function<void(const ParameterRow&)>& inVisit) {
  RowVisitor visitor(inElement, inVisit);
  auto* const object = static_cast<TreeElement*>(&inElement);
  BuildSelfRows(object, TextPathFilter::kAll, visitor);
  BuildShaderRows(object, TextPathFilter::kAll, visitor);
  BuildMorphRows(object, visitor);
}

uint32 FoundParameter::GetCount() const {
  return fNumber < 0 ? WidthOfType(fParameter->GetDataType()) : 1;
}

FoundParameter FindParameter(Element& inElement, const std::string& inPath) {
  constexpr std::size_t kLongest = 1023;
  FoundParameter found;
  if (inPath.size() > kLongest || inPath.find('\0') != std::string::npos) {
    return found;
  }
  const TMCString1023 path(inPath.data(), inPath.size());
  const auto parameter = ResolveTextPath(static_cast<TreeElement*>(&inElement), path);
  if (ValueOf(parameter.Get()) == nullptr) {
    return found;
  }
  found.fParameter = MCShare(dynamic_cast<Parameter*>(parameter.Get()));
  const TextPathComponents components = GetTextPathComponents(parameter->GetDataType());
  for (uint32 i = 0; i < components.fCount; ++i) {
    if (inPath.ends_with(components.fSuffixes[i])) {
      found.fNumber = static_cast<int>(i);
    }
  }
  return found;
}

std::string TextOfNumber(real32 inNumber) {
  return fmt::format("{}", inNumber + 0.0f);
}

std::string TextOfNumbers(MCID inType, const ValueNumbers& inNumbers, int inNumber) {
  if (inType == "bool"_id) {
    return inNumbers[0] >= 0.5f ? "true" : "false";
  }
  if (inNumber >= 0) {
    return TextOfNumber(inNumbers[static_cast<std::size_t>(inNumber)]);
  }
  std::string text;
  for (uint32 i = 0; i < WidthOfType(inType); ++i) {
    text += i == 0 ? "" : " ";
    text += TextOfNumber(inNumbers[i]);
  }
  return text;
}

}  // namespace qlx::host
