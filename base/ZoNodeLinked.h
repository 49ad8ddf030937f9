#pragma once

#include <utility>

template <class T, int Links>
struct ZoNodeLinked;

/// ZoNodeLinked<T, links>: one node of the library's linked lists, as the node pool hands it out.
/// ZoNodeLinked<T, 1> is the node with a back link: `next`, `prev`, then the element stored by value.
/// In an open list `next` is null after the tail and `prev` null before the head; in a closed ring
/// the tail's `next` is the head and the head's `prev` the tail.
///
/// The pool (ZoPlexManager) gives raw storage; the list constructs the node in it and destroys it
/// before handing the storage back. `next` must stay the first field: a free node's first word links
/// the pool's free list.
/// @ingroup containers
template <class T>
struct ZoNodeLinked<T, 1>
{
    /// Unlinked node holding an element made from `args`.
    template <class... Args>
    explicit ZoNodeLinked(Args&&... args) : next(nullptr), prev(nullptr), element(std::forward<Args>(args)...)
    {
    }

    /// The next node; null after the tail of an open list. Must stay the first field (the pool's free list uses it).
    ZoNodeLinked* next;
    /// The previous node; null before the head of an open list.
    ZoNodeLinked* prev;
    /// The element, stored by value.
    T element;
};
