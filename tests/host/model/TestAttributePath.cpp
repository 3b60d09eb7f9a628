#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AssertionGuard.h"
#include "AttributePathRecorder.h"
#include "FakeAttributes.h"
#include "ModelTest.h"
#include "TextPath.h"

namespace qlx::test {
namespace {

using host::Element;

AttributePathNode Node(int8 inKind, int32 inIndex, const char* inName = "") {
  AttributePathNode node;
  node.fType = inKind;
  node.fIndex = inIndex;
  node.fName = inName;
  return node;
}

AttributePath Path(const std::vector<AttributePathNode>& inNodes, int32 inVersion = AttributePath::kCurrentVersion) {
  AttributePath path;
  path.SetVersion(inVersion);
  for (const AttributePathNode& node : inNodes) {
    path.GetNodes().AddElem(node);
  }
  return path;
}

AttributePathNode Param(const char* inID) {
  return Node(kParamInfo, static_cast<int32>(TMCString15(inID).ToID()));
}

IMCUnknown* Root(TestScene& inScene) {
  return static_cast<TreeElement*>(&inScene->GetRootElement());
}

TMCCountedPtr<ParamInfo> RotationX(Element& inElement) {
  return ResolveTextPath(static_cast<TreeElement*>(&inElement), TMCString1023("self,amet,TRAN,ROTA,RotX"));
}

AttributePath Record(TestScene& inScene, AttributePathMode inMode, ParamInfo* inParam) {
  AttributePathRecorder recorder;
  recorder.Set(inMode, inParam);
  AttributePath path;
  recorder.CopyTo(Root(inScene), path);
  return path;
}

bool Matches(TestScene& inScene, const AttributePath& inPath, ParamInfo& inParam) {
  return AttributePathMatcher(inPath, Root(inScene), inParam).Matches();
}

TEST(AttributePathNode, ComparesWhatItsKindUses) {
  const TestMemory memory;
  const struct {
    const char* label;
    AttributePathNode a, b;
    bool equal;
  } rows[] = {
      {"other kinds", Node(kTreeByID, 1), Node(kParamInfo, 1), false},
      {"an id", Node(kTreeByID, 1, "a"), Node(kTreeByID, 1, "b"), true},
      {"another id", Node(kParamInfo, 1), Node(kParamInfo, 2), false},
      {"a name", Node(kTreeByNameNear, 1, "a"), Node(kTreeByNameNear, 1, "b"), false},
      {"a position", Node(kTreeByName, 1, "a"), Node(kTreeByName, 2, "a"), false},
      {"both", Node(kTreeByName, 1, "a"), Node(kTreeByName, 1, "a"), true},
      {"attributes of the instance, whatever else", Node(kInstanceAttributes, 1, "a"), Node(kInstanceAttributes, 2),
       true},
      {"cleared", AttributePathNode(), AttributePathNode(), false},
      {"no kind", Node(7, 0), Node(7, 0), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.a == row.b, row.equal) << row.label;
  }
  EXPECT_TRUE(Path({Param("amet")}, 0) == Path({Param("amet")}, 2));  // the version plays no part
  EXPECT_FALSE(Path({Param("amet")}) == Path({Param("amet"), Param("TRAN")}));
}

TEST(AttributePath, TakesTreeSteps) {
  TestScene scene;
  Element& a = scene.Add("A");
  Element& b = scene.Add("B");
  Element& below = scene.Add(b, "Below");
  scene.Add("C");
  const struct {
    const char* label;
    std::vector<AttributePathNode> steps;
    Element* found;
  } rows[] = {
      {"a position", {Node(kTreeByPosition, 1)}, &b},
      {"a position past the end", {Node(kTreeByPosition, 3)}, nullptr},
      {"a position below 0", {Node(kTreeByPosition, -1)}, nullptr},
      {"the first of a name", {Node(kTreeByName, 0, "B")}, &b},
      {"the second of a name that stands once", {Node(kTreeByName, 1, "B")}, nullptr},
      {"a count below 0", {Node(kTreeByName, -1, "B")}, nullptr},
      {"the name, wherever it stands now", {Node(kTreeByNameNear, 2, "A")}, &a},
      {"the position where the name has gone", {Node(kTreeByNameNear, 1, "Gone")}, &b},
      {"neither", {Node(kTreeByNameNear, -5, "Gone")}, nullptr},
      {"two levels", {Node(kTreeByNameNear, 0, "B"), Node(kTreeByPosition, 0)}, &below},
      {"an id at any depth", {Node(kTreeByID, static_cast<int32>(below.GetUniqueID()))}, &below},
      {"an id that is gone", {Node(kTreeByID, 999)}, nullptr},
      {"none: the root itself", {}, &scene->GetRootElement()},
  };
  for (const auto& row : rows) {
    AttributePath path = Path(row.steps);
    if (!row.steps.empty()) {
      EXPECT_EQ(path.FindParamInfo(Root(scene)).Get(), nullptr) << row.label << ": no holder without a parameter";
    }
    for (const char* id : {"amet", "TRAN", "ROTA", "RotX"}) {
      path.GetNodes().AddElem(Param(id));
    }
    EXPECT_EQ(path.FindParamInfo(Root(scene)).Get(), row.found ? RotationX(*row.found).Get() : nullptr) << row.label;
  }
  const AttributePath outside = Path({Node(kTreeByID, static_cast<int32>(a.GetUniqueID())), Param("amet")});
  EXPECT_EQ(outside.FindParamInfo(static_cast<TreeElement*>(&b)).Get(), nullptr) << "not below this root";
  EXPECT_EQ(AttributePath().FindParamInfo(Root(scene)).Get(), nullptr);
}

// Names of a scene are unique, so twins take elements that no scene keeps apart.
class FakeElement final : public FakeObject<TreeElement, I3DShAttributes> {
 public:
  FakeElement(const char* inName, FakeHolder& inHolder) : fName(inName), fHolder(inHolder) { inHolder.fOwner = Self(); }
  void Adopt(std::vector<FakeElement*> inChildren) {
    for (std::size_t i = 0; i < inChildren.size(); ++i) {
      inChildren[i]->fParent = this;
      inChildren[i]->fNext = i + 1 < inChildren.size() ? inChildren[i + 1] : nullptr;
    }
    fChild = inChildren.empty() ? nullptr : inChildren[0];
  }
  TreeElement* Self() { return this; }

