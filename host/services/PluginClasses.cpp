#include "PluginLibrary.h"

namespace qlx::host {

const std::vector<PluginClass>& GetPluginClasses() {
  constexpr MCID kModifier = "modi"_id;
  constexpr MCID kCommand = "scmd"_id;
  constexpr MCID kPart = "part"_id;
  static const std::vector<PluginClass> sClasses = {
      {kModifier, "fQLX"_id, "1F3AE15F-FDC2-001D-13E1-1FF121717497"_guid, "QLXModifier"},
      {kModifier, "fPIN"_id, "203FF150-EDC1-991D-93E9-19E1A1710097"_guid, "PinModifier"},
      {kModifier, "fSLD"_id, "203FF150-EDC1-991D-93E9-19E1A1710098"_guid, "SliderModifier"},
      {kCommand, 0, "10D400AB-1490-3211-DFF0-210FA01799B1"_guid, "AddQLXModifierCommand"},
      {kCommand, 0, "3759F866-BD74-4B85-AE16-4F022E419105"_guid, "AddPinModifierCommand"},
      {kCommand, 0, "3759F866-BD74-4B85-AE16-4F022E419106"_guid, "AddSliderModifierCommand"},
      {kCommand, 0, "5D95B36C-C4BD-4242-96BB-067A18E44CDB"_guid, "RemoveDupKeyframesCommand"},
      {kCommand, 0, "AEE6DF60-DAB9-47F2-BCDF-0843BA52133A"_guid, "WiggleKeyframesCommand"},
      {kCommand, 0, "AE16DF61-D1B1-17F1-1C1F-18131A12131A"_guid, "DeleteKeyframesCommand"},
      {kCommand, 0, "10E24BAB-1020-0121-0FFF-211F1212AABB"_guid, "QLXChainCommand"},
      {kPart, 0, "10E24B1B-1020-0122-0FFF-211F1212AABC"_guid, "QLXChainDialog"},
      {kPart, 0, "10E24B1B-1020-0122-0FFF-211F1213ABBD"_guid, "QLXChainQLXSubDlg"},
      {kCommand, 0, "10E24B1C-1022-0123-1000-22201314ACBE"_guid, "PropertyExplorer"},
      {kPart, 0, "10E24B1C-1022-0123-1000-22201315ADBF"_guid, "PropertyExplorerDialog"},
  };
  return sClasses;
}

const PluginClass* FindPluginClass(MCID inFamily, MCID inID) {
  for (const PluginClass& candidate : GetPluginClasses()) {
    if (inID != 0 && candidate.fFamily == inFamily && candidate.fID == inID) {
      return &candidate;
    }
  }
  return nullptr;
}

}  // namespace qlx::host
