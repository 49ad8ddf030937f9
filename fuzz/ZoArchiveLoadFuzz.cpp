// Feeds arbitrary file contents to the archive factory's loader (plain and compressed archives)
// and to the text reader on top of it. Only the library's stream exceptions may come out, and no
// input may make the loader allocate what the file cannot hold.
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadASCIIFile.h"
#include "base/ZoStreamReadBinaryFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const std::string path = "/tmp/zo-archive-fuzz-" + std::to_string(getpid()) + ".bin";
    if (FILE* file = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    try {
        ZoStreamReadBinaryFile in{CString(path)};
        for (;;) {
            CString text;
            uint32_t value;
            in >> value >> text;
        }
    } catch (const ZoExceptionStream&) {
    }
    try {
        ZoStreamReadASCIIFile text{CString(path)};
        for (int lines = 0; lines < 1000; ++lines) {
            CString line;
            text >> line;
        }
    } catch (const ZoExceptionStream&) {
    }
    return 0;
}
