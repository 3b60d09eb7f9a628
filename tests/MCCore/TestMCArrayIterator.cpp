#include "MCArrayIterator.h"

#include "HostedTest.h"

namespace qlx::test {
namespace {

const char* const kPastEnd = "Went past the end of the Array!!!";
const char* const kPastBeginning = "Went past the beginning of the Array!!!";

class Iterators : public HostedTest {
 protected:
  Iterators() {
    for (int& value : fValues) {
      fPointers.AddElem(&value);
      fPlain.AddElem(value);
    }
  }
  int fValues[3] = {10, 20, 30};
  TMCPtrArray<int> fPointers;
  TMCArray<int> fPlain;
};

TEST_F(Iterators, WalkForwardsAndBackwards) {
  std::vector<int> seen;
  TMCPtrArray<int> copy;
  EXPECT_TRUE(copy = fPointers);
  TMCPtrIterator pointers(copy);
  for (int* value = pointers.First(); pointers.More(); value = pointers.Next()) {
    seen.push_back(*value);
  }
  TMCArrayIterator plain(fPlain);
  for (int* value = plain.Last(); plain.More(); value = plain.Previous()) {
    seen.push_back(*value);
  }
  EXPECT_EQ(seen, (std::vector<int>{10, 20, 30, 30, 20, 10}));
}

TEST_F(Iterators, GoingOnFromPastAnEndIsReported) {
  AssertionGuard guard({kPastEnd, kPastBeginning, kPastEnd, kPastBeginning});
  TMCPtrIterator pointers(fPointers);
  EXPECT_EQ(pointers.Last(), &fValues[2]);
  EXPECT_EQ(pointers.Next(), nullptr);
  EXPECT_EQ(pointers.Next(), nullptr);
  EXPECT_EQ(pointers.First(), &fValues[0]);
  EXPECT_EQ(pointers.Previous(), nullptr);
  EXPECT_EQ(pointers.Previous(), nullptr);

  TMCPtrArray<int> empty;
  TMCPtrIterator nothing(empty);
  EXPECT_EQ(nothing.First(), nullptr);
  EXPECT_EQ(nothing.Next(), nullptr);
  EXPECT_EQ(nothing.Last(), nullptr);
  EXPECT_FALSE(nothing.More());
  EXPECT_EQ(nothing.Previous(), nullptr);
}

TEST_F(Iterators, ThePositionPastTheEndIsTheEndIndex) {
  AssertionGuard guard({"!(fCurrentIndex == 0xFFFFFFFD)"});
  std::vector<int> seen;
  TMCArrayIterator it(fPlain);
  for (; !it.AtEnd(); ++it) {
    seen.push_back(**it);
  }
  EXPECT_EQ(seen, (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(it.GetPosition(), kEndIndex);
  EXPECT_EQ(*it, nullptr);
  ++it;
  EXPECT_EQ(it.GetPosition(), kEndIndex);
}

TEST_F(Iterators, SurviveAChangeOfTheArray) {
  TMCArrayIterator it(fPlain);
  EXPECT_EQ(*it.First(), 10);
  fPlain.SetElemSpace(100);
  EXPECT_EQ(*it.Next(), 20);
  fPlain.SetElemCount(1);
  EXPECT_FALSE(it.More());
}

TEST_F(Iterators, TheCheckedFormWantsTheCheck) {
  const char* const unchecked = "fCurrent == NULL, did you forget to call/check More()?";
  AssertionGuard guard({unchecked, unchecked});
  TMCCheckedIterator<const TMCArray<int>> it(fPlain);
  EXPECT_EQ(it.Current(), nullptr);
  std::vector<int> seen;
  while (it.More()) {
    seen.push_back(*it.Current());
  }
  EXPECT_EQ(seen, (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(it.Current(), nullptr);
}

}  // namespace
}  // namespace qlx::test
