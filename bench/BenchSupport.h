// What the benchmark programs share: a clock, and a host window whose notifications go to the list
// under test while a bare control beside it shows a fixed text in every cell.
#pragma once

#include "listview/VTRBListView.h"

#include <windows.h>
#include <commctrl.h>

#include <cstdio>
#include <string>

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

// Ten report columns titled "C", as the bare baselines have them.
inline void AddBareColumns(HWND hList) {
    for (int c = 0; c < 10; ++c) {
        LVCOLUMNW lvc{};
        lvc.mask = LVCF_WIDTH | LVCF_TEXT;
        lvc.cx = 60;
        lvc.pszText = const_cast<wchar_t*>(L"C");
        SendMessageW(hList, LVM_INSERTCOLUMNW, c, reinterpret_cast<LPARAM>(&lvc));
    }
}

// Appends one item whose texts come through LVN_GETDISPINFO, as AddRow inserts its rows.
inline void InsertCallbackItem(HWND hList, LPARAM lParam) {
    LVITEMW lvi{};
    lvi.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    lvi.iItem = 0x7fffffff;
    lvi.pszText = LPSTR_TEXTCALLBACKW;
    lvi.lParam = lParam;
    SendMessageW(hList, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
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

// How many memory layouts a filling figure samples; about one in six paddings gives the list
// control its good layout.
inline int const kBenchLayouts = 20;

// Runs this program again with the given arguments and collects what it prints: each side of a
// comparison is measured in a process of its own, so that neither pays for the other's heap.
// iLayout pads the child's environment: the size of the environment moves everything the process
// allocates, and the list control's insert time alone swings by 1.5x or more with it (its item array
// is grown and copied, in place or not, depending on what lies behind it). Measuring each side under
// several paddings keeps one lucky or unlucky layout from deciding a ratio.
inline bool BenchRunSelf(char const* pszArgs, std::string& output, int iLayout = 0) {
    std::string pad(static_cast<size_t>(iLayout) * 56, 'x');
    SetEnvironmentVariableA("VTR_BENCH_LAYOUT", iLayout > 0 ? pad.c_str() : nullptr);
    char self[MAX_PATH];
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    std::string cmd = std::string("\"") + self + "\" " + pszArgs;
    SECURITY_ATTRIBUTES sa{sizeof(sa), nullptr, TRUE};
    HANDLE hRead = nullptr, hWrite = nullptr;
    if (!CreatePipe(&hRead, &hWrite, &sa, 0))
        return false;
    SetHandleInformation(hRead, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOA si{};
    si.cb = sizeof(si);
    si.dwFlags = STARTF_USESTDHANDLES;
    si.hStdOutput = hWrite;
    si.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION pi{};
    BOOL const ok = CreateProcessA(nullptr, &cmd[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &si, &pi);
    CloseHandle(hWrite);
    output.clear();
    if (ok) {
        char buf[256];
        DWORD got = 0;
        while (ReadFile(hRead, buf, sizeof buf, &got, nullptr) && got)
            output.append(buf, got);
        WaitForSingleObject(pi.hProcess, INFINITE);
        CloseHandle(pi.hProcess);
        CloseHandle(pi.hThread);
    }
    CloseHandle(hRead);
    return ok != FALSE;
}
