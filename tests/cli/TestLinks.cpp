// `qlx links` and the order of a bake, with links of the plug-in.
#include "QlxRun.h"

namespace qlx::host {
namespace {

// A link in attribute mode, from a value of the node with the id to one of its own.
Json FollowNode(const std::string& inTarget, const std::string& inReference, const std::string& inSource,
                const Json& inFields = Json::object()) {
  Json fields = {{"fAttributeMode", true}};
  fields.update(inFields);
  const std::string text =
      "pset 1\ncpsl \"" + inTarget + "\"\nsobj \"" + inReference + "\"\ncpst 1\nspar \"" + inSource + "\"\n";
  return {{"class", "fQLX"}, {"parameters", std::move(fields)}, {"private", text}};
}

constexpr const char* kTurn = "self,amet,TRAN,ROTA,RotZ";
constexpr const char* kAlong = "self,amet,TRAN,OFFS,XCOO";
constexpr const char* kSize = "self,amet,TRAN,SCAL";

// Nodes with the ids 2, 3, 4 and so on: the first is Cart, which nothing moves but its links.
Json LinkScene(const std::vector<std::vector<Json>>& inModifiers) {
  static constexpr const char* kNames[] = {"Cart", "WheelL", "WheelR", "Lamp"};
  Json scene = {{"asset", {{"version", "2.0"}}}, {"scene", 0}, {"extensionsUsed", {"QLX_modifiers"}}};
  for (std::size_t i = 0; i < 4; ++i) {
    Json node = {{"name", kNames[i]}, {"translation", {0.0254 * static_cast<double>(i + 1), 0, 0}}};
    if (i < inModifiers.size() && !inModifiers[i].empty()) {
      node["extensions"]["QLX_modifiers"]["modifiers"] = inModifiers[i];
    }
    scene["nodes"].push_back(node);
    scene["scenes"][0]["nodes"].push_back(i);
  }
  return scene;
}

class QlxLinks : public QlxTest {
 protected:
  std::string Save(const Json& inScene) { return PathText(fFolder.Write("scene.gltf", inScene.dump())); }
};

std::string TextOfRow(const Json& inRow) {
  const auto text = [](const Json& value) {
    return value["of"].get<std::string>() + " " +
           value["path"].get<std::string>().substr(value["path"].get<std::string>().rfind(',') + 1);
  };
  std::string line = inRow["target"].is_null() ? "-" : text(inRow["target"]);
  for (const Json& source : inRow["sources"]) {
    line += " <- " + text(source);
  }
  return line + " " + inRow["state"].get<std::string>();
}

TEST_F(QlxLinks, EveryLinkHasATargetASourceAndAState) {
  Json off = FollowNode(kTurn, "02000000", kTurn);
  off["enabled"] = false;
  const Json mirror = Json::parse(R"({"class": "fQLX", "private": "bobj \"03000000\"\n", "parameters":
      {"fMirrorTransform": true, "fPositionNone": false, "fPositionCustom": true, "fPositionY": true,
       "fScaleUniform": true}})");
  const Json window = Json::parse(R"({"fStartOn": true, "fStartFrame": 90, "fDelayOn": true, "fDelayFrames": 9})");
  const Json arithmetic = Json::parse(R"({"fCombineReplace": false, "fCombineAdd": true, "fModifyAdd": false,
      "fModifyMultiply": true, "fModifyValue": 3, "fUpperLimitOn": true, "fOscillateOn": true, "fRelative": true})");
  const auto named = [](const char* name) { return Json{{"fFindControllerByName", true}, {"fControllerName", name}}; };
  const struct {
    const char* fLabel;
    Json fModifier;
    std::string fRows;
    const char* fWhy = nullptr;
  } rows[] = {
      {"a parameter", FollowNode(kTurn, "03000000", kAlong), "Cart RotZ <- WheelL XCOO ok\n"},
      {"a place", FollowNode("GlbX", "04000000", "GlbZ"), "Cart GlbX <- WheelR GlbZ ok\n"},
      {"its own window is not now", FollowNode(kTurn, "03000000", kAlong, window), "Cart RotZ <- WheelL XCOO ok\n"},
      {"arithmetic and limits", FollowNode("GlbY", "03000000", "GlbX", arithmetic), "Cart GlbY <- WheelL GlbX ok\n"},
      {"itself", FollowNode(kTurn, "", kAlong, {{"fCombineSelf", true}}), "Cart RotZ ok\n"},
      {"object mode", mirror, "Cart GlbY <- WheelL GlbY ok\nCart SCAL <- WheelL SCAL ok\n"},
      {"switched off", off, "Cart RotZ off\n"},
      {"a reference that is gone", FollowNode(kTurn, "63000000", kAlong), "Cart RotZ <- Cart XCOO broken\n",
       "the element that it refers to (id 99) is gone, it reads from \"Cart\" itself"},
      {"a name that is gone", FollowNode(kTurn, "03000000", kAlong, named("Engine")), "Cart RotZ <- Cart XCOO broken\n",
       "no element has the name \"Engine\", it reads from \"Cart\" itself"},
      {"a name", FollowNode(kTurn, "63000000", kAlong, named("Lamp")), "Cart RotZ <- Lamp XCOO ok\n"},
      {"a target that is none", FollowNode("self,amet,TRAN,RotW", "03000000", kAlong), "- broken\n",
       "\"Cart\" has no value at the path \"self,amet,TRAN,RotW\""},
      {"a source that is none", FollowNode(kTurn, "03000000", "RMPH,0,0"), "- broken\n",
       "\"WheelL\" has no value at the path \"RMPH,0,0\""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    std::string text;
    const Json links = PrintJson({"links", Save(LinkScene({{row.fModifier}}))})["links"];
    for (const Json& link : links) {
      text += TextOfRow(link) + "\n";
      EXPECT_EQ(link["why"], row.fWhy == nullptr ? Json() : Json(row.fWhy));
      EXPECT_EQ(link["element"], "Cart");
    }
    EXPECT_EQ(text, row.fRows);
  }
}

Json CircleScene() {
  return LinkScene({{FollowNode("GlbX", "03000000", kAlong)},
                    {FollowNode(kTurn, "02000000", "GlbX"), FollowNode(kAlong, "03000000", kTurn)}});
}

TEST_F(QlxLinks, CyclesAreNamedAndDrawn) {
  const std::string circle = "Cart GlbX <- WheelL XCOO <- WheelL RotZ <- Cart GlbX";
  const Json list = PrintJson({"links", Save(CircleScene())});
  EXPECT_EQ(list["cycles"], Json::array({circle}));
  for (const Json& link : list["links"]) {
    EXPECT_EQ(link["state"], "cycle") << link;
  }
  const std::string text = Print({"links", Save(CircleScene()), "--dot", At("links.dot")});
  ExpectPart("scene.gltf: 3 links, 1 cycle\n", text);
  ExpectPart("cycle: " + circle, text);
  const std::string drawn = ReadFile(fFolder / "links.dot");
  EXPECT_EQ(drawn.find("digraph links {"), 0U);
  ExpectPart("label=\"WheelL\"", drawn);
  ExpectPart("label=\"cycle\"", drawn);
}

TEST_F(QlxLinks, BakesSourcesFirstUnlessToldOtherwise) {
  const std::string scene =
      Save(LinkScene({{FollowNode(kSize, "03000000", kSize)}, {FollowNode(kSize, "04000000", kAlong)}}));
  const auto bake = [&](const char* order) {
    Print({"bake", scene, "-o", At(), "--csv", At("out.csv"), "--order", order});
    return ReadFile(fFolder / "out.csv");
  };
  ExpectPart("Cart SCAL", bake("links"));
  EXPECT_EQ(bake("tree").find("Cart SCAL"), std::string::npos) << "WheelL had its own size then";
  Print({"bake", scene, "-o", At(), "--csv", At("default.csv")});
  EXPECT_EQ(ReadFile(fFolder / "default.csv"), bake("links"));
}

}  // namespace
}  // namespace qlx::host
