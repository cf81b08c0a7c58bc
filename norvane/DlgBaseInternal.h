// Helpers shared by the sources of DlgBase; not part of the library's interface.
#pragma once

#include "NVLanguage.h"
#include "NVStrings.h"

#include <windows.h>

#include <string>
#include <vector>

namespace nvdlg {

// Wide form of an 8-bit text in the current code page.
inline std::wstring Widen(char const* text) {
    std::wstring w;
    if (TestLeer(text))
        return w;
    wchar_t* p = NVMakeUNICODEWindowText(text, -1, 0);
    if (p) {
        w = p;
        NVFreeUNICODEWindowText(p);
    }
    return w;
}

// 8-bit form in the current code page, cut to fit out; returns its length.
inline int Narrow(wchar_t const* text, char* out, int size) {
    if (!out || size <= 0)
        return 0;
    out[0] = 0;
    int cp = NVGetCurCodePage();
    int n = WideCharToMultiByte(cp, 0, text, -1, out, size, nullptr, nullptr);
    if (n <= 0) {
        int need = WideCharToMultiByte(cp, 0, text, -1, nullptr, 0, nullptr, nullptr);
        if (need <= 0)
            return 0;
        std::vector<char> all(need);
        WideCharToMultiByte(cp, 0, text, -1, all.data(), need, nullptr, nullptr);
        StrNZCpy(out, all.data(), static_cast<unsigned>(size));
    }
    return lstrlenA(out);
}

inline std::wstring WindowTextW(HWND hWnd) {
    int len = GetWindowTextLengthW(hWnd);
    std::wstring w(static_cast<size_t>(len) + 1, L'\0');
    len = GetWindowTextW(hWnd, &w[0], len + 1);
    w.resize(len > 0 ? static_cast<size_t>(len) : 0);
    return w;
}

inline bool IsClass(HWND hWnd, wchar_t const* lpszClass) {
    wchar_t name[32];
    return GetClassNameW(hWnd, name, 32) && lstrcmpiW(name, lpszClass) == 0;
}

} // namespace nvdlg
