// What the commands of the scene menu have in common: the context that they get from the host, and menu callbacks.
//
// No command offers undo: the operations that stand around `Do` answer no and do nothing.
#pragma once

#include <new>

#include "BasicMCFCOMImplementations.h"
#include "HostCommands.h"
#include "HostScene.h"
#include "MCException.h"
#include "OperationGuard.h"

namespace qlx {

// The context of a command, filled by its `Init` and `Prepare` and held for its whole life.
struct CommandContext {
  TMCCountedPtr<ISceneCommandContext> fContext;
  TMCCountedPtr<TreeElement> fSceneRoot;
  TMCCountedPtr<I3DShScene> fScene;
  TMCCountedPtr<ISceneSelectionOwner> fSelectionOwner;
  TMCCountedPtr<ISceneSelection> fSelection;
  TMCCountedPtr<IMCUnknown> fDocument;       // must be there, and is never used further
  TMCCountedPtr<ISceneMaster> fSceneMaster;  // the same
  TMCCountedPtr<IMCUnknown> fSpare;          // stays null

  // Context and selection.
  MCResult Init(ISceneCommandContext* inContext);
  // The scene and its root. A context whose scene has no master, or that has no document, throws `MC_E_INVALIDARG` with
  // the command's file and a line: the given one, or the one after it. What was filled before stays.
  MCResult Prepare(const char* inFile, int32 inLine);
};

// The body of a command's `Do`, which answers true whatever it did. Throws what `GuardOperation` lets through.
template <class Body>
bool RunCommand(Body&& inBody) {
  GuardOperation([&] {
    inBody();
    return MC_S_OK;
  });
  return true;
}

// Enables a menu entry while an element is selected that has a parent. So it is no plain question for emptiness: the
// root of the scene alone does not count.
class SelectionMenuCallBack : public TBasicMenuCallBack {
 public:
  bool MC_CALL SelfPrepare(ISceneCommandContext* inContext) override;
};

// Enables a menu entry wherever there is a context, whatever is selected.
class ContextMenuCallBack : public TBasicMenuCallBack {
 public:
  bool MC_CALL SelfPrepare(ISceneCommandContext* inContext) override { return inContext != nullptr; }
};

// Puts a new callback in place of what `*outCallBack` holds. Without memory it throws `MC_E_OUTOFMEMORY`.
template <class CallBack>
void StoreMenuCallBack(ISelfPrepareMenuCallBack** outCallBack) {
  if (!outCallBack) {
    return;
  }
  if (ISelfPrepareMenuCallBack* const old = std::exchange(*outCallBack, nullptr)) {
    old->Release();
  }
  *outCallBack = new CallBack;
  if (!*outCallBack) {
    throw TMCException(MC_E_OUTOFMEMORY, "MCCountedPtrHelper", 166);
  }
}

}  // namespace qlx
