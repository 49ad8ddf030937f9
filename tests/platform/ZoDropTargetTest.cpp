// Drag and drop exists in the Windows build only.
#if defined(_WIN32)
#  include "platform/ZoDropTarget.h"

#  include <gtest/gtest.h>

#  include <shlobj.h>

#  include <cstring>
#  include <stdexcept>
#  include <string>
#  include <vector>

namespace {

// A data object offering one file-drop list, as the shell hands to a target: a DROPFILES header
// followed by the wide names, each ended by a null, and a final null.
class FileDropData : public IDataObject
{
public:
    explicit FileDropData(const std::vector<std::wstring>& names) : m_names(names) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDataObject);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override
    {
        if (QueryGetData(format) != S_OK)
            return DV_E_FORMATETC;
        std::wstring list;
        for (const std::wstring& name : m_names)
            list += name + L'\0';
        // Zero-filled, so the final null is already there.
        medium->hGlobal = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + (list.size() + 1) * sizeof(wchar_t));
        auto* header = static_cast<DROPFILES*>(::GlobalLock(medium->hGlobal));
        header->pFiles = sizeof(DROPFILES);
        header->fWide = TRUE;
        std::memcpy(header + 1, list.data(), list.size() * sizeof(wchar_t));
        ::GlobalUnlock(medium->hGlobal);
        medium->tymed = TYMED_HGLOBAL;
        medium->pUnkForRelease = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override { return format->cfFormat == CF_HDROP && !m_names.empty() ? S_OK : DV_E_FORMATETC; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* out) override { return out->ptd = nullptr, E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

private:
    std::vector<std::wstring> m_names;
};

class Collector : public ZoDropTarget
{
public:
    bool take = true;
    bool fail = false;
    std::vector<CString> dropped;
    POINTL at = {0, 0};

protected:
    bool onDragEnter(const std::vector<CString>&) override { return take; }
    void onDrop(const std::vector<CString>& files, POINTL point) override
    {
        if (fail)
            throw std::runtime_error("refused");
        dropped = files;
        at = point;
    }
};

DWORD dragAndDrop(ZoDropTarget& target, IDataObject& data, POINTL point = {0, 0})
{
    DWORD effect = DROPEFFECT_COPY | DROPEFFECT_MOVE;
    IDropTarget* com = target.GetDropTarget();
    EXPECT_EQ(com->DragEnter(&data, MK_LBUTTON, point, &effect), S_OK);
    EXPECT_EQ(com->DragOver(MK_LBUTTON, point, &effect), S_OK);
    const DWORD overEffect = effect;
    EXPECT_EQ(com->Drop(&data, MK_LBUTTON, point, &effect), S_OK);
    EXPECT_EQ(effect, overEffect);
    return effect;
}

TEST(ZoDropTargetTest, DroppedFilesReachTheOwnerInOrderAndRefusalsShowNoEffect)
{
    FileDropData files({L"C:\\data\\a.dat", L"C:\\data\\\u00e9t\u00e9.txt"});
    Collector target;
    EXPECT_EQ(dragAndDrop(target, files, POINTL{12, 34}), static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_EQ(target.dropped, (std::vector<CString>{CString(u"C:\\data\\a.dat"), CString(u"C:\\data\\\u00e9t\u00e9.txt")}));
    EXPECT_EQ(target.at.x * 100 + target.at.y, 1234);
    // Refused by the owner, offering no files, or an owner that throws: no effect, nothing escapes.
    FileDropData nothing({});
    target.dropped.clear();
    target.take = false;
    EXPECT_EQ(dragAndDrop(target, files), static_cast<DWORD>(DROPEFFECT_NONE));
    target.take = true;
    EXPECT_EQ(dragAndDrop(target, nothing), static_cast<DWORD>(DROPEFFECT_NONE));
    EXPECT_TRUE(target.dropped.empty());
    target.fail = true;
    DWORD effect = DROPEFFECT_COPY;
    ASSERT_EQ(target.GetDropTarget()->DragEnter(&files, 0, POINTL{0, 0}, &effect), S_OK);
    EXPECT_EQ(target.GetDropTarget()->Drop(&files, 0, POINTL{0, 0}, &effect), S_OK);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
    // The system refuses a window that does not exist, and the target says why.
    EXPECT_FALSE(target.Register(nullptr));
    EXPECT_TRUE(target.GetLastResult() != S_OK && target.GetWindow() == nullptr);
}

} // namespace
#endif
