// The token form of attribute paths: any bytes, and what was read written and read again.
#include <cstring>

#include "AttributePath.h"
#include "FuzzTokens.h"

namespace {

// The old escape is not written in a way that brings it back.
bool HasOldEscape(const qlx::AttributePath& inPath) {
  for (const qlx::AttributePathNode& node : inPath.GetNodes()) {
    if (std::memchr(node.fName.CStr(), 1, node.fName.ByteLength()) != nullptr) {
      return true;
    }
  }
  return false;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  using namespace qlx::fuzz;
  // Two bytes of data are a node of less than 100; a block may hold a quarter more than is in use.
  const FuzzHost host(8192 + inSize * 128);
  TokenInput input(inBytes, inSize);
  AttributePath path;
  if (!Ends([&] { path.ReadFrom(input.Stream()); })) {
    FuzzCheck(path.IsEmpty(), "a path that was not read has changed");
    return 0;
  }
  if (HasOldEscape(path)) {
    return 0;
  }
  TMCMemoryStream stream;
  path.WriteTo(stream, 0);
  stream.Seek(0, kFromStart);
  AttributePath again;
  FuzzCheck(Ends([&] { again.ReadFrom(stream); }), "a path that was written cannot be read");
  FuzzCheck(again.GetVersion() == path.GetVersion(), "the version changed");
  FuzzCheck(again.GetNodes().GetElemCount() == path.GetNodes().GetElemCount(), "the number of nodes changed");
  for (uint32 i = 0; i < path.GetNodes().GetElemCount(); ++i) {
    const AttributePathNode& before = path.GetNodes()[i];
    const AttributePathNode& after = again.GetNodes()[i];
    FuzzCheck(before.fType == after.fType && before.fIndex == after.fIndex, "a node changed");
  }
  return 0;
}
