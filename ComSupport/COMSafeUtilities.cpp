#include "COMSafeUtilities.h"

#include <array>

#include "MCAssert.h"
#include "MCCountedPtr.h"
#include "MCMemory.h"
#include "MCObject.h"
#include "MultiProcessing.h"
#include "OperationGuard.h"

namespace qlx {

namespace {

constexpr std::array<MCGuid, kFirstGroupSize> kFirstGroup = {{
    "031DD1DA-024E-11D2-8F2E-00609798E77D"_guid,  // 1: gShellUtilities
    "F7010D64-AB27-11D2-8B64-0060970BC521"_guid,  // 2: files
    "406FF750-5179-11D2-97C1-00A024418B95"_guid, "D33D0B51-3236-11D2-817F-006008965392"_guid,
    "900B69F1-701B-11D0-B2B5-00AA004B60E7"_guid,  // 5: multi-processing
    "38278AE6-2621-4CB2-8F0A-793C86CB547C"_guid,
    "5FF1E1C0-63C3-11D2-B89E-00104B2C9011"_guid,  // 7: gDebugUtilities
    "031DD1DB-024E-11D2-8F2E-00609798E77D"_guid,  // 8: gMemoryUtilities
    "B0010A34-A52D-443C-8553-5A93CDC2FDAE"_guid,  // 9: gShSafeUtilities
    "F3CA8A60-3F55-11D1-A09F-00AA00D37E0B"_guid,  // 10: parameter types
    "9AB72E25-D94F-11D1-A0D5-00AA00D307EB"_guid,  // 11: component factory
    "5FF1E1C2-63C3-11D2-B89E-00104B2C9011"_guid,  // 12: alerts
    "5FF1E1C1-63C3-11D2-B89E-00104B2C9011"_guid,  // 13: dialog factory
    "04BC77A0-2E52-11D2-817B-006008965392"_guid,  // 14: resource manager
    "EFE46A00-0712-11D2-A0DE-00AA00D307EB"_guid,  // 15: updates
    "5C9601AB-7CC3-101C-885F-04021C007002"_guid, "2C3140EC-3EE0-11D2-848F-0060970BC521"_guid,
    "2E5D4545-EF33-4DD9-B04B-22B43AD7E1F9"_guid, "AAB261E8-3B4F-442D-B0D3-90C90B27B592"_guid,
    "4EC6D90B-26B6-4699-AB9E-335392B22B33"_guid, "C4CA810B-651E-11D3-B98E-00A0C9D66553"_guid,
}};

constexpr std::array<MCGuid, kSecondGroupSize> kSecondGroup = {{
    "E49BB9F0-7F0F-11D2-B8BB-00104B2C9011"_guid,
    "0F709781-80B3-11D2-978B-0060973D5267"_guid,
    "D2CE2492-34C1-11D3-83AD-00104B2D8E67"_guid,
    "36389BF8-B5E3-4B73-AC92-4FB5B99EB607"_guid,
}};

constexpr std::array<MCGuid, kThirdGroupSize> kThirdGroup = {{
    "031DD1DC-024E-11D2-8F2E-00609798E77D"_guid,
    "36F8597C-C11C-11D2-8B7D-0060970BC521"_guid,
    "55BD9AB1-CC13-11D2-81A0-006008965392"_guid,
}};

// The order in which the first group goes back. Memory and debug utilities go third and fourth, ahead of most others:
// the order is part of the system, and what is freed or reported after them is so without the host.
constexpr std::array<uint8, kFirstGroupSize> kReleaseOrder = {10, 5,  8,  7,  9,  4,  3,  2,  1,  6, 17,
                                                              16, 15, 14, 13, 12, 11, 21, 18, 19, 20};

std::array<IMCUnknown*, kFirstGroupSize> sFirstGroup{};
std::array<IMCUnknown*, kSecondGroupSize> sSecondGroup{};
std::array<IMCUnknown*, kThirdGroupSize> sThirdGroup{};
bool sSecondGroupAnswer = false;
bool sThirdGroupAnswer = false;

IMCUnknown*& Row(ServiceRow inRow) {
  return sFirstGroup[static_cast<std::size_t>(inRow)];
}

// Runs one step of start-up or clean-up: a host that fails in it fails in this one alone.
template <class Step>
void RunStep(Step&& inStep) {
  GuardExport([&] {
    inStep();
    return MC_S_OK;
  });
}

// A service's view begins with the table of the root operations, whatever interface it is of.
IMCUnknown* Ask(IMCUnknown& inRoot, const MCGuid& inID) {
  void* view = nullptr;
  RunStep([&] { inRoot.QueryInterface(inID, &view); });
  return static_cast<IMCUnknown*>(view);
}

// The foundation's own pointers follow their rows. They hold no reference beside the table's.
void NameFoundationServices() {
  gShellUtilities = static_cast<IShellUtilities*>(Row(ServiceRow::kShell));
  gDebugUtilities = static_cast<IDebugUtilities*>(Row(ServiceRow::kDebug));
  gMemoryUtilities = static_cast<IMemoryUtilities*>(Row(ServiceRow::kMemory));
  gShSafeUtilities = static_cast<IShSafeUtilities*>(Row(ServiceRow::kShSafe));
}

void Give(IMCUnknown*& ioService) {
  IMCUnknown* const service = ioService;
  ioService = nullptr;
  NameFoundationServices();
  if (service != nullptr) {
    RunStep([&] { service->Release(); });
  }
}

bool PutQuestion(IMCUnknown* inService) {
  auto* const question = static_cast<IHostQuestion*>(inService);
  bool answer = false;
  if (question != nullptr) {
    RunStep([&] { answer = question->Answer(); });
  }
  return answer;
}

}  // namespace

void StartUtilities(IMCUnknown* inRoot) {
  if (MC_ASSERT_TEXT(inRoot != nullptr, "utilities")) {
    for (std::size_t i = 0; i < kFirstGroupSize; ++i) {
      sFirstGroup[i] = Ask(*inRoot, kFirstGroup[i]);
      NameFoundationServices();
    }
  }
  ProcessorFeatures features;
  if (gShSafeUtilities != nullptr) {
    RunStep([&] { gShSafeUtilities->GetProcessorFeatures(features); });
  }
  gProcessorFeatures = features;
  RunStep([] { StartMultiProcessing(static_cast<IMultiProcessing*>(Row(ServiceRow::kMultiProcessing)), 1); });
  CountedObjectBookkeeping bookkeeping;
  if (gDebugUtilities != nullptr) {
    RunStep([&] { gDebugUtilities->GetCountedObjectBookkeeping(bookkeeping); });
  }
  InitMCCountedObject(bookkeeping);
}

void EndUtilities() {
  for (const uint8 row : kReleaseOrder) {
    Give(sFirstGroup[row - 1U]);
  }
  InitMCCountedObject({});
  gProcessorFeatures = {};
  EndMultiProcessing();
}

void StartExtensionServices(IMCUnknown* inRoot) {
  if (inRoot != nullptr) {
    for (std::size_t i = 0; i < kSecondGroupSize; ++i) {
      sSecondGroup[i] = Ask(*inRoot, kSecondGroup[i]);
    }
    sSecondGroupAnswer = PutQuestion(sSecondGroup.back());
    for (std::size_t i = 0; i < kThirdGroupSize; ++i) {
      sThirdGroup[i] = Ask(*inRoot, kThirdGroup[i]);
    }
  }
  sThirdGroupAnswer = PutQuestion(sThirdGroup.front());
}

void EndExtensionServices() {
  for (IMCUnknown*& service : sThirdGroup) {
    Give(service);
  }
  for (IMCUnknown*& service : sSecondGroup) {
    Give(service);
  }
  sSecondGroupAnswer = false;
  sThirdGroupAnswer = false;
}

bool GetSecondGroupAnswer() {
  return sSecondGroupAnswer;
}
bool GetThirdGroupAnswer() {
  return sThirdGroupAnswer;
}

void* detail::FindServiceRow(ServiceRow inRow) noexcept {
  return Row(inRow);
}

void* detail::GetServiceRow(ServiceRow inRow, const char* inName) {
  IMCUnknown* const service = Row(inRow);
  MC_ASSERT_TEXT(service != nullptr, inName);
  return service;
}

}  // namespace qlx
