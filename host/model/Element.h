// A tree element of a scene: its place in the tree, its transform over time, what it shows, and its modifiers.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Channels.h"
#include "Curve.h"
#include "ElementChannel.h"
#include "ElementPose.h"
#include "ElementState.h"
#include "HostObject.h"
#include "HostParameters.h"
#include "HostScene.h"
#include "MCString.h"
#include "Modifier.h"
#include "RotationCurve.h"
#include "WorkAhead.h"

namespace qlx::host {

class ElementParameters;
class ElementTimeLines;
class Figure;
class LinkLook;
class ParameterGroup;
class Scene;
class SceneObject;
class Shader;
class ValueSet;
struct SavedElement;

struct AttachedValues {
  MCID fID = 0;       // of the group: "came"
  std::string fName;  // "Camera"
  std::shared_ptr<ValueSet> fValues;
};

// The scene holds its elements; an element that was taken out of its scene answers null for it and does nothing else.
// Values are kept three times: the base values (what a person set), the curves of animated channels, and the evaluated
// values (what the last evaluation gave). Outside an evaluation a write is an edit of a key at the current time where
// the channel has keys, else of the base value; during one it changes the evaluated values alone. Keys can be edited
// at any time; during an evaluation that shows from the next one on.
//
// A rotation that came as quaternions (`SetRotationCurve`) rules the three rotation channels, with angles nearest to
// those of their own curves, which should hold the same rotation at the same keys. The first edit of one of the three
// channels drops it: the curves then rule. A write at a time between keys keys all three, so that the pose stays.
class alignas(kCacheLine) Element final
    : public HostObject<TreeElement, I3DShAnimated, ITimeLineOwner, I3DShAttributes, I3DShInstance, I3DShObjectHolder,
                        I3DShShaderHolder, I3DShFigure, I3DShFigureMember> {
 public:
  Element(Scene& inScene, uint32 inID, std::string_view inName);
  ~Element() override;

  // Tree. Children are in order; `Add…` and moves are the scene's.
  Element* GetParentElement() const { return fParent; }
  const std::vector<TMCCountedPtr<Element>>& GetChildren() const { return fChildren; }
  std::string GetNameText() const;
  Scene* GetOwnScene() const { return fScene; }

  // Values. Writing a value that is not finite is refused with false.
  const ChannelValues& GetBase() const { return fState.fBase; }
  // An edit, like all that follow: whoever builds a scene clears the edited channels at the end. Of a channel whose new
  // value is not finite the old one stays.
  void SetBase(const ChannelValues& inValues);
  const ChannelValues& GetEvaluated() const { return fState.fEvaluated; }
  real32 GetValue(Channel inChannel) const { return fState.fEvaluated[inChannel]; }
  bool SetValue(Channel inChannel, real32 inValue);
  // True when a write of the channel, outside an evaluation, sets a key.
  bool HasKeys(Channel inChannel) const;
  // What a look at a copy of a modifier is to be told; null while there is none.
  LinkLook* GetLook() const;

  // Curves. `GetCurve` gives null for an element that was never animated, `GetOrMakeCurve` an empty curve, to be filled
  // as a scene is built: the values show from the next evaluation on. `EditCurve` is an edit, which shows at once.
  const Curve* GetCurve(Channel inChannel) const;
  Curve& GetOrMakeCurve(Channel inChannel);
  void EditCurve(Channel inChannel, const std::function<void(Curve&)>& inEdit);
  void SetRotationCurve(std::unique_ptr<RotationCurve> inCurve);
  const RotationCurve* GetRotationCurve() const { return fRotationCurve.get(); }
  bool IsAnimated() const { return fState.fIsAnimated; }  // a rotation curve never stands without the others
  // Channels whose base value or curve an edit changed since the scene was read.
  ChannelMask GetEditedChannels() const { return fEdited; }
  void ClearEditedChannels() { fEdited = 0; }

  // What a person can edit of the values, to be compared with and brought back later (SavedValues.h). Bringing back
  // shows at once; not during an evaluation.
  SavedElement SaveValues() const;
  bool HasValues(const SavedElement& inSaved) const;
  void RestoreValues(const SavedElement& inSaved);

  // The values at a time from curves and base values, without modifiers. Changes nothing.
  ChannelValues SampleAt(int32 inTime) const;

  // Evaluation, called by the scene: takes the values of the time; later writes mark channels as modified.
  void BeginEvaluation(int32 inTime);
  // Channels that were written during this evaluation and differ from what curves and base gave.
  ChannelMask GetModifiedChannels() const;
  // What this evaluation began with.
  const ChannelValues& GetUnmodified() const {
    return fState.fWritten == 0 ? fState.fEvaluated : fState.fKeepsUnmodified ? fUnmodified : fState.fBase;
  }

  // Transforms of the evaluated values.
  const TreeTransform& GetLocal() const;
  const TOffsetMatrix33& GetGlobalMatrix() const;  // local space to scene space
  int32 GetMode() const { return fFrame.fMode; }
  const TVector3& GetHotPoint() const { return fFrame.fHotPoint; }
  // Both keep the numbers of the channels: the element moves where the new mode or point puts it.
  void SetMode(int32 inMode);
  void SetHotPoint(const TVector3& inHotPoint);

  // Modifiers, in order. An index past the end adds at the end.
  const std::vector<TMCCountedPtr<Modifier>>& GetModifiers() const { return fModifiers; }
  // What an evaluation of modifiers reads of it and of the parameters that somebody holds.
  void ListWorkMemory(WorkLines& ioLines) const;
  void AddModifier(Modifier& inModifier, std::size_t inIndex);
  void RemoveModifier(std::size_t inIndex);
  void RemoveAllModifiers();

  // Values that the element has beside its transform, each set as a group of parameters: of its camera, its light, a
  // user's own. To be attached as a scene is built. Elements may share a set.
  void AttachValues(AttachedValues inAttached);
  const std::vector<AttachedValues>& GetAttachedValues() const;

  // What the element shows.
  void SetShownObject(SceneObject* inObject);
  SceneObject* GetSceneObject() const;
  void SetFigureRoot(Figure* inFigure) { fFigure = inFigure; }
  void SetFigureMember(Figure* inFigure) { fMemberOf = inFigure; }

  // TreeElement
  I3DShScene* MC_CALL GetScene() override;
  const TMCString& MC_CALL GetName() override { return *fName; }
  uint32 MC_CALL GetUniqueID() override { return fID; }
  void MC_CALL GetParent(TreeElement** outParent) override;
  TreeElement* MC_CALL GetParentRaw() override { return fParent; }
  TreeElement* MC_CALL GetFirstChild() override;
  TreeElement* MC_CALL GetNextSibling() override;
  bool MC_CALL IsAtOrBelow(TreeElement* inAncestor) override;
  TreePath& MC_CALL GetTreePath(TreePath& outPath) override;
  ObjectReference& MC_CALL GetObjectReference(ObjectReference& outReference) override;
  MCResult MC_CALL GetLocalTransform(TTreeTransform& outTransform) override;
  MCResult MC_CALL SetLocalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                     int32 in5, int32 in6) override;
  MCResult MC_CALL GetGlobalTransform(TTreeTransform& outTransform) override;
  MCResult MC_CALL SetGlobalTransform(const TTreeTransform& inTransform, int32 in1, int32 in2, int32 in3, int32 in4,
                                      int32 in5) override;
  MCResult MC_CALL GetGlobalTransformChain(TTreeChainTransform& outTransform) override;
  void MC_CALL TransformChanged(int32 inZero) override;
  void MC_CALL InvalidateElement(int32 inOne) override;
  uint32 MC_CALL GetModifierCount(int32 inOne) override;
  MCResult MC_CALL InsertModifier(I3DShModifier* inModifier, uint32 inIndex) override;

