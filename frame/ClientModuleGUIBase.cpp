#include "frame/ClientModuleGUIBase.h"

#include "frame/VantrelBase.h"

#include "DlgBase.h"
#include "NVFileDialogs.h"
#include "NVFormat.h"
#include "NVLanguage.h"
#include "NVMsgBox.h"
#include "NVNumbers.h"
#include "NVStrings.h"
#include "NVWindows.h"

#include <cstdlib>
#include <cstring>
#include <vector>

namespace {
HINSTANCE g_hInstance = nullptr;
char g_szTitle[ClientModuleGUIBase::TITLE_SIZE] = "";
char g_szFirstName[ClientModuleGUIBase::TITLE_SIZE] = "";
wchar_t g_wszTitle[ClientModuleGUIBase::TITLE_SIZE + 1] = L"";

UINT const kError = MB_SETFOREGROUND | MB_ICONHAND;                                            // 0x10010
UINT const kWarning = MB_SETFOREGROUND | MB_ICONEXCLAMATION;                                   // 0x10030
UINT const kInfo = MB_SETFOREGROUND | MB_ICONINFORMATION;                                      // 0x10040
UINT const kPlain = MB_SETFOREGROUND | MB_OK;                                                  // 0x10000
UINT const kYesNo = MB_SETFOREGROUND | MB_YESNO | MB_ICONQUESTION;                             // 0x10024
UINT const kYesNoDefNo = kYesNo | MB_DEFBUTTON2;                                               // 0x10124
UINT const kYesNoCancel = MB_SETFOREGROUND | MB_YESNOCANCEL | MB_ICONQUESTION | MB_DEFBUTTON3; // 0x10223
UINT const kOkCancel = MB_SETFOREGROUND | MB_OKCANCEL | MB_ICONEXCLAMATION;                    // 0x10031
UINT const kRetryCancel = MB_SETFOREGROUND | MB_RETRYCANCEL | MB_ICONEXCLAMATION;              // 0x10035

size_t const kAsyncTextSize = 2048;

// The text block of ShowErrorMsgAsync, owned by its thread.
struct AsyncBlock {
    HWND hParent;
    char szText[kAsyncTextSize];
};

DWORD WINAPI AsyncBoxThread(LPVOID pParam) {
    auto* block = static_cast<AsyncBlock*>(pParam);
    NVMessageBox(block->hParent, block->szText, "", kError);
    std::free(block);
    return 0;
}

bool IsBlank(char const* text) {
    if (!text)
        return true;
    for (; *text; ++text)
        if (*text != ' ' && *text != '\t')
            return false;
    return true;
}

// Every wrapper has VantrelBase as its first and only root, so the wrapper's address is that of
// its VantrelBase part; this lets the tab pages work without the tab wrapper's declaration.
HWND TabWindowOf(VTRTabControl* pTab) {
    return pTab ? reinterpret_cast<VantrelBase*>(pTab)->GethWnd() : nullptr;
}

// The DlgBase of dialogs that have none of their own. One object serves all such dialogs, so the
// checks are to run on one thread at a time; it lives until the process ends.
DlgBase& SharedDlg() {
    static DlgBase s_dlg(nullptr);
    return s_dlg;
}
} // namespace

ClientModuleGUIBase::ClientModuleGUIBase()
    : iTabPage(-1), pTabControl(nullptr), hTabWnd(nullptr), iTabPage2(-1), pTabControl2(nullptr),
      hTabWnd2(nullptr) {
    szModuleName[0] = 0;
}

ClientModuleGUIBase::~ClientModuleGUIBase() = default;

// ---- Process-wide

void ClientModuleGUIBase::SetInstance(HINSTANCE hInst) {
    g_hInstance = hInst;
}

HINSTANCE ClientModuleGUIBase::GetInstance() {
    return g_hInstance;
}

void ClientModuleGUIBase::SetModuleName(char const* lpszName) {
    NVFileInfo info;
    if (!lpszName) {
        char path[MAX_PATH] = "";
        unsigned long dwError = 0;
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        if (NVGetFileInfo(path, info, dwError) && info.daStringFileInfo.GetCount() > 0)
            lpszName = info.daStringFileInfo.Get(0)->szProductName;
    }
    StrNZCpy(g_szTitle, lpszName ? lpszName : "", TITLE_SIZE);
    if (!g_szFirstName[0])
        StrNZCpy(g_szFirstName, g_szTitle, TITLE_SIZE);
    g_wszTitle[0] = 0;
    if (!MultiByteToWideChar(NVGetCurCodePage(), 0, g_szTitle, -1, g_wszTitle, TITLE_SIZE + 1))
        g_wszTitle[0] = 0;
    NVSetAppName(g_szTitle);
}

