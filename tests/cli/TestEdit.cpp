// `qlx add`, `qlx panel` and `qlx edit`.
#include "QlxRun.h"

namespace qlx::host {

namespace {

class QlxEdit : public QlxTest {
 protected:
  QlxEdit() { fFolder.Write("steps.txt", ""); }
  std::vector<std::string> EditWords(const std::string& inScript) const {
    fFolder.Write("steps.txt", inScript);
    return {"edit", fScene, "--script", At("steps.txt"), "-o", At()};
  }
  // The file that a script makes of the example.
  std::string Edited(const std::string& inScript) const {
    Print(EditWords(inScript));
    return ReadFile(fFolder / "out.gltf");
  }
  // The fields of a modifier in the scene that was written.
  Json Fields(const char* inElement, std::size_t inModifier = 0) const {
    const Json elements = PrintJson({"tree", At()})["elements"];
    for (const Json& element : elements) {
      if (element["name"] == inElement) {
        return element["modifiers"].at(inModifier)["parameters"];
      }
    }
    return {};
  }

  const std::string fScene = Example("pinned_arm.gltf");
};

}  // namespace

TEST_F(QlxEdit, AddsEachModifierAtTheEnd) {
  const char* const kinds[][2] = {{"qlx", "QLXModifier is modifier 1"},
                                  {"pin", "PinModifier is modifier 2"},
                                  {"slider", "SliderModifier is modifier 3"}};
  std::string scene = fScene;  // with a pin
  for (const auto& [word, text] : kinds) {
    ExpectPart(std::string(text) + " of Hand\n", Print({"add", scene, "--to", "Hand", "--modifier", word, "-o", At()}));
    scene = At();
  }
  EXPECT_EQ(Fields("Hand", 1)["fName"], "QLX");
  EXPECT_EQ(Fields("Hand", 3)["fMax"], 100);
}

TEST_F(QlxEdit, PrintsAPanel) {
  const std::string text = Print({"panel", fScene, "--element", "Hand"});
  ExpectPart("PinModifier: modifier 0 of Hand, panel 156 \"Pin\"\n", text);
  ExpectPart("  Active                  actv  [x]          on or off\n", text);
  ExpectPart("  Take the present place  setp               button\n", text);
  Print({"add", fScene, "--to", "Hand", "--modifier", "qlx", "-o", At()});
  const Json panel = PrintJson({"panel", At(), "--element", "Hand", "--modifier", "1"});
  EXPECT_EQ(panel["title"], "QLX");
  for (const Json& control : panel["controls"]) {
    if (control["id"] == "unit") {
      EXPECT_EQ(control["rows"].size(), 8U);
      EXPECT_EQ(control["page"], "Modify");
      EXPECT_EQ(control["value"], -1);
      EXPECT_EQ(control["shown"], false);
    }
    if (control["id"] == "dfrm") {
      EXPECT_EQ(control["range"], Json({0, 100000}));
    }
  }
}

TEST_F(QlxEdit, DoesWhatAScriptSays) {
  const std::string text = Print(EditWords(R"(# A link, from the choice of its values to its name.
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
)"));
  ExpectPart("12 actions of ", text);
  const Json fields = Fields("Forearm");
  EXPECT_EQ(fields["fName"], "Half of it");
  EXPECT_EQ(fields["fModifyValue"], 0.5);
  EXPECT_EQ(fields["fModifyMultiply"], true);
  EXPECT_EQ(fields["fModifyUnit"], 5);
  EXPECT_EQ(fields["fControllerName"], "UpperArm");
  const Json links = PrintJson({"links", At()})["links"];
  EXPECT_TRUE(std::ranges::any_of(links, [](const Json& link) {
    return link["element"] == "Forearm" && link["state"] == "ok" &&
           link["sources"].at(0)["path"] == "self,amet,TRAN,ROTA,RotZ";
  })) << links;
}

TEST_F(QlxEdit, PinsAtAFrameAndTakesModifiersAway) {
  Edited(
      "remove 0 of Hand\nadd pin to Hand\nframe 24\npanel 0 of Hand\npress glob\npress setp\nset actv on\n"
      "add pin to Base\npanel 0 of Base\nset actv on\nreset\n");
  EXPECT_EQ(Fields("Hand")["fPositionSet"], true);
  EXPECT_NE(Fields("Hand")["fPosition"][0], 0);
  EXPECT_EQ(Fields("Base")["fActive"], false) << "the record was reset";
}

TEST_F(QlxEdit, TakesBackEachActionAsOneStep) {
  const std::string set = "panel 0 of Hand\nset posi \"1 2 3\"\n";
  const std::string once = Edited(set);
  const std::string untouched = Edited("");
  const struct {
    const char* fLabel;
    std::string fScript;
    const std::string& fFile;
  } rows[] = {
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
      {"a command without a dialog", "select Hand\ndo \"Add Pin\"\nundo", untouched},
      {"a command, again", "select Hand\ndo prex {\nchoose plst Position\nok\n}\n" + set + "undo\nredo", once},
      {"a chain", "do chai {\npress abtn {\npick Base\nok\n}\nok\n}\nundo", untouched},
      {"keys that go", "select Forearm\ndo dkey {\nset subt on\nok\n}\nundo", untouched},
      {"no key is marked", "select Forearm\nkeys none\ndo wigl {\nset maxf 900\nok\n}", untouched},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(Edited(row.fScript) == row.fFile) << row.fLabel;
  }
}

TEST_F(QlxEdit, AnErrorNamesItsPlaceAndWritesNothing) {
  const struct {
    const char* fScript;
    const char* fProblem;
  } rows[] = {
      {"set mval 1", "line 1: \"set mval 1\" needs an open panel: panel NUMBER of ELEMENT"},
      {"panel 0 of Hand\nremove 0 of Hand\nset actv on", "line 3: \"set actv on\" needs an open panel"},
      {"add pin to Base\npanel 0 of Base\nundo\nset actv on", "line 4: \"set actv on\" needs an open panel"},
      {"reset", "line 1: \"reset\" needs an open panel"},
      {"undo", "line 1: there is nothing to take back"},
      {"panel 0 of Hand\nset posi \"1 2 3\"\nundo\nset glob off\nredo", "line 5: there is nothing to bring again"},
      {"\npanle 0 of Hand", "line 2: there is no action \"panle\"; the closest is \"panel\""},
      {"panel 0 of Hnad", "line 1: the element: the scene has no element \"Hnad\"; the closest is \"Hand\""},
      {"select Hnad", "line 1: the element: the scene has no element"},
      {"do \"Ad Pin\"", "line 1: the command: there is no command \"Ad Pin\"; the closest"},
      {"keys some", "line 1: the keys: keys are chosen by all"},
      {"panel 1 of Hand", "line 1: the modifier: \"Hand\" has no modifier 1: it has 1 modifier, from number 0"},
      {"panel 0 of Base", "line 1: the modifier: \"Base\" has no modifier"},
      {"add sldier to Base", "line 1: the modifier: there is no modifier \"sldier\"; the closest is \"slider\""},
      {"panel first of Hand", "line 1: \"first\" is no number, from 0"},
      {"add pin on Base", "line 1: \"add pin on Base\" lacks its \"to\"; it is written: add qlx|pin|slider to ELEMENT"},
      {"frame", "line 1: \"frame\" is not complete or says too much; it is written: frame NUMBER"},
      {"turn 0 of Hand away", "line 1: \"away\" is neither on nor off"},
      {"frame 99999999", "line 1: the frame: 99999999 is no frame of a scene"},
      {"frame 1 {\nok\n}", "line 2: nothing asks for \"ok\""},
      {"add qlx to Base\npanel 0 of Base\npress ChTL",
       "line 3: \"press ChTL\" opens the dialog \"Rename link\": answer in a block"},
      {"panel 0 of Hand {", "line 1: its { is never closed"},
  };
  for (const auto& row : rows) {
    ExpectProblems({{row.fScript, EditWords(row.fScript), At("steps.txt") + ", " + row.fProblem}});
  }
  ExpectProblems({{"no script",
                   {"edit", fScene, "--script", At("no.txt"), "-o", At()},
                   "qlx: " + At("no.txt") + ": the script cannot be read\n"}});
}

}  // namespace qlx::host
