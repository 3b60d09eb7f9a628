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

// Collects changes of a document. Only what was edited or baked is touched: of a node translation, rotation and scale,
// each as a whole (a node whose matrix is in the way gets all three in its place); values one by one; the weights of a
// node together. A value that is out of glTF's limits is written at them, with a warning.
class GltfChanges {
 public:
  // `ioDocument` is a copy that becomes the one to write. `inModel` is that of the document.
  GltfChanges(Json& ioDocument, const GltfModel& inModel, std::optional<std::size_t> inClip, real32 inFrameRate,
              Diagnostics& ioDiagnostics);

  // Keys of the element for each frame, on the paths that modifiers changed.
  void AddBaked(int inNode, const BakeResult& inBake, const BakedElement& inElement);
  // What of the element was edited, but for paths with a channel of `inExcept`.
  void AddEdited(int inNode, const Element& inElement, ChannelMask inExcept);
  // Keys for each frame of the values that modifiers changed, and what was edited of the others. `inBake` may be null.
  void AddValues(const ValueTargets& inTargets, const BakeResult* inBake);
  // Puts the changed clip into the document, and answers the data that still needs a place in a buffer.
  AddedData& Finish();

 private:
  void SetNodeTrack(int inNode, const NodePath& inPath, const GltfTrack& inTrack);
  void SetValueTrack(const ValueTarget& inTarget, const GltfTrack& inTrack);
  int AddTimes(const GltfTrack& inTrack);
  void SetBase(int inNode, const NodePath& inPath, const ChannelValues& inValues);
  void SetBase(const ValueTarget& inTarget, bool inMustBeThere);
  void AddEdited(const ValueTarget& inTarget);
  void ReplaceMatrix(int inNode);
  void WarnOfLimits(const ValueTarget& inTarget);

  Json& fDocument;
  const GltfModel& fModel;
  real32 fFrameRate;
  Diagnostics& fDiagnostics;
  AddedData fData;
  ClipChange fClip;
  bool fHasPointerTracks = false;
  std::map<std::vector<int32>, int> fTimes;  // accessors of key times, shared where keys stand at the same times
};

}  // namespace qlx::host
