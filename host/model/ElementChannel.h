// A channel of an element as a value of its own.
#pragma once

#include "AnimatedValue.h"
#include "Channels.h"

namespace qlx::host {

class Element;

// May outlive its element, which knows all that speak of it and leaves them dead as it goes.
class ElementChannel final : public AnimatedValue {
 public:
  ElementChannel(Element& inElement, Channel inChannel);
  ElementChannel(const ElementChannel&) = delete;
  ElementChannel& operator=(const ElementChannel&) = delete;
  ~ElementChannel() override;

  MCID GetType() const override { return "qfix"_id; }
  bool Read(void* outValue) const override;
  bool Write(const void* inValue) override;
  bool ReadBase(void* outValue) const override;
  bool WriteBase(const void* inValue) override;
  bool SampleAt(int32 inTime, void* outValue) const override;
  const Curve* GetCurve(uint32 inNumber) const override;
  bool EditCurves(const std::function<void(Curve&, uint32)>& inEdit) override;

 private:
  friend class ElementChannels;
  // Null when the element is gone, or in no scene.
  Element* Find() const;

  Element* fElement;
  Channel fChannel;
  ElementChannel* fPrevious = nullptr;
  ElementChannel* fNext = nullptr;
};

// The channels that speak of an element: its own member.
class ElementChannels {
 public:
  ElementChannels() = default;
  ElementChannels(const ElementChannels&) = delete;
  ElementChannels& operator=(const ElementChannels&) = delete;
  ~ElementChannels();

  void Add(ElementChannel& inChannel);
  void Remove(ElementChannel& inChannel);

 private:
  ElementChannel* fFirst = nullptr;
};

}  // namespace qlx::host
