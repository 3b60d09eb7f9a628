// `qlx menu`, `qlx do`, `qlx keys`, `qlx chain`, and commands in scripts of `qlx edit`.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"
#include "cli/AnswerPerson.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

using MenuJson = nlohmann::json;

class QlxMenu : public testing::Test {
 protected:
  std::string Out(const char* inName = "out.gltf") const { return PathText(fFolder / inName); }
  // A command on the example: the words behind the scene, and the output.
  QlxRun Run(const std::string& inCommand, std::vector<std::string> inWords,
             const std::string& inScene = Example("pinned_arm.gltf")) const {
    inWords.insert(inWords.begin(), {inCommand, inScene});
    if (inCommand != "menu") {
      inWords.insert(inWords.end(), {"-o", Out()});
    }
    return RunInProcess(std::move(inWords));
  }
  QlxRun Edit(const std::string& inScript) const {
    fFolder.Write("steps.txt", inScript);
    return Run("edit", {"--script", Out("steps.txt")});
  }
  // What `qlx links` knows of an element's modifiers: "fQLX fPIN ".
  std::string ModifiersOf(const char* inElement) const {
    const MenuJson tree = MenuJson::parse(RunInProcess({"tree", Out(), "--json"}).fOut);
    std::string text;
    for (const MenuJson& element : tree["elements"]) {
      for (const MenuJson& modifier : element["name"] == inElement ? element["modifiers"] : MenuJson::array()) {
        text += modifier["class"].get<std::string>() + " ";
      }
    }
    return text;
  }

  TempFolder fFolder;
};

}  // namespace

TEST_F(QlxMenu, ListsTheCommandsAndWhichAreEnabled) {
  const QlxRun nothing = Run("menu", {});
  ASSERT_EQ(nothing.fCode, kExitDone) << nothing.fErr;
  EXPECT_EQ(nothing.fOut.rfind("disabled  aQLX  Add QLX Link ", 0), 0U) << nothing.fOut;
  EXPECT_NE(nothing.fOut.find("\nenabled   wigl  Wiggle Keyframes "), std::string::npos) << nothing.fOut;
  const MenuJson menu = MenuJson::parse(Run("menu", {"--select", "Hand", "Base", "--json"}).fOut);
  ASSERT_EQ(menu["commands"].size(), 8U);
  for (const MenuJson& command : menu["commands"]) {
    EXPECT_EQ(command["enabled"], true) << command;
  }
  EXPECT_EQ(menu["commands"][1]["name"], "AddPinModifierCommand");
}

