// Keeps FORMATS.md honest: every ```zo-vector block of the document (copied next to the test binary
// by the build) is decoded with the library and must give the values the block states, and the
// values written with the library must give the block's bytes. A vector the table below does not
// know fails, and so does a table entry the document lost.
#include "base/ZoArray.h"
#include "base/ZoArray2D.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoAttributeParameter.h"
#include "base/ZoColorTable.h"
#include "base/ZoDateTime.h"
#include "base/ZoExceptionStream.h"
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
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <utility>

namespace {

typedef std::vector<unsigned char> Bytes;

// "AB CD" pairs; "{78 00}*300" repeats the bytes in braces.
Bytes parseHex(std::string text)
{
    for (size_t open; (open = text.find('{')) != std::string::npos;) {
        const size_t close = text.find("}*", open);
        if (close == std::string::npos)
            return ADD_FAILURE() << "unclosed group in " << text, Bytes();
        size_t used = 0;
        std::string repeated;
        for (unsigned long k = std::stoul(text.substr(close + 2), &used); k > 0; --k)
            repeated += " " + text.substr(open + 1, close - open - 1);
        text = text.substr(0, open) + repeated + " " + text.substr(close + 2 + used);
    }
    Bytes bytes;
    std::istringstream in(text);
    for (std::string pair; in >> pair;) {
        if (pair.size() != 2 || !std::isxdigit(static_cast<unsigned char>(pair[0])) || !std::isxdigit(static_cast<unsigned char>(pair[1])))
            return ADD_FAILURE() << "not a hex vector at \"" << pair << "\"", Bytes();
        bytes.push_back(static_cast<unsigned char>(std::stoul(pair, nullptr, 16)));
    }
    return bytes;
}

typedef std::map<std::string, std::string> Fields;

// The ```zo-vector blocks: "key: value" lines; an indented line continues the value before it.
std::vector<Fields> readDocument(const std::string& path)
{
    std::ifstream in(path);
    std::vector<Fields> vectors;
    std::string line, key;
    bool inBlock = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!inBlock) {
            inBlock = line == "```zo-vector";
            if (inBlock)
                vectors.emplace_back();
        } else if (line == "```") {
            inBlock = false;
        } else if (!line.empty() && std::isspace(static_cast<unsigned char>(line[0])) && !key.empty()) {
            vectors.back()[key] += line;
        } else {
            const size_t colon = line.find(": ");
            key = colon == std::string::npos ? std::string() : line.substr(0, colon);
            EXPECT_FALSE(key.empty()) << "not a \"key: value\" line: " << line;
            if (!key.empty())
                vectors.back()[key] = line.substr(colon + 2);
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
std::string describe(double value, int digits = 17)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}
std::string describe(float value) { return describe(value, 9); }
// A quoted string; \uXXXX outside printable ASCII; a run of 8 or more equal units as "x"*count.
std::string describe(const CString& value)
{
    std::string text, piece;
    auto unit = [](char16_t c) {
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\u%04X", static_cast<unsigned>(c));
        return c >= 0x20 && c < 0x7F && c != '"' && c != '\\' ? std::string(1, static_cast<char>(c)) : std::string(escaped);
    };
    auto add = [&text](const std::string& quoted) { text += (text.empty() ? "\"" : " \"") + quoted; };
    for (int i = 0, n = value.GetLength(), run = 1; i < n; i += run) {
        for (run = 1; i + run < n && value[i + run] == value[i];)
            ++run;
        for (int k = 0; k < run && run < 8; ++k)
            piece += unit(value[i]);
        if (run >= 8) {
            if (!piece.empty())
                add(piece + "\""), piece.clear();
            add(unit(value[i]) + "\"*" + std::to_string(run));
        }
    }
    if (!piece.empty() || text.empty())
        add(piece + "\"");
    return text;
}

struct Entry
{
    const char* name;
    const char* values;                             // the document's values: line, word for word
    std::function<Bytes()> write;                   // null for a form the library reads but no longer writes
    std::function<std::string(const Bytes&)> read;  // decodes, and says what it found in the values' words
};

Bytes written(const std::function<void(ZoStreamWriteBinary&)>& write)
{
    ZoStreamWriteBinaryMemory out;
    write(out);
    return out.GetBuffer();
}

Entry onStream(const char* name, const char* values, std::function<void(ZoStreamWriteBinary&)> write,
               std::function<std::string(ZoStreamReadBinary&)> read)
{
    auto readBytes = [read](const Bytes& bytes) {
        ZoStreamReadBinaryMemory in(bytes);
        std::string text = read(in);
        return in.GetRemaining() == 0 ? text : text + ", " + std::to_string(in.GetRemaining()) + " bytes left";
    };
    return Entry{name, values, write ? [write] { return written(write); } : std::function<Bytes()>(), readBytes};
}

template <class T>
Entry scalar(const char* name, const char* values)
{
    auto write = [values](ZoStreamWriteBinary& out) {
        const std::string text = values;
        if constexpr (std::is_same_v<T, bool>)
            out << (text == "true");
        else if constexpr (std::is_floating_point_v<T>)
            out << static_cast<T>(std::stod(text));
        else if constexpr (std::is_signed_v<T>)
            out << static_cast<T>(std::stoll(text));
        else
            out << static_cast<T>(std::stoull(text));
    };
    return onStream(name, values, write, [](ZoStreamReadBinary& in) {
        T value{};
        in >> value;
        return describe(value);
    });
}

Entry string(const char* name, const char* values, const CString& value)
{
    return onStream(name, values, [value](ZoStreamWriteBinary& out) { out << value; }, [](ZoStreamReadBinary& in) {
        CString read;
        in >> read;
        return describe(read);
    });
}

// Forms of whole objects. What the reader decoded is shown by writing it again: the writer is checked
// against the document's bytes and gives different bytes for different values, so the same bytes
// again mean the stated values; otherwise the text shows what came instead.
Entry rewritten(const char* name, const char* values, std::function<void(ZoStreamWriteBinary&)> write,
                std::function<Bytes(ZoStreamReadBinary&)> readAndWriteAgain)
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
    return rewritten(
        name, values, [make, blank](ZoStreamWriteBinary& out) { T object = blank(); make(object), object.Serialize(out); },
        [blank](ZoStreamReadBinary& in) {
            T object = blank();
            object.Serialize(in);
            return written([&object](ZoStreamWriteBinary& out) { object.Serialize(out); });
        });
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
    return onStream(
        name, values,
        [series, makeWriter](ZoStreamWriteBinary& out) {
            auto coder = makeWriter(out);
            T previous = 0;
            for (T value : series)
                coder.WriteValue(value, std::exchange(previous, value));
        },
        [words, series, makeReader](ZoStreamReadBinary& in) {
            auto coder = makeReader(in);
            std::string text = words;
            T previous = 0;
            for (size_t i = 0; i < series.size(); ++i)
                text += " " + describe(previous = coder.ReadValue(previous));
            return text;
        });
}

