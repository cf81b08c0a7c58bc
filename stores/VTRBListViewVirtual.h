// The list view over an owner-data list control (LVS_OWNERDATA): the rows stay with the client, the
// control knows only their number and asks for a cell's text when it paints it. Nothing per row is
// kept here, so a list of a million rows costs no more than one of ten.
//
// The client sets the count with SetItemCount after each change of its data, answers OnNeedText,
// and sorts its own rows in OnResort. The CSV import hooks (OnImportCSVRow, OnImportCSVField) are
// called by the import (ImportCSV).
#pragma once

#include "listview/VTRBListView.h"

class VTRCSVLineReader;

class VTR_API VTRBListViewVirtual : public VTRBListView {
public:
    VTRBListViewVirtual();
    ~VTRBListViewVirtual() override;

    LRESULT HandleNotify(WPARAM wParam, LPARAM lParam) override;
    void ClearAll() override;
    bool Resort(bool bKeepPos) override;
    void OnNeedText(int iRow, int iCol, wchar_t* pszBuf) override;

    // ---- hooks added behind the base class's, in this order
    virtual void OnImportCSVRow(int iLine);
    virtual void OnImportCSVField(int iLine, int iCol, char const* pszField);
    // iSecondSortCol is the word of the further keys: second key in the low 16 bits, third in the
    // high 16 bits, 0xFFFF for none.
    virtual void OnResort(int iSortCol, int iSecondSortCol, bool bDescending);

    // False unless the list is an owner-data list with a window.
    bool SetItemCount(unsigned long ulCount);

    // ---- CSV import (exchange/VTRCSVImportVirtual.cpp): 8-bit files; each field goes to
    // OnImportCSVField, each line ends with OnImportCSVRow.
    bool ImportCSV(char const* pszFile, char cSep, int iSkipLines, bool bDefineCols, bool bAddEmptyRow,
                   char const* pszNumberTitle) override;
    bool ImportCSVLines(VTRCSVLineReader& reader, char cSep, int iSkipLines, bool bDefineCols,
                        bool bAddEmptyRow, char const* pszNumberTitle);

private:
    class CSVImportSink;

private:
    void OnGetDispInfo(NMHDR* pHdr, bool bWide);
};
