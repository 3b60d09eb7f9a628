// A person's hand on a panel or dialog: it does what a person can do, and nothing else.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Form.h"

namespace qlx::host {

class TreeControl;

// A control is named by its id ("mval") or by the label beside it ("Value"). What a person could not do, for a control
// that is hidden, read-only or missing, or a value out of its range, is a `UserError` that names the control and says
// what is there instead; nothing is changed then, and nobody told. All else is told to the form's listener.
class Hand {
 public:
  explicit Hand(Form& ioForm) : fForm(ioForm) {}

  // Sets a check box or radio ("true", "on"), number, text, slider or vector ("1 2 3"); chooses a row of a popup, list
  // or tree.
  void Set(std::string_view inControl, const std::string& inValue) const;
  // Presses a button; turns a check box over, and a radio on.
  void Press(std::string_view inControl) const;
  // Chooses a row of a popup, list or tree: by its text, of a tree with those above it where it is not the only one
  // ("Arm > Rotation X"), or by its number from 0 ("#3").
  void Choose(std::string_view inControl, const std::string& inRow) const;
  // Opens or folds a row of a tree.
  void Expand(std::string_view inControl, const std::string& inRow, bool inExpanded) const;

  // The control that the name means; on a page that does not show only where there is no other.
  Part& Find(std::string_view inControl) const;

 private:
  Part& NeedUsable(std::string_view inControl) const;
  void Use(Part& ioPart, const PartValue& inValue) const;
  void SetToggle(Part& ioPart, const std::string& inValue) const;
  void ChooseRow(Part& ioPart, const std::string& inRow) const;

  Form& fForm;
};

// "mval ("Value")", as messages name a control.
std::string NameOf(const Part& inPart);

}  // namespace qlx::host
