#include "GltfContent.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "GltfPointers.h"

namespace qlx::host {

namespace {

std::size_t VertexCount(const Json& inDocument, const Json& inPrimitive) {
  const Json* position = FindMember(inPrimitive["attributes"], "POSITION");
  return position == nullptr ? 0 : inDocument["accessors"][position->get<std::size_t>()]["count"].get<std::size_t>();
}

class ContentCheck {
 public:
  ContentCheck(const Json& inDocument, const GltfModel& inModel) : fDocument(inDocument), fModel(inModel) {}

  void CheckAccessor(int inAccessor, const Place& inPlace) const {
    const tinygltf::Accessor& accessor = fModel.fParts.accessors[static_cast<std::size_t>(inAccessor)];
    if (!HasContent(fModel, inAccessor)) {
      return;
    }
    if (accessor.sparse.isSparse) {
      CheckSparse(accessor, inPlace.Member("sparse"));
    }
    if (accessor.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT) {
      const std::vector<real32> values = ReadReals(fModel, inAccessor);
      const auto bad = std::find_if_not(values.begin(), values.end(), [](real32 each) { return std::isfinite(each); });
      if (bad != values.end()) {
        Fail(inPlace, "value " + std::to_string(bad - values.begin()) + " is not a finite number");
      }
    }
  }

  void CheckPrimitive(const Json& inPrimitive, const Place& inPlace) const {
    const Json& attributes = inPrimitive["attributes"];
    const std::size_t vertices = VertexCount(fDocument, inPrimitive);
    for (const auto& [name, index] : attributes.items()) {
      CheckCount(index, vertices, inPlace.Member("attributes").Member(name));
      if (name == "TEXCOORD_1" && !attributes.contains("TEXCOORD_0")) {
        Fail(inPlace.Member("attributes"), "has \"TEXCOORD_1\" without \"TEXCOORD_0\"");
      }
    }
    const Json& targets = ArrayOf(inPrimitive, "targets");
    for (std::size_t i = 0; i < targets.size(); ++i) {
      for (const auto& [name, index] : targets[i].items()) {
        CheckCount(index, vertices, inPlace.Member("targets").At(i).Member(name));
      }
    }
    if (const Json* indices = FindMember(inPrimitive, "indices")) {
      CheckIndices(indices->get<int>(), vertices, inPlace.Member("indices"));
    }
  }

 private:
  void CheckSparse(const tinygltf::Accessor& inAccessor, const Place& inPlace) const {
    const std::vector<uint32> places = ReadSparsePlaces(fModel, inAccessor);
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (places[i] >= inAccessor.count || (i > 0 && places[i] <= places[i - 1])) {
        Fail(inPlace.Member("indices"), "index " + std::to_string(i) + " (" + std::to_string(places[i]) +
                                            ") is out of range or not above the one before");
      }
    }
  }

  void CheckCount(const Json& inAccessor, std::size_t inVertices, const Place& inPlace) const {
    const auto count = fModel.fParts.accessors[inAccessor.get<std::size_t>()].count;
    if (inVertices != 0 && count != inVertices) {
      Fail(inPlace, "has " + std::to_string(count) + " elements where POSITION has " + std::to_string(inVertices));
    }
  }

  void CheckIndices(int inAccessor, std::size_t inVertices, const Place& inPlace) const {
    const tinygltf::Accessor& accessor = fModel.fParts.accessors[static_cast<std::size_t>(inAccessor)];
    const bool isUnsigned = accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE ||
                            accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT ||
                            accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
    if (accessor.type != TINYGLTF_TYPE_SCALAR || !isUnsigned) {
      Fail(inPlace, "must be an accessor of unsigned whole numbers");
    }
    const bool hasBytes = accessor.bufferView >= 0 || accessor.sparse.isSparse;
    if (inVertices == 0 || !hasBytes || !HasContent(fModel, inAccessor)) {
      return;  // compressed: nothing to look at
    }
    for (const uint32 index : ReadWholes(fModel, inAccessor)) {
      if (index >= inVertices) {
        Fail(inPlace, "index " + std::to_string(index) + " is out of range, there are " + std::to_string(inVertices) +
                          " vertices");
      }
    }
  }

