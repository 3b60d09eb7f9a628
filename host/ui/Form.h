// A panel or dialog as a whole: the part above all others, built from its description.
#pragma once

#include <unordered_map>

#include "HostExtensions.h"
#include "Part.h"

namespace qlx::host {

// What a panel tells its modifier when it opens: no message that a control sends.
inline constexpr uint32 kPanelOpened = 1;

class FormListener {
 public:
  // A person used a control. `inMessage` is what the form sends for that.
  virtual void Receive(uint32 inMessage, Part& inSource, void* inData) = 0;
  // Rows of a tree are the other side's to ask.
  virtual bool IsSelectable(IMFHierarchyItem& inItem) = 0;

 protected:
  ~FormListener() = default;
};

// Stands above the described root, so that every control has two parts above it; it has no id itself.
class Form : public Part {
 public:
  Form(std::shared_ptr<const PartDescription> inDescription, uint32 inMessage);
  ~Form() override;

  // Whom it tells; must be null again before the listener goes.
  void SetListener(FormListener* inListener) { fListener = inListener; }
  FormListener* GetListener() const { return fListener; }
  // A person used the control.
  void Used(Part& inSource);

  // "Link", the panel's or dialog's own name.
  std::string GetLabel() const override { return fWhole->fLabel; }
  const PartDescription& GetPartDescription() const { return *fWhole; }
  Part& GetRoot() const { return *GetChildren().front(); }
  // What messages of the panel as a whole come from: its title, or else the root.
  Part& GetMessageSource() const;

  // The radio buttons of that group.
  const std::vector<Part*>& GetRadioGroup(MCID inGroup) const;
  // False for a part on a page that is not the current one. A page whose list there is not is shown always.
  bool IsShown(const Part& inPart) const;
  // A list that pages belong to and that has no current row gets its first one.
  void ShowFirstPages();

 private:
  void NoteGroups(Part& inPart);

  std::shared_ptr<const PartDescription> fWhole;
  uint32 fMessage;
  FormListener* fListener = nullptr;
  std::unordered_map<MCID, std::vector<Part*>> fRadioGroups;
};

}  // namespace qlx::host
