#include "MCResourceMap.h"

#include <algorithm>
#include <cstdio>

namespace qlx {

namespace {

uint64 KeyOf(MCID inType, int16 inID) noexcept {
  return uint64{inType} << 16 | static_cast<uint16>(inID);
}

bool ComesBefore(const MCResourceEntry* inEntry, uint64 inKey) noexcept {
  return KeyOf(inEntry->fType, inEntry->fID) < inKey;
}

bool ComesAfter(uint64 inKey, const MCResourceEntry* inEntry) noexcept {
  return inKey < KeyOf(inEntry->fType, inEntry->fID);
}

}  // namespace

MCResourceTypeText::MCResourceTypeText(MCID inType) noexcept {
  char letters[4];
  bool isPrintable = true;
  for (int i = 0; i < 4; ++i) {
    letters[i] = static_cast<char>(inType >> (24 - 8 * i));
    isPrintable = isPrintable && letters[i] >= ' ' && letters[i] <= '~';
  }
  if (isPrintable) {
    std::snprintf(fText, sizeof fText, "'%.4s'", letters);
  } else {
    std::snprintf(fText, sizeof fText, "0x%08lX", static_cast<unsigned long>(inType));
  }
}

MCResourceMap::~MCResourceMap() {
  for (const Type& type : fTypes) {
    for (const MCResourceEntry* entry : type.fEntries) {
      delete entry;
    }
  }
}

MCResourceEntry* MCResourceMap::Find(MCID inType, int16 inID) const noexcept {
  const uint64 key = KeyOf(inType, inID);
  MCResourceEntry* const* const place = std::lower_bound(fIndex.begin(), fIndex.end(), key, ComesBefore);
  return place != fIndex.end() && (*place)->fType == inType && (*place)->fID == inID ? *place : nullptr;
}

const MCResourceMap::Type* MCResourceMap::FindType(MCID inType) const noexcept {
  const Type* const place =
      std::find_if(fTypes.begin(), fTypes.end(), [&](const Type& type) { return type.fType == inType; });
  return place != fTypes.end() ? place : nullptr;
}

MCResourceMap::Type* MCResourceMap::AddType(MCID inType) noexcept {
  Type type;
  type.fType = inType;
  return fTypes.AddElem(type) ? fTypes.end() - 1 : nullptr;
}

bool MCResourceMap::Add(MCResourceEntry* inEntry) noexcept {
  auto* type = const_cast<Type*>(FindType(inEntry->fType));
  const bool isFirst = !type;
  if (isFirst) {
    type = AddType(inEntry->fType);
  }
  if (!type) {
    return false;
  }
  if (type->fEntries.AddElem(inEntry)) {
    if (fIndex.AddElem(inEntry)) {
      auto* const place =
          std::upper_bound(fIndex.begin(), fIndex.end() - 1, KeyOf(inEntry->fType, inEntry->fID), ComesAfter);
      std::rotate(place, fIndex.end() - 1, fIndex.end());
      return true;
    }
    type->fEntries.RemoveElem(type->fEntries.GetElemCount() - 1);
  }
  if (isFirst) {
    fTypes.RemoveElem(fTypes.GetElemCount() - 1);
  }
  return false;
}

void MCResourceMap::Remove(MCResourceEntry* inEntry) noexcept {
  auto* const type = const_cast<Type*>(FindType(inEntry->fType));
  fIndex.RemoveElem(fIndex.FindElem(inEntry));
  type->fEntries.RemoveElem(type->fEntries.FindElem(inEntry));
  if (type->fEntries.GetElemCount() == 0) {
    fTypes.RemoveElem(static_cast<uint32>(type - fTypes.begin()));
  }
  delete inEntry;
}

bool MCResourceMap::BuildIndex() noexcept {
  uint32 count = 0;
  for (const Type& type : fTypes) {
    count += type.fEntries.GetElemCount();
  }
  if (!fIndex.SetElemSpace(count)) {
    return false;
  }
  for (const Type& type : fTypes) {
    for (MCResourceEntry* entry : type.fEntries) {
      if (!fIndex.AddElem(entry)) {
        return false;
      }
    }
  }
  std::stable_sort(fIndex.begin(), fIndex.end(), [](const MCResourceEntry* inA, const MCResourceEntry* inB) {
    return KeyOf(inA->fType, inA->fID) < KeyOf(inB->fType, inB->fID);
  });
  return true;
}

}  // namespace qlx
