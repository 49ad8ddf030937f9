/* A stand-in for the LZMA codec library in builds that have no liblzma for their target (the
 * Windows cross-build): it exports entries 1 and 2 with the real calling contract, so the LZMA
 * classes can be tested end to end, but it stores the data instead of compressing it. Its data is
 * the real format's 13-byte header (a properties byte, a 4-byte dictionary size, the 8-byte
 * uncompressed size) followed by the bytes as they are. */
#include <stdint.h>
#include <string.h>

#define HEADER_SIZE 13u

static void writeHeader(unsigned char* out, uint32_t size)
{
    static const unsigned char properties[5] = {0x5D, 0x00, 0x00, 0x10, 0x00};
    memcpy(out, properties, sizeof properties);
    for (unsigned i = 0; i < 8; ++i)
        out[5 + i] = (unsigned char)(i < 4 ? (size >> (8 * i)) & 0xFFu : 0u);
}

int32_t StandInCompress(const unsigned char** input, unsigned char** output, uint32_t inputSize, uint32_t* outputSize,
                        int32_t reserved)
{
    (void)reserved;
    if (input == NULL || output == NULL || *output == NULL || outputSize == NULL || (*input == NULL && inputSize != 0))
        return 1;
    if (*outputSize < HEADER_SIZE || *outputSize - HEADER_SIZE < inputSize)
        return 2;
    writeHeader(*output, inputSize);
    if (inputSize != 0)
        memcpy(*output + HEADER_SIZE, *input, inputSize);
    *outputSize = inputSize + HEADER_SIZE;
    return 0;
}

/* A null output buffer asks for the size: answered from the header with -1. */
int32_t StandInDecompress(const unsigned char** input, unsigned char** output, uint32_t inputSize, uint32_t* outputSize,
                          int32_t reserved)
{
    (void)reserved;
    if (input == NULL || *input == NULL || output == NULL || outputSize == NULL || inputSize < HEADER_SIZE)
        return 1;
    const unsigned char* header = *input;
    if (header[0] != 0x5D)
        return 3;
    uint64_t size = 0;
    for (unsigned i = 0; i < 8; ++i)
        size |= (uint64_t)header[5 + i] << (8 * i);
    if (size != inputSize - HEADER_SIZE)
        return 4;
    if (*output == NULL) {
        *outputSize = (uint32_t)size;
        return -1;
    }
    if (*outputSize < size)
        return 5;
    if (size != 0)
        memcpy(*output, *input + HEADER_SIZE, (size_t)size);
    *outputSize = (uint32_t)size;
    return 0;
}
