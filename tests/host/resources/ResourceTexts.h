// Text sources for tests, and what becomes of them.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "MCFilePath.h"
#include "resources/ResourceError.h"
#include "resources/compiler/Compiler.h"

namespace qlx::host {

// The sources that the library ships with, checked.
inline Source ShippedSource() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(QLX_RESOURCE_SOURCES)) {
    if (entry.path().extension() == ".res") {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  Source source;
  for (const std::filesystem::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    ParseSource(PathText(file.filename()), text, source);
  }
  CheckSource(source);
  return source;
}

// What the compiler says of a source; "taken" when it says nothing.
inline std::string ProblemOfSource(const std::string& inText) {
  Source source;
  try {
    ParseSource("a.res", inText, source);
    CheckSource(source);
  } catch (const ResourceError& error) {
    return error.what();
  }
  return "taken";
}

inline const PartDescription* FindPart(const Source& inSource, MCID inKind, int inID) {
  for (const PartSource& part : inSource.fParts) {
    if (part.fPart.fKind == inKind && part.fPart.fResourceId == inID) {
      return &part.fPart;
    }
  }
  return nullptr;
}

// The controls from the root to the one with the id; empty when there is none.
inline std::vector<const ControlDescription*> WayTo(const ControlDescription& inRoot, MCID inID) {
  if (inRoot.fID == inID) {
    return {&inRoot};
  }
  for (const ControlDescription& child : inRoot.fChildren) {
    auto way = WayTo(child, inID);
    if (!way.empty()) {
      way.insert(way.begin(), &inRoot);
      return way;
    }
  }
  return {};
}

}  // namespace qlx::host
