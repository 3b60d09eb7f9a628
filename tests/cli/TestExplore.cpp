// `qlx explore`.
#include "QlxRun.h"

namespace qlx::host {

namespace {

class QlxExplore : public QlxTest {
 protected:
  static std::vector<std::string> Words(const char* inScene, std::vector<std::string> inWords) {
    inWords.insert(inWords.begin(), {"explore", Example(inScene)});
    return inWords;
  }
  static std::string Explore(std::vector<std::string> inWords) {
    return Print(Words("pinned_arm.gltf", std::move(inWords)));
  }
  static real32 Get(const std::string& inScene, const std::string& inElement, const std::string& inPath,
                    const std::string& inFrame = "") {
    std::vector<std::string> words = {"get", inScene, "--element", inElement, "--path", inPath};
    if (!inFrame.empty()) {
      words.insert(words.end(), {"--frame", inFrame});
    }
    return std::stof(Print(std::move(words)));
  }
};

}  // namespace

TEST_F(QlxExplore, ShowsTheTreeWithItsValues) {
  const Json rows = PrintJson(Words("pinned_arm.gltf", {"--element", "UpperArm", "--frame", "18"}))["rows"];
  EXPECT_EQ(rows[0]["label"], "UpperArm");
  EXPECT_TRUE(rows[0]["value"].is_null());
  int values = 0;
  int animated = 0;
  for (const Json& row : rows) {
    const auto path = row["path"].get<std::string>();
    animated += row["animated"].get<bool>() ? 1 : 0;
    if (!row["value"].is_null() && path.find(",Glb") == std::string::npos) {
      EXPECT_FLOAT_EQ(row["value"].get<float>(), Get(Example("pinned_arm.gltf"), "UpperArm", path, "18")) << path;
      ++values;
    }
  }
  EXPECT_GT(values, 15);
  EXPECT_EQ(animated, 3) << "the three angles";
  const std::string text = Explore({"--element", "UpperArm", "--path", "Rotation"});
  EXPECT_EQ(std::ranges::count(text, '\n'), 4) << text;
  ExpectPart("self,amet,TRAN,ROTA,RotZ  (animated)\n", text);
  const std::string some = Explore({"--element", "UpperArm", "--animated"});
  EXPECT_EQ(some.rfind("Rotation X (RotX) [qfix]  ", 0), 0U) << some;
  EXPECT_EQ(std::ranges::count(some, '\n'), 3) << some;
  EXPECT_EQ(Explore({"--element", "Hand", "--animated"}), "");
}

TEST_F(QlxExplore, SetsAValueAsTheDialogDoes) {
  const struct {
    const char* fScene;
    const char* fElement;
    const char* fRow;  // a path or a label
    const char* fPath;
    std::string fFrame;  // of the value, "" for the base value
    const char* fNew;
  } rows[] = {
      {"pinned_arm.gltf", "Base", "Scale X", "self,amet,TRAN,XYZ ,ScaX", "", "2"},
      {"pinned_arm.gltf", "UpperArm", "Global X Position", "self,amet,TRAN,OFFS,XCOO", "", "7"},
      {"pinned_arm.gltf", "Forearm", "self,amet,TRAN,ROTA,RotZ", "self,amet,TRAN,ROTA,RotZ", "12", "0.25"},
      {"lamp.gltf", "Lamp", "shdr,0000,BCol,grnV", "shdr,0000,BCol,grnV", "", "0.25"},
  };
  for (const auto& row : rows) {
    EXPECT_NE(Get(Example(row.fScene), row.fElement, row.fPath, row.fFrame), std::stof(row.fNew)) << row.fRow;
    const std::string text = Print(Words(row.fScene, {"--element", row.fElement, "--path", row.fRow, "--set", row.fNew,
                                                      "--frame", row.fFrame.empty() ? "0" : row.fFrame, "-o", At()}));
    ExpectPart(std::string(" of ") + row.fElement + " is " + row.fNew, text);
    EXPECT_EQ(text.find(" by a key") != std::string::npos, !row.fFrame.empty()) << text;
    EXPECT_NEAR(Get(At(), row.fElement, row.fPath, row.fFrame), std::stof(row.fNew), 1e-6) << row.fRow;
  }
}

TEST_F(QlxExplore, AnErrorNamesWhatThereIsAndWritesNothing) {
  const struct {
    const char* fLabel;
    std::vector<std::string> fWords;
    const char* fProblem;
    int fCode = kExitFailed;
  } rows[] = {
      {"no element", {"--element", "Hnad"}, "--element: the scene has no element \"Hnad\"; the closest is \"Hand\""},
      {"a mistyped path",
       {"--element", "Hand", "--path", "self,amet,TRAN,ROTA,RotW"},
       "--path: no value has the path \"self,amet,TRAN,ROTA,RotW\"; the closest are \"self,amet,TRAN,ROTA,RotX\""},
      {"a mistyped label", {"--element", "Hand", "--path", "Rotatoin X"}, "the closest are \"Rotation X\""},
      {"a group",
       {"--element", "Hand", "--path", "self,amet,TRAN,ROTA", "--set", "1", "-o", At()},
       "--path: \"self,amet,TRAN,ROTA\" is a group of values"},
      {"no number",
       {"--element", "Hand", "--path", "Rotation X", "--set", "half", "-o", At()},
       "--set: nVal (\"New\"): \"half\" is not a number"},
      {"no output", {"--element", "Hand", "--path", "Rotation X", "--set", "1"}, "--set requires --output", kExitUsage},
      {"no value", {"--element", "Hand", "-o", At()}, "--output requires --set", kExitUsage},
  };
  for (const auto& row : rows) {
    ExpectProblems({{row.fLabel, Words("pinned_arm.gltf", row.fWords), row.fProblem}}, row.fCode);
  }
}

}  // namespace qlx::host
