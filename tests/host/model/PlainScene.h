// A scene of another host over one of the open host, and elements: what components meet beside the open host's own.
// They answer what a test says.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "FakeObject.h"
#include "HostScene.h"
#include "ModelTest.h"
#include "Transforms.h"
#include "model/Element.h"
#include "model/Scene.h"

namespace qlx::test {

// A scene of another host over one of the open host: without a structure version, and, as a test says, without more.
class PlainScene final : public FakeObject<I3DShScene> {
 public:
  explicit PlainScene(host::Scene& inScene) : fScene(inScene) {}

  int32 MC_CALL GetCurrentTime(SceneTime& outTime) override {
    outTime = {fScene.GetTime(), 7};
    return outTime.fTicks;
  }
  real32 MC_CALL GetFrameRate() override { return fRate; }
  void MC_CALL GetTimeRange(ITimeRange** outRange) override {
    if (fHasRange) {
      fScene.GetTimeRange(outRange);
    }
  }
  void MC_CALL GetRoot(IMCUnknown** outRoot) override {
    if (fHasRoot) {
      fScene.GetRoot(outRoot);
    }
  }
  void MC_CALL GetSceneMaster(ISceneMaster** outMaster) override {
    if (fHasMaster) {
      fScene.GetSceneMaster(outMaster);
    }
  }
  void MC_CALL FindElementByTreePath(TreeElement** outElement, const TreePath& inPath) override {
    fScene.FindElementByTreePath(outElement, inPath);
    if (*outElement == fGone) {
      MCAssignCounted<TreeElement>(outElement, nullptr);
    }
  }
  void MC_CALL FindElementByRef(TreeElement** outElement, const ObjectReference& inReference) override {
    ++fLookups;
    fScene.FindElementByRef(outElement, inReference);
  }
  void MC_CALL FindElementByUniqueID(TreeElement**, uint32) override {}
  uint32 MC_CALL GetSelectedElementCount() override { return static_cast<uint32>(fSelected.size()); }
  TreeElement* MC_CALL GetSelectedElement(uint32 inIndex) override { return fSelected.at(inIndex); }
  void MC_CALL RefreshAfterCommand() override { ++fRefreshes; }

  host::Scene& fScene;
  real32 fRate = fScene.GetFrameRate();
  bool fHasRange = true;
  bool fHasRoot = true;
  bool fHasMaster = true;
  int fLookups = 0;
  int fRefreshes = 0;
  std::vector<TreeElement*> fSelected;
  TreeElement* fGone = nullptr;  // found by no path
};

// The notifier of an element's morphs.
class PlainMorphs final : public FakeObject<I3DShMorphTarget> {
 public:
  void MC_CALL MorphChanged() override { ++fChanged; }
  int fChanged = 0;
};

// An element of such a scene.
class PlainElement final : public TreeElement {
 public:
  PlainElement(host::Element& inElement, I3DShScene* inScene) : fElement(inElement), fScene(inScene) {}

  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (fAnswer && fAnswer(inID, outObject)) {
      return MC_S_OK;
    }
    if (inID == TreeElement::kInterfaceID) {
      return MCStoreCounted<TreeElement>(this, outObject);
    }
    if (fMorphs && inID == I3DShMorphTarget::kInterfaceID) {
      return fMorphs->QueryInterface(inID, outObject);
    }
    if (fHasParameters) {
      return fElement.QueryInterface(inID, outObject);
    }
    return MCStoreNone(outObject);
  }
  uint32 MC_CALL AddRef() override { return static_cast<uint32>(++fCount); }
  uint32 MC_CALL Release() override { return static_cast<uint32>(--fCount); }
  I3DShScene* MC_CALL GetScene() override { return fScene; }
  const TMCString& MC_CALL GetName() override { return fElement.GetName(); }
  uint32 MC_CALL GetUniqueID() override { return fElement.GetUniqueID(); }
  void MC_CALL GetParent(TreeElement**) override {}
  TreeElement* MC_CALL GetParentRaw() override { return nullptr; }
  TreeElement* MC_CALL GetFirstChild() override { return nullptr; }
  TreeElement* MC_CALL GetNextSibling() override { return nullptr; }
  bool MC_CALL IsAtOrBelow(TreeElement*) override { return false; }
  TreePath& MC_CALL GetTreePath(TreePath& outPath) override { return outPath; }
  ObjectReference& MC_CALL GetObjectReference(ObjectReference& outReference) override { return outReference; }
  MCResult MC_CALL GetLocalTransform(TTreeTransform& outTransform) override {
    if (fOnRead) {
      fOnRead();
    }
    return fHasTransform ? fElement.GetLocalTransform(outTransform) : MC_E_NOTVALID;
  }
  MCResult MC_CALL SetLocalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                     int32 in5, int32 in6) override {
    fArguments = {in1, in2, in3, in4, in5, in6};
    return fElement.SetLocalTransform(inTransform, in1, in2, in3, in4, in5, in6);
  }
  MCResult MC_CALL GetGlobalTransform(TTreeTransform& outTransform) override {
    return fHasTransform ? fElement.GetGlobalTransform(outTransform) : MC_E_NOTVALID;
  }
  MCResult MC_CALL SetGlobalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                      int32 in5) override {
    fArguments = {in1, in2, in3, in4, in5};
    return fElement.SetGlobalTransform(inTransform, in1, in2, in3, in4, in5);
  }
  MCResult MC_CALL GetGlobalTransformChain(TTreeChainTransform& outTransform) override {
    return fElement.GetGlobalTransformChain(outTransform);
  }
  void MC_CALL TransformChanged(int32 inZero) override { fChanged += inZero == 0 ? 1 : 0; }
  void MC_CALL InvalidateElement(int32 inOne) override {
    fInvalidated += inOne;
    if (fOnInvalidate) {
      fOnInvalidate();
    }
  }
  uint32 MC_CALL GetModifierCount(int32) override { return 0; }
  MCResult MC_CALL InsertModifier(I3DShModifier*, uint32) override { return MC_E_NOTVALID; }

  host::Element& fElement;
  I3DShScene* fScene;
  std::function<bool(const MCGuid&, void**)> fAnswer;  // asked first
  std::function<void()> fOnRead;                       // as the local transform is read
  std::function<void()> fOnInvalidate;
  I3DShMorphTarget* fMorphs = nullptr;
  bool fHasParameters = true;
  bool fHasTransform = true;
  int fCount = 1;
  int fInvalidated = 0;
  int fChanged = 0;
  std::vector<int32> fArguments;  // of the last write of a transform
};

// One such element in its scene. Nothing of them may be held at the end.
struct PlainStage {
  ~PlainStage() { EXPECT_TRUE(fElement.fCount == 1 && fScene.fCount == 0) << "the element or its scene is held"; }

  TestScene fModel;
  PlainScene fScene{*fModel};
  PlainElement fElement{fModel.Add("Element"), &fScene};
};

}  // namespace qlx::test
