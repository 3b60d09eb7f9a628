#include "SingularValues.h"

#include <algorithm>
#include <cmath>

#include <jama/jama_svd.h>
#include <tnt/tnt_array1d.h>
#include <tnt/tnt_array2d.h>

// The arrays count their references; the compiler loses count where they are shared and takes a live one for freed.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif

namespace qlx {

namespace {

SingularValues33 MakeZeroResult() {
  return {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {0, 0, 0}, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
}

}  // namespace

bool ComputeSingularValues(const TMatrix33& inMatrix, SingularValues33& outResult) {
  if (!inMatrix.IsFinite()) {
    return false;
  }
  const real32 largest = inMatrix.GetLargestSize();
  if (largest == 0) {
    outResult = MakeZeroResult();
    return true;
  }
  // The iteration has no limit and does not end for numbers that are all tiny or huge. A power of two changes nothing
  // but the exponent.
  int exponent = 0;
  std::frexp(static_cast<real64>(largest), &exponent);
  TNT::Array2D<double> scaled(3, 3);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      scaled[i][j] = std::ldexp(static_cast<real64>(inMatrix(i, j)), -exponent);
    }
  }
  JAMA::SVD<double> decomposition(scaled);
  TNT::Array1D<double> values;
  TNT::Array2D<double> u;
  TNT::Array2D<double> v;
  decomposition.getSingularValues(values);
  decomposition.getU(u);
  decomposition.getV(v);
  for (int i = 0; i < 3; ++i) {
    outResult.fValues[i] = std::ldexp(values[i], exponent);
    std::copy(u[i], u[i] + 3, outResult.fU[i]);
    std::copy(v[i], v[i] + 3, outResult.fV[i]);
  }
  return true;
}

}  // namespace qlx
