// DlgBase: items, texts, labels, combo boxes, date pickers and number fields.
#include "DlgBase.h"

#include "DlgBaseInternal.h"

#include "DynaArray.h"
#include "NVDates.h"
#include "NVLanguage.h"
#include "NVNumbers.h"
#include "NVStrings.h"
#include "NVWindows.h"

#include <commctrl.h>

#include <string>
#include <vector>

using namespace nvdlg;

namespace {
long const kPickerMin = 86000;
long const kPickerMax = 0x7FFF0000;

// Window classes of controls that take input, for EnableAllInputChilds.
bool IsInputControl(HWND hWnd) {
    wchar_t name[64];
    if (!GetClassNameW(hWnd, name, 64))
        return false;
    if (lstrcmpiW(name, L"Button") == 0)
        return (GetWindowLongW(hWnd, GWL_STYLE) & BS_TYPEMASK) != BS_GROUPBOX;
    static wchar_t const* const kClasses[] = {L"Edit",
                                              L"ComboBox",
                                              L"ListBox",
                                              L"SysListView32",
                                              L"SysTreeView32",
                                              L"SysDateTimePick32",
                                              L"msctls_trackbar32",
                                              L"msctls_updown32",
                                              L"SysMonthCal32",
                                              L"RichEdit20A",
                                              L"RichEdit20W",
                                              L"RICHEDIT50W",
                                              L"msctls_hotkey32",
                                              L"SysIPAddress32",
                                              L"ComboBoxEx32"};
    for (wchar_t const* c : kClasses)
        if (lstrcmpiW(name, c) == 0)
            return true;
    return false;
}
} // namespace

// ---- Items

void DlgBase::ShowDialogItem(unsigned int id, bool bShow) {
    HWND hCtrl = ItemOf(static_cast<int>(id));
    if (!hCtrl)
        return;
    if (!bShow && GetFocus() == hCtrl)
        SendMessageW(m_hWnd, WM_NEXTDLGCTL, 0, FALSE);
    ShowWindow(hCtrl, bShow ? SW_SHOW : SW_HIDE);
}

