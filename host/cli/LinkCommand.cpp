// `qlx link`: a scene with one link more, made by the panel of a link.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <sstream>

#include "Command.h"
#include "LinkMaker.h"
#include "ModifierChoice.h"
#include "OutputFile.h"
#include "Session.h"
#include "Text.h"
#include "gltf/GltfFiles.h"
#include "model/ClosestNames.h"

namespace qlx::host {

namespace {

const char* const kLinkExamples = R"(Examples:
  qlx link cart.gltf --target "FrontLeftWheel:self,amet,TRAN,ROTA,RotZ" \
      --controller "Cart:self,amet,TRAN,OFFS,GlbX" --modify "divide -9.84252" -o rolling.gltf
  qlx link arm.gltf --target "Hand:Rotation Z" --controller "Arm:Rotation Z" --combine add --delay 5 -o out.gltf
  qlx link door.gltf --target "Door:Rotation Y" --modify "set 40 degrees" --oscillate "cosine speed 0.13" \
      --decay linear --window 24..96 --limits "0..40 degrees" -o swinging.gltf

A value is an element's name, a colon, and a path as `qlx tree --params` prints it, or the label beside it.
  --modify     add, subtract, multiply, divide or set, a number, and a unit: cm, in, ft, m, degrees, radians, percent
  --oscillate  sine or cosine; then any of: speed, phase (radians), size, from, to, each with a number
  --decay, --grow  linear, quadratic, cubic, linear+quadratic or linear+quadratic+cubic; then: from, to
  --window, --range, --limits  A..B; a window or limits may have one side: A.. or ..B
The link stands last on the target's element. `docs/links.md` says what links do, step by step.
)";

struct LinkOptions {
  SceneOptions fScene;
  std::string fTarget;
  std::string fController;
  std::string fCombine;
  std::string fModify;
  std::string fDelay;
  std::string fRange;
  std::string fLimits;
  std::string fWindow;
  std::string fOscillate;
  std::string fDecay;
  std::string fGrow;
  std::string fName;
  bool fIsRelative = false;
  bool fIsByName = false;
  std::string fOutput;
};

struct WordControl {
  const char* fWord;
  const char* fControl;
};

constexpr WordControl kCombineWords[] = {{"replace", "cset"},  {"self", "ccst"},     {"add", "cadd"},
                                         {"subtract", "csub"}, {"multiply", "cmul"}, {"divide", "cdiv"}};
constexpr WordControl kModifyWords[] = {
    {"add", "madd"}, {"subtract", "msub"}, {"multiply", "mmul"}, {"divide", "mdiv"}, {"set", "mcst"}};
constexpr WordControl kWaveWords[] = {{"sine", "osin"}, {"cosine", "ocos"}, {"speed", "ospd"}, {"phase", "opho"},
                                      {"size", "osca"}, {"from", "omin"},   {"to", "omax"}};
constexpr WordControl kDecayWords[] = {{"linear", "dlin"},
                                       {"quadratic", "dqut"},
                                       {"cubic", "dcut"},
                                       {"linear+quadratic", "dqua"},
                                       {"linear+quadratic+cubic", "dcub"},
                                       {"from", "dmax"},
                                       {"to", "dmin"}};
constexpr WordControl kGrowWords[] = {{"linear", "glin"},
                                      {"quadratic", "gqut"},
                                      {"cubic", "gcut"},
                                      {"linear+quadratic", "gqua"},
                                      {"linear+quadratic+cubic", "gcub"},
                                      {"from", "gmin"},
                                      {"to", "gmax"}};

template <std::size_t kCount>
const char* FindWord(const WordControl (&inWords)[kCount], const std::string& inWord, const char* inOption) {
  std::vector<std::string> words;
  std::string all;
  for (const WordControl& row : inWords) {
    if (inWord == row.fWord) {
      return row.fControl;
    }
    words.emplace_back(row.fWord);
    all += (all.empty() ? "" : ", ") + words.back();
  }
  throw UserError(inOption, fmt::format("\"{}\" is none of: {}", inWord, all));
}

std::vector<std::string> WordsOf(const std::string& inText) {
  std::istringstream stream(inText);
  return {std::istream_iterator<std::string>(stream), {}};
}

// "A..B"; a side that is not there is empty.
struct Span {
  std::string fFrom;
  std::string fTo;
};

Span SpanOf(const std::string& inText, const char* inOption, bool inNeedsBoth) {
  const std::size_t dots = inText.find("..");
  if (dots == std::string::npos) {
    throw UserError(inOption, fmt::format("\"{}\" is no range, as in 0..1", inText));
  }
  Span span{inText.substr(0, dots), inText.substr(dots + 2)};
  if (inNeedsBoth ? span.fFrom.empty() || span.fTo.empty() : span.fFrom.empty() && span.fTo.empty()) {
    throw UserError(inOption, fmt::format("\"{}\" lacks {}", inText, inNeedsBoth ? "a side" : "both sides"));
  }
  return span;
}

// "NAME:PATH"; names may have colons in them, paths have none.
struct ValueName {
  std::string fElement;
  std::string fPath;
};

ValueName ValueNameOf(const std::string& inText, const char* inOption) {
  const std::size_t colon = inText.rfind(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 == inText.size()) {
    throw UserError(inOption, fmt::format("\"{}\" is not NAME:PATH, as in \"Hand:self,amet,TRAN,ROTA,RotX\"", inText));
  }
  return {inText.substr(0, colon), inText.substr(colon + 1)};
}

// Presses what the options ask for, in the order of the panel's pages.
class LinkBuilder {
 public:
  LinkBuilder(const LinkOptions& inOptions, Host& inHost, Scene& ioScene, PluginModifier& ioLink)
      : fOptions(inOptions), fScene(ioScene), fMaker(inHost, ioLink) {}

