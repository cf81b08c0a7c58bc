#include "WindowBase.h"

#include "NVLanguage.h"

#include <map>
#include <mutex>

namespace {
// Class atom to its object. Windows of one class may be created before WM_NCCREATE gives a chance
// to store anything in them (WM_GETMINMAXINFO comes first), so the object is found by the class.
std::map<ATOM, WindowBase*>& Registry() {
    static std::map<ATOM, WindowBase*> s_map;
    return s_map;
}
std::mutex& RegistryLock() {
    static std::mutex s_lock;
    return s_lock;
}
} // namespace

WindowBase::WindowBase() : m_hWnd(nullptr), m_hInst(nullptr), m_atom(0) {
    m_szClassName[0] = 0;
}

WindowBase::~WindowBase() {
    if (m_hWnd && IsWindow(m_hWnd) && FromHandle(m_hWnd) == this)
        DestroyWindow(m_hWnd);
    if (m_atom) {
        {
            std::lock_guard<std::mutex> guard(RegistryLock());
            Registry().erase(m_atom);
        }
        UnregisterClassW(m_szClassName, m_hInst);
    }
}

LRESULT WindowBase::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    return DefaultWndProc(hWnd, uMsg, wParam, lParam);
}

bool WindowBase::Register(HINSTANCE hInst, unsigned int uStyle, HICON hIcon, HCURSOR hCursor,
                          HBRUSH hbrBackground, int iMenuId) {
    if (m_atom)
        return false;
    // The object's address makes the name unique for as long as the object lives.
    wsprintfW(m_szClassName, L"NVWindowBase_%p", static_cast<void*>(this));
    WNDCLASSEXW wc{};
    wc.cbSize = sizeof wc;
    wc.style = uStyle;
    wc.lpfnWndProc = &WindowBase::StaticWndProc;
    wc.hInstance = hInst;
    wc.hIcon = hIcon;
    wc.hIconSm = hIcon;
    wc.hCursor = hCursor ? hCursor : LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    wc.hbrBackground = hbrBackground;
    wc.lpszMenuName = iMenuId ? MAKEINTRESOURCEW(iMenuId) : nullptr;
    wc.lpszClassName = m_szClassName;
    std::lock_guard<std::mutex> guard(RegistryLock());
    m_atom = RegisterClassExW(&wc);
    if (!m_atom) {
        m_szClassName[0] = 0;
        return false;
    }
    m_hInst = hInst;
    Registry()[m_atom] = this;
    return true;
}

LRESULT WindowBase::DefaultWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    return NVIsUNICodeDlg() ? DefWindowProcW(hWnd, uMsg, wParam, lParam)
                            : DefWindowProcA(hWnd, uMsg, wParam, lParam);
}

WindowBase* WindowBase::FromHandle(HWND hWnd) {
    if (!hWnd)
        return nullptr;
    ATOM atom = static_cast<ATOM>(GetClassLongPtrW(hWnd, GCW_ATOM));
    std::lock_guard<std::mutex> guard(RegistryLock());
    auto it = Registry().find(atom);
    return it == Registry().end() ? nullptr : it->second;
}

LRESULT CALLBACK WindowBase::StaticWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    WindowBase* self = FromHandle(hWnd);
    if (!self)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    if (uMsg == WM_NCCREATE)
        self->m_hWnd = hWnd;
    LRESULT r = self->WndProc(hWnd, uMsg, wParam, lParam);
    if (uMsg == WM_NCDESTROY && self->m_hWnd == hWnd)
        self->m_hWnd = nullptr;
    return r;
}
