// `qlx bake`: every frame of a scene is evaluated, and what modifiers changed is written as keys.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <set>

#include "BakeSummary.h"
#include "Command.h"
#include "CsvTable.h"
#include "MotionPlot.h"
#include "OutputFile.h"
#include "ProgressBar.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/ClosestNames.h"

namespace qlx::host {

namespace {

const char* const kBakeExamples = R"(Examples:
  qlx bake arm.gltf -o arm.baked.glb
  qlx bake arm.gltf -o arm.baked.glb --plot arm.svg --csv arm.csv
  qlx bake arm.gltf -o arm.baked.gltf --clip Wave --from 10 --to 60 --fps 30 --keep

The result holds a key on each frame for every value that a modifier changed; everything else stays as it was read, and
the modifiers are gone. Outputs are written beside their place and renamed: after a failure none is there, and what
stood there before is unharmed. The output may therefore be the scene itself.
)";

struct BakeOptions {
  SceneOptions fScene;
  std::string fOutput;
  std::optional<int32> fFrom;
  std::optional<int32> fTo;
  bool fKeep = false;
  LinkOrdering fOrdering = LinkOrdering::kDependencies;
  std::string fCsv;
  std::string fPlot;
  std::vector<std::string> fPlotAlso;
  bool fJson = false;
};

void CheckOutputs(const BakeOptions& inOptions) {
  std::set<std::filesystem::path> places;
  for (const std::string& file : {inOptions.fOutput, inOptions.fCsv, inOptions.fPlot}) {
    if (file.empty()) {
      continue;
    }
    const std::filesystem::path place = PathOfText(file);
    CheckOutputPlace(place);
    if (!places.insert(std::filesystem::absolute(place).lexically_normal()).second) {
      throw UserError(file, "two outputs cannot be one file");
    }
  }
}

BakeRange RangeFor(const Scene& inScene, const BakeOptions& inOptions) {
  BakeRange range = FramesOf(inScene);
  range.fFirst = inOptions.fFrom.value_or(range.fFirst);
  range.fLast = inOptions.fTo.value_or(range.fLast);
  if (range.fFirst < 0) {
    throw UserError("--from", fmt::format("frame {} is before frame 0, where time starts in glTF", range.fFirst));
  }
  if (range.fLast < range.fFirst) {
    throw UserError(inOptions.fTo ? "--to" : "--from",
                    fmt::format("the last frame, {}, is before the first, {}", range.fLast, range.fFirst));
  }
  return range;
}

std::vector<Element*> FindElements(const Scene& inScene, const std::vector<std::string>& inNames) {
  std::vector<Element*> elements;
  elements.reserve(inNames.size());
  for (const std::string& name : inNames) {
    elements.push_back(&NeedElement(inScene, name, "--plot-also"));
  }
  return elements;
}

// Elements whose motion a plot may show: those with modifiers, their parents, and those asked for.
std::vector<Element*> ElementsToRecord(const Scene& inScene, const std::vector<Element*>& inAlso) {
  std::vector<Element*> elements = inAlso;
  for (Element* element : inScene.GetTreeOrder()) {
    if (!element->GetModifiers().empty()) {
      elements.push_back(element);
      if (element->GetParentElement() != nullptr) {
        elements.push_back(element->GetParentElement());
      }
    }
  }
  return elements;
}

// One bake from its options to its files.
class BakeRun {
 public:
  BakeRun(CommandContext& inContext, const BakeOptions& inOptions)
      : fConsole(inContext.fConsole), fOptions(inOptions), fSession(inContext) {}

  void Run() {
    fDocument = fSession.Open(fOptions.fScene);
    Scene& scene = fDocument->GetScene();
    scene.SetOrdering(fOptions.fOrdering);
    const BakeRange range = RangeFor(scene, fOptions);
    const std::vector<Element*> also = FindElements(scene, fOptions.fPlotAlso);
    MotionRecord motion(fOptions.fPlot.empty() ? std::vector<Element*>{} : ElementsToRecord(scene, also));
    ProgressBar progress(fConsole, "baking", "frame");
    const BakeResult result = Bake(scene, range, [&](int32 done, int32 total) {
      motion.Add();
      progress.Update(done, total);
    });
    progress.Clear();
    WriteAll(result, motion, also);
    fSession.ShowWarnings();
    Report(result);
  }

