#include "QLXEvaluation.h"

#include <array>
#include <optional>

#include "COMSafeUtilities.h"
#include "MCFrameTime.h"
#include "QLXValues.h"
#include "Transforms.h"

namespace qlx {

namespace {

// So many keys a window has at most that baking clears: the frames of all times that there are, at up to 350 a second.
constexpr int64 kMostClearedKeys = 4194304;

int32 EarlierBy(int32 inTime, int32 inTicks) {
  return TruncateToInt32(static_cast<real64>(inTime) - static_cast<real64>(inTicks));
}

// One end of a link: a parameter, or without one a coordinate of the element's position in the scene.
struct LinkEnd {
  LinkEnd(TreeElement* inElement, QLXParameter* inParameter, MCID inKey)
      : fElement(inElement), fParameter(inParameter), fKey(inKey), fOwnAxis(inParameter ? GetOwnAxis(inKey) : -1) {}

  TreeElement* fElement;
  QLXParameter* fParameter;
  MCID fKey;     // the component that is read or written
  int fOwnAxis;  // of a parameter that is the element's own translation, else -1

  MCID GetOwnKey() const { return fParameter ? fParameter->GetOwnKey() : fKey; }
};

class Evaluation {
 public:
  Evaluation(const QLXLinkState& inLink, TreeElement& inElement)
      : fData(inLink.fData),
        fPrivate(inLink.fPrivate),
        fMemory(inLink.fMemory),
        fLookups(inLink.fLookups),
        fElement(inElement) {}

  void Run();

 private:
  enum class Result : uint8 { kGoesOn, kEndsAtOnce };

  bool OpenWindow(I3DShScene& inScene);
  bool IsAtStart() const { return fWindow.fNow == fWindow.fStart; }
  void NoteRepetition() { fMemory.fSameFrame = fWindow.fNow == fMemory.fLastTime; }
  Result RunAttributeMode();
  void RunWithController(const LinkEnd& inTarget);
  void RunObjectMode();
  void MirrorPosition();
  void MirrorParameter(std::size_t inLink);
  void Close();

  void RunLink(const LinkEnd& inTarget, const LinkEnd* inController);
  void StartLink(const LinkEnd& inTarget);
  bool ComputeResult(const LinkEnd& inTarget, const LinkEnd* inController, real32& ioTarget);
  std::optional<real32> Read(const LinkEnd& inEnd) const;
  static std::optional<real32> ReadCoordinate(const LinkEnd& inEnd);
  void Write(const LinkEnd& inTarget, real32 inValue) const;
  static void WriteGlobal(const LinkEnd& inTarget, real32 inValue);
  static void WriteOwn(const LinkEnd& inTarget, real32 inValue);
  void BakeKey(const LinkEnd& inTarget, real32 inValue) const;

  const QLXModifierData& fData;
  const QLXPrivateData& fPrivate;
  QLXMemory& fMemory;
  QLXLookups& fLookups;
  TreeElement& fElement;

