#include "compression/ZoDecompressLZMA.h"

#include "base/ZoException.h"
#include "platform/ZoOS.h"

#include <new>

namespace {

#if defined(_WIN32)
const char16_t sc_libraryPath[] = u"./MepCompress.dll";
#else
const char16_t sc_libraryPath[] = u"./libMepCompress.so";
#endif
const uint32_t sc_decompressOrdinal = 2;
// The codec's answer to a size query; any other status means it could not read a size.
const int32_t sc_sizeQueryAnswer = -1;

} // namespace

ZoDecompressLZMA::ZoDecompressLZMA() : m_outputBuffer(), m_outputSize(0), m_library(), m_entryPoint(nullptr)
{
    ZoOS::LibraryHandle library = ZoOS::LoadDynamicLibrary(sc_libraryPath);
    if (library == nullptr)
        throw ZoException(u"..\\compression\\ZoDecompressLZMA.cpp", u"ZoDecompressLZMA", u"ZoDecompressLZMA", 54);
    // Owned from here on, so the throw below releases it again.
    m_library = std::shared_ptr<void>(library, ZoOS::FreeDynamicLibrary);
    m_entryPoint = reinterpret_cast<EntryPoint>(ZoOS::GetDynamicEntry(library, sc_decompressOrdinal));
    if (m_entryPoint == nullptr)
        throw ZoException(u"..\\compression\\ZoDecompressLZMA.cpp", u"ZoDecompressLZMA", u"ZoDecompressLZMA", 61);
}

ZoDecompressLZMA::~ZoDecompressLZMA()
{
    // The buffer goes first, then (with m_library) the codec library.
    reset();
}

void ZoDecompressLZMA::reset()
{
    m_outputBuffer.reset();
    m_outputSize = 0;
}

int ZoDecompressLZMA::Decompress(const unsigned char* input, uint32_t size)
{
    // The size query comes before anything is freed: input the codec cannot even size leaves the
    // earlier output in place.
    const unsigned char* source = input;
    unsigned char* noBuffer = nullptr;
    uint32_t needed = 0;
    if (m_entryPoint(&source, &noBuffer, size, &needed, 0) != sc_sizeQueryAnswer)
        return 0;

    reset();
    try {
        m_outputBuffer = std::shared_ptr<unsigned char[]>(new unsigned char[needed]);
    } catch (const std::bad_alloc&) {
        // The decoders report a failed allocation as this C string, and their callers catch it
        // as such; the compressors report theirs through their return value instead.
        throw "Can not allocate memory";
    }

    source = input;
    unsigned char* target = m_outputBuffer.get();
    uint32_t length = needed;
    if (m_entryPoint(&source, &target, size, &length, 0) != 0) {
        // The partly decoded buffer is kept, with a size of 0, rather than freed: the next call
        // or the destructor frees it, and nothing reads it through the size.
        return 0;
    }
    // The codec never reports more than it was given room for; the check keeps a faulty one
    // from making GetOutputSize() overstate the buffer.
    m_outputSize = length <= needed ? length : needed;
    return 1;
}
