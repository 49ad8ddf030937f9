#include "base/ZoLatestError.h"

#include "platform/ZoOS.h"

ZoLatestError::ZoLatestError()
{
    Update();
}

void ZoLatestError::Update()
{
    m_errorNumber = ZoOS::GetLastErrorCode();
    m_errorMessage = ZoOS::GetErrorText(m_errorNumber);
}
