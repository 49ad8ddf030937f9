// The edge lists `zo graph` reads: one connection per line, "from to weight", the fields separated
// by blanks or tabs. Blank lines and lines whose first non-blank character is '#' are skipped; CR LF
// line ends and a leading UTF-8 byte-order mark are accepted.
//
// A node name is a run of ASCII letters, digits and underscores that does not start with a digit,
// or a run of digits only: the names go unquoted into Graphviz files, and these are the names
// Graphviz reads unquoted. A weight is a finite, non-negative decimal number (the shortest-path
// search needs non-negative weights to end).
//
// The parser only parses: it neither prints nor exits, so that it can be driven by any bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

struct ZoEdge
{
    std::string from;
    std::string to;
    float weight;
    // 1-based line of the edge file.
    uint32_t line;
};

// A fault in an edge file, with the 1-based line it was found on; what() reads "line N: problem".
class ZoEdgeFileError : public std::runtime_error
{
public:
    ZoEdgeFileError(uint32_t line, const std::string& problem);
    uint32_t GetLine() const { return m_line; }

private:
    uint32_t m_line;
};

// The edges of `size` bytes at `data` in file order. Throws ZoEdgeFileError for the first bad line.
std::vector<ZoEdge> ParseEdgeFile(const char* data, size_t size);
