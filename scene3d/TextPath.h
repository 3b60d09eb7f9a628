// Text paths: the text form in which modifiers and property trees name a parameter, found from an object of the scene.
//
//   self,amet,TRAN,ROTA,RotX   a parameter of the object itself
//   shdr,0002,colo             a parameter of the object's shader at a place of its list
//   RMPH,0,3                   the weight of a morph: group and morph in decimal
//   aset,<Arm>,amet,TRAN,SCAL  a row below a named element of the tree; see `ResolveTextPath`
//
// A key has exactly four characters, blanks included, and keys follow each other with one comma. A parameter that has
// no id goes by an index key, made from its position. What stands after the key of a plain parameter (a component such
// as ",redV") is not read here. No path is longer than a `TMCString1023` holds.
//
// Everything that is missing (an element, a parameter, a shader, the rest of a text) gives null. An object that is
// there but refuses its attributes throws `TMCException` with `MC_E_INVALIDARG`. Nothing is allocated.
#pragma once

#include <string_view>

#include "HostParameters.h"
#include "HostScene.h"
#include "MCCountedPtr.h"
#include "MCString.h"

namespace qlx {

// The parameter that a text names, seen from an object: an element, or what belongs to one, such as a modifier.
//
// A path of the form "aset,<name>,keys" finds its element, the first of that name below the root of the tree, and then
// reads its keys from the comma on: so the first key is the comma and three characters, which no parameter has, and the
// answer is null. Rows of that form tell a person where a parameter stands; their spelling is kept as it is in the
// scenes that hold it.
TMCCountedPtr<ParamInfo> ResolveTextPath(IMCUnknown* inObject, const TMCString& inText);

// The parameter that a list of keys names below an attributes component; null for keys that end at a group.
TMCCountedPtr<ParamInfo> ResolveParamKeys(I3DShAttributes& inAttributes, std::string_view inKeys);

// The key of a position: the decimal thousands, hundreds, tens and what is left, one after the other, cut to four
// characters. The hundreds and tens are whole counts, not digits, so positions from 10 on get keys of their own kind:
// 10 is "0019", 12 "0011". Saved scenes hold these keys.
MCID MakeIndexKey(uint32 inPosition);

// The number that four characters spell as decimal digits, without a look at the characters: letters give a number
// too. Text that ends early reads as NULs. Not the inverse of `MakeIndexKey` from 10 on: "0019" is 19.
int32 ParseIndexKey(std::string_view inText);

bool IsMorphPath(const TMCString& inText);
bool IsShaderPath(const TMCString& inText);
bool IsModifierPath(const TMCString& inText);

// Parameters that no property tree shows and no text path reaches.
bool IsHiddenKey(MCID inKey);

}  // namespace qlx
