// `qlx link`, and the examples that were made by it and by other commands.
#include "ExampleLines.h"

namespace qlx::host {
namespace {

class QlxLink : public QlxTest {
 protected:
  // `inWords` stand between the plain scene and the output.
  std::vector<std::string> Words(const std::string& inVerb, std::vector<std::string> inWords) const {
    inWords.insert(inWords.begin(), {inVerb, At("plain.gltf")});
    inWords.insert(inWords.end(), {"-o", At()});
    return inWords;
  }
};

TEST_F(QlxLink, EveryOptionReachesItsField) {
  fFolder.Write("plain.gltf", PlainExample("cart.gltf"));
  Print(Words("link", {"--target",     "FrontLeftWheel:self,amet,TRAN,ROTA,RotZ",
                       "--controller", "Cart:Global X Position",
                       "--combine",    "multiply",
                       "--modify",     "divide -9.5 degrees",
                       "--window",     "3..40",
                       "--delay",      "5",
                       "--range",      "-1..2.5",
                       "--limits",     "..90 degrees",
                       "--oscillate",  "cosine speed 0.25 phase 0.5 size 2 from -3 to 3",
                       "--decay",      "linear+quadratic from 0.75 to 0.25",
                       "--grow",       "cubic to 0.5",
                       "--name",       "Roll",
                       "--relative",   "--by-name"}));
  const Json nodes = Json::parse(ReadFile(fFolder / "out.gltf"))["nodes"];
  const auto node = std::ranges::find(nodes, "FrontLeftWheel", [](const Json& each) { return each["name"]; });
  ASSERT_NE(node, nodes.end());
  const Json link = (*node)["extensions"]["QLX_modifiers"]["modifiers"][0];
  const Json expected = Json::parse(R"({"fName": "Roll", "fAttributeMode": true, "fControllerName": "Cart",
      "fFindControllerByName": true, "fCombineReplace": false, "fCombineMultiply": true, "fModifyAdd": false,
      "fModifyDivide": true, "fModifyValue": -9.5, "fModifyUnit": 5, "fStartOn": true, "fStartFrame": 3, "fEndOn": true,
      "fEndFrame": 40, "fDelayOn": true, "fDelayFrames": 5, "fRangeOn": true, "fRangeMin": -1, "fRangeMax": 2.5,
      "fLowerLimitOn": false, "fUpperLimitOn": true, "fUpperLimit": 90, "fLimitUnit": 5, "fOscillateOn": true,
      "fDecayOn": true, "fGrowOn": true, "fAbsolute": false, "fRelative": true, "fMirrorTransform": false})");
  for (const auto& [name, value] : expected.items()) {
    EXPECT_EQ(link["parameters"][name], value) << name;
  }
  const std::string text = link["private"];
  for (const char* token : {"pset 1\r", "cpsl \"self,amet,TRAN,ROTA,RotZ\"", "cpst 1\r", "GlbX\"", "ocos 1", "osin 0",
                            "ospd 0.25", "opho 0.5", "osca 2", "omin -3", "omax 3", "dqua 1", "dlin 0", "dmax 0.75",
                            "dmin 0.25", "gcut 1", "gmax 0.5"}) {
    ExpectPart(token, text);
  }
}

TEST_F(QlxLink, SaysWhatIsThereInstead) {
  fFolder.Write("plain.gltf", PlainExample("cart.gltf"));
  const std::string target = "FrontLeftWheel:self,amet,TRAN,ROTA,RotZ";
  const WrongRun rows[] = {
      {"an element",
       {"--target", "FrontLeftWhel:Rotation Z"},
       "--target: the scene has no element \"FrontLeftWhel\"; the closest"},
      {"a controller",
       {"--target", target, "--controller", "Kart:Rotation Z"},
       "--controller: the scene has no element \"Kart\""},
      {"no colon", {"--target", "FrontLeftWheel"}, "--target: \"FrontLeftWheel\" is not NAME:PATH"},
      {"a path", {"--target", "FrontLeftWheel:self,amet,TRAN,ROTA,RotW"}, "self,amet,TRAN,ROTA,RotX"},
      {"a label", {"--target", "FrontLeftWheel:Rotatin Z"}, "Rotation Z"},
      {"a word", {"--target", target, "--combine", "mix"}, "--combine: \"mix\" is none of: replace, self, add"},
      {"an operation", {"--target", target, "--modify", "times 2"}, "--modify: \"times\" is none of: add, subtract"},
      {"a number", {"--target", target, "--modify", "add two"}, "--modify: mval (\"Number\"): \"two\" is not a number"},
      {"a unit",
       {"--target", target, "--modify", "add 2 parsecs"},
       "--modify: unit (\"Unit\"): it has no row \"parsecs\""},
      {"no range", {"--target", target, "--range", "1"}, "--range: \"1\" is no range, as in 0..1"},
      {"half a range", {"--target", target, "--range", "1.."}, "--range: \"1..\" lacks a side"},
      {"a negative delay", {"--target", target, "--delay", "-5"}, "--delay: dfrm (\"Frames\"): "},
      {"a wave", {"--target", target, "--oscillate", "square"}, "--oscillate: \"square\" is none of: sine, cosine"},
      {"a number of a wave",
       {"--target", target, "--oscillate", "sine speed"},
       "--oscillate: \"speed\" needs a number"},
  };
  for (const WrongRun& row : rows) {
    ExpectProblems({{row.fLabel, Words("link", row.fWords), row.fSays}});
  }
}

// Each line beside an example is the words of a command that makes its part of it in the plain scene: the baked file is
// the same to the byte.
TEST_F(QlxLink, ExamplesAreMadeAgain) {
  const struct {
    const char* fVerb;
    std::string fLines;
    std::string fPlain;
    std::string fMade;
  } rows[] = {
      {"link", "cart.links", "cart", "cart"},
      {"link", "clock.links", "clock", "clock"},
      {"link", "face.links", "face", "face"},
      {"link", "followers.links", "followers", "followers"},
      {"link", "growth.links", "growth", "growth"},
      {"link", "lamp.links", "lamp", "lamp"},
      {"link", "pendulum.links", "pendulum", "pendulum"},
      {"chain", "tentacle.chain", "tentacle", "tentacle"},
      {"keys", "walk.keys", "walk", "walk_clean"},
      {"edit", "", "pinned_arm", "pinned_arm"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fMade);
    fFolder.Write("plain.gltf", PlainExample(row.fPlain + ".gltf"));
    const auto lines = row.fLines.empty()
                           ? std::vector<std::vector<std::string>>{{"--script", Example("pinned_arm.script")}}
                           : LinesOfExample(row.fLines);
    for (const std::vector<std::string>& words : lines) {
      Print(Words(row.fVerb, words));
      std::filesystem::rename(fFolder / "out.gltf", fFolder / "plain.gltf");
    }
    Print({"bake", At("plain.gltf"), "-o", At("made.gltf")});
    Print({"bake", Example((row.fMade + ".gltf").c_str()), "-o", At("example.gltf")});
    EXPECT_TRUE(ReadFile(fFolder / "made.gltf") == ReadFile(fFolder / "example.gltf"));
  }
}

}  // namespace
}  // namespace qlx::host
