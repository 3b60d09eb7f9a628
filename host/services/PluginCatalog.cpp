#include "PluginCatalog.h"

#include <fmt/format.h>

#include <algorithm>

#include "MCFilePath.h"
#include "MCResourceFile.h"
#include "model/Diagnostics.h"
#include "resources/BuiltInResources.h"
#include "resources/ResourceCodec.h"
#include "resources/ResourceError.h"
#include "resources/ResourceReading.h"

namespace qlx::host {

namespace {

constexpr const char* kResourceFileName = "qlx.rsrc";

using Problems = std::vector<std::string>;

bool HasField(const ParameterMapDescription& inMap, const FieldDescription& inField) {
  return std::any_of(inMap.fFields.begin(), inMap.fFields.end(), [&](const FieldDescription& field) {
    return field.fName == inField.fName && field.fType == inField.fType;
  });
}

// A file may know more than this program, and less only of what the program does not use.
void CheckKnownRecords(const ResourceContents& inContents, const PluginCatalog& inKnown, Problems& ioProblems) {
  const PluginCatalog read(inContents);
  for (const ExtensionRecord& known : inKnown.GetClasses()) {
    const ParameterMapDescription* const map = inKnown.FindMapDescription(known.fID);
    if (map == nullptr) {
      continue;
    }
    const ParameterMapDescription* const found = read.FindMapDescription(known.fID);
    if (found == nullptr || read.FindClass(known.fFamily, known.fID) == nullptr) {
      ioProblems.push_back(fmt::format("nothing is said of {} or its fields", known.fName));
      continue;
    }
    for (const FieldDescription& field : map->fFields) {
      if (!HasField(*found, field)) {
        ioProblems.push_back(fmt::format("the field {} of {} is missing, or not of the type {}", field.fName,
                                         known.fName, QuotedID(field.fType)));
      }
    }
  }
}

ResourceContents ReadBuiltIn() {
  ResourceContents contents;
  for (const BuiltInResource& resource : GetBuiltInResources()) {
    contents.Add(resource.fType, resource.fID, resource.fBytes);
  }
  return contents;
}

// The records of the file, or those of the program.
ResourceContents ReadRecords(MCResourceFile& inFile, Problems& ioProblems) {
  ResourceContents contents;
  ReadResources(inFile, kExtensionType, contents, ioProblems);
  ReadResources(inFile, kParameterMapType, contents, ioProblems);
  CheckKnownRecords(contents, *PluginCatalog::GetBuiltIn(), ioProblems);
  return ioProblems.empty() ? contents : ReadBuiltIn();
}

}  // namespace

PluginCatalog::PluginCatalog(ResourceContents inContents) : fContents(std::move(inContents)) {
  for (const ParameterMapDescription& map : fContents.fMaps) {
    fMaps.emplace(map.fClass, ParameterMap(map.fFields));
  }
}

const std::shared_ptr<const PluginCatalog>& PluginCatalog::GetBuiltIn() {
  static const auto sBuiltIn = std::make_shared<const PluginCatalog>(ReadBuiltIn());
  return sBuiltIn;
}

std::shared_ptr<const PluginCatalog> PluginCatalog::ReadBeside(const std::filesystem::path& inLibrary,
                                                               Diagnostics& inDiagnostics) {
  const std::string path = PathText(inLibrary.parent_path() / kResourceFileName);
  MCResourceFile file;
  const MCResult opened = file.Open(TMCDynamicString(path.c_str()));
  if (opened != MC_S_OK) {
    inDiagnostics.Warn(fmt::format("{}: {}: there are no panels and dialogs", path,
                                   opened == MC_E_FILENOTFOUND ? "no such resource file" : file.GetProblem().CStr()));
    return GetBuiltIn();
  }
  Problems problems;
  ResourceContents contents = ReadRecords(file, problems);
  if (!problems.empty()) {
    inDiagnostics.Warn(fmt::format("{}: {}: the classes that this program knows are used", path, problems.front()));
  }
  problems.clear();
  ReadResources(file, kPanelType, contents, problems);
  ReadResources(file, kDialogType, contents, problems);
  for (const std::string& problem : problems) {
    inDiagnostics.Warn(fmt::format("{}: {}", path, problem));
  }
  return std::make_shared<const PluginCatalog>(std::move(contents));
}

const ExtensionRecord* PluginCatalog::FindClass(MCID inFamily, MCID inID) const {
  for (const ExtensionRecord& record : fContents.fExtensions) {
    if (record.fFamily == inFamily && record.fID == inID) {
      return &record;
    }
  }
  return nullptr;
}

const ParameterMap* PluginCatalog::FindMap(MCID inClass) const {
  const auto found = fMaps.find(inClass);
  return found == fMaps.end() ? nullptr : &found->second;
}

const ParameterMapDescription* PluginCatalog::FindMapDescription(MCID inClass) const {
  for (const ParameterMapDescription& map : fContents.fMaps) {
    if (map.fClass == inClass) {
      return &map;
    }
  }
  return nullptr;
}

std::shared_ptr<const PartDescription> PluginCatalog::FindPart(MCID inKind, int16 inID) const {
  for (const auto& part : fContents.fParts) {
    if (part->fKind == inKind && part->fResourceId == inID) {
      return part;
    }
  }
  return nullptr;
}

}  // namespace qlx::host
