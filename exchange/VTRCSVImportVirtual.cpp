// The owner-data list's CSV import: the list keeps no rows, so every field goes to the client's
// OnImportCSVField and every finished line to OnImportCSVRow.
#include "exchange/VTRCSVImportRows.h"
#include "exchange/VTRCSVImportTypes.h"
#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"
#include "stores/VTRBListViewVirtual.h"

#include "NVErrors.h"
#include "NVStrings.h"

#include <cstdio>
#include <new>
#include <vector>

class VTRBListViewVirtual::CSVImportSink : public VTRCSVRowSink {
public:
    CSVImportSink(VTRBListViewVirtual& list, bool bNumberCol, HWND hParent)
        : m_list(list), m_bNumberCol(bNumberCol), m_hParent(hParent) {}

    int GetColCount() override { return m_list.m_iColCnt; }

    bool IsColImported(int iCol) override {
        Col* pCol = m_list.GetCol(iCol);
        return pCol && !(pCol->dwColFlags & VTR_COLF_NOIMPORT);
    }

    void OnEmptyRow() override {
        for (int iCol = 0; iCol < m_list.m_iColCnt; ++iCol)
            m_list.OnImportCSVField(1, iCol, nullptr);
        m_list.OnImportCSVRow(1);
    }

    void OnBeginRow(int iLine) override {
        if (m_bNumberCol) {
            char sz[16];
            snprintf(sz, sizeof sz, "%d", iLine);
            m_list.OnImportCSVField(iLine, 0, sz);
        }
    }

    void OnField(int iLine, int iCol, char* psz8, wchar_t* pszW) override {
        m_list.OnImportCSVField(iLine, iCol, psz8 ? psz8 : VTRCSVNarrow(pszW, m_narrow));
    }

    void OnNoField(int iLine, int iCol) override { m_list.OnImportCSVField(iLine, iCol, nullptr); }

    void OnEndRow(int iLine, char const*) override { m_list.OnImportCSVRow(iLine); }

    bool OnBadField(NVThrowData const& e) override {
        return m_list.AskMsg(m_hParent, VTRStringTable::GetText(IDS_VTR_ASK_TITLE),
                             MB_RETRYCANCEL | MB_ICONERROR, VTRStringTable::GetText(IDS_VTR_IMPORT_SKIP_LINE),
                             e.GetText()) == IDRETRY;
    }

private:
    VTRBListViewVirtual& m_list;
    bool m_bNumberCol;
    HWND m_hParent;
    std::string m_narrow;
};

bool VTRBListViewVirtual::ImportCSV(char const* pszFile, char cSep, int iSkipLines, bool bDefineCols,
                                    bool bAddEmptyRow, char const* pszNumberTitle) {
    VTRCSVImportFile file;
    try {
        file.Open(pszFile, false, VTRCSV_SCAN_LINE - 1);
    } catch (NVThrowData const& e) {
        if (!e.IsSilent())
            ErrMsg(m_hWnd ? GetParent(m_hWnd) : nullptr, "%s", e.GetText());
        return false;
    }
    if (!ImportCSVLines(file.Reader(), cSep, iSkipLines, bDefineCols, bAddEmptyRow, pszNumberTitle))
        return false;
    SetImportCSVFile(pszFile);
    return true;
}

bool VTRBListViewVirtual::ImportCSVLines(VTRCSVLineReader& reader, char cSep, int iSkipLines,
                                         bool bDefineCols, bool bAddEmptyRow, char const* pszNumberTitle) {
    if (!bDefineCols && m_iColCnt <= 0)
        return false;
    HWND const hParent = m_hWnd ? GetParent(m_hWnd) : nullptr;
    bool bResult = false;
    try {
        bool bNumberCol = false;
        reader.SetMaxPiece(VTRCSV_SCAN_LINE - 1);
        std::vector<VTRCSVLayoutCol> layout;
        if (bDefineCols) {
            // The client gets 8-bit fields, so the columns are those of an 8-bit file.
            VTRCSVTypeScan scan(false, cSep, iSkipLines, m_cCSVMinColWidth, m_bForceStringColumns,
                                pszNumberTitle);
            std::string line;
            while (reader.ReadLine(line))
                scan.AddLine(line.c_str());
            bNumberCol = scan.HasNumberCol();
            scan.Layout(layout);
            Reset();
            DynaArrayTpl<VTRBListViewColW, 0, 0> defs;
            VTRCSVTypeScan::MakeColDefs(layout, defs);
            if (layout.empty() || !VTRBListView::DefineCols(defs))
                Throw(0, VTRStringTable::GetText(IDS_VTR_DEFINECOLS_FAILED));
            reader.Rewind();
        }
        CSVImportSink sink(*this, bNumberCol, hParent);
        VTRCSVRowParams params;
        params.cSep = cSep;
        params.iSkipLines = iSkipLines;
        params.bAddEmptyRow = bAddEmptyRow;
        params.iMaxLines = m_iImportMaxLines;
        params.iFirstCol = bNumberCol ? 1 : 0;
        int const iRows = VTRCSVReadRows(reader, params, sink);
        m_cImportSep = cSep;
        if (m_bOwnerData)
            SetItemCount(static_cast<unsigned long>(iRows));
        bResult = true;
    } catch (NVThrowData const& e) {
        if (!e.IsSilent())
            ErrMsg(hParent, "%s", e.GetText());
    } catch (std::bad_alloc const&) {
        ErrMsg(hParent, VTRStringTable::GetText(IDS_VTR_NO_MEMORY), "");
    }
    return bResult;
}
