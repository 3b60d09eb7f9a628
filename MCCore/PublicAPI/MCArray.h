// Growable arrays in one block of memory from the host.
//
//   TMCArray<T>            plain bytes, moved and copied as such
//   TMCClassArray<T>       a class with constructors (MCClassArray.h)
//   TMCPtrArray<T>         T*, not owned (MCPtrArray.h)
//   TMCCountedPtrArray<T>  TMCCountedPtr<T>, which holds references (MCPtrArray.h)
//
// A full array made by the default constructor grows by a fifth of its count plus one, at most 128 KiB at once; one
// made with counts grows by its grow size. `SetElemCount` beyond the space allocates exactly what is asked for.
// Fresh and vacated elements are cleared where zero fill is on, which it is by default.
//
// Failure to allocate is reported and answered with false, with the array as it was. A bad index is reported too, but
// the access goes on with it: a check never moves an access to another element.
//
// An element address is valid until the array grows or is destroyed. Nothing here locks.
#pragma once

#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "MCArrayCore.h"
#include "MCMemory.h"

namespace qlx {

// Chooses the constructor that works on the caller's memory.
struct MCExternalMemory {};
inline constexpr MCExternalMemory kExternalMemory{};

namespace detail {

// Two elements are the same: by their own comparison, or else by their bytes.
template <class T>
bool SameElem(const T& inA, const T& inB) {
  if constexpr (requires { static_cast<bool>(inA == inB); }) {
    return static_cast<bool>(inA == inB);
  } else {
    return std::memcmp(&inA, &inB, sizeof(T)) == 0;
  }
}

// The typed face of `MCArrayCore`. `Behaviour::kType` says how elements are made and ended.
template <class T, class Behaviour>
class TMCArrayOf : public MCArrayCore {
 public:
  using Element = T;

  TMCArrayOf() noexcept : MCArrayCore(sizeof(T)) {}
  // Grows by a fixed size, not automatically.
  TMCArrayOf(uint32 initialCount, uint32 initialSpace, uint32 inGrowSize = 1, bool inZeroFill = true)
      : MCArrayCore(sizeof(T)) {
    Construct(Type(), initialCount, initialSpace, inGrowSize, inZeroFill || Behaviour::kForceZeroFill);
  }
  // A view of a range of another array: nothing is copied, and the source must outlive it and not grow meanwhile.
  TMCArrayOf(const TMCArrayOf& array, uint32 elemStart, uint32 elemCount) : MCArrayCore(sizeof(T)) {
    ConstructView(Type(), array, elemStart, elemCount);
  }
  // Works on the caller's memory, whose first `initialCount` elements are in use. Bytes are not cleared; elements with
  // destructors are the array's to destroy.
  TMCArrayOf(MCExternalMemory, T* inBase, uint32 initialCount, uint32 initialSpace) : MCArrayCore(sizeof(T)) {
    ConstructOnMemory(inBase, initialCount, initialSpace);
  }
  TMCArrayOf(const TMCArrayOf& inSource) : TMCArrayOf() { *this = inSource; }
  ~TMCArrayOf() { Destruct(Type()); }

  // False when there is no memory, with the elements as they were.
  bool operator=(const TMCArrayOf& inSource) {
    if (this == &inSource) {
      return true;
    }
    if (Contains(Type(), inSource.fBase)) {
      const TMCArrayOf copy(inSource);  // a view of this very array
      return copy.GetElemCount() == inSource.GetElemCount() && (*this = copy);
    }
    if (IsAutoGrowing()) {
      SetAutoGrow(sizeof(T));
    }
    if (!MC_ASSERT_TEXT(SetElemCount(inSource.fElemCount),
                        "Unable to complete operator=() memory allocation failed.")) {
      return false;
    }
    CopyElems(BaseAddress(), inSource.BaseAddress(), fElemCount);
    return true;
  }

  static constexpr uint32 GetElemSize() noexcept { return sizeof(T); }
  // Null when there is no space.
  T* BaseAddress() noexcept { return static_cast<T*>(fBase); }
  const T* BaseAddress() const noexcept { return static_cast<const T*>(fBase); }

