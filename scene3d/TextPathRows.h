// The rows of a property tree: every parameter of an object with its text path (TextPath.h), in the order and with the
// groups in which people see them.
//
// Rows are given to a visitor, parents before children. A row stays valid during its call alone. What lies deeper than
// a text path can be long is left out.
#pragma once

#include "HostScene.h"
#include "TextPath.h"

namespace qlx {

enum class TextPathRowKind : uint8 {
  kGroup,      // stands for no parameter of its own; its path does not resolve
  kParam,      // a parameter
  kComponent,  // a number of the parameter in the row before; its path resolves to that parameter
};

struct TextPathRow {
  TextPathRowKind fKind;
  uint32 fDepth;  // 0 for the root rows
  const TMCString& fPath;
  const TMCString* fLabel;  // what a person reads; null for a component, and where the host has no name
  ParamInfo* fParam;        // null for groups that are not parameters
  uint32 fComponent;        // of a component row, from 0
};

class TextPathVisitor {
 public:
  virtual void VisitRow(const TextPathRow& inRow) = 0;

 protected:
  ~TextPathVisitor() = default;
};

// Every row, or those of parameters whose type an editor knows: the simple numbers, colours and vectors.
enum class TextPathFilter : uint8 { kAll, kEditable };

// Component suffixes of a compound type, such as ",redV"; empty for the others.
struct TextPathComponents {
  const char* const* fSuffixes = nullptr;
  uint32 fCount = 0;
};
TextPathComponents GetTextPathComponents(MCID inDataType);
// True for the types that `kEditable` lets through. 'VEC2' is none of them, though it has components.
bool IsEditableType(MCID inDataType);

// The parameters of a holder, below a row with the path `inParent`.
void BuildParamRows(TimeBasedData& inHolder, const TMCString& inParent, uint32 inDepth, TextPathFilter inFilter,
                    TextPathVisitor& ioVisitor);

// The row "self" with the object's own parameters.
void BuildSelfRows(IMCUnknown* inObject, TextPathFilter inFilter, TextPathVisitor& ioVisitor);
// The row "shdr" with a row for each shader of the instance and its parameters; nothing without shaders.
void BuildShaderRows(IMCUnknown* inObject, TextPathFilter inFilter, TextPathVisitor& ioVisitor);
// The row "RMPH" with a row for each group and its morphs; nothing without morphs.
void BuildMorphRows(IMCUnknown* inObject, TextPathVisitor& ioVisitor);
// The row "aset" with a row for each element below the root and its parameters.
void BuildTreeRows(TreeElement& inRoot, TextPathFilter inFilter, TextPathVisitor& ioVisitor);

}  // namespace qlx
