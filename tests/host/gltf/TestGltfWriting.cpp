// What is written: the rest of the file as it was, edits and bakes as new keys, files that stand on their own.
#include <algorithm>
#include <cmath>

#include "SceneText.h"
#include "gltf/GltfTracks.h"
#include "gltf/GltfUnits.h"

namespace qlx::host {

namespace {

class GltfWriting : public GltfTest {
 protected:
  // A bake as if a modifier had moved the element by its frame's number, in inches.
  static BakeResult MakeBake(Element& inElement, ChannelMask inChannels, int32 inFrames) {
    BakeResult bake;
    bake.fRange = {0, inFrames - 1};
    BakedElement& baked = bake.fElements.emplace_back();
    baked.fElement = &inElement;
    baked.fChannels = inChannels;
    for (int32 frame = 0; frame < inFrames; ++frame) {
      bake.fTimes.push_back(FrameToTicks(frame, 24));
      baked.fBefore.push_back(inElement.SampleAt(bake.fTimes.back()));
      baked.fFrames.push_back(baked.fBefore.back());
      baked.fFrames.back()[Channel::kPositionX] = static_cast<real32>(frame);
    }
    return bake;
  }
};

Json EverythingElse() {
  return Json::parse(R"({
    "extensionsUsed": ["KHR_lights_punctual", "EXT_any"],
    "extensions": {"KHR_lights_punctual": {"lights": [{"type": "point", "intensity": 3}]}, "EXT_any": {"deep": [{}]}},
    "extras": {"number": 1, "real": 1.0, "tiny": 1e-300, "null": null, "text": "\u00e9\ud83d\ude00", "empty": {}},
    "cameras": [{"type": "orthographic", "orthographic": {"xmag": 1, "ymag": 1, "zfar": 2, "znear": 1}, "extras": 3}],
    "images": [{"uri": "pic%20ture.png", "extras": "i"}, {"uri": "https://example.org/a.png"}],
    "samplers": [{"wrapS": 33071}],
    "textures": [{"source": 0, "sampler": 0, "extensions": {"EXT_any": {}}}],
    "materials": [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0, "texCoord": 0}}, "unknownMember": [1]}],
    "unknownTopLevel": {"kept": true}
  })");
}

}  // namespace

TEST_F(GltfWriting, WithoutChangesTheDocumentIsWhatItWas) {
  SceneText text = MakeMovingArm();
  text.fJson.update(EverythingElse());
  text.fJson["nodes"].push_back({{"matrix", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}}, {"extras", {1}}});
  text.fJson["animations"][0]["channels"][0]["extras"] = "channel";
  text.fJson["animations"][0]["samplers"][0]["extensions"] = {{"EXT_any", {{"a", 1}}}};
  text.fJson["animations"][0]["channels"].push_back(Json::parse(
      R"({"sampler": 0, "target": {"path": "pointer", "extensions": {"KHR_animation_pointer": {"pointer": "/x"}}}})"));
  text.fJson["bufferViews"][0]["target"] = 34962;
  text.fJson["accessors"][1]["name"] = "path";
  const Json expected = Json::parse(text.GetText());
  OpenText(text)->Write(fFolder / "out.gltf");
  EXPECT_EQ(ReadJson("out.gltf"), expected);
  EXPECT_EQ(ReadFile(fFolder / "out.gltf"), text.GetText()) << "the order of members";
  EXPECT_EQ(fFolder.List(), (std::vector<std::string>{"in.gltf", "out.gltf"}));

  fFolder.Write("in.glb", text.GetGlb());
  Open("in.glb")->Write(fFolder / "out.glb");
  EXPECT_EQ(ReadFile(fFolder / "out.glb"), text.GetGlb());
}

TEST_F(GltfWriting, EachFormCanBeWrittenAsTheOther) {
  const SceneText text = MakeMovingArm();
  OpenText(text)->Write(fFolder / "out.glb");
  EXPECT_EQ(ReadFile(fFolder / "out.glb"), text.GetGlb());
  EXPECT_EQ(Written(*Open("out.glb")), Json::parse(text.GetText()));
}

