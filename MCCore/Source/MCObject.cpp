#include "MCObject.h"

#include <limits>

#include "MCAssert.h"
#include "MCCountedPtr.h"

namespace qlx {

namespace {

CountedObjectBookkeeping sBookkeeping;

// Counters belong to the host and may be missing one by one.
int32 AtomicIncrement(int32* inCounter) {
  return inCounter ? std::atomic_ref<int32>(*inCounter).fetch_add(1) + 1 : 0;
}

void AtomicDecrement(int32* inCounter) {
  if (inCounter) {
    std::atomic_ref<int32>(*inCounter).fetch_sub(1);
  }
}

bool CheckAllocation(std::size_t byteCount) {
  MC_ASSERT((byteCount) <= static_cast<MCSize>(std::numeric_limits<uint32>::max()));
  return MC_ASSERT(gMemoryUtilities);
}

MCResult QueryUnknownOnly(IMCUnknown* inObject, const MCGuid& inID, void** outObject) {
  return inID == IMCUnknown::kInterfaceID ? MCStoreCounted(inObject, outObject) : MCStoreNone(outObject);
}

}  // namespace

void* TMCObject::operator new(std::size_t inByteCount) noexcept {
  return CheckAllocation(inByteCount) ? gMemoryUtilities->NewObject(inByteCount) : nullptr;
}

void* TMCObject::operator new[](std::size_t inByteCount) noexcept {
  return CheckAllocation(inByteCount) ? gMemoryUtilities->NewArray(inByteCount) : nullptr;
}

void TMCObject::operator delete(void* inObject) noexcept {
  if (inObject && gMemoryUtilities) {
    gMemoryUtilities->DeleteObject(inObject);
  }
}

void TMCObject::operator delete[](void* inArray) noexcept {
  if (inArray && gMemoryUtilities) {
    gMemoryUtilities->DeleteArray(inArray);
  }
}

void InitMCCountedObject(const CountedObjectBookkeeping& inValues) noexcept {
  sBookkeeping = inValues;
}

void TMCCountedObject::Create(TMCCountedObject** outObject) noexcept {
  if (MC_ASSERT_TEXT(outObject, "outObject != NULL")) {
    *outObject = new TMCCountedObject;
  }
}

TMCCountedObject::TMCCountedObject() noexcept
    : fRefCount(1), fSerialNumber(0), fPreviousObject(nullptr), fNextObject(nullptr) {
  if (MC_ASSERT_TEXT(sBookkeeping.fLiveCount, "InitMCCountedObject should be called before creating counted objects")) {
    JoinList();
  }
}

TMCCountedObject::~TMCCountedObject() {
  if (sBookkeeping.fLiveCount && fSerialNumber != 0) {
    LeaveList();
  }
  MC_ASSERT(fRefCount <= 1);
}

void TMCCountedObject::JoinList() noexcept {
  // A serial of 0 says that the object was never counted, so a host without a serial counter gets 1 for all.
  fSerialNumber = sBookkeeping.fSerialCounter ? AtomicIncrement(sBookkeeping.fSerialCounter) : 1;
  AtomicIncrement(sBookkeeping.fLiveCount);
  if (!sBookkeeping.fHead || !sBookkeeping.fTail) {
    return;
  }
  TMCCountedObject*& tail = *sBookkeeping.fTail;
  if (tail) {
    fPreviousObject = tail;
    tail->fNextObject = this;
  } else {
    *sBookkeeping.fHead = this;
  }
  tail = this;
}

void TMCCountedObject::LeaveList() noexcept {
  if (fPreviousObject) {
    fPreviousObject->fNextObject = fNextObject;
  } else if (sBookkeeping.fHead && *sBookkeeping.fHead == this) {
    *sBookkeeping.fHead = fNextObject;
  }
  if (fNextObject) {
    fNextObject->fPreviousObject = fPreviousObject;
  } else if (sBookkeeping.fTail && *sBookkeeping.fTail == this) {
    *sBookkeeping.fTail = fPreviousObject;
  }
  fPreviousObject = nullptr;
  fNextObject = nullptr;
  AtomicDecrement(sBookkeeping.fLiveCount);
}

MCResult TMCCountedObject::QueryInterface(const MCGuid& inID, void** outObject) {
  return QueryUnknownOnly(this, inID, outObject);
}

uint32 TMCCountedObject::AddRef() {
  return ++fRefCount;
}

uint32 TMCCountedObject::Release() {
  const uint32 count = --fRefCount;
  if (count == 0) {
    delete this;
  }
  return count;
}

void TMCSMPCountedObject::Create(TMCSMPCountedObject** outObject) noexcept {
  if (MC_ASSERT_TEXT(outObject, "outObject != NULL")) {
    *outObject = new TMCSMPCountedObject;
  }
}

TMCSMPCountedObject::TMCSMPCountedObject() noexcept : fRefCountAC(1) {
  AtomicIncrement(sBookkeeping.fSerialCounter);
  AtomicIncrement(sBookkeeping.fLiveCount);
}

TMCSMPCountedObject::~TMCSMPCountedObject() {
  AtomicDecrement(sBookkeeping.fLiveCount);
  MC_ASSERT_TEXT(fRefCountAC.load() == 0, "GetAtomicCounterValue(fRefCountAC) == 0");
}

MCResult TMCSMPCountedObject::QueryInterface(const MCGuid& inID, void** outObject) {
  return QueryUnknownOnly(this, inID, outObject);
}

uint32 TMCSMPCountedObject::AddRef() {
  return static_cast<uint32>(fRefCountAC.fetch_add(1) + 1);
}

uint32 TMCSMPCountedObject::Release() {
  const int32 count = fRefCountAC.fetch_sub(1) - 1;
  if (count == 0) {
    delete this;
  } else {
    MC_ASSERT_TEXT(count > 0, "TMCSMPCountedObject: ref count < 0");
  }
  return static_cast<uint32>(count);
}

}  // namespace qlx
