#include "Controls.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Form.h"
#include "MCString.h"

namespace qlx::host {

ToggleControl::ToggleControl(std::shared_ptr<const ControlDescription> inDescription)
    : Part(std::move(inDescription)), fIsOn(GetDescription().fDefault != 0) {}

bool ToggleControl::TakeValue(const PartValue& inValue) {
  fIsOn = std::get<bool>(inValue);
  if (fIsOn && GetForm() && GetKind() == ControlKind::kRadio) {
    for (Part* other : GetForm()->GetRadioGroup(GetDescription().fRadioGroup)) {
      if (other != this) {
        static_cast<ToggleControl*>(other)->fIsOn = false;
      }
    }
  }
  return true;
}

NumberControl::NumberControl(std::shared_ptr<const ControlDescription> inDescription) : Part(std::move(inDescription)) {
  const real32 start = GetDescription().fDefault;
  fValue = std::isfinite(start) ? start : 0.0f;
  if (GetKind() == ControlKind::kInteger) {
    fValue = Convert(fValue, "in32"_id).value_or(int32{0});
  }
}

bool NumberControl::TakeValue(const PartValue& inValue) {
  fValue = inValue;
  return true;
}

SliderControl::SliderControl(std::shared_ptr<const ControlDescription> inDescription)
    : PartWith(std::move(inDescription)),
      fLabel(GetDescription().fLabel),
      fMinimum(GetDescription().fMinimum),
      fMaximum(GetDescription().fMaximum) {}

void SliderControl::SetSliderLabel(const TMCString& inText) {
  fLabel = TextFrom(inText);
}

void SliderControl::SetSliderRange(real32 inMinimum, real32 inMaximum, int32 /*inOne*/) {
  if (std::isfinite(inMinimum) && std::isfinite(inMaximum)) {
    fMinimum = std::min(inMinimum, inMaximum);
    fMaximum = std::max(inMinimum, inMaximum);
  }
}

bool TextControl::TakeValue(const PartValue& inValue) {
  fText = std::get<std::string>(inValue);
  return true;
}

bool VectorControl::TakeValue(const PartValue& inValue) {
  fVector = std::get<std::array<real32, 3>>(inValue);
  return true;
}

LabelledPart::LabelledPart(std::shared_ptr<const ControlDescription> inDescription)
    : PartWith(std::move(inDescription)), fLabel(GetDescription().fLabel) {}

void LabelledPart::GetLabel(TMCString& outText) {
  StoreText(fLabel, outText);
}

void LabelledPart::SetLabel(const TMCString& inText, int32 /*inOne*/) {
  fLabel = TextFrom(inText);
}

}  // namespace qlx::host
