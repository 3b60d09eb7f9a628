#include "MCArrayCore.h"

#include <algorithm>

#include "MCMemory.h"

namespace qlx {

using detail::ArrayElement;

namespace {

constexpr uint32 kLargestCount = kEndIndex - 1;

// Arrays grow by a fifth of their count: the double next to the 32-bit 0.2.
constexpr double kGrowFactor = 0.20000000298023224;

uint32 RoundUpToSteps(uint32 inCount, uint32 inStep) {
  const uint64 rounded = (static_cast<uint64>(inCount) + inStep - 1) / inStep * inStep;
  return static_cast<uint32>(std::min<uint64>(rounded, kLargestCount));
}

bool CheckCounts(uint32 initialCount, uint32 initialSpace) {
  if (MC_ASSERT(initialCount <= initialSpace)) {
    return true;
  }
  // Both reports are made, one by the check and one by the initialisation that gives up.
  MCAssert(__FILE_NAME__, __LINE__, "initialCount > initialSpace");
  return false;
}

}  // namespace

void MCArrayCore::SetGrowSize(uint32 inGrowSize) noexcept {
  if (inGrowSize > kGrowSizeMask) {
    if (gDebugUtilities) {
      gDebugUtilities->Report2(__FILE_NAME__, __LINE__, static_cast<int32>(inGrowSize),
                               static_cast<int32>(kGrowSizeMask));
    } else {
      MCRuntimeAssert(__FILE_NAME__, __LINE__, "inGrowSize <= kGrowSizeMask");
    }
  }
  fFlags = (fFlags & ~(kAutoGrow | kGrowSizeMask)) | (inGrowSize & kGrowSizeMask);
}

void MCArrayCore::SetAutoGrow(uint32 inElemSize) noexcept {
  fFlags = (fFlags & ~kGrowSizeMask) | kAutoGrow | ((kLargestStepBytes / inElemSize) & kGrowSizeMask);
}

uint32 MCArrayCore::GetGrowStep() const noexcept {
  if (!IsAutoGrowing()) {
    return GetGrowSize();
  }
  return std::min(GetGrowSize(), static_cast<uint32>(fElemCount * kGrowFactor) + 1);
}

bool MCArrayCore::Initialise(const ArrayElement& inType, uint32 initialCount, uint32 initialSpace, uint32 inGrowSize,
                             bool inZeroFill) {
  fFlags = 0;
  if (!CheckCounts(initialCount, initialSpace)) {
    return false;
  }
  fFlags = kValid;
  SetGrowSize(inGrowSize);
  if (inZeroFill) {
    fFlags |= kZeroFill;
  }
  if (!SetElemSpace(inType, initialSpace)) {
    return false;
  }
  if (!SetElemCount(inType, initialCount)) {
    fFlags &= ~kValid;
    return false;
  }
  return true;
}

void MCArrayCore::Construct(const ArrayElement& inType, uint32 initialCount, uint32 initialSpace, uint32 inGrowSize,
                            bool inZeroFill) {
  if (!Initialise(inType, initialCount, initialSpace, inGrowSize, inZeroFill)) {
    MCAssert(__FILE_NAME__, __LINE__, "Array allocation failed in constructor!");
  }
  MC_ASSERT(IsValid());
}

void MCArrayCore::ConstructOnMemory(void* inBase, uint32 initialCount, uint32 initialSpace) {
  fFlags = 0;
  if (CheckCounts(initialCount, initialSpace)) {
    fFlags = kValid | kExternal;
    fElemCount = initialCount;
    fElemSpace = initialSpace;
    fBase = inBase;
  }
  MC_ASSERT(IsValid());
}

void MCArrayCore::ConstructView(const ArrayElement& inType, const MCArrayCore& array, uint32 elemStart,
                                uint32 elemCount) {
  if (elemCount == 0) {
    return;
  }
  MC_ASSERT((elemStart < array.GetElemCount()) && (elemStart + elemCount <= array.GetElemCount()));
  fFlags = kValid | kExternal | kView;
  fElemCount = elemCount;
  fElemSpace = elemCount;
  fBase = array.ElemAddress(inType, elemStart);
}

void MCArrayCore::Destruct(const ArrayElement& inType) noexcept {
  if (IsValid()) {
    ExternalMemory() ? SetElemCount(inType, 0) : SetElemSpace(inType, 0);
  }
  // Volatile: this store outlives the object on purpose, so that use after destruction is told apart.
  *const_cast<volatile uint32*>(&fFlags) = fFlags & ~static_cast<uint32>(kValid);
}

bool MCArrayCore::Contains(const ArrayElement& inType, const void* inAddress) const noexcept {
  const auto address = reinterpret_cast<std::uintptr_t>(inAddress);
  const auto first = reinterpret_cast<std::uintptr_t>(fBase);
  return fBase && address >= first && address - first < static_cast<MCSize>(fElemCount) * inType.fSize;
}

void MCArrayCore::ClearElems(const ArrayElement& inType, uint32 inFirst, uint32 inEnd) noexcept {
  if ((fFlags & kZeroFill) && inFirst < inEnd) {
    MCMemoryFill(0, ElemAddress(inType, inFirst), static_cast<MCSize>(inEnd - inFirst) * inType.fSize);
  }
}

void MCArrayCore::DestroyElems(const ArrayElement& inType, uint32 inFirst, uint32 inEnd) noexcept {
  // A view looks at elements that its source destroys.
  if (inType.fDestroy && inFirst < inEnd && !IsRangeView()) {
    inType.fDestroy(ElemAddress(inType, inFirst), inEnd - inFirst);
  }
}

bool MCArrayCore::SetElemSpace(const ArrayElement& inType, uint32 inSpace) {
  if (!MC_ASSERT(IsValid())) {
    return false;
  }
  if (inSpace == fElemSpace) {
    return true;
  }
  if (!MC_ASSERT_TEXT(!ExternalMemory(), "Can't resize array with external memory")) {
    return false;
  }
  if (inSpace < fElemCount) {
    DestroyElems(inType, inSpace, fElemCount);
    fElemCount = inSpace;
  }
  if (inSpace == 0) {
    MCfree(fBase);
    fBase = nullptr;
    fElemSpace = 0;
    return true;
  }
  return ReplaceBlock(inType, inSpace);
}

// The block is never resized in place: an array that cannot grow stays as it is.
bool MCArrayCore::ReplaceBlock(const ArrayElement& inType, uint32 inSpace) {
  const uint64 bytes = static_cast<uint64>(inSpace) * inType.fSize;
  void* const block = bytes <= SIZE_MAX ? MCmalloc(static_cast<MCSize>(bytes)) : nullptr;
  if (!MC_ASSERT_TEXT(block, "Array allocation failed!")) {
    return false;
  }
  MCMemoryCopy(block, fBase, static_cast<MCSize>(fElemCount) * inType.fSize);
  void* const old = fBase;
  fBase = block;
  fElemSpace = inSpace;
  ClearElems(inType, fElemCount, inSpace);
  MCfree(old);
  return true;
}

bool MCArrayCore::SetElemCount(const ArrayElement& inType, uint32 inCount) {
  if (!MC_ASSERT(IsValid()) || !MC_ASSERT_TEXT(inCount < kEndIndex, "nAsMCSize < kEndIndex")) {
    return false;
  }
  if (inCount > fElemSpace && !SetElemSpace(inType, inCount)) {
    return false;
  }
  if (inCount < fElemCount) {
    DestroyElems(inType, inCount, fElemCount);
    ClearElems(inType, inCount, fElemCount);
  } else if (inCount > fElemCount && inType.fConstruct && !IsRangeView()) {
    inType.fConstruct(ElemAddress(inType, fElemCount), inCount - fElemCount);
  }
  fElemCount = inCount;
  return true;
}

bool MCArrayCore::AddElemCount(const ArrayElement& inType, uint32 inCount) {
  if (!MC_ASSERT_TEXT(inCount <= kLargestCount - fElemCount, "nAsMCSize < kEndIndex")) {
    return false;
  }
  const uint32 count = fElemCount + inCount;
  if (count > fElemSpace) {
    const uint32 step = GetGrowStep();
    if (!MC_ASSERT_TEXT(step != 0, inType.fNoGrowStepText) || !SetElemSpace(inType, RoundUpToSteps(count, step))) {
      return false;
    }
  }
  return SetElemCount(inType, count);
}

bool MCArrayCore::GrowForOne(const ArrayElement& inType) {
  if (!MC_ASSERT_TEXT(fElemCount < kLargestCount, "nAsMCSize < kEndIndex")) {
    return false;
  }
  const uint32 step = std::min(GetGrowStep(), kLargestCount - fElemSpace);
  // A step of 0 still makes room for the one.
  return SetElemSpace(inType, fElemSpace + std::max(step, 1U));
}

bool MCArrayCore::RemoveElem(const ArrayElement& inType, uint32 index, uint32 inCount) {
  if (inCount == 0) {
    return true;
  }
  // Every check reports for itself, also where an earlier one has failed.
  const bool usable = MC_ASSERT(IsValid()) & MC_ASSERT_TEXT(fBase, "BaseAddress()");
  const bool inside = MC_ASSERT_TEXT(index < fElemCount, "index < GetElemCount()");
  const uint32 following = inside ? fElemCount - index : 0;
  const uint32 count =
      MC_ASSERT_TEXT(inCount <= following, "Removing more items than are in the array!!") ? inCount : following;
  if (!usable || count == 0) {
    return false;
  }
  const uint32 next = index + count;
  // The elements of a view with destructors cannot move: their source would destroy some twice and others never.
  if (IsRangeView() && inType.fDestroy &&
      !MC_ASSERT_TEXT(next == fElemCount, "Can't resize array with external memory")) {
    return false;
  }
  DestroyElems(inType, index, next);
  MCMemoryMove(ElemAddress(inType, index), ElemAddress(inType, next),
               static_cast<MCSize>(fElemCount - next) * inType.fSize);
  ClearElems(inType, fElemCount - count, fElemCount);
  fElemCount -= count;
  return true;
}

}  // namespace qlx
