#include "AttributePathWalker.h"

namespace qlx {

namespace {

int32 PositionIn(TreeElement& inParent, const TreeElement* inElement) {
  int32 position = 0;
  for (TreeElement* child = inParent.GetFirstChild(); child && child != inElement; child = child->GetNextSibling()) {
    ++position;
  }
  return position;
}

// The place of a shader in the list of an instance; -1 when it stands at none.
int32 FindInList(I3DShInstance& inInstance, const I3DShShader& inShader) {
  const uint32 count = inInstance.GetShaderCount();
  for (uint32 i = 0; i < count; ++i) {
    if (inInstance.GetShader(i) == &inShader) {
      return static_cast<int32>(i);
    }
  }
  return -1;
}

}  // namespace

AttributePathWalker::AttributePathWalker(IMCUnknown* inRoot, AttributePathMode inMode, ParamInfo& inParam)
    : fRoot(MCShare(inRoot)), fMode(inMode) {
  fNode.fType = kParamInfo;
  fNode.fIndex = static_cast<int32>(inParam.GetParamID());
  inParam.GetHolder(fHolder.WriteInto());
  TakeElementFromHolder();
}

void AttributePathWalker::TakeElementFromHolder() {
  if (fHolder) {
    fElement = MCQuery<TreeElement>(fHolder->GetOwner());
  }
}

void AttributePathWalker::Next() {
  fNode.Clear();
  if (fStage == Stage::kFinalNodeGiven) {
    fStage = Stage::kFinished;
  } else if (fElement) {
    LeaveElement();
  } else if (fHolder) {
    LeaveHolder();
  } else {
    Fail();
  }
}

void AttributePathWalker::LeaveHolder() {
  IMCUnknown* const owner = fHolder->GetOwner();
  if (const auto object = MCQuery<I3DShObject>(owner)) {
    LeaveObject(*object);
  } else if (const auto shader = MCQuery<I3DShShader>(owner)) {
    LeaveShader(*shader);
  } else {
    LeaveGroup();
  }
}

template <class NextUser>
bool AttributePathWalker::EnterElementBelowRoot(NextUser&& inNextUser) {
  const auto root = MCQuery<TreeElement>(fRoot);
  for (uint32 i = 0; root; ++i) {
    TreeElement* const user = inNextUser(i);
    if (!user) {
      break;
    }
    if (user->IsAtOrBelow(root.Get())) {
      fElement.Share(user);
      fHolder.Clear();
      return true;
    }
  }
  Fail();
  return false;
}

void AttributePathWalker::LeaveObject(I3DShObject& inObject) {
  if (EnterElementBelowRoot([&](uint32 i) { return inObject.GetInstance(i); })) {
    fNode.fType = kInstanceAttributes;
  }
}

void AttributePathWalker::LeaveShader(I3DShShader& inShader) {
  if (!EnterElementBelowRoot([&](uint32 i) { return inShader.GetUser(i); })) {
    return;
  }
  fNode.fType = kShaderAttributes;
  fNode.fIndex = -1;
  const auto shadable = MCQuery<I3DShShaderHolder>(fElement);
  if (!MC_ASSERT_TEXT(shadable, "shadableTree")) {
    Fail();
    return;
  }
  if (shadable->GetMainShader() == &inShader) {
    return;
  }
  const auto instance = MCQuery<I3DShInstance>(fElement);
  if (MC_ASSERT_TEXT(instance, "instance")) {
    fNode.fIndex = FindInList(*instance, inShader);
  }
  if (!MC_ASSERT(fNode.fIndex != -1)) {
    Fail();
  }
}

void AttributePathWalker::LeaveGroup() {
  fNode.fType = kParamInfo;
  fNode.fIndex = static_cast<int32>(fHolder->GetDataID());
  TMCCountedPtr<TimeBasedData> parent;
  fHolder->GetParentData(parent.WriteInto());
  fHolder = std::move(parent);
  TakeElementFromHolder();
}

void AttributePathWalker::LeaveElement() {
  if (fMode == AttributePathMode::kByElementID) {
    fNode.fType = kTreeByID;
    fNode.fIndex = static_cast<int32>(fElement->GetUniqueID());
    fStage = Stage::kFinalNodeGiven;
    return;
  }
  if (fMode != AttributePathMode::kFromRoot) {
    Fail();
    return;
  }
  if (const auto attributesSet = MCQuery<AttributesSet>(fElement)) {
    fStage = Stage::kFinished;
    if (!MC_ASSERT_TEXT(MCQuery<AttributesSet>(fRoot) == attributesSet, "fRoot == attributesSet")) {
      Fail();
    }
    return;
  }
  TMCCountedPtr<TreeElement> parent;
  fElement->GetParent(parent.WriteInto());
  if (!MC_ASSERT(parent)) {
    Fail();
    return;
  }
  fNode.fType = kTreeByNameNear;
  fNode.fIndex = PositionIn(*parent, fElement.Get());
  fNode.fName = fElement->GetName();
  fElement = std::move(parent);
}

}  // namespace qlx
