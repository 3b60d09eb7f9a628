// Files of typed, numbered blocks of data: dialogs, strings, records of extensions.
//
//   MCResourceFile file;
//   if (file.Open(path) == MC_S_OK) {
//     MCSharedResource text;
//     if (text.Load(file, "STR "_id, 128) == MC_S_OK) { ... text->GetData() ... }
//   }
//
// Open files form a chain, the one opened last first; a look-up through the chain goes on to the next file while
// nothing is found. Files are to be closed in the opposite order.
//
// A file is closed without being saved. Replaced data that fits into its place, and data at the end of the file, are
// written at once, but the file's map only by `Save`: until then a file that grew is, for everybody else, as it was.
//
// A file that is damaged opens when its map is sound; a resource whose data is not fails when it is loaded. No content
// of a file makes a call read outside it or take more memory than the file is long.
//
// Failures are result codes, and `GetProblem` tells what was wrong and where. Besides those named at the calls:
// `MC_E_NOTVALID` when the file is not open, or not open for writing; `MC_E_OUTOFMEMORY`; `MC_E_BADTOKEN` for damage
// and `MC_E_EOF` for a file that ends early; `MC_E_RESNOTFOUND`. A call that fails changes nothing in the map, and of
// the file at most the bytes of the resource that it was to replace.
//
// Each call takes the file's lock, so threads may share an open file; opening, closing and destroying belong to one.
#pragma once

#include <mutex>

#include "MCPtrArray.h"
#include "MCResource.h"

namespace qlx {

class MCResourceMap;
struct MCResourceEntry;
class TMCFileStream;

// What a file's map says of one resource.
struct MCResourceInfo {
  MCID fType = 0;
  int16 fID = 0;
  uint32 fAttributes = 0;  // in the top byte
  bool fHasData = false;
  uint32 fOffset = 0;  // of the data's length, from the data area's start; `kResNoData` without data
  TMCString255 fName;
};

class MCResourceFile : public TMCObject {
 public:
  MCResourceFile() noexcept = default;
  ~MCResourceFile();
  MCResourceFile(const MCResourceFile&) = delete;
  MCResourceFile& operator=(const MCResourceFile&) = delete;

  // Makes a file without resources; one that is there is lost. Paths are UTF-8.
  static MCResult CreateEmpty(const TMCString& inPath) noexcept;

  // Reads the map, and joins the chain. With `inLoadMarked`, resources that are marked for it are loaded; one that
  // cannot be ends this for its type, and fails again when it is looked up. A file that is open already is reported.
  MCResult Open(const TMCString& inPath, bool inWritable = false, bool inLoadMarked = false) noexcept;
  // Resources that are still used are reported, and deleted with the others.
  void Close() noexcept;
  bool IsOpen() const noexcept { return fIsOpen; }
  // The map differs from the file's.
  bool IsChanged() const noexcept { return fIsChanged; }
  // What was wrong when a call failed last, as a clause that a person reads.
  TMCString255 GetProblem() const noexcept;

  // Counted: the caller calls `Release`. On failure null is stored.
  MCResult GetResource(MCID inType, int16 inID, MCResource** outResource) noexcept;
  // The same in this file and those after it in the chain. A resource that is found but cannot be loaded ends it.
  MCResult GetChainResource(MCID inType, int16 inID, MCResource** outResource) noexcept;
  // Bytes of data in the file. A resource without data is reported.
  MCResult GetStoredSize(MCID inType, int16 inID, uint32& outSize) noexcept;
  // Lets go of resources that nobody uses.
  void UnloadUnused() noexcept;

  SResHeader GetHeader() const noexcept;
  int32 GetFileLength() const noexcept;
  int32 GetTypeCount() const noexcept;
  // 0 past the end.
  MCID GetType(int32 inIndex) const noexcept;
  int32 GetResourceCount(MCID inType) const noexcept;
  // `n` counts in the order of the file, from 0; one out of range is reported.
  MCResult GetResourceAt(MCID inType, int32 n, MCResourceInfo& outInfo) const noexcept;
  MCResult GetInfo(MCID inType, int16 inID, MCResourceInfo& outInfo) const noexcept;

