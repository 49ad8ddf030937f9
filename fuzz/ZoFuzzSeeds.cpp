// Writes the seed corpora of the fuzz targets: valid inputs made by the library's own writers, laid
// out as each target reads its input (see ZoFuzzSupport.h), so that fuzzing starts deep inside the
// readers instead of at their first check. Run by fuzz/run from the folder of the targets (the LZMA
// codec library is loaded from there); the argument is the folder that gets a corpus-<target>
// folder per target.
#include "ZoFuzzSupport.h"

#include "base/ZoArray.h"
#include "base/ZoArray2D.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoAttributeParameter.h"
#include "base/ZoClassFlags.h"
#include "base/ZoClassIndex.h"
#include "base/ZoClassName.h"
#include "base/ZoColor.h"
#include "base/ZoColorTable.h"
#include "base/ZoDateTime.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "base/ZoStreamWriteASCIIFile.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressLZMA.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoCompressZIP.h"
#include "compression/ZoFloatingPointQuantizationUniform.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"
#include "compression/ZoStreamWritePredictiveCoder.h"

#include <sys/stat.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

typedef std::vector<unsigned char> Bytes;

std::string g_folder;
int g_written = 0;

void seed(const std::string& target, const Bytes& bytes)
{
    const std::string folder = g_folder + "/corpus-" + target;
    mkdir(folder.c_str(), 0755);
    const std::string path = folder + "/seed-" + std::to_string(g_written++);
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

Bytes fileBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

Bytes littleEndian(uint32_t value, int bytes)
{
    Bytes out;
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<unsigned char>(value >> (8 * i)));
    return out;
}

