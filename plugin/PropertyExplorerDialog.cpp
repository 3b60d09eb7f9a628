#include "PropertyExplorerDialog.h"

#include "MCException.h"
#include "OperationGuard.h"
#include "PartAccess.h"
#include "PropertyPick.h"
#include "QLXLookups.h"
#include "QLXMapping.h"
#include "Transforms.h"

namespace qlx {

namespace {

// One value of an element, by the key of its row: a number of a parameter, or an axis of the position in the scene.
class ExploredValue {
 public:
  ExploredValue(TreeElement& inTree, const TMCString& inPath) : fTree(inTree), fKey(inPath, true) {
    if (!fKey.fIsGlobal) {
      fParam = ResolveQuietly(&inTree, inPath);
    }
    if (fParam) {
      fValue.SetType(FindParamType(fParam->GetDataType()));
    }
  }

  bool Read(real32& outNumber) {
    if (fKey.fIsGlobal) {
      outNumber = 0;
      const bool isRead = fTree.GetGlobalTransform(fTransform) == MC_S_OK;
      outNumber = isRead ? fTransform.GetPosition()[GetGlobalAxis(fKey.fKey)] : outNumber;
      return isRead;
    }
    if (!fParam || !fValue.HasValue()) {
      return false;
    }
    fParam->BeginValueChange();
    if (fParam->ReadParamValue(fValue.GetHolder()) != MC_S_OK) {
      return false;
    }
    outNumber = ReadNumber(Place(), fValue.GetData());
    return true;
  }

  // After a read, whose other numbers stay. The number is then what the value holds of it.
  bool Write(real32& ioNumber) {
    if (fKey.fIsGlobal) {
      TVector3 position = fTransform.GetPosition();
      position[GetGlobalAxis(fKey.fKey)] = ioNumber;
      fTransform.SetPosition(position);
      return fTree.SetGlobalTransform(fTransform, 0, 1, 0, 0, 0) == MC_S_OK;
    }
    StoreNumber(Place(), ioNumber, fValue.GetData());
    if (fParam->WriteParamValue(fValue.GetHolder()) != MC_S_OK) {
      return false;
    }
    fParam->EndValueChange(1);
    ioNumber = ReadNumber(Place(), fValue.GetData());
    return true;
  }

  bool IsMorph() const { return fKey.fIsMorph; }

 private:
  QLXNumberPlace Place() const { return FindNumber(fParam->GetDataType(), fKey.fKey); }

  TreeElement& fTree;
  QLXPathKey fKey;
  TMCCountedPtr<ParamInfo> fParam;
  QLXValueBuffer fValue;
  TTreeTransform fTransform;
};

TMCCountedPtr<QLXPropertyItem> FindChosen(IMFPart* inTreeControl) {
  const auto list = MCQuery<IHierarchyList>(inTreeControl);
  uint32 row = 0;
  return list ? GetSelectedProperty(*list, row) : nullptr;
}

}  // namespace

MCResult PropertyExplorerDialog::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == kInterfaceID) {
    return MCStoreCounted<PropertyExplorerDialog>(this, outObject);
  }
  return TBasicPart::QueryInterface(inID, outObject);
}

MCResult PropertyExplorerDialog::Receive(uint32 inMessage, IMCUnknown* inSource, void* /*inData*/) {
  return GuardOperation([&] {
    if (inMessage != kDialogControlUsed || !inSource) {
      return MC_S_OK;
    }
    const auto source = MCQuery<IMFPart>(inSource);
    if (!source) {
      throw TMCException(MC_E_INVALIDARG, "PropertyExplorer", __LINE__);
    }
    const MCID id = source->GetPartId();
    if (fTree && id == "plst"_id) {
      ShowChosen(*source);
    } else if (fTree && id == "upbn"_id) {
      ApplyNew(*source);
    }
    return MC_S_OK;
  });
}

void PropertyExplorerDialog::ShowChosen(IMFPart& inTreeControl) {
  const auto item = FindChosen(&inTreeControl);
  real32 number = 0;
  if (item && ExploredValue(*fTree, item->GetText()).Read(number)) {
    ShowFields(GetAncestor(&inTreeControl, 2).Get(), {{"cVal"_id, number}, {"nVal"_id, number}});
  }
}

void PropertyExplorerDialog::ApplyNew(IMFPart& inButton) {
  const auto parts = GetAncestor(&inButton, 2);
  const auto item = FindChosen(FindChild(parts.Get(), "plst"_id).Get());
  real32 number = 0;
  if (!item || !PartField("nVal"_id, number).Take(FindChild(parts.Get(), "nVal"_id).Get())) {
    return;
  }
  ExploredValue value(*fTree, item->GetText());
  real32 earlier = 0;
  if (!value.Read(earlier) || !value.Write(number)) {
    return;
  }
  ShowFields(parts.Get(), {{"cVal"_id, number}});
  const auto morphs = value.IsMorph() ? FindMorphNotifier(*fTree) : nullptr;
  if (morphs) {
    morphs->MorphChanged();
  }
  if (I3DShScene* const scene = fTree->GetScene()) {
    scene->RefreshAfterCommand();
  }
}

}  // namespace qlx