  void Build() {
    if (!fOptions.fName.empty()) {
      fMaker.Set("--name", "name", fOptions.fName);
    }
    fMaker.Set("--target", "attr", "on");
    fMaker.PickValue("--target", "slsp", ValueNameOf(fOptions.fTarget, "--target").fPath);
    SetController();
    if (!fOptions.fCombine.empty()) {
      fMaker.Press("--combine", FindWord(kCombineWords, fOptions.fCombine, "--combine"));
    }
    SetModify();
    SetTime();
    SetSpan("--range", fOptions.fRange, {"CLim", "CMin", "CLim", "CMax"}, true);
    SetLimits();
    SetCurves();
    if (fOptions.fIsRelative) {
      fMaker.Press("--relative", "vrel");
    }
  }

 private:
  void SetController() {
    if (fOptions.fController.empty()) {
      return;
    }
    const ValueName name = ValueNameOf(fOptions.fController, "--controller");
    fMaker.PickElement("--controller", "slso", NeedElement(fScene, name.fElement, "--controller"));
    fMaker.PickValue("--controller", "slcp", name.fPath);
    if (fOptions.fIsByName) {
      fMaker.Set("--by-name", "fcnm", "on");
    }
  }

  void SetModify() {
    if (fOptions.fModify.empty()) {
      return;
    }
    const std::vector<std::string> words = WordsOf(fOptions.fModify);
    if (words.size() < 2 || words.size() > 3) {
      throw UserError("--modify",
                      fmt::format("\"{}\" is not an operation, a number and perhaps a unit", fOptions.fModify));
    }
    fMaker.Press("--modify", FindWord(kModifyWords, words[0], "--modify"));
    fMaker.Set("--modify", "mval", words[1]);
    if (words.size() == 3) {
      fMaker.Set("--modify", "unit", words[2]);
    }
  }

  void SetTime() {
    SetSpan("--window", fOptions.fWindow, {"ltst", "lsvl", "coff", "covl"}, false);
    if (!fOptions.fDelay.empty()) {
      fMaker.Set("--delay", "dely", "on");
      fMaker.Set("--delay", "dfrm", fOptions.fDelay);
    }
  }

  struct SpanControls {
    const char* fFromSwitch;
    const char* fFrom;
    const char* fToSwitch;
    const char* fTo;
  };

  void SetSpan(const char* inOption, const std::string& inText, const SpanControls& inControls, bool inNeedsBoth) {
    if (inText.empty()) {
      return;
    }
    const Span span = SpanOf(inText, inOption, inNeedsBoth);
    if (!span.fFrom.empty()) {
      fMaker.Set(inOption, inControls.fFromSwitch, "on");
      fMaker.Set(inOption, inControls.fFrom, span.fFrom);
    }
    if (!span.fTo.empty()) {
      fMaker.Set(inOption, inControls.fToSwitch, "on");
      fMaker.Set(inOption, inControls.fTo, span.fTo);
    }
  }

  void SetLimits() {
    const std::vector<std::string> words = WordsOf(fOptions.fLimits);
    if (words.size() > 2) {
      throw UserError("--limits", fmt::format("\"{}\" is not a range and perhaps a unit", fOptions.fLimits));
    }
    SetSpan("--limits", words.empty() ? "" : words[0], {"LMin", "MinL", "LMax", "MaxL"}, false);
    if (words.size() == 2) {
      fMaker.Set("--limits", "UnLm", words[1]);
    }
  }

  void SetCurves() {
    SetCurve("--oscillate", fOptions.fOscillate, {"oscl", "sosc"}, kWaveWords, 2);
    SetCurve("--decay", fOptions.fDecay, {"decy", "sdcy"}, kDecayWords, 5);
    SetCurve("--grow", fOptions.fGrow, {"grow", "sgrw"}, kGrowWords, 5);
  }

