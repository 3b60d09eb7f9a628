#include "GltfValues.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "GltfUnits.h"
#include "GltfValueRules.h"
#include "TinyGltf.h"
#include "model/ParameterIDs.h"

namespace qlx::host {

namespace {

std::string EscapedToken(std::string_view inName) {
  std::string token;
  for (const char each : inName) {
    if (each == '~' || each == '/') {
      token += each == '~' ? "~0" : "~1";
    } else {
      token += each;
    }
  }
  return token;
}

// A member that a path leads to; null where there is none.
const Json* FindAt(const Json& inObject, const char* inPath) {
  const Json::json_pointer pointer{inPath};
  return inObject.contains(pointer) ? &inObject[pointer] : nullptr;
}

// A number that a 32-bit real holds, also after it was multiplied.
std::optional<real32> RealOf(const Json& inNumber, real64 inFactor) {
  const auto number = inNumber.get<real64>();
  const bool fits = std::fabs(number) * inFactor <= static_cast<real64>(std::numeric_limits<real32>::max());
  return fits ? std::optional(static_cast<real32>(number)) : std::nullopt;
}

bool IsThere(const Json& inObject, const ValueRule& inRule) {
  if (inRule.fNeeds == nullptr) {
    return true;
  }
  const Json* const needed = FindAt(inObject, inRule.fNeeds);
  return needed != nullptr && (inRule.fNeedsText == nullptr || *needed == inRule.fNeedsText);
}

class ValueReader {
 public:
  ValueReader(const Json& inDocument, const std::vector<Element*>& inElements, Scene& ioScene)
      : fDocument(inDocument), fElements(inElements), fScene(ioScene) {}

  ValueTargets Read() {
    const auto& shaders = fScene.GetShaders();
    for (std::size_t i = 0; i < shaders.size(); ++i) {
      AddAll(fDocument["materials"][i], "/materials/" + std::to_string(i), kMaterialRules, shaders[i]->GetValues());
    }
    const Json& nodes = ArrayOf(fDocument, "nodes");
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      AddWeights(nodes[i], i);
    }
    AddCameras(nodes);
    AddLights(nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      AddExtras(nodes[i], i);
    }
    return std::move(fTargets);
  }

 private:
  void Warn(const std::string& inPointer, const std::string& inProblem) const {
    fScene.GetDiagnostics().Warn(PlaceOfPointer(inPointer) + ": " + inProblem);
  }

  void AddAll(const Json& inObject, const std::string& inPointer, std::span<const ValueRule> inRules,
              const std::shared_ptr<ValueSet>& inValues) {
    for (const ValueRule& rule : inRules) {
      if (IsThere(inObject, rule)) {
        AddOne(FindAt(inObject, rule.fPath), inPointer + rule.fPath, rule, {rule.fID, rule.fName, rule.fType},
               inValues);
      }
    }
  }

  // From what is written, else the default. Nothing when there is neither, or what is written is no such value.
  void AddOne(const Json* inValue, const std::string& inPointer, const ValueRule& inRule, ValueInfo inInfo,
              const std::shared_ptr<ValueSet>& inValues) {
    if (inValue == nullptr && !inRule.fDefault) {
      return;
    }
    ValueNumbers numbers{};
    if (inRule.fType == kColour) {
      numbers[3] = 1;  // one without alpha is opaque
    }
    if (inValue == nullptr) {
      std::fill_n(numbers.begin(), inRule.fWidth, *inRule.fDefault);
    } else if (!Take(*inValue, inRule, inPointer, numbers)) {
      return;
    }
    for (std::size_t i = 0; inRule.fIsLength && i < inRule.fWidth; ++i) {
      numbers[i] = static_cast<real32>(static_cast<real64>(numbers[i]) * inRule.GetFactor());
    }
    const std::size_t index = inValues->Add(std::move(inInfo), numbers);
    fTargets.Add({inPointer, &inRule, inValues, index, 1, {}, {numbers}});
  }

