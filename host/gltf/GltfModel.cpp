#include "GltfModel.h"

#include <sstream>

namespace qlx::host {

namespace {

// A copy of an object without what tinygltf need not see.
Json PlainCopy(const Json& inObject) {
  Json copy = Json::object();
  for (const auto& [name, value] : inObject.items()) {
    if (name != "extensions" && name != "extras" && name != "min" && name != "max") {
      copy[name] = value;
    }
  }
  return copy;
}

// tinygltf drops a channel without a node, which would shift those after it. Such a channel gets a path that the host
// does not animate.
Json PlainAnimation(const Json& inAnimation) {
  Json copy = PlainCopy(inAnimation);
  for (Json& channel : copy["channels"]) {
    channel = PlainCopy(channel);
    Json& target = channel["target"];
    target = PlainCopy(target);
    if (!target.contains("node")) {
      target = {{"node", 0}, {"path", "none"}};
    }
  }
  return copy;
}

Json PlainDocument(const Json& inDocument) {
  Json copy = {{"asset", {{"version", "2.0"}}}};
  for (const char* name : {"scenes", "nodes", "skins", "accessors", "bufferViews", "animations"}) {
    Json& list = copy[name] = Json::array();
    for (const Json& object : ArrayOf(inDocument, name)) {
      list.push_back(std::string_view(name) == "animations" ? PlainAnimation(object) : PlainCopy(object));
    }
  }
  return copy;
}

}  // namespace

std::optional<std::span<const uint8>> GltfModel::GetViewBytes(int inView) const {
  const tinygltf::BufferView& view = fParts.bufferViews[static_cast<std::size_t>(inView)];
  const auto& buffer = fBuffers[static_cast<std::size_t>(view.buffer)];
  if (!buffer) {
    return std::nullopt;
  }
  return std::span(*buffer).subspan(view.byteOffset, view.byteLength);
}

tinygltf::Model DecodeParts(const Json& inDocument) {
  const std::string text = PlainDocument(inDocument).dump();
  if (text.size() > std::numeric_limits<unsigned>::max()) {
    throw GltfProblem("the file is too large");
  }
  tinygltf::Model parts;
  std::string error;
  std::string warning;
  tinygltf::TinyGLTF decoder;
  if (!decoder.LoadASCIIFromString(&parts, &error, &warning, text.data(), static_cast<unsigned>(text.size()), "")) {
    throw GltfProblem(Quoted(error) + " (from the decoder)");
  }
  return parts;
}

Json EncodeParts(const tinygltf::Model& inParts) {
  std::ostringstream text;
  tinygltf::TinyGLTF encoder;
  encoder.WriteGltfSceneToStream(&inParts, text, false, false);
  return Json::parse(text.str());
}

}  // namespace qlx::host
