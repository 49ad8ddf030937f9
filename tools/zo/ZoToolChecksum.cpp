// zo md5 and zo uuid: the library's checksums and unique identifiers.
#include "ZoTool.h"

#include "base/ZoMD5.h"
#include "base/ZoUniqueID.h"

namespace zotool {

namespace {

const char sc_helpMD5[] =
    "usage: zo md5 FILE...\n"
    "       zo md5 --text TEXT\n"
    "\n"
    "Prints each file's MD5 digest and name as md5sum does (\"digest  name\"); files of at most\n"
    "4 GiB. With --text, the digest of TEXT's UTF-16 code units as little-endian bytes, the way\n"
    "ZoMD5 hashes a string (so \"a\" hashes the bytes 61 00).\n"
    "A file that cannot be read is reported and the others are still hashed; the exit code is 1.\n";

const char sc_helpUniqueID[] =
    "usage: zo uuid [-n N]\n"
    "\n"
    "Prints N (default 1) new unique identifiers, one a line: time-ordered UUIDs, upper case.\n";

} // namespace

int RunMD5(const Arguments& arguments)
{
    if (WantsHelp(arguments)) {
        Print(sc_helpMD5);
        return 0;
    }
    const SplitArguments split = Split("md5", arguments, {"--text"});
    if (split.Has("--text")) {
        if (!split.positional.empty())
            throw UsageError("md5", "--text takes no files");
        Print(Narrow(ZoMD5::GetChecksum(split.options.at("--text"))) + "\n");
        return 0;
    }
    if (split.positional.empty())
        throw UsageError("md5", "name at least one file, or --text TEXT");
    int result = 0;
    for (const CString& path : split.positional) {
        try {
            const std::vector<unsigned char> bytes = ReadWholeFile(path, 0xFFFFFFFFu, "hashing");
            const CString digest = ZoMD5::GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size()));
            Print(Narrow(digest) + "  " + Narrow(path) + "\n");
        } catch (const UserError& e) {
            PrintError(std::string("zo: ") + e.what() + "\n");
            result = 1;
        }
    }
    return result;
}

int RunUniqueID(const Arguments& arguments)
{
    if (WantsHelp(arguments)) {
        Print(sc_helpUniqueID);
        return 0;
    }
    const SplitArguments split = Split("uuid", arguments, {"-n"});
    if (!split.positional.empty())
        throw UsageError("uuid", "unexpected argument \"" + Narrow(split.positional[0]) + "\"");
    const uint64_t count = split.Has("-n") ? ParseCount("uuid", "-n", split.options.at("-n")) : 1;
    std::string text;
    for (uint64_t i = 0; i < count; ++i) {
        text += Narrow(ZoUniqueID::GetUniqueID()) + "\n";
        if (text.size() >= 1u << 16) {
            Print(text);
            text.clear();
        }
    }
    Print(text);
    return 0;
}

} // namespace zotool
