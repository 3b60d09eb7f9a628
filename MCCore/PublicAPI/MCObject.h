// The roots of the object model: allocation through the host, and objects with counted references.
#pragma once

#include <atomic>
#include <new>

#include "MCDeceased.h"
#include "MCHostUtilities.h"

namespace qlx {

// Base of allocated objects; adds allocation and nothing else (no bytes, no table). `new` never throws: without
// memory, or without the host's allocator, the whole expression answers null and no constructor runs.
class TMCObject {
 public:
  static void* operator new(std::size_t inByteCount) noexcept;
  static void* operator new[](std::size_t inByteCount) noexcept;
  static void* operator new(std::size_t inByteCount, const std::nothrow_t&) noexcept {
    return operator new(inByteCount);
  }
  static void* operator new[](std::size_t inByteCount, const std::nothrow_t&) noexcept {
    return operator new[](inByteCount);
  }
  static void* operator new(std::size_t, void* inPlace) noexcept { return inPlace; }
  static void* operator new[](std::size_t, void* inPlace) noexcept { return inPlace; }

  static void operator delete(void* inObject) noexcept;
  static void operator delete[](void* inArray) noexcept;
  static void operator delete(void* inObject, const std::nothrow_t&) noexcept { operator delete(inObject); }
  static void operator delete[](void* inArray, const std::nothrow_t&) noexcept { operator delete[](inArray); }
  static void operator delete(void*, void*) noexcept {}
  static void operator delete[](void*, void*) noexcept {}

 protected:
  ~TMCObject() = default;
};

// Connects counted objects to the host's list and counters; an empty record disconnects them. Objects made before
// this call work, but are not listed.
void InitMCCountedObject(const CountedObjectBookkeeping& inValues) noexcept;

// An object that counts its references, belongs to one thread at a time, and stands in the host's list of live objects.
class TMCCountedObject : public IMCUnknown, public TMCObject {
 public:
  // The creating reference is the caller's. Stores null when there is no memory.
  static void Create(TMCCountedObject** outObject) noexcept;

  TMCCountedObject() noexcept;
  TMCCountedObject(const TMCCountedObject&) = delete;
  TMCCountedObject& operator=(const TMCCountedObject&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override;
  uint32 MC_CALL Release() override;
  virtual ~TMCCountedObject();

  uint32 GetRefCount() const noexcept { return fRefCount; }
  // 0 for an object that was made before `InitMCCountedObject`.
  int32 GetSerialNumber() const noexcept { return fSerialNumber; }
  TMCCountedObject* GetPreviousObject() const noexcept { return fPreviousObject; }
  TMCCountedObject* GetNextObject() const noexcept { return fNextObject; }

 protected:
  uint32 fRefCount;

 private:
  void JoinList() noexcept;
  void LeaveList() noexcept;

  int32 fSerialNumber;
  TMCCountedObject* fPreviousObject;
  TMCCountedObject* fNextObject;
};

// The same for objects that threads share: references are counted atomically. Counted as alive, but not listed.
class TMCSMPCountedObject : public IMCUnknown, public TMCObject {
 public:
  static void Create(TMCSMPCountedObject** outObject) noexcept;

  TMCSMPCountedObject() noexcept;
  TMCSMPCountedObject(const TMCSMPCountedObject&) = delete;
  TMCSMPCountedObject& operator=(const TMCSMPCountedObject&) = delete;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override;
  uint32 MC_CALL AddRef() override;
  uint32 MC_CALL Release() override;
  virtual ~TMCSMPCountedObject();

 protected:
  std::atomic<int32> fRefCountAC;
};

}  // namespace qlx
