// One number of a parameter's value.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "AssertionGuard.h"
#include "FakeAttributes.h"
#include "NotFinite.h"
#include "QLXLookups.h"
#include "TestMemory.h"
#include "model/IDText.h"
#include "model/ParamTypes.h"

namespace qlx::test {
namespace {

TEST(QLXValues, StoreAndReadByTypeAndComponent) {
  const struct {
    const char* fLabel;
    MCID fType;
    MCID fComponent;
    real32 fStored;
    real32 fRead;
  } rows[] = {
      {"bool", "bool"_id, "any "_id, 0.25f, 1},
      {"bool of 0", "bool"_id, 0, 0, 0},
      {"integer is truncated", "in32"_id, 0, -3.9f, -3},
      {"long", "long"_id, 0, 3.9f, 3},
      {"action", "actn"_id, 0, 7, 7},
      {"integer stops at its end", "in32"_id, 0, 1e20f, 2147483648.0f},
      {"integer stops at its start", "in32"_id, 0, -1e20f, -2147483648.0f},
      {"integer of NaN", "in32"_id, 0, kNaN, 0},
      {"short", "in16"_id, 0, 3.9f, 3},
      {"short stops at its end", "shrt"_id, 0, 1e9f, 32767},
      {"short stops at its start", "shrt"_id, 0, -1e9f, -32768},
      {"short of NaN", "in16"_id, 0, kNaN, 0},
      {"real", "re32"_id, 0, 0.1f, 0.1f},
      {"fixed", "qfix"_id, "RotX"_id, 0.1f, 0.1f},
      {"double", "re64"_id, 0, 0.1f, 0.1f},
      {"red", "colo"_id, "redV"_id, 0.1f, 0.1f},
      {"alpha", "colo"_id, "alpV"_id, 0.1f, 0.1f},
      {"a colour is no number", "colo"_id, "colo"_id, 0.1f, 0},
      {"vector", "VEC2"_id, "vecY"_id, 0.1f, 0.1f},
      {"vector has no third", "qfv2"_id, "vecZ"_id, 0.1f, 0},
      {"vector of three", "VEC3"_id, "vecZ"_id, 0.1f, 0.1f},
      {"direction", "dire"_id, "vecX"_id, 0.1f, 0.1f},
      {"other spelling of a vector", "vec3"_id, "vecX"_id, 0.1f, 0},
      {"other spelling of a vector of two", "vec2"_id, "vecX"_id, 0.1f, 0},
      {"fixed vector", "qfv3"_id, "vecX"_id, 0.1f, 0},
      {"signed real", "sr32"_id, 0, 0.1f, 0},
      {"text", "str "_id, 0, 0.1f, 0},
  };
  host::GetParamTypes();
  const AssertionGuard silence;
  for (const auto& row : rows) {
    QLXValueBuffer buffer(FindParamType(row.fType));
    ASSERT_TRUE(buffer.HasValue()) << row.fLabel;
    const QLXNumberPlace place = FindNumber(row.fType, row.fComponent);
    StoreNumber(place, row.fStored, buffer.GetData());
    EXPECT_EQ(ReadNumber(place, buffer.GetData()), row.fRead) << row.fLabel;
  }
}

TEST(QLXValues, OtherNumbersOfAValueStay) {
  std::array<real32, 4> colour{1, 2, 3, 4};
  StoreNumber(FindNumber("colo"_id, "bluV"_id), 9, colour.data());
  StoreNumber(FindNumber("colo"_id, "none"_id), 9, colour.data());
  EXPECT_EQ(colour, (std::array<real32, 4>{1, 2, 9, 4}));
}

// Values of each size in turn in one place: every one begins fresh, and what a type takes it gives back.
TEST(QLXValues, AParameterHasRoomForAnyValue) {
  TestMemory memory;
  host::GetParamTypes();
  const AssertionGuard silence;
  EXPECT_EQ(FindParamType("????"_id), nullptr);
  EXPECT_FALSE(QLXValueBuffer(nullptr).HasValue());
  QLXParameter place;
  for (const MCID type : {"qfix"_id, "mx33"_id, "str "_id, "colo"_id, "????"_id, "bool"_id}) {
    const std::string label = host::TextFromID(type);
    FakeParam param("RotX"_id, type);
    place.Set(MCShare<ParamInfo>(&param), "redV"_id);
    const bool isNumber = type == "qfix"_id || type == "colo"_id || type == "bool"_id;
    ASSERT_EQ(place.HasValue(), type != "????"_id) << label;
    EXPECT_EQ(place.GetNumber(), 0) << label;
    if (place.HasValue()) {
      EXPECT_EQ(place.GetValue().GetType(), type) << label;
      place.SetNumber(1);
      EXPECT_EQ(place.GetNumber(), isNumber ? 1 : 0) << label;
    }
    place.Forget();
    EXPECT_FALSE(place.IsKnown() || place.Exists() || place.HasValue()) << label;
    EXPECT_EQ(param.fCount, 0) << label;
  }
}

}  // namespace
}  // namespace qlx::test