void DlgBase::EnableDialogItem(unsigned int id, bool bEnable) {
    HWND hCtrl = ItemOf(static_cast<int>(id));
    if (!hCtrl)
        return;
    // A disabled window keeping the focus leaves the keyboard dead.
    if (!bEnable && GetFocus() == hCtrl)
        SendMessageW(m_hWnd, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(hCtrl, bEnable);
}

bool DlgBase::EnableAllInputChilds(bool bEnable, DynaArrayTpl<unsigned long, 0, 0>* pExclude,
                                   bool bEditsReadOnly) {
    if (!m_hWnd)
        return false;
    for (HWND h = GetWindow(m_hWnd, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT)) {
        if (!IsInputControl(h))
            continue;
        unsigned long id = static_cast<unsigned long>(GetDlgCtrlID(h));
        bool bExcluded = false;
        for (int i = 0; pExclude && i < pExclude->GetCount(); ++i)
            if (*pExclude->Get(i) == id)
                bExcluded = true;
        if (bExcluded)
            continue;
        if (bEditsReadOnly && IsClass(h, L"Edit")) {
            SendMessageW(h, EM_SETREADONLY, bEnable ? FALSE : TRUE, 0);
            EnableWindow(h, TRUE);
            continue;
        }
        if (!bEnable && GetFocus() == h)
            SendMessageW(m_hWnd, WM_NEXTDLGCTL, 0, FALSE);
        EnableWindow(h, bEnable);
    }
    return true;
}

void DlgBase::ResetEditState() {
    m_bChanged = false;
}

void DlgBase::SetDialogFocus(unsigned short id) {
    HWND hCtrl = ItemOf(id);
    if (hCtrl)
        SendMessageW(m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(hCtrl), TRUE);
}

// ---- Text

// The members take the free wrappers' way, so a dialog's texts follow NVIsUNICodeDlg like all others.
int DlgBase::NVSetWindowTextUC(HWND hWnd, char const* lpszText) {
    return hWnd ? ::NVSetWindowTextUC(hWnd, lpszText ? lpszText : "") : 0;
}

int DlgBase::NVSetDlgItemTextUC(HWND hDlg, int id, char const* lpszText) {
    return hDlg ? ::NVSetDlgItemTextUC(hDlg, id, lpszText ? lpszText : "") : 0;
}

int DlgBase::NVSetDlgItemTextUC(int id, char const* lpszText) {
    return NVSetDlgItemTextUC(m_hWnd, id, lpszText);
}

int DlgBase::NVGetDlgItemTextUC(HWND hDlg, int id, char* lpszOut, int iSize) {
    if (!lpszOut || iSize <= 0)
        return 0;
    lpszOut[0] = 0;
    HWND hCtrl = hDlg ? GetDlgItem(hDlg, id) : nullptr;
    return hCtrl ? ::NVGetWindowTextUC(hCtrl, lpszOut, iSize) : 0;
}

int DlgBase::NVGetDlgItemTextUC(int id, char* lpszOut, int iSize) {
    return NVGetDlgItemTextUC(m_hWnd, id, lpszOut, iSize);
}

bool DlgBase::GetPrevWindowTextW_(HWND hCtrl, wchar_t* lpszOut, unsigned int uSize) {
    if (!lpszOut || !uSize)
        return false;
    lpszOut[0] = 0;
    if (!hCtrl || !IsWindow(hCtrl))
        return false;
    // The edit part of a combo box stands for the combo box.
    HWND hParent = GetParent(hCtrl);
    if (hParent && IsClass(hParent, L"ComboBox"))
        hCtrl = hParent;
    for (HWND h = GetWindow(hCtrl, GW_HWNDPREV); h; h = GetWindow(h, GW_HWNDPREV)) {
        bool bLabel = false;
        if (IsClass(h, L"Static")) {
            DWORD type = GetWindowLongW(h, GWL_STYLE) & SS_TYPEMASK;
            // Pictures and frames carry no name: look past them.
            if (type == SS_ICON || type == SS_BITMAP || type == SS_ENHMETAFILE || type == SS_BLACKRECT ||
                type == SS_GRAYRECT || type == SS_WHITERECT || type == SS_BLACKFRAME ||
                type == SS_GRAYFRAME || type == SS_WHITEFRAME || type == SS_ETCHEDHORZ ||
                type == SS_ETCHEDVERT || type == SS_ETCHEDFRAME)
                continue;
            bLabel = true;
        } else if (IsClass(h, L"Button") && (GetWindowLongW(h, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX) {
            bLabel = true;
        }
        if (!bLabel)
            return false;
        std::wstring text = WindowTextW(h);
        DelChar(&text[0], L'&');
        text.resize(wcslen(text.c_str()));
        while (!text.empty() && (text.back() == L':' || text.back() == L' ' || text.back() == L'\t'))
            text.pop_back();
        StrNZCpy(lpszOut, text.c_str(), uSize);
        StrTrim(lpszOut);
        return lpszOut[0] != 0;
    }
    return false;
}

bool DlgBase::GetPrevWindowText_(HWND hCtrl, char* lpszOut, unsigned int uSize) {
    if (!lpszOut || !uSize)
        return false;
    lpszOut[0] = 0;
    wchar_t text[260];
    if (!GetPrevWindowTextW_(hCtrl, text, 260))
        return false;
    Narrow(text, lpszOut, static_cast<int>(uSize));
    return lpszOut[0] != 0;
}

// ---- Combo boxes

int DlgBase::AddCBItem_(HWND hCombo, char const* lpszText, long lData, bool bSelect) {
    if (!hCombo || !IsWindow(hCombo))
        return -1;
    LRESULT i;
    if (NVIsUNICodeDlg())
        i = SendMessageW(hCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Widen(lpszText).c_str()));
    else
        i = SendMessageA(hCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszText ? lpszText : ""));
    if (i < 0)
        return -1;
    SendMessageW(hCombo, CB_SETITEMDATA, static_cast<WPARAM>(i), static_cast<LPARAM>(lData));
    if (bSelect)
        SendMessageW(hCombo, CB_SETCURSEL, static_cast<WPARAM>(i), 0);
    return static_cast<int>(i);
}

int DlgBase::SelectCBItem_(HWND hCombo, long lData) {
    if (!hCombo || !IsWindow(hCombo))
        return -1;
    int count = static_cast<int>(SendMessageW(hCombo, CB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        if (static_cast<long>(SendMessageW(hCombo, CB_GETITEMDATA, static_cast<WPARAM>(i), 0)) == lData) {
            SendMessageW(hCombo, CB_SETCURSEL, static_cast<WPARAM>(i), 0);
            return i;
        }
    }
    SendMessageW(hCombo, CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    return -1;
}

int DlgBase::FindCBEntryByItemData(unsigned short id, unsigned long dwData) {
    HWND hCombo = ItemOf(id);
    if (!hCombo)
        return -1;
    int count = static_cast<int>(SendMessageW(hCombo, CB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i)
        if (static_cast<unsigned long>(SendMessageW(hCombo, CB_GETITEMDATA, static_cast<WPARAM>(i), 0)) ==
            dwData)
            return i;
    return -1;
}

// ---- Date picker

void DlgBase::SetDateTimePickerDate_(HWND hPicker, long t, bool bNoneIfEmpty, unsigned long dwTZ) {
    if (!hPicker)
        return;
    SYSTEMTIME st{};
    if (t <= 0) {
        if (bNoneIfEmpty) {
            SendMessageW(hPicker, DTM_SETSYSTEMTIME, GDT_NONE, reinterpret_cast<LPARAM>(&st));
            return;
        }
        t = NVGetNow();
    }
    Time_tToSystemTime(t, &st, dwTZ, false, nullptr, 999);
    SendMessageW(hPicker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&st));
}

void DlgBase::SetDateTimePickerRange_(HWND hPicker, long tMin, long tMax, unsigned long dwTZ) {
    if (!hPicker)
        return;
    SYSTEMTIME range[2] = {};
    Time_tToSystemTime(tMin > 0 ? tMin : kPickerMin, &range[0], dwTZ, false, nullptr, 999);
    Time_tToSystemTime(tMax > 0 ? tMax : kPickerMax, &range[1], dwTZ, false, nullptr, 999);
    SendMessageW(hPicker, DTM_SETRANGE, GDTR_MIN | GDTR_MAX, reinterpret_cast<LPARAM>(range));
}

void DlgBase::GetDateTimePickerDate_(HWND hPicker, long& t, unsigned long dwTZ) {
    t = 0;
    if (!hPicker)
        return;
    SYSTEMTIME st{};
    if (SendMessageW(hPicker, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&st)) != GDT_VALID)
        return;
    t = SystemTimeToTime_t(&st, dwTZ, false);
}

// ---- Number field

bool DlgBase::FormatDoubleField_(HWND hEdit, char const* lpszFormat, bool bZeroAsEmpty) {
    if (!hEdit || !IsWindow(hEdit))
        return false;
    if (!lpszFormat)
        lpszFormat = NVGetNumberFormatString(NVNF_DEFAULT, 0, NVGetAmountsWithoutDecimalPlaces());
    char text[128];
    Narrow(WindowTextW(hEdit).c_str(), text, sizeof text);
    StrTrim(text);
    // An empty field stays empty: it holds no number to rewrite.
    if (TestLeer(text))
        return true;
    double value = 0;
    if (!NVIsValidDouble(text, lpszFormat, value, nullptr, nullptr))
        return false;
    char out[100] = "";
    if (!(bZeroAsEmpty && value == 0) && !FormatNumber(value, lpszFormat, out, sizeof out))
        return false;
    SetWindowTextW(hEdit, Widen(out).c_str());
    return true;
}