TEST_F(GltfWriting, UnknownChunksPassThrough) {
  const std::string good = MakeMovingArm().GetGlb();
  GltfContainer container = SplitContainer({good.begin(), good.end()});
  container.fOther.push_back({0x31545845, {1, 2, 3, 4}});
  const std::vector<uint8> bytes = JoinContainer(container);
  fFolder.Write("in.glb", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  Open("in.glb")->Write(fFolder / "out.glb");
  EXPECT_EQ(ReadFile(fFolder / "out.glb"), ReadFile(fFolder / "in.glb"));
}

TEST_F(GltfWriting, OutputElsewhereStandsOnItsOwn) {
  SceneText text = MakeMovingArm();
  text.fJson.update(EverythingElse());
  text.fJson["images"].push_back({{"uri", "missing.png"}});
  std::filesystem::create_directories(fFolder / "from/parts");
  std::filesystem::create_directories(fFolder / "to");
  text.fJson["buffers"][0]["uri"] = "parts/the%20buffer.bin";
  fFolder.Write("from/in.gltf", text.fJson.dump(1));
  fFolder.Write("from/parts/the buffer.bin", std::string(text.fBytes.begin(), text.fBytes.end()) + "more");
  fFolder.Write("from/pic ture.png", "png");
  Open("from/in.gltf")->Write(fFolder / "to/out.gltf");
  const Json out = ReadJson("to/out.gltf");
  EXPECT_EQ(out["buffers"][0]["uri"], "data:application/octet-stream;base64," + EncodeBase64(text.fBytes));
  EXPECT_EQ(out["images"][0]["uri"], "../from/pic%20ture.png");
  EXPECT_EQ(out["images"][1]["uri"], "https://example.org/a.png");
  EXPECT_EQ(out["images"][2]["uri"], "missing.png");
  EXPECT_NE(ReadFile(fFolder / "to/out.gltf").find('\n'), std::string::npos) << "lines stay lines";
  Open("from/in.gltf")->Write(fFolder / "to/out.glb");
  EXPECT_FALSE(ReadJson("to/out.glb")["buffers"][0].contains("uri"));
  EXPECT_EQ(ReadError("to/out.glb"), "");
}

TEST_F(GltfWriting, ABakedPathHasALinearKeyOnEachFrame) {
  const auto document = OpenText(MakeMovingArm());
  Element& arm = ElementOf(*document, "Arm");
  const Json out = Baked(*document, MakeBake(arm, MaskOf(Channel::kPositionX), 25));
  const Json& clip = out["animations"][0];
  ASSERT_EQ(clip["channels"].size(), 2u);
  ASSERT_EQ(clip["samplers"].size(), 2u) << "the sampler that nobody uses is gone";
  EXPECT_EQ(clip["name"], "Wave");
  EXPECT_EQ(clip["samplers"][0], (Json{{"input", 2}, {"output", 3}, {"interpolation", "LINEAR"}}));
  EXPECT_EQ(clip["samplers"][1]["input"], 4);
  EXPECT_EQ(out["nodes"], MakeMovingArm().fJson["nodes"]);
  const auto again = Open("out.gltf");
  for (int32 frame = 0; frame < 25; ++frame) {
    const ChannelValues values = ElementOf(*again, "Arm").SampleAt(FrameToTicks(frame, 24));
    const ChannelValues before = arm.SampleAt(FrameToTicks(frame, 24));
    EXPECT_NEAR(values[Channel::kPositionX], frame, 1e-5) << frame;
    EXPECT_NEAR(values[Channel::kPositionY], before[Channel::kPositionY], 1e-5) << frame;
    EXPECT_TRUE(values.GetRotation() == before.GetRotation()) << frame;
  }
}

TEST_F(GltfWriting, ABakeOfAStillSceneMakesAnAnimation) {
  SceneText text;
  text.AddNode({{"name", "still"}, {"matrix", {0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 2, 0, 1, 1, 1, 1}}});
  const auto document = OpenText(text);
  const BakeResult bake = MakeBake(ElementOf(*document, "still"), kPositionMask, 2);
  document->WriteBaked(fFolder / "out.glb", bake, KeepModifiers::kNo);
  const Json out = ReadJson("out.glb");
  EXPECT_EQ(out["animations"][0]["name"], "bake");
  EXPECT_FALSE(out["nodes"][0].contains("matrix")) << "an animated node may have none";
  EXPECT_EQ(out["nodes"][0]["scale"], Json({2, 2, 2}));
  EXPECT_EQ(out["nodes"][0]["translation"], Json({1, 1, 1}));
  EXPECT_NEAR(out["nodes"][0]["rotation"][2].get<real64>(), std::sqrt(0.5), 1e-7);
  EXPECT_NEAR(ElementOf(*Open("out.glb"), "still").SampleAt(7500)[Channel::kPositionX], 1, 1e-6);
}

TEST_F(GltfWriting, BakedRotationsAndScalesAreWholeValues) {
  const auto document = OpenText(MakeMovingArm());
  Element& hand = ElementOf(*document, "Hand");
  BakeResult bake = MakeBake(hand, MaskOf(Channel::kRotationY) | MaskOf(Channel::kUniformScale), 40);
  for (int i = 0; i < 40; ++i) {
    ChannelValues& values = bake.fElements[0].fFrames[static_cast<std::size_t>(i)];
    values[Channel::kRotationY] = static_cast<real32>(i) * 0.5f;  // three turns: signs of quaternions must follow
    values[Channel::kUniformScale] = 3;
    values[Channel::kScaleY] = 2;
  }
  Baked(*document, bake);
  const auto again = Open("out.gltf");
  const Element& baked = ElementOf(*again, "Hand");
  EXPECT_FALSE(baked.HasKeys(Channel::kPositionX));
  for (int i = 0; i < 39; ++i) {
    const ChannelValues between = baked.SampleAt(FrameToTicks(i, 24) + 3750);
    const TQuaternion expected = EulerToQuaternion(0, {0, static_cast<real32>(i) * 0.5f + 0.25f, 0});
    EXPECT_NEAR(std::fabs(Dot(EulerToQuaternion(0, between.GetRotation()), expected)), 1, 1e-5) << i;
    EXPECT_TRUE(WholeScale(between).IsEqual({3, 6, 3}, 1e-5f)) << i;
  }
}

TEST_F(GltfWriting, EditsOfKeysAndBaseValuesAreWritten) {
  const auto document = OpenText(MakeMovingArm());
  Element& arm = ElementOf(*document, "Arm");
  Element& hand = ElementOf(*document, "Hand");
  arm.EditCurve(Channel::kPositionX, [](Curve& ioCurve) {
    ioCurve.SetKey({45000, 10, 0, 0, Interpolation::kStep, false, 0});
  });
  ASSERT_TRUE(hand.SetValue(Channel::kRotationX, 0.5f));
  const Json node = Written(*document)["nodes"][1];
  const auto again = Open("out.gltf");
  const Element& written = ElementOf(*again, "Arm");
  for (const int32 tick : {0, 20000, 45000, 60000, 89999, 90000, 135000, 180000}) {
    EXPECT_NEAR(written.SampleAt(tick)[Channel::kPositionX], arm.SampleAt(tick)[Channel::kPositionX], 2e-3) << tick;
    EXPECT_NEAR(written.SampleAt(tick)[Channel::kPositionY], arm.SampleAt(tick)[Channel::kPositionY], 2e-3) << tick;
  }
  EXPECT_EQ(written.GetRotationCurve()->GetKeys().size(), 2u) << "nobody changed it";
  ASSERT_TRUE(node.contains("rotation"));
  EXPECT_EQ(node["translation"], Json({0, 1, 0})) << "nobody changed it";
  EXPECT_NEAR(node["rotation"][0].get<real64>(), std::sin(0.25), 1e-7);
  EXPECT_EQ(ReadJson("out.gltf")["nodes"][0], ReadJson("in.gltf")["nodes"][0]);
}

TEST_F(GltfWriting, EditedSplinesKeepTheirTangents) {
  SceneText text;
  text.AddNode({{"name", "A"}});
  text.AddChannel(0, "translation", {0, 1}, {1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 6}, "CUBICSPLINE");
  const auto document = OpenText(text);
  ElementOf(*document, "A").EditCurve(Channel::kPositionY, [](Curve& ioCurve) {
    CurveKey key = ioCurve.GetKeys()[0];
    key.fValue = 0;
    ioCurve.SetKey(key);
  });
  EXPECT_EQ(Written(*document)["animations"][0]["samplers"][0]["interpolation"], "CUBICSPLINE");
  const auto again = Open("out.gltf");
  const CurveKey& key = ElementOf(*again, "A").GetCurve(Channel::kPositionZ)->GetKeys()[1];
  EXPECT_NEAR(MetresOfInches(key.fInTangent), 4, 1e-5);
  EXPECT_NEAR(MetresOfInches(key.fOutTangent), 6, 1e-5);
}

TEST_F(GltfWriting, EditedRotationTracksAreFollowedFrameByFrame) {
  const auto document = OpenText(MakeMovingArm());
  Element& arm = ElementOf(*document, "Arm");
  for (const Channel channel : {Channel::kRotationX, Channel::kRotationY}) {
    arm.EditCurve(channel, [](Curve& ioCurve) { ioCurve.SetKey({90000, 1, 0, 0, Interpolation::kLinear, false, 0}); });
  }
  Written(*document);
  const auto again = Open("out.gltf");
  for (int32 frame = 0; frame <= 24; ++frame) {
    const int32 tick = FrameToTicks(frame, 24);
    const TQuaternion a = EulerToQuaternion(0, arm.SampleAt(tick).GetRotation());
    const TQuaternion b = EulerToQuaternion(0, ElementOf(*again, "Arm").SampleAt(tick).GetRotation());
    EXPECT_NEAR(std::fabs(Dot(a, b)), 1, 1e-6) << frame;
  }
}

TEST_F(GltfWriting, AChannelWithoutKeysGoes) {
  const auto document = OpenText(MakeMovingArm());
  for (const Channel channel : {Channel::kPositionX, Channel::kPositionY, Channel::kPositionZ}) {
    ElementOf(*document, "Arm").EditCurve(channel, [](Curve& ioCurve) { ioCurve.Clear(); });
  }
  const Json clip = Written(*document)["animations"][0];
  ASSERT_EQ(clip["channels"].size(), 1u);
  EXPECT_EQ(clip["channels"][0]["target"]["path"], "rotation");
  EXPECT_EQ(clip["channels"][0]["sampler"], 0);
  EXPECT_EQ(clip["samplers"].size(), 1u);
}

TEST_F(GltfWriting, OnlyTheClipThatWasReadChanges) {
  SceneText text = MakeMovingArm();
  text.fJson["animations"].push_back(text.fJson["animations"][0]);
  text.fJson["animations"][1]["name"] = "Second";
  text.fJson["animations"][1]["samplers"].push_back({{"input", 0}, {"output", 1}});  // nobody uses it
  const auto document = OpenText(text, {"Second", {}});
  const Json out = Baked(*document, MakeBake(ElementOf(*document, "Arm"), kPositionMask, 3));
  EXPECT_EQ(out["animations"][0], text.fJson["animations"][0]);
  EXPECT_EQ(out["animations"][1]["samplers"].size(), 3u) << "what was there for no channel stays";
}

TEST(Base64, HoldsBytesOfAnyNumber) {
  std::vector<uint8> bytes;
  for (int length = 0; length < 300; ++length) {
    EXPECT_EQ(DecodeBase64(EncodeBase64(bytes)), bytes) << length;
    bytes.push_back(static_cast<uint8>(length * 37));
  }
  EXPECT_EQ(EncodeBase64(std::vector<uint8>{'a', 'b', 'c', 'd', 0xFF}), "YWJjZP8=");
  for (const char* bad : {"A", "AAA", "A===", "=AAA", "AA=A", "AAA\n", "AA==AAAA"}) {
    EXPECT_FALSE(DecodeBase64(bad)) << bad;
  }
}

TEST(GltfTracks, AQuaternionHasTheSignNearerToTheOneBefore) {
  const auto path = std::ranges::find(kNodePaths, std::string_view("rotation"), &NodePath::fName);
  ASSERT_NE(path, kNodePaths.end());
  std::vector<real32> track;
  ChannelValues values;
  for (std::size_t i = 0; i < 40; ++i) {
    values[Channel::kRotationY] = std::remainder(static_cast<real32>(i) * 0.5f, 2 * kRealPI);
    AppendPathValue(*path, values, track);
    EXPECT_GT(i == 0 ? 1 : track[4 * i + 1] * track[4 * i - 3] + track[4 * i + 3] * track[4 * i - 1], 0) << i;
  }
}

TEST(GltfTracks, KeyTimesAscendWhereRealsNoLongerTellTicksApart) {
  const std::vector<int32> ticks{1'900'000'000, 1'900'000'001, 1'900'000'002, 1'900'000'900};
  const std::vector<real32> seconds = SecondsOfTrack(ticks);
  EXPECT_TRUE(std::is_sorted(seconds.begin(), seconds.end(), std::less_equal<>()));
  EXPECT_NEAR(seconds[3], 1'900'000'900 / 180000.0, 1e-3);
}

}  // namespace qlx::host
