#include "base/ZoStreamReadASCII.h"

#include "base/ZoExceptionStream.h"
#include "platform/ZoOS.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamReadASCII, ZoStreamRead, nullptr, nullptr);

namespace {

const char16_t sc_sourceFile[] = u"..\\base\\ZoStreamReadASCII.cpp";

// Lines are gathered and converted in chunks of this many bytes.
const int sc_chunkLength = 127;

} // namespace

ZoStreamReadASCII::ZoStreamReadASCII() : m_endOfStream(false)
{
}

ZoStreamReadASCII::~ZoStreamReadASCII() = default;

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(signed char& c)
{
    char byte = 0;
    if (!m_endOfStream && !read(byte)) {
        c = static_cast<signed char>(byte);
        return *this;
    }
    m_endOfStream = true;
    throw ZoExceptionStream(sc_sourceFile, GetClassNameW(), u"operator >>", 106);
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(CString& line)
{
    line.Empty();
    if (m_endOfStream)
        throw ZoExceptionStream(sc_sourceFile, GetClassNameW(), u"operator >>", 41);
    bool finished = false;
    while (!finished) {
        char chunk[sc_chunkLength];
        int length = 0;
        while (length < sc_chunkLength) {
            char c = 0;
            if (read(c)) {
                m_endOfStream = true;
                finished = true;
                break;
            }
            if (c == '\r') {
                // Text files are written with Windows line breaks, so the byte after a carriage
                // return is taken as its line feed and dropped unseen. Readers of files with lone
                // carriage returns have always lost the next byte; they are kept as they were.
                char lineFeed = 0;
                if (read(lineFeed))
                    m_endOfStream = true;
                finished = true;
                break;
            }
            if (c == '\n') {
                finished = true;
                break;
            }
            chunk[length++] = c;
        }
        line += ZoOS::AnsiToWide(chunk, static_cast<size_t>(length));
    }
    return *this;
}

void ZoStreamReadASCII::throwNotText() const
{
    throw ZoExceptionStream(sc_sourceFile, GetClassNameW(), u"operator >>", ZoException::sc_uiNoLine);
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(double&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(float&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(long long&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(unsigned long long&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(long&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(unsigned long&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(int&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(unsigned int&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(short&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(unsigned short&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(unsigned char&)
{
    throwNotText();
}

ZoStreamReadASCII& ZoStreamReadASCII::operator>>(bool&)
{
    throwNotText();
}
