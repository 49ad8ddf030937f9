#include "base/ZoRTTIRegistration.h"

template class ZO_INSTANCE_API ZoSingleton<ZoRTTIRegistration>;

ZoRTTIRegistration::ZoRTTIRegistration() : m_classes(1000, 17, true) {}

void ZoRTTIRegistration::Register(const CString& name, const ZoRTTI* rtti, ZoRTTI::CreateFunction create,
                                  ZoRTTI::CloneFunction clone)
{
    m_classes[name] = Registration{rtti, create, clone};
}

const ZoRTTIRegistration::Registration* ZoRTTIRegistration::Lookup(const CString& name) const
{
    return m_classes.Find(name);
}
