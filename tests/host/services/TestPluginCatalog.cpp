#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "MCFilePath.h"
#include "MCResourceFile.h"
#include "TestMemory.h"
#include "model/Diagnostics.h"
#include "resources/ResourceCodec.h"
#include "services/Host.h"

namespace qlx::host {
namespace {

// A folder with a copy of the resource file that was built, for a library that need not be there.
class CatalogFolder {
 public:
  CatalogFolder()
      : fFolder(std::filesystem::temp_directory_path() /
                (std::string("qlx-catalog-") + testing::UnitTest::GetInstance()->current_test_info()->name() +
                 std::to_string(sizeof(void*)))) {
    std::filesystem::remove_all(fFolder);
    std::filesystem::create_directories(fFolder);
    std::filesystem::copy_file(std::filesystem::path(QLX_PLUGIN_FILE).parent_path() / "qlx.rsrc", GetFile());
  }
  ~CatalogFolder() { std::filesystem::remove_all(fFolder); }
  CatalogFolder(const CatalogFolder&) = delete;
  CatalogFolder& operator=(const CatalogFolder&) = delete;

  std::filesystem::path GetFile() const { return fFolder / "qlx.rsrc"; }
  std::shared_ptr<const PluginCatalog> Read(Diagnostics& inDiagnostics) const {
    return PluginCatalog::ReadBeside(fFolder / "libany.so", inDiagnostics);
  }
  // Puts other data in place of a resource's.
  void Replace(MCID inType, int16 inID, const std::vector<uint8>& inBytes) const {
    MCResourceFile file;
    ASSERT_EQ(file.Open(TMCDynamicString(PathText(GetFile()).c_str()), true), MC_S_OK);
    ASSERT_EQ(file.ReplaceData(inType, inID, inBytes.data(), static_cast<uint32>(inBytes.size())), MC_S_OK);
    ASSERT_EQ(file.Save(), MC_S_OK);
  }

 private:
  std::filesystem::path fFolder;
};

// One source for both: the file beside the library, and what stands in the program.
TEST(PluginCatalog, FileAndProgramSayTheSame) {
  const test::TestMemory memory;
  Diagnostics diagnostics;
  const auto read = PluginCatalog::ReadBeside(QLX_PLUGIN_FILE, diagnostics);
  EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>());
  const PluginCatalog& builtIn = *PluginCatalog::GetBuiltIn();
  EXPECT_NE(read, PluginCatalog::GetBuiltIn());
  EXPECT_EQ(read->GetClasses(), builtIn.GetClasses());
  EXPECT_EQ(builtIn.GetClasses().size(), 14U);
  for (const ExtensionRecord& record : builtIn.GetClasses()) {
    const ParameterMapDescription* const map = builtIn.FindMapDescription(record.fID);
    ASSERT_EQ(read->FindMapDescription(record.fID) != nullptr, map != nullptr);
    EXPECT_TRUE(map == nullptr || *map == *read->FindMapDescription(record.fID)) << record.fName;
    const auto panel = read->FindPart(kPanelType, record.fResourceId);
    const auto dialog = read->FindPart(kDialogType, record.fResourceId);
    EXPECT_EQ(panel != nullptr || dialog != nullptr, record.fResourceId != 0) << record.fName;
  }
  EXPECT_EQ(builtIn.FindPart(kPanelType, 150), nullptr);
  EXPECT_EQ(read->FindClass("modi"_id, "fPIN"_id)->fName, "PinModifier");
  EXPECT_EQ(read->FindClass("scmd"_id, "fPIN"_id), nullptr);
}

TEST(PluginCatalog, WithoutAFileTheProgramKnowsTheClasses) {
  const test::TestMemory memory;
  const CatalogFolder folder;
  std::filesystem::remove(folder.GetFile());
  Diagnostics diagnostics;
  EXPECT_EQ(folder.Read(diagnostics), PluginCatalog::GetBuiltIn());
  EXPECT_EQ(diagnostics.GetWarnings(),
            std::vector<std::string>{PathText(folder.GetFile()) +
                                     ": no such resource file: there are no panels and dialogs"});
}

TEST(PluginCatalog, DamagedPanelIsLeftOutAndTheRestStays) {
  const test::TestMemory memory;
  const CatalogFolder folder;
  folder.Replace(kPanelType, 156, {0, 1});
  Diagnostics diagnostics;
  const auto read = folder.Read(diagnostics);
  EXPECT_EQ(diagnostics.GetWarnings(),
            std::vector<std::string>{PathText(folder.GetFile()) +
                                     ": 'Panl' 156, byte 2: ends inside a number of four bytes"});
  EXPECT_EQ(read->FindPart(kPanelType, 156), nullptr);
  EXPECT_NE(read->FindPart(kPanelType, 150), nullptr);
}

TEST(PluginCatalog, DamagedRecordsAreThoseOfTheProgram) {
  const ParameterMapDescription pin = *PluginCatalog::GetBuiltIn()->FindMapDescription("fPIN"_id);
  ParameterMapDescription other = pin;
  other.fFields[1].fName = "fAktive";
  ParameterMapDescription wrongType = pin;
  wrongType.fFields[3].fType = "re32"_id;
  ParameterMapDescription renamed = pin;
  renamed.fClass = "fPIM"_id;
  constexpr int16 kPinMap = 2;
  const struct {
    const char* fLabel;
    std::vector<uint8> fBytes;
    const char* fProblem;
  } kRows[] = {
      {"cut", {0, 1, 'f'}, "'PMap' 2, byte 2: ends inside a number of four bytes"},
      {"a field gone", EncodeParameterMap(other),
       "the field fActive of PinModifier is missing, or not of the type 'bool'"},
      {"another type", EncodeParameterMap(wrongType),
       "the field fPosition of PinModifier is missing, or not of the type 'VEC3'"},
      {"another class", EncodeParameterMap(renamed), "nothing is said of PinModifier or its fields"},
  };
  const test::TestMemory memory;
  for (const auto& row : kRows) {
    const CatalogFolder folder;
    folder.Replace(kParameterMapType, kPinMap, row.fBytes);
    Diagnostics diagnostics;
    const auto read = folder.Read(diagnostics);
    EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>{PathText(folder.GetFile()) + ": " + row.fProblem +
                                                                  ": the classes that this program knows are used"})
        << row.fLabel;
    EXPECT_EQ(*read->FindMapDescription("fPIN"_id), pin) << row.fLabel;
    EXPECT_NE(read->FindPart(kPanelType, 156), nullptr) << row.fLabel;
  }
}

