// ZoMap with string keys (the type registry's case) against std::unordered_map.
#include "base/ZoMap.h"

#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace {
std::vector<CString> names(size_t count)
{
    std::vector<CString> result;
    for (size_t i = 0; i < count; ++i)
        result.push_back(CString::Formatted(u"ZoClassName%d", static_cast<int>(i)));
    return result;
}

struct U16Hash
{
    size_t operator()(const std::u16string& text) const { return std::hash<std::u16string>()(text); }
};
} // namespace

static void ZoMapLookup(benchmark::State& state)
{
    const std::vector<CString> keys = names(static_cast<size_t>(state.range(0)));
    ZoMap<CString, int> map(1000, 17, true);
    for (size_t i = 0; i < keys.size(); ++i)
        map[keys[i]] = static_cast<int>(i);
    for (auto _ : state)
        for (const CString& key : keys)
            benchmark::DoNotOptimize(map.Find(key));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ZoMapLookup)->Arg(64)->Arg(1024);

static void StdUnorderedMapLookup(benchmark::State& state)
{
    const std::vector<CString> keys = names(static_cast<size_t>(state.range(0)));
    std::unordered_map<std::u16string, int, U16Hash> map;
    for (size_t i = 0; i < keys.size(); ++i)
        map[keys[i].GetStdString()] = static_cast<int>(i);
    for (auto _ : state)
        for (const CString& key : keys)
            benchmark::DoNotOptimize(map.find(key.GetStdString()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(StdUnorderedMapLookup)->Arg(64)->Arg(1024);

// 32-bit keys spread like the ids the pool's submitter map sees (multiples of 16 apart would all
// share a bucket with the key >> 4 hash, so the keys are random).
namespace {
std::vector<uint32_t> numbers(size_t count)
{
    std::vector<uint32_t> result;
    uint32_t x = 12345;
    for (size_t i = 0; i < count; ++i) {
        x = x * 1103515245u + 12345u;
        result.push_back(x);
    }
    return result;
}
} // namespace

static void ZoMapLookupUInt32(benchmark::State& state)
{
    const std::vector<uint32_t> keys = numbers(static_cast<size_t>(state.range(0)));
    ZoMap<uint32_t, int> map(1000, 17, true);
    for (size_t i = 0; i < keys.size(); ++i)
        map[keys[i]] = static_cast<int>(i);
    for (auto _ : state)
        for (uint32_t key : keys)
            benchmark::DoNotOptimize(map.Find(key));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ZoMapLookupUInt32)->Arg(64)->Arg(1024);

static void StdUnorderedMapLookupUInt32(benchmark::State& state)
{
    const std::vector<uint32_t> keys = numbers(static_cast<size_t>(state.range(0)));
    std::unordered_map<uint32_t, int> map;
    for (size_t i = 0; i < keys.size(); ++i)
        map[keys[i]] = static_cast<int>(i);
    for (auto _ : state)
        for (uint32_t key : keys)
            benchmark::DoNotOptimize(map.find(key));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(StdUnorderedMapLookupUInt32)->Arg(64)->Arg(1024);
