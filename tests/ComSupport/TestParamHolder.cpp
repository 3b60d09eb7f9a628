#include "FakeObject.h"
#include "HostedTest.h"
#include "ParamHolder.h"
#include "ThrownBy.h"

namespace qlx {

namespace {

int gLiveValues = 0;

// A type that counts its values and fills fresh ones with its own mark.
template <std::size_t kSize>
class CountingType final : public test::FakeObject<ParamType> {
 public:
  explicit CountingType(MCID inWord) : fWord(inWord) {}
  MCID MC_CALL GetTypeID() override { return fWord; }
  uint32 MC_CALL GetDataSize() override { return kSize; }
  void MC_CALL ConstructData(void* outData) override {
    ++gLiveValues;
    std::memset(outData, 0x11, kSize);
  }
  void MC_CALL DestructData(void*) override { --gLiveValues; }
  void MC_CALL CopyData(const void* inSource, void* outDestination) override {
    std::memcpy(outDestination, inSource, kSize);
  }

 private:
  MCID fWord;
};

class TestRegistry final : public test::FakeObject<ParamTypeRegistry> {
 public:
  TestRegistry() { SetParamTypeRegistry(this); }
  ~TestRegistry() override { SetParamTypeRegistry(nullptr); }
  ParamType* MC_CALL GetParamType(MCID inWord) override {
    for (ParamType* const type : std::initializer_list<ParamType*>{&fReal, &fSigned, &fVector, &fDirection, &fFlag}) {
      if (type->GetTypeID() == inWord) {
        return type;
      }
    }
    return nullptr;
  }

  CountingType<4> fReal{"re32"_id};
  CountingType<4> fSigned{"sr32"_id};
  CountingType<12> fVector{"vec3"_id};
  CountingType<12> fDirection{"dire"_id};
  CountingType<1> fFlag{"bool"_id};
};

class ParamHolders : public test::HostedTest {
 protected:
  TestRegistry fRegistry;
};

}  // namespace

TEST_F(ParamHolders, RefersToTheCallersBytes) {
  const ParamHolder empty;
  EXPECT_EQ(empty.GetType(), 0U);
  EXPECT_FALSE(empty.IsValid());
  EXPECT_FALSE(ParamHolder("re32"_id).IsValid()) << "a type and no bytes";
  real32 value = 1;
  ParamHolder holder("re32"_id, &value);
  ParamHolder copy = holder;
  *copy.AsReal32() = 7;
  EXPECT_EQ(value, 7);
  EXPECT_EQ(gLiveValues, 0);
}

TEST_F(ParamHolders, AnAccessorOfAnotherTypeIsReportedAndGivesThePointer) {
  real32 number = 0;
  TVector3 vector;
  test::AssertionGuard reports({"GetType()=='bool'", "GetType()=='re64'", "GetType()=='re32' || GetType()=='sr32'",
                                "GetType()=='vec3' || GetType()=='dire'", "GetType()=='in16'", "GetType()=='in32'",
                                "GetType()=='vec2'", "GetType()=='mx33'", "GetType()=='mqua'"});
  EXPECT_EQ(ParamHolder("sr32"_id, &number).AsReal32(), &number) << "a signed real is a real";
  EXPECT_EQ(ParamHolder("dire"_id, &vector).AsVector3(), &vector) << "a direction is a vector";
  ParamHolder holder("re32"_id, &number);
  EXPECT_EQ(static_cast<void*>(holder.AsBool()), &number);
  EXPECT_EQ(static_cast<void*>(holder.AsReal64()), &number);
  EXPECT_EQ(static_cast<void*>(ParamHolder("vec3"_id, &vector).AsReal32()), &vector);
  EXPECT_EQ(static_cast<void*>(holder.AsVector3()), &number);
  holder.AsInt16();
  std::as_const(holder).AsInt32();
  holder.AsVector2();
  holder.AsMatrix33();
  holder.AsQuaternion();
}

TEST_F(ParamHolders, UnknownTypesAndMissingBytesThrow) {
  int32 value = 0;
  EXPECT_EQ(test::CodeOf([&] { ParamHolder("none"_id, &value); }), MC_E_INVALIDARG);
  EXPECT_EQ(test::CodeOf([&] { ParamHolder{"none"_id}; }), MC_E_INVALIDARG);
  EXPECT_EQ(test::CodeOf([&] { ParamHolder("re32"_id, nullptr); }), MC_E_INVALIDARG);
  EXPECT_EQ(test::CodeOf([&] { ParamHolder(&fRegistry.fReal, nullptr); }), MC_E_INVALIDARG);
  OwningParamHolder holder;
  EXPECT_EQ(test::CodeOf([&] { holder.SetType("none"_id); }), MC_E_INVALIDARG);
  EXPECT_EQ(fRegistry.fReal.fCount, 0);
}

TEST_F(ParamHolders, OwnersMakeCopiesAndEndTheirValue) {
  {
    real32 value = 3;
    const ParamHolder source("re32"_id, &value);
    OwningParamHolder copy(source);
    EXPECT_EQ(*copy.AsReal32(), 3);
    *copy.AsReal32() = 4;
    EXPECT_EQ(value, 3) << "it has bytes of its own";
    OwningParamHolder second(copy);
    EXPECT_NE(second.GetData(), copy.GetData());
    EXPECT_EQ(*second.AsReal32(), 4);
    second.SetType("re32"_id);
    EXPECT_EQ(*second.AsReal32(), 4) << "the present type keeps the value";
    second.SetType("vec3"_id);
    EXPECT_EQ(second.GetType(), "vec3"_id);
    EXPECT_EQ(static_cast<uint8*>(second.GetData())[11], 0x11) << "another one gives a fresh value";
    second = source;
    EXPECT_EQ(*second.AsReal32(), 3);
    second = *&second;
    EXPECT_EQ(*second.AsReal32(), 3);
    EXPECT_EQ(gLiveValues, 2);
  }
  EXPECT_EQ(gLiveValues, 0);
  EXPECT_EQ(fRegistry.fReal.fCount, 0);
}

TEST_F(ParamHolders, ASourceWithoutTypeIsReportedUnlessItsOwnerToleratesIt) {
  test::AssertionGuard reports({"fParamType", "fParamType == src.fParamType"});
  EXPECT_FALSE(OwningParamHolder(ParamHolder()).IsValid());
  EXPECT_FALSE(OwningParamHolder(ParamHolder(), OwningParamHolder::Tolerant()).IsValid());
  OwningParamHolder holder("bool"_id);
  real32 value = 1;
  holder.CopyDataFrom(ParamHolder("re32"_id, &value));
}

TEST_F(ParamHolders, OwnersWithoutMemoryHaveNoBytesAndFailNothing) {
  test::WithEachAllocationRefused(fMemory, [](int) {
    OwningParamHolder holder("re32"_id);
    const OwningParamHolder copy(holder);
    EXPECT_EQ(holder.IsValid(), holder.GetData() != nullptr);
  });
  EXPECT_EQ(gLiveValues, 0);
}

}  // namespace qlx
