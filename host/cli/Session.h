// A running host for one command: its plug-in, and the warnings that come up.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Command.h"
#include "gltf/GltfDocument.h"
#include "model/Diagnostics.h"
#include "services/Host.h"

namespace qlx::host {

// Documents that it opened must be gone before it.
class Session {
 public:
  // Loads the plug-in; a `UserError` when there is none.
  explicit Session(CommandContext& inContext);

  Host& GetHost() { return fHost; }
  std::unique_ptr<GltfDocument> Open(const SceneOptions& inOptions);

  // Warnings are kept back while a command may still fail, so that a failure is one line. This prints them.
  void ShowWarnings();
  const std::vector<std::string>& GetWarnings() const { return fDiagnostics.GetWarnings(); }

 private:
  Console& fConsole;
  Diagnostics fDiagnostics;
  Host fHost;
};

// "pinned_arm.gltf": the scene's file without its folder.
std::string ShortName(const SceneOptions& inOptions);

// The time of a frame. A `UserError` at the place given for one that no scene has.
int32 TimeOfFrame(Scene& ioScene, int32 inFrame, const std::string& inPlace);

}  // namespace qlx::host
