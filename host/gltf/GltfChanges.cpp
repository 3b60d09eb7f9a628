#include "GltfChanges.h"

#include "GltfScene.h"

namespace qlx::host {

GltfChanges::GltfChanges(Json& ioDocument, const GltfModel& inModel, std::optional<std::size_t> inClip,
                         real32 inFrameRate)
    : fDocument(ioDocument), fModel(inModel), fFrameRate(inFrameRate), fData(ioDocument), fClip(ioDocument, inClip) {}

void GltfChanges::AddBaked(int inNode, const BakeResult& inBake, const BakedElement& inElement) {
  for (const NodePath& path : kNodePaths) {
    if ((inElement.fChannels & path.fChannels) != 0) {
      SetTrack(inNode, path, TrackOfBake(inBake, inElement, path));
    }
  }
}

void GltfChanges::AddEdited(int inNode, const Element& inElement, ChannelMask inExcept) {
  for (const NodePath& path : kNodePaths) {
    if ((inElement.GetEditedChannels() & path.fChannels) == 0 || (inExcept & path.fChannels) != 0) {
      continue;
    }
    if (const auto track = TrackOfCurves(inElement, path, fFrameRate)) {
      SetTrack(inNode, path, *track);
    } else {
      fClip.RemoveTrack(inNode, path.fName);
    }
    SetBase(inNode, path, inElement.GetBase());
  }
}

AddedData& GltfChanges::Finish() {
  fClip.PutInto(fDocument);
  return fData;
}

void GltfChanges::SetTrack(int inNode, const NodePath& inPath, const Track& inTrack) {
  ReplaceMatrix(inNode);  // an animated node may have none
  const auto [times, isNew] = fTimes.try_emplace(inTrack.fTicks, 0);
  if (isNew) {
    times->second = fData.AddTimes(SecondsOfTrack(inTrack.fTicks));
  }
  const int values = fData.AddValues(inTrack.fValues, inPath.fType);
  fClip.SetTrack(inNode, inPath.fName, times->second, values, inTrack.fInterpolation);
}

// A value that is still the one that was read keeps its text.
void GltfChanges::SetBase(int inNode, const NodePath& inPath, const ChannelValues& inValues) {
  const ChannelValues read = BaseValuesOf(fModel.fParts.nodes[static_cast<std::size_t>(inNode)]);
  if ((DifferentChannels(read, inValues) & inPath.fChannels) != 0) {
    ReplaceMatrix(inNode);
    fDocument["nodes"][static_cast<std::size_t>(inNode)][inPath.fName] = PathValue(inPath, inValues);
  }
}

void GltfChanges::ReplaceMatrix(int inNode) {
  Json& node = fDocument["nodes"][static_cast<std::size_t>(inNode)];
  if (node.erase("matrix") == 0) {
    return;
  }
  const ChannelValues values = BaseValuesOf(fModel.fParts.nodes[static_cast<std::size_t>(inNode)]);
  for (const NodePath& path : kNodePaths) {
    node[path.fName] = PathValue(path, values);
  }
}

}  // namespace qlx::host
