// zo floats: raw little-endian float32 data through the compressed floating-point streams.
//
// A packed file is a plain binary stream of the library's encoding: the text "zo floats", version
// record 1, the row width, the value count (64-bit), the predictor (0 previous, 1 left-up), the
// quantization (0 exact, 1 uniform) with its minimum, maximum and scale, the 0..3 bytes after the
// last whole float, and then what ZoStreamWriteCompressedFloatingPoint writes.
#include "ZoTool.h"

#include "base/ZoClassSerialization.h"
#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "compression/ZoFloatingPointQuantizationLogarithmic.h"
#include "compression/ZoFloatingPointQuantizationUniform.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"
#include "platform/CFile.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace zotool {

namespace {

const char sc_help[] =
    "usage: zo floats pack IN OUT --width W [--predict previous|left-up]\n"
    "                             [--quantize exact|uniform:MIN:MAX:SCALE]\n"
    "       zo floats unpack IN OUT\n"
    "\n"
    "IN of pack is raw little-endian float32 values, W to a row. Each value is coded as its\n"
    "difference from a prediction: `previous` (default) the value to its left (above, at a row's\n"
    "start), `left-up` left + up - up-left, the plane through the three neighbours.\n"
    "`exact` (default) keeps every bit, and unpack restores the bytes exactly; uniform rounds to\n"
    "steps of 1/SCALE within [MIN, MAX] and clamps values outside.\n"
    "Prints the ratio and the coding speed in MB/s.\n";

const char16_t sc_tag[] = u"zo floats";
const unsigned int sc_version = 1;
const uint32_t sc_maximumWidth = 1u << 24;

enum EPredictor : uint32_t
{
    ePrevious = 0,
    eLeftUp = 1,
};
enum EQuantize : uint32_t
{
    eExact = 0,
    eUniform = 1,
};

struct Settings
{
    uint32_t width = 0;
    uint64_t count = 0;
    uint32_t predictor = ePrevious;
    uint32_t quantize = eExact;
    float minimum = 0;
    float maximum = 0;
    float scale = 0;
};

// Predicts value `index` from the values before it; `rows[0]` is the row above, `rows[1]` this one
// (both `width` wide, filled up to the current column).
class Predictor
{
public:
    Predictor(uint32_t width, uint32_t kind) : m_width(width), m_kind(kind), m_above(width), m_current(width) {}

    float Predict(uint64_t index) const
    {
        const uint32_t column = static_cast<uint32_t>(index % m_width);
        const bool firstRow = index < m_width;
        if (column == 0)
            return firstRow ? 0.0f : m_above[0];
        if (firstRow || m_kind == ePrevious)
            return m_current[column - 1];
        return m_current[column - 1] + m_above[column] - m_above[column - 1];
    }
    // Records the value as the reader will see it.
    void Record(uint64_t index, float value)
    {
        const uint32_t column = static_cast<uint32_t>(index % m_width);
        m_current[column] = value;
        if (column + 1 == m_width)
            m_above.swap(m_current);
    }

private:
    uint32_t m_width;
    uint32_t m_kind;
    std::vector<float> m_above;
    std::vector<float> m_current;
};

std::unique_ptr<ZoFloatingPointQuantization> makeQuantization(const Settings& settings)
{
    if (settings.quantize == eUniform)
        return std::make_unique<ZoFloatingPointQuantizationUniform>(settings.minimum, settings.maximum, settings.scale);
    return std::make_unique<ZoFloatingPointQuantizationLogarithmic<23, 8>>();
}

float parseFloat(const std::string& text)
{
    float value = 0;
    const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(value))
        throw UsageError("floats", "\"" + text + "\" is not a finite number");
    return value;
}

