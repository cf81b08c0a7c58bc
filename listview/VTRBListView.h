// The list view: a report-style SysListView32 owned by a client dialog, with typed columns, rows
// held as text-callback items, three sort keys and tree rows.
//
// Every item's lParam is the Row* this class allocated; the control asks for text through
// LVN_GETDISPINFO, so the dialog must forward WM_NOTIFY to HandleNotify. Rows are freed only when
// the control reports LVN_DELETEITEM.
//
// Hooks whose behaviour belongs to features not built yet keep their harmless default and are
// marked "default only" below: they are called where the feature would call them, so overriding
// them is already meaningful where noted, and inert otherwise.
#pragma once

#include "frame/VantrelBase.h"
#include "listview/VTRBDataType.h"

#include "DynaArray.h"

#include <cstdarg>
#include <cstdio>
#include <memory>

class VTRRowPool;

class VTR_API VTRBListView : public VantrelBase {
public:
    VTRBListView();

protected:
    void OnSetIdent(char const* ident) override; // 1

public:
    ~VTRBListView() override;                                    // 2
    void Assign(HWND hWnd) override;                             // 3
    void UnAssign() override;                                    // 4
    LRESULT HandleNotify(WPARAM wParam, LPARAM lParam) override; // 5
    LRESULT OnNotify(NMHDR* pHdr) override;                      // 6
    void ClearAll() override;                                    // 7
    bool StoreSettings() override;                               // 8  default only: false
    bool RestoreSettings() override;                             // 9  default only: false

protected:
    virtual void RowDelete(int item, Row* pRow); // 10

public:
    virtual bool IsDifferent(int item, int col); // 11

protected:
    virtual bool IsDifferent(Row* pRow, int item, int col);        // 12
    virtual bool OnGetComboBkColour(int item, unsigned long& clr); // 13 default only

public:
    virtual void Reset();                                                              // 14
    virtual bool DefineStructure(unsigned int size, DynaArrayTpl<int, 0, 0>& offsets); // 15 false: stores
    virtual bool Resort(bool bKeepPosition);                                           // 16
    virtual void OnSelChange(int item);                                                // 17 default only
    virtual void OnCheckChange(int item);                                              // 18 default only
    virtual bool OnIsSelChangeAllowed(NMLISTVIEW* pNM);                                // 19 default only
    virtual bool OnIsSelChangeAllowed();                                               // 20 default only
    virtual bool OnIsCheckChangeAllowed(NMLISTVIEW* pNM);                              // 21 default only
    virtual bool OnLButtonDown(int item);                                              // 22 default only
    virtual bool OnLButtonUp(int item);                                                // 23 default only
    virtual void OnDblClick(int item);                                                 // 24
    virtual void OnRClick(int item);                                                   // 25
    virtual bool OnLClick(int item, int col, LVHITTESTINFO* pHit);                     // 26
    virtual void OnLClick(int item);                                                   // 27
    virtual void OnKeyDown(unsigned int key, LPARAM lParam);                           // 28 default only
    virtual void OnKeyDown(unsigned short key);                                        // 29
    virtual void OnDeleteRow(int item);                                                // 30
    virtual void SetDoubleBuffer(bool bOn);                                            // 31
    virtual void OnItemPrepaint(NMLVCUSTOMDRAW* pCD);                                  // 32 default only
    virtual void OnItemPostpaint(NMLVCUSTOMDRAW* pCD);                                 // 33 default only
    virtual void OnSubItemPostpaint(NMLVCUSTOMDRAW* pCD);                              // 34 default only
    virtual bool OnItemDraw(int item, LPARAM lParam, HDC hDC, unsigned long& clrText, unsigned long& clrBack,
                            unsigned int& state, bool& bBold);                       // 35 default only
    virtual bool OnSubItemDraw(int item, int col, NMLVCUSTOMDRAW* pCD, bool& bDone); // 36 default only
    virtual bool GetCurSel(LPARAM& lParam, int& item);                               // 37
    virtual int GetSelItem();                                                        // 38
    virtual void OnImageCallback(LVITEMA* pItem);                                    // 39
    virtual void OnStateCallback(LVITEMA* pItem);                                    // 40
    virtual bool OnBeginLabelEdit(NMLVDISPINFOA* pInfo);                             // 41
    virtual bool OnEndLabelEdit(NMLVDISPINFOA* pInfo);                               // 42
    virtual bool IsEditable(int item, int col);                                      // 43 default only
    virtual bool OnCreateEditField(int item, int col, HWND hEdit);                   // 44 default only
    virtual bool OnDestroyEditField(int item, int col, HWND hEdit);                  // 45 default only
    virtual bool OnIsPassword(int item, int col);                                    // 46
    virtual bool IsComboBox(int item, int col);                                      // 47 default only
    virtual bool IsComboBoxDisabled(int item, int col);                              // 48 default only
    virtual bool OnIsComboBoxEx(int item, int col);                                  // 49 default only
    virtual unsigned long OnGetComboBoxWindowStyle(int item, int col);               // 50 default only
    virtual bool OnCreateComboBox(int item, int col, HWND hCombo);                   // 51 default only
    virtual bool OnDestroyComboBox(int item, int col, HWND hCombo);                  // 52 default only
    virtual bool OnGetComboBoxText(int item, int col, char* buf, int size);          // 53 default only
    virtual bool IsComboBoxEnlargeOnLButtonDown();                                   // 54 default only
    virtual bool IsDateTimePicker(int item, int col);                                // 55 default only
    virtual unsigned long OnDateTimePickerWindowStyle(int item, int col);            // 56 default only
    virtual bool OnGetDateTimePickerRange(int item, int col, SYSTEMTIME& stMin, SYSTEMTIME& stMax); // 57
    virtual bool OnCreateDateTimePicker(int item, int col, HWND hDTP, SYSTEMTIME& st);              // 58
    virtual bool OnDestroyDateTimePicker(int item, int col, HWND hDTP, SYSTEMTIME& stOld,
                                         SYSTEMTIME& stNew);    // 59 default only
    virtual bool OnClearDateTimePickerField(int item, int col); // 60 default only
    virtual bool OnDateTimePickerVirtKey(unsigned short key, bool bCtrl, bool bShift, bool& bHandled); // 61
    virtual bool OnChildWindowMeasureItem(WPARAM wParam, LPARAM lParam);                               // 62
    virtual bool OnChildWindowDrawItem(WPARAM wParam, LPARAM lParam);                                  // 63
    virtual void OnBeginDrag(NMLISTVIEW* pNM);                                                         // 64
    virtual void OnBeginRDrag(NMLISTVIEW* pNM);                                                        // 65
    virtual bool OnToolTip(int item, int col, POINT& pt, RECT& rc, char*& lpszText); // 66 default only
    virtual bool OnDividerDblClick(NMHEADERA* pNM);                                  // 67
    virtual int OnPrintGetMinColWidth(int col, int width);                           // 68 default only
    virtual unsigned long OnGetTZIndex(int item, int col);                           // 69
    virtual bool OnGetInvalidDateText(long value, int item, int col, char* buf);     // 70
    virtual char const* OnGetDateFormat(int item, int col, char const* lpszFormat);  // 71
    virtual char const* OnGetTimeFormat(int item, int col, char const* lpszFormat);  // 72
    virtual void OnNeedText(int item, int col, wchar_t* buf);                        // 73
    virtual wchar_t const* OnPrepareCSVExportText(Row* pRow, int item, int col, wchar_t* buf); // 74
    virtual bool OnIsInCSVexport(int col);                                                  // 75 default only
    virtual bool IsExportAllowed();                                                         // 76
    virtual void SetExportAllowed(bool bAllowed);                                           // 77
    virtual bool OnGetCellText(void* pData, int col, wchar_t* buf, unsigned int size);      // 78 stores
    virtual bool OnGetCellText(int item, int col, wchar_t* buf, unsigned int size);         // 79
    virtual int OnCmp(void* pDataA, void* pDataB);                                          // 80
    virtual unsigned long IsCloneSource(int item, int col);                                 // 81 default only
    virtual bool IsCloneDest(int srcItem, int srcCol, int item, int col, unsigned long dw); // 82 default only
    virtual bool OnDoClone(int srcItem, int srcCol, int item, int col, unsigned long dw);   // 83 default only
    virtual bool OnBeginClone(int srcItem, int srcCol, int item, int col,
                              unsigned long dw);                                        // 84 default only
    virtual void OnEndClone(int srcItem, int srcCol, unsigned long dw);                 // 85 default only
    virtual bool OnNCHitTest(int x, int y, LRESULT& result);                            // 86
    virtual void OnSize(WPARAM wParam, LPARAM lParam);                                  // 87
    virtual bool GetMinMaxInfo(MINMAXINFO* pInfo);                                      // 88
    virtual bool OnFilterButtonClick(NMHDFILTERBTNCLICK* pNM);                          // 89 default only
    virtual void OnFilterChanged(int col);                                              // 90 default only
    virtual void OnSortModeChanged();                                                   // 91
    virtual void OnColumnWidthChanged(int col, int width);                              // 92
    virtual void OnColumnDrag(int col, int order);                                      // 93 default only
    virtual bool OnIsColumnHeaderBold(int col);                                         // 94 default only
    virtual bool OnColumnHeaderCustomDraw(NMCUSTOMDRAW* pCD, LRESULT* pResult);         // 95 default only
    virtual void OnContextMenu();                                                       // 96
    virtual void OnSetFocus();                                                          // 97
    virtual void OnKillFocus();                                                         // 98
    virtual bool OnExpandItem(int item, void* pRow);                                    // 99
    virtual bool OnCollapsItem(int item, void* pRow);                                   // 100
    virtual void OnExpandStateChanged(int item);                                        // 101
    virtual bool IsCheckBox(int item, int col);                                         // 102 default only
    virtual bool IsRadioButton(int item, int col);                                      // 103 default only
    virtual bool GetCheckBoxState(int item, int col);                                   // 104 default only
    virtual bool GetRadioButtonState(int item, int col);                                // 105 default only
    virtual bool IsCheckDisabled(int item, int col);                                    // 106 default only
    virtual bool OnCheckBoxClick(int item, int col);                                    // 107 default only
    virtual bool OnRadioButtonClick(int item, int col);                                 // 108 default only
    virtual bool IsTriStateBox(int item, int col);                                      // 109 default only
    virtual unsigned int GetTriStateBoxState(int item, int col);                        // 110 default only
    virtual bool OnTriStateBoxClick(int item, int col);                                 // 111 default only
    virtual wchar_t const* GetCheckBoxText(int item, int col);                          // 112 default only
    virtual bool IsButton(int item, int col);                                           // 113 default only
    virtual bool IsButtonDisabled(int item, int col);                                   // 114 default only
    virtual bool GetButtonWith(int& width);                                             // 115 default only
    virtual char const* GetButtonText(int item, int col);                               // 116 default only
    virtual HICON GetButtonIcon(int item, int col);                                     // 117 default only
    virtual bool OnButtonClick(int item, int col);                                      // 118 default only
    virtual bool OnGetButtonPos(int item, int col, unsigned long& pos);                 // 119 default only
    virtual bool OnEraseBkGnd(HDC hDC);                                                 // 120
    virtual bool IsSubItemDraw(int item);                                               // 121 default only
    virtual bool GetCurFocusSel(LPARAM& lParam, int& item);                             // 122
    virtual bool OnGetCodePage(LPARAM lParam, int col, void* pData, unsigned long& cp); // 123
    virtual void OnCommand(WPARAM wParam, LPARAM lParam);                               // 124
    virtual LRESULT OnChildsNotify(NMHDR* pHdr);                                        // 125
    virtual bool IsColumnSizeable(NMHEADERA* pNM);                                      // 126 default only
    virtual bool SetImageIndSortDraw();                                                 // 127
    virtual bool ImportCSV(char const* file, char sep, int skipLines, bool bHeader, bool bAppend,
                           char const* lpszFormat); // 128 false: import

