#include "harness/TestHost.h"

#include <shellapi.h>

#include <cstdio>
#include <cstring>

namespace vtrtest {

namespace {
// A dialog template with no controls; WS_VISIBLE is left out unless asked for.
struct EmptyDialogTemplate {
    DLGTEMPLATE dlg;
    WORD menu;
    WORD windowClass;
    WORD title;
    WORD pointSize;
    wchar_t font[13];
};
} // namespace

HostDialog::HostDialog(int cx, int cy, bool bVisible) {
    alignas(4) EmptyDialogTemplate t{};
    t.dlg.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_SETFONT | (bVisible ? WS_VISIBLE : 0);
    t.dlg.cx = static_cast<short>(cx);
    t.dlg.cy = static_cast<short>(cy);
    t.pointSize = 8;
    std::memcpy(t.font, L"MS Shell Dlg", sizeof(L"MS Shell Dlg"));
    m_hWnd = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &t.dlg, nullptr, &HostDialog::DlgProc,
                                        reinterpret_cast<LPARAM>(this));
}

HostDialog::~HostDialog() {
    if (m_hWnd)
        DestroyWindow(m_hWnd);
}

HWND HostDialog::AddControl(wchar_t const* lpszClass, DWORD dwStyle, int id, int x, int y, int cx, int cy,
                            wchar_t const* lpszText, DWORD dwExStyle) {
    HWND h = CreateWindowExW(dwExStyle, lpszClass, lpszText, WS_CHILD | WS_VISIBLE | dwStyle, x, y, cx, cy,
                             m_hWnd, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                             GetModuleHandleW(nullptr), nullptr);
    if (h)
        SendMessageW(h, WM_SETFONT, SendMessageW(m_hWnd, WM_GETFONT, 0, 0), FALSE);
    return h;
}

INT_PTR CALLBACK HostDialog::DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    if (uMsg == WM_INITDIALOG) {
        SetWindowLongPtrW(hWnd, DWLP_USER, lParam);
        reinterpret_cast<HostDialog*>(lParam)->m_hWnd = hWnd;
    }
    auto* self = reinterpret_cast<HostDialog*>(GetWindowLongPtrW(hWnd, DWLP_USER));
    if (!self)
        return FALSE;
    self->messages.push_back(uMsg);
    LRESULT result = 0;
    bool handled = false;
    if (self->onMessage)
        handled = self->onMessage(uMsg, wParam, lParam, result);
    if (!handled && uMsg == WM_NOTIFY && self->onNotify)
        handled = self->onNotify(uMsg, wParam, lParam, result);
    if (!handled && uMsg == WM_COMMAND && self->onCommand)
        handled = self->onCommand(uMsg, wParam, lParam, result);
    if (!handled)
        return uMsg == WM_INITDIALOG ? TRUE : FALSE;
    SetWindowLongPtrW(hWnd, DWLP_MSGRESULT, result);
    return TRUE;
}

void PumpPending() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

bool PumpUntil(std::function<bool()> const& cond, DWORD msTimeout) {
    DWORD start = GetTickCount();
    for (;;) {
        PumpPending();
        if (cond())
            return true;
        if (GetTickCount() - start >= msTimeout)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

std::string Utf8(std::wstring const& text) {
    if (text.empty())
        return std::string();
    int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr,
                                nullptr);
    std::string s(n, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), &s[0], n, nullptr, nullptr);
    return s;
}

TempDir::TempDir() {
    char base[MAX_PATH];
    GetTempPathA(MAX_PATH, base);
    static unsigned s_counter = 0;
    char name[MAX_PATH];
    std::snprintf(name, sizeof name, "%svtrtest_%lu_%u", base, GetCurrentProcessId(), ++s_counter);
    CreateDirectoryA(name, nullptr);
    m_path = name;
}

TempDir::~TempDir() {
    // SHFileOperation wants a double-terminated list.
    std::string from = m_path;
    from.push_back('\0');
    SHFILEOPSTRUCTA op{};
    op.wFunc = FO_DELETE;
    op.pFrom = from.c_str();
    op.fFlags = FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_SILENT;
    SHFileOperationA(&op);
}

std::string ReadFileBytes(std::string const& path) {
    std::string data;
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f)
        return data;
    char buf[65536];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0)
        data.append(buf, n);
    std::fclose(f);
    return data;
}

} // namespace vtrtest
