#include "LinkProblems.h"

#include <fmt/format.h>

#include "LinkFacts.h"
#include "PluginModifier.h"
#include "model/ParameterRows.h"
#include "model/Scene.h"

namespace qlx::host {

namespace {

class LinkExaminer {
 public:
  explicit LinkExaminer(PluginModifier& inLink)
      : fLink(inLink), fElement(*inLink.GetElement()), fScene(*fElement.GetOwnScene()) {}

  std::string Examine(const LinkTrace& inTrace) {
    const bool isObjectMode = Flag("fMirrorTransform");
    const bool isAttributeMode = !isObjectMode && Flag("fAttributeMode");
    const bool isByName = Flag("fFindControllerByName") || Flag("fFindSourceByName");
    if (!isObjectMode && !isAttributeMode) {
      return {};
    }
    // What a trace says is enough for a link that writes and searches by no name.
    if (!inTrace.fWrites.empty() && !isByName && !inTrace.fHasLostReference) {
      return {};
    }
    fFacts = ReadLinkFacts(fLink.WritePrivate().value_or(std::string()));
    return isObjectMode ? ExamineSource(isByName) : ExaminePaths(isByName);
  }

 private:
  bool Flag(const char* inName) const {
    const ParameterValue value = Field(inName);
    const bool* const flag = std::get_if<bool>(&value);
    return flag != nullptr && *flag;
  }
  std::string Text(const char* inName) const {
    const ParameterValue value = Field(inName);
    const auto* const text = std::get_if<std::string>(&value);
    return text == nullptr ? std::string() : *text;
  }
  // The map is that of a file, which may lack the field.
  ParameterValue Field(const char* inName) const {
    const ParameterField* const field = fLink.GetParameterMap()->Find(inName);
    return field == nullptr ? ParameterValue() : fLink.GetField(*field);
  }

  // The source that a link reads from; what is wrong with it goes to `fProblem`.
  Element& FindSource(bool inByName, const char* inName, bool inHasReference, uint32 inID) {
    Element* found = &fElement;
    if (inByName) {
      const std::string name = Text(inName);
      found = name.empty() ? nullptr : fScene.FindByName(name);
      fProblem = found == nullptr ? fmt::format("no element has the name \"{}\"", name) : "";
    } else if (inHasReference) {
      found = fScene.FindByID(inID);
      fProblem = found == nullptr ? fmt::format("the element that it refers to (id {}) is gone", inID) : "";
    }
    if (found == nullptr) {
      fProblem += fmt::format(", it reads from \"{}\" itself", fElement.GetNameText());
    }
    return found == nullptr ? fElement : *found;
  }

  std::string ExamineSource(bool inByName) {
    FindSource(inByName, "fSourceName", fFacts.fHasSourceRef, fFacts.fSourceID);
    return fProblem;
  }

  std::string ExaminePaths(bool inByName) {
    if (!fFacts.fTargetSet) {
      return {};
    }
    if (!LeadsToValue(fElement, fFacts.fTargetPath)) {
      return fmt::format("\"{}\" has no value at the path \"{}\"", fElement.GetNameText(), fFacts.fTargetPath);
    }
    if (!fFacts.fControllerSet) {
      return {};
    }
    const Element& source = FindSource(inByName, "fControllerName", fFacts.fHasControllerRef, fFacts.fControllerID);
    if (fProblem.empty() && !LeadsToValue(const_cast<Element&>(source), fFacts.fControllerPath)) {
      return fmt::format("\"{}\" has no value at the path \"{}\"", source.GetNameText(), fFacts.fControllerPath);
    }
    return fProblem;
  }

  // The position in the scene is no parameter.
  static bool LeadsToValue(Element& inElement, const std::string& inPath) {
    return inPath.ends_with("GlbX") || inPath.ends_with("GlbY") || inPath.ends_with("GlbZ") ||
           FindParameter(inElement, inPath).fParameter;
  }

  PluginModifier& fLink;
  Element& fElement;
  Scene& fScene;
  LinkFacts fFacts;
  std::string fProblem;
};

}  // namespace

std::string DescribeLinkProblem(PluginModifier& inLink, const LinkTrace& inTrace) {
  const bool isInScene = inLink.GetElement() != nullptr && inLink.GetElement()->GetOwnScene() != nullptr;
  return isInScene && inLink.GetParameterMap() != nullptr ? LinkExaminer(inLink).Examine(inTrace) : "";
}

}  // namespace qlx::host
