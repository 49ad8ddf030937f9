// Keeps FORMATS.md honest: each ```zo-vector block (copied next to the test binary) must decode to its values and be
// written back byte for byte; a vector the table below lacks fails, and so does an entry the document lost.
#include "base/ZoArray.h"
#include "base/ZoArray2D.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoAttributeParameter.h"
#include "base/ZoColorTable.h"
#include "base/ZoDateTime.h"
#include "base/ZoGraph.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamReadPredictiveCoder.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"
#include "compression/ZoStreamWritePredictiveCoder.h"

#include "ZoTestSupport.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <sstream>

namespace {

typedef std::vector<unsigned char> Bytes;
typedef std::map<std::string, std::string> Fields;
typedef std::function<void(ZoStreamWriteBinary&)> Writer;

// "AB CD" pairs; "{78 00}*300" repeats the bytes in braces.
Bytes parseHex(std::string text)
{
    for (size_t open, close, used; (open = text.find('{')) != std::string::npos;) {
        close = text.find("}*", open);
        std::string repeated;
        for (unsigned long k = std::stoul(text.substr(close + 2), &used); k > 0; --k)
            repeated += " " + text.substr(open + 1, close - open - 1);
        text = text.substr(0, open) + repeated + " " + text.substr(close + 2 + used);
    }
    Bytes bytes;
    std::istringstream in(text);
    for (std::string pair; in >> pair;) {
        size_t used = 0;
        bytes.push_back(static_cast<unsigned char>(std::stoul(pair, &used, 16)));
        EXPECT_TRUE(used == 2 && pair.size() == 2) << "not a hex vector at \"" << pair << "\"";
    }
    return bytes;
}

// The ```zo-vector blocks: "key: value" lines; an indented line continues the value before it.
std::vector<Fields> readDocument(const std::string& path)
{
    std::ifstream in(path);
    std::vector<Fields> vectors;
    bool inBlock = false;
    for (std::string line, key; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!inBlock || line == "```") {
            if ((inBlock = !inBlock && line == "```zo-vector"))
                vectors.emplace_back();
        } else if (!line.empty() && std::isspace(static_cast<unsigned char>(line[0])) && !key.empty()) {
            vectors.back()[key] += line;
        } else {
            const size_t colon = line.find(": ");
            key = colon == std::string::npos ? std::string() : line.substr(0, colon);
            EXPECT_FALSE(key.empty()) << "not a \"key: value\" line: " << line;
            vectors.back()[key] = colon == std::string::npos ? line : line.substr(colon + 2);
        }
    }
    EXPECT_FALSE(inBlock) << "unterminated vector block";
    return vectors;
}

std::string hexText(const Bytes& bytes, size_t from = 0, size_t count = SIZE_MAX)
{
    std::string text;
    char byte[4];
    for (size_t i = from; i < bytes.size() && i - from < count; ++i)
        text += (std::snprintf(byte, sizeof byte, i == from ? "%02X" : " %02X", bytes[i]), byte);
    return "[" + text + "]";
}

// Values as the document writes them.
std::string describe(bool value) { return value ? "true" : "false"; }
template <class T, std::enable_if_t<std::is_integral_v<T>, int> = 0>
std::string describe(T value) { return std::to_string(value + 0); }
std::string describe(double value, int digits = 17) { char text[40]; return std::snprintf(text, sizeof text, "%.*g", digits, value), text; }
std::string describe(float value) { return describe(value, 9); }
// A quoted string; \uXXXX outside printable ASCII; a run of 8 or more equal units as "x"*count.
std::string describe(const CString& value)
{
    std::string text, piece;
    auto close = [&](const std::string& tail) { text += (text.empty() ? "\"" : " \"") + piece + tail, piece.clear(); };
    for (int i = 0, n = value.GetLength(), run = 1; i < n; i += run) {
        for (run = 1; i + run < n && value[i + run] == value[i];)
            ++run;
        const unsigned c = value[i];
        char unit[8];
        std::snprintf(unit, sizeof unit, c >= 0x20 && c < 0x7F && c != '"' && c != '\\' ? "%c" : "\\u%04X", c);
        for (int k = 0; k < run && run < 8; ++k)
            piece += unit;
        if (run >= 8)
            piece.empty() ? void() : close("\""), piece = unit, close("\"*" + std::to_string(run));
    }
    if (!piece.empty() || text.empty())
        close("\"");
    return text;
}

