// A component's own copy, to be looked at and thrown away: it stands in no list and has no outer object.
#pragma once

#include "HostExtensions.h"
#include "ParameterMap.h"
#include "model/Modifier.h"

namespace qlx::host {

class PluginLook final : public Modifier {
 public:
  // Takes over the caller's reference. Null when the copy is no modifier.
  static TMCCountedPtr<Modifier> Create(MCID inClass, IExDataExchanger* inCopy);
  // What it throws and answers is nobody's concern: the modifier itself will do the same.
  void Apply(Element& inElement) override;
  TMCCountedPtr<Modifier> Copy() override { return nullptr; }
  MCID MC_CALL GetModifierClass() override { return fClass; }

  PluginLook(MCID inClass, TMCCountedPtr<IExDataExchanger> inCopy, TMCCountedPtr<I3DExModifier> inModifier);
  ~PluginLook() override;

 private:
  MCID fClass;
  TMCCountedPtr<IExDataExchanger> fCopy;
  TMCCountedPtr<I3DExModifier> fModifier;
};

// Sets the fields of a block so that nothing hides what the modifier ties: no window, no delay, no curve, no limit, and
// the plain value of the source. Whether there is a source stays as it is.
void OpenForLook(MCID inClass, const ParameterMap& inMap, void* ioBlock);

}  // namespace qlx::host
