// The tree elements of a selection, in the order in which they were selected.
#pragma once

#include "HostCommands.h"
#include "HostScene.h"
#include "MCCountedPtr.h"

namespace qlx {

// Entries of other types than 'Tree', without an object, or with one that is no element, are passed over in silence.
class TTreeSelectionIterator {
 public:
  // Null throws `TMCException` with `MC_E_INVALIDARG`.
  explicit TTreeSelectionIterator(ISceneSelection* inSelection);

  // The next element, null at the end.
  TMCCountedPtr<TreeElement> Next();

 private:
  TMCCountedPtr<ISceneSelection> fSelection;
  uint32 fCursor = 0;
};

}  // namespace qlx
