#include "GltfSchema.h"

#include <cmath>
#include <span>

namespace qlx::host {

namespace {

enum class Kind : uint8 {
  kBoolean,
  kString,
  kStrings,
  kNumber,
  kNumbers,   // fLeast of them, exactly; any count from 1 for 0
  kWhole,     // a whole number, fLeast or more
  kIndex,     // of an object in the top-level array fOf
  kIndices,   // an array of them, fLeast or more, no two alike
  kObject,    // with the members fMembers
  kObjects,   // an array of them, fLeast or more
  kIndexMap,  // an object of indices: the attributes of a primitive
  kIndexMaps  // an array of them: its morph targets
};

struct Member;
using Members = std::span<const Member>;

struct Member {
  const char* fName;
  Kind fKind;
  bool fRequired = false;
  unsigned fLeast = 0;
  const char* fOf = "";
  Members fMembers{};
};

constexpr bool kRequired = true;
constexpr bool kOptional = false;

constexpr Member kAsset[] = {{"version", Kind::kString, kRequired},
                             {"minVersion", Kind::kString},
                             {"generator", Kind::kString},
                             {"copyright", Kind::kString}};

constexpr Member kScene[] = {{"name", Kind::kString}, {"nodes", Kind::kIndices, kOptional, 0, "nodes"}};

constexpr Member kNode[] = {{"name", Kind::kString},
                            {"children", Kind::kIndices, kOptional, 0, "nodes"},
                            {"mesh", Kind::kIndex, kOptional, 0, "meshes"},
                            {"skin", Kind::kIndex, kOptional, 0, "skins"},
                            {"camera", Kind::kIndex, kOptional, 0, "cameras"},
                            {"matrix", Kind::kNumbers, kOptional, 16},
                            {"translation", Kind::kNumbers, kOptional, 3},
                            {"rotation", Kind::kNumbers, kOptional, 4},
                            {"scale", Kind::kNumbers, kOptional, 3},
                            {"weights", Kind::kNumbers}};

constexpr Member kSkin[] = {{"name", Kind::kString},
                            {"joints", Kind::kIndices, kRequired, 1, "nodes"},
                            {"skeleton", Kind::kIndex, kOptional, 0, "nodes"},
                            {"inverseBindMatrices", Kind::kIndex, kOptional, 0, "accessors"}};

constexpr Member kPrimitive[] = {{"attributes", Kind::kIndexMap, kRequired, 0, "accessors"},
                                 {"indices", Kind::kIndex, kOptional, 0, "accessors"},
                                 {"material", Kind::kIndex, kOptional, 0, "materials"},
                                 {"mode", Kind::kWhole},
                                 {"targets", Kind::kIndexMaps, kOptional, 0, "accessors"}};

constexpr Member kMesh[] = {
    {"name", Kind::kString}, {"primitives", Kind::kObjects, kRequired, 1, "", kPrimitive}, {"weights", Kind::kNumbers}};

constexpr Member kSparseIndices[] = {{"bufferView", Kind::kIndex, kRequired, 0, "bufferViews"},
                                     {"byteOffset", Kind::kWhole},
                                     {"componentType", Kind::kWhole, kRequired}};
constexpr Member kSparseValues[] = {{"bufferView", Kind::kIndex, kRequired, 0, "bufferViews"},
                                    {"byteOffset", Kind::kWhole}};
constexpr Member kSparse[] = {{"count", Kind::kWhole, kRequired, 1},
                              {"indices", Kind::kObject, kRequired, 0, "", kSparseIndices},
                              {"values", Kind::kObject, kRequired, 0, "", kSparseValues}};

constexpr Member kAccessor[] = {{"name", Kind::kString},
                                {"bufferView", Kind::kIndex, kOptional, 0, "bufferViews"},
                                {"byteOffset", Kind::kWhole},
                                {"componentType", Kind::kWhole, kRequired},
                                {"normalized", Kind::kBoolean},
                                {"count", Kind::kWhole, kRequired, 1},
                                {"type", Kind::kString, kRequired},
                                {"max", Kind::kNumbers},
                                {"min", Kind::kNumbers},
                                {"sparse", Kind::kObject, kOptional, 0, "", kSparse}};

constexpr Member kBufferView[] = {{"name", Kind::kString},
                                  {"buffer", Kind::kIndex, kRequired, 0, "buffers"},
                                  {"byteOffset", Kind::kWhole},
                                  {"byteLength", Kind::kWhole, kRequired, 1},
                                  {"byteStride", Kind::kWhole, kOptional, 4},
                                  {"target", Kind::kWhole}};

constexpr Member kBuffer[] = {
    {"name", Kind::kString}, {"uri", Kind::kString}, {"byteLength", Kind::kWhole, kRequired, 1}};

constexpr Member kImage[] = {{"name", Kind::kString},
                             {"uri", Kind::kString},
                             {"mimeType", Kind::kString},
                             {"bufferView", Kind::kIndex, kOptional, 0, "bufferViews"}};

constexpr Member kTexture[] = {{"name", Kind::kString},
                               {"sampler", Kind::kIndex, kOptional, 0, "samplers"},
                               {"source", Kind::kIndex, kOptional, 0, "images"}};

constexpr Member kTextureSampler[] = {{"name", Kind::kString},
                                      {"magFilter", Kind::kWhole},
                                      {"minFilter", Kind::kWhole},
                                      {"wrapS", Kind::kWhole},
                                      {"wrapT", Kind::kWhole}};

constexpr Member kTextureInfo[] = {{"index", Kind::kIndex, kRequired, 0, "textures"},
                                   {"texCoord", Kind::kWhole},
                                   {"scale", Kind::kNumber},
                                   {"strength", Kind::kNumber}};

constexpr Member kRoughness[] = {{"baseColorFactor", Kind::kNumbers, kOptional, 4},
                                 {"baseColorTexture", Kind::kObject, kOptional, 0, "", kTextureInfo},
                                 {"metallicFactor", Kind::kNumber},
                                 {"roughnessFactor", Kind::kNumber},
                                 {"metallicRoughnessTexture", Kind::kObject, kOptional, 0, "", kTextureInfo}};

constexpr Member kMaterial[] = {{"name", Kind::kString},
                                {"pbrMetallicRoughness", Kind::kObject, kOptional, 0, "", kRoughness},
                                {"normalTexture", Kind::kObject, kOptional, 0, "", kTextureInfo},
                                {"occlusionTexture", Kind::kObject, kOptional, 0, "", kTextureInfo},
                                {"emissiveTexture", Kind::kObject, kOptional, 0, "", kTextureInfo},
                                {"emissiveFactor", Kind::kNumbers, kOptional, 3},
                                {"alphaMode", Kind::kString},
                                {"alphaCutoff", Kind::kNumber},
                                {"doubleSided", Kind::kBoolean}};

constexpr Member kPerspective[] = {{"aspectRatio", Kind::kNumber},
                                   {"yfov", Kind::kNumber, kRequired},
                                   {"zfar", Kind::kNumber},
                                   {"znear", Kind::kNumber, kRequired}};
constexpr Member kOrthographic[] = {{"xmag", Kind::kNumber, kRequired},
                                    {"ymag", Kind::kNumber, kRequired},
                                    {"zfar", Kind::kNumber, kRequired},
                                    {"znear", Kind::kNumber, kRequired}};
constexpr Member kCamera[] = {{"name", Kind::kString},
                              {"type", Kind::kString, kRequired},
                              {"perspective", Kind::kObject, kOptional, 0, "", kPerspective},
                              {"orthographic", Kind::kObject, kOptional, 0, "", kOrthographic}};

// The index of a channel's sampler is one into its own animation: that is checked with the animation.
constexpr Member kTarget[] = {{"node", Kind::kIndex, kOptional, 0, "nodes"}, {"path", Kind::kString, kRequired}};
constexpr Member kChannel[] = {{"sampler", Kind::kWhole, kRequired},
                               {"target", Kind::kObject, kRequired, 0, "", kTarget}};
constexpr Member kSampler[] = {{"input", Kind::kIndex, kRequired, 0, "accessors"},
                               {"output", Kind::kIndex, kRequired, 0, "accessors"},
                               {"interpolation", Kind::kString}};
constexpr Member kAnimation[] = {{"name", Kind::kString},
                                 {"channels", Kind::kObjects, kRequired, 1, "", kChannel},
                                 {"samplers", Kind::kObjects, kRequired, 1, "", kSampler}};

constexpr Member kDocument[] = {{"asset", Kind::kObject, kRequired, 0, "", kAsset},
                                {"extensionsUsed", Kind::kStrings},
                                {"extensionsRequired", Kind::kStrings},
                                {"scene", Kind::kIndex, kOptional, 0, "scenes"},
                                {"scenes", Kind::kObjects, kOptional, 0, "", kScene},
                                {"nodes", Kind::kObjects, kOptional, 0, "", kNode},
                                {"skins", Kind::kObjects, kOptional, 0, "", kSkin},
                                {"meshes", Kind::kObjects, kOptional, 0, "", kMesh},
                                {"accessors", Kind::kObjects, kOptional, 0, "", kAccessor},
                                {"bufferViews", Kind::kObjects, kOptional, 0, "", kBufferView},
                                {"buffers", Kind::kObjects, kOptional, 0, "", kBuffer},
                                {"images", Kind::kObjects, kOptional, 0, "", kImage},
                                {"textures", Kind::kObjects, kOptional, 0, "", kTexture},
                                {"samplers", Kind::kObjects, kOptional, 0, "", kTextureSampler},
                                {"materials", Kind::kObjects, kOptional, 0, "", kMaterial},
                                {"cameras", Kind::kObjects, kOptional, 0, "", kCamera},
                                {"animations", Kind::kObjects, kOptional, 0, "", kAnimation}};

class SchemaCheck {
 public:
  explicit SchemaCheck(Json& ioDocument) : fDocument(ioDocument) {}

