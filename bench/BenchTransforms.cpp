// Rotations and transforms, beside Imath and Eigen on the same data where their headers are installed. Each benchmark
// walks the same 1024 seeded inputs; compare the rows of one name within one run.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "Transforms.h"

#ifdef QLX_HAVE_IMATH
#include <ImathEuler.h>
#include <ImathMatrix.h>
#include <ImathMatrixAlgo.h>
#include <ImathQuat.h>
#endif
#ifdef QLX_HAVE_EIGEN
#include <Eigen/Dense>
#endif

namespace qlx {
namespace {

constexpr std::size_t kCount = 1024;

// A new index at each step, so that nothing can be taken out of the loop.
class Steps {
 public:
  std::size_t Next() { return fIndex = (fIndex + 1) % kCount; }

 private:
  std::size_t fIndex = 0;
};

TVector3 RandomVector(std::mt19937& ioEngine, real32 inSize) {
  std::uniform_real_distribution<real32> distribution(-inSize, inSize);
  const real32 x = distribution(ioEngine);
  const real32 y = distribution(ioEngine);
  return {x, y, distribution(ioEngine)};
}

struct Data {
  std::vector<TVector3> fAngles;
  std::vector<TMatrix33> fRotations;
  std::vector<TMatrix33> fMatrices;       // regular, with a shear
  std::vector<TMatrix33> fPerpendicular;  // rotated and stretched
  std::vector<TQuaternion> fQuaternions;
  std::vector<TreeTransform> fTransforms;

  Data() {
    std::mt19937 engine(1);
    for (std::size_t i = 0; i < kCount; ++i) {
      fAngles.push_back(RandomVector(engine, 3));
      fRotations.push_back(EulerToMatrix(0, fAngles.back(), false));
      fMatrices.push_back(fRotations.back() * TMatrix33::FromDiagonal({1, 2, 3}) *
                          EulerToMatrix(0, RandomVector(engine, 3), false));
      fPerpendicular.push_back(fRotations.back() * TMatrix33::FromDiagonal({1, 2, 3}));
      fQuaternions.push_back(EulerToQuaternion(0, fAngles.back()));
      TreeTransform transform;
      transform.SetRotation(TransformRotation());
      transform.GetRotation().SetEuler(fAngles.back());
      transform.SetPosition(RandomVector(engine, 10));
      transform.SetScaling({1, 2, 3});
      fTransforms.push_back(transform);
    }
  }
};

const Data& GetData() {
  static const Data sData;
  return sData;
}

void EulerToMatrixOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  const auto order = static_cast<int32>(ioState.range(0));
  Steps steps;
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(EulerToMatrix(order, data.fAngles[steps.Next()], false));
  }
}
BENCHMARK(EulerToMatrixOurs)->DenseRange(0, 5);

// With the rebuilding of the matrix, by which each conversion checks itself.
void MatrixToEulerOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  const auto order = static_cast<int32>(ioState.range(0));
  Steps steps;
  for (auto _ : ioState) {
    TVector3 angles;
    bool isFlipped = false;
    MatrixToEuler(order, data.fRotations[steps.Next()], angles, isFlipped);
    benchmark::DoNotOptimize(angles);
  }
}
BENCHMARK(MatrixToEulerOurs)->DenseRange(0, 5);

void QuaternionToEulerOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(QuaternionToEuler(0, data.fQuaternions[steps.Next()], {}));
  }
}
BENCHMARK(QuaternionToEulerOurs);

void MatrixProductOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  TMatrix33 product;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    product = data.fMatrices[i] * data.fRotations[i];
    benchmark::DoNotOptimize(product);
  }
}
BENCHMARK(MatrixProductOurs);

void MatrixInverseOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  TMatrix33 inverse;
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(data.fMatrices[steps.Next()].GetInverse(inverse));
    benchmark::DoNotOptimize(inverse);
  }
}
BENCHMARK(MatrixInverseOurs);

void SphericalInterpolationOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    benchmark::DoNotOptimize(SphericalInterpolate(0.3f, data.fQuaternions[i], data.fQuaternions[(i + 1) % kCount]));
  }
}
BENCHMARK(SphericalInterpolationOurs);

void MakeTreeTransform(benchmark::State& ioState) {
  for (auto _ : ioState) {
    TreeTransform transform;
    benchmark::DoNotOptimize(transform);
  }
}
BENCHMARK(MakeTreeTransform);

void LocalToParentOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    benchmark::DoNotOptimize(data.fTransforms[i].LocalToParent(data.fAngles[i]));
  }
}
BENCHMARK(LocalToParentOurs);

// The transform made into a matrix before the loop.
void LocalToParentByMatrixOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  std::vector<TOffsetMatrix33> matrices;
  for (const TreeTransform& transform : data.fTransforms) {
    matrices.push_back(transform.GetLocalToParent());
  }
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    benchmark::DoNotOptimize(matrices[i].MapPoint(data.fAngles[i]));
  }
}
BENCHMARK(LocalToParentByMatrixOurs);

void DecomposeSimpleOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(DecomposedTransform({data.fPerpendicular[steps.Next()], {}}));
  }
}
BENCHMARK(DecomposeSimpleOurs);

void DecomposeGeneralOurs(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(DecomposedTransform({data.fMatrices[steps.Next()], {}}));
  }
}
BENCHMARK(DecomposeGeneralOurs);

#ifdef QLX_HAVE_IMATH

Imath::M33f ToImath(const TMatrix33& m) {
  return {m(0, 0), m(1, 0), m(2, 0), m(0, 1), m(1, 1), m(2, 1), m(0, 2), m(1, 2), m(2, 2)};
}

Imath::Quatf ToImath(const TQuaternion& inQ) {
  return {inQ.w, inQ.x, inQ.y, inQ.z};
}

template <class From>
auto ToImath(const std::vector<From>& inValues) {
  std::vector<decltype(ToImath(inValues[0]))> result;
  result.reserve(inValues.size());
  for (const From& value : inValues) {
    result.push_back(ToImath(value));
  }
  return result;
}

Imath::M44f ToImath(const TOffsetMatrix33& inM) {
  return {ToImath(inM.fMatrix), {inM.fOffset.x, inM.fOffset.y, inM.fOffset.z}};
}

constexpr Imath::Eulerf::Order kImathOrders[kOrderCount] = {Imath::Eulerf::XYZ, Imath::Eulerf::XZY, Imath::Eulerf::YXZ,
                                                            Imath::Eulerf::YZX, Imath::Eulerf::ZYX, Imath::Eulerf::ZXY};

void EulerToMatrixImath(benchmark::State& ioState) {
  const Data& data = GetData();
  const Imath::Eulerf::Order order = kImathOrders[ioState.range(0)];
  Steps steps;
  for (auto _ : ioState) {
    const TVector3& angles = data.fAngles[steps.Next()];
    const Imath::Eulerf euler(Imath::V3f(angles.x, angles.y, angles.z), order, Imath::Eulerf::XYZLayout);
    benchmark::DoNotOptimize(euler.toMatrix33());
  }
}
BENCHMARK(EulerToMatrixImath)->DenseRange(0, 5);

void MatrixToEulerImath(benchmark::State& ioState) {
  const std::vector<Imath::M33f> matrices = ToImath(GetData().fRotations);
  Steps steps;
  Imath::Eulerf euler(kImathOrders[ioState.range(0)]);
  for (auto _ : ioState) {
    euler.extract(matrices[steps.Next()]);
    benchmark::DoNotOptimize(euler);
  }
}
BENCHMARK(MatrixToEulerImath)->DenseRange(0, 5);

