#include "GltfPointers.h"

#include <array>
#include <charconv>
#include <string_view>

namespace qlx::host {

namespace {

constexpr std::string_view kNodes = "/nodes/";
constexpr std::array<std::string_view, 4> kNodeProperties{"translation", "rotation", "scale", "weights"};

const Json* ExtensionOf(const Json& inTarget, const char* inName) {
  const Json* const extensions = FindMember(inTarget, "extensions");
  return extensions == nullptr ? nullptr : FindMember(*extensions, inName);
}

// "/nodes/3/scale" names what a channel of the node would.
void FindNode(const Json& inDocument, ChannelTarget& ioTarget) {
  const std::string& pointer = ioTarget.fPointer;
  if (!pointer.starts_with(kNodes)) {
    return;
  }
  std::size_t node = 0;
  const char* const end = pointer.data() + pointer.size();
  const auto [rest, error] = std::from_chars(pointer.data() + kNodes.size(), end, node);
  if (error != std::errc() || rest == end || *rest != '/' || node >= ArrayOf(inDocument, "nodes").size()) {
    return;
  }
  const std::string path(rest + 1, end);
  for (const std::string_view property : kNodeProperties) {
    if (path == property) {
      ioTarget.fNode = node;
      ioTarget.fPath = path;
    }
  }
}

// A property that is not written may have a default: the object that it would stand in is all that can be asked for.
bool LeadsSomewhere(const Json& inDocument, const std::string& inPointer) {
  const std::size_t last = inPointer.rfind('/');
  try {
    return last != std::string::npos && last > 0 && inPointer[0] == '/' &&
           inDocument.contains(Json::json_pointer(inPointer.substr(0, last)));
  } catch (const Json::exception&) {  // is no pointer
    return false;
  }
}

}  // namespace

std::optional<ChannelTarget> TargetOf(const Json& inDocument, const Json& inChannel, const Place& inPlace) {
  const Json& target = inChannel["target"];
  if (const Json* const node = FindMember(target, "node")) {
    const auto number = node->get<std::size_t>();
    const auto path = target["path"].get<std::string>();
    return ChannelTarget{PointerOfNode(number, path), number, path, false};
  }
  const Json* const extension = ExtensionOf(target, kPointerExtension);
  if (extension == nullptr) {
    return std::nullopt;
  }
  const Json* const pointer = FindMember(*extension, "pointer");
  if (pointer == nullptr || !pointer->is_string()) {
    const Place targetPlace = inPlace.Member("target");
    const Place extensionsPlace = targetPlace.Member("extensions");
    const Place place = extensionsPlace.Member(kPointerExtension);
    Fail(place.Member("pointer"), "must be a text");
  }
  ChannelTarget found{pointer->get<std::string>(), {}, {}, true};
  FindNode(inDocument, found);
  return found;
}

std::string PointerOfNode(std::size_t inNode, const std::string& inPath) {
  return std::string(kNodes) + std::to_string(inNode) + "/" + inPath;
}

Json MakeNodeTarget(std::size_t inNode, const std::string& inPath) {
  return {{"node", inNode}, {"path", inPath}};
}

Json MakePointerTarget(const std::string& inPointer) {
  return {{"path", "pointer"}, {"extensions", {{kPointerExtension, {{"pointer", inPointer}}}}}};
}

bool HasPointers(const Json& inDocument) {
  for (const Json& animation : ArrayOf(inDocument, "animations")) {
    for (const Json& channel : animation["channels"]) {
      if (ExtensionOf(channel["target"], kPointerExtension) != nullptr) {
        return true;
      }
    }
  }
  return false;
}

void CheckPointers(const Json& inDocument, const ValueTargets& inTargets, Diagnostics& ioDiagnostics) {
  const Place root;
  const Place place = root.Member("animations");
  const Json& animations = ArrayOf(inDocument, "animations");
  for (std::size_t i = 0; i < animations.size(); ++i) {
    const Place animationPlace = place.At(i);
    const Place channelsPlace = animationPlace.Member("channels");
    const Json& channels = animations[i]["channels"];
    for (std::size_t k = 0; k < channels.size(); ++k) {
      const Place channelPlace = channelsPlace.At(k);
      const auto target = TargetOf(inDocument, channels[k], channelPlace);
      if (target && target->fIsByPointer && !target->fNode && inTargets.Find(target->fPointer) == nullptr &&
          !LeadsSomewhere(inDocument, target->fPointer)) {
        ioDiagnostics.Warn(channelPlace.GetText() + ".target: the pointer " + Quoted(target->fPointer) +
                           " leads to nothing");
      }
    }
  }
}

}  // namespace qlx::host
