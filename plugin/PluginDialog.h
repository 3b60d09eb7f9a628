// A dialog of the resource file beside the library, from its making to its close.
#pragma once

#include "HostInterface.h"
#include "MCCountedPtr.h"

namespace qlx {

class PluginDialog {
 public:
  // Every dialog is found through the class of the link, whichever component asks.
  explicit PluginDialog(int32 inResourceId);
  // Closes it, after OK and after cancel.
  ~PluginDialog();
  PluginDialog(const PluginDialog&) = delete;
  PluginDialog& operator=(const PluginDialog&) = delete;

  // Null when there is no such dialog.
  IMFPart* GetPart() const { return fPart.Get(); }
  // True for OK; false for a dialog that does not exist.
  bool Run();

 private:
  TMCCountedPtr<IMFPart> fPart;
  TMCCountedPtr<IModalDialog> fModal;
};

}  // namespace qlx
