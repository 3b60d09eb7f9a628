#include "AddModifierCommand.h"

#include "COMSafeUtilities.h"
#include "TreeSelectionIterator.h"

namespace qlx {

bool AddModifierCommand::Do() {
  return RunCommand([&] {
    TTreeSelectionIterator elements(fContext.fSelection.Get());
    if (const auto element = elements.Next()) {
      AppendModifier(*element, MakeModifier(fClass).Get());
    }
  });
}

TMCCountedPtr<IMCUnknown> MakeModifier(MCID inClass) {
  TMCCountedPtr<IMCUnknown> component;
  if (IComponentFactory* const factory = GetComponentFactory()) {
    factory->CreateComponent("modi"_id, inClass, component.WriteInto());
  }
  return component;
}

void AppendModifier(TreeElement& ioElement, IMCUnknown* inModifier) {
  if (const auto modifier = MCQuery<I3DShModifier>(inModifier)) {
    ioElement.InsertModifier(modifier.Get(), ioElement.GetModifierCount(1));
  }
}

}  // namespace qlx
