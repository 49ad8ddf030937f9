// Keeps FORMATS.md honest: every ```zo-vector block of the document (copied next to the test binary
// by the build) is decoded with the library and must give the values the block states, and the
// values written with the library must give the block's bytes. A vector the table below does not
// know fails, and so does a table entry the document lost.
#include "base/ZoArray.h"
#include "base/ZoArray2D.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoAttributeParameter.h"
#include "base/ZoColor.h"
#include "base/ZoColorTable.h"
#include "base/ZoDateTime.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoGraph.h"
#include "base/ZoGraphConnectionIterator.h"
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
#include <cstdio>
#include <functional>
#include <map>
#include <set>
#include <sstream>

namespace {

typedef std::vector<unsigned char> Bytes;

struct DocumentVector
{
    std::map<std::string, std::string> fields;
    Bytes hex;
};

// "AB CD" pairs; "{78 00}*300" repeats the bytes in braces. Anything else is a broken vector.
Bytes parseHex(const std::string& text)
{
    Bytes bytes, group;
    bool inGroup = false;
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (std::isspace(static_cast<unsigned char>(c))) {
            ++i;
        } else if (c == '{' && !inGroup) {
            inGroup = true;
            ++i;
        } else if (c == '}' && inGroup && i + 1 < text.size() && text[i + 1] == '*') {
            size_t used = 0;
            const unsigned long repeat = std::stoul(text.substr(i + 2), &used);
            for (unsigned long k = 0; k < repeat; ++k)
                bytes.insert(bytes.end(), group.begin(), group.end());
            group.clear();
            inGroup = false;
            i += 2 + used;
        } else if (i + 1 < text.size() && std::isxdigit(static_cast<unsigned char>(c)) &&
                   std::isxdigit(static_cast<unsigned char>(text[i + 1]))) {
            (inGroup ? group : bytes).push_back(static_cast<unsigned char>(std::stoul(text.substr(i, 2), nullptr, 16)));
            i += 2;
        } else {
            ADD_FAILURE() << "not a hex vector at \"" << text.substr(i, 10) << "\"";
            return Bytes();
        }
    }
    EXPECT_FALSE(inGroup) << "unclosed group in " << text;
    return bytes;
}

// The ```zo-vector blocks: "key: value" lines; an indented line continues the value before it.
std::vector<DocumentVector> readDocument(const std::string& path)
{
    std::ifstream in(path);
    std::vector<DocumentVector> vectors;
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
            vectors.back().hex = parseHex(vectors.back().fields["hex"]);
        } else if (!line.empty() && std::isspace(static_cast<unsigned char>(line[0])) && !key.empty()) {
            vectors.back().fields[key] += line;
        } else {
            const size_t colon = line.find(": ");
            key = colon == std::string::npos ? std::string() : line.substr(0, colon);
            EXPECT_FALSE(key.empty()) << "not a \"key: value\" line: " << line;
            if (!key.empty())
                vectors.back().fields[key] = line.substr(colon + 2);
        }
    }
    EXPECT_FALSE(inBlock) << "unterminated vector block";
    return vectors;
}

