// What links save, read back, copy and take over.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "LinkTest.h"
#include "MCMemoryStream.h"
#include "MCToken.h"
#include "PinModifier.h"
#include "PlatformTextGuard.h"
#include "SilentReports.h"
#include "TestMemory.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

ObjectReference MakeReference(std::initializer_list<uint8> inBytes) {
  ObjectReference reference;
  for (const uint8 byte : inBytes) {
    reference.AddElem(byte);
  }
  return reference;
}

std::string WriteText(QLXModifier& inLink) {
  TMCMemoryStream stream;
  EXPECT_EQ(inLink.Write(&stream), MC_S_OK);
  return {reinterpret_cast<const char*>(stream.GetData()), static_cast<std::size_t>(stream.GetSize())};
}

MCResult ReadText(QLXModifier& ioLink, std::string inText, IExStreamIO::Fallback inFallback = nullptr,
                  void* inContext = nullptr) {
  TMCMemoryStream stream(inText.data(), static_cast<int32>(inText.size()), kStreamReadable);
  return ioLink.Read(&stream, inFallback, inContext);
}

void FillPrivate(QLXModifier& outLink) {
  outLink.SetTargetPath(TMCString255("self,amet,TRAN,ROTA,RotX"));
  outLink.SetControllerPath(TMCString255("aset,<say \"hi\">,amet"));
  outLink.SetControllerRef(MakeReference({5, 0, 0xAB, 255}));
  QLXCurves& curves = outLink.EditCurves();
  curves.fDecay = {false, true, false, true, false, 2.5f, -0.25f};
  curves.fGrowth = {true, false, true, false, true, 8, 0.125f};
  curves.fOscillator = {false, true, 0.5f, -2, 1e6f, -1e6f, 0.000001f};
}

constexpr const char* kGolden =
    "pset 1\r\n"
    "cpsl \"self,amet,TRAN,ROTA,RotX\"\r\n"
    "sobj \"0500abff\"\r\n"
    "bobj \"\"\r\n"
    "cpst 1\r\n"
    "spar \"aset,<say \\\"hi\\\">,amet\"\r\n"
    "decy {\r\ndlin 0\r\ndqua 1\r\ndcub 0\r\ndqut 1\r\ndcut 0\r\ndmax 2.5\r\ndmin -0.25\r\n}\r\n"
    "grow {\r\nglin 1\r\ngqua 0\r\ngcub 1\r\ngqut 0\r\ngcut 1\r\ngmax 8\r\ngmin 0.125\r\n}\r\n"
    "oscl {\r\nosin 0\r\nocos 1\r\nopho 0.5\r\nosca -2\r\nomax 1000000\r\nomin -1000000\r\nospd 0.000001\r\n}\r\n";

// A link on its own, without a scene.
class QLXTokens : public testing::Test {
 protected:
  static std::string InLevel(const std::string& inTokens) { return "{ " + inTokens + " }"; }

  TestMemory fMemory;
  TMCCountedPtr<QLXModifier> fLink = MCAdopt(new QLXModifier);
  TMCCountedPtr<QLXModifier> fOther = MCAdopt(new QLXModifier);
};

TEST_F(QLXTokens, WrittenTextIsFixedAndReadsBack) {
  const AssertionGuard silence;
  FillPrivate(*fLink);
  EXPECT_EQ(WriteText(*fLink), kGolden);
  EXPECT_EQ(ReadText(*fOther, InLevel(kGolden)), MC_S_OK);
  EXPECT_EQ(WriteText(*fOther), kGolden);
}

TEST_F(QLXTokens, NewLinkHasItsDefaults) {
  const AssertionGuard silence;
  EXPECT_EQ(WriteText(*fLink),
            "pset 0\r\ncpsl \"\"\r\nsobj \"\"\r\nbobj \"\"\r\ncpst 0\r\nspar \"\"\r\n"
            "decy {\r\ndlin 1\r\ndqua 0\r\ndcub 0\r\ndqut 0\r\ndcut 0\r\ndmax 1\r\ndmin 0\r\n}\r\n"
            "grow {\r\nglin 1\r\ngqua 0\r\ngcub 0\r\ngqut 0\r\ngcut 0\r\ngmax 1\r\ngmin 0\r\n}\r\n"
            "oscl {\r\nosin 1\r\nocos 0\r\nopho 0\r\nosca 1\r\nomax 1\r\nomin -1\r\nospd 1\r\n}\r\n");
  const QLXModifierData& data = fLink->EditData();
  EXPECT_TRUE(data.fCombineReplace && data.fModifyAdd && data.fPositionNone && data.fRotationNone && data.fAbsolute);
  EXPECT_TRUE(data.fName == "QLX");
  EXPECT_TRUE(data.fModifyUnit == -1 && data.fLimitUnit == -1);
}

