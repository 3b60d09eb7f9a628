// A modifier in an element's list, as the scene sees it. The class that carries a plug-in's component is in services.
#pragma once

#include <string>

#include "HostObject.h"
#include "HostScene.h"

namespace qlx::host {

class Element;
class Modifier;

// The host's own way from the interface in a list to its class. A modifier that is not the host's lacks it.
class IHostModifier : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "8E5B8F7C-47B3-4E0B-9A56-0C1D9C2B7B11"_guid;

  virtual Modifier& MC_CALL GetHostModifier() = 0;

 protected:
  ~IHostModifier() = default;
};

// Holds its element by counted reference, as the element holds its modifiers: `Detach` breaks the circle.
class Modifier : public HostObject<I3DShModifier, I3DShModifierHolder, I3DShOwned, IHostModifier> {
 public:
  bool MC_CALL IsEnabled() override { return fEnabled; }
  void MC_CALL SetEnabled(bool inEnabled) override { fEnabled = inEnabled; }
  MCID MC_CALL GetModifierClass() override { return fClass; }
  void MC_CALL GetModifiedElement(TreeElement** outElement) override;
  TreeElement* MC_CALL GetOwnerElement() override;
  Modifier& MC_CALL GetHostModifier() override { return *this; }

  // The working call, while the scene is being evaluated. A failure inside is reported and ends there.
  virtual void Apply(Element& inElement) = 0;
  // A copy that sits on no element; null with a warning when the modifier cannot be copied.
  virtual TMCCountedPtr<Modifier> Copy() = 0;

  // The start of what `Apply` works with beside this object, to be fetched ahead of time; null when there is nothing.
  virtual const void* GetWorkMemory() const { return nullptr; }

  Element* GetElement() const { return fElement.Get(); }
  // Called by the element, as it takes the modifier into its list and out of it.
  void Attach(Element& inElement);
  virtual void Detach();

 protected:
  explicit Modifier(MCID inClass);
  ~Modifier() override;

 private:
  MCID fClass;
  bool fEnabled = true;
  TMCCountedPtr<Element> fElement;
};

}  // namespace qlx::host
