// `qlx get` and `qlx set`: one value of a scene by its text path.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstddef>
#include <limits>

#include "Command.h"
#include "JsonText.h"
#include "OutputFile.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/ClosestNames.h"
#include "model/IDText.h"
#include "model/ParameterRows.h"

namespace qlx::host {

namespace {

const char* const kGetExamples = R"(Examples:
  qlx get arm.gltf --element Hand --path self,amet,TRAN,OFFS,YCOO
  qlx get arm.gltf --element Hand --path shdr,0000,BCol,redV --frame 12

Without a frame it is the base value, which shows where there are no keys; at a frame it is what keys and base value
give, without modifiers. Paths are those of `qlx tree --params`; lengths are inches, angles radians.
)";

const char* const kSetExamples = R"(Examples:
  qlx set arm.gltf --element Hand --path self,amet,TRAN,OFFS,YCOO 12.5 -o changed.gltf
  qlx set arm.gltf --element Hand --path shdr,0000,BCol 1 0.5 0 1 --frame 12 -o changed.gltf
  qlx set arm.gltf --element Hand --path shdr,0000,BCol,redV 0 -o changed.gltf

Without a frame it sets the base value and leaves keys alone; at a frame it sets a key. A colour takes four numbers, or
one where the path names one of them; a truth value takes true or false. Everything else is written as it was read.
)";

struct ValueOptions {
  SceneOptions fScene;
  std::string fElement;
  std::string fPath;
  std::optional<int32> fFrame;
  std::vector<std::string> fValues;
  std::string fOutput;
  bool fJson = false;
};

using ValueBytes = std::array<uint8, ParamType::kMaxSize>;

FoundParameter Find(const Scene& inScene, const ValueOptions& inOptions) {
  FoundParameter found = FindParameter(NeedElement(inScene, inOptions.fElement, "--element"), inOptions.fPath);
  if (!found.fParameter) {
    throw UserError("--path", fmt::format("\"{}\" leads to no parameter of \"{}\" (see: qlx tree --params)",
                                          inOptions.fPath, inOptions.fElement));
  }
  return found;
}

AnimatedValue& ValueOf(const FoundParameter& inFound) {
  return *inFound.fParameter->GetValueAccess()->AsAnimated();
}

ValueNumbers Read(const AnimatedValue& inValue, std::optional<int32> inTime) {
  alignas(std::max_align_t) ValueBytes bytes{};
  if (inTime) {
    inValue.SampleAt(*inTime, bytes.data());
  } else {
    inValue.ReadBase(bytes.data());
  }
  return SplitValue(inValue.GetType(), bytes.data());
}

real32 NumberOf(const std::string& inText, MCID inType) {
  if (inType == "bool"_id) {
    if (inText != "true" && inText != "false") {
      throw UserError("VALUE", fmt::format("\"{}\" is neither true nor false", inText));
    }
    return inText == "true" ? 1.0f : 0.0f;
  }
  real64 number = 0;
  const char* const end = inText.data() + inText.size();
  const auto [rest, error] = std::from_chars(inText.data(), end, number);
  constexpr real64 kLargest = static_cast<real64>(std::numeric_limits<real32>::max());
  if (error != std::errc() || rest != end || !(number >= -kLargest && number <= kLargest)) {
    throw UserError("VALUE", fmt::format("\"{}\" is not a number that a value can have", inText));
  }
  return static_cast<real32>(number);
}

// The present numbers, with those that the path names replaced.
ValueNumbers Replace(ValueNumbers inPresent, const FoundParameter& inFound, const std::vector<std::string>& inTexts) {
  if (inTexts.size() != inFound.GetCount()) {
    throw UserError("VALUE",
                    fmt::format("the path takes {}, not {}", Counted(inFound.GetCount(), "number"), inTexts.size()));
  }
  for (std::size_t i = 0; i < inTexts.size(); ++i) {
    inPresent[inFound.GetFirst() + i] = NumberOf(inTexts[i], inFound.fParameter->GetDataType());
  }
  return inPresent;
}

void SetKey(AnimatedValue& ioValue, int32 inTime, const ValueNumbers& inNumbers) {
  ioValue.EditCurves(
      [&](Curve& curve, uint32 number) { curve.SetKey({.fTime = inTime, .fValue = inNumbers[number]}); });
}

void SetBase(AnimatedValue& ioValue, const ValueNumbers& inNumbers) {
  alignas(std::max_align_t) ValueBytes bytes{};
  JoinValue(ioValue.GetType(), inNumbers, bytes.data());
  ioValue.WriteBase(bytes.data());
}

