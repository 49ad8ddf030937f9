// Feeds arbitrary text to ZoDateTime's parser (the input read as UTF-16 code units, and as ASCII),
// and the input's first eight bytes as a tick count to the display forms. Only the parser's own
// exception may come out; a parsed value must print back in its own form.
#include "base/ZoDateTime.h"
#include "base/ZoException.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

namespace {

void parse(const CString& text)
{
    const int valid = ZoDateTime::HasValidFormat(text);
    try {
        const ZoDateTime value(text);
        if (!valid || value.ToString(ZoDateTime::eFormatSortable).GetLength() < 19)
            std::abort();
    } catch (const ZoException&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // A zone with daylight saving, so that the skipped and repeated hours are reached.
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    tzset();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::u16string wide(size / 2, u'\0');
    if (!wide.empty())
        std::memcpy(&wide[0], data, wide.size() * 2);
    parse(CString(wide));
    parse(CString(std::u16string(data, data + size)));

    uint64_t ticks = 0;
    std::memcpy(&ticks, data, size < sizeof(ticks) ? size : sizeof(ticks));
    ZoDateTime value(ticks);
    for (uint32_t format = 2; format <= 8; ++format)
        value.ToString(static_cast<ZoDateTime::EFormat>(format));
    value.AddTimeInterval(static_cast<int64_t>(ticks));
    return 0;
}
