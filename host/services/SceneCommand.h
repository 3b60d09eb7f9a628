// A command of the plug-in's menu, made for a scene and what is selected there.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ComponentCall.h"
#include "HostExtensions.h"
#include "MCCountedPtr.h"
#include "PluginCatalog.h"

namespace qlx::host {

class Host;
class Scene;

// To be run once. Must end before the host and the scene.
class SceneCommand {
 public:
  // The record is one of the host's catalog. `UserError` when the plug-in does not make the command.
  SceneCommand(Host& inHost, Scene& inScene, const ExtensionRecord& inCommand);
  ~SceneCommand();
  SceneCommand(const SceneCommand&) = delete;
  SceneCommand& operator=(const SceneCommand&) = delete;

  // What the command itself says of the selection. A failure of it is a warning, and disables.
  bool IsEnabled();

  // Does the command's work; false when the person cancelled its panel. A command with settings of its own shows them
  // first, in its panel, as a dialog. Dialogs that the command forgets are closed. `UserError`, with the command's
  // label, for one that is disabled, and for one that failed: what it did until then is done. What the person threw is
  // thrown again.
  bool Run();

 private:
  class Surroundings;

  bool EditSettings();
  // Throws what the component's operation failed with.
  template <class Body>
  void Call(const char* inOperation, const Body& inBody);
  [[noreturn]] void Fail(const std::string& inProblem) const;

  Host& fHost;
  Scene& fScene;
  std::shared_ptr<const PluginCatalog> fCatalog;  // holds the record
  const ExtensionRecord& fRecord;
  TMCCountedPtr<IMCUnknown> fComponent;
  TMCCountedPtr<I3DExSceneCommand> fCommand;
};

// The commands of the plug-in, in the order of its records, for a menu.
struct MenuEntry {
  const ExtensionRecord* fCommand;  // of the host's catalog
  bool fIsEnabled;
};
// A command that cannot be made is disabled, with a warning.
std::vector<MenuEntry> ListCommands(Host& inHost, Scene& inScene);

// "Delete Keyframes": a command's label without the dots that tell of a dialog.
std::string CommandName(const ExtensionRecord& inCommand);

}  // namespace qlx::host
