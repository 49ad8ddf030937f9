/// @class ZoClassSerialization
/// ZoClassSerialization: where the library and its users open archives, find well-known folders and
/// do the small file chores around saving and loading. Every member is static.
///
/// CreateArchive hands out a buffered CArchive over a file, opened by mode:
///   eRead (0)                read; a file that starts with the compressed-archive header is
///                            expanded in memory and read transparently;
///   eWrite (1)               create or truncate, then write;
///   eAppend (17)             open or create without truncating, write at the end;
///   eWriteUncompressed (257) exactly as eWrite (the binary file stream asks for it when plain output
///                            is wanted);
///   eWriteCompressed (513)   collect everything in memory and, on release, write the 28-byte header
///                            ("Halvo AG, 2005, comp", method 2, uncompressed length) and the zlib
///                            data.
/// No operation throws to its caller: failures are a null archive or a 0 result.
///
/// Paths use the system's separator ('\' on Windows, '/' elsewhere). Every folder GetDirectory
/// returns ends in that separator.
/// @ingroup streams
#pragma once

#include "platform/CArchive.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoClassSerialization
{
public:
    /// The folders GetDirectory knows. The values are stored by callers, so they never change. On
    /// Linux the Windows folders are read as the nearest XDG or system folders (given per value).
    enum ESpecialDirectory
    {
        eTemporary = 0,        ///< The temporary folder ($TMPDIR, else /tmp).
        eDesktop = 1,          ///< The user's desktop ($XDG_DESKTOP_DIR or ~/Desktop).
        eProgramFiles = 2,     ///< Where programs are installed (/opt).
        ePersonal = 3,         ///< The user's documents (~/Documents).
        eLocalAppData = 4,     ///< The user's application data ($XDG_DATA_HOME, else ~/.local/share).
        eFavorites = 5,        ///< Favourites (~/.local/share/favorites).
        eStartup = 6,          ///< Programs started at log-in ($XDG_CONFIG_HOME/autostart).
        eRecent = 7,           ///< Recently used files (~/.local/share/recent).
        eSendTo = 8,           ///< Send-to targets (~/.local/share/sendto).
        eCommonStartMenu = 9,  ///< The start menu of all users (/usr/share/applications).
        eFonts = 10,           ///< Fonts (~/.local/share/fonts).
        eHalvo = 11,           ///< eTemporary plus "Halvo".
        eTestSuite = 12,       ///< eTemporary plus "ZoTestSuite": where test data is kept.
        eCurrent = 13,         ///< The current folder.
        eModule = 14,          ///< The running executable's folder ("." when it cannot be found).
        eApplication = 15,     ///< As eModule.
    };
    /// How CreateArchive opens a file (the class note says what each does); for any other value it
    /// returns null.
    enum ESerializationMode
    {
        eRead = 0,                ///< Read, expanding a compressed file transparently.
        eWrite = 1,               ///< Create or truncate, then write.
        eAppend = 17,             ///< Open or create without truncating, write at the end.
        eWriteUncompressed = 257, ///< As eWrite.
        eWriteCompressed = 513,   ///< Write the compressed format on ReleaseArchive.
    };

    /// Null when the file cannot be opened (reading: it does not exist; writing: its folder cannot be
    /// made), when the mode is not one of the five, or when a compressed file is damaged beyond use.
    static CArchive* CreateArchive(const CString& path, ESerializationMode mode);
    /// CreateArchive() on GetDirectory(directory) + name; `name` may hold sub-folders.
    static CArchive* CreateArchive(ESpecialDirectory directory, const CString& name, ESerializationMode mode);
    /// Finishes the archive (writing a compressed file), then closes and frees it and its file.
    /// 0 for a null archive or when finishing failed, else 1.
    static int ReleaseArchive(CArchive* archive);

    /// The folder's path, ending in the separator. The folder need not exist (nothing is created);
    /// a folder the system cannot name comes back as the separator alone.
    static CString GetDirectory(ESpecialDirectory directory);

    /// 1 when a file or folder exists at the path, else 0 (also when it cannot be examined).
    static int Exists(const CString& path);
    /// 1 when the path is an existing folder, else 0.
    static int IsDirectory(const CString& path);
    /// Makes the folder and every missing folder above it. 1 when it already is a folder; 0 when it or
    /// one of its parents exists as a file or cannot be made.
    static int CreateDirectoryW(const CString& path);
    /// 1 when the file existed and is deleted; 0 when it does not exist or the system refuses.
    static int DeleteFileW(const CString& path);
    /// Makes the target's folder first. 0 when the source does not exist.
    static int CopyFileW(const CString& source, const CString& target, int failIfExists);
    /// The low 32 bits of the file's size; 0 when it cannot be opened.
    static uint32_t GetFileSize(const CString& path);

    /// Reads bytes up to a line feed (not stored; a carriage return is kept), the end of the archive,
    /// or size - 1 stored bytes; always terminates the buffer. Returns the bytes stored.
    static uint32_t ReadLine(CArchive& archive, char* buffer, uint32_t size);
    /// As ReadLine, but a tab, line feed or space also ends the token. A leading blank ends it at
    /// once (an empty token) unless acceptLeadingBlank is nonzero, when it is stored as the first byte.
    static uint32_t ReadToken(CArchive& archive, char* buffer, uint32_t size, int acceptLeadingBlank);
    /// Reads one line of ANSI text without its line break (a carriage return before the line feed is
    /// dropped). 0 when the archive had ended before anything was read.
    static int ReadLine(CArchive& archive, CString& line);
    /// Writes the text in the ANSI code page, one byte per character and no terminator. A text whose
    /// conversion needs more bytes than it has characters is cut there: readers of these files
    /// expect exactly as many bytes as characters.
    static void WriteString(CArchive& archive, const CString& text);
    /// WriteString, then a line feed unless the converted text already ends with one.
    static void WriteLine(CArchive& archive, const CString& text);
};
