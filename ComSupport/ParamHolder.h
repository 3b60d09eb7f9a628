// A parameter's value on its way between host and plug-in: the object that knows the type, and the value's bytes.
//
//   ParamHolder        refers to bytes that the caller owns and that outlive it; a copy refers to the same bytes
//   OwningParamHolder  allocates its bytes, and has the type make, copy and end the value in them
//
// There is no conversion: an accessor of another type than the value's is reported, and gives the pointer all the same.
// Type words are looked up in the host's registry; an unknown one, and a null pointer where bytes are promised, throws
// `TMCException` with `MC_E_INVALIDARG` (the word is checked first).
#pragma once

#include "HostParameters.h"
#include "MCCountedPtr.h"
#include "MCMatrix.h"
#include "MatrixQuaternion.h"

namespace qlx {

// Where type words are looked up, for a program without a service table: the open host and tests. Null, as in the
// plug-in, means the table's registry. Not counted: whoever sets it takes it back before the registry ends.
extern ParamTypeRegistry* gParamTypeRegistry;
void SetParamTypeRegistry(ParamTypeRegistry* inRegistry);

class ParamHolder {
 public:
  // No type, no bytes.
  ParamHolder() = default;
  ParamHolder(MCID inTypeWord, void* inData);
  ParamHolder(ParamType* inType, void* inData);
  // Both leave the bytes null.
  explicit ParamHolder(MCID inTypeWord);
  explicit ParamHolder(ParamType* inType) : fParamType(MCShare(inType)) {}

  // The type word, 0 without a type.
  MCID GetType() const { return fParamType ? fParamType->GetTypeID() : 0; }
  ParamType* GetParamType() const { return fParamType.Get(); }
  bool IsValid() const { return fParamType && fData != nullptr; }

  void* GetData() { return fData; }
  const void* GetData() const { return fData; }

  bool* AsBool();
  int16* AsInt16();
  int32* AsInt32();
  real32* AsReal32();  // 're32' and 'sr32': a signed real is the same in memory
  real64* AsReal64();
  TVector2* AsVector2();
  TVector3* AsVector3();  // 'vec3' and 'dire': a direction is a vector
  TMatrix33* AsMatrix33();
  MatrixQuaternion* AsQuaternion();

  const bool* AsBool() const { return const_cast<ParamHolder*>(this)->AsBool(); }
  const int16* AsInt16() const { return const_cast<ParamHolder*>(this)->AsInt16(); }
  const int32* AsInt32() const { return const_cast<ParamHolder*>(this)->AsInt32(); }
  const real32* AsReal32() const { return const_cast<ParamHolder*>(this)->AsReal32(); }
  const real64* AsReal64() const { return const_cast<ParamHolder*>(this)->AsReal64(); }
  const TVector2* AsVector2() const { return const_cast<ParamHolder*>(this)->AsVector2(); }
  const TVector3* AsVector3() const { return const_cast<ParamHolder*>(this)->AsVector3(); }
  const TMatrix33* AsMatrix33() const { return const_cast<ParamHolder*>(this)->AsMatrix33(); }
  const MatrixQuaternion* AsQuaternion() const { return const_cast<ParamHolder*>(this)->AsQuaternion(); }

 protected:
  TMCCountedPtr<ParamType> fParamType;
  void* fData = nullptr;
};

static_assert(sizeof(ParamHolder) == 2 * sizeof(void*));

// Without memory it holds the type and no bytes: `IsValid` tells.
class OwningParamHolder : public ParamHolder {
 public:
  // Chooses the copy that takes a holder without a type in silence.
  struct Tolerant {};

  OwningParamHolder() = default;
  explicit OwningParamHolder(MCID inTypeWord);
  // A source without a type is reported, and the holder stays empty.
  explicit OwningParamHolder(const ParamHolder& inSource);
  OwningParamHolder(const OwningParamHolder& inSource) : OwningParamHolder(static_cast<const ParamHolder&>(inSource)) {}
  OwningParamHolder(const ParamHolder& inSource, Tolerant);
  ~OwningParamHolder() { FreeData(); }

  OwningParamHolder& operator=(const ParamHolder& inSource);
  OwningParamHolder& operator=(const OwningParamHolder& inSource) {
    return *this = static_cast<const ParamHolder&>(inSource);
  }

  // With the present type the value stays; with another it is lost, and a fresh one of the new type stands there.
  void SetType(MCID inTypeWord);
  void SetType(ParamType* inType);

  // Both holders must have the same type object, else that is reported.
  void CopyDataFrom(const ParamHolder& inSource);

 private:
  void TakeCopy(const ParamHolder& inSource);
  void AllocateData();
  void FreeData();
};

}  // namespace qlx
