#include <algorithm>

#include "FakeObject.h"
#include "HostedTest.h"
#include "MCClassArray.h"
#include "MCMemory.h"
#include "MCPtrArray.h"
#include "SilentReports.h"

namespace qlx::test {
namespace {

using Array = HostedTest;
using ClassArray = HostedTest;
using CountedPtrArray = HostedTest;

const char* const kRefused = "Array allocation failed!";
const char* const kRefusedInConstructor = "Array allocation failed in constructor!";
const char* const kExternalResize = "Can't resize array with external memory";
const char* const kBadIndex = "index < GetElemCount()";
const char* const kTooMany = "Removing more items than are in the array!!";

using Ints = std::vector<int>;

template <class Elements>
Ints Values(const Elements& inArray) {
  Ints values;
  for (const auto& elem : inArray) {
    values.push_back(static_cast<int>(elem));
  }
  return values;
}

TMCArray<int> Counting(uint32 inCount) {
  TMCArray<int> array;
  for (uint32 i = 0; i < inCount; ++i) {
    array.AddElem(static_cast<int>(i));
  }
  return array;
}

// Counts the living, and keeps a value that its destructor wipes.
struct Living {
  Living() { ++sAlive; }
  Living(int inValue) : fValue(inValue) { ++sAlive; }
  Living(const Living& inSource) : fValue(inSource.fValue) { ++sAlive; }
  Living& operator=(const Living& inSource) = default;
  ~Living() {
    fValue = -1;
    --sAlive;
  }
  operator int() const { return fValue; }
  int fValue = 7;
  static inline int sAlive = 0;
};

TEST_F(Array, GrowsByAFifthAtMost128KiBAtOnce) {
  struct Wide {
    uint8 fBytes[0x20000 / 4];
  };
  TMCArray<double> array;
  EXPECT_TRUE(array.AddElem(1));
  EXPECT_EQ(array.GetElemSpace(), 1U);
  EXPECT_TRUE(array.AddElem(2));
  EXPECT_EQ(array.GetElemSpace(), 2U);  // 1 + floor(0.2) + 1
  array.SetElemCount(1000);
  EXPECT_EQ(array.GetElemSpace(), 1000U);
  EXPECT_TRUE(array.AddElem(3));
  EXPECT_EQ(array.GetElemSpace(), 1201U);
  array.SetElemCount(200000);
  EXPECT_TRUE(array.AddElem(4));
  EXPECT_EQ(array.GetElemSpace(), 200000U + 0x20000 / 8);

  TMCArray<Wide> wide;
  wide.SetElemCount(100);
  EXPECT_TRUE(wide.AddElem(Wide{}));
  EXPECT_EQ(wide.GetElemSpace(), 104U);
}

TEST_F(Array, GrowsByItsGrowSizeWhenItWasMadeWithCounts) {
  AssertionGuard guard({"grow size is zero!!"});
  TMCArray<int> array(2, 3, 5);
  EXPECT_FALSE(array.IsAutoGrowing());
  EXPECT_EQ(Values(array), (Ints{0, 0}));
  array.AddElem(1);
  EXPECT_EQ(array.GetElemSpace(), 3U);
  array.AddElem(2);
  EXPECT_EQ(array.GetElemSpace(), 8U);
  EXPECT_TRUE(array.AddElemCount(6));
  EXPECT_EQ(array.GetElemSpace(), 10U);  // whole grow steps
  EXPECT_EQ(Values(array), (Ints{0, 0, 1, 2, 0, 0, 0, 0, 0, 0}));

  array.SetGrowSize(0);
  EXPECT_FALSE(array.AddElemCount(1));
  EXPECT_EQ(array.GetElemCount(), 10U);
  EXPECT_TRUE(array.AddElem(3));  // one element always finds room
  EXPECT_EQ(array.GetElemSpace(), 11U);
}

TEST_F(Array, AGrowSizeKeeps27BitsAndSaysSo) {
  AssertionGuard guard;
  TMCArray<int> array;
  array.SetGrowSize(0x7FFFFFF);
  EXPECT_EQ(guard.GetPlainReportCount(), 0);
  array.SetGrowSize(0x8000003);
  EXPECT_EQ(guard.GetPlainReportCount(), 1);
  EXPECT_EQ(array.GetGrowSize(), 3U);
  EXPECT_TRUE(array.IsValid());
  EXPECT_FALSE(array.ExternalMemory());
}

TEST_F(Array, AddsAnElementOfItselfWhenFull) {
  TMCArray<int> array = Counting(4);
  array.SetElemSpace(4);
  EXPECT_TRUE(array.AddElem(array[2]));
  TMCClassArray<Living> living(0, 1);
  living.AddElem(Living(5));
  EXPECT_TRUE(living.AddElem(living[0]));
  EXPECT_EQ(array[4], 2);
  EXPECT_EQ(living[1].fValue, 5);
}

TEST_F(Array, SpaceAndCountFollowEachOther) {
  TMCArray<int> array = Counting(5);
  EXPECT_TRUE(array.SetElemSpace(3));
  EXPECT_EQ(Values(array), (Ints{0, 1, 2}));
  EXPECT_TRUE(array.SetElemCount(7));
  EXPECT_EQ(array.GetElemSpace(), 7U);
  EXPECT_EQ(Values(array), (Ints{0, 1, 2, 0, 0, 0, 0}));
  EXPECT_TRUE(array.SetElemCount(1));
  EXPECT_EQ(array.GetElemSpace(), 7U);
  EXPECT_TRUE(array.SetElemCount(3));
  EXPECT_EQ(Values(array), (Ints{0, 0, 0})) << "vacated elements are cleared";
  EXPECT_TRUE(array.SetElemSpace(0));
  EXPECT_EQ(array.BaseAddress(), nullptr);
  EXPECT_EQ(fMemory.GetLiveBlocks(), 0);
}

TEST_F(Array, WithoutZeroFillBytesStayAsTheyAre) {
  TMCArray<int> array(0, 1, 1, false);
  array.AddElem(1);
  array.SetElemCount(0);
  array.SetElemCount(1);
  EXPECT_EQ(array[0], 1);
}

TEST_F(Array, RemovesARunAndReportsWhatIsNotThere) {
  const struct {
    const char* fLabel;
    uint32 fIndex, fCount;
    bool fResult;
    std::vector<int> fLeft;
    std::vector<std::string> fReports;
  } kRows[] = {
      {"nothing", 9, 0, true, {0, 1, 2, 3, 4}, {}},
      {"middle", 1, 3, true, {0, 4}, {}},
      {"all", 0, 5, true, {}, {}},
      {"past the end", 3, 9, true, {0, 1, 2}, {kTooMany}},
      {"a count that wraps", 3, 0xFFFFFFFF, true, {0, 1, 2}, {kTooMany}},
      {"an index at the end", 5, 1, false, {0, 1, 2, 3, 4}, {kBadIndex, kTooMany}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fLabel);
    AssertionGuard guard(row.fReports);
    TMCArray<int> array = Counting(5);
    const uint32 space = array.GetElemSpace();
    EXPECT_EQ(array.RemoveElem(row.fIndex, row.fCount), row.fResult);
    EXPECT_EQ(Values(array), row.fLeft);
    EXPECT_EQ(array.GetElemSpace(), space);
    for (uint32 i = array.GetElemCount(); i < 5; ++i) {
      EXPECT_EQ(array.BaseAddress()[i], 0) << "vacated";
    }
  }
  AssertionGuard guard({"BaseAddress()", kBadIndex, kTooMany});
  EXPECT_FALSE(TMCArray<int>().RemoveElem(0));
}

TEST_F(Array, FindsByComparisonOrByBytes) {
  struct Bytes {
    uint8 fBytes[3];
  };
  AssertionGuard guard({kBadIndex});
  TMCArray<float> numbers;
  numbers.AddElem(-0.0F);
  numbers.AddElem(2.5F);
  EXPECT_EQ(numbers.FindElem(0.0F), 0U);  // equal, though not in every bit
  EXPECT_EQ(numbers.FindElem(2.5F), 1U);
  EXPECT_EQ(numbers.FindElem(3.5F), kUnusedIndex);
  TMCArray<Bytes> bytes;
  bytes.AddElem({{1, 2, 3}});
  bytes.AddElem({{1, 2, 4}});
  EXPECT_EQ(bytes.FindElem({{1, 2, 4}}), 1U);

  numbers.SetElemCount(1);
  EXPECT_EQ(numbers[1], 0.0F);  // reported, and read all the same
}

TEST_F(Array, CopiesAndRefreshesItsGrowth) {
  const TMCArray<int> source = Counting(3);
  TMCArray<int> target = Counting(9);
  EXPECT_TRUE(target = source);
  EXPECT_EQ(Values(target), (Ints{0, 1, 2}));
  const TMCArray<int>& self = target;
  EXPECT_TRUE(target = self);
  EXPECT_EQ(Values(target), (Ints{0, 1, 2}));
  TMCArray<int> copy(source);
  copy[0] = 9;
  EXPECT_EQ(source[0], 0);

  TMCArray<int> whole = Counting(6);
  const TMCArray<int> part(whole, 3, 2);
  EXPECT_TRUE(whole = part) << "a part of the very array";
  EXPECT_EQ(Values(whole), (Ints{3, 4}));
  TMCArray<int> base = Counting(4);
  TMCArray<int> view(base, 1, 3);
  const TMCArray<int> shifted(base, 0, 3);
  EXPECT_TRUE(view = shifted) << "onto itself, one further";
  EXPECT_EQ(Values(base), (Ints{0, 0, 1, 2}));
}

TEST_F(Array, AViewLooksAtItsSourceAndNeverChangesItsSize) {
  TMCArray<int> source = Counting(6);
  {
    AssertionGuard guard(std::vector<std::string>(3, kExternalResize));
    TMCArray<int> view(source, 2, 3);
    EXPECT_TRUE(view.IsRangeView());
    EXPECT_TRUE(view.ExternalMemory());
    EXPECT_EQ(Values(view), (Ints{2, 3, 4}));
    EXPECT_EQ(view.BaseAddress(), source.BaseAddress() + 2);
    view[0] = 20;
    EXPECT_FALSE(view.SetElemSpace(8));
    EXPECT_FALSE(view.SetElemCount(4));
    EXPECT_FALSE(view.AddElem(1));
    EXPECT_TRUE(view.SetElemSpace(3));
  }
  EXPECT_EQ(Values(source), (Ints{0, 1, 20, 3, 4, 5})) << "the end of a view clears nothing";
  EXPECT_EQ(TMCArray<int>(source, 77, 0).GetElemCount(), 0U);
  AssertionGuard guard({"(elemStart < array.GetElemCount()) && (elemStart + elemCount <= array.GetElemCount())"});
  EXPECT_EQ(TMCArray<int>(source, 5, 2).GetElemCount(), 2U);
}

TEST_F(Array, WorksOnTheCallersMemory) {
  int room[4] = {5, 6, 7, 8};
  {
    AssertionGuard guard({kExternalResize});
    TMCArray<int> array(kExternalMemory, room, 1, 3);
    EXPECT_FALSE(array.IsRangeView());
    EXPECT_TRUE(array.AddElem(1));
    EXPECT_TRUE(array.AddElem(2));
    EXPECT_FALSE(array.AddElem(3));
    EXPECT_EQ(Values(array), (Ints{5, 1, 2}));
  }
  EXPECT_EQ(std::vector<int>(room, room + 4), (Ints{5, 1, 2, 8}));
  EXPECT_EQ(fMemory.GetRequests(), 0);
}

TEST_F(Array, ImpossibleCountsLeaveItInvalidAndHarmless) {
  const char* const few = "initialCount <= initialSpace";
  const char* const many = "initialCount > initialSpace";
  const char* const valid = "IsValid()";
  AssertionGuard guard({few, many, kRefusedInConstructor, valid, valid, valid, few, many, valid,
                        "nAsMCSize < kEndIndex", "nAsMCSize < kEndIndex"});
  TMCArray<int> array(3, 2);
  EXPECT_FALSE(array.AddElem(1));
  EXPECT_FALSE(array.SetElemCount(1));
  int room[1] = {};
  EXPECT_EQ(TMCArray<int>(kExternalMemory, room, 2, 1).GetElemCount(), 0U);
  TMCArray<uint8> bytes;
  EXPECT_FALSE(bytes.SetElemCount(kEndIndex));
  bytes.AddElem(1);
  EXPECT_FALSE(bytes.AddElemCount(0xFFFFFFFF));
  EXPECT_EQ(fMemory.GetRequests(), 1);
}

TEST_F(Array, IsInvalidOnceDestroyed) {
  alignas(TMCArray<int>) unsigned char room[sizeof(TMCArray<int>)];
  auto* array = new (room) TMCArray<int>;
  array->AddElem(1);
  EXPECT_TRUE(array->IsValid());
  array->~TMCArray();
  // The compiler may take a dead object's bytes for undefined, so look through a pointer that it cannot follow.
  TMCArray<int>* volatile dead = array;
  EXPECT_FALSE(dead->IsValid());
}

TEST_F(Array, StaysAsItWasWhenMemoryIsRefused) {
  AssertionGuard guard({kRefused, kRefused, kRefused, kRefused,
                        "Unable to complete operator=() memory allocation failed.", kRefused, kRefusedInConstructor});
  const TMCArray<int> larger = Counting(20);
  TMCArray<int> array = Counting(3);
  array.SetElemSpace(3);
  const auto refused = [&](auto&& inChange) {
    fMemory.RefuseAfter(0);
    EXPECT_FALSE(inChange());
    EXPECT_EQ(Values(array), (Ints{0, 1, 2}));
    EXPECT_EQ(array.GetElemSpace(), 3U);
  };
  refused([&] { return array.AddElem(3); });
  refused([&] { return array.SetElemCount(9); });
  refused([&] { return array.AddElemCount(2); });
  refused([&] { return array = larger; });
  fMemory.RefuseAfter(0);
  EXPECT_EQ(TMCArray<int>(1, 1).GetElemCount(), 0U);
}

#if SIZE_MAX == UINT32_MAX
TEST_F(Array, ABlockBeyondTheAddressSpaceIsRefused) {
  AssertionGuard guard({kRefused});
  TMCArray<double> array;
  EXPECT_FALSE(array.SetElemSpace(0x20000001));
  EXPECT_EQ(fMemory.GetRequests(), 0);
}
#endif

TEST_F(ClassArray, EveryElementLivesFromItsAddingToItsDropping) {
  Living::sAlive = 0;
  {
    TMCClassArray<Living> array;
    for (int i = 0; i < 5; ++i) {
      array.AddElem(Living(i));
    }
    EXPECT_EQ(Living::sAlive, 5);
    array.RemoveElem(1, 2);
    EXPECT_EQ(Values(array), (Ints{0, 3, 4}));
    EXPECT_EQ(Living::sAlive, 3);
    array.SetElemCount(4);
    EXPECT_EQ(array[3].fValue, 7) << "constructed, not only cleared";
    TMCClassArray<Living> copy(array);
    EXPECT_EQ(Living::sAlive, 8);
    copy.SetElemSpace(1);
    EXPECT_EQ(Living::sAlive, 5);
    EXPECT_TRUE(array = copy);
    EXPECT_EQ(Values(array), (Ints{0}));
    EXPECT_EQ(Living::sAlive, 2);
  }
  EXPECT_EQ(Living::sAlive, 0);
}

TEST_F(ClassArray, AViewNeitherMakesNorEndsElements) {
  Living::sAlive = 0;
  {
    AssertionGuard guard({kExternalResize});
    TMCClassArray<Living> array(4, 4);
    TMCClassArray<Living> view(array, 1, 2);
    view.RemoveElem(1);
    EXPECT_EQ(view.GetElemCount(), 1U);
    view.AddElem(Living(9));
    EXPECT_FALSE(view.RemoveElem(0));
    EXPECT_EQ(Living::sAlive, 4);
    EXPECT_EQ(Values(array), (Ints{7, 7, 9, 7}));
  }
  EXPECT_EQ(Living::sAlive, 0);
}

TEST_F(ClassArray, ArraysOfArraysSurviveEveryRefusal) {
  WithEachAllocationRefused(fMemory, [&](int) {
    const SilentReports reports;
    TMCClassArray<TMCArray<int>> rows;
    for (int i = 0; i < 4; ++i) {
      TMCArray<int> row;
      row.AddElem(i);
      rows.AddElem(row);
    }
    TMCClassArray<TMCArray<int>> copy(rows);
    copy.RemoveElem(0, std::min(copy.GetElemCount(), 2U));
  });
}

class Referenced final : public FakeObject<IMCUnknown> {};

TEST_F(CountedPtrArray, HoldsAReferenceOfEachElement) {
  AssertionGuard guard({"fGrowSize is zero!!"});
  Referenced first;
  Referenced second;
  {
    TMCCountedPtrArray<Referenced> array(0, 1, 1, false);
    EXPECT_TRUE(array.AddElem(&first));
    EXPECT_TRUE(array.AddElem(&second));
    EXPECT_TRUE(array.AddElem(array[0]));
    EXPECT_TRUE(array.AddElem(nullptr));
    EXPECT_EQ(array.FindElem(&second), 1U);
    const TMCCountedPtrArray<Referenced> copy(array);
    EXPECT_EQ(first.fCount, 4);
    array.RemoveElem(0);
    EXPECT_EQ(first.fCount, 3);
    array.SetElem(0, &first);
    EXPECT_EQ(first.fCount, 4);
    EXPECT_EQ(second.fCount, 1);
    array.SetElemCount(1);
    EXPECT_EQ(first.fCount, 3);
    array.SetElemCount(2);
    EXPECT_EQ(array.GetElem(1), nullptr) << "zero fill is forced";
    array.SetGrowSize(0);
    EXPECT_FALSE(array.AddElemCount(9));
  }
  EXPECT_EQ(first.fCount, 0);
  EXPECT_EQ(second.fCount, 0);
}

TEST_F(CountedPtrArray, ARefusedAddTakesNoReference) {
  AssertionGuard guard({kRefused});
  Referenced object;
  TMCCountedPtrArray<Referenced> array;
  fMemory.RefuseAfter(0);
  EXPECT_FALSE(array.AddElem(&object));
  EXPECT_EQ(object.fCount, 0);
}

}  // namespace
}  // namespace qlx::test
