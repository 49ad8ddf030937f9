#include "base/ZoRTTIRegistration.h"

template class ZoSingleton<ZoRTTIRegistration>;

ZoRTTIRegistration::ZoRTTIRegistration() : m_classes(1000, 17, true) {}

ZoRTTIRegistration& ZoRTTIRegistration::GetInstance()
{
    return ZoSingleton<ZoRTTIRegistration>::GetInstance();
}

bool ZoRTTIRegistration::HasInstance()
{
    return ZoSingleton<ZoRTTIRegistration>::HasInstance();
}

void ZoRTTIRegistration::Register(const CString& name, const ZoRTTI* rtti, ZoRTTI::CreateFunction create,
                                  ZoRTTI::CloneFunction clone)
{
    m_classes[name] = Registration{rtti, create, clone};
}

const ZoRTTIRegistration::Registration* ZoRTTIRegistration::Lookup(const CString& name) const
{
    return m_classes.Find(name);
}
