#include "PartAccess.h"

#include "MCString.h"

namespace qlx {

TMCCountedPtr<IMFPart> FindChild(IMFPart* inPart, MCID inID) {
  TMCCountedPtr<IMFPart> child;
  if (inPart) {
    inPart->FindChildPart(child.WriteInto(), inID, 0);
  }
  return child;
}

TMCCountedPtr<IMFPart> GetParent(IMFPart* inPart) {
  TMCCountedPtr<IMFPart> parent;
  if (inPart) {
    inPart->GetParentPart(parent.WriteInto());
  }
  return parent;
}

TMCCountedPtr<IMFPart> GetAncestor(IMFPart* inPart, int inSteps) {
  auto part = MCShare(inPart);
  for (int i = 0; part && i < inSteps; ++i) {
    part = GetParent(part.Get());
  }
  return part;
}

void PartField::Show(IMFPart* inControl) const {
  if (inControl) {
    inControl->SetPartValue(fField, fType, 1, 1);
  }
}

bool PartField::Take(IMFPart* inControl) const {
  if (!inControl) {
    return false;
  }
  if (fType != "bool"_id) {
    return inControl->GetPartValue(fField, fType) == MC_S_OK;
  }
  uint8 byte = 0;  // of any value: a truth value has two alone
  if (inControl->GetPartValue(&byte, fType) != MC_S_OK) {
    return false;
  }
  *static_cast<bool*>(fField) = byte != 0;
  return true;
}

void PartField::Clear() const {
  if (fType == "bool"_id) {
    *static_cast<bool*>(fField) = false;
  }
}

void ShowFields(IMFPart* inDialog, std::initializer_list<PartField> inFields) {
  for (const PartField& field : inFields) {
    field.Show(FindChild(inDialog, field.GetID()).Get());
  }
}

void TakeFields(IMFPart* inDialog, std::initializer_list<PartField> inFields) {
  for (const PartField& field : inFields) {
    field.Take(FindChild(inDialog, field.GetID()).Get());
  }
}

void AssignFitting(TMCString& outText, const TMCString& inText) {
  const char* const bytes = inText.CStr();
  uint32 count = inText.ByteLength();
  if (count > outText.MaxLength()) {
    count = outText.MaxLength();
    while (count > 0 && (static_cast<uint8>(bytes[count]) & 0xC0) == 0x80) {
      --count;
    }
  }
  outText.Assign(bytes, count);
}

}  // namespace qlx
