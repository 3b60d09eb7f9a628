// What of a glTF document are values of the scene besides transforms: factors of materials, cameras, punctual lights,
// weights of morph targets, and a user's own numbers and truth values in the extras of nodes
// (docs/formats/parameters.md).
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "GltfJson.h"
#include "model/Scene.h"

namespace qlx::host {

inline constexpr const char* kPointerExtension = "KHR_animation_pointer";
inline constexpr const char* kLightsExtension = "KHR_lights_punctual";

// A property of glTF that is a value of the scene. Limits are those of glTF, in its units; what must be above 0 has the
// smallest number that does it as its limit.
struct ValueRule {
  const char* fPath;  // below its object: "/pbrMetallicRoughness/metallicFactor"
  MCID fID;
  const char* fName;
  MCID fType = "qfix"_id;
  std::size_t fWidth = 1;  // numbers in glTF
  real32 fLeast = 0;
  real32 fMost = 1;
  std::optional<real32> fDefault = std::nullopt;  // without one, the property is a value only where it is written
  const char* fNeeds = nullptr;                   // a path that must be there too,
  const char* fNeedsText = nullptr;               // with this text
  bool fIsLength = false;

  // Scene units in one of glTF's.
  real64 GetFactor() const;
};

// Where a value, or all weights of a node, stand in the document.
struct ValueTarget {
  std::string fPointer;  // "/materials/0/emissiveFactor", "/nodes/3/weights"
  const ValueRule* fRule = nullptr;
  std::shared_ptr<ValueSet> fValues;
  std::size_t fFirst = 0;
  std::size_t fCount = 1;                 // weights: as many as there are morphs
  std::optional<std::size_t> fNode = {};  // weights: the node that a channel of its own may animate
  std::vector<ValueNumbers> fRead = {};   // base values as they were read, in scene units

  std::size_t GetNumbersInKey() const { return fCount * fRule->fWidth; }
  int GetAccessorType() const;
};

class ValueTargets {
 public:
  void Add(ValueTarget inTarget);
  const std::vector<ValueTarget>& GetAll() const { return fTargets; }
  // Null for a pointer to anything else.
  const ValueTarget* Find(const std::string& inPointer) const;

 private:
  std::vector<ValueTarget> fTargets;
  std::unordered_map<std::string, std::size_t> fByPointer;
};

// Makes the values of the scene that was built of the document, and attaches them to its elements (one for each node).
// What cannot be read as a value is left where it is, with a warning; so is what is out of glTF's limits.
ValueTargets ReadValues(const Json& inDocument, const std::vector<Element*>& inElements, Scene& ioScene);

// The weights of a node's morphs: its own, else those of its mesh. Empty where neither has any.
std::vector<real32> WeightsOf(const Json& inDocument, const Json& inNode);

// "/nodes/3/extras/a~1b" as messages name places: "nodes[3].extras.a/b".
std::string PlaceOfPointer(const std::string& inPointer);

}  // namespace qlx::host
