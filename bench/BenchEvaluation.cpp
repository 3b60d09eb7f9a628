// Evaluation of scenes whose every element is pinned by the plug-in. The time of an element must stay level as scenes
// grow, and an evaluation that has run once before allocates nothing, on either side.
#include <benchmark/benchmark.h>

#include <array>

#include "CountedNew.h"
#include "model/Scene.h"
#include "services/Host.h"

namespace qlx::bench {

namespace {

using host::Element;
using host::Host;
using host::PluginModifier;

enum class Shape { kWide, kChains };

void Set(PluginModifier& ioModifier, const char* inField, const host::ParameterValue& inValue) {
  const host::ParameterField* const field = ioModifier.GetParameterMap()->Find(inField);
  if (field == nullptr || !ioModifier.SetField(*field, inValue)) {
    throw host::UserError(inField, "cannot be set");
  }
}

void Pin(Host& ioHost, Element& ioElement, bool inGlobal) {
  const TMCCountedPtr<PluginModifier> pin = ioHost.CreateModifier("fPIN"_id);
  Set(*pin, "fPositionSet", true);
  Set(*pin, "fActive", true);
  Set(*pin, "fGlobal", inGlobal);
  Set(*pin, "fPosition", std::array<real32, 3>{1, 2, 3});
  ioElement.AddModifier(*pin, 0);
}

// Elements turned and moved, all under the root or in chains of ten.
void Fill(host::Scene& ioScene, Host& ioHost, int64 inCount, Shape inShape, bool inGlobal) {
  constexpr int64 kChainLength = 10;
  Element* last = &ioScene.GetRootElement();
  for (int64 i = 0; i < inCount; ++i) {
    const bool isTop = inShape == Shape::kWide || i % kChainLength == 0;
    last = &ioScene.AddElement(isTop ? ioScene.GetRootElement() : *last, "Element");
    last->SetBase({{static_cast<real32>(i % 7), 2, 3, 0.1f, 0.2f, 0.3f, 1, 1, 1, 1}});
    Pin(ioHost, *last, inGlobal);
  }
}

void EvaluatePinned(benchmark::State& ioState, Shape inShape, bool inGlobal) {
  host::Diagnostics diagnostics;
  Host host(diagnostics);
  host.LoadPlugin(QLX_PLUGIN_FILE);
  const TMCCountedPtr<host::Scene> scene = host::Scene::Create(diagnostics);
  Fill(*scene, host, ioState.range(0), inShape, inGlobal);
  int32 time = 0;
  scene->Evaluate(time);  // the first one makes room for its lists
  scene->Evaluate(++time);
  const uint64 newsBefore = GetNewCount();
  const uint64 blocksBefore = host.GetMemoryCounts().fAllocations;
  for (auto _ : ioState) {
    scene->Evaluate(++time);
  }
  const uint64 allocations = GetNewCount() - newsBefore + host.GetMemoryCounts().fAllocations - blocksBefore;
  // The harness itself may allocate between two rounds, once or twice in all; an evaluation that does shows thousands.
  ioState.counters["allocations"] = static_cast<real64>(allocations) / static_cast<real64>(ioState.iterations());
  ioState.counters["an_element"] =
      benchmark::Counter(static_cast<real64>(ioState.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  scene->Close();
}

void Sizes(benchmark::internal::Benchmark* inBenchmark) {
  inBenchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

}  // namespace

BENCHMARK_CAPTURE(EvaluatePinned, WideLocal, Shape::kWide, false)->Apply(Sizes);
BENCHMARK_CAPTURE(EvaluatePinned, WideGlobal, Shape::kWide, true)->Apply(Sizes);
BENCHMARK_CAPTURE(EvaluatePinned, ChainsGlobal, Shape::kChains, true)->Apply(Sizes);

}  // namespace qlx::bench
