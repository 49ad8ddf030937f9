// Feeds arbitrary bytes to the `zo` tool's edge-file parser. Only its own error may come out; every
// edge it returns must obey the file rules it promises (named ends, a finite non-negative weight,
// lines in file order).
#include "tools/zo/ZoEdgeFile.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        const std::vector<ZoEdge> edges = ParseEdgeFile(reinterpret_cast<const char*>(data), size);
        uint32_t previousLine = 0;
        for (const ZoEdge& edge : edges) {
            if (edge.from.empty() || edge.to.empty() || !std::isfinite(edge.weight) || edge.weight < 0.0f ||
                edge.line <= previousLine)
                std::abort();
            previousLine = edge.line;
        }
    } catch (const ZoEdgeFileError&) {
    }
    return 0;
}
