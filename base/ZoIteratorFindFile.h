#pragma once

#include "base/ZoIterator.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoOS.h"

/// ZoIteratorFindFile: the names of the entries in one folder that match a wildcard pattern ('*' any
/// run of characters, '?' any one), in the order the system lists them. Names only, without the
/// folder; "." and ".." are never reported. On Windows the system matches, without regard to case
/// (and, as it does, also against short 8.3 names); on POSIX the match is exact, as file names are.
///
///     for (ZoIteratorFindFile found(folder, u"*.dat"); found; ++found)
///         load(folder + found.GetName());
///
/// A folder that cannot be listed gives an exhausted iterator; ZoLatestError then says why. The
/// listing is read as the iterator advances, so entries made or removed meanwhile may or may not
/// appear. Not copyable: it owns the system's listing.
/// @ingroup services
class ZO_API ZoIteratorFindFile : public ZoIterator<const CString&, ZoIteratorFindFile>
{
public:
    /// Opens `folder` and moves to the first entry that matches `pattern`. A folder that cannot be listed gives an exhausted iterator (no exception).
    explicit ZoIteratorFindFile(const CString& folder, const CString& pattern = CString(u"*"));
    ~ZoIteratorFindFile();
    ZoIteratorFindFile(const ZoIteratorFindFile&) = delete;
    ZoIteratorFindFile& operator=(const ZoIteratorFindFile&) = delete;

    /// The current entry's name and kind. Requires: not exhausted (not checked; an empty name then).
    const CString& GetName() const { return m_name; }
    /// True when the current entry is a folder.
    bool IsFolder() const { return m_isFolder; }

    /// Returns the current name and advances; the reference stays valid until the next advance.
    const CString& GetNext();

private:
    void advance();

    ZoOS::FolderListing m_listing;
    CString m_name;
    bool m_isFolder;
    CString m_returned;
};
