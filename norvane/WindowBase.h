// Base of windows whose class belongs to one object: Register makes a window class for the object,
// and every window of that class is handled by the object's WndProc.
#pragma once

#include "NVExport.h"

#include <windows.h>

class NV_API WindowBase {
public:
    WindowBase();
    // The object's window procedure; it hands what it does not handle to DefaultWndProc.
    virtual LRESULT WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    virtual ~WindowBase();

    WindowBase(WindowBase const&) = delete;
    WindowBase& operator=(WindowBase const&) = delete;

    // Registers a window class of its own for this object (hCursor null: the arrow; iMenuId 0: no
    // menu). A second call fails, as does a failed RegisterClassEx. The class is unregistered
    // when the object dies.
    bool Register(HINSTANCE hInst, unsigned int uStyle, HICON hIcon, HCURSOR hCursor, HBRUSH hbrBackground,
                  int iMenuId);
    // The class name to pass to CreateWindowEx; empty before Register.
    wchar_t const* GetWndClassName() const { return m_szClassName; }
    // The default handling (DefWindowProc in the width NVIsUNICodeDlg chooses).
    LRESULT DefaultWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    // The object that owns the class of hWnd, null for other windows.
    static WindowBase* FromHandle(HWND hWnd);

public:
    HWND m_hWnd; // the last window of the class that was created and is not yet destroyed

private:
    static LRESULT CALLBACK StaticWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    HINSTANCE m_hInst;
    ATOM m_atom;
    wchar_t m_szClassName[48];
};
