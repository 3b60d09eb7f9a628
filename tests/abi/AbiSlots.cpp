// The order of the operations in the interfaces' tables, and the ids that are fixed: the two sides of the binary
// boundary are built apart from each other, so both are asserted as numbers.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <vector>

#include "AbiAccess.h"
#include "BasicMCFCOMImplementations.h"
#include "BasicPart.h"
#include "HostCommands.h"
#include "HostExtensions.h"
#include "HostInterface.h"
#include "HostServices.h"

namespace qlx {
namespace {

using abi::SlotOf;

void ExpectInOrder(const char* inInterface, std::size_t inFirst, const std::vector<std::size_t>& inSlots) {
  for (std::size_t i = 0; i < inSlots.size(); ++i) {
    EXPECT_EQ(inSlots[i], inFirst + i) << inInterface << ", operation " << i;
  }
}

TEST(AbiSlots, RootOperationsComeFirst) {
  ExpectInOrder("IMCUnknown", 0,
                {SlotOf(&IMCUnknown::QueryInterface), SlotOf(&IMCUnknown::AddRef), SlotOf(&IMCUnknown::Release)});
  ExpectInOrder("IMCClassFactory", 3, {SlotOf(&IMCClassFactory::CreateInstance), SlotOf(&IMCClassFactory::LockServer)});
}

TEST(AbiSlots, DataExchanger) {
  using I = IExDataExchanger;
  ExpectInOrder(
      "IExDataExchanger", 3,
      {SlotOf(&I::Clone), SlotOf(&I::CanExchangeData), SlotOf(&I::SetExchangeValue), SlotOf(&I::GetExchangeValue),
       SlotOf(&I::GetExtensionDataBuffer), SlotOf(&I::GetExtensionDataClassInfo), SlotOf(&I::QueryExchangeItem),
       SlotOf(&I::HandleEvent), SlotOf(&I::GetExtensionKind), SlotOf(&I::GetResourceId),
       SlotOf(&I::GetSecondaryResourceId), SlotOf(&I::GetExchangeStatus), SlotOf(&I::ExtensionDataChanged),
       SlotOf(&I::CopyDataTo), SlotOf(&I::GetExtensionDataSize)});
}

TEST(AbiSlots, Modifier) {
  using I = I3DExModifier;
  ExpectInOrder(
      "I3DExModifier", 3,
      {SlotOf(&I::GetFlags), SlotOf(&I::SetTreeElement), SlotOf(&I::GetTimeDependence), SlotOf(&I::ApplyToNode),
       SlotOf(&I::PrepareNode), SlotOf(&I::TransformPoint), SlotOf(&I::TransformNormal), SlotOf(&I::TransformTangent),
       SlotOf(&I::TransformBox), SlotOf(&I::MapTime), SlotOf(&I::TransformOther), SlotOf(&I::BeginApply),
       SlotOf(&I::EndApply), SlotOf(&I::IsPassive)});
}

TEST(AbiSlots, SceneCommandHasElevenOperations) {
  using I = I3DExSceneCommand;
  ExpectInOrder("I3DExSceneCommand", 3,
                {SlotOf(&I::GetMenuCallBack), SlotOf(&I::Init), SlotOf(&I::Prepare), SlotOf(&I::BeforeDo),
                 SlotOf(&I::Do), SlotOf(&I::AfterDo), SlotOf(&I::AfterUndo), SlotOf(&I::Finish)});
  ExpectInOrder("ISelfPrepareMenuCallBack", 3, {SlotOf(&ISelfPrepareMenuCallBack::SelfPrepare)});
  ExpectInOrder("IExStreamIO", 3,
                {SlotOf(&IExStreamIO::Read), SlotOf(&IExStreamIO::Write), SlotOf(&IExStreamIO::StreamState)});
}

TEST(AbiSlots, PartResponder) {
  using I = IMFExResponder;
  ExpectInOrder("IMFExResponder", 3,
                {SlotOf(&I::Receive), SlotOf(&I::AcceptsFocus), SlotOf(&I::SetFocused), SlotOf(&I::CanHandleCommand),
                 SlotOf(&I::HandleCommand), SlotOf(&I::CanTrack), SlotOf(&I::TrackChanged), SlotOf(&I::GetCursor),
                 SlotOf(&I::GetHelp)});
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
  ExpectInOrder("IMFPart", 3,
                {SlotOf(&IMFPart::GetPartId), SlotOf(&IMFPart::FindChildPart), SlotOf(&IMFPart::GetParentPart),
                 SlotOf(&IMFPart::GetPartValue), SlotOf(&IMFPart::SetPartValue)});
  ExpectInOrder("ISliderControl", 3,
                {SlotOf(&ISliderControl::SetSliderLabel), SlotOf(&ISliderControl::SetSliderRange)});
  ExpectInOrder("ILabelledControl", 3, {SlotOf(&ILabelledControl::GetLabel), SlotOf(&ILabelledControl::SetLabel)});
  ExpectInOrder("IPopupControl", 3, {SlotOf(&IPopupControl::GetItemCount), SlotOf(&IPopupControl::AddItem)});
  using L = IListControl;
  ExpectInOrder("IListControl", 3,
                {SlotOf(&L::GetListRowCount), SlotOf(&L::AddListRow), SlotOf(&L::ClearListRows),
                 SlotOf(&L::GetCurrentRow), SlotOf(&L::SetCurrentRow)});
  using H = IHierarchyList;
  ExpectInOrder("IHierarchyList", 3,
                {SlotOf(&H::ClearList), SlotOf(&H::AddRow), SlotOf(&H::GetRowCount), SlotOf(&H::SetRowsExpanded),
                 SlotOf(&H::GetSelectedRows), SlotOf(&H::GetRowItem), SlotOf(&H::GetRowLabel)});
  ExpectInOrder("IModalDialog", 3, {SlotOf(&IModalDialog::RunModal), SlotOf(&IModalDialog::CloseDialog)});
  using I = ISceneSelection;
  ExpectInOrder("ISceneSelection", 3, {SlotOf(&I::GetEntryCount), SlotOf(&I::GetEntry), SlotOf(&I::GetEntryObject)});
}

TEST(AbiSlots, MemoryUtilities) {
  using I = IMemoryUtilities;
  ExpectInOrder("IMemoryUtilities", 3,
                {SlotOf(&I::Allocate), SlotOf(&I::AllocateWithFlags), SlotOf(&I::Reallocate), SlotOf(&I::Free),
                 SlotOf(&I::NewObject), SlotOf(&I::DeleteObject), SlotOf(&I::NewArray), SlotOf(&I::DeleteArray)});
}

using Bytes = std::array<uint8, 16>;

struct FixedID {
  const char* fLabel;
  MCGuid fID;
  Bytes fBytes;
};

TEST(AbiIDs, AreTheSameBytesInMemory) {
  const FixedID rows[] = {
      {"IMCUnknown", IMCUnknown::kInterfaceID, {0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46}},
      {"IMCClassFactory", IMCClassFactory::kInterfaceID, {1, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46}},
      {"IExDataExchanger",
       IExDataExchanger::kInterfaceID,
       {0x80, 0xB6, 0x95, 0xB2, 0x02, 0x3A, 0x1C, 0x10, 0x88, 0x5F, 0x04, 0x02, 0x1C, 0x00, 0x70, 0x02}},
      {"IExStreamIO",
       IExStreamIO::kInterfaceID,
       {0x36, 0x32, 0x77, 0xF3, 0xEE, 0xB6, 0xD2, 0x11, 0x8B, 0x71, 0x00, 0x60, 0x97, 0x0B, 0xC5, 0x21}},
      {"I3DExModifier",
       I3DExModifier::kInterfaceID,
       {0x40, 0xCD, 0x06, 0x27, 0xA8, 0x54, 0xD2, 0x11, 0x88, 0x4C, 0x00, 0x60, 0x97, 0x14, 0x85, 0x21}},
      {"I3DExSceneCommand",
       I3DExSceneCommand::kInterfaceID,
       {0x26, 0xBF, 0x05, 0x17, 0xD8, 0x0A, 0xCF, 0x11, 0xA4, 0xF7, 0x00, 0x00, 0xE2, 0x02, 0xD5, 0xA5}},
      {"IMFExResponder",
       IMFExResponder::kInterfaceID,
       {0xAC, 0x01, 0x96, 0x5C, 0xC3, 0x7C, 0x1C, 0x10, 0x88, 0x5F, 0x04, 0x02, 0x1C, 0x00, 0x70, 0x02}},
      {"IMFExPart",
       IMFExPart::kInterfaceID,
       {0xAD, 0x01, 0x96, 0x5C, 0xC3, 0x7C, 0x1C, 0x10, 0x88, 0x5F, 0x04, 0x02, 0x1C, 0x00, 0x70, 0x02}},
      {"TBasicPart",
       TBasicPart::kInterfaceID,
       {0xA9, 0xFA, 0xFB, 0xC4, 0x7C, 0x3C, 0xD2, 0x11, 0x84, 0x8C, 0x00, 0x60, 0x97, 0x0B, 0xC5, 0x21}},
      {"PinModifier",
       "203FF150-EDC1-991D-93E9-19E1A1710097"_guid,
       {0x50, 0xF1, 0x3F, 0x20, 0xC1, 0xED, 0x1D, 0x99, 0x93, 0xE9, 0x19, 0xE1, 0xA1, 0x71, 0x00, 0x97}},
      {"SliderModifier",
       "203FF150-EDC1-991D-93E9-19E1A1710098"_guid,
       {0x50, 0xF1, 0x3F, 0x20, 0xC1, 0xED, 0x1D, 0x99, 0x93, 0xE9, 0x19, 0xE1, 0xA1, 0x71, 0x00, 0x98}},
  };
  for (const FixedID& row : rows) {
    EXPECT_EQ(std::bit_cast<Bytes>(row.fID), row.fBytes) << row.fLabel;
  }
}

static_assert("pset"_id == 0x70736574 && "XYZ "_id == 0x58595A20);

// Sizes of the bases, by the pointers that they hold.
constexpr std::size_t kPointer = sizeof(void*);
static_assert(sizeof(MCGuid) == 16);
static_assert(sizeof(TBasicUnknown) == (kPointer == 4 ? 12 : 24));
static_assert(sizeof(TBasicDataExchanger) == sizeof(TBasicUnknown) + kPointer);
static_assert(sizeof(TBasicTreeModifier) == (kPointer == 4 ? 24 : 48));
static_assert(sizeof(TBasicSceneCommand) == sizeof(TBasicDataExchanger) + kPointer);

}  // namespace
}  // namespace qlx
