#include "ResourceContents.h"

#include "ResourceCodec.h"

namespace qlx::host {

void ResourceContents::Add(MCID inType, int16 inID, std::span<const uint8> inBytes) {
  switch (inType) {
    case kExtensionType:
      return fExtensions.push_back(DecodeExtension(inBytes, inID));
    case kParameterMapType:
      return fMaps.push_back(DecodeParameterMap(inBytes, inID));
    case kPanelType:
    case kDialogType:
      return fParts.push_back(std::make_shared<const PartDescription>(DecodePart(inBytes, inType, inID)));
    default:
      return;
  }
}

}  // namespace qlx::host
