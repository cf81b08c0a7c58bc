// What the benchmark programs share: a clock, and a host window whose notifications go to the list
// under test while a bare control beside it shows a fixed text in every cell.
#pragma once

#include "listview/VTRBListView.h"

#include <windows.h>
#include <commctrl.h>

// The list whose notifications the host forwards; null while only bare controls run.
inline VTRBListView* g_pBenchList = nullptr;

inline double BenchNow() {
    static LARGE_INTEGER freq{};
    if (!freq.QuadPart)
        QueryPerformanceFrequency(&freq);
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return static_cast<double>(t.QuadPart) / static_cast<double>(freq.QuadPart);
}

inline LRESULT CALLBACK BenchHostProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    if (uMsg == WM_NOTIFY) {
        auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
        if (g_pBenchList && pHdr->hwndFrom == g_pBenchList->GethWnd())
            return g_pBenchList->HandleNotify(wParam, lParam);
        if (pHdr->code == LVN_GETDISPINFOW) {
            auto* pInfo = reinterpret_cast<NMLVDISPINFOW*>(lParam);
            if ((pInfo->item.mask & LVIF_TEXT) && pInfo->item.cchTextMax > 0)
                lstrcpynW(pInfo->item.pszText, L"cell", pInfo->item.cchTextMax);
        }
        return 0;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

// A top-level window of the class lpszClass (registered here) for the lists of one program.
inline HWND MakeBenchHost(wchar_t const* lpszClass, bool bVisible) {
    INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&icc);
    WNDCLASSW wc{};
    wc.lpfnWndProc = BenchHostProc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = lpszClass;
    RegisterClassW(&wc);
    return CreateWindowExW(0, lpszClass, L"bench", WS_OVERLAPPEDWINDOW | (bVisible ? WS_VISIBLE : 0), 0, 0,
                           900, 700, nullptr, nullptr, wc.hInstance, nullptr);
}
