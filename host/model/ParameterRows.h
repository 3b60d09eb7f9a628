// The parameters of an element as people and commands name them: by text path.
#pragma once

#include <functional>
#include <string>

#include "Element.h"
#include "Parameter.h"

namespace qlx::host {

// A parameter, or one number of a colour, as a person reads it.
struct ParameterRow {
  std::string fPath;   // "self,amet,TRAN,ROTA,RotX", "shdr,0000,BCol,redV"
  std::string fName;   // "Rotation X", "Base colour red"
  MCID fType = 0;      // of the parameter: 'qfix'
  std::string fValue;  // as the scene's time begins, without modifiers; in the fewest digits that give it back
  bool fIsAnimated = false;
  bool fIsFound = true;  // the path leads back to the parameter: not all do, see `MakeIndexKey`
};

// Visits the parameters of an element, of its shaders and its morphs, in the order of a property tree.
void ForEachParameter(Element& inElement, const std::function<void(const ParameterRow&)>& inVisit);

// The parameter that a text path names, and which of its numbers: -1 for all. Null when the path leads to none.
struct FoundParameter {
  TMCCountedPtr<Parameter> fParameter;
  int fNumber = -1;

  // The numbers that the path names.
  uint32 GetFirst() const { return fNumber < 0 ? 0 : static_cast<uint32>(fNumber); }
  uint32 GetCount() const;
};
FoundParameter FindParameter(Element& inElement, const std::string& inPath);

// "0.5": in the fewest digits that give it back, but for a negative zero, which people read as 0.
std::string TextOfNumber(real32 inNumber);

// "0.5", "true", "1 0 0 1": the numbers of a value, or of one of its numbers alone.
std::string TextOfNumbers(MCID inType, const ValueNumbers& inNumbers, int inNumber);

}  // namespace qlx::host
