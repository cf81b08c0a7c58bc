// Base class of every dialog: life (modal and modeless), the size-and-move layout, the remembered
// position, item and text helpers, and the GetAndCheck family of input checks.
//
// A derived DlgProc first calls DlgBase::DlgProc and keeps its result, then handles WM_INITDIALOG,
// WM_COMMAND and the rest itself; for messages it does not take it returns the base's result.
#pragma once

#include "NVExport.h"

#include <windows.h>

#include <vector>

template <class T, int A, int B> class DynaArrayTpl;

// Flags of AddSizeMoveItem: how a child follows the dialog when the dialog's client area changes
// by (dx, dy) from its size at registration. Bits combine.
enum : unsigned long {
    NVSM_SIZE_X = 0x0001,  // the width grows by dx (the right edge keeps its distance)
    NVSM_SIZE_Y = 0x0002,  // the height grows by dy (the bottom edge keeps its distance)
    NVSM_MOVE_X = 0x0004,  // moves right by dx (follows the right edge)
    NVSM_MOVE_XY = 0x0008, // moves by dx and dy (follows the lower right corner)
    NVSM_MOVE_Y = 0x0010,  // moves down by dy (follows the bottom edge)
    // Share forms for children side by side: the child is part iPart (0-based) of iParts equal parts
    // of the change; it grows by one part and moves by iPart parts. With iParts below 1 (the usual
    // 0, -1) it takes the whole change, as NVSM_SIZE_X and NVSM_SIZE_Y do.
    NVSM_SIZE_X_PART = 0x1000,
    NVSM_SIZE_Y_PART = 0x2000,
};

// Flags of the GetAndCheck family. Without NVCF_PFLICHT an empty field passes and yields an empty
// value (0 for numbers, -1 as item data of a list without selection, 0 for a date picker showing
// "none").
enum : unsigned long {
    NVCF_PFLICHT = 0x0001,       // mandatory: an empty text or a missing selection fails
    NVCF_NO_TRIM = 0x0002,       // texts keep their blanks at both ends (they are trimmed otherwise)
    NVCF_ZERO_IS_EMPTY = 0x0004, // a number field holding 0 counts as empty for NVCF_PFLICHT
    NVCF_SILENT = 0x0008,        // a failed check shows no message and leaves the focus alone
    NVCF_REFORMAT = 0x0010,      // a number read successfully is written back in its canonical form
    NVCF_UPPER = 0x0020,         // text results are folded to upper case
};

// Private message: a dialog refreshes the enabled states of its controls. The base leaves it alone.
enum : UINT { NVWM_UPDATE_ENABLE = WM_USER + 1000 };

// Sent to a dialog's parent when a failed field lies on a page of a tab control that has no window
// known to the dialog: wParam is the page to activate.
enum : UINT { NVWM_ACTIVATE_TABPAGE = 1125 };

class NV_API DlgBase {
public:
    explicit DlgBase(HWND hParent = nullptr);

    // Hooks, in the order of the virtual table. The base calls each one at its moment; all do
    // nothing unless a derived class overrides them.
    virtual void OnDlgInit();                                   // at the end of the base's WM_INITDIALOG
    virtual void OnFieldChange(int id, HWND hCtrl, UINT uCode); // a control reported a change of its value
    virtual void DlgClose(int iResult);    // ends a modal dialog or destroys a modeless one
    virtual bool OnVetoClose(int iResult); // true keeps the dialog open in DlgClose
    virtual void OnDlgDestroy();           // at WM_DESTROY, after the position is saved
    virtual ~DlgBase();
    virtual INT_PTR DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    virtual void OnSetFocus(HWND hCtrl);  // a child control got the focus
    virtual void OnKillFocus(HWND hCtrl); // a child control lost the focus

    DlgBase(DlgBase const&) = delete;
    DlgBase& operator=(DlgBase const&) = delete;

    // ---- Life
    // Runs the dialog modally; returns the EndDialog value, -1 when the dialog cannot be created or
    // this object already has an open window.
    int DlgOpen(HINSTANCE hInst, int iTemplateId, HWND hParent);
    // Creates the dialog modeless; null on failure. DlgClose destroys it.
    HWND DlgCreateModeless(HINSTANCE hInst, int iTemplateId, HWND hParent);
    // Names the dialog for saving its position (and size when it has a sizing frame) below
    // NVGetRegAppBaseKey(); call before opening. Null or empty: nothing is saved.
    void SetHistIdent(char const* lpszIdent);
    // The object of a dialog window opened through DlgOpen or DlgCreateModeless; null otherwise.
    static DlgBase* GetDlgBasePtr(HWND hWnd);

    bool IsModal() const { return m_bModal; }
    // True when a control reported a change since the dialog opened or since ResetEditState.
    bool IsChanged() const { return m_bChanged; }

