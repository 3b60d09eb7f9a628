// Makes the attribute path of a live parameter, and compares a path with one.
#pragma once

#include "AttributePathWalker.h"

namespace qlx {

// Lives from the moment that a parameter is known until its path is asked for. The walk is done once, at the first
// `CopyTo`; the parameter is let go with it, and later copies give the same path.
class AttributePathRecorder {
 public:
  void Set(AttributePathMode inMode, ParamInfo* inParam);

  // Replaces the nodes of the path; its version becomes the current one. The path is empty where the walk failed. A
  // null root is reported and leaves the path as it is.
  void CopyTo(IMCUnknown* inRoot, AttributePath& outPath);

 private:
  AttributePathMode fMode = AttributePathMode::kByElementID;
  TMCClassArray<AttributePathNode> fNodes;  // leaf first
  TMCCountedPtr<ParamInfo> fSource;
};

// True where the path is the one that a recorder would make of the parameter now: in the mode that its first node
// shows. All three live as long as the matcher.
class AttributePathMatcher {
 public:
  AttributePathMatcher(const AttributePath& inPath, IMCUnknown* inRoot, ParamInfo& inParam)
      : fPath(inPath), fRoot(inRoot), fParam(inParam) {}

  bool Matches() const;

 private:
  const AttributePath& fPath;
  IMCUnknown* fRoot;
  ParamInfo& fParam;
};

}  // namespace qlx
