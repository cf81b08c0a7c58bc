// A hidden dialog to place real controls in, and a message pump with a time limit.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

namespace vtrtest {

// A real, hidden dialog made from an in-memory template. Controls are created in it as children;
// WM_NOTIFY, WM_COMMAND and every other message can be caught through the handlers.
class HostDialog {
public:
    // Handler for one message; return true when handled and set the result.
    using MessageHandler = std::function<bool(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& result)>;

    explicit HostDialog(int cx = 480, int cy = 320, bool bVisible = false);
    ~HostDialog();
    HostDialog(HostDialog const&) = delete;
    HostDialog& operator=(HostDialog const&) = delete;

    HWND hwnd() const { return m_hWnd; }

    // Creates a child control with the given class, style (WS_CHILD | WS_VISIBLE are added) and id.
    HWND AddControl(wchar_t const* lpszClass, DWORD dwStyle, int id, int x, int y, int cx, int cy,
                    wchar_t const* lpszText = L"", DWORD dwExStyle = 0);

    MessageHandler onNotify;  // WM_NOTIFY
    MessageHandler onCommand; // WM_COMMAND
    MessageHandler onMessage; // anything, before the two above

    // Every message code the dialog procedure saw, in order.
    std::vector<UINT> messages;

private:
    static INT_PTR CALLBACK DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    HWND m_hWnd = nullptr;
};

// Dispatches waiting messages of this thread.
void PumpPending();
// Pumps until cond() holds or msTimeout passes. Returns whether cond() held.
bool PumpUntil(std::function<bool()> const& cond, DWORD msTimeout = 2000);

// Narrow (UTF-8) form of a wide text, for messages in assertions.
std::string Utf8(std::wstring const& text);

// Path of a fresh, empty folder below the temporary folder, removed again by the destructor.
class TempDir {
public:
    TempDir();
    ~TempDir();
    std::string const& path() const { return m_path; }
    std::string File(char const* name) const { return m_path + "\\" + name; }

private:
    std::string m_path;
};

// Reads a whole file as bytes; empty when it cannot be read.
std::string ReadFileBytes(std::string const& path);

} // namespace vtrtest
