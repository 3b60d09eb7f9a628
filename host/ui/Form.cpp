#include "Form.h"

#include "Controls.h"
#include "Lists.h"
#include "PartBuilder.h"

namespace qlx::host {

namespace {

std::shared_ptr<const ControlDescription> DescribeTop() {
  static const auto sTop = std::make_shared<const ControlDescription>();
  return sTop;
}

const Part* FindTitle(const Part& inPart) {
  if (inPart.GetKind() == ControlKind::kTitle) {
    return &inPart;
  }
  for (const auto& child : inPart.GetChildren()) {
    if (const Part* const found = FindTitle(*child)) {
      return found;
    }
  }
  return nullptr;
}

void ShowFirstPage(const Form& inForm, const Part& inPart) {
  const bool isPage = inPart.GetKind() == ControlKind::kPane && inPart.GetDescription().fPaneList != 0;
  auto* const list = isPage ? dynamic_cast<ListControl*>(inForm.Find(inPart.GetDescription().fPaneList)) : nullptr;
  if (list && list->GetChosen() < 0) {
    list->SetCurrentRow(0);
  }
  for (const auto& child : inPart.GetChildren()) {
    ShowFirstPage(inForm, *child);
  }
}

}  // namespace

Form::Form(std::shared_ptr<const PartDescription> inDescription, uint32 inMessage)
    : Part(DescribeTop()), fWhole(std::move(inDescription)), fMessage(inMessage) {
  Adopt(BuildPart(std::shared_ptr<const ControlDescription>(fWhole, &fWhole->fRoot)));
  NoteGroups(*this);
  SetForm(this);
}

Form::~Form() {
  SetForm(nullptr);
}

void Form::NoteGroups(Part& inPart) {
  if (inPart.GetKind() == ControlKind::kRadio) {
    fRadioGroups[inPart.GetDescription().fRadioGroup].push_back(&inPart);
  }
  for (const auto& child : inPart.GetChildren()) {
    NoteGroups(*child);
  }
}

void Form::Used(Part& inSource) {
  if (fListener) {
    fListener->Receive(fMessage, inSource, nullptr);
  }
}

Part& Form::GetMessageSource() const {
  const Part* const title = FindTitle(GetRoot());
  return title ? const_cast<Part&>(*title) : GetRoot();
}

const std::vector<Part*>& Form::GetRadioGroup(MCID inGroup) const {
  static const std::vector<Part*> sNone;
  const auto found = fRadioGroups.find(inGroup);
  return found == fRadioGroups.end() ? sNone : found->second;
}

bool Form::IsShown(const Part& inPart) const {
  for (const Part* part = &inPart; part; part = part->GetParent()) {
    const ControlDescription& description = part->GetDescription();
    if (part->GetKind() != ControlKind::kPane || description.fPaneList == 0) {
      continue;
    }
    const auto* const list = dynamic_cast<const ListControl*>(Find(description.fPaneList));
    if (list && list->GetChosen() != description.fPaneRow) {
      return false;
    }
  }
  return true;
}

void Form::ShowFirstPages() {
  ShowFirstPage(*this, GetRoot());
}

}  // namespace qlx::host
