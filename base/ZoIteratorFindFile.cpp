#include "base/ZoIteratorFindFile.h"

ZoIteratorFindFile::ZoIteratorFindFile(const CString& folder, const CString& pattern)
    : m_listing(ZoOS::OpenFolderListing(folder, pattern)), m_isFolder(false)
{
    advance();
}

ZoIteratorFindFile::~ZoIteratorFindFile()
{
    ZoOS::CloseFolderListing(m_listing);
}

const CString& ZoIteratorFindFile::GetNext()
{
    m_returned = m_name;
    advance();
    return m_returned;
}

void ZoIteratorFindFile::advance()
{
    if (m_listing != nullptr && ZoOS::ReadFolderListing(m_listing, m_name, m_isFolder)) {
        m_position = this;
        return;
    }
    // Exhausted: the listing is let go at once rather than held open until destruction.
    m_position = nullptr;
    m_name.Empty();
    m_isFolder = false;
    ZoOS::CloseFolderListing(m_listing);
    m_listing = nullptr;
}
