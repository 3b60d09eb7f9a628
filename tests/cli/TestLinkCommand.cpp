#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {
namespace {

using LinkJson = nlohmann::ordered_json;

// The words of a line as a shell parts them; double quotes hold blanks.
std::vector<std::string> LinkArguments(const std::string& inLine) {
  std::vector<std::string> words;
  bool isQuoted = false;
  bool isWord = false;
  for (const char each : inLine) {
    isQuoted = isQuoted != (each == '"');
    if (each == ' ' && !isQuoted) {
      isWord = false;
      continue;
    }
    if (!isWord) {
      words.emplace_back();
    }
    isWord = true;
    if (each != '"') {
      words.back().push_back(each);
    }
  }
  return words;
}

// Takes an extension out of a scene's JSON, as if no program had written it.
void ForgetExtension(LinkJson& ioScene, const std::string& inName) {
  for (LinkJson& node : ioScene["nodes"]) {
    if (node.contains("extensions")) {
      node["extensions"].erase(inName);
      if (node["extensions"].empty()) {
        node.erase("extensions");
      }
    }
  }
  if (ioScene.contains("extensionsUsed")) {
    LinkJson used = LinkJson::array();
    for (const LinkJson& name : ioScene["extensionsUsed"]) {
      if (name != inName) {
        used.push_back(name);
      }
    }
    ioScene["extensionsUsed"] = used;
    if (used.empty()) {
      ioScene.erase("extensionsUsed");
    }
  }
}

class QlxLink : public testing::Test {
 protected:
  std::string Path(const char* inName) const { return PathText(fFolder / inName); }

  // An example without its modifiers.
  void WritePlain(const char* inExample) {
    LinkJson scene = LinkJson::parse(ReadFile(Example(inExample)));
    ForgetExtension(scene, "QLX_modifiers");
    ForgetExtension(scene, "QLX_element");
    fFolder.Write("plain.gltf", scene.dump(2) + "\n");  // as the example is laid out
  }

  // What these say is done to the plain scene.
  void LinkEachLine(const std::string& inFile) {
    std::istringstream lines(ReadFile(inFile));
    for (std::string line; std::getline(lines, line);) {
      if (line.empty() || line[0] == '#') {
        continue;
      }
      const QlxRun run = Link(LinkArguments(line));
      ASSERT_EQ(run.fCode, kExitDone) << line << ": " << run.fErr;
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
  LinkJson LinkOf(const char* inNode) {
    const LinkJson scene = LinkJson::parse(ReadFile(fFolder / "linked.gltf"));
    for (const LinkJson& node : scene["nodes"]) {
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
  const LinkJson link = LinkOf("FrontLeftWheel");
  const LinkJson expected = LinkJson::parse(R"({"fName": "Roll", "fAttributeMode": true, "fControllerName": "Cart",
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
    WritePlain((name + ".gltf").c_str());
    if (name == "pinned_arm") {
      Edit(Example("pinned_arm.script"));
    } else {
      LinkEachLine(Example((name + ".links").c_str()));
    }
    std::string baked[2];
    const std::string scenes[] = {Example((name + ".gltf").c_str()), Path("plain.gltf")};
    for (int i = 0; i < 2; ++i) {
      const QlxRun run = RunInProcess({"bake", scenes[i], "-o", Path("baked.gltf")});
      ASSERT_EQ(run.fCode, kExitDone) << name << ": " << run.fErr;
      baked[i] = ReadFile(fFolder / "baked.gltf");
    }
    EXPECT_TRUE(baked[0] == baked[1]) << name;
  }
}

}  // namespace
}  // namespace qlx::host
