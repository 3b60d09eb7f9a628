// Arrays of objects with constructors.
//
// New elements are constructed, dropped ones destroyed first, values copied by the element's own copying. When the
// block grows the elements still move as bytes, so an element must not hold its own address: strings and arrays of
// this library may be elements, a `std::string` may not.
#pragma once

#include "MCArray.h"

namespace qlx {

namespace detail {

template <class T>
struct ClassElement {
  static void ConstructElems(void* inFirst, uint32 inCount) {
    for (T* elem = static_cast<T*>(inFirst); inCount > 0; ++elem, --inCount) {
      ::new (static_cast<void*>(elem)) T();
    }
  }
  static void DestroyElems(void* inFirst, uint32 inCount) noexcept {
    for (T* elem = static_cast<T*>(inFirst); inCount > 0; ++elem, --inCount) {
      elem->~T();
    }
  }
  static constexpr ArrayElement kType{sizeof(T), &ConstructElems, &DestroyElems, "grow size is zero!!"};
  static constexpr bool kForceZeroFill = false;
};

}  // namespace detail

template <class T>
class TMCClassArray : public detail::TMCArrayOf<T, detail::ClassElement<T>> {
 public:
  using detail::TMCArrayOf<T, detail::ClassElement<T>>::TMCArrayOf;
  TMCClassArray() noexcept = default;
  TMCClassArray(const TMCClassArray& inSource) = default;
  bool operator=(const TMCClassArray& inSource) { return TMCClassArray::TMCArrayOf::operator=(inSource); }
};

}  // namespace qlx
