// zo archive: compressed archives as ZoClassSerialization writes and reads them.
#include "ZoTool.h"

#include "base/ZoClassSerialization.h"
#include "platform/CFile.h"

#include <cstdio>
#include <cstring>

namespace zotool {

namespace {

const char sc_help[] =
    "usage: zo archive pack IN OUT\n"
    "       zo archive unpack IN OUT\n"
    "       zo archive info FILE\n"
    "\n"
    "pack    writes IN's bytes as a compressed archive (the 28-byte header, then zlib data), as\n"
    "        ZoClassSerialization writes it; at most 4 GiB.\n"
    "unpack  writes the bytes a compressed archive holds.\n"
    "info    tells whether FILE starts with the compressed-archive header, its method, the stored\n"
    "        and uncompressed sizes and the ratio.\n";

// The header the library's compressed archives start with: 20 bytes of magic, the method and the
// uncompressed length, both 32-bit little-endian. The library keeps its own copy private.
const char sc_magic[] = "Halvo AG, 2005, comp";
const uint32_t sc_magicSize = 20;
const uint32_t sc_headerSize = 28;
const uint32_t sc_methodStored = 0;
const uint32_t sc_methodDeflate = 2;
const uint64_t sc_maximumSize = 0xFFFFFFFFu;

struct Header
{
    uint64_t fileSize = 0;
    bool recognised = false;
    // The magic is there but the file ends within the header.
    bool truncated = false;
    uint32_t method = 0;
    uint32_t uncompressedSize = 0;
};

uint32_t littleEndian32(const unsigned char* bytes)
{
    return static_cast<uint32_t>(bytes[0]) | (static_cast<uint32_t>(bytes[1]) << 8) |
           (static_cast<uint32_t>(bytes[2]) << 16) | (static_cast<uint32_t>(bytes[3]) << 24);
}

Header readHeader(const CString& path)
{
    CFile file;
    OpenForReading(path, file);
    Header header;
    unsigned char bytes[sc_headerSize] = {0};
    uint32_t read = 0;
    try {
        header.fileSize = file.GetLength();
        while (read < sc_headerSize) {
            const uint32_t got = file.Read(bytes + read, sc_headerSize - read);
            if (got == 0)
                break;
            read += got;
        }
    } catch (const CFileException&) {
        throw UserError(path, "cannot be read");
    }
    const uint32_t compared = read < sc_magicSize ? read : sc_magicSize;
    if (read == 0 || std::memcmp(bytes, sc_magic, compared) != 0)
        return header;
    if (read < sc_headerSize) {
        // A plain file that happens to start like the magic is as unlikely as it is harmless to
        // call truncated: the library would read it as a plain archive either way.
        header.truncated = true;
        return header;
    }
    header.recognised = true;
    header.method = littleEndian32(bytes + 20);
    header.uncompressedSize = littleEndian32(bytes + 24);
    return header;
}

std::string ratioText(uint64_t uncompressed, uint64_t stored)
{
    if (stored == 0)
        return "-";
    char text[64];
    std::snprintf(text, sizeof(text), "%.2f:1 (%.1f %% of the original)", static_cast<double>(uncompressed) / stored,
                  uncompressed == 0 ? 0.0 : 100.0 * static_cast<double>(stored) / uncompressed);
    return text;
}

int pack(const CString& in, const CString& out)
{
    const std::vector<unsigned char> bytes = ReadWholeFile(in, sc_maximumSize, "reading");
    OutputFile output(out);
    CArchive* archive = ZoClassSerialization::CreateArchive(output.GetTemporaryPath(),
                                                            ZoClassSerialization::eWriteCompressed);
    if (archive == nullptr)
        throw UserError(out, "cannot be created");
    try {
        Progress progress("packing", bytes.size());
        const uint64_t chunk = 1u << 20;
        for (uint64_t done = 0; done < bytes.size();) {
            const uint64_t step = bytes.size() - done < chunk ? bytes.size() - done : chunk;
            archive->Write(bytes.data() + done, static_cast<uint32_t>(step));
            done += step;
            progress.Update(done);
        }
    } catch (...) {
        ZoClassSerialization::ReleaseArchive(archive);
        throw UserError(out, "cannot be written");
    }
    // Releasing compresses and writes header and data.
    if (!ZoClassSerialization::ReleaseArchive(archive))
        throw UserError(out, "cannot be written (is the disk full?)");
    const uint64_t stored = ZoClassSerialization::GetFileSize(output.GetTemporaryPath());
    output.Commit();
    Print(Narrow(out) + ": " + std::to_string(bytes.size()) + " bytes packed into " + std::to_string(stored) +
          ", ratio " + ratioText(bytes.size(), stored) + "\n");
    return 0;
}

int unpack(const CString& in, const CString& out)
{
    const Header header = readHeader(in);
    if (header.truncated)
        throw UserError(in, "truncated compressed archive: the file ends inside its 28-byte header");
    if (!header.recognised)
        throw UserError(in, "is not a compressed archive (it does not start with \"" + std::string(sc_magic) + "\")");
    if (header.method != sc_methodStored && header.method != sc_methodDeflate)
        throw UserError(in, "compressed archive with unknown method " + std::to_string(header.method));
    CArchive* archive = ZoClassSerialization::CreateArchive(in, ZoClassSerialization::eRead);
    if (archive == nullptr)
        throw UserError(in, "truncated or damaged compressed archive: its header names more data than the file can hold");
    std::vector<unsigned char> bytes;
    try {
        // A stored archive is read from its first byte, header included, as the library's readers
        // have always done; its payload follows the header.
        if (header.method == sc_methodStored) {
            unsigned char skipped[sc_headerSize];
            archive->Read(skipped, sc_headerSize);
        }
        Progress progress("unpacking", header.uncompressedSize);
        std::vector<unsigned char> chunk(1u << 20);
        for (;;) {
            const uint32_t got = archive->Read(chunk.data(), static_cast<uint32_t>(chunk.size()));
            if (got == 0)
                break;
            bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + got);
            progress.Update(bytes.size());
        }
    } catch (...) {
        ZoClassSerialization::ReleaseArchive(archive);
        throw UserError(in, "cannot be read");
    }
    ZoClassSerialization::ReleaseArchive(archive);
    // The archive expands a damaged payload to nothing; the header's length tells.
    if (bytes.size() != header.uncompressedSize)
        throw UserError(in, "truncated or damaged compressed archive: it holds " + std::to_string(bytes.size()) +
                                " of the " + std::to_string(header.uncompressedSize) + " bytes its header names");
    WriteWholeFile(out, bytes.data(), bytes.size(), "writing");
    Print(Narrow(out) + ": " + std::to_string(bytes.size()) + " bytes unpacked\n");
    return 0;
}

int info(const CString& path)
{
    const Header header = readHeader(path);
    std::string text = "file:              " + Narrow(path) + "\n";
    if (!header.recognised) {
        text += header.truncated ? "magic:             truncated (the file ends inside the header)\n"
                                 : "magic:             not recognised (a plain archive or another file)\n";
        text += "stored size:       " + std::to_string(header.fileSize) + " bytes\n";
        Print(text);
        return 0;
    }
    const uint64_t stored = header.fileSize - sc_headerSize;
    const char* method = header.method == sc_methodDeflate  ? " (deflate)"
                         : header.method == sc_methodStored ? " (stored)"
                                                            : " (unknown)";
    text += "magic:             recognised (\"" + std::string(sc_magic) + "\")\n";
    text += "method:            " + std::to_string(header.method) + method + "\n";
    text += "stored size:       " + std::to_string(header.fileSize) + " bytes (" + std::to_string(stored) +
            " after the header)\n";
    text += "uncompressed size: " + std::to_string(header.uncompressedSize) + " bytes\n";
    text += "ratio:             " + ratioText(header.uncompressedSize, header.fileSize) + "\n";
    Print(text);
    return 0;
}

} // namespace

int RunArchive(const Arguments& arguments)
{
    if (WantsHelp(arguments)) {
        Print(sc_help);
        return 0;
    }
    const SplitArguments split = Split("archive", arguments, {});
    const Arguments& words = split.positional;
    const std::string action = words.empty() ? std::string() : Narrow(words[0]);
    if (action == "pack" && words.size() == 3)
        return pack(words[1], words[2]);
    if (action == "unpack" && words.size() == 3)
        return unpack(words[1], words[2]);
    if (action == "info" && words.size() == 2)
        return info(words[1]);
    if (action != "pack" && action != "unpack" && action != "info")
        throw UsageError("archive", action.empty() ? "name an action: pack, unpack or info"
                                                   : "unknown action \"" + action + "\"");
    throw UsageError("archive", "wrong number of arguments for " + action);
}

} // namespace zotool
