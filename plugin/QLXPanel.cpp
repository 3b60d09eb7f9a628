#include "QLXPanel.h"

#include "COMSafeUtilities.h"
#include "PluginDialog.h"
#include "PropertyPick.h"
#include "QLXCurveDialogs.h"
#include "QLXUnitList.h"

namespace qlx {

namespace {

constexpr int32 kRenameDialog = 131;

bool IsPane(MCID inID) {
  const MCID kind = inID & 0xFFFFFF00U;
  const MCID digit = inID & 0xFFU;
  return (kind == ("cps0"_id & 0xFFFFFF00U) || kind == ("mps0"_id & 0xFFFFFF00U)) && digit >= '0' && digit <= '5';
}

void FillCategories(IListControl* ioList) {
  static constexpr const char* kCategories[] = {"  Basic",  "  Advanced",   "  Control",
                                                "  Modify", "  Time Based", "  Global"};
  if (ioList && ioList->GetListRowCount() == 0) {
    for (const char* const category : kCategories) {
      ioList->AddListRow(TMCString15(category));
    }
  }
}

}  // namespace

QLXPanel::QLXPanel(QLXModifier& ioLink, IMFPart* inSource)
    : fLink(ioLink), fSource(inSource), fTitle(ClimbTo(inSource, [](IMFPart& inPart) {
        return !IsPane(inPart.GetPartId()) && MCQuery<ILabelledControl>(&inPart);
      })) {}

void QLXPanel::SetUp() {
  if (!fSource) {
    return;
  }
  if (const auto title = MCQuery<ILabelledControl>(fTitle)) {
    TMCDynamicString label;
    title->GetLabel(label);
    if (label != fLink.EditData().fName) {
      title->SetLabel(fLink.EditData().fName, 1);
    }
  }
  FillUnitList(MCQuery<IPopupControl>(FindInPanel("unit"_id)).Get());
  FillUnitList(MCQuery<IPopupControl>(FindInPanel("UnLm"_id)).Get());
  FillCategories(MCQuery<IListControl>(FindInPanel("clis"_id)).Get());
}

// The nearest one, and none of another panel: the title encloses this one's.
TMCCountedPtr<IMFPart> QLXPanel::FindInPanel(MCID inID) const {
  TMCCountedPtr<IMFPart> found;
  ClimbTo(fSource, [&](IMFPart& inPart) {
    found = FindChild(&inPart, inID);
    return found || fTitle == &inPart;
  });
  return found;
}

void QLXPanel::Handle(MCID inCommand) {
  QLXModifierData& data = fLink.EditData();
  ObjectReference reference;
  switch (inCommand) {
    case "ChTL"_id:
      Rename();
      break;
    case "sgrw"_id:
      EditGrowth(fLink.EditCurves().fGrowth);
      break;
    case "sdcy"_id:
      EditDecay(fLink.EditCurves().fDecay);
      break;
    case "sosc"_id:
      EditOscillator(fLink.EditCurves().fOscillator);
      break;
    case "slsp"_id:
      PickTarget();
      break;
    case "slcp"_id:
      PickController();
      break;
    case "slso"_id:
      if (ChooseObject(reference, data.fControllerName)) {
        fLink.SetControllerRef(reference);
      }
      break;
    case "bosl"_id:
      if (ChooseObject(reference, data.fSourceName)) {
        fLink.SetSourceRef(reference);
      }
      break;
    default:
      break;
  }
}

void QLXPanel::Rename() {
  const auto title = MCQuery<ILabelledControl>(fTitle);
  TMCDynamicString name(fLink.EditData().fName);
  if (title) {
    title->GetLabel(name);
  }
  PluginDialog dialog(kRenameDialog);
  const auto control = FindChild(dialog.GetPart(), "ttlt"_id);
  const PartField field("ttlt"_id, name);
  field.Show(control.Get());
  if (!dialog.Run() || !field.Take(control.Get())) {
    return;
  }
  AssignFitting(fLink.EditData().fName, name);
  if (title) {
    title->SetLabel(fLink.EditData().fName, 1);
  }
}

PropertyTree QLXPanel::GetTree() const {
  return fLink.EditData().fListAllProperties ? PropertyTree::kScene : PropertyTree::kOwnAndPosition;
}

void QLXPanel::PickTarget() {
  const auto element = fLink.FindElement();
  PickedProperty picked;
  if (element && PickProperty(*element, GetTree(), picked)) {
    fLink.SetTargetPath(picked.fPath);
    AssignFitting(fLink.EditData().fTargetLabel, picked.fLabel);
  }
}

void QLXPanel::PickController() {
  const auto element = fLink.FindElement();
  I3DShScene* const scene = element ? element->GetScene() : nullptr;
  TMCCountedPtr<TreeElement> controller;
  if (scene) {
    controller = FindLinkedElement(*scene, QLXLinked::kController, fLink.EditData(), fLink.GetPrivateData());
  }
  TreeElement* const listed = controller ? controller.Get() : element.Get();
  PickedProperty picked;
  if (listed && PickProperty(*listed, GetTree(), picked)) {
    fLink.SetControllerPath(picked.fPath);
    AssignFitting(fLink.EditData().fControllerLabel, picked.fLabel);
  }
}

bool QLXPanel::ChooseObject(ObjectReference& outReference, TMCString& outName) const {
  IShellUtilities* const shell = GetShellUtilities();
  TMCCountedPtr<TreeElement> chosen;
  const TMCString31 title("Choose controller");
  const TMCString31 prompt("Choose Object");
  if (!shell || !shell->ChooseObject(chosen.WriteInto(), title, prompt, 0, 0, 0) || !chosen) {
    return false;
  }
  chosen->GetObjectReference(outReference);
  AssignFitting(outName, chosen->GetName());
  return true;
}

}  // namespace qlx
