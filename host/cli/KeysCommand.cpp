// `qlx keys` and `qlx chain`: commands of the menu, with plain options for what their dialogs ask.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <span>

#include "ChangesText.h"
#include "CommandRun.h"
#include "model/ClosestNames.h"
#include "model/Diagnostics.h"

namespace qlx::host {

namespace {

const char* const kKeysExamples = R"(Examples:
  qlx keys arm.gltf delete --select Hand --frame 12 -o out.gltf
                                        the keys of exactly this frame
  qlx keys arm.gltf dedupe --select Arm --scope subtree -o out.gltf
                                        those that repeat both their neighbours
  qlx keys arm.gltf wiggle --select Hand --keys 10 40 --forward 2 -o out.gltf
                                        a random number of frames, another one at each run
  qlx keys arm.gltf delete --select Hand --frame 12 --dry-run
                                        each key that would go; nothing is written

dedupe says which tracks lost keys, and which of them move otherwise than before: without modifiers, at all frames and
keys, by how much and where. A dry run of wiggle shows one of the many ways that it can go.
)";

const char* const kChainExamples = R"(Examples:
  qlx chain rig.gltf --elements Hip,Spine,Neck,Head --set BRal=on -o out.gltf
                                        the rotations, each bone like the one before it
  qlx chain rig.gltf --below Hip --set BRal=on dely=on dfrm=4 -o out.gltf
                                        Hip and all below it, each four frames after the one before it
  qlx chain rig.gltf --elements Hip,Spine,Neck --set BRal=on --follow first -o out.gltf
                                        all like the first
  qlx chain rig.gltf --elements Hip,Spine,Neck --set BRal=on --dry-run
                                        the links with their settings; nothing is written

`--set` takes the controls of the dialog "Link of a chain" by their ids or labels, the same for every link that follows
another. The first element leads: its link has nothing to follow, and would follow itself.
)";

struct KeysOptions {
  CommandRun fRun;
  std::string fAction;
  std::string fScope;
  std::optional<int32_t> fBackward;
  std::optional<int32_t> fForward;
};

struct WordMeaning {
  const char* fWord;
  const char* fMeaning;
};

constexpr WordMeaning kKeyActions[] = {{"delete", "dkey"}, {"dedupe", "rdup"}, {"wiggle", "wigl"}};
constexpr WordMeaning kScopes[] = {{"figure", "figu=on"}, {"subtree", "subt=on"}, {"selected", "selo=on"}};
constexpr WordMeaning kFollows[] = {{"first", "cgrp=on"}, {"previous", "cgrp=off"}};

const char* MeaningOf(std::span<const WordMeaning> inWords, const std::string& inWord, const std::string& inPlace) {
  std::vector<std::string> words;
  std::string all;
  for (const WordMeaning& row : inWords) {
    if (inWord == row.fWord) {
      return row.fMeaning;
    }
    words.emplace_back(row.fWord);
    all += std::string(all.empty() ? "" : ", ") + row.fWord;
  }
  const std::string closest = ClosestText(inWord, words);
  throw UserError(inPlace,
                  fmt::format("there is no \"{}\"{}", inWord, closest.empty() ? "; there are " + all : closest));
}

std::string ReportDuplicates(Scene& inScene, const SceneCopy& inBefore, const SceneChanges& inChanges) {
  return ReportRemovals(inScene, inChanges, inBefore.FindMotion());
}

void EditKeys(CommandContext& inContext, const KeysOptions& inOptions) {
  CommandRun run = inOptions.fRun;
  run.fCommand = MeaningOf(kKeyActions, inOptions.fAction, "the action");
  const bool isWiggle = run.fCommand == "wigl";
  if (isWiggle && !inOptions.fScope.empty()) {
    throw UserError("--scope", "wiggle works on the selected elements alone");
  }
  if (!isWiggle && (inOptions.fBackward || inOptions.fForward || !run.fKeys.empty())) {
    throw UserError(inOptions.fAction, "--keys, --backward and --forward are for wiggle");
  }
  if (!inOptions.fScope.empty()) {
    run.fAnswers.emplace_back(MeaningOf(kScopes, inOptions.fScope, "--scope"));
  }
  if (isWiggle && run.fKeys.empty()) {
    run.fKeys = {"all"};
  }
  if (inOptions.fBackward) {
    run.fAnswers.push_back(fmt::format("minf={}", *inOptions.fBackward));
  }
  if (inOptions.fForward) {
    run.fAnswers.push_back(fmt::format("maxf={}", *inOptions.fForward));
  }
  RunOnFile(inContext, run, run.fCommand == "rdup" ? ReportDuplicates : ChangeReport());
}

