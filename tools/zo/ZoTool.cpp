// zo: the library's formats on the command line. main() dispatches to one source per subcommand and
// turns the two kinds of failure into exit codes: 1 for a fault the user can fix, 2 for a command
// line the tool cannot read.
#include "ZoTool.h"

#include "base/ZoClassSerialization.h"
#include "base/ZoException.h"
#include "base/ZoUniqueID.h"
#include "platform/CFile.h"
#include "platform/ZoOS.h"

#include <cstdio>
#include <new>

namespace zotool {

namespace {

const uint64_t sc_progressThreshold = 16u << 20;
const uint32_t sc_chunk = 1u << 20;

const char sc_help[] =
    "usage: zo COMMAND [ARGUMENTS]\n"
    "\n"
    "The Zo library's files without writing a program.\n"
    "\n"
    "commands:\n"
    "  archive pack IN OUT      a compressed archive of IN's bytes\n"
    "  archive unpack IN OUT    the bytes back out of a compressed archive\n"
    "  archive info FILE        header, method, sizes and ratio of an archive\n"
    "  md5 FILE...              MD5 digests of files, as md5sum prints them\n"
    "  md5 --text TEXT          MD5 digest of a text's UTF-16 code units\n"
    "  uuid [-n N]              new unique identifiers\n"
    "  graph path EDGES FROM TO the shortest path through an edge list\n"
    "  floats pack|unpack ...   float32 data through the compressed floating-point streams\n"
    "  options get|set|delete   persistent options\n"
    "\n"
    "`zo COMMAND --help` tells more. Exit codes: 0 success, 1 a file or value is wrong (one line\n"
    "on standard error says which), 2 the command line is wrong.\n";

std::string problemText(const std::string& subject, const std::string& problem)
{
    return subject + ": " + problem;
}

} // namespace

UserError::UserError(const CString& subject, const std::string& problem)
    : std::runtime_error(problemText(Narrow(subject), problem))
{
}

UsageError::UsageError(const std::string& command, const std::string& problem)
    : std::runtime_error(problem), m_command(command)
{
}

std::string Narrow(const CString& text)
{
    return text.ToUtf8();
}

bool WantsHelp(const Arguments& arguments)
{
    for (const CString& argument : arguments) {
        if (argument == CString(u"--help") || argument == CString(u"-h"))
            return true;
        if (argument == CString(u"--"))
            return false;
    }
    return false;
}

SplitArguments Split(const std::string& command, const Arguments& arguments, const std::vector<std::string>& valued)
{
    SplitArguments split;
    bool optionsEnded = false;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string text = Narrow(arguments[i]);
        if (optionsEnded || text.size() < 2 || text[0] != '-') {
            split.positional.push_back(arguments[i]);
            continue;
        }
        if (text == "--") {
            optionsEnded = true;
            continue;
        }
        bool known = false;
        for (const std::string& name : valued)
            known = known || name == text;
        if (!known)
            throw UsageError(command, "unknown option " + text);
        if (i + 1 >= arguments.size())
            throw UsageError(command, "option " + text + " needs a value");
        split.options[text] = arguments[++i];
    }
    return split;
}

uint64_t ParseCount(const std::string& command, const std::string& what, const CString& text)
{
    const std::string digits = Narrow(text);
    uint64_t value = 0;
    for (char c : digits) {
        if (c < '0' || c > '9' || value > 0xFFFFFFFFu)
            throw UsageError(command, what + " must be a whole number, not \"" + digits + "\"");
        value = value * 10 + static_cast<uint64_t>(c - '0');
    }
    if (digits.empty())
        throw UsageError(command, what + " must be a whole number");
    return value;
}

void Print(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void PrintError(const std::string& text)
{
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
}

void OpenForReading(const CString& path, CFile& file)
{
    if (ZoClassSerialization::IsDirectory(path))
        throw UserError(path, "is a folder, not a file");
    if (!ZoClassSerialization::Exists(path))
        throw UserError(path, "no such file");
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite))
        throw UserError(path, "cannot be opened for reading");
}

std::vector<unsigned char> ReadWholeFile(const CString& path, uint64_t maximumSize, const char* activity)
{
    CFile file;
    OpenForReading(path, file);
    try {
        const uint64_t length = file.GetLength();
        if (length > maximumSize)
            throw UserError(path, "is too large (" + std::to_string(length) + " bytes; at most " +
                                      std::to_string(maximumSize) + ")");
        std::vector<unsigned char> bytes(static_cast<size_t>(length));
        Progress progress(activity, length);
        uint64_t done = 0;
        while (done < length) {
            const uint64_t want = length - done < sc_chunk ? length - done : sc_chunk;
            const uint32_t got = file.Read(bytes.data() + done, static_cast<uint32_t>(want));
            if (got == 0)
                break;
            done += got;
            progress.Update(done);
        }
        // A file that shrank while being read is taken as it ended.
        bytes.resize(static_cast<size_t>(done));
        return bytes;
    } catch (const CFileException&) {
        throw UserError(path, "cannot be read");
    }
}