Json AsJson(const ValueOptions& inOptions, const FoundParameter& inFound, const ValueNumbers& inNumbers) {
  const AnimatedValue& value = ValueOf(inFound);
  Json numbers = Json::array();
  for (uint32 i = 0; i < inFound.GetCount(); ++i) {
    const real32 number = inNumbers[inFound.GetFirst() + i];
    numbers.push_back(value.GetType() == "bool"_id ? Json(number >= 0.5f) : ShortNumber(number));
  }
  return {{"element", inOptions.fElement},
          {"path", inOptions.fPath},
          {"name", inFound.fParameter->GetParamName().CStr()},
          {"type", TextFromID(value.GetType())},
          {"frame", inOptions.fFrame ? Json(*inOptions.fFrame) : Json()},
          {"animated", value.HasKeys()},
          {"value", numbers.size() == 1 ? numbers[0] : numbers}};
}

std::string AsText(const FoundParameter& inFound, const ValueNumbers& inNumbers) {
  return TextOfNumbers(inFound.fParameter->GetDataType(), inNumbers, inFound.fNumber);
}

std::optional<int32> TimeFor(Scene& ioScene, const ValueOptions& inOptions) {
  return inOptions.fFrame ? std::optional(TimeOfFrame(ioScene, *inOptions.fFrame, "--frame")) : std::nullopt;
}

void Get(CommandContext& inContext, const ValueOptions& inOptions) {
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  const FoundParameter found = Find(document->GetScene(), inOptions);
  const ValueNumbers numbers = Read(ValueOf(found), TimeFor(document->GetScene(), inOptions));
  session.ShowWarnings();
  inContext.fConsole.fOut << (inOptions.fJson ? JsonText(AsJson(inOptions, found, numbers))
                                              : AsText(found, numbers) + "\n");
}

void Set(CommandContext& inContext, const ValueOptions& inOptions) {
  CheckOutputPlace(PathOfText(inOptions.fOutput));
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  const FoundParameter found = Find(document->GetScene(), inOptions);
  const std::optional<int32> time = TimeFor(document->GetScene(), inOptions);
  AnimatedValue& value = ValueOf(found);
  const ValueNumbers before = Read(value, time);
  const ValueNumbers after = Replace(before, found, inOptions.fValues);
  const bool hadKeys = value.HasKeys();
  if (time) {
    SetKey(value, *time, after);
  } else {
    SetBase(value, after);
  }
  document->Write(PathOfText(inOptions.fOutput));
  session.ShowWarnings();
  inContext.fConsole.fOut << fmt::format(
      "{}: {} of {} is {}{}, it was {}{}\n", inOptions.fOutput, Printable(found.fParameter->GetParamName().CStr()),
      Printable(inOptions.fElement), AsText(found, after),
      inOptions.fFrame ? fmt::format(" on frame {}", *inOptions.fFrame) : std::string(), AsText(found, before),
      hadKeys && !time ? "; keys show instead of it" : "");
}

void AddPlaceOptions(CLI::App& ioCommand, ValueOptions& ioOptions) {
  AddSceneOptions(ioCommand, ioOptions.fScene);
  ioCommand.add_option("--element", ioOptions.fElement, "The element that has the value, or shows what has it")
      ->required()
      ->type_name("NAME");
  ioCommand.add_option("--path", ioOptions.fPath, "The text path of the value, as `qlx tree --params` prints it")
      ->required()
      ->type_name("PATH");
}

}  // namespace

void AddGetCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("get", "Print one value of a scene");
  const auto options = std::make_shared<ValueOptions>();
  command->footer(kGetExamples);
  AddPlaceOptions(*command, *options);
  command->add_option("--frame", options->fFrame, "The value at a frame; without it, the base value")
      ->type_name("FRAME");
  command->add_flag("--json", options->fJson, "Print it as JSON");
  AddLibraryOption(*command, inContext);
  command->callback([options, &inContext] { inContext.fAction = [options, &inContext] { Get(inContext, *options); }; });
}

void AddSetCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command = inProgram.add_subcommand("set", "Write a scene with one value changed");
  const auto options = std::make_shared<ValueOptions>();
  command->footer(kSetExamples);
  AddPlaceOptions(*command, *options);
  command->add_option("VALUE", options->fValues, "The new numbers, or true or false")->required()->type_name("");
  command->add_option("-o,--output", options->fOutput, "The scene to write, .gltf or .glb")
      ->required()
      ->type_name("FILE");
  command->add_option("--frame", options->fFrame, "Set a key at a frame; without it, the base value")
      ->type_name("FRAME");
  AddLibraryOption(*command, inContext);
  command->callback([options, &inContext] { inContext.fAction = [options, &inContext] { Set(inContext, *options); }; });
}

}  // namespace qlx::host