  const Json& fDocument;
  const GltfModel& fModel;
};

class AnimationCheck {
  // What a sampler's output may hold beside reals: nothing, normalised integers, integers of any kind.
  enum class Numbers : uint8 { kReal, kNormalized, kAny };

 public:
  AnimationCheck(const Json& inDocument, const GltfModel& inModel, const ValueTargets& inValues)
      : fDocument(inDocument), fModel(inModel), fValues(inValues), fTimesChecked(inModel.fParts.accessors.size()) {}

  void Check(const tinygltf::Animation& inAnimation, const Json& inSource, const Place& inPlace) {
    for (std::size_t i = 0; i < inAnimation.samplers.size(); ++i) {
      CheckSampler(inAnimation.samplers[i], inPlace.Member("samplers").At(i));
    }
    fTargets.clear();
    for (std::size_t i = 0; i < inAnimation.channels.size(); ++i) {
      CheckChannel(inAnimation, i, inSource["channels"][i], inPlace.Member("channels").At(i));
    }
  }

 private:
  const tinygltf::Accessor& AccessorAt(int inIndex) const {
    return fModel.fParts.accessors[static_cast<std::size_t>(inIndex)];
  }

  void CheckReadable(int inAccessor, const Place& inPlace) const {
    if (!HasContent(fModel, inAccessor)) {
      Fail(inPlace, "the bytes of accessor " + std::to_string(inAccessor) + " are not in the file");
    }
  }

  void CheckSampler(const tinygltf::AnimationSampler& inSampler, const Place& inPlace) {
    const std::string& interpolation = inSampler.interpolation;
    if (interpolation != "LINEAR" && interpolation != "STEP" && interpolation != "CUBICSPLINE") {
      Fail(inPlace.Member("interpolation"), Quoted(interpolation) + " is unknown");
    }
    CheckReadable(inSampler.output, inPlace.Member("output"));
    CheckTimes(inSampler.input, inPlace.Member("input"));
  }

  void CheckTimes(int inAccessor, const Place& inPlace) {
    const tinygltf::Accessor& accessor = AccessorAt(inAccessor);
    if (fTimesChecked[static_cast<std::size_t>(inAccessor)]) {
      return;
    }
    if (accessor.type != TINYGLTF_TYPE_SCALAR || accessor.componentType != TINYGLTF_COMPONENT_TYPE_FLOAT) {
      Fail(inPlace, "key times must be 32-bit reals");
    }
    CheckReadable(inAccessor, inPlace);
    const std::vector<real32> times = ReadReals(fModel, inAccessor);
    constexpr real32 kLatest = 11000.0f;  // seconds; scene time is a 32-bit number of ticks
    for (std::size_t i = 0; i < times.size(); ++i) {
      if (!(std::fabs(times[i]) <= kLatest)) {
        Fail(inPlace, "key " + std::to_string(i) + " is not within 11000 seconds");
      }
      if (i > 0 && times[i] <= times[i - 1]) {
        Fail(inPlace, "key " + std::to_string(i) + " is not later than the key before");
      }
    }
    fTimesChecked[static_cast<std::size_t>(inAccessor)] = true;
  }

  void CheckChannel(const tinygltf::Animation& inAnimation, std::size_t inIndex, const Json& inSource,
                    const Place& inPlace) {
    const uint64 index = NumberOf(inSource, "sampler", 0);  // not the decoded one: that has 32 bits
    if (index >= inAnimation.samplers.size()) {
      Fail(inPlace.Member("sampler"), std::to_string(index) + " is out of range, there are " +
                                          std::to_string(inAnimation.samplers.size()) + " samplers");
    }
    const auto target = TargetOf(fDocument, inSource, inPlace);
    if (!target) {
      return;  // another extension says what it animates, or nothing does
    }
    CheckTarget(*target, inAnimation.samplers[static_cast<std::size_t>(index)], inSource["target"], inPlace);
    const auto [earlier, isNew] = fTargets.try_emplace(target->fPointer, inIndex);
    if (!isNew) {
      Fail(inPlace.Member("target"), "the same as that of channel " + std::to_string(earlier->second));
    }
  }

