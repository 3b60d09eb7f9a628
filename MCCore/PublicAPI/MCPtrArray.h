// Arrays of pointers: plain ones, which own nothing, and counted ones, which hold a reference each.
#pragma once

#include "MCClassArray.h"
#include "MCCountedPtr.h"

namespace qlx {

template <class T>
class TMCPtrArray : public TMCArray<T*> {
 public:
  using TMCArray<T*>::TMCArray;
  TMCPtrArray() noexcept = default;
  TMCPtrArray(const TMCPtrArray& inSource) = default;
  bool operator=(const TMCPtrArray& inSource) { return TMCArray<T*>::operator=(inSource); }
};

namespace detail {

template <class T>
struct CountedPtrElement {
  using Class = ClassElement<TMCCountedPtr<T>>;
  static constexpr ArrayElement kType{sizeof(TMCCountedPtr<T>), &Class::ConstructElems, &Class::DestroyElems,
                                      "fGrowSize is zero!!"};
  // A vacated element reads as null even where the caller wanted no clearing.
  static constexpr bool kForceZeroFill = true;
};

}  // namespace detail

// Adding takes a reference; removing, shrinking and destroying release it.
template <class T>
class TMCCountedPtrArray : public detail::TMCArrayOf<TMCCountedPtr<T>, detail::CountedPtrElement<T>> {
  using Base = detail::TMCArrayOf<TMCCountedPtr<T>, detail::CountedPtrElement<T>>;

 public:
  using Base::Base;
  TMCCountedPtrArray() noexcept = default;
  TMCCountedPtrArray(const TMCCountedPtrArray& inSource) = default;
  bool operator=(const TMCCountedPtrArray& inSource) { return Base::operator=(inSource); }

  // The caller keeps its own reference.
  bool AddElem(T* inShared) { return this->EmplaceElem(MCShare(inShared)); }
  bool AddElem(const TMCCountedPtr<T>& inShared) { return AddElem(inShared.Get()); }
  void SetElem(uint32 index, T* inShared) { (*this)[index].Share(inShared); }
  // Not counted for the caller.
  T* GetElem(uint32 index) const noexcept { return (*this)[index].Get(); }

  uint32 FindElem(const T* inObject) const {
    for (uint32 i = 0; i < this->GetElemCount(); ++i) {
      if (this->BaseAddress()[i] == inObject) {
        return i;
      }
    }
    return kUnusedIndex;
  }
};

}  // namespace qlx
