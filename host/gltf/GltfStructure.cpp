#include "GltfStructure.h"

#include <cmath>
#include <limits>

#include "GltfFiles.h"
#include "GltfUri.h"

namespace qlx::host {

namespace {

std::string Bytes(uint64 inCount) {
  return std::to_string(inCount) + " bytes";
}

// `inLength` bytes from `inOffset` on must lie in a thing of `inSize` bytes.
void CheckInside(uint64 inOffset, uint64 inLength, uint64 inSize, const char* inWhole, const Place& inPlace) {
  if (inOffset > inSize || inLength > inSize - inOffset) {
    Fail(inPlace, Bytes(inLength) + " from byte " + std::to_string(inOffset) + " on do not fit into the " + inWhole +
                      " of " + Bytes(inSize));
  }
}

int TypeOf(const Json& inAccessor, const Place& inPlace) {
  static const std::pair<const char*, int> kTypes[] = {{"SCALAR", TINYGLTF_TYPE_SCALAR}, {"VEC2", TINYGLTF_TYPE_VEC2},
                                                       {"VEC3", TINYGLTF_TYPE_VEC3},     {"VEC4", TINYGLTF_TYPE_VEC4},
                                                       {"MAT2", TINYGLTF_TYPE_MAT2},     {"MAT3", TINYGLTF_TYPE_MAT3},
                                                       {"MAT4", TINYGLTF_TYPE_MAT4}};
  const auto& name = inAccessor["type"].get_ref<const std::string&>();
  for (const auto& [each, type] : kTypes) {
    if (name == each) {
      return type;
    }
  }
  Fail(inPlace.Member("type"), "unknown accessor type " + Quoted(name));
}

int ComponentTypeOf(const Json& inObject, const Place& inPlace) {
  const uint64 type = NumberOf(inObject, "componentType", 0);
  const bool isKnown = (type >= TINYGLTF_COMPONENT_TYPE_BYTE && type <= TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT) ||
                       type == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT || type == TINYGLTF_COMPONENT_TYPE_FLOAT;
  if (!isKnown) {
    Fail(inPlace.Member("componentType"), "unknown component type " + std::to_string(type));
  }
  return static_cast<int>(type);
}

class RangeCheck {
 public:
  explicit RangeCheck(const Json& inDocument)
      : fBuffers(ArrayOf(inDocument, "buffers")), fViews(ArrayOf(inDocument, "bufferViews")) {}

  void CheckView(const Json& inView, const Place& inPlace) const {
    const Json& buffer = fBuffers[inView["buffer"].get<std::size_t>()];
    CheckInside(NumberOf(inView, "byteOffset", 0), NumberOf(inView, "byteLength", 0), NumberOf(buffer, "byteLength", 0),
                "buffer", inPlace);
    const uint64 stride = NumberOf(inView, "byteStride", 4);
    if (stride > 252 || stride % 4 != 0) {
      Fail(inPlace.Member("byteStride"), std::to_string(stride) + " is no multiple of 4 from 4 to 252");
    }
  }

  void CheckAccessor(const Json& inAccessor, const Place& inPlace) const {
    const uint64 count = NumberOf(inAccessor, "count", 0);
    CheckDecodable(count, inPlace.Member("count"));
    const uint64 size = ElementSize(ComponentTypeOf(inAccessor, inPlace), TypeOf(inAccessor, inPlace));
    if (const Json* view = FindMember(inAccessor, "bufferView")) {
      const uint64 stride = NumberOf(fViews[view->get<std::size_t>()], "byteStride", size);
      if (stride < size) {
        Fail(inPlace, "elements of " + Bytes(size) + " do not fit into the stride of " + Bytes(stride));
      }
      CheckInView(*view, inAccessor, stride * (count - 1) + size, inPlace);
    }
    if (const Json* sparse = FindMember(inAccessor, "sparse")) {
      CheckSparse(*sparse, count, size, inPlace.Member("sparse"));
    }
  }

 private:
  // The decoder keeps some numbers in 32 bits.
  static void CheckDecodable(uint64 inNumber, const Place& inPlace) {
    if (inNumber > static_cast<uint64>(std::numeric_limits<int32>::max())) {
      Fail(inPlace, std::to_string(inNumber) + " is too large");
    }
  }

  void CheckInView(const Json& inView, const Json& inObject, uint64 inLength, const Place& inPlace) const {
    const Json& view = fViews[inView.get<std::size_t>()];
    CheckInside(NumberOf(inObject, "byteOffset", 0), inLength, NumberOf(view, "byteLength", 0), "buffer view", inPlace);
  }

  void CheckSparse(const Json& inSparse, uint64 inCount, uint64 inElementSize, const Place& inPlace) const {
    const uint64 count = NumberOf(inSparse, "count", 0);
    if (count > inCount) {
      Fail(inPlace.Member("count"), std::to_string(count) + " is more than the accessor's own count");
    }
    const Json& indices = inSparse["indices"];
    const Place place = inPlace.Member("indices");
    const int type = ComponentTypeOf(indices, place);
    if (type != TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE && type != TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT &&
        type != TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT) {
      Fail(place.Member("componentType"), "indices must be unsigned whole numbers");
    }
    CheckInView(indices["bufferView"], indices, count * ElementSize(type, TINYGLTF_TYPE_SCALAR), place);
    CheckDecodable(NumberOf(indices, "byteOffset", 0), place.Member("byteOffset"));
    const Json& values = inSparse["values"];
    CheckDecodable(NumberOf(values, "byteOffset", 0), inPlace.Member("values").Member("byteOffset"));
    CheckInView(values["bufferView"], values, count * inElementSize, inPlace.Member("values"));
  }

