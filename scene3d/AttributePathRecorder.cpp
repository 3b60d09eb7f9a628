#include "AttributePathRecorder.h"

namespace qlx {

void AttributePathRecorder::Set(AttributePathMode inMode, ParamInfo* inParam) {
  fMode = inMode;
  fNodes.SetElemCount(0);
  fSource.Share(inParam);
}

void AttributePathRecorder::CopyTo(IMCUnknown* inRoot, AttributePath& outPath) {
  if (!MC_ASSERT_TEXT(inRoot, "root")) {
    return;
  }
  if (fSource) {
    AttributePathWalker walker(inRoot, fMode, *fSource);
    for (; walker.HasMore(); walker.Next()) {
      fNodes.AddElem(walker.GetNode());
    }
    if (walker.HasFailed()) {
      fNodes.SetElemCount(0);
    }
    fSource.Clear();
  }
  TMCClassArray<AttributePathNode>& nodes = outPath.GetNodes();
  outPath.SetVersion(AttributePath::kCurrentVersion);
  nodes.SetElemCount(0);
  for (uint32 i = fNodes.GetElemCount(); i > 0; --i) {
    nodes.AddElem(fNodes[i - 1]);
  }
}

bool AttributePathMatcher::Matches() const {
  const TMCClassArray<AttributePathNode>& nodes = fPath.GetNodes();
  uint32 left = nodes.GetElemCount();
  const bool isByID = left > 0 && nodes[0].fType == kTreeByID;
  AttributePathWalker walker(fRoot, isByID ? AttributePathMode::kByElementID : AttributePathMode::kFromRoot, fParam);
  for (; walker.HasMore(); walker.Next()) {
    if (left == 0 || !(walker.GetNode() == nodes[left - 1])) {
      return false;
    }
    --left;
  }
  return left == 0 && !walker.HasFailed();
}

}  // namespace qlx
