// `qlx add`, `qlx panel` and `qlx edit`.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {

namespace {

using EditJson = nlohmann::json;

class QlxEdit : public testing::Test {
 protected:
  std::string At(const char* inName) const { return PathText(fFolder / inName); }
  QlxRun Edit(const std::string& inScript, const std::string& inScene = Example("pinned_arm.gltf")) const {
    fFolder.Write("steps.txt", inScript);
    return RunInProcess({"edit", inScene, "--script", At("steps.txt"), "-o", At("out.gltf")});
  }
  // The fields of a modifier in a scene that was written.
  EditJson Fields(const char* inElement, std::size_t inModifier = 0, const char* inFile = "out.gltf") const {
    const EditJson tree = EditJson::parse(RunInProcess({"tree", At(inFile), "--json"}).fOut);
    for (const EditJson& element : tree["elements"]) {
      if (element["name"] == inElement) {
        return element["modifiers"].at(inModifier)["parameters"];
      }
    }
    return {};
  }

  TempFolder fFolder;
};

}  // namespace

TEST_F(QlxEdit, AddsEachModifierAtTheEnd) {
  const char* const kinds[][2] = {{"qlx", "QLXModifier"}, {"pin", "PinModifier"}, {"slider", "SliderModifier"}};
  std::string scene = Example("pinned_arm.gltf");
  int number = 1;  // behind the pin of the example
  for (const auto& [word, name] : kinds) {
    const QlxRun run = RunInProcess({"add", scene, "--to", "Hand", "--modifier", word, "-o", At("out.gltf")});
    ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
    EXPECT_NE(run.fOut.find(std::string(name) + " is modifier " + std::to_string(number++) + " of Hand\n"),
              std::string::npos)
        << run.fOut;
    scene = At("out.gltf");
  }
  EXPECT_EQ(Fields("Hand", 1)["fName"], "QLX");
  EXPECT_EQ(Fields("Hand", 3)["fMax"], 100);
}

TEST_F(QlxEdit, PrintsAPanel) {
  const std::string scene = Example("pinned_arm.gltf");
  const QlxRun text = RunInProcess({"panel", scene, "--element", "Hand"});
  ASSERT_EQ(text.fCode, kExitDone) << text.fErr;
  EXPECT_NE(text.fOut.find("PinModifier: modifier 0 of Hand, panel 156 \"Pin\"\n"), std::string::npos) << text.fOut;
  EXPECT_NE(text.fOut.find("  Active                  actv  [x]          on or off\n"), std::string::npos) << text.fOut;
  EXPECT_NE(text.fOut.find("  Take the present place  setp               button\n"), std::string::npos) << text.fOut;

  ASSERT_EQ(RunInProcess({"add", scene, "--to", "Hand", "--modifier", "qlx", "-o", At("out.gltf")}).fCode, kExitDone);
  const QlxRun run = RunInProcess({"panel", At("out.gltf"), "--element", "Hand", "--modifier", "1", "--json"});
  const EditJson panel = EditJson::parse(run.fOut);
  EXPECT_EQ(panel["title"], "QLX");
  for (const EditJson& control : panel["controls"]) {
    if (control["id"] == "unit") {
      EXPECT_EQ(control["rows"].size(), 8U);
      EXPECT_EQ(control["page"], "Modify");
      EXPECT_EQ(control["value"], -1);
      EXPECT_EQ(control["shown"], false);
    }
    if (control["id"] == "dfrm") {
      EXPECT_EQ(control["range"], EditJson({0, 100000}));
    }
  }
}

