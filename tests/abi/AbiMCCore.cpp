// Sizes, offsets and slots of the foundation where the closed host meets them, from the public headers alone. Sizes are
// asserted on the 32-bit targets, whose numbers they are.
#include <gtest/gtest.h>

#include "AbiAccess.h"
#include "MCArrayCore.h"
#include "MCException.h"
#include "MCObject.h"
#include "MCPtrArray.h"
#include "MCString.h"

namespace qlx {

static_assert(sizeof(MCGuid) == 16 && alignof(MCGuid) == 4);
static_assert(sizeof(MCResult) == 4 && sizeof(MCID) == 4);
static_assert(sizeof(ProcessorFeatures) == 4);
static_assert(kDeceased == 0xDECEA5ED);

// A base class that has no bytes and adds none.
static_assert(std::is_empty_v<TMCObject>);

#if UINTPTR_MAX == UINT32_MAX

static_assert(sizeof(TMCString15) == 32);
static_assert(sizeof(TMCString31) == 48);
static_assert(sizeof(TMCString63) == 80);
static_assert(sizeof(TMCString255) == 272);
static_assert(sizeof(TMCString1023) == 1040);
static_assert(sizeof(TMCDynamicString) == 20);

static_assert(sizeof(TMCArray<uint8>) == 16);
static_assert(sizeof(TMCArray<real64>) == 16);
static_assert(sizeof(TMCClassArray<TMCString255>) == 16);
static_assert(sizeof(TMCPtrArray<IMCUnknown>) == 16);
static_assert(sizeof(TMCCountedPtrArray<IMCUnknown>) == 16);
static_assert(sizeof(TMCCountedPtr<IMCUnknown>) == 4);
static_assert(sizeof(TMCPtr<IMCUnknown>) == 4);
static_assert(sizeof(TMCSmartPtr<TMCString>) == 4);

static_assert(sizeof(TMCCountedObject) == 20);
static_assert(sizeof(TMCSMPCountedObject) == 8);
static_assert(sizeof(TMCException) == 20);
static_assert(sizeof(CountedObjectBookkeeping) == 24);

// The root of the components: a table, a count and the outer object.
struct RootSize : IMCUnknown, TMCObject {
  int32 fRefCount;
  IMCUnknown* fOuter;

 protected:
  ~RootSize() = default;
};
static_assert(sizeof(RootSize) == 12);

#endif

namespace {

using abi::ValueAt;

constexpr std::size_t kTable = sizeof(void*);

}  // namespace

TEST(AbiMCCore, StringHoldsItsLengthsAfterTheTable) {
  const TMCString31 text("a\xC3\xA9");
  EXPECT_EQ(ValueAt<uint32>(&text, kTable), 2U);
  EXPECT_EQ(ValueAt<uint32>(&text, kTable + 4), 3U);
  EXPECT_EQ(ValueAt<uint32>(&text, kTable + 8), 31U);
  constexpr std::size_t kCountState = sizeof(void*) == 4 ? 0 : 1;  // whether the count is known
  EXPECT_EQ(ValueAt<char>(&text, kTable + 12 + kCountState), 'a');
}

TEST(AbiMCCore, StringOperationsStandInTheirOrder) {
  using S = TMCString;
  // The destructor takes the first two places on this compiler.
  abi::ExpectInOrder(2, static_cast<S& (S::*)(const S&)>(&S::operator=), static_cast<S& (S::*)(char)>(&S::operator+=),
                     static_cast<S& (S::*)(const S&)>(&S::operator+=), &S::operator<, &S::operator>, &S::operator<=,
                     &S::operator>=, static_cast<bool (S::*)(const S&) const>(&S::operator==),
                     static_cast<bool (S::*)(const S&) const>(&S::operator!=), &S::Insert, &S::SetByteLength,
                     &S::SetMaxLength, &S::Buffer, &TMCDynamicString::Reallocate);
}

TEST(AbiMCCore, ArrayHoldsCountsFlagsAndBlock) {
  int room[4] = {};
  const TMCArray<int> array(kExternalMemory, room, 1, 4);
  EXPECT_EQ(ValueAt<uint32>(&array, 0), 1U);
  EXPECT_EQ(ValueAt<uint32>(&array, 4), 4U);
  EXPECT_EQ(ValueAt<uint32>(&array, 8), 0x28000000U);  // valid, external
  EXPECT_EQ(ValueAt<void*>(&array, sizeof(array) - sizeof(void*)), static_cast<void*>(room));
  const TMCArray<int> growing;
  EXPECT_EQ(ValueAt<uint32>(&growing, 8), 0xB0000000U + 0x20000 / sizeof(int));  // automatic, valid, zero fill
}

TEST(AbiMCCore, CountedObjectHoldsCountSerialAndLinks) {
  TMCCountedObject* head = nullptr;
  TMCCountedObject* tail = nullptr;
  int32 serial = 41;
  int32 live = 0;
  InitMCCountedObject({&head, &tail, nullptr, nullptr, &serial, &live});
  {
    const TMCCountedObject first;
    const TMCCountedObject second;
    EXPECT_EQ(ValueAt<uint32>(&first, kTable), 1U);
    EXPECT_EQ(ValueAt<int32>(&first, kTable + 4), 42);
    EXPECT_EQ(ValueAt<const void*>(&second, kTable + 8), &first);
    EXPECT_EQ(ValueAt<const void*>(&first, kTable + 8 + sizeof(void*)), &second);
  }
  InitMCCountedObject({});
}

TEST(AbiMCCore, ExceptionHoldsCodeFileLineAndDetail) {
  struct Detail : TMCExceptionDetail {};
  auto* const detail = new Detail;
  const char* const file = "Module";
  const TMCException exception(MC_E_SILENT, file, 12, detail);
  const std::size_t word = sizeof(void*);
  EXPECT_EQ(ValueAt<MCResult>(&exception, word), MC_E_SILENT);
  EXPECT_EQ(ValueAt<const char*>(&exception, 2 * word), file);
  EXPECT_EQ(ValueAt<int32>(&exception, 3 * word), 12);
  EXPECT_EQ(ValueAt<void*>(&exception, 4 * word), static_cast<void*>(detail));
}

}  // namespace qlx
