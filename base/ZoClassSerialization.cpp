#include "base/ZoClassSerialization.h"

#include "base/ZoArchive.h"
#include "platform/CFile.h"
#include "platform/ZoOS.h"

#include <memory>
#include <new>

namespace {

// Where the first folder of a path may start: Windows skips a drive prefix such as "C:\", POSIX
// only the root "/".
#if defined(_WIN32)
const int kFirstFolderIndex = 3;
#else
const int kFirstFolderIndex = 1;
#endif

uint32_t openFlagsFor(ZoClassSerialization::ESerializationMode mode)
{
    switch (mode) {
    case ZoClassSerialization::eRead:
        return CFile::modeRead | CFile::shareDenyWrite;
    case ZoClassSerialization::eAppend:
        return CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite;
    default:
        return CFile::modeCreate | CFile::modeWrite;
    }
}

bool isKnownMode(int mode)
{
    return mode == ZoClassSerialization::eRead || mode == ZoClassSerialization::eWrite ||
           mode == ZoClassSerialization::eAppend || mode == ZoClassSerialization::eWriteUncompressed ||
           mode == ZoClassSerialization::eWriteCompressed;
}

CString folderOf(const CString& path)
{
    const int last = path.ReverseFind(ZoOS::GetPathSeparator());
    return last > 0 ? path.Left(last) : CString();
}

} // namespace

CArchive* ZoClassSerialization::CreateArchive(const CString& path, ESerializationMode mode)
{
    if (!isKnownMode(mode))
        return nullptr;
    const bool writing = (mode & 1) != 0;
    if (writing) {
        const CString folder = folderOf(path);
        if (!folder.IsEmpty() && !CreateDirectoryW(folder))
            return nullptr;
    } else if (!Exists(path)) {
        return nullptr;
    }
    try {
        auto file = std::make_unique<CFile>();
        if (!file->Open(path, openFlagsFor(mode)))
            return nullptr;
        if (mode == eAppend)
            file->SeekToEnd();
        auto archive = std::make_unique<ZoArchive>(file.get(), writing ? CArchive::store : CArchive::load,
                                                   mode == eWriteCompressed ? 2u : 0u);
        file.release();
        return archive.release();
    } catch (const CFileException&) {
    } catch (const CArchiveException&) {
    } catch (const std::bad_alloc&) {
    } catch (const char*) {
        // The decompressor's allocation failure: the file cannot be loaded here.
    }
    return nullptr;
}

CArchive* ZoClassSerialization::CreateArchive(ESpecialDirectory directory, const CString& name, ESerializationMode mode)
{
    return CreateArchive(GetDirectory(directory) + name, mode);
}

int ZoClassSerialization::ReleaseArchive(CArchive* archive)
{
    if (archive == nullptr)
        return 0;
    // While compressing or expanding, the archive works on a memory file; the file to close is the
    // real one this factory opened.
    auto* ownArchive = dynamic_cast<ZoArchive*>(archive);
    CFile* file = ownArchive != nullptr ? ownArchive->GetRealFile() : archive->GetFile();
    // Owned here so that a terminated thread, unwinding out of a close, still releases both (the
    // archive first: it refers to the file).
    std::unique_ptr<CFile> ownedFile(file);
    std::unique_ptr<CArchive> ownedArchive(archive);
    int result = 1;
    try {
        archive->Close();
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
        result = 0;
    }
    ownedArchive.reset();
    if (file != nullptr) {
        try {
            file->Close();
        } catch (...) {
            ZoOS::RethrowThreadCancellation();
            result = 0;
        }
    }
    return result;
}

CString ZoClassSerialization::GetDirectory(ESpecialDirectory directory)
{
    const char16_t separator = ZoOS::GetPathSeparator();
    CString folder;
    switch (directory) {
    case eTemporary: folder = ZoOS::GetKnownFolder(ZoOS::eFolderTemporary); break;
    case eDesktop: folder = ZoOS::GetKnownFolder(ZoOS::eFolderDesktop); break;
    case eProgramFiles: folder = ZoOS::GetKnownFolder(ZoOS::eFolderProgramFiles); break;
    case ePersonal: folder = ZoOS::GetKnownFolder(ZoOS::eFolderDocuments); break;
    case eLocalAppData: folder = ZoOS::GetKnownFolder(ZoOS::eFolderLocalAppData); break;
    case eFavorites: folder = ZoOS::GetKnownFolder(ZoOS::eFolderFavorites); break;
    case eStartup: folder = ZoOS::GetKnownFolder(ZoOS::eFolderStartup); break;
    case eRecent: folder = ZoOS::GetKnownFolder(ZoOS::eFolderRecent); break;
    case eSendTo: folder = ZoOS::GetKnownFolder(ZoOS::eFolderSendTo); break;
    case eCommonStartMenu: folder = ZoOS::GetKnownFolder(ZoOS::eFolderCommonStartMenu); break;
    case eFonts: folder = ZoOS::GetKnownFolder(ZoOS::eFolderFonts); break;
    case eHalvo: folder = ZoOS::GetKnownFolder(ZoOS::eFolderTemporary) + u"Halvo"; break;
    case eTestSuite: folder = ZoOS::GetKnownFolder(ZoOS::eFolderTemporary) + u"ZoTestSuite"; break;
    case eCurrent: folder = ZoOS::GetKnownFolder(ZoOS::eFolderCurrent); break;
    case eModule:
    case eApplication: {
        const CString executable = ZoOS::GetExecutablePath();
        const int last = executable.ReverseFind(separator);
        // A separator at index 0 or none at all gives the relative current folder; callers have
        // long relied on always getting a usable prefix.
        if (last <= 0)
            return CString(u".") + separator;
        return executable.Left(last + 1);
    }
    }
    if (folder.IsEmpty() || folder[folder.GetLength() - 1] != separator)
        folder += separator;
    return folder;
}

