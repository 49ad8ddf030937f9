#include "base/ZoArray.h"

#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"

namespace {
// Throw sites of the byte array name its header: that is where the class has always lived.
const char16_t kSource[] = u"..\\base\\ZoArray.h";
const uint32_t kVersionedMarker = 0xFFFFFFFFu;
const unsigned int kVersion = 1;
} // namespace

template <>
void ZoArray<unsigned char, 0>::Serialize(ZoStreamWriteBinary& stream) const
{
    stream << kVersionedMarker;
    stream.WriteVersion(kVersion);
    stream << m_count;
    stream << static_cast<uint32_t>(1);
    if (m_count != 0)
        stream.WriteBuffer(m_data, m_count);
}

template <>
void ZoArray<unsigned char, 0>::Serialize(ZoStreamReadBinary& stream)
{
    // Files from before the versioned form start with the count itself. A count of 0xFFFFFFFF
    // therefore cannot be told from the marker, which is why it is refused below.
    uint32_t count = 0;
    stream >> count;
    if (count == kVersionedMarker) {
        stream.ReadAndCompareVersion(kVersion);
        stream >> count;
    }
    uint32_t elementSize = 0;
    stream >> elementSize;
    if (elementSize != 1 || count == kVersionedMarker)
        throw ZoExceptionWrongFileVersion(kSource, u"ZoArray", u"Serialize", 541);
    if (!readElementBytes(stream, count))
        throw ZoExceptionStream(kSource, u"ZoArray", u"Serialize", ZoException::sc_uiNoLine);
}

// The byte array is the one instantiation the library exports; users share this copy.
template class ZoArray<unsigned char, 0>;
