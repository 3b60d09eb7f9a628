#include "SceneCommand.h"

#include <fmt/format.h>

#include "CommandSettings.h"
#include "Host.h"
#include "SceneCommandContext.h"
#include "UserInterface.h"

namespace qlx::host {

// What is there for a command while it works, and put back behind it, whatever it left.
class SceneCommand::Surroundings {
 public:
  Surroundings(UserInterface& ioUser, Scene& inScene)
      : fUser(ioUser), fScene(ioUser.GetScene()), fContexts(ioUser.fContexts) {
    fUser.SetScene(&inScene);
  }
  ~Surroundings() {
    fUser.CloseDialogs();
    fUser.fContexts = std::move(fContexts);
    fUser.SetScene(fScene);
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

 private:
  UserInterface& fUser;
  Scene* fScene;
  std::vector<UserInterface::Context> fContexts;
};

SceneCommand::SceneCommand(Host& inHost, Scene& inScene, const ExtensionRecord& inCommand)
    : fHost(inHost), fScene(inScene), fCatalog(inHost.GetCatalog()), fRecord(inCommand) {
  void* made = nullptr;
  const PluginLibrary* const plugin = fHost.GetPlugin();
  const MCResult result =
      plugin ? plugin->Create(fRecord.fClassID, nullptr, IMCUnknown::kInterfaceID, &made) : MC_E_NOTCREATED;
  if (result != MC_S_OK || !made) {
    Fail(fmt::format("the plug-in does not make this command (0x{:08X})", static_cast<uint32>(result)));
  }
  fComponent.Adopt(static_cast<IMCUnknown*>(made));
  Call("QueryInterface", [this] { fCommand = MCQuery<I3DExSceneCommand>(fComponent); });
  if (!fCommand) {
    Fail("this class is no command");
  }
}

SceneCommand::~SceneCommand() {
  const auto failure = CallComponent("Release", [this] {
    fCommand.Clear();
    fComponent.Clear();
  });
  if (failure) {
    fHost.GetDiagnostics().Warn(CommandName(fRecord) + ": " + failure->GetText());
  }
}

void SceneCommand::Fail(const std::string& inProblem) const {
  throw UserError(CommandName(fRecord), inProblem);
}

template <class Body>
void SceneCommand::Call(const char* inOperation, const Body& inBody) {
  const auto failure = CallComponent(inOperation, inBody);
  fHost.GetUser().ThrowProblem();
  if (failure) {
    Fail(failure->GetText());
  }
}

bool SceneCommand::IsEnabled() {
  const auto context = MakeHosted<SceneCommandContext>(fScene);
  bool isEnabled = false;
  const auto failure = CallComponent("SelfPrepare", [&] {
    TMCCountedPtr<ISelfPrepareMenuCallBack> callBack;
    fCommand->GetMenuCallBack(callBack.WriteInto());
    isEnabled = callBack && callBack->SelfPrepare(context.Get());
  });
  if (failure) {
    fHost.GetDiagnostics().Warn(CommandName(fRecord) + ": " + failure->GetText());
  }
  return !failure && isEnabled;
}

bool SceneCommand::EditSettings() {
  const ParameterMap* const map = fCatalog->FindMap(fRecord.fID);
  TMCCountedPtr<IExDataExchanger> exchanger;
  void* block = nullptr;
  uint32 size = 0;
  int16 panel = 0;
  Call("GetExtensionDataBuffer", [&] {
    exchanger = MCQuery<IExDataExchanger>(fComponent);
    if (exchanger) {
      block = exchanger->GetExtensionDataBuffer();
      size = exchanger->GetExtensionDataSize();
      panel = exchanger->GetResourceId();
    }
  });
  auto description = fCatalog->FindPart("Panl"_id, panel);
  if (!map || !block || !description) {
    return true;
  }
  if (size != map->GetSize()) {
    Fail(fmt::format("its settings have {} bytes, and its fields {}", size, map->GetSize()));
  }
  return host::EditSettings(fHost, fRecord.fID, *map, std::move(description), block);
}

bool SceneCommand::Run() {
  if (!IsEnabled()) {
    Fail("is not enabled for what is selected");
  }
  const Surroundings surroundings(fHost.GetUser(), fScene);
  const auto context = MakeHosted<SceneCommandContext>(fScene);
  MCResult result = MC_S_OK;
  Call("Init", [&] { result = fCommand->Init(context.Get()); });
  if (result == MC_S_OK) {
    Call("Prepare", [&] { result = fCommand->Prepare(); });
  }
  if (result != MC_S_OK) {
    Fail(fmt::format("cannot be prepared (0x{:08X})", static_cast<uint32>(result)));
  }
  // Behind `Init`, which sets them back.
  if (!EditSettings()) {
    return false;
  }
  bool isDone = false;
  Call("Do", [&] {
    fCommand->BeforeDo();
    isDone = fCommand->Do();
    fCommand->AfterDo();
    fCommand->Finish();
  });
  return isDone;
}

std::vector<MenuEntry> ListCommands(Host& inHost, Scene& inScene) {
  std::vector<MenuEntry> entries;
  for (const ExtensionRecord& record : inHost.GetCatalog()->GetClasses()) {
    if (record.fFamily != "scmd"_id) {
      continue;
    }
    bool isEnabled = false;
    try {
      isEnabled = SceneCommand(inHost, inScene, record).IsEnabled();
    } catch (const UserError& problem) {
      inHost.GetDiagnostics().Warn(problem.what());
    }
    entries.push_back({&record, isEnabled});
  }
  return entries;
}

std::string CommandName(const ExtensionRecord& inCommand) {
  constexpr std::string_view kDots = "...";
  return inCommand.fLabel.ends_with(kDots) ? inCommand.fLabel.substr(0, inCommand.fLabel.size() - kDots.size())
                                           : inCommand.fLabel;
}

}  // namespace qlx::host