int ZoClassSerialization::Exists(const CString& path)
{
    return ZoOS::PathExists(path) ? 1 : 0;
}

int ZoClassSerialization::IsDirectory(const CString& path)
{
    return ZoOS::IsDirectoryPath(path) ? 1 : 0;
}

int ZoClassSerialization::CreateDirectoryW(const CString& path)
{
    if (IsDirectory(path))
        return 1;
    if (Exists(path))
        return 0;
    const char16_t separator = ZoOS::GetPathSeparator();
    for (int index = path.Find(separator, kFirstFolderIndex); index > 0; index = path.Find(separator, index + 1)) {
        const CString prefix = path.Left(index);
        if (IsDirectory(prefix))
            continue;
        if (Exists(prefix) || !ZoOS::CreateFolder(prefix))
            return 0;
    }
    // A path ending in the separator has been made completely by the loop.
    if (IsDirectory(path))
        return 1;
    return ZoOS::CreateFolder(path) ? 1 : 0;
}

int ZoClassSerialization::DeleteFileW(const CString& path)
{
    if (!Exists(path))
        return 0;
    return ZoOS::DeleteFilePath(path) ? 1 : 0;
}

int ZoClassSerialization::CopyFileW(const CString& source, const CString& target, int failIfExists)
{
    if (!Exists(source))
        return 0;
    const char16_t separator = ZoOS::GetPathSeparator();
    const int last = target.ReverseFind(separator);
    if (last > target.Find(separator) && !CreateDirectoryW(target.Left(last)))
        return 0;
    return ZoOS::CopyFilePath(source, target, failIfExists != 0) ? 1 : 0;
}

uint32_t ZoClassSerialization::GetFileSize(const CString& path)
{
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareExclusive))
        return 0;
    try {
        return static_cast<uint32_t>(file.GetLength());
    } catch (const CFileException&) {
        return 0;
    }
}

uint32_t ZoClassSerialization::ReadLine(CArchive& archive, char* buffer, uint32_t size)
{
    if (size == 0)
        return 0;
    uint32_t stored = 0;
    char byte = 0;
    while (stored + 1 < size && archive.Read(&byte, 1) == 1 && byte != '\n')
        buffer[stored++] = byte;
    buffer[stored] = 0;
    return stored;
}

uint32_t ZoClassSerialization::ReadToken(CArchive& archive, char* buffer, uint32_t size, int acceptLeadingBlank)
{
    if (size == 0)
        return 0;
    uint32_t stored = 0;
    char byte = 0;
    while (stored + 1 < size && archive.Read(&byte, 1) == 1) {
        const bool blank = byte == '\t' || byte == '\n' || byte == ' ';
        if (blank && !(stored == 0 && acceptLeadingBlank))
            break;
        buffer[stored++] = byte;
        acceptLeadingBlank = 0;
    }
    buffer[stored] = 0;
    return stored;
}

int ZoClassSerialization::ReadLine(CArchive& archive, CString& line)
{
    std::string bytes;
    char byte = 0;
    bool readAnything = false;
    while (archive.Read(&byte, 1) == 1) {
        readAnything = true;
        if (byte == '\n')
            break;
        bytes += byte;
    }
    if (!bytes.empty() && bytes.back() == '\r')
        bytes.pop_back();
    line = ZoOS::AnsiToWide(bytes.data(), bytes.size());
    return readAnything ? 1 : 0;
}

void ZoClassSerialization::WriteString(CArchive& archive, const CString& text)
{
    const std::string bytes = ZoOS::WideToAnsi(text);
    const size_t count = bytes.size() < static_cast<size_t>(text.GetLength()) ? bytes.size() : static_cast<size_t>(text.GetLength());
    archive.Write(bytes.data(), static_cast<uint32_t>(count));
}

void ZoClassSerialization::WriteLine(CArchive& archive, const CString& text)
{
    const std::string bytes = ZoOS::WideToAnsi(text);
    WriteString(archive, text);
    if (bytes.empty() || bytes.back() != '\n')
        archive.Write("\n", 1);
}
