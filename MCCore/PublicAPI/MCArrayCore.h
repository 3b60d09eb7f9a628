// What all arrays share: the block, the counts, the growth rules. Not used by itself; see MCArray.h.
#pragma once

#include "MCAssert.h"
#include "MCTypes.h"

namespace qlx {

// No element count reaches this. Also the position of an iterator past the end.
inline constexpr uint32 kEndIndex = 0xFFFFFFFD;
// What `FindElem` answers when nothing matches.
inline constexpr uint32 kUnusedIndex = 0xFFFFFFFF;

namespace detail {

// How one kind of element behaves in its block. Plain elements have no functions.
struct ArrayElement {
  uint32 fSize;
  void (*fConstruct)(void* inFirst, uint32 inCount);
  void (*fDestroy)(void* inFirst, uint32 inCount) noexcept;
  const char* fNoGrowStepText;
};

}  // namespace detail

// 16 bytes on 32-bit targets: two counts, a word of flags and grow size, the block.
class MCArrayCore {
 public:
  MCArrayCore(const MCArrayCore&) = delete;
  MCArrayCore& operator=(const MCArrayCore&) = delete;

  uint32 GetElemCount() const noexcept { return fElemCount; }
  // Elements that the block can hold.
  uint32 GetElemSpace() const noexcept { return fElemSpace; }
  // False for an array that was constructed with impossible counts, and for one that was destroyed. Such an array
  // refuses every change of its size.
  bool IsValid() const noexcept { return (fFlags & kValid) != 0; }
  // The block belongs to someone else: it is never resized and never freed.
  bool ExternalMemory() const noexcept { return (fFlags & kExternal) != 0; }
  bool IsRangeView() const noexcept { return (fFlags & kView) != 0; }
  bool IsAutoGrowing() const noexcept { return (fFlags & kAutoGrow) != 0; }
  // The grow size, or the largest step of automatic growth.
  uint32 GetGrowSize() const noexcept { return fFlags & kGrowSizeMask; }

  // A fixed number of elements to grow by, 27 bits wide; ends automatic growth.
  void SetGrowSize(uint32 inGrowSize) noexcept;

 protected:
  enum : uint32 {
    kAutoGrow = 1U << 31,
    kView = 1U << 30,
    kValid = 1U << 29,
    kZeroFill = 1U << 28,
    kExternal = 1U << 27,
    kGrowSizeMask = kExternal - 1
  };
  // Automatic growth never takes more than this at once.
  static constexpr uint32 kLargestStepBytes = 0x20000;

  explicit MCArrayCore(uint32 inElemSize) noexcept
      : fFlags(kAutoGrow | kValid | kZeroFill | ((kLargestStepBytes / inElemSize) & kGrowSizeMask)) {}
  ~MCArrayCore() = default;

  // The bodies of the constructors. Without memory the array is empty; with impossible counts not even valid.
  void Construct(const detail::ArrayElement& inType, uint32 initialCount, uint32 initialSpace, uint32 inGrowSize,
                 bool inZeroFill);
  void ConstructOnMemory(void* inBase, uint32 initialCount, uint32 initialSpace);
  void ConstructView(const detail::ArrayElement& inType, const MCArrayCore& array, uint32 elemStart, uint32 elemCount);
  void Destruct(const detail::ArrayElement& inType) noexcept;

  void SetAutoGrow(uint32 inElemSize) noexcept;
  // Elements by which a full array grows.
  uint32 GetGrowStep() const noexcept;

  bool SetElemSpace(const detail::ArrayElement& inType, uint32 inSpace);
  bool SetElemCount(const detail::ArrayElement& inType, uint32 inCount);
  bool AddElemCount(const detail::ArrayElement& inType, uint32 inCount);
  bool RemoveElem(const detail::ArrayElement& inType, uint32 index, uint32 inCount);
  // Makes room for one more element without counting it.
  bool GrowForOne(const detail::ArrayElement& inType);

  bool Contains(const detail::ArrayElement& inType, const void* inAddress) const noexcept;
  uint8* ElemAddress(const detail::ArrayElement& inType, uint32 index) const noexcept {
    return static_cast<uint8*>(fBase) + static_cast<MCSize>(index) * inType.fSize;
  }

  uint32 fElemCount = 0;
  uint32 fElemSpace = 0;
  uint32 fFlags;
  void* fBase = nullptr;

 private:
  bool Initialise(const detail::ArrayElement& inType, uint32 initialCount, uint32 initialSpace, uint32 inGrowSize,
                  bool inZeroFill);
  void ClearElems(const detail::ArrayElement& inType, uint32 inFirst, uint32 inEnd) noexcept;
  void DestroyElems(const detail::ArrayElement& inType, uint32 inFirst, uint32 inEnd) noexcept;
  bool ReplaceBlock(const detail::ArrayElement& inType, uint32 inSpace);
};

static_assert(sizeof(void*) != 4 || sizeof(MCArrayCore) == 16);

}  // namespace qlx