struct Entry
{
    const char* name;
    const char* values;                            // the document's values: line, word for word
    std::function<Bytes()> write;                  // null for a form the library reads but no longer writes
    std::function<std::string(const Bytes&)> read; // decodes, and says what it found in the values' words
};

Bytes written(const Writer& write) { ZoStreamWriteBinaryMemory out; return write(out), out.GetBuffer(); }

Entry onStream(const char* name, const char* values, Writer write, std::function<std::string(ZoStreamReadBinary&)> read)
{
    return Entry{name, values, write ? [write] { return written(write); } : std::function<Bytes()>(), [read](const Bytes& bytes) {
                     ZoStreamReadBinaryMemory in(bytes);
                     const std::string text = read(in);
                     return in.GetRemaining() == 0 ? text : text + ", " + std::to_string(in.GetRemaining()) + " bytes left";
                 }};
}

template <class T>
Entry scalar(const char* name, const char* values)
{
    const std::string text = values;
    const T value = std::is_same_v<T, bool> ? T(text == "true")
                  : std::is_floating_point_v<T> ? T(std::stod(text))
                  : std::is_signed_v<T> ? T(std::stoll(text)) : T(std::stoull(text));
    return onStream(name, values, [value](ZoStreamWriteBinary& out) { out << value; }, [](ZoStreamReadBinary& in) {
        T read{};
        return in >> read, describe(read);
    });
}

Entry string(const char* name, const char* values, const CString& value)
{
    return onStream(name, values, [value](ZoStreamWriteBinary& out) { out << value; }, [](ZoStreamReadBinary& in) {
        CString read;
        return in >> read, describe(read);
    });
}

// Whole objects. What the reader decoded is shown by writing it again: the writer is checked against the
// document's bytes and gives different bytes for different values, so the same bytes mean the stated values.
Entry rewritten(const char* name, const char* values, Writer write, std::function<Bytes(ZoStreamReadBinary&)> readAndWriteAgain)
{
    return Entry{name, values, [write] { return written(write); }, [values, readAndWriteAgain](const Bytes& bytes) {
                     ZoStreamReadBinaryMemory in(bytes);
                     const Bytes again = readAndWriteAgain(in);
                     return again == bytes && in.GetRemaining() == 0 ? std::string(values) : "other values: " + hexText(again);
                 }};
}

// `make` fills a fresh object with the values; reading starts from a default one (`blank`).
template <class T>
Entry serialized(const char* name, const char* values, std::function<void(T&)> make, std::function<T()> blank = [] { return T(); })
{
    auto serialize = [](T& object) { return [&object](ZoStreamWriteBinary& out) { object.Serialize(out); }; };
    return rewritten(
        name, values, [=](ZoStreamWriteBinary& out) { T object = blank(); make(object), object.Serialize(out); },
        [=](ZoStreamReadBinary& in) { T object = blank(); return object.Serialize(in), written(serialize(object)); });
}

// The file forms: written into and read from a scratch folder.
Entry onFile(const char* name, const char* values, std::function<void(const zotest::TempFolder&, const CString&)> write,
             std::function<std::string(const CString&)> read)
{
    auto writeFile = [write] {
        zotest::TempFolder folder;
        return write(folder, folder.CPath("vector.bin")), zotest::ReadBytes(folder.Path("vector.bin"));
    };
    auto readFile = [read](const Bytes& bytes) {
        zotest::TempFolder folder;
        return zotest::WriteBytes(folder.Path("vector.bin"), bytes), read(folder.CPath("vector.bin"));
    };
    return Entry{name, values, write ? std::function<Bytes()>(writeFile) : nullptr, readFile};
}