Bytes operator+(Bytes left, const Bytes& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes utf16(const CString& text)
{
    const unsigned char* units = reinterpret_cast<const unsigned char*>(text.GetString());
    return Bytes(units, units + 2 * text.GetLength());
}

Bytes ascii(const std::string& text) { return Bytes(text.begin(), text.end()); }

// Sample payloads: text-like, repetitive, and noisy bytes of a few sizes.
std::vector<Bytes> samples()
{
    std::vector<Bytes> out;
    out.push_back(ascii("Zo writes this line, and this line again: Zo writes this line."));
    out.push_back(Bytes(3000, 'a'));
    Bytes noisy;
    uint32_t state = 12345;
    for (int i = 0; i < 700; ++i) {
        state = state * 1664525u + 1013904223u;
        noisy.push_back(static_cast<unsigned char>(state >> 24));
    }
    out.push_back(noisy);
    out.push_back(Bytes());
    return out;
}

template <class Writable>
Bytes serialized(const Writable& object)
{
    ZoStreamWriteBinaryMemory out;
    object.Serialize(out);
    return out.GetBuffer();
}

// The shortest-path recording hooks, opened up for writing a recording.
class RecordedShortestPath : public ZoMpGraphToShortestPath
{
public:
    Bytes Input() const
    {
        ZoStreamWriteBinaryMemory out;
        serializeUnitTestInput(out);
        return out.GetBuffer();
    }
    Bytes Output() const
    {
        ZoStreamWriteBinaryMemory out;
        serializeUnitTestOutput(out);
        return out.GetBuffer();
    }
};

void arrays()
{
    const std::string target = "ZoArraySerializeFuzz";
    for (uint32_t count : {0u, 1u, 300u}) {
        ZoArray<unsigned char, 0> bytes(count);
        for (uint32_t i = 0; i < count; ++i)
            bytes[i] = static_cast<unsigned char>(i * 7);
        seed(target, zofuzz::withSelector(zofuzz::eArrayBytes, serialized(bytes)));
        seed(target, zofuzz::withSelector(0x80 | zofuzz::eArrayBytes, serialized(bytes)));
        ZoArrayDynamicSize records(count, count % 7 + 1);
        records.Reset();
        seed(target, zofuzz::withSelector(zofuzz::eArrayDynamicSize, serialized(records)));
    }
    // 3 x 2 is the shape the target's filled arrays hold, so the same-count branches are reached.
    const uint32_t shapes[][2] = {{3, 2}, {2, 3}, {0, 5}, {17, 9}};
    for (const auto& shape : shapes) {
        ZoArray2D<unsigned char> a(shape[0], shape[1]);
        ZoArray2D<unsigned short> b(shape[0], shape[1]);
        ZoArray2D<uint32_t> c(shape[0], shape[1]);
        ZoArray2D<float> d(shape[0], shape[1]);
        for (uint32_t i = 0; i < shape[0] * shape[1]; ++i) {
            a.GetData()[i] = static_cast<unsigned char>(i);
            b.GetData()[i] = static_cast<unsigned short>(i * 257);
            c.GetData()[i] = i * 0x01010101u;
            d.GetData()[i] = static_cast<float>(i) / 3.0f;
        }
        for (uint8_t filled : {0, 0x80}) {
            seed(target, zofuzz::withSelector(filled | zofuzz::eArray2DUnsignedChar, serialized(a)));
            seed(target, zofuzz::withSelector(filled | zofuzz::eArray2DUnsignedShort, serialized(b)));
            seed(target, zofuzz::withSelector(filled | zofuzz::eArray2DUnsigned32, serialized(c)));
            seed(target, zofuzz::withSelector(filled | zofuzz::eArray2DFloat, serialized(d)));
        }
    }
}

void objects()
{
    const std::string target = "ZoObjectSerializeFuzz";
    seed(target, zofuzz::withSelector(zofuzz::eObjectAttributeParameter, serialized(ZoAttributeParameter())));
    seed(target, zofuzz::withSelector(zofuzz::eObjectColor, serialized(ZoColor::c_ALICEBLUE)));
    ZoColorTable table(40, -1.0f, 5.0f);
    seed(target, zofuzz::withSelector(zofuzz::eObjectColorTable, serialized(table)));
    seed(target, zofuzz::withSelector(zofuzz::eObjectClassName, serialized(ZoClassName(CString(u"ZoGraphNode")))));
    seed(target, zofuzz::withSelector(zofuzz::eObjectClassFlags, serialized(ZoClassFlags(0x22))));
    seed(target, zofuzz::withSelector(zofuzz::eObjectClassIndex, serialized(ZoClassIndex(17))));

    // A small weighted graph with a path through it, and the same with one node.
    for (uint32_t nodes : {1u, 6u}) {
        ZoGraph graph;
        std::vector<ZoGraphNode*> all;
        for (uint32_t i = 0; i < nodes; ++i) {
            all.push_back(new ZoGraphNode(CString(std::u16string(u"node ") + static_cast<char16_t>(u'A' + i))));
            graph.InsertNode(all.back());
        }
        for (uint32_t i = 0; i + 1 < nodes; ++i) {
            all[i]->AddConnection(*all[i + 1], 1.5f * static_cast<float>(i + 1));
            if (i + 2 < nodes)
                all[i]->AddConnection(*all[i + 2], 4.0f);
        }
        RecordedShortestPath search;
        search.SetInput(graph, *all.front(), *all.back());
        seed(target, zofuzz::withSelector(zofuzz::eObjectAlgorithmSettings, [&] {
                 ZoStreamWriteBinaryMemory out;
                 search.ZoAlgorithm::Serialize(out);
                 return out.GetBuffer();
             }()));
        seed(target, zofuzz::withSelector(zofuzz::eObjectGraphInput, search.Input()));
        search.Compute();
        seed(target, zofuzz::withSelector(zofuzz::eObjectGraphOutput, search.Output()));
    }
}

void binaryStream()
{
    // For a few script seeds, the values in the order the target's script reads them.
    for (uint32_t first = 0; first < 6; ++first) {
        ZoStreamWriteBinaryMemory out;
        uint32_t script = first;
        for (int step = 0; step < 60; ++step) {
            script = zofuzz::nextBinaryScript(script);
            const uint32_t extra = zofuzz::binaryScriptExtra(script);
            switch (zofuzz::binaryScriptKind(script)) {
            case 0: out << CString(std::u16string(step * 7 % 300, u'x')); break;
            case 1: out << 3.25; break;
            case 2: out << 1.5f; break;
            case 3: case 4: out << static_cast<uint64_t>(step) * 0x0101010101ull; break;
            case 5: case 6: out << static_cast<unsigned long>(step); break;
            case 7: case 8: out << static_cast<uint32_t>(step); break;
            case 9: case 10: out << static_cast<uint16_t>(step); break;
            case 11: case 12: case 13: out << static_cast<unsigned char>(step & 1); break;
            case 14: out.WriteBuffer(Bytes(extra % 64, 0x5A).data(), extra % 64); break;
            default: out.WriteVersion(extra / 2); break;
            }
        }
        seed("ZoStreamReadBinaryFuzz", zofuzz::withSelector(static_cast<uint8_t>(first), out.GetBuffer()));
    }
}

void files(const std::string& scratch)
{
    // The archive loader reads pairs of a 32-bit value and a string, plain and compressed.
    const CString path(std::u16string(scratch.begin(), scratch.end()));
    for (auto mode : {ZoStreamWriteBinaryFile::eCompressionNone, ZoStreamWriteBinaryFile::eCompressionZIP}) {
        {
            ZoStreamWriteBinaryFile out(path, mode);
            for (uint32_t i = 0; i < 20; ++i)
                out << i << CString(std::u16string(i * 13, u'q'));
            out.Close();
        }
        seed("ZoArchiveLoadFuzz", fileBytes(scratch));
    }
    // Text: short and long lines (past the reader's 127-byte chunks), both line breaks.
    {
        ZoStreamWriteASCIIFile out(path);
        out << CString(u"first line") << CString(u"\r\n") << CString(std::u16string(300, u'w'))
            << CString(u"\n\n") << CString(std::u16string(127, u'c')) << CString(u"\r\nlast");
    }
    const Bytes text = fileBytes(scratch);
    seed("ZoArchiveLoadFuzz", text);
    for (uint8_t choice : {0, 1, 7})
        seed("ZoStreamReadASCIIFuzz", zofuzz::withSelector(choice, text));
    std::remove(scratch.c_str());
}

void codecs()
{
    for (const Bytes& sample : samples()) {
        ZoCompressZIP zip;
        zip.Compress(sample.data(), static_cast<uint32_t>(sample.size()));
        const Bytes stream(zip.GetOutputBuffer(), zip.GetOutputBuffer() + zip.GetOutputSize());
        for (uint32_t declared : {static_cast<uint32_t>(sample.size()), static_cast<uint32_t>(sample.size()) + 100})
            seed("ZoDecompressZIPFuzz", littleEndian(declared, 4) + stream);

        ZoCompressLZMA lzma;
        if (!sample.empty() && lzma.Compress(sample.data(), static_cast<uint32_t>(sample.size()), 0) == 1) {
            const Bytes whole(lzma.GetOutputBuffer(), lzma.GetOutputBuffer() + lzma.GetOutputSize());
            seed("ZoDecompressLZMAFuzz", Bytes(1, 1) + whole);
            if (whole.size() > 13 && sample.size() < 65536)
                seed("ZoDecompressLZMAFuzz", Bytes{0, static_cast<unsigned char>(sample.size() >> 8),
                                                   static_cast<unsigned char>(sample.size())} +
                                                 Bytes(whole.begin() + 13, whole.end()));
        }
    }

    // The range coder's script, for each alphabet.
    for (uint8_t alphabet = 0; alphabet < 8; ++alphabet) {
        const uint32_t symbols = zofuzz::kRangeCoderAlphabets[alphabet];
        ZoStreamWriteBinaryMemory out;
        {
            ZoCompressRangeCoder coder(out, symbols, 0);
            ZoProbabilityModelQuasiStatic side(7, 12, 500);
            for (uint32_t step = 0; step < 400; ++step) {
                const unsigned char raw[5] = {1, 2, 3, 4, static_cast<unsigned char>(step)};
                switch (zofuzz::rangeCoderKind(step)) {
                case 0: case 1: case 2: coder << (step * step) % symbols; break;
                case 3: coder.WriteSymbol(step % 7, side); break;
                case 4: case 5: coder.WriteRawBits(step * 2654435761u, zofuzz::rangeCoderWidth(step)); break;
                case 6: coder.WriteRaw(raw, sizeof raw); break;
                default: coder << static_cast<double>(step) / 8.0; break;
                }
            }
        }
        seed("ZoDecompressRangeCoderFuzz", zofuzz::withSelector(alphabet, out.GetBuffer()));
    }

    // Predictive coding: slowly drifting values, each predicted by the one before.
    for (uint32_t n : {1u, 8u, 17u, 32u}) {
        ZoStreamWriteBinaryMemory out;
        {
            ZoStreamWritePredictiveCoder coder(out, n, 64);
            uint32_t previous = 0;
            for (uint32_t i = 0; i < 500; ++i) {
                const uint32_t mask = n == 32 ? 0xFFFFFFFFu : (1u << n) - 1;
                const uint32_t value = (previous + (i % 5) - 2) & mask;
                coder.WriteValue(value, previous);
                previous = value;
            }
        }
        seed("ZoStreamReadPredictiveCoderFuzz", zofuzz::withSelector(static_cast<uint8_t>(n - 1), out.GetBuffer()));
    }

    // Floating point, lossless and on the target's grid.
    for (uint8_t mode : {0, 2}) {
        ZoStreamWriteBinaryMemory out;
        {
            ZoFloatingPointQuantizationUniform grid(-1000.0f, 1000.0f, 100.0f);
            std::unique_ptr<ZoStreamWriteCompressedFloatingPoint> writer(
                mode ? new ZoStreamWriteCompressedFloatingPoint(out, grid, 0, 64)
                     : new ZoStreamWriteCompressedFloatingPoint(out, 64));
            float previous = 0;
            for (int i = 0; i < 400; ++i) {
                const float value = 100.0f * std::sin(static_cast<float>(i) / 20.0f);
                writer->WriteValue(value, previous);
                previous = value;
            }
        }
        seed("ZoStreamReadCompressedFloatingPointFuzz", zofuzz::withSelector(mode, out.GetBuffer()));
    }
}

void texts()
{
    // Dates in every display form (the sortable one is what the parser reads back), and values of
    // every kind as the variant writes them.
    for (uint64_t ticks : {0ull, 132537600000000000ull, 159000000000000000ull, 250000000000000000ull}) {
        const ZoDateTime value(ticks);
        for (uint32_t format = 2; format < 8; ++format) {
            const CString text = value.ToString(static_cast<ZoDateTime::EFormat>(format));
            seed("ZoDateTimeFuzz", utf16(text));
        }
        const CString sortable = value.ToString(ZoDateTime::eFormatSortable);
        seed("ZoDateTimeFuzz", ascii(std::string(sortable.GetString(), sortable.GetString() + sortable.GetLength())));
    }
    for (const char16_t* text : {u"1", u"0", u"-17", u"4294967295", u"3.25", u"-1e-3", u"TRUE", u"false", u"0xFF8800",
                                 u"2024-02-29 13:45:00", u"", u"  12  "})
        seed("ZoVariantFuzz", utf16(CString(text)));
}

// Edge files as people write them: comments, blank lines, CR LF, tabs, a byte-order mark.
void edgeFiles()
{
    for (const char* text : {"a b 1\nb c 2.5\n", "# roads\r\n\r\nA_1\tB_2\t0.125\r\n", "\xEF\xBB\xBF" "1 2 3\n2 3 4",
                             "x y 1e3\n  # end\n", "a b -1\n", "a b\n"}) {
        const std::string bytes(text);
        seed("ZoEdgeFileFuzz", Bytes(bytes.begin(), bytes.end()));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    g_folder = argv[1];
    arrays();
    objects();
    binaryStream();
    files(g_folder + "/seed-scratch.bin");
    codecs();
    texts();
    edgeFiles();
    std::printf("%d seeds written\n", g_written);
    return 0;
}
