// The built library, loaded afresh for one test and met through its six exports.
#pragma once

#include <filesystem>
#include <optional>

#include "HostExtensions.h"
#include "MCCountedPtr.h"
#include "RecordingHost.h"
#include "services/ComponentCall.h"
#include "services/PluginLibrary.h"

namespace qlx::contract {

inline constexpr MCGuid kPinClass = "203FF150-EDC1-991D-93E9-19E1A1710097"_guid;

// Clean-up works once a load, so every test loads a copy of its own: state of another test is never met.
class LoadedPlugin {
 public:
  LoadedPlugin();
  ~LoadedPlugin();

  const host::PluginLibrary::Exports& operator*() const { return fLibrary->GetExports(); }
  const host::PluginLibrary::Exports* operator->() const { return &fLibrary->GetExports(); }
  const host::PluginLibrary& GetLibrary() const { return *fLibrary; }
  // Unloads it; nothing of it may be used any more.
  void Unload() { fLibrary.reset(); }

 private:
  std::filesystem::path fFile;
  std::optional<host::PluginLibrary> fLibrary;
};

// Started with a host of its own, cleaned up at the end; then nothing of it may be left with the host.
class StartedPlugin {
 public:
  StartedPlugin();
  ~StartedPlugin();

  // The factory of a class, which must be there.
  TMCCountedPtr<IMCClassFactory> GetFactory(const MCGuid& inClassID) const;
  TMCCountedPtr<I3DExModifier> MakePin() const;

  RecordingHost fHost;
  LoadedPlugin fPlugin;
};

// Makes a call as the host does and answers what came out of it.
template <class Body>
std::optional<host::ComponentFailure> Guarded(Body&& inBody) {
  return host::CallComponent("call", inBody);
}

}  // namespace qlx::contract