std::string hexText(const unsigned char* data, size_t size)
{
    std::string text;
    char byte[4];
    for (size_t i = 0; i < size; ++i) {
        std::snprintf(byte, sizeof byte, i == 0 ? "%02X" : " %02X", data[i]);
        text += byte;
    }
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
std::string color(uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
}
// A quoted string; \uXXXX outside printable ASCII; a run of 8 or more equal units as "x"*count.
std::string describe(const CString& value)
{
    std::string text, piece;
    auto unit = [](char16_t c) {
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\u%04X", static_cast<unsigned>(c));
        return c >= 0x20 && c < 0x7F && c != '"' && c != '\\' ? std::string(1, static_cast<char>(c)) : std::string(escaped);
    };
    auto flush = [&](bool always) {
        if (!piece.empty() || always)
            text += (text.empty() ? "\"" : " \"") + piece + "\"";
        piece.clear();
    };
    for (int i = 0, n = value.GetLength(); i < n;) {
        int run = 1;
        while (i + run < n && value[i + run] == value[i])
            ++run;
        if (run >= 8) {
            flush(false);
            text += (text.empty() ? "\"" : " \"") + unit(value[i]) + "\"*" + std::to_string(run);
        } else {
            for (int k = 0; k < run; ++k)
                piece += unit(value[i]);
        }
        i += run;
    }
    flush(text.empty());
    return text;
}

struct Entry
{
    const char* name;
    const char* values;                             // the document's values: line, word for word
    std::function<Bytes()> write;                   // null for a form the library reads but no longer writes
    std::function<std::string(const Bytes&)> read;  // decodes, and says what it found in the values' words
};

Entry onStream(const char* name, const char* values, std::function<void(ZoStreamWriteBinary&)> write,
               std::function<std::string(ZoStreamReadBinary&)> read)
{
    auto writeBytes = [write] {
        ZoStreamWriteBinaryMemory out;
        write(out);
        return out.GetBuffer();
    };
    auto readBytes = [read](const Bytes& bytes) {
        ZoStreamReadBinaryMemory in(bytes);
        std::string text = read(in);
        return in.GetRemaining() == 0 ? text : text + ", " + std::to_string(in.GetRemaining()) + " bytes left";
    };
    return Entry{name, values, write ? std::function<Bytes()>(writeBytes) : nullptr, readBytes};
}

template <class T>
Entry scalar(const char* name, const char* values)
{
    return onStream(
        name, values,
        [values](ZoStreamWriteBinary& out) {
            const std::string text = values;
            if constexpr (std::is_same_v<T, bool>)
                out << (text == "true");
            else if constexpr (std::is_floating_point_v<T>)
                out << static_cast<T>(std::stod(text));
            else if constexpr (std::is_signed_v<T>)
                out << static_cast<T>(std::stoll(text));
            else
                out << static_cast<T>(std::stoull(text));
        },
        [](ZoStreamReadBinary& in) {
            T value{};
            in >> value;
            return describe(value);
        });
}

// The file forms: written into and read from a scratch folder.
Entry onFile(const char* name, const char* values, std::function<void(const zotest::TempFolder&, const CString&)> write,
             std::function<std::string(const CString&)> read)
{
    auto writeFile = [write] {
        zotest::TempFolder folder;
        write(folder, folder.CPath("vector.bin"));
        return zotest::ReadBytes(folder.Path("vector.bin"));
    };
    auto readFile = [read](const Bytes& bytes) {
        zotest::TempFolder folder;
        zotest::WriteBytes(folder.Path("vector.bin"), bytes);
        return read(folder.CPath("vector.bin"));
    };
    return Entry{name, values, write ? std::function<Bytes()>(writeFile) : nullptr, readFile};
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

// a -> b 1.5, a -> c 4, b -> c 2; the way from a to c runs through b.
struct SampleGraph
{
    ZoGraph graph;
    ZoGraphNode* nodes[3];
    SampleGraph()
    {
        const char16_t* names[] = {u"a", u"b", u"c"};
        for (int i = 0; i < 3; ++i)
            graph.InsertNode(nodes[i] = new ZoGraphNode(CString(names[i])));
        nodes[0]->AddConnection(*nodes[1], 1.5f);
        nodes[0]->AddConnection(*nodes[2], 4.0f);
        nodes[1]->AddConnection(*nodes[2], 2.0f);
    }
};

// The graph a search read from a record, as far as it reaches from the start, and the path found.
std::string describeSearch(ShortestPathProbe& search, std::string* path)
{
    if (!search.Compute())
        return "no path";
    std::vector<const ZoGraphNode*> nodes, walk;
    for (ZoGraphPathIterator it = search.GetOutput(); it.HasMoreElements();)
        walk.push_back(&it.GetNext());
    nodes.push_back(walk.front());
    for (size_t i = 0; i < nodes.size(); ++i)
        for (ZoGraphConnectionIterator it(nodes[i]->GetOutgoingConnections()); it.HasMoreElements();) {
            const ZoGraphNode* target = &it.GetNext()->GetNode(ZoGraphConnection::eTarget);
            if (std::find(nodes.begin(), nodes.end(), target) == nodes.end())
                nodes.push_back(target);
        }
    std::sort(nodes.begin(), nodes.end(), [](auto a, auto b) { return a->GetIndex() < b->GetIndex(); });
    std::string text = "nodes", edges;
    for (const ZoGraphNode* node : nodes) {
        text += " " + describe(node->GetName());
        for (ZoGraphConnectionIterator it(node->GetOutgoingConnections()); it.HasMoreElements();) {
            const ZoSmartPointer<ZoGraphConnection> edge = it.GetNext();
            edges += (edges.empty() ? "" : ", ") + describe(node->GetName()) + "->" +
                     describe(edge->GetNode(ZoGraphConnection::eTarget).GetName()) + " " + describe(edge->GetWeight());
        }
    }
    if (path != nullptr)
        for (const ZoGraphNode* node : walk)
            *path += " " + describe(node->GetIndex());
    return text + "; " + edges + "; start " + describe(walk.front()->GetName()) + ", end " + describe(walk.back()->GetName());
}

const char kGraphValues[] = "nodes \"a\" \"b\" \"c\"; \"a\"->\"b\" 1.5, \"a\"->\"c\" 4, \"b\"->\"c\" 2; start \"a\", end \"c\"";

const std::vector<Entry>& entries()
{
    static const std::vector<Entry> table = {
        scalar<bool>("bool", "true"),
        scalar<signed char>("int8", "-2"),
        scalar<unsigned char>("uint8", "200"),
        scalar<int16_t>("int16", "-30000"),
        scalar<uint16_t>("uint16", "60000"),
        scalar<int32_t>("int32", "-2147483648"),
        scalar<uint32_t>("uint32", "305419896"),
        scalar<int64_t>("int64", "-2"),
        scalar<uint64_t>("uint64", "81985529216486895"),
        scalar<float>("float", "1.5"),
        scalar<double>("double", "-2.5"),
        onStream("string", "\"abc\"", [](ZoStreamWriteBinary& out) { out << CString(u"abc"); },
                 [](ZoStreamReadBinary& in) { CString s; in >> s; return describe(s); }),
        onStream("string-empty", "\"\"", [](ZoStreamWriteBinary& out) { out << CString(); },
                 [](ZoStreamReadBinary& in) { CString s; in >> s; return describe(s); }),
        onStream("string-utf16", "\"\\u00E9\\u20AC\\uD83D\\uDE00\"",
                 [](ZoStreamWriteBinary& out) { out << CString(u"\u00e9\u20ac\U0001F600"); },
                 [](ZoStreamReadBinary& in) { CString s; in >> s; return describe(s); }),
        onStream("string-length-16", "\"x\"*300", [](ZoStreamWriteBinary& out) { out << CString(u'x', 300); },
                 [](ZoStreamReadBinary& in) { CString s; in >> s; return describe(s); }),
        onStream("string-length-32", "\"x\"*65534", [](ZoStreamWriteBinary& out) { out << CString(u'x', 65534); },
                 [](ZoStreamReadBinary& in) { CString s; in >> s; return describe(s); }),
        onStream("version", "2", [](ZoStreamWriteBinary& out) { out.WriteVersion(2); },
                 [](ZoStreamReadBinary& in) { return describe(in.ReadAndCompareVersion(2)); }),
        onStream("byte-array", "[0A 0B 0C]",
                 [](ZoStreamWriteBinary& out) {
                     ZoArray<unsigned char, 0> array;
                     for (unsigned char b : {0x0A, 0x0B, 0x0C})
                         array.Add(b);
                     array.Serialize(out);
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoArray<unsigned char, 0> array;
                     array.Serialize(in);
                     return hexText(array.GetData(), array.GetCount());
                 }),
        onStream("byte-array-unversioned", "[0A 0B 0C]", nullptr,
                 [](ZoStreamReadBinary& in) {
                     ZoArray<unsigned char, 0> array;
                     array.Serialize(in);
                     return hexText(array.GetData(), array.GetCount());
                 }),
        onStream("array-dynamic-size", "element size 3: [01 02 03] [04 05 06]",
                 [](ZoStreamWriteBinary& out) {
                     ZoArrayDynamicSize array(2, 3);
                     for (unsigned char i = 0; i < 6; ++i)
                         array[i / 3][i % 3] = static_cast<unsigned char>(i + 1);
                     array.Serialize(out);
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoArrayDynamicSize array;
                     array.Serialize(in);
                     std::string text = "element size " + describe(array.GetElementSize()) + ":";
                     for (uint32_t i = 0; i < array.GetCount(); ++i)
                         text += " " + hexText(array[i], array.GetElementSize());
                     return text;
                 }),
        onStream("array-2d", "3x2 unsigned short: [1 2 3] [4 5 6]",
                 [](ZoStreamWriteBinary& out) {
                     ZoArray2D<unsigned short> array(3, 2);
                     for (unsigned short i = 0; i < 6; ++i)
                         array.GetData()[i] = static_cast<unsigned short>(i + 1);
                     array.Serialize(out);
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoArray2D<unsigned short> array;
                     array.Serialize(in);
                     std::string text = describe(array.GetWidth()) + "x" + describe(array.GetHeight()) + " unsigned short:";
                     for (uint32_t y = 0; y < array.GetHeight(); ++y)
                         for (uint32_t x = 0; x < array.GetWidth(); ++x)
                             text += std::string(x == 0 ? " [" : " ") + describe(array.GetData()[y * array.GetWidth() + x]) +
                                     (x + 1 == array.GetWidth() ? "]" : "");
                     return text;
                 }),
        onStream("range-coder-block", "symbols of a 4-symbol model: 1 2 3 3 0",
                 [](ZoStreamWriteBinary& out) {
                     ZoCompressRangeCoder coder(out, 4, 16);
                     for (uint32_t symbol : {1, 2, 3, 3, 0})
                         coder << symbol;
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoDecompressRangeCoder decoder(in, 4);
                     std::string text = "symbols of a 4-symbol model:";
                     for (int i = 0; i < 5; ++i) {
                         uint32_t symbol = 0;
                         decoder >> symbol;
                         text += " " + describe(symbol);
                     }
                     return text;
                 }),
        onStream("predictive", "8-bit values, each predicted by the one before (the first by 0): 10 12 12 9",
                 [](ZoStreamWriteBinary& out) {
                     ZoStreamWritePredictiveCoder coder(out, 8, 64);
                     uint32_t previous = 0;
                     for (uint32_t value : {10, 12, 12, 9}) {
                         coder.WriteValue(value, previous);
                         previous = value;
                     }
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoStreamReadPredictiveCoder coder(in, 8);
                     std::string text = "8-bit values, each predicted by the one before (the first by 0):";
                     uint32_t previous = 0;
                     for (int i = 0; i < 4; ++i)
                         text += " " + describe(previous = coder.ReadValue(previous));
                     return text;
                 }),
        onStream("floating-point", "floats, each predicted by the one before (the first by 0): 1 1.5 1.25 -2",
                 [](ZoStreamWriteBinary& out) {
                     ZoStreamWriteCompressedFloatingPoint coder(out, 64);
                     float previous = 0.0f;
                     for (float value : {1.0f, 1.5f, 1.25f, -2.0f}) {
                         coder.WriteValue(value, previous);
                         previous = value;
                     }
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoStreamReadCompressedFloatingPoint coder(in);
                     std::string text = "floats, each predicted by the one before (the first by 0):";
                     float previous = 0.0f;
                     for (int i = 0; i < 4; ++i)
                         text += " " + describe(previous = coder.ReadValue(previous));
                     return text;
                 }),
        onStream("colour", "0x80FF8000", [](ZoStreamWriteBinary& out) { ZoColor(0x80FF8000u).Serialize(out); },
                 [](ZoStreamReadBinary& in) {
                     ZoColor value;
                     value.Serialize(in);
                     return color(value.GetDWORD());
                 }),
        onStream("colour-table", "2 entries over 0 .. 1: 0xFF00FF00 0xFFFFFFFF; underflow 0xFF0000FF, overflow 0xFFFF0000",
                 [](ZoStreamWriteBinary& out) {
                     ZoColorTable table(2, 0.0f, 1.0f);
                     table.AddColorValue(ZoColor(0xFF00FF00u), 0.0f, 0.0f);
                     table.Serialize(out);
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoColorTable table(1);
                     table.Serialize(in);
                     float minimum = 0, maximum = 0;
                     table.GetMinMax(minimum, maximum);
                     std::string text = describe(table.GetEntryCount()) + " entries over " + describe(minimum) + " .. " +
                                        describe(maximum) + ":";
                     for (uint32_t i = 0; i < table.GetEntryCount(); ++i) {
                         const float value = minimum + (maximum - minimum) * i / std::max(1u, table.GetEntryCount() - 1);
                         text += " " + color(table.GetColorValue(value).GetDWORD());
                     }
                     return text + "; underflow " + color(table.GetUnderflowColor().GetDWORD()) + ", overflow " +
                            color(table.GetOverflowColor().GetDWORD());
                 }),
        onStream("date", "2009-03-05 10:00:30.250 UTC",
                 [](ZoStreamWriteBinary& out) {
                     SYSTEMTIME time = {};
                     time.wYear = 2009, time.wMonth = 3, time.wDay = 5, time.wHour = 10, time.wSecond = 30, time.wMilliseconds = 250;
                     out << static_cast<uint64_t>(ZoDateTime(time));
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
        onStream("attribute-parameter", "valid",
                 [](ZoStreamWriteBinary& out) { ZoAttributeParameter().Serialize(out); },
                 [](ZoStreamReadBinary& in) {
                     ZoAttributeParameter parameter;
                     parameter.Serialize(in);
                     return std::string(parameter.IsValid() ? "valid" : "invalid");
                 }),
        onStream("algorithm-settings", "flags 0x00000001",
                 [](ZoStreamWriteBinary& out) {
                     ZoMpGraphToShortestPath search;
                     search.SetFlags(ZoAlgorithm::eRecordUnitTest);
                     search.Serialize(out);
                 },
                 [](ZoStreamReadBinary& in) {
                     ZoMpGraphToShortestPath search;
                     search.Serialize(in);
                     return "flags " + color(search.GetFlags());
                 }),
        onStream("graph-record", kGraphValues,
                 [](ZoStreamWriteBinary& out) {
                     SampleGraph sample;
                     ShortestPathProbe search;
                     search.SetInput(sample.graph, *sample.nodes[0], *sample.nodes[2]);
                     search.serializeUnitTestInput(out);
                 },
                 [](ZoStreamReadBinary& in) {
                     ShortestPathProbe search;
                     search.serializeUnitTestInput(in);
                     return describeSearch(search, nullptr);
                 }),
        onFile("recording-file", "input: nodes \"a\" \"b\" \"c\"; \"a\"->\"b\" 1.5, \"a\"->\"c\" 4, \"b\"->\"c\" 2; start \"a\", "
                                 "end \"c\"; output: found, path 0 1 2",
               [](const zotest::TempFolder& folder, const CString& path) {
                   zotest::ScopedSystemTemporary temporary(folder);
                   SampleGraph sample;
                   ZoMpGraphToShortestPath search;
                   search.SetFlags(ZoAlgorithm::eRecordUnitTest);
                   search.SetInput(sample.graph, *sample.nodes[0], *sample.nodes[2]);
                   search.SetUniqueID(u"vector");
                   search.Compute();
                   zotest::WriteBytes(path.ToUtf8(), zotest::ReadBytes(folder.Path("Halvo/ZoMpGraphToShortestPath/vector.dat")));
               },
               [](const CString& path) {
                   ZoStreamReadBinaryFile in(path);
                   ShortestPathProbe search;
                   search.serializeUnitTestInput(in);
                   search.serializeUnitTestOutput(in);
                   std::string found;
                   const std::string text = "input: " + describeSearch(search, &found) + "; output: ";
                   return text + (search.compareResult() ? "found, path" + found : "differs") + (atEnd(in) ? "" : ", more data");
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
            return read == zotest::ReadBytes(path.ToUtf8()) ? std::string("every byte from offset 0, header included")
                                                            : "other bytes: " + hexText(read.data(), read.size());
        }),
    };
    return table;
}

std::string firstDifference(const Bytes& written, const Bytes& document)
{
    const size_t common = std::min(written.size(), document.size());
    const size_t at = std::mismatch(written.begin(), written.begin() + common, document.begin()).first - written.begin();
    const size_t shown = std::min<size_t>(16, common - std::min(at, common));
    return "written " + std::to_string(written.size()) + " bytes, the document " + std::to_string(document.size()) +
           "; from byte " + std::to_string(at) + " written " + hexText(written.data() + at, std::min(shown + 0, written.size() - at)) +
           ", document " + hexText(document.data() + std::min(at, document.size()), std::min(shown + 0, document.size() - std::min(at, document.size())));
}

TEST(ZoFormatsDocumentTest, EveryVectorDecodesToItsValuesAndIsWrittenBackByteForByte)
{
    const std::vector<DocumentVector> document = readDocument("FORMATS.md");
    ASSERT_FALSE(document.empty()) << "FORMATS.md is missing next to the test binary, or has no vectors";
    std::set<std::string> seen;
    for (const DocumentVector& vector : document) {
        const std::string name = vector.fields.count("name") ? vector.fields.at("name") : "(no name)";
        SCOPED_TRACE("vector " + name);
        EXPECT_TRUE(seen.insert(name).second) << "the name is used twice";
        const auto entry = std::find_if(entries().begin(), entries().end(), [&](const Entry& e) { return name == e.name; });
        if (entry == entries().end()) {
            ADD_FAILURE() << "the test does not know this vector";
            continue;
        }
        const auto field = [&](const char* key) { return vector.fields.count(key) ? vector.fields.at(key) : std::string(); };
        EXPECT_EQ(field("values"), entry->values);
        EXPECT_EQ(field("direction") == "read only", entry->write == nullptr) << "direction: " << field("direction");
        ASSERT_FALSE(vector.hex.empty());
        if (entry->write) {
            const Bytes written = entry->write();
            EXPECT_TRUE(written == vector.hex) << firstDifference(written, vector.hex);
        }
        // A vector whose bytes do not read back as written says what the reader makes of them.
        EXPECT_EQ(entry->read(vector.hex), field("reads").empty() ? field("values") : field("reads"));
    }
    for (const Entry& entry : entries())
        EXPECT_EQ(seen.count(entry.name), 1u) << "FORMATS.md has no vector " << entry.name;
}

} // namespace
