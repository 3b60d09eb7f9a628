// A loaded plug-in, met through its six exports alone.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "MCLibrary.h"
#include "MCUnknown.h"

namespace qlx::host {

// What a plug-in throws, and faults in it, come back as results: every call goes through `CallComponent`.
class PluginLibrary {
 public:
  // Loads the library and finds its exports. `UserError` names the file and what is wrong: missing, not a library, or
  // the export that it lacks. Nothing of the library has run then but its own load code.
  explicit PluginLibrary(const std::filesystem::path& inFile);
  // Cleans up when started, and unloads unless an object of the library is still alive: then it stays for good.
  ~PluginLibrary();
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  // Start-up with the host's root. Once.
  MCResult Start(IMCUnknown* inRoot);
  // Only the first call of a loaded library does anything.
  MCResult CleanUp();
  bool CanUnload() const;

  // An object of the class, aggregated by `inOuter` when that is not null. On failure `*outObject` is null.
  MCResult Create(const MCGuid& inClassID, IMCUnknown* inOuter, const MCGuid& inInterfaceID, void** outObject) const;

  const std::filesystem::path& GetFile() const { return fFile; }
  static const std::vector<std::string>& GetExportNames();

  // The exports themselves, for tests that make the calls of a host one by one.
  struct Exports {
    MCResult(MC_CALL* fInit)(IMCUnknown*);
    MCResult(MC_CALL* fCleanUp)();
    MCResult(MC_CALL* fGetClassObject)(const MCGuid&, const MCGuid&, void**);
    MCResult(MC_CALL* fCanUnloadNow)();
    MCResult(MC_CALL* fInitExceptionTranslator)();
    MCResult(MC_CALL* fCleanUpExceptionTranslator)();
  };
  const Exports& GetExports() const { return fExports; }

 private:
  std::filesystem::path fFile;
  MCLibrary fLibrary;
  Exports fExports{};
  bool fStarted = false;
};

}  // namespace qlx::host
