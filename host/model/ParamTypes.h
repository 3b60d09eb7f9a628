// The types of parameter values that this host knows, and the registry that gives them by type word. The registry is
// offered as a service, and is the host's own look-up for `ParamHolder`.
#pragma once

#include <unordered_map>

#include "HostObject.h"
#include "HostParameters.h"

namespace qlx::host {

// A colour: red, green, blue and alpha, 0 to 1.
struct ColourValue {
  real32 fRed = 0;
  real32 fGreen = 0;
  real32 fBlue = 0;
  real32 fAlpha = 1;
};

// An action is a number that counts up; a text is held in place, 63 bytes and its end.
//
//   'bool' one byte                'vec2' 'VEC2' 'qfv2'          two 32-bit reals
//   'in16' 'shrt'                  'vec3' 'VEC3' 'qfv3' 'dire'   three 32-bit reals
//   'in32' 'long' 'actn'           'colo'                        ColourValue
//   're32' 'sr32' 'qfix'           'mx33'                        TMatrix33
//   're64' 'sr64'                  'mqua'                        MatrixQuaternion
//                                  'str '                        text
//
// A fresh value is zero, empty, or the identity; a fresh direction is zero.
class ParamTypes final : public HostObject<ParamTypeRegistry> {
 public:
  ParamTypes();
  ParamType* MC_CALL GetParamType(MCID inTypeWord) override;

 private:
  std::unordered_map<MCID, TMCCountedPtr<ParamType>> fTypes;
};

// The one registry of this process, made on first use and kept to its end; `ParamHolder` looks words up there.
ParamTypes& GetParamTypes();

}  // namespace qlx::host
