// Naming parameters: text paths resolved and built, attribute paths found and compared. Resolving from an element must
// not depend on the size of its scene.
#include <benchmark/benchmark.h>

#include "AttributePathRecorder.h"
#include "CountedNew.h"
#include "PlainMemory.h"
#include "TextPathRows.h"
#include "model/Scene.h"

namespace qlx::bench {
namespace {

class BenchScene {
 public:
  explicit BenchScene(int64 inCount) : fScene(host::Scene::Create(fDiagnostics)) {
    for (int64 i = 0; i < inCount; ++i) {
      fLast = &fScene->AddElement(fScene->GetRootElement(), "Element");
    }
  }
  ~BenchScene() { fScene->Close(); }
  BenchScene(const BenchScene&) = delete;
  BenchScene& operator=(const BenchScene&) = delete;

  TreeElement* Root() { return &fScene->GetRootElement(); }
  TreeElement* Last() { return fLast; }
  host::Scene& operator*() { return *fScene; }

 private:
  PlainMemory fMemory;
  host::Diagnostics fDiagnostics;
  TMCCountedPtr<host::Scene> fScene;
  host::Element* fLast = nullptr;
};

void ResolveSelf(benchmark::State& ioState) {
  BenchScene scene(ioState.range(0));
  const TMCString1023 path("self,amet,TRAN,ROTA,RotX");
  const uint64 before = GetNewCount();
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(ResolveTextPath(scene.Last(), path).Get());
  }
  ioState.counters["allocations"] =
      static_cast<real64>(GetNewCount() - before) / static_cast<real64>(ioState.iterations());
}
BENCHMARK(ResolveSelf)->Arg(10)->Arg(10000);

class CountRows final : public TextPathVisitor {
 public:
  void VisitRow(const TextPathRow& inRow) override {
    benchmark::DoNotOptimize(inRow.fPath.CStr());
    ++fCount;
  }
  int64 fCount = 0;
};

void BuildRows(benchmark::State& ioState) {
  BenchScene scene(ioState.range(0));
  CountRows rows;
  for (auto _ : ioState) {
    for (host::Element* element : (*scene).GetTreeOrder()) {
      BuildSelfRows(static_cast<TreeElement*>(element), TextPathFilter::kAll, rows);
    }
  }
  ioState.SetItemsProcessed(rows.fCount);
}
BENCHMARK(BuildRows)->Arg(10000)->Unit(benchmark::kMillisecond);

void MatchAttributePath(benchmark::State& ioState, AttributePathMode inMode) {
  BenchScene scene(ioState.range(0));
  const auto param = ResolveTextPath(scene.Last(), TMCString1023("self,amet,TRAN,ROTA,RotX"));
  AttributePathRecorder recorder;
  recorder.Set(inMode, param.Get());
  AttributePath path;
  recorder.CopyTo(scene.Root(), path);
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(AttributePathMatcher(path, scene.Root(), *param).Matches());
  }
}
BENCHMARK_CAPTURE(MatchAttributePath, ByID, AttributePathMode::kByElementID)->Arg(10)->Arg(10000);
BENCHMARK_CAPTURE(MatchAttributePath, FromRoot, AttributePathMode::kFromRoot)->Arg(10)->Arg(10000);

}  // namespace
}  // namespace qlx::bench
