// What a person can do, and what a person is told instead.
#include <gtest/gtest.h>

#include <limits>

#include "Describe.h"
#include "MCString.h"
#include "ProblemOf.h"
#include "model/Diagnostics.h"
#include "ui/Hand.h"
#include "ui/Lists.h"

namespace qlx::host::test {
namespace {

ControlDescription Shown(ControlDescription inControl) {
  inControl.fReadOnly = true;
  return inControl;
}

ControlDescription Panel() {
  return Describe(
      ControlKind::kTitle, 0, "Link",
      {Describe(ControlKind::kList, "clis"_id, "Category"),
       DescribePage(
           "cps0"_id, "clis"_id, 0,
           {DescribeRadio("madd"_id, "Add", "modi"_id), DescribeRadio("mmul"_id, "Multiply", "modi"_id),
            Describe(ControlKind::kNumber, "mval"_id, "Value"), Shown(Describe(ControlKind::kText, "name"_id, "Name")),
            Describe(ControlKind::kButton, "LOAD"_id, "Load...")}),
       DescribePage(
           "cps1"_id, "clis"_id, 1,
           {DescribeRadio("cadd"_id, "Add", "comb"_id), DescribeRadio("csub"_id, "Subtract", "comb"_id),
            DescribeNumber(ControlKind::kNumber, "perc"_id, "Percent", 0, 100),
            Describe(ControlKind::kInteger, "fram"_id, "Frame"), Describe(ControlKind::kCheckBox, "on  "_id, "On"),
            DescribeRows(ControlKind::kPopup, "unit"_id, "Unit", {"<none>", "cm", "in", "in"}),
            Describe(ControlKind::kVector, "posi"_id, "Position")})});
}

class HandTest : public testing::Test {
 protected:
  HandTest() {
    for (const char* row : {"  Basic", "  Advanced", "  Lost"}) {
      static_cast<ListControl*>(fForm->Find("clis"_id))->AddListRow(TMCString255(row));
    }
    fForm->ShowFirstPages();
    fForm->SetListener(&fListener);
  }
  ~HandTest() override { fForm->SetListener(nullptr); }

  std::string Value(MCID inID) const { return TextOfValue(fForm->Find(inID)->GetValue()); }

  struct Refused {
    const char* fLabel;
    char fOperation;  // set, press, choose
    const char* fControl;
    const char* fValue;
    const char* fProblem;
  };

  // Nothing changes, and nobody is told.
  void ExpectRefused(const std::vector<Refused>& inRows) {
    const auto all = [&] {
      std::string text;
      for (const MCID id : {"clis"_id, "madd"_id, "mval"_id, "perc"_id, "fram"_id, "unit"_id, "posi"_id, "cadd"_id}) {
        text += Value(id) + "|";
      }
      return text;
    };
    const Hand hand(*fForm);
    const std::string before = all();
    fListener.fTold.clear();
    for (const Refused& row : inRows) {
      const std::string problem = qlx::test::ProblemOf([&] {
        row.fOperation == 's'   ? hand.Set(row.fControl, row.fValue)
        : row.fOperation == 'p' ? hand.Press(row.fControl)
                                : hand.Choose(row.fControl, row.fValue);
      });
      EXPECT_EQ(problem, row.fProblem) << row.fLabel;
      EXPECT_EQ(all(), before) << row.fLabel;
      EXPECT_TRUE(fListener.fTold.empty()) << row.fLabel;
    }
  }

