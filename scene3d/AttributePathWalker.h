// From a live parameter up to a root: the nodes of its attribute path, leaf first.
//
//   for (AttributePathWalker walker(root, mode, param); walker.HasMore(); walker.Next()) { ... walker.GetNode() ... }
//   if (walker.HasFailed()) { the nodes given so far are void }
//
// The walker lives for one walk and holds references to where it stands. What it expects and does not find is reported
// and ends it.
#pragma once

#include "AttributePath.h"

namespace qlx {

enum class AttributePathMode : int32 {
  kByElementID = 0,  // ends with one node that names the element by its id
  kFromRoot = 1,     // climbs through the parents and ends at the attributes set, which must be the root's
};

class AttributePathWalker {
 public:
  // The root is an element of the tree; for the mode `kFromRoot` one that answers as the attributes set.
  AttributePathWalker(IMCUnknown* inRoot, AttributePathMode inMode, ParamInfo& inParam);

  bool HasMore() const { return fStage != Stage::kFinished && !fFailed; }
  bool HasFailed() const { return fFailed; }
  // Valid until the next step.
  const AttributePathNode& GetNode() const { return fNode; }
  void Next();

 private:
  enum class Stage : uint8 { kRunning, kFinalNodeGiven, kFinished };

  void LeaveHolder();
  void LeaveObject(I3DShObject& inObject);
  void LeaveShader(I3DShShader& inShader);
  void LeaveGroup();
  void LeaveElement();
  // The first of the elements that lies below the root becomes current; else the walk fails.
  template <class NextUser>
  bool EnterElementBelowRoot(NextUser&& inNextUser);
  // The owner of the holder becomes current where it is an element.
  void TakeElementFromHolder();
  void Fail() { fFailed = true; }

  TMCCountedPtr<IMCUnknown> fRoot;
  AttributePathMode fMode;
  TMCCountedPtr<TimeBasedData> fHolder;
  TMCCountedPtr<TreeElement> fElement;
  bool fFailed = false;
  Stage fStage = Stage::kRunning;
  AttributePathNode fNode;
};

}  // namespace qlx