  void CheckObject(Json& ioValue, Members inMembers, const Place& inPlace) {
    RequireType(ioValue.is_object(), "an object", inPlace);
    for (const Member& member : inMembers) {
      Json* found = FindMember(ioValue, member.fName);
      if (found != nullptr) {
        CheckMember(*found, member, inPlace.Member(member.fName));
      } else if (member.fRequired) {
        Fail(inPlace, std::string("lacks ") + Quoted(member.fName));
      }
    }
    CheckExtensions(ioValue, inPlace);
  }

 private:
  static void RequireType(bool inIsRight, const std::string& inWhat, const Place& inPlace) {
    if (!inIsRight) {
      Fail(inPlace, "must be " + inWhat);
    }
  }

  void CheckExtensions(const Json& inValue, const Place& inPlace) {
    const Json* extensions = FindMember(inValue, "extensions");
    if (extensions == nullptr) {
      return;
    }
    const Place place = inPlace.Member("extensions");
    RequireType(extensions->is_object(), "an object", place);
    for (const auto& [name, extension] : extensions->items()) {
      RequireType(extension.is_object(), "an object", place.Member(name));
    }
  }

  void CheckMember(Json& ioValue, const Member& inMember, const Place& inPlace) {
    switch (inMember.fKind) {
      case Kind::kBoolean:
        return RequireType(ioValue.is_boolean(), "true or false", inPlace);
      case Kind::kString:
        return RequireType(ioValue.is_string(), "a text", inPlace);
      case Kind::kNumber:
        return RequireType(ioValue.is_number(), "a number", inPlace);
      case Kind::kWhole:
        return CheckWhole(ioValue, inMember.fLeast, inPlace);
      case Kind::kIndex:
        return CheckIndex(ioValue, inMember.fOf, inPlace);
      case Kind::kObject:
        return CheckObject(ioValue, inMember.fMembers, inPlace);
      case Kind::kIndexMap:
        return CheckIndexMap(ioValue, inMember, inPlace);
      default:
        return CheckArray(ioValue, inMember, inPlace);
    }
  }