TEST_F(QLXTokens, EveryCutIsAFailureAndNoHarm) {
  const SilentReports silence;
  const std::string text = InLevel(kGolden);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto link = MCAdopt(new QLXModifier);
    EXPECT_NE(ReadText(*link, text.substr(0, i)), MC_S_OK) << i;
  }
  EXPECT_NE(fLink->Read(nullptr, nullptr, nullptr), MC_S_OK);
  EXPECT_NE(fLink->Write(nullptr), MC_S_OK);
}

TEST_F(QLXTokens, EveryChangedByteEnds) {
  const SilentReports silence;
  const std::string text = InLevel(kGolden);
  for (std::size_t i = 0; i < text.size(); ++i) {
    for (const char byte : {'\0', '"', '{', '}', ' ', '-', '\xFF', '9', 'e'}) {
      std::string damaged = text;
      damaged[i] = byte;
      const auto link = MCAdopt(new QLXModifier);
      ReadText(*link, damaged);
      WriteText(*link);
    }
  }
}

TEST_F(QLXTokens, ReadingIsTolerant) {
  const AssertionGuard silence;
  PlatformTextGuard platform;
  platform.UseUtf8CodePage();  // a Western one asks for a table of the host's, and there is no host here
  const struct {
    const char* fLabel;
    const char* fText;
    std::function<bool(const QLXPrivateData&)> fHolds;
  } rows[] = {
      {"nothing", "", [](const QLXPrivateData& p) { return p.fTargetPathSet && p.fTargetPath == kRotX; }},
      {"no controller reference: it is empty", "pset 1",
       [](const QLXPrivateData& p) { return p.fControllerRef.GetElemCount() == 0; }},
      {"no source reference: it stays", "pset 1",
       [](const QLXPrivateData& p) { return p.fSourceRef.GetElemCount() == 1; }},
      {"a switch is anything but 0", "pset 0 cpst 7",
       [](const QLXPrivateData& p) { return !p.fTargetPathSet && p.fControllerPathSet; }},
      {"paths without quotes", "spar GlbX", [](const QLXPrivateData& p) { return p.fControllerPath == "GlbX"; }},
      {"the last of two wins", "spar \"a\" spar \"b\"",
       [](const QLXPrivateData& p) { return p.fControllerPath == "b"; }},
      {"unknown keys are skipped with their values", "what { x 1 y { z 2 } } spar \"a\"",
       [](const QLXPrivateData& p) { return p.fControllerPath == "a"; }},
      {"a block in another order", "decy { dmin 3 dmax 4 dcut 1 dqut 1 dcub 1 dqua 1 dlin 0 }",
       [](const QLXPrivateData& p) {
         const QLXDecay& d = p.fCurves.fDecay;
         return d.fDecayMin == 3 && d.fDecayMax == 4 && !d.fDecayLinear && d.fDecayCubicOnly && d.fDecayQuadratic;
       }},
      {"an unknown key of a block counts as one of seven", "grow { gmin 3 who? 9 a 1 b 1 c 1 d 1 e \"x\" }",
       [](const QLXPrivateData& p) { return p.fCurves.fGrowth.fGrowMin == 3 && p.fCurves.fGrowth.fGrowMax == 8; }},
  };
  for (const auto& row : rows) {
    const auto link = MCAdopt(new QLXModifier);
    FillPrivate(*link);
    link->SetSourceRef(MakeReference({9}));
    EXPECT_EQ(ReadText(*link, InLevel(row.fText)), MC_S_OK) << row.fLabel;
    EXPECT_TRUE(row.fHolds(link->GetPrivateData())) << row.fLabel;
  }
}

