#include "base/ZoMD5.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

CString bytesDigest(const std::string& bytes)
{
    return ZoMD5::GetChecksum(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<uint32_t>(bytes.size()));
}

// A plain reference written from RFC 1321's description in another shape: the message is padded
// in full first, the constants come from the sine function, and the rounds run as one loop with
// the message index computed per step.
std::string referenceDigest(std::vector<unsigned char> message)
{
    static const int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    const uint64_t bits = static_cast<uint64_t>(message.size()) * 8;
    message.push_back(0x80);
    while (message.size() % 64 != 56)
        message.push_back(0);
    for (int i = 0; i < 8; ++i)
        message.push_back(static_cast<unsigned char>(bits >> (8 * i)));
    uint32_t h[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    for (size_t block = 0; block < message.size(); block += 64) {
        uint32_t v[4] = {h[0], h[1], h[2], h[3]};
        for (int step = 0; step < 64; ++step) {
            const int round = step / 16;
            const uint32_t b = v[1], c = v[2], d = v[3];
            const uint32_t f = round == 0 ? (b & c) | (~b & d)
                             : round == 1 ? (b & d) | (c & ~d)
                             : round == 2 ? b ^ c ^ d
                                          : c ^ (b | ~d);
            const int index = round == 0 ? step : round == 1 ? (5 * step + 1) % 16 : round == 2 ? (3 * step + 5) % 16 : (7 * step) % 16;
            uint32_t word = 0;
            for (int i = 3; i >= 0; --i)
                word = (word << 8) | message[block + 4 * index + i];
            const uint32_t k = static_cast<uint32_t>(std::floor(std::fabs(std::sin(step + 1.0)) * 4294967296.0));
            const uint32_t sum = v[0] + f + k + word;
            const int s = shifts[round][step % 4];
            v[0] = v[3];
            v[3] = v[2];
            v[2] = v[1];
            v[1] = b + ((sum << s) | (sum >> (32 - s)));
        }
        for (int i = 0; i < 4; ++i)
            h[i] += v[i];
    }
    std::string text;
    char hex[3];
    for (uint32_t word : h)
        for (int i = 0; i < 4; ++i) {
            std::snprintf(hex, sizeof hex, "%02x", (word >> (8 * i)) & 0xFF);
            text += hex;
        }
    return text;
}

TEST(ZoMD5Test, RfcTestSuiteAndTextAsLittleEndianUtf16)
{
    const struct { const char* input; const char* digest; } rfcSuite[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
    };
    for (const auto& row : rfcSuite)
        EXPECT_EQ(bytesDigest(row.input), CString(row.digest)) << '"' << row.input << '"';
    EXPECT_EQ(ZoMD5::GetChecksum(nullptr, 0), CString("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(bytesDigest(std::string(1000000, 'a')), CString("7707d6ae4e027c70eea2a935c2296f21"));

    EXPECT_EQ(ZoMD5::GetChecksum(CString()), CString("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(ZoMD5::GetChecksum(CString(u"a")), CString("4144e195f46de78a3623da7364d04f11"))
        << "a text hashes its code units as two bytes each: 61 00";
    EXPECT_EQ(ZoMD5::GetChecksum(CString(u"Zo \u00FC\u20AC\U0001D11E")), CString("bd0d96170e20175dabc281e75157107c"));
}

// Padding is where MD5 code breaks: lengths 55, 56, 63, 64 and 119, 120 switch between one and two
// final blocks. Every length up to 200, and texts of every length up to 100 code units.
TEST(ZoMD5Test, EveryLengthAgreesWithAReference)
{
    std::string bytes;
    for (int length = 0; length <= 200; ++length) {
        EXPECT_EQ(bytesDigest(bytes).ToUtf8(), referenceDigest(std::vector<unsigned char>(bytes.begin(), bytes.end())))
            << length << " bytes";
        bytes += static_cast<char>((length * 167 + 13) & 0xFF);
    }
    std::u16string text;
    for (int length = 0; length <= 100; ++length) {
        std::vector<unsigned char> units;
        for (char16_t unit : text) {
            units.push_back(static_cast<unsigned char>(unit & 0xFF));
            units.push_back(static_cast<unsigned char>(unit >> 8));
        }
        EXPECT_EQ(ZoMD5::GetChecksum(CString(text)).ToUtf8(), referenceDigest(units)) << length << " code units";
        text += static_cast<char16_t>(length * 4099 + 0x41);
    }
}

} // namespace
