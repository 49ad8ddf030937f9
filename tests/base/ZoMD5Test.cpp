#include "base/ZoMD5.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string bytesDigest(const std::string& bytes)
{
    return ZoMD5::GetChecksum(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<uint32_t>(bytes.size()))
        .ToUtf8();
}

TEST(ZoMD5Test, RfcSuiteTextAsUtf16AndEveryLengthUpTo200)
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
        EXPECT_EQ(bytesDigest(row.input), row.digest) << '"' << row.input << '"';
    EXPECT_EQ(ZoMD5::GetChecksum(nullptr, 0), CString("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(bytesDigest(std::string(1000000, 'a')), "7707d6ae4e027c70eea2a935c2296f21");

    EXPECT_EQ(ZoMD5::GetChecksum(CString()), CString("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(ZoMD5::GetChecksum(CString(u"a")), CString("4144e195f46de78a3623da7364d04f11"))
        << "a text hashes its code units as two bytes each: 61 00";
    EXPECT_EQ(ZoMD5::GetChecksum(CString(u"Zo \u00FC\u20AC\U0001D11E")), CString("bd0d96170e20175dabc281e75157107c"));

    // Padding is where MD5 code breaks: lengths 55, 56, 63, 64 and 119, 120 switch between one and
    // two final blocks. The digests of every length up to 200 bytes, and of texts of every length up
    // to 100 code units, are chained into one digest whose value a reference implementation gave.
    std::string bytes, chain;
    for (int length = 0; length <= 200; ++length) {
        chain += bytesDigest(bytes);
        bytes += static_cast<char>((length * 167 + 13) & 0xFF);
    }
    EXPECT_EQ(bytesDigest(chain), "21b2c3eea20aae6d1b87a029ba81f9ba");
    std::u16string text;
    chain.clear();
    for (int length = 0; length <= 100; ++length) {
        chain += ZoMD5::GetChecksum(CString(text)).ToUtf8();
        text += static_cast<char16_t>(length * 4099 + 0x41);
    }
    EXPECT_EQ(bytesDigest(chain), "a1e536e65efd19f72ddb57104a1b5c91");
}

} // namespace
