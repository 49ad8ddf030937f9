#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoMD5: the MD5 digest (RFC 1321) of a byte block or of a text, written as 32 lowercase
/// hexadecimal digits. It is the library's content fingerprint, also for large files, so the block
/// function is unrolled and whole blocks are hashed where they lie, without copying.
///
/// MD5 is no protection against someone who crafts colliding inputs; use it to recognise content,
/// not to authenticate it.
/// @ingroup services
class ZO_API ZoMD5
{
public:
    /// The digest of the text's UTF-16 code units taken as little-endian bytes (2 per code unit, no
    /// terminator): the text "a" hashes the bytes 61 00. Fails only by running out of memory.
    static CString GetChecksum(const CString& text);
    /// The digest of `size` bytes at `data` (which may be null when `size` is 0).
    static CString GetChecksum(const unsigned char* data, uint32_t size);

    /// Copies a computation's state (buffer, bit count, words).
    ZoMD5(const ZoMD5& other) = default;
    /// Copies a computation's state (buffer, bit count, words).
    ZoMD5& operator=(const ZoMD5& other) = default;

private:
    /// A fresh computation: empty buffer, no bits counted, the four initial words of RFC 1321.
    ZoMD5();

    void update(const unsigned char* input, uint32_t length);
    void transform(const unsigned char block[64]);
    /// Pads, hashes the bit length and writes the digest as text. The object is spent afterwards.
    CString final();

    unsigned char m_buffer[64];
    /// Message length in bits, low word first.
    uint32_t m_count[2];
    /// A, B, C, D.
    uint32_t m_state[4];
};
