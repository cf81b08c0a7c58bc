// Sample client module: a main dialog showing what the library does.
//
//   vantrel_demo.exe                       opens the dialog for a user
//   vantrel_demo.exe --screenshot out.png  goes through the pages, writes a PNG of each and exits
//                                          (out.png, out-large.png, out-texts.png)
#include "DemoIds.h"
#include "LargeList.h"
#include "Screenshot.h"
#include "TextsPage.h"
#include "TicketList.h"

#include "Norvane.h"

#include <commctrl.h>
#include <objbase.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

TicketList g_tickets;
LargeTicketList g_large;
unsigned int const kLargeCount = 1000000;

enum Page { PAGE_TICKETS, PAGE_LARGE, PAGE_TEXTS, PAGE_COUNT };

int const kPageControls[PAGE_COUNT][4] = {
    {IDC_DEMO_TICKETS, IDC_DEMO_EXPORT, IDC_DEMO_IMPORT, 0},
    {IDC_DEMO_LARGE, IDC_DEMO_EXPORT_LARGE, 0, 0},
    {IDC_DEMO_LIST, 0, 0, 0},
};
wchar_t const* const kPageHints[PAGE_COUNT] = {
    L"Click a title to sort, Ctrl+click for a further key; + and - open and close a performance.",
    L"A million rows kept by the client module; the list asks only for the cells it shows.",
    L"",
};

void SetStatus(HWND hDlg, wchar_t const* lpszFormat, ...) {
    wchar_t text[600];
    va_list args;
    va_start(args, lpszFormat);
    _vsnwprintf(text, 599, lpszFormat, args);
    va_end(args);
    text[599] = 0;
    SetDlgItemTextW(hDlg, IDC_DEMO_STATUS, text);
}

void ShowPage(HWND hDlg, int page) {
    for (int p = 0; p < PAGE_COUNT; ++p)
        for (int id : kPageControls[p])
            if (id)
                ShowWindow(GetDlgItem(hDlg, id), p == page ? SW_SHOW : SW_HIDE);
    SetDlgItemTextW(hDlg, IDC_DEMO_HINT, kPageHints[page]);
    ShowWindow(GetDlgItem(hDlg, IDC_DEMO_HINT), *kPageHints[page] ? SW_SHOW : SW_HIDE);
    TabCtrl_SetCurSel(GetDlgItem(hDlg, IDC_DEMO_TAB), page);
}

void AddTab(HWND hTab, int page, wchar_t const* lpszText) {
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(lpszText);
    SendMessageW(hTab, TCM_INSERTITEMW, page, reinterpret_cast<LPARAM>(&item));
}

double FileMegabytes(char const* lpszPath) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExA(lpszPath, GetFileExInfoStandard, &data))
        return 0;
    return (static_cast<double>(data.nFileSizeHigh) * 4294967296.0 + data.nFileSizeLow) / 1e6;
}

void ExportList(HWND hDlg, VTRBListView& list, char const* lpszName) {
    char path[MAX_PATH];
    StrNZCpy(path, lpszName, sizeof path);
    if (!BrowseWriteFile(hDlg, "Export CSV", path, "CSV files (*.csv)|*.csv", true, "csv", sizeof path))
        return;
    StdWaitCursor wait;
    DWORD const start = GetTickCount();
    if (!list.ExportCSV(path, ';', false, true)) {
        SetStatus(hDlg, L"Export to %hs failed.", path);
        return;
    }
    double const seconds = (GetTickCount() - start) / 1000.0;
    SetStatus(hDlg, L"Exported %d rows to %hs: %.1f MB in %.2f s.", list.GetItemCount(), path,
              FileMegabytes(path), seconds);
}

void ImportTickets(HWND hDlg) {
    char path[MAX_PATH] = "";
    if (!BrowseReadFile(hDlg, "Import CSV", path, "CSV files (*.csv)|*.csv", "csv", true, sizeof path))
        return;
    int const before = g_tickets.GetTicketCount();
    // The file's first line holds the titles; its columns are the list's, in the list's order.
    if (!g_tickets.ImportCSV(path, ';', 1, false, false, nullptr)) {
        SetStatus(hDlg, L"Nothing imported from %hs.", path);
        return;
    }
    g_tickets.Resort(true);
    SetStatus(hDlg, L"Imported %d tickets from %hs.", g_tickets.GetTicketCount() - before, path);
}

