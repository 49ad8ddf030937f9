// MepCompress: the LZMA codec library that ZoCompressLZMA and ZoDecompressLZMA load at run time.
//
// Two C entries, found by ordinal (on ELF: the symbols zo_ordinal_1 and zo_ordinal_2), share one
// shape: status = f(&input, &output, inputSize, &outputSize, reserved). outputSize holds the
// output buffer's capacity on entry and the bytes produced on return. Status 0 is success; -1 is
// only ever the answer of a size query; every failure is a positive status.
//
// The data is the ".lzma" layout: a 13-byte header (one properties byte for lc/lp/pb, the
// dictionary size as 4 little-endian bytes, the uncompressed size as 8 little-endian bytes)
// followed by the raw LZMA range-coded payload. The header always carries the real size, so the
// decoder can answer the size query from the header alone and the caller allocates before
// decoding; the payload has no end marker, although one is accepted where the size says the data
// ends, as other encoders write it.
//
// Neither entry ever writes more than the capacity it is given, and neither trusts the header:
// a size that is "unknown", wider than 32 bits or larger than the payload could possibly expand
// to is damaged input, so a short file cannot make the caller allocate gigabytes.
#include <lzma.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(_WIN32)
#  define MEP_EXPORT extern "C" __declspec(dllexport)
#else
#  define MEP_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

enum EStatus : int32_t
{
    eStatusOk = 0,
    eStatusSizeQuery = -1,
    eStatusBadArgument = 1,
    eStatusDamagedInput = 2,
    eStatusOutputTooSmall = 3,
    eStatusOutOfMemory = 4,
    eStatusInternalError = 5,
};

const size_t sc_headerSize = 13;
const uint32_t sc_minimumDictionary = 4096; // liblzma's smallest dictionary
const uint32_t sc_preset = 6;               // liblzma's default trade-off of speed and size

// The most output one payload byte can stand for. A bit costs at least -log2(2017/2048) of a bit
// of range (the adaptive probabilities saturate at 2017/2048), and the cheapest way to produce
// bytes is a repeated 273-byte match of 14 such bits, so a payload byte can expand to at most
// about 7090 bytes; 8192 leaves room for the range coder's rounding and its five start bytes.
const uint64_t sc_maximumExpansion = 8192;

struct Header
{
    lzma_options_lzma options;
    uint64_t uncompressedSize;
};