void parseQuantize(const std::string& text, Settings& settings)
{
    if (text == "exact")
        return;
    const std::string prefix = "uniform:";
    if (text.compare(0, prefix.size(), prefix) != 0)
        throw UsageError("floats", "--quantize takes exact or uniform:MIN:MAX:SCALE, not \"" + text + "\"");
    const std::string rest = text.substr(prefix.size());
    const size_t first = rest.find(':');
    const size_t second = first == std::string::npos ? first : rest.find(':', first + 1);
    if (second == std::string::npos)
        throw UsageError("floats", "--quantize uniform needs MIN:MAX:SCALE");
    settings.quantize = eUniform;
    settings.minimum = parseFloat(rest.substr(0, first));
    settings.maximum = parseFloat(rest.substr(first + 1, second - first - 1));
    settings.scale = parseFloat(rest.substr(second + 1));
    const double steps = (static_cast<double>(settings.maximum) - settings.minimum) * settings.scale;
    if (!(settings.maximum > settings.minimum) || !(settings.scale > 0) || steps >= 4294967295.0 ||
        std::fabs(static_cast<double>(settings.minimum) * settings.scale) >= 2147483647.0 ||
        std::fabs(static_cast<double>(settings.maximum) * settings.scale) >= 2147483647.0)
        throw UsageError("floats", "uniform quantization needs MIN < MAX, SCALE > 0 and MIN*SCALE, MAX*SCALE "
                                   "within the 32-bit range");
}

std::string ratioAndSpeed(uint64_t raw, uint64_t packed, double seconds)
{
    char text[96];
    std::snprintf(text, sizeof(text), "ratio %.2f:1, %.1f MB/s", packed == 0 ? 0.0 : static_cast<double>(raw) / packed,
                  seconds > 0 ? static_cast<double>(raw) / 1e6 / seconds : 0.0);
    return text;
}

