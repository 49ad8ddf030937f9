// The binary encoding written to memory against std::ostringstream's unformatted writes of the
// same bytes.
#include "base/ZoStreamWriteBinaryMemory.h"

#include <benchmark/benchmark.h>

#include <sstream>

static void ZoStreamWriteBinaryScalars(benchmark::State& state)
{
    for (auto _ : state) {
        ZoStreamWriteBinaryMemory stream;
        for (int i = 0; i < state.range(0); ++i)
            stream << i << 0.5 * i;
        benchmark::DoNotOptimize(stream.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(ZoStreamWriteBinaryScalars)->Arg(1 << 14);

static void StdOstringstreamScalars(benchmark::State& state)
{
    for (auto _ : state) {
        std::ostringstream stream;
        for (int i = 0; i < state.range(0); ++i) {
            const double d = 0.5 * i;
            stream.write(reinterpret_cast<const char*>(&i), sizeof i);
            stream.write(reinterpret_cast<const char*>(&d), sizeof d);
        }
        benchmark::DoNotOptimize(stream.tellp());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(StdOstringstreamScalars)->Arg(1 << 14);