uint32_t readLittleEndian32(const unsigned char* bytes)
{
    return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
           static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

void writeLittleEndian(unsigned char* bytes, uint64_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

// The dictionary size a header records: the smallest 2^n or 2^n + 2^(n-1) not below `size`, the
// only values that strict .lzma readers accept.
uint32_t headerDictionarySize(uint32_t size)
{
    uint32_t candidate = sc_minimumDictionary;
    while (candidate < size) {
        const uint32_t power = candidate & ~(candidate >> 1); // candidate is 2^n or 2^n + 2^(n-1)
        const uint32_t next = candidate == power ? power + (power >> 1) : power << 1;
        if (next <= candidate)
            return UINT32_MAX; // would overflow: the largest size a header can say
        candidate = next;
    }
    return candidate;
}

// Reads and checks a header; false when it cannot describe data the payload could hold.
bool readHeader(const unsigned char* input, uint32_t inputSize, Header& header)
{
    if (inputSize < sc_headerSize)
        return false;
    uint32_t properties = input[0];
    // The properties byte packs (pb * 5 + lp) * 9 + lc; liblzma decodes lc + lp <= 4 only.
    if (properties >= 9 * 5 * 5)
        return false;
    std::memset(&header.options, 0, sizeof header.options);
    header.options.pb = properties / (9 * 5);
    properties %= 9 * 5;
    header.options.lp = properties / 9;
    header.options.lc = properties % 9;
    if (header.options.lc + header.options.lp > LZMA_LCLP_MAX)
        return false;
    header.options.dict_size = readLittleEndian32(input + 1);
    header.uncompressedSize =
        static_cast<uint64_t>(readLittleEndian32(input + 5)) | static_cast<uint64_t>(readLittleEndian32(input + 9)) << 32;
    // "Unknown" (all ones) and anything past 32 bits cannot be answered through a 32-bit size.
    if (header.uncompressedSize > UINT32_MAX)
        return false;
    const uint64_t payloadSize = inputSize - sc_headerSize;
    return header.uncompressedSize <= payloadSize * sc_maximumExpansion;
}

int32_t compress(const unsigned char* input, uint32_t inputSize, unsigned char* output, uint32_t* outputSize)
{
    const uint32_t capacity = *outputSize;
    *outputSize = 0;
    if (capacity < sc_headerSize)
        return eStatusOutputTooSmall;

    lzma_options_lzma options;
    if (lzma_lzma_preset(&options, sc_preset))
        return eStatusInternalError;
    // A dictionary larger than the input buys nothing and costs the decoder memory.
    const uint32_t dictionary = headerDictionarySize(inputSize);
    if (dictionary < options.dict_size)
        options.dict_size = dictionary;
    // LZMA1EXT without the end-marker flag: the header carries the size, so no marker is written.
    options.ext_flags = 0;
    lzma_set_ext_size(options, inputSize);
    const lzma_filter filters[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};

    output[0] = static_cast<unsigned char>((options.pb * 5 + options.lp) * 9 + options.lc);
    writeLittleEndian(output + 1, options.dict_size, 4);
    writeLittleEndian(output + 5, inputSize, 8);

    // liblzma wants a real pointer even for no bytes.
    static const unsigned char s_noInput = 0;
    size_t produced = 0;
    const lzma_ret result = lzma_raw_buffer_encode(filters, nullptr, inputSize > 0 ? input : &s_noInput, inputSize,
                                                   output + sc_headerSize, &produced, capacity - sc_headerSize);
    switch (result) {
    case LZMA_OK:
        *outputSize = static_cast<uint32_t>(sc_headerSize + produced);
        return eStatusOk;
    case LZMA_BUF_ERROR:
        return eStatusOutputTooSmall;
    case LZMA_MEM_ERROR:
        return eStatusOutOfMemory;
    default:
        return eStatusInternalError;
    }
}

int32_t decompress(const unsigned char* input, uint32_t inputSize, unsigned char* output, uint32_t* outputSize)
{
    Header header;
    if (!readHeader(input, inputSize, header)) {
        *outputSize = 0;
        return eStatusDamagedInput;
    }
    const uint32_t uncompressedSize = static_cast<uint32_t>(header.uncompressedSize);
    if (output == nullptr) {
        *outputSize = uncompressedSize;
        return eStatusSizeQuery;
    }
    const uint32_t capacity = *outputSize;
    *outputSize = 0;
    if (capacity < uncompressedSize)
        return eStatusOutputTooSmall;

    // Nothing can refer further back than the output is long, so a dictionary of the output's
    // size serves any header; a damaged header's 4 GB dictionary is never allocated.
    if (header.options.dict_size > uncompressedSize)
        header.options.dict_size = uncompressedSize;
    if (header.options.dict_size < sc_minimumDictionary)
        header.options.dict_size = sc_minimumDictionary;
    header.options.ext_flags = LZMA_LZMA1EXT_ALLOW_EOPM;
    lzma_set_ext_size(header.options, header.uncompressedSize);
    const lzma_filter filters[] = {{LZMA_FILTER_LZMA1EXT, &header.options}, {LZMA_VLI_UNKNOWN, nullptr}};

    // The decoder is given exactly the claimed size as room: it stops there, and bytes that the
    // payload holds beyond it are not looked at.
    size_t consumed = 0;
    size_t produced = 0;
    const lzma_ret result = lzma_raw_buffer_decode(filters, nullptr, input + sc_headerSize, &consumed,
                                                   inputSize - sc_headerSize, output, &produced, uncompressedSize);
    switch (result) {
    case LZMA_OK:
        if (produced != uncompressedSize)
            return eStatusDamagedInput;
        *outputSize = uncompressedSize;
        return eStatusOk;
    case LZMA_MEM_ERROR:
        return eStatusOutOfMemory;
    default:
        // Data errors, truncated payloads and unsupported properties alike.
        return eStatusDamagedInput;
    }
}

} // namespace

// Ordinal 1: compresses inputSize bytes into the caller's buffer of *outputSize bytes.
MEP_EXPORT int32_t zo_ordinal_1(const unsigned char** input, unsigned char** output, uint32_t inputSize,
                                uint32_t* outputSize, int32_t /*reserved*/)
{
    if (input == nullptr || output == nullptr || outputSize == nullptr)
        return eStatusBadArgument;
    if (*output == nullptr || (*input == nullptr && inputSize > 0)) {
        *outputSize = 0;
        return eStatusBadArgument;
    }
    return compress(*input, inputSize, *output, outputSize);
}

// Ordinal 2: decompresses into the caller's buffer of *outputSize bytes; with a null buffer it is
// the size query, answering -1 and the size from the header without decoding anything.
MEP_EXPORT int32_t zo_ordinal_2(const unsigned char** input, unsigned char** output, uint32_t inputSize,
                                uint32_t* outputSize, int32_t /*reserved*/)
{
    if (input == nullptr || output == nullptr || outputSize == nullptr)
        return eStatusBadArgument;
    if (*input == nullptr) {
        *outputSize = 0;
        return inputSize > 0 ? eStatusBadArgument : eStatusDamagedInput;
    }
    return decompress(*input, inputSize, *output, outputSize);
}
