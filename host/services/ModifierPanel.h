// The panel of a modifier: a form whose controls show the fields of the modifier's public block.
#pragma once

#include <memory>
#include <vector>

#include "FieldControls.h"
#include "PluginModifier.h"

namespace qlx::host {

class Host;

// Opening sends the modifier a message of its own, so that it fills lists and titles. What a person does with a control
// goes into the block first; then the modifier is told, and the controls show the block again. A field that the map
// binds to a control that the panel lacks is not shown; one of a control that cannot show it is told by a warning. Must
// be closed before the host and the scene.
class ModifierPanel final : private FormListener {
 public:
  // `UserError` for a modifier without a panel.
  ModifierPanel(Host& inHost, PluginModifier& inModifier);
  ~ModifierPanel();
  ModifierPanel(const ModifierPanel&) = delete;
  ModifierPanel& operator=(const ModifierPanel&) = delete;

  Form& GetForm() const { return *fForm; }
  PluginModifier& GetModifier() const { return *fModifier; }
  // Shows the block, as after a change from elsewhere. Of several radio buttons of a group that are set, the first
  // field's is on, as modifiers read them. A popup without the row shows none.
  void Refresh() const;

 private:
  // FormListener
  void Receive(uint32 inMessage, Part& inSource, void* inData) override;
  bool IsSelectable(IMFHierarchyItem& inItem) override;

  void Take(const Part& inSource);
  void Store(const FieldControl& inBinding);
  void Tell(uint32 inMessage, Part& inSource);

  Host& fHost;
  TMCCountedPtr<PluginModifier> fModifier;
  TMCCountedPtr<Form> fForm;
  std::vector<FieldControl> fBindings;  // in the order of the fields
};

}  // namespace qlx::host
