#include "PluginDialog.h"

#include "COMSafeUtilities.h"

namespace qlx {

namespace {

// The plug-in's resources are current while this lives.
class ResourceContext {
 public:
  ResourceContext() : fManager(GetResourceManager()) {
    if (fManager && fManager->PushResourceContext("modi"_id, "fQLX"_id, fToken) != MC_S_OK) {
      fManager = nullptr;
    }
  }
  ~ResourceContext() {
    if (fManager) {
      fManager->PopResourceContext(fToken);
    }
  }
  ResourceContext(const ResourceContext&) = delete;
  ResourceContext& operator=(const ResourceContext&) = delete;

 private:
  IResourceManager* fManager;
  uint32 fToken = 0;
};

}  // namespace

PluginDialog::PluginDialog(int32 inResourceId) {
  const ResourceContext context;
  if (IDialogFactory* const factory = GetDialogFactory()) {
    factory->CreateDialog(fPart.WriteInto(), "Dlog"_id, inResourceId);
  }
  fModal = MCQuery<IModalDialog>(fPart);
}

PluginDialog::~PluginDialog() {
  if (fModal) {
    fModal->CloseDialog();
  }
}

bool PluginDialog::Run() {
  return fModal && fModal->RunModal();
}

}  // namespace qlx
