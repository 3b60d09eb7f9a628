// `--dry-run` of the commands of the menu, and what `qlx keys dedupe` says of the keys that it removed.
#include <gtest/gtest.h>

#include "ExampleLines.h"

namespace qlx::host {

namespace {

class QlxDryRun : public testing::Test {
 protected:
  std::string Path(const char* inName) const { return PathText(fFolder / inName); }
  // What a run that goes well prints.
  static std::string Print(std::vector<std::string> inWords) {
    const QlxRun run = RunInProcess(std::move(inWords));
    EXPECT_EQ(run.fErr, "");
    return run.fOut;
  }

  TempFolder fFolder;
};

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
    words.insert(words.end(), {"-o", Path("out.gltf")});
    EXPECT_EQ(Print(words), row.fText) << row.fLabel << ", with an output that is not written";
    EXPECT_TRUE(fFolder.List().empty()) << row.fLabel;
  }
  const QlxRun neither = RunInProcess({"keys", arm, "delete", "--select", "Hand"});
  EXPECT_EQ(neither.fCode, kExitUsage);
  EXPECT_NE(neither.fErr.find("--output (or --dry-run) is required"), std::string::npos) << neither.fErr;
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
      Print({"keys", walk, "dedupe", "--select", "Hips", "--scope", "subtree", "-o", Path("out.gltf")});
  EXPECT_EQ(text.rfind(Path("out.gltf") + ": Remove Duplicate Keyframes done\n", 0), 0U) << text;
  for (const char* const line :
       {"  Head:self,amet,TRAN,ROTA,RotZ  23 of 25 keys\n", "  LeftShin:self,amet,TRAN,OFFS,YCOO  23 of 25 keys\n",
        "\nall tracks move as before\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
  }
  EXPECT_EQ(text.find("LeftThigh:self,amet,TRAN,ROTA,RotZ"), std::string::npos) << text;
  // What stands still stays without its keys in the file; an angle that moves gives the others keys again.
  const std::string again =
      Print({"keys", Path("out.gltf"), "dedupe", "--select", "Head", "Spine", "LeftFoot", "RightFoot", "--dry-run"});
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
  const std::string text = Print({"keys", Path("humps.gltf"), "dedupe", "--select", "Box", "--fps", "30", "--dry-run"});
  EXPECT_EQ(text.rfind("Remove Duplicate Keyframes, dry run: 3 keys removed\n", 0), 0U) << text;
  EXPECT_NE(text.find("\n3 keys of 3 tracks removed\n  Box:self,amet,TRAN,OFFS,XCOO  1 of 3 keys\n"), std::string::npos)
      << text;
  EXPECT_NE(text.find("\n1 track moves otherwise than before, at most by\n"
                      "  Box:self,amet,TRAN,OFFS,XCOO  10.4 inches at frame 27\n"),
            std::string::npos)
      << text;
}

// Each example that a command made is made again by the words that stand beside it.
TEST_F(QlxDryRun, ExamplesAreMadeAgain) {
  const struct {
    const char* fVerb;
    const char* fPlain;
    const char* fWords;
    const char* fMade;
  } rows[] = {{"chain", "tentacle.gltf", "tentacle.chain", "tentacle.gltf"},
              {"keys", "walk.gltf", "walk.keys", "walk_clean.gltf"}};
  for (const auto& row : rows) {
    fFolder.Write("plain.gltf", PlainExample(row.fPlain));
    const auto lines = LinesOfExample(row.fWords);
    ASSERT_EQ(lines.size(), 1U) << row.fWords;
    std::vector<std::string> words = {row.fVerb, Path("plain.gltf")};
    words.insert(words.end(), lines[0].begin(), lines[0].end());
    words.insert(words.end(), {"-o", Path("made.gltf")});
    Print(words);
    EXPECT_TRUE(BakedFile(Path("made.gltf"), Path("baked.gltf")) == BakedFile(Example(row.fMade), Path("baked.gltf")))
        << row.fMade;
  }
}

// On each frame a link has what it follows had so many frames before.
TEST_F(QlxDryRun, LinksOfAChainFollowTheFirstOrThePrevious) {
  constexpr int kDelay = 3;
  fFolder.Write("plain.gltf", PlainExample("tentacle.gltf"));
  for (const bool first : {true, false}) {
    std::vector<std::string> words = {"chain",    Path("plain.gltf"),          "-o", Path("chain.gltf"),
                                      "--follow", first ? "first" : "previous"};
    const std::vector<std::string> line = LinesOfExample("tentacle.chain").at(0);
    words.insert(words.end(), line.begin(), line.end());
    Print(words);
    Print({"bake", Path("chain.gltf"), "-o", Path("baked.gltf"), "--csv", Path("baked.csv")});
    std::vector<std::vector<std::string>> table;
    std::istringstream text(ReadFile(fFolder / "baked.csv"));
    for (std::string row; std::getline(text, row);) {
      std::replace(row.begin(), row.end(), ',', ' ');
      table.push_back(WordsOfLine(row));
    }
    table.erase(table.begin());
    ASSERT_EQ(table.size(), 121U);
    // Behind frame and seconds: Tentacle2 to Tentacle12. The first one is as its keys have it.
    for (int frame = kDelay; frame <= 120; ++frame) {
      const auto& row = table[static_cast<std::size_t>(frame)];
      const auto& earlier = table[static_cast<std::size_t>(frame - kDelay)];
      ASSERT_EQ(row.size(), 13U);
      for (std::size_t link = 3; link < row.size(); ++link) {
        EXPECT_EQ(row[link], first ? row[2] : earlier[link - 1]) << "frame " << frame << ", column " << link;
      }
      if (frame % 20 == 0) {
        EXPECT_EQ(row[2] + "\n", Print({"get", Path("baked.gltf"), "--element", "Tentacle1", "--path",
                                        "self,amet,TRAN,ROTA,RotZ", "--frame", std::to_string(frame - kDelay)}));
      }
    }
  }
}

}  // namespace qlx::host