    // ---- data types and conversion
    static VTRBDataType VTRBDataTypeFromString(char const* name);
    static int GetExtraArgCnt(VTRBDataType type);
    static unsigned long Str2Val(char* text, bool bSigned, int line, bool& ok, bool bLenient, bool bSilent);
    static unsigned long Str2Val(wchar_t* text, bool bSigned, int line, bool& ok, bool bLenient,
                                 bool bSilent);
    static unsigned __int64 Str2UVal64(char* text, int line, bool& ok, bool bLenient);
    static unsigned __int64 Str2UVal64(wchar_t* text, int line, bool& ok, bool bLenient);
    static double Str2Double(char* text, int line, bool bLenient);
    static double Str2Double(wchar_t* text, int line, bool bLenient);
    static long Str2Date(char* text, bool bUSFormat, int line);
    static long Str2Date(wchar_t* text, bool bUSFormat, int line);

    bool GetCellTextFormated(int item, int col, wchar_t* buf, unsigned int size);
    bool GetCellTextFormated(Row* pRow, int item, int col, wchar_t* buf, unsigned int size);
    void SetCellNumFormat(int item, int col, char const* lpszFormat);

    // ---- columns
    bool DefineCols(char const* title, unsigned long id, char const* sample, int width, int flags,
                    VTRBDataType type, ...);
    bool DefineCols(wchar_t const* title, unsigned long id, wchar_t const* sample, int width, int flags,
                    VTRBDataType type, ...);
    bool DefineCols(DynaArrayTpl<VTRBListViewCol, 0, 0>& cols);
    bool DefineCols(DynaArrayTpl<VTRBListViewColW, 0, 0>& cols);
    int InsertCol(int pos, char const* title, char const* sample, int width, int flags, VTRBDataType type,
                  void* extra1, void* extra2, void* extra3, unsigned long id);
    int InsertCol(int pos, wchar_t const* title, wchar_t const* sample, int width, int flags,
                  VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id);
    bool UpdateCol(int col, char const* title, char const* sample, int width, int flags, VTRBDataType type,
                   void* extra1, void* extra2, void* extra3, unsigned long id);
    bool UpdateCol(int col, wchar_t const* title, wchar_t const* sample, int width, int flags,
                   VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id);
    bool RemoveCol(int col);
    bool SetExtraColCnt(int count);
    int GetColCnt() const { return m_iColCnt; }
    int GetColMaxCnt() const { return m_iColMaxCnt; }
    VTRBDataType GetColDataType(int col);
    unsigned long GetColID(int col);
    bool SetColID(int col, unsigned long id);
    int FindColByID(unsigned long id);
    bool SetColIDs(int col, unsigned long id, ...);
    bool FillVTRBListViewCol(int col, VTRBListViewCol& out);
    bool GetColTitle(int col, char* buf, unsigned int size);
    bool GetColTitle(int col, wchar_t* buf, unsigned int size);
    bool SetColTitle(int col, char const* title);
    bool SetColTitle(int col, wchar_t const* title);
    bool SetHeaderText(int col, char const* title);
    int GetColumnWidth(int col);
    void SetColumnWidth(int col, int width);
    bool SetColmnWidth();
    void SetTrimLVColTitle(bool b) { m_bTrimColTitle = b; }
    void SetDontSetClipChildren(bool b) { m_bDontSetClipChildren = b; }
    void SetDoubleBufferInFunctionAssign(bool b) { m_bDoubleBufferInAssign = b; }
    void SetNoColTrack(bool b) { m_bNoColTrack = b; }
    void SetForceStringColumns(bool b) { m_bForceStringColumns = b; }
    bool EnsureColVisible(int col);
    bool EnsureVisible(int item);