TEST_F(QlxMenu, DoesACommandByAnyOfItsNames) {
  for (const char* const name : {"Add Pin", "add pin", "AddPinModifierCommand", "aPIN"}) {
    const QlxRun run = Run("do", {name, "--select", "Base", "Hand"});
    ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
    EXPECT_EQ(run.fOut, Out() + ": Add Pin done\n");
    EXPECT_EQ(ModifiersOf("Base"), "fPIN ") << name;
  }
  const QlxRun run = Run("do", {"Property Explorer...", "--select", "Base", "--answer", "plst=Global Y Position",
                                "nVal=12", "Apply", "cancel"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  const QlxRun value = RunInProcess({"get", Out(), "--element", "Base", "--path", "self,amet,TRAN,OFFS,YCOO"});
  EXPECT_NE(value.fOut.find("12"), std::string::npos) << value.fOut;
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
    ASSERT_EQ(Run("do", row.fDo).fErr, "") << row.fLabel;
    const std::string done = ReadFile(fFolder / "out.gltf");
    const QlxRun run = Run(row.fVerb, row.fPlain);
    EXPECT_EQ(run.fErr, "") << row.fLabel;
    EXPECT_TRUE(ReadFile(fFolder / "out.gltf") == done) << row.fLabel;
  }
  EXPECT_EQ(ModifiersOf("Base") + ModifiersOf("Forearm") + ModifiersOf("Hand"), "fQLX fQLX fPIN fQLX ");
}

TEST_F(QlxMenu, EditsKeys) {
  ASSERT_EQ(Run("keys", {"wiggle", "--select", "Forearm", "--keys", "500", "600"}).fErr, "");
  const std::string untouched = ReadFile(fFolder / "out.gltf");
  const struct {
    const char* fLabel;
    std::vector<std::string> fWords;
    bool fChanges;
  } rows[] = {
      {"no key there", {"delete", "--select", "Forearm", "--frame", "90"}, false},
      {"a key", {"delete", "--select", "Forearm", "--frame", "0"}, true},
      {"of something else", {"delete", "--select", "Hand", "--frame", "0"}, false},
      {"of what is below", {"delete", "--select", "Base", "--frame", "0", "--scope", "subtree"}, true},
      {"in no figure", {"delete", "--select", "Base", "--frame", "0", "--scope", "figure"}, false},
  };
  for (const auto& row : rows) {
    const QlxRun run = Run("keys", row.fWords);
    EXPECT_EQ(run.fCode, kExitDone) << run.fErr;
    EXPECT_EQ(ReadFile(fFolder / "out.gltf") != untouched, row.fChanges) << row.fLabel;
    EXPECT_EQ(run.fErr, row.fWords.back() == "figure" ? "qlx: warning: The selected item is not a figure\n" : "");
  }
}

TEST_F(QlxMenu, CommandsAreActionsOfScriptsThatCanBeTakenBack) {
  ASSERT_EQ(Edit("").fErr, "");
  const std::string untouched = ReadFile(fFolder / "out.gltf");
  const std::string commands[] = {
      "do \"Add Pin\"",
      "do dkey {\nset subt on\nok\n}",
      "do prex {\nchoose plst \"Global X Position\"\nset nVal 7\npress upbn\nok\n}",
      "do chai {\npress abtn {\npick Base\nok\n}\nchoose clst Base\npress achb {\nok\n}\nok\n}",
  };
  for (const std::string& command : commands) {
    ASSERT_EQ(Edit("select Forearm Hand\n" + command).fErr, "") << command;
    const std::string once = ReadFile(fFolder / "out.gltf");
    EXPECT_FALSE(once == untouched) << command;
    ASSERT_EQ(Edit("select Forearm Hand\n" + command + "\nundo").fErr, "") << command;
    EXPECT_TRUE(ReadFile(fFolder / "out.gltf") == untouched) << command;
    ASSERT_EQ(Edit("select Forearm Hand\n" + command + "\nundo\nredo").fErr, "") << command;
    EXPECT_TRUE(ReadFile(fFolder / "out.gltf") == once) << command;
  }
  ASSERT_EQ(Edit("select Forearm\nkeys none\ndo wigl {\nset maxf 900\nok\n}").fErr, "");
  EXPECT_TRUE(ReadFile(fFolder / "out.gltf") == untouched) << "no key is marked";
}

// The joints of a skin are a figure: commands reach all of it from any joint, and lay chains along it.
TEST_F(QlxMenu, FiguresComeFromSkins) {
  const std::string rig = PathText(fFolder.Write("rig.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
    "scenes": [{"nodes": [0, 4]}], "meshes": [{"primitives": [{"attributes": {}}]}],
    "skins": [{"joints": [1, 2, 3]}],
    "nodes": [{"name": "Rig", "children": [1]}, {"name": "Hip", "children": [2, 3, 5]}, {"name": "LegL"},
              {"name": "LegR"}, {"name": "Skin", "mesh": 0, "skin": 0}, {"name": "Hat"}]})"));
  ASSERT_EQ(
      Run("do", {"chai", "--answer", "abtn", "pick=Hip", "ok", "clst=Hip", "achb", "BRal=on", "ok", "ok"}, rig).fErr,
      "");
  EXPECT_EQ(ModifiersOf("Hip") + ModifiersOf("LegL") + ModifiersOf("LegR") + ModifiersOf("Hat"),
            "fQLX fQLX fQLX fQLX ");
  ASSERT_EQ(Run("chain", {"--elements", "Hip,LegL,LegR"}, rig).fErr, "");
  EXPECT_EQ(ModifiersOf("Rig") + ModifiersOf("LegR") + ModifiersOf("Hat"), "fQLX ");

  // Keys at the frames 0 and 10 of each element.
  std::string keyed = rig;
  for (const char* const element : {"Rig", "Hip", "LegL", "LegR", "Hat", "Skin"}) {
    for (const char* const frame : {"0", "10"}) {
      ASSERT_EQ(RunInProcess({"set", keyed, "--element", element, "--path", "self,amet,TRAN,ROTA,RotX", "1", "--frame",
                              frame, "-o", Out("keyed.gltf")})
                    .fErr,
                "");
      keyed = Out("keyed.gltf");
    }
  }
  const struct {
    const char* fSelected;
    const char* fScope;
    std::size_t fChannels;  // that lost no key, of six
    const char* fWarning;
  } rows[] = {
      {"LegL", "selected", 5, ""}, {"Hip", "subtree", 2, ""},
      {"LegL", "figure", 1, ""},   {"Hat", "figure", 1, ""},
      {"Rig", "figure", 1, ""},    {"Skin", "figure", 6, "qlx: warning: The selected item is not a figure\n"},
  };
  for (const auto& row : rows) {
    const QlxRun run =
        Run("keys", {"delete", "--select", row.fSelected, "--frame", "10", "--scope", row.fScope}, keyed);
    EXPECT_EQ(run.fErr, row.fWarning) << row.fSelected;
    const MenuJson scene = MenuJson::parse(ReadFile(fFolder / "out.gltf"));
    std::size_t whole = 0;
    for (const MenuJson& sampler : scene["animations"][0]["samplers"]) {
      whole += scene["accessors"].at(sampler["input"].get<std::size_t>())["count"] == 2 ? 1 : 0;
    }
    EXPECT_EQ(whole, row.fChannels) << row.fSelected << ' ' << row.fScope;
  }
}

TEST(AnswerPerson, GivesFilesInTheirOrder) {
  Diagnostics diagnostics;
  AnswerPerson person({"file=a b=c.txt", "cancel", "file=", "button=2", "ok"}, diagnostics);
  EXPECT_EQ(person.ChooseFile(FileChoice::kOpen), "a b=c.txt");
  EXPECT_EQ(person.ChooseFile(FileChoice::kSave), std::nullopt);
  EXPECT_EQ(person.ChooseFile(FileChoice::kSave), "");
  EXPECT_EQ(person.AnswerAlert({.fText = "Replace it?", .fButtons = {"Yes", "No"}}), 2);
  const auto problem = [](AnswerPerson& ioPerson, FileChoice inChoice) {
    try {
      ioPerson.ChooseFile(inChoice);
    } catch (const UserError& error) {
      return std::string(error.what());
    }
    return std::string();
  };
  EXPECT_EQ(problem(person, FileChoice::kOpen),
            "--answer ok: is no answer to what asks for a file to open: that is file=PATH or cancel");
  EXPECT_THROW(person.CheckThatAllWereAsked(), UserError);
  AnswerPerson silent({}, diagnostics);
  EXPECT_EQ(problem(silent, FileChoice::kSave),
            "--answer: the command asks for a file to save: answer with file=PATH or cancel");
  EXPECT_EQ(silent.AnswerAlert({.fText = "Replace it?", .fButtons = {"Yes", "No"}}), 1);
  EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>{"Replace it?"});
}

