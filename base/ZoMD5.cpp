#include "base/ZoMD5.h"

#include <cstring>
#include <vector>

namespace {

inline uint32_t loadLittleEndian(const unsigned char* bytes)
{
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    uint32_t word;
    std::memcpy(&word, bytes, 4);
    return word;
#else
    return static_cast<uint32_t>(bytes[0]) | (static_cast<uint32_t>(bytes[1]) << 8) |
           (static_cast<uint32_t>(bytes[2]) << 16) | (static_cast<uint32_t>(bytes[3]) << 24);
#endif
}

inline uint32_t rotateLeft(uint32_t value, int shift)
{
    return (value << shift) | (value >> (32 - shift));
}

// The four round functions. F and G are written so that they need no NOT of b: F selects c or d by
// b with one AND between two XORs, and G adds the two disjoint halves instead of ORing them, which
// lets the processor start the (d AND b) half before c is known.
#define ZO_MD5_F(b, c, d) ((d) ^ ((b) & ((c) ^ (d))))
#define ZO_MD5_I(b, c, d) ((c) ^ ((b) | ~(d)))
#define ZO_MD5_H(b, c, d) ((b) ^ (c) ^ (d))

#define ZO_MD5_STEP_F(a, b, c, d, word, constant, shift)                                                     \
    a += ZO_MD5_F(b, c, d) + (word) + (constant);                                                           \
    a = rotateLeft(a, shift) + (b)
#define ZO_MD5_STEP_G(a, b, c, d, word, constant, shift)                                                     \
    a += ((d) & (b)) + (word) + (constant);                                                                 \
    a += (~(d)) & (c);                                                                                      \
    a = rotateLeft(a, shift) + (b)
#define ZO_MD5_STEP_H(a, b, c, d, word, constant, shift)                                                     \
    a += ZO_MD5_H(b, c, d) + (word) + (constant);                                                           \
    a = rotateLeft(a, shift) + (b)
#define ZO_MD5_STEP_I(a, b, c, d, word, constant, shift)                                                     \
    a += ZO_MD5_I(b, c, d) + (word) + (constant);                                                           \
    a = rotateLeft(a, shift) + (b)

// Hashes `count` consecutive 64-byte blocks into `state`, keeping the four words in registers.
void hashBlocks(uint32_t state[4], const unsigned char* data, size_t count)
{
    uint32_t a = state[0];
    uint32_t b = state[1];
    uint32_t c = state[2];
    uint32_t d = state[3];
    for (; count > 0; --count, data += 64) {
        uint32_t x[16];
        for (int i = 0; i < 16; ++i)
            x[i] = loadLittleEndian(data + 4 * i);
        const uint32_t aa = a, bb = b, cc = c, dd = d;

        ZO_MD5_STEP_F(a, b, c, d, x[0], 0xd76aa478, 7);
        ZO_MD5_STEP_F(d, a, b, c, x[1], 0xe8c7b756, 12);
        ZO_MD5_STEP_F(c, d, a, b, x[2], 0x242070db, 17);
        ZO_MD5_STEP_F(b, c, d, a, x[3], 0xc1bdceee, 22);
        ZO_MD5_STEP_F(a, b, c, d, x[4], 0xf57c0faf, 7);
        ZO_MD5_STEP_F(d, a, b, c, x[5], 0x4787c62a, 12);
        ZO_MD5_STEP_F(c, d, a, b, x[6], 0xa8304613, 17);
        ZO_MD5_STEP_F(b, c, d, a, x[7], 0xfd469501, 22);
        ZO_MD5_STEP_F(a, b, c, d, x[8], 0x698098d8, 7);
        ZO_MD5_STEP_F(d, a, b, c, x[9], 0x8b44f7af, 12);
        ZO_MD5_STEP_F(c, d, a, b, x[10], 0xffff5bb1, 17);
        ZO_MD5_STEP_F(b, c, d, a, x[11], 0x895cd7be, 22);
        ZO_MD5_STEP_F(a, b, c, d, x[12], 0x6b901122, 7);
        ZO_MD5_STEP_F(d, a, b, c, x[13], 0xfd987193, 12);
        ZO_MD5_STEP_F(c, d, a, b, x[14], 0xa679438e, 17);
        ZO_MD5_STEP_F(b, c, d, a, x[15], 0x49b40821, 22);

        ZO_MD5_STEP_G(a, b, c, d, x[1], 0xf61e2562, 5);
        ZO_MD5_STEP_G(d, a, b, c, x[6], 0xc040b340, 9);
        ZO_MD5_STEP_G(c, d, a, b, x[11], 0x265e5a51, 14);
        ZO_MD5_STEP_G(b, c, d, a, x[0], 0xe9b6c7aa, 20);
        ZO_MD5_STEP_G(a, b, c, d, x[5], 0xd62f105d, 5);
        ZO_MD5_STEP_G(d, a, b, c, x[10], 0x02441453, 9);
        ZO_MD5_STEP_G(c, d, a, b, x[15], 0xd8a1e681, 14);
        ZO_MD5_STEP_G(b, c, d, a, x[4], 0xe7d3fbc8, 20);
        ZO_MD5_STEP_G(a, b, c, d, x[9], 0x21e1cde6, 5);
        ZO_MD5_STEP_G(d, a, b, c, x[14], 0xc33707d6, 9);
        ZO_MD5_STEP_G(c, d, a, b, x[3], 0xf4d50d87, 14);
        ZO_MD5_STEP_G(b, c, d, a, x[8], 0x455a14ed, 20);
        ZO_MD5_STEP_G(a, b, c, d, x[13], 0xa9e3e905, 5);
        ZO_MD5_STEP_G(d, a, b, c, x[2], 0xfcefa3f8, 9);
        ZO_MD5_STEP_G(c, d, a, b, x[7], 0x676f02d9, 14);
        ZO_MD5_STEP_G(b, c, d, a, x[12], 0x8d2a4c8a, 20);

        ZO_MD5_STEP_H(a, b, c, d, x[5], 0xfffa3942, 4);
        ZO_MD5_STEP_H(d, a, b, c, x[8], 0x8771f681, 11);
        ZO_MD5_STEP_H(c, d, a, b, x[11], 0x6d9d6122, 16);
        ZO_MD5_STEP_H(b, c, d, a, x[14], 0xfde5380c, 23);
        ZO_MD5_STEP_H(a, b, c, d, x[1], 0xa4beea44, 4);
        ZO_MD5_STEP_H(d, a, b, c, x[4], 0x4bdecfa9, 11);
        ZO_MD5_STEP_H(c, d, a, b, x[7], 0xf6bb4b60, 16);
        ZO_MD5_STEP_H(b, c, d, a, x[10], 0xbebfbc70, 23);
        ZO_MD5_STEP_H(a, b, c, d, x[13], 0x289b7ec6, 4);
        ZO_MD5_STEP_H(d, a, b, c, x[0], 0xeaa127fa, 11);
        ZO_MD5_STEP_H(c, d, a, b, x[3], 0xd4ef3085, 16);
        ZO_MD5_STEP_H(b, c, d, a, x[6], 0x04881d05, 23);
        ZO_MD5_STEP_H(a, b, c, d, x[9], 0xd9d4d039, 4);
        ZO_MD5_STEP_H(d, a, b, c, x[12], 0xe6db99e5, 11);
        ZO_MD5_STEP_H(c, d, a, b, x[15], 0x1fa27cf8, 16);
        ZO_MD5_STEP_H(b, c, d, a, x[2], 0xc4ac5665, 23);

        ZO_MD5_STEP_I(a, b, c, d, x[0], 0xf4292244, 6);
        ZO_MD5_STEP_I(d, a, b, c, x[7], 0x432aff97, 10);
        ZO_MD5_STEP_I(c, d, a, b, x[14], 0xab9423a7, 15);
        ZO_MD5_STEP_I(b, c, d, a, x[5], 0xfc93a039, 21);
        ZO_MD5_STEP_I(a, b, c, d, x[12], 0x655b59c3, 6);
        ZO_MD5_STEP_I(d, a, b, c, x[3], 0x8f0ccc92, 10);
        ZO_MD5_STEP_I(c, d, a, b, x[10], 0xffeff47d, 15);
        ZO_MD5_STEP_I(b, c, d, a, x[1], 0x85845dd1, 21);
        ZO_MD5_STEP_I(a, b, c, d, x[8], 0x6fa87e4f, 6);
        ZO_MD5_STEP_I(d, a, b, c, x[15], 0xfe2ce6e0, 10);
        ZO_MD5_STEP_I(c, d, a, b, x[6], 0xa3014314, 15);
        ZO_MD5_STEP_I(b, c, d, a, x[13], 0x4e0811a1, 21);
        ZO_MD5_STEP_I(a, b, c, d, x[4], 0xf7537e82, 6);
        ZO_MD5_STEP_I(d, a, b, c, x[11], 0xbd3af235, 10);
        ZO_MD5_STEP_I(c, d, a, b, x[2], 0x2ad7d2bb, 15);
        ZO_MD5_STEP_I(b, c, d, a, x[9], 0xeb86d391, 21);

        a += aa;
        b += bb;
        c += cc;
        d += dd;
    }
    state[0] = a;
    state[1] = b;
    state[2] = c;
    state[3] = d;
}

#undef ZO_MD5_F
#undef ZO_MD5_I
#undef ZO_MD5_H
#undef ZO_MD5_STEP_F
#undef ZO_MD5_STEP_G
#undef ZO_MD5_STEP_H
#undef ZO_MD5_STEP_I

} // namespace

