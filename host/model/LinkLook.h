// A look at what a modifier reads and writes, while a copy of it works on the scene with every write held back.
//
// The copy works twice at one time. The second time each transform that it reads is moved by amounts that no other has:
// what of that arrives in its writes tells which component of which element it follows.
#pragma once

#include <vector>

#include "AnimatedValue.h"
#include "LinkValue.h"
#include "Transforms.h"

namespace qlx::host {

class Element;
class Modifier;
class Scene;
class ValueSet;

// A value that a modifier uses in one of its steps: a step ends with a write.
struct LinkUse {
  LinkValue fValue;
  uint32 fStep = 0;
};

struct LinkTrace {
  bool fIsSeen = false;            // false for a modifier that cannot be copied
  bool fHasLostReference = false;  // it asked for an element by a reference that leads to none
  std::vector<LinkUse> fReads;     // without what it writes itself
  std::vector<LinkUse> fWrites;
};

// The scene knows of the look while it lives: its elements and sets of values report to it, and change nothing.
class LinkLook {
 public:
  explicit LinkLook(Scene& inScene);
  ~LinkLook();
  LinkLook(const LinkLook&) = delete;
  LinkLook& operator=(const LinkLook&) = delete;

  LinkTrace Trace(Modifier& inModifier, Element& inElement);

  // What elements and values report.
  void Read(const LinkValue& inValue) { Add({.fKind = EventKind::kRead, .fValue = inValue}); }
  void Write(const Element& inElement, const ChannelValues& inValues, ChannelMask inMask);
  void Write(const ValueSet& inValues, std::size_t inIndex, const ValueNumbers& inNumbers);
  void WriteKeys(const LinkValue& inValue);
  // Moves what is about to be read.
  void Feed(const Element& inElement, bool inGlobal, TreeTransform& ioTransform);
  void Take(const Element& inElement, bool inGlobal, const TreeTransform& inTransform);
  void LoseReference() { fHasLostReference = true; }

 private:
  enum class EventKind : uint8 { kRead, kFeed, kWrite, kTake, kKeys };
  struct Event {
    EventKind fKind = EventKind::kRead;
    LinkValue fValue;         // of a transform: the element, and which of its transforms
    ChannelMask fParts = 0;   // of a transform that was written: which channels, or components and `kMoreParts`
    uint32 fFed = 0;          // of a transform that was read
    ValueNumbers fNumbers{};  // that were written
    bool IsSameAs(const Event& inOther) const {
      return fKind == inOther.fKind && fValue == inOther.fValue && fParts == inOther.fParts;
    }
  };
  struct Fed {
    const Element* fElement;
    bool fIsGlobal;
    bool fIsOwn;   // read to be written back
    uint32 fTold;  // components that arrived in a write
    uint32 fStep;
    TreeTransform fTransform;  // as it was fed last
  };

  void Work(Modifier& inCopy, Element& inElement);
  void Add(const Event& inEvent);
  Fed* FindFed(const Element& inElement, bool inGlobal);
  bool IsPaired() const;
  LinkTrace Conclude();
  void AddWrites(const Event& inFirst, const Event& inSecond, uint32 inStep, LinkTrace& outTrace);
  void TellSources(const Event& inFirst, const Event& inSecond, ChannelMask inLanes, uint32 inStep,
                   LinkTrace& outTrace);
  static void AddUntold(const Fed& inFed, LinkTrace& outTrace);

  Scene& fScene;
  std::size_t fPass = 0;
  std::vector<Event> fEvents[2];
  std::vector<Fed> fFed;
  bool fHasLostReference = false;
};

}  // namespace qlx::host
