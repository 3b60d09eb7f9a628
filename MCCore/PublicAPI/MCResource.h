// A loaded resource, and a holder that shares one.
#pragma once

#include <atomic>
#include <utility>

#include "MCResourceFormat.h"
#include "MCString.h"

namespace qlx {

class MCResourceFile;
class MCSharedResource;

// One resource in memory. It belongs to its file, which deletes it when it is closed; a use count says whether somebody
// still needs it. Whoever got it from a look-up calls `Release` once, and does not touch it after its file was closed
// (`MCSharedResource` then knows that it is gone).
class MCResource : public TMCObject {
 public:
  // Takes over `inData`, a block of `inSize` bytes from `MCmalloc`. With none and a size above 0 that is reported, and
  // cleared memory takes its place; without memory the size is 0. Nobody uses a fresh resource.
  MCResource(MCResourceFile* inOwner, MCID inType, int16 inID, const TMCString& inName, uint32 inSize,
             uint8* inData = nullptr) noexcept;
  // For the file alone. Anybody else's `delete` is reported, and the file forgets the resource.
  ~MCResource();
  MCResource(const MCResource&) = delete;
  MCResource& operator=(const MCResource&) = delete;

  MCID GetType() const noexcept { return fType; }
  int16 GetID() const noexcept { return fID; }
  const TMCString& GetName() const noexcept { return fName; }
  uint32 GetSize() const noexcept { return fSize; }
  // Null for a resource of 0 bytes. Valid until the data is replaced or the file is closed.
  const uint8* GetData() const noexcept { return fData; }
  // Null once somebody deleted what was the file's.
  MCResourceFile* GetOwner() const noexcept { return fOwner; }

  int32 GetUseCount() const noexcept { return fUseCount; }
  int32 AddUse() noexcept { return ++fUseCount; }
  // An unused resource stays loaded. One release too many is reported and changes nothing.
  int32 Release() noexcept;

 private:
  friend class MCResourceFile;
  friend class MCSharedResource;

  void ReplaceData(uint8* inData, uint32 inSize) noexcept;

  MCResourceFile* fOwner;
  uint32 fSize;
  MCID fType;
  uint8* fData;
  TMCString255 fName;
  std::atomic<int32> fUseCount = 0;
  int16 fID;
  bool fIsClosed = false;
  MCSharedResource* fShares = nullptr;  // the first of those that hold this resource
};

// Holds one use of a resource, and is empty once the resource is gone. Holders may live on several threads, but a file
// must not be closed while another thread works with its data.
class MCSharedResource {
 public:
  MCSharedResource() noexcept = default;
  // Adds a use; the caller keeps its own.
  explicit MCSharedResource(MCResource* inShared) noexcept { Share(inShared); }
  MCSharedResource(const MCSharedResource& inSource) noexcept : MCSharedResource(inSource.Get()) {}
  MCSharedResource(MCSharedResource&& ioSource) noexcept : MCSharedResource(ioSource.Get()) { ioSource.Clear(); }
  ~MCSharedResource() { Clear(); }
  MCSharedResource& operator=(const MCSharedResource& inSource) noexcept {
    Share(inSource.Get());
    return *this;
  }
  MCSharedResource& operator=(MCSharedResource&& ioSource) noexcept {
    if (this != &ioSource) {
      Share(ioSource.Get());
      ioSource.Clear();
    }
    return *this;
  }

  // Looks up and loads; what was held is let go first. On failure this is empty.
  MCResult Load(MCResourceFile& inFile, MCID inType, int16 inID) noexcept;
  void Share(MCResource* inShared) noexcept;
  void Clear() noexcept { Share(nullptr); }

  MCResource* Get() const noexcept { return fResource; }
  MCResource* operator->() const noexcept { return fResource; }
  explicit operator bool() const noexcept { return fResource != nullptr; }

 private:
  friend class MCResource;

  void Join(MCResource* inResource) noexcept;
  void Leave() noexcept;

  MCResource* fResource = nullptr;
  MCSharedResource* fPrevious = nullptr;
  MCSharedResource* fNext = nullptr;
};

}  // namespace qlx
