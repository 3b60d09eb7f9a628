// What the panel of a link asks of its link, beside the exchange of plain fields and beside presets.
//
//   'clis'            list of the panel's pages, 'unit' and 'UnLm' popups of units: filled while they are empty
//   'ChTL'            renames the link (dialog 131)
//   'sgrw' 'sdcy' 'sosc'   growth, decay and oscillator (dialogs 170, 160, 180)
//   'slsp' 'slcp'     choose the target's value and the controller's from a property tree (dialog 140)
//   'slso' 'bosl'     choose the controller object and the source object of object mode
//
// The label of the panel's title is the link's name. Panes are labelled, too, and are none: 'cps0' to 'cps5' and 'mps0'
// to 'mps5'. A choice that is cancelled changes nothing, and a control that is missing leaves its step out.
#pragma once

#include "PartAccess.h"
#include "PropertyFill.h"
#include "QLXModifier.h"

namespace qlx {

class QLXPanel {
 public:
  // The part that sent a message, or null; and the link. Both outlive it.
  QLXPanel(QLXModifier& ioLink, IMFPart* inSource);

  // Brings title, lists and popups up to date; done ahead of every message.
  void SetUp();
  void Handle(MCID inCommand);

 private:
  TMCCountedPtr<IMFPart> FindInPanel(MCID inID) const;
  void Rename();
  void PickTarget();
  void PickController();
  PropertyTree GetTree() const;
  bool ChooseObject(ObjectReference& outReference, TMCString& outName) const;

  QLXModifier& fLink;
  IMFPart* fSource;
  TMCCountedPtr<IMFPart> fTitle;
};

}  // namespace qlx
