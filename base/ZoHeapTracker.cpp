#include "base/ZoHeapTracker.h"

#include "base/ZoCriticalSection.h"
#include "base/ZoCriticalSectionAuto.h"
#include "base/ZoStreamWrite.h"
#include "platform/CString.h"

#include <algorithm>
#include <atomic>
#include <unordered_map>
#include <utility>
#include <vector>

ZoCriticalSection ZoHeapTracker::sm_CriticalSection(ZoCriticalSection::sc_uiDefaultSpinCount);

namespace {

// Constant-initialised: the registry's pools allocate while the library loads, before any dynamic
// initialisation of this file can be relied on, and find tracking off.
std::atomic<bool> s_enabled{false};

struct Allocation
{
    size_t bytes;
    uint64_t sequence;
};

struct Record
{
    std::unordered_map<const void*, Allocation> live;
    uint64_t liveBytes = 0;
    uint64_t lastSequence = 0;
};

// Made on first use, under the lock; only ever touched while tracking is on.
Record& record()
{
    static Record* const theRecord = new Record();
    return *theRecord;
}

void forget(Record& heap, const void* address)
{
    const auto found = heap.live.find(address);
    if (found == heap.live.end())
        return;
    heap.liveBytes -= found->second.bytes;
    heap.live.erase(found);
}

} // namespace

void ZoHeapTracker::Enable(bool enabled)
{
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    if (!enabled) {
        Record& heap = record();
        heap.live.clear();
        heap.liveBytes = 0;
    }
    s_enabled.store(enabled);
}

bool ZoHeapTracker::IsEnabled()
{
    return s_enabled.load(std::memory_order_relaxed);
}

void ZoHeapTracker::RecordAllocation(const void* address, size_t bytes)
{
    if (!s_enabled.load(std::memory_order_relaxed) || address == nullptr)
        return;
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    Record& heap = record();
    forget(heap, address);
    heap.live[address] = Allocation{bytes, ++heap.lastSequence};
    heap.liveBytes += bytes;
}

void ZoHeapTracker::RecordReallocation(const void* oldAddress, const void* newAddress, size_t bytes)
{
    if (!s_enabled.load(std::memory_order_relaxed))
        return;
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    Record& heap = record();
    const auto found = heap.live.find(oldAddress);
    if (found == heap.live.end())
        return;
    // The allocation keeps its place in the sequence: a block that grew is no new leak.
    const uint64_t sequence = found->second.sequence;
    forget(heap, oldAddress);
    if (newAddress == nullptr)
        return;
    heap.live[newAddress] = Allocation{bytes, sequence};
    heap.liveBytes += bytes;
}

void ZoHeapTracker::RecordRelease(const void* address)
{
    if (!s_enabled.load(std::memory_order_relaxed) || address == nullptr)
        return;
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    forget(record(), address);
}

uint64_t ZoHeapTracker::GetLiveAllocations()
{
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    return record().live.size();
}

uint64_t ZoHeapTracker::GetLiveBytes()
{
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    return record().liveBytes;
}

bool ZoHeapTracker::IsLiveAllocation(const void* address)
{
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    return record().live.count(address) != 0;
}

uint64_t ZoHeapTracker::Checkpoint()
{
    ZoCriticalSectionAuto guard(sm_CriticalSection);
    return record().lastSequence;
}

uint32_t ZoHeapTracker::ReportLeaks(uint64_t checkpoint, ZoStreamWrite& stream)
{
    std::vector<std::pair<const void*, Allocation>> leaks;
    {
        ZoCriticalSectionAuto guard(sm_CriticalSection);
        for (const auto& entry : record().live)
            if (entry.second.sequence > checkpoint)
                leaks.emplace_back(entry.first, entry.second);
    }
    std::sort(leaks.begin(), leaks.end(),
              [](const auto& a, const auto& b) { return a.second.sequence < b.second.sequence; });
    // Written outside the lock: the stream may allocate through the tracked paths itself.
    for (const auto& leak : leaks)
        stream << CString::Formatted(u"leak: %llu bytes at %p (allocation %llu)\n", static_cast<uint64_t>(leak.second.bytes),
                                     leak.first, leak.second.sequence);
    return static_cast<uint32_t>(leaks.size());
}
