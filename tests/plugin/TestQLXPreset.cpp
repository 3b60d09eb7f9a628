// Presets: settings of links as files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "LinkServices.h"
#include "LinkTest.h"

namespace qlx::test {
namespace {

// A link with a panel, in a host whose person chooses files of this test.
class QLXPreset : public testing::Test {
 protected:
  ~QLXPreset() override {
    std::filesystem::remove(FileOf(""));
    std::filesystem::remove(FileOf("2"));
  }

  static std::string FileOf(const char* inSuffix) {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    return testing::TempDir() + "qlx_" + test->name() + inSuffix + ".txt";
  }
  MCResult Press(MCID inButton) {
    FakeControl button(inButton);
    return fLink->HandleEvent(5, button.AsPart(), nullptr);
  }
  std::vector<std::string> ReadLines(const std::string& inFile) {
    std::ifstream file(inFile, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      EXPECT_TRUE(line.ends_with('\r'));
      line.pop_back();
      lines.push_back(line);
    }
    return lines;
  }
  static void WriteLines(const std::string& inFile, const std::vector<std::string>& inLines) {
    std::ofstream file(inFile, std::ios::binary);
    for (const std::string& line : inLines) {
      file << line << "\r\n";
    }
  }

  TestMemory fMemory;
  LinkServices fServices;
  TMCCountedPtr<QLXModifier> fLink = MCAdopt(new QLXModifier);
};

TEST_F(QLXPreset, HoldsEverythingButRangeAndReferences) {
  const AssertionGuard silence;
  fServices.fFiles.fChoice = FileOf("");
  QLXModifierData& data = fLink->EditData();
  data.fTargetLabel = "a \"label\" \\ two\r\nlines";
  data.fModifyValue = 0.1f;
  data.fStartFrame = -7;
  data.fName = "Mine";
  data.fFindSourceByName = true;
  data.fRangeOn = true;
  data.fRangeMax = 3;
  fLink->SetTargetPath(TMCString255("GlbX"));
  fLink->EditCurves().fOscillator.fOscillatorSpeed = 1.0f / 3;
  ObjectReference reference;
  reference.AddElem(9);
  fLink->SetControllerRef(reference);
  EXPECT_EQ(Press("SAVE"_id), MC_S_OK);
  const auto lines = ReadLines(FileOf(""));

  fLink = MCAdopt(new QLXModifier);
  fLink->EditData().fRangeMin = -2;
  EXPECT_EQ(Press("LOAD"_id), MC_S_OK);
  const QLXModifierData& loaded = fLink->EditData();
  EXPECT_TRUE(loaded.fTargetLabel == "a \"label\" \\ two\r\nlines");
  EXPECT_EQ(loaded.fModifyValue, 0.1f);
  EXPECT_EQ(loaded.fStartFrame, -7);
  EXPECT_TRUE(loaded.fName == "Mine" && loaded.fFindSourceByName);
  EXPECT_TRUE(!loaded.fRangeOn && loaded.fRangeMin == -2 && loaded.fRangeMax == 0) << "stays as it was";
  EXPECT_TRUE(fLink->GetPrivateData().fTargetPathSet && fLink->GetPrivateData().fTargetPath == "GlbX");
  EXPECT_EQ(fLink->GetPrivateData().fControllerRef.GetElemCount(), 0U);
  EXPECT_EQ(fLink->EditCurves().fOscillator.fOscillatorSpeed, 1.0f / 3);
  EXPECT_EQ(fServices.fAlerts.fMessages.size(), 0U);

  EXPECT_EQ(Press("SAVF"_id), MC_S_OK);
  EXPECT_EQ(ReadLines(FileOf("")), lines) << "every field that was written is read";
  EXPECT_EQ(fServices.fFiles.fAsked, 2);
}

TEST_F(QLXPreset, LinesHaveTheirOrder) {
  const AssertionGuard silence;
  fServices.fFiles.fChoice = FileOf("");
  fLink->SetControllerPath(TMCString255("GlbZ"));
  fLink->EditData().fModifyValue = std::numeric_limits<real32>::infinity();
  Press("SAVE"_id);
  const auto lines = ReadLines(FileOf(""));
  ASSERT_EQ(lines.size(), 88U);
  const std::vector<std::string> start{"\"\"", "\"\"", "\"\"", "0", "0", "1", "0", "0", "0",
                                       "0",    "0",    "1",    "0", "0", "0", "0", "0"};
  EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + 17), start) << "what is not finite is 0";
  const std::vector<std::string> end{"0", "\"\"", "1", "\"GlbZ\"", "1", "0", "0", "0", "0", "1", "0",  "1", "0",
                                     "0", "0",    "0", "1",        "0", "1", "0", "0", "1", "1", "-1", "1"};
  EXPECT_EQ(std::vector<std::string>(lines.end() - 25, lines.end()), end);
}

