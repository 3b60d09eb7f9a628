#include "SystemServices.h"

#include <algorithm>
#include <thread>

namespace qlx::host {

void SafeUtilities::GetProcessorFeatures(ProcessorFeatures& outFeatures) {
  // Every processor that runs this program copies blocks of eight elements faster. The rest says nothing here.
  outFeatures = {.fBytes = {1, 0, 0, 0}};
}

uint32 MultiProcessing::GetProcessorCount() {
  return std::max(1U, std::thread::hardware_concurrency());  // 0 where the system does not tell
}

MCResult HostQuestion::FindPart(const MCGuid& inID, void** outObject) {
  return inID == fID ? MCStoreCounted<IHostQuestion>(this, outObject) : MCStoreNone(outObject);
}

}  // namespace qlx::host