  const TMCString& MC_CALL GetName() override { return fName; }
  void MC_CALL GetParent(TreeElement** outParent) override { MCAssignCounted(outParent, GetParentRaw()); }
  TreeElement* MC_CALL GetParentRaw() override { return fParent; }
  TreeElement* MC_CALL GetFirstChild() override { return fChild; }
  TreeElement* MC_CALL GetNextSibling() override { return fNext; }
  bool MC_CALL IsAtOrBelow(TreeElement*) override { return true; }
  // The rest is not asked for.
  I3DShScene* MC_CALL GetScene() override { return nullptr; }
  uint32 MC_CALL GetUniqueID() override { return 0; }
  TreePath& MC_CALL GetTreePath(TreePath& outPath) override { return outPath; }
  ObjectReference& MC_CALL GetObjectReference(ObjectReference& outReference) override { return outReference; }
  MCResult MC_CALL GetLocalTransform(TTreeTransform&) override { return MC_E_NOTVALID; }
  MCResult MC_CALL SetLocalTransform(const TTreeTransform&, int32, int32, int32, int32, int32, int32) override {
    return MC_E_NOTVALID;
  }
  MCResult MC_CALL GetGlobalTransform(TTreeTransform&) override { return MC_E_NOTVALID; }
  MCResult MC_CALL SetGlobalTransform(const TTreeTransform&, int32, int32, int32, int32, int32) override {
    return MC_E_NOTVALID;
  }
  MCResult MC_CALL GetGlobalTransformChain(TTreeChainTransform&) override { return MC_E_NOTVALID; }
  void MC_CALL TransformChanged(int32) override {}
  void MC_CALL InvalidateElement(int32) override {}
  uint32 MC_CALL GetModifierCount(int32) override { return 0; }
  MCResult MC_CALL InsertModifier(I3DShModifier*, uint32) override { return MC_E_NOTVALID; }
  TimeBasedData* MC_CALL GetTimeBasedData() override { return &fHolder; }

