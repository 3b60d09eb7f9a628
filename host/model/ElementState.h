// What each evaluation reads and writes of an element. It stands apart from the element, beside those of the scene's
// other elements: taking the values of a time is then a walk through memory, and little is read of an element itself.
#pragma once

#include <memory_resource>

#include "Channels.h"
#include "WorkAhead.h"

namespace qlx::host {

// A modifier's work needs one cache line of it: the base values stand apart once more.
struct alignas(kCacheLine) ElementState {
  enum class Local : uint8 { kNotMade, kMoved, kMade };  // moved: all but the position is as it should be

  explicit ElementState(ChannelValues& inBase) : fBase(inBase) {}

  ChannelValues& fBase;
  ChannelValues fEvaluated;
  ChannelMask fWritten = 0;  // channels written during this evaluation
  Local fLocal = Local::kNotMade;
  bool fIsTouched = false;   // stands in the scene's list
  bool fIsAnimated = false;  // has curves
  // A global matrix is valid only while every ancestor's is: an element that is not valid has none valid below it.
  bool fGlobalValid = false;
  bool fKeepsUnmodified = false;

  // The channels are those whose values differ. True when there are any: global matrices are to be invalidated then.
  bool Store(const ChannelValues& inValues, ChannelMask inChanged) {
    if (inChanged == 0) {
      return false;
    }
    fEvaluated = inValues;
    const bool isMoved = (inChanged & ~kPositionMask) == 0 && fLocal != Local::kNotMade;
    fLocal = isMoved ? Local::kMoved : Local::kNotMade;
    return true;
  }

  // Takes the values of a time. The same answer.
  bool Begin(const ChannelValues& inValues) {
    fWritten = 0;
    fKeepsUnmodified = false;
    return Store(inValues, DifferentChannels(fEvaluated, inValues));
  }
};

static_assert(sizeof(ElementState) == kCacheLine);

// Where the elements of one scene have theirs. Each element holds it, as it may outlive the scene.
class ElementStates {
 public:
  ElementState& Make() { return *fMemory.new_object<ElementState>(*fMemory.new_object<ChannelValues>()); }
  void End(ElementState& inState) {
    fMemory.delete_object(&inState.fBase);
    fMemory.delete_object(&inState);
  }

 private:
  std::pmr::unsynchronized_pool_resource fPool;
  std::pmr::polymorphic_allocator<> fMemory{&fPool};
};

}  // namespace qlx::host
