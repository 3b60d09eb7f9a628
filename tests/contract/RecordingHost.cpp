#include "RecordingHost.h"

#include <algorithm>

namespace qlx::contract {

const std::array<ServiceRow, kServiceCount> kServiceRows = {{
    {"1.1", "031DD1DA-024E-11D2-8F2E-00609798E77D"_guid},  {"1.2", "F7010D64-AB27-11D2-8B64-0060970BC521"_guid},
    {"1.3", "406FF750-5179-11D2-97C1-00A024418B95"_guid},  {"1.4", "D33D0B51-3236-11D2-817F-006008965392"_guid},
    {"1.5", "900B69F1-701B-11D0-B2B5-00AA004B60E7"_guid},  {"1.6", "38278AE6-2621-4CB2-8F0A-793C86CB547C"_guid},
    {"1.7", "5FF1E1C0-63C3-11D2-B89E-00104B2C9011"_guid},  {"1.8", "031DD1DB-024E-11D2-8F2E-00609798E77D"_guid},
    {"1.9", "B0010A34-A52D-443C-8553-5A93CDC2FDAE"_guid},  {"1.10", "F3CA8A60-3F55-11D1-A09F-00AA00D37E0B"_guid},
    {"1.11", "9AB72E25-D94F-11D1-A0D5-00AA00D307EB"_guid}, {"1.12", "5FF1E1C2-63C3-11D2-B89E-00104B2C9011"_guid},
    {"1.13", "5FF1E1C1-63C3-11D2-B89E-00104B2C9011"_guid}, {"1.14", "04BC77A0-2E52-11D2-817B-006008965392"_guid},
    {"1.15", "EFE46A00-0712-11D2-A0DE-00AA00D307EB"_guid}, {"1.16", "5C9601AB-7CC3-101C-885F-04021C007002"_guid},
    {"1.17", "2C3140EC-3EE0-11D2-848F-0060970BC521"_guid}, {"1.18", "2E5D4545-EF33-4DD9-B04B-22B43AD7E1F9"_guid},
    {"1.19", "AAB261E8-3B4F-442D-B0D3-90C90B27B592"_guid}, {"1.20", "4EC6D90B-26B6-4699-AB9E-335392B22B33"_guid},
    {"1.21", "C4CA810B-651E-11D3-B98E-00A0C9D66553"_guid}, {"2.1", "E49BB9F0-7F0F-11D2-B8BB-00104B2C9011"_guid},
    {"2.2", "0F709781-80B3-11D2-978B-0060973D5267"_guid},  {"2.3", "D2CE2492-34C1-11D3-83AD-00104B2D8E67"_guid},
    {"2.4", "36389BF8-B5E3-4B73-AC92-4FB5B99EB607"_guid},  {"3.1", "031DD1DC-024E-11D2-8F2E-00609798E77D"_guid},
    {"3.2", "36F8597C-C11C-11D2-8B7D-0060970BC521"_guid},  {"3.3", "55BD9AB1-CC13-11D2-81A0-006008965392"_guid},
}};

namespace {

std::size_t FindRow(const std::string& inName) {
  const auto found = std::find_if(kServiceRows.begin(), kServiceRows.end(),
                                  [&](const ServiceRow& row) { return row.fName == inName; });
  return static_cast<std::size_t>(found - kServiceRows.begin());
}

}  // namespace

void* FakeMemory::Make(MCSize inSize) {
  ++fRequests;
  if (fOnRequest) {
    fOnRequest();
  }
  if (fLeft == 0) {
    return nullptr;
  }
  fLeft -= fLeft > 0 ? 1 : 0;
  ++fAlive;
  fLastBlock = std::malloc(inSize);
  return fLastBlock;
}

void FakeMemory::End(void* inBlock) {
  fAlive -= inBlock ? 1 : 0;
  std::free(inBlock);
}

void* FakeMemory::Reallocate(void* inBlock, MCSize inSize) {
  return inBlock ? std::realloc(inBlock, inSize) : Make(inSize);
}

RecordingHost::RecordingHost() {
  for (std::size_t i = 0; i < kServiceCount; ++i) {
    Put(kServiceRows[i].fName, fPlain[i]);
  }
  Put("1.1", fShell);
  Put("1.5", fMultiProcessing);
  Put("1.7", fDebug);
  Put("1.8", fMemory);
  Put("1.9", fSafe);
  Put("1.11", fComponents);
  Put("1.13", fDialogs);
  Put("1.14", fResources);
  Put("2.4", fSecondQuestion);
  Put("3.1", fThirdQuestion);
}

template <class Interface>
void RecordingHost::Put(const char* inRow, Service<Interface>& inService) {
  inService.Connect(inRow, fLog);
  fServices[FindRow(inRow)] = {&inService, [&inService] { return inService.fCount; }};
}

MCResult RecordingHost::QueryInterface(const MCGuid& inID, void** outObject) {
  const auto found =
      std::find_if(kServiceRows.begin(), kServiceRows.end(), [&](const ServiceRow& row) { return row.fID == inID; });
  *outObject = nullptr;
  if (found == kServiceRows.end()) {
    fLog.push_back("ask ?");
    return MC_E_NOINTERFACE;
  }
  fLog.push_back(std::string("ask ") + found->fName);
  if (fOnAsk) {
    fOnAsk(found->fName);
  }
  if (fMissing.contains(found->fName)) {
    return fMissingAnswer;
  }
  IMCUnknown* const service = fServices[static_cast<std::size_t>(found - kServiceRows.begin())].fService;
  service->AddRef();
  *outObject = service;
  return MC_S_OK;
}

int32 RecordingHost::GetHeldReferences() const {
  int32 held = fCount;
  for (const Entry& entry : fServices) {
    held += entry.fReferences();
  }
  return held;
}

}  // namespace qlx::contract
