#include "GltfChanges.h"

#include <cmath>

#include "GltfExtensions.h"
#include "GltfPointers.h"
#include "GltfScene.h"
#include "GltfValueRules.h"

namespace qlx::host {

namespace {

// Below it every whole number is a 32-bit real.
constexpr real32 kWholeReals = 16777216;

// A property of an extension may be the first that its object has of it.
void ListExtensionOf(const std::string& inPointer, Json& ioDocument) {
  constexpr std::string_view kExtensions = "/extensions/";
  const std::size_t at = inPointer.find(kExtensions);
  if (at != std::string::npos && !inPointer.starts_with("/nodes/")) {
    const std::size_t start = at + kExtensions.size();
    ListExtension(ioDocument, inPointer.substr(start, inPointer.find('/', start) - start).c_str());
  }
}

bool IsAnyOf(const ValueTarget& inTarget, const std::map<std::size_t, const BakedValue*>& inBaked) {
  const auto first = inBaked.lower_bound(inTarget.fFirst);
  return first != inBaked.end() && first->first < inTarget.fFirst + inTarget.fCount;
}

}  // namespace

GltfChanges::GltfChanges(Json& ioDocument, const GltfModel& inModel, std::optional<std::size_t> inClip,
                         real32 inFrameRate, Diagnostics& ioDiagnostics)
    : fDocument(ioDocument),
      fModel(inModel),
      fFrameRate(inFrameRate),
      fDiagnostics(ioDiagnostics),
      fData(ioDocument),
      fClip(ioDocument, inClip) {}

void GltfChanges::AddBaked(int inNode, const BakeResult& inBake, const BakedElement& inElement) {
  for (const NodePath& path : kNodePaths) {
    if ((inElement.fChannels & path.fChannels) != 0) {
      SetNodeTrack(inNode, path, TrackOfBake(inBake, inElement, path));
    }
  }
}

void GltfChanges::AddEdited(int inNode, const Element& inElement, ChannelMask inExcept) {
  for (const NodePath& path : kNodePaths) {
    if ((inElement.GetEditedChannels() & path.fChannels) == 0 || (inExcept & path.fChannels) != 0) {
      continue;
    }
    if (const auto track = TrackOfCurves(inElement, path, fFrameRate)) {
      SetNodeTrack(inNode, path, *track);
    } else {
      fClip.RemoveTrack(PointerOfNode(static_cast<std::size_t>(inNode), path.fName));
    }
    SetBase(inNode, path, inElement.GetBase());
  }
}

void GltfChanges::AddValues(const ValueTargets& inTargets, const BakeResult* inBake) {
  std::map<const ValueSet*, std::map<std::size_t, const BakedValue*>> baked;
  for (std::size_t i = 0; inBake != nullptr && i < inBake->fValues.size(); ++i) {
    const BakedValue& value = inBake->fValues[i];
    baked[value.fValues.get()][value.fIndex] = &value;
  }
  for (const ValueTarget& target : inTargets.GetAll()) {
    const auto found = baked.find(target.fValues.get());
    if (inBake != nullptr && found != baked.end() && IsAnyOf(target, found->second)) {
      SetValueTrack(target, TrackOfBake(*inBake, found->second, target));
    } else {
      AddEdited(target);
    }
  }
}

void GltfChanges::AddEdited(const ValueTarget& inTarget) {
  bool isEdited = false;
  for (std::size_t i = 0; i < inTarget.fCount; ++i) {
    isEdited |= inTarget.fValues->IsEdited(inTarget.fFirst + i);
  }
  if (!isEdited) {
    return;
  }
  if (const auto track = TrackOfCurves(inTarget, fFrameRate)) {
    SetValueTrack(inTarget, *track);
  } else {
    fClip.RemoveTrack(inTarget.fPointer);
  }
  SetBase(inTarget, false);
}

AddedData& GltfChanges::Finish() {
  const bool hadPointers = HasPointers(fDocument);
  fClip.PutInto(fDocument);
  if (fHasPointerTracks) {
    ListExtension(fDocument, kPointerExtension);
  } else if (hadPointers && !HasPointers(fDocument)) {
    UnlistExtension(fDocument, kPointerExtension);
  }
  return fData;
}

void GltfChanges::SetNodeTrack(int inNode, const NodePath& inPath, const GltfTrack& inTrack) {
  ReplaceMatrix(inNode);  // an animated node may have none
  const auto node = static_cast<std::size_t>(inNode);
  const int times = AddTimes(inTrack);
  fClip.SetTrack(PointerOfNode(node, inPath.fName), MakeNodeTarget(node, inPath.fName), times,
                 fData.AddValues(inTrack.fValues, inPath.fType), inTrack.fInterpolation);
}

// What a pointer names must be there, and weights belong to their node.
void GltfChanges::SetValueTrack(const ValueTarget& inTarget, const GltfTrack& inTrack) {
  const bool isTruth = inTarget.fRule->fType == "bool"_id;
  const int times = AddTimes(inTrack);
  const int values =
      isTruth ? fData.AddTruths(inTrack.fValues) : fData.AddValues(inTrack.fValues, inTarget.GetAccessorType());
  Json target = inTarget.fNode ? MakeNodeTarget(*inTarget.fNode, "weights") : MakePointerTarget(inTarget.fPointer);
  fClip.SetTrack(inTarget.fPointer, std::move(target), times, values, inTrack.fInterpolation);
  if (!inTarget.fNode) {
    fHasPointerTracks = true;
    SetBase(inTarget, true);
  }
  if (inTrack.fIsLimited) {
    WarnOfLimits(inTarget);
  }
}

int GltfChanges::AddTimes(const GltfTrack& inTrack) {
  const auto [times, isNew] = fTimes.try_emplace(inTrack.fTicks, 0);
  if (isNew) {
    times->second = fData.AddTimes(SecondsOfTrack(inTrack.fTicks));
  }
  return times->second;
}

// A value that is still the one that was read keeps its text.
void GltfChanges::SetBase(int inNode, const NodePath& inPath, const ChannelValues& inValues) {
  const ChannelValues read = BaseValuesOf(fModel.fParts.nodes[static_cast<std::size_t>(inNode)]);
  if ((DifferentChannels(read, inValues) & inPath.fChannels) != 0) {
    ReplaceMatrix(inNode);
    fDocument["nodes"][static_cast<std::size_t>(inNode)][inPath.fName] = PathValue(inPath, inValues);
  }
}

void GltfChanges::SetBase(const ValueTarget& inTarget, bool inMustBeThere) {
  bool isChanged = false;
  bool isWithin = true;
  std::vector<real32> numbers;
  for (std::size_t i = 0; i < inTarget.fCount; ++i) {
    const ValueNumbers& base = inTarget.fValues->GetBase(inTarget.fFirst + i);
    isChanged |= base != inTarget.fRead[i];
    isWithin &= AppendValue(*inTarget.fRule, base, numbers);
  }
  const Json::json_pointer place(inTarget.fPointer);
  if (!isChanged && (!inMustBeThere || fDocument.contains(place))) {
    return;
  }
  const bool isList = inTarget.fNode || inTarget.fRule->fWidth > 1;
  Json value = isList ? Json::array() : Json();
  for (const real32 number : numbers) {
    (isList ? value.emplace_back() : value) = ShortNumber(number);
  }
  const bool wasWhole = !isList && fDocument.contains(place) && fDocument[place].is_number_integer();
  if (inTarget.fRule->fType == "bool"_id) {
    value = numbers[0] >= 0.5f;
  } else if (wasWhole && numbers[0] == std::trunc(numbers[0]) && std::fabs(numbers[0]) < kWholeReals) {
    value = static_cast<int32>(numbers[0]);
  }
  fDocument[place] = std::move(value);
  ListExtensionOf(inTarget.fPointer, fDocument);
  if (isChanged && !isWithin) {
    WarnOfLimits(inTarget);
  }
}

void GltfChanges::WarnOfLimits(const ValueTarget& inTarget) {
  fDiagnostics.Warn(PlaceOfPointer(inTarget.fPointer) + ": what is not " + LimitText(*inTarget.fRule) +
                    " is written at the limit");
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
