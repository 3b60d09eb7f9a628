// Files that must be refused: one line with the file, the place and what is wrong, and nothing left behind.
#include <limits>

#include "SceneText.h"

namespace qlx::host {

namespace {

class GltfBadInput : public GltfTest {
 protected:
  // The moving arm with another value at a JSON pointer; "-" takes the member away.
  static std::string Changed(const std::string& inPointer, const std::string& inValue) {
    SceneText text = MakeMovingArm();
    const Json::json_pointer pointer(inPointer);
    if (inValue == "-") {
      text.fJson[pointer.parent_pointer()].erase(pointer.back());
    } else {
      text.fJson[pointer] = Json::parse(inValue);
    }
    return text.GetText();
  }
};

}  // namespace

TEST_F(GltfBadInput, NamesThePlaceAndWhatIsWrong) {
  const struct {
    const char* fPointer;
    const char* fValue;
    const char* fError;
  } rows[] = {
      // The document
      {"/asset", "-", "is no glTF"},
      {"/asset/version", "\"1.0\"", "asset.version: is \"1.0\""},
      {"/asset/version", "2", "asset.version"},
      {"/asset/minVersion", "\"2.1\"", "asset.minVersion"},
      {"/scene", "\"first\"", "scene: must be a whole number"},
      {"/scene", "1", "scene: 1 is out of range, there are 1 scenes"},
      {"/extensionsUsed", "[1]", "extensionsUsed[0]: must be a text"},
      // The tree
      {"/scenes/0/nodes/0", "2", "scenes[0].nodes[0]: 2 is out of range, there are 2 nodes"},
      {"/scenes/0/nodes", "[0, 0]", "scenes[0].nodes[1]: 0 stands in the list twice"},
      {"/nodes/1/children", "[0]", "the node is below itself in the tree"},
      {"/nodes/1/children", "[1]", "nodes[1].children[0]: node 1 is a child of node 0 already"},
      {"/nodes/0/children", "[-1]", "nodes[0].children[0]: -1 is not a whole number"},
      {"/nodes/0/name", "7", "nodes[0].name: must be a text"},
      {"/nodes/0", "[]", "nodes[0]: must be an object"},
      {"/nodes/0/extensions", "{\"any\": 1}", "nodes[0].extensions.any: must be an object"},
      {"/nodes/1/translation", "[0, 1]", "nodes[1].translation: must be 3 numbers"},
      {"/nodes/1/translation/1", "\"up\"", "nodes[1].translation[1]: must be a number"},
      {"/nodes/1/translation/1", "1e300", "nodes[1].translation[1]: is too large"},
      {"/nodes/1/rotation", "[0, 0, 0, 0]", "nodes[1].rotation: is no rotation"},
      {"/nodes/1/matrix", "[1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,0,1]", "has both \"matrix\" and \"translation\""},
      {"/nodes/1/mesh", "0", "nodes[1].mesh: 0 is out of range, there are 0 meshes"},
      {"/skins", "[{\"joints\": []}]", "skins[0].joints: must be an array that is not empty"},
      {"/skins", "[{\"joints\": [0, 9]}]", "skins[0].joints[1]: 9 is out of range"},
      // Bytes
      {"/bufferViews/0/byteLength", "1e300", "bufferViews[0].byteLength"},
      {"/bufferViews/0/byteLength", "0", "bufferViews[0].byteLength: 0 is less than 1"},
      {"/bufferViews/0/byteOffset", "9007199254740992", "bufferViews[0]: 12 bytes from byte 9007199254740992"},
      {"/bufferViews/0/buffer", "1", "bufferViews[0].buffer: 1 is out of range"},
      {"/bufferViews/0/byteStride", "6", "bufferViews[0].byteStride: 6 is no multiple of 4"},
      {"/bufferViews/1/byteStride", "4", "accessors[1]: elements of 12 bytes do not fit into the stride of 4"},
      {"/accessors/0/count", "4", "accessors[0]: 16 bytes from byte 0 on do not fit into the buffer view of 12"},
      {"/accessors/0/count", "4294967297", "accessors[0].count: 4294967297 is too large"},
      {"/accessors/0/byteOffset", "4", "accessors[0]: 12 bytes from byte 4"},
      {"/accessors/0/componentType", "5130", "accessors[0].componentType: unknown component type 5130"},
      {"/accessors/0/type", "\"VEC9\"", "accessors[0].type: unknown accessor type \"VEC9\""},
      {"/buffers/0/byteLength", "1000", "buffers[0]: has 88 bytes of the 1000"},
      // Meshes
      {"/meshes", "[{\"primitives\": {}}]", "meshes[0].primitives: must be an array"},
      {"/meshes", "[{\"primitives\": []}]", "meshes[0].primitives: must be an array that is not empty"},
      {"/meshes", R"([{"primitives": [{"attributes": {"POSITION": 9}}]}])",
       "meshes[0].primitives[0].attributes.POSITION: 9 is out of range"},
      {"/meshes", R"([{"primitives": [{"attributes": {"POSITION": 1, "NORMAL": 0, "JOINTS_0": 2}}]}])",
       "meshes[0].primitives[0].attributes.JOINTS_0: has 2 elements where POSITION has 3"},
      {"/meshes", R"([{"primitives": [{"attributes": {"POSITION": 1}, "indices": 0}]}])",
       "meshes[0].primitives[0].indices: must be an accessor of unsigned"},
      // Animations
      {"/animations/0/channels/0/sampler", "2", "animations[0].channels[0].sampler: 2 is out of range"},
      {"/animations/0/channels/0/sampler", "4294967296", "channels[0].sampler: 4294967296 is out of range"},
      {"/animations/0/channels/0/target/node", "5", "animations[0].channels[0].target.node: 5 is out of range"},
      {"/animations/0/channels/0/target", "{}", "animations[0].channels[0].target: lacks \"path\""},
      {"/animations/0/channels/0/target/path", "\"colour\"", "channels[0].target.path: \"colour\" is unknown"},
      {"/animations/0/channels/0/target/path", "\"rotation\"", "channels[0]: its sampler's output"},
      {"/animations/0/channels/1/target", "{\"node\": 0, \"path\": \"translation\"}", "channels[1]"},
      {"/animations/0/samplers/0/interpolation", "\"SMOOTH\"", "samplers[0].interpolation: \"SMOOTH\" is unknown"},
      {"/animations/0/samplers/0/interpolation", "\"CUBICSPLINE\"", "has 3 values where 3 keys need 9"},
      {"/animations/0/samplers/0/input", "1", "samplers[0].input: key times must be 32-bit reals"},
      {"/animations/0/samplers/0/input", "2", "has 3 values where 2 keys need 2"},
      {"/animations/0/samplers/0/output", "9", "samplers[0].output: 9 is out of range"},
      {"/animations/0/channels", "[]", "animations[0].channels: must be an array that is not empty"},
      // Ids
      {"/nodes/0/extensions", R"({"QLX_element": {"id": 1}})", "nodes[0].extensions.QLX_element.id: must be"},
      {"/nodes/0/extensions", R"({"QLX_element": {}})", "nodes[0].extensions.QLX_element.id: must be"},
      {"/nodes/0/extensions", R"({"QLX_element": {"id": 5, "x": 1}})", "QLX_element: unknown member \"x\""},
  };
  for (const auto& row : rows) {
    ExpectError(Changed(row.fPointer, row.fValue), row.fError, std::string(row.fPointer) + " = " + row.fValue);
  }
}

TEST_F(GltfBadInput, NamesWhatIsWrongWithASparseAccessor) {
  const struct {
    const char* fCount;
    const char* fIndices;
    const char* fValues;
    const char* fError;
  } rows[] = {
      {"4", R"("componentType": 5125)", "", "accessors[1].sparse.count: 4 is more"},
      {"1", R"("componentType": 5126)", "", "accessors[1].sparse.indices.componentType"},
      {"2", R"("componentType": 5121)", "", "accessors[1].sparse.indices: index 1 (0)"},
      {"1", R"("componentType": 5121, "byteOffset": 12)", "", "accessors[1].sparse.indices: 1 bytes"},
      {"3", R"("componentType": 5121)", R"(, "byteOffset": 4)", "accessors[1].sparse.values: 36 bytes"},
  };
  for (const auto& row : rows) {
    const std::string sparse = std::string(R"({"count": )") + row.fCount + R"(, "indices": {"bufferView": 0, )" +
                               row.fIndices + R"(}, "values": {"bufferView": 1)" + row.fValues + "}}";
    ExpectError(Changed("/accessors/1/sparse", sparse), row.fError, sparse);
  }
}

TEST_F(GltfBadInput, TextThatIsNoSceneIsRefusedWithItsPosition) {
  const struct {
    const char* fLabel;
    std::string fText;
    const char* fError;
  } rows[] = {
      {"empty", "", "the file is empty"},
      {"blank", " \n ", "line 2, column 2: not valid JSON"},
      {"prose", "hello", "line 1, column 1: not valid JSON"},
      {"a bare NaN", "{\"asset\": {\"version\": \"2.0\"},\n \"nodes\": [{\"translation\": [NaN, 0, 0]}]}",
       "line 2, column 29: not valid JSON"},
      {"a number that no real holds", "{\"nodes\": [{\"translation\": [1e999, 0, 0]}]}", "not valid JSON, number"},
      {"an array", "[1, 2]", "is no glTF"},
      {"other JSON", "{\"name\": \"package\"}", "is no glTF"},
      {"bytes that are no UTF-8", "{\"a\": \"\xC3\x28\"}", "line 1, column 9: not valid JSON"},
      {"text behind the end", "{} {}", "line 1, column 4: not valid JSON"},
      {"deep arrays", std::string(100000, '['), "line 1, column 129: nests deeper than 128 levels"},
      {"deep objects",
       [] {
         std::string text;
         for (int i = 0; i < 200; ++i) {
           text += "{\"a\":";
         }
         return text;
       }(),
       "nests deeper than 128 levels"},
      {"an object without end",
       [] {
         std::string text = "{\"a\":0";
         for (int i = 0; i < 30000; ++i) {
           text += ",\"" + std::to_string(i) + "\":0";
         }
         return text + "}";
       }(),
       "more than 20000 members"},
  };
  for (const auto& row : rows) {
    ExpectError(row.fText, row.fError, row.fLabel);
  }
}

TEST_F(GltfBadInput, EveryTruncationIsRefused) {
  for (const std::string& whole : {MakeMovingArm().GetText(), MakeMovingArm().GetGlb()}) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      fFolder.Write("cut.gltf", std::string_view(whole).substr(0, length));
      ASSERT_NE(ReadError("cut.gltf"), "") << length << " of " << whole.size();
    }
  }
}

