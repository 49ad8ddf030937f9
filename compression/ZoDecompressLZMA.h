/// @class ZoDecompressLZMA
/// ZoDecompressLZMA: decompresses one whole buffer written by ZoCompressLZMA, with the LZMA codec
/// library loaded at run time.
///
/// Each object loads "./libMepCompress.so" (Windows: "./MepCompress.dll") from the process's current
/// folder when it is constructed, enters it through export ordinal 2 and releases it when destroyed.
/// A call first asks the codec for the decompressed size, which the data's header carries, then
/// allocates that much and decodes into it. The output buffer is owned by the object and exposed
/// until the next call or its destruction.
///
/// The codec checks the header before the size reaches the allocation: data claiming more than it
/// could expand to is damaged, so a short input cannot make the object allocate gigabytes.
///
/// A copy shares its source's output buffer and loaded library, as a member-wise copy would; both
/// stay alive until the last object holding them goes, so copies are safe, though not something to
/// rely on.
/// @ingroup compression
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>

class ZO_API ZoDecompressLZMA
{
public:
    /// The codec library's entry: status = f(&input, &output, inputSize, &outputSize, 0). With a
    /// null output buffer it is the size query, answering -1 and the size through outputSize.
    typedef int32_t (*EntryPoint)(const unsigned char** input, unsigned char** output, uint32_t inputSize,
                                  uint32_t* outputSize, int32_t reserved);

    /// Throws: ZoException when the codec library cannot be loaded or lacks export ordinal 2.
    ZoDecompressLZMA();
    virtual ~ZoDecompressLZMA();

    /// Decompresses `size` bytes. Returns 1 on success and 0 on failure:
    /// - when the size query fails (damaged header, too short an input), the object keeps what it
    ///   held before;
    /// - when decoding fails, the object keeps the new, partly written buffer with an output size
    ///   of 0; the next call or the destructor frees it.
    /// Throws: the C string "Can not allocate memory" (a const char*) when the buffer of the size
    /// the header gives cannot be allocated.
    int Decompress(const unsigned char* input, uint32_t size);

    /// The last call's buffer, or null when the object is empty.
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
