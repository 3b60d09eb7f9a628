// Every kind of control as a plug-in meets it, through the interfaces.
#include <gtest/gtest.h>

#include <limits>

#include "Describe.h"
#include "MCString.h"
#include "TestMemory.h"

namespace qlx::host::test {
namespace {

constexpr real32 kNaN = std::numeric_limits<real32>::quiet_NaN();
constexpr real32 kInfinity = std::numeric_limits<real32>::infinity();

ControlDescription EveryKind() {
  return Describe(
      ControlKind::kTitle, "titl"_id, "Title",
      {Describe(ControlKind::kGroup, "grup"_id, "Group",
                {Describe(ControlKind::kCheckBox, "chck"_id, "Check"), DescribeRadio("rad1"_id, "One", "grp1"_id),
                 DescribeRadio("rad2"_id, "Two", "grp1"_id), DescribeRadio("othr"_id, "Other", "grp2"_id)}),
       Describe(ControlKind::kLabel, "labl"_id, "Label"), Describe(ControlKind::kInteger, "whol"_id, "Whole"),
       Describe(ControlKind::kNumber, "real"_id, "Real"), Describe(ControlKind::kText, "text"_id, "Text"),
       DescribeRows(ControlKind::kPopup, "popu"_id, "Popup", {"m", "ft"}),
       DescribeNumber(ControlKind::kSlider, "slid"_id, "Slider", -1, 1),
       Describe(ControlKind::kVector, "vect"_id, "Vector"), Describe(ControlKind::kButton, "butt"_id, "Button"),
       DescribeRows(ControlKind::kList, "list"_id, "List", {"a", "b"}), Describe(ControlKind::kTree, "tree"_id, "Tree"),
       DescribePage("pane"_id, "list"_id, 1, {Describe(ControlKind::kCheckBox, "deep"_id, "Deep")})});
}

class ControlsTest : public testing::Test {
 protected:
  TMCCountedPtr<IMFPart> Find(MCID inID) const {
    TMCCountedPtr<IMFPart> part;
    fForm->FindChildPart(part.WriteInto(), inID, 0);
    return part;
  }
  template <class Control>
  TMCCountedPtr<Control> As(MCID inID) const {
    return MCQuery<Control>(Find(inID));
  }
  // As the buffer of each form.
  MCResult Set(MCID inID, const PartValue& inValue) const {
    if (const auto* text = std::get_if<std::string>(&inValue)) {
      const TMCDynamicString buffer(text->data(), text->size());
      return Find(inID)->SetPartValue(static_cast<const TMCString*>(&buffer), "str "_id, 1, 1);
    }
    return std::visit([&](const auto& value) { return Find(inID)->SetPartValue(&value, FormOf(inValue), 1, 1); },
                      inValue);
  }
  std::string Get(MCID inID, MCID inForm) const {
    PartValue value;
    MCResult result = MC_S_OK;
    if (inForm == "str "_id) {
      TMCDynamicString text("as it was");
      result = Find(inID)->GetPartValue(static_cast<TMCString*>(&text), inForm);
      value = TextFrom(text);
    } else {
      std::array<real32, 3> buffer{-7, -7, -7};
      result = Find(inID)->GetPartValue(buffer.data(), inForm);
      value = LoadValue(buffer.data(), inForm).value_or(false);
      EXPECT_TRUE(result == MC_S_OK || buffer == (std::array<real32, 3>{-7, -7, -7})) << "a failure wrote";
    }
    EXPECT_TRUE(result == MC_S_OK || result == MC_E_NOTVALID);
    return result == MC_S_OK ? TextOfValue(value) : "none";
  }