  void CheckTarget(const ChannelTarget& inTarget, const tinygltf::AnimationSampler& inSampler, const Json& inSource,
                   const Place& inPlace) const {
    const std::string& path = inTarget.fPath;
    if (path == "translation" || path == "scale") {
      CheckOutput(inSampler, TINYGLTF_TYPE_VEC3, 1, inTarget.fIsByPointer ? Numbers::kNormalized : Numbers::kReal,
                  inPlace);
    } else if (path == "rotation") {
      CheckOutput(inSampler, TINYGLTF_TYPE_VEC4, 1, Numbers::kNormalized, inPlace);
    } else if (path == "weights") {
      const std::size_t morphs = CountMorphs(fDocument, fModel.fParts.nodes[*inTarget.fNode].mesh);
      CheckOutput(inSampler, TINYGLTF_TYPE_SCALAR, morphs, Numbers::kNormalized, inPlace);
    } else if (const ValueTarget* const value = fValues.Find(inTarget.fPointer)) {
      const bool isTruth = value->fRule->fType == "bool"_id;
      CheckOutput(inSampler, value->GetAccessorType(), value->fCount, isTruth ? Numbers::kAny : Numbers::kNormalized,
                  inPlace);
    } else if (!inTarget.fIsByPointer && !inSource.contains("extensions")) {
      Fail(inPlace.Member("target").Member("path"), Quoted(path) + " is unknown");
    }
  }

  void CheckOutput(const tinygltf::AnimationSampler& inSampler, int inType, std::size_t inValuesInKey,
                   Numbers inNumbers, const Place& inPlace) const {
    const tinygltf::Accessor& output = AccessorAt(inSampler.output);
    const bool fits = output.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT || inNumbers == Numbers::kAny ||
                      (inNumbers == Numbers::kNormalized && output.normalized);
    if (output.type != inType || !fits) {
      Fail(inPlace, "its sampler's output (accessor " + std::to_string(inSampler.output) +
                        ") is not of the type that the target takes");
    }
    const std::size_t keys = AccessorAt(inSampler.input).count;
    const std::size_t needed = keys * inValuesInKey * (inSampler.interpolation == "CUBICSPLINE" ? 3 : 1);
    if (output.count != needed) {
      Fail(inPlace, "its sampler has " + std::to_string(output.count) + " values where " + std::to_string(keys) +
                        " keys need " + std::to_string(needed));
    }
  }

  const Json& fDocument;
  const GltfModel& fModel;
  const ValueTargets& fValues;
  std::vector<bool> fTimesChecked;              // by accessor
  std::map<std::string, std::size_t> fTargets;  // channel of each
};

}  // namespace

void CheckAccessorContent(const Json& inDocument, const GltfModel& inModel) {
  const ContentCheck check(inDocument, inModel);
  const Place root;
  for (std::size_t i = 0; i < inModel.fParts.accessors.size(); ++i) {
    check.CheckAccessor(static_cast<int>(i), root.Member("accessors").At(i));
  }
  const Json& meshes = ArrayOf(inDocument, "meshes");
  for (std::size_t i = 0; i < meshes.size(); ++i) {
    const Json& primitives = meshes[i]["primitives"];
    for (std::size_t k = 0; k < primitives.size(); ++k) {
      check.CheckPrimitive(primitives[k], root.Member("meshes").At(i).Member("primitives").At(k));
    }
  }
}

void CheckAnimations(const Json& inDocument, const GltfModel& inModel, const ValueTargets& inValues) {
  AnimationCheck check(inDocument, inModel, inValues);
  const Place root;
  for (std::size_t i = 0; i < inModel.fParts.animations.size(); ++i) {
    check.Check(inModel.fParts.animations[i], inDocument["animations"][i], root.Member("animations").At(i));
  }
}

std::size_t CountMorphs(const Json& inDocument, int inMesh) {
  if (inMesh < 0) {
    return 0;
  }
  return ArrayOf(inDocument["meshes"][static_cast<std::size_t>(inMesh)]["primitives"][0], "targets").size();
}

}  // namespace qlx::host