// No byte of a small file, whatever it becomes, may do worse than give an error.
TEST_F(GltfBadInput, AnyByteMayBeWrong) {
  const std::string good = MakeMovingArm().GetGlb();
  for (std::size_t at = 0; at < good.size(); ++at) {
    std::string bad = good;
    bad[at] = "9[-\xFF"[at % 5];  // the fifth is a zero
    fFolder.Write("bad.glb", bad);
    const std::string error = ReadError("bad.glb");
    ASSERT_EQ(error.find('\n'), std::string::npos) << at << ": " << error;
  }
}

TEST_F(GltfBadInput, ChunksMustFitTheirFile) {
  const struct {
    const char* fLabel;
    std::size_t fOffset;
    uint32 fValue;
    const char* fError;
  } rows[] = {
      {"version 1", 4, 1, "byte 4: GLB of version 1"},
      {"a length beyond the file", 8, 0xFFFFFFFF, "byte 8: the GLB header says 4294967295 bytes"},
      {"a chunk beyond the file", 12, 0xFFFFFFFC, "byte 20: a chunk of 4294967292 bytes"},
      {"an odd chunk", 12, 5, "byte 12: a chunk of 5 bytes"},
      {"no JSON first", 16, 0x004E4942, "byte 12: the first chunk is not JSON"},
  };
  for (const auto& row : rows) {
    std::string glb = MakeMovingArm().GetGlb();
    std::memcpy(glb.data() + row.fOffset, &row.fValue, sizeof row.fValue);
    ExpectError(glb, row.fError, row.fLabel);
  }
}

