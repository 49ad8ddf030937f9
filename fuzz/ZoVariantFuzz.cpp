// Feeds arbitrary text to the variant's string conversions (the input read as UTF-16 code units)
// and converts it in place to every kind. Only the library's exception may come out, and a refused
// in-place conversion must leave the text as it was.
#include "base/ZoException.h"
#include "base/ZoVariant.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::u16string wide(size / 2, u'\0');
    if (!wide.empty())
        std::memcpy(&wide[0], data, wide.size() * 2);
    const CString text(wide);
    const ZoVariant source(text);
    source.ToBOOL();
    source.ToINT();
    source.ToDWORD();
    source.ToFLOAT();
    source.ToColor();
    if (source.ToString() != text)
        std::abort();
    for (uint32_t target = 0; target <= 12; ++target) {
        ZoVariant value(source);
        try {
            value.ConvertTo(static_cast<ZoVariant::EVariantType>(target));
        } catch (const ZoException&) {
            if (value.GetType() != ZoVariant::eTypeString || value.ToString() != text)
                std::abort();
            continue;
        }
        try {
            if (target != ZoVariant::eTypeNull)
                value.ToString();
            (void)(value == source);
        } catch (const ZoException&) {
        }
    }
    return 0;
}
