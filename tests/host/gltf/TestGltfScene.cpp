// What a document becomes: elements with names, ids and transforms, what they show, and curves in the scene's units.
#include <cmath>
#include <numbers>

#include "SceneText.h"
#include "gltf/GltfAnimation.h"
#include "gltf/GltfUnits.h"

namespace qlx::host {

namespace {

class GltfScene : public GltfTest {};

std::vector<real32> Quaternion(real64 inAngle, int inAxis) {
  std::vector<real32> value{0, 0, 0, static_cast<real32>(std::cos(inAngle / 2))};
  value[static_cast<std::size_t>(inAxis)] = static_cast<real32>(std::sin(inAngle / 2));
  return value;
}

}  // namespace

TEST_F(GltfScene, ElementsHaveStableReadableNames) {
  SceneText text;
  text.fJson["meshes"] =
      Json::parse(R"([{"name": "Body", "primitives": [{"attributes": {}}]}, {"primitives": [{"attributes": {}}]}])");
  text.fJson["cameras"] =
      Json::parse(R"([{"name": "Eye", "type": "perspective", "perspective": {"yfov": 1, "znear": 1}}])");
  text.AddNode({{"name", "Arm"}, {"mesh", 0}});
  text.AddNode({{"name", "Arm"}});
  text.AddNode({{"mesh", 0}});
  text.AddNode({{"name", ""}, {"camera", 0}});
  text.AddNode({{"mesh", 1}});
  text.AddNode({{"name", "two\nlines"}});
  const auto document = OpenText(text);
  std::vector<std::string> names;
  for (const auto& child : document->GetScene().GetRootElement().GetChildren()) {
    names.push_back(child->GetNameText());
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Arm", "Arm.2", "Body", "Eye", "Node4", "two lines"}));
}

TEST_F(GltfScene, IdsAreStoredOrFollowTheNodes) {
  SceneText text;
  text.AddNode({{"name", "A"}, {"extensions", {{"QLX_element", {{"id", 3}}}}}});
  text.AddNode({{"name", "B"}});  // its default is taken
  text.AddNode({{"name", "C"}});
  const auto document = OpenText(text);
  EXPECT_EQ(ElementOf(*document, "A").GetUniqueID(), 3u);
  EXPECT_EQ(ElementOf(*document, "B").GetUniqueID(), 5u);
  EXPECT_EQ(ElementOf(*document, "C").GetUniqueID(), 4u);
}

TEST_F(GltfScene, NodesOfAllScenesAndOfNoneStandInOneTree) {
  SceneText text;
  for (const char* name : {"child", "orphan", "parent", "other"}) {
    text.AddNode({{"name", name}});
  }
  text.fJson["nodes"][2]["children"] = {3, 0};
  text.fJson["scenes"] = {{{"nodes", {2}}}, {{"nodes", {2}}}};
  const auto document = OpenText(text);
  std::vector<std::string> order;
  for (Element* element : document->GetScene().GetTreeOrder()) {
    order.push_back(element->GetNameText());
  }
  EXPECT_EQ(order, (std::vector<std::string>{"[scene]", "orphan", "parent", "other", "child"}));
}

TEST_F(GltfScene, SkinsMeshesAndMaterialsAreFiguresObjectsAndShaders) {
  SceneText text;
  text.fJson["materials"] = Json::parse(R"([{"name": "Skin"}, {}])");
  text.fJson["meshes"] = Json::parse(R"([{"extras": {"targetNames": ["Smile"]}, "primitives": [
      {"attributes": {}, "material": 1, "targets": [{}, {}]}, {"attributes": {}, "material": 0},
      {"attributes": {}, "material": 1}]}])");
  text.AddNode({{"name", "Rig"}, {"children", {1}}});
  text.AddNode({{"name", "Hip"}, {"children", {2, 3}}});
  text.AddNode({{"name", "LegL"}});
  text.AddNode({{"name", "LegR"}});
  text.AddNode({{"name", "Body"}, {"mesh", 0}, {"skin", 0}});
  text.fJson["skins"] = Json::parse(R"([{"joints": [2, 1, 3]}, {"joints": [2, 3]}])");
  const auto document = OpenText(text);
  const Scene& scene = document->GetScene();
  ASSERT_EQ(scene.GetFigures().size(), 2u);
  EXPECT_EQ(scene.GetFigures()[0]->GetRoot().GetNameText(), "Rig");
  EXPECT_EQ(scene.GetFigures()[1]->GetRoot().GetNameText(), "Hip");
  EXPECT_EQ(scene.GetFigures()[1]->GetName(), "Skin1");
  const SceneObject& object = *ElementOf(*document, "Body").GetSceneObject();
  EXPECT_EQ(object.GetShaders(), (std::vector<Shader*>{scene.GetShaders()[1].Get(), scene.GetShaders()[0].Get()}));
  ASSERT_EQ(object.GetMorphGroups().size(), 1u);
  EXPECT_EQ(object.GetMorphGroups()[0].fMorphs, (std::vector<std::string>{"Smile", "Morph1"}));
}

