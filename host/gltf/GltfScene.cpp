#include "GltfScene.h"

#include <algorithm>
#include <limits>
#include <unordered_set>

#include "GltfUnits.h"
#include "GltfValues.h"
#include "model/ElementPose.h"

namespace qlx::host {

namespace {

constexpr std::size_t kNoNode = static_cast<std::size_t>(-1);
constexpr std::size_t kNoSkin = static_cast<std::size_t>(-1);

// On one line, without signs that a terminal would obey.
std::string NameAt(const Json& inDocument, const char* inList, std::size_t inIndex) {
  const Json* name = FindMember(ArrayOf(inDocument, inList)[inIndex], "name");
  return name == nullptr ? std::string() : ReadableName(name->get<std::string>());
}

std::string NameOrNumber(const Json& inDocument, const char* inList, std::size_t inIndex, const char* inKind) {
  const std::string name = NameAt(inDocument, inList, inIndex);
  return name.empty() ? inKind + std::to_string(inIndex) : name;
}

std::optional<uint32> FindStoredID(const Json& inNode, const Place& inPlace) {
  const Json* extensions = FindMember(inNode, "extensions");
  const Json* element = extensions == nullptr ? nullptr : FindMember(*extensions, kElementExtension);
  if (element == nullptr) {
    return std::nullopt;
  }
  const Place extensionsPlace = inPlace.Member("extensions");
  const Place place = extensionsPlace.Member(kElementExtension);
  for (const auto& [name, value] : element->items()) {
    if (name != "id" && name != "extensions" && name != "extras") {
      Fail(place, "unknown member " + Quoted(name));
    }
  }
  const Json* id = FindMember(*element, "id");
  if (id == nullptr || !id->is_number_unsigned() || id->get<uint64>() < 2 ||
      id->get<uint64>() > std::numeric_limits<uint32>::max()) {
    Fail(place.Member("id"), "must be a whole number from 2 to 4294967295");
  }
  return id->get<uint32>();
}

// Stored ids first; then each other node gets its default, or a free one where that is taken.
std::vector<uint32> ChooseIDs(const Json& inNodes) {
  const Place root;
  const Place place = root.Member("nodes");
  std::vector<uint32> ids(inNodes.size(), 0);
  std::unordered_set<uint32> taken;
  for (std::size_t i = 0; i < inNodes.size(); ++i) {
    const auto stored = FindStoredID(inNodes[i], place.At(i));
    if (stored && !taken.insert(*stored).second) {
      Fail(place.At(i).Member("extensions").Member(kElementExtension).Member("id"),
           std::to_string(*stored) + " is the id of another node");
    }
    ids[i] = stored.value_or(0);
  }
  uint32 free = DefaultElementID(inNodes.size());
  for (std::size_t i = 0; i < inNodes.size(); ++i) {
    if (ids[i] == 0) {
      ids[i] = DefaultElementID(i);
      while (!taken.insert(ids[i]).second) {
        ids[i] = free++;
      }
    }
  }
  return ids;
}

// To the parent's space, in scene units. glTF writes columns one after another.
TOffsetMatrix33 MatrixOf(const tinygltf::Node& inNode) {
  TOffsetMatrix33 matrix;
  for (std::size_t column = 0; column < 3; ++column) {
    for (std::size_t row = 0; row < 3; ++row) {
      matrix.fMatrix(static_cast<int>(row), static_cast<int>(column)) =
          static_cast<real32>(inNode.matrix[column * 4 + row]);
    }
  }
  matrix.fOffset = {InchesOfMetres(inNode.matrix[12]), InchesOfMetres(inNode.matrix[13]),
                    InchesOfMetres(inNode.matrix[14])};
  return matrix;
}

class SceneBuilder {
 public:
  SceneBuilder(const Json& inDocument, const GltfModel& inModel, Scene& ioScene)
      : fDocument(inDocument), fNodes(inModel.fParts.nodes), fParts(inModel.fParts), fScene(ioScene) {}

  std::vector<Element*> Build() {
    FindParents();
    AddShaders();
    AddObjects();
    AddElements();
    AddFigures();
    return std::move(fElements);
  }

 private:
  void FindParents() {
    fParents.assign(fNodes.size(), kNoNode);
    for (std::size_t i = 0; i < fNodes.size(); ++i) {
      for (const int child : fNodes[i].children) {
        fParents[static_cast<std::size_t>(child)] = i;
      }
    }
  }

