// Walks over arrays.
//
//   TMCArrayIterator<Array>    gives addresses of elements
//   TMCPtrIterator<Array>      for arrays of pointers: gives the pointers themselves
//   TMCCheckedIterator<Array>  gives an element only after `More()` has said that there is one
//
// The first two can be used in two styles, which are not to be mixed in one walk:
//
//   for (auto* e = it.First(); it.More(); e = it.Next())         also backwards, with Last() and Previous()
//   for (; !it.AtEnd(); ++it) Use(*it);                          a position, `kEndIndex` past the end
//
// An iterator refers to its array, which must outlive it. The array may change its elements during the walk: an index
// is kept, not an address.
#pragma once

#include "MCPtrArray.h"

namespace qlx {

namespace detail {

// The index of a walk, apart from element types. Operations answer whether there is an element at the new place.
class ArrayCursor {
 public:
  explicit ArrayCursor(const MCArrayCore& inArray) noexcept : fArray(inArray) {}

  bool More() const noexcept { return fCurrentIndex < fArray.GetElemCount(); }
  bool First() noexcept {
    fCurrentIndex = 0;
    return More();
  }
  bool Last() noexcept {
    fCurrentIndex = fArray.GetElemCount() - 1;
    return More();
  }
  bool Next() noexcept;
  bool Previous() noexcept;

  bool AtEnd() const noexcept { return fCurrentIndex == kEndIndex || !More(); }
  void Advance() noexcept;
  uint32 GetPosition() const noexcept { return fCurrentIndex; }

 private:
  static constexpr uint32 kBeforeFirst = 0xFFFFFFFF;

  const MCArrayCore& fArray;
  uint32 fCurrentIndex = 0;
};

// Both styles over one array. `Access::Read` turns an element into what the walk gives.
template <class Array, class Access>
class TMCIteratorOf {
 public:
  using Value = decltype(Access::Read(std::declval<Array&>()[0]));

  explicit TMCIteratorOf(Array& inArray) noexcept : fArray(inArray), fCursor(inArray) {}

  // Null where there is no element. Going on from past either end is reported.
  Value First() noexcept { return fCursor.First() ? Current() : nullptr; }
  Value Next() noexcept { return fCursor.Next() ? Current() : nullptr; }
  Value Last() noexcept { return fCursor.Last() ? Current() : nullptr; }
  Value Previous() noexcept { return fCursor.Previous() ? Current() : nullptr; }
  bool More() const noexcept { return fCursor.More(); }

  bool AtEnd() const noexcept { return fCursor.AtEnd(); }
  TMCIteratorOf& operator++() noexcept {
    fCursor.Advance();
    return *this;
  }
  // Reading past the end is reported and gives null.
  Value operator*() const noexcept {
    return MC_ASSERT_TEXT(fCursor.GetPosition() != kEndIndex, "!(fCurrentIndex == 0xFFFFFFFD)") && fCursor.More()
               ? Current()
               : nullptr;
  }
  uint32 GetPosition() const noexcept { return fCursor.GetPosition(); }

 private:
  Value Current() const noexcept { return Access::Read(fArray[fCursor.GetPosition()]); }

  Array& fArray;
  ArrayCursor fCursor;
};

struct AddressAccess {
  template <class T>
  static T* Read(T& inElem) noexcept {
    return &inElem;
  }
};

struct PointerAccess {
  template <class T>
  static T* Read(T* inElem) noexcept {
    return inElem;
  }
  template <class T>
  static T* Read(const TMCCountedPtr<T>& inElem) noexcept {
    return inElem.Get();
  }
};

}  // namespace detail

template <class Array>
class TMCArrayIterator : public detail::TMCIteratorOf<Array, detail::AddressAccess> {
 public:
  explicit TMCArrayIterator(Array& inArray) noexcept : TMCArrayIterator::TMCIteratorOf(inArray) {}
};

// For `TMCPtrArray` and `TMCCountedPtrArray`. The pointers are not counted for the caller.
template <class Array>
class TMCPtrIterator : public detail::TMCIteratorOf<Array, detail::PointerAccess> {
 public:
  explicit TMCPtrIterator(Array& inArray) noexcept : TMCPtrIterator::TMCIteratorOf(inArray) {}
};

// while (it.More()) Use(it.Current());
template <class Array>
class TMCCheckedIterator {
 public:
  using Element = std::remove_reference_t<decltype(std::declval<Array&>()[0])>;

  explicit TMCCheckedIterator(Array& inArray) noexcept : fArray(inArray) {}

  // Goes on to the next element, the first at first; false when there is none.
  bool More() noexcept {
    fCurrent = fNextIndex < fArray.GetElemCount() ? &fArray[fNextIndex++] : nullptr;
    return fCurrent != nullptr;
  }
  // Null, and reported, when `More()` has not said true.
  Element* Current() const noexcept {
    MC_ASSERT_TEXT(fCurrent, "fCurrent == NULL, did you forget to call/check More()?");
    return fCurrent;
  }

 private:
  Array& fArray;
  Element* fCurrent = nullptr;
  uint32 fNextIndex = 0;
};

}  // namespace qlx
