#pragma once

#include "base/ZoStreamRead.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoStreamReadASCII: the base of the text input streams. A text stream reads characters and whole
/// lines; the numeric operators of ZoStreamRead are private here and throw, as text streams hold
/// no binary values. The concrete stream supplies read(c), one byte at a time.
///
/// Lines are text in the ANSI code page (Windows-1252 on Linux) ended by a line feed, a carriage
/// return followed by a line feed, or the end of the stream. The line break is not part of the
/// line. Two behaviours of the line reader are kept because files and their readers depend on
/// them:
///   - a carriage return always takes the next byte with it, whatever that byte is (the line feed
///     of a Windows line break is assumed), so `"a\rb\n"` reads as `"a"` and then `""`;
///   - a break at the very end of the stream is followed by one more, empty line; only the read
///     after that one throws.
/// After the end of the stream every read throws ZoExceptionStream naming the stream's class.
/// @ingroup streams
class ZO_API ZoStreamReadASCII : public ZoStreamRead
{
    ZO_DECLARE_RTTI()

    ~ZoStreamReadASCII() override;

    /// Reads one character. Throws ZoExceptionStream ("operator >>", line 106) when the stream has
    /// ended; the stream then stays at its end.
    ZoStreamReadASCII& operator>>(signed char& c) override;
    /// Reads one line, without its line break; an empty line gives an empty string. Throws
    /// ZoExceptionStream ("operator >>", line 41) when the end had already been reached by an
    /// earlier read.
    ZoStreamReadASCII& operator>>(CString& line) override;

    /// True once a read has met the end of the stream.
    bool IsEndOfStream() const { return m_endOfStream; }

protected:
    ZoStreamReadASCII();
    /// For derived streams: copies the end-of-stream state.
    ZoStreamReadASCII(const ZoStreamReadASCII&) = default;
    /// For derived streams: copies the end-of-stream state.
    ZoStreamReadASCII& operator=(const ZoStreamReadASCII&) = default;

    /// Reads the next byte into c; true when there was none (the stream has ended or failed).
    virtual bool read(char& c) = 0;

private:
    /// A text stream has no binary values: each of these throws ZoExceptionStream ("operator >>",
    /// no line) and leaves the value unchanged. Only reachable through a ZoStreamRead reference.
    ZoStreamReadASCII& operator>>(double& value) override;
    ZoStreamReadASCII& operator>>(float& value) override;
    ZoStreamReadASCII& operator>>(long long& value) override;
    ZoStreamReadASCII& operator>>(unsigned long long& value) override;
    ZoStreamReadASCII& operator>>(long& value) override;
    ZoStreamReadASCII& operator>>(unsigned long& value) override;
    ZoStreamReadASCII& operator>>(int& value) override;
    ZoStreamReadASCII& operator>>(unsigned int& value) override;
    ZoStreamReadASCII& operator>>(short& value) override;
    ZoStreamReadASCII& operator>>(unsigned short& value) override;
    ZoStreamReadASCII& operator>>(unsigned char& value) override;
    ZoStreamReadASCII& operator>>(bool& value) override;

    [[noreturn]] void throwNotText() const;

    bool m_endOfStream;
};
