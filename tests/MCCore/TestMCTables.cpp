// The extensible array and the hash table.
#include "HostedTest.h"
#include "MCExtensibleArray.h"
#include "MCHash.h"
#include "ThrownBy.h"

namespace qlx::test {
namespace {

using ExtensibleArray = HostedTest;
using Hash = HostedTest;

TEST_F(ExtensibleArray, ElementsNeverMove) {
  MCExtensibleArray<int> array(2);
  std::vector<int*> addresses;
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(array.AddElem(i));
    addresses.push_back(array.GetElem(i));
  }
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(array.GetElem(i), addresses[static_cast<size_t>(i)]);
    EXPECT_EQ(*array.GetElem(i), i);
  }
  array.SetElemCount(6);
  array.SetElemCount(8);
  EXPECT_EQ(*array.GetElem(5), 5);
  EXPECT_EQ(*array.GetElem(6), 0) << "fresh again";
}

TEST_F(ExtensibleArray, BadIndicesAreReported) {
  const char* const kBadIndex = "i>=0 && i < fElemCount";
  MCExtensibleArray<int> array(2);
  array.SetElemCount(3);
  AssertionGuard guard({kBadIndex, kBadIndex, "array", kBadIndex, "array"});
  EXPECT_NE(array.GetElem(3), nullptr);  // its block is there
  EXPECT_EQ(array.GetElem(4), nullptr);
  EXPECT_EQ(array.GetElem(-1), nullptr);
}

TEST_F(ExtensibleArray, StaysAsItWasWhenMemoryIsRefused) {
  for (int allowed = 0; allowed < 4; ++allowed) {
    SCOPED_TRACE(allowed);
    TestMemory memory;
    AssertionGuard guard({"Array allocation failed!"});
    MCExtensibleArray<int> array(1);
    array.AddElem(42);
    const int blocks = memory.GetLiveBlocks();
    memory.RefuseAfter(allowed);
    EXPECT_FALSE(array.SetElemCount(9));
    EXPECT_EQ(memory.GetLiveBlocks(), blocks);
    EXPECT_EQ(array.GetElemCount(), 1);
    EXPECT_EQ(*array.GetElem(0), 42);
    memory.RefuseNothing();
  }
}

const char* const kWords[] = {"one", "two", "three", "one"};

// By first letter, so "two" and "three" share a bucket.
class WordTable : public MCHash {
 public:
  using MCHash::MCHash;
  void AddAll() {
    for (uint32 i = 0; i < std::size(kWords); ++i) {
      AddEntry(kWords[i], i);
    }
  }

 protected:
  uint32 HashKey(const void* inKey) const override { return *static_cast<const uint8*>(inKey); }
  bool IsElemKey(uint32 inElem, const void* inKey) const override {
    return std::strcmp(kWords[inElem], static_cast<const char*>(inKey)) == 0;
  }
};

TEST_F(Hash, FindsTheFirstMatchInItsDirection) {
  for (const uint32 size : {1U, 2U, 7U, 300U}) {
    SCOPED_TRACE(size);
    WordTable table(size);
    table.AddAll();
    EXPECT_EQ(table.Lookup("three"), 2U);
    EXPECT_EQ(table.Lookup("two", MCHash::Direction::kBackward), 1U);
    EXPECT_EQ(table.Lookup("one", MCHash::Direction::kForward), 0U);
    EXPECT_EQ(table.Lookup("one", MCHash::Direction::kBackward), 3U);
    EXPECT_EQ(table.Lookup("four"), kUnusedIndex);
    EXPECT_TRUE(table.RemoveEntry("one", 0));
    EXPECT_FALSE(table.RemoveEntry("one", 0));
    EXPECT_EQ(table.Lookup("one"), 3U);
  }
}

TEST_F(Hash, ANullKeyThrowsWithItsPosition) {
  const WordTable table(3);
  EXPECT_EQ(CodeOf([&] { table.Lookup(nullptr); }, "MCHash.cpp"), MC_E_INVALIDARG);
}

TEST_F(Hash, WorksWithSizeZeroAndWithoutMemory) {
  AssertionGuard guard({"size > 0", "Array allocation failed!"});
  WordTable small(0);
  small.AddAll();
  EXPECT_EQ(small.Lookup("two"), 1U);
  fMemory.RefuseAfter(0);
  WordTable table(4);
  EXPECT_FALSE(table.AddEntry("one", 0));
  EXPECT_EQ(table.Lookup("one"), kUnusedIndex);
}

}  // namespace
}  // namespace qlx::test
