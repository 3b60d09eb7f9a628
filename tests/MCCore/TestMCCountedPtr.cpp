#include "MCCountedPtr.h"

#include "HostedTest.h"

namespace qlx::test {
namespace {

using CountedPtr = HostedTest;
using Query = HostedTest;
using SmartPtr = HostedTest;

class IOther : public IMCUnknown {
 public:
  static constexpr MCGuid kInterfaceID = "0A0B0C0D-0000-0000-0000-000000000001"_guid;

 protected:
  ~IOther() = default;
};

// Never deletes itself, so that its count can be read to the end.
class Counted final : public IOther {
 public:
  MCResult MC_CALL QueryInterface(const MCGuid& inID, void** outObject) override {
    if (fLies) {
      *outObject = this;  // stored, but no success
      return MC_E_NOINTERFACE;
    }
    return inID == IOther::kInterfaceID ? MCStoreCounted<IOther>(this, outObject) : MCStoreNone(outObject);
  }
  uint32 MC_CALL AddRef() override {
    ++fCalls;
    return ++fRefs;
  }
  uint32 MC_CALL Release() override {
    if (--fRefs == 0) {
      fKept.Clear();
    }
    return fRefs;
  }

  uint32 fRefs = 1;
  int fCalls = 0;
  bool fLies = false;
  TMCCountedPtr<IOther> fKept;
};

// What a variable holds that was itself freed.
IOther* DeceasedPointer() {
  return reinterpret_cast<IOther*>(static_cast<std::uintptr_t>(kDeceased));
}

// A freed object, written over by the allocator. Calling it would end the process.
IOther* DeceasedObject() {
  alignas(16) static uint32 sMemory[8];
  std::fill(std::begin(sMemory), std::end(sMemory), kDeceased);
  return reinterpret_cast<IOther*>(sMemory);
}

const char* const kDeceasedOld = "!MCCheckDeceased(*pp)";
const char* const kDeceasedNew = "(lp == NULL) || !MCCheckDeceased(lp)";
const char* const kDeceasedNewObject = "(lp == NULL) || !MCCheckDeceased(*(void**)lp)";

TEST_F(CountedPtr, EachCallDoesWithTheReferenceWhatItsNameSays) {
  Counted object;
  {
    const auto shared = MCShare<IOther>(&object);
    EXPECT_EQ(object.fRefs, 2U);
    TMCCountedPtr<IOther> copy(shared);
    EXPECT_EQ(object.fRefs, 3U);
    TMCCountedPtr<IMCUnknown> root(copy);
    EXPECT_EQ(object.fRefs, 4U);
    TMCCountedPtr<IOther> moved(std::move(copy));
    EXPECT_EQ(object.fRefs, 4U);
    EXPECT_FALSE(copy);
    copy = moved;
    EXPECT_EQ(object.fRefs, 5U);
    copy = std::move(moved);
    EXPECT_EQ(object.fRefs, 4U);
    IOther* detached = copy.Detach();
    EXPECT_EQ(object.fRefs, 4U);
    EXPECT_TRUE(copy == nullptr);
    copy.Adopt(detached);
    EXPECT_EQ(object.fRefs, 4U);
    EXPECT_EQ(*copy.WriteInto(), nullptr);
    EXPECT_EQ(object.fRefs, 3U);
    root = nullptr;
    EXPECT_EQ(object.fRefs, 2U);
  }
  EXPECT_EQ(object.fRefs, 1U);
}

TEST_F(CountedPtr, AssigningWhatItHoldsLeavesTheCountAlone) {
  Counted object;
  auto pointer = MCShare<IOther>(&object);
  const auto& self = pointer;
  pointer = self;
  pointer.Share(&object);
  EXPECT_EQ(object.fRefs, 2U);
  EXPECT_EQ(object.fCalls, 1) << "one for the pointer, none for the assignments";
}

TEST_F(CountedPtr, TheNewReferenceIsTakenBeforeTheOldOneIsDropped) {
  Counted inner;
  Counted outer;
  outer.fKept.Adopt(&inner);  // its only reference
  TMCCountedPtr<IOther> pointer;
  pointer.Adopt(&outer);
  pointer.Share(outer.fKept.Get());  // ends the outer object, which lets go of the inner one
  EXPECT_EQ(outer.fRefs, 0U);
  EXPECT_EQ(inner.fRefs, 1U);
  pointer.Clear();
  EXPECT_EQ(inner.fRefs, 0U);
}

TEST_F(CountedPtr, DeceasedPointersAndObjectsAreReportedAndNeverCalled) {
  Counted object;
  const auto assigned = [](IOther* inHeld, IOther* inNext) {
    MCAssignCounted(&inHeld, inNext);
    return inHeld;
  };
  AssertionGuard guard({kDeceasedOld, kDeceasedNew, kDeceasedNewObject, "Bad Pointer", "Bad Pointer"});
  EXPECT_EQ(assigned(nullptr, &object), &object);
  EXPECT_EQ(assigned(DeceasedPointer(), &object), &object) << "a freed variable";
  EXPECT_EQ(object.fRefs, 3U);
  EXPECT_EQ(assigned(nullptr, DeceasedPointer()), nullptr);
  EXPECT_EQ(assigned(nullptr, DeceasedObject()), nullptr);
  MCAssignCounted<IOther>(nullptr, &object);
  MCAssignCounted(reinterpret_cast<IOther**>(DeceasedPointer()), static_cast<IOther*>(&object));
  EXPECT_EQ(object.fRefs, 3U);
}

TEST_F(CountedPtr, AccessAndReleaseOfDeceasedObjectsAreReported) {
  const char* const access = "fObject && !MCCheckDeceased(*(void**)fObject)";
  AssertionGuard guard({access, access, "(fObject == NULL) || !MCCheckDeceased(*(void**)fObject)",
                        "!MCCheckDeceased(*(void**)fObject)", "!MCCheckDeceased(fObject)"});
  TMCCountedPtr<IOther> pointer;
  EXPECT_EQ(pointer.operator->(), nullptr);
  EXPECT_EQ(pointer.Get(), nullptr);
  pointer.Adopt(DeceasedObject());
  EXPECT_EQ(pointer.operator->(), DeceasedObject());
  EXPECT_EQ(pointer.Get(), DeceasedObject());
  pointer.Clear();
  pointer.Adopt(DeceasedPointer());
  pointer.Clear();
}

TEST_F(Query, GivesTheObjectsOwnViewOrNull) {
  Counted object;
  const auto unknown = MCShare<IMCUnknown>(&object);
  {
    const auto other = MCQuery<IOther>(unknown);
    EXPECT_EQ(other.Get(), &object);
    EXPECT_EQ(object.fRefs, 3U);
  }
  EXPECT_EQ(object.fRefs, 2U);
  EXPECT_FALSE(MCQuery<IMCUnknown>(&object));  // this object does not answer for its root
  EXPECT_FALSE(MCQuery<IOther>(static_cast<IMCUnknown*>(nullptr)));
  object.fLies = true;
  EXPECT_FALSE(MCQuery<IOther>(&object));
  EXPECT_EQ(object.fRefs, 2U);
}

TEST(TMCPtr, ChecksAtEachAccess) {
  AssertionGuard guard({"fObject && !MCCheckDeceased(fObject)", "fObject && !MCCheckDeceased(fObject)",
                        "!MCCheckDeceased(*(void**)fObject)"});
  Counted object;
  EXPECT_EQ(TMCPtr<IOther>(&object)->AddRef(), 2U);
  EXPECT_EQ(TMCPtr<IOther>().operator->(), nullptr);
  EXPECT_EQ(TMCPtr<IOther>(DeceasedPointer()).operator->(), DeceasedPointer());
  EXPECT_EQ(TMCPtr<IOther>(DeceasedObject()).operator->(), DeceasedObject());
}

struct Base {
  virtual ~Base() = default;
};
struct Derived : Base {
  explicit Derived(int& inDeleted) : fDeleted(inDeleted) {}
  ~Derived() override { ++fDeleted; }
  int& fDeleted;
};

TEST_F(SmartPtr, DeletesWhatItOwnsOnce) {
  int deleted = 0;
  {
    TMCSmartPtr<Base> owner(new Derived(deleted));
    owner.Adopt(owner.Get());
    EXPECT_EQ(deleted, 0);
    owner.Adopt(new Derived(deleted));
    EXPECT_EQ(deleted, 1);
    TMCSmartPtr<Base> next(std::move(owner));
    EXPECT_FALSE(owner);
    delete next.Detach();
    EXPECT_EQ(deleted, 2);
    next.Adopt(new Derived(deleted));
  }
  EXPECT_EQ(deleted, 3);
  AssertionGuard guard({kDeceasedNew});
  TMCSmartPtr<Base> owner(reinterpret_cast<Base*>(DeceasedPointer()));
  EXPECT_FALSE(owner);
}

}  // namespace
}  // namespace qlx::test