char const* ClientModuleGUIBase::GetFirstModuleName() {
    return g_szFirstName;
}

char const* ClientModuleGUIBase::GetMsgBoxTitle(char const* lpszTitle, char const* lpszModuleName) {
    if (lpszTitle && lpszTitle[0])
        return lpszTitle;
    if (!IsBlank(lpszModuleName))
        return lpszModuleName;
    if (g_szTitle[0])
        return g_szTitle;
    char const* app = NVGetAppName();
    if (app && app[0])
        return app;
    SetModuleName(nullptr);
    return g_szTitle;
}

wchar_t const* ClientModuleGUIBase::GetMsgBoxTitle(wchar_t const* lpszTitle) {
    if (lpszTitle && lpszTitle[0])
        return lpszTitle;
    if (g_wszTitle[0])
        return g_wszTitle;
    wchar_t const* app = NVGetAppNameU();
    if (app && app[0])
        return app;
    SetModuleName(nullptr);
    return g_wszTitle;
}

// ---- Message boxes

int ClientModuleGUIBase::ShowErrorMsg(char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(nullptr), kError, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowErrorMsgTitle(char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(lpszTitle), kError, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowWarningMsg(char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(nullptr), kWarning, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowWarningMsg(HWND hWnd, wchar_t const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA_W(NVGetMsgBoxParent(hWnd), GetMsgBoxTitle(static_cast<wchar_t const*>(nullptr)),
                          kWarning, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowWarningMsgTitle(char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(lpszTitle), kWarning, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowInfoMsg(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(NVGetMsgBoxParent(hWnd), Title(lpszTitle), kInfo, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowInfoMsgTitle(char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(lpszTitle), kInfo, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowPlainMsg(char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(lpszTitle), kPlain, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowMsg(HWND hWnd, char const* lpszTitle, UINT uStyle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r =
        NVMsgBox_VA(NVGetMsgBoxParent(hWnd), Title(lpszTitle), uStyle | MB_SETFOREGROUND, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::ShowMsg(HWND hWnd, wchar_t const* lpszTitle, UINT uStyle, wchar_t const* lpszFormat,
                                 ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA_W(NVGetMsgBoxParent(hWnd), GetMsgBoxTitle(lpszTitle), uStyle | MB_SETFOREGROUND,
                          lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskYesNo(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(NVGetMsgBoxParent(hWnd), Title(lpszTitle), kYesNo, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskYesNo(HWND hWnd, wchar_t const* lpszTitle, wchar_t const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA_W(NVGetMsgBoxParent(hWnd), GetMsgBoxTitle(lpszTitle), kYesNo, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskYesNoDefNo(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(NVGetMsgBoxParent(hWnd), Title(lpszTitle), kYesNoDefNo, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskYesNoDefNo(HWND hWnd, wchar_t const* lpszTitle, wchar_t const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA_W(NVGetMsgBoxParent(hWnd), GetMsgBoxTitle(lpszTitle), kYesNoDefNo, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskYesNoCancel(HWND, char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(nullptr, Title(lpszTitle), kYesNoCancel, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskOkCancel(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(NVGetMsgBoxParent(hWnd), Title(lpszTitle), kOkCancel, lpszFormat, args);
    va_end(args);
    return r;
}

int ClientModuleGUIBase::AskRetryCancel(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...) {
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(NVGetMsgBoxParent(hWnd), Title(lpszTitle), kRetryCancel, lpszFormat, args);
    va_end(args);
    return r;
}

void ClientModuleGUIBase::ShowErrorMsgAsync(HWND hWnd, char const* lpszFormat, ...) {
    auto* block = static_cast<AsyncBlock*>(std::malloc(sizeof(AsyncBlock)));
    if (!block)
        return;
    // The owner is resolved here: GetActiveWindow answers for the calling thread only.
    block->hParent = NVGetMsgBoxParent(hWnd);
    va_list args;
    va_start(args, lpszFormat);
    VSNPrintf(block->szText, kAsyncTextSize, lpszFormat ? lpszFormat : "", args, 0);
    va_end(args);
    HANDLE hThread = CreateThread(nullptr, 0, &AsyncBoxThread, block, 0, nullptr);
    if (hThread)
        CloseHandle(hThread);
    else
        std::free(block);
}

// ---- Tab pages and focus

void ClientModuleGUIBase::SetTabPage(int iPage, VTRTabControl* pTab) {
    iTabPage = iPage;
    pTabControl = pTab;
    hTabWnd = TabWindowOf(pTab);
}

void ClientModuleGUIBase::SetTabPage2(int iPage, VTRTabControl* pTab) {
    iTabPage2 = iPage;
    pTabControl2 = pTab;
    hTabWnd2 = TabWindowOf(pTab);
}

void ClientModuleGUIBase::SetFocusToField(HWND hDlg, unsigned short id) {
    if (iTabPage >= 0) {
        // The wrapper's SetCurSel amounts to TCM_SETCURSEL with the notifications of a click around
        // it, which is what SelectTabPage_ sends on the wrapper's window.
        if (pTabControl)
            DlgBase::SelectTabPage_(TabWindowOf(pTabControl), iTabPage);
        else if (hDlg)
            SendMessageA(GetParent(hDlg), NVWM_ACTIVATE_TABPAGE, static_cast<WPARAM>(iTabPage), 0);
    }
    if (iTabPage2 >= 0 && pTabControl2)
        DlgBase::SelectTabPage_(TabWindowOf(pTabControl2), iTabPage2);
    if (hDlg)
        SetFocus(GetDlgItem(hDlg, id));
}

void ClientModuleGUIBase::SetFocusToField(HWND hCtrl) {
    if (!hCtrl)
        return;
    SetFocusToField(GetParent(hCtrl), static_cast<unsigned short>(GetDlgCtrlID(hCtrl)));
}

bool ClientModuleGUIBase::CheckNotEmpty(HWND hDlg, int id, char const* lpszText) {
    if (!TestLeer(lpszText))
        return true;
    char label[128];
    DlgBase::GetPrevWindowText_(GetDlgItem(hDlg, id), label, sizeof label);
    SetFocusToField(hDlg, static_cast<unsigned short>(id));
    ShowErrorMsg(GSRC(NV_IDS_FIELD_EMPTY, 0), label);
    return false;
}

bool ClientModuleGUIBase::CheckNotEmpty(HWND hDlg, int id, wchar_t const* lpszText) {
    if (!TestLeer(lpszText))
        return true;
    return CheckNotEmpty(hDlg, id, static_cast<char const*>(nullptr));
}

// ---- Helpers

char const* ClientModuleGUIBase::FormatDup(char const* lpszFormat, ...) {
    std::vector<char> buf(4096);
    va_list args;
    va_start(args, lpszFormat);
    VSNPrintf(buf.data(), static_cast<unsigned>(buf.size()), lpszFormat ? lpszFormat : "", args, 0);
    va_end(args);
    return _strdup(buf.data());
}

int ClientModuleGUIBase::AddIconToImageList(HIMAGELIST hImageList, int id) {
    // Without an instance LoadImage would look among the system's own images.
    if (!hImageList || !g_hInstance)
        return -1;
    int cx = 0, cy = 0;
    ImageList_GetIconSize(hImageList, &cx, &cy);
    HICON hIcon = static_cast<HICON>(LoadImageW(g_hInstance, MAKEINTRESOURCEW(id), IMAGE_ICON, cx, cy, 0));
    if (!hIcon)
        return -1;
    int index = ImageList_AddIcon(hImageList, hIcon);
    DestroyIcon(hIcon);
    return index;
}

bool ClientModuleGUIBase::GetMenuText(unsigned short wMenuId, unsigned short wItem, char* lpszOut,
                                      unsigned int uSize) {
    if (!lpszOut || !uSize)
        return false;
    lpszOut[0] = 0;
    HMENU hMenu = NVLoadMenu(g_hInstance, MAKEINTRESOURCEA(wMenuId));
    if (!hMenu)
        return false;
    wchar_t text[512] = L"";
    MENUITEMINFOW mii{};
    mii.cbSize = sizeof mii;
    mii.fMask = MIIM_STRING;
    mii.dwTypeData = text;
    mii.cch = 512;
    bool bOk = GetMenuItemInfoW(hMenu, wItem, FALSE, &mii) != FALSE;
    DestroyMenu(hMenu);
    if (!bOk)
        return false;
    WideCharToMultiByte(NVGetCurCodePage(), 0, text, -1, lpszOut, static_cast<int>(uSize), nullptr, nullptr);
    lpszOut[uSize - 1] = 0;
    return true;
}

unsigned int ClientModuleGUIBase::TrackPopup(HWND hOwner, HMENU hMenu, POINT* pt, unsigned char byAlign,
                                             int iSubMenu) {
    if (!hMenu)
        return 0;
    HMENU hPopup = iSubMenu >= 0 ? GetSubMenu(hMenu, iSubMenu) : hMenu;
    if (!hPopup)
        return 0;
    POINT pos;
    if (pt)
        pos = *pt;
    else
        GetCursorPos(&pos);
    return static_cast<unsigned int>(TrackPopupMenu(
        hPopup, (static_cast<UINT>(byAlign) << 8) | TPM_RIGHTBUTTON, pos.x, pos.y, 0, hOwner, nullptr));
}

unsigned int ClientModuleGUIBase::TrackPopup(HWND hOwner, unsigned short wMenuId, POINT* pt,
                                             unsigned char byAlign, int iSubMenu) {
    HMENU hMenu = NVLoadMenu(g_hInstance, MAKEINTRESOURCEA(wMenuId));
    if (!hMenu)
        return 0;
    unsigned int r = TrackPopup(hOwner, hMenu, pt, byAlign, iSubMenu);
    DestroyMenu(hMenu);
    return r;
}

bool ClientModuleGUIBase::ShowDlgItem(HWND hDlg, int id, bool bShow) {
    HWND hCtrl = hDlg ? GetDlgItem(hDlg, id) : nullptr;
    if (!hCtrl)
        return false;
    if (!bShow && GetFocus() == hCtrl)
        SendMessageW(hDlg, WM_NEXTDLGCTL, 0, FALSE);
    // The style, not IsWindowVisible: a control of a hidden dialog is "visible" in its own right.
    bool bVisible = (GetWindowLongW(hCtrl, GWL_STYLE) & WS_VISIBLE) != 0;
    if (bVisible != bShow)
        ShowWindow(hCtrl, bShow ? SW_SHOW : SW_HIDE);
    return true;
}

// ---- Input checks

DlgBase* ClientModuleGUIBase::ResolveDlg(HWND hDlg) {
    DlgBase* pDlg = DlgBase::GetDlgBasePtr(hDlg);
    if (!pDlg) {
        pDlg = &SharedDlg();
        pDlg->m_hWnd = hDlg;
    }
    pDlg->m_iTabPage = iTabPage;
    pDlg->m_hTabWnd = IsWindow(hTabWnd) ? hTabWnd : nullptr;
    pDlg->m_iTabPage2 = iTabPage2;
    pDlg->m_hTabWnd2 = IsWindow(hTabWnd2) ? hTabWnd2 : nullptr;
    return pDlg;
}

bool ClientModuleGUIBase::GetCheckBoxFlag(HWND hDlg, int id, unsigned long& dwFlags, unsigned long dwMask) {
    return ResolveDlg(hDlg)->GetCheckBoxFlag(id, dwFlags, dwMask);
}

bool ClientModuleGUIBase::CheckRange(HWND hDlg, int id, long lValue, long lMin, long lMax,
                                     char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->CheckRange(id, lValue, lMin, lMax, lpszName, dwFlags);
}

bool ClientModuleGUIBase::CheckRangeDouble(HWND hDlg, int id, double dValue, double dMin, double dMax,
                                           char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->CheckRangeDouble(id, dValue, dMin, dMax, lpszName, dwFlags);
}

bool ClientModuleGUIBase::CheckStreamForKLTConnectorBase(HWND hDlg, int id, char const* lpszName,
                                                         unsigned long dwFlags) {
    return ResolveDlg(hDlg)->CheckStreamForKLTConnectorBase(id, lpszName, dwFlags);
}

int ClientModuleGUIBase::FindCBEntryByItemData(HWND hDlg, unsigned short id, unsigned long dwData) {
    return ResolveDlg(hDlg)->FindCBEntryByItemData(id, dwData);
}

bool ClientModuleGUIBase::GetAndCheckCBEditField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                                 char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckCBEditField(id, lpszOut, uSize, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckCBField(HWND hDlg, int id, long& lData, char const* lpszName,
                                             unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckCBField(id, lData, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckCBFieldPtr(HWND hDlg, int id, void*& pData, char const* lpszName,
                                                unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckCBFieldPtr(id, pData, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckCBFieldText(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                                 char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckCBFieldText(id, lpszOut, uSize, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckDateTimePicker(HWND hDlg, int id, long& t, char const* lpszName,
                                                    unsigned long dwFlags, unsigned long dwTZ) {
    return ResolveDlg(hDlg)->GetAndCheckDateTimePicker(id, t, lpszName, dwFlags, dwTZ);
}

bool ClientModuleGUIBase::GetAndCheckDateTimePicker(HWND hDlg, int id, SYSTEMTIME& st, char const* lpszName,
                                                    unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckDateTimePicker(id, st, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckDoubleField(HWND hDlg, int id, double& dOut, char const* lpszName,
                                                 unsigned long dwFlags, double const* pMin,
                                                 double const* pMax, char const* lpszFormat) {
    return ResolveDlg(hDlg)->GetAndCheckDoubleField(id, dOut, lpszName, dwFlags, pMin, pMax, lpszFormat);
}

bool ClientModuleGUIBase::GetAndCheckEMailField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                                char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckEMailField(id, lpszOut, uSize, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckKartenDatumField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                                      char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckKartenDatumField(id, lpszOut, uSize, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckKartenDatumFieldMonYear(HWND hDlg, int id, int& iMonth, int& iYear,
                                                             char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckKartenDatumFieldMonYear(id, iMonth, iYear, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckLBField(HWND hDlg, int id, long& lData, char const* lpszName,
                                             unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckLBField(id, lData, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckMultipleEMailField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                                        char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckMultipleEMailField(id, lpszOut, uSize, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckNumField(HWND hDlg, int id, unsigned long& dwOut, char const* lpszName,
                                              unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckNumField(id, dwOut, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckNumField(HWND hDlg, int id, unsigned __int64& qwOut,
                                              char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckNumField(id, qwOut, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckNumFieldRange(HWND hDlg, int id, unsigned long& dwOut,
                                                   unsigned long dwMin, unsigned long dwMax,
                                                   char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckNumFieldRange(id, dwOut, dwMin, dwMax, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckNumFieldSigned(HWND hDlg, int id, long& lOut, char const* lpszName,
                                                    unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckNumFieldSigned(id, lOut, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckTextField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                               char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckTextField(id, lpszOut, uSize, lpszName, dwFlags);
}

bool ClientModuleGUIBase::GetAndCheckTextFieldW(HWND hDlg, int id, wchar_t* lpszOut, unsigned int uSize,
                                                char const* lpszName, unsigned long dwFlags) {
    return ResolveDlg(hDlg)->GetAndCheckTextFieldW(id, lpszOut, uSize, lpszName, dwFlags);
}

// ---- Amounts

bool ClientModuleGUIBase::GetAndCheckAmount(HWND hDlg, int id, double& dOut, bool bWithoutDecimals,
                                            bool bNoRounding, char const* lpszName, unsigned long dwFlags,
                                            double const* pMin, double const* pMax) {
    bool bSaved = NVGetAmountsWithoutDecimalPlaces();
    NVSetAmountsWithoutDecimalPlaces(bWithoutDecimals);
    DlgBase* pDlg = ResolveDlg(hDlg);
    bool bOk = pDlg->GetAndCheckDoubleField(id, dOut, lpszName, dwFlags, pMin, pMax, nullptr);
    if (bOk) {
        if (bWithoutDecimals && !bNoRounding)
            dOut = Runden(dOut, 0);
        HWND hCtrl = GetDlgItem(hDlg, id);
        SendMessageW(hCtrl, EM_LIMITTEXT, 17, 0);
        char const* lpszFormat = NVGetNumberFormatString(NVNF_DEFAULT, 0, bWithoutDecimals);
        // An optional field left empty stays empty rather than showing a zero the user never typed.
        char out[100];
        if (GetWindowTextLengthW(hCtrl) > 0 && FormatNumber(dOut, lpszFormat, out, sizeof out))
            pDlg->NVSetWindowTextUC(hCtrl, out);
        SetWindowLongPtrW(hCtrl, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(lpszFormat));
    }
    NVSetAmountsWithoutDecimalPlaces(bSaved);
    return bOk;
}

bool ClientModuleGUIBase::GetAndCheckAmountByCheckBox(HWND hDlg, int id, double& dOut, int idCheckBox,
                                                      bool bNoRounding, char const* lpszName,
                                                      unsigned long dwFlags) {
    bool bWithoutDecimals = IsDlgButtonChecked(hDlg, idCheckBox) == BST_CHECKED;
    double const dMax = 1e300;
    return GetAndCheckAmount(hDlg, id, dOut, bWithoutDecimals, bNoRounding, lpszName, dwFlags, nullptr,
                             &dMax);
}