TEST(PluginCatalog, FilesMayKnowMore) {
  const test::TestMemory memory;
  const CatalogFolder folder;
  ParameterMapDescription pin = *PluginCatalog::GetBuiltIn()->FindMapDescription("fPIN"_id);
  pin.fFields.push_back({"fNew", "re32"_id, "newf"_id});
  folder.Replace(kParameterMapType, 2, EncodeParameterMap(pin));
  Diagnostics diagnostics;
  EXPECT_EQ(folder.Read(diagnostics)->FindMap("fPIN"_id)->GetSize(), 32U);
  EXPECT_EQ(diagnostics.GetWarnings(), std::vector<std::string>());
}

// What a class answers for is what its record says.
TEST(PluginCatalog, RecordsNameThePanelsOfTheClasses) {
  Diagnostics diagnostics;
  Host host(diagnostics);
  host.LoadPlugin(QLX_PLUGIN_FILE);
  int asked = 0;
  for (const ExtensionRecord& record : host.GetCatalog()->GetClasses()) {
    void* object = nullptr;
    if (record.fFamily != "part"_id &&
        host.GetPlugin()->Create(record.fClassID, nullptr, IExDataExchanger::kInterfaceID, &object) == MC_S_OK) {
      const auto exchanger = MCAdopt(static_cast<IExDataExchanger*>(object));
      EXPECT_EQ(exchanger->GetResourceId(), record.fResourceId) << record.fName;
      const ParameterMap* const map = host.GetCatalog()->FindMap(record.fID);
      EXPECT_EQ(map ? map->GetSize() : 0, exchanger->GetExtensionDataSize()) << record.fName;
      ++asked;
    }
  }
  EXPECT_GE(asked, 9);
}

// Whatever is cut off a file, there is an answer, and the modifiers of the program.
TEST(PluginCatalog, CutFilesAreNoMoreThanAWarning) {
  const test::TestMemory memory;
  const CatalogFolder folder;
  const auto size = std::filesystem::file_size(folder.GetFile());
  for (std::uintmax_t length = size - 1; length > 0; length -= std::min<std::uintmax_t>(length, 499)) {
    std::filesystem::resize_file(folder.GetFile(), length);
    Diagnostics diagnostics;
    const auto read = folder.Read(diagnostics);
    EXPECT_FALSE(diagnostics.GetWarnings().empty()) << length;
    EXPECT_EQ(read->FindMap("fQLX"_id)->GetFields().size(), 66U) << length;
  }
}

}  // namespace
}  // namespace qlx::host
