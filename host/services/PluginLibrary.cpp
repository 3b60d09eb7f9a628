#include "PluginLibrary.h"

#include <system_error>
#include <type_traits>
#include <utility>

#include "ComponentCall.h"
#include "HostExtensions.h"
#include "MCCountedPtr.h"
#include "MCFilePath.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

// Runs a call into the library and answers its result, or the code of what came out of it instead.
template <class Body>
MCResult Call(const char* inOperation, Body&& inBody) {
  MCResult result = MC_S_OK;
  const auto failure = CallComponent(inOperation, [&] { result = inBody(); });
  return failure ? failure->fCode : result;
}

void CheckFile(const std::filesystem::path& inFile) {
  std::error_code error;
  const auto status = std::filesystem::status(inFile, error);
  if (!std::filesystem::exists(status)) {
    throw UserError(PathText(inFile), "no such plug-in library");
  }
  if (std::filesystem::is_directory(status)) {
    throw UserError(PathText(inFile), "is a folder, not a plug-in library");
  }
}

// What the system says of a file that it does not load, without the file's name ahead of it.
std::string ReasonOf(const std::string& inErrorText, const std::string& inFile) {
  const std::string start = inFile + ": ";
  return inErrorText.starts_with(start) ? inErrorText.substr(start.size()) : inErrorText;
}

// Code of a library whose objects are still alive must stay where it is.
void KeepForGood(MCLibrary inLibrary) {
  static auto* const sKept = new std::vector<MCLibrary>;
  sKept->push_back(std::move(inLibrary));
}

}  // namespace

const std::vector<std::string>& PluginLibrary::GetExportNames() {
  static const std::vector<std::string> sNames = {
      "MCDllInit",
      "MCDllCleanUp",
      "MCDllGetClassObject",
      "MCDllCanUnloadNow",
      "MCDllInitExceptionTranslator",
      "MCDllCleanUpExceptionTranslator",
  };
  return sNames;
}

PluginLibrary::PluginLibrary(const std::filesystem::path& inFile) : fFile(inFile) {
  CheckFile(inFile);
  const std::string file = PathText(inFile);
  if (!fLibrary.Open(file.c_str())) {
    throw UserError(file, "not a library that can be loaded (" + ReasonOf(fLibrary.GetErrorText(), file) + ")");
  }
  const auto find = [&](auto& outExport, const char* inName) {
    outExport = fLibrary.Find<std::remove_reference_t<decltype(outExport)>>(inName);
    if (!outExport) {
      throw UserError(file, std::string("not a plug-in, it lacks the export ") + inName);
    }
  };
  find(fExports.fInit, "MCDllInit");
  find(fExports.fCleanUp, "MCDllCleanUp");
  find(fExports.fGetClassObject, "MCDllGetClassObject");
  find(fExports.fCanUnloadNow, "MCDllCanUnloadNow");
  find(fExports.fInitExceptionTranslator, "MCDllInitExceptionTranslator");
  find(fExports.fCleanUpExceptionTranslator, "MCDllCleanUpExceptionTranslator");
}

PluginLibrary::~PluginLibrary() {
  CleanUp();
  if (!CanUnload()) {
    KeepForGood(std::move(fLibrary));
  }
}

MCResult PluginLibrary::Start(IMCUnknown* inRoot) {
  fStarted = true;
  return Call("MCDllInit", [&] { return fExports.fInit(inRoot); });
}

MCResult PluginLibrary::CleanUp() {
  return std::exchange(fStarted, false) ? Call("MCDllCleanUp", fExports.fCleanUp) : MC_S_OK;
}

bool PluginLibrary::CanUnload() const {
  return Call("MCDllCanUnloadNow", fExports.fCanUnloadNow) == 0;
}

MCResult PluginLibrary::Create(const MCGuid& inClassID, IMCUnknown* inOuter, const MCGuid& inInterfaceID,
                               void** outObject) const {
  *outObject = nullptr;
  return Call("CreateInstance", [&] {
    void* view = nullptr;
    const MCResult found = fExports.fGetClassObject(inClassID, IMCClassFactory::kInterfaceID, &view);
    if (found != MC_S_OK || !view) {
      return found != MC_S_OK ? found : MC_E_NOTCREATED;
    }
    const auto factory = MCAdopt(static_cast<IMCClassFactory*>(view));
    return factory->CreateInstance(inOuter, inInterfaceID, outObject);
  });
}

}  // namespace qlx::host
