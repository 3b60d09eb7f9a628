// The example scenes and the lines of words beside them, which make them again from their plain scenes.
#pragma once

#include <iomanip>

#include "QlxRun.h"

namespace qlx::host {

// The words of a line as a shell parts them; double quotes hold blanks.
inline std::vector<std::string> WordsOfLine(const std::string& inLine) {
  std::vector<std::string> words;
  std::istringstream line(inLine);
  for (std::string word; line >> std::quoted(word);) {
    words.push_back(word);
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

// An example without its modifiers, as if no program had written them.
inline std::string PlainExample(const std::string& inExample) {
  Json scene = Json::parse(ReadFile(Example(inExample.c_str())));
  for (const char* const name : {"QLX_modifiers", "QLX_element"}) {
    for (Json& node : scene["nodes"]) {
      if (node.contains("extensions") && node["extensions"].erase(name) > 0 && node["extensions"].empty()) {
        node.erase("extensions");
      }
    }
    if (scene.contains("extensionsUsed")) {
      std::erase(scene["extensionsUsed"].get_ref<Json::array_t&>(), name);
    }
  }
  if (scene.contains("extensionsUsed") && scene["extensionsUsed"].empty()) {
    scene.erase("extensionsUsed");
  }
  return scene.dump(2) + "\n";  // as the example is laid out
}

}  // namespace qlx::host
