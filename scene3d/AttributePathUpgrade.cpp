#include "AttributePath.h"

namespace qlx {

bool AttributePath::UpgradePath(IMCUnknown* inRoot, MCID inDataType, bool continueOnFailure) {
  if (!MC_ASSERT_TEXT(inRoot, "root") || fVersion < 0) {
    return false;
  }
  bool succeeded = true;
  for (; fVersion < kCurrentVersion; ++fVersion) {
    if (fVersion == 1) {
      UpgradeFromVersion1();
    } else if (!UpgradeFromVersion0(inRoot, inDataType)) {
      succeeded = false;
      if (!continueOnFailure) {
        break;
      }
    }
  }
  return succeeded;
}

bool AttributePath::UpgradeFromVersion0(IMCUnknown* inRoot, MCID inDataType) {
  uint32 next = 0;
  auto holder = FindTimeBasedData(inRoot, next, true);
  if (!holder) {
    return false;
  }
  for (; next < fNodes.GetElemCount(); ++next) {
    if (!MC_ASSERT_TEXT(holder, "timeBasedData")) {
      return false;
    }
    MC_ASSERT_TEXT(fNodes[next].fType == kParamInfo, "node.fType == kParamInfo");
    if (holder->GetDataKind() == "dtaL"_id) {
      return UpgradeListNode(*holder, next, inDataType);
    }
    int32 index = -1;
    const auto param = detail::FindParamByID(*holder, fNodes[next].fIndex, index);
    if (!param) {
      return false;
    }
    if (param->IsGroup()) {
      holder.Share(param->GetGroupData());
      MC_ASSERT_TEXT(holder, "timeBasedData");
    }
  }
  return true;
}

bool AttributePath::UpgradeListNode(TimeBasedData& inList, uint32 inNode, MCID inDataType) {
  const uint32 count = inList.GetParamCount();
  for (uint32 i = 0; i < count; ++i) {
    TMCCountedPtr<ParamInfo> element;
    inList.GetParamInfo(element.WriteInto(), i);
    if (!element || !MC_ASSERT_TEXT(element->IsGroup(), "paramInfo->IsGroup()")) {
      continue;
    }
    TimeBasedData* const found = element->GetGroupData();
    if (!MC_ASSERT_TEXT(found, "foundTimeBased")) {
      continue;
    }
    int32 leaf = -1;
    const auto holder = WalkParamNodes(found, inNode + 1, leaf);
    TMCCountedPtr<ParamInfo> param;
    if (holder && leaf >= 0) {
      holder->GetParamInfo(param.WriteInto(), static_cast<uint32>(leaf));
    }
    if (param && (inDataType == kAnyType || inDataType == param->GetDataType())) {
      fNodes[inNode].fIndex = static_cast<int32>(element->GetParamID());
      return true;
    }
  }
  MC_ASSERT_TEXT(false, "This is not necessarily an error, but you should check the attribute path conversion code");
  return false;
}

void AttributePath::UpgradeFromVersion1() {
  if (fNodes.GetElemCount() == 0) {
    return;
  }
  const int8 kind = fNodes[0].fType;
  if (kind == kTreeByPosition || kind == kTreeByName || kind == kTreeByNameNear) {
    fNodes.RemoveElem(0);
  }
}

}  // namespace qlx
