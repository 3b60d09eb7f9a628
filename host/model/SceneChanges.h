// What was done to a scene: the scene as it was beside the scene as it is, key by key and modifier by modifier.
//
//   const SceneCopy before(scene);
//   ... any edits, by whatever way ...
//   const SceneChanges changes = before.FindChanges();
//
// Elements, sets of values and their values stand in the scene's own order, keys in the order of their times.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SavedValues.h"
#include "Scene.h"

namespace qlx::host {

// A value that can have keys, as people name it.
struct TrackPlace {
  // The element, or the first one in the tree that shows what has the value. Of what no element shows it is the label
  // of the set, and the path the value's name.
  std::string fOwner;
  std::string fPath;  // "self,amet,TRAN,ROTA,RotX", "shdr,0000,BCol"
  MCID fType = 0;     // 'qfix'
};

struct KeyState {
  int32 fTime = 0;
  ValueNumbers fNumbers{};
};

// One key: removed without an after, added without a before. Where both times and all numbers are the same, the way to
// the next key is another one.
struct KeyChange {
  std::optional<KeyState> fBefore;
  std::optional<KeyState> fAfter;

  bool IsMoved() const { return fBefore && fAfter && fBefore->fTime != fAfter->fTime; }
};

struct TrackChange {
  TrackPlace fPlace;
  std::size_t fKeysBefore = 0;
  std::vector<KeyChange> fKeys;
  // The base value shows where there are no keys.
  ValueNumbers fBaseBefore{};
  ValueNumbers fBaseAfter{};
  bool fIsBaseChanged = false;

  std::size_t CountRemoved() const;
};

struct ModifierChange {
  Element* fElement = nullptr;
  TMCCountedPtr<Modifier> fModifier;
  bool fIsAdded = true;  // else removed
};

struct SceneChanges {
  std::vector<TrackChange> fTracks;
  std::vector<ModifierChange> fModifiers;

  bool IsEmpty() const { return fTracks.empty() && fModifiers.empty(); }
};

// How far one number of a value went from where it was, without modifiers.
struct MotionChange {
  TrackPlace fPlace;
  std::size_t fNumber = 0;
  real32 fMost = 0;  // the largest difference
  int32 fTime = 0;   // where that is, the first such time
};

// A copy of the values, keys and modifiers of a scene. The scene must outlive it, and keep its elements.
class SceneCopy {
 public:
  explicit SceneCopy(Scene& inScene);

  SceneChanges FindChanges() const;
  // Compares at every frame of the scene's time range and at every key that there is or was. What differs in its last
  // bit differs. Puts the values of before back for a while: not for use during an evaluation.
  std::vector<MotionChange> FindMotion() const;

 private:
  struct CopiedElement {
    TMCCountedPtr<Element> fElement;
    SavedElement fValues;
    std::vector<TMCCountedPtr<Modifier>> fModifiers;
  };
  struct CopiedSet {
    std::shared_ptr<ValueSet> fSet;
    SavedValueSet fValues;
  };

  Scene& fScene;
  std::vector<CopiedElement> fElements;
  std::vector<CopiedSet> fSets;
};

}  // namespace qlx::host
