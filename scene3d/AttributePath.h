// Attribute paths: the persistent name of a parameter, as steps from a root element of the tree down to it.
//
//   AttributePathRecorder recorder;                  AttributePath path;
//   recorder.Set(AttributePathMode::kFromRoot, param);   recorder.CopyTo(root, path);
//   ... save, copy, reorder, read ...
//   const auto param = path.FindParamInfo(root);     null where it has gone
//
// A path is a plain value and holds nothing of the scene. Resolving gives null for every element, parameter or shader
// that is missing; an object that is there but refuses its attributes throws `TMCException` with `MC_E_INVALIDARG`.
// A null root is reported and gives null.
//
// The walk that the tree steps count in goes over the children of the element, in order from 0.
#pragma once

#include <unordered_map>

#include "HostParameters.h"
#include "HostScene.h"
#include "MCClassArray.h"
#include "MCCountedPtr.h"
#include "MCString.h"

namespace qlx {

class TMCStream;

// The values stand in files.
enum AttributePathNodeKind : int8 {
  kNoNode = -1,             // a cleared node
  kTreeByPosition = 0,      // the element at position `fIndex`; older paths only
  kTreeByName = 1,          // the `fIndex`-th element named `fName`; older paths only
  kTreeByID = 2,            // the element with this id anywhere below the root; first node only
  kInstanceAttributes = 3,  // the attributes of the object that the element shows
  kParamInfo = 4,           // the parameter or group with the id `fIndex`
  kShaderAttributes = 5,    // the attributes of the shader at `fIndex` in the instance's list; of its main one below 0
  kTreeByNameNear = 6,      // of the elements named `fName` the one nearest to position `fIndex`, the earlier of two;
                            // without one of that name the element at the position
};

class AttributePathNode {
 public:
  int32 fIndex = 0;
  TMCDynamicString fName;  // of the two kinds that go by name
  int8 fType = kNoNode;    // a kind; what a file holds may be none

  void Clear();
  // By what the kind uses. Two `kInstanceAttributes` are always equal, and what is no kind equals nothing.
  bool operator==(const AttributePathNode& inOther) const;
};

class AttributePath {
 public:
  static constexpr int32 kCurrentVersion = 2;

  AttributePath() = default;

  int32 GetVersion() const { return fVersion; }
  // Versions 0 and 1 stand in old data: see `UpgradePath`.
  void SetVersion(int32 inVersion) { fVersion = inVersion; }
  // The root end first, the parameter last.
  const TMCClassArray<AttributePathNode>& GetNodes() const { return fNodes; }
  TMCClassArray<AttributePathNode>& GetNodes() { return fNodes; }
  bool IsEmpty() const { return fNodes.GetElemCount() == 0; }

  // The holder that the tree steps reach, and the index of the first parameter node. `skipFirst` leaves a first tree
  // node by position or name out: in the oldest paths it names the root itself.
  TMCCountedPtr<TimeBasedData> FindTimeBasedData(IMCUnknown* inRoot, uint32& outNext, bool skipFirst) const;
  // From a holder along the nodes from `inStart` to the last: the holder of the last parameter, and its index there,
  // which stays as it is when no node is left.
  TMCCountedPtr<TimeBasedData> WalkParamNodes(TimeBasedData* inHolder, uint32 inStart, int32& outLeafIndex) const;
  TMCCountedPtr<TimeBasedData> FindParamHolder(IMCUnknown* inRoot, int32& outLeafIndex) const;
  TMCCountedPtr<ParamInfo> FindParamInfo(IMCUnknown* inRoot) const;

  static constexpr MCID kAnyType = 0xFFFFFFFF;
  // Brings a path of an older version up to date, for which it must still resolve below the root. A step that fails
  // leaves the path at the version before it, and ends the upgrade unless `continueOnFailure`. True when no step
  // failed. Paths of the current version and later ones stay as they are; one below 0 fails.
  //   0 -> 1  In a list of groups the path named an element of it by position; it gets the id of the first element in
  //           which the rest of the path leads to a parameter of the type.
  //   1 -> 2  The root itself is no longer named.
  bool UpgradePath(IMCUnknown* inRoot, MCID inDataType, bool continueOnFailure);

  // Gives elements their new ids, where the map has the old one.
  void RemapTreeIDs(const std::unordered_map<uint32, uint32>& inMap);

  // The version plays no part.
  bool operator==(const AttributePath& inOther) const;

  // One structure with the token `inKey`, or none where it is 0. The reader is behind the key; it takes its tokens in
  // any order, skips those that it does not know, and throws `TMCException` with `MC_E_BADTOKEN` or `MC_E_EOF`, the
  // path unchanged. A structure without a version reads as version 0.
  void WriteTo(TMCStream& ioStream, MCID inKey) const;
  void ReadFrom(TMCStream& ioStream);

 private:
  bool UpgradeFromVersion0(IMCUnknown* inRoot, MCID inDataType);
  bool UpgradeListNode(TimeBasedData& inList, uint32 inNode, MCID inDataType);
  void UpgradeFromVersion1();

  int32 fVersion = kCurrentVersion;
  TMCClassArray<AttributePathNode> fNodes;
};

namespace detail {

// The first parameter of the holder with this id, and its index; null and -1 without one.
TMCCountedPtr<ParamInfo> FindParamByID(TimeBasedData& inHolder, int32 inID, int32& outIndex);

}  // namespace detail

}  // namespace qlx
