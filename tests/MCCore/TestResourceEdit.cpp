// Resource files changed: layout of what is written, replaced data, entries, limits, memory; and loaded resources.
#include <cstring>
#include <tuple>

#include "MCResourceStream.h"
#include "ResourceFixture.h"
#include "SilentReports.h"

namespace qlx::test {
namespace {

class ResourceEdit : public ResourceFiles {
 protected:
  static uint32 Offset(const MCResourceFile& inFile, int16 inID) {
    MCResourceInfo info;
    EXPECT_EQ(inFile.GetInfo(kText, inID, info), MC_S_OK);
    return info.fOffset;
  }
  static MCResult Replace(MCResourceFile& ioFile, int16 inID, const std::string& inData) {
    return ioFile.ReplaceData(kText, inID, inData.data(), static_cast<uint32>(inData.size()));
  }
};

TEST_F(ResourceEdit, ACopyHasNoGapsAndItsNamesStandAheadOfTheLists) {
  NewFile file(Path());
  Add(file, kText, 128, "ab", kResReplaceable, "n\xC3\xB6");
  Add(file, kDialog, -1, "", 0x10000000);
  Add(file, kText, 1, "c", 0, "x");
  ASSERT_EQ(Replace(file, 128, "longer"), MC_S_OK);
  ASSERT_EQ(file.SaveCopy(Path("copy")), MC_S_OK);
  using namespace std::string_literals;
  const std::string data = "\0\0\0\6longer\0\0\0\1c\0\0\0\0"s;
  const std::string header = "\0\0\1\0\0\0\1\x13\0\0\0\x13\0\0\0\x58"s;
  const std::string map = header + "\0\0\0\0\0\0\0\0\0\x22\0\x1C\3n\xC3\xB6\1x"s +  // names at 28
                          "\0\1STR \0\1\0\x1E"s + "DLOG\0\0\0\x12"s +               // the longest list last
                          "\xFF\xFF\xFF\xFF\x10\0\0\x0F\0\0\0\0"s +                 // 'DLOG'
                          "\0\x80\0\0\2\0\0\0\0\0\0\0\0\1\0\4\0\0\0\x0A\0\0\0\0"s;  // 'STR '
  EXPECT_EQ(Bytes("copy"), header + std::string(240, '\0') + data + map);
  OpenFile copy(Path("copy"));
  EXPECT_EQ(Data(copy, kText, 128) + Data(copy, kText, 1) + Data(copy, kDialog, -1), "longerc");
  ASSERT_EQ(copy.SaveCopy(Path("again")), MC_S_OK);
  EXPECT_EQ(Bytes("again"), Bytes("copy"));
  EXPECT_FALSE(std::filesystem::exists(FilePath("copy.part")));
}

TEST_F(ResourceEdit, ASavedFileReadsBackAndAnUnsavedOneIsAsItWas) {
  NewFile file(Path());
  Add(file, kText, 1, "one", kResReplaceable, "first");
  Add(file, kText, 2, "two", kResReplaceable, "second");
  Add(file, kDialog, 3, "three", 0);
  EXPECT_TRUE(file.IsChanged());
  ASSERT_EQ(file.Save(), MC_S_OK);
  EXPECT_FALSE(file.IsChanged());
  EXPECT_EQ(file.Save(), MC_S_OK) << "nothing to save";
  ASSERT_EQ(file.RenameResource(kText, 1, TMCString15("other")), MC_S_OK);
  ASSERT_EQ(file.RemoveResource(kDialog, 3), MC_S_OK);
  ASSERT_EQ(file.SetAttributes(kText, 2, kResPreload), MC_S_OK);
  EXPECT_EQ(file.GetTypeCount(), 1) << "a type without resources is none";
  file.Close();
  ASSERT_EQ(file.Open(Path(), true), MC_S_OK);
  EXPECT_EQ(Data(file, kDialog, 3), "three") << "was not saved";
  ASSERT_EQ(file.RenameResource(kText, 1, TMCString15("other")), MC_S_OK);
  ASSERT_EQ(file.RemoveResource(kText, 2), MC_S_OK);
  Add(file, kText, 2, "2", 0, "new");
  ASSERT_EQ(file.Save(), MC_S_OK);
  file.Close();
  ASSERT_EQ(file.Open(Path()), MC_S_OK);
  MCResourceInfo info;
  ASSERT_EQ(file.GetResourceAt(kText, 0, info), MC_S_OK);
  EXPECT_EQ(info.fName, "other");
  ASSERT_EQ(file.GetResourceAt(kText, 1, info), MC_S_OK);
  EXPECT_EQ(info.fName, "new");
  EXPECT_EQ(Data(file, kText, 1) + Data(file, kText, 2) + Data(file, kDialog, 3), "one2three");
}

TEST_F(ResourceEdit, DataThatIsNotLongerStaysAndLongerDataMovesToTheEnd) {
  NewFile file(Path());
  Add(file, kText, 1, "12345");
  Add(file, kText, 2, "next");
  ASSERT_EQ(file.AddResource(kText, 3, TMCString15(""), kResReplaceable, nullptr, 0), MC_S_OK);
  MCSharedResource loaded;
  ASSERT_EQ(loaded.Load(file, kText, 1), MC_S_OK);
  const uint32 place = Offset(file, 1);
  const std::tuple<const char*, int16, const char*, bool> rows[] = {
      {"as long", 1, "abcde", true},
      {"shorter", 1, "abc", true},
      {"empty", 1, "", true},
      {"longer than what stands there now", 1, "1234", false},
      {"no data yet", 3, "fresh", false},
      {"empty where there is none", 3, "", true},
  };
  for (const auto& [label, id, data, stays] : rows) {
    SCOPED_TRACE(label);
    const uint32 before = Offset(file, id);
    const int32 end = file.GetFileLength();
    ASSERT_EQ(Replace(file, id, data), MC_S_OK);
    EXPECT_EQ(Offset(file, id), stays ? before : static_cast<uint32>(end) - 256);
    EXPECT_EQ(file.GetFileLength(), stays ? end : end + 4 + static_cast<int32>(std::strlen(data)));
    EXPECT_EQ(Data(file, kText, id), data);
  }
  EXPECT_NE(Offset(file, 1), place);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(loaded->GetData()), loaded->GetSize()), "1234");
  EXPECT_EQ(Data(file, kText, 2), "next");
  ASSERT_EQ(file.Save(), MC_S_OK);
  loaded.Clear();
  file.Close();
  ASSERT_EQ(file.Open(Path()), MC_S_OK);
  EXPECT_EQ(Data(file, kText, 1) + '|' + Data(file, kText, 3), "1234|");
}