    // ---- Size and move
    // Registers a child for the layout. Position and size are taken now, with the dialog's present
    // client size as reference. iPart and iParts matter only to the share flags. A child registered
    // again replaces its entry.
    bool AddSizeMoveItem(HWND hCtrl, unsigned long dwFlags, int iPart = 0, int iParts = -1);
    // Minimum and maximum window size for the user's resizing (x: width, y: height). A null minimum
    // takes the present size, a null maximum means none.
    bool SetMinMaxPos(POINT* pMin, POINT* pMax);
    // Position in the dialog's client coordinates and size of a child; either output may be null.
    bool GetDlgItemPosAndSize(int id, POINT* pPos, SIZE* pSize);
    // Moves or sizes a child (a null position or size keeps that part). hInsertAfter changes the Z
    // order when not null. dwSWPFlags are added to SetWindowPos's. dwSizeMoveFlags, when not 0,
    // registers the child anew for the layout with these flags at its new place. pDX and pDY, when
    // given, receive how much the width and height changed.
    bool SetDlgItemPosAndSize(int id, HWND hInsertAfter, POINT* pPos, SIZE* pSize, unsigned long dwSWPFlags,
                              unsigned long dwSizeMoveFlags, int* pDX, int* pDY);
    // Moves or sizes any window, the position in its parent's client coordinates (screen for a
    // top-level window).
    bool SetWindowPosAndSize(HWND hWnd, POINT* pPos, SIZE* pSize, bool bRepaint);

    // ---- Items
    void ShowDialogItem(unsigned int id, bool bShow);
    // Disabling the focused control moves the focus to the next one first.
    void EnableDialogItem(unsigned int id, bool bEnable);
    // Enables or disables every input control of the dialog (edit, combo and list boxes, buttons,
    // date pickers, ...) except static ones and those whose ids are in pExclude. With
    // bEditsReadOnly edit controls are made read-only instead of disabled, so their text can still
    // be selected and copied. Returns false without a window.
    bool EnableAllInputChilds(bool bEnable, DynaArrayTpl<unsigned long, 0, 0>* pExclude, bool bEditsReadOnly);
    void ResetEditState();
    void SetDialogFocus(unsigned short id);

    // ---- Text (8-bit text in NVGetCurCodePage, the window calls as NVIsUNICodeDlg says)
    int NVSetDlgItemTextUC(int id, char const* lpszText);
    int NVSetDlgItemTextUC(HWND hDlg, int id, char const* lpszText);
    int NVSetWindowTextUC(HWND hWnd, char const* lpszText);
    int NVGetDlgItemTextUC(int id, char* lpszOut, int iSize);
    int NVGetDlgItemTextUC(HWND hDlg, int id, char* lpszOut, int iSize);
    // The text of the label before hCtrl: the nearest preceding sibling that is a static control or
    // a group box; any other control in between means hCtrl has no label. '&' markers and a
    // trailing colon are removed. False (and an empty text) when there is none.
    static bool GetPrevWindowText_(HWND hCtrl, char* lpszOut, unsigned int uSize);
    static bool GetPrevWindowTextW_(HWND hCtrl, wchar_t* lpszOut, unsigned int uSize);

    // ---- Combo boxes: the item data is the key
    // Adds a text with its data (selecting it when asked); the new index or below 0.
    static int AddCBItem_(HWND hCombo, char const* lpszText, long lData, bool bSelect);
    // Selects the item with that data; its index, or -1 (and no selection) when there is none.
    static int SelectCBItem_(HWND hCombo, long lData);
    int FindCBEntryByItemData(unsigned short id, unsigned long dwData);

    // ---- Date picker: 32-bit seconds in zone dwTZ
    // With t at or below 0: bNoneIfEmpty shows "none" (DTS_SHOWNONE), otherwise the present time.
    static void SetDateTimePickerDate_(HWND hPicker, long t, bool bNoneIfEmpty, unsigned long dwTZ);
    // 0 as a bound means the widest one (86000 and 0x7FFF0000).
    static void SetDateTimePickerRange_(HWND hPicker, long tMin, long tMax, unsigned long dwTZ);
    // 0 when the picker shows "none".
    static void GetDateTimePickerDate_(HWND hPicker, long& t, unsigned long dwTZ);

    // ---- Number field: rewrites a valid number in the format (null: the default format); with
    // bZeroAsEmpty a 0 becomes an empty text. False, and the text untouched, when it is no number.
    static bool FormatDoubleField_(HWND hEdit, char const* lpszFormat, bool bZeroAsEmpty);

    // ---- Tab pages: selects a page as a click would, with TCN_SELCHANGING before and
    // TCN_SELCHANGE after, so the owner shows the page's controls. False when a handler vetoes.
    static bool SelectTabPage_(HWND hTab, int iPage);
    // Shows the pages of the tab slots, then puts the focus on the control.
    void SetFocusToControl(HWND hCtrl);

