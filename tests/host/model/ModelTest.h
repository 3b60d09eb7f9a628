// What tests of the model share: a scene that closes itself, and a modifier that does what a test says.
#pragma once

#include <functional>
#include <string>

#include "TestMemory.h"
#include "model/Scene.h"

namespace qlx::test {

inline int gLiveModifiers = 0;

class TestModifier final : public host::Modifier {
 public:
  using Body = std::function<void(host::Element&)>;

  explicit TestModifier(Body inBody) : fBody(std::move(inBody)) { ++gLiveModifiers; }
  ~TestModifier() override { --gLiveModifiers; }

  void Apply(host::Element& inElement) override { fBody(inElement); }
  // Bodies take notes of what they do: most are not to be looked at.
  TMCCountedPtr<host::Modifier> CopyToLookAt() override { return nullptr; }
  TMCCountedPtr<host::Modifier> Copy() override { return host::MakeHosted<TestModifier>(fBody); }
  MCID MC_CALL GetModifierClass() override { return "test"_id; }

 private:
  Body fBody;
};

class TestScene {
 public:
  TestScene() : fScene(host::Scene::Create(fDiagnostics)) {}
  ~TestScene() { fScene->Close(); }

  host::Scene* operator->() const { return fScene.Get(); }
  host::Scene& operator*() const { return *fScene; }
  host::Element& Add(const char* inName) { return fScene->AddElement(fScene->GetRootElement(), inName); }
  host::Element& Add(host::Element& inParent, const char* inName) { return fScene->AddElement(inParent, inName); }
  const std::vector<std::string>& Warnings() const { return fDiagnostics.GetWarnings(); }

  static void Modify(host::Element& inElement, TestModifier::Body inBody) {
    inElement.AddModifier(*host::MakeHosted<TestModifier>(std::move(inBody)), inElement.GetModifiers().size());
  }

 private:
  TestMemory fMemory;
  host::Diagnostics fDiagnostics;
  TMCCountedPtr<host::Scene> fScene;
};

// Does something with each time line of a thing.
inline void VisitTimeLines(ITimeLineOwner& inOwner, std::function<void(ITimeLine&)> inWork) {
  struct Visitor final : IForEachTimeLineCallback {
    void MC_CALL Visit(ITimeLine* inTimeLine, void* /*inOther*/) override { fWork(*inTimeLine); }
    std::function<void(ITimeLine&)> fWork;
  } visitor;
  visitor.fWork = std::move(inWork);
  inOwner.ForEachTimeLine(&visitor);
}

inline std::vector<TMCCountedPtr<ITimeLine>> TimeLinesOf(ITimeLineOwner& inOwner) {
  std::vector<TMCCountedPtr<ITimeLine>> found;
  VisitTimeLines(inOwner, [&found](ITimeLine& each) { found.push_back(MCShare(&each)); });
  return found;
}

inline host::ChannelValues MakeValues(TVector3 inPosition, TVector3 inRotation = {}, TVector3 inScale = {1, 1, 1},
                                      real32 inUniform = 1) {
  return {{inPosition.x, inPosition.y, inPosition.z, inRotation.x, inRotation.y, inRotation.z, inUniform, inScale.x,
           inScale.y, inScale.z}};
}

inline void SetPosition(host::Element& inElement, TVector3 inPosition) {
  TreeTransform transform;
  inElement.GetLocalTransform(transform);
  transform.SetPosition(inPosition);
  inElement.SetLocalTransform(transform, 1, 0, 0, 0, 0, 1);
}

inline MCResult SetGlobalPosition(host::Element& inElement, TVector3 inPosition) {
  TreeTransform transform;
  inElement.GetGlobalTransform(transform);
  transform.SetPosition(inPosition);
  return inElement.SetGlobalTransform(transform, 0, 1, 0, 0, 0);
}

}  // namespace qlx::test
