// Data and channels that are added to a glTF document. Data is made as tinygltf's objects and written by it, channels
// as JSON (tinygltf knows none without a node). All is put behind what the document has, so nothing else in it changes.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "GltfModel.h"
#include "model/Curve.h"

namespace qlx::host {

// New accessors, all in one new buffer view.
class AddedData {
 public:
  explicit AddedData(const Json& inDocument);

  // Each answers the accessor's index. `inType` is tinygltf's.
  int AddTimes(std::span<const real32> inSeconds);
  int AddValues(std::span<const real32> inValues, int inType);
  // One byte each, 0 or 1.
  int AddTruths(std::span<const real32> inValues);

  bool IsEmpty() const { return fBytes.empty(); }
  const std::vector<uint8>& GetBytes() const { return fBytes; }
  // Once the bytes have their place in a buffer. Nothing to do when there are none.
  void PutInto(Json& ioDocument, std::size_t inBuffer, std::size_t inOffset);

 private:
  int Add(std::span<const uint8> inBytes, int inComponentType, int inType, std::size_t inCount);

  int fFirstAccessor;
  int fView;
  tinygltf::Model fParts;
  std::vector<uint8> fBytes;
};

// Changes of one animation. A document without one gets "bake".
class ClipChange {
 public:
  ClipChange(const Json& inDocument, std::optional<std::size_t> inClip);

  // What is animated goes by its pointer, "/nodes/3/translation" as well as "/materials/0/emissiveFactor". `inTarget`
  // is the target of a new channel; one that animates the same already keeps its own.
  void SetTrack(const std::string& inPointer, Json inTarget, int inInput, int inOutput, Interpolation inInterpolation);
  void RemoveTrack(const std::string& inPointer);
  // Samplers that no channel uses any more go; ones that none used before stay. So does an animation without a channel.
  void PutInto(Json& ioDocument);

 private:
  void MakeClip(Json& ioDocument);
  void PutTracks(Json& ioClip);
  void DropChannels(Json& ioClip) const;
  void DropSamplers(Json& ioClip, const std::vector<bool>& inWereUsed) const;

  struct Added {
    std::string fPointer;
    Json fTarget;
    Json fSampler;
  };
  std::optional<std::size_t> fClip;
  std::map<std::string, std::size_t> fChannels;  // of the document, by pointer
  std::set<std::size_t> fRemoved;
  std::vector<Added> fAdded;
};

}  // namespace qlx::host
