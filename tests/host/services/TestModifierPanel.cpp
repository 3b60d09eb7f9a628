// The panels of the built plug-in: every control goes into its field and every field into its control, and buttons do
// what they should.
#include <fstream>
#include <functional>

#include "PanelTest.h"
#include "model/IDText.h"
#include "ui/Controls.h"
#include "ui/Lists.h"

namespace qlx::host {
namespace {

class PinPanel : public PanelTest {
 protected:
  PinPanel() : PanelTest("fPIN"_id) { Open(); }
};

class SliderPanel : public PanelTest {
 protected:
  SliderPanel() : PanelTest("fSLD"_id) { Open(); }
  const SliderControl& Slider() const { return *static_cast<SliderControl*>(fPanel->GetForm().Find("valu"_id)); }
};

class LinkPanel : public PanelTest {
 protected:
  LinkPanel() : PanelTest("fQLX"_id) { Open(); }
  void ChoosePage(const Part& inControl) {
    for (const Part* part = &inControl; part; part = part->GetParent()) {
      if (part->GetKind() == ControlKind::kPane) {
        Hand(fPanel->GetForm()).Choose("clis", "#" + std::to_string(part->GetDescription().fPaneRow));
      }
    }
  }
};

TEST_F(PinPanel, TakesAPlaceAndHoldsTheElementThere) {
  fHand.SetValue(Channel::kPositionX, 5);
  EXPECT_EQ(Run("press setp\nset actv on"), "");
  EXPECT_EQ(Field("fPosition") + Field("fPositionSet") + Field("fActive"), "5 0 0truetrue");
  EXPECT_EQ(Shown("posi"_id) + Shown("pset"_id), "5 0 0true") << "the block is shown again after the button";
  EXPECT_EQ(Run("set posi \"24 36 6\"\npress adkf"), "");
  EXPECT_EQ(fHand.SampleAt(0)[Channel::kPositionY], 36) << "a key holds a twelfth, and a track counts in feet";
  EXPECT_EQ(Run("set pset on"), "script, line 1: pset (\"A place was taken\"): is shown only and cannot be changed");
  SetField("fGlobal", true);
  EXPECT_EQ(Shown("glob"_id), "false");
  fPanel->Refresh();
  EXPECT_EQ(Shown("glob"_id), "true");
}

// What a person may enter for a field of each type: something else than what stands there.
std::string OtherValue(const Part& inControl) {
  switch (inControl.GetValueForm()) {
    case "bool"_id:
      return std::get<bool>(inControl.GetValue()) ? "off" : "on";
    case "in32"_id:
      return inControl.GetKind() == ControlKind::kPopup ? "#3" : "17";
    case "re32"_id:
      return "0.75";
    case "VEC3"_id:
      return "1 2 3";
    default:
      return "Arm of " + TextFromID(inControl.GetDescription().fID);
  }
}

void ExpectThatEveryControlIsExchanged(Host& ioHost, PluginModifier& ioModifier, ModifierPanel& ioPanel,
                                       const std::function<void(const Part&)>& inShow) {
  std::size_t exchanged = 0;
  const ParameterMapDescription& map = *ioHost.GetCatalog()->FindMapDescription(ioModifier.GetModifierClass());
  for (const FieldDescription& row : map.fFields) {
    SCOPED_TRACE(row.fName);
    Part* const control = ioPanel.GetForm().Find(row.fControl);
    if (!control) {
      EXPECT_EQ(row.fControl, 0U);
      continue;
    }
    const ParameterField& field = *ioModifier.GetParameterMap()->Find(row.fName);
    const ParameterValue before = ioModifier.GetField(field);
    EXPECT_EQ(control->GetValue(), before) << "shown as the panel opens";
    inShow(*control);
    if (!control->GetDescription().fReadOnly) {
      const bool wasOn = control->GetKind() == ControlKind::kRadio && std::get<bool>(before);
      const std::string entered = wasOn ? "on" : OtherValue(*control);
      Hand(ioPanel.GetForm()).Set(TextFromID(row.fControl), entered);
      EXPECT_TRUE(wasOn || ioModifier.GetField(field) != before) << "entered";
      EXPECT_EQ(control->GetValue(), ioModifier.GetField(field));
    }
    EXPECT_TRUE(ioModifier.SetField(field, before));
    ioPanel.Refresh();
    EXPECT_EQ(control->GetValue(), before) << "shown again";
    ++exchanged;
  }
  EXPECT_GT(exchanged, 3U);
}

TEST_F(PinPanel, EveryControlIsExchanged) {
  ExpectThatEveryControlIsExchanged(fHost, *fModifier, *fPanel, [](const Part&) {});
}

TEST_F(SliderPanel, EveryControlIsExchanged) {
  ExpectThatEveryControlIsExchanged(fHost, *fModifier, *fPanel, [](const Part&) {});
}

TEST_F(SliderPanel, HasTheRangeAndTheLabelOfItsFields) {
  EXPECT_EQ(Slider().GetLabel(), "<not set>");
  EXPECT_EQ(Slider().GetMinimum(), -100);
  EXPECT_EQ(Run("set valu 250"), "script, line 1: valu (\"<not set>\"): 250 is out of its range, -100 to 100");
  EXPECT_EQ(Run("set vmax 300\nset vmin -5\nset valu 250"), "") << "the ends move with their fields";
  EXPECT_EQ(Slider().GetMinimum(), -5);
  EXPECT_EQ(Field("fValue") + " " + Field("fMax"), "250 300");
  fScene->Evaluate(0);
  EXPECT_EQ(fHand.GetValue(Channel::kPositionX), 0) << "no value is chosen yet";
}

TEST_F(SliderPanel, MovesTheValueThatWasChosen) {
  EXPECT_EQ(Run("press sbtn {\nchoose plst \"Position X\"\ncancel\n}\npress sbtn {\nok\n}"), "");
  EXPECT_EQ(Field("fLabel") + Field("fPath"), "<not set>");
  EXPECT_EQ(Run("press sbtn {\nchoose plst \"Hand > Position X\"\nok\n}\nset valu 12"), "");
  EXPECT_EQ(Field("fPath"), "self,amet,TRAN,OFFS,XCOO");
  EXPECT_EQ(Field("fLabel"), Shown("labl"_id));
  EXPECT_EQ(Slider().GetLabel(), Field("fLabel"));
  EXPECT_EQ(fPanel->GetForm().Find("titl"_id)->GetLabel(), Field("fLabel"));
  fScene->Evaluate(0);
  EXPECT_EQ(fHand.GetValue(Channel::kPositionX), 12);
}

TEST_F(LinkPanel, EveryControlIsExchanged) {
  ExpectThatEveryControlIsExchanged(fHost, *fModifier, *fPanel, [this](const Part& part) { ChoosePage(part); });
}

TEST_F(LinkPanel, OpensWithItsListsItsTitleAndItsFirstPage) {
  const Form& form = fPanel->GetForm();
  EXPECT_EQ(static_cast<RowsControl*>(form.Find("clis"_id))->GetRows(),
            (std::vector<std::string>{"  Basic", "  Advanced", "  Control", "  Modify", "  Time Based", "  Global"}));
  EXPECT_EQ(Shown("clis"_id), "0");
  const std::vector<std::string> units{"<none>", "cm", "in", "ft", "m", "degrees", "radians", "percent"};
  EXPECT_EQ(static_cast<RowsControl*>(form.Find("unit"_id))->GetRows(), units);
  EXPECT_EQ(static_cast<RowsControl*>(form.Find("UnLm"_id))->GetRows(), units);
  EXPECT_EQ(form.Find("titl"_id)->GetLabel(), "QLX");
  EXPECT_TRUE(form.IsShown(*form.Find("cset"_id)));
  EXPECT_FALSE(form.IsShown(*form.Find("unit"_id)));
  SetField("fModifyUnit", int32{99});
  fPanel->Refresh();
  EXPECT_EQ(Shown("unit"_id), "-1") << "a unit that the list lacks";
  Open();
  EXPECT_EQ(static_cast<RowsControl*>(fPanel->GetForm().Find("unit"_id))->GetRows(), units) << "filled once a panel";
}

TEST_F(LinkPanel, OneOfAGroupIsOnInTheBlockToo) {
  EXPECT_EQ(Run("press cmul"), "");
  EXPECT_EQ(Field("fCombineReplace") + Field("fCombineMultiply"), "falsetrue");
  SetField("fCombineAdd", true);  // two, as a file may have: the first is the one that counts
  fPanel->Refresh();
  EXPECT_EQ(Shown("cadd"_id) + Shown("cmul"_id), "truefalse");
  EXPECT_EQ(Run("press cdiv"), "");
  EXPECT_EQ(Field("fCombineAdd") + Field("fCombineMultiply") + Field("fCombineDivide"), "falsefalsetrue");
}

TEST_F(LinkPanel, ALinkIsRenamedUnlessThePersonCancels) {
  EXPECT_EQ(Run("press ChTL {\nset ttlt Elbow\ncancel\n}"), "");
  EXPECT_EQ(Field("fName") + fPanel->GetForm().Find("titl"_id)->GetLabel(), "QLXQLX");
  EXPECT_EQ(Run("press ChTL {\nset ttlt Elbow\nok\n}"), "");
  EXPECT_EQ(Field("fName") + Shown("name"_id) + fPanel->GetForm().Find("titl"_id)->GetLabel(), "ElbowElbowElbow");
  EXPECT_EQ(Run("set name " + std::string(256, 'x')),
            "script, line 1: name (\"Name\"): the text has 256 bytes, and 255 is the most");
  EXPECT_EQ(Field("fName") + Shown("name"_id), "ElbowElbow");
}

TEST_F(LinkPanel, ObjectsAndValuesArePicked) {
  EXPECT_EQ(Run("press slso {\npick Arm\n}\nchoose clis Control\npress bosl {\npick Leg\n}\nchoose clis Basic\n"
                "press slsp {\nchoose plst \"Hand > Position X\"\nok\n}\n"
                "press slcp {\nchoose plst \"Arm > Position Y\"\nok\n}"),
            "");
  EXPECT_EQ(Field("fControllerName") + Field("fSourceName") + Shown("cnam"_id), "ArmLegArm");
  EXPECT_EQ(Field("fTargetLabel") + Field("fControllerLabel"), "Position X (XCOO) [qfix]Position Y (YCOO) [qfix]");
  const std::string tokens = *fModifier->WritePrivate();
  EXPECT_NE(tokens.find("self,amet,TRAN,OFFS,XCOO"), std::string::npos) << tokens;
  EXPECT_EQ(Run("press slsp {\nchoose plst \"Position XX\"\nok\n}"),
            "script, line 2: plst (\"Values\"): it has no row \"Position XX\"; the closest are \"Position X\", "
            "\"Position Y\" and \"Position Z\"");
}

TEST_F(LinkPanel, CurvesAreEdited) {
  const std::string before = *fModifier->WritePrivate();
  for (const char* const change :
       {"sgrw {\nset gmin 0.375\npress gcub", "sdcy {\nset dmax 0.375\npress dqua", "sosc {\nset ospd 0.375"}) {
    const std::string press = "choose clis \"Time Based\"\npress " + std::string(change);
    EXPECT_EQ(Run(press + "\ncancel\n}"), "");
    EXPECT_EQ(*fModifier->WritePrivate(), before) << change;
    EXPECT_EQ(Run(press + "\nok\n}"), "");
    EXPECT_NE(fModifier->WritePrivate()->find("0.375"), std::string::npos) << change;
    EXPECT_FALSE(fModifier->ReadPrivate(before));
  }
}

TEST_F(LinkPanel, PresetsAreSavedAndLoaded) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() / "qlx-panel-preset.txt";
  std::filesystem::remove(file);
  const std::string name = "file qlx-panel-preset.txt\n}";
  EXPECT_EQ(Run("choose clis Global\npress SAVE {\ncancel\n}"), "");
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(Run("choose clis Basic\npress cdiv\nchoose clis Global\npress SAVE {\n" + name), "");
  EXPECT_EQ(Run("choose clis Basic\npress cadd\nchoose clis Global\npress SAVF"), "") << "where it was saved last";
  EXPECT_EQ(Run("choose clis Basic\npress cset\nchoose clis Global\npress LOAD {\n" + name), "");
  EXPECT_EQ(Field("fCombineAdd") + Shown("cadd"_id) + Shown("cset"_id), "truetruefalse");
  std::ofstream(file) << "{ broken";
  const std::string problem = Run("press LOAD {\n" + name);
  EXPECT_NE(problem.find("shows an alert: "), std::string::npos) << problem;
  EXPECT_EQ(Run("press LOAD {\nfile qlx-panel-preset.txt\nanswer OK\n}"), "");
  EXPECT_EQ(Field("fCombineAdd"), "true") << "a damaged preset changes nothing";
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace qlx::host