  TMCCountedPtr<ISceneMaster> fNotifier;
  SceneTime fTime;
  QLXWindow fWindow;
  bool fTargetIsShader = false;
  bool fTargetIsMorph = false;
};

void Evaluation::Run() {
  I3DShScene* const scene = fElement.GetScene();
  if (!scene || fLookups.IsRunning() || !OpenWindow(*scene)) {
    return;
  }
  const QLXLookups::Running running(fLookups, fElement, *scene, fPrivate);
  Result result = Result::kGoesOn;
  if (fData.fMirrorTransform) {
    RunObjectMode();
  } else if (fData.fAttributeMode) {
    result = RunAttributeMode();
  }
  if (result == Result::kGoesOn) {
    Close();
  }
}

// False when nothing is to be evaluated: no time, or a window that has not begun.
bool Evaluation::OpenWindow(I3DShScene& inScene) {
  TMCCountedPtr<ITimeRange> range;
  inScene.GetTimeRange(range.WriteInto());
  if (!range) {
    return false;
  }
  inScene.GetSceneMaster(fNotifier.WriteInto());
  inScene.GetCurrentTime(fTime);
  const real32 rate = inScene.GetFrameRate();
  fWindow.fFrameTicks = IsValidFrameRate(rate) ? TicksPerFrame(rate) : 0;
  if (fWindow.fFrameTicks <= 0) {
    return false;
  }
  fWindow.fNow = fTime.fTicks;
  fWindow.fStart = fData.fStartOn ? FrameToTicks(fData.fStartFrame, rate) : range->GetStartTime();
  fWindow.fEnd = fData.fEndOn ? FrameToTicks(fData.fEndFrame, rate) : range->GetEndTime();
  return !fData.fStartOn || fWindow.fStart <= fWindow.fNow;
}

void Evaluation::Close() {
  fElement.InvalidateElement(1);
  if (fNotifier) {
    if (IUpdateService* const updates = FindUpdateService()) {
      updates->ElementUpdated(fNotifier.Get(), &fElement);
    }
  }
  if (!fMemory.fMorphNotifier && fLookups.ShallFetchNotifier()) {
    fMemory.fMorphNotifier = FindMorphNotifier(fElement);
  }
  if (fMemory.fMorphNotifier && fTargetIsMorph) {
    fMemory.fMorphNotifier->MorphChanged();
  }
  fMemory.fLastTime = fTime.fTicks;
  fMemory.fLastTimeExtra = fTime.fExtra;
}

// Attribute mode: one value follows another.

Evaluation::Result Evaluation::RunAttributeMode() {
  const QLXPathKey& key = fLookups.GetTargetKey();
  if (!key.fIsSet) {
    return Result::kEndsAtOnce;
  }
  NoteRepetition();
  QLXParameter* parameter = nullptr;
  if (!key.fIsGlobal) {
    fTargetIsShader = key.fIsShader;
    parameter = fLookups.FindTarget(fPrivate);
    if (!parameter) {
      return Result::kEndsAtOnce;
    }
  }
  const LinkEnd target(&fElement, parameter, key.fKey);
  fTargetIsMorph = key.fIsMorph;
  if (fLookups.GetControllerKey().fIsSet) {
    RunWithController(target);
  } else if (fData.fCombineSelf || fData.fModifySet) {
    RunLink(target, nullptr);
  }
  return Result::kGoesOn;
}

// A controller path that is not found writes nothing, even where the groups would need no controller.
void Evaluation::RunWithController(const LinkEnd& inTarget) {
  TreeElement* const element = fLookups.FindLinked(QLXLinked::kController, fData, fPrivate);
  const QLXPathKey& key = fLookups.GetControllerKey();
  QLXParameter* const parameter = key.fIsGlobal ? nullptr : fLookups.FindController(fPrivate);
  if (!key.fIsGlobal && !parameter) {
    return;
  }
  const LinkEnd controller(element, parameter, key.fKey);
  RunLink(inTarget, &controller);
}

// Object mode: position, rotation and scale follow those of a source, link by link. All share one delay queue.

void Evaluation::RunObjectMode() {
  if (IsAtStart()) {
    fMemory.fDelayQueue.Clear();
  }
  NoteRepetition();
  fLookups.FindLinked(QLXLinked::kSource, fData, fPrivate);
  MirrorPosition();
  const auto turns = [this](bool axis) { return fData.fRotationAll || (fData.fRotationCustom && axis); };
  const bool links[std::size(kQLXObjectLinks)] = {turns(fData.fRotationX),
                                                  turns(fData.fRotationY),
                                                  turns(fData.fRotationZ),
                                                  fData.fScaleUniform,
                                                  fData.fScaleX,
                                                  fData.fScaleY,
                                                  fData.fScaleZ};
  for (std::size_t i = 0; i < std::size(links); ++i) {
    if (links[i]) {
      MirrorParameter(i);
    }
  }
}

void Evaluation::MirrorPosition() {
  const bool axes[] = {fData.fPositionX, fData.fPositionY, fData.fPositionZ};
  constexpr MCID kKeys[] = {"GlbX"_id, "GlbY"_id, "GlbZ"_id};
  for (std::size_t i = 0; i < std::size(axes); ++i) {
    if (fData.fPositionAll || (fData.fPositionCustom && axes[i])) {
      const LinkEnd source(fLookups.GetLinked(), nullptr, kKeys[i]);
      RunLink(LinkEnd(&fElement, nullptr, kKeys[i]), &source);
    }
  }
}

void Evaluation::MirrorParameter(std::size_t inLink) {
  const MCID key = kQLXObjectLinks[inLink].fKey;
  const LinkEnd source(fLookups.GetLinked(), fLookups.FindSource(inLink), key);
  const LinkEnd target(&fElement, fLookups.FindTarget(inLink), key);
  if (source.fParameter && target.fParameter) {
    RunLink(target, &source);
  }
}

// The chain that all links share.

void Evaluation::RunLink(const LinkEnd& inTarget, const LinkEnd* inController) {
  if (fData.fEndOn && fWindow.fEnd < fWindow.fNow) {
    return;
  }
  if (IsAtStart()) {
    StartLink(inTarget);
  }
  const std::optional<real32> before = Read(inTarget);
  if (!before) {
    return;
  }
  real32 value = FilterTargetValue(fMemory, inTarget.GetOwnKey(), *before, fWindow);
  if (!ComputeResult(inTarget, inController, value)) {
    return;
  }
  value = ClampToLimits(fData, inTarget.fKey, value);
  Write(inTarget, value);
  if (fData.fBakeKeyframes) {
    BakeKey(inTarget, value);
  }
}

void Evaluation::StartLink(const LinkEnd& inTarget) {
  if (fData.fAttributeMode) {
    fMemory.fDelayQueue.Clear();
  }
  IKeyframeHolder* const holder =
      fData.fBakeKeyframes && inTarget.fParameter ? inTarget.fParameter->GetParam().GetKeyframeHolder() : nullptr;
  if (!holder) {
    return;
  }
  int64 time = fWindow.fNow;
  for (int64 i = 0; i < kMostClearedKeys && time <= fWindow.fEnd; ++i) {
    holder->DeleteKey(static_cast<int32>(time));
    time += fWindow.fFrameTicks;
  }
}

// False when nothing is to be written: the delay is not filled yet, or the controller cannot be read.
bool Evaluation::ComputeResult(const LinkEnd& inTarget, const LinkEnd* inController, real32& ioTarget) {
  // The value of a shader goes by the channel of all others, whatever its own key.
  const MCID key = fTargetIsShader ? "0000"_id : inTarget.GetOwnKey();
  const auto map = [&](real32 value) { return MapValue(fData, fPrivate.fCurves, fMemory, key, value, fWindow); };
  if (fData.fModifySet) {
    ioTarget = CombineValues(fData, ioTarget, ClampToRange(fData, map(0)));
    return true;
  }
  if (fData.fCombineSelf) {
    real32 mapped = map(ioTarget);
    if (fMemory.fSameFrame && GetChange(fMemory, key, ioTarget) == 0.0f) {
      return true;  // limits are still applied, and the value is written
    }
    const bool isReady = DelayValue(fData, fMemory, fWindow, mapped);
    ioTarget = isReady ? ClampToRange(fData, mapped) : ioTarget;
    return isReady;
  }
  if (!inController) {
    return false;
  }
  const std::optional<real32> value = Read(*inController);
  if (!value) {
    return false;
  }
  real32 mapped = map(*value);
  if (!DelayValue(fData, fMemory, fWindow, mapped)) {
    return false;
  }
  ioTarget = CombineValues(fData, ioTarget, ClampToRange(fData, mapped));
  return true;
}

// A relative link sees what the keys say, not what other modifiers made of it.
std::optional<real32> Evaluation::Read(const LinkEnd& inEnd) const {
  if (!inEnd.fParameter) {
    return ReadCoordinate(inEnd);
  }
  QLXParameter& parameter = *inEnd.fParameter;
  ParamInfo& param = parameter.GetParam();
  param.BeginValueChange();
  if (inEnd.fOwnAxis >= 0) {
    return ReadCoordinate(inEnd);
  }
  if (!parameter.HasValue()) {
    return 0.0f;
  }
  IKeyframeHolder* const holder = fData.fRelative ? param.GetKeyframeHolder() : nullptr;
  const MCResult result =
      holder ? holder->ReadValueAtTime(fWindow.fNow, parameter.GetValue()) : param.ReadParamValue(parameter.GetValue());
  return result == MC_S_OK ? std::optional(parameter.GetNumber()) : std::nullopt;
}

std::optional<real32> Evaluation::ReadCoordinate(const LinkEnd& inEnd) {
  TTreeTransform transform;
  const bool isOwn = inEnd.fOwnAxis >= 0;
  const MCResult result =
      isOwn ? inEnd.fElement->GetLocalTransform(transform) : inEnd.fElement->GetGlobalTransform(transform);
  if (result != MC_S_OK) {
    return std::nullopt;
  }
  return transform.GetPosition()[isOwn ? inEnd.fOwnAxis : GetGlobalAxis(inEnd.fKey)];
}

void Evaluation::Write(const LinkEnd& inTarget, real32 inValue) const {
  if (!inTarget.fParameter) {
    WriteGlobal(inTarget, inValue);
    return;
  }
  if (inTarget.fOwnAxis >= 0) {
    WriteOwn(inTarget, inValue);
    return;
  }
  QLXParameter& parameter = *inTarget.fParameter;
  if (!parameter.HasValue()) {
    return;
  }
  ParamInfo& param = parameter.GetParam();
  if (fData.fRelative) {
    param.ReadParamValue(parameter.GetValue());  // the other numbers of the value are to stay as they are now
  }
  parameter.SetNumber(inValue);
  param.WriteParamValue(parameter.GetValue());
  param.EndValueChange(1);
}

void Evaluation::WriteGlobal(const LinkEnd& inTarget, real32 inValue) {
  TTreeTransform transform;
  if (inTarget.fElement->GetGlobalTransform(transform) != MC_S_OK) {
    return;
  }
  TVector3 position = transform.GetPosition();
  position[GetGlobalAxis(inTarget.fKey)] = inValue;
  transform.SetPosition(position);
  inTarget.fElement->SetGlobalTransform(transform, 0, 1, 0, 0, 0);
}

void Evaluation::WriteOwn(const LinkEnd& inTarget, real32 inValue) {
  TTreeTransform transform;
  if (inTarget.fElement->GetLocalTransform(transform) != MC_S_OK) {
    return;
  }
  TVector3 position = transform.GetPosition();
  position[inTarget.fOwnAxis] = inValue;
  transform.SetPosition(position);
  inTarget.fElement->SetLocalTransform(transform, 1, 0, 0, 0, 0, 1);
}

// Keys are in the parameter's own units. A value that stays as it was a frame before makes none.
void Evaluation::BakeKey(const LinkEnd& inTarget, real32 inValue) const {
  IKeyframeHolder* const holder = inTarget.fParameter ? inTarget.fParameter->GetParam().GetKeyframeHolder() : nullptr;
  if (!holder || !inTarget.fParameter->HasValue()) {
    return;
  }
  QLXParameter& parameter = *inTarget.fParameter;
  parameter.SetNumber(inValue);
  if (!IsAtStart()) {
    QLXValueBuffer earlier(parameter.GetType());
    const int32 time = EarlierBy(fWindow.fNow, fWindow.fFrameTicks);
    if (holder->ReadValueAtTime(time, earlier.GetHolder()) == MC_S_OK &&
        parameter.GetNumberOf(earlier) == parameter.GetNumber()) {
      return;
    }
  }
  holder->DeleteKey(fWindow.fNow);
  holder->SetKey(fWindow.fNow, parameter.GetValue());
}

}  // namespace

void EvaluateLink(const QLXLinkState& inLink, TreeElement& inElement) {
  Evaluation(inLink, inElement).Run();
}

}  // namespace qlx
