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
    enum ESpecialDirectory
    {
        eTemporary = 0,
        eDesktop = 1,
        eProgramFiles = 2,
        ePersonal = 3,
        eLocalAppData = 4,
        eFavorites = 5,
        eStartup = 6,
        eRecent = 7,
        eSendTo = 8,
        eCommonStartMenu = 9,
        eFonts = 10,
        eHalvo = 11,
        eTestSuite = 12,
        eCurrent = 13,
        eModule = 14,
        eApplication = 15,
    };
    enum ESerializationMode
    {
        eRead = 0,
        eWrite = 1,
        eAppend = 17,
        eWriteUncompressed = 257,
        eWriteCompressed = 513,
    };

    /// Null when the file cannot be opened (reading: it does not exist; writing: its folder cannot be
    /// made), when the mode is not one of the five, or when a compressed file is damaged beyond use.
    static CArchive* CreateArchive(const CString& path, ESerializationMode mode);
    static CArchive* CreateArchive(ESpecialDirectory directory, const CString& name, ESerializationMode mode);
    /// Finishes the archive (writing a compressed file), then closes and frees it and its file.
    /// 0 for a null archive or when finishing failed, else 1.
    static int ReleaseArchive(CArchive* archive);

    static CString GetDirectory(ESpecialDirectory directory);

    static int Exists(const CString& path);
    static int IsDirectory(const CString& path);
    /// Makes the folder and every missing folder above it. 1 when it already is a folder; 0 when it or
    /// one of its parents exists as a file or cannot be made.
    static int CreateDirectoryW(const CString& path);
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
