// Values that are no transforms: of shaders, morphs, and what is attached to elements.
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "ModelTest.h"
#include "ParamHolder.h"
#include "ProblemOf.h"
#include "model/Bake.h"
#include "model/ParamTypes.h"
#include "model/ParameterIDs.h"
#include "model/ParameterRows.h"

namespace qlx::host {

using test::TestScene;
using test::TimeLinesOf;

namespace {

constexpr ValueNumbers kRed{1, 0, 0, 1};
constexpr ValueNumbers kBlue{0, 0, 1, 0.5f};

// A shader with a colour, a number and a truth value.
Shader& AddPaint(Scene& ioScene) {
  Shader& paint = ioScene.AddShader("Paint");
  paint.GetValues()->Add({"BCol"_id, "Base colour", "colo"_id}, kRed);
  paint.GetValues()->Add({"Roug"_id, "Roughness"}, {0.5f});
  paint.GetValues()->Add({"Flag"_id, "Flag", "bool"_id}, {1});
  return paint;
}

TMCCountedPtr<ParamInfo> ParameterAt(I3DShAttributes& inAttributes, uint32 inIndex) {
  TMCCountedPtr<ParamInfo> parameter;
  inAttributes.GetTimeBasedData()->GetParamInfo(parameter.WriteInto(), inIndex);
  return parameter;
}

class Values : public testing::Test {
 protected:
  Values() { SetParamTypeRegistry(&GetParamTypes()); }
  ~Values() override { SetParamTypeRegistry(nullptr); }
};

}  // namespace

TEST_F(Values, OfAShaderAreParametersOfTheirTypes) {
  TestScene scene;
  Shader& paint = AddPaint(*scene);
  const auto attributes = MCQuery<I3DShAttributes>(static_cast<I3DShShader*>(&paint));
  ASSERT_TRUE(attributes);
  EXPECT_TRUE(MCQuery<I3DShShader>(attributes->GetTimeBasedData()->GetOwner()));
  ASSERT_EQ(attributes->GetTimeBasedData()->GetParamCount(), 3U);
  const auto colour = ParameterAt(*attributes, 0);
  EXPECT_EQ(colour->GetParamID(), "BCol"_id);
  EXPECT_EQ(colour->GetDataType(), "colo"_id);
  ColourValue held;
  ParamHolder holder("colo"_id, &held);
  EXPECT_EQ(colour->ReadParamValue(holder), MC_S_OK);
  EXPECT_EQ(held.fRed, 1);
  held.fGreen = 0.25f;
  EXPECT_EQ(colour->WriteParamValue(holder), MC_S_OK);
  EXPECT_EQ(paint.GetValues()->GetBase(0)[1], 0.25f);
  EXPECT_TRUE(paint.GetValues()->IsEdited(0));
  EXPECT_FALSE(paint.GetValues()->IsEdited(1));
  held.fAlpha = std::numeric_limits<real32>::infinity();
  EXPECT_NE(colour->WriteParamValue(holder), MC_S_OK);
  EXPECT_NE(colour->GetKeyframeHolder()->SetKey(0, holder), MC_S_OK);

  bool flag = true;
  ParamHolder flagHolder("bool"_id, &flag);
  const auto third = ParameterAt(*attributes, 2);
  flag = false;
  EXPECT_EQ(third->WriteParamValue(flagHolder), MC_S_OK);
  flag = true;
  EXPECT_EQ(third->ReadParamValue(flagHolder), MC_S_OK);
  EXPECT_FALSE(flag);
}

TEST_F(Values, AreWrittenAsAnElementsAre) {
  TestScene scene;
  const auto values = AddPaint(*scene).GetValues();
  scene->Evaluate(0);
  ASSERT_TRUE(values->EditCurves(0, [](Curve& curve, uint32 number) {
    curve.SetKey({.fTime = 0, .fValue = kRed[number]});
    curve.SetKey({.fTime = 100, .fValue = kBlue[number]});
  }));
  scene->Evaluate(50);
  EXPECT_EQ(values->GetEvaluated(0), (ValueNumbers{0.5f, 0, 0.5f, 0.75f}));
  ASSERT_TRUE(values->Write(0, kBlue)) << "an edit where there are keys: a key now";
  EXPECT_EQ(values->GetCurve(0, 3)->GetKeys().size(), 3U);
  EXPECT_EQ(values->GetBase(0), kRed);
  EXPECT_EQ(values->GetCurve(1, 0), nullptr);

  Element& element = scene.Add("Element");
  TestScene::Modify(element, [&](Element&) {
    EXPECT_TRUE(values->Write(1, {2}));
    EXPECT_TRUE(values->Write(0, kRed));
    EXPECT_TRUE(values->Write(2, {1}));
  });
  scene->Evaluate(50);
  EXPECT_EQ(values->GetBase(1)[0], 0.5f);
  EXPECT_EQ(values->GetUnmodified(1)[0], 0.5f);
  EXPECT_TRUE(values->IsModified(0));
  EXPECT_TRUE(values->IsModified(1));
  EXPECT_FALSE(values->IsModified(2)) << "written as it was";
  element.RemoveAllModifiers();
  scene->Evaluate(50);
  EXPECT_EQ(values->GetEvaluated(1)[0], 0.5f) << "an evaluated value lasts for one evaluation";
  EXPECT_EQ(values->GetEvaluated(0), kBlue);
}

TEST_F(Values, TruthValuesStepWhateverTheirKeysSay) {
  TestScene scene;
  const auto values = AddPaint(*scene).GetValues();
  values->EditCurves(2, [](Curve& curve, uint32) {
    curve.SetKey({.fTime = 0, .fValue = 0});
    curve.SetKey({.fTime = 100, .fValue = 1});
  });
  EXPECT_EQ(values->SampleAt(2, 99)[0], 0);
  EXPECT_EQ(values->SampleAt(2, 100)[0], 1);
}

TEST_F(Values, HaveOneTimeLineEachWithKeysOfTheirType) {
  TestScene scene;
  Shader& paint = AddPaint(*scene);
  const auto timeLines = TimeLinesOf(paint);
  ASSERT_EQ(timeLines.size(), 3U);
  EXPECT_EQ(timeLines[0]->GetAttribute()->GetAttributeId(), "BCol"_id);
  EXPECT_EQ(timeLines[0]->InsertKey(0, kRed.data(), "colo"_id), MC_S_OK);
  EXPECT_EQ(timeLines[0]->InsertKey(10, kBlue.data(), "colo"_id), MC_S_OK);
  EXPECT_NE(timeLines[0]->InsertKey(20, kBlue.data(), "qfix"_id), MC_S_OK);
  const TMCCountedPtr<ITimeLineKey> key = MCShare(timeLines[0]->GetKey(1));
  IKeyValue* const value = key->GetValue();
  EXPECT_EQ(value->GetValueSize(), 16U);
  EXPECT_EQ(value->GetValueType(), "colo"_id);
  ColourValue read;
  bool scratch = false;
  EXPECT_EQ(value->ReadValue(&read, "colo"_id, scratch), MC_S_OK);
  EXPECT_EQ(read.fBlue, 1);
  EXPECT_EQ(read.fAlpha, 0.5f);
  key->SetTime(5);
  EXPECT_EQ(paint.GetValues()->GetCurve(0, 3)->GetKeys()[1].fTime, 5) << "all numbers move together";
  timeLines[0]->DeleteKeyAt(5);
  EXPECT_EQ(paint.GetValues()->GetCurve(0, 2)->GetKeys().size(), 1U);
  EXPECT_NE(value->ReadValue(&read, "colo"_id, scratch), MC_S_OK);

  const uint8 yes = 1;
  EXPECT_EQ(timeLines[2]->InsertKey(0, &yes, "bool"_id), MC_S_OK);
  EXPECT_EQ(timeLines[2]->GetKey(0)->GetValue()->GetValueSize(), 1U);
}

TEST_F(Values, AttachedToElementsAreGroupsOfTheirParameters) {
  TestScene scene;
  Element& one = scene.Add("One");
  Element& other = scene.Add("Other");
  const auto camera = scene->AddValues("camera \"Eye\"");
  camera->Add({"YFov"_id, "Field of view"}, {0.75f});
  for (Element* const element : {&one, &other}) {
    element->AttachValues({"came"_id, "Camera", camera});
  }
  std::vector<std::string> rows;
  ForEachParameter(one, [&rows](const ParameterRow& row) { rows.push_back(row.fPath + "=" + row.fValue); });
  EXPECT_EQ(rows.back(), "self,came,YFov=0.75");
  const auto group = ParameterAt(one, 1);
  TMCCountedPtr<ParamInfo> field;
  group->GetGroupData()->GetParamInfo(field.WriteInto(), 0);
  real32 number = 1.5f;
  EXPECT_EQ(field->WriteParamValue(ParamHolder("qfix"_id, &number)), MC_S_OK);
  ForEachParameter(other, [&rows](const ParameterRow& row) { rows.push_back(row.fPath + "=" + row.fValue); });
  EXPECT_EQ(rows.back(), "self,came,YFov=1.5") << "shared";
  EXPECT_EQ(TimeLinesOf(one).size(), kChannelCount + 1);
}

TEST_F(Values, MorphsAreParametersOfTheirObject) {
  TestScene scene;
  SceneObject& object = scene->AddObject("Head");
  object.AddMorphGroup("Face", {"Smile", "Frown"}, {0.25f});
  TMCCountedPtr<IMCUnknown> data;
  object.GetObjectData(data.WriteInto());
  const auto morphs = MCQuery<I3DShMorphData>(data);
  const struct {
    const char* label;
    uint32 group;
    uint32 morph;
    real32 weight;
  } rows[] = {{"first", 0, 0, 0.25f}, {"without a weight", 0, 1, 0}, {"no morph", 0, 2, -1}, {"no group", 1, 0, -1}};
  for (const auto& row : rows) {
    TMCCountedPtr<IMCUnknown> morph;
    morphs->GetMorph(morph.WriteInto(), row.group, row.morph);
    const auto parameter = MCQuery<ParamInfo>(morph);
    EXPECT_EQ(static_cast<bool>(parameter), row.weight >= 0) << row.label;
    real32 weight = -1;
    ParamHolder holder("qfix"_id, &weight);
    if (parameter) {
      EXPECT_EQ(parameter->ReadParamValue(holder), MC_S_OK) << row.label;
      TMCCountedPtr<TimeBasedData> owner;
      parameter->GetHolder(owner.WriteInto());
      TMCCountedPtr<TimeBasedData> root;
      owner->GetParentData(root.WriteInto());
      EXPECT_TRUE(MCQuery<I3DShObject>(root->GetOwner())) << row.label;
    }
    EXPECT_EQ(weight, row.weight) << row.label;
  }
}

TEST_F(Values, MorphNotifierMarksTheWeightsAndNothingElse) {
  TestScene scene;
  SceneObject& object = scene->AddObject("Head");
  object.AddMorphGroup("Face", {"Smile"}, {0.25f});
  TMCCountedPtr<IMCUnknown> data;
  object.GetObjectData(data.WriteInto());
  const auto notifier = MCQuery<I3DShMorphTarget>(data);
  TestScene::Modify(scene.Add("Head"), [&notifier](Element&) { notifier->MorphChanged(); });
  notifier->MorphChanged();
  EXPECT_TRUE(scene->GetTouchedValues().empty());
  scene->Evaluate(0);
  EXPECT_EQ(scene->GetTouchedValues(), std::vector<ValueSet*>{object.GetValues().get()});
  EXPECT_FALSE(object.GetValues()->IsModified(0));
  scene->Close();
  notifier->MorphChanged();
}

TEST_F(Values, MayBeHeldLongerThanTheirScene) {
  TMCCountedPtr<ParamInfo> colour;
  TMCCountedPtr<ITimeLine> timeLine;
  {
    TestScene scene;
    Shader& paint = AddPaint(*scene);
    colour = ParameterAt(paint, 0);
    timeLine = TimeLinesOf(paint)[0];
    timeLine->InsertKey(0, kRed.data(), "colo"_id);
  }
  ColourValue held;
  ParamHolder holder("colo"_id, &held);
  EXPECT_EQ(colour->ReadParamValue(holder), MC_E_NOTVALID);
  EXPECT_EQ(colour->WriteParamValue(holder), MC_E_NOTVALID);
  EXPECT_EQ(timeLine->GetKeyCount(), 0U);
  EXPECT_NE(timeLine->InsertKey(0, kRed.data(), "colo"_id), MC_S_OK);
}

TEST_F(Values, ABakeHoldsThoseThatModifiersChanged) {
  TestScene scene;
  const auto values = AddPaint(*scene).GetValues();
  const auto later = scene->AddValues("light \"Lamp\"");
  later->Add({"Inte"_id, "Intensity"}, {1});
  later->GetOrMakeCurve(0, 0).SetKey({.fTime = 0, .fValue = 10});
  Element& element = scene.Add("Element");
  TestScene::Modify(element, [&](Element&) {
    later->Write(0, {3});
    if (scene->GetTime() > 0) {
      values->Write(1, {static_cast<real32>(scene->GetTime())});
    }
  });
  scene->SetFrameRate(180000);
  const BakeResult result = Bake(*scene, {0, 2});
  EXPECT_TRUE(result.fElements.empty());
  ASSERT_EQ(result.fValues.size(), 2U);
  EXPECT_EQ(result.fValues[0].fValues, values);
  EXPECT_EQ(result.fValues[0].fIndex, 1U);
  EXPECT_EQ(result.fValues[0].fFrames, (std::vector<ValueNumbers>{{0.5f}, {1}, {2}}));
  EXPECT_EQ(result.fValues[0].fBefore, (std::vector<ValueNumbers>(3, {0.5f})));
  EXPECT_EQ(result.fValues[1].fFrames, (std::vector<ValueNumbers>(3, {3})));
  EXPECT_EQ(result.fValues[1].fBefore, (std::vector<ValueNumbers>(3, {10})));
}

TEST_F(Values, ABakeNamesOneThatIsNotFinite) {
  TestScene scene;
  const auto values = AddPaint(*scene).GetValues();
  Curve& curve = values->GetOrMakeCurve(1, 0);
  curve.SetKey({.fTime = 0, .fValue = 3e38f, .fOutTangent = 3e38f, .fInterpolation = Interpolation::kCubicSpline});
  curve.SetKey({.fTime = 1800000, .fValue = 3e38f});
  EXPECT_EQ(test::ProblemOf([&] {
              Bake(*scene, {0, 5});
            }),
            "shader \"Paint\", Roughness, frame 4: the value is not a finite number");
}

TEST_F(Values, GoByTextPathsFromTheElement) {
  TestScene scene;
  Element& element = scene.Add("Element");
  SceneObject& object = scene->AddObject("Head");
  object.AddMorphGroup("Face", {"Smile"}, {0.25f});
  std::vector<Shader*> shaders;
  for (int i = 0; i < 13; ++i) {
    shaders.push_back(&scene->AddShader("Paint"));
    shaders.back()->GetValues()->Add({"BCol"_id, "Base colour", "colo"_id}, {static_cast<real32>(i), 0.5f, 0, 1});
  }
  object.SetShaders(shaders);
  element.SetShownObject(&object);
  const struct {
    const char* path;
    int number;
    const char* value;  // null: no parameter
  } rows[] = {
      {"self,amet,TRAN,SCAL", -1, "1"},
      {"self,amet,TRAN,SCAL,redV", -1, "1"},  // what stands behind a plain parameter is not read
      {"self,amet,TRAN", -1, nullptr},
      {"shdr,0000,BCol", -1, "0 0.5 0 1"},
      {"shdr,0009,BCol,redV", 0, "9"},
      {"shdr,0009,BCol,grnV", 1, "0.5"},
      {"shdr,0009,BCol,wxyz", -1, "9 0.5 0 1"},
      {"shdr,0019,BCol", -1, nullptr},       // the row of the shader at 10: there is none at 19
      {"shdr,0011,BCol", -1, "11 0.5 0 1"},  // the row of the one at 12 leads to the one at 11
      {"shdr,0000", -1, nullptr},
      {"RMPH,0,0", -1, "0.25"},
      {"RMPH,0,1", -1, nullptr},
      {"RMPH,0", -1, nullptr},
      {"", -1, nullptr},
  };
  for (const auto& row : rows) {
    const FoundParameter found = FindParameter(element, row.path);
    ASSERT_EQ(static_cast<bool>(found.fParameter), row.value != nullptr) << row.path;
    EXPECT_EQ(found.fNumber, row.number) << row.path;
    if (row.value != nullptr) {
      AnimatedValue& value = *found.fParameter->GetValueAccess()->AsAnimated();
      uint8 bytes[ParamType::kMaxSize];
      ASSERT_TRUE(value.ReadBase(bytes));
      EXPECT_EQ(TextOfNumbers(value.GetType(), SplitValue(value.GetType(), bytes), found.fNumber), row.value);
    }
  }
  EXPECT_FALSE(FindParameter(element, std::string(2000, 'x')).fParameter);
  std::vector<std::string> lost;
  ForEachParameter(element, [&lost](const ParameterRow& row) {
    if (!row.fIsFound && row.fName == "Base colour") {
      lost.push_back(row.fPath);
    }
  });
  EXPECT_EQ(lost, (std::vector<std::string>{"shdr,0019,BCol", "shdr,0011,BCol"}));
}

TEST(ParameterIDs, ComeFromNamesAndAreUnique) {
  ParameterIDs ids;
  const MCID squash = ids.Make("Squash");
  EXPECT_EQ(squash >> 24, 'S');
  EXPECT_EQ(ids.Make("bend"), "bend"_id);
  const MCID taken = ids.Make("bend");
  EXPECT_NE(taken, "bend"_id);
  // What a path's last key means for every value, or what property trees hide, is nobody's id.
  for (const char* const name : {"SCAL", "XCOO", "redV", "vecX", "GlbY", "LINK", "mimc"}) {
    EXPECT_NE(ids.Make(name), TMCString15(name).ToID()) << name;
  }
  ParameterIDs others;
  others.Make("Something");
  EXPECT_EQ(others.Make("Squash"), squash) << "whatever else there is";
  std::set<MCID> all;
  ParameterIDs many;
  for (int i = 0; i < 5000; ++i) {
    const MCID id = many.Make("s" + std::to_string(i % 2500));
    EXPECT_TRUE(all.insert(id).second) << i;
    for (int byte = 0; byte < 4; ++byte) {
      EXPECT_TRUE(std::isalnum(static_cast<int>(id >> (8 * byte) & 0xFF)));
    }
  }
  EXPECT_GT(ids.Make(""), 0x20202020U);
  EXPECT_GT(ids.Make("\xC3\xA9\xC3\xA9"), 0x20202020U);
}

}  // namespace qlx::host
