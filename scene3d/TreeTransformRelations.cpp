// What relates one TreeTransform to another: relative transforms, blends, products, equality.
#include "MCAssert.h"
#include "MatrixQuaternion.h"
#include "TreeTransform.h"

namespace qlx {

namespace {

TMatrix33 InterpolateMatrix(real32 inT, const TMatrix33& inFrom, const TMatrix33& inTo) {
  return SphericalInterpolate(inT, MatrixQuaternion(inFrom), MatrixQuaternion(inTo)).GetMatrix();
}

real32 Ratio(real32 inNumerator, real32 inDenominator) {
  return inDenominator == 0 ? 0 : inNumerator / inDenominator;
}

}  // namespace

bool TreeTransform::MakeRelative(const TreeTransform& inFirst, const TreeTransform& inSecond) {
  if (inFirst.fMode != inSecond.fMode || !inFirst.fScalingAxes.IsEqual(inSecond.fScalingAxes, 1e-4f) ||
      !(inFirst.fUniformScale >= kRealEpsilon)) {
    return false;
  }
  const bool isSameScaling = inFirst.fScaling == inSecond.fScaling;
  if (!isSameScaling && !inFirst.fRotation.IsIdentity()) {
    return false;
  }
  const TMatrix33& firstRotation = inFirst.fRotation.GetMatrix();
  const TMatrix33& secondRotation = inSecond.fRotation.GetMatrix();
  TreeTransform relative;
  relative.fMode = inFirst.fMode;
  if (inFirst.fMode == kPoser) {
    relative.fScalingAxes = inFirst.fScalingAxes;
  }
  relative.fRotation.SetMatrix(firstRotation.GetTranspose() * secondRotation);
  MC_ASSERT_TEXT((firstRotation * relative.fRotation.GetMatrix()).IsEqual(secondRotation, 1e-4f),
                 "(transform1.GetRotation() * fRotation.GetMatrix()).IsEqual(transform2.GetRotation(), 1e-4f)");
  if (!isSameScaling) {
    MC_ASSERT_TEXT(firstRotation.IsIdentity(), "transform1.GetRotation().IsIdentity()");
    for (int i = 0; i < 3; ++i) {
      relative.fScaling[i] = Ratio(inSecond.fScaling[i], inFirst.fScaling[i]);
    }
  }
  relative.fUniformScale = inSecond.fUniformScale / inFirst.fUniformScale;
  relative.fPosition = inSecond.fPosition - relative.LocalToParent(inFirst.fPosition);
  *this = relative;
  return true;
}

bool TreeTransform::ApplyRelative(const TreeTransform& inRelative) {
  const TreeTransform relative = inRelative;  // may be this one
  fRotation.MultiplyRight(relative.fRotation);
  fScaling = Scale(fScaling, relative.fScaling);
  fUniformScale *= relative.fUniformScale;
  fPosition = relative.LocalToParent(fPosition);
  return true;
}

void TreeTransform::Interpolate(real32 inT, const TreeTransform& inFrom, const TreeTransform& inTo) {
  TreeTransform blend = inFrom;
  blend.fHotPoint = Lerp(inT, inFrom.fHotPoint, inTo.fHotPoint);
  blend.fPosition = Lerp(inT, inFrom.fPosition, inTo.fPosition);
  blend.fScaling = Lerp(inT, inFrom.fScaling, inTo.fScaling);
  blend.fUniformScale = (1.0f - inT) * inFrom.fUniformScale + inT * inTo.fUniformScale;
  blend.fScalingAxes = InterpolateMatrix(inT, inFrom.fScalingAxes, inTo.fScalingAxes);
  blend.fRotation.SetMatrix(InterpolateMatrix(inT, inFrom.fRotation.GetMatrix(), inTo.fRotation.GetMatrix()));
  *this = blend;
}

TreeTransform operator*(const TreeTransform& inLeft, const TreeTransform& inRight) {
  TreeTransform product = inRight;
  product.fMode = kTorvane;
  product.fScalingAxes = kIdentityMatrix;
  product.fRotation.Multiply(inLeft.fRotation, inRight.fRotation);
  product.fPosition =
      inLeft.fPosition + (inLeft.fRotation.GetMatrix() * (inRight.fPosition - inLeft.fHotPoint)) * inLeft.fUniformScale;
  product.fUniformScale = inLeft.fUniformScale * inRight.fUniformScale;
  return product;
}

bool operator==(const TreeTransform& inA, const TreeTransform& inB) {
  return inA.fMode == inB.fMode && inA.fHotPoint == inB.fHotPoint && inA.fScalingAxes == inB.fScalingAxes &&
         inA.fRotation == inB.fRotation && inA.fPosition == inB.fPosition && inA.fUniformScale == inB.fUniformScale &&
         inA.fScaling == inB.fScaling;
}

}  // namespace qlx