  T& operator[](uint32 index) noexcept {
    CheckIndex(index);
    return BaseAddress()[index];
  }
  const T& operator[](uint32 index) const noexcept {
    CheckIndex(index);
    return BaseAddress()[index];
  }
  const T& GetElem(uint32 index) const noexcept { return (*this)[index]; }
  void SetElem(uint32 index, const T& inValue) { (*this)[index] = inValue; }

  // Index of the first equal element, or `kUnusedIndex`.
  uint32 FindElem(const T& inValue) const {
    for (uint32 i = 0; i < fElemCount; ++i) {
      if (SameElem(BaseAddress()[i], inValue)) {
        return i;
      }
    }
    return kUnusedIndex;
  }

  bool SetElemSpace(uint32 inSpace) { return MCArrayCore::SetElemSpace(Type(), inSpace); }
  bool SetElemCount(uint32 inCount) { return MCArrayCore::SetElemCount(Type(), inCount); }
  // Adds elements in one step, with room for whole grow steps.
  bool AddElemCount(uint32 inCount) { return MCArrayCore::AddElemCount(Type(), inCount); }
  // A count past the end is reported and shortened. The space stays.
  bool RemoveElem(uint32 index, uint32 inCount = 1) { return MCArrayCore::RemoveElem(Type(), index, inCount); }

  // The value may lie in this array.
  bool AddElem(const T& inValue) {
    if (fElemCount == fElemSpace && Contains(Type(), &inValue)) {
      return AddElem(T(inValue));
    }
    return EmplaceElem(inValue);
  }

  T* begin() noexcept { return BaseAddress(); }
  T* end() noexcept { return BaseAddress() + fElemCount; }
  const T* begin() const noexcept { return BaseAddress(); }
  const T* end() const noexcept { return BaseAddress() + fElemCount; }

 protected:
  // The source of the new element must not lie in this array.
  template <class Source>
  bool EmplaceElem(Source&& inSource) {
    if (fElemCount == fElemSpace) {
      if (!GrowForOne(Type())) {
        return false;
      }
    } else if (!MC_ASSERT(IsValid())) {
      return false;
    }
    T* const place = BaseAddress() + fElemCount;
    if (IsRangeView()) {
      *place = std::forward<Source>(inSource);  // there is an element already, its source's
    } else {
      ::new (static_cast<void*>(place)) T(std::forward<Source>(inSource));
    }
    ++fElemCount;
    return true;
  }

 private:
  static constexpr const ArrayElement& Type() noexcept { return Behaviour::kType; }
  static void CopyElems(T* outDest, const T* inSource, uint32 inCount) {
    if constexpr (std::is_trivially_copyable_v<T>) {
      MCMemoryMove(outDest, inSource, static_cast<MCSize>(inCount) * sizeof(T));  // a view may overlap its source
    } else {
      for (uint32 i = 0; i < inCount; ++i) {
        outDest[i] = inSource[i];
      }
    }
  }
  void CheckIndex(uint32 index) const noexcept { MC_ASSERT_TEXT(index < fElemCount, "index < GetElemCount()"); }
};

template <class T>
struct PlainElement {
  static_assert(std::is_trivially_copyable_v<T>, "elements are moved as bytes: use TMCClassArray");
  static constexpr ArrayElement kType{sizeof(T), nullptr, nullptr, "grow size is zero!!"};
  static constexpr bool kForceZeroFill = false;
};

}  // namespace detail

template <class T>
class TMCArray : public detail::TMCArrayOf<T, detail::PlainElement<T>> {
 public:
  using detail::TMCArrayOf<T, detail::PlainElement<T>>::TMCArrayOf;
  TMCArray() noexcept = default;
  TMCArray(const TMCArray& inSource) = default;
  bool operator=(const TMCArray& inSource) { return TMCArray::TMCArrayOf::operator=(inSource); }
};

}  // namespace qlx