  TMCCountedPtr<Form> fForm = MakeForm(Panel());
  NotingListener fListener;
};

constexpr const char* kPanel =
    "\"Form\": there is no control \"cps0\"; it has \"clis\", \"Category\", \"madd\", \"Add\", \"mmul\", \"Multiply\", "
    "\"mval\", \"Value\", \"name\", \"Name\", \"LOAD\", \"Load...\"";

TEST_F(HandTest, WhatAPersonDoesIsDoneAndTold) {
  const Hand hand(*fForm);
  hand.Press("madd");
  hand.Press("Multiply");
  hand.Set("Value", "2.5");
  hand.Press("LOAD");
  EXPECT_EQ(Value("madd"_id) + Value("mmul"_id) + Value("mval"_id), "falsetrue2.5");
  hand.Choose("clis", "Advanced");
  hand.Set("Add", "on");  // the one that shows
  hand.Set("perc", "100");
  hand.Set("fram", "-3");
  hand.Press("on");
  hand.Set("unit", "cm");
  hand.Choose("unit", "#3");
  hand.Set("posi", "1 2 3");
  EXPECT_EQ(
      Value("cadd"_id) + Value("perc"_id) + Value("fram"_id) + Value("on  "_id) + Value("unit"_id) + Value("posi"_id),
      "true100-3true31 2 3");
  const std::vector<std::string> told{"5 madd", "5 mmul", "5 mval", "5 LOAD", "5 clis", "5 cadd",
                                      "5 perc", "5 fram", "5 on  ", "5 unit", "5 unit", "5 posi"};
  EXPECT_EQ(fListener.fTold, told);
}

TEST_F(HandTest, WhatAPersonCannotDoIsRefusedByName) {
  ExpectRefused({
      {"hidden", 's', "perc", "1",
       "perc (\"Percent\"): is on a page that is not open: it shows with \"Advanced\" of clis (\"Category\")"},
      {"read-only", 's', "name", "x", "name (\"Name\"): is shown only and cannot be changed"},
      {"mistyped", 's', "Valeu", "1", "\"Form\": there is no control \"Valeu\"; the closest is \"Value\""},
      {"a page", 's', "cps0", "1", kPanel},
      {"not a number", 's', "mval", "much", "mval (\"Value\"): \"much\" is not a number"},
      {"NaN", 's', "mval", "nan", "mval (\"Value\"): \"nan\" is not a number"},
      {"a radio turned off", 's', "madd", "off", "madd (\"Add\"): one of several is turned off by turning another on"},
      {"a button set", 's', "LOAD", "1", "LOAD (\"Load...\"): is a button, which has no value: it is pressed"},
      {"a number pressed", 'p', "mval", "", "mval (\"Value\"): is no button: it is set or chosen from"},
      {"a row of a number", 'c', "mval", "1", "mval (\"Value\"): has no rows to choose from"},
      {"no such row", 'c', "clis", "Advancd",
       "clis (\"Category\"): it has no row \"Advancd\"; the closest is \"Advanced\""},
      {"no such number", 'c', "clis", "#3", "clis (\"Category\"): it has no row #3: its rows are #0 to #2"},
  });
  Hand(*fForm).Choose("clis", "Advanced");
  ExpectRefused({
      {"below its range", 's', "perc", "-0.5", "perc (\"Percent\"): -0.5 is out of its range, 0 to 100"},
      {"above its range", 's', "perc", "101", "perc (\"Percent\"): 101 is out of its range, 0 to 100"},
      {"not whole", 's', "fram", "1.5", "fram (\"Frame\"): \"1.5\" is not a whole number"},
      {"neither on nor off", 's', "on", "1", "on (\"On\"): \"1\" is neither on nor off"},
      {"two rows alike", 's', "unit", "in", "unit (\"Unit\"): 2 rows are \"in\": choose one by its number, as in #2"},
      {"no such row, none near", 's', "unit", "parsec",
       "unit (\"Unit\"): it has no row \"parsec\"; it has \"<none>\", \"cm\", \"in\", \"in\""},
      {"two numbers for a vector", 's', "posi", "1 2",
       "posi (\"Position\"): \"1 2\" is not three numbers, as in \"1 2 3\""},
  });
  Hand(*fForm).Choose("clis", "Lost");
  ExpectRefused({{"two hidden ones alike", 'p', "Add", "",
                  "\"Add\": 2 controls have this label; name one by its id: \"madd\", \"cadd\""}});
}

TEST_F(HandTest, PagesWithoutTheirListAreShown) {
  const auto form = MakeForm(DescribePage("cps0"_id, "gone"_id, 4, {Describe(ControlKind::kCheckBox, "chck"_id, "C")}));
  form->ShowFirstPages();
  Hand(*form).Press("chck");
  EXPECT_EQ(TextOfValue(form->Find("chck"_id)->GetValue()), "true") << "and nobody listens";
}

TEST_F(HandTest, ASliderHasTheRangeAndLabelThatCodeGaveIt) {
  const auto form = MakeForm(DescribeNumber(ControlKind::kSlider, "valu"_id, "Value", 0, 1));
  const Hand hand(*form);
  const auto slider = MCQuery<ISliderControl>(form->Find("valu"_id));
  EXPECT_THROW(hand.Set("valu", "2"), UserError);
  slider->SetSliderRange(100, -100, 1);
  slider->SetSliderRange(std::numeric_limits<real32>::quiet_NaN(), 5, 1);  // leaves it
  slider->SetSliderLabel(TMCString255("Rotation X"));
  hand.Set("Rotation X", "-100");
  EXPECT_THROW(hand.Set("Rotation X", "-101"), UserError);
  EXPECT_EQ(TextOfValue(form->Find("valu"_id)->GetValue()), "-100");
}

}  // namespace
}  // namespace qlx::host::test