TEST_F(QlxEdit, DoesWhatAScriptSays) {
  const QlxRun run = Edit(R"(# A link, from the choice of its values to its name.
add qlx to Forearm
panel 0 of Forearm
press slsp {
  choose plst "Forearm > Rotation X"   # of this element
  ok
}
press slso {
  pick UpperArm
}
press slcp {
  choose plst "UpperArm > Rotation Z"
  ok
}
set attr on
choose Settings Modify
press Multiply
set mval 0.5
set unit degrees
press ChTL {
  set ttlt "Half of it"
  ok
}
turn 0 of Hand off
)");
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_EQ(run.fErr, "");
  EXPECT_NE(run.fOut.find("12 actions of "), std::string::npos) << run.fOut;
  const EditJson fields = Fields("Forearm");
  EXPECT_EQ(fields["fName"], "Half of it");
  EXPECT_EQ(fields["fModifyValue"], 0.5);
  EXPECT_EQ(fields["fModifyMultiply"], true);
  EXPECT_EQ(fields["fModifyAdd"], false);
  EXPECT_EQ(fields["fModifyUnit"], 5);
  EXPECT_EQ(fields["fControllerName"], "UpperArm");
  const EditJson links = EditJson::parse(RunInProcess({"links", At("out.gltf"), "--json"}).fOut);
  bool found = false;
  for (const EditJson& link : links["links"]) {
    found = found || (link["element"] == "Forearm" && link["state"] == "ok" &&
                      link["sources"].at(0)["path"] == "self,amet,TRAN,ROTA,RotZ");
  }
  EXPECT_TRUE(found) << links;
}

TEST_F(QlxEdit, PinsAtAFrameAndTakesModifiersAway) {
  const QlxRun run = Edit(
      "remove 0 of Hand\nadd pin to Hand\nframe 24\npanel 0 of Hand\npress glob\npress setp\nset actv on\n"
      "add pin to Base\npanel 0 of Base\nset actv on\nreset\n");
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_EQ(Fields("Hand")["fPositionSet"], true);
  EXPECT_NE(Fields("Hand")["fPosition"][0], 0);
  EXPECT_EQ(Fields("Base")["fActive"], false) << "the record was reset";
}

TEST_F(QlxEdit, TakesBackEachActionAsOneStep) {
  const std::string set = "panel 0 of Hand\nset posi \"1 2 3\"\n";
  ASSERT_EQ(Edit(set).fCode, kExitDone);
  const std::string once = ReadFile(fFolder / "out.gltf");
  ASSERT_EQ(Edit("").fCode, kExitDone);
  const std::string untouched = ReadFile(fFolder / "out.gltf");
  struct Row {
    const char* fLabel;
    std::string fScript;
    const std::string& fFile;
  };
  const Row rows[] = {
      {"a value", set + "undo", untouched},
      {"and again", set + "undo\nredo", once},
      {"what looks at things is no step", set + "frame 12\npanel 0 of Hand\nundo", untouched},
      {"a dialog is one step", "add qlx to Hand\npanel 1 of Hand\npress ChTL {\nset ttlt A\nok\n}\nundo\nundo",
       untouched},
      {"a preset",
       set + "add qlx to Hand\npanel 1 of Hand\nchoose clis Global\npress SAVE {\nfile p.txt\n}\nchoose clis Basic\n"
             "press cadd\nchoose clis Global\npress LOAD {\nfile p.txt\n}\nundo\nundo\nundo",
       once},
      {"a modifier that goes", "remove 0 of Hand\nundo", untouched},
      {"a switch", "turn 0 of Hand off\nundo", untouched},
  };
  for (const Row& row : rows) {
    const QlxRun run = Edit(row.fScript);
    EXPECT_EQ(run.fCode, kExitDone) << row.fLabel << ": " << run.fErr;
    EXPECT_TRUE(ReadFile(fFolder / "out.gltf") == row.fFile) << row.fLabel;
  }
  EXPECT_NE(Edit("undo").fErr.find("line 1: there is nothing to take back"), std::string::npos);
  EXPECT_NE(Edit(set + "undo\nset glob off\nredo").fErr.find("line 5: there is nothing to bring again"),
            std::string::npos);
  EXPECT_NE(Edit("add pin to Base\npanel 0 of Base\nundo\nset actv on")
                .fErr.find("line 4: \"set actv on\" needs an open panel"),
            std::string::npos);
}

