// The order of the operations in the interfaces' tables, and the ids that are fixed: the two sides of the binary
// boundary are built apart from each other, so both are asserted as numbers.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <string>

#include "AbiAccess.h"
#include "BasicMCFCOMImplementations.h"
#include "BasicPart.h"
#include "HostCommands.h"
#include "HostExtensions.h"
#include "HostInterface.h"
#include "HostServices.h"

namespace qlx {
namespace {

using abi::ExpectInOrder;
using abi::SlotOf;

TEST(AbiSlots, RootOperationsComeFirst) {
  ExpectInOrder(0, &IMCUnknown::QueryInterface, &IMCUnknown::AddRef, &IMCUnknown::Release);
  ExpectInOrder(3, &IMCClassFactory::CreateInstance, &IMCClassFactory::LockServer);
}

TEST(AbiSlots, DataExchanger) {
  using I = IExDataExchanger;
  ExpectInOrder(3, &I::Clone, &I::CanExchangeData, &I::SetExchangeValue, &I::GetExchangeValue,
                &I::GetExtensionDataBuffer, &I::GetExtensionDataClassInfo, &I::QueryExchangeItem, &I::HandleEvent,
                &I::GetExtensionKind, &I::GetResourceId, &I::GetSecondaryResourceId, &I::GetExchangeStatus,
                &I::ExtensionDataChanged, &I::CopyDataTo, &I::GetExtensionDataSize);
}

TEST(AbiSlots, Modifier) {
  using I = I3DExModifier;
  ExpectInOrder(3, &I::GetFlags, &I::SetTreeElement, &I::GetTimeDependence, &I::ApplyToNode, &I::PrepareNode,
                &I::TransformPoint, &I::TransformNormal, &I::TransformTangent, &I::TransformBox, &I::MapTime,
                &I::TransformOther, &I::BeginApply, &I::EndApply, &I::IsPassive);
}

TEST(AbiSlots, SceneCommandHasElevenOperations) {
  using I = I3DExSceneCommand;
  ExpectInOrder(3, &I::GetMenuCallBack, &I::Init, &I::Prepare, &I::BeforeDo, &I::Do, &I::AfterDo, &I::AfterUndo,
                &I::Finish);
  ExpectInOrder(3, &ISelfPrepareMenuCallBack::SelfPrepare);
  ExpectInOrder(3, &IExStreamIO::Read, &IExStreamIO::Write, &IExStreamIO::StreamState);
}

TEST(AbiSlots, PartResponder) {
  using I = IMFExResponder;
  ExpectInOrder(3, &I::Receive, &I::AcceptsFocus, &I::SetFocused, &I::CanHandleCommand, &I::HandleCommand, &I::CanTrack,
                &I::TrackChanged, &I::GetCursor, &I::GetHelp);
}

TEST(AbiSlots, PartHasThirtyOperations) {
  using I = IMFExPart;
  EXPECT_EQ(SlotOf(&I::Created), 3U);
  EXPECT_EQ(SlotOf(&I::IsHit), 7U);
  EXPECT_EQ(SlotOf(&I::GetPartSize), 14U);
  EXPECT_EQ(SlotOf(&I::Attach), 17U);
  EXPECT_EQ(SlotOf(&I::Destroy), 18U);
  EXPECT_EQ(SlotOf(&I::ForwardEvent), 21U);
  EXPECT_EQ(SlotOf(&I::GetPartLabel), 25U);
  EXPECT_EQ(SlotOf(&I::GetPreferredValue), 32U);
}

TEST(AbiSlots, PartsAndControls) {
  ExpectInOrder(3, &IMFPart::GetPartId, &IMFPart::FindChildPart, &IMFPart::GetParentPart, &IMFPart::GetPartValue,
                &IMFPart::SetPartValue);
  ExpectInOrder(3, &ISliderControl::SetSliderLabel, &ISliderControl::SetSliderRange);
  ExpectInOrder(3, &ILabelledControl::GetLabel, &ILabelledControl::SetLabel);
  ExpectInOrder(3, &IPopupControl::GetItemCount, &IPopupControl::AddItem);
  using L = IListControl;
  ExpectInOrder(3, &L::GetListRowCount, &L::AddListRow, &L::ClearListRows, &L::GetCurrentRow, &L::SetCurrentRow);
  using H = IHierarchyList;
  ExpectInOrder(3, &H::ClearList, &H::AddRow, &H::GetRowCount, &H::SetRowsExpanded, &H::GetSelectedRows, &H::GetRowItem,
                &H::GetRowLabel);
  ExpectInOrder(3, &IModalDialog::RunModal, &IModalDialog::CloseDialog);
  using I = ISceneSelection;
  ExpectInOrder(3, &I::GetEntryCount, &I::GetEntry, &I::GetEntryObject);
}

TEST(AbiSlots, MemoryUtilities) {
  using I = IMemoryUtilities;
  ExpectInOrder(3, &I::Allocate, &I::AllocateWithFlags, &I::Reallocate, &I::Free, &I::NewObject, &I::DeleteObject,
                &I::NewArray, &I::DeleteArray);
}

struct FixedID {
  const char* fLabel;
  MCGuid fID;
  const char* fBytes;
};

TEST(AbiIDs, AreTheSameBytesInMemory) {
  const FixedID rows[] = {
      {"IMCUnknown", IMCUnknown::kInterfaceID, "0000000000000000C000000000000046"},
      {"IMCClassFactory", IMCClassFactory::kInterfaceID, "0100000000000000C000000000000046"},
      {"IExDataExchanger", IExDataExchanger::kInterfaceID, "80B695B2023A1C10885F04021C007002"},
      {"IExStreamIO", IExStreamIO::kInterfaceID, "363277F3EEB6D2118B710060970BC521"},
      {"I3DExModifier", I3DExModifier::kInterfaceID, "40CD0627A854D211884C006097148521"},
      {"I3DExSceneCommand", I3DExSceneCommand::kInterfaceID, "26BF0517D80ACF11A4F70000E202D5A5"},
      {"IMFExResponder", IMFExResponder::kInterfaceID, "AC01965CC37C1C10885F04021C007002"},
      {"IMFExPart", IMFExPart::kInterfaceID, "AD01965CC37C1C10885F04021C007002"},
      {"TBasicPart", TBasicPart::kInterfaceID, "A9FAFBC47C3CD211848C0060970BC521"},
      {"PinModifier", "203FF150-EDC1-991D-93E9-19E1A1710097"_guid, "50F13F20C1ED1D9993E919E1A1710097"},
      {"SliderModifier", "203FF150-EDC1-991D-93E9-19E1A1710098"_guid, "50F13F20C1ED1D9993E919E1A1710098"},
  };
  for (const FixedID& row : rows) {
    std::string bytes;
    for (const uint8 byte : std::bit_cast<std::array<uint8, sizeof row.fID>>(row.fID)) {
      bytes += {"0123456789ABCDEF"[byte >> 4], "0123456789ABCDEF"[byte & 15]};
    }
    EXPECT_EQ(bytes, row.fBytes) << row.fLabel;
  }
}

static_assert("pset"_id == 0x70736574 && "XYZ "_id == 0x58595A20);

// Sizes of the bases, by the pointers that they hold.
constexpr std::size_t kPointer = sizeof(void*);
static_assert(sizeof(TBasicUnknown) == (kPointer == 4 ? 12 : 24));
static_assert(sizeof(TBasicDataExchanger) == sizeof(TBasicUnknown) + kPointer);
static_assert(sizeof(TBasicTreeModifier) == (kPointer == 4 ? 24 : 48));
static_assert(sizeof(TBasicSceneCommand) == sizeof(TBasicDataExchanger) + kPointer);

}  // namespace
}  // namespace qlx
