#include "ValueParameters.h"

#include "LinkLook.h"
#include "Scene.h"

namespace qlx::host {

bool SetValue::Read(void* outValue) const {
  if (fSet->GetScene() == nullptr) {
    return false;
  }
  if (LinkLook* const look = fSet->GetScene()->GetLook()) {
    look->Read(LinkValue::OfNumber(*fSet, fIndex));
  }
  JoinValue(GetType(), fSet->GetEvaluated(fIndex), outValue);
  return true;
}

bool SetValue::Write(const void* inValue) {
  return fSet->Write(fIndex, SplitValue(GetType(), inValue));
}

bool SetValue::ReadBase(void* outValue) const {
  if (fSet->GetScene() == nullptr) {
    return false;
  }
  JoinValue(GetType(), fSet->GetBase(fIndex), outValue);
  return true;
}

bool SetValue::WriteBase(const void* inValue) {
  return fSet->SetBase(fIndex, SplitValue(GetType(), inValue));
}

bool SetValue::SampleAt(int32 inTime, void* outValue) const {
  if (fSet->GetScene() == nullptr) {
    return false;
  }
  if (LinkLook* const look = fSet->GetScene()->GetLook()) {
    look->Read(LinkValue::OfNumber(*fSet, fIndex).AsKeys(true));
  }
  JoinValue(GetType(), fSet->SampleAt(fIndex, inTime), outValue);
  return true;
}

const Curve* SetValue::GetCurve(uint32 inNumber) const {
  return fSet->GetScene() == nullptr ? nullptr : fSet->GetCurve(fIndex, inNumber);
}

bool SetValue::EditCurves(const std::function<void(Curve&, uint32)>& inEdit) {
  return fSet->EditCurves(fIndex, inEdit);
}

void AddParameters(ParameterGroup& ioGroup, const std::shared_ptr<ValueSet>& inSet, std::size_t inFirst,
                   std::size_t inCount) {
  for (std::size_t i = inFirst; i < inFirst + inCount; ++i) {
    const ValueInfo& info = inSet->GetInfo(i);
    ioGroup.Add(MakeHosted<Parameter>(info.fID, Parameter::MakeName(info.fName.c_str()), std::in_place_type<SetValue>,
                                      inSet, i));
  }
}

void AddTimeLines(TimeLines& ioTimeLines, const std::shared_ptr<ValueSet>& inSet) {
  for (std::size_t i = 0; i < inSet->GetCount(); ++i) {
    ioTimeLines.Add({std::make_unique<SetValue>(inSet, i), inSet->GetInfo(i).fID, 1.0});
  }
}

}  // namespace qlx::host
