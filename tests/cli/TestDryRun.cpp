// `--dry-run` of the commands of the menu, and what `qlx keys dedupe` says of the keys that it removed.
#include "ExampleLines.h"

namespace qlx::host {

namespace {

class QlxDryRun : public QlxTest {};

}  // namespace

TEST_F(QlxDryRun, ListsEachKeyAndModifierAndWritesNothing) {
  const std::string arm = Example("pinned_arm.gltf");
  const struct {
    const char* fLabel;
    std::vector<std::string> fWords;
    std::string fText;
  } rows[] = {
      {"nothing", {"keys", arm, "delete", "--select", "Hand"}, "Delete Keyframes, dry run: nothing changes\n"},
      {"keys",
       {"keys", arm, "delete", "--select", "Forearm", "--frame", "9"},
       "Delete Keyframes, dry run: 3 keys removed\n"
       "Forearm:self,amet,TRAN,ROTA,RotX\n  frame 9      removed, was 0\n"
       "Forearm:self,amet,TRAN,ROTA,RotY\n  frame 9      removed, was 0\n"
       "Forearm:self,amet,TRAN,ROTA,RotZ\n  frame 9      removed, was 0.87266463\n"},
      {"a base value",
       {"do", arm, "prex", "--select", "Base", "--answer", "plst=Scale", "nVal=2", "upbn"},
       "Property Explorer, dry run: 1 base value changed\n"
       "Base:self,amet,TRAN,SCAL\n  base value   value from 1 to 2\n"},
      {"a value of a material",
       {"do", Example("lamp.gltf"), "prex", "--select", "Lamp", "--answer", "plst=Shaders > Roughness", "nVal=0.5",
        "upbn"},
       "Property Explorer, dry run: 1 base value changed\n"
       "Lamp:shdr,0000,Roug\n  base value   value from 0.8 to 0.5\n"},
      {"modifiers",
       {"chain", arm, "--elements", "Base", "Forearm", "--set", "BRal=on", "dely=on", "dfrm=4", "--follow", "first"},
       "QLX Chain, dry run: 2 modifiers added\n"
       "Base\n  QLXModifier 'fQLX' added\n    fMirrorTransform true\n"
       "Forearm\n  QLXModifier 'fQLX' added\n    fDelayOn true\n    fDelayFrames 4\n    fMirrorTransform true\n"
       "    fSourceName \"Base\"\n    fRotationAll true\n    fRotationNone false\n    bobj \"02000000\"\n"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> words = row.fWords;
    words.emplace_back("--dry-run");
    EXPECT_EQ(Print(words), row.fText) << row.fLabel;
    words.insert(words.end(), {"-o", At("out.gltf")});
    EXPECT_EQ(Print(words), row.fText) << row.fLabel << ", with an output that is not written";
    EXPECT_TRUE(fFolder.List().empty()) << row.fLabel;
  }
}

// Each run of the command is another one: the list is what came of marked keys, and those that they met.
TEST_F(QlxDryRun, MovedKeysSayWhereTo) {
  const std::string text = Print({"keys", Example("pinned_arm.gltf"), "wiggle", "--select", "Forearm", "--keys", "10",
                                  "20", "--forward", "5", "--dry-run"});
  EXPECT_EQ(text.rfind("Wiggle Keyframes, dry run: ", 0), 0U) << text;
  std::istringstream lines(text.substr(text.find('\n') + 1));
  int moved = 0;
  for (std::string line; std::getline(lines, line);) {
    const std::vector<std::string> words = WordsOfLine(line);
    if (words.size() == 6 && words[2] == "moved") {  // frame 12 moved to frame 15
      ++moved;
      EXPECT_TRUE(std::stoi(words[1]) >= 10 && std::stoi(words[1]) <= 20 && words[1] != words[5]) << line;
    } else {
      EXPECT_TRUE(line.rfind("Forearm:self,amet,TRAN,ROTA,Rot", 0) == 0 || words.at(2) == "removed,") << line;
    }
  }
  EXPECT_GT(moved, 0);
}

TEST_F(QlxDryRun, DedupeSaysWhichTracksLostKeys) {
  const std::string walk = Example("walk.gltf");
  const std::string text =
      Print({"keys", walk, "dedupe", "--select", "Hips", "--scope", "subtree", "-o", At("out.gltf")});
  EXPECT_EQ(text.rfind(At("out.gltf") + ": Remove Duplicate Keyframes done\n", 0), 0U) << text;
  for (const char* const line :
       {"  Head:self,amet,TRAN,ROTA,RotZ  23 of 25 keys\n", "  LeftShin:self,amet,TRAN,OFFS,YCOO  23 of 25 keys\n",
        "\nall tracks move as before\n"}) {
    ExpectPart(line, text);
  }
  EXPECT_EQ(text.find("LeftThigh:self,amet,TRAN,ROTA,RotZ"), std::string::npos) << text;
  // What stands still stays without its keys in the file; an angle that moves gives the others keys again.
  const std::string again =
      Print({"keys", At("out.gltf"), "dedupe", "--select", "Head", "Spine", "LeftFoot", "RightFoot", "--dry-run"});
  EXPECT_EQ(again, "Remove Duplicate Keyframes, dry run: nothing changes\nno key removed\n");
}

// Three equal keys of a cubic spline, a second apart, that leave with a slope of a metre a second: the command looks at
// values alone, and the way changes. From the start it differs by s^2 - 3/4 s^3 metres: the most near 8/9 of a second.
TEST_F(QlxDryRun, DedupeSaysWhatMovesOtherwise) {
  std::string numbers = "AAAAAAAAgD8AAABA";  // 0, 1, 2
  for (int key = 0; key < 3; ++key) {
    numbers += "AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAACAPwAAAAAAAAAA";  // in (0, 0, 0), value (1, 0, 0), out (1, 0, 0)
  }
  fFolder.Write("humps.gltf", R"({"asset": {"version": "2.0"}, "scenes": [{"nodes": [0]}], "scene": 0,
    "nodes": [{"name": "Box"}],
    "animations": [{"channels": [{"sampler": 0, "target": {"node": 0, "path": "translation"}}],
                    "samplers": [{"input": 0, "output": 1, "interpolation": "CUBICSPLINE"}]}],
    "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "SCALAR", "min": [0], "max": [2]},
                  {"bufferView": 1, "componentType": 5126, "count": 9, "type": "VEC3"}],
    "bufferViews": [{"buffer": 0, "byteLength": 12}, {"buffer": 0, "byteOffset": 12, "byteLength": 108}],
    "buffers": [{"byteLength": 120, "uri": "data:application/octet-stream;base64,)" +
                                  numbers + "\"}]}");
  const std::string text = Print({"keys", At("humps.gltf"), "dedupe", "--select", "Box", "--fps", "30", "--dry-run"});
  EXPECT_EQ(text.rfind("Remove Duplicate Keyframes, dry run: 3 keys removed\n", 0), 0U) << text;
  ExpectPart("\n3 keys of 3 tracks removed\n  Box:self,amet,TRAN,OFFS,XCOO  1 of 3 keys\n", text);
  EXPECT_NE(text.find("\n1 track moves otherwise than before, at most by\n"
                      "  Box:self,amet,TRAN,OFFS,XCOO  10.4 inches at frame 27\n"),
            std::string::npos)
      << text;
}

}  // namespace qlx::host