  bool Take(const Json& inValue, const ValueRule& inRule, const std::string& inPointer,
            ValueNumbers& outNumbers) const {
    if (inRule.fType == "bool"_id && inValue.is_boolean()) {
      outNumbers = {inValue.get<bool>() ? 1.0f : 0.0f};
      return true;
    }
    const bool isList = inRule.fWidth > 1 && inValue.is_array() && inValue.size() == inRule.fWidth;
    const Json list = isList ? inValue : Json::array({inValue});
    if (inRule.fWidth > 1 && !isList) {
      Warn(inPointer, fmt::format("must be {} numbers; it is no parameter", inRule.fWidth));
      return false;
    }
    for (std::size_t i = 0; i < inRule.fWidth; ++i) {
      if (!list[i].is_number()) {
        Warn(inPointer, "must be a number; it is no parameter");
        return false;
      }
      const std::optional<real32> number = RealOf(list[i], inRule.GetFactor());
      if (!number) {
        Warn(inPointer, list[i].dump() + " is too large for a parameter");
        return false;
      }
      outNumbers[i] = *number;
      if (outNumbers[i] < inRule.fLeast || outNumbers[i] > inRule.fMost) {
        Warn(inPointer, fmt::format("{} is not {}", list[i].dump(), LimitText(inRule)));
      }
    }
    return true;
  }

  void AddWeights(const Json& inNode, std::size_t inIndex) {
    const SceneObject* const object = fElements[inIndex]->GetSceneObject();
    if (object == nullptr || !object->GetValues()) {
      return;
    }
    const std::shared_ptr<ValueSet>& values = object->GetValues();
    const std::string pointer = "/nodes/" + std::to_string(inIndex) + kWeightRule.fPath;
    const std::size_t given = WeightsOf(fDocument, inNode).size();
    if (given != 0 && given != values->GetCount()) {
      const bool isOwn = inNode.contains("weights");
      Warn(isOwn ? pointer : "/meshes/" + inNode["mesh"].dump() + kWeightRule.fPath,
           fmt::format("{} weights where there are {} morph targets", given, values->GetCount()));
    }
    ValueTarget target{pointer, &kWeightRule, values, 0, values->GetCount(), inIndex, {}};
    for (std::size_t i = 0; i < values->GetCount(); ++i) {
      target.fRead.push_back(values->GetBase(i));
    }
    fTargets.Add(std::move(target));
  }

  std::string LabelOf(const char* inKind, const Json& inObject, std::size_t inIndex) const {
    const Json* const name = FindMember(inObject, "name");
    const bool isNamed = name != nullptr && name->is_string();
    return fmt::format("{} \"{}\"", inKind, isNamed ? ReadableName(name->get<std::string>()) : std::to_string(inIndex));
  }

  void AddCameras(const Json& inNodes) {
    std::vector<std::shared_ptr<ValueSet>> sets;
    const Json& cameras = ArrayOf(fDocument, "cameras");
    for (std::size_t i = 0; i < cameras.size(); ++i) {
      sets.push_back(fScene.AddValues(LabelOf("camera", cameras[i], i)));
      AddAll(cameras[i], "/cameras/" + std::to_string(i), kCameraRules, sets.back());
    }
    for (std::size_t i = 0; i < inNodes.size(); ++i) {
      if (const Json* const camera = FindMember(inNodes[i], "camera")) {
        fElements[i]->AttachValues({"came"_id, "Camera", sets[camera->get<std::size_t>()]});
      }
    }
  }

  // Nothing of an extension was checked before.
  void AddLights(const Json& inNodes) {
    const std::string list = fmt::format("/extensions/{}/lights", kLightsExtension);
    const Json* const lights = FindAt(fDocument, list.c_str());
    std::vector<std::shared_ptr<ValueSet>> sets;
    for (std::size_t i = 0; lights != nullptr && lights->is_array() && i < lights->size(); ++i) {
      const Json& light = (*lights)[i];
      const std::string pointer = list + "/" + std::to_string(i);
      sets.push_back(nullptr);
      if (!light.is_object()) {
        Warn(pointer, "must be an object");
        continue;
      }
      sets.back() = fScene.AddValues(LabelOf("light", light, i));
      AddAll(light, pointer, kLightRules, sets.back());
    }
    const std::string path = fmt::format("/extensions/{}/light", kLightsExtension);
    for (std::size_t i = 0; i < inNodes.size(); ++i) {
      const Json* const light = FindAt(inNodes[i], path.c_str());
      if (light == nullptr) {
        continue;
      }
      const uint64 index = light->is_number_unsigned() ? light->get<uint64>() : sets.size();
      if (index >= sets.size()) {
        Warn(fmt::format("/nodes/{}{}", i, path),
             fmt::format("{} is no light, there are {}", light->dump(), sets.size()));
      } else if (sets[static_cast<std::size_t>(index)]) {
        fElements[i]->AttachValues({"ligh"_id, "Light", sets[static_cast<std::size_t>(index)]});
      }
    }
  }

