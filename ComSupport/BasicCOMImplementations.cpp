#include "BasicCOMImplementations.h"

#include "MCCountedPtr.h"
#include "MCException.h"

namespace qlx {

namespace {
int32 sLiveObjects = 0;
}  // namespace

int32 GetLiveObjectCount() {
  return sLiveObjects;
}

TBasicUnknown::TBasicUnknown() {
  ++sLiveObjects;
}

TBasicUnknown::~TBasicUnknown() {
  --sLiveObjects;
}

MCResult TBasicUnknown::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == IMCUnknown::kInterfaceID) {
    return MCStoreCounted<TBasicUnknown>(this, outObject);
  }
  if (fOuter != nullptr) {
    return fOuter->QueryInterface(inID, outObject);
  }
  return MCStoreNone(outObject);
}

uint32 TBasicUnknown::AddRef() {
  if (fOuter != nullptr) {
    return fOuter->AddRef();
  }
  return static_cast<uint32>(++fRefCount);
}

uint32 TBasicUnknown::Release() {
  if (fOuter != nullptr) {
    const uint32 answer = fOuter->Release();
    if (answer == kEndInner) {
      delete this;
    }
    return answer;
  }
  --fRefCount;
  if (fRefCount == 0) {
    delete this;
    return 0;
  }
  if (fRefCount < 0) {
    throw TMCException(MC_E_OVERRELEASED);
  }
  return static_cast<uint32>(fRefCount);
}

}  // namespace qlx