struct ChainOptions {
  CommandRun fRun;
  std::vector<std::string> fElements;
  std::string fBelow;
  std::vector<std::string> fSettings;
  std::vector<std::string> fFirstSettings;
  std::string fFollow = "previous";
};

// What the dialog answers to one button: the element where it asks for one, the settings of the link, and its own OK.
void AddLink(CommandRun& ioRun, std::initializer_list<std::string> inButton,
             const std::vector<std::string>& inSettings) {
  ioRun.fAnswers.insert(ioRun.fAnswers.end(), inButton);
  ioRun.fAnswers.insert(ioRun.fAnswers.end(), inSettings.begin(), inSettings.end());
  ioRun.fAnswers.emplace_back("ok");
}

void LayChain(CommandContext& inContext, const ChainOptions& inOptions) {
  CommandRun run = inOptions.fRun;
  run.fCommand = "chai";
  if (!inOptions.fBelow.empty()) {
    AddLink(run, {"abtn", "pick=" + inOptions.fBelow}, inOptions.fFirstSettings);
    AddLink(run, {"clst=#0", "achb"}, inOptions.fSettings);
  }
  bool isFirst = true;
  for (const std::string& element : inOptions.fElements) {
    AddLink(run, {"abtn", "pick=" + element}, isFirst ? inOptions.fFirstSettings : inOptions.fSettings);
    isFirst = false;
  }
  run.fAnswers.emplace_back(MeaningOf(kFollows, inOptions.fFollow, "--follow"));
  RunOnFile(inContext, run);
}

}  // namespace

void AddKeysCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("keys", "Delete, thin out or wiggle keys, and write the scene");
  const auto options = std::make_shared<KeysOptions>();
  command->footer(kKeysExamples);
  AddSceneOptions(*command, options->fRun.fScene);
  command->add_option("ACTION", options->fAction, "delete, dedupe or wiggle")->required()->type_name("");
  AddSelectOption(*command, options->fRun.fSelect);
  command
      ->add_option("--scope", options->fScope,
                   "delete and dedupe: figure, subtree or selected; without it, the selected elements alone")
      ->type_name("WHICH");
  command->add_option("--keys", options->fRun.fKeys, "wiggle: all, or those from a frame to a frame; without it, all")
      ->expected(1, 2)
      ->type_name("all|FRAME FRAME");
  command->add_option("--backward", options->fBackward, "wiggle: keys move back by fewer frames than this; -3")
      ->type_name("FRAMES");
  command->add_option("--forward", options->fForward, "wiggle: keys move forward by at most so many frames; 3")
      ->type_name("FRAMES");
  AddRunOptions(*command, options->fRun);
  AddLibraryOption(*command, inContext);
  SetRunAction(*command, inContext, options->fRun, [options, &inContext] { EditKeys(inContext, *options); });
}

void AddChainCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("chain", "Lay a chain of links, and write the scene");
  const auto options = std::make_shared<ChainOptions>();
  command->footer(kChainExamples);
  AddSceneOptions(*command, options->fRun.fScene);
  CLI::Option* const elements =
      command->add_option("--elements", options->fElements, "The elements that get a link, in this order")
          ->delimiter(',')
          ->type_name("NAME,NAME...");
  command->add_option("--below", options->fBelow, "Instead: the element that leads; all below it follow, parents first")
      ->type_name("NAME")
      ->excludes(elements);
  command->parse_complete_callback([options] {
    if (options->fElements.empty() && options->fBelow.empty()) {
      throw CLI::RequiredError("--elements or --below");
    }
  });
  command->add_option("--set", options->fSettings, "Settings of the links behind the first")->type_name("ID=VALUE...");
  command->add_option("--set-first", options->fFirstSettings, "Settings of the first link; without any it does nothing")
      ->type_name("ID=VALUE...");
  command->add_option("--follow", options->fFollow, "What the others follow: first or previous; without it, previous")
      ->type_name("WHICH");
  AddRunOptions(*command, options->fRun);
  AddLibraryOption(*command, inContext);
  SetRunAction(*command, inContext, options->fRun, [options, &inContext] { LayChain(inContext, *options); });
}

}  // namespace qlx::host