OutputFile::OutputFile(const CString& target) : m_target(target), m_committed(false)
{
    if (ZoClassSerialization::IsDirectory(target))
        throw UserError(target, "is a folder; name a file to write");
    // A name of its own in the target's folder, so that the rename stays on one file system.
    m_temporary = target + u"." + ZoUniqueID::GetUniqueID().Left(8) + u".part";
}

OutputFile::~OutputFile()
{
    if (!m_committed && ZoClassSerialization::Exists(m_temporary))
        ZoClassSerialization::DeleteFileW(m_temporary);
}

void OutputFile::Commit()
{
    if (!ZoOS::MoveFileReplacing(m_temporary, m_target))
        throw UserError(m_target, "cannot be replaced with the new file");
    m_committed = true;
}

void WriteWholeFile(const CString& target, const void* data, uint64_t size, const char* activity)
{
    OutputFile output(target);
    {
        CFile file;
        if (!file.Open(output.GetTemporaryPath(), CFile::modeCreate | CFile::modeWrite))
            throw UserError(target, "cannot be created");
        try {
            Progress progress(activity, size);
            const auto* bytes = static_cast<const unsigned char*>(data);
            for (uint64_t done = 0; done < size;) {
                const uint64_t step = size - done < sc_chunk ? size - done : sc_chunk;
                file.Write(bytes + done, static_cast<uint32_t>(step));
                done += step;
                progress.Update(done);
            }
            file.Close();
        } catch (const CFileException&) {
            file.Abort();
            throw UserError(target, "cannot be written (is the disk full?)");
        }
    }
    output.Commit();
}

Progress::Progress(const char* activity, uint64_t total)
    : m_activity(activity), m_total(total), m_shown(total > sc_progressThreshold && ZoOS::IsStandardErrorTerminal()),
      m_drawn(-1)
{
}

Progress::~Progress()
{
    if (m_shown && m_drawn >= 0)
        PrintError("\r" + std::string(m_activity.size() + 40, ' ') + "\r");
}

void Progress::Update(uint64_t done)
{
    if (!m_shown || m_total == 0)
        return;
    const int percent = static_cast<int>(done * 100 / m_total);
    if (percent == m_drawn)
        return;
    m_drawn = percent;
    const int filled = percent * 30 / 100;
    PrintError("\r" + m_activity + " [" + std::string(static_cast<size_t>(filled), '#') +
               std::string(static_cast<size_t>(30 - filled), ' ') + "] " + std::to_string(percent) + "%");
}

} // namespace zotool

namespace {

int run(const zotool::Arguments& all)
{
    using namespace zotool;
    if (all.empty()) {
        PrintError(sc_help);
        return 2;
    }
    const std::string command = Narrow(all[0]);
    const Arguments rest(all.begin() + 1, all.end());
    if (command == "--help" || command == "-h" || command == "help") {
        Print(sc_help);
        return 0;
    }
    try {
        if (command == "archive")
            return RunArchive(rest);
        if (command == "md5")
            return RunMD5(rest);
        if (command == "uuid")
            return RunUniqueID(rest);
        if (command == "graph")
            return RunGraph(rest);
        if (command == "floats")
            return RunFloats(rest);
        if (command == "options")
            return RunOptions(rest);
        throw UsageError("", "unknown command \"" + command + "\"");
    } catch (const UsageError& e) {
        const std::string which = e.GetCommand().empty() ? std::string() : " " + e.GetCommand();
        PrintError("zo" + which + ": " + e.what() + "\nTry 'zo" + which + " --help'.\n");
        return 2;
    } catch (const UserError& e) {
        PrintError(std::string("zo: ") + e.what() + "\n");
        return 1;
    } catch (const ZoException& e) {
        PrintError("zo: " + Narrow(e.GetExceptionName()) + " in " + Narrow(e.GetThrowingClassName()) + "::" +
                   Narrow(e.GetThrowingMethodName()) + "\n");
        return 1;
    } catch (const std::bad_alloc&) {
        PrintError("zo: out of memory\n");
        return 1;
    }
}

} // namespace

#if defined(_WIN32)
// Windows hands the arguments over as UTF-16 only through the wide entry point.
int wmain(int argc, wchar_t** argv)
{
    zotool::Arguments arguments;
    for (int i = 1; i < argc; ++i)
        arguments.emplace_back(reinterpret_cast<const char16_t*>(argv[i]));
    return run(arguments);
}
#else
int main(int argc, char** argv)
{
    zotool::Arguments arguments;
    for (int i = 1; i < argc; ++i)
        arguments.push_back(CString::FromUtf8(argv[i], std::char_traits<char>::length(argv[i])));
    return run(arguments);
}
#endif
