// The root of every interface: identity, and life by counted references.
#pragma once

#include "MCGuid.h"
#include "MCResult.h"

namespace qlx {

// Each interface declares its id as `kInterfaceID`; each class that can be reached by its class id declares that as
// `kClassID`. Destructors never run across the binary boundary, so no interface has one in its table.
class IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "00000000-0000-0000-C000-000000000046"_guid;

  // Stores the view of the interface `inID` in `*outObject`, with a reference for the caller, and answers 0.
  // An interface that the object lacks stores null and answers `MC_E_NOINTERFACE`.
  virtual MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) = 0;

  // Both answer the new count. `Release` of an outer object answers `kEndInner` to the inner object that it ends.
  virtual uint32 MC_CALL AddRef() = 0;
  virtual uint32 MC_CALL Release() = 0;

 protected:
  ~IMCUnknown() = default;
};

// -1 as the answer of an outer object's `Release`: the aggregated object that passed the call on deletes itself.
inline constexpr uint32 kEndInner = 0xFFFFFFFF;

}  // namespace qlx
