#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

#include "services/ParameterMap.h"

namespace qlx::host {
namespace {

using Vector = std::array<real32, 3>;

TEST(ParameterMap, PinLiesAsItsBlockDoes) {
  const ParameterMap* map = FindParameterMap("fPIN"_id);
  ASSERT_NE(map, nullptr);
  const struct {
    const char* fName;
    MCID fType;
    std::size_t fOffset;
  } kRows[] = {
      {"fPositionSet", "bool"_id, 0}, {"fActive", "bool"_id, 1},    {"fGlobal", "bool"_id, 2},
      {"fPosition", "VEC3"_id, 4},    {"fReserved", "VEC3"_id, 16},
  };
  ASSERT_EQ(map->GetFields().size(), std::size(kRows));
  for (const auto& row : kRows) {
    const ParameterField* field = map->Find(row.fName);
    ASSERT_NE(field, nullptr) << row.fName;
    EXPECT_EQ(field->fType, row.fType) << row.fName;
    EXPECT_EQ(field->fOffset, row.fOffset) << row.fName;
  }
  EXPECT_EQ(map->GetSize(), 28U);
  EXPECT_EQ(map->Find("fposition"), nullptr);
  EXPECT_EQ(FindParameterMap("fXXX"_id), nullptr);
}

TEST(ParameterMap, AlignsEachFieldAndTheWholeToItsType) {
  const ParameterMap map{{"a", "bool"_id}, {"b", "in32"_id}, {"c", "bool"_id}, {"d", "re32"_id}, {"e", "bool"_id}};
  EXPECT_EQ(map.Find("b")->fOffset, 4U);
  EXPECT_EQ(map.Find("d")->fOffset, 12U);
  EXPECT_EQ(map.Find("e")->fOffset, 16U);
  EXPECT_EQ(map.GetSize(), 20U);
  EXPECT_EQ(ParameterMap({{"a", "bool"_id}, {"b", "bool"_id}}).GetSize(), 2U);
}

TEST(ParameterMap, WritesAndReadsEveryType) {
  const ParameterMap map{{"flag", "bool"_id}, {"count", "in32"_id}, {"real", "re32"_id}, {"vector", "VEC3"_id}};
  const ParameterValue values[] = {true, int32{-7}, 2.5f, Vector{1, 2, 3}};
  std::array<std::byte, 24> block{};
  ASSERT_EQ(map.GetSize(), block.size());
  for (std::size_t i = 0; i < std::size(values); ++i) {
    EXPECT_TRUE(ParameterMap::Write(map.GetFields()[i], values[i], block.data()));
  }
  std::array<std::byte, 24> copy{};
  for (const ParameterField& field : map.GetFields()) {
    ParameterMap::Copy(field, block.data(), copy.data());
  }
  EXPECT_EQ(copy, block);
  for (std::size_t i = 0; i < std::size(values); ++i) {
    EXPECT_EQ(ParameterMap::Read(map.GetFields()[i], copy.data()), values[i]);
  }
}

TEST(ParameterMap, RefusesOtherTypesAndWhatIsNotFinite) {
  constexpr real32 kNaN = std::numeric_limits<real32>::quiet_NaN();
  constexpr real32 kInfinity = std::numeric_limits<real32>::infinity();
  const struct {
    const char* fLabel;
    MCID fType;
    ParameterValue fValue;
  } kRows[] = {
      {"a number for a flag", "bool"_id, int32{1}},
      {"a flag for a number", "in32"_id, true},
      {"an integer for a real", "re32"_id, int32{1}},
      {"a real for a vector", "VEC3"_id, 1.0f},
      {"NaN", "re32"_id, kNaN},
      {"infinity", "re32"_id, -kInfinity},
      {"NaN in a vector", "VEC3"_id, Vector{0, 0, kNaN}},
  };
  for (const auto& row : kRows) {
    const ParameterMap map{{"field", row.fType}};
    std::array<std::byte, 12> block;
    block.fill(std::byte{0xAB});
    const auto before = block;
    EXPECT_FALSE(ParameterMap::Write(map.GetFields()[0], row.fValue, block.data())) << row.fLabel;
    EXPECT_EQ(block, before) << row.fLabel;
  }
}

TEST(ParameterMap, AnyByteButZeroIsATrueFlag) {
  const ParameterMap map{{"flag", "bool"_id}};
  const uint8 byte = 0xFF;
  EXPECT_EQ(ParameterMap::Read(map.GetFields()[0], &byte), ParameterValue(true));
}

}  // namespace
}  // namespace qlx::host
