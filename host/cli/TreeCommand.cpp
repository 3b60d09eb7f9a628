// `qlx tree`: what is in a scene.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <unordered_map>

#include "Command.h"
#include "JsonText.h"
#include "ModifierText.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfJson.h"
#include "model/Bake.h"
#include "model/IDText.h"
#include "model/ParameterRows.h"

namespace qlx::host {

namespace {

const char* const kTreeExamples = R"(Examples:
  qlx tree arm.gltf
  qlx tree arm.gltf --params              every parameter: path, type, value at the start of the clip
  qlx tree arm.gltf --params --json | jq '.elements[] | select(.modifiers != [])'
)";

struct TreeOptions {
  SceneOptions fScene;
  bool fParameters = false;
  bool fJson = false;
};

// The scene's own root is not shown: elements below it are at the top.
std::vector<Element*> ShownElements(const Scene& inScene) {
  std::vector<Element*> elements = inScene.GetTreeOrder();
  elements.erase(elements.begin());
  return elements;
}

// ---- text ----

// A chain of thousands of elements would else print more blanks than names.
constexpr int kDeepestTreeIndent = 40;

class TreeText {
 public:
  TreeText(Scene& inScene, bool inParameters) : fScene(inScene), fParameters(inParameters) {}

  std::string Make() {
    std::unordered_map<const Element*, int> depths{{&fScene.GetRootElement(), 0}};
    for (Element* element : ShownElements(fScene)) {
      const int depth = depths[element->GetParentElement()];
      depths[element] = depth + 1;
      const std::string indent(static_cast<std::size_t>(2 * std::min(depth, kDeepestTreeIndent)), ' ');
      AddElement(*element, depth <= kDeepestTreeIndent ? indent : indent + fmt::format("(level {}) ", depth), indent);
    }
    return std::move(fText);
  }

 private:
  void AddElement(Element& inElement, const std::string& inStart, const std::string& inIndent) {
    fText += inStart + Printable(inElement.GetNameText()) + (inElement.IsAnimated() ? "  (animated)\n" : "\n");
    for (const auto& modifier : inElement.GetModifiers()) {
      Line("{}  + {} '{}', {}", inIndent, ClassNameOf(*modifier), TextFromID(modifier->GetModifierClass()),
           modifier->IsEnabled() ? "on" : "off");
      AddFields(*modifier, inIndent + "      ");
    }
    if (fParameters) {
      ForEachParameter(inElement, [&](const ParameterRow& row) {
        Line("{}  - {:<24} {} {}  {}{}{}", inIndent, row.fPath, TextFromID(row.fType), row.fValue, Printable(row.fName),
             row.fIsAnimated ? "  (animated)" : "", row.fIsFound ? "" : "  (not found by its path)");
      });
    }
  }

  void AddFields(const Modifier& inModifier, const std::string& inIndent) {
    const auto* const made = dynamic_cast<const PluginModifier*>(&inModifier);
    if (!fParameters || made == nullptr || made->GetParameterMap() == nullptr) {
      return;
    }
    for (const ParameterField& field : made->GetParameterMap()->GetFields()) {
      Line("{}{:<14} {} {}", inIndent, field.fName, TextFromID(field.fType), JsonLine(FieldAsJson(*made, field)));
    }
  }

  template <class... Arguments>
  void Line(fmt::format_string<Arguments...> inFormat, Arguments&&... inArguments) {
    fmt::format_to(std::back_inserter(fText), inFormat, std::forward<Arguments>(inArguments)...);
    fText += '\n';
  }

