// Descriptions of classes, fields, panels and dialogs, from any bytes and from any text. What is taken of bytes is
// written as the same bytes; what a text makes can be read; whatever is refused is refused with a place.
#include <span>

#include "FuzzTarget.h"
#include "resources/ResourceCodec.h"
#include "resources/ResourceError.h"
#include "resources/compiler/Compiler.h"

namespace qlx::host {
namespace {

using fuzz::FuzzCheck;

std::vector<uint8> RecodeAny(MCID inType, std::span<const uint8> inBytes) {
  switch (inType) {
    case kExtensionType:
      return EncodeExtension(DecodeExtension(inBytes, 1));
    case kParameterMapType:
      return EncodeParameterMap(DecodeParameterMap(inBytes, 1));
    default:
      return EncodePart(DecodePart(inBytes, inType, 1));
  }
}

void TryBytes(MCID inType, std::span<const uint8> inBytes) {
  try {
    const std::vector<uint8> again = RecodeAny(inType, inBytes);
    FuzzCheck(std::equal(again.begin(), again.end(), inBytes.begin(), inBytes.end()), "other bytes than were read");
  } catch (const ResourceError& error) {
    FuzzCheck(std::string(error.what()).find(" 1, byte ") != std::string::npos, "a problem without its place");
  }
}

void TryText(std::string_view inText) {
  Source source;
  try {
    ParseSource("a", inText, source);
    CheckSource(source);
  } catch (const ResourceError& error) {
    FuzzCheck(std::string(error.what()).substr(0, 2) == "a:", "a problem without its place");
    return;
  }
  for (const CompiledResource& resource : CompileSource(source)) {
    FuzzCheck(RecodeAny(resource.fType, resource.fBytes) == resource.fBytes, "a text that makes another resource");
  }
}

}  // namespace
}  // namespace qlx::host

int LLVMFuzzerTestOneInput(const uint8_t* inBytes, size_t inSize) {
  using namespace qlx;
  fuzz::FuzzInput input(inBytes, inSize);
  constexpr MCID kTypes[] = {host::kExtensionType, host::kParameterMapType, host::kPanelType};
  const std::size_t kind = input.TakeByte() % (std::size(kTypes) + 1);
  if (kind == std::size(kTypes)) {
    host::TryText({input.Rest(), input.RestSize()});
  } else {
    host::TryBytes(kTypes[kind], {inBytes + inSize - input.RestSize(), input.RestSize()});
  }
  return 0;
}