  const Json& fBuffers;
  const Json& fViews;
};

void CheckTransform(const Json& inNode, const Place& inPlace) {
  for (const char* name : {"matrix", "translation", "rotation", "scale"}) {
    const Json* numbers = FindMember(inNode, name);
    if (numbers == nullptr) {
      continue;
    }
    if (std::string_view(name) != "matrix" && inNode.contains("matrix")) {
      Fail(inPlace, std::string("has both \"matrix\" and ") + Quoted(name));
    }
    for (std::size_t i = 0; i < numbers->size(); ++i) {
      constexpr real64 kLargest = 1e30;  // in metres; leaves room for inches and products in 32-bit reals
      if (!(std::fabs((*numbers)[i].get<real64>()) <= kLargest)) {
        Fail(inPlace.Member(name).At(i), "is too large a number for a transform");
      }
    }
  }
  const Json* rotation = FindMember(inNode, "rotation");
  if (rotation != nullptr && *rotation == Json({0, 0, 0, 0})) {
    Fail(inPlace.Member("rotation"), "is no rotation: all four numbers are zero");
  }
}

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Above each node at most one other; walking up from a node must come to an end.
std::vector<std::size_t> FindParents(const Json& inNodes, const Place& inPlace) {
  std::vector<std::size_t> parents(inNodes.size(), kNone);
  for (std::size_t i = 0; i < inNodes.size(); ++i) {
    const Json& children = ArrayOf(inNodes[i], "children");
    for (std::size_t k = 0; k < children.size(); ++k) {
      const auto child = children[k].get<std::size_t>();
      if (parents[child] != kNone) {
        Fail(inPlace.At(i).Member("children").At(k),
             "node " + std::to_string(child) + " is a child of node " + std::to_string(parents[child]) + " already");
      }
      parents[child] = i;
    }
  }
  return parents;
}

void CheckNoLoop(const std::vector<std::size_t>& inParents, const Place& inPlace) {
  std::vector<std::size_t> walk(inParents.size(), kNone);  // that came by first
  for (std::size_t start = 0; start < inParents.size(); ++start) {
    std::size_t node = start;
    for (; node != kNone && walk[node] == kNone; node = inParents[node]) {
      walk[node] = start;
    }
    if (node != kNone && walk[node] == start) {
      Fail(inPlace.At(node), "the node is below itself in the tree");
    }
  }
}

std::vector<uint8> ReadBufferFile(const std::string& inUri, const std::filesystem::path& inFolder,
                                  const Place& inPlace) {
  try {
    return ReadWholeFile(FileOfUri(inUri, inFolder, inPlace));
  } catch (const GltfProblem& problem) {
    Fail(inPlace, Quoted(inUri) + ": " + problem.what());
  }
}

std::optional<std::vector<uint8>> LoadBuffer(const Json& inBuffer, std::optional<std::vector<uint8>> inChunk,
                                             const std::filesystem::path& inFolder, const Place& inPlace) {
  const Json* uri = FindMember(inBuffer, "uri");
  if (uri == nullptr) {
    return inChunk;
  }
  const auto& text = uri->get_ref<const std::string&>();
  const Place place = inPlace.Member("uri");
  if (IsDataUri(text)) {
    return DecodeDataUri(text, place);
  }
  if (!IsRelativeUri(text)) {
    Fail(place, Quoted(text) + " is neither a relative path nor a data URI");
  }
  return ReadBufferFile(text, inFolder, place);
}

}  // namespace

void CheckRanges(const Json& inDocument) {
  const RangeCheck check(inDocument);
  const Place root;
  const Json& views = ArrayOf(inDocument, "bufferViews");
  const Place viewsPlace = root.Member("bufferViews");
  for (std::size_t i = 0; i < views.size(); ++i) {
    check.CheckView(views[i], viewsPlace.At(i));
  }
  const Json& accessors = ArrayOf(inDocument, "accessors");
  const Place accessorsPlace = root.Member("accessors");
  for (std::size_t i = 0; i < accessors.size(); ++i) {
    check.CheckAccessor(accessors[i], accessorsPlace.At(i));
  }
}

void CheckNodes(const Json& inDocument) {
  const Json& nodes = ArrayOf(inDocument, "nodes");
  const Place root;
  const Place place = root.Member("nodes");
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    CheckTransform(nodes[i], place.At(i));
  }
  CheckNoLoop(FindParents(nodes, place), place);
}

Buffers LoadBuffers(const Json& inDocument, GltfContainer& ioContainer, const std::filesystem::path& inFolder) {
  const Json& list = ArrayOf(inDocument, "buffers");
  const Place root;
  const Place place = root.Member("buffers");
  Buffers buffers;
  for (std::size_t i = 0; i < list.size(); ++i) {
    auto chunk = i == 0 ? std::move(ioContainer.fBinary) : std::nullopt;
    auto content = LoadBuffer(list[i], std::move(chunk), inFolder, place.At(i));
    const uint64 length = NumberOf(list[i], "byteLength", 0);
    if (content && content->size() < length) {
      Fail(place.At(i), "has " + Bytes(content->size()) + " of the " + Bytes(length) + " that it must have");
    }
    buffers.push_back(std::move(content));
  }
  return buffers;
}

}  // namespace qlx::host
