// Fields and slots of the streams, which cross the binary boundary as objects, and the record of the token format.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "AbiAccess.h"
#include "MCMemoryStream.h"
#include "MCToken.h"
#include "TestMemory.h"

namespace qlx {
namespace {

using abi::SlotOf;
using abi::ValueAt;

static_assert(sizeof(MCTokenState) == 16 && alignof(MCTokenState) == 4);
static_assert(offsetof(MCTokenState, flag0) == 0 && offsetof(MCTokenState, compact) == 1);
static_assert(offsetof(MCTokenState, indent) == 2 && offsetof(MCTokenState, depth) == 4);
static_assert(offsetof(MCTokenState, pending) == 8 && offsetof(MCTokenState, tokenValue) == 12);
static_assert(MCToken::kStateKey == 0x546F6B6E && MCToken::kMoreID == 0x4D4F5245);

#if UINTPTR_MAX == UINT32_MAX
static_assert(sizeof(TMCStream) == 44);
static_assert(sizeof(TMCMemoryStream) == 64);
#endif

constexpr std::size_t kWord = sizeof(void*);

TEST(AbiStreams, FieldsStandInTheirOrder) {
  const test::TestMemory allocator;
  char memory[16] = "0123456789";
  TMCMemoryStream stream(memory, 10, kStreamReadable | kStreamWritable);
  stream.flags(0x1234);
  stream.precision(5);
  stream.width(7);
  stream.SetInfo("abcd"_id, memory, 1);
  char room[4];
  stream.Seek(8, kFromStart).Read(room, 4);
  const std::size_t infos = kWord + 6 * sizeof(uint32);
  EXPECT_EQ(ValueAt<uint32>(&stream, kWord), 0x1234U);
  EXPECT_EQ(ValueAt<uint32>(&stream, kWord + 4), 1U) << "state: end of file";
  EXPECT_EQ(ValueAt<uint32>(&stream, kWord + 8), 3U) << "mode";
  EXPECT_EQ(ValueAt<int32>(&stream, kWord + 12), 5) << "precision";
  EXPECT_EQ(ValueAt<int32>(&stream, kWord + 16), 7) << "second format value";
  EXPECT_EQ(ValueAt<int32>(&stream, kWord + 20), 2) << "gcount";
  EXPECT_EQ(ValueAt<uint32>(ValueAt<const void*>(&stream, infos), 0), "abcd"_id);
  EXPECT_EQ(ValueAt<uint32>(&stream, infos + kWord), 1U) << "infos";
  EXPECT_EQ(ValueAt<const void*>(&stream, infos + 2 * kWord), &kUtf8Encoding);
  EXPECT_EQ(ValueAt<uint8>(&stream, infos + 3 * kWord), 0) << "bytes of the mark";
  const std::size_t own = infos + 4 * kWord;
  EXPECT_EQ(ValueAt<char*>(&stream, own), memory);
  EXPECT_EQ(ValueAt<int32>(&stream, own + kWord), 10) << "size";
  EXPECT_EQ(ValueAt<int32>(&stream, own + kWord + 4), 10) << "capacity";
  EXPECT_EQ(ValueAt<int32>(&stream, own + kWord + 8), 10) << "cursor";
  EXPECT_EQ(ValueAt<void*>(&stream, sizeof stream - kWord), nullptr) << "the block";
}

TEST(AbiStreams, OperationsStandInTheirOrder) {
  using S = TMCStream;
  // The destructor takes the first two places on this compiler.
  const std::vector<std::size_t> slots = {
      SlotOf(&S::Tell),        SlotOf(&S::Seek),           SlotOf(&S::Read),          SlotOf(&S::GetByte),
      SlotOf(&S::PutBack),     SlotOf(&S::Write),          SlotOf(&S::ReadDouble),    SlotOf(&S::ReadFloat),
      SlotOf(&S::ReadInt16),   SlotOf(&S::ReadUInt16),     SlotOf(&S::ReadInt32),     SlotOf(&S::ReadUInt32),
      SlotOf(&S::ReadInt8),    SlotOf(&S::ReadUInt8),      SlotOf(&S::Apply),         SlotOf(&S::WriteDouble),
      SlotOf(&S::WriteFloat),  SlotOf(&S::WriteInt16),     SlotOf(&S::WriteUInt16),   SlotOf(&S::WriteInt32),
      SlotOf(&S::WriteUInt32), SlotOf(&S::WriteInt8),      SlotOf(&S::WriteUInt8),    SlotOf(&S::WriteText),
      SlotOf(&S::ReadWord),    SlotOf(&S::WriteTextValue), SlotOf(&S::WriteMCString), SlotOf(&S::ReadMCString),
      SlotOf(&S::Open),
  };
  for (std::size_t i = 0; i < slots.size(); ++i) {
    EXPECT_EQ(slots[i], i + 2) << "operation " << i;
  }
}

}  // namespace
}  // namespace qlx
