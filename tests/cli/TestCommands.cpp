// The commands on the example scene: what they print, and what is in the files that they write.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {
namespace {

using nlohmann::json;

std::vector<std::string> Lines(const std::string& inText) {
  std::vector<std::string> lines;
  std::istringstream stream(inText);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

TEST(Qlx, HelpAndVersionAreAnswers) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--help"}, {"bake", "--help"}, {"tree", "-h"}, {"info", "--help"}, {"--version"}}) {
    const QlxRun run = RunInProcess(arguments);
    EXPECT_EQ(run.fCode, kExitDone) << arguments[0];
    EXPECT_NE(run.fOut, "") << arguments[0];
    EXPECT_EQ(run.fErr, "") << arguments[0];
  }
}

TEST(QlxInfo, TellsWhichClassesThisBuildMakes) {
  const QlxRun run = RunInProcess({"info", "--json"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const json info = json::parse(run.fOut);
  EXPECT_EQ(info["exports"].size(), 6U);
  EXPECT_EQ(info["target"]["bits"], 8 * sizeof(void*));
  ASSERT_EQ(info["classes"].size(), 14U);
  EXPECT_EQ(info["classes"][1]["name"], "PinModifier");
  EXPECT_EQ(info["classes"][1]["classId"], "203FF150-EDC1-991D-93E9-19E1A1710097");
  EXPECT_EQ(info["classes"][1]["id"], "fPIN");
  EXPECT_EQ(info["classes"][1]["made"], true);
  EXPECT_NE(RunInProcess({"info"}).fOut.find("PinModifier"), std::string::npos);
}

TEST(QlxTree, ShowsElementsBelowTheirParentsWithTheirModifiers) {
  const QlxRun run = RunInProcess({"tree", Example("pinned_arm.gltf")});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const std::vector<std::string> lines = Lines(run.fOut);
  std::map<std::string, std::size_t> depths;
  for (const std::string& line : lines) {
    const std::size_t depth = line.find_first_not_of(' ');
    if (depth != std::string::npos) {
      depths[line.substr(depth, line.find_first_of(" ,:", depth) - depth)] = depth;
    }
  }
  EXPECT_LT(depths["Base"], depths["UpperArm"]);
  EXPECT_LT(depths["UpperArm"], depths["Forearm"]);
  EXPECT_LT(depths["Forearm"], depths["Hand"]);
  EXPECT_NE(run.fOut.find("PinModifier"), std::string::npos);
}

TEST(QlxTree, JsonHoldsEveryParameterWithPathTypeAndValue) {
  const QlxRun run = RunInProcess({"tree", Example("pinned_arm.gltf"), "--params", "--json"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const json tree = json::parse(run.fOut);
  ASSERT_EQ(tree["elements"].size(), 4U);
  const json& hand = tree["elements"][3];
  EXPECT_EQ(hand["name"], "Hand");
  EXPECT_EQ(hand["parent"], tree["elements"][2]["id"]);
  ASSERT_EQ(hand["modifiers"].size(), 1U);
  EXPECT_EQ(hand["modifiers"][0]["class"], "fPIN");
  EXPECT_EQ(hand["modifiers"][0]["enabled"], true);
  EXPECT_EQ(hand["modifiers"][0]["parameters"]["fGlobal"], true);
  std::map<std::string, json> parameters;
  for (const json& parameter : hand["parameters"]) {
    parameters[parameter["path"]] = parameter;
  }
  const json& height = parameters["self,amet,TRAN,OFFS,YCOO"];
  EXPECT_NEAR(height.value("value", 0.0), 0.4 * 39.3700787, 1e-4) << hand.dump(1);
  EXPECT_NE(RunInProcess({"tree", Example("pinned_arm.gltf"), "--params"}).fOut.find("self,amet,TRAN,OFFS,YCOO"),
            std::string::npos);
}

TEST(QlxBake, WritesSceneTableAndPlot) {
  const TempFolder folder;
  const auto scene = folder / "arm.glb";
  const auto table = folder / "arm.csv";
  const auto plot = folder / "arm.svg";
  const QlxRun run = RunInProcess({"bake", Example("pinned_arm.gltf"), "-o", PathText(scene), "--csv", PathText(table),
                                   "--plot", PathText(plot), "--plot-also", "UpperArm", "--json"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_EQ(run.fErr, "");
  const json summary = json::parse(run.fOut);
  EXPECT_EQ(summary["clip"], "Wave");
  EXPECT_EQ(summary["frames"]["count"], 73);
  ASSERT_EQ(summary["elements"].size(), 1U);
  EXPECT_EQ(summary["elements"][0]["name"], "Hand");
  EXPECT_EQ(summary["elements"][0]["values"].size(), 3U);
  EXPECT_EQ(summary["warnings"].size(), 0U);

  const std::vector<std::string> rows = Lines(ReadFile(table));
  ASSERT_EQ(rows.size(), 74U);
  EXPECT_EQ(rows[0], "frame,seconds,Hand XCOO (inches),Hand YCOO (inches),Hand ZCOO (inches)");
  EXPECT_EQ(rows[13].substr(0, 7), "12,0.5,");
  EXPECT_EQ(rows[73].substr(0, 5), "72,3,");

  const std::string drawing = ReadFile(plot);
  for (const char* text : {"Hand without modifiers", "Forearm (its parent)", ">UpperArm<", "Position X", "frame"}) {
    EXPECT_NE(drawing.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(ReadFile(scene).substr(0, 4), "glTF");
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"arm.csv", "arm.glb", "arm.svg"})) << "nothing beside";
}

TEST(QlxBake, RangeRateAndSwitchedOffModifiersFollowTheOptions) {
  const TempFolder folder;
  const std::string scene = PathText(folder / "arm.gltf");
  const QlxRun run = RunInProcess({"bake", Example("pinned_arm.gltf"), "-o", scene, "--fps", "30", "--from", "15",
                                   "--to", "45", "--clip", "Wave", "--keep", "--csv", PathText(folder / "arm.csv")});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const std::vector<std::string> rows = Lines(ReadFile(folder / "arm.csv"));
  ASSERT_EQ(rows.size(), 32U);
  EXPECT_EQ(rows[1].substr(0, 7), "15,0.5,");

  const json tree = json::parse(RunInProcess({"tree", scene, "--json"}).fOut);
  EXPECT_EQ(tree["elements"][3]["modifiers"][0]["enabled"], false);
  const QlxRun baked = RunInProcess({"bake", scene, "-o", PathText(folder / "again.gltf"), "--json"});
  EXPECT_EQ(json::parse(baked.fOut)["elements"].size(), 0U) << "a modifier that is off does nothing";
}

// The example with one text replaced by another.
std::string ChangedExample(const std::string& inOld, const std::string& inNew) {
  std::string text = ReadFile(Example("pinned_arm.gltf"));
  const std::size_t place = text.find(inOld);
  EXPECT_NE(place, std::string::npos) << inOld;
  return text.replace(place, inOld.size(), inNew);
}

TEST(QlxBake, NamesOfFilesAndElementsMayHoldAnything) {
  const TempFolder folder;
  const auto scene = folder.Write("\xC3\xA4rm & co.gltf",
                                  ChangedExample("\"name\": \"Hand\"", R"("name": "Ha,\"<nd>\u001b\n\u00e9")"));
  const auto table = folder / "\xE8\xA1\xA8.csv";
  const auto plot = folder / "plot.svg";
  const QlxRun run = RunInProcess({"bake", PathText(scene), "-o", PathText(folder / "\xC3\xA4.glb"), "--csv",
                                   PathText(table), "--plot", PathText(plot)});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_NE(run.fOut.find("Ha,\"<nd>  \xC3\xA9: Position X"), std::string::npos) << run.fOut;
  EXPECT_EQ(ReadFile(table).substr(0, 39), "frame,seconds,\"Ha,\"\"<nd>  \xC3\xA9 XCOO (inch");
  EXPECT_NE(ReadFile(plot).find("Ha,&quot;&lt;nd&gt;"), std::string::npos);
  EXPECT_EQ(RunInProcess({"tree", PathText(scene)}).fOut.find('\x1B'), std::string::npos);
}

// A pin in the scene below a parent that is flattened to nothing has no place to go: that is lived with, and told.
TEST(QlxBake, WhatWentWrongAndWasLivedWithIsAWarning) {
  const TempFolder folder;
  const auto scene = folder.Write(
      "flat.gltf", ChangedExample("\"name\": \"Forearm\",", "\"name\": \"Forearm\", \"scale\": [0, 0, 0],"));
  const QlxRun run = RunInProcess({"bake", PathText(scene), "-o", PathText(folder / "out.glb"), "--json"});
  EXPECT_EQ(run.fCode, kExitDone);
  EXPECT_EQ(run.fErr.rfind("qlx: warning: ", 0), 0U) << run.fErr;
  EXPECT_EQ(json::parse(run.fOut)["warnings"].size(), 1U) << run.fOut;
}

TEST(QlxTree, ADeepSceneIsPrintedWithoutMoreBlanksThanNames) {
  json scene = {{"asset", {{"version", "2.0"}}}, {"scene", 0}, {"scenes", {{{"nodes", {0}}}}}};
  for (int i = 0; i < 2000; ++i) {
    scene["nodes"].push_back({{"name", "N" + std::to_string(i)}, {"children", {i + 1}}});
  }
  scene["nodes"].push_back({{"name", "Last"}});
  const TempFolder folder;
  const QlxRun run = RunInProcess({"tree", PathText(folder.Write("deep.gltf", scene.dump()))});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_NE(run.fOut.find("(level 2000) Last\n"), std::string::npos);
  EXPECT_LT(run.fOut.size(), 2100U * 110U);
}

TEST(QlxBake, TheOutputMayBeTheSceneItself) {
  const TempFolder folder;
  const auto scene = folder.Write("arm.gltf", ReadFile(Example("pinned_arm.gltf")));
  ASSERT_EQ(RunInProcess({"bake", PathText(scene), "-o", PathText(scene)}).fCode, kExitDone);
  const QlxRun again = RunInProcess({"tree", PathText(scene), "--json"});
  ASSERT_EQ(again.fCode, kExitDone) << again.fErr;
  EXPECT_EQ(json::parse(again.fOut)["elements"][3]["modifiers"].size(), 0U);
  EXPECT_EQ(folder.List().size(), 1U);
}

}  // namespace
}  // namespace qlx::host
