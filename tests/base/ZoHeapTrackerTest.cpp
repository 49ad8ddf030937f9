#include "base/ZoArray.h"
#include "base/ZoHeapTracker.h"
#include "base/ZoList.h"
#include "base/ZoMemoryBlock.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamWriteASCIIString.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(ZoHeapTrackerTest, ALeakIsReportedAtItsCheckpointAndNothingOnceItIsFreed)
{
    ZoHeapTracker::Enable(true);
    const uint64_t mark = ZoHeapTracker::Checkpoint();
    auto kept = std::make_unique<ZoArray<double, 0>>();
    kept->SetElementCount(100);
    const void* keptBlock = kept->GetData();
    {
        ZoArray<double, 0> freed;
        freed.SetElementCount(50);
        ZoList<int, 0x22> list;
        for (int i = 0; i < 40; ++i)
            list.AddTail(i);
        EXPECT_GE(ZoHeapTracker::GetLiveAllocations(), 3u) << "two array blocks and the list's node blocks";
    }
    const uint64_t keptBytes = uint64_t(kept->GetMemoryElementCount()) * sizeof(double);
    EXPECT_TRUE(ZoHeapTracker::GetLiveAllocations() == 1 && ZoHeapTracker::GetLiveBytes() == keptBytes &&
                ZoHeapTracker::IsLiveAllocation(keptBlock));
    ZoStreamWriteASCIIString report;
    EXPECT_EQ(ZoHeapTracker::ReportLeaks(mark, report), 1u);
    EXPECT_EQ(report.GetText(), CString::Formatted(u"leak: %llu bytes at %p (allocation %llu)\n", keptBytes, keptBlock, mark + 1));
    // A block that grows in place keeps its place in the sequence: no new leak after a checkpoint.
    const ZoSmartPointer<ZoMemoryBlock> block(new ZoMemoryBlock(16));
    const uint64_t afterBlock = ZoHeapTracker::Checkpoint();
    block->Reallocate(1 << 20);
    EXPECT_TRUE(ZoHeapTracker::IsLiveAllocation(block->GetData()) && ZoHeapTracker::GetLiveBytes() == keptBytes + (1 << 20));
    report.Empty();
    EXPECT_EQ(ZoHeapTracker::ReportLeaks(afterBlock, report), 0u) << "nothing allocated since";
    kept.reset();
    EXPECT_EQ(ZoHeapTracker::ReportLeaks(mark, report), 1u) << "the grown block is still alive";
    EXPECT_EQ(report.GetText(), CString::Formatted(u"leak: %llu bytes at %p (allocation %llu)\n", uint64_t(1) << 20,
                                                   static_cast<const void*>(block->GetData()), afterBlock));
    EXPECT_EQ(ZoHeapTracker::GetLiveBytes(), uint64_t(1) << 20);
    // Off, nothing is recorded, and memory from before tracking is not counted even when it grows.
    ZoHeapTracker::Enable(false);
    EXPECT_EQ(ZoHeapTracker::GetLiveAllocations(), 0u);
    ZoHeapTracker::Enable(true);
    block->Reallocate(2 << 20);
    EXPECT_EQ(ZoHeapTracker::GetLiveAllocations(), 0u);
    ZoHeapTracker::Enable(false);
}

} // namespace
