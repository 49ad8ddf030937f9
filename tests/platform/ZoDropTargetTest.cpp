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
        if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDataObject)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override
    {
        if (format->cfFormat != CF_HDROP || m_names.empty())
            return DV_E_FORMATETC;
        std::wstring list;
        for (const std::wstring& name : m_names)
            list += name + L'\0';
        list += L'\0';
        const SIZE_T bytes = sizeof(DROPFILES) + list.size() * sizeof(wchar_t);
        HGLOBAL global = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes);
        auto* header = static_cast<DROPFILES*>(::GlobalLock(global));
        header->pFiles = sizeof(DROPFILES);
        header->fWide = TRUE;
        std::memcpy(reinterpret_cast<char*>(header) + sizeof(DROPFILES), list.data(), list.size() * sizeof(wchar_t));
        ::GlobalUnlock(global);
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = global;
        medium->pUnkForRelease = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override
    {
        return format->cfFormat == CF_HDROP && !m_names.empty() ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* out) override
    {
        out->ptd = nullptr;
        return E_NOTIMPL;
    }
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
    ASSERT_EQ(target.dropped.size(), 2u);
    EXPECT_EQ(target.dropped[0], CString(u"C:\\data\\a.dat"));
    EXPECT_EQ(target.dropped[1], CString(u"C:\\data\\\u00e9t\u00e9.txt"));
    EXPECT_EQ(target.at.x, 12);
    EXPECT_EQ(target.at.y, 34);

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
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_EQ(target.GetDropTarget()->Drop(&files, 0, POINTL{0, 0}, &effect), S_OK);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
}

TEST(ZoDropTargetTest, RegistersWithAWindowOnlyOnceOleIsReady)
{
    Collector target;
    HWND window = ::CreateWindowExW(0, L"STATIC", L"drop here", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    if (window == nullptr)
        GTEST_SKIP() << "no window can be made here (no display)";
    // Without OLE on the thread the system refuses, and the target says why.
    ::OleUninitialize();
    EXPECT_FALSE(target.Register(window));
    EXPECT_EQ(target.GetLastResult(), CO_E_NOTINITIALIZED);
    ASSERT_TRUE(SUCCEEDED(::OleInitialize(nullptr)));
    EXPECT_TRUE(target.Register(window));
    EXPECT_EQ(target.GetWindow(), window);
    // A second target for the same window is refused while the first holds it.
    Collector second;
    EXPECT_FALSE(second.Register(window));
    EXPECT_EQ(second.GetLastResult(), DRAGDROP_E_ALREADYREGISTERED);
    target.Revoke();
    EXPECT_TRUE(second.Register(window));
    EXPECT_EQ(target.GetWindow(), nullptr);
    second.Revoke();
    ::OleUninitialize();
    ::DestroyWindow(window);
}

} // namespace
#endif
