#include "compression/ZoCompressLZMA.h"

#include "base/ZoException.h"
#include "platform/ZoOS.h"

#include <new>
#include <utility>

namespace {

#if defined(_WIN32)
const char16_t sc_libraryPath[] = u"./MepCompress.dll";
#else
const char16_t sc_libraryPath[] = u"./libMepCompress.so";
#endif
const uint32_t sc_compressOrdinal = 1;

// An empty pointer when the memory cannot be had; Compress reports that as 0, never by throwing.
std::shared_ptr<unsigned char[]> allocateOutput(uint64_t size)
{
    try {
        return std::shared_ptr<unsigned char[]>(new unsigned char[size]);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

ZoCompressLZMA::ZoCompressLZMA() : m_outputBuffer(), m_outputSize(0), m_library(), m_entryPoint(nullptr)
{
    // Both throws name the decompressor's class and constructor, as this constructor always has:
    // reports and log filters written against earlier releases match those texts.
    ZoOS::LibraryHandle library = ZoOS::LoadDynamicLibrary(sc_libraryPath);
    if (library == nullptr)
        throw ZoException(u"..\\compression\\ZoCompressLZMA.cpp", u"ZoDecompressLZMA", u"ZoDecompressLZMA", 49);
    // Owned from here on, so the throw below releases it again.
    m_library = std::shared_ptr<void>(library, ZoOS::FreeDynamicLibrary);
    m_entryPoint = reinterpret_cast<EntryPoint>(ZoOS::GetDynamicEntry(library, sc_compressOrdinal));
    if (m_entryPoint == nullptr)
        throw ZoException(u"..\\compression\\ZoCompressLZMA.cpp", u"ZoDecompressLZMA", u"ZoDecompressLZMA", 56);
}

ZoCompressLZMA::~ZoCompressLZMA()
{
    // The buffer goes first, then (with m_library) the codec library.
    reset();
}

void ZoCompressLZMA::reset()
{
    m_outputBuffer.reset();
    m_outputSize = 0;
}

int ZoCompressLZMA::Compress(const unsigned char* input, uint32_t size, uint32_t)
{
    if (m_outputBuffer || m_outputSize != 0)
        reset();

    // 5% and 64 KB above the input: LZMA expands incompressible data by about 1.4%, and the
    // 64 KB covers the header and the coder's flush on small inputs. Inputs above about 3.9 GB
    // would need more than a 32-bit capacity can say; they get the largest one and fail cleanly
    // if it is not enough.
    const uint64_t wanted = static_cast<uint64_t>(size / 20) * 21 + 65536;
    uint32_t capacity = wanted > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(wanted);
    std::shared_ptr<unsigned char[]> output = allocateOutput(capacity);
    if (!output)
        return 0;

    const unsigned char* source = input;
    unsigned char* target = output.get();
    const uint32_t allocated = capacity;
    const int32_t status = m_entryPoint(&source, &target, size, &capacity, 0);
    m_outputBuffer = std::move(output);
    m_outputSize = capacity;
    // A size beyond the buffer would let readers of GetOutputSize() bytes overrun it.
    if (status != 0 || capacity > allocated) {
        reset();
        return 0;
    }
    return 1;
}
