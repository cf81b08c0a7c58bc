// CSV export of a list: the rows as they stand in the control, columns in index order, through the
// shared text format of VTRCSVFormat.
#include "exchange/VTRCSVFormat.h"
#include "exchange/VTRCSVSink.h"
#include "frame/VTRCodePage.h"
#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"
#include "listview/VTRBListView.h"

#include "NVLanguage.h"
#include "NVStrings.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <vector>

// ---------------------------------------------------------------- text format

char* VTRBListView::ConvertToCSVString(char const* pszText) {
    return VTRConvertToCSVString(pszText);
}

wchar_t* VTRBListView::ConvertToCSVStringW(wchar_t const* pszText) {
    return VTRConvertToCSVStringW(pszText);
}

bool VTRBListView::WriteCSVString(FILE* fp, char const* pszText, char cEnd) {
    if (!fp)
        return false;
    char* pszCSV = ConvertToCSVString(pszText);
    if (!pszCSV)
        return false;
    bool const ok = fputs(pszCSV, fp) >= 0 && fputc(static_cast<unsigned char>(cEnd), fp) != EOF;
    free(pszCSV);
    return ok;
}

bool VTRBListView::WriteCSVString(FILE* fp, wchar_t const* pszText, char cEnd) {
    char szText[1024];
    VTRToCodePage(pszText, szText, sizeof szText);
    return WriteCSVString(fp, szText, cEnd);
}

bool VTRBListView::WriteCSVStringW(FILE* fp, wchar_t const* pszText, wchar_t cEnd) {
    if (!fp)
        return false;
    wchar_t* pszCSV = ConvertToCSVStringW(pszText);
    if (!pszCSV)
        return false;
    bool const ok = fputws(pszCSV, fp) >= 0 && fputwc(cEnd, fp) != WEOF;
    free(pszCSV);
    return ok;
}

bool VTRBListView::ParseNextCSVField(char const*& pszCursor, char* pszField, char cSep) {
    return VTRParseNextCSVField(pszCursor, pszField, cSep);
}

bool VTRBListView::ParseNextCSVField(wchar_t const*& pszCursor, wchar_t* pszField, wchar_t cSep) {
    return VTRParseNextCSVField(pszCursor, pszField, cSep);
}

void VTRBListView::FillSepeatorCB(HWND hCombo, int iSel) {
    VTRFillSeparatorCB(hCombo, iSel);
}

// ---------------------------------------------------------------- export column mask

int VTRBListView::GetExportColIndexAndBitMask(int col, int& iMask) {
    iMask = 1 << (col & 7);
    return col >> 3;
}

bool VTRBListView::IsExportColVisible(int col) {
    if (!m_pbyExportCols)
        return true;
    int iMask = 0;
    int const iByte = GetExportColIndexAndBitMask(col, iMask);
    // A column added after the mask was set has no bit; it takes part until the mask is set again.
    if (col < 0 || iByte >= m_iExportColBytes)
        return true;
    return (m_pbyExportCols[iByte] & iMask) != 0;
}

int VTRBListView::GetNextExportCol(int col) {
    if (col >= m_iColCnt || !m_pbyExportCols)
        return col;
    for (int c = col < 0 ? 0 : col; c < m_iColCnt; ++c)
        if (IsExportColVisible(c))
            return c;
    return m_iColCnt;
}

bool VTRBListView::SetExportCols(DynaArrayTpl<bool, 0, 0>& daCols) {
    int const iBytes = (m_iColCnt + 7) / 8;
    if (!m_pbyExportCols || m_iExportColBytes != iBytes) {
        m_pbyExportCols.reset(iBytes > 0 ? new (std::nothrow) unsigned char[static_cast<size_t>(iBytes)]
                                         : nullptr);
        m_iExportColBytes = m_pbyExportCols ? iBytes : 0;
    }
    if (!m_pbyExportCols)
        return true;
    memset(m_pbyExportCols.get(), 0xFF, static_cast<size_t>(m_iExportColBytes));
    bool bCleared = false;
    int const n = daCols.GetCount() < m_iColCnt ? daCols.GetCount() : m_iColCnt;
    for (int i = 0; i < n; ++i) {
        if (*daCols.Get(i))
            continue;
        int iMask = 0;
        int const iByte = GetExportColIndexAndBitMask(i, iMask);
        m_pbyExportCols[iByte] = static_cast<unsigned char>(m_pbyExportCols[iByte] & ~iMask);
        bCleared = true;
    }
    if (!bCleared) {
        m_pbyExportCols.reset();
        m_iExportColBytes = 0;
    }
    return true;
}

bool VTRBListView::GetExportCols(DynaArrayTpl<bool, 0, 0>& daCols) {
    daCols.Clear();
    for (int col = 0; col < m_iColCnt; ++col)
        daCols.Add(IsExportColVisible(col));
    daCols.m_bValid = true;
    return true;
}