 private:
  TMCString31 fName;
  FakeHolder& fHolder;
  FakeElement* fParent = nullptr;
  FakeElement* fChild = nullptr;
  FakeElement* fNext = nullptr;
};

TEST(AttributePath, TakesTheNearestTwinAndTheEarlierOfTwo) {
  const TestMemory memory;
  FakeParam params[4] = {{"valu"_id, 0}, {"valu"_id, 0}, {"valu"_id, 0}, {"valu"_id, 0}};
  FakeHolder holders[4] = {FakeHolder({&params[0]}), FakeHolder({&params[1]}), FakeHolder({&params[2]}),
                           FakeHolder({&params[3]})};
  FakeHolder none({});
  FakeElement twin0("Twin", holders[0]), other("Other", holders[1]), twin2("Twin", holders[2]),
      twin3("Twin", holders[3]), root("Root", none);
  root.Adopt({&twin0, &other, &twin2, &twin3});
  const struct {
    int32 position;
    int found;
  } rows[] = {{0, 0}, {1, 0}, {2, 2}, {3, 3}, {2147483647, 3}, {-2147483647 - 1, 0}};
  for (const auto& row : rows) {
    const AttributePath path = Path({Node(kTreeByNameNear, row.position, "Twin"), Param("valu")});
    EXPECT_EQ(path.FindParamInfo(root.Self()).Get(), static_cast<ParamInfo*>(&params[row.found])) << row.position;
  }
}

TEST(AttributePath, WalksItsParameterNodes) {
  TestScene scene;
  scene.Add("A");
  const auto find = [&](const std::vector<AttributePathNode>& inNodes) {
    std::vector<AttributePathNode> nodes{Node(kTreeByPosition, 0)};
    nodes.insert(nodes.end(), inNodes.begin(), inNodes.end());
    return Path(nodes).FindParamInfo(Root(scene));
  };
  EXPECT_TRUE(find({Param("amet"), Param("TRAN"), Param("SCAL")}));
  EXPECT_TRUE(find({Param("amet"), Param("TRAN"), Param("SCAL"), Param("SCAL")})) << "looked up in the same holder";
  EXPECT_TRUE(find({Param("amet"), Param("TRAN")})->IsGroup()) << "a path may end at a group";
  EXPECT_FALSE(find({Param("amet"), Param("Gone")}));
  EXPECT_FALSE(find({Node(kInstanceAttributes, 0), Param("amet")})) << "shows no object";
  EXPECT_FALSE(find({Node(kShaderAttributes, -1), Param("amet")}));

  AssertionGuard guard({"node.fType == kParamInfo", "root", "timeBasedData"});
  EXPECT_TRUE(find({Node(kNoNode, static_cast<int32>("amet"_id))})) << "the walk goes on regardless";
  EXPECT_FALSE(Path({Param("amet")}).FindParamInfo(nullptr));
  int32 leaf = 5;
  EXPECT_FALSE(Path({}).WalkParamNodes(nullptr, 0, leaf));
  EXPECT_EQ(leaf, -1);
}

TEST(AttributePath, FindsARecordedParameterAgain) {
  TestScene scene;
  Element& arm = scene.Add("Arm");
  Element& hand = scene.Add(arm, "Hand");
  const auto param = RotationX(hand);
  const AttributePath byID = Record(scene, AttributePathMode::kByElementID, param.Get());
  const AttributePath fromRoot = Record(scene, AttributePathMode::kFromRoot, param.Get());

  EXPECT_TRUE(byID == Path({Node(kTreeByID, static_cast<int32>(hand.GetUniqueID())), Param("amet"), Param("TRAN"),
                            Param("ROTA"), Param("RotX")}));
  EXPECT_TRUE(fromRoot == Path({Node(kTreeByNameNear, 0, "Arm"), Node(kTreeByNameNear, 0, "Hand"), Param("amet"),
                                Param("TRAN"), Param("ROTA"), Param("RotX")}));
  for (const AttributePath& path : {byID, fromRoot}) {
    EXPECT_EQ(path.FindParamInfo(Root(scene)), param);
    EXPECT_TRUE(Matches(scene, path, *param));
    EXPECT_FALSE(Matches(scene, path, *RotationX(arm)));
    AttributePath longer = path;
    longer.GetNodes().AddElem(Param("more"));
    EXPECT_FALSE(Matches(scene, longer, *param));
    AttributePath shorter = path;
    shorter.GetNodes().RemoveElem(0);
    EXPECT_FALSE(Matches(scene, shorter, *param));
  }
  const auto atRoot = RotationX(scene->GetRootElement());
  EXPECT_EQ(Record(scene, AttributePathMode::kFromRoot, atRoot.Get()).FindParamInfo(Root(scene)), atRoot);
}

TEST(AttributePath, ReachesShadersAndObjectsThroughTheirUsers) {
  TestScene scene;
  host::Shader& main = scene->AddShader("Main");
  host::Shader& second = scene->AddShader("Second");
  for (host::Shader* const shader : {&main, &second}) {
    shader->GetValues()->Add({"Roug"_id, "Roughness"}, {0.5f});
  }
  host::SceneObject& object = scene->AddObject("Body");
  object.SetShaders({&main, &second});
  object.AddMorphGroup("Face", {"Smile", "Frown"}, {});
  Element& element = scene.Add("Body");
  element.SetShownObject(&object);

  const auto resolve = [&](const char* inText) {
    return ResolveTextPath(static_cast<TreeElement*>(&element), TMCString1023(inText));
  };
  const struct {
    const char* label;
    TMCCountedPtr<ParamInfo> param;
    AttributePathNode node;
  } rows[] = {
      {"the main shader", resolve("shdr,0000,Roug"), Node(kShaderAttributes, -1)},
      {"another of the list", resolve("shdr,0001,Roug"), Node(kShaderAttributes, 1)},
      {"a morph of the object", resolve("RMPH,0,1"), Node(kInstanceAttributes, 0)},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(row.param) << row.label;
    const AttributePath path = Record(scene, AttributePathMode::kFromRoot, row.param.Get());
    ASSERT_GE(path.GetNodes().GetElemCount(), 3u) << row.label;
    EXPECT_TRUE(path.GetNodes()[0] == Node(kTreeByNameNear, 0, "Body")) << row.label;
    EXPECT_TRUE(path.GetNodes()[1] == row.node) << row.label;
    EXPECT_EQ(path.FindParamInfo(Root(scene)), row.param) << row.label;
    EXPECT_TRUE(Matches(scene, path, *row.param)) << row.label;
  }
  EXPECT_FALSE(Path({Node(kTreeByPosition, 0), Node(kShaderAttributes, 2), Param("Roug")}).FindParamInfo(Root(scene)));

  element.SetShownObject(nullptr);  // nothing shows them any more
  for (const auto& row : rows) {
    EXPECT_TRUE(Record(scene, AttributePathMode::kFromRoot, row.param.Get()).IsEmpty()) << row.label;
  }
}

TEST(AttributePathRecorder, GivesAnEmptyPathWhereTheWalkFails) {
  TestScene scene;
  host::Diagnostics diagnostics;
  const auto other = host::Scene::Create(diagnostics);
  const auto elsewhere = RotationX(other->AddElement(other->GetRootElement(), "Arm"));
  AttributePath path = Path({Param("amet")});
  {
    AssertionGuard guard({"fRoot == attributesSet"});
    path = Record(scene, AttributePathMode::kFromRoot, elsewhere.Get());
  }
  EXPECT_TRUE(path.IsEmpty());
  other->Close();

  FakeParam lost("lost"_id, 0);  // in no holder
  path = Path({Param("amet")});
  AttributePathRecorder recorder;
  recorder.Set(AttributePathMode::kFromRoot, &lost);
  {
    AssertionGuard guard({"root"});
    recorder.CopyTo(nullptr, path);
    EXPECT_FALSE(path.IsEmpty()) << "left as it was";
  }
  recorder.CopyTo(Root(scene), path);
  EXPECT_TRUE(path.IsEmpty());
  EXPECT_EQ(lost.fCount, 0) << "let go with the walk";
}

// list 'dtaL' { group 'elm1' { 'valu' in32 }, no group, group 'elm2' { 'valu' bool } }
struct OldList {
  FakeParam fNumber{"valu"_id, "in32"_id};
  FakeHolder fFirst{{&fNumber}};
  FakeParam fFirstParam{"elm1"_id, 0, &fFirst};
  FakeParam fPlain{"plai"_id, "in32"_id};
  FakeParam fFlag{"valu"_id, "bool"_id};
  FakeHolder fSecond{{&fFlag}};
  FakeParam fSecondParam{"elm2"_id, 0, &fSecond};
  FakeHolder fList{{&fFirstParam, &fPlain, &fSecondParam}, "dtaL"_id};
  FakeParam fListParam{"list"_id, 0, &fList};
  FakeHolder fTop{{&fListParam}};
  FakeElement fRoot{"Root", fTop};
};

TEST(AttributePathUpgrade, GivesElementsOfAListTheirIds) {
  const TestMemory memory;
  const struct {
    const char* label;
    MCID type;
    const char* element;  // what the position became; null where the upgrade fails
    std::vector<std::string> reports;
  } rows[] = {
      {"any type takes the first", AttributePath::kAnyType, "elm1", {}},
      {"the type decides", "bool"_id, "elm2", {"paramInfo->IsGroup()"}},
      {"no such type",
       "re64"_id,
       nullptr,
       {"paramInfo->IsGroup()",
        "This is not necessarily an error, but you should check the attribute path conversion code"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    OldList scene;
    AttributePath path = Path({Node(kTreeByPosition, 0), Param("list"), Node(kParamInfo, 0), Param("valu")}, 0);
    AssertionGuard guard(row.reports);
    EXPECT_EQ(path.UpgradePath(scene.fRoot.Self(), row.type, false), row.element != nullptr);
    EXPECT_EQ(path.GetVersion(), row.element ? 2 : 0);
    if (row.element) {
      EXPECT_TRUE(path == Path({Param("list"), Param(row.element), Param("valu")}));
      EXPECT_TRUE(path.FindParamInfo(scene.fRoot.Self()));
    }
  }
}

TEST(AttributePathUpgrade, LeavesOtherVersionsAlone) {
  TestScene scene;
  const struct {
    const char* label;
    int32 version;
    bool continueOnFailure;
    bool succeeded;
    int32 after;
    uint32 nodes;
  } rows[] = {
      {"the current one", 2, false, true, 2, 2},
      {"a later one", 7, true, true, 7, 2},
      {"no version", -1, true, false, -1, 2},
      {"1 drops the root", 1, false, true, 2, 1},
      {"0 that resolves no more", 0, false, false, 0, 2},
      {"0, going on", 0, true, false, 2, 1},
  };
  for (const auto& row : rows) {
    AttributePath path = Path({Node(kTreeByNameNear, 0, "Scene"), Param("gone")}, row.version);
    EXPECT_EQ(path.UpgradePath(Root(scene), AttributePath::kAnyType, row.continueOnFailure), row.succeeded)
        << row.label;
    EXPECT_EQ(path.GetVersion(), row.after) << row.label;
    EXPECT_EQ(path.GetNodes().GetElemCount(), row.nodes) << row.label;
  }
  AssertionGuard guard({"root"});
  EXPECT_FALSE(Path({}, 1).UpgradePath(nullptr, AttributePath::kAnyType, true));
}

TEST(AttributePath, GivesElementsNewIds) {
  const TestMemory memory;
  AttributePath path = Path({Node(kTreeByID, 3), Node(kParamInfo, 3), Node(kTreeByID, 4)});
  path.RemapTreeIDs({{3, 30}});
  EXPECT_TRUE(path == Path({Node(kTreeByID, 30), Node(kParamInfo, 3), Node(kTreeByID, 4)}));
}

}  // namespace
}  // namespace qlx::test