    // ---- rows
    bool AddRow(LPARAM lParam, int image, void* cell0, ...);
    bool AddRowEx(LPARAM lParam, int image, bool* pbCheck, void* ignored, ...);
    bool AddSumRow(LPARAM lParam, int image, void* cell0, ...);
    bool AddRow_VA(LPARAM lParam, int image, void* first, va_list args, unsigned long flags, int pos);
    bool UpdateRow(int item, LPARAM lParam, int image, void* cell0, ...);
    bool UpdateRowEx(int item, LPARAM lParam, int image, bool* pbCheck, void* ignored, ...);
    bool UpdateRow_VA(int item, LPARAM lParam, int image, void* first, va_list args);
    bool DeleteRow(int item, bool bSelectNext);
    bool SetBold(int item, bool bBold);
    bool IsSumRow(int item);
    void* GetLVITEMHANDLE(int item);
    void* GetParentLVITEMHANDLE(int item);
    int FindItem(void* handle);
    bool GetLParam(int item, LPARAM& lParam);
    bool GetItem(LPARAM lParam, int& item);
    int GetItemCount();
    int GetLastAddedItem() const { return m_iLastAddedItem; }
    bool RefreshRow(int item);
    bool IsSingleSelect();
    bool SetCurSel(int item);

    // ---- sorting
    bool SetSortMode(int col, bool bDesc);
    void SetSecondSortCol(int col);
    void SetSecondSortCols(int second, int third);
    int GetSortCol() const { return m_iSortCol; }
    bool GetSortDesc() const { return m_bSortDesc; }
    int GetSecondSortCol() const { return m_wSecondSortCol; }
    int GetThirdSortCol() const { return m_wThirdSortCol; }
    bool SetSortable(bool bSortable);
    void SetSortSumRowsLParam(bool b) { m_bSortSumRowsLParam = b; }
    // Callback for LVM_SORTITEMS: the two items' lParam (their Row*) and the list object.
    static int CALLBACK CompareFunc(LPARAM row1, LPARAM row2, LPARAM list);
    static int CompareFuncWithContext(void* list, Row* a, Row* b);

