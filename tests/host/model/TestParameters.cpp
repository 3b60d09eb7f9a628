#include <gtest/gtest.h>

#include <limits>

#include "MatrixQuaternion.h"
#include "ModelTest.h"
#include "ParamHolder.h"
#include "model/ParamTypes.h"
#include "model/ParameterRows.h"

namespace qlx::host {

using test::TestScene;

namespace {

// Climbs down by ids, as a text path does.
TMCCountedPtr<ParamInfo> FindParameter(Element& inElement, std::initializer_list<MCID> inIDs) {
  TMCCountedPtr<ParamInfo> found;
  TimeBasedData* data = MCQuery<I3DShAttributes>(&inElement)->GetTimeBasedData();
  for (const MCID id : inIDs) {
    found = nullptr;
    for (uint32 i = 0; data != nullptr && i < data->GetParamCount() && !found; ++i) {
      TMCCountedPtr<ParamInfo> parameter;
      data->GetParamInfo(parameter.WriteInto(), i);
      if (parameter->GetParamID() == id) {
        found = parameter;
      }
    }
    if (!found) {
      return nullptr;
    }
    data = found->GetGroupData();
  }
  return found;
}

TMCCountedPtr<ParamInfo> FindRotationX(Element& inElement) {
  return FindParameter(inElement, {"amet"_id, "TRAN"_id, "ROTA"_id, "RotX"_id});
}

constexpr MCID kPlainReal = "qfix"_id;

struct Number {
  real32 fValue;
  ParamHolder fHolder;
  explicit Number(real32 inValue, MCID inType = kPlainReal) : fValue(inValue), fHolder(inType, &fValue) {}
};

class ParameterTest : public testing::Test {
 protected:
  ParameterTest() { SetParamTypeRegistry(&GetParamTypes()); }
  ~ParameterTest() override { SetParamTypeRegistry(nullptr); }
};

using Parameters = ParameterTest;

}  // namespace

TEST_F(Parameters, StandInTheirTreeByTheFixedPaths) {
  TestScene scene;
  Element& element = scene.Add("Element");
  element.GetOrMakeCurve(Channel::kScaleY).SetKey({.fTime = 0, .fValue = 2.5f});
  scene->Evaluate(0);
  std::vector<std::string> rows;
  ForEachParameter(element, [&rows](const ParameterRow& row) {
    EXPECT_EQ(row.fType, "qfix"_id);
    rows.push_back(row.fPath + "=" + row.fValue + (row.fIsAnimated ? "*" : ""));
  });
  EXPECT_EQ(rows, (std::vector<std::string>{"self,amet,TRAN,OFFS,XCOO=0", "self,amet,TRAN,OFFS,YCOO=0",
                                            "self,amet,TRAN,OFFS,ZCOO=0", "self,amet,TRAN,ROTA,RotX=0",
                                            "self,amet,TRAN,ROTA,RotY=0", "self,amet,TRAN,ROTA,RotZ=0",
                                            "self,amet,TRAN,SCAL=1", "self,amet,TRAN,XYZ ,ScaX=1",
                                            "self,amet,TRAN,XYZ ,ScaY=2.5*", "self,amet,TRAN,XYZ ,ScaZ=1"}));
  for (const ChannelInfo& info : kChannels) {
    EXPECT_TRUE(std::ranges::any_of(rows, [&](const std::string& row) { return row.starts_with(info.fPath); }))
        << info.fPath;
  }
}

TEST_F(Parameters, ReadAndWriteThroughHoldersOfTheirTypeAlone) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const auto rotation = FindRotationX(element);
  EXPECT_EQ(rotation->WriteParamValue(Number(0.5f).fHolder), MC_S_OK);
  EXPECT_EQ(element.GetBase()[Channel::kRotationX], 0.5f);
  Number read(0);
  EXPECT_EQ(rotation->ReadParamValue(read.fHolder), MC_S_OK);
  EXPECT_EQ(read.fValue, 0.5f);

  Number other(9, "re32"_id);
  EXPECT_NE(rotation->ReadParamValue(other.fHolder), MC_S_OK);
  EXPECT_EQ(other.fValue, 9);
  EXPECT_NE(rotation->WriteParamValue(other.fHolder), MC_S_OK);
  EXPECT_NE(rotation->WriteParamValue(Number(std::numeric_limits<real32>::quiet_NaN()).fHolder), MC_S_OK);
  EXPECT_NE(rotation->WriteParamValue(ParamHolder("qfix"_id)), MC_S_OK) << "no bytes";
  EXPECT_NE(rotation->WriteParamValue(ParamHolder()), MC_S_OK);
  const auto group = FindParameter(element, {"amet"_id});
  EXPECT_TRUE(group->IsGroup());
  EXPECT_NE(group->ReadParamValue(read.fHolder), MC_S_OK);
  EXPECT_NE(group->ReadParamValue(*std::make_unique<ParamHolder>()), MC_S_OK);
  EXPECT_EQ(group->GetKeyframeHolder(), nullptr);
  EXPECT_FALSE(MCQuery<IKeyframeHolder>(group));
  EXPECT_EQ(element.GetValue(Channel::kRotationX), 0.5f);
}

