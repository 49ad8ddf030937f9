#pragma once

#include "base/ZoHeapTracker.h"
#include "base/ZoReferenceCountedClass.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <cstdlib>

/// ZoPlexManager<Node>: the node allocator shared by lists and maps. It takes memory from the C heap
/// in blocks of a fixed number of nodes, carves each block into a free list and hands nodes out from
/// it; freed nodes go back to the front of the free list and blocks are returned only when the
/// manager dies. So a list never heap-allocates per node, and lists that share a manager splice
/// without copying.
///
/// Node storage is raw: the allocator neither constructs nor destroys what a node holds; its users
/// do. A free node's first word links to the next free node (the `next` field of every node type).
/// Not synchronised: lists and maps sharing one manager are used from one thread at a time; only the
/// manager's reference count is atomic. A manager with 0 nodes per block hands out null.
/// @ingroup containers
template <class Node, int A = 0, int B = 0>
class ZO_TEMPLATE_API ZoPlexManager : public ZoReferenceCountedClass<ZoPlexManager<Node, A, B>>
{
public:
    /// An empty pool that allocates `nodesPerBlock` nodes at a time; 0 makes a pool that hands out null.
    explicit ZoPlexManager(uint32_t nodesPerBlock = 10) : m_blocks(nullptr), m_freeList(nullptr), m_nodesPerBlock(nodesPerBlock) {}
    ZoPlexManager(const ZoPlexManager&) = delete;
    ZoPlexManager& operator=(const ZoPlexManager&) = delete;
    /// Frees every block, in chain order. Whatever nodes still hold is not destroyed.
    ~ZoPlexManager() override
    {
        while (m_blocks != nullptr) {
            BlockHeader* previous = m_blocks->previous;
            ZoHeapTracker::RecordRelease(m_blocks);
            std::free(m_blocks);
            m_blocks = previous;
        }
    }

    /// Raw storage for one node. A fresh block puts its nodes on the free list first to last, so the
    /// last node of a new block is handed out first.
    Node* AllocateNode()
    {
        if (m_freeList == nullptr && m_nodesPerBlock != 0) {
            auto* block = static_cast<BlockHeader*>(std::malloc(sizeof(BlockHeader) + sizeof(Node) * m_nodesPerBlock));
            if (block == nullptr)
                return nullptr;
            block->reserved = nullptr;
            block->previous = m_blocks;
            m_blocks = block;
            ZoHeapTracker::RecordAllocation(block, sizeof(BlockHeader) + sizeof(Node) * m_nodesPerBlock);
            auto* nodes = reinterpret_cast<unsigned char*>(block + 1);
            for (uint32_t i = 0; i < m_nodesPerBlock; ++i)
                pushFree(nodes + sizeof(Node) * i);
        }
        if (m_freeList == nullptr)
            return nullptr;
        FreeLink* node = m_freeList;
        m_freeList = node->next;
        return reinterpret_cast<Node*>(node);
    }
    /// Requires: the node came from this manager (or one merged into it) and holds nothing alive.
    void FreeNode(Node* node) { pushFree(node); }

    /// Takes over the donor's free nodes (one by one, onto the front of this free list) and its
    /// blocks (appended after this manager's oldest block). The donor is left empty, so destroying
    /// it frees none of the nodes that moved.
    void Merge(ZoPlexManager& donor)
    {
        if (&donor == this)
            return;
        while (donor.m_freeList != nullptr) {
            FreeLink* node = donor.m_freeList;
            donor.m_freeList = node->next;
            pushFree(node);
        }
        if (donor.m_blocks != nullptr) {
            BlockHeader** end = &m_blocks;
            while (*end != nullptr)
                end = &(*end)->previous;
            *end = donor.m_blocks;
            donor.m_blocks = nullptr;
        }
    }

    /// Nodes per allocated block, as given at construction.
    uint32_t GetNodesPerBlock() const { return m_nodesPerBlock; }
    /// Number of blocks allocated and not yet freed (counts the chain; linear time).
    uint32_t GetBlockCount() const
    {
        uint32_t count = 0;
        for (const BlockHeader* block = m_blocks; block != nullptr; block = block->previous)
            ++count;
        return count;
    }
    /// Number of nodes on the free list (walks it; linear time).
    uint32_t GetFreeNodeCount() const
    {
        uint32_t count = 0;
        for (const FreeLink* node = m_freeList; node != nullptr; node = node->next)
            ++count;
        return count;
    }
    /// The manager object plus, per block, its 16-byte header and its nodes.
    uint32_t GetMemoryUsage() const
    {
        return static_cast<uint32_t>(sizeof(*this) + GetBlockCount() * (sizeof(BlockHeader) + sizeof(Node) * m_nodesPerBlock));
    }

private:
    /// 16 bytes; the second word links to the block allocated before this one.
    struct BlockHeader
    {
        void* reserved;
        BlockHeader* previous;
    };
    static_assert(sizeof(BlockHeader) == 16, "block headers are 16 bytes on 64-bit targets");
    struct FreeLink
    {
        FreeLink* next;
    };
    static_assert(sizeof(Node) >= sizeof(FreeLink), "a node must hold the free-list link");

    void pushFree(void* storage)
    {
        auto* node = static_cast<FreeLink*>(storage);
        node->next = m_freeList;
        m_freeList = node;
    }

    BlockHeader* m_blocks;
    FreeLink* m_freeList;
    uint32_t m_nodesPerBlock;
};
