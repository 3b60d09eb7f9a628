// A glTF 2.0 file, with the scene that the host made of it. What the host does not know passes through unchanged.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/Bake.h"
#include "model/Scene.h"
#include "services/Host.h"

namespace qlx::host {

struct GltfReadOptions {
  std::string fClip;                 // name of the animation that is read; empty: the first
  std::optional<real32> fFrameRate;  // default: what fits the key times, else 30
};

enum class KeepModifiers { kNo, kSwitchedOff, kAsTheyAre };

class GltfDocument {
 public:
  // Reads `.gltf` and `.glb`. `UserError` names the file, the place in it and what is wrong; nothing is left then.
  // Modifiers are made by the host's plug-in; without one they are kept as data and a warning says so.
  static std::unique_ptr<GltfDocument> Read(const std::filesystem::path& inFile, const GltfReadOptions& inOptions,
                                            Host& inHost);
  ~GltfDocument();  // closes the scene

  Scene& GetScene() const;
  std::vector<std::string> GetClipNames() const;
  // The clip that was read; empty when the file has no animation.
  std::string GetClip() const;

  // Writes the scene: elements that were edited, modifiers, and everything else as it was read. The form follows the
  // file's extension. The file is written beside and renamed: on failure (`UserError`) nothing is there or changed.
  void Write(const std::filesystem::path& inFile) const;
  // Writes the scene with baked values: a key on each frame of what modifiers changed.
  void WriteBaked(const std::filesystem::path& inFile, const BakeResult& inBake, KeepModifiers inKeep) const;

 private:
  GltfDocument();
  struct Content;
  std::unique_ptr<Content> fContent;
};

}  // namespace qlx::host
