// The example scenes and the lines of words beside them, which make them again from their plain scenes.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "QlxRun.h"
#include "TempFolder.h"

namespace qlx::host {

using SceneJson = nlohmann::ordered_json;

// The words of a line as a shell parts them; double quotes hold blanks.
inline std::vector<std::string> WordsOfLine(const std::string& inLine) {
  std::vector<std::string> words;
  bool isQuoted = false;
  bool isWord = false;
  for (const char each : inLine) {
    isQuoted = isQuoted != (each == '"');
    if (each == ' ' && !isQuoted) {
      isWord = false;
      continue;
    }
    if (!isWord) {
      words.emplace_back();
    }
    isWord = true;
    if (each != '"') {
      words.back().push_back(each);
    }
  }
  return words;
}

// The words of each line of a file beside the examples, but for comments.
inline std::vector<std::vector<std::string>> LinesOfExample(const std::string& inFile) {
  std::vector<std::vector<std::string>> all;
  std::istringstream lines(ReadFile(Example(inFile.c_str())));
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line[0] != '#') {
      all.push_back(WordsOfLine(line));
    }
  }
  return all;
}

// Takes an extension out of a scene's JSON, as if no program had written it.
inline void ForgetExtension(SceneJson& ioScene, const std::string& inName) {
  for (SceneJson& node : ioScene["nodes"]) {
    if (node.contains("extensions")) {
      node["extensions"].erase(inName);
      if (node["extensions"].empty()) {
        node.erase("extensions");
      }
    }
  }
  if (ioScene.contains("extensionsUsed")) {
    SceneJson used = SceneJson::array();
    for (const SceneJson& name : ioScene["extensionsUsed"]) {
      if (name != inName) {
        used.push_back(name);
      }
    }
    ioScene["extensionsUsed"] = used;
    if (used.empty()) {
      ioScene.erase("extensionsUsed");
    }
  }
}

// An example without its modifiers.
inline std::string PlainExample(const std::string& inExample) {
  SceneJson scene = SceneJson::parse(ReadFile(Example(inExample.c_str())));
  ForgetExtension(scene, "QLX_modifiers");
  ForgetExtension(scene, "QLX_element");
  return scene.dump(2) + "\n";  // as the example is laid out
}

// What a scene is baked to, in a file that is made for it.
inline std::string BakedFile(const std::string& inScene, const std::string& inFile) {
  const QlxRun run = RunInProcess({"bake", inScene, "-o", inFile});
  EXPECT_EQ(run.fErr, "") << inScene;
  return ReadFile(inFile);
}

}  // namespace qlx::host