TEST_F(ResourceEdit, DataThatOthersShareOrThatIsDamagedMovesInsteadOfSpoilingMore) {
  {
    NewFile file(Path());
    Add(file, kText, 1, "shared");
    Add(file, kText, 2, "");
    Add(file, kText, 3, "lost");
    ASSERT_EQ(file.Save(), MC_S_OK);
  }
  std::string bytes = Bytes();
  const std::size_t list = bytes.size() - 36;
  bytes.replace(list + 12 + 4, 4, bytes, list + 4, 4);  // 2 has the data of 1
  bytes.replace(list + 24 + 5, 3, "\xFF\xFF\xFE");
  Put(bytes);
  OpenFile file(Path(), true);
  EXPECT_EQ(Data(file, kText, 3), "failed 39");
  ASSERT_EQ(Replace(file, 2, "own"), MC_S_OK);
  ASSERT_EQ(Replace(file, 3, "found"), MC_S_OK);
  ASSERT_EQ(file.Save(), MC_S_OK);
  EXPECT_EQ(Data(file, kText, 1) + Data(file, kText, 2) + Data(file, kText, 3), "sharedownfound");
}

TEST_F(ResourceEdit, RefusalsNameTheirReasonAndChangeNothing) {
  NewFile file(Path());
  Add(file, kText, 1, "kept", 0);
  Add(file, kText, 2, "kept", kResReplaceable | kResProtected);
  Add(file, kText, 3, "kept", kResReplaceable);
  MCSharedResource used;
  ASSERT_EQ(used.Load(file, kText, 3), MC_S_OK);
  ASSERT_EQ(file.Save(), MC_S_OK);
  const std::string bytes = Bytes();
  EXPECT_EQ(static_cast<uint32>(Replace(file, 1, "n")), 0x800100C6U) << "the bit that allows it is clear";
  EXPECT_EQ(Replace(file, 2, "n"), MC_E_RESPROTECTED) << "the bit that forbids it is set";
  EXPECT_EQ(Replace(file, 4, "n"), MC_E_RESNOTFOUND);
  EXPECT_EQ(file.ReplaceData(kText, 3, nullptr, 2), MC_E_INVALIDARG);
  EXPECT_EQ(file.RemoveResource(kText, 2), MC_E_RESPROTECTED);
  EXPECT_EQ(file.RemoveResource(kText, 3), MC_E_RESINUSE);
  EXPECT_EQ(file.AddResource(kText, 1, TMCString15(""), 0, "x", 1), MC_E_RESEXISTS);
  EXPECT_EQ(file.GetProblem(), "there is a resource 'STR ' 1 already");
  const TMCDynamicString longName(std::string(256, 'n').c_str());
  EXPECT_EQ(file.AddResource(kText, 9, longName, 0, "x", 1), MC_E_RESTOOLARGE);
  EXPECT_EQ(file.RenameResource(kText, 1, longName), MC_E_RESTOOLARGE);
  EXPECT_EQ(file.GetProblem(), "the name of resource 'STR ' 1: 256 bytes are above the limit of 255");
  EXPECT_FALSE(file.IsChanged());
  OpenFile reader(Path());
  EXPECT_EQ(reader.RemoveResource(kText, 1), MC_E_NOTVALID);
  EXPECT_EQ(reader.AddResource(kText, 9, TMCString15(""), 0, "x", 1), MC_E_NOTVALID);
  EXPECT_EQ(reader.Save(), MC_E_NOTVALID);
  EXPECT_EQ(Bytes(), bytes);
}

