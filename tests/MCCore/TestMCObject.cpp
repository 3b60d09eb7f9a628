#include "MCObject.h"

#include <thread>
#include <vector>

#include "HostedTest.h"
#include "MCCountedPtr.h"

namespace qlx::test {
namespace {

using CountedObject = HostedTest;
using Objects = HostedTest;
using SharedObject = HostedTest;

const char* const kNotInitialised = "InitMCCountedObject should be called before creating counted objects";
const MCGuid kUnknownInterface = "01234567-89AB-CDEF-0123-456789ABCDEF"_guid;

struct Plain : TMCObject {
  Plain() { ++sAlive; }
  ~Plain() { --sAlive; }
  static inline int sAlive = 0;
};

using Listed = std::vector<TMCCountedObject*>;

Listed Walk(TMCCountedObject* inFirst, TMCCountedObject* (TMCCountedObject::*inNext)() const) {
  Listed objects;
  for (TMCCountedObject* object = inFirst; object; object = (object->*inNext)()) {
    objects.push_back(object);
  }
  return objects;
}

TEST_F(Objects, AllocatesFromTheHostInBothForms) {
  Plain* object = new Plain;
  Plain* array = new Plain[3];
  EXPECT_EQ(fMemory.GetLiveBlocks(), 2);
  EXPECT_EQ(Plain::sAlive, 4);
  delete object;
  delete[] array;
  EXPECT_EQ(Plain::sAlive, 0);

  alignas(Plain) unsigned char room[sizeof(Plain)];
  Plain* placed = new (room) Plain;
  placed->~Plain();
  EXPECT_EQ(fMemory.GetRequests(), 2);
}

TEST_F(Objects, RefusedMemoryAnswersNullAndConstructsNothing) {
  fMemory.RefuseAfter(0);
  EXPECT_EQ(new Plain, nullptr);
  fMemory.RefuseAfter(0);
  EXPECT_EQ(new Plain[2], nullptr);
  fMemory.RefuseAfter(0);
  EXPECT_EQ(new (std::nothrow) Plain, nullptr);
  EXPECT_EQ(Plain::sAlive, 0);
}

TEST_F(Objects, WithoutAnAllocatorNewReportsAndDeleteIsQuiet) {
  Plain* volatile object = new Plain;  // the compiler takes it for dead after a delete that does nothing
  gMemoryUtilities = nullptr;
  {
    AssertionGuard guard({"gMemoryUtilities", "gMemoryUtilities"});
    EXPECT_EQ(new Plain, nullptr);
    EXPECT_EQ(new Plain[2], nullptr);
    Plain::operator delete(object);
  }
  gMemoryUtilities = &fMemory;
  delete object;
}

TEST_F(CountedObject, WorksBeforeTheListIsThere) {
  TMCCountedPtr<TMCCountedObject> object;
  AssertionGuard guard({kNotInitialised});
  TMCCountedObject::Create(object.WriteInto());
  ASSERT_TRUE(object);
  EXPECT_EQ(object->GetSerialNumber(), 0);
  EXPECT_EQ(object->AddRef(), 2U);
  EXPECT_EQ(object->Release(), 1U);

  // Made before, ended after: neither the list nor the count hears of it.
  TestBookkeeping books;
  TMCCountedPtr<TMCCountedObject> listed;
  TMCCountedObject::Create(listed.WriteInto());
  object.Clear();
  EXPECT_EQ(Walk(books.fHead, &TMCCountedObject::GetNextObject), Listed{listed.Get()});
  EXPECT_EQ(books.fLiveCount, 1);
}

TEST_F(CountedObject, StandsInTheListWhileItLives) {
  TestBookkeeping books;
  // Each row gives the order in which three objects end.
  const int kOrders[][3] = {{0, 1, 2}, {2, 1, 0}, {1, 0, 2}, {1, 2, 0}};
  for (const auto& order : kOrders) {
    SCOPED_TRACE(testing::PrintToString(std::vector<int>(order, order + 3)));
    const int32 serial = books.fSerial;
    TMCCountedPtr<TMCCountedObject> objects[3];
    for (auto& object : objects) {
      TMCCountedObject::Create(object.WriteInto());
    }
    EXPECT_EQ(objects[2]->GetSerialNumber(), serial + 3);
    Listed expected{objects[0].Get(), objects[1].Get(), objects[2].Get()};
    for (const int ended : order) {
      EXPECT_EQ(Walk(books.fHead, &TMCCountedObject::GetNextObject), expected);
      EXPECT_EQ(Walk(books.fTail, &TMCCountedObject::GetPreviousObject), Listed(expected.rbegin(), expected.rend()));
      EXPECT_EQ(books.fLiveCount, static_cast<int32>(expected.size()));
      std::erase(expected, objects[ended].Get());
      objects[ended].Clear();
    }
    EXPECT_EQ(books.fHead, nullptr);
    EXPECT_EQ(books.fTail, nullptr);
    EXPECT_EQ(books.fLiveCount, 0);
  }
}

TEST_F(CountedObject, LivesWithAHostThatGivesOnlyACounter) {
  int32 live = 0;
  InitMCCountedObject({nullptr, nullptr, nullptr, nullptr, nullptr, &live});
  TMCCountedPtr<TMCCountedObject> object;
  TMCCountedObject::Create(object.WriteInto());
  EXPECT_EQ(live, 1);
  object.Clear();
  EXPECT_EQ(live, 0);
  InitMCCountedObject({});
}

TEST_F(CountedObject, IsReportedWhenDestroyedWhileReferenced) {
  AssertionGuard guard({"fRefCount <= 1"});
  TestBookkeeping books;
  auto* object = new TMCCountedObject;
  object->AddRef();
  delete object;
}

template <class T>
using CountedObjects = HostedTest;
using BothFamilies = testing::Types<TMCCountedObject, TMCSMPCountedObject>;
TYPED_TEST_SUITE(CountedObjects, BothFamilies);

TYPED_TEST(CountedObjects, AnswerForTheRootInterfaceAlone) {
  TestBookkeeping books;
  TMCCountedPtr<TypeParam> object;
  TypeParam::Create(object.WriteInto());
  ASSERT_TRUE(object);
  EXPECT_EQ(books.fLiveCount, 1);

  void* view = nullptr;
  EXPECT_EQ(object->QueryInterface(IMCUnknown::kInterfaceID, &view), MC_S_OK);
  EXPECT_EQ(view, static_cast<IMCUnknown*>(object.Get()));
  EXPECT_EQ(static_cast<IMCUnknown*>(view)->Release(), 1U);

  view = &view;
  EXPECT_EQ(object->QueryInterface(kUnknownInterface, &view), MC_E_NOINTERFACE);
  EXPECT_EQ(view, nullptr);
  EXPECT_EQ(object->QueryInterface(IMCUnknown::kInterfaceID, nullptr), MC_E_INVALIDARG);
  EXPECT_EQ(object->AddRef(), 2U);
  EXPECT_EQ(object->Release(), 1U);
  object.Clear();
  EXPECT_EQ(books.fLiveCount, 0);
}

TYPED_TEST(CountedObjects, CreateStoresNullWithoutMemoryAndReportsANullPlace) {
  TestBookkeeping books;
  TypeParam* object = nullptr;
  this->fMemory.RefuseAfter(0);
  TypeParam::Create(&object);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(books.fLiveCount, 0);
  AssertionGuard guard({"outObject != NULL"});
  TypeParam::Create(nullptr);
}

TEST_F(SharedObject, CountsAcrossThreads) {
  TestBookkeeping books;
  TMCCountedPtr<TMCSMPCountedObject> shared;
  TMCSMPCountedObject::Create(shared.WriteInto());
  EXPECT_EQ(books.fHead, nullptr) << "these stay out of the list";
  EXPECT_EQ(books.fSerial, 1);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([object = shared] {
      for (int i = 0; i < 10000; ++i) {
        const TMCCountedPtr<TMCSMPCountedObject> another(object);
      }
    });
  }
  shared.Clear();  // the last thread ends the object
  for (std::thread& thread : threads) {
    thread.join();
  }
  threads.clear();
  EXPECT_EQ(books.fLiveCount, 0);
}

TEST_F(SharedObject, ReportsDestructionWhileReferencedAndCountsBelowZero) {
  AssertionGuard guard({"TMCSMPCountedObject: ref count < 0", "GetAtomicCounterValue(fRefCountAC) == 0"});
  struct Local : TMCSMPCountedObject {
    Local() { fRefCountAC = 0; }
  } object;
  EXPECT_EQ(object.Release(), 0xFFFFFFFFU);
}

}  // namespace
}  // namespace qlx::test
