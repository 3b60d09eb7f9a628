// A table that finds elements by key. The elements live elsewhere, in an array of the user's; the table holds their
// indices. A user derives from it, and says how keys are hashed and compared.
#pragma once

#include "MCClassArray.h"
#include "MCObject.h"

namespace qlx {

class MCHash : public TMCObject {
 public:
  enum class Direction { kBackward, kForward };

  // A size of 0 is reported and taken as 1. Without memory the table stays empty and refuses entries.
  explicit MCHash(uint32 size);
  MCHash(const MCHash&) = delete;
  MCHash& operator=(const MCHash&) = delete;
  virtual ~MCHash() = default;

  uint32 GetSize() const noexcept { return fSize; }

  // The first entry of the key's bucket, in the given direction, that matches; `kUnusedIndex` when there is none.
  // Throws `MC_E_INVALIDARG` for a null key, as do the next two.
  uint32 Lookup(const void* inKey, Direction inDirection = Direction::kForward) const;
  bool AddEntry(const void* inKey, uint32 inElem);
  // False when the key has no such entry.
  bool RemoveEntry(const void* inKey, uint32 inElem);

 protected:
  // Any number; the table takes it modulo its size.
  virtual uint32 HashKey(const void* inKey) const = 0;
  virtual bool IsElemKey(uint32 inElem, const void* inKey) const = 0;

 private:
  using Bucket = TMCArray<uint32>;

  uint32 BucketIndex(const void* inKey) const;

  uint32 fSize;
  TMCClassArray<Bucket> fBuckets;
};

}  // namespace qlx
