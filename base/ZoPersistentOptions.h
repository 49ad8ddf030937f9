#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoPersistentOptions: small settings (truth values, integers, texts) kept between runs under a key
/// path and a value name, in one of five roots chosen by a category.
///
/// Windows keeps them in the system registry. POSIX keeps them in one SQLite database per user,
/// $XDG_CONFIG_HOME/zo/options.sqlite (~/.config/zo/options.sqlite without it), holding the same
/// roots, key paths, value names, value types and value bytes as the registry would; key paths and
/// value names compare without regard to ASCII case there, as in the registry.
///
/// Every operation opens the store, does one read or one write and closes it again: nothing is
/// cached, nothing stays open, and each write is one transaction, so several threads and processes
/// may use the same options at once and a process killed mid-write leaves every earlier write intact.
/// No operation throws (running out of memory aside); each returns 1 on success and 0 on failure.
/// @ingroup services
class ZO_API ZoPersistentOptions
{
public:
    /// The root a key path is taken from. The numbers are stored (POSIX) and so are fixed; any other
    /// value names no root, and every operation with it fails with 0.
    enum EPersistentOptionsCategory
    {
        eClassesRoot = 0,   ///< HKEY_CLASSES_ROOT
        eCurrentUser = 1,   ///< HKEY_CURRENT_USER
        eLocalMachine = 2,  ///< HKEY_LOCAL_MACHINE
        eUsers = 3,         ///< HKEY_USERS
        eCurrentConfig = 4, ///< HKEY_CURRENT_CONFIG
    };

    /// Nothing to assign: the class has no state.
    ZoPersistentOptions& operator=(const ZoPersistentOptions&) = default;

    /// Writes create the key path as needed and replace an existing value of that name, whatever its
    /// type. bool, int and uint32_t are stored as a 4-byte little-endian REG_DWORD (true as 1, false
    /// as 0); a text as REG_SZ, its UTF-16 code units without a terminating zero (an empty text is a
    /// value of 0 bytes). 0 when the key cannot be created or the value not set.
    static int WriteOption(const CString& key, const CString& name, bool value, EPersistentOptionsCategory category);
    /// Stored as REG_DWORD, the number's 4 bytes little-endian; 0 on failure.
    static int WriteOption(const CString& key, const CString& name, int32_t value, EPersistentOptionsCategory category);
    /// Stored as REG_DWORD, 4 bytes little-endian; 0 on failure.
    static int WriteOption(const CString& key, const CString& name, uint32_t value, EPersistentOptionsCategory category);
    /// Stored as REG_SZ, its UTF-16 code units without a terminator; 0 on failure.
    static int WriteOption(const CString& key, const CString& name, const CString& value,
                           EPersistentOptionsCategory category);
    /// Without this overload a u"..." literal would convert to bool, not to CString, and be stored
    /// as true.
    static int WriteOption(const CString& key, const CString& name, const char16_t* value,
                           EPersistentOptionsCategory category)
    {
        return WriteOption(key, name, CString(value), category);
    }

    /// Reads do not check the stored type. A missing store, key or value, a value larger than the
    /// caller's variable, or an unknown category return 0 and leave `value` as it was (on Windows a
    /// failed uint32_t read may have written into it). A bool is true only when the stored number is
    /// exactly 1: a 2 written by another program reads as false.
    static int ReadOption(const CString& key, const CString& name, bool& value, EPersistentOptionsCategory category);
    /// Reads 4 bytes; 0 on failure, `value` then as it was.
    static int ReadOption(const CString& key, const CString& name, int32_t& value, EPersistentOptionsCategory category);
    /// Reads 4 bytes; 0 on failure (on Windows `value` may then have been written).
    static int ReadOption(const CString& key, const CString& name, uint32_t& value, EPersistentOptionsCategory category);
    /// Reads at most `maxLength` characters; a longer stored text fails. A text of exactly
    /// `maxLength` characters is read whole, so pass more than the longest text you expect when you
    /// need to tell "exactly that long" from "cut off by another writer's terminator".
    static int ReadOption(const CString& key, const CString& name, CString& value, uint32_t maxLength,
                          EPersistentOptionsCategory category);

    /// Removes the value (its key stays). 0 when the key or the value does not exist or cannot be
    /// changed, or for an unknown category.
    static int DeleteOption(const CString& key, const CString& name, EPersistentOptionsCategory category);

private:
    /// The registry root's number (0x80000000 ...), 0 for an unknown category. Category 4 is
    /// HKEY_CURRENT_CONFIG (0x80000005): the performance-data root 0x80000004 in between is no place
    /// for settings and is skipped on purpose.
    static uint32_t getKey(EPersistentOptionsCategory category);
    static int readValue(const CString& key, const CString& name, void* data, uint32_t& size,
                         EPersistentOptionsCategory category);
    static int writeValue(const CString& key, const CString& name, uint32_t type, const void* data, uint32_t size,
                          EPersistentOptionsCategory category);
};
