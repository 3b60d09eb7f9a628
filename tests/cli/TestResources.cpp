// `qlx resources`: the list of a resource file, one resource, and what is wrong with a bad file.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "MCResourceFile.h"
#include "QlxRun.h"
#include "TempFolder.h"
#include "TestMemory.h"

namespace qlx::host {
namespace {

using namespace std::string_literals;

// The places: data of 'STR ' 128 at 256 (10 bytes), 'STR ' -2 at 266 (22), the map at 288.
std::filesystem::path MakeResources(const TempFolder& inFolder) {
  const test::TestMemory memory;
  const TMCDynamicString source(PathText(inFolder / "source").c_str());
  const std::filesystem::path made = inFolder / "\xC3\xA4.rsrc";
  MCResourceFile::CreateEmpty(source);
  MCResourceFile file;
  EXPECT_EQ(file.Open(source, true), MC_S_OK);
  file.AddResource("STR "_id, 128, TMCDynamicString("a\nb"), kResReplaceable | kResPreload, "sixsix", 6);
  file.AddResource("STR "_id, -2, TMCDynamicString(""), 0x50000000, "0123456789ABCDEF\0\xFF", 18);
  file.AddResource(1, 5, TMCDynamicString("none"), 0, nullptr, 0);
  EXPECT_EQ(file.SaveCopy(TMCDynamicString(PathText(made).c_str())), MC_S_OK);
  return made;
}

TEST(QlxResources, ListsTypesIdsNamesAttributesSizesAndPlaces) {
  const TempFolder folder;
  const std::string file = PathText(MakeResources(folder));
  const QlxRun run = RunInProcess({"resources", file});
  EXPECT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_EQ(run.fOut,
            "2 types, 3 resources; data at 256, map of 91 bytes at 288\n"
            "type            id      bytes         at  attributes            name\n"
            "STR            128          6        256  replaceable,preload   a\\x0Ab\n"
            "STR             -2         18        266  0x50\n"
            "0x00000001       5          0          -  -                     none\n");
  const auto listing = nlohmann::json::parse(RunInProcess({"resources", file, "--json"}).fOut);
  EXPECT_EQ(listing["resources"].size(), 3U);
  EXPECT_EQ(listing["resources"][1]["at"], 266);
  EXPECT_EQ(listing["resources"][1]["attributes"], 0x50);
  EXPECT_TRUE(listing["resources"][2]["at"].is_null());
  EXPECT_TRUE(listing["problems"].empty());
}

TEST(QlxResources, PrintsOrWritesOneResource) {
  const TempFolder folder;
  const std::string file = PathText(MakeResources(folder));
  EXPECT_EQ(RunInProcess({"resources", file, "--dump", "STR", "-2"}).fOut,
            "00000000  30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46  0123456789ABCDEF\n"
            "00000010  00 FF                                            ..\n");
  const std::string out = PathText(folder / "out.bin");
  const QlxRun run = RunInProcess({"resources", file, "--dump", "STR ", "-2", "-o", out});
  EXPECT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_EQ(ReadFile(folder / "out.bin"), "0123456789ABCDEF\0\xFF"s);
  EXPECT_EQ(RunInProcess({"resources", file, "--dump", "0x00000001", "5"}).fCode, kExitDone);
  EXPECT_EQ(RunInProcess({"resources", file, "--dump", "STR", "7"}).fErr,
            "qlx: " + file + ": there is no resource 'STR ' 7\n");
  for (const auto& [type, id] :
       {std::pair{"STRX1", "1"}, {"", "1"}, {"0x0000000g", "1"}, {"STR", "x"}, {"STR", "40000"}}) {
    EXPECT_EQ(RunInProcess({"resources", file, "--dump", type, id}).fCode, kExitFailed) << type << ' ' << id;
  }
  EXPECT_EQ(RunInProcess({"resources", file, "-o", out}).fCode, kExitUsage);
}

TEST(QlxResources, NamesWhatIsWrongAndWhere) {
  const TempFolder folder;
  const auto made = MakeResources(folder);
  const std::string sound = ReadFile(made);
  const std::string file = PathText(made);
  const struct {
    const char* fLabel;
    std::size_t fPlace;
    std::string fBytes;
    std::vector<std::string> fProblems;
  } rows[] = {
      {"a map too short", 15, "\x1B", {"a map of 27 bytes is shorter than the start of a map"}},
      {"lists of nothing", 288 + 24, "\1\0"s, {"the type list at 256 of the map is outside its 91 bytes"}},
      {"length past the end",
       266,
       "\0\1\0\0"s,
       {"the data of resource 'STR ' -2 at 266 has a length of 65536 where 109 bytes are left"}},
      {"overlap",
       256,
       "\0\0\0\7"s,
       {"the data of resource 'STR ' -2 at 266 overlaps that of 'STR ' 128, bytes 256 to 266"}},
      {"data in the map", 266, "\0\0\0\x13"s, {"the data of resource 'STR ' -2 at 266 overlaps the map at 288"}},
      {"data area too long", 8, "\0\1\0\0"s, {"the data area of 65536 bytes at 256 runs past the end at 379"}},
      {"two problems",
       256,
       "\xFF\xFF\xFF\xFFsixsix\xFF"s,
       {"the data of resource 'STR ' 128 at 256 has a length of 4294967295 where 119 bytes are left",
        "the data of resource 'STR ' -2 at 266 has a length of 4278190098 where 109 bytes are left"}},
      {"an id twice", 288 + 37 + 30 + 12, "\0\x80"s, {"resource 'STR ' 128 stands in the map twice"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    std::string bytes = sound;
    bytes.replace(row.fPlace, row.fBytes.size(), row.fBytes);
    folder.Write("\xC3\xA4.rsrc", bytes);
    const QlxRun run = RunInProcess({"resources", file});
    EXPECT_EQ(run.fCode, kExitFailed);
    std::string expected;
    for (const std::string& problem : row.fProblems) {
      expected += fmt::format("qlx: {}: {}\n", file, problem);
    }
    EXPECT_EQ(run.fErr, expected);
  }
  EXPECT_EQ(RunInProcess({"resources", "no_such.rsrc"}).fErr, "qlx: no_such.rsrc: there is no such file\n");
}

}  // namespace
}  // namespace qlx::host
