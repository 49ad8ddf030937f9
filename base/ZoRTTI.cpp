#include "base/ZoRTTI.h"

#include "base/ZoRTTIRegistration.h"

ZoRTTI::ZoRTTI(const CString& name, CreateFunction create, CloneFunction clone) : m_name(name), m_baseList(nullptr)
{
    registerSelf(create, clone);
}

ZoRTTI::ZoRTTI(const CString& name, const ZoRTTI& base, CreateFunction create, CloneFunction clone)
    : m_name(name), m_baseList(nullptr)
{
    registerSelf(create, clone);
    m_baseList = new uintptr_t[2];
    m_baseList[0] = 1;
    m_baseList[1] = reinterpret_cast<uintptr_t>(&base);
}

ZoRTTI::ZoRTTI(const CString& name, const ZoRTTI& base1, const ZoRTTI& base2, CreateFunction create,
               CloneFunction clone)
    : m_name(name), m_baseList(nullptr)
{
    registerSelf(create, clone);
    m_baseList = new uintptr_t[3];
    m_baseList[0] = 2;
    m_baseList[1] = reinterpret_cast<uintptr_t>(&base1);
    m_baseList[2] = reinterpret_cast<uintptr_t>(&base2);
}

ZoRTTI::~ZoRTTI()
{
    delete[] m_baseList;
}

void ZoRTTI::registerSelf(CreateFunction create, CloneFunction clone)
{
    ZoRTTIRegistration::GetInstance().Register(m_name, this, create, clone);
}

bool ZoRTTI::IsKindOf(const ZoRTTI& other) const
{
    return this == &other || isDerivedFrom(other);
}

// Depth first, bases in stored order; the first hit wins.
bool ZoRTTI::isDerivedFrom(const ZoRTTI& other) const
{
    for (uint32_t i = 0; i < GetBaseCount(); ++i)
        if (GetBase(i).IsKindOf(other))
            return true;
    return false;
}

const ZoRTTI* ZoRTTI::Find(const CString& name)
{
    const ZoRTTIRegistration::Registration* found = ZoRTTIRegistration::GetInstance().Lookup(name);
    return found != nullptr ? found->rtti : nullptr;
}

ZoRTTI::CreateFunction ZoRTTI::getCreate(const CString& name)
{
    const ZoRTTIRegistration::Registration* found = ZoRTTIRegistration::GetInstance().Lookup(name);
    return found != nullptr ? found->create : nullptr;
}

ZoRTTI::CloneFunction ZoRTTI::getClone(const CString& name)
{
    const ZoRTTIRegistration::Registration* found = ZoRTTIRegistration::GetInstance().Lookup(name);
    return found != nullptr ? found->clone : nullptr;
}