    // ---- tree mode
    bool SetTreeMode(bool bOn, bool bIndent);
    bool IsTreeMode() const { return m_bTreeMode; }
    bool ExpandItem(int item);
    bool CollapsItem(int item);
    bool ToggleExpandState(int item);
    bool SetExpandState(int item, bool bExpanded);
    bool IsExpanded(int item);
    bool SetChildsState(int item, bool bHas);
    bool GetChildsState(int item);
    bool GetChilds(int item, bool bRecursive, DynaArrayTpl<int, -1, 0>& out);
    bool RemoveAllChilds(int item);
    void SetTreeLinesColor(unsigned long clr);
    static void SethInstanceIcons(HINSTANCE hInst);

    // ---- CSV export (exchange/VTRBListViewCSV.cpp)
    // A new heap text (free()) with the quoted, escaped field; null only when memory runs out.
    static char* ConvertToCSVString(char const* pszText);
    static wchar_t* ConvertToCSVStringW(wchar_t const* pszText);
    bool WriteCSVString(FILE* fp, char const* pszText, char cEnd);
    bool WriteCSVString(FILE* fp, wchar_t const* pszText, char cEnd);
    bool WriteCSVStringW(FILE* fp, wchar_t const* pszText, wchar_t cEnd);
    static bool ParseNextCSVField(char const*& pszCursor, char* pszField, char cSep);
    static bool ParseNextCSVField(wchar_t const*& pszCursor, wchar_t* pszField, wchar_t cSep);
    bool ExportCSV(char const* pszFile, char cSep, bool bSelectedOnly, bool bHeader);
    bool ExportCSVW(char const* pszFile, wchar_t cSep, bool bSelectedOnly, bool bHeader, bool bUnused);
    bool SetExportCols(DynaArrayTpl<bool, 0, 0>& daCols);
    bool GetExportCols(DynaArrayTpl<bool, 0, 0>& daCols);
    int GetNextExportCol(int col);
    int GetExportColIndexAndBitMask(int col, int& iMask);
    bool IsExportColVisible(int col);
    static void FillSepeatorCB(HWND hCombo, int iSel);

protected:
    // Bit (col & 7) of byte (col >> 3) set: the column is exported. Null: all columns are.
    std::unique_ptr<unsigned char[]> m_pbyExportCols;
    int m_iExportColBytes = 0; // columns at or past 8 * this count take part
    bool ExportRows(char const* pszFile, bool bWide, wchar_t cSep, bool bSelectedOnly, bool bHeader);

public:
    // ---- CSV import settings (exchange/VTRCSVImportStore.cpp)
    void SetCSVImpExtraSpace(int iBytes) { m_iCSVImpExtraSpace = iBytes < 0 ? -iBytes : iBytes; }
    int GetCSVImpNextOffset() const { return m_iCSVImpNextOffset; }
    void SetCSVMinColWidth(int iChars) { m_cCSVMinColWidth = static_cast<signed char>(iChars & 0xFF); }
    char const* GetImportCSVFile() const { return m_szImportCSVFile; }
    void SetImportCSVFile(char const* pszFile);
    int GetImportSkipLines() const { return m_iImportSkipLines; }
    char GetImportSep() const { return m_cImportSep; }

protected:
    int m_iImportSkipLines = 0;
    char m_cImportSep = ';';
    int m_iImportMaxLines = 0; // 0: no limit
    char m_szImportCSVFile[260] = {};
    int m_iCSVImpExtraSpace = 0;
    int m_iCSVImpNextOffset = 0;
    signed char m_cCSVMinColWidth = 0;

protected:
    Col* GetCol(int col);
    Row* GetRow(int item);
    Row* AllocRow();
    // Gives a block of AllocRow back; only RowDelete and a failed insert call it.
    void FreeRow(Row* pRow);
    unsigned int GetRowSize() const;
    bool SetData(Row* pRow, int col, void* value);
    wchar_t const* GetDataText(Row* pRow, int item, int col, bool bNoPassword);
    bool _SetSortMode(int col, bool bDesc, bool bNoResort, bool bSetImage);
    bool _SetSecondSortCol(int col, bool bNoResort);
    bool SetHeaderImage(int col, int image, bool bNoSide);
    // The comparison of two rows under the sort state; level counts the tie-break keys taken. ia and
    // ib are the rows' places in the array that Resort sorts, -1 when unknown.
    int Compare(Row* a, Row* b, int level, int ia = -1, int ib = -1);
    // Recomputes each row's iLastChild when rows were added, deleted or moved since the last time.
    void UpdateTreeInfo();
    // The connecting lines of a child row in the first column.
    void DrawTreeLines(HDC hDC, int item);

