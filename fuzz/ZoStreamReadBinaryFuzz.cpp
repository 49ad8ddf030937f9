// Feeds arbitrary bytes to the binary stream reader: strings, scalars and version records in an
// order chosen by the input itself. Only the library's stream exceptions may come out.
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZoStreamReadBinaryMemory in(data, size);
    try {
        for (;;) {
            unsigned char choice = 0;
            in >> choice;
            CString text;
            double d;
            uint64_t u;
            switch (choice % 4) {
            case 0: in >> text; break;
            case 1: in >> d; break;
            case 2: in >> u; break;
            default: in.ReadAndCompareVersion(3); break;
            }
        }
    } catch (const ZoExceptionStream&) {
    } catch (const ZoExceptionWrongFileVersion&) {
    }
    return 0;
}
