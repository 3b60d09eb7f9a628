// The token text of a component's private data, with a component that the test makes.
#include <gtest/gtest.h>

#include "MCException.h"
#include "MCToken.h"
#include "model/HostObject.h"
#include "services/Host.h"
#include "services/PrivateText.h"

namespace qlx::host {
namespace {

// Keeps two numbers: "numb 3", and "more 4" in a group.
class NumberKeeper final : public HostObject<IExStreamIO> {
 public:
  MCResult MC_CALL Read(TMCStream* inStream, Fallback inFallback, void* inContext) override {
    TMCStream& stream = *inStream;
    MCToken::ReadBegin(stream);
    while (!MCToken::IsAtEnd(stream)) {
      const MCID key = MCToken::ReadTokenId(stream);
      if (key == "numb"_id) {
        fNumber = MCToken::ReadInt32(stream);
      } else if (key == "grup"_id) {
        MCToken::ReadBegin(stream);
        MCToken::ReadTokenId(stream);
        fMore = MCToken::ReadInt32(stream);
        MCToken::ReadEnd(stream);
      } else {
        inFallback(key, inStream, inContext);
      }
      if (stream.fail()) {
        return MC_E_BADTOKEN;
      }
    }
    MCToken::ReadEnd(stream);
    return MC_S_OK;
  }
  MCResult MC_CALL Write(TMCStream* inStream) override {
    MCToken::WriteInt32(*inStream, "numb"_id, fNumber);
    MCToken::BeginToken(*inStream, "grup"_id);
    MCToken::WriteInt32(*inStream, "more"_id, fMore);
    MCToken::EndToken(*inStream);
    return fWriteResult;
  }
  MCResult MC_CALL StreamState(MCWord) override { return MC_S_OK; }

  int32 fNumber = 0;
  int32 fMore = 0;
  MCResult fWriteResult = MC_S_OK;
};

// Streams take their memory from a host.
class PrivateText : public testing::Test {
 private:
  Diagnostics fDiagnostics;
  Host fHost{fDiagnostics};
};

TEST_F(PrivateText, ComesBackAsItWasWritten) {
  NumberKeeper keeper;
  keeper.fNumber = 3;
  keeper.fMore = -4;
  MCResult result = MC_E_NOTVALID;
  const auto text = WritePrivateText(keeper, result);
  ASSERT_TRUE(text);
  EXPECT_EQ(result, MC_S_OK);
  EXPECT_EQ(text->find("numb 3"), 0U) << "no level around it: " << *text;
  NumberKeeper other;
  EXPECT_EQ(ReadPrivateText(other, *text), std::nullopt);
  EXPECT_EQ(other.fNumber, 3);
  EXPECT_EQ(other.fMore, -4);
  keeper.fWriteResult = MC_E_NOTVALID;
  EXPECT_EQ(WritePrivateText(keeper, result), std::nullopt);
  EXPECT_EQ(result, MC_E_NOTVALID);
}

TEST_F(PrivateText, DamageIsToldWithItsLine) {
  const struct {
    const char* fText;
    const char* fProblem;
  } kRows[] = {
      {"", nullptr},
      {" \r\n", nullptr},
      {"numb 3", nullptr},
      {"numb 3\r\ngrup {\r\nmore 4\r\n", "line 2, byte 13: this { is never closed"},
      {"numb 3\nlate 4\n", "line 2, byte 11: the class has no token \"late\""},
      {"numb 3\nlate {\n1\n}\nnumb 5\n", "line 2, byte 11: the class has no token \"late\""},
      {"numb 3\ngrup 4\nnumb 5\n", "line 2, byte 13: the class cannot read this"},
  };
  for (const auto& row : kRows) {
    NumberKeeper keeper;
    const auto problem = ReadPrivateText(keeper, row.fText);
    ASSERT_EQ(problem.has_value(), row.fProblem != nullptr) << row.fText << ": " << problem.value_or("");
    if (problem) {
      EXPECT_NE(problem->find(row.fProblem), std::string::npos) << row.fText << " gave: " << *problem;
      EXPECT_EQ(problem->find('\n'), std::string::npos) << row.fText;
    }
  }
}

TEST_F(PrivateText, CutAnywhereEndsWithAnAnswer) {
  const std::string text = "numb 3\r\ngrup {\r\nmore 4\r\n}\r\n# \"note\r\nnumb 5\r\n";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    NumberKeeper keeper;
    const auto problem = ReadPrivateText(keeper, text.substr(0, length));
    EXPECT_TRUE(!problem || problem->find("line ") != std::string::npos) << length << ": " << *problem;
  }
}

}  // namespace
}  // namespace qlx::host