TEST_F(GltfBadInput, KeysMustBeFiniteAndAscend) {
  const real32 nan = std::numeric_limits<real32>::quiet_NaN();
  const real32 infinity = std::numeric_limits<real32>::infinity();
  const struct {
    std::vector<real32> fTimes;
    std::vector<real32> fValues;
    const char* fError;
  } rows[] = {
      {{0, 1, 1}, {0, 0, 0, 1, 1, 1, 2, 2, 2}, "samplers[0].input: key 2 is not later than the key before"},
      {{0, 2, 1}, {0, 0, 0, 1, 1, 1, 2, 2, 2}, "samplers[0].input: key 2 is not later"},
      {{0, nan}, {0, 0, 0, 1, 1, 1}, "accessors[0]: value 1 is not a finite number"},
      {{0, 1}, {0, 0, 0, 1, nan, 1}, "accessors[1]: value 4 is not a finite number"},
      {{0, 1}, {-infinity, 0, 0, 1, 1, 1}, "accessors[1]: value 0 is not a finite number"},
      {{0, 20000}, {0, 0, 0, 1, 1, 1}, "samplers[0].input: key 1 is not within 11000 seconds"},
  };
  for (const auto& row : rows) {
    SceneText text;
    text.AddNode(Json::object());
    text.AddChannel(0, "translation", row.fTimes, row.fValues);
    text.fJson["accessors"][0].erase("max");  // NaN is no JSON
    ExpectError(text.GetText(), row.fError, "keys");
  }
}

