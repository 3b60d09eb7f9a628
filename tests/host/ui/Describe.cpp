#include "Describe.h"

#include "model/IDText.h"

namespace qlx::host::test {

void NotingListener::Receive(uint32 inMessage, Part& inSource, void* inData) {
  fTold.push_back(std::to_string(inMessage) + " " + TextFromID(inSource.GetPartId()) + (inData ? " with data" : ""));
}

}  // namespace qlx::host::test
