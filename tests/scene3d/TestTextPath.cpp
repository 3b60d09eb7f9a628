#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AssertionGuard.h"
#include "FakeAttributes.h"
#include "MCException.h"
#include "TestMemory.h"
#include "TextPathRows.h"

namespace qlx::test {
namespace {

std::string Text(MCID inKey) {
  return {static_cast<char>(inKey >> 24), static_cast<char>(inKey >> 16), static_cast<char>(inKey >> 8),
          static_cast<char>(inKey)};
}

TEST(TextPathIndexKey, IsMadeOfWholeCounts) {
  const struct {
    uint32 position;
    const char* key;
    int32 parsed;  // what the key reads back as
  } rows[] = {{0, "0000", 0},   {9, "0009", 9},     {10, "0019", 19},     {12, "0011", 11},
              {99, "0099", 99}, {100, "0110", 110}, {1000, "1101", 1101}, {4294967295u, "4294", 4294}};
  for (const auto& row : rows) {
    EXPECT_EQ(Text(MakeIndexKey(row.position)), row.key) << row.position;
    EXPECT_EQ(ParseIndexKey(row.key), row.parsed) << row.key;
  }
}

TEST(TextPathIndexKey, ReadsWhateverStandsThere) {
  EXPECT_EQ(ParseIndexKey("0019,more"), 19);
  EXPECT_EQ(ParseIndexKey("\xFF\xFF\xFF\xFF"), 255 * 1111 - 53328);
  EXPECT_EQ(ParseIndexKey(""), -53328);  // NULs after the end
}

TEST(TextPath, KnowsItsFormsByTheirPrefix) {
  const struct {
    const char* text;
    bool isMorph, isShader, isModifier;
  } rows[] = {{"RMPH,0,1", true, false, false},    {"RMP", false, false, false},
              {"shdr,0000", false, true, false},   {"self,modi,0000", false, false, true},
              {"self,mod", false, false, false},   {"", false, false, false},
              {"aset,<RMPH>", false, false, false}};
  for (const auto& row : rows) {
    const TMCString255 text(row.text);
    EXPECT_EQ(IsMorphPath(text), row.isMorph) << row.text;
    EXPECT_EQ(IsShaderPath(text), row.isShader) << row.text;
    EXPECT_EQ(IsModifierPath(text), row.isModifier) << row.text;
  }
}

// amet { TRAN { "XYZ " }, empty group, plain, hidden, small id, none, none }
struct FakeTree {
  FakeParam fLeaf{"XYZ "_id, "qfix"_id};
  FakeHolder fTran{{&fLeaf}};
  FakeParam fTranParam{"TRAN"_id, 0, &fTran};
  FakeHolder fNothing{{}};
  FakeParam fEmpty{"grou"_id, 0, &fNothing};
  FakeParam fSecond{"grou"_id, "bool"_id};  // found behind the empty group of its name
  FakeParam fHidden{"HOTP"_id, "vec3"_id};
  FakeParam fSmall{5, "re32"_id};
  FakeParam fNameless{0, "colo"_id};
  FakeParam fWide{"VEC2"_id, "VEC2"_id};
  FakeHolder fAmet{{&fTranParam, &fEmpty, &fSecond, &fHidden, &fSmall, &fNameless, &fWide}};
  FakeParam fAmetParam{"amet"_id, 0, &fAmet};
  FakeHolder fTop{{&fAmetParam}};
};

class TextPathTest : public ::testing::Test {
 protected:
  ParamInfo* Find(const char* inText) {
    return ResolveTextPath(static_cast<TimeBasedData*>(&fTree.fTop), TMCString1023(inText)).Get();
  }

