// The object a client module keeps for its dialogs: the module's instance and name (the title of
// its message boxes), its message boxes, and the input checks that tell the user and put the focus
// in the failed field, on the right tab page.
#pragma once

#include "frame/VTRExport.h"

#include <windows.h>
#include <commctrl.h>

class DlgBase;
class VTRTabControl;

class VTR_API ClientModuleGUIBase {
public:
    enum { MODULE_NAME_SIZE = 132, TITLE_SIZE = 128 };

    ClientModuleGUIBase();
    virtual ~ClientModuleGUIBase();
    // Error box (MB_ICONHAND) with the title rule and no owner. Virtual so that a module can route
    // its errors elsewhere.
    virtual int ShowErrorMsg(char const* lpszFormat, ...);

    // ---- Process-wide
    static void SetInstance(HINSTANCE hInst);
    static HINSTANCE GetInstance();
    // Sets the shared title (cut to 127 characters). Null takes the product name of the running
    // program's version information. The first name ever set is kept apart (GetFirstModuleName),
    // and the title is handed on to NVSetAppName.
    static void SetModuleName(char const* lpszName);
    static char const* GetFirstModuleName();
    // The title rule: the first non-empty of lpszTitle, lpszModuleName (blank counts as empty), the
    // shared title and NVGetAppName(); when all are empty the shared title is derived anew.
    static char const* GetMsgBoxTitle(char const* lpszTitle, char const* lpszModuleName);
    // The same for wide titles, without the module step.
    static wchar_t const* GetMsgBoxTitle(wchar_t const* lpszTitle);

    // ---- Message boxes; every form returns the button id. Owner: NVGetMsgBoxParent(hWnd).
    int ShowErrorMsgTitle(char const* lpszTitle, char const* lpszFormat, ...);
    int ShowWarningMsg(char const* lpszFormat, ...);
    int ShowWarningMsg(HWND hWnd, wchar_t const* lpszFormat, ...);
    int ShowWarningMsgTitle(char const* lpszTitle, char const* lpszFormat, ...);
    int ShowInfoMsg(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...);
    int ShowInfoMsgTitle(char const* lpszTitle, char const* lpszFormat, ...);
    int ShowPlainMsg(char const* lpszTitle, char const* lpszFormat, ...);
    // uStyle gets MB_SETFOREGROUND added.
    int ShowMsg(HWND hWnd, char const* lpszTitle, UINT uStyle, char const* lpszFormat, ...);
    int ShowMsg(HWND hWnd, wchar_t const* lpszTitle, UINT uStyle, wchar_t const* lpszFormat, ...);
    int AskYesNo(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...);
    int AskYesNo(HWND hWnd, wchar_t const* lpszTitle, wchar_t const* lpszFormat, ...);
    int AskYesNoDefNo(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...);
    int AskYesNoDefNo(HWND hWnd, wchar_t const* lpszTitle, wchar_t const* lpszFormat, ...);
    // Shown without an owner, whatever hWnd is.
    int AskYesNoCancel(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...);
    int AskOkCancel(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...);
    int AskRetryCancel(HWND hWnd, char const* lpszTitle, char const* lpszFormat, ...);
    // Formats the text (at most 2,047 bytes) and shows it from a thread of its own, so the caller
    // goes on at once, even while it holds something the box would wait for.
    static void ShowErrorMsgAsync(HWND hWnd, char const* lpszFormat, ...);

    // ---- Tab pages and focus
    void SetTabPage(int iPage, VTRTabControl* pTab);
    void SetTabPage2(int iPage, VTRTabControl* pTab);
    // Shows the stored pages, then puts the focus on the control. Without a tab control the first
    // page is asked of the dialog's parent with message 1125 (wParam: the page).
    void SetFocusToField(HWND hDlg, unsigned short id);
    void SetFocusToField(HWND hCtrl);
    // True for a non-empty text; otherwise tells the user that the field (named by its label) must
    // be filled, puts the focus there and returns false.
    bool CheckNotEmpty(HWND hDlg, int id, char const* lpszText);
    bool CheckNotEmpty(HWND hDlg, int id, wchar_t const* lpszText);

    // ---- Helpers
    // A formatted copy that the caller frees with free(); null when memory runs out.
    static char const* FormatDup(char const* lpszFormat, ...);
    // Adds icon id of the module's instance; its index, or -1.
    static int AddIconToImageList(HIMAGELIST hImageList, int id);
    // The text of command item of menu resource menuId; false (and an empty text) when missing.
    static bool GetMenuText(unsigned short wMenuId, unsigned short wItem, char* lpszOut, unsigned int uSize);
    // Shows a popup menu (sub-menu iSubMenu when 0 or above) at pt (null: the cursor); the chosen
    // command goes to hOwner as WM_COMMAND. byAlign is the TPM_ alignment shifted right by 8.
    // Returns TrackPopupMenu's result, 0 when the menu is missing.
    static unsigned int TrackPopup(HWND hOwner, unsigned short wMenuId, POINT* pt, unsigned char byAlign,
                                   int iSubMenu);
    // The same with a menu the caller owns, which stays as it is.
    static unsigned int TrackPopup(HWND hOwner, HMENU hMenu, POINT* pt, unsigned char byAlign, int iSubMenu);
    // Shows or hides a control (only when its state differs); the focus leaves a control before it
    // is hidden. False when the control does not exist.
    static bool ShowDlgItem(HWND hDlg, int id, bool bShow);