INT_PTR CALLBACK MainDlgProc(HWND hDlg, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    switch (uMsg) {
    case WM_INITDIALOG: {
        HWND hTab = GetDlgItem(hDlg, IDC_DEMO_TAB);
        AddTab(hTab, PAGE_TICKETS, L"Tickets");
        AddTab(hTab, PAGE_LARGE, L"1,000,000 tickets");
        AddTab(hTab, PAGE_TEXTS, L"Texts");
        FillTextsList(GetDlgItem(hDlg, IDC_DEMO_LIST));
        g_tickets.Create(GetDlgItem(hDlg, IDC_DEMO_TICKETS));
        g_large.Create(GetDlgItem(hDlg, IDC_DEMO_LARGE), kLargeCount);
        ShowPage(hDlg, PAGE_TICKETS);
        SetStatus(hDlg, L"%d performances with %d tickets open; %u tickets in the large list.",
                  g_tickets.GetGroupCount(), g_tickets.GetTicketCount(), g_large.GetCount());
        return TRUE;
    }
    case WM_NOTIFY: {
        auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
        VTRBListView* pList = nullptr;
        if (pHdr->idFrom == IDC_DEMO_TAB && pHdr->code == TCN_SELCHANGE) {
            ShowPage(hDlg, TabCtrl_GetCurSel(pHdr->hwndFrom));
            return TRUE;
        }
        if (pHdr->idFrom == IDC_DEMO_TICKETS)
            pList = &g_tickets;
        else if (pHdr->idFrom == IDC_DEMO_LARGE)
            pList = &g_large;
        if (!pList)
            break;
        SetWindowLongPtrW(hDlg, DWLP_MSGRESULT, pList->HandleNotify(wParam, lParam));
        if (pList == &g_large && pHdr->code == LVN_COLUMNCLICK)
            SetStatus(hDlg, L"%u rows sorted by three keys in %lu ms.", g_large.GetCount(),
                      g_large.GetLastSortMs());
        return TRUE;
    }
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_DEMO_EXPORT:
            ExportList(hDlg, g_tickets, "tickets.csv");
            return TRUE;
        case IDC_DEMO_EXPORT_LARGE:
            ExportList(hDlg, g_large, "all-tickets.csv");
            return TRUE;
        case IDC_DEMO_IMPORT:
            ImportTickets(hDlg);
            return TRUE;
        case IDOK:
        case IDCANCEL:
            DestroyWindow(hDlg);
            return TRUE;
        }
        break;
    case WM_DESTROY:
        g_tickets.UnAssign();
        g_large.UnAssign();
        PostQuitMessage(0);
        return TRUE;
    }
    return FALSE;
}

void PumpFor(DWORD ms) {
    DWORD start = GetTickCount();
    MSG msg;
    while (GetTickCount() - start < ms) {
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        Sleep(10);
    }
}

// ---------------------------------------------------------------- the screenshot tour

// The file dialogs of the tour answer with these paths instead of asking.
struct TourFiles {
    char szImport[MAX_PATH];
    char szExportDir[MAX_PATH];
};

bool CALLBACK TourFileDialog(void* pContext, HWND, bool bSave, char const*, char const*, char const*,
                             char* lpszPath, unsigned int uSize) {
    auto* pFiles = static_cast<TourFiles*>(pContext);
    char path[MAX_PATH];
    if (bSave)
        snprintf(path, sizeof path, "%s%s", pFiles->szExportDir, lpszPath);
    else
        StrNZCpy(path, pFiles->szImport, sizeof path);
    StrNZCpy(lpszPath, path, uSize);
    return true;
}

