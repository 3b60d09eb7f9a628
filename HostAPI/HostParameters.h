// Parameters: the animatable values of elements, objects, shaders and morphs. All are implemented by the host.
//
// Parameters stand in holders (`TimeBasedData`), in a fixed order; a parameter that is a group has a holder of its own.
#pragma once

#include "MCUnknown.h"

namespace qlx {

class ParamHolder;
class ParamInfo;
class TimeBasedData;
class TMCString;

// A type of values, for every holder of one.
class ParamType : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "CDC4E20C-49DC-4179-96EE-C82DF6514A98"_guid;

  virtual MCID MC_CALL GetTypeID() = 0;
  // Size in bytes of one value; the largest is `kMaxSize`.
  virtual uint32 MC_CALL GetDataSize() = 0;
  // Makes a valid value in raw memory; ends one, the memory staying the caller's; copies one. They throw nothing.
  virtual void MC_CALL ConstructData(void* outData) = 0;
  virtual void MC_CALL DestructData(void* ioData) = 0;
  virtual void MC_CALL CopyData(const void* inSource, void* outDestination) = 0;

  static constexpr uint32 kMaxSize = 64;

 protected:
  ~ParamType() = default;
};

// Gives a `ParamType` for a type word (service row 10).
class ParamTypeRegistry : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "F3CA8A60-3F55-11D1-A09F-00AA00D37E0B"_guid;

  // Owned by the registry, one object a word; null for an unknown word.
  virtual ParamType* MC_CALL GetParamType(MCID inTypeWord) = 0;

 protected:
  ~ParamTypeRegistry() = default;
};

// The keys of a parameter, in the parameter's own units (ticks for time).
class IKeyframeHolder : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "47922934-9F11-40A4-AC5C-A54002E5BC66"_guid;

  virtual MCResult MC_CALL ReadValueAtTime(int32 inTime, ParamHolder& outValue) = 0;
  virtual void MC_CALL DeleteKey(int32 inTime) = 0;
  // Adds or replaces a key that holds its value up to the next one.
  virtual MCResult MC_CALL SetKey(int32 inTime, const ParamHolder& inValue) = 0;

 protected:
  ~IKeyframeHolder() = default;
};

// One parameter, or one group of parameters.
class ParamInfo : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "C151527F-8E50-47E0-A070-8161B726904F"_guid;

  // The type word of the value; 0 for a group.
  virtual MCID MC_CALL GetDataType() = 0;
  // The parameter's own id; 0 when it has none.
  virtual MCID MC_CALL GetParamID() = 0;
  // What a person reads; owned by the parameter.
  virtual const TMCString& MC_CALL GetParamName() = 0;
  virtual bool MC_CALL IsGroup() = 0;
  // The holder of a group's parameters; null for a plain parameter.
  virtual TimeBasedData* MC_CALL GetGroupData() = 0;
  // The holder that contains this parameter.
  virtual void MC_CALL GetHolder(TimeBasedData** outHolder) = 0;
  // Called ahead of a read; called after a write, with 1.
  virtual void MC_CALL BeginValueChange() = 0;
  virtual void MC_CALL EndValueChange(int32 inOne) = 0;
  // Copy the value out and in. The holder must be of the parameter's type, else they answer a failure and change
  // nothing. While the scene is being evaluated a write changes the evaluated value alone; outside it, the base value,
  // or the key at the current time where the parameter has keys.
  virtual MCResult MC_CALL ReadParamValue(ParamHolder& outValue) = 0;
  virtual MCResult MC_CALL WriteParamValue(const ParamHolder& inValue) = 0;
  // Null for a parameter that cannot be animated.
  virtual IKeyframeHolder* MC_CALL GetKeyframeHolder() = 0;

 protected:
  ~ParamInfo() = default;
};

// A holder of parameters.
class TimeBasedData : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "D71F21CA-FF46-4576-B476-D4112E12FF4A"_guid;

  virtual uint32 MC_CALL GetParamCount() = 0;
  // Null past the end.
  virtual void MC_CALL GetParamInfo(ParamInfo** outParam, uint32 inIndex) = 0;
  // The component that owns the holder: an element, object, shader, or for a group's holder the group's own component,
  // which answers `I3DShAttributes`.
  virtual IMCUnknown* MC_CALL GetOwner() = 0;
  // The enclosing holder, null at the top, and this holder's id in it.
  virtual void MC_CALL GetParentData(TimeBasedData** outParent) = 0;
  virtual MCID MC_CALL GetDataID() = 0;
  // 'dtaL' marks a list of groups.
  virtual MCID MC_CALL GetDataKind() = 0;

 protected:
  ~TimeBasedData() = default;
};

// Answered by everything that has parameters: elements, objects, shaders, groups.
class I3DShAttributes : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "0B2254A6-358D-4600-8B0A-BB9DC178FF1C"_guid;

  virtual TimeBasedData* MC_CALL GetTimeBasedData() = 0;

 protected:
  ~I3DShAttributes() = default;
};

// The root of a scene's attributes: what a climb through parents ends at.
class AttributesSet : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "B995E79E-5DDA-4CA1-9DC4-7DB41FF38CBD"_guid;

  // The element at the top of the set's tree.
  virtual void MC_CALL GetRootElement(IMCUnknown** outElement) = 0;

 protected:
  ~AttributesSet() = default;
};

}  // namespace qlx
