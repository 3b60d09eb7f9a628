// Commands of the plug-in's menu, run through the host as a person runs them: those for keys, and the chain.
//
// The time of a key, and of a link, must stay level as scenes grow, and no key may cost an allocation: what a run
// allocates is for its dialog, its time lines and the list of times.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <chrono>

#include "CountedNew.h"
#include "model/KeySelection.h"
#include "model/Scene.h"
#include "services/Host.h"
#include "services/SceneCommand.h"
#include "services/UserInterface.h"
#include "ui/Hand.h"

namespace qlx::bench {

namespace {

constexpr int32 kKeyTicks = 20000;  // no whole frames: a key that moves comes to the place of no other
// Of one element.
constexpr int64 kTracks = static_cast<int64>(host::kChannelCount);

// Takes the selected elements alone, and agrees to all.
class SelectingPerson final : public host::CancellingPerson {
 public:
  using CancellingPerson::CancellingPerson;
  bool RunDialog(host::Form& ioDialog) override {
    if (ioDialog.Find("selo"_id) != nullptr) {
      host::Hand(ioDialog).Set("selo", "on");
    }
    return true;
  }
};

// A host with the plug-in and a scene, for commands.
struct CommandStage {
  explicit CommandStage(host::Person& ioPerson) {
    fHost.LoadPlugin(QLX_PLUGIN_FILE);
    fHost.GetUser().SetPerson(&ioPerson);
  }
  ~CommandStage() {
    fHost.GetUser().SetPerson(nullptr);
    fScene->Close();
  }
  uint64 CountAllocations() const { return GetNewCount() + fHost.GetMemoryCounts().fAllocations; }
  void Run(MCID inCommand) {
    const host::ExtensionRecord* const command = fHost.GetCatalog()->FindClass("scmd"_id, inCommand);
    if (!command || !host::SceneCommand(fHost, *fScene, *command).Run()) {
      throw host::UserError("the command", "was not done");
    }
  }

  host::Diagnostics fDiagnostics;
  host::Host fHost{fDiagnostics};
  TMCCountedPtr<host::Scene> fScene = host::Scene::Create(fDiagnostics);
};

// Elements with keys in all their channels, selected.
class KeyStage {
 public:
  KeyStage(int64 inTimeLines, int64 inKeys) : fTimeLines(inTimeLines), fKeys(inKeys) {
    std::vector<host::Element*> elements;
    for (int64 i = 0; i < fTimeLines / kTracks; ++i) {
      elements.push_back(&fStage.fScene->AddElement(fStage.fScene->GetRootElement(), "Element"));
    }
    fStage.fScene->Select(elements);
  }
  int64 GetKeyCount() const { return fTimeLines * fKeys; }
  // Key `i` has the value `i / inRun`; all are marked.
  void SetKeys(int64 inRun) {
    for (host::Element* const element : fStage.fScene->GetSelection()) {
      for (const host::ChannelInfo& info : host::kChannels) {
        host::Curve& curve = element->GetOrMakeCurve(info.fChannel);
        curve.Clear();
        curve.Reserve(static_cast<std::size_t>(fKeys));
        for (int64 i = 0; i < fKeys; ++i) {
          const int64 run = i / inRun;
          curve.SetKey(
              {.fTime = static_cast<int32>(i) * kKeyTicks, .fValue = static_cast<real32>(run), .fSelected = true});
        }
      }
    }
  }
  // Runs the command once, and tells how long it took, and what it allocated, for each key.
  void Measure(benchmark::State& ioState, MCID inCommand) {
    const uint64 before = fStage.CountAllocations();
    const auto start = std::chrono::steady_clock::now();
    fStage.Run(inCommand);
    ioState.SetIterationTime(std::chrono::duration<real64>(std::chrono::steady_clock::now() - start).count());
    ioState.counters["a_key"] =
        benchmark::Counter(static_cast<real64>(GetKeyCount()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    ioState.counters["allocations_a_key"] =
        static_cast<real64>(fStage.CountAllocations() - before) / static_cast<real64>(GetKeyCount());
  }

 private:
  host::Diagnostics fDiagnostics;
  SelectingPerson fPerson{fDiagnostics};
  CommandStage fStage{fPerson};
  int64 fTimeLines;
  int64 fKeys;
};

// Keys are set anew for each run, and timed is the command alone. Equal values come in runs of `inRun`.
void EditKeys(benchmark::State& ioState, MCID inCommand, int64 inRun) {
  KeyStage stage(ioState.range(0), ioState.range(1));
  for (auto _ : ioState) {
    stage.SetKeys(inRun);
    stage.Measure(ioState, inCommand);
  }
  ioState.SetItemsProcessed(ioState.iterations() * stage.GetKeyCount());
}

void KeyCounts(benchmark::internal::Benchmark* inBenchmark) {
  inBenchmark->Args({100, 1000})->Args({100, 10000})->Args({10, 100000})->Args({1000, 10000});
  inBenchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}

// Adds one element to the chain, and then all below it.
class ChainPerson final : public host::CancellingPerson {
 public:
  using CancellingPerson::CancellingPerson;
  bool RunDialog(host::Form& ioDialog) override {
    if (ioDialog.Find("clst"_id) != nullptr) {
      const host::Hand hand(ioDialog);
      hand.Press("abtn");
      hand.Choose("clst", "#0");
      hand.Press("achb");
    }
    return true;
  }
  host::Element* ChooseElement(const std::string& /*inTitle*/, const std::string& /*inPrompt*/,
                               const std::vector<host::Element*>& /*inCandidates*/) override {
    return fFirst;
  }

  host::Element* fFirst = nullptr;
};

// A figure's bones: spines of twenty.
void LayChain(benchmark::State& ioState) {
  constexpr int64 kSpine = 20;
  host::Diagnostics diagnostics;
  ChainPerson person(diagnostics);
  for (auto _ : ioState) {
    CommandStage stage(person);
    host::Element& root = stage.fScene->AddElement(stage.fScene->GetRootElement(), "Root");
    host::Element* above = &root;
    for (int64 i = 0; i < ioState.range(0); ++i) {
      above = &stage.fScene->AddElement(i % kSpine == 0 ? root : *above, fmt::format("Bone{}", i));
    }
    person.fFirst = &root;
    const auto start = std::chrono::steady_clock::now();
    stage.Run("chai"_id);
    ioState.SetIterationTime(std::chrono::duration<real64>(std::chrono::steady_clock::now() - start).count());
    if (above->GetModifiers().size() != 1) {
      ioState.SkipWithError("a bone has no link");
      break;
    }
  }
  ioState.counters["a_link"] =
      benchmark::Counter(static_cast<real64>(ioState.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK_CAPTURE(EditKeys, Delete, "dkey"_id, 1)->Apply(KeyCounts);
BENCHMARK_CAPTURE(EditKeys, DedupeNone, "rdup"_id, 1)->Apply(KeyCounts);
BENCHMARK_CAPTURE(EditKeys, DedupeThird, "rdup"_id, 3)->Apply(KeyCounts);
BENCHMARK_CAPTURE(EditKeys, DedupeAll, "rdup"_id, 1000000)->Apply(KeyCounts);
BENCHMARK_CAPTURE(EditKeys, Wiggle, "wigl"_id, 1)->Apply(KeyCounts);
BENCHMARK(LayChain)->Arg(1000)->Arg(5000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace qlx::bench
