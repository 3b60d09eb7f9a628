#include "MCHash.h"

#include "MCException.h"

namespace qlx {

MCHash::MCHash(uint32 size) : fSize(MC_ASSERT(size > 0) ? size : 1) {
  fBuckets.SetElemCount(fSize);
}

uint32 MCHash::BucketIndex(const void* inKey) const {
  if (!inKey) {
    throw TMCException(MC_E_INVALIDARG, __FILE_NAME__, __LINE__);
  }
  return HashKey(inKey) % fSize;
}

uint32 MCHash::Lookup(const void* inKey, Direction inDirection) const {
  const uint32 index = BucketIndex(inKey);
  if (index >= fBuckets.GetElemCount()) {
    return kUnusedIndex;
  }
  const Bucket& bucket = fBuckets[index];
  const uint32 count = bucket.GetElemCount();
  for (uint32 i = 0; i < count; ++i) {
    const uint32 elem = bucket[inDirection == Direction::kForward ? i : count - 1 - i];
    if (IsElemKey(elem, inKey)) {
      return elem;
    }
  }
  return kUnusedIndex;
}

bool MCHash::AddEntry(const void* inKey, uint32 inElem) {
  const uint32 index = BucketIndex(inKey);
  return index < fBuckets.GetElemCount() && fBuckets[index].AddElem(inElem);
}

bool MCHash::RemoveEntry(const void* inKey, uint32 inElem) {
  const uint32 index = BucketIndex(inKey);
  if (index >= fBuckets.GetElemCount()) {
    return false;
  }
  const uint32 position = fBuckets[index].FindElem(inElem);
  return position != kUnusedIndex && fBuckets[index].RemoveElem(position);
}

}  // namespace qlx
