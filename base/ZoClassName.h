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
    /// An empty name.
    ZoClassName() = default;
    /// Takes the name as given: nothing checks that a class of that name is registered.
    ZoClassName(const CString& name) : m_name(name) {}
    ///@{
    /// Copies the name.
    ZoClassName(const ZoClassName& other) = default;
    ZoClassName& operator=(const ZoClassName& other) = default;
    ///@}
    /// Takes the name as given, as the constructor from a string does.
    ZoClassName& operator=(const CString& name)
    {
        m_name = name;
        return *this;
    }

    /// Takes the name as given, as the constructor from a string does.
    void SetName(const CString& name) { m_name = name; }
    ///@{
    /// The name, empty when none was set.
    const CString& GetName() const { return m_name; }
    operator const CString&() const { return m_name; }
    ///@}

    ///@{
    /// Reads or writes the name as one string in the stream's own string form, without version or
    /// marker. Throws what the stream throws.
    void Serialize(ZoStreamRead& stream);
    void Serialize(ZoStreamWrite& stream) const;
    ///@}

private:
    CString m_name;
};
