#include "MultiProcessing.h"

#include "MCAssert.h"

namespace qlx {

namespace {

uint32 sProcessorCount = 1;
std::thread::id sMainThread;
void* sMainJobQueue = nullptr;

}  // namespace

void StartMultiProcessing(IMultiProcessing* inService, int32 inFlag) {
  if (inFlag != 1) {
    return;
  }
  sProcessorCount = inService != nullptr ? inService->GetProcessorCount() : 1;
  sMainThread = std::this_thread::get_id();
  sMainJobQueue = inService != nullptr ? inService->GetMainJobQueue() : nullptr;
  if (inService != nullptr) {
    MC_ASSERT_TEXT(sMainJobQueue != nullptr, "gMultiProcessing");
  }
}

void EndMultiProcessing() {}

uint32 GetProcessorCount() {
  return sProcessorCount;
}
std::thread::id GetMainThreadID() {
  return sMainThread;
}

}  // namespace qlx
