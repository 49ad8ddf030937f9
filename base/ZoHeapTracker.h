#pragma once

#include "platform/ZoExport.h"

#include <cstddef>
#include <cstdint>

// Only named here: the node pools include this header, and the lock and stream headers reach back
// to the containers.
class ZoCriticalSection;
class ZoStreamWrite;

/// ZoHeapTracker: a record of the heap memory the library's containers hold, for finding leaks.
/// While enabled it counts the live allocations and bytes made through the library's allocation
/// paths — the memory blocks under every array and the node blocks of every list and map pool — and
/// at a checkpoint it can list what was allocated since and is still alive.
///
///     ZoHeapTracker::Enable(true);
///     const uint64_t mark = ZoHeapTracker::Checkpoint();
///     runTheWork();
///     if (ZoHeapTracker::ReportLeaks(mark, console) != 0) ...
///
/// Disabled (the default) the allocation paths pay one atomic load each. Memory allocated before
/// tracking began is not counted, and neither is its growth. Safe to use from several threads: the
/// record is guarded by sm_CriticalSection, a process-wide lock made when the library loads.
/// @ingroup diagnostics
class ZO_API ZoHeapTracker
{
public:
    /// The process-wide lock that guards the record; made when the library loads. Hold it to read several figures consistently.
    static ZoCriticalSection sm_CriticalSection;

    /// Starts or stops recording. Stopping forgets the record.
    static void Enable(bool enabled);
    /// True while recording is on.
    static bool IsEnabled();

    /// The hooks the allocation paths call; each does nothing while tracking is off.
    static void RecordAllocation(const void* address, size_t bytes);
    /// A block that moved (or grew) in place: counted only when the old block was.
    static void RecordReallocation(const void* oldAddress, const void* newAddress, size_t bytes);
    /// A block handed back; forgotten when it was recorded, ignored otherwise (and for null).
    static void RecordRelease(const void* address);

    /// Memory checks: the live allocations and bytes recorded, and whether an address starts one.
    static uint64_t GetLiveAllocations();
    /// Sum of the sizes of the live recorded allocations, in bytes.
    static uint64_t GetLiveBytes();
    /// True when `address` is the start of a live recorded allocation.
    static bool IsLiveAllocation(const void* address);

    /// A mark in the sequence of recorded allocations.
    static uint64_t Checkpoint();
    /// Writes one line per allocation made after `checkpoint` that is still alive, oldest first
    /// ("leak: 24 bytes at 0x00005581A2C3D4E0 (allocation 17)"), and returns how many there are.
    static uint32_t ReportLeaks(uint64_t checkpoint, ZoStreamWrite& stream);
};
