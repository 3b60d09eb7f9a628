#include "MCResource.h"

#include <mutex>

#include "MCMemory.h"
#include "MCResourceFile.h"

namespace qlx {

namespace {

std::mutex gSharesLock;  // held while the lists of holders change

}  // namespace

MCResource::MCResource(MCResourceFile* inOwner, MCID inType, int16 inID, const TMCString& inName, uint32 inSize,
                       uint8* inData) noexcept
    : fOwner(inOwner), fSize(inSize), fType(inType), fData(inData), fName(inName), fID(inID) {
  if (!MC_ASSERT_TEXT(fData || fSize == 0, "Why is there no data for this resource?")) {
    fData = static_cast<uint8*>(MCmalloc(fSize));
    if (fData) {
      MCMemoryFill(0, fData, fSize);
    } else {
      fSize = 0;
    }
  }
}

MCResource::~MCResource() {
  if (!MC_ASSERT_TEXT(fIsClosed, "You can't delete this object call Release() instead!!!")) {
    if (fOwner) {
      fOwner->Forget(this);
    }
    fOwner = nullptr;
  }
  {
    const std::scoped_lock guard(gSharesLock);
    for (MCSharedResource* holder = fShares; holder; holder = holder->fNext) {
      holder->fResource = nullptr;
    }
  }
  MCfree(fData);
}

int32 MCResource::Release() noexcept {
  int32 uses = fUseCount;
  while (uses > 0 && !fUseCount.compare_exchange_weak(uses, uses - 1)) {
  }
  return MC_ASSERT_TEXT(uses > 0, "fUseCount > 0") ? uses - 1 : 0;
}

void MCResource::ReplaceData(uint8* inData, uint32 inSize) noexcept {
  MCfree(std::exchange(fData, inData));
  fSize = inSize;
}

void MCSharedResource::Join(MCResource* inResource) noexcept {
  fResource = inResource;
  fPrevious = nullptr;
  fNext = std::exchange(inResource->fShares, this);
  if (fNext) {
    fNext->fPrevious = this;
  }
}

void MCSharedResource::Leave() noexcept {
  (fPrevious ? fPrevious->fNext : fResource->fShares) = fNext;
  if (fNext) {
    fNext->fPrevious = fPrevious;
  }
  fResource = nullptr;
}

void MCSharedResource::Share(MCResource* inShared) noexcept {
  const std::scoped_lock guard(gSharesLock);
  if (inShared) {
    inShared->AddUse();
  }
  if (fResource) {
    fResource->Release();
    Leave();
  }
  if (inShared) {
    Join(inShared);
  }
}

MCResult MCSharedResource::Load(MCResourceFile& inFile, MCID inType, int16 inID) noexcept {
  Clear();
  MCResource* resource = nullptr;
  const MCResult result = inFile.GetResource(inType, inID, &resource);
  if (result == MC_S_OK) {
    Share(resource);
    resource->Release();
  }
  return result;
}

}  // namespace qlx