    // ---- Input checks: forwarded to the dialog's DlgBase (its own object, or a shared one for
    // dialogs without), after the tab pages of this object have been handed to it.
    bool GetCheckBoxFlag(HWND hDlg, int id, unsigned long& dwFlags, unsigned long dwMask);
    bool CheckRange(HWND hDlg, int id, long lValue, long lMin, long lMax, char const* lpszName,
                    unsigned long dwFlags);
    bool CheckRangeDouble(HWND hDlg, int id, double dValue, double dMin, double dMax, char const* lpszName,
                          unsigned long dwFlags);
    bool CheckStreamForKLTConnectorBase(HWND hDlg, int id, char const* lpszName, unsigned long dwFlags);
    int FindCBEntryByItemData(HWND hDlg, unsigned short id, unsigned long dwData);
    bool GetAndCheckCBEditField(HWND hDlg, int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                unsigned long dwFlags);
    bool GetAndCheckCBField(HWND hDlg, int id, long& lData, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckCBFieldPtr(HWND hDlg, int id, void*& pData, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckCBFieldText(HWND hDlg, int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                unsigned long dwFlags);
    bool GetAndCheckDateTimePicker(HWND hDlg, int id, long& t, char const* lpszName, unsigned long dwFlags,
                                   unsigned long dwTZ = 0);
    bool GetAndCheckDateTimePicker(HWND hDlg, int id, SYSTEMTIME& st, char const* lpszName,
                                   unsigned long dwFlags);
    bool GetAndCheckDoubleField(HWND hDlg, int id, double& dOut, char const* lpszName, unsigned long dwFlags,
                                double const* pMin = nullptr, double const* pMax = nullptr,
                                char const* lpszFormat = nullptr);
    bool GetAndCheckEMailField(HWND hDlg, int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                               unsigned long dwFlags);
    bool GetAndCheckKartenDatumField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                     char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckKartenDatumFieldMonYear(HWND hDlg, int id, int& iMonth, int& iYear, char const* lpszName,
                                            unsigned long dwFlags);
    bool GetAndCheckLBField(HWND hDlg, int id, long& lData, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckMultipleEMailField(HWND hDlg, int id, char* lpszOut, unsigned int uSize,
                                       char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckNumField(HWND hDlg, int id, unsigned long& dwOut, char const* lpszName,
                             unsigned long dwFlags);
    bool GetAndCheckNumField(HWND hDlg, int id, unsigned __int64& qwOut, char const* lpszName,
                             unsigned long dwFlags);
    bool GetAndCheckNumFieldRange(HWND hDlg, int id, unsigned long& dwOut, unsigned long dwMin,
                                  unsigned long dwMax, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckNumFieldSigned(HWND hDlg, int id, long& lOut, char const* lpszName,
                                   unsigned long dwFlags);
    bool GetAndCheckTextField(HWND hDlg, int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                              unsigned long dwFlags);
    bool GetAndCheckTextFieldW(HWND hDlg, int id, wchar_t* lpszOut, unsigned int uSize, char const* lpszName,
                               unsigned long dwFlags);

    // ---- Amounts. The field is read with the amounts switch (NVGetAmountsWithoutDecimalPlaces) set
    // to bWithoutDecimals; without decimals and unless bNoRounding the value is rounded to whole
    // units. A value read successfully is written back in the amount format, the field limited to
    // 17 characters and the format kept in its GWLP_USERDATA. The switch is restored afterwards.
    bool GetAndCheckAmount(HWND hDlg, int id, double& dOut, bool bWithoutDecimals, bool bNoRounding,
                           char const* lpszName, unsigned long dwFlags, double const* pMin = nullptr,
                           double const* pMax = nullptr);
    // The same with bWithoutDecimals taken from check box idCheckBox, no lower bound and 1e300 as
    // upper one.
    bool GetAndCheckAmountByCheckBox(HWND hDlg, int id, double& dOut, int idCheckBox, bool bNoRounding,
                                     char const* lpszName, unsigned long dwFlags);

public:
    int iTabPage;               // page to show before the focus moves to a failed field; below 0: none
    VTRTabControl* pTabControl; // wrapper of the tab control holding that page
    HWND hTabWnd;               // its window
    int iTabPage2;              // the same for a nested tab control
    VTRTabControl* pTabControl2;
    HWND hTabWnd2;
    char szModuleName[MODULE_NAME_SIZE]; // title of this object's boxes; empty: the shared title

private:
    // The dialog's own DlgBase, or the shared one bound to hDlg, carrying this object's tab pages.
    DlgBase* ResolveDlg(HWND hDlg);
    char const* Title(char const* lpszTitle) { return GetMsgBoxTitle(lpszTitle, szModuleName); }
};
