// The base of every component: it answers `QueryInterface`, counts references and can be aggregated.
#pragma once

#include "MCObject.h"
#include "MCUnknown.h"

namespace qlx {

// Components alive in this library, factories included. A plain number: components belong to the host's thread.
int32 GetLiveObjectCount();

// Counts its references in a plain integer, 1 at construction. With a controlling unknown (`fOuter`), all counting goes
// there and the own count stays as it was; an answer of `kEndInner` to a forwarded release ends this object.
class TBasicUnknown : public IMCUnknown, public TMCObject {
 public:
  TBasicUnknown();
  TBasicUnknown(const TBasicUnknown&) = delete;
  TBasicUnknown& operator=(const TBasicUnknown&) = delete;

  // Answers `IMCUnknown` with this view; passes every other id to the outer object.
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override;
  // Throws `MC_E_OVERRELEASED` when the object was released more often than referenced.
  uint32 MC_CALL Release() override;
  virtual ~TBasicUnknown();

  // Not counted: the outer object outlives its inner one. Null ends the aggregation. For the class factory alone.
  void SetOuter(IMCUnknown* inOuter) { fOuter = inOuter; }

 protected:
  int32 fRefCount = 1;
  IMCUnknown* fOuter = nullptr;
};

}  // namespace qlx
