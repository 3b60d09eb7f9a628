#include "QLXChainQLXSubDlg.h"

#include <algorithm>
#include <array>

#include "MCException.h"
#include "MCFrameTime.h"
#include "OperationGuard.h"
#include "PluginDialog.h"
#include "QLXCurveDialogs.h"
#include "QLXUnitList.h"

namespace qlx {

namespace {

constexpr int32 kLinkDialog = 200;

// In the order of the record.
auto MakeFields(QLXModifierData& ioData) {
  QLXModifierData& d = ioData;
  return std::to_array<PartField>({
      {"cset"_id, d.fCombineReplace},  {"ccst"_id, d.fCombineSelf},     {"cadd"_id, d.fCombineAdd},
      {"csub"_id, d.fCombineSubtract}, {"cmul"_id, d.fCombineMultiply}, {"cdiv"_id, d.fCombineDivide},
      {"madd"_id, d.fModifyAdd},       {"msub"_id, d.fModifySubtract},  {"mmul"_id, d.fModifyMultiply},
      {"mdiv"_id, d.fModifyDivide},    {"mcst"_id, d.fModifySet},       {"mval"_id, d.fModifyValue},
      {"decy"_id, d.fDecayOn},         {"grow"_id, d.fGrowOn},          {"oscl"_id, d.fOscillateOn},
      {"ltst"_id, d.fStartOn},         {"lsvl"_id, d.fStartFrame},      {"coff"_id, d.fEndOn},
      {"covl"_id, d.fEndFrame},        {"dely"_id, d.fDelayOn},         {"dfrm"_id, d.fDelayFrames},
      {"unit"_id, d.fModifyUnit},      {"BTal"_id, d.fPositionAll},     {"BTno"_id, d.fPositionNone},
      {"BTso"_id, d.fPositionCustom},  {"BTsX"_id, d.fPositionX},       {"BTsY"_id, d.fPositionY},
      {"BTsZ"_id, d.fPositionZ},       {"BTiX"_id, d.fPositionInvertX}, {"BTiY"_id, d.fPositionInvertY},
      {"BTiZ"_id, d.fPositionInvertZ}, {"BRal"_id, d.fRotationAll},     {"BRno"_id, d.fRotationNone},
      {"BRso"_id, d.fRotationCustom},  {"BRsX"_id, d.fRotationX},       {"BRsY"_id, d.fRotationY},
      {"BRsZ"_id, d.fRotationZ},       {"BRiX"_id, d.fRotationInvertX}, {"BRiY"_id, d.fRotationInvertY},
      {"BRiZ"_id, d.fRotationInvertZ}, {"BSun"_id, d.fScaleUniform},    {"BSsX"_id, d.fScaleX},
      {"BSsY"_id, d.fScaleY},          {"BSsZ"_id, d.fScaleZ},          {"LMin"_id, d.fLowerLimitOn},
      {"MinL"_id, d.fLowerLimit},      {"LMax"_id, d.fUpperLimitOn},    {"MaxL"_id, d.fUpperLimit},
      {"CLim"_id, d.fRangeOn},         {"CMin"_id, d.fRangeMin},        {"CMax"_id, d.fRangeMax},
  });
}

// The choices of which one is on, and what each clears as it is turned on. Where it clears less than all the others the
// rest is as the host leaves it on the screen, which is why all choices are read.
struct Choice {
  std::initializer_list<MCID> fGroup;
  MCID fID;  // 0: every one of the group
  std::initializer_list<MCID> fCleared;
};

constexpr std::initializer_list<MCID> kCombine = {"cset"_id, "ccst"_id, "cadd"_id, "csub"_id, "cmul"_id, "cdiv"_id};
constexpr std::initializer_list<MCID> kModify = {"madd"_id, "msub"_id, "mmul"_id, "mdiv"_id, "mcst"_id};
constexpr std::initializer_list<MCID> kPosition = {"BTal"_id, "BTno"_id, "BTso"_id};
constexpr std::initializer_list<MCID> kRotation = {"BRal"_id, "BRno"_id, "BRso"_id};
constexpr std::initializer_list<MCID> kAllPosition = {"BTal"_id};
constexpr std::initializer_list<MCID> kSomePosition = {"BTso"_id};
constexpr std::initializer_list<MCID> kAllRotation = {"BRal"_id};
constexpr std::initializer_list<MCID> kSomeRotation = {"BRso"_id};
constexpr Choice kChoices[] = {
    {kCombine, 0, kCombine},
    {kModify, 0, kModify},
    {kPosition, "BTal"_id, kSomePosition},
    {kPosition, "BTno"_id, kAllPosition},
    {kPosition, "BTso"_id, kAllPosition},
    {kRotation, "BRal"_id, kSomeRotation},
    {kRotation, "BRno"_id, kSomeRotation},
    {kRotation, "BRso"_id, kAllRotation},
};

bool Has(std::initializer_list<MCID> inIDs, MCID inID) {
  return std::find(inIDs.begin(), inIDs.end(), inID) != inIDs.end();
}

const Choice* FindChoice(MCID inID) {
  const auto* const found = std::find_if(std::begin(kChoices), std::end(kChoices), [inID](const Choice& inChoice) {
    return inChoice.fID == 0 ? Has(inChoice.fGroup, inID) : inChoice.fID == inID;
  });
  return found == std::end(kChoices) ? nullptr : found;
}

// A control of the same dialog.
TMCCountedPtr<IMFPart> FindBeside(IMFPart& inPart, MCID inID) {
  TMCCountedPtr<IMFPart> found;
  ClimbTo(&inPart, [&](IMFPart& inAbove) {
    found = FindChild(&inAbove, inID);
    return static_cast<bool>(found);
  });
  return found;
}

}  // namespace

MCResult QLXChainQLXSubDlg::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == kInterfaceID) {
    return MCStoreCounted<QLXChainQLXSubDlg>(this, outObject);
  }
  return TBasicPart::QueryInterface(inID, outObject);
}

