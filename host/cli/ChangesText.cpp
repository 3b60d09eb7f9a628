#include "ChangesText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "ChannelText.h"
#include "MCFrameTime.h"
#include "ModifierText.h"
#include "Text.h"
#include "model/IDText.h"
#include "model/ParameterRows.h"

namespace qlx::host {

namespace {

// "frame 12", or "frame 12.25 (tick 91875)" for a time at which no frame is.
std::string TextOfTime(int32 inTime, real32 inRate) {
  const real64 frame = static_cast<real64>(inTime) * static_cast<real64>(inRate) / kTicksPerSecond;
  const int32 nearest = TruncateToInt32(std::round(frame));
  return FrameToTicks(nearest, inRate) == inTime ? fmt::format("frame {}", nearest)
                                                 : fmt::format("frame {:.6g} (tick {})", frame, inTime);
}

// "Arm:self,amet,TRAN,ROTA,RotX", as `qlx link` takes it.
std::string TextOfPlace(const TrackPlace& inPlace) {
  return Printable(inPlace.fOwner) + ':' + Printable(inPlace.fPath);
}

// " radians"; nothing where the path says what it is.
std::string UnitOfPlace(const TrackPlace& inPlace) {
  const auto* const found = std::find_if(kChannels.begin(), kChannels.end(),
                                         [&](const ChannelInfo& info) { return inPlace.fPath == info.fPath; });
  return found == kChannels.end() ? std::string() : std::string(" ") + UnitOf(found->fChannel);
}

std::string TextOfKey(const KeyChange& inKey, MCID inType, real32 inRate) {
  const auto numbers = [&](const KeyState& key) { return TextOfNumbers(inType, key.fNumbers, -1); };
  if (!inKey.fAfter) {
    return "removed, was " + numbers(*inKey.fBefore);
  }
  if (!inKey.fBefore) {
    return "added, " + numbers(*inKey.fAfter);
  }
  std::string text = inKey.IsMoved() ? "moved to " + TextOfTime(inKey.fAfter->fTime, inRate) : "";
  if (inKey.fBefore->fNumbers != inKey.fAfter->fNumbers) {
    text +=
        fmt::format("{}value from {} to {}", text.empty() ? "" : ", ", numbers(*inKey.fBefore), numbers(*inKey.fAfter));
  }
  return text.empty() ? "goes to the next key by another way" : text;
}

std::string TextOfTrack(const TrackChange& inTrack, real32 inRate) {
  const TrackPlace& place = inTrack.fPlace;
  std::string text = TextOfPlace(place) + '\n';
  if (inTrack.fIsBaseChanged) {
    text +=
        fmt::format("  {:<12} value from {} to {}\n", "base value", TextOfNumbers(place.fType, inTrack.fBaseBefore, -1),
                    TextOfNumbers(place.fType, inTrack.fBaseAfter, -1));
  }
  for (const KeyChange& key : inTrack.fKeys) {
    const int32 time = (key.fBefore ? key.fBefore : key.fAfter)->fTime;
    text += fmt::format("  {:<12} {}\n", TextOfTime(time, inRate), TextOfKey(key, place.fType, inRate));
  }
  return text;
}

std::string TextOfModifier(Host& inHost, const ModifierChange& inChange) {
  Modifier& modifier = *inChange.fModifier;
  std::string text =
      fmt::format("{}\n  {} '{}' {}\n", Printable(inChange.fElement->GetNameText()), ClassNameOf(modifier),
                  TextFromID(modifier.GetModifierClass()), inChange.fIsAdded ? "added" : "removed");
  for (const std::string& line : inChange.fIsAdded ? SettingsOf(inHost, modifier) : std::vector<std::string>()) {
    text += "    " + Printable(line) + '\n';
  }
  return text;
}

}  // namespace

std::string CountChanges(const SceneChanges& inChanges) {
  std::size_t removed = 0, added = 0, moved = 0, changed = 0, bases = 0;
  for (const TrackChange& track : inChanges.fTracks) {
    bases += track.fIsBaseChanged ? 1 : 0;
    for (const KeyChange& key : track.fKeys) {
      ++(!key.fAfter ? removed : !key.fBefore ? added : key.IsMoved() ? moved : changed);
    }
  }
  const auto isAdded = [](const ModifierChange& change) { return change.fIsAdded; };
  const auto modifiers =
      static_cast<std::size_t>(std::count_if(inChanges.fModifiers.begin(), inChanges.fModifiers.end(), isAdded));
  const struct {
    std::size_t fCount;
    const char* fNoun;
    const char* fDone;
  } rows[] = {{removed, "key", "removed"},
              {moved, "key", "moved"},
              {changed, "key", "changed"},
              {added, "key", "added"},
              {bases, "base value", "changed"},
              {modifiers, "modifier", "added"},
              {inChanges.fModifiers.size() - modifiers, "modifier", "removed"}};
  std::string text;
  for (const auto& row : rows) {
    if (row.fCount > 0) {
      text += fmt::format("{}{} {}", text.empty() ? "" : ", ", Counted(row.fCount, row.fNoun), row.fDone);
    }
  }
  return text.empty() ? "nothing changes" : text;
}

std::string ListChanges(Host& inHost, Scene& inScene, const SceneChanges& inChanges) {
  std::string text;
  for (const TrackChange& track : inChanges.fTracks) {
    text += TextOfTrack(track, inScene.GetFrameRate());
  }
  for (const ModifierChange& change : inChanges.fModifiers) {
    text += TextOfModifier(inHost, change);
  }
  return text;
}

std::string ReportRemovals(Scene& inScene, const SceneChanges& inChanges, std::span<const MotionChange> inMotions) {
  std::size_t keys = 0;
  std::size_t tracks = 0;
  std::string list;
  for (const TrackChange& track : inChanges.fTracks) {
    const std::size_t removed = track.CountRemoved();
    keys += removed;
    tracks += removed > 0 ? 1 : 0;
    if (removed > 0) {
      list += fmt::format("  {}  {} of {}\n", TextOfPlace(track.fPlace), removed, Counted(track.fKeysBefore, "key"));
    }
  }
  std::string text = fmt::format("{} of {} removed\n{}", Counted(keys, "key"), Counted(tracks, "track"), list);
  if (keys == 0) {
    return "no key removed\n";
  }
  text += inMotions.empty()
              ? "all tracks move as before\n"
              : fmt::format("{} otherwise than before, at most by\n",
                            Counted(inMotions.size(), "track") + (inMotions.size() == 1 ? " moves" : " move"));
  for (const MotionChange& motion : inMotions) {
    const TrackPlace& place = motion.fPlace;
    text += fmt::format("  {}{}  {:.3g}{} at {}\n", TextOfPlace(place),
                        NameOfNumber(place.fType, static_cast<uint32>(motion.fNumber)), motion.fMost,
                        UnitOfPlace(place), TextOfTime(motion.fTime, inScene.GetFrameRate()));
  }
  return text;
}

}  // namespace qlx::host