  TestMemory fMemory;
  FakeTree fTree;
};

TEST_F(TextPathTest, FindsParametersByTheirKeys) {
  const struct {
    const char* label;
    const char* text;
    ParamInfo* expected;
  } rows[] = {
      {"a blank belongs to its key", "self,amet,TRAN,XYZ ", &fTree.fLeaf},
      {"what follows a plain parameter is not read", "self,amet,TRAN,XYZ ,redV,or anything", &fTree.fLeaf},
      {"a key cut short", "self,amet,TRAN,XYZ", nullptr},
      {"a path that ends at a group", "self,amet,TRAN", nullptr},
      {"an empty group is passed over", "self,amet,grou", &fTree.fSecond},
      {"a hidden parameter", "self,amet,HOTP", nullptr},
      {"a position for what has no id", "self,amet,0005", &fTree.fNameless},
      {"no position for a small id", "self,amet,0004", nullptr},
      {"the small id itself", "self,amet,\0\0\0\5", nullptr},
      {"nothing after the form", "self", nullptr},
      {"a form that does not exist", "else,amet,TRAN,XYZ ", nullptr},
      {"an empty text", "", nullptr},
      {"no instance", "shdr,0000,colo", nullptr},
      {"no morphs", "RMPH,0,0", nullptr},
      {"a morph without a group's comma", "RMPH,0", nullptr},
      {"a morph of no number", "RMPH,0,", nullptr},
      {"no tree", "aset,<Arm>,amet,TRAN,XYZ ", nullptr},
      {"a name that does not end", "aset,<Arm", nullptr},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Find(row.text), row.expected) << row.label;
  }
  EXPECT_EQ(ResolveTextPath(nullptr, TMCString1023("self,amet")).Get(), nullptr);
}

TEST_F(TextPathTest, ThrowsWhereAnObjectRefusesItsAttributes) {
  AssertionGuard guard({"An exception is being thrown"});
  EXPECT_THROW(static_cast<void>(ResolveTextPath(static_cast<ParamInfo*>(&fTree.fLeaf), TMCString1023("self,amet"))),
               TMCException);
}

TEST_F(TextPathTest, EndsAtTheLongestPath) {
  TMCString1023 deep("self");
  while (deep.ByteLength() + 5 <= deep.MaxLength()) {
    deep += ",TRAN";
  }
  FakeParam self("TRAN"_id, 0);
  FakeHolder loop({&self});
  self.fGroup = &loop;  // a group in itself
  EXPECT_EQ(ResolveTextPath(static_cast<TimeBasedData*>(&loop), deep).Get(), nullptr);
}

class RowList final : public TextPathVisitor {
 public:
  void VisitRow(const TextPathRow& inRow) override {
    static constexpr const char* kKinds[] = {"group", "param", "part"};
    fRows.push_back(std::string(inRow.fDepth, ' ') + kKinds[static_cast<int>(inRow.fKind)] + " " + inRow.fPath.CStr());
  }
  std::vector<std::string> fRows;
};

TEST_F(TextPathTest, BuildsTheRowsOfATree) {
  RowList all;
  BuildSelfRows(static_cast<TimeBasedData*>(&fTree.fTop), TextPathFilter::kAll, all);
  const std::vector<std::string> expected{
      "group self",
      " group self,amet",
      "  group self,amet,TRAN",
      "   param self,amet,TRAN,XYZ ",
      "  param self,amet,grou",
      "  param self,amet,grou",
      "  param self,amet,0004",  // which the resolver does not find: it has an id
      "  param self,amet,0005",
      "   part self,amet,0005,redV",
      "   part self,amet,0005,grnV",
      "   part self,amet,0005,bluV",
      "   part self,amet,0005,alpV",
      "  param self,amet,VEC2",
      "   part self,amet,VEC2,vecX",
      "   part self,amet,VEC2,vecY",
  };
  EXPECT_EQ(all.fRows, expected);

  RowList editable;
  BuildParamRows(fTree.fAmet, TMCString15("P"), 0, TextPathFilter::kEditable, editable);
  EXPECT_EQ(editable.fRows, (std::vector<std::string>{"group P,TRAN", " param P,TRAN,XYZ ", "param P,grou",
                                                      "param P,0004", "param P,0005", " part P,0005,redV",
                                                      " part P,0005,grnV", " part P,0005,bluV", " part P,0005,alpV"}));
}

TEST_F(TextPathTest, LeavesOutWhatIsDeeperThanAPath) {
  FakeParam self("TRAN"_id, 0);
  FakeHolder loop({&self});
  self.fGroup = &loop;
  RowList rows;
  BuildSelfRows(static_cast<TimeBasedData*>(&loop), TextPathFilter::kAll, rows);
  EXPECT_EQ(rows.fRows.size(), 1 + (1023 - 4) / 5u);
}

}  // namespace
}  // namespace qlx::test
