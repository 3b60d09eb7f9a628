// Which elements a command for keyframes works on: a dialog in which a person says it, and the walk.
//
//   'figu'  all elements of the figures that the selected elements belong to
//   'subt'  the selected elements and all below them
//   'selo'  the selected elements alone; what is left when the first two are off, so nothing tests it
#pragma once

#include "CommandShell.h"
#include "HostTimeLines.h"

namespace qlx {

struct KeyframeScope {
  bool fWholeFigure = false;
  bool fSubtree = false;
  bool fSelectedOnly = false;
};

// What is done to the time lines of one element.
class KeyframeWork {
 public:
  virtual void Work(ITimeLineOwner& inOwner) = 0;

 protected:
  ~KeyframeWork() = default;
};

// Runs the dialog, overwrites the scope on OK, walks, and refreshes the scene, also after cancel. With a selected
// element that belongs to no figure, where the scope asks for figures, it says so and stops at once: what was done
// stays done, and the scene is not refreshed.
void RunInScope(CommandContext& inContext, int32 inDialog, KeyframeScope& ioScope, KeyframeWork& ioWork);

}  // namespace qlx