// ---- limits ----

TEST_F(ResourceEdit, WhatTheFormatCannotHoldIsRefusedByName) {
  const struct {
    const char* fLabel;
    std::vector<MCID> fTypes;
    int fCount;
    std::size_t fNameLength;
    const char* fProblem;
  } rows[] = {
      {"names", {kText}, 256, 255, "the names up to those of type 'STR ': 65564 is above the limit of 65535"},
      {"resources of a type",
       {kText},
       32769,
       0,
       "the count of resources of type 'STR ': 32769 is above the limit of 32768"},
      {"reference lists",
       {kText, kDialog, "LAST"_id},
       5500,
       0,
       "the offset of the references of type 'LAST': 66026 is above the limit of 65535"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fLabel);
    NewFile file(Path());
    const TMCString255 name(std::string(row.fNameLength, 'n').c_str());
    for (int i = 0; i < row.fCount; ++i) {
      for (const MCID type : row.fTypes) {
        ASSERT_EQ(file.AddResource(type, static_cast<int16>(i), name, 0, nullptr, 0), MC_S_OK);
      }
    }
    const std::string bytes = Bytes();
    EXPECT_EQ(file.Save(), MC_E_RESTOOLARGE);
    EXPECT_EQ(file.GetProblem(), row.fProblem);
    EXPECT_EQ(Bytes(), bytes);
  }
}

TEST_F(ResourceEdit, TenThousandResourcesOfOneTypeFit) {
  NewFile file(Path());
  for (int id = 10000; id > 0; --id) {
    Add(file, kText, static_cast<int16>(id * 3), id % 1000 == 0 ? std::to_string(id) : "", 0, id < 100 ? "name" : "");
  }
  Add(file, kDialog, 1, "d");
  ASSERT_EQ(file.Save(), MC_S_OK) << file.GetProblem().CStr();
  file.Close();
  ASSERT_EQ(file.Open(Path()), MC_S_OK);
  EXPECT_EQ(file.GetResourceCount(kText), 10000);
  EXPECT_EQ(Data(file, kText, 15000) + Data(file, kDialog, 1) + Data(file, kText, 1), "5000dfailed 192");
}

TEST_F(ResourceEdit, DataBehindTheReachOf24BitsIsRefused) {
  {
    NewFile file(Path());
    Add(file, kText, 1, "first");
    ASSERT_EQ(file.Save(), MC_S_OK);
  }
  Resize(256 + 0x00FFFFFE);
  OpenFile file(Path(), true);
  Add(file, kText, 2, "last");
  EXPECT_EQ(Offset(file, 2), 0x00FFFFFEU);
  EXPECT_EQ(file.AddResource(kText, 3, TMCString15(""), 0, "x", 1), MC_E_RESTOOLARGE);
  EXPECT_EQ(file.GetProblem(), "the offset of the data of resource 'STR ' 3: 16777222 is above the limit of 16777214");
  EXPECT_EQ(Replace(file, 1, "longer"), MC_E_RESTOOLARGE);
  EXPECT_EQ(Data(file, kText, 1) + Data(file, kText, 2), "firstlast");
}