 private:
  // The scene goes last: whatever fails before it leaves nothing behind.
  void WriteAll(const BakeResult& inResult, const MotionRecord& inMotion, const std::vector<Element*>& inAlso) {
    std::vector<std::unique_ptr<OutputFile>> besides;
    if (!fOptions.fCsv.empty()) {
      besides.push_back(std::make_unique<OutputFile>(PathOfText(fOptions.fCsv), MakeCsv(inResult)));
    }
    if (!fOptions.fPlot.empty()) {
      besides.push_back(std::make_unique<OutputFile>(PathOfText(fOptions.fPlot), Draw(inResult, inMotion, inAlso)));
    }
    fDocument->WriteBaked(PathOfText(fOptions.fOutput), inResult,
                          fOptions.fKeep ? KeepModifiers::kSwitchedOff : KeepModifiers::kNo);
    for (const std::unique_ptr<OutputFile>& file : besides) {
      file->PutInPlace();
    }
  }

  std::string Draw(const BakeResult& inResult, const MotionRecord& inMotion, const std::vector<Element*>& inAlso) {
    Scene& scene = fDocument->GetScene();
    MotionRecord without(ElementsToRecord(scene, {}));
    RecordWithoutModifiers(scene, inResult.fRange, without);
    return DrawSvg(
        MakeMotionPlot(scene, {ShortName(fOptions.fScene), fDocument->GetClip(), inResult, inMotion, without, inAlso}));
  }

  void Report(const BakeResult& inResult) {
    const BakeSummary summary{fOptions.fScene.fScene, fDocument->GetClip(), fDocument->GetScene().GetFrameRate(),
                              fOptions.fOutput,       fOptions.fCsv,        fOptions.fPlot,
                              fSession.GetWarnings()};
    fConsole.fOut << (fOptions.fJson ? SummaryAsJson(summary, inResult) : SummaryAsText(summary, inResult));
  }

  Console& fConsole;
  const BakeOptions& fOptions;
  Session fSession;
  std::unique_ptr<GltfDocument> fDocument;
};

}  // namespace

void AddBakeCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("bake", "Write a scene with the work of its modifiers as keys");
  const auto options = std::make_shared<BakeOptions>();
  command->footer(kBakeExamples);
  AddSceneOptions(*command, options->fScene);
  command->add_option("-o,--output", options->fOutput, "The scene to write, .gltf or .glb")
      ->required()
      ->type_name("FILE");
  command->add_option("--from", options->fFrom, "First frame; without it, the first of the clip")->type_name("FRAME");
  command->add_option("--to", options->fTo, "Last frame, included; without it, the last of the clip")
      ->type_name("FRAME");
  const std::map<std::string, LinkOrdering> orders{{"links", LinkOrdering::kDependencies},
                                                   {"tree", LinkOrdering::kTree}};
  command
      ->add_option("--order", options->fOrdering,
                   "In which order modifiers work: links (a source ahead of what follows it) or tree")
      ->transform(CLI::CheckedTransformer(orders).description(""))
      ->type_name("links|tree");
  command->add_flag("--keep", options->fKeep, "Leave the modifiers in the output, switched off");
  command->add_option("--csv", options->fCsv, "Write the changed values as a table, a row a frame")->type_name("FILE");
  command->add_option("--plot", options->fPlot, "Draw how the changed elements move, before and after")
      ->type_name("FILE.svg");
  command->add_option("--plot-also", options->fPlotAlso, "Another element to show in the plot; can be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command->add_flag("--json", options->fJson, "Print the summary as JSON");
  AddLibraryOption(*command, inContext);
  command->callback([options, &inContext] {
    inContext.fAction = [options, &inContext] {
      CheckOutputs(*options);
      BakeRun(inContext, *options).Run();
    };
  });
}

}  // namespace qlx::host
