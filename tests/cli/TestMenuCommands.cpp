// `qlx menu`, `qlx do`, `qlx keys` and `qlx chain`.
#include "ProblemOf.h"
#include "QlxRun.h"
#include "cli/AnswerPerson.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

class QlxMenu : public QlxTest {
 protected:
  // The words of a command on a scene, and the output.
  std::vector<std::string> Words(const std::string& inCommand, std::vector<std::string> inWords) const {
    inWords.insert(inWords.begin(), {inCommand, fScene});
    inWords.insert(inWords.end(), {"-o", At()});
    return inWords;
  }
  std::string Do(const std::string& inCommand, std::vector<std::string> inWords) const {
    return Print(Words(inCommand, std::move(inWords)));
  }
  // What `qlx tree` knows of an element's modifiers: "fQLX fPIN ".
  std::string ModifiersOf(const char* inElement) const {
    std::string text;
    const Json elements = PrintJson({"tree", At()})["elements"];
    for (const Json& element : elements) {
      for (const Json& modifier : element["name"] == inElement ? element["modifiers"] : Json::array()) {
        text += modifier["class"].get<std::string>() + " ";
      }
    }
    return text;
  }

  std::string fScene = Example("pinned_arm.gltf");
};

}  // namespace

TEST_F(QlxMenu, ListsTheCommandsAndWhichAreEnabled) {
  const std::string nothing = Print({"menu", fScene});
  EXPECT_EQ(nothing.rfind("disabled  aQLX  Add QLX Link ", 0), 0U) << nothing;
  ExpectPart("\nenabled   wigl  Wiggle Keyframes ", nothing);
  const Json commands = PrintJson({"menu", fScene, "--select", "Hand", "Base"})["commands"];
  ASSERT_EQ(commands.size(), 8U);
  EXPECT_TRUE(std::ranges::all_of(commands, [](const Json& command) { return command["enabled"] == true; }));
  EXPECT_EQ(commands[1]["name"], "AddPinModifierCommand");
}

TEST_F(QlxMenu, DoesACommandByAnyOfItsNames) {
  for (const char* const name : {"Add Pin", "add pin", "AddPinModifierCommand", "aPIN"}) {
    EXPECT_EQ(Do("do", {name, "--select", "Base", "Hand"}), At() + ": Add Pin done\n");
    EXPECT_EQ(ModifiersOf("Base"), "fPIN ") << name;
  }
  Do("do",
     {"Property Explorer...", "--select", "Base", "--answer", "plst=Global Y Position", "nVal=12", "Apply", "cancel"});
  ExpectPart("12", Print({"get", At(), "--element", "Base", "--path", "self,amet,TRAN,OFFS,YCOO"}));
}

TEST_F(QlxMenu, PlainVerbsAreTheSameCommands) {
  const struct {
    const char* fLabel;
    const char* fVerb;
    std::vector<std::string> fPlain;
    std::vector<std::string> fDo;
  } rows[] = {
      {"delete",
       "keys",
       {"delete", "--select", "Forearm", "--frame", "24", "--scope", "subtree"},
       {"dkey", "--select", "Forearm", "--frame", "24", "--answer", "subt=on"}},
      {"dedupe", "keys", {"dedupe", "--select", "Forearm"}, {"rdup", "--select", "Forearm"}},
      {"wiggle by nothing",
       "keys",
       {"wiggle", "--select", "Forearm", "--backward", "-2", "--forward", "0"},
       {"wigl", "--select", "Forearm", "--keys", "all", "--answer", "minf=-2", "maxf=0"}},
      {"chain",
       "chain",
       {"--elements", "Base", "Forearm", "--set", "BRal=on", "mval=2", "--follow", "first"},
       {"QLX Chain", "--answer", "abtn", "pick=Base", "ok", "abtn", "pick=Forearm", "BRal=on", "mval=2", "ok",
        "cgrp=on", "ok"}},
      {"chain below",
       "chain",
       {"--below", "Base", "--set", "BRal=on"},
       {"QLX Chain", "--answer", "abtn", "pick=Base", "ok", "clst=Base", "achb", "BRal=on", "ok", "cgrp=off"}},
  };
  for (const auto& row : rows) {
    Do("do", row.fDo);
    const std::string done = ReadFile(fFolder / "out.gltf");
    Do(row.fVerb, row.fPlain);
    EXPECT_TRUE(ReadFile(fFolder / "out.gltf") == done) << row.fLabel;
  }
  EXPECT_EQ(ModifiersOf("Base") + ModifiersOf("Forearm") + ModifiersOf("Hand"), "fQLX fQLX fPIN fQLX ");
}

