// Feeds arbitrary bytes to the text line reader, and checks every line and character it gives
// against a model of the line rules: a line ends at a line feed, at a carriage return (which takes
// the next byte with it, whatever it is) or at the end of the data; a break at the very end is
// followed by one more, empty line; a read after the end throws the stream exception.
//
// Input layout: the first byte seeds the choice between line and character reads, the rest is the
// text. Lines longer than the reader's conversion chunk are where splitting could go wrong, so the
// seeds hold some.
#include "ZoFuzzSupport.h"

#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadASCII.h"
#include "platform/ZoOS.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

// A text stream over memory, read one byte at a time as the file stream does.
class TextFromMemory : public ZoStreamReadASCII
{
public:
    TextFromMemory(const uint8_t* data, size_t size) : m_data(data), m_size(size), m_position(0) {}

protected:
    bool read(char& c) override
    {
        if (m_position == m_size)
            return true;
        c = static_cast<char>(m_data[m_position++]);
        return false;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_position;
};

// The model: the same text, the same rules, without chunks.
class Model
{
public:
    Model(const uint8_t* data, size_t size) : m_data(data), m_size(size), m_position(0), m_ended(false) {}

    // False when the read must throw.
    bool line(std::string& text)
    {
        text.clear();
        if (m_ended)
            return false;
        for (;;) {
            if (m_position == m_size) {
                m_ended = true;
                return true;
            }
            const char c = static_cast<char>(m_data[m_position++]);
            if (c == '\r') {
                if (m_position == m_size)
                    m_ended = true;
                else
                    ++m_position;
                return true;
            }
            if (c == '\n')
                return true;
            text += c;
        }
    }
    bool character(char& c)
    {
        if (m_ended || m_position == m_size) {
            m_ended = true;
            return false;
        }
        c = static_cast<char>(m_data[m_position++]);
        return true;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_position;
    bool m_ended;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    uint32_t choices = data[0] * 0x9E3779B9u;
    TextFromMemory stream(data + 1, size - 1);
    Model model(data + 1, size - 1);
    for (size_t step = 0; step < size + 2; ++step) {
        choices = choices * 1664525u + 1013904223u;
        const bool wholeLine = (choices >> 28) != 0;
        if (wholeLine) {
            std::string expected;
            const bool readable = model.line(expected);
            CString line;
            try {
                stream >> line;
            } catch (const ZoExceptionStream&) {
                require(!readable);
                return 0;
            }
            require(readable && line == ZoOS::AnsiToWide(expected.data(), expected.size()));
        } else {
            char expected = 0;
            const bool readable = model.character(expected);
            signed char c = 0;
            try {
                stream >> c;
            } catch (const ZoExceptionStream&) {
                require(!readable);
                return 0;
            }
            require(readable && c == static_cast<signed char>(expected));
        }
    }
    return 0;
}
