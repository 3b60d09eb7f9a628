#include "Parameter.h"

#include <cstring>
#include <memory_resource>
#include <new>

#include "ParamHolder.h"
#include "WorkAhead.h"

namespace qlx::host {

// Custom values have names of any length. Not by `new`: a text of the foundation then stands in its memory service, and
// a parameter may outlive that.
Parameter::Name Parameter::MakeName(const char* inName) {
  auto name = std::make_shared<const TMCString63>(inName);
  if (std::strlen(inName) == name->ByteLength()) {
    return name;
  }
  return std::make_shared<const TMCString1023>(inName);
}

Parameter::Parameter(MCID inID, Name inName, TMCCountedPtr<ParameterGroup> inGroup)
    : fID(inID), fName(std::move(inName)), fGroup(std::move(inGroup)) {}

namespace {

// Side by side and in the order of their making: each is a block of its own cache lines, and the space that the C
// runtime leaves around such blocks would cost large scenes more than it saves. It is never ended, as parameters may
// outlive everything else.
std::pmr::memory_resource& GetParameterMemory() {
#if defined(__SANITIZE_ADDRESS__)
  return *std::pmr::new_delete_resource();  // the sanitizer sees every block
#else
  static auto* const memory =
      new std::pmr::synchronized_pool_resource({.max_blocks_per_chunk = 1U << 16, .largest_required_pool_block = 256});
  return *memory;
#endif
}

}  // namespace

void* Parameter::operator new(std::size_t inSize, std::align_val_t inAlignment) {
  return GetParameterMemory().allocate(inSize, static_cast<std::size_t>(inAlignment));
}

void Parameter::operator delete(void* inObject, std::size_t inSize, std::align_val_t inAlignment) {
  GetParameterMemory().deallocate(inObject, inSize, static_cast<std::size_t>(inAlignment));
}

Parameter::~Parameter() {
  if (fValue != nullptr) {
    fValue->~ValueAccess();
  }
}

void Parameter::ListWorkMemory(WorkLines& ioLines) const {
  ioLines.Add(this, kCacheLine);
}

namespace {

// A holder that bytes of this type can go through.
bool Fits(const ParamHolder& inHolder, MCID inType) {
  return inType != 0 && inHolder.IsValid() && inHolder.GetType() == inType;
}

}  // namespace

TimeBasedData* Parameter::GetGroupData() {
  return fGroup.Get();
}

void Parameter::GetHolder(TimeBasedData** outHolder) {
  StoreForCaller<TimeBasedData>(outHolder, fHolder);
}

MCResult Parameter::ReadParamValue(ParamHolder& outValue) {
  if (!Fits(outValue, GetDataType())) {
    return MC_E_INVALIDARG;
  }
  return fValue->Read(outValue.GetData()) ? MC_S_OK : MC_E_NOTVALID;
}

MCResult Parameter::WriteParamValue(const ParamHolder& inValue) {
  if (!Fits(inValue, GetDataType())) {
    return MC_E_INVALIDARG;
  }
  return fValue->Write(inValue.GetData()) ? MC_S_OK : MC_E_NOTVALID;
}

IKeyframeHolder* Parameter::GetKeyframeHolder() {
  return GetAnimated() == nullptr ? nullptr : this;
}

MCResult Parameter::ReadValueAtTime(int32 inTime, ParamHolder& outValue) {
  const AnimatedValue* const animated = GetAnimated();
  if (animated == nullptr || !Fits(outValue, animated->GetType())) {
    return MC_E_INVALIDARG;
  }
  return animated->SampleAt(inTime, outValue.GetData()) ? MC_S_OK : MC_E_NOTVALID;
}

void Parameter::DeleteKey(int32 inTime) {
  AnimatedValue* const animated = GetAnimated();
  if (animated != nullptr && animated->HasKeys()) {
    animated->EditCurves([&](Curve& edited, uint32 /*number*/) { edited.DeleteKeyAt(inTime); });
  }
}

MCResult Parameter::SetKey(int32 inTime, const ParamHolder& inValue) {
  AnimatedValue* const animated = GetAnimated();
  if (animated == nullptr || !Fits(inValue, animated->GetType())) {
    return MC_E_INVALIDARG;
  }
  const ValueNumbers numbers = SplitValue(animated->GetType(), inValue.GetData());
  if (!IsFiniteValue(animated->GetType(), numbers)) {
    return MC_E_INVALIDARG;
  }
  const bool isSet = animated->EditCurves([&](Curve& curve, uint32 number) {
    curve.SetKey({.fTime = inTime, .fValue = numbers[number], .fInterpolation = Interpolation::kStep});
  });
  return isSet ? MC_S_OK : MC_E_NOTVALID;
}

bool Parameter::Offers(const MCGuid& inID) const {
  return inID != IKeyframeHolder::kInterfaceID || GetAnimated() != nullptr;
}

ParameterGroup::~ParameterGroup() {
  for (const auto& parameter : fParameters) {
    parameter->fHolder = nullptr;
    if (parameter->fGroup) {
      parameter->fGroup->fParent = nullptr;
    }
  }
}

void ParameterGroup::Add(TMCCountedPtr<Parameter> inParameter) {
  inParameter->fHolder = this;
  if (inParameter->fGroup) {
    inParameter->fGroup->fParent = this;
  }
  fParameters.push_back(std::move(inParameter));
}

ParameterGroup& ParameterGroup::AddGroup(MCID inID, Parameter::Name inName) {
  auto group = MakeHosted<ParameterGroup>(inID, nullptr);
  ParameterGroup& added = *group;
  Add(MakeHosted<Parameter>(inID, std::move(inName), std::move(group)));
  return added;
}

void ParameterGroup::GetParamInfo(ParamInfo** outParam, uint32 inIndex) {
  StoreForCaller<ParamInfo>(outParam, inIndex < fParameters.size() ? fParameters[inIndex].Get() : nullptr);
}

IMCUnknown* ParameterGroup::GetOwner() {
  return fOwner != nullptr ? fOwner : static_cast<TimeBasedData*>(this);
}

void ParameterGroup::GetParentData(TimeBasedData** outParent) {
  StoreForCaller<TimeBasedData>(outParent, fParent);
}

}  // namespace qlx::host
