#include "TransformEuler.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Angles.h"
#include "MCAssert.h"
#include "Trigonometry.h"

namespace qlx {

namespace {

// An order's frame names its axes first, second and third for X, Y and Z. There each order is Rz * Ry * Rx, with the
// angles negated when the axes are an odd permutation. The axes are known when this is compiled, so that no element is
// reached by a computed index.
template <int kFirst, int kSecond, int kThird, int kSign>
struct OrderFrame {
  static constexpr OrderAxes kAxes{{kFirst, kSecond, kThird}};
  static constexpr real32 kFactor = kSign;

  static TVector3 ToFrame(const TVector3& inAngles) {
    return TVector3(inAngles[kFirst], inAngles[kSecond], inAngles[kThird]) * kFactor;
  }
  static TVector3 FromFrame(const TVector3& inAngles) {
    TVector3 result;
    result[kFirst] = inAngles.x * kFactor;
    result[kSecond] = inAngles.y * kFactor;
    result[kThird] = inAngles.z * kFactor;
    return result;
  }
  static TMatrix33 ToFrame(const TMatrix33& m) {
    return {m(kFirst, kFirst),  m(kFirst, kSecond), m(kFirst, kThird),  m(kSecond, kFirst), m(kSecond, kSecond),
            m(kSecond, kThird), m(kThird, kFirst),  m(kThird, kSecond), m(kThird, kThird)};
  }
  static TMatrix33 FromFrame(const TMatrix33& m) {
    TMatrix33 result;
    result(kFirst, kFirst) = m(0, 0);
    result(kFirst, kSecond) = m(0, 1);
    result(kFirst, kThird) = m(0, 2);
    result(kSecond, kFirst) = m(1, 0);
    result(kSecond, kSecond) = m(1, 1);
    result(kSecond, kThird) = m(1, 2);
    result(kThird, kFirst) = m(2, 0);
    result(kThird, kSecond) = m(2, 1);
    result(kThird, kThird) = m(2, 2);
    return result;
  }
};

// Calls with the frame of the order; an order that does not exist reports, and stands for order 0.
template <class Body>
auto WithFrame(int32 inOrder, Body&& inBody) {
  switch (inOrder) {
    case 1:
      return inBody(OrderFrame<0, 2, 1, -1>());
    case 2:
      return inBody(OrderFrame<1, 0, 2, -1>());
    case 3:
      return inBody(OrderFrame<1, 2, 0, 1>());
    case 4:
      return inBody(OrderFrame<2, 1, 0, -1>());
    case 5:
      return inBody(OrderFrame<2, 0, 1, 1>());
    default:
      MC_ASSERT_TEXT(inOrder == 0, "invalid joint order");
      return inBody(OrderFrame<0, 1, 2, 1>());
  }
}

TMatrix33 WithThirdRowNegated(const TMatrix33& inMatrix) {
  return TMatrix33::FromRows(inMatrix.GetRow(0), inMatrix.GetRow(1), -inMatrix.GetRow(2));
}

// Rz * Ry * Rx, multiplied out.
TMatrix33 MakeFrameMatrix(const TVector3& inAngles) {
  const TSineCosine3 v(static_cast<real64>(inAngles.x), static_cast<real64>(inAngles.y),
                       static_cast<real64>(inAngles.z));
  const auto sx = static_cast<real32>(v.fSine[0]);
  const auto cx = static_cast<real32>(v.fCosine[0]);
  const auto sy = static_cast<real32>(v.fSine[1]);
  const auto cy = static_cast<real32>(v.fCosine[1]);
  const auto sz = static_cast<real32>(v.fSine[2]);
  const auto cz = static_cast<real32>(v.fCosine[2]);
  return {cz * cy,
          cz * sy * sx - sz * cx,
          cz * sy * cx + sz * sx,  //
          sz * cy,
          sz * sy * sx + cz * cx,
          sz * sy * cx - cz * sx,  //
          -sy,
          cy * sx,
          cy * cx};
}

real32 ArcTangent32(real32 inY, real32 inX) {
  return static_cast<real32>(ArcTangent(static_cast<real64>(inY), static_cast<real64>(inX)));
}

// The angles of Rz * Ry * Rx, for a matrix of determinant 1.
TVector3 DecomposeFrameMatrix(const TMatrix33& m) {
  constexpr real32 kDegenerateCosine = 1.0f / 256;
  const real32 s = -m(2, 0);
  const real32 c = std::sqrt(m(0, 0) * m(0, 0) + m(1, 0) * m(1, 0));
  real32 a = ArcTangent32(m(2, 1), m(2, 2));
  real32 b = ArcTangent32(s, c);
  const real32 z = ArcTangent32(m(1, 0), m(0, 0));
  if (c < kDegenerateCosine) {
    // The pole fixes only how far the two outer angles turn together.
    const real32 t = ArcTangent32(-m(0, 1), m(1, 1));
    a = s > 0 ? z - t : t - z;
  }
  if (b > kRealPI) {
    b -= kRealTwoPI;
  }
  b = b > kRealHalfPI ? kRealHalfPI : (b < -kRealHalfPI ? -kRealHalfPI : b);
  return {ShiftByWholeTurns(a, 0), b, ShiftByWholeTurns(z, 0)};
}

// Angles in 64 bits, with the true circle: whole turns are added without the rounding of 32-bit constants.
struct Angles64 {
  real64 f[3];