  void AddShaders() {
    for (std::size_t i = 0; i < ArrayOf(fDocument, "materials").size(); ++i) {
      fShaders.push_back(&fScene.AddShader(NameOrNumber(fDocument, "materials", i, "Material")));
    }
  }

  void AddObjects() {
    const Json& meshes = ArrayOf(fDocument, "meshes");
    for (std::size_t i = 0; i < meshes.size(); ++i) {
      const std::string name = NameOrNumber(fDocument, "meshes", i, "Mesh");
      SceneObject& object = fScene.AddObject(name);
      object.SetShaders(ShadersOf(meshes[i]));
      fObjects.push_back({&object});
    }
  }

  // Weights of morphs are a node's own: each node that shows a mesh with morphs gets an object of its own.
  SceneObject& ObjectFor(std::size_t inNode) {
    const auto number = static_cast<std::size_t>(fNodes[inNode].mesh);
    const Json& mesh = fDocument["meshes"][number];
    MeshObject& first = fObjects[number];
    std::vector<std::string> morphs = MorphsOf(mesh);
    if (morphs.empty()) {
      return *first.fObject;
    }
    const std::string name = NameOrNumber(fDocument, "meshes", number, "Mesh");
    SceneObject& object = first.fIsShown ? fScene.AddObject(name) : *first.fObject;
    if (first.fIsShown) {
      object.SetShaders(first.fObject->GetShaders());
    }
    first.fIsShown = true;
    object.AddMorphGroup(name, std::move(morphs), WeightsOf(fDocument, fDocument["nodes"][inNode]));
    return object;
  }

  std::vector<Shader*> ShadersOf(const Json& inMesh) const {
    std::vector<Shader*> shaders;
    for (const Json& primitive : inMesh["primitives"]) {
      const Json* material = FindMember(primitive, "material");
      Shader* shader = material == nullptr ? nullptr : fShaders[material->get<std::size_t>()];
      if (shader != nullptr && std::find(shaders.begin(), shaders.end(), shader) == shaders.end()) {
        shaders.push_back(shader);
      }
    }
    return shaders;
  }

  // Names of morph targets stand in the extras, where most programs put them.
  static std::vector<std::string> MorphsOf(const Json& inMesh) {
    std::vector<std::string> morphs;
    const Json* extras = FindMember(inMesh, "extras");
    const Json& names = extras != nullptr && extras->is_object() ? ArrayOf(*extras, "targetNames") : Json();
    for (std::size_t i = 0; i < ArrayOf(inMesh["primitives"][0], "targets").size(); ++i) {
      const bool isNamed = names.is_array() && i < names.size() && names[i].is_string();
      morphs.push_back(isNamed ? ReadableName(names[i].get<std::string>()) : "Morph" + std::to_string(i));
    }
    return morphs;
  }

  std::string NameOf(std::size_t inNode) const {
    const tinygltf::Node& node = fNodes[inNode];
    std::string name = ReadableName(node.name);
    const std::pair<const char*, int> held[] = {{"meshes", node.mesh}, {"cameras", node.camera}, {"skins", node.skin}};
    for (const auto& [list, index] : held) {
      if (name.empty() && index >= 0) {
        name = NameAt(fDocument, list, static_cast<std::size_t>(index));
      }
    }
    return name.empty() ? "Node" + std::to_string(inNode) : name;
  }

  // Parents before children, children in order; without recursion, as a tree may be as deep as it has nodes.
  void AddElements() {
    const std::vector<uint32> ids = ChooseIDs(ArrayOf(fDocument, "nodes"));
    fElements.assign(fNodes.size(), nullptr);
    fDepths.assign(fNodes.size(), 0);
    std::vector<std::size_t> open;
    for (std::size_t i = fNodes.size(); i-- > 0;) {
      if (fParents[i] == kNoNode) {
        open.push_back(i);
      }
    }
    while (!open.empty()) {
      const std::size_t node = open.back();
      open.pop_back();
      const std::size_t above = fParents[node];
      Element& parent = above == kNoNode ? fScene.GetRootElement() : *fElements[above];
      fDepths[node] = above == kNoNode ? 0 : fDepths[above] + 1;
      Element& element = fScene.AddElement(parent, NameOf(node), ids[node]);
      element.SetBase(BaseValuesOf(fNodes[node]));
      WarnOfShear(node);
      if (fNodes[node].mesh >= 0) {
        element.SetShownObject(&ObjectFor(node));
      }
      fElements[node] = &element;
      open.insert(open.end(), fNodes[node].children.rbegin(), fNodes[node].children.rend());
    }
  }

