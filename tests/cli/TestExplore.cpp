// `qlx explore`.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {

namespace {

using ExploreJson = nlohmann::json;

class QlxExplore : public testing::Test {
 protected:
  std::string Out() const { return PathText(fFolder / "out.gltf"); }
  static QlxRun Explore(const char* inScene, std::vector<std::string> inWords) {
    inWords.insert(inWords.begin(), {"explore", Example(inScene)});
    return RunInProcess(std::move(inWords));
  }
  static std::string Get(const std::string& inScene, const std::string& inElement, const std::string& inPath,
                         const std::string& inFrame = "") {
    std::vector<std::string> words = {"get", inScene, "--element", inElement, "--path", inPath};
    if (!inFrame.empty()) {
      words.insert(words.end(), {"--frame", inFrame});
    }
    return RunInProcess(std::move(words)).fOut;
  }

  TempFolder fFolder;
};

}  // namespace

TEST_F(QlxExplore, ShowsTheTreeWithItsValues) {
  const QlxRun run = Explore("pinned_arm.gltf", {"--element", "UpperArm", "--frame", "18", "--json"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const ExploreJson rows = ExploreJson::parse(run.fOut)["rows"];
  EXPECT_EQ(rows[0]["label"], "UpperArm");
  EXPECT_TRUE(rows[0]["value"].is_null());
  int values = 0;
  int animated = 0;
  for (const ExploreJson& row : rows) {
    const auto path = row["path"].get<std::string>();
    animated += row["animated"].get<bool>() ? 1 : 0;
    if (row["value"].is_null() || path.find(",Glb") != std::string::npos) {
      continue;
    }
    const std::string value = Get(Example("pinned_arm.gltf"), "UpperArm", path, "18");
    EXPECT_FLOAT_EQ(row["value"].get<float>(), std::stof(value)) << path;
    ++values;
  }
  EXPECT_GT(values, 15);
  EXPECT_EQ(animated, 3) << "the three angles";
  const std::string text = Explore("pinned_arm.gltf", {"--element", "UpperArm", "--path", "Rotation"}).fOut;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4) << text;
  EXPECT_NE(text.find("self,amet,TRAN,ROTA,RotZ  (animated)\n"), std::string::npos) << text;
  const std::string some = Explore("pinned_arm.gltf", {"--element", "UpperArm", "--animated"}).fOut;
  EXPECT_EQ(some.rfind("Rotation X (RotX) [qfix]  ", 0), 0U) << some;
  EXPECT_EQ(std::count(some.begin(), some.end(), '\n'), 3) << some;
  EXPECT_EQ(Explore("pinned_arm.gltf", {"--element", "Hand", "--animated"}).fOut, "");
}

TEST_F(QlxExplore, SetsAValueAsTheDialogDoes) {
  const struct {
    const char* fScene;
    const char* fElement;
    const char* fRow;  // a path or a label
    const char* fPath;
    const char* fFrame;  // of the value, "" for the base value
    const char* fNew;
  } rows[] = {
      {"pinned_arm.gltf", "Base", "self,amet,TRAN,OFFS,YCOO", "self,amet,TRAN,OFFS,YCOO", "", "12.5"},
      {"pinned_arm.gltf", "Base", "Scale X", "self,amet,TRAN,XYZ ,ScaX", "", "2"},
      {"pinned_arm.gltf", "UpperArm", "Global X Position", "self,amet,TRAN,OFFS,XCOO", "", "7"},
      {"pinned_arm.gltf", "Forearm", "self,amet,TRAN,ROTA,RotZ", "self,amet,TRAN,ROTA,RotZ", "12", "0.25"},
      {"lamp.gltf", "Lamp", "shdr,0000,Roug", "shdr,0000,Roug", "", "0.5"},
      {"lamp.gltf", "Lamp", "shdr,0000,BCol,grnV", "shdr,0000,BCol,grnV", "", "0.25"},
  };
  for (const auto& row : rows) {
    const std::string before = Get(Example(row.fScene), row.fElement, row.fPath, row.fFrame);
    EXPECT_NE(std::stof(before), std::stof(row.fNew)) << row.fRow;
    const QlxRun run = Explore(row.fScene, {"--element", row.fElement, "--path", row.fRow, "--set", row.fNew, "--frame",
                                            row.fFrame[0] == '\0' ? "0" : row.fFrame, "-o", Out()});
    ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
    EXPECT_NE(run.fOut.find(std::string(" of ") + row.fElement + " is " + row.fNew), std::string::npos) << run.fOut;
    EXPECT_EQ(run.fOut.find(" by a key") != std::string::npos, row.fFrame[0] != '\0') << run.fOut;
    EXPECT_NEAR(std::stof(Get(Out(), row.fElement, row.fPath, row.fFrame)), std::stof(row.fNew), 1e-6) << row.fRow;
  }
}

TEST_F(QlxExplore, AnErrorNamesWhatThereIsAndWritesNothing) {
  const struct {
    const char* fLabel;
    std::vector<std::string> fWords;
    const char* fProblem;
  } rows[] = {
      {"no element", {"--element", "Hnad"}, "--element: the scene has no element \"Hnad\"; the closest is \"Hand\""},
      {"a mistyped path",
       {"--element", "Hand", "--path", "self,amet,TRAN,ROTA,RotW"},
       "--path: no value has the path \"self,amet,TRAN,ROTA,RotW\"; the closest are \"self,amet,TRAN,ROTA,RotX\""},
      {"a mistyped label", {"--element", "Hand", "--path", "Rotatoin X"}, "the closest are \"Rotation X\""},
      {"a group",
       {"--element", "Hand", "--path", "self,amet,TRAN,ROTA", "--set", "1", "-o", "OUT"},
       "--path: \"self,amet,TRAN,ROTA\" is a group of values"},
      {"no number",
       {"--element", "Hand", "--path", "Rotation X", "--set", "half", "-o", "OUT"},
       "--set: nVal (\"New\"): \"half\" is not a number"},
      {"no output", {"--element", "Hand", "--path", "Rotation X", "--set", "1"}, "--set requires --output"},
      {"no value", {"--element", "Hand", "--path", "Rotation X", "-o", "OUT"}, "--output requires --set"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> words = row.fWords;
    std::replace(words.begin(), words.end(), std::string("OUT"), Out());
    const QlxRun run = Explore("pinned_arm.gltf", words);
    EXPECT_NE(run.fCode, kExitDone) << row.fLabel;
    EXPECT_NE(run.fErr.find(row.fProblem), std::string::npos) << row.fLabel << ": " << run.fErr;
    EXPECT_TRUE(fFolder.List().empty()) << row.fLabel;
  }
}

}  // namespace qlx::host
