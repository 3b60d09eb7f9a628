// Parameters and the groups that hold them, over values that live elsewhere.
//
// A group's holder is its own component: it answers `TimeBasedData` and `I3DShAttributes`. Parameters and groups may be
// held longer than what they belong to: the value is dead then, and a parameter has no holder.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "AnimatedValue.h"
#include "HostObject.h"
#include "HostParameters.h"
#include "MCString.h"
#include "WorkAhead.h"

namespace qlx::host {

class ParameterGroup;

class alignas(kCacheLine) Parameter final : public HostObject<ParamInfo, IKeyframeHolder> {
 public:
  using Name = std::shared_ptr<const TMCString>;
  static Name MakeName(const char* inName);

  // A plain parameter, of a value that is made inside it, or a group of parameters.
  template <class Value, class... Arguments>
  Parameter(MCID inID, Name inName, std::in_place_type_t<Value>, Arguments&&... inArguments)
      : fID(inID), fValue(new (fRoom) Value(std::forward<Arguments>(inArguments)...)), fName(std::move(inName)) {
    static_assert(sizeof(Value) <= kRoom);
  }
  Parameter(MCID inID, Name inName, TMCCountedPtr<ParameterGroup> inGroup);
  ~Parameter() override;

  // All parameters stand in memory of their own; may be called on any thread.
  static void* operator new(std::size_t inSize, std::align_val_t inAlignment);
  static void operator delete(void* inObject, std::size_t inSize, std::align_val_t inAlignment);

  ValueAccess* GetValueAccess() const { return fValue; }
  ParameterGroup* GetGroup() const { return fGroup.Get(); }
  // What a read or write of the value goes through.
  void ListWorkMemory(WorkLines& ioLines) const;

  // ParamInfo
  MCID MC_CALL GetDataType() override { return fValue ? fValue->GetType() : 0; }
  MCID MC_CALL GetParamID() override { return fID; }
  const TMCString& MC_CALL GetParamName() override { return *fName; }
  bool MC_CALL IsGroup() override { return static_cast<bool>(fGroup); }
  TimeBasedData* MC_CALL GetGroupData() override;
  void MC_CALL GetHolder(TimeBasedData** outHolder) override;
  // Values are current at all times, and a write marks its element: neither has anything to do.
  void MC_CALL BeginValueChange() override {}
  void MC_CALL EndValueChange(int32 /*inOne*/) override {}
  MCResult MC_CALL ReadParamValue(ParamHolder& outValue) override;
  MCResult MC_CALL WriteParamValue(const ParamHolder& inValue) override;
  IKeyframeHolder* MC_CALL GetKeyframeHolder() override;

  // IKeyframeHolder
  MCResult MC_CALL ReadValueAtTime(int32 inTime, ParamHolder& outValue) override;
  void MC_CALL DeleteKey(int32 inTime) override;
  MCResult MC_CALL SetKey(int32 inTime, const ParamHolder& inValue) override;

 protected:
  bool Offers(const MCGuid& inID) const override;

 private:
  friend class ParameterGroup;
  AnimatedValue* GetAnimated() const { return fValue ? fValue->AsAnimated() : nullptr; }

  static constexpr std::size_t kRoom = 5 * sizeof(void*);

  // What each read and write needs comes first, and is one cache line.
  MCID fID;
  ValueAccess* fValue = nullptr;  // in the room; null for a group
  alignas(void*) std::byte fRoom[kRoom];
  Name fName;
  TMCCountedPtr<ParameterGroup> fGroup;
  ParameterGroup* fHolder = nullptr;
};

class ParameterGroup final : public HostObject<TimeBasedData, I3DShAttributes> {
 public:
  // `inOwner` is the component at the top of a tree of groups; null for a group within one, which owns itself.
  ParameterGroup(MCID inID, IMCUnknown* inOwner) : fID(inID), fOwner(inOwner) {}
  ~ParameterGroup() override;

  void Add(TMCCountedPtr<Parameter> inParameter);
  // Adds a group parameter and answers its group, to be filled.
  ParameterGroup& AddGroup(MCID inID, Parameter::Name inName);
  const std::vector<TMCCountedPtr<Parameter>>& GetParameters() const { return fParameters; }
  // The owner goes. The groups below are left to whoever holds them.
  void ForgetOwner() { fOwner = nullptr; }

  uint32 MC_CALL GetParamCount() override { return static_cast<uint32>(fParameters.size()); }
  void MC_CALL GetParamInfo(ParamInfo** outParam, uint32 inIndex) override;
  IMCUnknown* MC_CALL GetOwner() override;
  void MC_CALL GetParentData(TimeBasedData** outParent) override;
  MCID MC_CALL GetDataID() override { return fID; }
  MCID MC_CALL GetDataKind() override { return 0; }
  TimeBasedData* MC_CALL GetTimeBasedData() override { return this; }

 private:
  MCID fID;
  IMCUnknown* fOwner;
  ParameterGroup* fParent = nullptr;
  std::vector<TMCCountedPtr<Parameter>> fParameters;
};

}  // namespace qlx::host
