// Parameters that a test makes up: ids, kinds and groups that no ordinary host has.
#pragma once

#include <vector>

#include "FakeObject.h"
#include "HostParameters.h"
#include "MCCountedPtr.h"
#include "MCString.h"

namespace qlx::test {

class FakeHolder;

// A parameter or, with a holder of its own, a group.
class FakeParam final : public FakeObject<ParamInfo> {
 public:
  FakeParam(MCID inID, MCID inType, FakeHolder* inGroup = nullptr) : fID(inID), fType(inType), fGroup(inGroup) {}

  MCID MC_CALL GetDataType() override { return fType; }
  MCID MC_CALL GetParamID() override { return fID; }
  const TMCString& MC_CALL GetParamName() override { return fName; }
  bool MC_CALL IsGroup() override { return fGroup != nullptr; }
  TimeBasedData* MC_CALL GetGroupData() override;
  void MC_CALL GetHolder(TimeBasedData** outHolder) override;
  void MC_CALL BeginValueChange() override {}
  void MC_CALL EndValueChange(int32 /*inOne*/) override {}
  MCResult MC_CALL ReadParamValue(ParamHolder& /*outValue*/) override { return MC_E_NOTVALID; }
  MCResult MC_CALL WriteParamValue(const ParamHolder& /*inValue*/) override { return MC_E_NOTVALID; }
  IKeyframeHolder* MC_CALL GetKeyframeHolder() override { return nullptr; }

  MCID fID;
  MCID fType;
  FakeHolder* fGroup;
  FakeHolder* fHolder = nullptr;
  TMCString31 fName;
};

class FakeHolder final : public FakeObject<TimeBasedData, I3DShAttributes> {
 public:
  explicit FakeHolder(std::vector<FakeParam*> inParams, MCID inKind = 0, MCID inDataID = 0)
      : fParams(std::move(inParams)), fKind(inKind), fDataID(inDataID) {
    for (FakeParam* param : fParams) {
      param->fHolder = this;
      if (param->fGroup) {
        param->fGroup->fParent = this;
      }
    }
  }

  uint32 MC_CALL GetParamCount() override { return static_cast<uint32>(fParams.size()); }
  void MC_CALL GetParamInfo(ParamInfo** outParam, uint32 inIndex) override {
    MCAssignCounted(outParam, inIndex < fParams.size() ? static_cast<ParamInfo*>(fParams[inIndex]) : nullptr);
  }
  IMCUnknown* MC_CALL GetOwner() override { return fOwner ? fOwner : static_cast<TimeBasedData*>(this); }
  void MC_CALL GetParentData(TimeBasedData** outParent) override {
    MCAssignCounted(outParent, static_cast<TimeBasedData*>(fParent));
  }
  MCID MC_CALL GetDataID() override { return fDataID; }
  MCID MC_CALL GetDataKind() override { return fKind; }
  TimeBasedData* MC_CALL GetTimeBasedData() override { return this; }

  std::vector<FakeParam*> fParams;
  MCID fKind;
  MCID fDataID;
  FakeHolder* fParent = nullptr;
  IMCUnknown* fOwner = nullptr;
};

inline TimeBasedData* FakeParam::GetGroupData() {
  return fGroup;
}

inline void FakeParam::GetHolder(TimeBasedData** outHolder) {
  MCAssignCounted(outHolder, static_cast<TimeBasedData*>(fHolder));
}

}  // namespace qlx::test
