// Values that are no transforms: materials, cameras, lights, weights of morphs, extras, and the pointers that animate
// them.
#include "SceneText.h"
#include "gltf/GltfValues.h"
#include "model/ParameterRows.h"

namespace qlx::host {

namespace {

constexpr const char* kLight = "/extensions/KHR_lights_punctual/lights/0";

// A body with a material and a morph, a camera, a lamp; the values below are not glTF's defaults.
SceneText MakeStage() {
  SceneText text;
  text.fJson.update(Json::parse(R"({
    "extensionsUsed": ["KHR_lights_punctual", "KHR_animation_pointer"],
    "extensions": {"KHR_lights_punctual": {"lights": [{"type": "spot", "name": "Lamp", "intensity": 3, "range": 2,
      "color": [1, 0.5, 0.25], "spot": {"innerConeAngle": 0.25}}]}},
    "cameras": [{"type": "perspective", "perspective": {"yfov": 0.75, "znear": 0.0254}}],
    "materials": [{"name": "Paint", "alphaMode": "MASK", "normalTexture": {"index": 0},
      "pbrMetallicRoughness": {"metallicFactor": 0.5}}],
    "textures": [{}],
    "nodes": [{"name": "Body", "mesh": 0, "extras": {"squash": 2, "a/b~c": true, "name": "text", "list": [1]}},
      {"name": "Eye", "camera": 0}, {"name": "Bulb", "extensions": {"KHR_lights_punctual": {"light": 0}}}],
    "scenes": [{"nodes": [0, 1, 2]}]})"));
  const std::size_t corners = text.AddReals({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
  const std::size_t moved = text.AddReals({0, 0, 1, 1, 0, 1, 0, 1, 1}, "VEC3");
  const std::size_t places = text.AddReals({0, 0, 1, 0, 0, 1}, "VEC2");
  for (const std::size_t accessor : {corners, moved}) {
    const real32 z = accessor == corners ? 0 : 1;
    text.fJson["accessors"][accessor]["min"] = {0, 0, z};
    text.fJson["accessors"][accessor]["max"] = {1, 1, z};
  }
  text.fJson["meshes"] = {{{"primitives",
                            {{{"attributes", {{"POSITION", corners}, {"TEXCOORD_0", places}}},
                              {"material", 0},
                              {"targets", {{{"POSITION", moved}}, {{"POSITION", corners}}}}}}},
                           {"weights", {0.25, 0}}}};
  return text;
}

// A channel of the first animation by a pointer.
void AddPointer(SceneText& ioText, const std::string& inPointer, const std::vector<real32>& inTimes,
                const std::vector<real32>& inValues, const char* inType, const char* inInterpolation = "LINEAR") {
  ioText.AddSampler({{"path", "pointer"}, {"extensions", {{"KHR_animation_pointer", {{"pointer", inPointer}}}}}},
                    inTimes, inValues, inType, inInterpolation);
}

void AddWeights(SceneText& ioText, const std::vector<real32>& inTimes, const std::vector<real32>& inValues) {
  ioText.AddSampler({{"node", 0}, {"path", "weights"}}, inTimes, inValues, "SCALAR");
}

constexpr const char* kPaint = "shader \"Paint\"";
constexpr const char* kLamp = "light \"Lamp\"";
constexpr const char* kEye = "camera \"0\"";
constexpr const char* kBody = "element \"Body\"";
constexpr const char* kMesh = "object \"Mesh0\"";

class GltfValues : public GltfTest {
 protected:
  // The set and the place of a value by the label of its set and its name.
  static std::pair<std::shared_ptr<ValueSet>, std::size_t> Find(const GltfDocument& inDocument,
                                                                const std::string& inLabel, const std::string& inName) {
    for (const auto& values : inDocument.GetScene().GetValueSets()) {
      for (std::size_t i = 0; i < values->GetCount(); ++i) {
        if (values->GetLabel() == inLabel && values->GetInfo(i).fName == inName) {
          return {values, i};
        }
      }
    }
    ADD_FAILURE() << inLabel << " has no " << inName;
    return {inDocument.GetScene().GetValueSets().front(), 0};
  }

  static ValueNumbers Sample(const GltfDocument& inDocument, const char* inLabel, const char* inName, int32 inTime) {
    const auto [values, index] = Find(inDocument, inLabel, inName);
    return values->SampleAt(index, inTime);
  }

  // One more warning than the last time, with this in it; none for null.
  void ExpectWarning(const char* inWarning, const char* inLabel) {
    const std::vector<std::string>& warnings = fDiagnostics.GetWarnings();
    fWarned += inWarning == nullptr ? 0 : 1;
    ASSERT_EQ(warnings.size(), fWarned) << inLabel;
    if (inWarning != nullptr) {
      EXPECT_NE(warnings.back().find(inWarning), std::string::npos) << inLabel << ": " << warnings.back();
    }
  }
  std::size_t fWarned = 0;

  // As if a modifier had written the value, frame by frame, at 30 frames a second.
  static void AddBaked(BakeResult& ioBake, const GltfDocument& inDocument, const char* inLabel, const char* inName,
                       const std::vector<ValueNumbers>& inFrames) {
    const auto [values, index] = Find(inDocument, inLabel, inName);
    ioBake.fTimes.clear();
    for (std::size_t i = 0; i < inFrames.size(); ++i) {
      ioBake.fTimes.push_back(static_cast<int32>(6000 * i));
    }
    ioBake.fValues.push_back({values, index, inFrames, inFrames});
  }

  // A bake of a value of every kind.
  static BakeResult MakeBake(const GltfDocument& inDocument) {
    BakeResult bake;
    AddBaked(bake, inDocument, kPaint, "Base colour", {{1, 0, 0, 1}, {0, 1, 0, 0.5f}, {0, 0, 1, 0}});
    AddBaked(bake, inDocument, kPaint, "Emissive strength", {{1}, {2}, {4}});
    AddBaked(bake, inDocument, kPaint, "Metallic", {{0.5f}, {0.25f}, {0}});
    AddBaked(bake, inDocument, kEye, "Near plane", {{1}, {2}, {3}});
    AddBaked(bake, inDocument, kLamp, "Colour", {{1, 1, 1, 1}, {0.5f, 0.5f, 0.5f, 1}, {0, 0, 0, 1}});
    AddBaked(bake, inDocument, kBody, "squash", {{2}, {3}, {4}});
    AddBaked(bake, inDocument, kBody, "a/b~c", {{1}, {0}, {1}});
    AddBaked(bake, inDocument, kMesh, "Morph1", {{0}, {0.5f}, {1}});
    bake.fRange = {0, 2};
    return bake;
  }
};

}  // namespace

TEST_F(GltfValues, AreParametersInTheUnitsOfTheScene) {
  const auto document = OpenText(MakeStage());
  const struct {
    const char* label;
    const char* name;
    ValueNumbers numbers;
  } rows[] = {
      {kPaint, "Base colour", {1, 1, 1, 1}},
      {kPaint, "Metallic", {0.5f}},
      {kPaint, "Roughness", {1}},
      {kPaint, "Emissive colour", {0, 0, 0, 1}},
      {kPaint, "Emissive strength", {1}},
      {kPaint, "Normal scale", {1}},
      {kPaint, "Alpha cut-off", {0.5f}},
      {kEye, "Field of view", {0.75f}},
      {kEye, "Near plane", {1}},
      {kLamp, "Colour", {1, 0.5f, 0.25f, 1}},
      {kLamp, "Intensity", {3}},
      {kLamp, "Range", {78.7401574f}},
      {kLamp, "Inner cone angle", {0.25f}},
      {kLamp, "Outer cone angle", {0.785398163f}},
      {kBody, "squash", {2}},
      {kBody, "a/b~c", {1}},
      {kMesh, "Morph0", {0.25f}},
      {kMesh, "Morph1", {0}},
  };
  std::size_t count = 0;
  for (const auto& row : rows) {
    EXPECT_EQ(Sample(*document, row.label, row.name, 0), row.numbers) << row.label << " " << row.name;
  }
  for (const auto& values : document->GetScene().GetValueSets()) {
    count += values->GetCount();
  }
  EXPECT_EQ(count, std::size(rows)) << "a value without a default that is not written is none";
  EXPECT_TRUE(fDiagnostics.GetWarnings().empty());

  std::string paths;
  for (const char* name : {"Body", "Eye", "Bulb"}) {
    ForEachParameter(ElementOf(*document, name), [&paths](const ParameterRow& row) {
      EXPECT_TRUE(row.fIsFound) << row.fPath;
      paths += row.fName.find("olour ") == std::string::npos ? row.fPath.substr(0, 9) + ":" + row.fName + " " : "";
    });
  }
  for (const char* const path : {"self,cust:squash self,cust:a/b~c", "RMPH,0,0:Morph0 RMPH,0,1:Morph1",
                                 "self,came:Field of view self,came:Near plane", "self,ligh:Colour self,ligh:Intensity",
                                 "shdr,0000:Base colour shdr,0000:Metallic"}) {
    EXPECT_NE(paths.find(path), std::string::npos) << path << " in " << paths;
  }
}

TEST_F(GltfValues, AreAnimatedByPointersAndWeights) {
  SceneText text = MakeStage();
  AddPointer(text, "/materials/0/pbrMetallicRoughness/roughnessFactor", {0, 1}, {0, 1}, "SCALAR");
  AddPointer(text, "/materials/0/emissiveFactor", {0, 1}, {0, 0, 0, 1, 0.5f, 0}, "VEC3", "STEP");
  AddPointer(text, std::string(kLight) + "/range", {0, 1}, {1, 1, 0, 0, 2, 2}, "SCALAR", "CUBICSPLINE");
  AddPointer(text, "/nodes/0/extras/a~1b~0c", {0, 1}, {1, 0}, "SCALAR");
  AddPointer(text, "/nodes/1/translation", {0, 1}, {0, 0, 0, 0.0254f, 0, 0}, "VEC3");
  AddWeights(text, {0, 1}, {0, 1, 1, 0});
  text.fJson["extensionsRequired"] = {"KHR_animation_pointer"};
  const auto document = OpenText(text);
  EXPECT_EQ(Sample(*document, kPaint, "Roughness", 45000)[0], 0.25f);
  EXPECT_EQ(Sample(*document, kPaint, "Emissive colour", 179999), (ValueNumbers{0, 0, 0, 1}));
  EXPECT_EQ(Sample(*document, kPaint, "Emissive colour", 180000), (ValueNumbers{1, 0.5f, 0, 1}));
  EXPECT_NEAR(Sample(*document, kLamp, "Range", 180000)[0], 78.740157, 1e-4);
  EXPECT_EQ(document->GetScene().GetValueSets()[0]->GetCurve(3, 3)->GetKeys().size(), 2U) << "alpha too";
  EXPECT_EQ(Sample(*document, kBody, "a/b~c", 179999)[0], 1) << "truth values step";
  EXPECT_EQ(Sample(*document, kMesh, "Morph1", 90000)[0], 0.5f);
  EXPECT_NEAR(ElementOf(*document, "Eye").SampleAt(90000)[Channel::kPositionX], 0.5, 1e-6);
  document->Write(fFolder / "out.gltf");
  EXPECT_EQ(ReadFile(fFolder / "out.gltf"), text.GetText()) << "nothing was touched";
}

TEST_F(GltfValues, NodesThatShareAMeshHaveWeightsOfTheirOwn) {
  SceneText text = MakeStage();
  text.AddNode({{"name", "Twin"}, {"mesh", 0}, {"weights", {0.5, 0.75}}});
  AddWeights(text, {0, 1}, {0, 1, 1, 0});
  const auto document = OpenText(text);
  SceneObject& body = *ElementOf(*document, "Body").GetSceneObject();
  SceneObject& twin = *ElementOf(*document, "Twin").GetSceneObject();
  EXPECT_NE(&body, &twin);
  EXPECT_EQ(body.GetShaders(), twin.GetShaders());
  EXPECT_EQ(twin.GetValues()->SampleAt(1, 0)[0], 0.75f);
  EXPECT_EQ(body.GetValues()->SampleAt(1, 0)[0], 1);
  ASSERT_TRUE(twin.GetValues()->Write(0, {0.125f}));
  const Json out = Written(*document);
  EXPECT_EQ(out["nodes"][3]["weights"], Json({0.125, 0.75}));
  EXPECT_FALSE(out["nodes"][0].contains("weights"));
  EXPECT_EQ(out["animations"], text.fJson["animations"]);
}

TEST_F(GltfValues, ABakeWritesThemFrameByFrame) {
  SceneText text = MakeStage();
  text.fJson["extensionsUsed"] = {"KHR_lights_punctual"};
  const auto document = OpenText(text);
  const BakeResult bake = MakeBake(*document);
  const Json out = Baked(*document, bake);
  EXPECT_EQ(out["extensionsUsed"],
            Json({"KHR_lights_punctual", "KHR_materials_emissive_strength", "KHR_animation_pointer"}));
  EXPECT_EQ(out["materials"][0]["extensions"]["KHR_materials_emissive_strength"]["emissiveStrength"], 1)
      << "what a pointer names is there";
  EXPECT_EQ(out["nodes"], text.fJson["nodes"]);
  ASSERT_EQ(out["animations"][0]["channels"].size(), bake.fValues.size());
  for (const Json& channel : out["animations"][0]["channels"]) {
    EXPECT_EQ(channel["target"].contains("node"), channel["target"]["path"] == "weights");
  }
  const auto again = Open("out.gltf");
  for (const BakedValue& baked : bake.fValues) {
    const std::string label = baked.fValues->GetLabel();
    const std::string value = baked.fValues->GetInfo(baked.fIndex).fName;
    for (std::size_t frame = 0; frame < bake.fTimes.size(); ++frame) {
      const ValueNumbers numbers = Sample(*again, label.c_str(), value.c_str(), bake.fTimes[frame]);
      for (std::size_t i = 0; i < numbers.size(); ++i) {
        EXPECT_NEAR(numbers[i], baked.fFrames[frame][i], 1e-6) << label << " " << value << " " << frame;
      }
    }
  }
  EXPECT_EQ(Sample(*again, kMesh, "Morph0", 6000)[0], 0.25f) << "weights go together";
  EXPECT_EQ(Baked(*again, MakeBake(*again))["animations"][0]["channels"], out["animations"][0]["channels"])
      << "the second time each goes into the channel that it has";
}

TEST_F(GltfValues, ABakeStandsWhereOtherReadersLookAtIt) {
  const auto document = OpenText(MakeStage());
  document->WriteBaked(QLX_BAKED_VALUES, MakeBake(*document), KeepModifiers::kNo);
}

TEST_F(GltfValues, WhatIsOutOfLimitsIsWrittenAtThem) {
  const auto document = OpenText(MakeStage());
  BakeResult bake;
  AddBaked(bake, *document, kPaint, "Metallic", {{-1}, {0.5f}, {7}});
  const auto [lamp, intensity] = Find(*document, kLamp, "Intensity");
  ASSERT_TRUE(lamp->Write(intensity, {-2}));
  Baked(*document, bake);
  const auto again = Open("out.gltf");
  EXPECT_EQ(Sample(*again, kPaint, "Metallic", 0)[0], 0);
  EXPECT_EQ(Sample(*again, kPaint, "Metallic", 12000)[0], 1);
  EXPECT_EQ(Sample(*again, kLamp, "Intensity", 0)[0], 0);
  EXPECT_EQ(fDiagnostics.GetWarnings(),
            (std::vector<std::string>{
                "materials[0].pbrMetallicRoughness.metallicFactor: what is not from 0 to 1 is written at the limit",
                "extensions.KHR_lights_punctual.lights[0].intensity: what is not 0 or more is written at the limit"}));
}

TEST_F(GltfValues, EditsAreWrittenWhereTheyStand) {
  SceneText text = MakeStage();
  AddPointer(text, "/materials/0/pbrMetallicRoughness/roughnessFactor", {0, 1}, {0, 1}, "SCALAR");
  AddPointer(text, "/materials/0/alphaCutoff", {0, 1}, {0, 1}, "SCALAR");
  const auto document = OpenText(text);
  const auto edit = [&](const char* label, const char* name, const ValueNumbers& numbers) {
    const auto [values, index] = Find(*document, label, name);
    EXPECT_TRUE(values->Write(index, numbers)) << name;
  };
  document->GetScene().Evaluate(90000);
  edit(kPaint, "Base colour", {0.5f, 0.25f, 0, 1});
  edit(kPaint, "Roughness", {0.125f});
  edit(kEye, "Near plane", {2});
  edit(kBody, "squash", {5});
  edit(kBody, "a/b~c", {0});
  const auto [paint, cutoff] = Find(*document, kPaint, "Alpha cut-off");
  paint->EditCurves(cutoff, [](Curve& curve, uint32) { curve.Clear(); });
  const Json out = Written(*document);
  EXPECT_EQ(out["materials"][0]["pbrMetallicRoughness"],
            Json::parse(R"({"metallicFactor": 0.5, "baseColorFactor": [0.5, 0.25, 0, 1], "roughnessFactor": 1})"));
  EXPECT_NEAR(out["cameras"][0]["perspective"]["znear"].get<real64>(), 0.0508, 1e-8);
  EXPECT_EQ(out["nodes"][0]["extras"].dump(), R"({"squash":5,"a/b~c":false,"name":"text","list":[1]})");
  EXPECT_EQ(out["animations"][0]["channels"].size(), 1U) << "a channel without keys goes";
  EXPECT_EQ(out["extensions"], text.fJson["extensions"]);
  EXPECT_EQ(Sample(*Open("out.gltf"), kPaint, "Roughness", 90000)[0], 0.125f);

  const auto [rough, index] = Find(*document, kPaint, "Roughness");
  rough->EditCurves(index, [](Curve& curve, uint32) { curve.Clear(); });
  EXPECT_EQ(Written(*document)["extensionsUsed"], Json({"KHR_lights_punctual"})) << "no pointer is left";
}

TEST_F(GltfValues, WhatIsNoParameterPassesThroughWithAWarning) {
  const struct {
    const char* place;
    const char* value;
    const char* warning;
  } rows[] = {
      {"/materials/0/pbrMetallicRoughness/metallicFactor", "3",
       "materials[0].pbrMetallicRoughness.metallicFactor: 3 is not from 0 to 1"},
      {"/materials/0/emissiveFactor", "[0, 1e300, 0]", "materials[0].emissiveFactor: 1e+300 is too large"},
      {"/cameras/0/perspective/znear", "0", "cameras[0].perspective.znear: 0 is not above 0"},
      {"/cameras/0/perspective/yfov", "4", "cameras[0].perspective.yfov: 4 is not above 0 and at most"},
      {"/extensions/KHR_lights_punctual/lights/0/intensity", "\"bright\"",
       "extensions.KHR_lights_punctual.lights[0].intensity: must be a number"},
      {"/extensions/KHR_lights_punctual/lights/0/color", "[1, 1]",
       "extensions.KHR_lights_punctual.lights[0].color: must be 3 numbers"},
      {"/extensions/KHR_lights_punctual/lights/0/color", "[1, null, 1]",
       "extensions.KHR_lights_punctual.lights[0].color: must be a number"},
      {"/extensions/KHR_lights_punctual/lights/0/spot", "[]", nullptr},
      {"/extensions/KHR_lights_punctual/lights/0", "7", "lights[0]: must be an object"},
      {"/extensions/KHR_lights_punctual/lights", "{}", "nodes[2].extensions.KHR_lights_punctual.light: 0 is no light"},
      {"/nodes/2/extensions/KHR_lights_punctual/light", "-1", "light: -1 is no light, there are 1"},
      {"/nodes/0/extras/squash", "-1e39", "nodes[0].extras.squash: -1e+39 is too large"},
      {"/nodes/0/weights", "[1]", "nodes[0].weights: 1 weights where there are 2 morph targets"},
      {"/meshes/0/weights", "[1, 2, 3]", "meshes[0].weights: 3 weights"},
      {"/materials/0/extensions", R"({"KHR_materials_emissive_strength": {"emissiveStrength": []}})",
       "emissiveStrength: must be a number"},
  };
  for (const auto& row : rows) {
    SceneText text = MakeStage();
    text.fJson[Json::json_pointer(row.place)] = Json::parse(row.value);
    OpenText(text)->Write(fFolder / "out.gltf");
    EXPECT_EQ(ReadFile(fFolder / "out.gltf"), text.GetText()) << row.place;
    ExpectWarning(row.warning, row.place);
  }
}

TEST_F(GltfValues, PointersThatCannotBeFollowedAreNamed) {
  const std::string metallic = "/materials/0/pbrMetallicRoughness/metallicFactor";
  const struct {
    const char* label;
    std::string pointer;
    std::vector<real32> values;
    const char* type;
    const char* error;    // null: it can be read,
    const char* warning;  // and null: without a word
  } rows[] = {
      {"no such material", "/materials/9/emissiveFactor", {0, 1}, "SCALAR", nullptr, "leads to nothing"},
      {"no such node", "/nodes/7/translation", {0, 1}, "SCALAR", nullptr, "animations[0].channels[0].target"},
      {"no pointer at all", "materials", {0, 1}, "SCALAR", nullptr, "leads to nothing"},
      {"a broken pointer", "/materials/0~7/a", {0, 1}, "SCALAR", nullptr, "leads to nothing"},
      {"an empty pointer", "", {0, 1}, "SCALAR", nullptr, "leads to nothing"},
      {"no parameter of ours", "/materials/0/doubleSided", {0, 1}, "SCALAR", nullptr, nullptr},
      {"a single weight", "/nodes/0/weights/0", {0, 1}, "SCALAR", nullptr, "leads to nothing"},
      {"another type",
       metallic,
       {0, 0, 0, 1, 1, 1},
       "VEC3",
       "animations[0].channels[0]: its sampler's output",
       nullptr},
      {"too few values", metallic, {0}, "SCALAR", "has 1 values where 2 keys need 2", nullptr},
      {"too few weights", "/nodes/0/weights", {0, 1, 2}, "SCALAR", "has 3 values where 2 keys need 4", nullptr},
      {"a node's own property", "/nodes/1/rotation", {0, 1}, "SCALAR", "is not of the type", nullptr},
  };
  for (const auto& row : rows) {
    SceneText text = MakeStage();
    AddPointer(text, row.pointer, {0, 1}, row.values, row.type);
    if (row.error != nullptr) {
      ExpectError(text.GetText(), row.error, row.label);
    } else {
      OpenText(text);
    }
    ExpectWarning(row.warning, row.label);
  }
  SceneText twice = MakeStage();
  AddWeights(twice, {0, 1}, {0, 1, 1, 0});
  AddPointer(twice, "/nodes/0/weights", {0, 1}, {0, 1, 1, 0}, "SCALAR");
  ExpectError(twice.GetText(), "animations[0].channels[1].target: the same as that of channel 0", "twice");
  SceneText number = MakeStage();
  AddPointer(number, metallic, {0, 1}, {0, 1}, "SCALAR");
  number.fJson["animations"][0]["channels"][0]["target"]["extensions"]["KHR_animation_pointer"]["pointer"] = 3;
  ExpectError(number.GetText(), "KHR_animation_pointer.pointer: must be a text", "a number");
}

}  // namespace qlx::host
