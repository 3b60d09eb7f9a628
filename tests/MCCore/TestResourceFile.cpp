// Resource files read: the empty file, what damage does, look-ups, the chain, closing.
#include <thread>
#include <vector>

#include "ResourceFixture.h"

namespace qlx::test {
namespace {

class ResourceFile : public ResourceFiles {
 protected:
  // The places of the damage table: header 0, data 256, map 256 + 8 + 10 + 7 = 281. In the map: names 28, type list
  // 38, reference lists 56 (one of 'DLOG') and 68 (two of 'STR ').
  void MakeFileToSpoil() {
    const AssertionGuard guard;
    NewFile file(Path("source"));
    Add(file, kDialog, 131, "four", kResPreload, "Chain");
    Add(file, kText, 128, "sixsix", kResReplaceable | kResPreload, "abc");
    Add(file, kText, -2, "odd", 0x40000000 | kResPreload);
    ASSERT_EQ(file.SaveCopy(Path()), MC_S_OK);
  }
};

// The length of the map in the header leaves out two bytes that follow; readers work from the offsets.
TEST_F(ResourceFile, AnEmptyFileSaysAMapLengthTwoBytesShort) {
  ASSERT_EQ(MCResourceFile::CreateEmpty(Path()), MC_S_OK);
  const std::string values("\0\0\1\0\0\0\1\0\0\0\0\0\0\0\0\x1E", 16);
  EXPECT_EQ(Bytes(),
            values + std::string(240, '\0') + values + std::string("\0\0\0\0\0\0\0\0\0\x1C\0\x1E\xFF\xFF\0\0", 16));
  OpenFile file(Path());
  EXPECT_EQ(file.GetTypeCount(), 0);
  EXPECT_EQ(file.GetHeader().rMapLength, 0x1EU);
}

TEST_F(ResourceFile, AMapShorterThanItsStartIsReportedAndFails) {
  ASSERT_EQ(MCResourceFile::CreateEmpty(Path()), MC_S_OK);
  std::string bytes = Bytes();
  bytes[15] = 27;
  Put(bytes);
  const AssertionGuard guard({"header.rMapLength >= sizeof(SResMap)"});
  MCResourceFile file;
  EXPECT_EQ(file.Open(Path()), MC_E_BADTOKEN);
  EXPECT_EQ(static_cast<uint32>(MC_E_BADTOKEN), 0x80010024U);
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(ResourceFile, DamageFailsWithItsPlaceAndNeverReadsOutside) {
  MakeFileToSpoil();
  const std::string sound = Bytes();
  ASSERT_EQ(sound.size(), 373U) << "see the places above";
  using namespace std::string_literals;
  constexpr std::size_t kMap = 281;
  const struct {
    const char* fLabel;
    std::size_t fPlace;
    std::string fBytes;
    const char* fProblem;  // of opening; null: it opens
    std::string fData;     // of 'STR ' 128, and the problem of that
    const char* fDataProblem;
  } rows[] = {
      {"sound", 0, "", nullptr, "sixsix", ""},
      {"data area in the header", 0, "\0\0\0\x10"s, "the data area at 16", "", ""},
      {"data area past the end", 0, "\0\1\0\0"s, "the data area at 65536", "", ""},
      {"map in the header", 4, "\0\0\0\x10"s, "the map of 92 bytes at 16", "", ""},
      {"map at the end of numbers", 4, "\xFF\xFF\xFF\xFF"s, "at 4294967295", "", ""},
      {"map past the end", 12, "\0\0\0\x5D"s, "the map of 93 bytes at 281", "", ""},
      {"map as long as numbers", 12, "\xFF\xFF\xFF\xFF"s, "the map of 4294967295 bytes", "", ""},
      {"map of its start alone", 12, "\0\0\0\x1C"s, "the type list at 38", "", ""},
      {"type list in the map's start", kMap + 24, "\0\x1B"s, "the type list at 27", "", ""},
      {"type list past the map", kMap + 24, "\xFF\xFF"s, "the type list at 65535", "", ""},
      {"half a count of types", kMap + 24, "\0\x5B"s, "the type list at 91", "", ""},
      {"no types", kMap + 38, "\xFF\xFF"s, nullptr, "failed 192", "there is no resource 'STR ' 128"},
      {"fewer than no types", kMap + 38, "\xFF\xFE"s, "-1 types", "", ""},
      {"too many types", kMap + 38, "\x7F\xFF"s, "32768 types", "", ""},
      {"one type too many", kMap + 38, "\0\2"s, "1 references of type 'DLOG', at 56", "", ""},
      {"a type twice", kMap + 48, "DLOG"s, "type 'DLOG' stands in the map twice", "", ""},
      {"no resources of a type", kMap + 52, "\xFF\xFF"s, nullptr, "failed 192", "there is no resource 'STR ' 128"},
      {"fewer than none", kMap + 52, "\x80\0"s, "a count of -32767 resources of type 'STR '", "", ""},
      {"too many references", kMap + 52, "\x7F\xFF"s, "32768 references of type 'STR '", "", ""},
      {"one reference too many", kMap + 52, "\0\2"s, "3 references of type 'STR '", "", ""},
      {"references in the type list", kMap + 54, "\0\x10"s, "2 references of type 'STR ', at 54", "", ""},
      {"references past the map", kMap + 54, "\xFF\xFF"s, "2 references of type 'STR ', at 65573", "", ""},
      {"overlapping references", kMap + 54, "\0\x12"s, "overlap at 56", "", ""},
      {"partly overlapping references", kMap + 44, "\0\1"s, "'DLOG' and 'STR ' overlap at 68", "", ""},
      {"a name past the map", kMap + 70, "\0\x40"s, "the name of resource 'STR ' 128, at 92", "", ""},
      {"a name longer than the map", kMap + 34, "\xFF"s, "the name of resource 'STR ' 128, at 34", "", ""},
      {"names in the map's start", kMap + 26, "\0\0"s, "the name of resource 'DLOG' 131, at 0", "", ""},
      {"data without a length", kMap + 73, "\0\0\x72"s, nullptr, "failed 39", "at 370 begins past the end at 373"},
      {"data far outside", kMap + 73, "\xFF\xFF\xFE"s, nullptr, "failed 39", "begins past the end"},
      {"data longer than the file", 264, "\0\0\0\x6A"s, nullptr, "failed 39", "106 where 105 bytes are left"},
      {"data as long as numbers", 264, "\xFF\xFF\xFF\xFF"s, nullptr, "failed 39", "4294967295 where"},
      {"data that runs into the map", 264, "\0\0\0\x0E"s, nullptr, "failed 36", "overlaps the map at 281"},
      {"data in the map", kMap + 73, "\0\0\x29"s, nullptr, "failed 36", "overlaps the map"},
      {"data over other data", 264, "\0\0\0\x0D"s, nullptr, "sixsix\0\0\0\3odd"s, ""},
      {"no data", kMap + 73, "\xFF\xFF\xFF"s, nullptr, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    std::string bytes = sound;
    bytes.replace(row.fPlace, row.fBytes.size(), row.fBytes);
    Put(bytes);
    const AssertionGuard guard;
    MCResourceFile file;
    const MCResult opened = file.Open(Path(), false, true);
    EXPECT_EQ(opened, row.fProblem ? MC_E_BADTOKEN : MC_S_OK);
    EXPECT_EQ(file.IsOpen(), !row.fProblem);
    if (row.fProblem) {
      EXPECT_NE(std::string(file.GetProblem().CStr()).find(row.fProblem), std::string::npos)
          << file.GetProblem().CStr();
      continue;
    }
    EXPECT_EQ(Data(file, kText, 128), row.fData);
    EXPECT_NE(std::string(file.GetProblem().CStr()).find(row.fDataProblem), std::string::npos)
        << file.GetProblem().CStr();
    EXPECT_EQ(Data(file, kDialog, 131).substr(0, 6), row.fPlace == kMap + 38 ? "failed" : "four");
  }
}

TEST_F(ResourceFile, AFileCutAnywhereFailsOrOpens) {
  MakeFileToSpoil();
  const std::string sound = Bytes();
  for (std::size_t size = 0; size < sound.size(); ++size) {
    Put(sound.substr(0, size));
    const AssertionGuard guard;
    MCResourceFile file;
    ASSERT_EQ(file.Open(Path()), size < 256 ? MC_E_EOF : MC_E_BADTOKEN) << size;
  }
  MCResourceFile none;
  EXPECT_EQ(none.Open(Path("none")), MC_E_FILENOTFOUND);
}

TEST_F(ResourceFile, AFileThatShrinksWhileItIsOpenEndsEarly) {
  MakeFileToSpoil();
  OpenFile file(Path());
  Resize(270);
  EXPECT_EQ(Data(file, kText, 128), "failed 39");
  EXPECT_EQ(Data(file, kDialog, 131), "four");
}

TEST_F(ResourceFile, LooksUpTheFirstOfThoseAlikeAndTellsWhatIsMissing) {
  MakeFileToSpoil();
  std::string bytes = Bytes();
  bytes.replace(281 + 80, 2, std::string("\0\x80", 2));  // 'STR ' -2 becomes a second 128
  Put(bytes);
  OpenFile file(Path());
  EXPECT_EQ(Data(file, kText, 128), "sixsix");
  MCResource* resource = nullptr;
  EXPECT_EQ(static_cast<uint32>(file.GetResource(kText, 129, &resource)), 0x800100C0U) << "in a type that is there";
  EXPECT_EQ(file.GetResource("none"_id, 128, &resource), MC_E_RESNOTFOUND);
  EXPECT_EQ(resource, nullptr);
  MCResourceInfo info;
  ASSERT_EQ(file.GetResourceAt(kText, 1, info), MC_S_OK);
  EXPECT_EQ(info.fAttributes, 0x44000000U) << "bits without a meaning are kept";
  EXPECT_TRUE(info.fName.IsEmpty());
}

TEST_F(ResourceFile, CountsOutOfRangeAreReported) {
  MakeFileToSpoil();
  OpenFile file(Path());
  MCResourceInfo info;
  const char* const kReport = "n >= 0 && n <= thisType->rTotal";
  const AssertionGuard guard({kReport, kReport});
  EXPECT_EQ(file.GetResourceAt(kText, -1, info), MC_E_INVALIDARG);
  EXPECT_EQ(file.GetResourceAt(kText, 2, info), MC_E_INVALIDARG);
  EXPECT_EQ(file.GetResourceAt("none"_id, 0, info), MC_E_RESNOTFOUND);
  EXPECT_EQ(file.GetType(2), 0U);
}

// 0x00FFFFFF is how a resource without data stands in the file; whoever asks for its stored size has not looked.
TEST_F(ResourceFile, TheStoredSizeOfAResourceWithoutDataIsReported) {
  NewFile file(Path());
  ASSERT_EQ(file.AddResource(kText, 1, TMCString15(""), 0, nullptr, 0), MC_S_OK);
  Add(file, kText, 2, "ab");
  const AssertionGuard guard({"dataBytes != 0x00FFFFFF"});
  uint32 size = 7;
  EXPECT_EQ(file.GetStoredSize(kText, 1, size), MC_E_NOTVALID);
  EXPECT_EQ(size, 0U);
  EXPECT_EQ(file.GetStoredSize(kText, 2, size), MC_S_OK);
  EXPECT_EQ(size, 2U);
  EXPECT_EQ(Data(file, kText, 1), "");
}

TEST_F(ResourceFile, MarkedResourcesAreLoadedWithTheFileUntilOneOfTheirTypeFails) {
  {
    NewFile file(Path());
    for (int16 id = 1; id <= 3; ++id) {
      Add(file, kDialog, id, "dddd", id == 3 ? 0 : kResPreload);
      Add(file, kText, id, "tttt", kResPreload);
    }
    ASSERT_EQ(file.Save(), MC_S_OK);
  }
  std::string bytes = Bytes();
  bytes[256 + 32 + 3 * 8] = 1;  // the length of 'STR ' 2
  Put(bytes);
  OpenFile file(Path(), false, true);
  const int loaded = fMemory.GetLiveBlocks();
  EXPECT_EQ(Data(file, kDialog, 2) + Data(file, kText, 1), "ddddtttt");
  EXPECT_EQ(fMemory.GetLiveBlocks(), loaded) << "were there already";
  EXPECT_EQ(Data(file, kText, 3) + Data(file, kDialog, 3), "ttttdddd");
  EXPECT_EQ(fMemory.GetLiveBlocks(), loaded + 4) << "stood behind the failure, and was not marked";
  EXPECT_EQ(Data(file, kText, 2), "failed 39");
  file.UnloadUnused();
  EXPECT_LT(fMemory.GetLiveBlocks(), loaded);
}

TEST_F(ResourceFile, MarkedResourcesThatShareTheirDataTakeNoMoreMemoryThanTheFileIsLong) {
  std::string bytes;
  {
    NewFile file(Path());
    Add(file, kText, 0, std::string(1000, 'x'), kResPreload);
    for (int16 id = 1; id <= 50; ++id) {
      Add(file, kText, id, "", kResPreload);
    }
    ASSERT_EQ(file.Save(), MC_S_OK);
    bytes = Bytes();
    const std::size_t list = file.GetHeader().rMapOffset + 28 + 10;
    for (std::size_t i = 1; i <= 50; ++i) {
      bytes.replace(list + 12 * i + 4, 4, bytes, list + 4, 4);
    }
  }
  Put(bytes);
  MCResourceFile file;
  const int before = fMemory.GetLiveBlocks();
  ASSERT_EQ(file.Open(Path(), false, true), MC_S_OK);
  const int opened = fMemory.GetLiveBlocks() - before;
  file.UnloadUnused();
  EXPECT_LE(opened - (fMemory.GetLiveBlocks() - before), 2 * 2) << "blocks of data and their resources";
  EXPECT_EQ(Data(file, kText, 50), std::string(1000, 'x'));
}

// ---- the chain ----

TEST_F(ResourceFile, ALookUpGoesOnToTheNextFileUntilSomethingIsFound) {
  NewFile old(Path("old"));
  Add(old, kText, 1, "old 1");
  Add(old, kText, 2, "old 2");
  NewFile fresh(Path("fresh"));
  Add(fresh, kText, 2, "fresh 2");
  EXPECT_EQ(MCResourceFile::GetFirstFile(), &fresh);
  MCResource* resource = nullptr;
  ASSERT_EQ(fresh.GetChainResource(kText, 1, &resource), MC_S_OK);
  EXPECT_EQ(resource->GetOwner(), &old);
  resource->Release();
  ASSERT_EQ(fresh.GetChainResource(kText, 2, &resource), MC_S_OK);
  EXPECT_EQ(resource->GetOwner(), &fresh);
  resource->Release();
  EXPECT_EQ(fresh.GetChainResource(kText, 3, &resource), MC_E_RESNOTFOUND);
  EXPECT_EQ(old.SetNextFile(&fresh), MC_E_INVALIDARG) << "the chain would never end";
  EXPECT_EQ(old.SetNextFile(&old), MC_E_INVALIDARG);
  EXPECT_EQ(fresh.SetNextFile(nullptr), MC_S_OK);
  EXPECT_EQ(fresh.GetChainResource(kText, 1, &resource), MC_E_RESNOTFOUND);
  EXPECT_EQ(old.SetNextFile(&fresh), MC_S_OK);
  fresh.Close();
  EXPECT_EQ(old.GetNextFile(), nullptr);
}

// Files are closed last opened first; another order is reported, and harms nothing.
TEST_F(ResourceFile, ClosingAFileWithinTheChainIsReported) {
  ASSERT_EQ(MCResourceFile::CreateEmpty(Path()), MC_S_OK);
  MCResourceFile files[3];
  for (MCResourceFile& file : files) {
    ASSERT_EQ(file.Open(Path()), MC_S_OK);
  }
  const int32 reference = files[1].GetResFileRef();
  EXPECT_EQ(MCResourceFile::GetOpenedFile(reference), &files[1]);
  const char* const kReport = "inResFileRef < sOpenedFiles.GetElemCount()";
  const AssertionGuard guard({"You are breaking the resource chain silly!!!", "fFile == NULL", kReport, kReport});
  files[1].Close();
  EXPECT_EQ(files[2].GetNextFile(), &files[0]);
  EXPECT_EQ(files[1].GetResFileRef(), -1);
  EXPECT_EQ(MCResourceFile::GetOpenedFile(reference), nullptr);
  EXPECT_EQ(MCResourceFile::GetOpenedFile(files[2].GetResFileRef()), &files[2]) << "numbers stay";
  EXPECT_EQ(files[2].Open(Path()), MC_E_NOTVALID);
  EXPECT_TRUE(files[2].IsOpen());
  EXPECT_EQ(MCResourceFile::GetOpenedFile(-1), nullptr);
  EXPECT_EQ(MCResourceFile::GetOpenedFile(100), nullptr);
  files[2].Close();
  EXPECT_EQ(MCResourceFile::GetFirstFile(), &files[0]);
}

TEST_F(ResourceFile, ClosingWithAResourceInUseReportsItAndStillCloses) {
  NewFile file(Path());
  Add(file, kText, -5, "held");
  Add(file, kText, 6, "let go");
  EXPECT_EQ(Data(file, kText, 6), "let go");
  MCSharedResource held;
  ASSERT_EQ(held.Load(file, kText, -5), MC_S_OK);
  const MCSharedResource other = held;
  const AssertionGuard guard({"Closing file with resource still referenced!\rRes type: STR \rRes ID: -5"});
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_FALSE(held) << "a holder does not point at what is gone";
  EXPECT_FALSE(other);
  EXPECT_EQ(file.GetTypeCount(), 0);
  EXPECT_EQ(Data(file, kText, 6), "failed 6");
}

TEST_F(ResourceFile, ThreadsShareAFile) {
  NewFile file(Path());
  for (int16 id = 0; id < 50; ++id) {
    Add(file, kText, id, std::to_string(id));
  }
  std::vector<std::thread> threads;
  std::atomic<int> wrong = 0;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 400; ++i) {
        const auto id = static_cast<int16>(i % 50);
        wrong += Data(file, kText, id) == std::to_string(id) ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wrong, 0);
  file.Close();
}

}  // namespace
}  // namespace qlx::test
