// Pointers that keep what they point to alive, or check it at each use.
//
//   TMCCountedPtr<T>   holds one reference of a counted interface
//   TMCPtr<T>          holds nothing, checks at each access that the object still lives
//   TMCSmartPtr<T>     owns one object and deletes it
//
// Whether a call takes over the caller's reference or adds one stands in its name:
//
//   auto tree = MCShare(inTree);                    adds a reference; the caller keeps its own
//   auto part = MCAdopt(CreatePart());              takes over the reference that the call gave
//   factory->MakePart(part.WriteInto());            out parameter: drops what was held, receives a reference
//   return part.Detach();                           gives the reference away
//   auto holder = MCQuery<I3DShObjectHolder>(tree); the interface, or null
//
// Use after free is reported and repaired: a deceased pointer is stored as null and never called.
#pragma once

#include <cstddef>
#include <utility>

#include "MCAssert.h"
#include "MCDeceased.h"
#include "MCUnknown.h"

namespace qlx {

namespace detail {

// The checks ahead of a pointer's assignment, in their order. False when there is nowhere to store.
inline bool CheckAssignment(const void* const* pp, const void* lp) noexcept {
  if (!MC_ASSERT_TEXT(pp && !MCCheckDeceased(pp), "Bad Pointer")) {
    return false;
  }
  MC_ASSERT(!MCCheckDeceased(*pp));
  if (MC_ASSERT_TEXT(!lp || !MCCheckDeceased(lp), "(lp == NULL) || !MCCheckDeceased(lp)")) {
    MC_ASSERT_TEXT(!lp || !MCCheckDeceased(MCFirstWord(lp)), "(lp == NULL) || !MCCheckDeceased(*(void**)lp)");
  }
  return true;
}

// True for an object that may be called: there is one, and neither it nor its address is marked.
inline bool IsUsable(const void* inObject) noexcept {
  return inObject && !MCCheckDeceased(inObject) && !MCCheckDeceased(MCFirstWord(inObject));
}

template <class T>
const void* const* AsPlain(T* const* pp) noexcept {
  return reinterpret_cast<const void* const*>(pp);
}

}  // namespace detail

// Stores `lp` in `*pp` with a reference of its own. The new reference is taken before the old one is dropped, so `lp`
// may be kept alive by the old value alone; the pointer changes last.
template <class T>
void MCAssignCounted(T** pp, T* lp) {
  if (!detail::CheckAssignment(detail::AsPlain(pp), lp) || lp == *pp) {
    return;
  }
  T* const fresh = detail::IsUsable(lp) ? lp : nullptr;
  if (fresh) {
    fresh->AddRef();
  }
  T* const old = *pp;
  if (old && !MCCheckDeceased(old)) {
    old->Release();
  }
  *pp = fresh;
}

template <class T>
class TMCCountedPtr {
 public:
  TMCCountedPtr() noexcept = default;
  TMCCountedPtr(std::nullptr_t) noexcept {}
  TMCCountedPtr(const TMCCountedPtr& inSource) { Share(inSource.fObject); }
  TMCCountedPtr(TMCCountedPtr&& ioSource) noexcept : fObject(ioSource.Detach()) {}
  template <class U>
  TMCCountedPtr(const TMCCountedPtr<U>& inSource) {
    Share(inSource.Get());
  }
  ~TMCCountedPtr() { Clear(); }

  TMCCountedPtr& operator=(const TMCCountedPtr& inSource) {
    Share(inSource.fObject);
    return *this;
  }
  TMCCountedPtr& operator=(TMCCountedPtr&& ioSource) {
    if (this != &ioSource) {
      Adopt(ioSource.Detach());
    }
    return *this;
  }
  TMCCountedPtr& operator=(std::nullptr_t) {
    Clear();
    return *this;
  }

  // Adds a reference; the caller keeps its own.
  void Share(T* inObject) { MCAssignCounted(&fObject, inObject); }

  // Takes over the caller's reference.
  void Adopt(T* inObject) {
    T* const old = std::exchange(fObject, inObject);
    ReleaseObject(old);
  }

  // Gives the reference to the caller and is null from then on.
  [[nodiscard]] T* Detach() noexcept { return std::exchange(fObject, nullptr); }

  // Drops what is held, and gives the place for an out parameter that answers a reference.
  [[nodiscard]] T** WriteInto() {
    Clear();
    return &fObject;
  }

  void Clear() { ReleaseObject(std::exchange(fObject, nullptr)); }

  T* Get() const noexcept {
    MC_ASSERT_TEXT(!fObject || !IsMarked(), "(fObject == NULL) || !MCCheckDeceased(*(void**)fObject)");
    return fObject;
  }
  T* operator->() const noexcept {
    MC_ASSERT_TEXT(fObject && !IsMarked(), "fObject && !MCCheckDeceased(*(void**)fObject)");
    return fObject;
  }
  T& operator*() const noexcept { return *operator->(); }
  explicit operator bool() const noexcept { return fObject != nullptr; }

