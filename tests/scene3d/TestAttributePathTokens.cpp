#include <gtest/gtest.h>

#include <string>

#include "../MCCore/TokenText.h"
#include "AttributePath.h"

namespace qlx::test {
namespace {

AttributePathNode Node(int8 inKind, int32 inIndex, const char* inName = "") {
  AttributePathNode node;
  node.fType = inKind;
  node.fIndex = inIndex;
  node.fName = inName;
  return node;
}

class AttributePathTokens : public ::testing::Test {
 protected:
  // The code of the failure, 0 for none; reports are not looked at.
  static MCResult Read(const std::string& inText, AttributePath& outPath) {
    auto stream = Reading(inText);
    return CodeOf([&] { outPath.ReadFrom(stream); }, nullptr);
  }

  TestMemory fMemory;
};

TEST_F(AttributePathTokens, AreWrittenUnderAKeyOrNone) {
  AttributePath path;
  path.GetNodes().AddElem(Node(kTreeByNameNear, 3, "Arm \"left\" \xC3\xA9"));
  path.GetNodes().AddElem(Node(kParamInfo, static_cast<int32>("amet"_id)));
  const std::string body =
      "{\r\nvers 2\r\npath {\r\n"
      "{\r\ntype 6\r\ninde 3\r\nid   3\r\nname \"Arm \\\"left\\\" \xC3\xA9\"\r\n}\r\n"
      "{\r\ntype 4\r\ninde 1634559348\r\nid   1634559348\r\nname \"\"\r\n}\r\n"
      "}\r\n}\r\n";
  EXPECT_EQ(WrittenBy([&](TMCStream& stream) { path.WriteTo(stream, 0); }), body);
  EXPECT_EQ(WrittenBy([&](TMCStream& stream) { path.WriteTo(stream, "targ"_id); }), "targ " + body);

  AttributePath read;
  EXPECT_EQ(Read(body, read), MC_S_OK);
  EXPECT_TRUE(read == path);
  EXPECT_EQ(read.GetVersion(), 2);
}

TEST_F(AttributePathTokens, AreReadInAnyOrderAndFromOldData) {
  const struct {
    const char* label;
    const char* text;
    int32 version;
    std::vector<AttributePathNode> nodes;
  } rows[] = {
      {"nothing is version 0", "{ }", 0, {}},
      {"a version of the future", "{ vers 7 }", 7, {}},
      {"what is not known is skipped",
       "{ more { a { b } } path { { what 5 type 2 inde 9 } } vers 1 }",
       1,
       {Node(kTreeByID, 9)}},
      {"the later index wins",
       "{ path { { type 4 inde 1 id   2 } { type 4 id   3 inde 4 } } }",
       0,
       {Node(kParamInfo, 2), Node(kParamInfo, 4)}},
      {"a kind that does not fit is none",
       "{ path { { type 260 } { type -129 } { type 127 } } }",
       0,
       {Node(kNoNode, 0), Node(kNoNode, 0), Node(127, 0)}},
      {"a second list replaces the first",
       "{ path { { type 4 } { type 4 } } path { { type 2 } } }",
       0,
       {Node(kTreeByID, 0)}},
      {"a negative kind and index", "{ path { { type -1 inde -2147483648 } } }", 0, {Node(kNoNode, -2147483647 - 1)}},
  };
  for (const auto& row : rows) {
    AttributePath path;
    EXPECT_EQ(Read(row.text, path), MC_S_OK) << row.label;
    EXPECT_EQ(path.GetVersion(), row.version) << row.label;
    ASSERT_EQ(path.GetNodes().GetElemCount(), row.nodes.size()) << row.label;
    for (uint32 i = 0; i < path.GetNodes().GetElemCount(); ++i) {
      EXPECT_EQ(path.GetNodes()[i].fType, row.nodes[i].fType) << row.label;
      EXPECT_EQ(path.GetNodes()[i].fIndex, row.nodes[i].fIndex) << row.label;
    }
  }
}

TEST_F(AttributePathTokens, OfADamagedFileLeaveThePathAsItWas) {
  const struct {
    const char* text;
    MCResult code;
  } rows[] = {
      {"", MC_E_EOF},
      {"vers 2", MC_E_BADTOKEN},
      {"{ vers 2", MC_E_EOF},
      {"{ vers x }", MC_E_BADTOKEN},
      {"{ path 5 }", MC_E_BADTOKEN},
      {"{ path { type 4 } }", MC_E_BADTOKEN},
      {"{ path { { type 4 inde } } }", MC_E_BADTOKEN},
      {"{ path { { name \"never closed } } }", MC_E_EOF},
      {"{ path { { type 4 }", MC_E_EOF},
      {"{ , }", MC_S_OK},  // reported, and skipped
  };
  for (const auto& row : rows) {
    AttributePath path;
    path.GetNodes().AddElem(Node(kTreeByID, 5));
    EXPECT_EQ(Read(row.text, path), row.code) << row.text;
    EXPECT_EQ(path.GetNodes().GetElemCount(), row.code ? 1u : 0u) << row.text;
  }
}

TEST_F(AttributePathTokens, OfAMillionNodesAreRead) {
  std::string text = "{ path {";
  for (int i = 0; i < 1000000; ++i) {
    text += "{}";
  }
  AttributePath path;
  EXPECT_EQ(Read(text + "} }", path), MC_S_OK);
  EXPECT_EQ(path.GetNodes().GetElemCount(), 1000000u);
}

}  // namespace
}  // namespace qlx::test