// With the matrix at hand before the loop.
void LocalToParentByMatrixImath(benchmark::State& ioState) {
  const Data& data = GetData();
  std::vector<Imath::M44f> matrices;
  for (const TreeTransform& transform : data.fTransforms) {
    matrices.push_back(ToImath(transform.GetLocalToParent()));
  }
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    const TVector3& p = data.fAngles[i];
    Imath::V3f mapped;
    matrices[i].multVecMatrix(Imath::V3f(p.x, p.y, p.z), mapped);
    benchmark::DoNotOptimize(mapped);
  }
}
BENCHMARK(LocalToParentByMatrixImath);

// What `LocalToParent` does each time: the matrix is put together from scale, rotation matrix and position first.
void LocalToParentImath(benchmark::State& ioState) {
  const Data& data = GetData();
  const std::vector<Imath::M33f> rotations = ToImath(data.fRotations);
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    const TVector3& p = data.fAngles[i];
    const TVector3& s = data.fTransforms[i].GetScaling();
    const TVector3& t = data.fTransforms[i].GetPosition();
    Imath::M44f matrix(rotations[i], Imath::V3f(t.x, t.y, t.z));
    matrix.scale(Imath::V3f(s.x, s.y, s.z));
    Imath::V3f mapped;
    matrix.multVecMatrix(Imath::V3f(p.x, p.y, p.z), mapped);
    benchmark::DoNotOptimize(mapped);
  }
}
BENCHMARK(LocalToParentImath);

void DecomposeSimpleImath(benchmark::State& ioState) {
  std::vector<Imath::M44f> matrices;
  for (const TMatrix33& matrix : GetData().fPerpendicular) {
    matrices.push_back(ToImath(TOffsetMatrix33{matrix, {}}));
  }
  Steps steps;
  for (auto _ : ioState) {
    Imath::V3f scale, shear, angles, offset;
    benchmark::DoNotOptimize(Imath::extractSHRT(matrices[steps.Next()], scale, shear, angles, offset));
    benchmark::DoNotOptimize(scale);
    benchmark::DoNotOptimize(angles);
  }
}
BENCHMARK(DecomposeSimpleImath);

void DecomposeGeneralImath(benchmark::State& ioState) {
  const std::vector<Imath::M33f> matrices = ToImath(GetData().fMatrices);
  Steps steps;
  for (auto _ : ioState) {
    Imath::M33d u, v;
    Imath::V3d values;
    Imath::jacobiSVD(Imath::M33d(matrices[steps.Next()]), u, values, v);
    benchmark::DoNotOptimize(u);
    benchmark::DoNotOptimize(values);
    benchmark::DoNotOptimize(v);
  }
}
BENCHMARK(DecomposeGeneralImath);

void MatrixProductImath(benchmark::State& ioState) {
  const std::vector<Imath::M33f> left = ToImath(GetData().fMatrices);
  const std::vector<Imath::M33f> right = ToImath(GetData().fRotations);
  Steps steps;
  Imath::M33f product;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    product = left[i] * right[i];
    benchmark::DoNotOptimize(product);
  }
}
BENCHMARK(MatrixProductImath);

void MatrixInverseImath(benchmark::State& ioState) {
  const std::vector<Imath::M33f> matrices = ToImath(GetData().fMatrices);
  Steps steps;
  Imath::M33f inverse;
  for (auto _ : ioState) {
    inverse = matrices[steps.Next()].inverse();
    benchmark::DoNotOptimize(inverse);
  }
}
BENCHMARK(MatrixInverseImath);

void SphericalInterpolationImath(benchmark::State& ioState) {
  const std::vector<Imath::Quatf> quaternions = ToImath(GetData().fQuaternions);
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    benchmark::DoNotOptimize(Imath::slerpShortestArc(quaternions[i], quaternions[(i + 1) % kCount], 0.3f));
  }
}
BENCHMARK(SphericalInterpolationImath);

#endif

#ifdef QLX_HAVE_EIGEN

