// The base of the host's own reference-counted objects: one class, its interfaces, one count.
#pragma once

#include <utility>

#include "MCCountedPtr.h"
#include "MCUnknown.h"

namespace qlx::host {

// Implements the three root operations for an object that offers the interfaces, the first being its identity. That one
// comes last in memory, beside the members of the class: a call through it and what it reads are then close together.
// Objects belong to the thread that evaluates their scene. Made with `new`, count 1; `MakeHosted` adopts that. A class
// that offers an interface at times only overrides `Offers`; one with parts of its own overrides `FindPart`.
template <class First, class... Rest>
class HostObject : public Rest..., public First {
 public:
  HostObject(const HostObject&) = delete;
  HostObject& operator=(const HostObject&) = delete;
  virtual ~HostObject() = default;

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (outObject == nullptr) {
      return MC_E_INVALIDARG;
    }
    void* found = nullptr;
    if (inID == IMCUnknown::kInterfaceID) {
      found = static_cast<IMCUnknown*>(static_cast<First*>(this));
    } else if (Offers(inID)) {
      found = inID == First::kInterfaceID ? static_cast<First*>(this) : nullptr;
      ((found == nullptr && inID == Rest::kInterfaceID ? void(found = static_cast<Rest*>(this)) : void()), ...);
    }
    if (found == nullptr) {
      return FindPart(inID, outObject);
    }
    *outObject = found;
    AddRef();
    return MC_S_OK;
  }

  // Somebody beside its owner holds it.
  bool IsShared() const noexcept { return fRefCount > 1; }

  uint32 MC_CALL AddRef() override { return ++fRefCount; }

  uint32 MC_CALL Release() override {
    const uint32 left = --fRefCount;
    if (left == 0) {
      delete this;
    }
    return left;
  }

 protected:
  HostObject() = default;

  // Gives back a reference that is not the last. A component that answers without counting does not end the object.
  void GiveBackReference() noexcept {
    if (fRefCount > 1) {
      --fRefCount;
    }
  }

  virtual bool Offers(const MCGuid& /*inID*/) const { return true; }

  // Answers an id that is none of the object's own interfaces.
  virtual MCResult FindPart(const MCGuid& /*inID*/, void** outObject) {
    *outObject = nullptr;
    return MC_E_NOINTERFACE;
  }

 private:
  uint32 fRefCount = 1;
};

// Answers through an out pointer: what stood there is released, and the caller gets a reference to the object, which
// may be null.
template <class I>
void StoreForCaller(I** outPointer, I* inObject) {
  if (outPointer == nullptr) {
    return;
  }
  if (inObject != nullptr) {
    inObject->AddRef();
  }
  I* const old = std::exchange(*outPointer, inObject);
  if (old != nullptr) {
    old->Release();
  }
}

// Makes an object of the host and holds its first reference. The host is an ordinary program: without memory it ends
// with `std::bad_alloc`, which the command reports.
template <class Object, class... Arguments>
TMCCountedPtr<Object> MakeHosted(Arguments&&... inArguments) {
  return MCAdopt(new Object(std::forward<Arguments>(inArguments)...));
}

}  // namespace qlx::host