TEST_F(ResourceEdit, WithoutMemoryEveryCallFailsAndLeavesTheFileWhole) {
  {
    NewFile file(Path());
    Add(file, kText, 1, "one", kResReplaceable | kResPreload, "name");
    ASSERT_EQ(file.Save(), MC_S_OK);
  }
  const std::string bytes = Bytes();
  const SilentReports silence;
  WithEachAllocationRefused(fMemory, [&](int inStep) {
    SCOPED_TRACE(inStep);
    Put(bytes);
    MCResourceFile file;
    if (file.Open(Path(), true, true) != MC_S_OK) {
      return;
    }
    const bool added = file.AddResource(kDialog, 2, TMCString15("two"), 0, "22", 2) == MC_S_OK;
    const bool named = file.RenameResource(kText, 1, TMCString15("new")) == MC_S_OK;
    const bool loads = Data(file, kText, 1) == "one";
    const bool replaced = Replace(file, 1, "1111") == MC_S_OK;
    const bool saved = file.Save() == MC_S_OK;
    const bool copied = file.SaveCopy(Path("copy")) == MC_S_OK;
    EXPECT_EQ(loads + replaced + saved + copied + added + named >= 5, true) << "one refusal, one failure";
    file.Close();
    fMemory.RefuseNothing();
    ASSERT_EQ(file.Open(Path()), MC_S_OK);
    MCResourceInfo info;
    ASSERT_EQ(file.GetInfo(kText, 1, info), MC_S_OK);
    EXPECT_EQ(info.fName, saved && named ? "new" : "name");
    EXPECT_EQ(Data(file, kText, 1), saved && replaced ? "1111" : "one");
    EXPECT_EQ(Data(file, kDialog, 2), saved && added ? "22" : "failed 192");
    EXPECT_EQ(std::filesystem::exists(FilePath("copy")), copied || inStep > 0);
  });
}

// ---- loaded resources ----

TEST_F(ResourceEdit, AResourceMadeWithoutItsDataIsReported) {
  const AssertionGuard guard({"Why is there no data for this resource?", "fUseCount > 0",
                              "You can't delete this object call Release() instead!!!"});
  auto* resource = new MCResource(nullptr, kText, 1, TMCString15("n"), 3);
  ASSERT_EQ(resource->GetSize(), 3U);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(resource->GetData()), 3), std::string(3, '\0'));
  EXPECT_EQ(resource->Release(), 0);
  delete resource;
}

// A resource belongs to its file. One that somebody deletes all the same is loaded again when it is asked for.
TEST_F(ResourceEdit, DeletingAResourceOfAnOpenFileIsReportedAndRepaired) {
  NewFile file(Path());
  Add(file, kText, 1, "data");
  MCResource* resource = nullptr;
  ASSERT_EQ(file.GetResource(kText, 1, &resource), MC_S_OK);
  const MCSharedResource shared(resource);
  const AssertionGuard guard({"You can't delete this object call Release() instead!!!"});
  delete resource;
  EXPECT_FALSE(shared);
  EXPECT_EQ(Data(file, kText, 1), "data");
}

TEST_F(ResourceEdit, HoldersCountTheirUses) {
  NewFile file(Path());
  Add(file, kText, 1, "data");
  MCSharedResource a;
  ASSERT_EQ(a.Load(file, kText, 1), MC_S_OK);
  MCSharedResource b = a;
  MCSharedResource c = std::move(b);
  EXPECT_FALSE(b);
  EXPECT_EQ(a->GetUseCount(), 2);
  const MCSharedResource& same = c;
  c = same;
  b = a;
  a = std::move(b);
  EXPECT_EQ(a->GetUseCount(), 2);
  c.Clear();
  EXPECT_EQ(a.Load(file, kText, 2), MC_E_RESNOTFOUND);
  EXPECT_FALSE(a);
  file.UnloadUnused();
  file.Close();
}

TEST_F(ResourceEdit, AStreamReadsAResource) {
  NewFile file(Path());
  Add(file, kText, 1, "12 abc");
  MCSharedResource shared;
  ASSERT_EQ(shared.Load(file, kText, 1), MC_S_OK);
  MCResourceStream stream(shared.Get());
  int32 number = 0;
  char room[8] = {};
  stream.ReadInt32(number).ReadWord(room, sizeof room);
  EXPECT_EQ(number, 12);
  EXPECT_STREQ(room, "abc");
  EXPECT_EQ(stream.Seek(-1, kFromEnd).PutBack('b').Read(room, 8).gcount(), 2);
  EXPECT_TRUE(stream.eof());
  {
    const AssertionGuard guard(std::vector<std::string>(5, "Stream throw TMCException"));
    stream.Write("x", 1).Seek(7, kFromStart).Seek(1, kFromStart).PutBack('9').Seek(0, kFromStart).PutBack('1');
    stream.Read(nullptr, 1);
  }
  ASSERT_EQ(Replace(file, 1, "xyz"), MC_S_OK);
  stream.Seek(3, kFromStart);
  EXPECT_EQ(stream.PutBack('z').Read(room, 8).gcount(), 1);
  ASSERT_EQ(Replace(file, 1, "x"), MC_S_OK);
  EXPECT_EQ(stream.Tell(), 1);
  EXPECT_EQ(stream.Read(room, 8).gcount(), 0);
  shared.Clear();
  const AssertionGuard guard({"Closing file with resource still referenced!\rRes type: STR \rRes ID: 1"});
  file.Close();
  EXPECT_EQ(stream.GetLength(), 0);
  EXPECT_TRUE(stream.Read(room, 1).eof());
}

}  // namespace
}  // namespace qlx::test
