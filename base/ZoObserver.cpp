#include "base/ZoObserver.h"

ZoObserver::ZoObserver() : m_observables(10) {}

ZoObserver::ZoObserver(const ZoObserver&) : m_observables(10) {}

ZoObserver& ZoObserver::operator=(const ZoObserver&)
{
    return *this;
}

ZoObserver::~ZoObserver()
{
    while (!m_observables.IsEmpty()) {
        ZoObservable* observable = m_observables.GetHead();
        m_observables.RemoveHead();
        observable->removeObserver(*this);
    }
}

void ZoObserver::Observe(ZoObservable& observable, EMessageType type, void* userData, int once)
{
    observable.addObserver(*this, type, userData, once);
    rememberObservable(observable);
}

void ZoObserver::Observe(ZoObservable& observable, EMessageType type, int once)
{
    observable.addObserver(*this, type, once);
    rememberObservable(observable);
}

void ZoObserver::Observe(ZoObservable& observable, void* userData, int once)
{
    observable.addObserver(*this, userData, once);
    rememberObservable(observable);
}

void ZoObserver::Observe(ZoObservable& observable, int once)
{
    observable.addObserver(*this, once);
    rememberObservable(observable);
}

void ZoObserver::Unobserve(ZoObservable& observable, EMessageType type)
{
    observable.removeObserver(*this, type);
    if (!observable.IsObserver(*this))
        RemoveObservable(observable);
}

void ZoObserver::Unobserve(ZoObservable& observable)
{
    observable.removeObserver(*this);
    RemoveObservable(observable);
}

bool ZoObserver::IsObserving(const ZoObservable& observable) const
{
    return m_observables.FindPos(const_cast<ZoObservable*>(&observable)) != nullptr;
}

void ZoObserver::rememberObservable(ZoObservable& observable)
{
    if (observable.IsObserver(*this) && m_observables.FindPos(&observable) == nullptr)
        m_observables.AddTail(&observable);
}

void ZoObserver::RemoveObservable(const ZoObservable& observable)
{
    if (ZoList<ZoObservable*, 0x21>::Position position = m_observables.FindPos(const_cast<ZoObservable*>(&observable)))
        m_observables.RemoveAt(position);
}