  void AddExtras(const Json& inNode, std::size_t inIndex) {
    const Json* const extras = FindMember(inNode, "extras");
    if (extras == nullptr || !extras->is_object()) {
      return;
    }
    std::shared_ptr<ValueSet> values;
    ParameterIDs ids;
    for (const auto& [name, value] : extras->items()) {
      if (!value.is_number() && !value.is_boolean()) {
        continue;
      }
      if (!values) {
        values = fScene.AddValues("element \"" + fElements[inIndex]->GetNameText() + "\"");
      }
      const ValueRule& rule = value.is_boolean() ? kCustomBoolean : kCustomNumber;
      AddOne(&value, fmt::format("/nodes/{}/extras/{}", inIndex, EscapedToken(name)), rule,
             {ids.Make(name), ReadableName(name), rule.fType}, values);
    }
    if (values && values->GetCount() != 0) {
      fElements[inIndex]->AttachValues({"cust"_id, "Custom", std::move(values)});
    }
  }

  const Json& fDocument;
  const std::vector<Element*>& fElements;
  Scene& fScene;
  ValueTargets fTargets;
};

}  // namespace

real64 ValueRule::GetFactor() const {
  return fIsLength ? kInchesPerMetre : 1.0;
}

int ValueTarget::GetAccessorType() const {
  const int vector = fRule->fWidth == 3 ? TINYGLTF_TYPE_VEC3 : TINYGLTF_TYPE_VEC4;
  return fRule->fWidth == 1 ? TINYGLTF_TYPE_SCALAR : vector;
}

void ValueTargets::Add(ValueTarget inTarget) {
  fByPointer.emplace(inTarget.fPointer, fTargets.size());
  fTargets.push_back(std::move(inTarget));
}

const ValueTarget* ValueTargets::Find(const std::string& inPointer) const {
  const auto found = fByPointer.find(inPointer);
  return found == fByPointer.end() ? nullptr : &fTargets[found->second];
}

ValueTargets ReadValues(const Json& inDocument, const std::vector<Element*>& inElements, Scene& ioScene) {
  return ValueReader(inDocument, inElements, ioScene).Read();
}

std::vector<real32> WeightsOf(const Json& inDocument, const Json& inNode) {
  const Json* weights = FindMember(inNode, "weights");
  const Json* const mesh = FindMember(inNode, "mesh");
  if (weights == nullptr && mesh != nullptr) {
    weights = FindMember(inDocument["meshes"][mesh->get<std::size_t>()], "weights");
  }
  std::vector<real32> numbers;
  for (std::size_t i = 0; weights != nullptr && i < weights->size(); ++i) {
    numbers.push_back(RealOf((*weights)[i], 1).value_or(0));
  }
  return numbers;
}

std::string PlaceOfPointer(const std::string& inPointer) {
  std::string place;
  std::size_t start = 1;
  while (start <= inPointer.size()) {
    const std::size_t end = std::min(inPointer.find('/', start), inPointer.size());
    const std::string token = inPointer.substr(start, end - start);
    if (!token.empty() && token.find_first_not_of("0123456789") == std::string::npos && !place.empty()) {
      place += "[" + token + "]";
    } else {
      place += (place.empty() ? "" : ".") + token;
    }
    start = end + 1;
  }
  for (const auto& [escaped, plain] : {std::pair("~1", "/"), std::pair("~0", "~")}) {
    for (std::size_t at = place.find(escaped); at != std::string::npos; at = place.find(escaped, at + 1)) {
      place.replace(at, 2, plain);
    }
  }
  return place;
}

}  // namespace qlx::host
