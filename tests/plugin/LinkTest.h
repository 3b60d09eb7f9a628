// What tests of links share: a scene with links on its elements, and frames to play.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "AssertionGuard.h"
#include "HostedComponent.h"
#include "MCFrameTime.h"
#include "ModelTest.h"
#include "model/ParamTypes.h"

namespace qlx::test {

inline constexpr real32 kRate = 24;
inline constexpr int32 kFrameTicks = 7500;

// Elements "A" and "B", 24 frames a second, frames 0 to 100. Nothing of it reports.
class LinkScene {
 public:
  LinkScene() {
    host::GetParamTypes();
    fScene->SetFrameRate(kRate);
    fScene->SetTimeRange(0, 100 * kFrameTicks);
  }

  host::Scene* operator->() const { return fScene.operator->(); }
  host::Element& Add(const char* inName) { return fScene.Add(inName); }
  const std::vector<std::string>& Warnings() const { return fScene.Warnings(); }

  // A new link on an element.
  static QLXModifier& AddBare(host::Element& inElement) {
    return HostedComponent::AddTo(inElement, "fQLX"_id, QLXModifier::kInterfaceID).Get<QLXModifier>();
  }
  // In attribute mode, from a value of one element to a value of another.
  static QLXModifier& Add(host::Element& inTarget, const char* inPath, host::Element& inSource,
                          const char* inSourcePath) {
    QLXModifier& link = AddBare(inTarget);
    link.EditData().fAttributeMode = true;
    link.SetTargetPath(TMCString255(inPath));
    link.SetControllerPath(TMCString255(inSourcePath));
    Follow(link, inSource);
    return link;
  }
  static void Follow(QLXModifier& ioLink, host::Element& inSource) {
    ObjectReference reference;
    ioLink.SetControllerRef(inSource.GetObjectReference(reference));
    ioLink.SetSourceRef(reference);
  }

  void Play(int32 inFrame) { fScene->Evaluate(inFrame * kFrameTicks); }

  AssertionGuard fSilence;
  TestScene fScene;
  host::Element& fA = fScene.Add("A");
  host::Element& fB = fScene.Add("B");
};

inline constexpr const char* kRotX = "self,amet,TRAN,ROTA,RotX";
inline constexpr const char* kRotY = "self,amet,TRAN,ROTA,RotY";
inline constexpr const char* kScale = "self,amet,TRAN,SCAL";
inline constexpr const char* kOwnX = "self,amet,TRAN,OFFS,XCOO";
inline constexpr const char* kOwnY = "self,amet,TRAN,OFFS,YCOO";

inline real32 ValueOf(const host::Element& inElement, host::Channel inChannel) {
  return inElement.GetValue(inChannel);
}

// Linear keys from one frame to another.
inline void Animate(host::Element& ioElement, host::Channel inChannel, real32 inFrom, real32 inTo, int32 inFrames) {
  host::Curve& curve = ioElement.GetOrMakeCurve(inChannel);
  curve.SetKey({.fTime = 0, .fValue = inFrom});
  curve.SetKey({.fTime = inFrames * kFrameTicks, .fValue = inTo});
}

}  // namespace qlx::test