// A series of values, each predicted by the one before (the first by 0), through a pair of coders.
template <class T, class MakeWriter, class MakeReader>
Entry predicted(const char* name, const char* values, std::vector<T> series, MakeWriter makeWriter, MakeReader makeReader)
{
    const std::string words = std::string(values).substr(0, std::string(values).find(':') + 1);
    auto write = [series, makeWriter](ZoStreamWriteBinary& out) {
        auto coder = makeWriter(out);
        T previous = 0;
        for (T value : series)
            coder.WriteValue(value, std::exchange(previous, value));
    };
    return onStream(name, values, write, [words, series, makeReader](ZoStreamReadBinary& in) {
        auto coder = makeReader(in);
        std::string text = words;
        T previous = 0;
        for (size_t i = 0; i < series.size(); ++i)
            text += " " + describe(previous = coder.ReadValue(previous));
        return text;
    });
}

bool atEnd(ZoStreamReadBinary& in) { unsigned char next = 0; return in.ReadBuffer(&next, 1) == 0; }

class ShortestPathProbe : public ZoMpGraphToShortestPath
{
public:
    using ZoMpGraphToShortestPath::compareResult;
    using ZoMpGraphToShortestPath::serializeUnitTestInput;
    using ZoMpGraphToShortestPath::serializeUnitTestOutput;
};

// a -> b 1.5, a -> c 4, b -> c 2: the way from a to c runs through b.
struct SampleSearch
{
    ZoGraph graph;
    ShortestPathProbe search;
    ZoGraphNode *a = new ZoGraphNode(u"a"), *b = new ZoGraphNode(u"b"), *c = new ZoGraphNode(u"c");
    SampleSearch()
    {
        graph.InsertNode(a), graph.InsertNode(b), graph.InsertNode(c);
        a->AddConnection(*b, 1.5f), a->AddConnection(*c, 4.0f), b->AddConnection(*c, 2.0f);
        search.SetInput(graph, *a, *c);
    }
};

const char kGraph[] = "nodes \"a\" \"b\" \"c\"; \"a\"->\"b\" 1.5, \"a\"->\"c\" 4, \"b\"->\"c\" 2; start \"a\", end \"c\"";
const std::string kRecording = std::string("input: ") + kGraph + "; output: found, path 0 1 2";

