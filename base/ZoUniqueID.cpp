#include "base/ZoUniqueID.h"

#include "base/ZoException.h"
#include "platform/ZoOS.h"

CString ZoUniqueID::GetUniqueID()
{
    CString text;
    if (!ZoOS::CreateSequentialUuidText(text))
        throw ZoException(u"..\\base\\ZoUniqueID.cpp", u"ZoUniqueID", u"GetUniqueID", 49);
    text.MakeUpper();
    return text;
}
