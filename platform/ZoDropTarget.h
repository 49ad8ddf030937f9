#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoWindowsTypes.h"

#if defined(_WIN32)
#  include <ole2.h>

#  include <vector>

/// ZoDropTarget: receives files dragged onto a window from the shell, or from any program offering
/// them as a file-name list (the clipboard's file-drop format). A derived class says whether it
/// takes the files offered (the cursor then shows a copy) and gets them, in the order offered,
/// when they are dropped. Drag and drop is a Windows user-interface service: the class exists in
/// the Windows build only.
///
/// Register(window) hands the target to the system; the thread must have initialised OLE
/// (OleInitialize) and must keep pumping messages while a drag is over the window. Exceptions from
/// the derived class never cross into the system: a throwing onDrop refuses the drop. The target
/// object OLE calls is reachable through GetDropTarget, so a program can also drive it itself.
/// @ingroup services
class ZO_API ZoDropTarget
{
public:
    ZoDropTarget();
    /// Revokes a registration still in place.
    virtual ~ZoDropTarget();
    ZoDropTarget(const ZoDropTarget&) = delete;
    ZoDropTarget& operator=(const ZoDropTarget&) = delete;

    /// Registers the target for the window. False when the system refuses (OLE not initialised on
    /// this thread, a target already registered for the window); GetLastResult says why.
    bool Register(HWND window);
    /// Ends the registration; nothing when none is in place.
    void Revoke();
    /// The window registered for, or null.
    HWND GetWindow() const { return m_window; }
    /// The system's result of the last Register (S_OK on success).
    HRESULT GetLastResult() const { return m_lastResult; }

    /// The OLE target object; it lives as long as this object.
    IDropTarget* GetDropTarget();
    /// The file names a data object offers as a file-drop list, in its order; empty when it offers
    /// none.
    static std::vector<CString> GetFileNames(IDataObject* data);

protected:
    /// Whether the files being dragged over the window would be taken; true in the base.
    virtual bool onDragEnter(const std::vector<CString>& files);
    /// The files dropped at the point (screen coordinates), when onDragEnter took them.
    virtual void onDrop(const std::vector<CString>& files, POINTL point) = 0;

private:
    class Target;
    friend class Target;
    Target* m_target;
    HWND m_window;
    HRESULT m_lastResult;
};

#endif
