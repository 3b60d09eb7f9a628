#include "ModifierPanel.h"

#include <fmt/format.h>

#include "Host.h"
#include "UserInterface.h"
#include "ui/Hand.h"

namespace qlx::host {

namespace {

std::shared_ptr<const PartDescription> FindPanel(Host& inHost, PluginModifier& inModifier) {
  const int16 number = inModifier.GetPanelNumber();
  auto panel = inHost.GetCatalog()->FindPart("Panl"_id, number);
  if (!panel) {
    throw UserError(inModifier.GetClassName(),
                    number == 0 ? "has no panel" : fmt::format("its panel {} is not in the resources", number));
  }
  return panel;
}

}  // namespace

ModifierPanel::ModifierPanel(Host& inHost, PluginModifier& inModifier)
    : fHost(inHost),
      fModifier(MCShare(&inModifier)),
      fForm(MakeHosted<Form>(FindPanel(inHost, inModifier), kPanelControlUsed)) {
  if (const ParameterMap* const map = fModifier->GetParameterMap()) {
    fBindings = BindFields(fHost, fModifier->GetModifierClass(), *map, *fForm);
  }
  Tell(kPanelOpened, fForm->GetMessageSource());
  fHost.GetUser().ThrowProblem();
  fForm->SetListener(this);
  fForm->ShowFirstPages();
  Refresh();
}

ModifierPanel::~ModifierPanel() {
  fForm->SetListener(nullptr);
}

void ModifierPanel::Refresh() const {
  for (std::size_t left = fBindings.size(); left-- > 0;) {
    const FieldControl& binding = fBindings[left];
    const bool isShown = binding.fControl->SetValue(fModifier->GetField(*binding.fField));
    if (!isShown && binding.fControl->GetKind() == ControlKind::kPopup) {
      binding.fControl->SetValue(int32{-1});
    }
  }
}

void ModifierPanel::Store(const FieldControl& inBinding) {
  const std::optional<ParameterValue> value = inBinding.GetValue();
  if (value && fModifier->SetField(*inBinding.fField, *value)) {
    return;
  }
  const std::string what = NameOf(*inBinding.fControl);
  Refresh();
  const std::size_t longest = LongestFieldText(inBinding.fField->fType);
  const auto* const text = value ? std::get_if<std::string>(&*value) : nullptr;
  throw UserError(what, text && text->size() > longest
                            ? fmt::format("the text has {} bytes, and {} is the most", text->size(), longest)
                            : fmt::format("this is no value for {}", inBinding.fField->fName));
}

// The field of the control, and those of the other radio buttons of its group.
void ModifierPanel::Take(const Part& inSource) {
  const ControlDescription& source = inSource.GetDescription();
  for (const FieldControl& binding : fBindings) {
    const ControlDescription& control = binding.fControl->GetDescription();
    const bool isOfGroup = source.fKind == ControlKind::kRadio && control.fKind == ControlKind::kRadio &&
                           source.fRadioGroup == control.fRadioGroup;
    if (isOfGroup || binding.fControl == &inSource) {
      Store(binding);
    }
  }
}

void ModifierPanel::Tell(uint32 inMessage, Part& inSource) {
  UserInterface& user = fHost.GetUser();
  Scene* const before = user.GetScene();
  const Element* const element = fModifier->GetElement();
  user.SetScene(element ? element->GetOwnScene() : nullptr);
  fModifier->SendEvent(inMessage, static_cast<IMFPart*>(&inSource));
  user.SetScene(before);
}

void ModifierPanel::Receive(uint32 inMessage, Part& inSource, void* /*inData*/) {
  Take(inSource);
  Tell(inMessage, inSource);
  Refresh();
  fHost.GetUser().ThrowProblem();
}

bool ModifierPanel::IsSelectable(IMFHierarchyItem& inItem) {
  return AskIfSelectable(inItem);
}

}  // namespace qlx::host