  void CheckArray(Json& ioValue, const Member& inMember, const Place& inPlace) {
    RequireType(ioValue.is_array(), "an array", inPlace);
    if (inMember.fKind == Kind::kObjects || inMember.fKind == Kind::kIndices) {
      RequireType(ioValue.size() >= inMember.fLeast, "an array that is not empty", inPlace);
    } else if (inMember.fKind == Kind::kNumbers && inMember.fLeast != 0) {
      RequireType(ioValue.size() == inMember.fLeast, std::to_string(inMember.fLeast) + " numbers", inPlace);
    }
    for (std::size_t i = 0; i < ioValue.size(); ++i) {
      CheckElement(ioValue[i], inMember, inPlace.At(i));
    }
    if (inMember.fKind == Kind::kIndices) {
      CheckDistinct(ioValue, inPlace);
    }
  }

  void CheckElement(Json& ioValue, const Member& inMember, const Place& inPlace) {
    switch (inMember.fKind) {
      case Kind::kStrings:
        return RequireType(ioValue.is_string(), "a text", inPlace);
      case Kind::kNumbers:
        return RequireType(ioValue.is_number(), "a number", inPlace);
      case Kind::kIndices:
        return CheckIndex(ioValue, inMember.fOf, inPlace);
      case Kind::kIndexMaps:
        return CheckIndexMap(ioValue, inMember, inPlace);
      default:
        return CheckObject(ioValue, inMember.fMembers, inPlace);
    }
  }