// The joints of a skin are a figure: commands reach all of it from any joint, and lay chains along it.
TEST_F(QlxMenu, FiguresComeFromSkins) {
  fScene = PathText(fFolder.Write("rig.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
    "scenes": [{"nodes": [0, 4]}], "meshes": [{"primitives": [{"attributes": {}}]}],
    "skins": [{"joints": [1, 2, 3]}],
    "nodes": [{"name": "Rig", "children": [1]}, {"name": "Hip", "children": [2, 3, 5]}, {"name": "LegL"},
              {"name": "LegR"}, {"name": "Skin", "mesh": 0, "skin": 0}, {"name": "Hat"}]})"));
  Do("do", {"chai", "--answer", "abtn", "pick=Hip", "ok", "clst=Hip", "achb", "BRal=on", "ok", "ok"});
  EXPECT_EQ(ModifiersOf("Hip") + ModifiersOf("LegL") + ModifiersOf("LegR") + ModifiersOf("Hat"),
            "fQLX fQLX fQLX fQLX ");
  Do("chain", {"--elements", "Hip,LegL,LegR"});
  EXPECT_EQ(ModifiersOf("Rig") + ModifiersOf("LegR") + ModifiersOf("Hat"), "fQLX ");
  for (const char* const element : {"Rig", "Hip", "LegL", "LegR", "Hat", "Skin"}) {
    Print({"set", fScene, "--element", element, "--path", "self,amet,TRAN,ROTA,RotX", "1", "--frame", "10", "-o",
           At("keyed.gltf")});
    fScene = At("keyed.gltf");
  }
  Do("keys", {"delete", "--select", "Hat", "--frame", "10", "--scope", "figure"});
  EXPECT_FALSE(PrintJson({"explore", At(), "--element", "Skin", "--animated"})["rows"].empty()) << "in no figure";
  EXPECT_TRUE(PrintJson({"explore", At(), "--element", "LegL", "--animated"})["rows"].empty());
  const QlxRun run = RunInProcess(Words("keys", {"delete", "--select", "Skin", "--frame", "10", "--scope", "figure"}));
  EXPECT_EQ(run.fErr, "qlx: warning: The selected item is not a figure\n");
}

TEST(AnswerPerson, GivesFilesInTheirOrder) {
  Diagnostics diagnostics;
  AnswerPerson person({"file=a b=c.txt", "cancel", "file=", "button=2", "ok"}, diagnostics);
  EXPECT_EQ(person.ChooseFile(FileChoice::kOpen), "a b=c.txt");
  EXPECT_EQ(person.ChooseFile(FileChoice::kSave), std::nullopt);
  EXPECT_EQ(person.ChooseFile(FileChoice::kSave), "");
  EXPECT_EQ(person.AnswerAlert({.fText = "Replace it?", .fButtons = {"Yes", "No"}}), 2);
  EXPECT_EQ(test::ProblemOf([&] { person.ChooseFile(FileChoice::kOpen); }),
            "--answer ok: is no answer to what asks for a file to open: that is file=PATH or cancel");
  EXPECT_THROW(person.CheckThatAllWereAsked(), UserError);
  AnswerPerson silent({}, diagnostics);
  EXPECT_EQ(test::ProblemOf([&] { silent.ChooseFile(FileChoice::kSave); }),
            "--answer: the command asks for a file to save: answer with file=PATH or cancel");
  EXPECT_EQ(silent.AnswerAlert({.fText = "Replace it?", .fButtons = {"Yes", "No"}}), 1);
  EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>{"Replace it?"});
}

TEST_F(QlxMenu, AnErrorSaysWhatThereIsAndWritesNothing) {
  const WrongRun rows[] = {
      {"no such command", {"do", "Delete Keyfarmes"}, "no command \"Delete Keyfarmes\"; the closest is \"Delete Keyf"},
      {"nothing like it", {"do", "zzzzzzzzzzzz"}, "; `qlx menu` lists those that there are"},
      {"no such element", {"do", "aPIN", "--select", "Hnad"}, "--select: the scene has no element \"Hnad\"; the clos"},
      {"disabled", {"do", "aPIN"}, "Add Pin: is not enabled for what is selected"},
      {"out of its range",
       {"do", "wigl", "--answer", "minf=-1"},
       "--answer minf=-1: minf (\"Backward (frames)\"): -1 "},
      {"nothing asks", {"do", "aPIN", "--select", "Hand", "--answer", "ok"}, "--answer ok: nothing asks for it"},
      {"not answered",
       {"do", "chai", "--answer", "abtn"},
       "--answer abtn: --answer: the command asks for an element ("},
      {"another answer", {"do", "chai", "--answer", "abtn", "ok"}, "--answer ok: is no answer to what asks for an ele"},
      {"nobody to pick", {"do", "chai", "--answer", "abtn", "pick=Hnad"}, "no such element; the closest is \"Hand\""},
      {"no such button",
       {"do", "dkey", "--select", "Hand", "--answer", "figu=on", "ok", "button=Yes"},
       "--answer button=Yes: the alert \"The selected item is not a figure\" has no such button"},
      {"no frame", {"do", "dkey", "--select", "Hand", "--frame", "-4"}, "--frame: -4 is no frame"},
      {"no keys", {"do", "wigl", "--keys", "some"}, "--keys: keys are chosen by all, none, or the first and the last"},
      {"no action", {"keys", "dedup"}, "the action: there is no \"dedup\"; the closest is \"dedupe\""},
      {"no scope", {"keys", "delete", "--scope", "x"}, "--scope: there is no \"x\"; there are figure"},
      {"a scope for wiggle", {"keys", "wiggle", "--scope", "figure"}, "--scope: wiggle works on the selected elements"},
      {"frames for delete", {"keys", "delete", "--forward", "1"}, "delete: --keys, --backward and --forward are for w"},
      {"a link's control",
       {"chain", "--elements", "Hand", "--set-first", "dfrn=3"},
       "--answer dfrn=3: \"Link of a chain\": there is"},
  };
  for (const WrongRun& row : rows) {
    ExpectProblems({{row.fLabel, Words(row.fWords[0], {row.fWords.begin() + 1, row.fWords.end()}), row.fSays}});
  }
}

}  // namespace qlx::host