TEST_F(QLXTokens, BadTokensFailAndKeepWhatWasRead) {
  const SilentReports silence;
  const struct {
    const char* fLabel;
    std::string fText;
  } rows[] = {{"six tokens in a block", "decy { dlin 0 dqua 0 dcub 0 dqut 0 dcut 0 dmax 1 }"},
              {"eight", "oscl { osin 0 ocos 0 opho 0 osca 0 omax 0 omin 0 ospd 0 more 0 }"},
              {"a block without its group", "grow 1"},
              {"a number that is none", "decy { dmax soon dqua 0 dcub 0 dqut 0 dcut 0 dlin 1 dmin 0 }"},
              {"half a byte of a reference", "bobj \"123\""},
              {"a reference of other letters", "bobj \"12ag\""},
              {"capital letters", "bobj \"AB\""}};
  for (const auto& row : rows) {
    const auto link = MCAdopt(new QLXModifier);
    EXPECT_NE(ReadText(*link, InLevel("spar \"before\" " + row.fText + " spar \"after\"")), MC_S_OK) << row.fLabel;
    EXPECT_TRUE(link->GetPrivateData().fControllerPath == "before") << row.fLabel;
  }
  EXPECT_NE(ReadText(*fLink, kGolden), MC_S_OK) << "without a level";
}

TEST_F(QLXTokens, FallbackTakesWhatIsUnknown) {
  const AssertionGuard silence;
  std::vector<MCID> keys;
  const auto fallback = [](MCID key, TMCStream* stream, void* context) {
    static_cast<std::vector<MCID>*>(context)->push_back(key);
    MCToken::SkipToken(*stream);
  };
  EXPECT_EQ(ReadText(*fLink, InLevel("mine 1 pset 1 your { a 1 }"), fallback, &keys), MC_S_OK);
  EXPECT_EQ(keys, (std::vector<MCID>{"mine"_id, "your"_id}));
  EXPECT_TRUE(fLink->GetPrivateData().fTargetPathSet);
}

TEST_F(QLXTokens, LongPathsAreReadWholeAndCutAtTheirForm) {
  const AssertionGuard silence;
  const std::string path(1023, 'p');
  fLink->SetTargetPath(TMCString1023(path.c_str()));
  ObjectReference reference;
  reference.SetElemCount(5000);
  reference[4999] = 7;
  fLink->SetSourceRef(reference);
  EXPECT_EQ(ReadText(*fOther, InLevel(WriteText(*fLink))), MC_S_OK);
  const QLXPrivateData& data = fOther->GetPrivateData();
  EXPECT_TRUE(data.fTargetPath == path.c_str());
  EXPECT_TRUE(data.fSourceRef.GetElemCount() == 5000 && data.fSourceRef[4999] == 7) << "references have any length";
  EXPECT_EQ(ReadText(*fOther, InLevel("spar \"" + path + "more\"")), MC_S_OK);
  EXPECT_TRUE(data.fControllerPath == path.c_str());
}

TEST_F(QLXTokens, ResetForgetsTheChoicesAndKeepsThePaths) {
  const AssertionGuard silence;
  FillPrivate(*fLink);
  fLink->SetLinksLocked(true);
  EXPECT_EQ(fLink->ExtensionDataChanged(), 0);
  EXPECT_TRUE(fLink->GetPrivateData().fTargetPathSet) << "locked";
  fLink->SetLinksLocked(false);
  fLink->EditData().fModifyValue = 3;
  EXPECT_EQ(fLink->ExtensionDataChanged(), 0);
  EXPECT_FALSE(fLink->GetPrivateData().fTargetPathSet || fLink->GetPrivateData().fControllerPathSet);
  EXPECT_TRUE(fLink->GetPrivateData().fTargetPath == kRotX);
  EXPECT_EQ(fLink->EditData().fModifyValue, 3);
}