  friend bool operator==(const TMCCountedPtr& inA, const TMCCountedPtr& inB) noexcept {
    return inA.fObject == inB.fObject;
  }
  friend bool operator==(const TMCCountedPtr& inA, const T* inB) noexcept { return inA.fObject == inB; }
  friend bool operator==(const TMCCountedPtr& inA, std::nullptr_t) noexcept { return !inA.fObject; }

 private:
  bool IsMarked() const noexcept { return MCCheckDeceased(fObject) || MCCheckDeceased(MCFirstWord(fObject)); }

  // The field is cleared before the call, so an object that meets this pointer again on its way out finds null.
  static void ReleaseObject(T* fObject) {
    if (!fObject || !MC_ASSERT(!MCCheckDeceased(fObject))) {
      return;
    }
    if (MC_ASSERT_TEXT(!MCCheckDeceased(MCFirstWord(fObject)), "!MCCheckDeceased(*(void**)fObject)")) {
      fObject->Release();
    }
  }

  T* fObject = nullptr;
};

template <class T>
[[nodiscard]] TMCCountedPtr<T> MCShare(T* inObject) {
  TMCCountedPtr<T> pointer;
  pointer.Share(inObject);
  return pointer;
}

template <class T>
[[nodiscard]] TMCCountedPtr<T> MCAdopt(T* inObject) {
  TMCCountedPtr<T> pointer;
  pointer.Adopt(inObject);
  return pointer;
}

// The interface `I` of an object, or null: for a null object, an interface that it lacks, and an answer that is no
// success. Only the object's own view is trusted, never a plain cast.
template <class I, class T>
[[nodiscard]] TMCCountedPtr<I> MCQuery(T* inObject) {
  void* view = nullptr;
  if (!inObject || inObject->QueryInterface(I::kInterfaceID, &view) != MC_S_OK) {
    return nullptr;
  }
  return MCAdopt(static_cast<I*>(view));
}

template <class I, class T>
[[nodiscard]] TMCCountedPtr<I> MCQuery(const TMCCountedPtr<T>& inObject) {
  return MCQuery<I>(inObject.Get());
}

// For bodies of `QueryInterface`: stores a view of this object with a reference for the caller.
template <class I>
MCResult MCStoreCounted(I* inView, void** outObject) {
  if (!outObject) {
    return MC_E_INVALIDARG;
  }
  inView->AddRef();
  *outObject = inView;
  return MC_S_OK;
}

// For bodies of `QueryInterface`: there is no such interface.
inline MCResult MCStoreNone(void** outObject) noexcept {
  if (outObject) {
    *outObject = nullptr;
  }
  return MC_E_NOINTERFACE;
}

// A pointer that holds nothing, and checks at each access that there is a living object behind it.
template <class T>
class TMCPtr {
 public:
  TMCPtr(T* inObject = nullptr) noexcept : fObject(inObject) {}

  T* Get() const noexcept { return fObject; }
  T* operator->() const noexcept {
    Check();
    return fObject;
  }
  T& operator*() const noexcept {
    Check();
    return *fObject;
  }
  explicit operator bool() const noexcept { return fObject != nullptr; }

 private:
  void Check() const noexcept {
    if (MC_ASSERT(fObject && !MCCheckDeceased(fObject))) {
      MC_ASSERT_TEXT(!MCCheckDeceased(MCFirstWord(fObject)), "!MCCheckDeceased(*(void**)fObject)");
    }
  }

  T* fObject;
};

// Owns one object and deletes it, through its virtual destructor, when it is replaced. Takes no references.
template <class T>
class TMCSmartPtr {
 public:
  TMCSmartPtr() noexcept = default;
  explicit TMCSmartPtr(T* inAdopted) { Adopt(inAdopted); }
  TMCSmartPtr(TMCSmartPtr&& ioSource) noexcept : fObject(ioSource.Detach()) {}
  TMCSmartPtr& operator=(TMCSmartPtr&& ioSource) {
    if (this != &ioSource) {
      Adopt(ioSource.Detach());
    }
    return *this;
  }
  ~TMCSmartPtr() { Adopt(nullptr); }

  // Takes over the object; adopting what it owns already changes nothing.
  void Adopt(T* inObject) {
    if (!detail::CheckAssignment(detail::AsPlain(&fObject), inObject) || inObject == fObject) {
      return;
    }
    T* const old = std::exchange(fObject, detail::IsUsable(inObject) ? inObject : nullptr);
    if (!MCCheckDeceased(old)) {
      delete old;
    }
  }
  [[nodiscard]] T* Detach() noexcept { return std::exchange(fObject, nullptr); }

  T* Get() const noexcept { return fObject; }
  T* operator->() const noexcept { return fObject; }
  T& operator*() const noexcept { return *fObject; }
  explicit operator bool() const noexcept { return fObject != nullptr; }

 private:
  T* fObject = nullptr;
};

}  // namespace qlx