  // I3DShAnimated, ITimeLineOwner, I3DShAttributes
  ITimeLineOwner* MC_CALL GetTimeLineOwner() override { return this; }
  void MC_CALL ForEachTimeLine(IForEachTimeLineCallback* inCallback) override;
  TimeBasedData* MC_CALL GetTimeBasedData() override;
  const ParameterGroup& GetParameters();
  // Those who speak of its channels from elsewhere.
  ElementChannels& GetChannels() { return fChannels; }

  // What it shows
  I3DShObject* MC_CALL GetShownObject() override;
  uint32 MC_CALL GetShaderCount() override;
  I3DShShader* MC_CALL GetShader(uint32 inIndex) override;
  I3DShObject* MC_CALL GetHeldObject() override { return GetShownObject(); }
  I3DShShader* MC_CALL GetMainShader() override;
  uint32 MC_CALL GetMemberCount() override;
  I3DShOwned* MC_CALL GetFigureOwner() override;

 protected:
  bool Offers(const MCGuid& inID) const override;
  MCResult FindPart(const MCGuid& inID, void** outObject) override;

 private:
  friend class Scene;
  struct Curves;
  struct SampleHints;

  // The elements whose global matrix is valid stand in a list of their parent, so that marking all below an element as
  // not valid costs as many steps as matrices were made since the last time, however wide or deep the tree is.
  struct ValidLinks {
    Element* fFirstChild = nullptr;
    Element* fPrevious = nullptr;
    Element* fNext = nullptr;
  };