TEST_F(QlxEdit, AnErrorNamesItsPlaceAndWritesNothing) {
  struct Row {
    const char* fLabel;
    const char* fScript;
    const char* fProblem;
  };
  const Row rows[] = {
      {"no panel", "set mval 1", "line 1: \"set mval 1\" needs an open panel: panel NUMBER of ELEMENT"},
      {"its panel went", "panel 0 of Hand\nremove 0 of Hand\nset actv on",
       "line 3: \"set actv on\" needs an open panel"},
      {"reset of nothing", "reset", "line 1: \"reset\" needs an open panel"},
      {"no such action", "\npanle 0 of Hand", "line 2: there is no action \"panle\"; the closest is \"panel\""},
      {"no such element", "panel 0 of Hnad",
       "line 1: the element: the scene has no element \"Hnad\"; the closest is \"Hand\""},
      {"no such modifier", "panel 1 of Hand",
       "line 1: the modifier: \"Hand\" has no modifier 1: it has 1 modifier, from number 0"},
      {"none at all", "panel 0 of Base", "line 1: the modifier: \"Base\" has no modifier"},
      {"no such kind", "add sldier to Base",
       "line 1: the modifier: there is no modifier \"sldier\"; the closest is \"slider\""},
      {"no number", "panel first of Hand", "line 1: \"first\" is no number, from 0"},
      {"an odd preposition", "add pin on Base",
       "line 1: \"add pin on Base\" lacks its \"to\"; it is written: add qlx|pin|slider to ELEMENT"},
      {"a word is missing", "frame", "line 1: \"frame\" is not complete or says too much; it is written: frame NUMBER"},
      {"neither on nor off", "turn 0 of Hand away", "line 1: \"away\" is neither on nor off"},
      {"no such frame", "frame 99999999", "line 1: the frame: 99999999 is no frame of a scene"},
      {"a block for nothing", "frame 1 {\nok\n}", "line 2: nothing asks for \"ok\""},
      {"a dialog that nobody answers", "add qlx to Base\npanel 0 of Base\npress ChTL",
       "line 3: \"press ChTL\" opens the dialog \"Rename link\": answer in a block"},
      {"a wrong word in a dialog", "add qlx to Base\npanel 0 of Base\npress ChTL {\nset titl x\nok\n}",
       "line 4: \"Rename link\": there is no control \"titl\"; it has \"ttlt\", \"Name\""},
      {"a preset that is not there",
       "add qlx to Base\npanel 0 of Base\nchoose clis Global\npress LOAD {\nfile none.txt\n}",
       "none.txt: the preset cannot be opened"},
      {"not a script", "panel 0 of Hand {", "line 1: its { is never closed"},
  };
  for (const Row& row : rows) {
    const QlxRun run = Edit(row.fScript);
    EXPECT_EQ(run.fCode, kExitFailed) << row.fLabel;
    EXPECT_EQ(run.fErr.rfind("qlx: " + At("steps.txt") + ", line ", 0), 0U) << row.fLabel << ": " << run.fErr;
    EXPECT_NE(run.fErr.find(row.fProblem), std::string::npos) << row.fLabel << ": " << run.fErr;
    EXPECT_EQ(fFolder.List(), std::vector<std::string>{"steps.txt"}) << row.fLabel;
  }
  const QlxRun run = RunInProcess({"edit", Example("pinned_arm.gltf"), "--script", At("no.txt"), "-o", At("out.gltf")});
  EXPECT_EQ(run.fErr, "qlx: " + At("no.txt") + ": the script cannot be read\n");
}

TEST_F(QlxEdit, EveryCommandSaysTheClosestElements) {
  const std::string scene = Example("pinned_arm.gltf");
  const std::vector<std::string> commands[] = {
      {"add", scene, "--to", "Hnad", "--modifier", "pin", "-o", At("out.gltf")},
      {"panel", scene, "--element", "Hnad"},
      {"get", scene, "--element", "Hnad", "--path", "self,amet,TRAN,OFFS,YCOO"},
      {"set", scene, "--element", "Hnad", "--path", "self,amet,TRAN,OFFS,YCOO", "1", "-o", At("out.gltf")},
      {"bake", scene, "-o", At("out.gltf"), "--plot", At("out.svg"), "--plot-also", "Hnad"},
  };
  for (const auto& words : commands) {
    const QlxRun run = RunInProcess(words);
    EXPECT_EQ(run.fCode, kExitFailed) << words[0];
    EXPECT_NE(run.fErr.find("the scene has no element \"Hnad\"; the closest is \"Hand\""), std::string::npos)
        << words[0] << ": " << run.fErr;
  }
  EXPECT_TRUE(fFolder.List().empty());
}

}  // namespace qlx::host
