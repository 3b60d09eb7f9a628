// Builds small glTF files for tests, and opens them in a host.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "../../cli/TempFolder.h"
#include "gltf/Base64.h"
#include "gltf/GltfContainer.h"
#include "gltf/GltfDocument.h"
#include "gltf/GltfJson.h"

namespace qlx::host {

// A document under construction: its JSON, to be changed at will, and the bytes of its one buffer.
struct SceneText {
  Json fJson = Json::parse(R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": []}], "nodes": []})");
  std::vector<uint8> fBytes;

  // An accessor of 32-bit reals, with a buffer view of its own.
  std::size_t AddReals(const std::vector<real32>& inValues, const char* inType) {
    const std::size_t width = std::string(inType) == "SCALAR" ? 1 : static_cast<std::size_t>(inType[3] - '0');
    fJson["bufferViews"].push_back(
        {{"buffer", 0}, {"byteOffset", fBytes.size()}, {"byteLength", inValues.size() * sizeof(real32)}});
    fJson["accessors"].push_back({{"bufferView", fJson["bufferViews"].size() - 1},
                                  {"componentType", 5126},
                                  {"count", inValues.size() / width},
                                  {"type", inType}});
    const std::size_t offset = fBytes.size();
    fBytes.resize(offset + inValues.size() * sizeof(real32));
    std::memcpy(fBytes.data() + offset, inValues.data(), inValues.size() * sizeof(real32));
    fJson["buffers"] = {{{"byteLength", fBytes.size()}}};
    return fJson["accessors"].size() - 1;
  }

  void AddNode(Json inNode) {
    fJson["scenes"][0]["nodes"].push_back(fJson["nodes"].size());
    fJson["nodes"].push_back(std::move(inNode));
  }

  // A channel of the first animation.
  void AddChannel(int inNode, const char* inPath, const std::vector<real32>& inTimes,
                  const std::vector<real32>& inValues, const char* inInterpolation = "LINEAR") {
    AddSampler({{"node", inNode}, {"path", inPath}}, inTimes, inValues,
               std::string(inPath) == "rotation" ? "VEC4" : "VEC3", inInterpolation);
  }
  void AddSampler(const Json& inTarget, const std::vector<real32>& inTimes, const std::vector<real32>& inValues,
                  const char* inType, const char* inInterpolation = "LINEAR") {
    const std::size_t input = AddReals(inTimes, "SCALAR");
    fJson["accessors"][input]["min"] = {inTimes.front()};
    fJson["accessors"][input]["max"] = {inTimes.back()};
    const std::size_t output = AddReals(inValues, inType);
    Json& clip = fJson["animations"][0];
    clip["samplers"].push_back({{"input", input}, {"output", output}, {"interpolation", inInterpolation}});
    clip["channels"].push_back({{"sampler", clip["samplers"].size() - 1}, {"target", inTarget}});
  }

  std::string GetText() const {
    Json json = fJson;
    if (!fBytes.empty()) {
      json["buffers"][0]["uri"] = "data:application/octet-stream;base64," + EncodeBase64(fBytes);
    }
    return json.dump();
  }

  std::string GetGlb() const {
    GltfContainer container;
    container.fIsGlb = true;
    container.fText = fJson.dump();
    container.fBinary = fBytes;
    const std::vector<uint8> bytes = JoinContainer(container);
    return {bytes.begin(), bytes.end()};
  }
};

// Two nodes, one below the other; the upper one moves and turns for a second.
inline SceneText MakeMovingArm() {
  SceneText text;
  text.AddNode({{"name", "Arm"}, {"children", {1}}});
  text.fJson["nodes"].push_back({{"name", "Hand"}, {"translation", {0, 1, 0}}});
  text.AddChannel(0, "translation", {0, 0.5f, 1}, {0, 0, 0, 1, 0, 0, 1, 2, 0});
  text.AddChannel(0, "rotation", {0, 1}, {0, 0, 0, 1, 0, 0, 0.70710677f, 0.70710677f});
  text.fJson["animations"][0]["name"] = "Wave";
  return text;
}

// A folder, a host, and the documents in it.
class GltfTest : public testing::Test {
 protected:
  std::unique_ptr<GltfDocument> Open(std::string_view inName, const GltfReadOptions& inOptions = {}) {
    return GltfDocument::Read(fFolder / inName, inOptions, fHost);
  }
  std::unique_ptr<GltfDocument> OpenText(const SceneText& inText, const GltfReadOptions& inOptions = {}) {
    fFolder.Write("in.gltf", inText.GetText());
    return Open("in.gltf", inOptions);
  }
  void LoadPlugin() { fHost.LoadPlugin(QLX_PLUGIN_FILE); }
  std::unique_ptr<GltfDocument> OpenExample(const std::string& inName) {
    return GltfDocument::Read(std::filesystem::path(QLX_EXAMPLES) / (inName + ".gltf"), {}, fHost);
  }
  static Element& ElementOf(GltfDocument& inDocument, const char* inName) {
    Element* const found = inDocument.GetScene().FindByName(inName);
    EXPECT_NE(found, nullptr) << inName;
    return *found;
  }
  // What a document is written as.
  Json Written(const GltfDocument& inDocument) {
    inDocument.Write(fFolder / "out.gltf");
    return ReadJson("out.gltf");
  }
  Json Baked(const GltfDocument& inDocument, const BakeResult& inBake, KeepModifiers inKeep = KeepModifiers::kNo) {
    inDocument.WriteBaked(fFolder / "out.gltf", inBake, inKeep);
    return ReadJson("out.gltf");
  }

  // The JSON of a file in the folder, of either form.
  Json ReadJson(std::string_view inName) const {
    const std::string bytes = ReadFile(fFolder / inName);
    return Json::parse(SplitContainer({bytes.begin(), bytes.end()}).fText);
  }

  // What reading a text as a file gives: one line with the file's name, and `inError` somewhere in it.
  void ExpectError(const std::string& inText, const std::string& inError, const std::string& inLabel) {
    fFolder.Write("bad.gltf", inText);
    const std::string error = ReadError("bad.gltf");
    EXPECT_NE(error.find(inError), std::string::npos) << inLabel << "\n  gave: " << error << "\n  not:  " << inError;
    EXPECT_TRUE(error.starts_with("bad.gltf: ")) << inLabel << ": " << error;
    EXPECT_EQ(error.find('\n'), std::string::npos) << inLabel << ": " << error;
  }

  // The whole line of the `UserError` that reading the file gives, without the folder; empty when it can be read.
  std::string ReadError(std::string_view inName) {
    try {
      Open(inName);
      return {};
    } catch (const UserError& error) {
      const std::string text = error.what();
      const std::size_t name = text.find(inName);
      return name == std::string::npos ? text : text.substr(name);
    }
  }

  TempFolder fFolder;
  Diagnostics fDiagnostics;
  Host fHost{fDiagnostics};
};

}  // namespace qlx::host