TEST_F(QLXTokens, CloneHasEverythingAndReleasesWhatStoodInItsPlace) {
  const AssertionGuard silence;
  FillPrivate(*fLink);
  fLink->EditData().fModifyValue = 3;
  fLink->EditData().fSourceName = "Arm";
  TMCCountedPtr<IExDataExchanger> copy = MCQuery<IExDataExchanger>(fOther);
  fLink->Clone(copy.WriteInto(), nullptr);
  IExDataExchanger* place = MCQuery<IExDataExchanger>(fOther).Detach();
  fLink->Clone(&place, nullptr);
  for (const auto& each : {copy, MCAdopt(place)}) {
    const auto clone = MCQuery<QLXModifier>(each);
    ASSERT_TRUE(clone && clone != fOther);
    EXPECT_EQ(WriteText(*clone), kGolden);
    EXPECT_TRUE(clone->EditData().fModifyValue == 3 && clone->EditData().fSourceName == "Arm");
  }
  EXPECT_EQ(fOther->AddRef(), 2U);
  fOther->Release();
}

TEST_F(QLXTokens, CloneIsWholeOrThereIsNone) {
  const SilentReports silence;
  FillPrivate(*fLink);
  auto& memory = static_cast<TestMemory&>(*gMemoryUtilities);
  bool isWhole = false;
  for (int requests = 0; !isWhole; ++requests) {
    TMCCountedPtr<IExDataExchanger> copy;
    memory.RefuseAfter(requests);
    const Thrown thrown = ThrownBy([&] { fLink->Clone(copy.WriteInto(), nullptr); });
    isWhole = !memory.HasRefused();
    memory.RefuseNothing();
    EXPECT_EQ(thrown.fCode, copy ? MC_S_OK : MC_E_OUTOFMEMORY) << requests;
    EXPECT_TRUE(!copy || WriteText(*MCQuery<QLXModifier>(copy)) == kGolden) << requests;
    EXPECT_TRUE(!isWhole || copy);
  }
}

TEST_F(QLXTokens, CopyGoesToLinksAlone) {
  const AssertionGuard silence;
  FillPrivate(*fLink);
  fLink->EditData().fModifyValue = 3;
  EXPECT_EQ(fLink->CopyDataTo(fOther.Get()), MC_S_OK);
  EXPECT_EQ(WriteText(*fOther), kGolden);
  EXPECT_EQ(fOther->EditData().fModifyValue, 0) << "not the public block";
  const auto pin = MCAdopt(new PinModifier);
  EXPECT_EQ(fLink->CopyDataTo(pin.Get()), MC_S_OK);
  EXPECT_EQ(fLink->CopyDataTo(nullptr), MC_S_OK);
  EXPECT_EQ(fLink->CopyDataTo(fLink.Get()), MC_S_OK);
  EXPECT_EQ(WriteText(*fLink), kGolden);
}

TEST_F(QLXTokens, LinkOfAChainIsTakenOver) {
  const AssertionGuard silence;
  QLXChainLink chain;
  EXPECT_TRUE(chain.fData.fMirrorTransform) << "a chain is of object mode";
  chain.fData.fRotationAll = true;
  chain.fCurves.fDecay.fDecayMax = 4;
  chain.GetControlElementName() = "Bone";
  for (const uint32 id : {7U, 0x01020304U}) {
    chain.fControlElementPath.AddElem(id);
    chain.fControllerPath.AddElem(id + 1);
  }
  chain.fTargetProperty = "GlbX";
  fLink->SetChainLink(chain);
  const QLXPrivateData& data = fLink->GetPrivateData();
  EXPECT_TRUE(fLink->EditData().fRotationAll && fLink->EditData().fMirrorTransform);
  EXPECT_TRUE(fLink->EditData().fSourceName == "Bone");
  EXPECT_EQ(data.fCurves.fDecay.fDecayMax, 4);
  EXPECT_EQ(data.fSourceRef.GetElemCount(), 0U) << "not said to be there";
  EXPECT_EQ(data.fControllerRef.GetElemCount(), 4U);
  EXPECT_EQ(data.fControllerRef[0], 5);
  EXPECT_TRUE(data.fTargetPath == "GlbX" && !data.fTargetPathSet);
  chain.fHasControlElement = true;
  fLink->SetChainLink(chain);
  EXPECT_EQ(data.fSourceRef.GetElemCount(), 0U) << "not used";
  chain.fUseControlElement = true;
  fLink->SetChainLink(chain);
  ASSERT_EQ(data.fSourceRef.GetElemCount(), 4U);
  EXPECT_EQ(data.fSourceRef[0], 4);
  EXPECT_EQ(data.fSourceRef[3], 1);
}

}  // namespace
}  // namespace qlx::test
