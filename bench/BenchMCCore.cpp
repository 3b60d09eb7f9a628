// Arrays beside std::vector, counted pointers beside std::shared_ptr and a raw loop. The checks of the containers are
// part of what is measured: they are never compiled out.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "MCArray.h"
#include "MCCountedPtr.h"
#include "MCObject.h"
#include "PlainMemory.h"

namespace qlx::bench {

namespace {

void SetItems(benchmark::State& ioState, int64 inItemsEach) {
  ioState.SetItemsProcessed(static_cast<int64>(ioState.iterations()) * inItemsEach);
}

void AppendArray(benchmark::State& ioState) {
  const PlainMemory memory;
  const int64 count = ioState.range(0);
  for (auto _ : ioState) {
    TMCArray<int64> array;
    for (int64 i = 0; i < count; ++i) {
      array.AddElem(i);
    }
    benchmark::DoNotOptimize(array.BaseAddress());
  }
  SetItems(ioState, count);
}

void AppendVector(benchmark::State& ioState) {
  const int64 count = ioState.range(0);
  for (auto _ : ioState) {
    std::vector<int64> array;
    for (int64 i = 0; i < count; ++i) {
      array.push_back(i);
    }
    benchmark::DoNotOptimize(array.data());
  }
  SetItems(ioState, count);
}

void ReadArray(benchmark::State& ioState) {
  const PlainMemory memory;
  TMCArray<int64> array;
  array.SetElemCount(static_cast<uint32>(ioState.range(0)));
  for (auto _ : ioState) {
    int64 sum = 0;
    for (uint32 i = 0; i < array.GetElemCount(); ++i) {
      sum += array[i];
    }
    benchmark::DoNotOptimize(sum);
  }
  SetItems(ioState, ioState.range(0));
}

void ReadArrayByRange(benchmark::State& ioState) {
  const PlainMemory memory;
  TMCArray<int64> array;
  array.SetElemCount(static_cast<uint32>(ioState.range(0)));
  for (auto _ : ioState) {
    int64 sum = 0;
    for (const int64 value : array) {
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  SetItems(ioState, ioState.range(0));
}

void ReadVector(benchmark::State& ioState) {
  std::vector<int64> array(static_cast<std::size_t>(ioState.range(0)));
  for (auto _ : ioState) {
    int64 sum = 0;
    for (const int64 value : array) {
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  SetItems(ioState, ioState.range(0));
}

// One element from the middle at a time, until half are gone.
void RemoveArray(benchmark::State& ioState) {
  const PlainMemory memory;
  const auto count = static_cast<uint32>(ioState.range(0));
  for (auto _ : ioState) {
    TMCArray<int64> array;
    array.SetElemCount(count);
    while (array.GetElemCount() > count / 2) {
      array.RemoveElem(array.GetElemCount() / 2);
    }
    benchmark::DoNotOptimize(array.BaseAddress());
  }
  SetItems(ioState, count / 2);
}

void RemoveVector(benchmark::State& ioState) {
  const auto count = static_cast<std::size_t>(ioState.range(0));
  for (auto _ : ioState) {
    std::vector<int64> array(count);
    while (array.size() > count / 2) {
      array.erase(array.begin() + static_cast<std::ptrdiff_t>(array.size() / 2));
    }
    benchmark::DoNotOptimize(array.data());
  }
  SetItems(ioState, static_cast<int64>(count / 2));
}

constexpr int kPointers = 64;

template <class Counted>
void AssignCounted(benchmark::State& ioState) {
  const PlainMemory memory;
  CountedObjectBookkeeping books;
  int32 live = 0;
  books.fLiveCount = &live;
  InitMCCountedObject(books);
  {
    TMCCountedPtr<Counted> sources[2];
    Counted::Create(sources[0].WriteInto());
    Counted::Create(sources[1].WriteInto());
    TMCCountedPtr<Counted> pointers[kPointers];
    int turn = 0;
    for (auto _ : ioState) {
      turn = 1 - turn;
      for (auto& pointer : pointers) {
        pointer = sources[turn];
      }
      benchmark::ClobberMemory();
    }
  }
  InitMCCountedObject({});
  SetItems(ioState, kPointers);
}

void AssignSharedPtr(benchmark::State& ioState) {
  std::shared_ptr<int> sources[2] = {std::make_shared<int>(1), std::make_shared<int>(2)};
  std::shared_ptr<int> pointers[kPointers];
  int turn = 0;
  for (auto _ : ioState) {
    turn = 1 - turn;
    for (auto& pointer : pointers) {
      pointer = sources[turn];
    }
    benchmark::ClobberMemory();
  }
  SetItems(ioState, kPointers);
}

// The two calls and the store, without checks.
void AssignRawLoop(benchmark::State& ioState) {
  const PlainMemory memory;
  int32 live = 0;
  InitMCCountedObject({nullptr, nullptr, nullptr, nullptr, nullptr, &live});
  {
    TMCCountedPtr<TMCCountedObject> sources[2];
    TMCCountedObject::Create(sources[0].WriteInto());
    TMCCountedObject::Create(sources[1].WriteInto());
    TMCCountedObject* pointers[kPointers] = {};
    int turn = 0;
    for (auto _ : ioState) {
      turn = 1 - turn;
      TMCCountedObject* source = sources[turn].Get();
      for (auto*& pointer : pointers) {
        source->AddRef();
        if (pointer) {
          pointer->Release();
        }
        pointer = source;
      }
      benchmark::ClobberMemory();
    }
    for (auto* pointer : pointers) {
      if (pointer) {
        pointer->Release();
      }
    }
  }
  InitMCCountedObject({});
  SetItems(ioState, kPointers);
}

}  // namespace

BENCHMARK(AppendArray)->Arg(100)->Arg(10000)->Arg(1000000);
BENCHMARK(AppendVector)->Arg(100)->Arg(10000)->Arg(1000000);
BENCHMARK(ReadArray)->Arg(10000);
BENCHMARK(ReadArrayByRange)->Arg(10000);
BENCHMARK(ReadVector)->Arg(10000);
BENCHMARK(RemoveArray)->Arg(1000);
BENCHMARK(RemoveVector)->Arg(1000);
BENCHMARK(AssignCounted<TMCCountedObject>)->Name("AssignCountedPtr");
BENCHMARK(AssignCounted<TMCSMPCountedObject>)->Name("AssignCountedPtrAtomic");
BENCHMARK(AssignSharedPtr);
BENCHMARK(AssignRawLoop);

}  // namespace qlx::bench
