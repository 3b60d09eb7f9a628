// The body of the commands that put a modifier on the selected element.
#pragma once

#include "CommandShell.h"

namespace qlx {

class AddModifierCommand : public TBasicSceneCommand {
 public:
  int16 MC_CALL GetResourceId() override { return 155; }
  MCResult MC_CALL Init(ISceneCommandContext* inContext) override { return fContext.Init(inContext); }
  // Throws `MC_E_INVALIDARG` where the context lacks what every scene has.
  MCResult MC_CALL Prepare() override { return fContext.Prepare(fFile, fLine); }
  // A new modifier, as its class makes it, behind those of the first selected element. Others that are selected get
  // none, and one of the same class that is there already is no hindrance.
  bool MC_CALL Do() override;

 protected:
  AddModifierCommand(MCID inClass, const char* inFile, int32 inLine) : fClass(inClass), fFile(inFile), fLine(inLine) {}

 private:
  MCID fClass;
  const char* fFile;
  int32 fLine;
  CommandContext fContext;
};

// A new modifier with the host's wrapper; null when the host cannot make one.
TMCCountedPtr<IMCUnknown> MakeModifier(MCID inClass);
// Puts it behind the modifiers of an element. Nothing happens without one.
void AppendModifier(TreeElement& ioElement, IMCUnknown* inModifier);

}  // namespace qlx