TEST_F(Parameters, KeysOfAHolderStepInTheParametersOwnUnits) {
  TestScene scene;
  Element& element = scene.Add("Element");
  const auto position = FindParameter(element, {"amet"_id, "TRAN"_id, "OFFS"_id, "XCOO"_id});
  IKeyframeHolder* const keys = position->GetKeyframeHolder();
  ASSERT_NE(keys, nullptr);
  EXPECT_EQ(keys->SetKey(0, Number(24).fHolder), MC_S_OK);
  EXPECT_EQ(keys->SetKey(1000, Number(36).fHolder), MC_S_OK);
  EXPECT_NE(keys->SetKey(2000, Number(std::numeric_limits<real32>::infinity()).fHolder), MC_S_OK);
  Number read(0);
  EXPECT_EQ(keys->ReadValueAtTime(999, read.fHolder), MC_S_OK);
  EXPECT_EQ(read.fValue, 24);
  EXPECT_EQ(element.GetCurve(Channel::kPositionX)->GetKeys()[0].fInterpolation, Interpolation::kStep);
  keys->DeleteKey(1000);
  keys->DeleteKey(1);
  EXPECT_EQ(element.GetCurve(Channel::kPositionX)->GetKeys().size(), 1U);
}

TEST_F(Parameters, MayBeHeldLongerThanTheirElement) {
  TMCCountedPtr<ParamInfo> leaf;
  TMCCountedPtr<ParamInfo> top;
  {
    TestScene scene;
    Element& element = scene.Add("Element");
    leaf = FindRotationX(element);
    top = FindParameter(element, {"amet"_id});
  }
  Number read(3);
  EXPECT_NE(leaf->ReadParamValue(read.fHolder), MC_S_OK);
  EXPECT_EQ(leaf->GetDataType(), "qfix"_id);
  EXPECT_NE(leaf->GetKeyframeHolder()->ReadValueAtTime(0, read.fHolder), MC_S_OK);
  leaf->GetKeyframeHolder()->DeleteKey(0);
  EXPECT_NE(leaf->GetKeyframeHolder()->SetKey(0, read.fHolder), MC_S_OK);
  EXPECT_EQ(read.fValue, 3);
  TMCCountedPtr<TimeBasedData> holder;
  top->GetHolder(holder.WriteInto());
  EXPECT_FALSE(holder);
  top->GetGroupData()->GetParentData(holder.WriteInto());
  EXPECT_FALSE(holder);
}

TEST_F(Parameters, TypesHaveSizesAndMakeCopyAndEndValues) {
  const std::pair<uint32, std::vector<MCID>> rows[] = {
      {1, {"bool"_id}},
      {2, {"in16"_id, "shrt"_id}},
      {4, {"in32"_id, "long"_id, "actn"_id, "re32"_id, "sr32"_id, "qfix"_id}},
      {8, {"re64"_id, "vec2"_id, "VEC2"_id, "qfv2"_id}},
      {12, {"vec3"_id, "VEC3"_id, "qfv3"_id, "dire"_id}},
      {16, {"colo"_id}},
      {36, {"mx33"_id}},
      {sizeof(MatrixQuaternion), {"mqua"_id}},
      {64, {"str "_id}},
  };
  for (const auto& [size, words] : rows) {
    for (const MCID word : words) {
      ParamType* const type = GetParamTypes().GetParamType(word);
      ASSERT_NE(type, nullptr);
      EXPECT_EQ(type->GetTypeID(), word);
      EXPECT_EQ(type->GetDataSize(), size);
    }
  }
  EXPECT_EQ(GetParamTypes().GetParamType("none"_id), nullptr);
  for (const MCID word : {"mx33"_id, "mqua"_id, "colo"_id}) {
    alignas(8) uint8 bytes[ParamType::kMaxSize];
    alignas(8) uint8 copy[ParamType::kMaxSize];
    ParamType* const type = GetParamTypes().GetParamType(word);
    type->ConstructData(bytes);
    type->ConstructData(copy);
    type->CopyData(bytes, copy);
    EXPECT_EQ(std::memcmp(copy, bytes, word == "mqua"_id ? 53 : type->GetDataSize()), 0);
    type->DestructData(copy);
    type->DestructData(bytes);
  }
}

}  // namespace qlx::host
