// `qlx links` and the order of a bake, with links of the plug-in.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {
namespace {

using nlohmann::json;

// A link in attribute mode, from a value of the node with the id to one of its own.
json FollowNode(const std::string& inTarget, const std::string& inReference, const std::string& inSource,
                const json& inFields = json::object()) {
  json fields = {{"fAttributeMode", true}};
  fields.update(inFields);
  const std::string text =
      "pset 1\ncpsl \"" + inTarget + "\"\nsobj \"" + inReference + "\"\ncpst 1\nspar \"" + inSource + "\"\n";
  return {{"class", "fQLX"}, {"parameters", std::move(fields)}, {"private", text}};
}

constexpr const char* kTurn = "self,amet,TRAN,ROTA,RotZ";
constexpr const char* kAlong = "self,amet,TRAN,OFFS,XCOO";
constexpr const char* kSize = "self,amet,TRAN,SCAL";

// Nodes with the ids 2, 3, 4 and so on: the first is Cart, which nothing moves but its links.
json LinkScene(const std::vector<std::vector<json>>& inModifiers) {
  static constexpr const char* kNames[] = {"Cart", "WheelL", "WheelR", "Lamp"};
  json scene = {{"asset", {{"version", "2.0"}}}, {"scene", 0}, {"extensionsUsed", {"QLX_modifiers"}}};
  for (std::size_t i = 0; i < 4; ++i) {
    json node = {{"name", kNames[i]}, {"translation", {0.0254 * static_cast<double>(i + 1), 0, 0}}};
    if (i < inModifiers.size() && !inModifiers[i].empty()) {
      node["extensions"]["QLX_modifiers"]["modifiers"] = inModifiers[i];
    }
    scene["nodes"].push_back(node);
    scene["scenes"][0]["nodes"].push_back(i);
  }
  return scene;
}

class QlxLinks : public testing::Test {
 protected:
  std::string Save(const json& inScene) {
    fFolder.Write("scene.gltf", inScene.dump());
    return (fFolder / "scene.gltf").string();
  }
  json List(const json& inScene) {
    const QlxRun run = RunInProcess({"links", Save(inScene), "--json"});
    EXPECT_EQ(run.fCode, kExitDone) << run.fErr;
    return json::parse(run.fOut);
  }
  TempFolder fFolder;
};

std::string TextOfRow(const json& inRow) {
  const auto text = [](const json& value) {
    return value["of"].get<std::string>() + " " +
           value["path"].get<std::string>().substr(value["path"].get<std::string>().rfind(',') + 1);
  };
  std::string line = inRow["target"].is_null() ? "-" : text(inRow["target"]);
  for (const json& source : inRow["sources"]) {
    line += " <- " + text(source);
  }
  return line + " " + inRow["state"].get<std::string>();
}

TEST_F(QlxLinks, EveryLinkHasATargetASourceAndAState) {
  json off = FollowNode(kTurn, "02000000", kTurn);
  off["enabled"] = false;
  const json mirror = {{"class", "fQLX"},
                       {"parameters",
                        {{"fMirrorTransform", true},
                         {"fPositionNone", false},
                         {"fPositionCustom", true},
                         {"fPositionY", true},
                         {"fScaleUniform", true}}},
                       {"private", "bobj \"03000000\"\n"}};
  const struct {
    const char* fLabel;
    json fModifier;
    std::vector<std::string> fRows;
    const char* fWhy;
  } rows[] = {
      {"a parameter", FollowNode(kTurn, "03000000", kAlong), {"Cart RotZ <- WheelL XCOO ok"}, nullptr},
      {"a place", FollowNode("GlbX", "04000000", "GlbZ"), {"Cart GlbX <- WheelR GlbZ ok"}, nullptr},
      {"its own window is not now",
       FollowNode(kTurn, "03000000", kAlong,
                  {{"fStartOn", true}, {"fStartFrame", 90}, {"fDelayOn", true}, {"fDelayFrames", 9}}),
       {"Cart RotZ <- WheelL XCOO ok"},
       nullptr},
      {"arithmetic and limits",
       FollowNode("GlbY", "03000000", "GlbX",
                  {{"fCombineReplace", false},
                   {"fCombineAdd", true},
                   {"fModifyAdd", false},
                   {"fModifyMultiply", true},
                   {"fModifyValue", 3},
                   {"fUpperLimitOn", true},
                   {"fOscillateOn", true},
                   {"fRelative", true}}),
       {"Cart GlbY <- WheelL GlbX ok"},
       nullptr},
      {"itself", FollowNode(kTurn, "", kAlong, {{"fCombineSelf", true}}), {"Cart RotZ ok"}, nullptr},
      {"object mode", mirror, {"Cart GlbY <- WheelL GlbY ok", "Cart SCAL <- WheelL SCAL ok"}, nullptr},
      {"switched off", off, {"Cart RotZ <- Cart RotZ off"}, nullptr},
      {"a reference that is gone",
       FollowNode(kTurn, "63000000", kAlong),
       {"Cart RotZ <- Cart XCOO broken"},
       "the element that it refers to (id 99) is gone, it reads from \"Cart\" itself"},
      {"a name that is gone",
       FollowNode(kTurn, "03000000", kAlong, {{"fFindControllerByName", true}, {"fControllerName", "Engine"}}),
       {"Cart RotZ <- Cart XCOO broken"},
       "no element has the name \"Engine\", it reads from \"Cart\" itself"},
      {"a name",
       FollowNode(kTurn, "63000000", kAlong, {{"fFindControllerByName", true}, {"fControllerName", "Lamp"}}),
       {"Cart RotZ <- Lamp XCOO ok"},
       nullptr},
      {"a target that is none",
       FollowNode("self,amet,TRAN,RotW", "03000000", kAlong),
       {"- broken"},
       "\"Cart\" has no value at the path \"self,amet,TRAN,RotW\""},
      {"a source that is none",
       FollowNode(kTurn, "03000000", "RMPH,0,0"),
       {"- broken"},
       "\"WheelL\" has no value at the path \"RMPH,0,0\""},
  };
  for (const auto& row : rows) {
    const json list = List(LinkScene({{row.fModifier}}));
    std::vector<std::string> lines;
    for (const json& link : list["links"]) {
      lines.push_back(TextOfRow(link));
      EXPECT_EQ(link["why"], row.fWhy == nullptr ? json() : json(row.fWhy)) << row.fLabel;
      EXPECT_EQ(link["element"], "Cart") << row.fLabel;
    }
    if (std::string_view(row.fLabel) == "switched off") {
      ASSERT_EQ(lines.size(), 1U) << list;
      EXPECT_TRUE(lines[0].ends_with(" off")) << lines[0];
      continue;
    }
    EXPECT_EQ(lines, row.fRows) << row.fLabel;
  }
}

json CircleScene() {
  return LinkScene({{FollowNode("GlbX", "03000000", kAlong)},
                    {FollowNode(kTurn, "02000000", "GlbX"), FollowNode(kAlong, "03000000", kTurn)}});
}

TEST_F(QlxLinks, CyclesAreNamedAndDrawn) {
  const std::string circle = "Cart GlbX <- WheelL XCOO <- WheelL RotZ <- Cart GlbX";
  const json list = List(CircleScene());
  EXPECT_EQ(list["cycles"], json::array({circle}));
  for (const json& link : list["links"]) {
    EXPECT_EQ(link["state"], "cycle") << link;
  }
  const std::string dot = (fFolder / "links.dot").string();
  const QlxRun run = RunInProcess({"links", Save(CircleScene()), "--dot", dot});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_NE(run.fOut.find("scene.gltf: 3 links, 1 cycle\n"), std::string::npos) << run.fOut;
  EXPECT_NE(run.fOut.find("cycle: " + circle), std::string::npos) << run.fOut;
  const std::string drawn = ReadFile(fFolder / "links.dot");
  EXPECT_EQ(drawn.find("digraph links {"), 0U);
  EXPECT_NE(drawn.find("label=\"WheelL\""), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("label=\"cycle\""), std::string::npos) << drawn;
}

TEST_F(QlxLinks, BakesSourcesFirstUnlessToldOtherwise) {
  const json scene = LinkScene({{FollowNode(kSize, "03000000", kSize)}, {FollowNode(kSize, "04000000", kAlong)}});
  const auto bake = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments{
        "bake", Save(scene), "-o", (fFolder / "out.gltf").string(), "--csv", (fFolder / "out.csv").string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const QlxRun run = RunInProcess(arguments);
    EXPECT_EQ(run.fCode, kExitDone) << run.fErr;
    EXPECT_EQ(run.fErr, "");
    return ReadFile(fFolder / "out.csv");
  };
  const std::string ordered = bake({});
  EXPECT_NE(ordered.find("Cart SCAL"), std::string::npos) << ordered;
  EXPECT_EQ(bake({"--order", "links"}), ordered);
  EXPECT_EQ(bake({"--order", "tree"}).find("Cart SCAL"), std::string::npos) << "WheelL had its own size then";
  EXPECT_EQ(RunInProcess({"bake", Save(scene), "-o", "x.gltf", "--order", "best"}).fCode, kExitUsage);
}

TEST_F(QlxLinks, ProblemsAreOneLine) {
  const struct {
    const char* fLabel;
    std::vector<std::string> fArguments;
    const char* fError;
  } rows[] = {
      {"no such file", {"links", "missing.gltf"}, "missing.gltf"},
      {"a place where no file can be", {"links", Save(CircleScene()), "--dot", "no/such/folder/x.dot"}, "x.dot"},
  };
  for (const auto& row : rows) {
    const QlxRun run = RunInProcess(row.fArguments);
    EXPECT_EQ(run.fCode, kExitFailed) << row.fLabel;
    EXPECT_EQ(run.fOut, "") << row.fLabel;
    EXPECT_NE(run.fErr.find(row.fError), std::string::npos) << run.fErr;
    EXPECT_EQ(std::count(run.fErr.begin(), run.fErr.end(), '\n'), 1) << run.fErr;
  }
}

}  // namespace
}  // namespace qlx::host
