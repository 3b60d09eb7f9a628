// The commands on the example scene: what they print, and what is in the files that they write.
#include <map>

#include "QlxRun.h"

namespace qlx::host {
namespace {

class QlxBake : public QlxTest {
 protected:
  const std::string fArm = Example("pinned_arm.gltf");
};
using QlxTree = QlxBake;

std::vector<std::string> Lines(const std::string& inText) {
  std::vector<std::string> lines;
  std::istringstream stream(inText);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

TEST_F(QlxBake, HelpAndVersionAreAnswers) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--help"}, {"bake", "--help"}, {"tree", "-h"}, {"--version"}}) {
    EXPECT_NE(Print(words), "") << words[0];
  }
}

TEST_F(QlxTree, InfoTellsWhichClassesThisBuildMakes) {
  const Json info = PrintJson({"info"});
  EXPECT_EQ(info["exports"].size(), 6U);
  EXPECT_EQ(info["target"]["bits"], 8 * sizeof(void*));
  ASSERT_EQ(info["classes"].size(), 14U);
  EXPECT_EQ(info["classes"][1]["name"], "PinModifier");
  EXPECT_EQ(info["classes"][1]["classId"], "203FF150-EDC1-991D-93E9-19E1A1710097");
  EXPECT_EQ(info["classes"][1]["id"], "fPIN");
  EXPECT_EQ(info["classes"][1]["made"], true);
  ExpectPart("PinModifier", Print({"info"}));
}

TEST_F(QlxTree, ShowsElementsBelowTheirParentsWithTheirModifiersAndParameters) {
  std::map<std::string, std::size_t> depths;
  const std::string text = Print({"tree", fArm, "--params"});
  for (const std::string& line : Lines(text)) {
    const std::size_t depth = line.find_first_not_of(' ');
    if (depth != std::string::npos) {
      depths[line.substr(depth, line.find_first_of(" ,:", depth) - depth)] = depth;
    }
  }
  EXPECT_LT(depths["Base"], depths["UpperArm"]);
  EXPECT_LT(depths["Forearm"], depths["Hand"]);
  ExpectPart("PinModifier", text);
  ExpectPart("self,amet,TRAN,OFFS,YCOO", text);
}

TEST_F(QlxTree, JsonHoldsEveryParameterWithPathTypeAndValue) {
  const Json tree = PrintJson({"tree", fArm, "--params"});
  ASSERT_EQ(tree["elements"].size(), 4U);
  const Json& hand = tree["elements"][3];
  EXPECT_EQ(hand["name"], "Hand");
  EXPECT_EQ(hand["parent"], tree["elements"][2]["id"]);
  ASSERT_EQ(hand["modifiers"].size(), 1U);
  EXPECT_EQ(hand["modifiers"][0]["class"], "fPIN");
  EXPECT_EQ(hand["modifiers"][0]["enabled"], true);
  EXPECT_EQ(hand["modifiers"][0]["parameters"]["fGlobal"], true);
  const auto height = std::ranges::find(hand["parameters"], "self,amet,TRAN,OFFS,YCOO",
                                        [](const Json& parameter) { return parameter["path"]; });
  ASSERT_NE(height, hand["parameters"].end());
  EXPECT_NEAR(height->value("value", 0.0), 0.4 * 39.3700787, 1e-4) << hand.dump(1);
}

TEST_F(QlxBake, WritesSceneTableAndPlot) {
  const Json summary = PrintJson(
      {"bake", fArm, "-o", At("arm.glb"), "--csv", At("arm.csv"), "--plot", At("arm.svg"), "--plot-also", "UpperArm"});
  EXPECT_EQ(summary["clip"], "Wave");
  EXPECT_EQ(summary["frames"]["count"], 73);
  ASSERT_EQ(summary["elements"].size(), 1U);
  EXPECT_EQ(summary["elements"][0]["name"], "Hand");
  EXPECT_EQ(summary["elements"][0]["values"].size(), 3U);
  EXPECT_EQ(summary["warnings"].size(), 0U);

  const std::vector<std::string> rows = Lines(ReadFile(fFolder / "arm.csv"));
  ASSERT_EQ(rows.size(), 74U);
  EXPECT_EQ(rows[0], "frame,seconds,Hand XCOO (inches),Hand YCOO (inches),Hand ZCOO (inches)");
  EXPECT_EQ(rows[13].substr(0, 7), "12,0.5,");
  EXPECT_EQ(rows[73].substr(0, 5), "72,3,");
  for (const char* text : {"Hand without modifiers", "Forearm (its parent)", ">UpperArm<", "Position X", "frame"}) {
    ExpectPart(text, ReadFile(fFolder / "arm.svg"));
  }
  EXPECT_EQ(ReadFile(fFolder / "arm.glb").substr(0, 4), "glTF");
  EXPECT_EQ(fFolder.List(), (std::vector<std::string>{"arm.csv", "arm.glb", "arm.svg"})) << "nothing beside";
}

TEST_F(QlxBake, RangeRateAndSwitchedOffModifiersFollowTheOptions) {
  Print({"bake", fArm, "-o", At(), "--fps", "30", "--from", "15", "--to", "45", "--clip", "Wave", "--keep", "--csv",
         At("arm.csv")});
  const std::vector<std::string> rows = Lines(ReadFile(fFolder / "arm.csv"));
  ASSERT_EQ(rows.size(), 32U);
  EXPECT_EQ(rows[1].substr(0, 7), "15,0.5,");
  EXPECT_EQ(PrintJson({"tree", At()})["elements"][3]["modifiers"][0]["enabled"], false);
  EXPECT_EQ(PrintJson({"bake", At(), "-o", At("again.gltf")})["elements"].size(), 0U)
      << "a modifier that is off does nothing";
}

// The example with one text replaced by another.
std::string ChangedExample(const std::string& inOld, const std::string& inNew) {
  std::string text = ReadFile(Example("pinned_arm.gltf"));
  const std::size_t place = text.find(inOld);
  EXPECT_NE(place, std::string::npos) << inOld;
  return text.replace(place, inOld.size(), inNew);
}

TEST_F(QlxBake, NamesOfFilesAndElementsMayHoldAnything) {
  const auto scene = PathText(fFolder.Write(
      "\xC3\xA4rm & co.gltf", ChangedExample("\"name\": \"Hand\"", R"("name": "Ha,\"<nd>\u001b\n\u00e9")")));
  const auto table = fFolder / "\xE8\xA1\xA8.csv";
  ExpectPart("Ha,\"<nd>  \xC3\xA9: Position X",
             Print({"bake", scene, "-o", At("\xC3\xA4.glb"), "--csv", PathText(table), "--plot", At("plot.svg")}));
  EXPECT_EQ(ReadFile(table).substr(0, 39), "frame,seconds,\"Ha,\"\"<nd>  \xC3\xA9 XCOO (inch");
  ExpectPart("Ha,&quot;&lt;nd&gt;", ReadFile(fFolder / "plot.svg"));
  EXPECT_EQ(Print({"tree", scene}).find('\x1B'), std::string::npos);
}

// A pin in the scene below a parent that is flattened to nothing has no place to go: that is lived with, and told.
TEST_F(QlxBake, WhatWentWrongAndWasLivedWithIsAWarning) {
  const auto scene = fFolder.Write(
      "flat.gltf", ChangedExample("\"name\": \"Forearm\",", "\"name\": \"Forearm\", \"scale\": [0, 0, 0],"));
  const QlxRun run = RunInProcess({"bake", PathText(scene), "-o", At(), "--json"});
  EXPECT_EQ(run.fCode, kExitDone);
  EXPECT_EQ(run.fErr.rfind("qlx: warning: ", 0), 0U) << run.fErr;
  EXPECT_EQ(Json::parse(run.fOut)["warnings"].size(), 1U) << run.fOut;
}

TEST_F(QlxTree, ADeepSceneIsPrintedWithoutMoreBlanksThanNames) {
  Json scene = {{"asset", {{"version", "2.0"}}}, {"scene", 0}, {"scenes", {{{"nodes", {0}}}}}};
  for (int i = 0; i < 2000; ++i) {
    scene["nodes"].push_back({{"name", "N" + std::to_string(i)}, {"children", {i + 1}}});
  }
  scene["nodes"].push_back({{"name", "Last"}});
  const std::string text = Print({"tree", PathText(fFolder.Write("deep.gltf", scene.dump()))});
  ExpectPart("(level 2000) Last\n", text);
  EXPECT_LT(text.size(), 2100U * 110U);
}

TEST_F(QlxBake, TheOutputMayBeTheSceneItself) {
  const std::string scene = PathText(fFolder.Write("arm.gltf", ReadFile(fArm)));
  Print({"bake", scene, "-o", scene});
  EXPECT_EQ(PrintJson({"tree", scene})["elements"][3]["modifiers"].size(), 0U);
  EXPECT_EQ(fFolder.List().size(), 1U);
}

}  // namespace
}  // namespace qlx::host
