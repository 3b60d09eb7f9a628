#include "LinkLook.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Element.h"
#include "Scene.h"

namespace qlx::host {

namespace {

// Beside the three components of a written placement: its rotation or scale.
constexpr ChannelMask kMoreParts = 8;

// In scene units. No sum of two, and no small multiple of one, comes near another: what arrives is the whole of a
// component, or nothing is concluded from it. Transforms past the first few are not moved.
constexpr std::size_t kMostMoved = 4;
constexpr std::array<real32, 3 * kMostMoved> kOffsets{1.0f,    3.54f,   12.5f,    44.2f,    156.4f,    552.9f,
                                                      1955.0f, 6913.0f, 24446.0f, 86445.0f, 305678.0f, 1080909.0f};
real32 OffsetOf(std::size_t inFed, uint32 inComponent) {
  return kOffsets[3 * inFed + inComponent];
}
// More than reals of 32 bits round in a scene of a million units.
constexpr real32 kTolerance = 0.25f;

ChannelMask PartsThatDiffer(const TreeTransform& inGiven, const TreeTransform& inFed, ChannelMask inMore) {
  ChannelMask parts = DifferInPositionOnly(inGiven, inFed) ? ChannelMask{0} : inMore;
  for (uint32 i = 0; i < 3; ++i) {
    if (inGiven.GetPosition()[static_cast<int>(i)] != inFed.GetPosition()[static_cast<int>(i)]) {
      parts |= static_cast<ChannelMask>(1U << i);
    }
  }
  return parts;
}

bool IsSameValue(const LinkValue& inA, const LinkValue& inB) {
  return inA.AsKeys(false) == inB.AsKeys(false);
}

void AddOnce(std::vector<LinkUse>& ioUses, const LinkUse& inUse) {
  const bool isThere = std::ranges::any_of(
      ioUses, [&](const LinkUse& use) { return use.fStep == inUse.fStep && use.fValue == inUse.fValue; });
  if (!isThere) {
    ioUses.push_back(inUse);
  }
}

}  // namespace

LinkLook::LinkLook(Scene& inScene) : fScene(inScene) {
  fScene.BeginLook(*this);
}

LinkLook::~LinkLook() {
  fScene.EndLook();
}

LinkTrace LinkLook::Trace(Modifier& inModifier, Element& inElement) {
  const TMCCountedPtr<Modifier> copy = inModifier.CopyToLookAt();
  if (!copy) {
    return {};
  }
  fEvents[0].clear();
  fEvents[1].clear();
  fFed.clear();
  fHasLostReference = false;
  for (fPass = 0; fPass < 2; ++fPass) {
    Work(*copy, inElement);
    if (fFed.empty()) {
      break;
    }
  }
  return Conclude();
}

void LinkLook::Work(Modifier& inCopy, Element& inElement) {
  struct Attached {
    Attached(Modifier& ioCopy, Element& ioElement) : fCopy(ioCopy) { fCopy.Attach(ioElement); }
    ~Attached() { fCopy.Detach(); }
    Modifier& fCopy;
  };
  const Attached attached(inCopy, inElement);
  inCopy.Apply(inElement);
}

// Reports

void LinkLook::Add(const Event& inEvent) {
  std::vector<Event>& events = fEvents[std::min<std::size_t>(fPass, 1)];
  const bool isRepeated =
      !events.empty() && events.back().IsSameAs(inEvent) &&
      (inEvent.fKind == EventKind::kRead || inEvent.fKind == EventKind::kKeys || inEvent.fKind == EventKind::kFeed);
  if (!isRepeated) {
    events.push_back(inEvent);
  }
}

void LinkLook::Write(const Element& inElement, const ChannelValues& inValues, ChannelMask inMask) {
  for (const ChannelInfo& info : kChannels) {
    if ((inMask & MaskOf(info.fChannel)) != 0) {
      Add({.fKind = EventKind::kWrite,
           .fValue = LinkValue::OfChannel(inElement, info.fChannel),
           .fNumbers = {inValues[info.fChannel]}});
    }
  }
}

void LinkLook::Write(const ValueSet& inValues, std::size_t inIndex, const ValueNumbers& inNumbers) {
  Add({.fKind = EventKind::kWrite, .fValue = LinkValue::OfNumber(inValues, inIndex), .fNumbers = inNumbers});
}

void LinkLook::WriteKeys(const LinkValue& inValue) {
  Add({.fKind = EventKind::kKeys, .fValue = inValue.AsKeys(true)});
}

LinkLook::Fed* LinkLook::FindFed(const Element& inElement, bool inGlobal) {
  for (Fed& fed : fFed) {
    if (fed.fElement == &inElement && fed.fIsGlobal == inGlobal) {
      return &fed;
    }
  }
  return nullptr;
}

void LinkLook::Feed(const Element& inElement, bool inGlobal, TreeTransform& ioTransform) {
  Fed* fed = FindFed(inElement, inGlobal);
  if (fed == nullptr) {
    fFed.push_back({&inElement, inGlobal, false, 0, 0, {}});
    fed = &fFed.back();
  }
  const auto index = static_cast<std::size_t>(fed - fFed.data());
  if (fPass > 0 && index < kMostMoved) {
    TVector3 position = ioTransform.GetPosition();
    for (uint32 i = 0; i < 3; ++i) {
      position[static_cast<int>(i)] += OffsetOf(index, i);
    }
    ioTransform.SetPosition(position);
  }
  fed->fTransform = ioTransform;
  const LinkValue value = inGlobal ? LinkValue::OfGlobal(inElement, 0) : LinkValue::OfChannel(inElement, Channel{});
  Add({.fKind = EventKind::kFeed, .fValue = value, .fFed = static_cast<uint32>(index)});
}

void LinkLook::Take(const Element& inElement, bool inGlobal, const TreeTransform& inTransform) {
  constexpr auto kAllChannels = static_cast<ChannelMask>(kPositionMask | kRotationMask | kScaleMask);
  const ChannelMask more = inGlobal ? kMoreParts : static_cast<ChannelMask>(kRotationMask | kScaleMask);
  Fed* const fed = FindFed(inElement, inGlobal);
  ChannelMask parts = inGlobal ? static_cast<ChannelMask>(kPositionMask | kMoreParts) : kAllChannels;
  if (fed != nullptr) {
    fed->fIsOwn = true;
    parts = PartsThatDiffer(inTransform, fed->fTransform, more);
  }
  const TVector3& position = inTransform.GetPosition();
  const LinkValue value = inGlobal ? LinkValue::OfGlobal(inElement, 0) : LinkValue::OfChannel(inElement, Channel{});
  Add({.fKind = EventKind::kTake, .fValue = value, .fParts = parts, .fNumbers = {position.x, position.y, position.z}});
}

// Conclusions

// The same things happened in the same order both times. (What parts of a transform were written may differ: a value
// that was there already shows in one of the two.)
bool LinkLook::IsPaired() const {
  return std::ranges::equal(fEvents[0], fEvents[1], [](const Event& first, const Event& second) {
    return first.fKind == second.fKind && first.fValue == second.fValue;
  });
}

LinkTrace LinkLook::Conclude() {
  LinkTrace trace;
  trace.fIsSeen = true;
  trace.fHasLostReference = fHasLostReference;
  const bool isPaired = IsPaired();
  uint32 step = 0;
  for (std::size_t i = 0; i < fEvents[0].size(); ++i) {
    const Event& event = fEvents[0][i];
    switch (event.fKind) {
      case EventKind::kRead:
        AddOnce(trace.fReads, {event.fValue, step});
        break;
      case EventKind::kFeed:
        fFed[event.fFed].fStep = step;
        break;
      case EventKind::kKeys:
        AddOnce(trace.fWrites, {event.fValue, step});
        break;
      default:
        AddWrites(event, isPaired ? fEvents[1][i] : event, step, trace);
        ++step;
    }
  }
  for (const Fed& fed : fFed) {
    if (fed.fTold == 0 && !fed.fIsOwn) {
      AddUntold(fed, trace);
    }
  }
  std::erase_if(trace.fReads, [&trace](const LinkUse& read) {
    return std::ranges::any_of(trace.fWrites,
                               [&read](const LinkUse& write) { return IsSameValue(read.fValue, write.fValue); });
  });
  return trace;
}

void LinkLook::AddWrites(const Event& inFirst, const Event& inSecond, uint32 inStep, LinkTrace& outTrace) {
  if (inFirst.fKind == EventKind::kWrite) {
    AddOnce(outTrace.fWrites, {inFirst.fValue, inStep});
    TellSources(inFirst, inSecond, (1U << kMostNumbers) - 1, inStep, outTrace);
    return;
  }
  const Element& element = *inFirst.fValue.GetElement();
  const bool isGlobal = inFirst.fValue.fKind == LinkValue::Kind::kGlobal;
  const auto parts = static_cast<ChannelMask>(inFirst.fParts | inSecond.fParts);
  for (const ChannelInfo& info : kChannels) {
    const auto index = static_cast<uint32>(info.fChannel);
    const bool isWritten = isGlobal && index >= 3 ? (parts & kMoreParts) != 0 : (parts & MaskOf(info.fChannel)) != 0;
    if (isWritten) {
      const bool isComponent = isGlobal && index < 3;
      AddOnce(
          outTrace.fWrites,
          {isComponent ? LinkValue::OfGlobal(element, index) : LinkValue::OfChannel(element, info.fChannel), inStep});
    }
  }
  TellSources(inFirst, inSecond, static_cast<ChannelMask>(parts & kPositionMask), inStep, outTrace);
}

// A written number that moved, from the first time to the second, as one component of one transform did.
void LinkLook::TellSources(const Event& inFirst, const Event& inSecond, ChannelMask inLanes, uint32 inStep,
                           LinkTrace& outTrace) {
  for (std::size_t lane = 0; lane < kMostNumbers; ++lane) {
    if ((inLanes & (1U << lane)) == 0) {
      continue;
    }
    const real32 moved = inSecond.fNumbers[lane] - inFirst.fNumbers[lane];
    for (std::size_t i = 0; i < std::min(fFed.size(), kMostMoved); ++i) {
      for (uint32 component = 0; component < 3; ++component) {
        if (!(std::fabs(moved - OffsetOf(i, component)) < kTolerance)) {
          continue;
        }
        fFed[i].fTold |= 1U << component;
        const Element& element = *fFed[i].fElement;
        AddOnce(outTrace.fReads, {fFed[i].fIsGlobal ? LinkValue::OfGlobal(element, component)
                                                    : LinkValue::OfChannel(element, static_cast<Channel>(component)),
                                  inStep});
      }
    }
  }
}

void LinkLook::AddUntold(const Fed& inFed, LinkTrace& outTrace) {
  if (inFed.fIsGlobal) {
    AddOnce(outTrace.fReads, {LinkValue::OfGlobal(*inFed.fElement, LinkValue::kWholePlacement), inFed.fStep});
    return;
  }
  for (const ChannelInfo& info : kChannels) {
    AddOnce(outTrace.fReads, {LinkValue::OfChannel(*inFed.fElement, info.fChannel), inFed.fStep});
  }
}

}  // namespace qlx::host