  explicit Angles64(const TVector3& inAngles) : f{inAngles.x, inAngles.y, inAngles.z} {}
  Angles64(real64 inX, real64 inY, real64 inZ) : f{inX, inY, inZ} {}

  TVector3 Round() const { return {static_cast<real32>(f[0]), static_cast<real32>(f[1]), static_cast<real32>(f[2])}; }
};

constexpr real64 kPI64 = std::numbers::pi;

// Brings each angle within half a turn of the reference's, and answers the sum of the differences that are left.
real64 ShiftTowards(Angles64& ioAngles, const Angles64& inReference) {
  real64 distance = 0;
  for (int i = 0; i < 3; ++i) {
    const real64 difference = ioAngles.f[i] - inReference.f[i];
    if (std::fabs(difference) > kPI64) {
      ioAngles.f[i] = inReference.f[i] + std::remainder(difference, 2 * kPI64);
    }
    distance += std::fabs(ioAngles.f[i] - inReference.f[i]);
  }
  return distance;
}

// The two solutions of a rotation: the second mirrors the angle of the axis that acts second at the quarter turn, and
// turns the outer ones half a turn on.
TVector3 NearestOfBoth(const OrderAxes& inAxes, const Angles64& inAngles, const Angles64& inReference) {
  Angles64 first = inAngles;
  Angles64 second = inAngles;
  second.f[inAxes[0]] += kPI64;
  second.f[inAxes[1]] = kPI64 - inAngles.f[inAxes[1]];
  second.f[inAxes[2]] += kPI64;
  const real64 firstDistance = ShiftTowards(first, inReference);
  return ShiftTowards(second, inReference) < firstDistance ? second.Round() : first.Round();
}

// Rotation matrix in 64 bits of a quaternion that has a length.
struct Matrix64 {
  real64 f[3][3];

