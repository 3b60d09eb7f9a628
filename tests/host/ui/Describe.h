// Descriptions of forms, made by hand.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "model/IDText.h"
#include "ui/Form.h"

namespace qlx::host::test {

inline ControlDescription Describe(ControlKind inKind, MCID inID, std::string inLabel,
                                   std::vector<ControlDescription> inChildren = {}) {
  ControlDescription control;
  control.fKind = inKind;
  control.fID = inID;
  control.fLabel = std::move(inLabel);
  control.fChildren = std::move(inChildren);
  return control;
}

inline ControlDescription DescribeNumber(ControlKind inKind, MCID inID, std::string inLabel, real32 inMinimum,
                                         real32 inMaximum) {
  ControlDescription control = Describe(inKind, inID, std::move(inLabel));
  control.fMinimum = inMinimum;
  control.fMaximum = inMaximum;
  return control;
}

inline ControlDescription DescribeRadio(MCID inID, std::string inLabel, MCID inGroup) {
  ControlDescription control = Describe(ControlKind::kRadio, inID, std::move(inLabel));
  control.fRadioGroup = inGroup;
  return control;
}

inline ControlDescription DescribeRows(ControlKind inKind, MCID inID, std::string inLabel,
                                       std::vector<std::string> inItems) {
  ControlDescription control = Describe(inKind, inID, std::move(inLabel));
  control.fItems = std::move(inItems);
  return control;
}

inline ControlDescription DescribePage(MCID inID, MCID inList, int16 inRow,
                                       std::vector<ControlDescription> inChildren) {
  ControlDescription control = Describe(ControlKind::kPane, inID, "", std::move(inChildren));
  control.fPaneList = inList;
  control.fPaneRow = inRow;
  return control;
}

inline TMCCountedPtr<Form> MakeForm(ControlDescription inRoot, uint32 inMessage = kPanelControlUsed) {
  auto whole = std::make_shared<PartDescription>();
  whole->fLabel = "Form";
  whole->fRoot = std::move(inRoot);
  return MakeHosted<Form>(std::move(whole), inMessage);
}

// Notes what a form tells: "5 mval".
class NotingListener final : public FormListener {
 public:
  void Receive(uint32 inMessage, Part& inSource, void* inData) override {
    fTold.push_back(std::to_string(inMessage) + " " + TextFromID(inSource.GetPartId()) + (inData ? " with data" : ""));
  }
  bool IsSelectable(IMFHierarchyItem& /*inItem*/) override { return fSelectable; }

  std::vector<std::string> fTold;
  bool fSelectable = true;
};

}  // namespace qlx::host::test
