#include "ValueSet.h"

#include "LinkLook.h"
#include "Scene.h"

namespace qlx::host {

std::size_t ValueSet::Add(ValueInfo inInfo, const ValueNumbers& inBase) {
  fValues.push_back({std::move(inInfo), inBase, inBase, inBase, {}});
  return fValues.size() - 1;
}

bool ValueSet::Write(std::size_t inIndex, const ValueNumbers& inNumbers) {
  Value& value = fValues[inIndex];
  if (fScene == nullptr || !IsFiniteValue(value.fInfo.fType, inNumbers)) {
    return false;
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->Write(*this, inIndex, inNumbers);
    return true;
  }
  if (fScene->IsEvaluating()) {
    if (!value.fIsWritten) {
      value.fUnmodified = value.fEvaluated;
      value.fIsWritten = true;
    }
    fScene->Touch(*this);
  } else {
    if (HasKeys(inIndex)) {
      SetKeysNow(value, inNumbers);
    } else {
      value.fBase = inNumbers;
    }
    value.fIsEdited = true;
    value.fUnmodified = inNumbers;
  }
  value.fEvaluated = inNumbers;
  return true;
}

bool ValueSet::SetBase(std::size_t inIndex, const ValueNumbers& inNumbers) {
  Value& value = fValues[inIndex];
  if (fScene == nullptr || !IsFiniteValue(value.fInfo.fType, inNumbers)) {
    return false;
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->Write(*this, inIndex, inNumbers);
    return true;
  }
  value.fBase = inNumbers;
  value.fIsEdited = true;
  if (fScene->IsEvaluating()) {
    fScene->Touch(*this);
  } else if (!HasKeys(inIndex)) {
    value.fEvaluated = value.fUnmodified = inNumbers;
  }
  return true;
}

const Curve* ValueSet::GetCurve(std::size_t inIndex, uint32 inNumber) const {
  const std::vector<Curve>& curves = fValues[inIndex].fCurves;
  return inNumber < curves.size() ? &curves[inNumber] : nullptr;
}

Curve& ValueSet::GetOrMakeCurve(std::size_t inIndex, uint32 inNumber) {
  return MakeCurves(fValues[inIndex])[inNumber];
}

std::vector<Curve>& ValueSet::MakeCurves(Value& ioValue) {
  if (ioValue.fCurves.empty()) {
    ioValue.fCurves.resize(WidthOfType(ioValue.fInfo.fType));
  }
  if (!fIsAnimated) {
    fIsAnimated = true;
    if (fScene != nullptr) {
      fScene->WorkChanged();
    }
  }
  return ioValue.fCurves;
}

void ValueSet::SetKeysNow(Value& ioValue, const ValueNumbers& inNumbers) {
  const auto interpolation = ioValue.fInfo.fType == "bool"_id ? Interpolation::kStep : Interpolation::kLinear;
  std::size_t number = 0;
  for (Curve& curve : MakeCurves(ioValue)) {
    curve.SetKey({.fTime = fScene->GetTime(), .fValue = inNumbers[number++], .fInterpolation = interpolation});
  }
}

bool ValueSet::EditCurves(std::size_t inIndex, const std::function<void(Curve&, uint32)>& inEdit) {
  if (fScene == nullptr) {
    return false;
  }
  if (LinkLook* const look = fScene->GetLook()) {
    look->WriteKeys(LinkValue::OfNumber(*this, inIndex));
    return true;
  }
  Value& value = fValues[inIndex];
  uint32 number = 0;
  for (Curve& curve : MakeCurves(value)) {
    inEdit(curve, number++);
    if (value.fInfo.fType == "bool"_id) {
      curve.MakeSteps();
    }
  }
  value.fIsEdited = true;
  if (!fScene->IsEvaluating()) {
    value.fEvaluated = value.fUnmodified = SampleAt(inIndex, fScene->GetTime());
  }
  return true;
}

bool ValueSet::HasKeys(std::size_t inIndex) const {
  const Curve* const curve = GetCurve(inIndex, 0);
  return curve != nullptr && !curve->IsEmpty();
}

ValueNumbers ValueSet::SampleAt(std::size_t inIndex, int32 inTime) const {
  std::array<std::size_t, kMostNumbers> hints{};
  return Sample(fValues[inIndex], inTime, hints);
}

ValueNumbers ValueSet::Sample(const Value& inValue, int32 inTime, std::array<std::size_t, kMostNumbers>& ioHints) {
  ValueNumbers numbers = inValue.fBase;
  for (std::size_t i = 0; i < inValue.fCurves.size(); ++i) {
    if (!inValue.fCurves[i].IsEmpty()) {
      numbers[i] = inValue.fCurves[i].Sample(inTime, ioHints[i]);
    }
  }
  return numbers;
}

void ValueSet::ClearEdited() {
  for (Value& value : fValues) {
    value.fIsEdited = false;
  }
}

void ValueSet::BeginEvaluation(int32 inTime) {
  for (Value& value : fValues) {
    value.fIsWritten = false;
    value.fEvaluated = value.fCurves.empty() ? value.fBase : Sample(value, inTime, value.fHints);
  }
}

bool ValueSet::IsModified(std::size_t inIndex) const {
  const Value& value = fValues[inIndex];
  return value.fIsWritten && value.fEvaluated != value.fUnmodified;
}

const ValueNumbers& ValueSet::GetUnmodified(std::size_t inIndex) const {
  const Value& value = fValues[inIndex];
  return value.fIsWritten ? value.fUnmodified : value.fEvaluated;
}

}  // namespace qlx::host
