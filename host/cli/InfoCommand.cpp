// `qlx info`: the plug-in that is loaded.
#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "JsonText.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/IDText.h"
#include "services/ComponentCall.h"

namespace qlx::host {

namespace {

const char* const kInfoExamples = R"(Examples:
  qlx info
  qlx info --library build/debug/bin/libqlx.so --json
)";

std::string TextFromGuid(const MCGuid& inGuid) {
  std::string text = fmt::format("{:08X}-{:04X}-{:04X}-", inGuid.fData1, inGuid.fData2, inGuid.fData3);
  for (int i = 0; i < 8; ++i) {
    text += fmt::format("{}{:02X}", i == 2 ? "-" : "", inGuid.fData4[i]);
  }
  return text;
}

// Asks the plug-in for one object of the class, and lets it go.
bool Makes(const PluginLibrary& inPlugin, const ExtensionRecord& inClass) {
  void* object = nullptr;
  MCResult result = MC_E_NOTCREATED;
  const auto failure = CallComponent("CreateInstance", [&] {
    result = inPlugin.Create(inClass.fClassID, nullptr, IMCUnknown::kInterfaceID, &object);
    if (result == MC_S_OK && object != nullptr) {
      static_cast<IMCUnknown*>(object)->Release();
    }
  });
  return !failure && result == MC_S_OK && object != nullptr;
}

// Host and plug-in are built for one target: else the plug-in could not be loaded.
struct Target {
  const char* fSystem = QLX_TARGET_SYSTEM;
  int fBits = static_cast<int>(8 * sizeof(void*));
  const char* fCompiler = QLX_TARGET_COMPILER;
};

std::string AsText(const Host& inHost) {
  const PluginLibrary& plugin = *inHost.GetPlugin();
  const Target target;
  std::string text = fmt::format("plug-in   {}\nsystem    {}, {} bits\ncompiler  {}\n\nexports\n",
                                 PathText(plugin.GetFile()), target.fSystem, target.fBits, target.fCompiler);
  for (const std::string& name : PluginLibrary::GetExportNames()) {
    text += "  " + name + '\n';
  }
  text += "\nclasses\n";
  for (const ExtensionRecord& row : inHost.GetCatalog()->GetClasses()) {
    text +=
        fmt::format("  {:<11}  {:<25}  {}  {} {}  {}\n", Makes(plugin, row) ? "yes" : "not yet", row.fName,
                    TextFromGuid(row.fClassID), TextFromID(row.fFamily), TextFromID(row.fID), Printable(row.fLabel));
  }
  return text;
}

std::string AsJson(const Host& inHost) {
  const PluginLibrary& plugin = *inHost.GetPlugin();
  const Target target;
  Json classes = Json::array();
  for (const ExtensionRecord& row : inHost.GetCatalog()->GetClasses()) {
    classes.push_back({{"name", row.fName},
                       {"classId", TextFromGuid(row.fClassID)},
                       {"family", TextFromID(row.fFamily)},
                       {"id", TextFromID(row.fID)},
                       {"label", row.fLabel},
                       {"help", row.fHelp},
                       {"resource", row.fResourceId == 0 ? Json() : Json(row.fResourceId)},
                       {"made", Makes(plugin, row)}});
  }
  return JsonText({{"library", PathText(plugin.GetFile())},
                   {"target", {{"system", target.fSystem}, {"bits", target.fBits}, {"compiler", target.fCompiler}}},
                   {"exports", PluginLibrary::GetExportNames()},
                   {"classes", std::move(classes)}});
}

}  // namespace

void AddInfoCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("info", "Describe the plug-in: target, exports, classes");
  const auto json = std::make_shared<bool>(false);
  command->footer(kInfoExamples);
  command->add_flag("--json", *json, "Print it as JSON");
  AddLibraryOption(*command, inContext);
  command->callback([json, &inContext] {
    inContext.fAction = [json, &inContext] {
      Session session(inContext);
      inContext.fConsole.fOut << (*json ? AsJson(session.GetHost()) : AsText(session.GetHost()));
      session.ShowWarnings();
    };
  });
}

}  // namespace qlx::host
