#include "ParamHolder.h"

#include "COMSafeUtilities.h"
#include "MCException.h"
#include "MCMemory.h"

namespace qlx {

ParamTypeRegistry* gParamTypeRegistry = nullptr;

void SetParamTypeRegistry(ParamTypeRegistry* inRegistry) {
  gParamTypeRegistry = inRegistry;
}

namespace {

constexpr const char* kModule = "ParamHolder";

ParamType* LookUpType(MCID inTypeWord) {
  ParamTypeRegistry* const registry = gParamTypeRegistry ? gParamTypeRegistry : GetParamTypeRegistry();
  ParamType* const type = registry ? registry->GetParamType(inTypeWord) : nullptr;
  if (type == nullptr) {
    throw TMCException(MC_E_INVALIDARG, kModule, __LINE__);
  }
  return type;
}

}  // namespace

ParamHolder::ParamHolder(MCID inTypeWord, void* inData) : ParamHolder(LookUpType(inTypeWord), inData) {}

ParamHolder::ParamHolder(ParamType* inType, void* inData) : fParamType(MCShare(inType)), fData(inData) {
  if (inData == nullptr) {
    throw TMCException(MC_E_INVALIDARG, kModule, __LINE__);
  }
}

ParamHolder::ParamHolder(MCID inTypeWord) : ParamHolder(LookUpType(inTypeWord)) {}

bool* ParamHolder::AsBool() {
  MC_ASSERT_TEXT(GetType() == "bool"_id, "GetType()=='bool'");
  return static_cast<bool*>(fData);
}

int16* ParamHolder::AsInt16() {
  MC_ASSERT_TEXT(GetType() == "in16"_id, "GetType()=='in16'");
  return static_cast<int16*>(fData);
}

int32* ParamHolder::AsInt32() {
  MC_ASSERT_TEXT(GetType() == "in32"_id, "GetType()=='in32'");
  return static_cast<int32*>(fData);
}

real32* ParamHolder::AsReal32() {
  MC_ASSERT_TEXT(GetType() == "re32"_id || GetType() == "sr32"_id, "GetType()=='re32' || GetType()=='sr32'");
  return static_cast<real32*>(fData);
}

real64* ParamHolder::AsReal64() {
  MC_ASSERT_TEXT(GetType() == "re64"_id, "GetType()=='re64'");
  return static_cast<real64*>(fData);
}

TVector2* ParamHolder::AsVector2() {
  MC_ASSERT_TEXT(GetType() == "vec2"_id, "GetType()=='vec2'");
  return static_cast<TVector2*>(fData);
}

TVector3* ParamHolder::AsVector3() {
  MC_ASSERT_TEXT(GetType() == "vec3"_id || GetType() == "dire"_id, "GetType()=='vec3' || GetType()=='dire'");
  return static_cast<TVector3*>(fData);
}

TMatrix33* ParamHolder::AsMatrix33() {
  MC_ASSERT_TEXT(GetType() == "mx33"_id, "GetType()=='mx33'");
  return static_cast<TMatrix33*>(fData);
}

MatrixQuaternion* ParamHolder::AsQuaternion() {
  MC_ASSERT_TEXT(GetType() == "mqua"_id, "GetType()=='mqua'");
  return static_cast<MatrixQuaternion*>(fData);
}

OwningParamHolder::OwningParamHolder(MCID inTypeWord) : ParamHolder(inTypeWord) {
  AllocateData();
}

OwningParamHolder::OwningParamHolder(const ParamHolder& inSource) {
  if (MC_ASSERT_TEXT(inSource.GetParamType(), "fParamType")) {
    TakeCopy(inSource);
  }
}

OwningParamHolder::OwningParamHolder(const ParamHolder& inSource, Tolerant) {
  if (inSource.GetParamType() != nullptr) {
    TakeCopy(inSource);
  }
}

OwningParamHolder& OwningParamHolder::operator=(const ParamHolder& inSource) {
  if (this != &inSource) {
    SetType(inSource.GetParamType());
    CopyDataFrom(inSource);
  }
  return *this;
}

void OwningParamHolder::SetType(MCID inTypeWord) {
  SetType(LookUpType(inTypeWord));
}

void OwningParamHolder::SetType(ParamType* inType) {
  if (fParamType == inType) {
    return;
  }
  FreeData();
  fParamType.Share(inType);
  AllocateData();
}

void OwningParamHolder::CopyDataFrom(const ParamHolder& inSource) {
  MC_ASSERT_TEXT(fParamType == inSource.GetParamType(), "fParamType == src.fParamType");
  // A copy goes on after the report; where there are no bytes on one side there is nothing to copy.
  if (fParamType && fData != nullptr && inSource.GetData() != nullptr) {
    fParamType->CopyData(inSource.GetData(), fData);
  }
}

void OwningParamHolder::TakeCopy(const ParamHolder& inSource) {
  fParamType.Share(inSource.GetParamType());
  AllocateData();
  CopyDataFrom(inSource);
}

void OwningParamHolder::AllocateData() {
  if (fData != nullptr || !fParamType) {
    return;
  }
  fData = MCmalloc(fParamType->GetDataSize());
  if (fData != nullptr) {
    fParamType->ConstructData(fData);
  }
}

void OwningParamHolder::FreeData() {
  if (fData == nullptr) {
    return;
  }
  if (fParamType) {
    fParamType->DestructData(fData);
  }
  MCfree(fData);
  fData = nullptr;
}

}  // namespace qlx
