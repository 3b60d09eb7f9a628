// Parts of panels and dialogs as components use them: found by id, climbed, filled from fields and read back.
//
// Everything that is missing gives null or is left out: a panel without a control lacks what the control does.
#pragma once

#include <initializer_list>

#include "HostInterface.h"
#include "MCCountedPtr.h"

namespace qlx {

TMCCountedPtr<IMFPart> FindChild(IMFPart* inPart, MCID inID);
TMCCountedPtr<IMFPart> GetParent(IMFPart* inPart);
// The part so many steps above.
TMCCountedPtr<IMFPart> GetAncestor(IMFPart* inPart, int inSteps);

// The control with that id below a part, if it is one of this kind.
template <class Control>
TMCCountedPtr<Control> FindControl(IMFPart* inPart, MCID inID) {
  return MCQuery<Control>(FindChild(inPart, inID));
}

// The part itself or the first above it that fulfils the condition. No panel is deeper than the steps that this takes.
template <class Condition>
TMCCountedPtr<IMFPart> ClimbTo(IMFPart* inPart, Condition&& inCondition) {
  constexpr int kMaxDepth = 256;
  auto part = MCShare(inPart);
  for (int i = 0; part && i < kMaxDepth; ++i) {
    if (inCondition(*part)) {
      return part;
    }
    part = GetParent(part.Get());
  }
  return nullptr;
}

// A control, by its id, and the field whose value it shows. The field outlives it.
class PartField {
 public:
  PartField(MCID inID, bool& ioField) : fID(inID), fType("bool"_id), fField(&ioField) {}
  PartField(MCID inID, int32& ioField) : fID(inID), fType("in32"_id), fField(&ioField) {}
  PartField(MCID inID, real32& ioField) : fID(inID), fType("re32"_id), fField(&ioField) {}
  PartField(MCID inID, TMCString& ioField) : fID(inID), fType("str "_id), fField(&ioField) {}

  MCID GetID() const { return fID; }
  // From the field to the control.
  void Show(IMFPart* inControl) const;
  // From the control to the field; false, with the field as it was, for a control that has no such value.
  bool Take(IMFPart* inControl) const;
  // The field of a switch: whether it is on, and turning it off.
  bool IsOn() const { return fType == "bool"_id && *static_cast<const bool*>(fField); }
  void Clear() const;

 private:
  MCID fID;
  MCID fType;
  void* fField;
};

// The fields of a whole dialog, in their order.
void ShowFields(IMFPart* inDialog, std::initializer_list<PartField> inFields);
void TakeFields(IMFPart* inDialog, std::initializer_list<PartField> inFields);

// Texts that come from a person or a host: what is too long for its place is cut at the end of a character.
void AssignFitting(TMCString& outText, const TMCString& inText);

}  // namespace qlx