MCResult QLXChainQLXSubDlg::Receive(uint32 inMessage, IMCUnknown* inSource, void* /*inData*/) {
  return GuardOperation([&] {
    if (inMessage != kDialogControlUsed) {
      return MC_S_OK;
    }
    const auto source = MCQuery<IMFPart>(inSource);
    if (!source) {
      throw TMCException(MC_E_INVALIDARG, "CreateQLXChain", __LINE__);
    }
    if (fIsStarted) {
      TakeControl(*source);
    }
    return MC_S_OK;
  });
}

void QLXChainQLXSubDlg::Start(TreeElement* inElement, const QLXChainLink& inLink) {
  fElement.Share(inElement);
  fIsStarted = true;
  fLink = inLink;
}

void QLXChainQLXSubDlg::ShowLink(IMFPart* inDialog) {
  for (const MCID units : {"unit"_id, "UnLm"_id}) {
    FillUnitList(FindControl<IPopupControl>(inDialog, units).Get());
  }
  for (const PartField& field : MakeFields(fLink.fData)) {
    field.Show(FindChild(inDialog, field.GetID()).Get());
  }
  auto unit = static_cast<real32>(fLink.fData.fLimitUnit);
  bool hasWindow = fLink.fData.fStartOn && fLink.fData.fEndOn;
  ShowFields(inDialog, {{"UnLm"_id, unit}, {"uFRA"_id, hasWindow}, {"TBno"_id, fLink.fData.fPositionNone}});
}

void QLXChainQLXSubDlg::TakeControl(IMFPart& inSource) {
  const MCID id = inSource.GetPartId();
  switch (id) {
    case "sosc"_id:
      EditOscillator(fLink.fCurves.fOscillator);
      break;
    case "sdcy"_id:
      EditDecay(fLink.fCurves.fDecay);
      break;
    case "sgrw"_id:
      EditGrowth(fLink.fCurves.fGrowth);
      break;
    case "UnLm"_id:
      TakeLimitUnit(inSource);
      break;
    case "uFRA"_id:
      TakeWindow(inSource);
      break;
    case "TBno"_id:
      TakeNoPosition(inSource);
      break;
    default:
      TakeField(id, inSource);
      break;
  }
}

void QLXChainQLXSubDlg::TakeField(MCID inID, IMFPart& inSource) {
  const Choice* const choice = FindChoice(inID);
  bool isOn = false;
  for (const PartField& field : MakeFields(fLink.fData)) {
    if (field.GetID() == inID) {
      isOn = field.Take(&inSource) && choice && field.IsOn();
    } else if (choice && Has(choice->fGroup, field.GetID())) {
      field.Take(FindBeside(inSource, field.GetID()).Get());
    }
  }
  if (isOn) {
    for (const MCID cleared : choice->fCleared) {
      if (cleared != inID) {
        ClearSwitches({cleared}, inSource);
      }
    }
  }
}

// A code, never the bits of one.
void QLXChainQLXSubDlg::TakeLimitUnit(IMFPart& inSource) {
  real32 unit = 0;
  if (PartField("UnLm"_id, unit).Take(&inSource)) {
    fLink.fData.fLimitUnit = TruncateToInt32(static_cast<real64>(unit));
  }
}

void QLXChainQLXSubDlg::TakeWindow(IMFPart& inSource) {
  bool isOn = false;
  if (PartField("uFRA"_id, isOn).Take(&inSource)) {
    fLink.fData.fStartOn = isOn;
    fLink.fData.fEndOn = isOn;
    Show("ltst"_id, inSource);
    Show("coff"_id, inSource);
  }
}

void QLXChainQLXSubDlg::TakeNoPosition(IMFPart& inSource) {
  bool isOn = true;
  const bool hasValue = PartField("TBno"_id, isOn).Take(&inSource);
  fLink.fData.fPositionNone = isOn;
  Show("BTno"_id, inSource);
  if (isOn) {
    ClearSwitches({"BTal"_id}, inSource);
  }
  if (!hasValue) {
    ClearSwitches({"BTso"_id, "BTsX"_id, "BTsY"_id, "BTsZ"_id, "BTiX"_id, "BTiY"_id, "BTiZ"_id}, inSource);
  }
}

void QLXChainQLXSubDlg::Show(MCID inID, IMFPart& inSource) {
  for (const PartField& field : MakeFields(fLink.fData)) {
    if (field.GetID() == inID) {
      field.Show(FindBeside(inSource, inID).Get());
    }
  }
}

void QLXChainQLXSubDlg::ClearSwitches(std::initializer_list<MCID> inIDs, IMFPart& inSource) {
  for (const PartField& field : MakeFields(fLink.fData)) {
    if (Has(inIDs, field.GetID())) {
      field.Clear();
      field.Show(FindBeside(inSource, field.GetID()).Get());
    }
  }
}

bool EditChainLink(TreeElement* inElement, QLXChainLink& ioLink) {
  PluginDialog dialog(kLinkDialog);
  const auto editor = MCQuery<QLXChainQLXSubDlg>(dialog.GetPart());
  if (!editor) {
    return false;
  }
  editor->Start(inElement, ioLink);
  editor->ShowLink(dialog.GetPart());
  if (!dialog.Run()) {
    return false;
  }
  ioLink = editor->GetLink();
  return true;
}

}  // namespace qlx
