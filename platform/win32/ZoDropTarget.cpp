// The Windows build's drop target: a small COM object that forwards OLE's calls to its owner.
#include "platform/ZoDropTarget.h"

#include "platform/ZoOS.h"

#include <shellapi.h>

// The COM object itself. Its lifetime is its owner's: OLE's references only keep it from being
// used after the registration ends, so the count is kept for COM's sake and never frees it.
class ZoDropTarget::Target : public IDropTarget
{
public:
    explicit Target(ZoDropTarget& owner) : m_owner(owner), m_references(1), m_accepted(false) {}
    virtual ~Target() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        if (object == nullptr)
            return E_POINTER;
        if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDropTarget)) {
            *object = static_cast<IDropTarget*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(InterlockedDecrement(&m_references)); }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD, POINTL, DWORD* effect) override
    {
        m_accepted = false;
        try {
            const std::vector<CString> files = GetFileNames(data);
            m_accepted = !files.empty() && m_owner.onDragEnter(files);
        } catch (...) {
            ZoOS::RethrowThreadCancellation();
            m_accepted = false;
        }
        return answer(effect);
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD, POINTL, DWORD* effect) override { return answer(effect); }
    HRESULT STDMETHODCALLTYPE DragLeave() override
    {
        m_accepted = false;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD, POINTL point, DWORD* effect) override
    {
        bool dropped = false;
        if (m_accepted) {
            try {
                const std::vector<CString> files = GetFileNames(data);
                if (!files.empty()) {
                    m_owner.onDrop(files, point);
                    dropped = true;
                }
            } catch (...) {
                // An exception must not unwind through the system's code that called us.
                ZoOS::RethrowThreadCancellation();
                dropped = false;
            }
        }
        m_accepted = dropped;
        const HRESULT result = answer(effect);
        m_accepted = false;
        return result;
    }

private:
    HRESULT answer(DWORD* effect) const
    {
        if (effect == nullptr)
            return E_INVALIDARG;
        *effect = m_accepted ? DROPEFFECT_COPY : DROPEFFECT_NONE;
        return S_OK;
    }

    ZoDropTarget& m_owner;
    LONG m_references;
    bool m_accepted;
};

ZoDropTarget::ZoDropTarget() : m_target(new Target(*this)), m_window(nullptr), m_lastResult(S_OK)
{
}

ZoDropTarget::~ZoDropTarget()
{
    Revoke();
    delete m_target;
}

bool ZoDropTarget::Register(HWND window)
{
    Revoke();
    m_lastResult = ::RegisterDragDrop(window, m_target);
    if (FAILED(m_lastResult))
        return false;
    m_window = window;
    return true;
}

void ZoDropTarget::Revoke()
{
    if (m_window == nullptr)
        return;
    ::RevokeDragDrop(m_window);
    m_window = nullptr;
}

IDropTarget* ZoDropTarget::GetDropTarget()
{
    return m_target;
}

std::vector<CString> ZoDropTarget::GetFileNames(IDataObject* data)
{
    std::vector<CString> files;
    if (data == nullptr)
        return files;
    FORMATETC format = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium = {};
    if (FAILED(data->GetData(&format, &medium)))
        return files;
    if (medium.tymed == TYMED_HGLOBAL && medium.hGlobal != nullptr) {
        HDROP drop = static_cast<HDROP>(::GlobalLock(medium.hGlobal));
        if (drop != nullptr) {
            const UINT count = ::DragQueryFileW(drop, 0xFFFFFFFFu, nullptr, 0);
            for (UINT i = 0; i < count; ++i) {
                const UINT length = ::DragQueryFileW(drop, i, nullptr, 0);
                std::vector<wchar_t> name(length + 1, L'\0');
                ::DragQueryFileW(drop, i, name.data(), length + 1);
                files.push_back(CString(reinterpret_cast<const char16_t*>(name.data()), static_cast<int>(length)));
            }
            ::GlobalUnlock(medium.hGlobal);
        }
    }
    ::ReleaseStgMedium(&medium);
    return files;
}

bool ZoDropTarget::onDragEnter(const std::vector<CString>&)
{
    return true;
}
