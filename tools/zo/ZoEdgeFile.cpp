#include "ZoEdgeFile.h"

#include <charconv>
#include <cmath>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isNameCharacter(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Printable for a message: bytes outside visible ASCII are shown as \xNN, and long fields are cut.
std::string shown(const std::string& field)
{
    static const char hex[] = "0123456789abcdef";
    std::string text;
    for (size_t i = 0; i < field.size() && i < 40; ++i) {
        const auto c = static_cast<unsigned char>(field[i]);
        if (c >= 0x20 && c < 0x7F) {
            text += static_cast<char>(c);
        } else {
            text += "\\x";
            text += hex[c >> 4];
            text += hex[c & 15];
        }
    }
    return field.size() > 40 ? text + "..." : text;
}

void checkName(const std::string& name, uint32_t line)
{
    bool valid = !name.empty();
    bool digitsOnly = true;
    for (char c : name) {
        valid = valid && isNameCharacter(c);
        digitsOnly = digitsOnly && isDigit(c);
    }
    if (!valid || (isDigit(name[0]) && !digitsOnly))
        throw ZoEdgeFileError(line, "node name \"" + shown(name) +
                                        "\" is not letters, digits and underscores (not starting with a digit) "
                                        "or digits only");
}

float parseWeight(const std::string& field, uint32_t line)
{
    float weight = 0;
    const char* end = field.data() + field.size();
    // from_chars reads the C locale's numbers whatever the process's locale is.
    const std::from_chars_result result = std::from_chars(field.data(), end, weight);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(weight))
        throw ZoEdgeFileError(line, "weight \"" + shown(field) + "\" is not a finite number");
    if (weight < 0)
        throw ZoEdgeFileError(line, "weight " + shown(field) + " is negative");
    return weight;
}

} // namespace

ZoEdgeFileError::ZoEdgeFileError(uint32_t line, const std::string& problem)
    : std::runtime_error("line " + std::to_string(line) + ": " + problem), m_line(line)
{
}

std::vector<ZoEdge> ParseEdgeFile(const char* data, size_t size)
{
    std::vector<ZoEdge> edges;
    size_t position = 0;
    if (size >= 3 && data[0] == '\xEF' && data[1] == '\xBB' && data[2] == '\xBF')
        position = 3;
    for (uint32_t line = 1; position < size; ++line) {
        size_t end = position;
        while (end < size && data[end] != '\n')
            ++end;
        size_t stop = end;
        if (stop > position && data[stop - 1] == '\r')
            --stop;
        std::vector<std::string> fields;
        for (size_t i = position; i < stop;) {
            if (isBlank(data[i])) {
                ++i;
                continue;
            }
            const size_t first = i;
            while (i < stop && !isBlank(data[i]))
                ++i;
            fields.emplace_back(data + first, i - first);
        }
        position = end + 1;
        if (fields.empty() || fields[0][0] == '#')
            continue;
        if (fields.size() != 3)
            throw ZoEdgeFileError(line, "expected \"from to weight\", found " + std::to_string(fields.size()) +
                                            (fields.size() == 1 ? " field" : " fields"));
        checkName(fields[0], line);
        checkName(fields[1], line);
        edges.push_back(ZoEdge{fields[0], fields[1], parseWeight(fields[2], line), line});
    }
    return edges;
}
