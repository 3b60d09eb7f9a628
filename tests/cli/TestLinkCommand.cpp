#include <gtest/gtest.h>

#include "ExampleLines.h"

namespace qlx::host {
namespace {

class QlxLink : public testing::Test {
 protected:
  std::string Path(const char* inName) const { return PathText(fFolder / inName); }

  // An example without its modifiers.
  void WritePlain(const std::string& inExample) { fFolder.Write("plain.gltf", PlainExample(inExample)); }

  // What these say is done to the plain scene.
  void LinkEachLine(const std::string& inFile) {
    for (const std::vector<std::string>& words : LinesOfExample(inFile)) {
      const QlxRun run = Link(words);
      ASSERT_EQ(run.fCode, kExitDone) << inFile << ": " << words[1] << ": " << run.fErr;
      std::filesystem::rename(fFolder / "linked.gltf", fFolder / "plain.gltf");
    }
  }
  void Edit(const std::string& inScript) {
    const QlxRun run = RunInProcess({"edit", Path("plain.gltf"), "--script", inScript, "-o", Path("linked.gltf")});
    ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
    std::filesystem::rename(fFolder / "linked.gltf", fFolder / "plain.gltf");
  }

  // Links the plain scene, `inArguments` standing between its name and the output.
  QlxRun Link(std::vector<std::string> inArguments) {
    inArguments.insert(inArguments.begin(), {"link", Path("plain.gltf")});
    inArguments.insert(inArguments.end(), {"-o", Path("linked.gltf")});
    return RunInProcess(std::move(inArguments));
  }

  // The only modifier of the linked scene.
  SceneJson LinkOf(const char* inNode) {
    const SceneJson scene = SceneJson::parse(ReadFile(fFolder / "linked.gltf"));
    for (const SceneJson& node : scene["nodes"]) {
      if (node["name"] == inNode) {
        return node["extensions"]["QLX_modifiers"]["modifiers"][0];
      }
    }
    return {};
  }

  TempFolder fFolder;
};

TEST_F(QlxLink, EveryOptionReachesItsField) {
  WritePlain("cart.gltf");
  const QlxRun run = Link({"--target",     "FrontLeftWheel:self,amet,TRAN,ROTA,RotZ",
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
                           "--relative",   "--by-name"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const SceneJson link = LinkOf("FrontLeftWheel");
  const SceneJson expected = SceneJson::parse(R"({"fName": "Roll", "fAttributeMode": true, "fControllerName": "Cart",
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
    EXPECT_NE(text.find(token), std::string::npos) << token << " in\n" << text;
  }
}

TEST_F(QlxLink, SaysWhatIsThereInstead) {
  WritePlain("cart.gltf");
  const std::string target = "FrontLeftWheel:self,amet,TRAN,ROTA,RotZ";
  const struct {
    const char* fLabel;
    std::vector<std::string> fArguments;
    const char* fError;  // somewhere in what is said
  } kRows[] = {
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
  for (const auto& row : kRows) {
    const QlxRun run = Link(row.fArguments);
    EXPECT_EQ(run.fCode, kExitFailed) << row.fLabel;
    EXPECT_NE(run.fErr.find(row.fError), std::string::npos) << row.fLabel << " gave: " << run.fErr;
    EXPECT_FALSE(std::filesystem::exists(fFolder / "linked.gltf")) << row.fLabel;
  }
}

// Each line of NAME.links makes a link of examples/NAME.gltf in its plain scene, and NAME.script what is no link: the
// baked file is the same to the byte.
TEST_F(QlxLink, ExamplesAreMadeAgain) {
  for (const std::string name : {"cart", "clock", "face", "followers", "growth", "lamp", "pendulum", "pinned_arm"}) {
    WritePlain(name + ".gltf");
    if (name == "pinned_arm") {
      Edit(Example("pinned_arm.script"));
    } else {
      LinkEachLine(name + ".links");
    }
    EXPECT_TRUE(BakedFile(Example((name + ".gltf").c_str()), Path("baked.gltf")) ==
                BakedFile(Path("plain.gltf"), Path("baked.gltf")))
        << name;
  }
}

}  // namespace
}  // namespace qlx::host
