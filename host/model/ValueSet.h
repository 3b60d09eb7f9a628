// The values of a thing that has no transform: a shader, a camera, a light, the morphs of an object, the custom values
// of an element.
//
// Each value is kept as an element's channels are: a base value (what a person set), curves where it is animated, and
// the evaluated value. Outside an evaluation a write is an edit of a key at the current time where the value has keys,
// else of the base value; during one it changes the evaluated value alone. A set may be shared, and outlive its scene:
// writes do nothing then.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "AnimatedValue.h"

namespace qlx::host {

class Scene;
struct SavedValueSet;

// 'qfix' (a number), 'bool' or 'colo'. Numbers are in the units of the scene: inches, radians.
struct ValueInfo {
  MCID fID = 0;
  std::string fName;  // for people: "Roughness"
  MCID fType = "qfix"_id;
};

// Made by `Scene::AddValues`.
class ValueSet : public std::enable_shared_from_this<ValueSet> {
 public:
  ValueSet(Scene& inScene, std::string inLabel) : fScene(&inScene), fLabel(std::move(inLabel)) {}

  // What the values belong to, for messages: `shader "Paint"`.
  const std::string& GetLabel() const { return fLabel; }
  // Null once the scene is closed.
  Scene* GetScene() const { return fScene; }

  // Values. Indices stay as they are. Writing a value that is not finite is refused with false.
  std::size_t Add(ValueInfo inInfo, const ValueNumbers& inBase);
  std::size_t GetCount() const { return fValues.size(); }
  const ValueInfo& GetInfo(std::size_t inIndex) const { return fValues[inIndex].fInfo; }
  const ValueNumbers& GetBase(std::size_t inIndex) const { return fValues[inIndex].fBase; }
  const ValueNumbers& GetEvaluated(std::size_t inIndex) const { return fValues[inIndex].fEvaluated; }
  bool Write(std::size_t inIndex, const ValueNumbers& inNumbers);
  // An edit that leaves the keys alone; during an evaluation it shows from the next one on.
  bool SetBase(std::size_t inIndex, const ValueNumbers& inNumbers);

  // Curves, one a number. `GetCurve` gives null for a value that was never animated, `GetOrMakeCurve` an empty curve to
  // be filled as a scene is built: give all curves of a value the same keys. `EditCurves` is an edit, which shows at
  // once outside an evaluation. Truth values step, whatever keys say.
  const Curve* GetCurve(std::size_t inIndex, uint32 inNumber) const;
  Curve& GetOrMakeCurve(std::size_t inIndex, uint32 inNumber);
  bool EditCurves(std::size_t inIndex, const std::function<void(Curve&, uint32)>& inEdit);
  bool HasKeys(std::size_t inIndex) const;
  bool IsAnimated() const { return fIsAnimated; }
  ValueNumbers SampleAt(std::size_t inIndex, int32 inTime) const;

  // True where an edit changed a base value or a curve since the scene was read.
  bool IsEdited(std::size_t inIndex) const { return fValues[inIndex].fIsEdited; }
  void ClearEdited();
  // As those of an element.
  SavedValueSet SaveValues() const;
  bool HasValues(const SavedValueSet& inSaved) const;
  void RestoreValues(const SavedValueSet& inSaved);

  // Evaluation, called by the scene: takes the values of the time; later writes mark values as modified.
  void BeginEvaluation(int32 inTime);
  // Written during this evaluation, and different from what curves and base gave.
  bool IsModified(std::size_t inIndex) const;
  const ValueNumbers& GetUnmodified(std::size_t inIndex) const;

 private:
  friend class Scene;

  struct Value {
    ValueInfo fInfo;
    ValueNumbers fBase;
    ValueNumbers fEvaluated;
    ValueNumbers fUnmodified;    // what this evaluation began with; kept when `fIsWritten` is set
    std::vector<Curve> fCurves;  // none, or one a number
    std::array<std::size_t, kMostNumbers> fHints{};
    bool fIsWritten = false;
    bool fIsEdited = false;
  };

  static ValueNumbers Sample(const Value& inValue, int32 inTime, std::array<std::size_t, kMostNumbers>& ioHints);
  std::vector<Curve>& MakeCurves(Value& ioValue);
  void SetKeysNow(Value& ioValue, const ValueNumbers& inNumbers);

  Scene* fScene;
  std::string fLabel;
  std::vector<Value> fValues;
  bool fIsAnimated = false;
  bool fIsTouched = false;  // stands in the scene's list
};

}  // namespace qlx::host
