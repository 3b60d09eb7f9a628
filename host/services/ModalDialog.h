// A dialog that the plug-in made and runs, with the plug-in's own code behind it.
#pragma once

#include "HostExtensions.h"
#include "HostInterface.h"
#include "ui/Form.h"

namespace qlx::host {

class Host;

// Answers `IMFPart`, `IModalDialog`, and the class id of its code where the description names one. Dialog and code hold
// each other from the start until `CloseDialog`; a dialog that is closed runs no more.
class ModalDialog final : public PartWith<Form, IModalDialog>, private FormListener {
 public:
  // Null, with a warning, when the plug-in does not make the dialog's code.
  static TMCCountedPtr<ModalDialog> Create(Host& inHost, std::shared_ptr<const PartDescription> inDescription);
  ModalDialog(Host& inHost, std::shared_ptr<const PartDescription> inDescription);
  ~ModalDialog() override;

  // IModalDialog. The person is asked; false also for one whose answer failed.
  bool MC_CALL RunModal() override;
  void MC_CALL CloseDialog() override;

 protected:
  MCResult FindPart(const MCGuid& inID, void** outObject) override;

 private:
  // FormListener
  void Receive(uint32 inMessage, Part& inSource, void* inData) override;
  bool IsSelectable(IMFHierarchyItem& inItem) override;

  bool MakeExtension();
  template <class Body>
  bool Call(const char* inOperation, const Body& inBody);

  Host& fHost;
  bool fIsClosed = false;
  TMCCountedPtr<IMCUnknown> fExtension;
  TMCCountedPtr<IMFExResponder> fResponder;
  TMCCountedPtr<IMFExPart> fPart;
};

}  // namespace qlx::host
