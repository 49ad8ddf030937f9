// ZoList with its node pool against std::list (one heap allocation per node): appending and
// removing in a churn that keeps a working set alive, and splices of whole lists and of runs.
#include "base/ZoList.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <iterator>
#include <list>

namespace {
const int sc_iLive = 1024;
const int sc_iChurn = 1 << 16;
const int sc_iRun = 64;
} // namespace

// A queue of sc_iLive elements: each step appends one and removes one from the head, then every
// eighth element is removed from the middle and replaced, so nodes are reused out of order.
static void ZoListChurn(benchmark::State& state)
{
    ZoList<uint32_t, 0x21> list(256);
    for (int i = 0; i < sc_iLive; ++i)
        list.AddTail(i);
    for (auto _ : state) {
        for (int i = 0; i < sc_iChurn; ++i) {
            list.AddTail(i);
            list.RemoveHead();
            if ((i & 7) == 0) {
                auto position = list.GetNextPosition(list.GetHeadPosition());
                list.RemoveAt(position);
                list.AddHead(i);
            }
        }
        benchmark::DoNotOptimize(list.GetHead());
    }
    state.SetItemsProcessed(state.iterations() * sc_iChurn);
}
BENCHMARK(ZoListChurn);

static void StdListChurn(benchmark::State& state)
{
    std::list<uint32_t> list;
    for (int i = 0; i < sc_iLive; ++i)
        list.push_back(i);
    for (auto _ : state) {
        for (int i = 0; i < sc_iChurn; ++i) {
            list.push_back(i);
            list.pop_front();
            if ((i & 7) == 0) {
                list.erase(std::next(list.begin()));
                list.push_front(i);
            }
        }
        benchmark::DoNotOptimize(list.front());
    }
    state.SetItemsProcessed(state.iterations() * sc_iChurn);
}
BENCHMARK(StdListChurn);

// Builds a list of sc_iChurn elements and empties it again.
static void ZoListAppendRemoveAll(benchmark::State& state)
{
    ZoList<uint32_t, 0x21> list(256);
    for (auto _ : state) {
        for (int i = 0; i < sc_iChurn; ++i)
            list.AddTail(i);
        benchmark::DoNotOptimize(list.GetTail());
        list.RemoveAll();
    }
    state.SetItemsProcessed(state.iterations() * sc_iChurn);
}
BENCHMARK(ZoListAppendRemoveAll);

static void StdListAppendClear(benchmark::State& state)
{
    std::list<uint32_t> list;
    for (auto _ : state) {
        for (int i = 0; i < sc_iChurn; ++i)
            list.push_back(i);
        benchmark::DoNotOptimize(list.back());
        list.clear();
    }
    state.SetItemsProcessed(state.iterations() * sc_iChurn);
}
BENCHMARK(StdListAppendClear);

// Moves a run of sc_iRun elements from the front of one list to the tail of another and back, and
// splices the whole second list into the first and out again.
static void ZoListSplice(benchmark::State& state)
{
    ZoList<uint32_t, 0x21> first(256);
    for (int i = 0; i < sc_iLive; ++i)
        first.AddTail(i);
    ZoList<uint32_t, 0x21> second(first.GetPlexManager());
    ZoList<uint32_t, 0x21> run(first.GetPlexManager());
    for (auto _ : state) {
        for (int i = 0; i < 1024; ++i) {
            auto from = first.GetHeadPosition();
            auto to = from;
            for (int k = 1; k < sc_iRun; ++k)
                to = first.GetNextPosition(to);
            first.ExtractToList(from, to, run);
            second.MoveToTail(run);
            first.MoveToTail(second);
        }
        benchmark::DoNotOptimize(first.GetHead());
    }
    state.SetItemsProcessed(state.iterations() * 1024);
}
BENCHMARK(ZoListSplice);

static void StdListSplice(benchmark::State& state)
{
    std::list<uint32_t> first;
    for (int i = 0; i < sc_iLive; ++i)
        first.push_back(i);
    std::list<uint32_t> second;
    std::list<uint32_t> run;
    for (auto _ : state) {
        for (int i = 0; i < 1024; ++i) {
            auto to = std::next(first.begin(), sc_iRun);
            run.splice(run.end(), first, first.begin(), to);
            second.splice(second.end(), run);
            first.splice(first.end(), second);
        }
        benchmark::DoNotOptimize(first.front());
    }
    state.SetItemsProcessed(state.iterations() * 1024);
}
BENCHMARK(StdListSplice);
