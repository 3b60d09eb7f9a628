// Fields and slots of the streams, which cross the binary boundary as objects, and the record of the token format.
#include <gtest/gtest.h>

#include <cstddef>

#include "AbiAccess.h"
#include "MCMemoryStream.h"
#include "MCToken.h"
#include "TestMemory.h"

namespace qlx {
namespace {

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
  abi::ExpectInOrder(2, &S::Tell, &S::Seek, &S::Read, &S::GetByte, &S::PutBack, &S::Write, &S::ReadDouble,
                     &S::ReadFloat, &S::ReadInt16, &S::ReadUInt16, &S::ReadInt32, &S::ReadUInt32, &S::ReadInt8,
                     &S::ReadUInt8, &S::Apply, &S::WriteDouble, &S::WriteFloat, &S::WriteInt16, &S::WriteUInt16,
                     &S::WriteInt32, &S::WriteUInt32, &S::WriteInt8, &S::WriteUInt8, &S::WriteText, &S::ReadWord,
                     &S::WriteTextValue, &S::WriteMCString, &S::ReadMCString, &S::Open);
}

}  // namespace
}  // namespace qlx