TEST_F(GltfScene, TransformsComeInInchesAndAngles) {
  SceneText text;
  text.AddNode({{"name", "parts"}, {"translation", {1, -2, 0.0254}}, {"scale", {1, 2, -3}}});
  text.fJson["nodes"][0]["rotation"] = Quaternion(0.5, 1);
  // The same rotation and scale as a matrix, columns one after another.
  const real64 c = std::cos(0.5);
  const real64 s = std::sin(0.5);
  text.AddNode({{"name", "matrix"}, {"matrix", {c, 0, -s, 0, 0, 2, 0, 0, -3 * s, 0, -3 * c, 0, 1, -2, 0.0254, 1}}});
  text.AddNode({{"name", "flat"}, {"matrix", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}}});
  const auto document = OpenText(text);
  for (const char* name : {"parts", "matrix"}) {
    const ChannelValues& values = ElementOf(*document, name).GetBase();
    EXPECT_TRUE(values.GetPosition().IsEqual({39.3700787f, -78.7401574f, 1.0f}, 1e-6f)) << name;
    EXPECT_TRUE(values.GetRotation().IsEqual({0, 0.5f, 0}, 1e-6f)) << name;
    EXPECT_TRUE((values.GetScale() * values.GetUniformScale()).IsEqual({1, 2, -3}, 1e-6f)) << name;
    EXPECT_EQ(ElementOf(*document, name).GetEditedChannels(), 0) << name;
  }
  EXPECT_EQ(WholeScale(ElementOf(*document, "flat").GetBase()).z, 0.0f);
}

