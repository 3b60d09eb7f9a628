// `qlx keys` and `qlx chain`: commands of the menu, with plain options for what their dialogs ask.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <span>

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
)";

const char* const kChainExamples = R"(Examples:
  qlx chain rig.gltf --on Hip Spine Neck Head -o out.gltf                   each follows the one before it
  qlx chain rig.gltf --on Hip Spine Neck --set BRal=on dely=on dfrm=4 -o out.gltf
                                        the rotations, each four frames later
  qlx chain rig.gltf --on Hip Spine Neck --follow-first -o out.gltf         all follow the first

`--set` takes the controls of the dialog "Link of a chain" by their ids or labels, the same for every link.
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
  RunOnFile(inContext, run);
}

struct ChainOptions {
  CommandRun fRun;
  std::vector<std::string> fElements;
  std::vector<std::string> fSettings;
  bool fFollowsFirst = false;
};

void LayChain(CommandContext& inContext, const ChainOptions& inOptions) {
  CommandRun run = inOptions.fRun;
  run.fCommand = "chai";
  for (const std::string& element : inOptions.fElements) {
    run.fAnswers.insert(run.fAnswers.end(), {"abtn", "pick=" + element});
    run.fAnswers.insert(run.fAnswers.end(), inOptions.fSettings.begin(), inOptions.fSettings.end());
    run.fAnswers.emplace_back("ok");
  }
  if (inOptions.fFollowsFirst) {
    run.fAnswers.emplace_back("cgrp=on");
  }
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
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { EditKeys(inContext, *options); }; });
}

void AddChainCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("chain", "Lay a chain of links, and write the scene");
  const auto options = std::make_shared<ChainOptions>();
  command->footer(kChainExamples);
  AddSceneOptions(*command, options->fRun.fScene);
  command->add_option("--on", options->fElements, "The elements that get a link, in this order")
      ->required()
      ->type_name("NAME...");
  command->add_option("--set", options->fSettings, "Settings of the links")->type_name("ID=VALUE...");
  command->add_flag("--follow-first", options->fFollowsFirst,
                    "All follow the first element; without it, each the one before it");
  AddRunOptions(*command, options->fRun);
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { LayChain(inContext, *options); }; });
}

}  // namespace qlx::host