ZoMD5::ZoMD5() : m_buffer(), m_count{0, 0}, m_state{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476} {}

CString ZoMD5::GetChecksum(const CString& text)
{
    // The code units go out little-endian whatever the machine's order, so a text has one digest
    // everywhere. The extra zero byte is never hashed.
    const uint32_t length = static_cast<uint32_t>(text.GetLength());
    std::vector<unsigned char> bytes(static_cast<size_t>(length) * 2 + 1, 0);
    for (uint32_t i = 0; i < length; ++i) {
        const char16_t unit = text[static_cast<int>(i)];
        bytes[2 * i] = static_cast<unsigned char>(unit & 0xFF);
        bytes[2 * i + 1] = static_cast<unsigned char>(unit >> 8);
    }
    ZoMD5 md5;
    md5.update(bytes.data(), length * 2);
    return md5.final();
}

CString ZoMD5::GetChecksum(const unsigned char* data, uint32_t size)
{
    ZoMD5 md5;
    md5.update(data, size);
    return md5.final();
}

void ZoMD5::update(const unsigned char* input, uint32_t length)
{
    if (length == 0)
        return;
    uint32_t index = (m_count[0] >> 3) & 0x3F;
    const uint32_t addedBits = length << 3;
    m_count[0] += addedBits;
    if (m_count[0] < addedBits)
        ++m_count[1];
    m_count[1] += length >> 29;

    uint32_t used = 0;
    if (index != 0) {
        const uint32_t free = 64 - index;
        if (length < free) {
            std::memcpy(m_buffer + index, input, length);
            return;
        }
        std::memcpy(m_buffer + index, input, free);
        transform(m_buffer);
        used = free;
    }
    const uint32_t wholeBlocks = (length - used) / 64;
    hashBlocks(m_state, input + used, wholeBlocks);
    used += wholeBlocks * 64;
    std::memcpy(m_buffer, input + used, length - used);
}

void ZoMD5::transform(const unsigned char block[64])
{
    hashBlocks(m_state, block, 1);
}

CString ZoMD5::final()
{
    unsigned char bitLength[8];
    for (int i = 0; i < 4; ++i) {
        bitLength[i] = static_cast<unsigned char>(m_count[0] >> (8 * i));
        bitLength[4 + i] = static_cast<unsigned char>(m_count[1] >> (8 * i));
    }
    // One 0x80 byte, then zeros up to 56 modulo 64, then the bit length counted before padding.
    static const unsigned char padding[64] = {0x80};
    const uint32_t used = (m_count[0] >> 3) & 0x3F;
    update(padding, used < 56 ? 56 - used : 120 - used);
    update(bitLength, 8);

    static const char digits[] = "0123456789abcdef";
    char16_t text[32];
    for (int word = 0; word < 4; ++word)
        for (int byte = 0; byte < 4; ++byte) {
            const unsigned value = (m_state[word] >> (8 * byte)) & 0xFF;
            text[8 * word + 2 * byte] = static_cast<char16_t>(digits[value >> 4]);
            text[8 * word + 2 * byte + 1] = static_cast<char16_t>(digits[value & 0xF]);
        }
    return CString(text, 32);
}
