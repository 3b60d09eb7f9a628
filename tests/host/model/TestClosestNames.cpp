#include "model/ClosestNames.h"

#include <gtest/gtest.h>

#include "ProblemOf.h"
#include "model/Scene.h"

namespace qlx::host {
namespace {

TEST(ClosestNames, AreThoseThatAPersonMayHaveMeant) {
  const std::vector<std::string> names{"Upper arm", "Forearm", "Hand", "Hand.2", "Foot", "Hand", "Thumb of the hand"};
  struct Row {
    const char* fLabel;
    const char* fName;
    const char* fText;
  };
  const Row rows[] = {
      {"a letter too many, and the longer name", "Handd", "; the closest is \"Hand\""},
      {"case", "foot", "; the closest is \"Foot\""},
      {"two letters swapped", "Fotoarm", "; the closest is \"Forearm\""},
      {"swapped neighbours", "Hnad", "; the closest is \"Hand\""},
      {"a part of names", "hand", "; the closest are \"Hand\", \"Hand.2\" and \"Thumb of the hand\""},
      {"nothing near", "Kneecap", ""},
      {"nothing", "", ""},
      {"one letter", "x", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ClosestText(row.fName, names), row.fText) << row.fLabel;
  }
}

TEST(ClosestNames, AnElementThatThereIsNotIsAnErrorAtItsPlace) {
  Diagnostics diagnostics;
  const auto scene = MakeHosted<Scene>(diagnostics);
  Element& arm = scene->AddElement(scene->GetRootElement(), "Arm");
  EXPECT_EQ(&NeedElement(*scene, "Arm", "--to"), &arm);
  const auto problem = [&](const char* name) { return test::ProblemOf([&] { NeedElement(*scene, name, "--to"); }); };
  EXPECT_EQ(problem("Amr"), "--to: the scene has no element \"Amr\"; the closest is \"Arm\"");
  EXPECT_EQ(problem("Leg"), "--to: the scene has no element \"Leg\" (see: qlx tree)");
  scene->Close();
}

}  // namespace
}  // namespace qlx::host
