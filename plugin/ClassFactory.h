// The plug-in's classes by class id, and the factory that makes them.
#pragma once

#include "BasicCOMImplementations.h"
#include "HostExtensions.h"

namespace qlx {

// A new object of the class with reference count 1, as its `TBasicUnknown` view; null for an unknown class or without
// memory.
TBasicUnknown* CreateComponentObject(const MCGuid& inClassID);

// Makes objects of one class. Made for unknown classes too: `CreateInstance` is where they fail.
class TBasicClassFactory final : public TBasicUnknown, public IMCClassFactory {
 public:
  explicit TBasicClassFactory(const MCGuid& inClassID) : fClassId(inClassID) {}

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override { return TBasicUnknown::AddRef(); }
  uint32 MC_CALL Release() override { return TBasicUnknown::Release(); }

  // With an outer object, the reference that the query takes goes to the outer one and is given back to it; the new
  // object keeps its own initial count, which ends when the outer one answers `kEndInner` to a release.
  MCResult MC_CALL CreateInstance(IMCUnknown* inOuter, const MCGuid& inID, void** outObject) override;
  // Keeps no lock count: the unload query answers from the live objects alone.
  MCResult MC_CALL LockServer(bool inLock) override;

 private:
  MCResult MakeInstance(IMCUnknown* inOuter, const MCGuid& inID, void** outObject) const;

  MCGuid fClassId;
};

}  // namespace qlx