  // `MC_E_RESPROTECTED` when the attributes forbid it. Data that is not longer stays in its place; longer data moves to
  // the end of the file. A resource that is loaded has the new data, too.
  MCResult ReplaceData(MCID inType, int16 inID, const void* inData, uint32 inSize) noexcept;
  // A null `inData` makes a resource without data. `MC_E_RESEXISTS`, `MC_E_RESTOOLARGE`.
  MCResult AddResource(MCID inType, int16 inID, const TMCString& inName, uint32 inAttributes, const void* inData,
                       uint32 inSize) noexcept;
  // `MC_E_RESPROTECTED`, `MC_E_RESINUSE`. The place of the data is not used again.
  MCResult RemoveResource(MCID inType, int16 inID) noexcept;
  // An empty name is none. `MC_E_RESTOOLARGE` above 255 bytes.
  MCResult RenameResource(MCID inType, int16 inID, const TMCString& inName) noexcept;
  MCResult SetAttributes(MCID inType, int16 inID, uint32 inAttributes) noexcept;

  // Writes a map that changed to the end of the file, then the header that leads to it: a save that is interrupted
  // leaves the earlier map in force. `MC_E_RESTOOLARGE`, before anything is written, when an offset would not fit.
  MCResult Save() noexcept;
  // Writes all resources to another file, in the order of the map and without gaps. What is at `inPath` is replaced
  // once the new file is whole; it must not be this file itself. Needs no right to write this file.
  MCResult SaveCopy(const TMCString& inPath) noexcept;

  // The chain.
  static MCResourceFile* GetFirstFile() noexcept;
  MCResourceFile* GetNextFile() const noexcept;
  // Lets look-ups go on with another open file, or end here (null). `MC_E_INVALIDARG` when that would lead back.
  MCResult SetNextFile(MCResourceFile* inNext) noexcept;
  // Index among the open files; -1 when this is none.
  int32 GetResFileRef() const noexcept { return fResFileRef; }
  // Null where no file is; an index past the end is reported.
  static MCResourceFile* GetOpenedFile(int32 inResFileRef) noexcept;

 private:
  friend class MCResource;
  using Guard = std::scoped_lock<std::recursive_mutex>;

  MCResult OpenFile(const TMCString& inPath, bool inWritable) noexcept;
  MCResult LoadMap() noexcept;
  MCResult ReadHeader(SResHeader& outHeader) noexcept;
  MCResult JoinFiles() noexcept;
  void LeaveChain() noexcept;
  void LeaveOpenedFiles() noexcept;
  void LoadMarked() noexcept;
  void CloseResources() noexcept;
  void DropFile() noexcept;
  void Forget(const MCResource* inResource) noexcept;

  // Null when there is none, and then that is the problem. `FindToEdit` wants a file that may be written.
  MCResult Find(MCID inType, int16 inID, MCResourceEntry*& outEntry) const noexcept;
  MCResult FindToEdit(MCID inType, int16 inID, MCResourceEntry*& outEntry) const noexcept;
  MCResult Load(MCResourceEntry& ioEntry) noexcept;
  MCResult FindData(const MCResourceEntry& inEntry, uint32& outPosition, uint32& outSize) const noexcept;
  MCResult ReadData(const MCResourceEntry& inEntry, uint8*& outData, uint32& outSize) const noexcept;
  MCResult ReadBytes(uint32 inPosition, void* outBytes, uint32 inCount) const noexcept;
  MCResult WriteBytes(uint32 inPosition, const void* inBytes, uint32 inCount) noexcept;
  bool CanStayInPlace(const MCResourceEntry& inEntry, uint32 inSize) const noexcept;
  MCResult StoreData(MCResourceEntry& ioEntry, const void* inData, uint32 inSize) noexcept;
  MCResult WriteMap(TMCFileStream& ioFile, SResHeader& ioHeader, const TMCArray<uint32>* inWords) noexcept;
  MCResult WriteCopy(TMCFileStream& ioFile) noexcept;
  void DescribeEntry(const MCResourceEntry& inEntry, MCResourceInfo& outInfo) const noexcept;
  MCResult Fail(MCResult inResult, const char* inFormat, ...) const noexcept __attribute__((format(printf, 3, 4)));

  static TMCPtrArray<MCResourceFile> sOpenedFiles;  // null where a file was closed; under `sLock`, as the chain is
  static MCResourceFile* sFirstFile;
  static std::recursive_mutex sLock;

  TMCFileStream* fFile = nullptr;
  MCResourceMap* fMap = nullptr;
  TMCPtrArray<MCResource> fLoaded;
  bool fIsChanged = false;
  bool fLoadMarked = false;
  bool fIsOpen = false;
  bool fIsWritable = false;
  int32 fResFileRef = -1;
  MCResourceFile* fNextFile = nullptr;
  mutable TMCString255 fProblem;
  mutable std::recursive_mutex fLock;
};

}  // namespace qlx