// Three walk-in sales from the box office, in the list's columns and the language's formats.
bool WriteBoxOfficeFile(char const* lpszPath) {
    FILE* fp = fopen(lpszPath, "wb");
    if (!fp)
        return false;
    fputs("Performance;Seat;Show;Price;Ticket;Customer\r\n", fp);
    struct Sale {
        char const* lpszEvent;
        char const* lpszSeat;
        long tShow;
        double dPrice;
        unsigned long ulNo;
    } const sales[] = {
        {"Hamlet", "H3", 1795458600, 19.95, 900001},
        {"Hamlet", "H4", 1795458600, 19.95, 900002},
        {"Carmen", "A1", 1795458600 + 4 * 86400, 89.0, 900003},
    };
    for (Sale const& sale : sales) {
        char date[64], price[64];
        FormatDateTime(sale.tShow, nullptr, nullptr, date, sizeof date, 0);
        FormatNumber(sale.dPrice, NVGetNumberFormatString(NVNF_EDIT, 0, false), price, sizeof price);
        fprintf(fp, "%s;%s;%s;%s;%lu;Box office\r\n", sale.lpszEvent, sale.lpszSeat, date, price, sale.ulNo);
    }
    return fclose(fp) == 0;
}

std::wstring ShotName(wchar_t const* lpszPath, wchar_t const* lpszSuffix) {
    std::wstring path = lpszPath;
    size_t const dot = path.rfind(L'.');
    if (dot == std::wstring::npos)
        return path + lpszSuffix;
    return path.substr(0, dot) + lpszSuffix + path.substr(dot);
}

// Drives the pages as a user would, through the dialog's own buttons, and photographs each page:
// FILE.png (tickets), FILE-large.png and FILE-texts.png.
bool RunScreenshotTour(HWND hDlg, wchar_t const* lpszPng) {
    TourFiles files{};
    GetTempPathA(sizeof files.szExportDir, files.szExportDir);
    snprintf(files.szImport, sizeof files.szImport, "%svantrel-box-office.csv", files.szExportDir);
    bool bOk = WriteBoxOfficeFile(files.szImport);
    NVSetFileDialogSink(TourFileDialog, &files);

    SendMessageW(hDlg, WM_COMMAND, IDC_DEMO_IMPORT, 0);
    PumpFor(600);
    bOk = SaveWindowScreenshot(hDlg, lpszPng) && bOk;

    ShowPage(hDlg, PAGE_LARGE);
    g_large.SetSecondSortCols(3, 0);
    g_large.SetSortMode(4, true);
    unsigned long const ulSortMs = g_large.GetLastSortMs();
    SendMessageW(hDlg, WM_COMMAND, IDC_DEMO_EXPORT_LARGE, 0);
    wchar_t exported[600] = L"";
    GetDlgItemTextW(hDlg, IDC_DEMO_STATUS, exported, 600);
    SetStatus(hDlg, L"Sorted by price, show and ticket in %lu ms. %ls", ulSortMs, exported);
    PumpFor(600);
    bOk = SaveWindowScreenshot(hDlg, ShotName(lpszPng, L"-large").c_str()) && bOk;

    ShowPage(hDlg, PAGE_TEXTS);
    SetStatus(hDlg, L"");
    PumpFor(600);
    bOk = SaveWindowScreenshot(hDlg, ShotName(lpszPng, L"-texts").c_str()) && bOk;

    NVSetFileDialogSink(nullptr, nullptr);
    return bOk;
}

} // namespace

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, PWSTR, int nShow) {
    int argc = 0;
    wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    wchar_t const* screenshot = nullptr;
    for (int i = 1; i + 1 < argc; ++i)
        if (lstrcmpW(argv[i], L"--screenshot") == 0)
            screenshot = argv[i + 1];

    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_WIN95_CLASSES | ICC_DATE_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&icc);
    NVSetAppName("Vantrel demo");

    HWND hDlg = CreateDialogParamW(hInstance, MAKEINTRESOURCEW(IDD_DEMO_MAIN), nullptr, MainDlgProc, 0);
    if (!hDlg)
        return 1;
    int rc = 0;
    if (screenshot) {
        SetWindowPos(hDlg, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
        UpdateWindow(hDlg);
        PumpFor(800);
        rc = RunScreenshotTour(hDlg, screenshot) ? 0 : 2;
        DestroyWindow(hDlg);
    } else {
        ShowWindow(hDlg, nShow);
        MSG msg;
        while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
            if (!IsDialogMessageW(hDlg, &msg)) {
                TranslateMessage(&msg);
                DispatchMessageW(&msg);
            }
        }
    }
    LocalFree(argv);
    CoUninitialize();
    return rc;
}
