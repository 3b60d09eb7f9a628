// `qlx get`, `qlx set`, and the rows of `qlx tree --params` that they take.
#include "QlxRun.h"

namespace qlx::host {

namespace {

constexpr const char* kStage = R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
  "materials": [{"name": "Paint", "pbrMetallicRoughness": {"metallicFactor": 0.5}}],
  "meshes": [{"primitives": [{"attributes": {}, "material": 0, "targets": [{}]}]}],
  "nodes": [{"name": "Body", "mesh": 0, "extras": {"Open": true, "Length of the nose": 3}}]})";

class QlxValues : public QlxTest {
 protected:
  QlxValues() { fFolder.Write("in.gltf", kStage); }

  std::string Get(const std::string& inPath, std::vector<std::string> inMore = {},
                  const char* inFile = "in.gltf") const {
    inMore.insert(inMore.begin(), {"get", At(inFile), "--element", "Body", "--path", inPath});
    return Print(inMore);
  }
  std::vector<std::string> SetWords(const std::string& inPath, std::vector<std::string> inMore,
                                    const char* inFile = "in.gltf") const {
    inMore.insert(inMore.begin(), {"set", At(inFile), "--element", "Body", "--path", inPath, "-o", At()});
    return inMore;
  }
  // The scene that it gives.
  Json Set(const std::string& inPath, std::vector<std::string> inMore, const char* inFile = "in.gltf") const {
    Print(SetWords(inPath, std::move(inMore), inFile));
    return Json::parse(ReadFile(fFolder / "out.gltf"));
  }
};

}  // namespace

TEST_F(QlxValues, EveryRowOfTheTreeCanBeRead) {
  std::vector<std::string> names;
  const Json rows = PrintJson({"tree", At("in.gltf"), "--params"})["elements"][0]["parameters"];
  for (const Json& row : rows) {
    EXPECT_TRUE(row["found"]) << row;
    const Json value = Json::parse(Get(row["path"], {"--json"}));
    EXPECT_EQ(value["type"], row["type"]) << row;
    EXPECT_TRUE(value["value"].is_array() || value["value"] == row["value"]) << row;
    names.push_back(row["name"]);
  }
  for (const char* name : {"Position X", "Length of the nose", "Open", "Base colour", "Base colour red", "Morph0"}) {
    EXPECT_NE(std::ranges::find(names, name), names.end()) << name;
  }
}

TEST_F(QlxValues, ABaseValueIsSetWhereItStands) {
  const struct {
    const char* fPath;
    std::vector<std::string> fNew;
    const char* fPlace;
    const char* fWritten;
  } rows[] = {
      {"shdr,0000,Metl", {"0.25"}, "/materials/0/pbrMetallicRoughness/metallicFactor", "0.25"},
      {"shdr,0000,BCol", {"1", "0.5", "0", "1"}, "/materials/0/pbrMetallicRoughness/baseColorFactor", "[1, 0.5, 0, 1]"},
      {"shdr,0000,BCol,bluV", {"0.75"}, "/materials/0/pbrMetallicRoughness/baseColorFactor", "[1, 1, 0.75, 1]"},
      {"self,cust,Open", {"false"}, "/nodes/0/extras/Open", "false"},
      {"self,amet,TRAN,OFFS,XCOO", {"-39.3700787"}, "/nodes/0/translation", "[-1, 0, 0]"},
      {"RMPH,0,0", {"0.5"}, "/nodes/0/weights", "[0.5]"},
  };
  for (const auto& row : rows) {
    const Json out = Set(row.fPath, row.fNew);
    EXPECT_EQ(out.value(Json::json_pointer(row.fPlace), Json()), Json::parse(row.fWritten)) << row.fPath;
    EXPECT_FALSE(out.contains("animations")) << row.fPath;
  }
  ExpectPart("Metallic of Body is 0.25, it was 0.5\n", Print(SetWords("shdr,0000,Metl", {"0.25"})));
  EXPECT_EQ(Get("shdr,0000,BCol"), "1 1 1 1\n");
}

TEST_F(QlxValues, AKeyIsSetAtAFrame) {
  Set("shdr,0000,Roug", {"1", "--frame", "0", "--fps", "10"});
  std::filesystem::rename(fFolder / "out.gltf", fFolder / "in.gltf");
  const Json out = Set("shdr,0000,Roug", {"0", "--frame", "10", "--fps", "10"});
  EXPECT_EQ(out["animations"][0]["channels"][0]["target"]["extensions"]["KHR_animation_pointer"]["pointer"],
            "/materials/0/pbrMetallicRoughness/roughnessFactor");
  EXPECT_EQ(Get("shdr,0000,Roug", {"--frame", "5", "--fps", "10"}, "out.gltf"), "0.5\n");
  EXPECT_EQ(Get("shdr,0000,Roug", {}, "out.gltf"), "1\n");
  ExpectPart("keys show instead of it", Print(SetWords("shdr,0000,Roug", {"0.25"})));
}

TEST_F(QlxValues, WhatCannotBeIsOneLineAndNoFile) {
  const struct {
    const char* fLabel;
    const char* fPath;
    std::vector<std::string> fWords;
    const char* fProblem;
  } rows[] = {
      {"no path", "shdr,0001,Metl", {"1"}, "\"shdr,0001,Metl\" leads to no parameter of \"Body\""},
      {"a group", "self,amet", {"1"}, "leads to no parameter"},
      {"a letter", "shdr,0000,Metl", {"x"}, "\"x\" is not a number"},
      {"too large", "shdr,0000,Metl", {"1e39"}, "\"1e39\" is not a number"},
      {"not a number", "shdr,0000,Metl", {"nan"}, "\"nan\" is not a number"},
      {"too few", "shdr,0000,BCol", {"1", "1"}, "takes 4 numbers, not 2"},
      {"too many", "shdr,0000,BCol,redV", {"1", "1"}, "takes 1 number, not 2"},
      {"a number for a truth", "self,cust,Open", {"1"}, "neither true nor false"},
      {"before time", "shdr,0000,Metl", {"1", "--frame", "-1"}, "--frame: -1 is no frame"},
      {"beyond time", "shdr,0000,Metl", {"1", "--frame", "2000000000"}, "is no frame"},
  };
  for (const auto& row : rows) {
    ExpectProblems({{row.fLabel, SetWords(row.fPath, row.fWords), row.fProblem}});
  }
  ExpectProblems(
      {{"no element", {"get", At("in.gltf"), "--element", "Nobody", "--path", "self"}, "no element \"Nobody\""}});
}

}  // namespace qlx::host