// ---------------------------------------------------------------- hooks

wchar_t const* VTRBListView::OnPrepareCSVExportText(Row* pRow, int item, int col, wchar_t* buf) {
    DWORD dwID = 0;
    if (IsRadioButton(item, col)) {
        dwID = GetRadioButtonState(item, col) ? IDS_VTR_YES : IDS_VTR_NO;
    } else if (IsCheckBox(item, col)) {
        dwID = GetCheckBoxState(item, col) ? IDS_VTR_YES : IDS_VTR_NO;
    } else if (IsTriStateBox(item, col)) {
        switch (GetTriStateBoxState(item, col)) {
        case 1:
            dwID = IDS_VTR_NO;
            break;
        case 2:
            dwID = IDS_VTR_YES;
            break;
        case 3:
            dwID = IDS_VTR_UNDEFINED;
            break;
        default:
            buf[0] = 0;
            return buf;
        }
    } else {
        return GetDataText(pRow, item, col, false);
    }
    StrNZCpy(buf, VTRStringTable::GetTextW(dwID), 1024);
    return buf;
}

// ---------------------------------------------------------------- export

bool VTRBListView::ExportRows(char const* pszFile, bool bWide, wchar_t cSep, bool bSelectedOnly,
                              bool bHeader) {
    if (!m_hWnd || !pszFile)
        return false;
    int const count = GetItemCount();
    HWND const hParent = GetParent(m_hWnd);
    FILE* fp = nullptr;
    // Binary mode with the line ends written out gives the bytes a text-mode stream would.
    if (bWide) {
        wchar_t wszFile[1024];
        if (MultiByteToWideChar(static_cast<UINT>(NVGetCurCodePage()), 0, pszFile, -1, wszFile, 1024) > 0)
            fp = _wfopen(wszFile, L"wb");
    } else {
        fp = fopen(pszFile, "wb");
    }
    if (!fp) {
        ErrMsg(hParent, VTRStringTable::GetText(IDS_VTR_FILE_CREATE), pszFile);
        return false;
    }

    std::vector<int> cols;
    for (int col = 0; col < m_iColCnt; ++col)
        if (IsExportColVisible(col))
            cols.push_back(col);

    VTRCSVSink sink(fp, bWide);
    if (bWide)
        sink.Raw("\xFF\xFE", 2);
    if (bHeader && !cols.empty()) {
        HWND const hHeader = reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0));
        for (size_t i = 0; i < cols.size(); ++i) {
            wchar_t szTitle[257] = L"";
            HDITEMW hdi{};
            hdi.mask = HDI_TEXT | HDI_FORMAT | HDI_IMAGE;
            hdi.pszText = szTitle;
            hdi.cchTextMax = 256;
            if (hHeader)
                SendMessageW(hHeader, HDM_GETITEMW, cols[i], reinterpret_cast<LPARAM>(&hdi));
            szTitle[256] = 0;
            StrTrim(szTitle);
            sink.Field(szTitle, i + 1 == cols.size(), cSep);
        }
    }

    std::vector<wchar_t> buf(1100);
    for (int item = 0; item < count && !cols.empty(); ++item) {
        Row* pRow = nullptr;
        if (!m_bOwnerData) {
            pRow = GetRow(item);
            if (!pRow || (pRow->dwFlags & VTR_ROW_SUM))
                continue;
        }
        if (bSelectedOnly &&
            !(SendToControl(LVM_GETITEMSTATE, static_cast<WPARAM>(item), LVIS_SELECTED) & LVIS_SELECTED))
            continue;
        if (!OnIsInCSVexport(item))
            continue;
        for (size_t i = 0; i < cols.size(); ++i) {
            wchar_t const* pszText;
            buf[0] = 0;
            if (m_bOwnerData) {
                OnNeedText(item, cols[i], buf.data());
                buf[1023] = 0;
                pszText = buf.data();
            } else {
                pszText = OnPrepareCSVExportText(pRow, item, cols[i], buf.data());
            }
            sink.Field(pszText, i + 1 == cols.size(), cSep);
        }
    }
    bool const bWritten = sink.Finish();
    bool const bClosed = fclose(fp) == 0;
    if (!bWritten || !bClosed) {
        ErrMsg(hParent, VTRStringTable::GetText(IDS_VTR_FILE_WRITE_AFTER), pszFile);
        return false;
    }
    return true;
}

bool VTRBListView::ExportCSV(char const* pszFile, char cSep, bool bSelectedOnly, bool bHeader) {
    return ExportRows(pszFile, false, static_cast<unsigned char>(cSep), bSelectedOnly, bHeader);
}

bool VTRBListView::ExportCSVW(char const* pszFile, wchar_t cSep, bool bSelectedOnly, bool bHeader, bool) {
    return ExportRows(pszFile, true, cSep, bSelectedOnly, bHeader);
}
