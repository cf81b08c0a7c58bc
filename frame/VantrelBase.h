// Root of every control wrapper. A wrapper never creates its control: the client's dialog owns the
// window, Assign binds the wrapper to it and UnAssign releases it; the dialog forwards WM_NOTIFY to
// HandleNotify.
#pragma once

#include "frame/VTRExport.h"

#include <windows.h>
#include <commctrl.h>

class VTR_API VantrelBase {
public:
    enum { IDENT_SIZE = 60 };

    VantrelBase();

protected:
    // Called by SetIdent with the stored identity.
    virtual void OnSetIdent(char const* ident);

public:
    virtual ~VantrelBase();
    virtual void Assign(HWND hWnd);
    virtual void UnAssign();
    // wParam is not used; lParam carries the NMHDR.
    virtual LRESULT HandleNotify(WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnNotify(NMHDR* pHdr);
    virtual void ClearAll();
    virtual bool StoreSettings();
    virtual bool RestoreSettings();

    HWND GethWnd() const { return m_hWnd; }
    char const* GetIdent() const { return m_szIdent; }
    // Copies the identity (cut to fit), tells OnSetIdent, and always succeeds.
    bool SetIdent(char const* ident);

protected:
    HWND m_hWnd;
    char m_szIdent[IDENT_SIZE];
};

// The instance handle of vantrel.dll, for its resources.
VTR_API HINSTANCE VTRGetInstance();
