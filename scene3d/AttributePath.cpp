#include "AttributePath.h"

#include "MCException.h"

namespace qlx {

namespace {

bool IsTreeStep(int8 inKind) {
  return inKind == kTreeByPosition || inKind == kTreeByName || inKind == kTreeByNameNear;
}

int64 Distance(int32 inA, int32 inB) {
  const int64 difference = static_cast<int64>(inA) - inB;
  return difference < 0 ? -difference : difference;
}

TreeElement* ChildAt(TreeElement& inElement, int32 inPosition) {
  TreeElement* child = inPosition < 0 ? nullptr : inElement.GetFirstChild();
  for (int32 position = 0; child && position != inPosition; ++position) {
    child = child->GetNextSibling();
  }
  return child;
}

TreeElement* ChildNamed(TreeElement& inElement, const AttributePathNode& inNode) {
  int32 left = inNode.fIndex;
  for (TreeElement* child = inElement.GetFirstChild(); child; child = child->GetNextSibling()) {
    if (child->GetName() == inNode.fName && left-- == 0) {
      return child;
    }
  }
  return nullptr;
}

TreeElement* ChildNear(TreeElement& inElement, const AttributePathNode& inNode) {
  TreeElement* atPosition = nullptr;
  TreeElement* named = nullptr;
  int64 nearest = 0;
  int32 position = 0;
  for (TreeElement* child = inElement.GetFirstChild(); child; child = child->GetNextSibling(), ++position) {
    if (position == inNode.fIndex) {
      atPosition = child;
    }
    if (child->GetName() == inNode.fName && (!named || Distance(position, inNode.fIndex) < nearest)) {
      named = child;
      nearest = Distance(position, inNode.fIndex);
    }
  }
  return named ? named : atPosition;
}

TreeElement* TakeTreeStep(TreeElement& inElement, const AttributePathNode& inNode) {
  switch (inNode.fType) {
    case kTreeByPosition:
      return ChildAt(inElement, inNode.fIndex);
    case kTreeByName:
      return ChildNamed(inElement, inNode);
    default:
      return ChildNear(inElement, inNode);
  }
}

TMCCountedPtr<TreeElement> FindByID(TreeElement& inRoot, int32 inID) {
  TMCCountedPtr<TreeElement> found;
  if (I3DShScene* const scene = inRoot.GetScene()) {
    scene->FindElementByUniqueID(found.WriteInto(), static_cast<uint32>(inID));
  }
  return found && found->IsAtOrBelow(&inRoot) ? found : nullptr;
}

template <class Object>
TMCCountedPtr<TimeBasedData> AttributesOf(Object* inObject) {
  if (!inObject) {
    return nullptr;
  }
  const auto attributes = MCQuery<I3DShAttributes>(inObject);
  if (!attributes) {
    throw TMCException(MC_E_INVALIDARG, "AttributePath", __LINE__);
  }
  return MCShare(attributes->GetTimeBasedData());
}

TMCCountedPtr<TimeBasedData> AttributesOfShader(TreeElement& inElement, int32 inIndex) {
  const auto instance = MCQuery<I3DShInstance>(&inElement);
  if (!instance) {
    return nullptr;
  }
  if (inIndex >= 0) {
    return AttributesOf(instance->GetShader(static_cast<uint32>(inIndex)));
  }
  const auto shadable = MCQuery<I3DShShaderHolder>(&inElement);
  return shadable ? AttributesOf(shadable->GetMainShader()) : nullptr;
}

}  // namespace

void AttributePathNode::Clear() {
  fIndex = 0;
  fName = "";
  fType = kNoNode;
}

bool AttributePathNode::operator==(const AttributePathNode& inOther) const {
  if (fType != inOther.fType) {
    return false;
  }
  switch (fType) {
    case kTreeByPosition:
    case kTreeByID:
    case kParamInfo:
    case kShaderAttributes:
      return fIndex == inOther.fIndex;
    case kTreeByName:
    case kTreeByNameNear:
      return fIndex == inOther.fIndex && fName == inOther.fName;
    default:
      return fType == kInstanceAttributes;
  }
}

TMCCountedPtr<ParamInfo> detail::FindParamByID(TimeBasedData& inHolder, int32 inID, int32& outIndex) {
  const uint32 count = inHolder.GetParamCount();
  for (uint32 i = 0; i < count; ++i) {
    TMCCountedPtr<ParamInfo> param;
    inHolder.GetParamInfo(param.WriteInto(), i);
    if (param && param->GetParamID() == static_cast<MCID>(inID)) {
      outIndex = static_cast<int32>(i);
      return param;
    }
  }
  outIndex = -1;
  return nullptr;
}

TMCCountedPtr<TimeBasedData> AttributePath::FindTimeBasedData(IMCUnknown* inRoot, uint32& outNext,
                                                              bool skipFirst) const {
  outNext = 0;
  const uint32 count = fNodes.GetElemCount();
  if (!MC_ASSERT_TEXT(inRoot, "root") || count == 0) {
    return nullptr;
  }
  auto element = MCQuery<TreeElement>(inRoot);
  if (!MC_ASSERT_TEXT(element, "tree")) {
    return nullptr;
  }
  if (fNodes[0].fType == kTreeByID) {
    element = FindByID(*element, fNodes[0].fIndex);
    outNext = 1;
  } else if (IsTreeStep(fNodes[0].fType)) {
    for (outNext = skipFirst ? 1 : 0; element && outNext < count && IsTreeStep(fNodes[outNext].fType); ++outNext) {
      element.Share(TakeTreeStep(*element, fNodes[outNext]));
    }
  }
  if (!element || outNext == count) {
    return nullptr;
  }
  const AttributePathNode& node = fNodes[outNext];
  switch (node.fType) {
    case kInstanceAttributes: {
      ++outNext;
      const auto instance = MCQuery<I3DShInstance>(element);
      return instance ? AttributesOf(instance->GetShownObject()) : nullptr;
    }
    case kShaderAttributes:
      ++outNext;
      return AttributesOfShader(*element, node.fIndex);
    default:
      return AttributesOf(element.Get());
  }
}

TMCCountedPtr<TimeBasedData> AttributePath::WalkParamNodes(TimeBasedData* inHolder, uint32 inStart,
                                                           int32& outLeafIndex) const {
  if (!MC_ASSERT_TEXT(inHolder, "timeBasedData")) {
    outLeafIndex = -1;
    return nullptr;
  }
  auto holder = MCShare(inHolder);
  for (uint32 i = inStart; i < fNodes.GetElemCount(); ++i) {
    const AttributePathNode& node = fNodes[i];
    MC_ASSERT(node.fType == kParamInfo);
    const auto param = detail::FindParamByID(*holder, node.fIndex, outLeafIndex);
    if (!param) {
      return nullptr;
    }
    // A node after a plain parameter is looked up in the same holder.
    if (param->IsGroup() && i + 1 < fNodes.GetElemCount()) {
      holder.Share(param->GetGroupData());
      if (!MC_ASSERT_TEXT(holder, "timeBasedData")) {
        return nullptr;
      }
    }
  }
  return holder;
}

TMCCountedPtr<TimeBasedData> AttributePath::FindParamHolder(IMCUnknown* inRoot, int32& outLeafIndex) const {
  outLeafIndex = -1;
  uint32 next = 0;
  const auto holder = FindTimeBasedData(inRoot, next, false);
  return holder ? WalkParamNodes(holder.Get(), next, outLeafIndex) : nullptr;
}

TMCCountedPtr<ParamInfo> AttributePath::FindParamInfo(IMCUnknown* inRoot) const {
  int32 index = -1;
  const auto holder = FindParamHolder(inRoot, index);
  TMCCountedPtr<ParamInfo> param;
  if (holder && index >= 0) {
    holder->GetParamInfo(param.WriteInto(), static_cast<uint32>(index));
  }
  return param;
}

void AttributePath::RemapTreeIDs(const std::unordered_map<uint32, uint32>& inMap) {
  for (AttributePathNode& node : fNodes) {
    const auto found = inMap.find(static_cast<uint32>(node.fIndex));
    if (node.fType == kTreeByID && found != inMap.end()) {
      node.fIndex = static_cast<int32>(found->second);
    }
  }
}

bool AttributePath::operator==(const AttributePath& inOther) const {
  const uint32 count = fNodes.GetElemCount();
  if (count != inOther.fNodes.GetElemCount()) {
    return false;
  }
  for (uint32 i = 0; i < count; ++i) {
    if (!(fNodes[i] == inOther.fNodes[i])) {
      return false;
    }
  }
  return true;
}

}  // namespace qlx
