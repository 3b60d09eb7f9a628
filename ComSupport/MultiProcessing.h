// The start of multi-processing: how many processors the host offers, and which thread is its main one.
#pragma once

#include <thread>

#include "HostServices.h"

namespace qlx {

// With the flag 1, takes the two values from the host and records the calling thread. Without the service the system
// counts on one processor and no queue.
void StartMultiProcessing(IMultiProcessing* inService, int32 inFlag);
// Does nothing: what was taken belongs to the host.
void EndMultiProcessing();

uint32 GetProcessorCount();
std::thread::id GetMainThreadID();

}  // namespace qlx
