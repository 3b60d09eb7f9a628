#include "MCMemory.h"
#include "MCStream.h"

namespace qlx {

TMCStream::Info* TMCStream::FindInfo(uint32 inKey) const noexcept {
  for (uint32 i = 0; i < fInfoCount; ++i) {
    if (fInfos[i].fKey == inKey) {
      return &fInfos[i];
    }
  }
  return nullptr;
}

const void* TMCStream::GetInfo(uint32 inKey) const noexcept {
  const Info* const info = FindInfo(inKey);
  return info ? info->fRecord : nullptr;
}

void* TMCStream::SetInfo(uint32 inKey, const void* inRecord, uint32 inByteCount) noexcept {
  void* const copy = MCmalloc(inByteCount ? inByteCount : 1);
  if (!copy) {
    return nullptr;
  }
  MCMemoryCopy(copy, inRecord, inByteCount);
  if (Info* const info = FindInfo(inKey)) {
    MCfree(info->fRecord);
    info->fRecord = copy;
    return copy;
  }
  const MCSize tableSize = (static_cast<MCSize>(fInfoCount) + 1) * sizeof(Info);
  auto* const table = static_cast<Info*>(fInfos ? MCrealloc(fInfos, tableSize) : MCmalloc(tableSize));
  if (!table) {
    MCfree(copy);
    return nullptr;
  }
  fInfos = table;
  fInfos[fInfoCount++] = {inKey, copy};
  return copy;
}

void TMCStream::RemoveInfo(uint32 inKey) noexcept {
  if (Info* const info = FindInfo(inKey)) {
    MCfree(info->fRecord);
    *info = fInfos[--fInfoCount];
  }
}

}  // namespace qlx