TEST_F(QLXPreset, SaveAsksAndSaveAgainDoesNot) {
  const AssertionGuard silence;
  Press("SAVF"_id);
  EXPECT_EQ(fServices.fFiles.fAsked, 1) << "there is no file yet, and the person cancels";
  fServices.fFiles.fChoice = FileOf("");
  Press("SAVF"_id);
  Press("SAVF"_id);
  EXPECT_EQ(fServices.fFiles.fAsked, 2);
  fServices.fFiles.fChoice = FileOf("2");
  Press("SAVE"_id);
  EXPECT_EQ(fServices.fFiles.fAsked, 3);
  std::filesystem::remove(FileOf("2"));
  fServices.fFiles.fChoice.clear();
  Press("SAVE"_id);
  EXPECT_FALSE(std::filesystem::exists(FileOf("2"))) << "cancelled";
  EXPECT_EQ(fLink->HandleEvent("SAVF"_id, nullptr, nullptr), MC_S_OK);
  EXPECT_TRUE(std::filesystem::exists(FileOf("2"))) << "the file that was chosen last, by the message itself";
}

TEST_F(QLXPreset, DamageIsToldWithItsLineAndChangesNothing) {
  fServices.fFiles.fChoice = FileOf("");
  fLink->EditData().fModifyValue = 4;
  Press("SAVE"_id);
  const auto good = ReadLines(FileOf(""));
  fLink->EditData().fModifyValue = 5;
  const SilentReports silence;
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::vector<std::string> lines = good;
    lines[i] = good[i].starts_with('"') ? "12" : "\"12\"";
    WriteLines(FileOf(""), lines);
    fServices.fAlerts.fMessages.clear();
    EXPECT_EQ(Press("LOAD"_id), MC_S_OK);
    ASSERT_EQ(fServices.fAlerts.fMessages.size(), 1U) << i;
    EXPECT_EQ(fServices.fAlerts.fMessages[0],
              FileOf("") + ", line " + std::to_string(i + 1) + ": the preset is damaged");
    EXPECT_EQ(fLink->EditData().fModifyValue, 5) << i;
  }
}

TEST_F(QLXPreset, EveryCutIsTold) {
  fServices.fFiles.fChoice = FileOf("");
  Press("SAVE"_id);
  std::string text;
  for (const std::string& line : ReadLines(FileOf(""))) {
    text += line + "\r\n";
  }
  const SilentReports silence;
  for (std::size_t i = 0; i + 3 < text.size(); ++i) {  // the last number needs no line end
    std::ofstream(FileOf(""), std::ios::binary) << text.substr(0, i);
    fServices.fAlerts.fMessages.clear();
    Press("LOAD"_id);
    EXPECT_EQ(fServices.fAlerts.fMessages.size(), 1U) << i;
  }
}

TEST_F(QLXPreset, FileThatCannotBeUsedIsTold) {
  const SilentReports silence;
  fServices.fFiles.fChoice = testing::TempDir() + "no such folder/preset.txt";
  Press("LOAD"_id);
  Press("SAVE"_id);
  ASSERT_EQ(fServices.fAlerts.fMessages.size(), 2U);
  EXPECT_EQ(fServices.fAlerts.fMessages[0], fServices.fFiles.fChoice + ": the preset cannot be opened");
  EXPECT_EQ(fServices.fAlerts.fMessages[1], fServices.fFiles.fChoice + ": the preset cannot be written");
  Press("SAVF"_id);
  EXPECT_EQ(fServices.fFiles.fAsked, 3) << "a file that could not be used is not chosen";
}

}  // namespace
}  // namespace qlx::test
