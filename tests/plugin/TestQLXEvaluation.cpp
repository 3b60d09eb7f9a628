// Links at work in a scene of the open host.
#include <gtest/gtest.h>

#include "LinkTest.h"

namespace qlx::test {
namespace {

using host::Channel;

TEST(QLXEvaluation, DefaultLinkMakesTheTargetEqualItsController) {
  LinkScene scene;
  Animate(scene.fA, Channel::kRotationX, 0, 2, 10);
  LinkScene::Add(scene.fB, kRotY, scene.fA, kRotX);
  for (const int32 frame : {0, 3, 10}) {
    scene.Play(frame);
    EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), ValueOf(scene.fA, Channel::kRotationX)) << frame;
  }
  EXPECT_EQ(ValueOf(scene.fB, Channel::kRotationY), 2);
}

TEST(QLXEvaluation, FourLinksReadAndWriteTheirOwnWay) {
  const struct {
    const char* fLabel;
    const char* fTarget;
    const char* fController;
    Channel fRead;
    real32 fExpected;
  } rows[] = {
      {"parameter from parameter", kRotY, kRotX, Channel::kRotationY, 2},
      {"own translation from own translation", kOwnY, kOwnX, Channel::kPositionY, 7},
      {"own translation from parameter", kOwnX, kRotX, Channel::kPositionX, 2},
      {"parameter from own translation", kScale, kOwnX, Channel::kUniformScale, 7},
      {"global from parameter", "GlbX", kRotX, Channel::kPositionX, -8},
      {"parameter from global", kRotX, "GlbX", Channel::kRotationX, 17},
      {"global from global", "GlbY", "GlbX", Channel::kPositionY, 17},
  };
  for (const auto& row : rows) {
    LinkScene scene;
    host::Element& parent = scene.Add("Parent");
    SetPosition(parent, {10, 0, 0});
    host::Element& source = scene->AddElement(parent, "Source");
    host::Element& target = scene->AddElement(parent, "Target");
    source.SetBase(MakeValues({7, 0, 0}, {2, 0, 0}));
    LinkScene::Add(target, row.fTarget, source, row.fController);
    scene.Play(1);
    EXPECT_EQ(ValueOf(target, row.fRead), row.fExpected) << row.fLabel;
    EXPECT_EQ(scene.Warnings().size(), 0U) << row.fLabel;
  }
}

}  // namespace
}  // namespace qlx::test