  explicit Matrix64(const TQuaternion& inQ) {
    const real64 x = inQ.x;
    const real64 y = inQ.y;
    const real64 z = inQ.z;
    const real64 w = inQ.w;
    const real64 s = 2.0 / (x * x + y * y + z * z + w * w);
    const real64 values[3][3] = {{1 - s * (y * y + z * z), s * (x * y - w * z), s * (x * z + w * y)},
                                 {s * (x * y + w * z), 1 - s * (x * x + z * z), s * (y * z - w * x)},
                                 {s * (x * z - w * y), s * (y * z + w * x), 1 - s * (x * x + y * y)}};
    std::copy(&values[0][0], &values[0][0] + 9, &f[0][0]);
  }
};

}  // namespace

TMatrix33 MakeAxisRotation(int inAxis, real32 inAngle) {
  const TSineCosine values = SineCosine(static_cast<real64>(inAngle));
  const auto s = static_cast<real32>(values.fSine);
  const auto c = static_cast<real32>(values.fCosine);
  switch (inAxis) {
    case 0:
      return {1, 0, 0, 0, c, -s, 0, s, c};
    case 1:
      return {c, 0, s, 0, 1, 0, -s, 0, c};
    case 2:
      return {c, -s, 0, s, c, 0, 0, 0, 1};
    default:
      MC_ASSERT_TEXT(false, "wrong axis");
      return {};
  }
}

TMatrix33 EulerToMatrix(int32 inOrder, const TVector3& inAngles, bool inFlipped) {
  return WithFrame(inOrder, [&](auto frame) {
    TMatrix33 matrix = frame.FromFrame(MakeFrameMatrix(frame.ToFrame(inAngles)));
    if (inFlipped) [[unlikely]] {
      matrix = WithThirdRowNegated(matrix);
    }
    return matrix;
  });
}

void MatrixToEuler(int32 inOrder, const TMatrix33& inMatrix, TVector3& outAngles, bool& outFlipped) {
  if (!MC_ASSERT(inOrder >= 0 && inOrder < 6)) {
    inOrder = 0;
  }
  const real32 det = inMatrix.GetDeterminant();
  MC_ASSERT_TEXT(std::fabs(1.0f - std::fabs(det)) < kRealEpsilon, "fabs(1.0 - fabs(det)) < kRealEpsilon");
  // The mirror is on the third row of the matrix itself, which the frame of most orders gives another place. So it is
  // taken off before.
  const bool isDirect = det > 0;
  const TMatrix33 direct = isDirect ? inMatrix : WithThirdRowNegated(inMatrix);
  outFlipped = !isDirect;
  const bool isSame = WithFrame(inOrder, [&](auto frame) {
    const TMatrix33 framed = frame.ToFrame(direct);
    const TVector3 angles = DecomposeFrameMatrix(framed);
    outAngles = frame.FromFrame(angles);
    return MakeFrameMatrix(angles).IsEqual(framed, 1e-3f);
  });
  MC_ASSERT_TEXT(isSame, "matrix.IsEqual(inRotation, 1e-3f)");
}

real32 GetEulerDistance(TVector3& ioAngles, const TVector3& inReference) {
  for (int i = 0; i < 3; ++i) {
    ioAngles[i] = ShiftByWholeTurns(ioAngles[i], inReference[i]);
  }
  const TVector3 difference = ioAngles - inReference;
  for (int i = 0; i < 3; ++i) {
    MC_ASSERT_TEXT(std::fabs(difference[i]) <= kRealPI + 1e-3f, "fabs(angle0[i] - angle1[i]) <= kRealPI+1e-3f");
  }
  return std::fabs(difference.x) + std::fabs(difference.y) + std::fabs(difference.z);
}

void NormalizeEuler(int32 inOrder, TVector3& ioAngles) {
  const int index = GetMiddleIndex(inOrder);
  real32& middle = ioAngles[index];
  real32& next = ioAngles[(index + 1) % 3];
  real32& last = ioAngles[(index + 2) % 3];
  middle = NormalizeAngle(middle);
  if (middle > kRealHalfPI || middle < -kRealHalfPI) {
    middle = (middle > 0 ? kRealPI : -kRealPI) - middle;
    next += kRealPI;
    last += kRealPI;
  }
  MC_ASSERT_TEXT(middle <= kRealHalfPI, "angles[index] <= kRealHalfPI");
  MC_ASSERT_TEXT(middle >= -kRealHalfPI, "angles[index] >= -kRealHalfPI");
  next = NormalizeAngle(next);
  last = NormalizeAngle(last);
}

TQuaternion EulerToQuaternion(int32 inOrder, const TVector3& inAngles) {
  if (!inAngles.IsFinite()) {
    return {};
  }
  return WithFrame(inOrder, [&](auto frame) -> TQuaternion {
    const TVector3 angles = frame.ToFrame(inAngles);
    const auto [sx, cx] = SineCosine(0.5 * static_cast<real64>(angles.x));
    const auto [sy, cy] = SineCosine(0.5 * static_cast<real64>(angles.y));
    const auto [sz, cz] = SineCosine(0.5 * static_cast<real64>(angles.z));
    const auto round = [](real64 inValue) { return static_cast<real32>(inValue); };
    // Out of the frame the vector part moves as the angles do.
    const TVector3 axis = frame.FromFrame(TVector3(
        round(sx * cy * cz - cx * sy * sz), round(cx * sy * cz + sx * cy * sz), round(cx * cy * sz - sx * sy * cz)));
    return {axis.x, axis.y, axis.z, round(cx * cy * cz + sx * sy * sz)};
  });
}

TVector3 QuaternionToEuler(int32 inOrder, const TQuaternion& inQuaternion, const TVector3& inReference) {
  // Below this cosine the rounding of a 32-bit quaternion has taken the outer angles' own directions away.
  constexpr real64 kPoleCosine = 4e-7;
  TVector4 q{inQuaternion.x, inQuaternion.y, inQuaternion.z, inQuaternion.w};
  if (!q.IsFinite() || !inReference.IsFinite()) {
    return inReference;
  }
  if (q == TVector4()) {
    q.w = 1;
  }
  return WithFrame(inOrder, [&](auto frame) {
    const TVector3 v = frame.ToFrame(TVector3(q.x, q.y, q.z));
    const Matrix64 matrix(TQuaternion(v.x, v.y, v.z, q.w));
    const auto& m = matrix.f;
    const real64 c = std::sqrt(m[0][0] * m[0][0] + m[1][0] * m[1][0]);
    const real64 z = c < kPoleCosine ? static_cast<real64>(frame.ToFrame(inReference).z) : ArcTangent(m[1][0], m[0][0]);
    // The first angle is read with the third one undone, so that at a pole the two fit together.
    const auto [sz, cz] = SineCosine(z);
    const real64 a = ArcTangent(sz * m[0][2] - cz * m[1][2], cz * m[1][1] - sz * m[0][1]);
    const real64 b = ArcTangent(-m[2][0], cz * m[0][0] + sz * m[1][0]);
    const real64 sign = static_cast<real64>(frame.kFactor);
    Angles64 angles(0, 0, 0);
    angles.f[frame.kAxes[0]] = a * sign;
    angles.f[frame.kAxes[1]] = b * sign;
    angles.f[frame.kAxes[2]] = z * sign;
    return NearestOfBoth(frame.kAxes, angles, Angles64(inReference));
  });
}

TVector3 NearestEquivalentEuler(int32 inOrder, const TVector3& inAngles, const TVector3& inReference) {
  if (!inAngles.IsFinite() || !inReference.IsFinite()) {
    return inAngles;
  }
  return NearestOfBoth(GetOrderAxes(inOrder), Angles64(inAngles), Angles64(inReference));
}

}  // namespace qlx