TEST_F(GltfScene, AShearThatCannotBeHeldIsTold) {
  SceneText text;
  text.AddNode({{"matrix", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}});
  text.AddNode({{"matrix", {1, 0, 0, 0, 0.5, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}});
  OpenText(text);
  ASSERT_EQ(fDiagnostics.GetWarnings().size(), 1u);
  EXPECT_TRUE(fDiagnostics.GetWarnings()[0].starts_with("nodes[1].matrix: its shear")) << fDiagnostics.GetWarnings()[0];
}

TEST_F(GltfScene, PositionKeysKeepTimesInterpolationAndTangents) {
  SceneText text;
  text.AddNode({{"name", "step"}});
  text.AddNode({{"name", "cubic"}});
  text.AddChannel(0, "translation", {0.5f, 1.25f}, {1, 0, 0, 2, 0, 0}, "STEP");
  text.AddChannel(1, "scale", {0, 1}, {1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 6}, "CUBICSPLINE");
  const auto document = OpenText(text);
  const auto& step = ElementOf(*document, "step").GetCurve(Channel::kPositionX)->GetKeys();
  ASSERT_EQ(step.size(), 2u);
  EXPECT_EQ(step[0].fTime, 90000);
  EXPECT_EQ(step[1].fTime, 225000);
  EXPECT_FLOAT_EQ(step[1].fValue, 78.7401574f);
  EXPECT_EQ(step[0].fInterpolation, Interpolation::kStep);
  const CurveKey& cubic = ElementOf(*document, "cubic").GetCurve(Channel::kScaleZ)->GetKeys()[1];
  EXPECT_EQ(cubic.fInterpolation, Interpolation::kCubicSpline);
  EXPECT_EQ(cubic.fInTangent, 4.0f);
  EXPECT_EQ(cubic.fValue, 5.0f);
  EXPECT_EQ(cubic.fOutTangent, 6.0f);
  EXPECT_EQ(document->GetScene().GetStart(), 0);
  EXPECT_EQ(document->GetScene().GetEnd(), 225000);
}

// Three turns about each axis, by keys whose quaternions change sign at random: angles go on, they do not wrap.
TEST_F(GltfScene, EulerTracksFollowTurnsWithoutJumps) {
  for (int axis = 0; axis < 3; ++axis) {
    std::vector<real32> times;
    std::vector<real32> values;
    for (int i = 0; i <= 36; ++i) {
      times.push_back(static_cast<real32>(i) / 24);
      std::vector<real32> value = Quaternion(i * std::numbers::pi / 6, axis);
      for (const real32 each : value) {
        values.push_back(i % 3 == 1 ? -each : each);
      }
    }
    SceneText text;
    text.AddNode({{"name", "spinner"}});
    text.AddChannel(0, "rotation", times, values);
    const auto document = OpenText(text);
    const Element& element = ElementOf(*document, "spinner");
    ASSERT_NE(element.GetRotationCurve(), nullptr);
    const TVector3 end = element.SampleAt(document->GetScene().GetEnd()).GetRotation();
    const TVector3 expected = TVector3(axis == 0, axis == 1, axis == 2) * static_cast<real32>(6 * std::numbers::pi);
    EXPECT_TRUE(end.IsEqual(expected, 1e-4f) || axis == 1) << axis << ": " << end.x << " " << end.y << " " << end.z;
    // About Y the second angle may turn back at a pole while the others step by half a turn; still no step is large.
    TVector3 before = element.SampleAt(0).GetRotation();
    for (int tick = 0; tick <= document->GetScene().GetEnd(); tick += 1500) {
      const TVector3 now = element.SampleAt(tick).GetRotation();
      for (int i = 0; i < 3; ++i) {
        EXPECT_LT(std::fabs(now[i] - before[i]), axis == 1 ? 3.2f : 0.2f) << axis << " at " << tick;
      }
      before = now;
    }
  }
}

TEST_F(GltfScene, SplineTangentsOfAnglesAreTheirSpeed) {
  // q(t) about Z at 0.8 radians a second: dq/dt = 0.4 * (0, 0, cos, -sin) of the half angle.
  std::vector<real32> values;
  for (const real64 angle : {0.0, 0.8}) {
    const auto s = static_cast<real32>(0.4 * std::sin(angle / 2));
    const auto c = static_cast<real32>(0.4 * std::cos(angle / 2));
    const std::vector<real32> value = Quaternion(angle, 2);
    for (const auto& part : {std::vector<real32>{0, 0, c, -s}, value, std::vector<real32>{0, 0, c, -s}}) {
      values.insert(values.end(), part.begin(), part.end());
    }
  }
  SceneText text;
  text.AddNode({{"name", "turner"}});
  text.AddChannel(0, "rotation", {0, 1}, values, "CUBICSPLINE");
  const auto document = OpenText(text);
  const Element& element = ElementOf(*document, "turner");
  for (const CurveKey& key : element.GetCurve(Channel::kRotationZ)->GetKeys()) {
    EXPECT_NEAR(key.fInTangent, 0.8f, 1e-3f);
    EXPECT_NEAR(key.fOutTangent, 0.8f, 1e-3f);
  }
  for (int tick = 0; tick <= 180000; tick += 20000) {
    EXPECT_NEAR(element.SampleAt(tick).GetRotation().z, 0.8 * tick / 180000, 1e-3) << tick;
  }
}

TEST_F(GltfScene, QuantisedAndSparseOutputsAreRead) {
  SceneText text;
  text.AddNode({{"name", "turner"}});
  text.AddNode({{"name", "mover"}});
  text.AddChannel(0, "rotation", {0, 1}, {0, 0, 0, 1, 0, 0, 0, 1});
  text.AddChannel(1, "translation", {0, 1}, {1, 1, 1, 2, 2, 2});
  const std::size_t offset = text.fBytes.size();
  const int16 half[] = {0, 0, 0, 32767, 0, 0, 23170, 23170};  // a quarter turn
  text.fBytes.resize(offset + sizeof half);
  std::memcpy(text.fBytes.data() + offset, half, sizeof half);
  text.fBytes.insert(text.fBytes.end(), {1, 0, 0, 0});
  const std::size_t moved = text.AddReals({7, 8, 9}, "VEC3");
  text.fJson["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset}, {"byteLength", 16}});
  text.fJson["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset + 16}, {"byteLength", 1}});
  Json& accessors = text.fJson["accessors"];
  accessors[1].update({{"bufferView", 5}, {"componentType", 5122}, {"normalized", true}});
  accessors[3]["sparse"] = {
      {"count", 1}, {"indices", {{"bufferView", 6}, {"componentType", 5121}}}, {"values", {{"bufferView", moved}}}};
  const auto document = OpenText(text);
  EXPECT_NEAR(ElementOf(*document, "turner").SampleAt(180000).GetRotation().z, std::numbers::pi / 2, 1e-4);
  const ChannelValues values = ElementOf(*document, "mover").SampleAt(180000);
  EXPECT_TRUE(values.GetPosition().IsEqual(TVector3(7, 8, 9) * 39.3700787f, 1e-3f));
  EXPECT_NEAR(ElementOf(*document, "mover").SampleAt(0).GetPosition().x, 39.3700787, 1e-4);
}

TEST_F(GltfScene, KeysCloserThanATickStayApart) {
  SceneText text;
  text.AddNode({{"name", "A"}});
  text.AddChannel(0, "translation", {1, 1.000001f, 1.000002f, 2}, {0, 0, 0, 1, 0, 0, 2, 0, 0, 3, 0, 0});
  const auto document = OpenText(text);
  const auto& keys = ElementOf(*document, "A").GetCurve(Channel::kPositionX)->GetKeys();
  ASSERT_EQ(keys.size(), 4u);
  EXPECT_EQ(keys[1].fTime, 180001);
  EXPECT_EQ(keys[2].fTime, 180002);
}

TEST_F(GltfScene, TheClipAskedForIsRead) {
  SceneText text = MakeMovingArm();
  text.fJson["animations"].push_back(text.fJson["animations"][0]);
  text.fJson["animations"][1].erase("name");
  text.fJson["animations"][1]["channels"].erase(0);
  EXPECT_EQ(OpenText(text)->GetClip(), "Wave");
  const auto document = OpenText(text, {"Animation1", 25.0f});
  EXPECT_EQ(document->GetClip(), "Animation1");
  EXPECT_EQ(document->GetClipNames(), (std::vector<std::string>{"Wave", "Animation1"}));
  EXPECT_FALSE(ElementOf(*document, "Arm").HasKeys(Channel::kPositionX));
  EXPECT_TRUE(ElementOf(*document, "Arm").HasKeys(Channel::kRotationX));
  EXPECT_EQ(document->GetScene().GetFrameRate(), 25.0f);
}

TEST(GltfFrameRate, IsTheLowestUsualOneThatAllKeysFit) {
  const auto frames = [](std::initializer_list<int> inFrames, real32 inRate) {
    std::vector<real32> times;
    for (const int frame : inFrames) {
      times.push_back(static_cast<real32>(frame) / inRate);
    }
    return times;
  };
  const struct {
    const char* fLabel;
    std::vector<std::vector<real32>> fTimes;
    real32 fRate;
  } rows[] = {
      {"no key", {}, 24},
      {"seconds fit the lowest", {{0, 1, 2}}, 24},
      {"24", {frames({0, 1, 7, 2400}, 24)}, 24},
      {"25", {frames({0, 1, 3}, 25)}, 25},
      {"30", {frames({0, 1, 299}, 30)}, 30},
      {"two samplers: 24 and 16 to the second need 48", {frames({0, 1}, 24), frames({0, 1}, 16)}, 48},
      {"60, far out", {frames({1, 3, 5, 600001}, 60)}, 60},
      {"120", {frames({0, 1, 2, 3}, 120)}, 120},
      {"none", {{0, 0.0123f, 0.7f}}, 30},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(GuessFrameRate(row.fTimes), row.fRate) << row.fLabel;
  }
}

}  // namespace qlx::host