const std::vector<Entry>& entries()
{
    static const std::vector<Entry> table = {
        scalar<bool>("bool", "true"), scalar<signed char>("int8", "-2"), scalar<unsigned char>("uint8", "200"),
        scalar<int16_t>("int16", "-30000"), scalar<uint16_t>("uint16", "60000"),
        scalar<int32_t>("int32", "-2147483648"), scalar<uint32_t>("uint32", "305419896"),
        scalar<int64_t>("int64", "-2"), scalar<uint64_t>("uint64", "81985529216486895"),
        scalar<float>("float", "1.5"), scalar<double>("double", "-2.5"),
        string("string", "\"abc\"", u"abc"), string("string-empty", "\"\"", CString()),
        string("string-utf16", "\"\\u00E9\\u20AC\\uD83D\\uDE00\"", u"\u00e9\u20ac\U0001F600"),
        string("string-length-16", "\"x\"*300", CString(u'x', 300)),
        string("string-length-32", "\"x\"*65534", CString(u'x', 65534)),
        onStream("version", "2", [](ZoStreamWriteBinary& out) { out.WriteVersion(2); },
                 [](ZoStreamReadBinary& in) { return describe(in.ReadAndCompareVersion(2)); }),
        serialized<ZoArray<unsigned char, 0>>("byte-array", "[0A 0B 0C]", [](auto& array) { array.Add(0x0A), array.Add(0x0B), array.Add(0x0C); }),
        onStream("byte-array-unversioned", "[0A 0B 0C]", nullptr, [](ZoStreamReadBinary& in) {
            ZoArray<unsigned char, 0> array;
            return array.Serialize(in), hexText(Bytes(array.GetData(), array.GetData() + array.GetCount()));
        }),
        serialized<ZoArrayDynamicSize>("array-dynamic-size", "element size 3: [01 02 03] [04 05 06]", [](auto& array) {
            array.SetElementSize(3, 0), array.SetElementCount(2, 0);
            for (unsigned char i = 0; i < 6; ++i)
                array[i / 3][i % 3] = static_cast<unsigned char>(i + 1);
        }),
        serialized<ZoArray2D<unsigned short>>("array-2d", "3x2 unsigned short: [1 2 3] [4 5 6]", [](auto& array) {
            array.SetElementCount(3, 2);
            for (unsigned short i = 0; i < 6; ++i)
                array[i / 3][i % 3] = static_cast<unsigned short>(i + 1);
        }),
        serialized<ZoColor>("colour", "0x80FF8000", [](auto& color) { color = ZoColor(0x80FF8000u); }),
        serialized<ZoColorTable>(
            "colour-table", "2 entries over 0 .. 1: 0xFF00FF00 0xFFFFFFFF; underflow 0xFF0000FF, overflow 0xFFFF0000",
            [](auto& table) { table = ZoColorTable(2, 0.0f, 1.0f), table.AddColorValue(ZoColor(0xFF00FF00u), 0.0f, 0.0f); },
            [] { return ZoColorTable(1); }),
        onStream("date", "2009-03-05 10:00:30.250 UTC",
                 [](ZoStreamWriteBinary& out) { out << static_cast<uint64_t>(ZoDateTime(SYSTEMTIME{2009, 3, 0, 5, 10, 0, 30, 250})); },
                 [](ZoStreamReadBinary& in) {
                     uint64_t ticks = 0;
                     const ZoDateTime d((in >> ticks, ticks));
                     char text[40];
                     return std::string(text, std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u.%03u UTC", d.GetYear(),
                                                            d.GetMonth(), d.GetDay(), d.GetHour(), d.GetMinute(), d.GetSecond(), d.GetMillisecond()));
                 }),
        serialized<ZoAttributeParameter>("attribute-parameter", "valid", [](auto&) {}),
        serialized<ZoMpGraphToShortestPath>("algorithm-settings", "flags 0x00000001",
                                            [](auto& search) { search.SetFlags(ZoAlgorithm::eRecordUnitTest); }),
        onStream("range-coder-block", "symbols of a 4-symbol model: 1 2 3 3 0",
                 [](ZoStreamWriteBinary& out) { ZoCompressRangeCoder(out, 4, 16) << 1u << 2u << 3u << 3u << 0u; },
                 [](ZoStreamReadBinary& in) {
                     ZoDecompressRangeCoder decoder(in, 4);
                     std::string text = "symbols of a 4-symbol model:";
                     for (uint32_t i = 0, symbol = 0; i < 5; ++i)
                         text += " " + describe((decoder >> symbol, symbol));
                     return text;
                 }),
        predicted<uint32_t>("predictive", "8-bit values, each predicted by the one before (the first by 0): 10 12 12 9",
                            {10, 12, 12, 9}, [](ZoStreamWriteBinary& out) { return ZoStreamWritePredictiveCoder(out, 8, 64); },
                            [](ZoStreamReadBinary& in) { return ZoStreamReadPredictiveCoder(in, 8); }),
        predicted<float>("floating-point", "floats, each predicted by the one before (the first by 0): 1 1.5 1.25 -2",
                         {1.0f, 1.5f, 1.25f, -2.0f}, [](ZoStreamWriteBinary& out) { return ZoStreamWriteCompressedFloatingPoint(out, 64); },
                         [](ZoStreamReadBinary& in) { return ZoStreamReadCompressedFloatingPoint(in); }),
        rewritten("graph-record", kGraph, [](ZoStreamWriteBinary& out) { SampleSearch().search.serializeUnitTestInput(out); },
                  [](ZoStreamReadBinary& in) {
                      ShortestPathProbe search;
                      search.serializeUnitTestInput(in);
                      return written([&search](ZoStreamWriteBinary& out) { search.serializeUnitTestInput(out); });
                  }),
        onFile("recording-file", kRecording.c_str(),
               [](const zotest::TempFolder& folder, const CString& path) {
                   zotest::ScopedSystemTemporary temporary(folder);
                   SampleSearch sample;
                   sample.search.SetFlags(ZoAlgorithm::eRecordUnitTest), sample.search.SetUniqueID(u"vector");
                   sample.search.Compute();
                   zotest::WriteBytes(path.ToUtf8(), zotest::ReadBytes(folder.Path("Halvo/ZoMpGraphToShortestPath/vector.dat")));
               },
               [](const CString& path) { // the recorded output must be what a fresh run gives
                   ZoStreamReadBinaryFile in(path);
                   ShortestPathProbe search;
                   search.serializeUnitTestInput(in), search.serializeUnitTestOutput(in);
                   const bool same = atEnd(in) && search.Compute() && search.compareResult() &&
                                     written([&search](ZoStreamWriteBinary& out) {
                                         search.serializeUnitTestInput(out), search.serializeUnitTestOutput(out);
                                     }) == zotest::ReadBytes(path.ToUtf8());
                   return same ? kRecording : "other values";
               }),
        onFile("compressed-archive", "version 1, \"abc\"",
               [](const zotest::TempFolder&, const CString& path) {
                   ZoStreamWriteBinaryFile out(path, ZoStreamWriteBinaryFile::eCompressionZIP);
                   out.WriteVersion(1), out << CString(u"abc"), out.Close();
               },
               [](const CString& path) {
                   ZoStreamReadBinaryFile in(path);
                   const std::string version = "version " + describe(in.ReadAndCompareVersion(1));
                   CString text;
                   in >> text; // before atEnd, which reads on
                   return version + ", " + describe(text) + (atEnd(in) ? "" : ", more data");
               }),
        onFile("stored-archive", "every byte from offset 0, header included", nullptr, [](const CString& path) {
            ZoStreamReadBinaryFile in(path);
            Bytes read(256);
            read.resize(static_cast<size_t>(in.ReadBuffer(read.data(), read.size())));
            return read == zotest::ReadBytes(path.ToUtf8()) ? "every byte from offset 0, header included" : "other bytes: " + hexText(read);
        }),
    };
    return table;
}

