// The structure store's CSV import: columns and structure from the file (or the caller's), then one
// row per data line, converted field by field into the structure at the columns' offsets.
#include "exchange/VTRCSVImportFields.h"
#include "exchange/VTRCSVImportRows.h"
#include "exchange/VTRCSVImportTypes.h"
#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"
#include "stores/VTRBListViewStoreData.h"

#include "NVDates.h"
#include "NVErrors.h"
#include "NVStrings.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

void VTRBListView::SetImportCSVFile(char const* pszFile) {
    StrNZCpy(m_szImportCSVFile, pszFile ? pszFile : "", sizeof m_szImportCSVFile);
}

class VTRBListViewStoreData::CSVImportSink : public VTRCSVRowSink {
public:
    CSVImportSink(VTRBListViewStoreData& list, std::vector<VTRCSVLayoutCol> const* pLayout, HWND hParent)
        : m_list(list), m_pLayout(pLayout), m_hParent(hParent), m_uSize(list.GetBlockSize()),
          m_pBlock(static_cast<unsigned char*>(list.OnAllocRowData())) {
        // The work structure comes from the rows' own allocator, so that a subclass that watches
        // its blocks watches this one too.
        if (!m_pBlock)
            Throw(0, VTRStringTable::GetText(IDS_VTR_NO_MEMORY), "");
        ComputeRooms();
    }
    ~CSVImportSink() override { m_list.OnFreeRowData(m_pBlock); }
    CSVImportSink(CSVImportSink const&) = delete;
    CSVImportSink& operator=(CSVImportSink const&) = delete;

    int GetColCount() override {
        return m_list.m_iColCnt < m_list.m_iFieldCnt ? m_list.m_iColCnt : m_list.m_iFieldCnt;
    }

    bool IsColImported(int iCol) override {
        Col* pCol = m_list.GetCol(iCol);
        return pCol && !(pCol->dwColFlags & VTR_COLF_NOIMPORT);
    }

    void OnEmptyRow() override {
        memset(m_pBlock, 0, m_uSize);
        if (m_pLayout)
            WriteLineNumber(1);
        Add(1, m_pBlock);
    }

    void OnBeginRow(int iLine) override {
        memset(m_pBlock, 0, m_uSize);
        if (m_pLayout)
            WriteLineNumber(iLine);
    }

    void OnField(int iLine, int iCol, char* psz8, wchar_t* pszW) override;

    void OnEndRow(int iLine, char const* pszLine) override {
        LPARAM lParam = 0;
        if (m_list.PrepareCSVStruct(iLine, pszLine, m_pBlock, lParam))
            Add(iLine, m_pBlock, lParam);
    }

    bool OnBadField(NVThrowData const& e) override {
        return m_list.AskMsg(m_hParent, VTRStringTable::GetText(IDS_VTR_ASK_TITLE),
                             MB_RETRYCANCEL | MB_ICONERROR, VTRStringTable::GetText(IDS_VTR_IMPORT_SKIP_LINE),
                             e.GetText()) == IDRETRY;
    }

private:
    void WriteLineNumber(int iLine) {
        if (m_uSize >= 4) {
            int v = iLine;
            memcpy(m_pBlock, &v, 4);
        }
    }

    void Add(int iLine, void* pData, LPARAM lParam = 0) {
        if (!m_list.AddRowEx(lParam, -1, pData, nullptr, false, false, false, 0x7fffffff))
            Throw(0, VTRStringTable::GetText(IDS_VTR_ADDROW_LINE), iLine);
    }

    // Bytes from the field's offset to the next field's or to the end of the structure; 0 for a field
    // outside it. A field size that claims more cannot spill into the next field (a pointer there
    // would then be written through).
    unsigned int RoomTo(int iCol) const { return m_rooms[static_cast<size_t>(iCol)]; }

    void ComputeRooms() {
        int const n = m_list.m_iFieldCnt;
        std::vector<int> sorted(m_list.m_piOffsets, m_list.m_piOffsets + n);
        std::sort(sorted.begin(), sorted.end());
        m_rooms.assign(static_cast<size_t>(n), 0);
        for (int i = 0; i < n; ++i) {
            int const o = m_list.m_piOffsets[i];
            if (o < 0 || static_cast<unsigned int>(o) >= m_uSize)
                continue;
            auto next = std::upper_bound(sorted.begin(), sorted.end(), o);
            unsigned int uEnd = next != sorted.end() && static_cast<unsigned int>(*next) < m_uSize
                                    ? static_cast<unsigned int>(*next)
                                    : m_uSize;
            m_rooms[static_cast<size_t>(i)] = uEnd - static_cast<unsigned int>(o);
        }
    }

    VTRBListViewStoreData& m_list;
    std::vector<VTRCSVLayoutCol> const* m_pLayout; // set when the columns came from the file
    HWND m_hParent;
    unsigned int m_uSize;
    unsigned char* m_pBlock;
    std::vector<unsigned int> m_rooms; // per column: bytes up to the next field or the end
    std::string m_narrow;
    std::wstring m_wide;
};

