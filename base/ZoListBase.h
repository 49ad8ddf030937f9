#pragma once

#include "base/ZoNodeLinked.h"
#include "base/ZoPlexManager.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <new>
#include <utility>

/// ZoListBase<T, flags>: the bottom layer of the library's linked list. It holds what every list has
/// (the count, the head and tail nodes and the node pool) and makes and frees nodes; the layers above
/// it (ring policy, ZoListBaseIntermediate, ZoListPolicyDoubleLinked, ZoList) add the operations.
/// No layer has virtual operations, so a list costs no more than its four fields and the ring flag.
///
/// Nodes never come from the heap one by one: they come from a ZoPlexManager, held by reference
/// count and possibly shared by several lists (lists built from one another, or all the lists of a
/// ZoArrayOfLists). Lists that share a pool are used from one thread at a time.
///
/// Positions are opaque untyped pointers: a position is the node itself, null means none (or the
/// end). Positions stay valid until their node is removed; operations that move nodes between lists
/// keep them valid in the receiving list.
/// @ingroup containers
template <class T, int Flags>
class ZO_TEMPLATE_API ZoListBase
{
public:
    /// The node type: `next`, `prev`, then the element by value.
    typedef ZoNodeLinked<T, 1> Node;
    /// The node pool type lists and their copies share.
    typedef ZoPlexManager<Node, 0, 0> PlexManager;
    /// Opaque position: the node itself; null means none or the end.
    typedef void* Position;

    /// Number of elements; 0 for an empty list.
    uint32_t GetCount() const { return m_count; }
    /// Non-zero when the list holds no element.
    int IsEmpty() const { return m_count == 0; }
    /// Position of the first element; null for an empty list.
    Position GetHeadPosition() const { return m_head; }
    /// Position of the last element; null for an empty list.
    Position GetTailPosition() const { return m_tail; }
    /// The pool the nodes come from, possibly shared with other lists.
    const ZoSmartPointer<PlexManager>& GetPlexManager() const { return m_plexManager; }

protected:
    /// An empty list drawing its nodes from `plexManager`.
    explicit ZoListBase(ZoSmartPointer<PlexManager> plexManager)
        : m_count(0), m_head(nullptr), m_tail(nullptr), m_plexManager(std::move(plexManager))
    {
    }
    ZoListBase(const ZoListBase&) = delete;
    ZoListBase& operator=(const ZoListBase&) = delete;
    ~ZoListBase() = default;

    /// The node a position names; no check.
    static Node* toNode(Position position) { return static_cast<Node*>(position); }

    /// A node from the pool holding an element made from `args`, not yet linked. A pool that can hand
    /// out nothing (0 nodes per block, or the heap exhausted) throws std::bad_alloc rather than
    /// leaving the list with a null node.
    template <class... Args>
    Node* newNode(Args&&... args)
    {
        Node* node = m_plexManager->AllocateNode();
        if (node == nullptr)
            throw std::bad_alloc();
        try {
            new (node) Node(std::forward<Args>(args)...);
        } catch (...) {
            m_plexManager->FreeNode(node);
            throw;
        }
        return node;
    }
    /// Destroys the element and gives the node back to this list's pool.
    void freeNode(Node* node)
    {
        node->~Node();
        m_plexManager->FreeNode(node);
    }
    /// Sets the forward link only; the caller keeps the list consistent.
    static void setNext(Node* node, Node* next) { node->next = next; }
    /// Sets the backward link only; the caller keeps the list consistent.
    static void setPrev(Node* node, Node* prev) { node->prev = prev; }
    /// Exchanges the pool reference only; nodes stay where they are. For empty lists.
    void replacePlexManager(ZoSmartPointer<PlexManager> plexManager) { m_plexManager = std::move(plexManager); }

    /// Number of linked nodes.
    uint32_t m_count;
    /// First node, or null; in a closed ring its `prev` is the tail.
    Node* m_head;
    /// Last node, or null; in a closed ring its `next` is the head.
    Node* m_tail;
    /// The node pool; never null for lists the library makes.
    ZoSmartPointer<PlexManager> m_plexManager;
};
