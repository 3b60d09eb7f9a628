#include "SliderModifier.h"

#include "COMSafeUtilities.h"
#include "HostInterface.h"
#include "MCException.h"
#include "ModifiedElement.h"
#include "OperationGuard.h"
#include "PartAccess.h"
#include "PropertyPick.h"
#include "QLXLookups.h"

namespace qlx {

#if UINTPTR_MAX == UINT32_MAX
// Strings have a table of operations, so the block has no standard layout; both compilers lay it out all the same.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(SliderPublicData) == 304);
static_assert(offsetof(SliderPublicData, fPath) == 0 && offsetof(SliderPublicData, fLabel) == 20);
static_assert(offsetof(SliderPublicData, fValue) == 292 && offsetof(SliderPublicData, fMin) == 296);
static_assert(offsetof(SliderPublicData, fMax) == 300);
#pragma GCC diagnostic pop
#endif

MCResult SliderModifier::QueryInterface(const MCGuid& inID, void** outObject) {
  if (inID == kInterfaceID) {
    return MCStoreCounted<SliderModifier>(this, outObject);
  }
  return TBasicTreeModifier::QueryInterface(inID, outObject);
}

MCResult SliderModifier::SetTreeElement(TreeElement* inTree) {
  return GuardOperation([&] {
    if (!inTree) {
      return MC_S_OK;
    }
    if (!fTree) {
      fTree.Share(inTree);
    }
    WriteTarget(*inTree);
    return MC_S_OK;
  });
}

void SliderModifier::WriteTarget(TreeElement& inTree) {
  TMCString1023 path;
  if (fData.fPath.IsEmpty() || fData.fPath.ByteLength() > path.MaxLength()) {
    return;  // no path is longer
  }
  path = fData.fPath;
  const auto param = ResolveQuietly(&inTree, path);
  if (!param) {
    return;
  }
  const QLXPathKey key(path, true);
  const MCID type = param->GetDataType();
  QLXValueBuffer value(FindParamType(type));
  if (!value.HasValue()) {
    return;
  }
  param->BeginValueChange();
  if (param->ReadParamValue(value.GetHolder()) != MC_S_OK) {
    return;
  }
  StoreNumber(FindNumber(type, key.fKey), fData.fValue, value.GetData());
  param->WriteParamValue(value.GetHolder());
  param->EndValueChange(1);
  inTree.TransformChanged(0);

  TMCCountedPtr<ISceneMaster> master;  // held to the end of the call, as the host expects of who changes a scene
  if (I3DShScene* const scene = inTree.GetScene()) {
    scene->GetSceneMaster(master.WriteInto());
  }
  if (!fMorphTarget) {
    FindMorphs(inTree);
  }
  if (fMorphTarget && key.fIsMorph) {
    fMorphTarget->MorphChanged();
  }
}

void SliderModifier::FindMorphs(TreeElement& inTree) {
  auto holder = MCQuery<I3DShObjectHolder>(&inTree);
  TMCCountedPtr<IMCUnknown> ensured;  // while it is held the element answers
  if (!holder && gShellUtilities) {
    ensured = MCAdopt(gShellUtilities->EnsureObjectHolder(&inTree));
    holder = MCQuery<I3DShObjectHolder>(&inTree);
  }
  const auto object = MCShare(holder ? holder->GetHeldObject() : nullptr);
  TMCCountedPtr<IMCUnknown> data;
  if (object) {
    object->GetObjectData(data.WriteInto());
  }
  fMorphTarget = MCQuery<I3DShMorphTarget>(data);
}

MCResult SliderModifier::HandleEvent(uint32 inMessage, IMCUnknown* inSource, void* /*inData*/) {
  return GuardOperation([&] {
    IShellUtilities* const shell = GetShellUtilities();
    if (!inSource || (shell && shell->IsEventHandlingSuspended())) {
      return MC_S_OK;
    }
    const auto source = MCQuery<IMFPart>(inSource);
    if (!source) {
      throw TMCException(MC_E_INVALIDARG, "SliderModifier", 42);
    }
    ShowSlider(source.Get(), true);
    if (inMessage == kPanelControlUsed) {
      HandleControl(*source);
    }
    return MC_S_OK;
  });
}

void SliderModifier::HandleControl(IMFPart& inSource) {
  switch (inSource.GetPartId()) {
    case "vmin"_id:
    case "vmax"_id:
      ShowSlider(GetAncestor(&inSource, 2).Get(), false);
      break;
    case "sbtn"_id:
      PickTarget(inSource);
      break;
    default:
      break;
  }
}

void SliderModifier::ShowSlider(IMFPart* inPart, bool inWithLabel) const {
  const auto slider = FindControl<ISliderControl>(inPart, "valu"_id);
  if (!slider) {
    return;
  }
  if (inWithLabel) {
    slider->SetSliderLabel(fData.fLabel);
  }
  slider->SetSliderRange(fData.fMin, fData.fMax, 1);
}

void SliderModifier::PickTarget(IMFPart& inSource) {
  const auto element = FindModifiedElement(*this);
  PickedProperty picked;
  if (!element || !PickProperty(*element, PropertyTree::kOwn, picked)) {
    return;
  }
  fData.fPath = picked.fPath;
  AssignFitting(fData.fLabel, picked.fLabel);
  ShowTitle(inSource);
}

// The title stands at or above the part that holds the slider.
void SliderModifier::ShowTitle(IMFPart& inSource) const {
  const auto part = ClimbTo(GetAncestor(&inSource, 2).Get(),
                            [](IMFPart& inPart) { return static_cast<bool>(MCQuery<ILabelledControl>(&inPart)); });
  const auto title = MCQuery<ILabelledControl>(part);
  if (!title) {
    return;
  }
  TMCDynamicString label;
  title->GetLabel(label);
  if (label == fData.fLabel) {
    return;
  }
  title->SetLabel(fData.fLabel, 1);
  if (const auto slider = FindControl<ISliderControl>(part.Get(), "valu"_id)) {
    slider->SetSliderLabel(fData.fLabel);
  }
}

}  // namespace qlx
