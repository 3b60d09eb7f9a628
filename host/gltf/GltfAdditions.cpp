#include "GltfAdditions.h"

#include <cstring>

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

int AddedData::Add(std::span<const real32> inValues, int inType) {
  tinygltf::Accessor accessor;
  accessor.bufferView = fView;
  accessor.byteOffset = fBytes.size();
  accessor.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
  accessor.type = inType;
  accessor.count =
      inValues.size() / static_cast<std::size_t>(tinygltf::GetNumComponentsInType(static_cast<uint32>(inType)));
  fParts.accessors.push_back(std::move(accessor));
  const std::size_t offset = fBytes.size();
  fBytes.resize(offset + inValues.size_bytes());
  std::memcpy(fBytes.data() + offset, inValues.data(), inValues.size_bytes());
  return fFirstAccessor + static_cast<int>(fParts.accessors.size()) - 1;
}

int AddedData::AddTimes(std::span<const real32> inSeconds) {
  const int index = Add(inSeconds, TINYGLTF_TYPE_SCALAR);
  fParts.accessors.back().minValues = {static_cast<real64>(inSeconds.front())};
  fParts.accessors.back().maxValues = {static_cast<real64>(inSeconds.back())};
  return index;
}

int AddedData::AddValues(std::span<const real32> inValues, int inType) {
  return Add(inValues, inType);
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
    const Json& target = channels[i]["target"];
    if (const Json* node = FindMember(target, "node")) {
      fChannels[{node->get<int>(), target["path"].get<std::string>()}] = i;
    }
  }
}

void ClipChange::SetTrack(int inNode, const char* inPath, int inInput, int inOutput, Interpolation inInterpolation) {
  tinygltf::AnimationSampler sampler;
  sampler.input = inInput;
  sampler.output = inOutput;
  sampler.interpolation = NameOf(inInterpolation);
  fAdded.samplers.push_back(std::move(sampler));
  tinygltf::AnimationChannel channel;
  channel.target_node = inNode;
  channel.target_path = inPath;
  fAdded.channels.push_back(std::move(channel));
}

void ClipChange::RemoveTrack(int inNode, const char* inPath) {
  const auto found = fChannels.find({inNode, inPath});
  if (found != fChannels.end()) {
    fRemoved.insert(found->second);
  }
}

void ClipChange::PutInto(Json& ioDocument) {
  if (fAdded.channels.empty() && fRemoved.empty()) {
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
  const std::size_t first = ioClip["samplers"].size();
  for (std::size_t i = 0; i < fAdded.channels.size(); ++i) {
    fAdded.channels[i].sampler = static_cast<int>(first + i);
  }
  if (fAdded.channels.empty()) {
    return;
  }
  tinygltf::Model parts;
  parts.animations.push_back(fAdded);
  const Json added = EncodeParts(parts)["animations"][0];
  Append(ioClip["samplers"], added["samplers"]);
  for (std::size_t i = 0; i < fAdded.channels.size(); ++i) {
    const auto present = fChannels.find({fAdded.channels[i].target_node, fAdded.channels[i].target_path});
    if (present != fChannels.end()) {
      ioClip["channels"][present->second]["sampler"] = first + i;
    } else {
      ioClip["channels"].push_back(added["channels"][i]);
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