bool atEnd(ZoStreamReadBinary& in)
{
    unsigned char next = 0;
    try {
        in >> next;
    } catch (const ZoExceptionStream&) {
        return true;
    }
    return false;
}

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
    SampleSearch()
    {
        ZoGraphNode* nodes[3] = {new ZoGraphNode(u"a"), new ZoGraphNode(u"b"), new ZoGraphNode(u"c")};
        for (ZoGraphNode* node : nodes)
            graph.InsertNode(node);
        nodes[0]->AddConnection(*nodes[1], 1.5f);
        nodes[0]->AddConnection(*nodes[2], 4.0f);
        nodes[1]->AddConnection(*nodes[2], 2.0f);
        search.SetInput(graph, *nodes[0], *nodes[2]);
    }
};

const char kRecording[] =
    "input: nodes \"a\" \"b\" \"c\"; \"a\"->\"b\" 1.5, \"a\"->\"c\" 4, \"b\"->\"c\" 2; start \"a\", end \"c\"; "
    "output: found, path 0 1 2";

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
        serialized<ZoArray<unsigned char, 0>>("byte-array", "[0A 0B 0C]",
                                              [](auto& array) { array.Add(0x0A), array.Add(0x0B), array.Add(0x0C); }),
        onStream("byte-array-unversioned", "[0A 0B 0C]", nullptr, [](ZoStreamReadBinary& in) {
            ZoArray<unsigned char, 0> array;
            return array.Serialize(in), hexText(Bytes(array.GetData(), array.GetData() + array.GetCount()));
        }),
        serialized<ZoArrayDynamicSize>("array-dynamic-size", "element size 3: [01 02 03] [04 05 06]", [](auto& array) {
            array.SetElementSize(3, 0);
            array.SetElementCount(2, 0);
            for (unsigned char i = 0; i < 6; ++i)
                array[i / 3][i % 3] = static_cast<unsigned char>(i + 1);
        }),
        serialized<ZoArray2D<unsigned short>>("array-2d", "3x2 unsigned short: [1 2 3] [4 5 6]", [](auto& array) {
            array.SetElementCount(3, 2);
            for (unsigned short i = 0; i < 6; ++i)
                array[i / 3][i % 3] = static_cast<unsigned short>(i + 1);
        }),
        serialized<ZoColor>("colour", "0x80FF8000", [](auto& color) { color = ZoColor(0x80FF8000u); }),
        rewritten(
            "colour-table", "2 entries over 0 .. 1: 0xFF00FF00 0xFFFFFFFF; underflow 0xFF0000FF, overflow 0xFFFF0000",
            [](ZoStreamWriteBinary& out) {
                ZoColorTable table(2, 0.0f, 1.0f);
                table.AddColorValue(ZoColor(0xFF00FF00u), 0.0f, 0.0f);
                table.Serialize(out);
            },
            [](ZoStreamReadBinary& in) {
                ZoColorTable table(1);
                table.Serialize(in);
                return written([&table](ZoStreamWriteBinary& out) { table.Serialize(out); });
            }),
        onStream("date", "2009-03-05 10:00:30.250 UTC",
                 [](ZoStreamWriteBinary& out) {
                     SYSTEMTIME t = {};
                     t.wYear = 2009, t.wMonth = 3, t.wDay = 5, t.wHour = 10, t.wSecond = 30, t.wMilliseconds = 250;
                     out << static_cast<uint64_t>(ZoDateTime(t));
                 },
                 [](ZoStreamReadBinary& in) {
                     uint64_t ticks = 0;
                     in >> ticks;
                     const ZoDateTime date(ticks);
                     char text[40];
                     std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u.%03u UTC", date.GetYear(), date.GetMonth(),
                                   date.GetDay(), date.GetHour(), date.GetMinute(), date.GetSecond(), date.GetMillisecond());
                     return std::string(text);
                 }),
        serialized<ZoAttributeParameter>("attribute-parameter", "valid", [](auto&) {}),
        serialized<ZoMpGraphToShortestPath>("algorithm-settings", "flags 0x00000001",
                                            [](auto& search) { search.SetFlags(ZoAlgorithm::eRecordUnitTest); }),
        onStream("range-coder-block", "symbols of a 4-symbol model: 1 2 3 3 0",
                 [](ZoStreamWriteBinary& out) {
                     ZoCompressRangeCoder coder(out, 4, 16);
                     for (uint32_t symbol : {1, 2, 3, 3, 0})
                         coder << symbol;
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoDecompressRangeCoder decoder(in, 4);
                     std::string text = "symbols of a 4-symbol model:";
                     for (uint32_t i = 0, symbol = 0; i < 5; ++i)
                         decoder >> symbol, text += " " + describe(symbol);
                     return text;
                 }),
        predicted<uint32_t>("predictive", "8-bit values, each predicted by the one before (the first by 0): 10 12 12 9",
                            {10, 12, 12, 9}, [](ZoStreamWriteBinary& out) { return ZoStreamWritePredictiveCoder(out, 8, 64); },
                            [](ZoStreamReadBinary& in) { return ZoStreamReadPredictiveCoder(in, 8); }),
        predicted<float>("floating-point", "floats, each predicted by the one before (the first by 0): 1 1.5 1.25 -2",
                         {1.0f, 1.5f, 1.25f, -2.0f}, [](ZoStreamWriteBinary& out) { return ZoStreamWriteCompressedFloatingPoint(out, 64); },
                         [](ZoStreamReadBinary& in) { return ZoStreamReadCompressedFloatingPoint(in); }),
        rewritten("graph-record", "nodes \"a\" \"b\" \"c\"; \"a\"->\"b\" 1.5, \"a\"->\"c\" 4, \"b\"->\"c\" 2; start \"a\", end \"c\"",
                  [](ZoStreamWriteBinary& out) { SampleSearch().search.serializeUnitTestInput(out); },
                  [](ZoStreamReadBinary& in) {
                      ShortestPathProbe search;
                      search.serializeUnitTestInput(in);
                      return written([&search](ZoStreamWriteBinary& out) { search.serializeUnitTestInput(out); });
                  }),
        onFile("recording-file", kRecording,
               [](const zotest::TempFolder& folder, const CString& path) {
                   zotest::ScopedSystemTemporary temporary(folder);
                   SampleSearch sample;
                   sample.search.SetFlags(ZoAlgorithm::eRecordUnitTest);
                   sample.search.SetUniqueID(u"vector");
                   sample.search.Compute();
                   zotest::WriteBytes(path.ToUtf8(), zotest::ReadBytes(folder.Path("Halvo/ZoMpGraphToShortestPath/vector.dat")));
               },
               [](const CString& path) {
                   // The input as in graph-record; the recorded output must be what a fresh run gives.
                   ZoStreamReadBinaryFile in(path);
                   ShortestPathProbe search;
                   search.serializeUnitTestInput(in);
                   search.serializeUnitTestOutput(in);
                   const bool same = atEnd(in) && search.Compute() && search.compareResult() &&
                                     written([&search](ZoStreamWriteBinary& out) {
                                         search.serializeUnitTestInput(out);
                                         search.serializeUnitTestOutput(out);
                                     }) == zotest::ReadBytes(path.ToUtf8());
                   return same ? kRecording : "other values";
               }),
        onFile("compressed-archive", "version 1, \"abc\"",
               [](const zotest::TempFolder&, const CString& path) {
                   ZoStreamWriteBinaryFile out(path, ZoStreamWriteBinaryFile::eCompressionZIP);
                   out.WriteVersion(1);
                   out << CString(u"abc");
                   out.Close();
               },
               [](const CString& path) {
                   ZoStreamReadBinaryFile in(path);
                   const std::string version = "version " + describe(in.ReadAndCompareVersion(1));
                   CString text;
                   in >> text;
                   return version + ", " + describe(text) + (atEnd(in) ? "" : ", more data");
               }),
        onFile("stored-archive", "every byte from offset 0, header included", nullptr, [](const CString& path) {
            ZoStreamReadBinaryFile in(path);
            Bytes read(256);
            read.resize(static_cast<size_t>(in.ReadBuffer(read.data(), read.size())));
            return read == zotest::ReadBytes(path.ToUtf8()) ? "every byte from offset 0, header included"
                                                            : "other bytes: " + hexText(read);
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
        if (entry == entries().end()) {
            ADD_FAILURE() << "the test does not know this vector";
            continue;
        }
        EXPECT_EQ(vector["values"], entry->values);
        EXPECT_EQ(vector["direction"] == "read only", entry->write == nullptr) << "direction: " << vector["direction"];
        const Bytes hex = parseHex(vector["hex"]);
        ASSERT_FALSE(hex.empty());
        if (entry->write) {
            const Bytes bytes = entry->write();
            const size_t at = std::mismatch(bytes.begin(), bytes.end(), hex.begin(), hex.end()).first - bytes.begin();
            EXPECT_TRUE(bytes == hex) << "written " << bytes.size() << " bytes, the document " << hex.size()
                                      << "; from byte " << at << " written " << hexText(bytes, at, 16) << ", document "
                                      << hexText(hex, at, 16);
        }
        // A vector whose bytes do not read back as written says what the reader makes of them.
        EXPECT_EQ(entry->read(hex), vector["reads"].empty() ? vector["values"] : vector["reads"]);
    }
    for (const Entry& entry : entries())
        EXPECT_EQ(seen.count(entry.name), 1u) << "FORMATS.md has no vector " << entry.name;
}

} // namespace
