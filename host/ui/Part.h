// A part of a panel or dialog, without a toolkit: what it is, what it holds, what is inside it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "HostInterface.h"
#include "PartValue.h"
#include "model/HostObject.h"
#include "resources/Descriptions.h"

namespace qlx::host {

class Form;

// The description is shared with whoever read it. A part holds those inside it and may outlive the form that it stood
// in: it then has no form and no parent, and keeps its value.
class Part : public HostObject<IMFPart> {
 public:
  explicit Part(std::shared_ptr<const ControlDescription> inDescription);
  ~Part() override;

  const ControlDescription& GetDescription() const { return *fDescription; }
  ControlKind GetKind() const { return fDescription->fKind; }
  Part* GetParent() const { return fParent; }
  const std::vector<TMCCountedPtr<Part>>& GetChildren() const { return fChildren; }
  // The first part at any depth below this one with that id; null for none, and for the id 0.
  Part* Find(MCID inID) const;
  // Null once the form is gone.
  Form* GetForm() const { return fForm; }

  // What a person reads beside the control.
  virtual std::string GetLabel() const { return fDescription->fLabel; }
  // 0 for a part that holds no value. The others answer their value in this form.
  virtual MCID GetValueForm() const { return 0; }
  virtual PartValue GetValue() const { return false; }
  // Takes a value of any form that makes sense here: what code may set, whatever a person may enter. False, with
  // nothing changed, for one that the control cannot hold. Nobody is told.
  bool SetValue(const PartValue& inValue);

  // IMFPart
  MCID MC_CALL GetPartId() override { return fDescription->fID; }
  void MC_CALL FindChildPart(IMFPart** outPart, MCID inID, int32 inZero) override;
  void MC_CALL GetParentPart(IMFPart** outPart) override;
  MCResult MC_CALL GetPartValue(void* outBuffer, MCID inTypeId) override;
  MCResult MC_CALL SetPartValue(const void* inBuffer, MCID inTypeId, int32 inOne1, int32 inOne2) override;

 protected:
  // Takes a value of the control's own form.
  virtual bool TakeValue(const PartValue& /*inValue*/) { return false; }
  // The value's own form in another. A control whose text is not that of its value overrides both.
  virtual std::optional<PartValue> ToForm(MCID inForm) const { return Convert(GetValue(), inForm); }
  virtual std::optional<PartValue> FromForm(const PartValue& inValue) const { return Convert(inValue, GetValueForm()); }

  void Adopt(TMCCountedPtr<Part> inChild);

 private:
  friend class Form;
  void SetForm(Form* inForm);

  std::shared_ptr<const ControlDescription> fDescription;
  Form* fForm = nullptr;
  Part* fParent = nullptr;
  std::vector<TMCCountedPtr<Part>> fChildren;
};

// A part that answers one more interface.
template <class Base, class Control>
class PartWith : public Base, public Control {
 public:
  using Base::Base;
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    return Base::QueryInterface(inID, outObject);
  }
  uint32 MC_CALL AddRef() override { return Base::AddRef(); }
  uint32 MC_CALL Release() override { return Base::Release(); }

 protected:
  MCResult FindPart(const MCGuid& inID, void** outObject) override {
    return inID == Control::kInterfaceID ? MCStoreCounted<Control>(this, outObject) : Base::FindPart(inID, outObject);
  }
};

}  // namespace qlx::host