Eigen::Matrix3f ToEigen(const TMatrix33& m) {
  Eigen::Matrix3f result;
  result << m(0, 0), m(0, 1), m(0, 2), m(1, 0), m(1, 1), m(1, 2), m(2, 0), m(2, 1), m(2, 2);
  return result;
}

std::vector<Eigen::Matrix3f> ToEigen(const std::vector<TMatrix33>& inMatrices) {
  std::vector<Eigen::Matrix3f> result;
  result.reserve(inMatrices.size());
  for (const TMatrix33& matrix : inMatrices) {
    result.push_back(ToEigen(matrix));
  }
  return result;
}

void EulerToMatrixEigen(benchmark::State& ioState) {
  const Data& data = GetData();
  Steps steps;
  for (auto _ : ioState) {
    const TVector3& angles = data.fAngles[steps.Next()];
    const Eigen::Matrix3f matrix(
        (Eigen::AngleAxisf(angles.z, Eigen::Vector3f::UnitZ()) * Eigen::AngleAxisf(angles.y, Eigen::Vector3f::UnitY()) *
         Eigen::AngleAxisf(angles.x, Eigen::Vector3f::UnitX()))
            .toRotationMatrix());
    benchmark::DoNotOptimize(matrix);
  }
}
BENCHMARK(EulerToMatrixEigen);

void MatrixToEulerEigen(benchmark::State& ioState) {
  const std::vector<Eigen::Matrix3f> matrices = ToEigen(GetData().fRotations);
  Steps steps;
  for (auto _ : ioState) {
    const Eigen::Vector3f angles = matrices[steps.Next()].eulerAngles(2, 1, 0);
    benchmark::DoNotOptimize(angles);
  }
}
BENCHMARK(MatrixToEulerEigen);

void SphericalInterpolationEigen(benchmark::State& ioState) {
  std::vector<Eigen::Quaternionf> quaternions;
  for (const TQuaternion& q : GetData().fQuaternions) {
    quaternions.emplace_back(q.w, q.x, q.y, q.z);
  }
  Steps steps;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    const Eigen::Quaternionf blend = quaternions[i].slerp(0.3f, quaternions[(i + 1) % kCount]);
    benchmark::DoNotOptimize(blend);
  }
}
BENCHMARK(SphericalInterpolationEigen);

void MatrixProductEigen(benchmark::State& ioState) {
  const std::vector<Eigen::Matrix3f> left = ToEigen(GetData().fMatrices);
  const std::vector<Eigen::Matrix3f> right = ToEigen(GetData().fRotations);
  Steps steps;
  Eigen::Matrix3f product;
  for (auto _ : ioState) {
    const std::size_t i = steps.Next();
    product.noalias() = left[i] * right[i];
    benchmark::DoNotOptimize(product);
  }
}
BENCHMARK(MatrixProductEigen);

void MatrixInverseEigen(benchmark::State& ioState) {
  const std::vector<Eigen::Matrix3f> matrices = ToEigen(GetData().fMatrices);
  Steps steps;
  Eigen::Matrix3f inverse;
  for (auto _ : ioState) {
    inverse = matrices[steps.Next()].inverse();
    benchmark::DoNotOptimize(inverse);
  }
}
BENCHMARK(MatrixInverseEigen);

void DecomposeGeneralEigen(benchmark::State& ioState) {
  const std::vector<Eigen::Matrix3f> matrices = ToEigen(GetData().fMatrices);
  Steps steps;
  for (auto _ : ioState) {
    const Eigen::JacobiSVD<Eigen::Matrix3d> parts(matrices[steps.Next()].cast<double>(),
                                                  Eigen::ComputeFullU | Eigen::ComputeFullV);
    benchmark::DoNotOptimize(parts.singularValues());
    benchmark::DoNotOptimize(parts.matrixU());
    benchmark::DoNotOptimize(parts.matrixV());
  }
}
BENCHMARK(DecomposeGeneralEigen);

#endif

}  // namespace
}  // namespace qlx
