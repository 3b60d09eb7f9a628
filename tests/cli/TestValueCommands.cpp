// `qlx get`, `qlx set`, and the rows of `qlx tree --params` that they take.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {

namespace {

using nlohmann::json;

constexpr const char* kStage = R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
  "materials": [{"name": "Paint", "pbrMetallicRoughness": {"metallicFactor": 0.5}}],
  "meshes": [{"primitives": [{"attributes": {}, "material": 0, "targets": [{}]}]}],
  "nodes": [{"name": "Body", "mesh": 0, "extras": {"Open": true, "Length of the nose": 3}}]})";

class QlxValues : public testing::Test {
 protected:
  QlxValues() { fFolder.Write("in.gltf", kStage); }

  std::string In(const char* inName = "in.gltf") const { return PathText(fFolder / inName); }
  QlxRun Get(const std::string& inPath, std::vector<std::string> inMore = {}, const char* inFile = "in.gltf") const {
    std::vector<std::string> words{"get", In(inFile), "--element", "Body", "--path", inPath};
    words.insert(words.end(), inMore.begin(), inMore.end());
    return RunInProcess(words);
  }
  QlxRun Set(const std::string& inPath, std::vector<std::string> inMore, const char* inFile = "in.gltf") const {
    std::vector<std::string> words{"set", In(inFile), "--element", "Body", "--path", inPath, "-o", In("out.gltf")};
    words.insert(words.end(), inMore.begin(), inMore.end());
    return RunInProcess(words);
  }
  json Out() const { return json::parse(ReadFile(fFolder / "out.gltf")); }

  TempFolder fFolder;
};

}  // namespace

TEST_F(QlxValues, EveryRowOfTheTreeCanBeRead) {
  const json tree = json::parse(RunInProcess({"tree", In(), "--params", "--json"}).fOut);
  std::vector<std::string> names;
  for (const json& row : tree["elements"][0]["parameters"]) {
    EXPECT_TRUE(row["found"]) << row;
    const QlxRun run = Get(row["path"], {"--json"});
    ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
    const json value = json::parse(run.fOut);
    EXPECT_EQ(value["type"], row["type"]) << row;
    EXPECT_TRUE(value["value"].is_array() || value["value"] == row["value"]) << row;
    names.push_back(row["name"]);
  }
  for (const char* name : {"Position X", "Length of the nose", "Open", "Base colour", "Base colour red", "Morph0"}) {
    EXPECT_NE(std::ranges::find(names, name), names.end()) << name;
  }
}

TEST_F(QlxValues, ABaseValueIsSetWhereItStands) {
  EXPECT_EQ(Get("shdr,0000,Metl").fOut, "0.5\n");
  const QlxRun run = Set("shdr,0000,Metl", {"0.25"});
  ASSERT_EQ(run.fCode, kExitDone) << run.fErr;
  EXPECT_NE(run.fOut.find("Metallic of Body is 0.25, it was 0.5\n"), std::string::npos) << run.fOut;
  EXPECT_EQ(Out()["materials"][0]["pbrMetallicRoughness"]["metallicFactor"], 0.25);
  EXPECT_FALSE(Out().contains("animations"));
  ASSERT_EQ(Set("shdr,0000,BCol", {"1", "0.5", "0", "1"}).fCode, kExitDone);
  EXPECT_EQ(Get("shdr,0000,BCol", {}, "out.gltf").fOut, "1 0.5 0 1\n");
  ASSERT_EQ(Set("shdr,0000,BCol,bluV", {"0.75"}, "out.gltf").fCode, kExitDone);
  EXPECT_EQ(Out()["materials"][0]["pbrMetallicRoughness"]["baseColorFactor"], json({1, 0.5, 0.75, 1}));
  ASSERT_EQ(Set("self,cust,Open", {"false"}).fCode, kExitDone);
  EXPECT_EQ(Out()["nodes"][0]["extras"]["Open"], false);
  ASSERT_EQ(Set("self,amet,TRAN,OFFS,XCOO", {"-39.3700787"}).fCode, kExitDone);
  EXPECT_EQ(Out()["nodes"][0]["translation"], json({-1, 0, 0}));
  ASSERT_EQ(Set("RMPH,0,0", {"0.5"}).fCode, kExitDone);
  EXPECT_EQ(Out()["nodes"][0]["weights"], json({0.5}));
}

TEST_F(QlxValues, AKeyIsSetAtAFrame) {
  ASSERT_EQ(Set("shdr,0000,Roug", {"1", "--frame", "0", "--fps", "10"}).fCode, kExitDone);
  std::filesystem::rename(fFolder / "out.gltf", fFolder / "in.gltf");
  ASSERT_EQ(Set("shdr,0000,Roug", {"0", "--frame", "10", "--fps", "10"}).fCode, kExitDone);
  const json target = Out()["animations"][0]["channels"][0]["target"];
  EXPECT_EQ(target["extensions"]["KHR_animation_pointer"]["pointer"],
            "/materials/0/pbrMetallicRoughness/roughnessFactor");
  EXPECT_EQ(Get("shdr,0000,Roug", {"--frame", "5", "--fps", "10"}, "out.gltf").fOut, "0.5\n");
  EXPECT_EQ(Get("shdr,0000,Roug", {}, "out.gltf").fOut, "1\n");
  const QlxRun base = Set("shdr,0000,Roug", {"0.25"});
  EXPECT_NE(base.fOut.find("keys show instead of it"), std::string::npos) << base.fOut;
}

TEST_F(QlxValues, WhatCannotBeIsOneLineAndNoFile) {
  const struct {
    const char* label;
    const char* path;
    std::vector<std::string> words;
    const char* problem;
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
    const QlxRun run = Set(row.path, row.words);
    EXPECT_EQ(run.fCode, kExitFailed) << row.label;
    EXPECT_NE(run.fErr.find(row.problem), std::string::npos) << row.label << ": " << run.fErr;
    EXPECT_EQ(std::ranges::count(run.fErr, '\n'), 1) << run.fErr;
  }
  EXPECT_NE(RunInProcess({"get", In(), "--element", "Nobody", "--path", "self"}).fErr.find("no element \"Nobody\""),
            std::string::npos);
  EXPECT_EQ(fFolder.List(), (std::vector<std::string>{"in.gltf"}));
}

}  // namespace qlx::host