  void WarnOfShear(std::size_t inNode) const {
    const tinygltf::Node& node = fNodes[inNode];
    constexpr real32 kTolerance = 1e-4f;  // in proportion
    if (!node.matrix.empty() &&
        !MakeLocalMatrix(MakeLocalTransform(BaseValuesOf(node), {})).IsEqualRelative(MatrixOf(node), kTolerance)) {
      fScene.GetDiagnostics().Warn("nodes[" + std::to_string(inNode) +
                                   "].matrix: its shear is left out where the scene is evaluated");
    }
  }

  void AddFigures() {
    fWalkedFor.assign(fNodes.size(), kNoSkin);
    for (std::size_t i = 0; i < fParts.skins.size(); ++i) {
      const tinygltf::Skin& skin = fParts.skins[i];
      std::vector<Element*> members;
      for (const int joint : skin.joints) {
        members.push_back(fElements[static_cast<std::size_t>(joint)]);
      }
      fScene.AddFigure(NameOrNumber(fDocument, "skins", i, "Skin"), RootOf(skin, i), std::move(members));
    }
  }

  // The lowest element above all joints. Each way up is walked until it meets one that was walked for the same skin, so
  // that a skin costs no more than the nodes above its joints.
  Element& RootOf(const tinygltf::Skin& inSkin, std::size_t inSkinNumber) {
    std::size_t above = ParentOf(inSkin.joints[0]);
    for (std::size_t node = above; node != kNoNode; node = fParents[node]) {
      fWalkedFor[node] = inSkinNumber;
    }
    for (std::size_t i = 1; i < inSkin.joints.size() && above != kNoNode; ++i) {
      std::size_t node = ParentOf(inSkin.joints[i]);
      for (; node != kNoNode && fWalkedFor[node] != inSkinNumber; node = fParents[node]) {
        fWalkedFor[node] = inSkinNumber;
      }
      if (node == kNoNode || fDepths[node] < fDepths[above]) {
        above = node;
      }
    }
    return above == kNoNode ? fScene.GetRootElement() : *fElements[above];
  }

  std::size_t ParentOf(int inNode) const { return fParents[static_cast<std::size_t>(inNode)]; }

  const Json& fDocument;
  const std::vector<tinygltf::Node>& fNodes;
  const tinygltf::Model& fParts;
  Scene& fScene;
  std::vector<std::size_t> fParents;
  std::vector<std::size_t> fDepths;
  std::vector<std::size_t> fWalkedFor;  // the skin that a node was last walked for
  std::vector<Shader*> fShaders;
  struct MeshObject {
    SceneObject* fObject;
    bool fIsShown = false;
  };
  std::vector<MeshObject> fObjects;  // of each mesh: the first that shows it
  std::vector<Element*> fElements;
};

}  // namespace

ChannelValues BaseValuesOf(const tinygltf::Node& inNode) {
  if (!inNode.matrix.empty()) {
    return TakeLocalMatrix(MatrixOf(inNode), PoseFrame{}, ChannelValues{});
  }
  ChannelValues values;
  TVector3 rotation;
  if (!inNode.rotation.empty()) {
    const auto& from = inNode.rotation;
    rotation = EulerOfQuaternion({from[0], from[1], from[2], from[3]}, {});
  }
  for (std::size_t i = 0; i < 3; ++i) {
    values.fValue[i] = inNode.translation.empty() ? 0.0f : InchesOfMetres(inNode.translation[i]);
    values.fValue[3 + i] = rotation[static_cast<int>(i)];
    values.fValue[7 + i] = inNode.scale.empty() ? 1.0f : static_cast<real32>(inNode.scale[i]);
  }
  return values;
}

std::vector<Element*> BuildScene(const Json& inDocument, const GltfModel& inModel, Scene& ioScene) {
  return SceneBuilder(inDocument, inModel, ioScene).Build();
}

}  // namespace qlx::host
