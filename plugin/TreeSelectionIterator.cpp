#include "TreeSelectionIterator.h"

#include "MCException.h"

namespace qlx {

TTreeSelectionIterator::TTreeSelectionIterator(ISceneSelection* inSelection) : fSelection(MCShare(inSelection)) {
  if (!fSelection) {
    throw TMCException(MC_E_INVALIDARG, "TreeSelectionIterator", __LINE__);
  }
}

TMCCountedPtr<TreeElement> TTreeSelectionIterator::Next() {
  while (fCursor < fSelection->GetEntryCount()) {
    const uint32 entry = fCursor++;
    uint32 count = 0;
    const MCID* const types = fSelection->GetEntry(entry, count);
    if (!types || count == 0 || types[count - 1] != "Tree"_id) {
      continue;
    }
    if (auto element = MCQuery<TreeElement>(fSelection->GetEntryObject(entry, 0))) {
      return element;
    }
  }
  return nullptr;
}

}  // namespace qlx
