#include "StartedPlugin.h"

#include <random>
#include <string>

namespace qlx::contract {

namespace {

std::filesystem::path MakeCopy() {
  const std::filesystem::path built = QLX_PLUGIN_FILE;
  std::random_device random;
  const std::string name = "qlx-contract-" + std::to_string(random()) + "-" + std::to_string(random());
  const std::filesystem::path copy = std::filesystem::temp_directory_path() / (name + built.extension().string());
  std::filesystem::copy_file(built, copy);
  return copy;
}

}  // namespace

LoadedPlugin::LoadedPlugin() : fFile(MakeCopy()) {
  fLibrary.emplace(fFile);
}

LoadedPlugin::~LoadedPlugin() {
  Unload();
  std::error_code ignored;
  std::filesystem::remove(fFile, ignored);
}

StartedPlugin::StartedPlugin() {
  EXPECT_EQ(fPlugin->fInit(&fHost), MC_S_OK);
}

StartedPlugin::~StartedPlugin() {
  EXPECT_EQ(fPlugin->fCanUnloadNow(), 0) << "a component is alive";
  EXPECT_EQ(fHost.fMemory.fAlive, 0) << "a block of the host's memory is in use";
  EXPECT_EQ(fPlugin->fCleanUp(), MC_S_OK);
  EXPECT_EQ(fHost.GetHeldReferences(), 0) << "a service is held";
}

TMCCountedPtr<IMCClassFactory> StartedPlugin::GetFactory(const MCGuid& inClassID) const {
  void* factory = nullptr;
  EXPECT_EQ(fPlugin->fGetClassObject(inClassID, IMCClassFactory::kInterfaceID, &factory), MC_S_OK);
  return MCAdopt(static_cast<IMCClassFactory*>(factory));
}

TMCCountedPtr<I3DExModifier> StartedPlugin::MakePin() const {
  void* pin = nullptr;
  EXPECT_EQ(GetFactory(kPinClass)->CreateInstance(nullptr, I3DExModifier::kInterfaceID, &pin), MC_S_OK);
  return MCAdopt(static_cast<I3DExModifier*>(pin));
}

}  // namespace qlx::contract
