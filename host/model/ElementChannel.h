// A channel of an element as a value of its own.
#pragma once

#include <memory>

#include "AnimatedValue.h"
#include "Channels.h"

namespace qlx::host {

class Element;

// Shared by everything that speaks of an element's channels and may outlive it; the element clears it as it goes.
struct ElementLink {
  explicit ElementLink(Element* inElement) : fElement(inElement) {}
  Element* fElement;
};

class ElementChannel final : public AnimatedValue {
 public:
  ElementChannel(std::shared_ptr<const ElementLink> inLink, Channel inChannel)
      : fLink(std::move(inLink)), fChannel(inChannel) {}

  MCID GetType() const override { return "qfix"_id; }
  bool Read(void* outValue) const override;
  bool Write(const void* inValue) override;
  bool ReadBase(void* outValue) const override;
  bool WriteBase(const void* inValue) override;
  bool SampleAt(int32 inTime, void* outValue) const override;
  const Curve* GetCurve(uint32 inNumber) const override;
  bool EditCurves(const std::function<void(Curve&, uint32)>& inEdit) override;

 private:
  // Null when the element is gone, or in no scene.
  Element* Find() const;

  std::shared_ptr<const ElementLink> fLink;
  Channel fChannel;
};

}  // namespace qlx::host
