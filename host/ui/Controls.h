// The controls that hold one value, and the parts whose label code can set.
#pragma once

#include "Part.h"

namespace qlx::host {

// A check box, and a radio button: its form keeps one of a group on. Code that sets one to false leaves the group
// without any that is on, which is how a group is shown of which none was chosen.
class ToggleControl final : public Part {
 public:
  explicit ToggleControl(std::shared_ptr<const ControlDescription> inDescription);
  MCID GetValueForm() const override { return "bool"_id; }
  PartValue GetValue() const override { return fIsOn; }

 protected:
  bool TakeValue(const PartValue& inValue) override;

 private:
  bool fIsOn = false;
};

// A whole number or a real one.
class NumberControl : public Part {
 public:
  explicit NumberControl(std::shared_ptr<const ControlDescription> inDescription);
  MCID GetValueForm() const override { return FormOf(fValue); }
  PartValue GetValue() const override { return fValue; }
  // What a person can enter; without a range both are 0.
  virtual real32 GetMinimum() const { return GetDescription().fMinimum; }
  virtual real32 GetMaximum() const { return GetDescription().fMaximum; }
  bool HasRange() const { return GetMinimum() != GetMaximum(); }

 protected:
  bool TakeValue(const PartValue& inValue) override;

 private:
  PartValue fValue;
};

class SliderControl final : public PartWith<NumberControl, ISliderControl> {
 public:
  explicit SliderControl(std::shared_ptr<const ControlDescription> inDescription);
  std::string GetLabel() const override { return fLabel; }
  real32 GetMinimum() const override { return fMinimum; }
  real32 GetMaximum() const override { return fMaximum; }

  // ISliderControl
  void MC_CALL SetSliderLabel(const TMCString& inText) override;
  // Ends the wrong way round are turned; those that are not finite leave the range alone.
  void MC_CALL SetSliderRange(real32 inMinimum, real32 inMaximum, int32 inOne) override;

 private:
  std::string fLabel;
  real32 fMinimum;
  real32 fMaximum;
};

class TextControl final : public Part {
 public:
  using Part::Part;
  MCID GetValueForm() const override { return "str "_id; }
  PartValue GetValue() const override { return fText; }

 protected:
  bool TakeValue(const PartValue& inValue) override;

 private:
  std::string fText;
};

class VectorControl final : public Part {
 public:
  using Part::Part;
  MCID GetValueForm() const override { return "VEC3"_id; }
  PartValue GetValue() const override { return fVector; }

 protected:
  bool TakeValue(const PartValue& inValue) override;

 private:
  std::array<real32, 3> fVector{};
};

// A frame with a title, or a page.
class LabelledPart final : public PartWith<Part, ILabelledControl> {
 public:
  explicit LabelledPart(std::shared_ptr<const ControlDescription> inDescription);
  std::string GetLabel() const override { return fLabel; }

  // ILabelledControl
  void MC_CALL GetLabel(TMCString& outText) override;
  void MC_CALL SetLabel(const TMCString& inText, int32 inOne) override;

 private:
  std::string fLabel;
};

}  // namespace qlx::host