    // Conversion buffers: a text result is valid until the next one is asked for.
    char m_szText[1024];
    wchar_t m_wszText[1024];

    int m_iColCnt;
    int m_iExtraColCnt;
    int m_iColMaxCnt;
    Col* m_pCols;
    int m_iLastAddedItem;
    Row* m_pLastAddedRow;
    bool m_bTreeInfoDirty;
    bool m_bTrimColTitle;
    bool m_bDontSetClipChildren;
    bool m_bDoubleBufferInAssign;
    bool m_bNoColTrack;
    bool m_bForceStringColumns;
    bool m_bCheckBoxes;
    bool m_bExportAllowed;
    bool m_bHeaderDragRefused;
    int m_iSavedSel;

    int m_iSortCol;
    unsigned short m_wSecondSortCol; // together with m_wThirdSortCol one 32-bit field, second low
    unsigned short m_wThirdSortCol;
    bool m_bSortDesc;
    bool m_bSortSumRowsLParam;
    int m_iImgSortAsc;
    int m_iImgSortDesc;
    HIMAGELIST m_hHeaderImages;

    bool m_bTreeMode;
    bool m_bTreeIndent;
    COLORREF m_clrTreeLines;
    HIMAGELIST m_hStateImages;
    bool m_bOwnerData;
    bool m_bShareImageLists;

private:
    static LRESULT CALLBACK SubclassProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    void InstallHooks();
    void RemoveHooks();
    void BuildHeaderImages();
    void BuildStateImages();
    unsigned long SortKeyWord() const {
        return static_cast<unsigned long>(m_wSecondSortCol) |
               (static_cast<unsigned long>(m_wThirdSortCol) << 16);
    }
    int InsertControlColumn(int pos, wchar_t const* title, wchar_t const* sample, int width,
                            unsigned long flags, int skipCol, bool bUpdate);
    bool DefineColsImpl(bool bWide, void const* title, unsigned long id, void const* sample, int width,
                        int flags, VTRBDataType type, va_list args);
    int InsertColImpl(int pos, wchar_t const* title, wchar_t const* sample, int width, int flags,
                      VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id);
    bool UpdateColImpl(int col, wchar_t const* title, wchar_t const* sample, int width, int flags,
                       VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id);
    void FillColFromArgs(Col& c, VTRBDataType type, unsigned long flags, void* e1, void* e2, void* e3,
                         unsigned long id, int col);
    void ReadCells(Row* pRow, int first, va_list args);
    int CompareCells(Row* a, Row* b, Col const& c, int col, bool& bFinal, int ia, int ib);
    void BuildSortRanks(Row* const* rows, int count);
    bool RankOf(int col, int iRow, int& rank) const;
    wchar_t const* Widen(char const* text, UINT cp);
    void OnGetDispInfo(NMHDR* pHdr, bool bWide);
    // True when the point was on a tree row's open/close picture and the row was toggled.
    bool ToggleOnStateIcon(NMITEMACTIVATE* pNM);
    // A message the list sends its own control many times over (inserting, reading rows back).
    LRESULT SendToControl(UINT uMsg, WPARAM wParam, LPARAM lParam);
    // The control's procedure when SendToControl may call it directly, else null.
    WNDPROC DirectControlProc() const;

    VTRRowPool* m_pRowPool;
    struct SortRanks* m_pSortRanks; // only while Resort sorts
    WNDPROC m_pfnOldProc;
    WNDPROC m_pfnControlProc; // the control's own procedure while nobody else subclassed it first
    WNDPROC m_pfnOldHeaderProc;
    HWND m_hHeader;
    static HINSTANCE s_hInstIcons;
};
