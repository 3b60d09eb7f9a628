#include "Compiler.h"

#include <fmt/format.h>

#include "resources/ResourceCodec.h"

namespace qlx::host {

std::vector<CompiledResource> CompileSource(const Source& inSource) {
  std::vector<CompiledResource> resources;
  const auto add = [&](MCID inType, std::size_t inID, std::string inName, std::vector<uint8> inBytes) {
    resources.push_back({inType, static_cast<int16>(inID), std::move(inName), std::move(inBytes)});
  };
  for (std::size_t i = 0; i < inSource.fExtensions.size(); ++i) {
    const ExtensionRecord& record = inSource.fExtensions[i].fRecord;
    add(kExtensionType, i + 1, record.fName, EncodeExtension(record));
  }
  for (std::size_t i = 0; i < inSource.fMaps.size(); ++i) {
    add(kParameterMapType, i + 1, {}, EncodeParameterMap(inSource.fMaps[i].fMap));
  }
  for (const MCID kind : {kPanelType, kDialogType}) {
    for (const PartSource& part : inSource.fParts) {
      if (part.fPart.fKind == kind) {
        add(kind, static_cast<std::size_t>(part.fPart.fResourceId), part.fPart.fLabel, EncodePart(part.fPart));
      }
    }
  }
  return resources;
}

std::string MakeBuiltInSource(const std::vector<CompiledResource>& inResources) {
  std::string bytes;
  std::string rows;
  std::size_t offset = 0;
  for (const CompiledResource& resource : inResources) {
    if (resource.fType != kExtensionType && resource.fType != kParameterMapType) {
      continue;
    }
    rows += fmt::format("    {{0x{:08X}, {}, {{kBytes + {}, {}}}}},\n", resource.fType, resource.fID, offset,
                        resource.fBytes.size());
    for (const uint8 byte : resource.fBytes) {
      bytes += fmt::format("{}{},", offset % 24 == 0 ? "\n    " : " ", byte);
      ++offset;
    }
  }
  return "// Made by qlx_rc from the text sources in resources/.\n"
         "#include \"resources/BuiltInResources.h\"\n\n"
         "namespace qlx::host {\n\nnamespace {\n\nconstexpr uint8 kBytes[] = {" +
         bytes + "\n};\n\nconstexpr BuiltInResource kResources[] = {\n" + rows +
         "};\n\n}  // namespace\n\n"
         "std::span<const BuiltInResource> GetBuiltInResources() {\n  return kResources;\n}\n\n"
         "}  // namespace qlx::host\n";
}

}  // namespace qlx::host
