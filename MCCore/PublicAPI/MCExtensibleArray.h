// A growing array whose elements never move: they lie in blocks of a power of two of elements, so an address stays
// valid until the array shrinks below it or is destroyed. Elements are plain bytes, and fresh ones are zero.
#pragma once

#include "MCArray.h"

namespace qlx {

namespace detail {

// The blocks, apart from the element type.
class ExtensibleArrayCore {
 public:
  ExtensibleArrayCore(const ExtensibleArrayCore&) = delete;
  ExtensibleArrayCore& operator=(const ExtensibleArrayCore&) = delete;

  int32 GetElemCount() const noexcept { return fElemCount; }

 protected:
  ExtensibleArrayCore(uint32 inShift, uint32 inElemSize) noexcept
      : fShift(inShift), fMask((1U << inShift) - 1), fElemSize(inElemSize) {}
  ~ExtensibleArrayCore() { SetElemCount(0); }

  bool SetElemCount(int32 inCount);
  void* ElemAddress(int32 i) const noexcept;

 private:
  uint32 fShift;
  uint32 fMask;
  uint32 fElemSize;
  int32 fElemCount = 0;
  TMCArray<uint8*> fBlocks;
};

}  // namespace detail

template <class T>
class MCExtensibleArray : public detail::ExtensibleArrayCore {
  static_assert(std::is_trivially_copyable_v<T>, "elements are plain bytes");

 public:
  // Blocks hold two to the power of `inShift` elements; at most 20 is sensible.
  explicit MCExtensibleArray(uint32 inShift = 6) noexcept : ExtensibleArrayCore(inShift, sizeof(T)) {}

  // False when there is no memory, with the array as it was.
  bool SetElemCount(int32 inCount) { return ExtensibleArrayCore::SetElemCount(inCount); }
  bool AddElem(const T& inValue) {
    if (!SetElemCount(GetElemCount() + 1)) {
      return false;
    }
    *GetElem(GetElemCount() - 1) = inValue;
    return true;
  }
  // A bad index is reported; null where no block holds it.
  T* GetElem(int32 i) noexcept { return static_cast<T*>(ElemAddress(i)); }
  const T* GetElem(int32 i) const noexcept { return static_cast<const T*>(ElemAddress(i)); }
};

}  // namespace qlx