  struct CurveControls {
    const char* fSwitch;
    const char* fButton;
  };

  // The first `inShapes` words are shapes; each of the others has a number behind it.
  template <std::size_t kCount>
  void SetCurve(const char* inOption, const std::string& inText, const CurveControls& inControls,
                const WordControl (&inWords)[kCount], std::size_t inShapes) {
    const std::vector<std::string> words = WordsOf(inText);
    if (words.empty()) {
      return;
    }
    std::vector<LinkMaker::Entry> entries;
    for (std::size_t i = 0; i < words.size(); ++i) {
      const char* const control = FindWord(inWords, words[i], inOption);
      const bool isShape =
          std::any_of(inWords, inWords + inShapes, [&](const WordControl& row) { return row.fControl == control; });
      if (!isShape && i + 1 == words.size()) {
        throw UserError(inOption, fmt::format("\"{}\" needs a number behind it", words[i]));
      }
      entries.push_back({control, isShape ? "" : words[++i]});
    }
    fMaker.Set(inOption, inControls.fSwitch, "on");
    fMaker.FillDialog(inOption, inControls.fButton, entries);
  }

  const LinkOptions& fOptions;
  Scene& fScene;
  LinkMaker fMaker;
};

void MakeLink(CommandContext& inContext, const LinkOptions& inOptions) {
  CheckOutputPlace(PathOfText(inOptions.fOutput));
  Session session(inContext);
  const std::unique_ptr<GltfDocument> document = session.Open(inOptions.fScene);
  Scene& scene = document->GetScene();
  const ValueName target = ValueNameOf(inOptions.fTarget, "--target");
  Element& element = NeedElement(scene, target.fElement, "--target");
  PluginModifier& link = AddModifierTo(session.GetHost(), element, "qlx", "--target");
  LinkBuilder(inOptions, session.GetHost(), scene, link).Build();
  document->Write(PathOfText(inOptions.fOutput));
  session.ShowWarnings();
  inContext.fConsole.fOut << fmt::format(
      "{}: {} follows {}, by modifier {} of {}\n", inOptions.fOutput, Printable(inOptions.fTarget),
      inOptions.fController.empty() ? "no controller" : Printable(inOptions.fController),
      element.GetModifiers().size() - 1, Printable(target.fElement));
}

void AddLinkOptions(CLI::App& ioCommand, LinkOptions& ioOptions) {
  AddSceneOptions(ioCommand, ioOptions.fScene);
  const auto add = [&](const char* inName, std::string& outValue, const char* inHelp, const char* inType) {
    return ioCommand.add_option(inName, outValue, inHelp)->type_name(inType);
  };
  add("--target", ioOptions.fTarget, "The value that is changed", "NAME:PATH")->required();
  add("--controller", ioOptions.fController, "The value that it follows", "NAME:PATH");
  add("--combine", ioOptions.fCombine, "replace, self, add, subtract, multiply or divide", "WHICH");
  add("--modify", ioOptions.fModify, "Arithmetic on what was read", "\"OP NUMBER [UNIT]\"");
  add("--window", ioOptions.fWindow, "The frames on which it works", "A..B");
  add("--delay", ioOptions.fDelay, "Whole frames between the two", "FRAMES");
  add("--range", ioOptions.fRange, "Bounds of the mapped value", "A..B");
  add("--limits", ioOptions.fLimits, "Bounds of the target", "\"A..B [UNIT]\"");
  add("--oscillate", ioOptions.fOscillate, "Multiplies the value by a wave", "WAVE");
  add("--decay", ioOptions.fDecay, "Fades the value over the window", "CURVE");
  add("--grow", ioOptions.fGrow, "Lets the value set in over the window", "CURVE");
  add("--name", ioOptions.fName, "The link's name", "TEXT");
  ioCommand.add_flag("--relative", ioOptions.fIsRelative, "Follow the change since the window's start");
  ioCommand.add_flag("--by-name", ioOptions.fIsByName, "Find the controller by its name, not by reference");
  add("-o,--output", ioOptions.fOutput, "The scene to write, .gltf or .glb", "FILE")->required();
}

}  // namespace

void AddLinkCommand(CLI::App& inProgram, CommandContext& inContext) {
  CLI::App* const command =
      inProgram.add_subcommand("link", "Write a scene with one link more: a value follows another");
  const auto options = std::make_shared<LinkOptions>();
  command->footer(kLinkExamples);
  AddLinkOptions(*command, *options);
  AddLibraryOption(*command, inContext);
  command->callback(
      [options, &inContext] { inContext.fAction = [options, &inContext] { MakeLink(inContext, *options); }; });
}

}  // namespace qlx::host