    // ---- Input checks. Each reads control id, checks it by its flags (NVCF_...) and returns true
    // with the value; on failure it shows one message naming the field (lpszName, or the label
    // before the control when lpszName is empty), puts the focus on the field and returns false.
    bool GetAndCheckTextField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                              unsigned long dwFlags);
    bool GetAndCheckTextFieldW(int id, wchar_t* lpszOut, unsigned int uSize, char const* lpszName,
                               unsigned long dwFlags);
    bool GetAndCheckEMailField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                               unsigned long dwFlags);
    // Addresses separated by ';' or ','; each must be valid. The result lists them with "; ".
    bool GetAndCheckMultipleEMailField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                       unsigned long dwFlags);
    // Decimal digits only (blanks around are allowed); overflow counts as invalid.
    bool GetAndCheckNumField(int id, unsigned long& dwOut, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckNumField(int id, unsigned __int64& qwOut, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckNumFieldRange(int id, unsigned long& dwOut, unsigned long dwMin, unsigned long dwMax,
                                  char const* lpszName, unsigned long dwFlags);
    // An optional sign, then digits.
    bool GetAndCheckNumFieldSigned(int id, long& lOut, char const* lpszName, unsigned long dwFlags);
    // Parses per the number format (null: the default one); pMin and pMax bound it when given.
    bool GetAndCheckDoubleField(int id, double& dOut, char const* lpszName, unsigned long dwFlags,
                                double const* pMin = nullptr, double const* pMax = nullptr,
                                char const* lpszFormat = nullptr);
    // A card's expiry date "MM/YY", "MM/YYYY" or "MMYY"; the result is written as "MM/YY".
    bool GetAndCheckKartenDatumField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                     unsigned long dwFlags);
    // The same as month (1-12) and four-digit year.
    bool GetAndCheckKartenDatumFieldMonYear(int id, int& iMonth, int& iYear, char const* lpszName,
                                            unsigned long dwFlags);
    // The item data of the selected entry.
    bool GetAndCheckCBField(int id, long& lData, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckCBFieldPtr(int id, void*& pData, char const* lpszName, unsigned long dwFlags);
    // The text of the selected entry.
    bool GetAndCheckCBFieldText(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                unsigned long dwFlags);
    // The typed text of a combo box with an edit part.
    bool GetAndCheckCBEditField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                unsigned long dwFlags);
    // The item data of the selected entry of a list box (the first one of a multiple selection).
    bool GetAndCheckLBField(int id, long& lData, char const* lpszName, unsigned long dwFlags);
    bool GetAndCheckDateTimePicker(int id, long& t, char const* lpszName, unsigned long dwFlags,
                                   unsigned long dwTZ = 0);
    bool GetAndCheckDateTimePicker(int id, SYSTEMTIME& st, char const* lpszName, unsigned long dwFlags);
    // Sets or clears dwMask in dwFlags as the check box says; returns whether it is checked.
    bool GetCheckBoxFlag(int id, unsigned long& dwFlags, unsigned long dwMask);
    // Checks a value already read from control id against [lMin, lMax].
    bool CheckRange(int id, long lValue, long lMin, long lMax, char const* lpszName, unsigned long dwFlags);
    bool CheckRangeDouble(int id, double dValue, double dMin, double dMax, char const* lpszName,
                          unsigned long dwFlags);
    // The field's text goes into the line records of the connector: it must not hold control
    // characters (line breaks, tabs) nor the record separator '|'.
    bool CheckStreamForKLTConnectorBase(int id, char const* lpszName, unsigned long dwFlags);

public:
    HWND m_hWnd;    // the open dialog's window, null otherwise
    HWND m_hParent; // the parent given at construction or at opening

    // Tab pages to show before the focus moves to a failed field (set by the client module base).
    // A page below 0 means none; without a tab window the first level's page is asked of the
    // dialog's parent with NVWM_ACTIVATE_TABPAGE.
    int m_iTabPage;
    HWND m_hTabWnd;
    int m_iTabPage2;
    HWND m_hTabWnd2;

private:
    struct SizeMoveItem {
        HWND hCtrl;
        unsigned long dwFlags;
        int iPart;
        int iParts;
        RECT rcStart;    // in client coordinates at registration
        SIZE sizeClient; // the dialog's client size at registration
    };

    static INT_PTR CALLBACK StaticDlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    void ApplyLayout();
    void RestoreHistPos();
    void StoreHistPos();
    HWND ItemOf(int id) const;
    // The name for a message: lpszName, else the label before the control.
    void FieldName(HWND hCtrl, char const* lpszName, char* lpszOut, unsigned int uSize) const;
    // Tells the user (unless silent), moves the focus, and returns false.
    bool Fail(HWND hCtrl, unsigned long dwFlags, unsigned long dwMsgId, char const* lpszArg1,
              char const* lpszArg2 = nullptr);
    bool ReadTrimmed(HWND hCtrl, char* lpszOut, unsigned int uSize, unsigned long dwFlags);

    bool m_bModal;
    bool m_bChanged;
    bool m_bHasMinMax;
    POINT m_ptMin;
    POINT m_ptMax; // 0 in a coordinate: no maximum
    char m_szHistIdent[64];
    std::vector<SizeMoveItem> m_items;
};
