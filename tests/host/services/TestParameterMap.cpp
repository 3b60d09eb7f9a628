#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

#include "MCString.h"
#include "TestMemory.h"
#include "model/IDText.h"
#include "services/PluginCatalog.h"

namespace qlx::host {
namespace {

using Vector = std::array<real32, 3>;

TEST(ParameterMap, PinLiesAsItsBlockDoes) {
  const ParameterMap* map = PluginCatalog::GetBuiltIn()->FindMap("fPIN"_id);
  ASSERT_NE(map, nullptr);
  std::string fields;
  for (const ParameterField& field : map->GetFields()) {
    fields += field.fName + ' ' + TextFromID(field.fType) + ' ' + std::to_string(field.fOffset) + '\n';
  }
  EXPECT_EQ(fields, "fPositionSet bool 0\nfActive bool 1\nfGlobal bool 2\nfPosition VEC3 4\nfReserved VEC3 16\n");
  EXPECT_EQ(map->GetSize(), 28U);
  EXPECT_EQ(map->Find("fposition"), nullptr);
  EXPECT_EQ(PluginCatalog::GetBuiltIn()->FindMap("fXXX"_id), nullptr);
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
  copy[0] = std::byte{0xFF};
  EXPECT_EQ(ParameterMap::Read(map.GetFields()[0], copy.data()), ParameterValue(true)) << "any byte but zero";
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
      {"NaN in its middle", "VEC3"_id, Vector{0, kNaN, 0}},
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

TEST(ParameterMap, TextsGoThroughTheirClass) {
  struct Block {
    bool fFlag = true;
    TMCString255 fText{"before"};
    bool fLast = true;
  };
  const ParameterMap map{{"flag", "bool"_id}, {"text", "s255"_id}, {"last", "bool"_id}};
  ASSERT_EQ(map.GetSize(), sizeof(Block));
  const ParameterField& text = *map.Find("text");
  const struct {
    const char* fLabel;
    std::string fText;
    bool fIsTaken;
  } kRows[] = {
      {"empty", "", true},
      {"characters of two bytes", "\u00e4\u00f6", true},
      {"the longest", std::string(255, 'x'), true},
      {"one more", std::string(256, 'x'), false},
      {"a NUL", std::string("a\0b", 3), false},
      {"cut inside a character", std::string(254, 'x') + "\xC3", true},
  };
  for (const auto& row : kRows) {
    Block block;
    Block copy;
    EXPECT_EQ(ParameterMap::Write(text, row.fText, &block), row.fIsTaken) << row.fLabel;
    EXPECT_EQ(ParameterMap::Read(text, &block), ParameterValue(row.fIsTaken ? row.fText : "before")) << row.fLabel;
    ParameterMap::Copy(text, &block, &copy);
    EXPECT_TRUE(copy.fText == block.fText && copy.fText.Length() == block.fText.Length()) << row.fLabel;
    EXPECT_TRUE(block.fFlag && block.fLast) << row.fLabel;
    EXPECT_FALSE(ParameterMap::Write(text, 1.0f, &block)) << row.fLabel;
  }
}

// What the slider's block is made of.
TEST(ParameterMap, TextsThatGrowTakeAsMuchAsAPathHas) {
  struct Block {
    TMCDynamicString fPath;
    TMCString255 fLabel;
    real32 fNumbers[3] = {1, 2, 3};
  };
  const ParameterMap& map = *PluginCatalog::GetBuiltIn()->FindMap("fSLD"_id);
  ASSERT_EQ(map.GetSize(), sizeof(Block));
  if (sizeof(void*) == 4) {
    EXPECT_EQ(map.GetSize(), 304U);
  }
  const test::TestMemory memory;
  const ParameterField& path = *map.Find("fPath");
  Block block;
  Block copy;
  for (const std::size_t length : {0U, 5U, 255U, 1023U}) {
    const ParameterValue text(std::string(length, 'x'));
    EXPECT_TRUE(ParameterMap::Write(path, text, &block)) << length;
    ParameterMap::Copy(path, &block, &copy);
    EXPECT_EQ(ParameterMap::Read(path, &copy), text) << length;
  }
  for (const std::string& text : {std::string(1024, 'x'), std::string("a\0b", 3)}) {
    EXPECT_FALSE(ParameterMap::Write(path, text, &block));
    EXPECT_EQ(block.fPath.ByteLength(), 1023U) << "as it was";
  }
  EXPECT_FALSE(ParameterMap::Write(path, 1.0f, &block));
  EXPECT_FALSE(ParameterMap::Write(*map.Find("fLabel"), std::string(256, 'x'), &block));
  EXPECT_EQ(block.fNumbers[0], 1.0f);
}

}  // namespace
}  // namespace qlx::host
