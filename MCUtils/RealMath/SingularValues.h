// The singular value decomposition of a 3x3 matrix, in 64-bit reals: M = U * diag(values) * transpose(V), the values
// not negative and in falling order, U and V orthogonal. The signs of the columns are not determined: U and V may both
// mirror, or one of them.
//
//   singular matrix            some values are 0; U and V are orthogonal all the same
//   zero matrix                values 0, U and V the identity
//   NaN or infinite element    false, `out` unchanged
//
// Allocates.
#pragma once

#include "MCMatrix.h"

namespace qlx {

struct SingularValues33 {
  real64 fU[3][3];
  real64 fValues[3];
  real64 fV[3][3];
};

[[nodiscard]] bool ComputeSingularValues(const TMatrix33& inMatrix, SingularValues33& outResult);

}  // namespace qlx
