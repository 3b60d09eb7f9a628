#include "GltfAdditions.h"

#include <cstring>

#include "GltfPointers.h"

namespace qlx::host {

namespace {

const char* NameOf(Interpolation inInterpolation) {
  switch (inInterpolation) {
    case Interpolation::kStep:
      return "STEP";
    case Interpolation::kCubicSpline:
      return "CUBICSPLINE";
    default:
      return "LINEAR";
  }
}

void Append(Json& ioArray, const Json& inMore) {
  for (const Json& each : inMore) {
    ioArray.push_back(each);
  }
}

std::vector<bool> UsedSamplers(const Json& inClip) {
  std::vector<bool> used(inClip["samplers"].size());
  for (const Json& channel : inClip["channels"]) {
    used[channel["sampler"].get<std::size_t>()] = true;
  }
  return used;
}

}  // namespace

AddedData::AddedData(const Json& inDocument)
    : fFirstAccessor(static_cast<int>(ArrayOf(inDocument, "accessors").size())),
      fView(static_cast<int>(ArrayOf(inDocument, "bufferViews").size())) {}

// Every accessor begins where a real may stand.
int AddedData::Add(std::span<const uint8> inBytes, int inComponentType, int inType, std::size_t inCount) {
  fBytes.resize((fBytes.size() + sizeof(real32) - 1) / sizeof(real32) * sizeof(real32));
  tinygltf::Accessor accessor;
  accessor.bufferView = fView;
  accessor.byteOffset = fBytes.size();
  accessor.componentType = inComponentType;
  accessor.type = inType;
  accessor.count = inCount;
  fParts.accessors.push_back(std::move(accessor));
  fBytes.insert(fBytes.end(), inBytes.begin(), inBytes.end());
  return fFirstAccessor + static_cast<int>(fParts.accessors.size()) - 1;
}

int AddedData::AddTimes(std::span<const real32> inSeconds) {
  const int index = AddValues(inSeconds, TINYGLTF_TYPE_SCALAR);
  fParts.accessors.back().minValues = {static_cast<real64>(inSeconds.front())};
  fParts.accessors.back().maxValues = {static_cast<real64>(inSeconds.back())};
  return index;
}

int AddedData::AddValues(std::span<const real32> inValues, int inType) {
  std::vector<uint8> bytes(inValues.size_bytes());
  std::memcpy(bytes.data(), inValues.data(), bytes.size());
  const auto width = static_cast<std::size_t>(tinygltf::GetNumComponentsInType(static_cast<uint32>(inType)));
  return Add(bytes, TINYGLTF_COMPONENT_TYPE_FLOAT, inType, inValues.size() / width);
}

int AddedData::AddTruths(std::span<const real32> inValues) {
  std::vector<uint8> bytes;
  for (const real32 value : inValues) {
    bytes.push_back(value >= 0.5f ? 1 : 0);
  }
  return Add(bytes, TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE, TINYGLTF_TYPE_SCALAR, bytes.size());
}

void AddedData::PutInto(Json& ioDocument, std::size_t inBuffer, std::size_t inOffset) {
  if (IsEmpty()) {
    return;
  }
  tinygltf::BufferView view;
  view.buffer = static_cast<int>(inBuffer);
  view.byteOffset = inOffset;
  view.byteLength = fBytes.size();
  fParts.bufferViews = {view};
  const Json added = EncodeParts(fParts);
  Append(ioDocument["bufferViews"], added["bufferViews"]);
  Append(ioDocument["accessors"], added["accessors"]);
}

ClipChange::ClipChange(const Json& inDocument, std::optional<std::size_t> inClip) : fClip(inClip) {
  if (!fClip) {
    return;
  }
  const Json& channels = inDocument["animations"][*fClip]["channels"];
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (const auto target = TargetOf(inDocument, channels[i], Place())) {
      fChannels[target->fPointer] = i;
    }
  }
}

void ClipChange::SetTrack(const std::string& inPointer, Json inTarget, int inInput, int inOutput,
                          Interpolation inInterpolation) {
  fAdded.push_back({inPointer,
                    std::move(inTarget),
                    {{"input", inInput}, {"output", inOutput}, {"interpolation", NameOf(inInterpolation)}}});
}

void ClipChange::RemoveTrack(const std::string& inPointer) {
  const auto found = fChannels.find(inPointer);
  if (found != fChannels.end()) {
    fRemoved.insert(found->second);
  }
}

void ClipChange::PutInto(Json& ioDocument) {
  if (fAdded.empty() && fRemoved.empty()) {
    return;
  }
  if (!fClip) {
    MakeClip(ioDocument);
  }
  Json& animations = ioDocument["animations"];
  Json& clip = animations[*fClip];
  const std::vector<bool> wereUsed = UsedSamplers(clip);
  PutTracks(clip);
  DropChannels(clip);
  DropSamplers(clip, wereUsed);
  if (clip["channels"].empty()) {
    animations.erase(*fClip);
  }
  if (animations.empty()) {
    ioDocument.erase("animations");
  }
}

void ClipChange::MakeClip(Json& ioDocument) {
  Json& animations = ioDocument["animations"];
  fClip = animations.size();
  animations.push_back({{"name", "bake"}, {"channels", Json::array()}, {"samplers", Json::array()}});
}

void ClipChange::PutTracks(Json& ioClip) {
  for (Added& added : fAdded) {
    const std::size_t sampler = ioClip["samplers"].size();
    ioClip["samplers"].push_back(std::move(added.fSampler));
    const auto present = fChannels.find(added.fPointer);
    if (present != fChannels.end()) {
      ioClip["channels"][present->second]["sampler"] = sampler;
    } else {
      ioClip["channels"].push_back({{"sampler", sampler}, {"target", std::move(added.fTarget)}});
    }
  }
}

void ClipChange::DropChannels(Json& ioClip) const {
  Json kept = Json::array();
  Json& channels = ioClip["channels"];
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (!fRemoved.contains(i)) {
      kept.push_back(std::move(channels[i]));
    }
  }
  channels = std::move(kept);
}

void ClipChange::DropSamplers(Json& ioClip, const std::vector<bool>& inWereUsed) const {
  const std::vector<bool> areUsed = UsedSamplers(ioClip);
  std::vector<std::size_t> newIndex(areUsed.size());
  Json kept = Json::array();
  for (std::size_t i = 0; i < areUsed.size(); ++i) {
    newIndex[i] = kept.size();
    const bool wasUsed = i < inWereUsed.size() && inWereUsed[i];
    if (areUsed[i] || !wasUsed) {
      kept.push_back(std::move(ioClip["samplers"][i]));
    }
  }
  ioClip["samplers"] = std::move(kept);
  for (Json& channel : ioClip["channels"]) {
    channel["sampler"] = newIndex[channel["sampler"].get<std::size_t>()];
  }
}

}  // namespace qlx::host
