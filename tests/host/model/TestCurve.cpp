#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

#include "RandomValues.h"
#include "model/Curve.h"
#include "model/RotationCurve.h"

namespace qlx::host {

namespace {

constexpr int32 kSecond = 180000;

Curve MakeCurve(std::initializer_list<CurveKey> inKeys) {
  Curve curve;
  for (const CurveKey& key : inKeys) {
    curve.SetKey(key);
  }
  return curve;
}

}  // namespace

TEST(Curve, SamplesByTheInterpolationOfTheKeyBefore) {
  const Curve curve = MakeCurve({
      {.fTime = 0, .fValue = 10, .fInterpolation = Interpolation::kStep},
      {.fTime = kSecond, .fValue = 20, .fInterpolation = Interpolation::kLinear},
      // A spline of two seconds, with tangents of 3 and -1 a second.
      {.fTime = 2 * kSecond, .fValue = 1, .fOutTangent = 3, .fInterpolation = Interpolation::kCubicSpline},
      {.fTime = 4 * kSecond, .fValue = 5, .fInTangent = -1, .fInterpolation = Interpolation::kLinear},
  });
  const auto spline = [](real64 t) {
    return (2 * t * t * t - 3 * t * t + 1) * 1 + 2 * (t * t * t - 2 * t * t + t) * 3 + (3 * t * t - 2 * t * t * t) * 5 +
           2 * (t * t * t - t * t) * -1;
  };
  const struct {
    const char* label;
    int32 time;
    real64 value;
  } rows[] = {
      {"far before the first key", std::numeric_limits<int32>::min(), 10},
      {"on the first key", 0, 10},
      {"step holds to the last tick", kSecond - 1, 10},
      {"step ends on the next key", kSecond, 20},
      {"linear, a quarter", kSecond + kSecond / 4, 20 - 0.25 * 19},
      {"spline, its start", 2 * kSecond, 1},
      {"spline, a quarter", 2 * kSecond + kSecond / 2, spline(0.25)},
      {"spline, three quarters", 3 * kSecond + kSecond / 2, spline(0.75)},
      {"on the last key", 4 * kSecond, 5},
      {"far after the last key", std::numeric_limits<int32>::max(), 5},
  };
  for (const auto& row : rows) {
    EXPECT_FLOAT_EQ(curve.Sample(row.time), static_cast<real32>(row.value)) << row.label;
  }
}

TEST(Curve, SpansTheWholeRangeOfTicksWithoutOverflow) {
  const Curve curve = MakeCurve({{.fTime = std::numeric_limits<int32>::min(), .fValue = -1},
                                 {.fTime = std::numeric_limits<int32>::max(), .fValue = 1}});
  EXPECT_NEAR(curve.Sample(0), 0, 1e-6);
}

TEST(Curve, AnyHintGivesTheSameSample) {
  Curve curve;
  for (int32 i = 0; i < 50; ++i) {
    curve.SetKey({.fTime = i * 100, .fValue = static_cast<real32>((i * 7919) % 31)});
  }
  for (std::size_t hint = 0; hint < 60; hint += 7) {
    for (int32 time = -50; time < 5100; time += 33) {
      std::size_t moving = hint;
      EXPECT_EQ(curve.Sample(time, moving), curve.Sample(time)) << time << " from hint " << hint;
    }
  }
}

// Random edits, against a map of the values by time.
TEST(Curve, EditsGiveWhatAMapGives) {
  test::RandomValues random(30);
  Curve curve;
  std::map<int32, real32> expected;
  std::vector<uint32> serials;
  for (int step = 0; step < 3000; ++step) {
    const int32 time = random.Below(40);
    const auto value = static_cast<real32>(step);
    std::size_t hint = random.Bits() % 50;
    const CurveKey* key = nullptr;
    std::vector<int32> times;
    switch (random.Below(5)) {
      case 0:
        serials.push_back(curve.SetKey({.fTime = time, .fValue = value}));
        expected[time] = value;
        break;
      case 1:
        EXPECT_EQ(curve.DeleteKeyAt(time), expected.erase(time) == 1);
        break;
      case 2:
        for (int32 each = time - 2; each < time + 6; each += random.Below(3)) {  // some of them twice
          times.push_back(each);
        }
        EXPECT_EQ(curve.DeleteKeysAt(times), std::erase_if(expected, [&](const auto& each) {
                                               return std::ranges::count(times, each.first) > 0;
                                             }) > 0);
        break;
      default:
        key = serials.empty() ? nullptr : curve.FindSerial(serials[random.Bits() % serials.size()]);
        if (key != nullptr) {
          const auto [from, moved, serial] = std::tuple(key->fTime, key->fValue, key->fSerial);
          EXPECT_TRUE(curve.MoveKey(serial, time, hint));
          EXPECT_EQ(curve.GetKeys()[hint].fSerial, serial);
          expected.erase(from);
          expected[time] = moved;
        }
    }
    ASSERT_EQ(curve.GetKeys().size(), expected.size()) << step;
    auto at = expected.begin();
    for (const CurveKey& each : curve.GetKeys()) {
      ASSERT_EQ(std::pair(each.fTime, each.fValue), std::pair(at->first, at->second)) << step;
      ++at;
    }
  }
}

TEST(Curve, FindsAKeyFromAnyHintAfterOthersWent) {
  Curve curve;
  std::vector<uint32> serials;
  serials.reserve(20);
  for (int32 i = 0; i < 20; ++i) {
    serials.push_back(curve.SetKey({.fTime = i}));
  }
  for (int32 i = 0; i < 20; i += 2) {
    curve.DeleteKeyAt(i);
  }
  for (std::size_t hint : {std::size_t{0}, std::size_t{5}, std::size_t{100}}) {
    for (std::size_t i = 0; i < serials.size(); ++i) {
      std::size_t moving = hint;
      const CurveKey* const found = curve.FindSerial(serials[i], moving);
      ASSERT_EQ(found != nullptr, i % 2 == 1) << i;
      if (found != nullptr) {
        EXPECT_EQ(found->fTime, static_cast<int32>(i));
        EXPECT_EQ(moving, i / 2);
      }
    }
  }
  EXPECT_FALSE(curve.MoveKey(serials[0], 5)) << "it went";
  EXPECT_FALSE(curve.SelectKey(0, true));
}

namespace {

QuaternionValue AboutZ(real64 inAngle) {
  return {0, 0, std::sin(inAngle / 2), std::cos(inAngle / 2)};
}

QuaternionValue Negated(QuaternionValue inValue) {
  for (real64& component : inValue) {
    component = -component;
  }
  return inValue;
}

real64 AngleAboutZ(const QuaternionValue& inValue) {
  return 2 * std::atan2(inValue[2], inValue[3]);
}

}  // namespace

TEST(RotationCurve, Samples) {
  const struct {
    const char* label;
    Interpolation interpolation;
    QuaternionValue from;
    QuaternionValue to;
    int32 time;
    real64 angle;
  } rows[] = {
      {"linear is even in angle", Interpolation::kLinear, AboutZ(0), AboutZ(2.0), 250, 0.5},
      {"linear goes the short way", Interpolation::kLinear, AboutZ(0), Negated(AboutZ(2.0)), 250, 0.5},
      {"linear over a tiny angle", Interpolation::kLinear, AboutZ(1), AboutZ(1 + 1e-7), 500, 1 + 0.5e-7},
      {"linear takes keys of any length", Interpolation::kLinear, {0, 0, 0, 5}, {0, 0, 7, 7}, 500, std::acos(0.0) / 2},
      {"step holds", Interpolation::kStep, AboutZ(0.3), AboutZ(2.0), 999, 0.3},
      {"spline without tangents, its middle", Interpolation::kCubicSpline, AboutZ(0), AboutZ(1.0), 500, 0.5},
      {"before the first key", Interpolation::kLinear, AboutZ(0.7), AboutZ(2.0), -10, 0.7},
      {"after the last key", Interpolation::kCubicSpline, AboutZ(0.7), AboutZ(2.0), 5000, 2.0},
      {"a zero quaternion is the identity", Interpolation::kStep, {0, 0, 0, 0}, AboutZ(1), 500, 0},
  };
  for (const auto& row : rows) {
    const RotationCurve curve(row.interpolation, {{.fTime = 0, .fValue = row.from}, {.fTime = 1000, .fValue = row.to}});
    std::size_t hint = 0;
    const QuaternionValue value = curve.Sample(row.time, hint);
    EXPECT_NEAR(AngleAboutZ(value), row.angle, 1e-12) << row.label;
    const real64 squared = value[0] * value[0] + value[1] * value[1] + value[2] * value[2] + value[3] * value[3];
    EXPECT_NEAR(squared, 1, 1e-12) << row.label;
  }
}

}  // namespace qlx::host