TEST_F(GltfBadInput, IndicesOfAMeshMustNameItsVertices) {
  SceneText text = MakeMovingArm();
  const std::size_t offset = text.fBytes.size();
  text.fBytes.insert(text.fBytes.end(), {0, 2, 3, 0});
  text.fJson["buffers"][0]["byteLength"] = text.fBytes.size();
  text.fJson["bufferViews"].push_back({{"buffer", 0}, {"byteOffset", offset}, {"byteLength", 3}});
  text.fJson["accessors"].push_back({{"bufferView", 4}, {"componentType", 5121}, {"count", 3}, {"type", "SCALAR"}});
  text.fJson["meshes"] = Json::parse(R"([{"primitives": [{"attributes": {"POSITION": 1}, "indices": 4}]}])");
  ExpectError(text.GetText(), "meshes[0].primitives[0].indices: index 3 is out of range, there are 3 vertices",
              "index");
}

TEST_F(GltfBadInput, BuffersMustBeThere) {
  const struct {
    const char* fUri;
    const char* fError;
  } rows[] = {
      {"missing.bin", "buffers[0].uri: \"missing.bin\": no such file"},
      {"short.bin", "buffers[0]: has 3 bytes of the 88"},
      {".", "buffers[0].uri: \".\": is a folder"},
      {"%zz", "buffers[0].uri: \"%zz\" has a \"%\" without two hexadecimal digits"},
      {"a%00b", "buffers[0].uri: the URI holds a zero byte"},
      {"https://example.org/a.bin", "buffers[0].uri: \"https://example.org/a.bin\" is neither"},
      {"data:text/plain,hello", "buffers[0].uri: a data URI must have"},
      {"data:application/octet-stream;base64,AAA*", "buffers[0].uri: the data of the data URI is not base 64"},
      {"data:application/octet-stream;base64,AAA", "buffers[0].uri: the data of the data URI is not base 64"},
  };
  fFolder.Write("short.bin", "abc");
  for (const auto& row : rows) {
    SceneText text = MakeMovingArm();
    text.fJson["buffers"][0]["uri"] = row.fUri;
    ExpectError(text.fJson.dump(), row.fError, row.fUri);
  }
  ExpectError(MakeMovingArm().fJson.dump(), "the bytes of accessor 1 are not in the file", "by an extension alone");
}

TEST_F(GltfBadInput, FilesAndClipsMustBeThere) {
  EXPECT_EQ(ReadError("none.gltf"), "none.gltf: no such file");
  std::filesystem::create_directory(fFolder / "folder.gltf");
  EXPECT_EQ(ReadError("folder.gltf"), "folder.gltf: is a folder, not a file");
  try {
    OpenText(MakeMovingArm(), {"Jump", {}});
    ADD_FAILURE() << "there is no such clip";
  } catch (const UserError& error) {
    EXPECT_NE(std::string(error.what()).find("has no animation \"Jump\", only \"Wave\""), std::string::npos);
  }
}

TEST_F(GltfBadInput, AFailedWriteLeavesNothing) {
  const auto document = OpenText(MakeMovingArm());
  std::filesystem::create_directory(fFolder / "folder.gltf");
  fFolder.Write("folder.gltf/kept.txt", "kept");
  const auto before = fFolder.List();
  for (const char* name : {"folder.gltf", "no/such/folder.gltf", "out.txt", "out"}) {
    EXPECT_THROW(document->Write(fFolder / name), UserError) << name;
    EXPECT_EQ(fFolder.List(), before) << name;
  }
}

}  // namespace qlx::host
