// What of a scene goes back into its glTF document: values and keys that were edited, and baked frames.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "GltfAdditions.h"
#include "GltfTracks.h"
#include "model/Bake.h"
#include "model/Scene.h"

namespace qlx::host {

// Collects changes of a document. Only the paths (translation, rotation, scale) of which a channel was edited or baked
// are touched, each as a whole; a node whose matrix is in the way gets translation, rotation and scale in its place.
class GltfChanges {
 public:
  // `ioDocument` is a copy that becomes the one to write. `inModel` is that of the document.
  GltfChanges(Json& ioDocument, const GltfModel& inModel, std::optional<std::size_t> inClip, real32 inFrameRate);

  // Keys of the element for each frame, on the paths that modifiers changed.
  void AddBaked(int inNode, const BakeResult& inBake, const BakedElement& inElement);
  // What of the element was edited, but for paths with a channel of `inExcept`.
  void AddEdited(int inNode, const Element& inElement, ChannelMask inExcept);
  // Puts the changed clip into the document, and answers the data that still needs a place in a buffer.
  AddedData& Finish();

 private:
  void SetTrack(int inNode, const NodePath& inPath, const Track& inTrack);
  void SetBase(int inNode, const NodePath& inPath, const ChannelValues& inValues);
  void ReplaceMatrix(int inNode);

  Json& fDocument;
  const GltfModel& fModel;
  real32 fFrameRate;
  AddedData fData;
  ClipChange fClip;
  std::map<std::vector<int32>, int> fTimes;  // accessors of key times, shared where keys stand at the same times
};

}  // namespace qlx::host