int pack(const SplitArguments& split)
{
    const CString& in = split.positional[1];
    const CString& out = split.positional[2];
    if (!split.Has("--width"))
        throw UsageError("floats", "pack needs --width W");
    Settings settings;
    const uint64_t width = ParseCount("floats", "--width", split.options.at("--width"));
    if (width == 0 || width > sc_maximumWidth)
        throw UsageError("floats", "--width must be 1 .. " + std::to_string(sc_maximumWidth));
    settings.width = static_cast<uint32_t>(width);
    if (split.Has("--predict")) {
        const std::string predictor = Narrow(split.options.at("--predict"));
        if (predictor != "previous" && predictor != "left-up")
            throw UsageError("floats", "--predict takes previous or left-up, not \"" + predictor + "\"");
        settings.predictor = predictor == "left-up" ? eLeftUp : ePrevious;
    }
    if (split.Has("--quantize"))
        parseQuantize(Narrow(split.options.at("--quantize")), settings);

    const std::vector<unsigned char> bytes = ReadWholeFile(in, uint64_t(1) << 40, "reading");
    settings.count = bytes.size() / 4;
    const uint32_t tail = static_cast<uint32_t>(bytes.size() % 4);
    OutputFile output(out);
    const auto started = std::chrono::steady_clock::now();
    try {
        ZoStreamWriteBinaryFile stream(output.GetTemporaryPath(), ZoStreamWriteBinaryFile::eCompressionNone);
        stream << CString(sc_tag);
        stream.WriteVersion(sc_version);
        stream << settings.width << static_cast<unsigned long long>(settings.count) << settings.predictor
               << settings.quantize << settings.minimum << settings.maximum << settings.scale << tail;
        for (uint32_t i = 0; i < tail; ++i)
            stream << bytes[static_cast<size_t>(settings.count * 4 + i)];
        {
            std::unique_ptr<ZoFloatingPointQuantization> quantization = makeQuantization(settings);
            ZoStreamWriteCompressedFloatingPoint coder(stream, *quantization, 0,
                                                       static_cast<uint32_t>(std::min<uint64_t>(bytes.size(), 1u << 30)));
            Predictor predictor(settings.width, settings.predictor);
            Progress progress("packing", bytes.size());
            for (uint64_t i = 0; i < settings.count; ++i) {
                float value = 0;
                std::memcpy(&value, bytes.data() + i * 4, 4);
                const float prediction = predictor.Predict(i);
                coder.WriteValue(value, prediction);
                predictor.Record(i, quantization->Unmap(quantization->Map(value)));
                if ((i & 0xFFFFF) == 0)
                    progress.Update(i * 4);
            }
        }
        stream.Close();
    } catch (const ZoException&) {
        throw UserError(out, "cannot be written (is the disk full?)");
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    const uint64_t packed = ZoClassSerialization::GetFileSize(output.GetTemporaryPath());
    output.Commit();
    Print(Narrow(out) + ": " + std::to_string(settings.count) + " floats, " + std::to_string(settings.width) +
          " a row, packed into " + std::to_string(packed) + " bytes, " + ratioAndSpeed(bytes.size(), packed, seconds) +
          "\n");
    return 0;
}

int unpack(const SplitArguments& split)
{
    const CString& in = split.positional[1];
    const CString& out = split.positional[2];
    if (split.Has("--width") || split.Has("--predict") || split.Has("--quantize"))
        throw UsageError("floats", "unpack takes its settings from the packed file");
    if (ZoClassSerialization::IsDirectory(in))
        throw UserError(in, "is a folder, not a file");
    if (!ZoClassSerialization::Exists(in))
        throw UserError(in, "no such file");
    const uint64_t packed = ZoClassSerialization::GetFileSize(in);
    OutputFile output(out);
    Settings settings;
    const auto started = std::chrono::steady_clock::now();
    try {
        ZoStreamReadBinaryFile stream(in);
        CString tag;
        stream >> tag;
        if (tag != CString(sc_tag))
            throw UserError(in, "is not a file of zo floats pack");
        stream.ReadAndCompareVersion(sc_version);
        unsigned long long count = 0;
        uint32_t tail = 0;
        stream >> settings.width >> count >> settings.predictor >> settings.quantize >> settings.minimum >>
            settings.maximum >> settings.scale >> tail;
        settings.count = count;
        if (settings.width == 0 || settings.width > sc_maximumWidth || settings.predictor > eLeftUp ||
            settings.quantize > eUniform || tail > 3)
            throw UserError(in, "damaged packed float file: its settings are out of range");
        unsigned char tailBytes[3] = {0, 0, 0};
        for (uint32_t i = 0; i < tail; ++i)
            stream >> tailBytes[i];
        std::unique_ptr<ZoFloatingPointQuantization> quantization = makeQuantization(settings);
        CFile file;
        if (!file.Open(output.GetTemporaryPath(), CFile::modeCreate | CFile::modeWrite))
            throw UserError(out, "cannot be created");
        ZoStreamReadCompressedFloatingPoint coder(stream, *quantization, 0);
        Predictor predictor(settings.width, settings.predictor);
        Progress progress("unpacking", settings.count * 4);
        // The count comes from the file: values go out in chunks, never into one buffer of that size.
        std::vector<unsigned char> chunk;
        for (uint64_t i = 0; i < settings.count; ++i) {
            const float value = coder.ReadValue(predictor.Predict(i));
            predictor.Record(i, value);
            unsigned char valueBytes[4];
            std::memcpy(valueBytes, &value, 4);
            chunk.insert(chunk.end(), valueBytes, valueBytes + 4);
            if (chunk.size() >= (1u << 20)) {
                file.Write(chunk.data(), static_cast<uint32_t>(chunk.size()));
                chunk.clear();
                progress.Update((i + 1) * 4);
            }
        }
        chunk.insert(chunk.end(), tailBytes, tailBytes + tail);
        file.Write(chunk.data(), static_cast<uint32_t>(chunk.size()));
        file.Close();
    } catch (const UserError&) {
        throw;
    } catch (const CFileException&) {
        throw UserError(out, "cannot be written (is the disk full?)");
    } catch (const ZoException&) {
        throw UserError(in, "damaged or truncated packed float file");
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    output.Commit();
    const uint64_t raw = settings.count * 4;
    Print(Narrow(out) + ": " + std::to_string(settings.count) + " floats unpacked" +
          (settings.quantize == eUniform ? " (uniform quantization: values within half a step)" : "") + ", " +
          ratioAndSpeed(raw, packed, seconds) + "\n");
    return 0;
}

} // namespace

int RunFloats(const Arguments& arguments)
{
    if (WantsHelp(arguments)) {
        Print(sc_help);
        return 0;
    }
    const SplitArguments split = Split("floats", arguments, {"--width", "--predict", "--quantize"});
    const std::string action = split.positional.empty() ? std::string() : Narrow(split.positional[0]);
    if (action != "pack" && action != "unpack")
        throw UsageError("floats", action.empty() ? "name an action: pack or unpack"
                                                  : "unknown action \"" + action + "\"");
    if (split.positional.size() != 3)
        throw UsageError("floats", action + " takes IN OUT");
    return action == "pack" ? pack(split) : unpack(split);
}

} // namespace zotool
