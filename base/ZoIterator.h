#pragma once

#include "platform/ZoExport.h"

/// ZoIterator<Ref, Derived>: the small base of the library's iterators (graph nodes, graph paths,
/// connections, files found). It holds the current position, null once the iterator is exhausted;
/// the derived class supplies GetNext(), which returns the current element (as Ref) and advances.
///
///     for (MyIterator it(list); it; ++it) ...     // or: while (!!it) use(it++);
/// @ingroup containers
template <class Ref, class Derived>
class ZO_TEMPLATE_API ZoIterator
{
public:
    /// Nonzero when the iterator is exhausted.
    int operator!() const { return m_position == nullptr; }
    /// Nonzero while there is a current element.
    operator int() const { return m_position != nullptr; }
    /// Advances; returns the iterator.
    Derived& operator++()
    {
        static_cast<Derived*>(this)->GetNext();
        return *static_cast<Derived*>(this);
    }
    /// Advances; returns the element that was current.
    Ref operator++(int) { return static_cast<Derived*>(this)->GetNext(); }

    /// The current position (a node or an entry, as the derived class defines it); null once exhausted.
    void* GetPosition() const { return m_position; }

protected:
    /// For derived classes: starts at `position` (null: already exhausted).
    explicit ZoIterator(void* position = nullptr) : m_position(position) {}
    ~ZoIterator() = default;

    /// The current position; null once the iterator is exhausted.
    void* m_position;
};
