// The four host services that the foundation itself stands on. The rest of the host's interfaces are in HostAPI;
// these are here because the foundation may include nothing below it.
//
// Each is implemented by the host and held from start-up to clean-up. All operations may be called on any thread on
// which the host calls the plug-in, unless said otherwise. No operation throws.
#pragma once

#include "MCUnknown.h"

namespace qlx {

class TMCAsciiTranslationTable;
class TMCCountedObject;
class TreeElement;
class TMCString;

// The host's allocator. Every operation answers null when there is no memory, and ignores a null block.
class IMemoryUtilities : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "031DD1DB-024E-11D2-8F2E-00609798E77D"_guid;

  virtual void* MC_CALL Allocate(MCSize inSize) = 0;
  // The role of this operation is the host's own; the plug-in never calls it. The slot is kept.
  virtual void* MC_CALL AllocateWithFlags(MCSize inSize, uint32 inFlags) = 0;
  // Moves the block when it must. On failure answers null and leaves the block as it was.
  virtual void* MC_CALL Reallocate(void* inBlock, MCSize inSize) = 0;
  virtual void MC_CALL Free(void* inBlock) = 0;
  virtual void* MC_CALL NewObject(MCSize inByteCount) = 0;
  virtual void MC_CALL DeleteObject(void* inObject) = 0;
  virtual void* MC_CALL NewArray(MCSize inByteCount) = 0;
  virtual void MC_CALL DeleteArray(void* inArray) = 0;

 protected:
  ~IMemoryUtilities() = default;
};

// The six shared values of the counted-object machinery. The host owns what they point to; any may be null.
struct CountedObjectBookkeeping {
  TMCCountedObject** fHead = nullptr;  // first of the list of live objects
  TMCCountedObject** fTail = nullptr;  // last of it
  void* fUnused1 = nullptr;            // two values that this library does not use
  void* fUnused2 = nullptr;
  int32* fSerialCounter = nullptr;  // serial number given last
  int32* fLiveCount = nullptr;      // objects alive
};

// Reports for a person who develops or debugs. Texts are UTF-8 and belong to the caller; a null file means that the
// position is not known.
class IDebugUtilities : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "5FF1E1C0-63C3-11D2-B89E-00104B2C9011"_guid;

  virtual void MC_CALL ReportAssertion(const char* inFile, int32 inLine, const char* inText) = 0;
  virtual void MC_CALL Report(const char* inFile, int32 inLine) = 0;
  virtual void MC_CALL Report2(const char* inFile, int32 inLine, int32 inValue1, int32 inValue2) = 0;
  virtual void MC_CALL Report3(const char* inFile, int32 inLine, int32 inValue1, int32 inValue2, int32 inValue3) = 0;
  // Fills the record; the values stay valid until the host's root is released.
  virtual void MC_CALL GetCountedObjectBookkeeping(CountedObjectBookkeeping& outValues) = 0;

 protected:
  ~IDebugUtilities() = default;
};

// What the processor can do. A first byte that is not 0 says that blocks of eight 32-bit elements copy faster.
struct ProcessorFeatures {
  uint8 fBytes[4] = {0, 0, 0, 0};
};

// Services that are safe before the host's shell is up.
class IShSafeUtilities : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "B0010A34-A52D-443C-8553-5A93CDC2FDAE"_guid;

  virtual void MC_CALL GetProcessorFeatures(ProcessorFeatures& outFeatures) = 0;
  // The table belongs to the host and lives as long as it does; null when the host has none.
  virtual const TMCAsciiTranslationTable* MC_CALL GetAsciiTranslationTable() = 0;

 protected:
  ~IShSafeUtilities() = default;
};

// The host's shell, as far as components talk to it. Main thread only.
class IShellUtilities : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "031DD1DA-024E-11D2-8F2E-00609798E77D"_guid;

  // True while a component must not react to its panel (the host is filling it, say).
  virtual bool MC_CALL IsEventHandlingSuspended() = 0;
  // The role of the three arguments is the host's own. The slot is kept; nothing calls it yet.
  virtual void MC_CALL SetShellState(uint32 inValue, uint8 inFlag1, uint8 inFlag2) = 0;
  // Makes the element answer `I3DShObjectHolder`. While what is answered is held (it is the caller's, counted), it
  // does; null when the element shows no object.
  virtual IMCUnknown* MC_CALL EnsureObjectHolder(TreeElement* inTree) = 0;
  // Runs the host's own object picker with two texts; the meaning of the three zeros is the host's. True with a
  // choice in `*outChosen`, counted; false leaves it alone.
  virtual bool MC_CALL ChooseObject(TreeElement** outChosen, const TMCString& inTitle, const TMCString& inPrompt,
                                    int32 inZero1, int32 inZero2, int32 inZero3) = 0;

 protected:
  ~IShellUtilities() = default;
};

// Set by `StartUtilities` (COMSafeUtilities) and cleared at its end. Null where the host lacks the service.
extern IMemoryUtilities* gMemoryUtilities;
extern IDebugUtilities* gDebugUtilities;
extern IShSafeUtilities* gShSafeUtilities;
extern IShellUtilities* gShellUtilities;

}  // namespace qlx
