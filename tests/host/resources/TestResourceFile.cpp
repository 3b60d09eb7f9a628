#include <gtest/gtest.h>

#include <sstream>

#include "MCResourceFile.h"
#include "ResourceTexts.h"
#include "TestMemory.h"
#include "resources/ResourceCodec.h"
#include "resources/ResourceReading.h"

namespace qlx::host {
namespace {

// A file in the folder for such, gone with this.
class TestFile {
 public:
  explicit TestFile(const char* inName)
      : fPath(
            PathText(std::filesystem::temp_directory_path() /
                     (std::string("qlx-") + testing::UnitTest::GetInstance()->current_test_info()->name() + inName))) {}
  ~TestFile() { std::filesystem::remove(PathOfText(fPath)); }
  TestFile(const TestFile&) = delete;
  TestFile& operator=(const TestFile&) = delete;

  const std::string& GetPath() const { return fPath; }
  std::string Read() const {
    std::ifstream stream(PathOfText(fPath), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  void Write(const std::string& inText) const { std::ofstream(PathOfText(fPath), std::ios::binary) << inText; }

 private:
  std::string fPath;
};

ResourceContents ContentsOf(const std::string& inPath, std::vector<std::string>& outProblems) {
  MCResourceFile file;
  EXPECT_EQ(file.Open(TMCDynamicString(inPath.c_str())), MC_S_OK) << file.GetProblem().CStr();
  ResourceContents contents;
  for (const MCID type : {kExtensionType, kParameterMapType, kPanelType, kDialogType}) {
    ReadResources(file, type, contents, outProblems);
  }
  return contents;
}

TEST(ResourceFile, HoldsWhatTheTextsSay) {
  const test::TestMemory memory;
  const TestFile file(".rsrc");
  const Source source = ShippedSource();
  WriteResourceFile(file.GetPath(), CompileSource(source));
  std::vector<std::string> problems;
  const ResourceContents contents = ContentsOf(file.GetPath(), problems);
  EXPECT_EQ(problems, std::vector<std::string>());
  ASSERT_EQ(contents.fExtensions.size(), source.fExtensions.size());
  for (std::size_t i = 0; i < source.fExtensions.size(); ++i) {
    EXPECT_EQ(contents.fExtensions[i], source.fExtensions[i].fRecord);
  }
  ASSERT_EQ(contents.fMaps.size(), source.fMaps.size());
  for (std::size_t i = 0; i < source.fMaps.size(); ++i) {
    EXPECT_EQ(contents.fMaps[i], source.fMaps[i].fMap);
  }
  ASSERT_EQ(contents.fParts.size(), source.fParts.size());
  for (const auto& part : contents.fParts) {
    const PartDescription* const found = FindPart(source, part->fKind, part->fResourceId);
    ASSERT_NE(found, nullptr) << part->fResourceId;
    EXPECT_EQ(*part, *found);
  }
}

TEST(ResourceFile, EqualTextsGiveEqualFiles) {
  const test::TestMemory memory;
  const TestFile first(".1");
  const TestFile second(".2");
  WriteResourceFile(first.GetPath(), CompileSource(ShippedSource()));
  second.Write("something that is replaced");
  WriteResourceFile(second.GetPath(), CompileSource(ShippedSource()));
  EXPECT_EQ(first.Read(), second.Read());
  EXPECT_FALSE(std::filesystem::exists(PathOfText(second.GetPath() + ".new")));
}

TEST(ResourceCompiler, AnswersWithACodeAndSaysWhatIsWrong) {
  const test::TestMemory memory;
  const TestFile good(".good");
  const TestFile bad(".bad");
  const TestFile out(".out");
  good.Write("panel 1 \"P\" { group }");
  bad.Write("panel 1 \"P\"\n(");
  const struct {
    const char* fLabel;
    std::vector<std::string> fArguments;
    int fCode;
    std::string fErrors;  // the start of what is said
  } kRows[] = {
      {"nothing", {}, 2, "usage: qlx_rc "},
      {"no source", {"-o", out.GetPath()}, 2, "usage: "},
      {"no file", {good.GetPath(), "-o"}, 2, "usage: "},
      {"an unknown option", {"-x", good.GetPath()}, 2, "usage: "},
      {"a missing source", {"nowhere.res"}, 1, "nowhere.res: cannot be read\n"},
      {"a bad source", {"-o", out.GetPath(), bad.GetPath()}, 1, bad.GetPath() + ":2:1: no word, id, text or number"},
      {"no place", {"-o", "no/such/folder/a", good.GetPath()}, 1, "no/such/folder/a.new: cannot be written\n"},
      {"a good one", {"-o", out.GetPath(), good.GetPath()}, 0, ""},
  };
  for (const auto& row : kRows) {
    EXPECT_FALSE(std::filesystem::exists(PathOfText(out.GetPath()))) << row.fLabel;
    std::ostringstream errors;
    EXPECT_EQ(RunCompiler(row.fArguments, errors), row.fCode) << row.fLabel;
    EXPECT_EQ(errors.str().substr(0, row.fErrors.size()), row.fErrors) << row.fLabel;
    EXPECT_EQ(errors.str().empty(), row.fCode == 0) << row.fLabel;
  }
  EXPECT_TRUE(std::filesystem::exists(PathOfText(out.GetPath())));
}

}  // namespace
}  // namespace qlx::host
