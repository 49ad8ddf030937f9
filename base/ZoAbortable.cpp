#include "base/ZoAbortable.h"

ZoAbortable::ZoAbortable() : m_terminate(new ZoEvent(true)), m_terminated(nullptr), m_ownsEvents(true)
{
    try {
        m_terminated = new ZoEvent(true);
    } catch (...) {
        delete m_terminate;
        throw;
    }
    m_terminate->Reset();
    m_terminated->Set();
}

ZoAbortable::ZoAbortable(ZoEvent& terminate, ZoEvent& terminated)
    : m_terminate(&terminate), m_terminated(&terminated), m_ownsEvents(false)
{
    m_terminate->Reset();
    m_terminated->Set();
}

ZoAbortable::ZoAbortable(const ZoAbortable& other)
    : m_terminate(other.m_terminate), m_terminated(other.m_terminated), m_ownsEvents(other.m_ownsEvents)
{
}

ZoAbortable& ZoAbortable::operator=(const ZoAbortable& other)
{
    m_terminate = other.m_terminate;
    m_terminated = other.m_terminated;
    m_ownsEvents = other.m_ownsEvents;
    return *this;
}

ZoAbortable::~ZoAbortable()
{
    if (m_ownsEvents) {
        delete m_terminate;
        delete m_terminated;
    }
}
