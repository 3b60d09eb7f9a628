// What the host knows of a plug-in beside its code: its classes, the fields of their public blocks, panels and dialogs.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "ParameterMap.h"
#include "resources/ResourceContents.h"

namespace qlx::host {

class Diagnostics;

// Never changes once it is made, so that who uses it may keep it beyond the plug-in.
class PluginCatalog {
 public:
  // Of records that are there twice the first counts.
  explicit PluginCatalog(ResourceContents inContents);

  // Of the records that stand in this program: no panels and dialogs.
  static const std::shared_ptr<const PluginCatalog>& GetBuiltIn();

  // Of the file "qlx.rsrc" in the folder of a library. Where there is none, or a record of it is damaged or lacks a
  // field that this program works with, the built-in records are used; what is wrong is a warning that names the file.
  static std::shared_ptr<const PluginCatalog> ReadBeside(const std::filesystem::path& inLibrary,
                                                         Diagnostics& inDiagnostics);

  // In the order of the records.
  const std::vector<ExtensionRecord>& GetClasses() const { return fContents.fExtensions; }
  // Null for an unknown class.
  const ExtensionRecord* FindClass(MCID inFamily, MCID inID) const;
  // The map of a class; null where it has none.
  const ParameterMap* FindMap(MCID inClass) const;
  // The same with the controls that show the fields, in the same order.
  const ParameterMapDescription* FindMapDescription(MCID inClass) const;
  // A panel ('Panl') or dialog ('Dlog'); null for none.
  std::shared_ptr<const PartDescription> FindPart(MCID inKind, int16 inID) const;

 private:
  ResourceContents fContents;
  std::map<MCID, ParameterMap> fMaps;
};

}  // namespace qlx::host