TEST_F(QlxMenu, AnErrorSaysWhatThereIsAndWritesNothing) {
  const std::string scene = Example("pinned_arm.gltf");
  const struct {
    const char* fLabel;
    std::vector<std::string> fWords;
    const char* fProblem;
  } rows[] = {
      {"no such command", {"do", "Delete Keyfarmes"}, "no command \"Delete Keyfarmes\"; the closest is \"Delete Keyf"},
      {"nothing like it", {"do", "zzzzzzzzzzzz"}, "; `qlx menu` lists those that there are"},
      {"no such element", {"do", "aPIN", "--select", "Hnad"}, "--select: the scene has no element \"Hnad\"; the clos"},
      {"disabled", {"do", "aPIN"}, "Add Pin: is not enabled for what is selected"},
      {"no such control",
       {"do", "dkey", "--select", "Hand", "--answer", "figo=on"},
       "--answer figo=on: \"Delete keyframes\": there is no control \"figo\"; the closest is \"figu\""},
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
      {"no action",
       {"keys", "dedup", "--select", "Hand"},
       "the action: there is no \"dedup\"; the closest is \"dedupe\""},
      {"no scope",
       {"keys", "delete", "--select", "Hand", "--scope", "x"},
       "--scope: there is no \"x\"; there are figure"},
      {"a scope for wiggle", {"keys", "wiggle", "--scope", "figure"}, "--scope: wiggle works on the selected elements"},
      {"frames for delete", {"keys", "delete", "--forward", "1"}, "delete: --keys, --backward and --forward are for w"},
      {"a link's control",
       {"chain", "--elements", "Hand", "--set-first", "dfrn=3"},
       "--answer dfrn=3: \"Link of a chain\": there is"},
  };
  for (const auto& row : rows) {
    const QlxRun run = Run(row.fWords[0], {row.fWords.begin() + 1, row.fWords.end()});
    EXPECT_EQ(run.fCode, kExitFailed) << row.fLabel;
    EXPECT_NE(run.fErr.find(row.fProblem), std::string::npos) << row.fLabel << ": " << run.fErr;
    EXPECT_TRUE(fFolder.List().empty()) << row.fLabel;
  }
  EXPECT_NE(Edit("select Hnad").fErr.find("line 1: the element: the scene has no element"), std::string::npos);
  EXPECT_NE(Edit("do \"Ad Pin\"").fErr.find("line 1: the command: there is no command \"Ad Pin\"; the closest"),
            std::string::npos);
  EXPECT_NE(Edit("keys some").fErr.find("line 1: the keys: keys are chosen by all"), std::string::npos);
}

}  // namespace qlx::host