  ChannelValues Sample(int32 inTime, SampleHints& ioHints) const;
  Curves& MakeCurves();
  void DropRotationCurve();
  void SetKeyNow(Channel inChannel, real32 inValue);
  bool Write(const ChannelValues& inValues, ChannelMask inMask);
  void WriteEvaluated(const ChannelValues& inValues, ChannelMask inMask);
  void WriteEdit(const ChannelValues& inValues, ChannelMask inMask);
  void StoreBase(Channel inChannel, real32 inValue);
  void KeepUnmodified();
  void ShowValue(Channel inChannel, real32 inValue);
  void ShowEditedCurve(Channel inChannel);
  void StoreEvaluated(const ChannelValues& inValues);
  void StoreChanged(const ChannelValues& inValues, ChannelMask inChanged);
  void InvalidateLocal();
  void InvalidateGlobal();
  void ComputeGlobal() const;
  void LinkValid() const;
  void UnlinkValid();
  MCResult Refuse(const char* inProblem, MCResult inCode) const;
  MCResult WriteWhole(const ChannelValues& inValues);
  void LeaveScene();
  void NotePoseEdit(ChannelMask inMask);

  // These two are all that evaluations read of the element itself, unless it has curves or children.
  Scene* fScene;
  ElementState& fState;

  std::unique_ptr<Curves> fCurves;
  // What this evaluation began with, where `fKeepsUnmodified` says so. Else that is the base.
  ChannelValues fUnmodified;
  Element* fParent = nullptr;
  mutable ValidLinks fLinks;
  PoseFrame fFrame;
  std::vector<TMCCountedPtr<Modifier>> fModifiers;
  mutable TreeTransform fLocal;
  mutable TOffsetMatrix33 fGlobal;

  std::unique_ptr<RotationCurve> fRotationCurve;
  ChannelMask fEdited = 0;
  uint32 fID;
  std::size_t fIndexInParent = 0;
  std::vector<TMCCountedPtr<Element>> fChildren;
  TMCCountedPtr<SceneObject> fObject;
  std::unique_ptr<std::vector<AttachedValues>> fAttached;  // few elements have any
  Figure* fFigure = nullptr;
  Figure* fMemberOf = nullptr;
  ElementChannels fChannels;
  std::unique_ptr<ElementParameters> fParameters;  // both are made on first use
  std::unique_ptr<ElementTimeLines> fTimeLines;
  std::shared_ptr<ElementStates> fStates;
  std::shared_ptr<const TMCString255> fName;  // apart, as it is as large as all the rest
};

}  // namespace qlx::host
