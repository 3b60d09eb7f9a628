#include "PartBuilder.h"

#include "Controls.h"
#include "Lists.h"
#include "TreeControl.h"

namespace qlx::host {

TMCCountedPtr<Part> BuildPart(const std::shared_ptr<const ControlDescription>& inDescription) {
  switch (inDescription->fKind) {
    case ControlKind::kTitle:
    case ControlKind::kPane:
      return MakeHosted<LabelledPart>(inDescription);
    case ControlKind::kCheckBox:
    case ControlKind::kRadio:
      return MakeHosted<ToggleControl>(inDescription);
    case ControlKind::kInteger:
    case ControlKind::kNumber:
      return MakeHosted<NumberControl>(inDescription);
    case ControlKind::kText:
      return MakeHosted<TextControl>(inDescription);
    case ControlKind::kPopup:
      return MakeHosted<PopupControl>(inDescription);
    case ControlKind::kSlider:
      return MakeHosted<SliderControl>(inDescription);
    case ControlKind::kVector:
      return MakeHosted<VectorControl>(inDescription);
    case ControlKind::kList:
      return MakeHosted<ListControl>(inDescription);
    case ControlKind::kTree:
      return MakeHosted<TreeControl>(inDescription);
    default:
      return MakeHosted<Part>(inDescription);
  }
}

}  // namespace qlx::host
