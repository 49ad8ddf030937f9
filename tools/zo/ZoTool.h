// The shared part of the `zo` command-line tool: its two kinds of failure, argument splitting,
// whole-file input, output files that appear only when complete, and the progress bar.
#pragma once

#include "platform/CFile.h"
#include "platform/CString.h"

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace zotool {

typedef std::vector<CString> Arguments;

// A fault the user can fix (a missing file, a damaged archive, a bad line): the tool prints
// "zo: <subject>: <problem>" and exits with 1.
class UserError : public std::runtime_error
{
public:
    UserError(const CString& subject, const std::string& problem);
};

// A command line the tool cannot make sense of: the tool prints the message and a hint to --help and
// exits with 2.
class UsageError : public std::runtime_error
{
public:
    UsageError(const std::string& command, const std::string& problem);
    const std::string& GetCommand() const { return m_command; }

private:
    std::string m_command;
};

// Positional arguments and "--name value" options, split by what the command declares.
struct SplitArguments
{
    Arguments positional;
    std::map<std::string, CString> options;

    bool Has(const std::string& name) const { return options.count(name) != 0; }
};
// `valued` lists the options that take a value (e.g. "--dot"); anything else starting with '-' and
// longer than "-" is a usage error. A lone "--" ends the options.
SplitArguments Split(const std::string& command, const Arguments& arguments, const std::vector<std::string>& valued);
// True when the arguments ask for help (-h or --help anywhere).
bool WantsHelp(const Arguments& arguments);
// The argument as UTF-8, for messages and numbers.
std::string Narrow(const CString& text);
// A whole non-negative decimal number, or UsageError naming the option.
uint64_t ParseCount(const std::string& command, const std::string& what, const CString& text);

// Writes UTF-8 text to standard output / standard error.
void Print(const std::string& text);
void PrintError(const std::string& text);

// Opens `path` for reading into `file`; a folder, a missing file or one that cannot be opened is a
// UserError naming it.
void OpenForReading(const CString& path, CFile& file);

// The bytes of a file; UserError when it does not exist, cannot be read or has more than
// `maximumSize` bytes. A progress bar runs for large files when standard error is a terminal.
std::vector<unsigned char> ReadWholeFile(const CString& path, uint64_t maximumSize, const char* activity);

// An output file written under a temporary name in the target's folder and renamed to the target by
// Commit(). Destroyed uncommitted, it deletes what was written, so that a failed run leaves no
// partial output behind.
class OutputFile
{
public:
    explicit OutputFile(const CString& target);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    const CString& GetTemporaryPath() const { return m_temporary; }
    const CString& GetTarget() const { return m_target; }
    // Renames the temporary file to the target, replacing it; UserError when that fails.
    void Commit();

private:
    CString m_target;
    CString m_temporary;
    bool m_committed;
};
// Writes the bytes to `target` through an OutputFile.
void WriteWholeFile(const CString& target, const void* data, uint64_t size, const char* activity);

// A progress bar on standard error, drawn only for more than 16 MB and only when standard error is
// a terminal; it erases itself when done.
class Progress
{
public:
    Progress(const char* activity, uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void Update(uint64_t done);

private:
    std::string m_activity;
    uint64_t m_total;
    bool m_shown;
    int m_drawn;
};

// The subcommands: each takes the arguments after its name and returns the exit code.
int RunArchive(const Arguments& arguments);
int RunMD5(const Arguments& arguments);
int RunUniqueID(const Arguments& arguments);
int RunGraph(const Arguments& arguments);
int RunFloats(const Arguments& arguments);
int RunOptions(const Arguments& arguments);

} // namespace zotool
