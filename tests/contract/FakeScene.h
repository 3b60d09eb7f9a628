// The parts of a scene that a pin meets: an element, its scene and its time lines, and the controls of a panel.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "Fake.h"
#include "HostInterface.h"
#include "HostScene.h"
#include "MCString.h"
#include "Transforms.h"

namespace qlx::contract {

class FakeSceneMaster final : public Fake<ISceneMaster> {
 public:
  I3DShScene* MC_CALL GetMasterScene() override { return nullptr; }
};

class FakeScene final : public Fake<I3DShScene> {
 public:
  int32 MC_CALL GetCurrentTime(SceneTime& outTime) override {
    outTime.fTicks = fTime;
    return fTime;
  }
  real32 MC_CALL GetFrameRate() override { return 24; }
  void MC_CALL GetTimeRange(ITimeRange** outRange) override { *outRange = nullptr; }
  void MC_CALL GetRoot(IMCUnknown** outRoot) override { *outRoot = nullptr; }
  void MC_CALL GetSceneMaster(ISceneMaster** outMaster) override {
    fMaster.AddRef();
    *outMaster = &fMaster;
  }
  void MC_CALL FindElementByTreePath(TreeElement** outElement, const TreePath&) override { *outElement = nullptr; }
  void MC_CALL FindElementByRef(TreeElement** outElement, const ObjectReference&) override { *outElement = nullptr; }
  void MC_CALL FindElementByUniqueID(TreeElement** outElement, uint32) override { *outElement = nullptr; }
  uint32 MC_CALL GetSelectedElementCount() override { return 0; }
  TreeElement* MC_CALL GetSelectedElement(uint32) override { return nullptr; }
  void MC_CALL RefreshAfterCommand() override { ++fRefreshes; }

  int32 fTime = 0;
  int32 fRefreshes = 0;
  FakeSceneMaster fMaster;
};

class FakeAttribute final : public Fake<IAttribute> {
 public:
  explicit FakeAttribute(MCID inID) : fID(inID) {}
  MCID MC_CALL GetAttributeId() override { return fID; }

 private:
  MCID fID;
};

struct InsertedKey {
  int32 fTime;
  real32 fValue;
  MCID fType;
  friend bool operator==(const InsertedKey&, const InsertedKey&) = default;
};

// The track of one attribute; with the id 0, one without an attribute.
class FakeTimeLine final : public Fake<ITimeLine> {
 public:
  explicit FakeTimeLine(MCID inID) : fAttribute(inID), fHasAttribute(inID != 0) {}

  IAttribute* MC_CALL GetAttribute() override { return fHasAttribute ? &fAttribute : nullptr; }
  MCResult MC_CALL InsertKey(int32 inTime, const void* inValue, MCID inTypeId) override;
  uint32 MC_CALL GetKeyCount() override { return 0; }
  ITimeLineKey* MC_CALL GetKey(uint32) override { return nullptr; }
  void MC_CALL DeleteKeyAt(int32) override {}
  void MC_CALL FindKeyAfter(int32, SceneTime&, ITimeLineKey** outKey) override { *outKey = nullptr; }
  void MC_CALL FindKeyBefore(int32, ITimeLineKey** outKey, int32) override { *outKey = nullptr; }

  int32 GetAttributeReferences() const { return fAttribute.GetReferences(); }
  std::vector<InsertedKey> fKeys;

 private:
  FakeAttribute fAttribute;
  bool fHasAttribute;
};

class FakeTimeLineOwner final : public Fake<ITimeLineOwner> {
 public:
  void MC_CALL ForEachTimeLine(IForEachTimeLineCallback* inCallback) override;

  std::vector<FakeTimeLine*> fTimeLines;
  std::function<void()> fAfterEach;
  int32 fWalks = 0;
};

// One write of a transform, with the numbers that came with it.
struct TransformWrite {
  bool fGlobal;
  TTreeTransform fTransform;
  std::vector<int32> fNumbers;
};

// It outlives the pin that works on it.
class FakeElement final : public Fake<TreeElement, I3DShAnimated> {
 public:
  ~FakeElement() override { EXPECT_EQ(GetReferences(), 0) << "the element is still held"; }
  I3DShScene* MC_CALL GetScene() override { return &fScene; }
  const TMCString& MC_CALL GetName() override { return fName; }
  uint32 MC_CALL GetUniqueID() override { return 7; }
  void MC_CALL GetParent(TreeElement** outParent) override { *outParent = nullptr; }
  TreeElement* MC_CALL GetParentRaw() override { return nullptr; }
  TreeElement* MC_CALL GetFirstChild() override { return nullptr; }
  TreeElement* MC_CALL GetNextSibling() override { return nullptr; }
  bool MC_CALL IsAtOrBelow(TreeElement*) override { return false; }
  TreePath& MC_CALL GetTreePath(TreePath& outPath) override { return outPath; }
  ObjectReference& MC_CALL GetObjectReference(ObjectReference& outReference) override { return outReference; }
  MCResult MC_CALL GetLocalTransform(TTreeTransform& outTransform) override;
  MCResult MC_CALL SetLocalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                     int32 in5, int32 in6) override;
  MCResult MC_CALL GetGlobalTransform(TTreeTransform& outTransform) override;
  MCResult MC_CALL SetGlobalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                      int32 in5) override;
  MCResult MC_CALL GetGlobalTransformChain(TTreeChainTransform& outTransform) override;
  void MC_CALL TransformChanged(int32 inZero) override { fChanged.push_back(inZero); }
  void MC_CALL InvalidateElement(int32) override {}
  uint32 MC_CALL GetModifierCount(int32) override { return 0; }
  MCResult MC_CALL InsertModifier(I3DShModifier*, uint32) override { return MC_E_NOTVALID; }
  ITimeLineOwner* MC_CALL GetTimeLineOwner() override { return &fTimeLineOwner; }

  TTreeTransform fLocal;
  TTreeTransform fGlobal;
  TTreeChainTransform fChain;
  std::function<void()> fOnRead;  // called as the local transform is read
  std::vector<TransformWrite> fWrites;
  std::vector<int32> fChanged;  // arguments of each `TransformChanged`
  FakeScene fScene;
  FakeTimeLineOwner fTimeLineOwner;

 private:
  TMCString31 fName;
};

// A control of a panel.
class FakePart final : public Fake<IMFPart> {
 public:
  explicit FakePart(MCID inID) : fID(inID) {}
  MCID MC_CALL GetPartId() override { return fID; }
  void MC_CALL FindChildPart(IMFPart** outPart, MCID, int32) override { *outPart = nullptr; }
  void MC_CALL GetParentPart(IMFPart** outPart) override { *outPart = nullptr; }
  MCResult MC_CALL GetPartValue(void*, MCID) override { return MC_E_NOTVALID; }
  MCResult MC_CALL SetPartValue(const void*, MCID, int32, int32) override { return MC_E_NOTVALID; }

 private:
  MCID fID;
};

}  // namespace qlx::contract
