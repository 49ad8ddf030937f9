/// @class ZoAttributeParameter
/// ZoAttributeParameter: per-attribute settings kept by an attribute container under the attribute's
/// unique ID. The base holds only a valid flag (true when made) and serializes as a bare version
/// record 0; derived classes add their own settings. Registered with the type registry, so it can be
/// created and cloned by name.
/// @ingroup graphs
#pragma once

#include "base/ZoClassRTTI.h"
#include "base/ZoReferenceCountedClass.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/ZoExport.h"

#include <cstdint>

// The counting base comes first, so that the object it deletes starts at its own address.
class ZO_API ZoAttributeParameter : public ZoReferenceCountedClass<ZoAttributeParameter>, public ZoClassRTTI
{
    ZO_DECLARE_RTTI()

    ZoAttributeParameter();
    /// Copies the settings; the copy has a reference count of its own.
    ZoAttributeParameter(const ZoAttributeParameter& other);
    /// Copies the settings; the reference count stays this object's.
    ZoAttributeParameter& operator=(const ZoAttributeParameter& other);
    ~ZoAttributeParameter() override;

    /// True unless a derived class has marked its settings invalid; a new object is valid.
    bool IsValid() const { return m_valid; }

    /// The figure memory reports have always used for the base object: 40.
    virtual uint32_t GetMemoryUsage() const;
    /// Writes the version record 0.
    virtual void Serialize(ZoStreamWriteBinary& stream) const;
    /// Reads the version record; throws ZoExceptionWrongFileVersion for one above 0.
    virtual void Serialize(ZoStreamReadBinary& stream);

protected:
    /// For derived classes whose settings can be unusable (out of range, not yet set).
    void setValid(bool valid) { m_valid = valid; }

private:
    bool m_valid;
};
