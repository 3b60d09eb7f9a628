// Evaluation of scenes in which every element but one is linked to that one by the plug-in. The time of a link must
// stay level as scenes grow, and an evaluation that has run once before allocates nothing, on either side.
#include <benchmark/benchmark.h>

#include <string>

#include "CountedNew.h"
#include "MCMemoryStream.h"
#include "QLXModifierData.h"
#include "model/Scene.h"
#include "services/Host.h"

namespace qlx::bench {

namespace {

using host::Element;
using host::Host;
using host::PluginModifier;

constexpr int32 kFrame = 7500;  // ticks, at 24 a second

enum class LinkKind { kPlain, kFull, kObject, kNamed };

// The private data as a saved scene has it. References are the element's id, lowest byte first.
std::string TokensOf(uint32 inController) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string reference;
  for (int i = 0; i < 4; ++i) {
    const uint32 byte = (inController >> (8 * i)) & 0xFF;
    reference += {kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return "{ pset 1\ncpsl \"self,amet,TRAN,ROTA,RotX\"\nsobj \"" + reference + "\"\nbobj \"" + reference +
         "\"\ncpst 1\nspar \"self,amet,TRAN,ROTA,RotX\"\n}\n";
}

void SetUp(QLXModifierData& ioData, LinkKind inKind) {
  ioData.fAttributeMode = inKind != LinkKind::kObject;
  switch (inKind) {
    case LinkKind::kPlain:
      break;
    case LinkKind::kFull:
      ioData.fOscillateOn = ioData.fGrowOn = ioData.fDelayOn = ioData.fRangeOn = true;
      ioData.fLowerLimitOn = ioData.fUpperLimitOn = true;
      ioData.fDelayFrames = 5;
      ioData.fRangeMin = ioData.fLowerLimit = -100;
      ioData.fRangeMax = ioData.fUpperLimit = 100;
      break;
    case LinkKind::kObject:
      ioData.fMirrorTransform = ioData.fPositionAll = ioData.fRotationAll = ioData.fScaleUniform = true;
      break;
    case LinkKind::kNamed:
      ioData.fFindControllerByName = true;
      ioData.fControllerName = "Controller";
      break;
  }
}

void Link(Host& ioHost, Element& ioElement, Element& inController, LinkKind inKind) {
  const TMCCountedPtr<PluginModifier> link = ioHost.CreateModifier("fQLX"_id);
  const std::string tokens = TokensOf(inController.GetUniqueID());
  TMCMemoryStream stream(const_cast<char*>(tokens.c_str()), static_cast<int32>(tokens.size()), kStreamReadable);
  const auto exchanger = MCQuery<IExDataExchanger>(static_cast<I3DShModifier*>(link.Get()));
  if (!exchanger || link->GetStreamIO()->Read(&stream, nullptr, nullptr) != MC_S_OK) {
    throw host::UserError("a link", "cannot be made");
  }
  SetUp(*static_cast<QLXModifierData*>(exchanger->GetExtensionDataBuffer()), inKind);
  ioElement.AddModifier(*link, 0);
}

// The controller turns from frame 0 to frame 1000000.
void Fill(host::Scene& ioScene, Host& ioHost, int64 inCount, LinkKind inKind) {
  Element& controller = ioScene.AddElement(ioScene.GetRootElement(), "Controller");
  host::Curve& curve = controller.GetOrMakeCurve(host::Channel::kRotationX);
  curve.SetKey({.fTime = 0, .fValue = 0});
  curve.SetKey({.fTime = 2000000000, .fValue = 1000});
  ioScene.SetTimeRange(0, 2000000000);
  for (int64 i = 0; i < inCount; ++i) {
    Link(ioHost, ioScene.AddElement(ioScene.GetRootElement(), "Follower"), controller, inKind);
  }
}

void EvaluateLinks(benchmark::State& ioState, LinkKind inKind) {
  host::Diagnostics diagnostics;
  Host host(diagnostics);
  host.LoadPlugin(QLX_PLUGIN_FILE);
  const TMCCountedPtr<host::Scene> scene = host::Scene::Create(diagnostics);
  Fill(*scene, host, ioState.range(0), inKind);
  int32 time = 0;
  for (int32 i = 0; i < 10; ++i, time += kFrame) {
    scene->Evaluate(time);  // the first ones make room for lists, and let delays fill
  }
  const uint64 newsBefore = GetNewCount();
  const uint64 blocksBefore = host.GetMemoryCounts().fAllocations;
  for (auto _ : ioState) {
    scene->Evaluate(time);
    time += kFrame;
    if (time > 1999000000) {
      time = 0;
    }
  }
  const uint64 allocations = GetNewCount() - newsBefore + host.GetMemoryCounts().fAllocations - blocksBefore;
  // The harness itself may allocate between two rounds, once or twice in all; an evaluation that does shows thousands.
  ioState.counters["allocations"] = static_cast<real64>(allocations) / static_cast<real64>(ioState.iterations());
  ioState.counters["a_link"] =
      benchmark::Counter(static_cast<real64>(ioState.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  scene->Close();
}

void LinkCounts(benchmark::internal::Benchmark* inBenchmark) {
  inBenchmark->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMillisecond);
}

}  // namespace

BENCHMARK_CAPTURE(EvaluateLinks, Plain, LinkKind::kPlain)->Apply(LinkCounts);
BENCHMARK_CAPTURE(EvaluateLinks, Full, LinkKind::kFull)->Apply(LinkCounts);
BENCHMARK_CAPTURE(EvaluateLinks, Object, LinkKind::kObject)->Apply(LinkCounts);
BENCHMARK_CAPTURE(EvaluateLinks, Named, LinkKind::kNamed)->Apply(LinkCounts);

}  // namespace qlx::bench
