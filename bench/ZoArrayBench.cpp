// ZoArray against std::vector: appending, and inserting at the front (overlapping moves).
#include "base/ZoArray.h"

#include <benchmark/benchmark.h>

#include <vector>

static void ZoArrayAppend(benchmark::State& state)
{
    for (auto _ : state) {
        ZoArray<uint32_t, 1> array;
        for (uint32_t i = 0; i < state.range(0); ++i)
            array.Add(i);
        benchmark::DoNotOptimize(array.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ZoArrayAppend)->Arg(1 << 16);

static void StdVectorAppend(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<uint32_t> vector;
        for (uint32_t i = 0; i < state.range(0); ++i)
            vector.push_back(i);
        benchmark::DoNotOptimize(vector.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(StdVectorAppend)->Arg(1 << 16);

static void ZoArrayInsertFront(benchmark::State& state)
{
    for (auto _ : state) {
        ZoArray<uint32_t, 1> array;
        for (uint32_t i = 0; i < state.range(0); ++i)
            array.InsertBefore(0u, i, 1, 1);
        benchmark::DoNotOptimize(array.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ZoArrayInsertFront)->Arg(1 << 12);

static void StdVectorInsertFront(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<uint32_t> vector;
        for (uint32_t i = 0; i < state.range(0); ++i)
            vector.insert(vector.begin(), i);
        benchmark::DoNotOptimize(vector.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(StdVectorInsertFront)->Arg(1 << 12);

// Sizing an array in one step and filling it: SetElementCount against std::vector::resize.
static void ZoArraySetElementCount(benchmark::State& state)
{
    for (auto _ : state) {
        ZoArray<uint32_t, 1> array;
        array.SetElementCount(static_cast<uint32_t>(state.range(0)), 0);
        uint32_t* data = array.GetData();
        for (uint32_t i = 0; i < state.range(0); ++i)
            data[i] = i;
        benchmark::DoNotOptimize(array.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ZoArraySetElementCount)->Arg(1 << 20);

static void StdVectorResize(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<uint32_t> vector;
        vector.resize(static_cast<size_t>(state.range(0)));
        uint32_t* data = vector.data();
        for (uint32_t i = 0; i < state.range(0); ++i)
            data[i] = i;
        benchmark::DoNotOptimize(vector.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(StdVectorResize)->Arg(1 << 20);