TEST(ZoFormatsDocumentTest, EveryVectorDecodesToItsValuesAndIsWrittenBackByteForByte)
{
    const std::vector<Fields> document = readDocument("FORMATS.md");
    ASSERT_FALSE(document.empty()) << "FORMATS.md is missing next to the test binary, or has no vectors";
    std::set<std::string> seen;
    for (Fields vector : document) {
        SCOPED_TRACE("vector " + vector["name"]);
        EXPECT_TRUE(seen.insert(vector["name"]).second) << "the name is used twice";
        const auto entry = std::find_if(entries().begin(), entries().end(), [&](const Entry& e) { return vector["name"] == e.name; });
        if (entry == entries().end() && (ADD_FAILURE() << "the test does not know this vector", true))
            continue;
        EXPECT_EQ(vector["values"], entry->values);
        EXPECT_EQ(vector["direction"] == "read only", entry->write == nullptr) << "direction: " << vector["direction"];
        const Bytes hex = parseHex(vector["hex"]);
        ASSERT_FALSE(hex.empty());
        if (entry->write) {
            const Bytes bytes = entry->write();
            const size_t at = std::mismatch(bytes.begin(), bytes.end(), hex.begin(), hex.end()).first - bytes.begin();
            EXPECT_TRUE(bytes == hex) << "written " << bytes.size() << " bytes, the document " << hex.size() << "; from byte " << at
                                      << " written " << hexText(bytes, at, 16) << ", document " << hexText(hex, at, 16);
        }
        EXPECT_EQ(entry->read(hex), vector["reads"].empty() ? vector["values"] : vector["reads"]); // `reads`: not as written
    }
    for (const Entry& entry : entries())
        EXPECT_EQ(seen.count(entry.name), 1u) << "FORMATS.md has no vector " << entry.name;
}

} // namespace
