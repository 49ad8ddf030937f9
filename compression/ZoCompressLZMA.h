/// @class ZoCompressLZMA
/// ZoCompressLZMA: compresses one whole buffer with the LZMA codec library, loaded at run time.
///
/// The codec is not linked into the library: each object loads "./libMepCompress.so" (Windows:
/// "./MepCompress.dll") from the process's current folder when it is constructed, enters it through
/// export ordinal 1 and releases it when destroyed. Its output starts with a 13-byte header holding
/// the original size, which ZoDecompressLZMA reads back, so the caller need not keep it. The output
/// buffer is owned by the object and exposed until the next call or its destruction.
///
/// A copy shares its source's output buffer and loaded library, as a member-wise copy would; both
/// stay alive until the last object holding them goes, so copies are safe, though not something to
/// rely on.
/// @ingroup compression
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>

class ZO_API ZoCompressLZMA
{
public:
    /// The codec library's entry: status = f(&input, &output, inputSize, &outputSize, 0), where
    /// outputSize is the buffer's capacity on entry and the bytes produced on return.
    typedef int32_t (*EntryPoint)(const unsigned char** input, unsigned char** output, uint32_t inputSize,
                                  uint32_t* outputSize, int32_t reserved);

    /// Throws: ZoException when the codec library cannot be loaded or lacks export ordinal 1.
    ZoCompressLZMA();
    virtual ~ZoCompressLZMA();

    /// Compresses `size` bytes (input may be null when size is 0); the third argument is accepted
    /// and ignored. Returns 1 on success and 0 when the buffer cannot be allocated or the codec
    /// fails; after a failure the object is empty. Never throws.
    int Compress(const unsigned char* input, uint32_t size, uint32_t unused);

    /// The last successful call's data, or null when the object is empty.
    const unsigned char* GetOutputBuffer() const { return m_outputBuffer.get(); }
    /// Bytes in GetOutputBuffer(); 0 when the object is empty.
    uint64_t GetOutputSize() const { return m_outputSize; }

protected:
    /// Frees the output buffer (this object's share of it) and sets the size to 0.
    void reset();

private:
    std::shared_ptr<unsigned char[]> m_outputBuffer;
    uint64_t m_outputSize;
    std::shared_ptr<void> m_library;
    EntryPoint m_entryPoint;
};