  void CheckIndexMap(Json& ioValue, const Member& inMember, const Place& inPlace) {
    RequireType(ioValue.is_object(), "an object", inPlace);
    for (auto& [name, index] : ioValue.items()) {
      CheckIndex(index, inMember.fOf, inPlace.Member(name));
    }
  }

  static void CheckWhole(Json& ioValue, uint64 inLeast, const Place& inPlace) {
    constexpr real64 kLargest = 9007199254740992.0;  // 2^53: whole numbers up to here are exact in a JSON reader
    RequireType(ioValue.is_number(), "a whole number", inPlace);
    const auto value = ioValue.get<real64>();
    if (value < 0 || value > kLargest || std::trunc(value) != value) {
      Fail(inPlace, ioValue.dump() + " is not a whole number from 0 to 2^53");
    }
    if (value < static_cast<real64>(inLeast)) {
      Fail(inPlace, ioValue.dump() + " is less than " + std::to_string(inLeast));
    }
    if (!ioValue.is_number_unsigned()) {
      ioValue = static_cast<uint64>(value);
    }
  }

  void CheckIndex(Json& ioValue, const char* inOf, const Place& inPlace) {
    CheckWhole(ioValue, 0, inPlace);
    const Json& list = ArrayOf(fDocument, inOf);
    const std::size_t count = list.is_array() ? list.size() : 0;
    if (ioValue.get<uint64>() >= count) {
      Fail(inPlace, ioValue.dump() + " is out of range, there are " + std::to_string(count) + " " + inOf);
    }
  }

  void CheckDistinct(const Json& inIndices, const Place& inPlace) {
    ++fRound;
    for (std::size_t i = 0; i < inIndices.size(); ++i) {
      const auto index = inIndices[i].get<std::size_t>();
      fSeen.resize(std::max(fSeen.size(), index + 1));
      if (fSeen[index] == fRound) {
        Fail(inPlace.At(i), std::to_string(index) + " stands in the list twice");
      }
      fSeen[index] = fRound;
    }
  }

  Json& fDocument;
  std::vector<std::size_t> fSeen;  // by index: the round that saw it last
  std::size_t fRound = 0;
};

// Versions "2.x" have one shape; a document may ask for a reader of a certain version.
void CheckVersion(const Json& inDocument) {
  const Json* asset = inDocument.is_object() ? FindMember(inDocument, "asset") : nullptr;
  if (asset == nullptr || !asset->is_object()) {
    throw GltfProblem("is no glTF: it has no \"asset\"");
  }
  const Json* version = FindMember(*asset, "version");
  if (version == nullptr) {
    throw GltfProblem("asset: lacks \"version\"");
  }
  const std::string text = version->is_string() ? version->get<std::string>() : version->dump();
  if (!version->is_string() || !text.starts_with("2.")) {
    throw GltfProblem("asset.version: is " + Quoted(text) + ", only glTF 2 can be read");
  }
  const Json* least = FindMember(*asset, "minVersion");
  if (least != nullptr && least->is_string() && *least != "2.0") {
    throw GltfProblem("asset.minVersion: is " + Quoted(least->get<std::string>()) + ", only glTF 2.0 can be read");
  }
}

}  // namespace

void CheckSchema(Json& ioDocument) {
  CheckVersion(ioDocument);
  SchemaCheck(ioDocument).CheckObject(ioDocument, kDocument, Place());
}

}  // namespace qlx::host
