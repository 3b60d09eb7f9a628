// A modifier in an element's list, as the scene sees it. The class that carries a plug-in's component is in services.
#pragma once

#include <memory>
#include <string>

#include "EvaluationStep.h"
#include "HostObject.h"
#include "HostScene.h"
#include "LinkLook.h"

namespace qlx::host {

class Element;
class Modifier;
class WorkLines;

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
  void MC_CALL SetEnabled(bool inEnabled) override;
  void MC_CALL GetModifiedElement(TreeElement** outElement) override;
  TreeElement* MC_CALL GetOwnerElement() override;
  Modifier& MC_CALL GetHostModifier() override { return *this; }

  // The working call, while the scene is being evaluated. A failure inside is reported and ends there.
  virtual void Apply(Element& inElement) = 0;
  // The same for a step of an evaluation. Good as long as the modifier is.
  virtual ModifierWork GetWork();
  // A copy that sits on no element; null with a warning when the modifier cannot be copied.
  virtual TMCCountedPtr<Modifier> Copy() = 0;
  // A copy to be looked at (LinkLook.h) and thrown away. It should do what the modifier does in its best moments: no
  // window, delay or limit hides what it ties. Null for a modifier that is not to be looked at: nothing is known of
  // its order then.
  virtual TMCCountedPtr<Modifier> CopyToLookAt() { return Copy(); }
  // What is wrong with the modifier's ties, for a person; empty when nothing is. The trace is an up-to-date one.
  virtual std::string DescribeProblem(const LinkTrace& inTrace);

  // What the last look gave, good for one version of the scene's tree and until the modifier changes.
  struct LinkState {
    LinkTrace fTrace;
    uint32 fTreeVersion = 0;
    bool fIsKnown = false;
    bool fIsInCycle = false;
  };
  LinkState& GetLinkState();
  // The modifier was edited: what it ties may have changed.
  void LinksChanged();

  // What a person can change of the modifier but for its place and whether it is on: bytes to be compared, and to be
  // given to the same modifier again.
  virtual std::string SaveState() { return {}; }
  virtual void RestoreState(const std::string& /*inState*/) {}

  // What a step reads, as far as the modifier knows, to be fetched ahead of time.
  virtual void ListWorkMemory(WorkLines& /*ioLines*/) {}

  Element* GetElement() const { return fElement.Get(); }
  // The same question without a look at the element.
  bool SitsOn(const Element& inElement) const { return fElement == &inElement; }
  // Called by the element, as it takes the modifier into its list and out of it.
  void Attach(Element& inElement);
  virtual void Detach();

 protected:
  Modifier() = default;
  ~Modifier() override;

 private:
  bool fEnabled = true;
  TMCCountedPtr<Element> fElement;
  std::unique_ptr<LinkState> fLinks;  // made by the first look
};

}  // namespace qlx::host