  Scene& fScene;
  bool fParameters;
  std::string fText;
};

std::string AsText(const GltfDocument& inDocument, const TreeOptions& inOptions) {
  Scene& scene = inDocument.GetScene();
  const BakeRange range = FramesOf(scene);
  std::string text =
      fmt::format("{}: {}, frames {} to {} at {} a second\n", Printable(ShortName(inOptions.fScene)),
                  Counted(ShownElements(scene).size(), "element"), range.fFirst, range.fLast, scene.GetFrameRate());
  for (const std::string& clip : inDocument.GetClipNames()) {
    text += fmt::format("clip \"{}\"{}\n", Printable(clip), clip == inDocument.GetClip() ? ", shown here" : "");
  }
  return text + '\n' + TreeText(scene, inOptions.fParameters).Make();
}

// ---- JSON ----

Json ModifierAsJson(const Modifier& inModifier) {
  Json fields = Json::object();
  const auto* const made = dynamic_cast<const PluginModifier*>(&inModifier);
  if (made != nullptr && made->GetParameterMap() != nullptr) {
    for (const ParameterField& field : made->GetParameterMap()->GetFields()) {
      fields[field.fName] = FieldAsJson(*made, field);
    }
  }
  auto& modifier = const_cast<Modifier&>(inModifier);  // the host's interface has no const operations
  return {{"class", TextFromID(modifier.GetModifierClass())},
          {"name", ClassNameOf(inModifier)},
          {"enabled", modifier.IsEnabled()},
          {"parameters", std::move(fields)}};
}

Json ParametersAsJson(Element& inElement) {
  Json parameters = Json::array();
  ForEachParameter(inElement, [&](const ParameterRow& row) {
    const Json value = Json::parse(row.fValue, nullptr, false);
    parameters.push_back({{"path", row.fPath},
                          {"name", row.fName},
                          {"type", TextFromID(row.fType)},
                          {"value", value.is_discarded() ? Json(row.fValue) : value},
                          {"animated", row.fIsAnimated},
                          {"found", row.fIsFound}});
  });
  return parameters;
}

Json ElementAsJson(Element& inElement, const Scene& inScene, bool inParameters) {
  Element* const parent = inElement.GetParentElement();
  Json modifiers = Json::array();
  for (const auto& modifier : inElement.GetModifiers()) {
    modifiers.push_back(ModifierAsJson(*modifier));
  }
  Json element = {{"id", inElement.GetUniqueID()},
                  {"name", inElement.GetNameText()},
                  {"parent", parent == &inScene.GetRootElement() ? Json() : Json(parent->GetUniqueID())},
                  {"animated", inElement.IsAnimated()},
                  {"modifiers", std::move(modifiers)}};
  if (inParameters) {
    element["parameters"] = ParametersAsJson(inElement);
  }
  return element;
}

// Elements are a plain list, parents first: a deep scene makes no deep document.
std::string AsJson(const GltfDocument& inDocument, const TreeOptions& inOptions) {
  Scene& scene = inDocument.GetScene();
  const BakeRange range = FramesOf(scene);
  Json elements = Json::array();
  for (Element* element : ShownElements(scene)) {
    elements.push_back(ElementAsJson(*element, scene, inOptions.fParameters));
  }
  return JsonText({{"scene", inOptions.fScene.fScene},
                   {"clip", inDocument.GetClip().empty() ? Json() : Json(inDocument.GetClip())},
                   {"clips", inDocument.GetClipNames()},
                   {"frameRate", scene.GetFrameRate()},
                   {"frames", {{"first", range.fFirst}, {"last", range.fLast}}},
                   {"elements", std::move(elements)}});
}

void Run(CommandContext& inContext, const TreeOptions& inOptions) {
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  session.ShowWarnings();
  inContext.fConsole.fOut << (inOptions.fJson ? AsJson(*document, inOptions) : AsText(*document, inOptions));
}

}  // namespace

void AddTreeCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("tree", "Print the elements of a scene with their modifiers");
  const auto options = std::make_shared<TreeOptions>();
  command->footer(kTreeExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_flag("--params", options->fParameters, "Print every parameter with its path, type and value");
  command->add_flag("--json", options->fJson, "Print it as JSON");
  AddLibraryOption(*command, inContext);
  command->callback([options, &inContext] { inContext.fAction = [options, &inContext] { Run(inContext, *options); }; });
}

}  // namespace qlx::host