  const qlx::test::TestMemory fMemory;
  TMCCountedPtr<Form> fForm = MakeForm(EveryKind());
};

TEST_F(ControlsTest, ValuesGoInAndOutInTheFormsThatMakeSense) {
  struct Row {
    const char* fLabel;
    MCID fControl;
    PartValue fSet;
    bool fTaken;
    const char* fForms[5];  // then read as 'bool', 'in32', 're32', 'VEC3', 'str '
  };
  const std::array<real32, 3> wild{1, kNaN, 3};
  const Row rows[] = {
      {"a check box, on", "chck"_id, true, true, {"true", "1", "1", "none", "true"}},
      {"a check box, by a number", "chck"_id, int32{-3}, true, {"true", "1", "1", "none", "true"}},
      {"a check box, off by a real", "chck"_id, 0.0f, true, {"false", "0", "0", "none", "false"}},
      {"a check box, no number", "chck"_id, kNaN, false, {"false", "0", "0", "none", "false"}},
      {"a check box, by a word", "chck"_id, std::string("true"), true, {"true", "1", "1", "none", "true"}},
      {"a whole number", "whol"_id, int32{-40}, true, {"true", "-40", "-40", "none", "-40"}},
      {"a whole number, the nearest to a real", "whol"_id, 2.6f, true, {"true", "3", "3", "none", "3"}},
      {"a whole number, one too large", "whol"_id, 3e9f, false, {"true", "3", "3", "none", "3"}},
      {"a whole number, by text", "whol"_id, std::string(" 12 "), true, {"true", "12", "12", "none", "12"}},
      {"a whole number, and more", "whol"_id, std::string("12 m"), false, {"true", "12", "12", "none", "12"}},
      {"a real", "real"_id, 0.25f, true, {"true", "0", "0.25", "none", "0.25"}},
      {"a real, not finite", "real"_id, kInfinity, false, {"true", "0", "0.25", "none", "0.25"}},
      {"a real, by a text too large", "real"_id, std::string("1e39"), false, {"true", "0", "0.25", "none", "0.25"}},
      {"a real, past every whole number", "real"_id, 1e20f, true, {"true", "none", "1e+20", "none", "1e+20"}},
      {"a slider, past its ends: code may", "slid"_id, 5.0f, true, {"true", "5", "5", "none", "5"}},
      {"a text", "text"_id, std::string("abc"), true, {"none", "none", "none", "none", "abc"}},
      {"a text, by a number", "text"_id, int32{4}, true, {"none", "4", "4", "none", "4"}},
      {"a vector", "vect"_id, std::array<real32, 3>{1, 2, 3}, true, {"none", "none", "none", "1 2 3", "1 2 3"}},
      {"a vector, by text", "vect"_id, std::string("4 5 6.5"), true, {"none", "none", "none", "4 5 6.5", "4 5 6.5"}},
      {"a vector, by two", "vect"_id, std::string("4 5"), false, {"none", "none", "none", "4 5 6.5", "4 5 6.5"}},
      {"a vector, not finite", "vect"_id, wild, false, {"none", "none", "none", "4 5 6.5", "4 5 6.5"}},
      {"a popup", "popu"_id, int32{1}, true, {"none", "1", "1", "none", "ft"}},
      {"a popup, past its rows", "popu"_id, int32{2}, false, {"none", "1", "1", "none", "ft"}},
      {"a popup, by its text", "popu"_id, std::string("m"), true, {"none", "0", "0", "none", "m"}},
      {"a popup, by a real", "popu"_id, 1.0f, true, {"none", "1", "1", "none", "ft"}},
      {"a popup, by a text that it lacks", "popu"_id, std::string("in"), false, {"none", "1", "1", "none", "ft"}},
      {"a popup, none", "popu"_id, int32{-1}, true, {"none", "-1", "-1", "none", ""}},
      {"a list", "list"_id, int32{0}, true, {"none", "0", "0", "none", "a"}},
      {"a button", "butt"_id, true, false, {"none", "none", "none", "none", "none"}},
      {"a label", "labl"_id, std::string("x"), false, {"none", "none", "none", "none", "none"}},
      {"a tree", "tree"_id, int32{0}, false, {"none", "none", "none", "none", "none"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fLabel);
    EXPECT_EQ(Set(row.fControl, row.fSet), row.fTaken ? MC_S_OK : MC_E_NOTVALID);
    constexpr MCID kForms[] = {"bool"_id, "in32"_id, "re32"_id, "VEC3"_id, "str "_id};
    for (std::size_t i = 0; i < 5; ++i) {
      EXPECT_EQ(Get(row.fControl, kForms[i]), row.fForms[i]) << i;
    }
  }
  EXPECT_EQ(Find("chck"_id)->GetPartValue(nullptr, "bool"_id), MC_E_INVALIDARG);
  EXPECT_EQ(Find("chck"_id)->SetPartValue(nullptr, "bool"_id, 1, 1), MC_E_INVALIDARG);
  EXPECT_EQ(Get("chck"_id, "none"_id), "none") << "a form that there is not";
}

TEST_F(ControlsTest, ATextThatDoesNotFitEndsWithACharacter) {
  Set("text"_id, std::string(14, 'a') + "\xC3\xA9");
  TMCString15 text;
  ASSERT_EQ(Find("text"_id)->GetPartValue(static_cast<TMCString*>(&text), "str "_id), MC_S_OK);
  EXPECT_EQ(TextFrom(text), std::string(14, 'a'));
}

TEST_F(ControlsTest, OneRadioOfAGroupIsOn) {
  Set("othr"_id, true);
  Set("rad1"_id, true);
  Set("rad2"_id, true);
  EXPECT_EQ(Get("rad1"_id, "bool"_id), "false");
  EXPECT_EQ(Get("rad2"_id, "bool"_id), "true");
  EXPECT_EQ(Get("othr"_id, "bool"_id), "true");
  Set("rad2"_id, false);
  EXPECT_EQ(Get("rad1"_id, "bool"_id), "false") << "code may leave none on";
}

TEST_F(ControlsTest, PartsAnswerTheInterfacesOfTheirKindAlone) {
  const MCID all[] = {"titl"_id, "grup"_id, "chck"_id, "rad1"_id, "labl"_id, "whol"_id, "real"_id, "text"_id,
                      "popu"_id, "slid"_id, "vect"_id, "butt"_id, "list"_id, "tree"_id, "pane"_id};
  for (const MCID id : all) {
    SCOPED_TRACE(id);
    EXPECT_EQ(bool(As<ILabelledControl>(id)), id == "titl"_id || id == "pane"_id);
    EXPECT_EQ(bool(As<ISliderControl>(id)), id == "slid"_id);
    EXPECT_EQ(bool(As<IPopupControl>(id)), id == "popu"_id);
    EXPECT_EQ(bool(As<IListControl>(id)), id == "list"_id);
    EXPECT_EQ(bool(As<IHierarchyList>(id)), id == "tree"_id);
    EXPECT_FALSE(As<IModalDialog>(id));
    EXPECT_TRUE(MCQuery<IMCUnknown>(As<IMFPart>(id)) == MCQuery<IMCUnknown>(Find(id)).Get()) << "one identity";
  }
}

TEST_F(ControlsTest, LabelsRowsAndRangesAreSet) {
  const auto title = As<ILabelledControl>("titl"_id);
  title->SetLabel(TMCString255("New"), 1);
  TMCString255 label;
  title->GetLabel(label);
  EXPECT_EQ(TextFrom(label), "New");

  const auto popup = As<IPopupControl>("popu"_id);
  popup->AddItem(TMCString255("in"));
  EXPECT_EQ(popup->GetItemCount(), 3U);
  EXPECT_EQ(Set("popu"_id, int32{2}), MC_S_OK);

  const auto list = As<IListControl>("list"_id);
  uint32 row = 9;
  EXPECT_FALSE(list->GetCurrentRow(row));
  EXPECT_EQ(row, 9U);
  list->SetCurrentRow(1);
  list->SetCurrentRow(2);  // there is none
  EXPECT_TRUE(list->GetCurrentRow(row));
  EXPECT_EQ(row, 1U);
  list->ClearListRows();
  EXPECT_FALSE(list->GetCurrentRow(row));
  list->AddListRow(TMCString255("c"));
  EXPECT_EQ(list->GetListRowCount(), 1U);
}

TEST_F(ControlsTest, PartsFindEachOtherUpAndDown) {
  TMCCountedPtr<IMFPart> above;
  Find("deep"_id)->GetParentPart(above.WriteInto());
  EXPECT_EQ(above->GetPartId(), "pane"_id);
  Find("titl"_id)->GetParentPart(above.WriteInto());
  EXPECT_TRUE(above == static_cast<IMFPart*>(fForm.Get())) << "the form stands above the described root";
  fForm->GetParentPart(above.WriteInto());
  EXPECT_FALSE(above);
  TMCCountedPtr<IMFPart> below;
  Find("pane"_id)->FindChildPart(below.WriteInto(), "chck"_id, 0);
  EXPECT_FALSE(below) << "beside, not below";
  Find("pane"_id)->FindChildPart(below.WriteInto(), "pane"_id, 0);
  EXPECT_FALSE(below) << "itself";
  fForm->FindChildPart(below.WriteInto(), 0, 0);
  EXPECT_FALSE(below) << "nobody asks for the id 0";
  fForm->FindChildPart(nullptr, "chck"_id, 0);
}

TEST_F(ControlsTest, APartThatSomebodyStillHoldsOutlivesItsForm) {
  const auto deep = Find("deep"_id);
  const auto radio = Find("rad1"_id);
  fForm.Clear();
  TMCCountedPtr<IMFPart> above;
  deep->GetParentPart(above.WriteInto());
  EXPECT_FALSE(above);
  const bool on = true;
  EXPECT_EQ(radio->SetPartValue(&on, "bool"_id, 1, 1), MC_S_OK);
}

}  // namespace
}  // namespace qlx::host::test