void VTRBListViewStoreData::CSVImportSink::OnField(int iLine, int iCol, char* psz8, wchar_t* pszW) {
    Col* pCol = m_list.GetCol(iCol);
    if (!pCol || iCol >= m_list.m_iFieldCnt)
        return;
    unsigned int const uRoom = RoomTo(iCol);
    if (uRoom == 0)
        return;
    VTRBDataType const eType = pCol->eType;
    int iTextRoom;
    if (m_pLayout && eType == VTDT_STRING)
        iTextRoom = (*m_pLayout)[static_cast<size_t>(iCol)].iRoom;
    else if (m_pLayout && eType == VTDT_WSTRING)
        iTextRoom = (*m_pLayout)[static_cast<size_t>(iCol)].iRoom / 2;
    else
        iTextRoom = m_list.GetFieldSize(iCol);
    VTRCSVConvertField(eType, m_pBlock + m_list.m_piOffsets[iCol], uRoom, iTextRoom, psz8, pszW, iLine,
                       m_narrow, m_wide);
}

bool VTRBListViewStoreData::ImportCSV(char const* pszFile, char cSep, int iSkipLines, bool bDefineCols,
                                      bool bAddEmptyRow, char const* pszNumberTitle) {
    VTRCSVImportFile file;
    try {
        bool bMore = false;
        file.Open(pszFile, true, VTRCSV_SCAN_LINE - 1, &bMore);
        if (bMore)
            m_iImportSkipLines = iSkipLines;
    } catch (NVThrowData const& e) {
        m_szImportCSVFile[0] = 0;
        if (!e.IsSilent())
            ErrMsg(m_hWnd ? GetParent(m_hWnd) : nullptr, "%s", e.GetText());
        return false;
    }
    return ImportCSVLines(file.Reader(), cSep, iSkipLines, bDefineCols, bAddEmptyRow, pszNumberTitle);
}

bool VTRBListViewStoreData::ImportCSVLines(VTRCSVLineReader& reader, char cSep, int iSkipLines,
                                           bool bDefineCols, bool bAddEmptyRow, char const* pszNumberTitle) {
    m_szImportCSVFile[0] = 0;
    if (!bDefineCols && (!m_pRowAlloc || m_iColCnt <= 0 || m_iFieldCnt <= 0))
        return false;
    HWND const hParent = m_hWnd ? GetParent(m_hWnd) : nullptr;
    bool bResult = false;
    bool bRedrawOff = false;
    std::vector<VTRCSVLayoutCol> layout;
    try {
        bool bNumberCol = false;
        if (bDefineCols) {
            VTRCSVTypeScan scan(reader.IsWide(), cSep, iSkipLines, m_cCSVMinColWidth, m_bForceStringColumns,
                                pszNumberTitle);
            scan.Scan(reader);
            bNumberCol = scan.HasNumberCol();
            if (m_hWnd)
                SendMessageA(m_hWnd, LVM_SETITEMCOUNT, static_cast<WPARAM>(scan.GetLineCount()), 0);
            int const iEnd = scan.Layout(layout);
            Reset();
            DynaArrayTpl<VTRBListViewColW, 0, 0> defs;
            VTRCSVTypeScan::MakeColDefs(layout, defs);
            if (layout.empty() || !VTRBListView::DefineCols(defs))
                Throw(0, VTRStringTable::GetText(IDS_VTR_DEFINECOLS_FAILED));
            m_iCSVImpNextOffset = iEnd;
            DynaArrayTpl<int, 0, 0> offsets;
            for (VTRCSVLayoutCol const& col : layout)
                offsets.Add(col.iOffset);
            if (!DefineStructure(static_cast<unsigned int>(iEnd + m_iCSVImpExtraSpace), offsets))
                Throw(0, VTRStringTable::GetText(IDS_VTR_DEFINESTRUCT_FAILED));
            reader.Rewind();
        } else {
            // Lines as long as the structure and then some; with columns from the file the pieces stay
            // those of the scan, so that both passes cut a long line at the same places.
            reader.SetMaxPiece(GetBlockSize() + 16384 - 1);
        }
        CSVImportSink sink(*this, bDefineCols ? &layout : nullptr, hParent);
        if (m_hWnd) {
            SendMessageA(m_hWnd, WM_SETREDRAW, FALSE, 0);
            bRedrawOff = true;
        }
        VTRCSVRowParams params;
        params.cSep = cSep;
        params.iSkipLines = iSkipLines;
        params.bAddEmptyRow = bAddEmptyRow;
        params.iMaxLines = m_iImportMaxLines;
        params.iFirstCol = bNumberCol ? 1 : 0;
        VTRCSVReadRows(reader, params, sink);
        m_cImportSep = cSep;
        bResult = true;
    } catch (NVThrowData const& e) {
        if (bRedrawOff)
            SendMessageA(m_hWnd, WM_SETREDRAW, TRUE, 0);
        bRedrawOff = false;
        if (!e.IsSilent())
            ErrMsg(hParent, "%s", e.GetText());
    } catch (std::bad_alloc const&) {
        if (bRedrawOff)
            SendMessageA(m_hWnd, WM_SETREDRAW, TRUE, 0);
        bRedrawOff = false;
        ErrMsg(hParent, VTRStringTable::GetText(IDS_VTR_NO_MEMORY), "");
    }
    Resort(false);
    if (bRedrawOff)
        SendMessageA(m_hWnd, WM_SETREDRAW, TRUE, 0);
    return bResult;
}
