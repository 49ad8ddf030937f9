/// @class ZoClassName
/// ZoClassName: a class name as a small value, stored beside objects by the serialization layer.
/// @ingroup objectmodel
#pragma once

class ZoStreamRead;
class ZoStreamWrite;

#include "platform/CString.h"
#include "platform/ZoExport.h"

class ZO_API ZoClassName
{
public:
    ZoClassName() = default;
    ZoClassName(const CString& name) : m_name(name) {}
    ZoClassName(const ZoClassName& other) = default;
    ZoClassName& operator=(const ZoClassName& other) = default;
    ZoClassName& operator=(const CString& name)
    {
        m_name = name;
        return *this;
    }

    void SetName(const CString& name) { m_name = name; }
    const CString& GetName() const { return m_name; }
    operator const CString&() const { return m_name; }

    /// Reads or writes the name as one string through the stream.
    void Serialize(ZoStreamRead& stream);
    void Serialize(ZoStreamWrite& stream) const;

private:
    CString m_name;
};
