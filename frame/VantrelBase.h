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

    // The per-user registry place of this control's history: HKEY_CURRENT_USER and
    // "<application key>\VantrelHist\<ident>", with the control's own identity when ident is null.
    // path must hold MAX_PATH characters. False without a path or without any identity.
    bool GetHistRegKey(HKEY& key, char* path, char const* ident = nullptr) const;

    // Adds the 16 by 16 icon id of inst (of this library when null) to the image list. The index of
    // the new image, or -1 when the icon cannot be loaded or added.
    static int AddIconToImageList(HIMAGELIST list, HINSTANCE inst, int id);

protected:
    // An error box over parent with the library's "Error" title; format takes the numbered
    // placeholders of the message texts or printf codes.
    void ErrMsg(HWND parent, char const* format, ...);
    void ErrMsg(HWND parent, wchar_t const* format, ...);
    // A box with the given MessageBox style (always foreground); a null title becomes "Error".
    // Returns the button chosen.
    int AskMsg(HWND parent, char const* title, unsigned int style, char const* format, ...);

protected:
    HWND m_hWnd;
    char m_szIdent[IDENT_SIZE];
};

// Texts shown by many controls: "<Different>" for fields whose records disagree, and "Display".
VTR_API char const* VTRGetDifferntText();
VTR_API char const* VTRGetAnzeigenText();

// The instance handle of vantrel.dll, for its resources.
VTR_API HINSTANCE VTRGetInstance();
