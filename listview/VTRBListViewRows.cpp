// Rows: one Row block per list item, held in the item's lParam and freed at LVN_DELETEITEM.
#include "listview/VTRBListView.h"
#include "listview/VTRRowPool.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

unsigned int VTRBListView::GetRowSize() const {
    int const cells = m_iColMaxCnt > 0 ? m_iColMaxCnt : 1;
    return static_cast<unsigned int>(offsetof(Row, cells) + sizeof(RowCell) * static_cast<size_t>(cells));
}

Row* VTRBListView::AllocRow() {
    if (!m_pRowPool)
        m_pRowPool = new VTRRowPool;
    Row* pRow = static_cast<Row*>(m_pRowPool->Alloc(GetRowSize()));
    if (pRow)
        pRow->iLastChild = -1;
    return pRow;
}

void VTRBListView::FreeRow(Row* pRow) {
    if (m_pRowPool)
        m_pRowPool->Free(pRow);
}

int VTRBListView::GetItemCount() {
    return m_hWnd ? static_cast<int>(SendToControl(LVM_GETITEMCOUNT, 0, 0)) : 0;
}

Row* VTRBListView::GetRow(int item) {
    if (!m_hWnd || item < 0 || m_bOwnerData)
        return nullptr;
    LVITEMW lvi{};
    lvi.mask = LVIF_PARAM;
    lvi.iItem = item;
    if (!SendToControl(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi)))
        return nullptr;
    return reinterpret_cast<Row*>(lvi.lParam);
}

void* VTRBListView::GetLVITEMHANDLE(int item) {
    return GetRow(item);
}

void* VTRBListView::GetParentLVITEMHANDLE(int item) {
    Row* pRow = GetRow(item);
    return pRow ? pRow->pParent : nullptr;
}

int VTRBListView::FindItem(void* handle) {
    if (!handle || !m_hWnd)
        return -1;
    LVFINDINFOW fi{};
    fi.flags = LVFI_PARAM;
    fi.lParam = reinterpret_cast<LPARAM>(handle);
    return static_cast<int>(
        SendMessageW(m_hWnd, LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&fi)));
}

bool VTRBListView::GetLParam(int item, LPARAM& lParam) {
    Row* pRow = GetRow(item);
    lParam = pRow ? pRow->lParam : 0;
    return pRow != nullptr;
}

bool VTRBListView::GetItem(LPARAM lParam, int& item) {
    for (item = GetItemCount() - 1; item >= 0; --item) {
        Row* pRow = GetRow(item);
        if (pRow && pRow->lParam == lParam)
            return true;
    }
    item = -1;
    return false;
}

bool VTRBListView::SetData(Row* pRow, int col, void* value) {
    Col* pCol = GetCol(col);
    if (!pRow || !pCol)
        return false;
    uintptr_t const word = reinterpret_cast<uintptr_t>(value);
    void* stored;
    switch (pCol->eType) {
    case VTDT_int:
    case VTDT_int32_CUSTOM:
    case VTDT_TIME_T:
        stored = reinterpret_cast<void*>(static_cast<intptr_t>(static_cast<int32_t>(word)));
        break;
    case VTDT_DWORD:
    case VTDT_DWORD_NOT_NULL:
    case VTDT_FLAG:
        stored = reinterpret_cast<void*>(static_cast<uintptr_t>(static_cast<uint32_t>(word)));
        break;
    case VTDT_CARD_DATE:
    case VTDT_WORD:
        stored = reinterpret_cast<void*>(static_cast<uintptr_t>(static_cast<uint16_t>(word)));
        break;
    case VTDT_bool:
        stored = reinterpret_cast<void*>(static_cast<uintptr_t>((word & 0xFF) != 0 ? 1 : 0));
        break;
    case VTDT_SYSTEMTIME_TIMEONLY:
    case VTDT_RESERVED25:
    case VTDT_CHECKROW:
        return false;
    default:
        stored = value;
        break;
    }
    pRow->cells[col].pValue = stored;
    return true;
}

// Each cell argument is read with the width its type gives it: values narrower than a pointer
// arrive in a slot whose upper half is not guaranteed.
void VTRBListView::ReadCells(Row* pRow, int first, va_list args) {
    for (int col = first; col < m_iColCnt; ++col) {
        void* value;
        switch (m_pCols[col].eType) {
        case VTDT_int:
        case VTDT_int32_CUSTOM:
        case VTDT_TIME_T:
        case VTDT_CARD_DATE:
        case VTDT_WORD:
        case VTDT_bool:
            value = reinterpret_cast<void*>(static_cast<intptr_t>(va_arg(args, int)));
            break;
        case VTDT_DWORD:
        case VTDT_DWORD_NOT_NULL:
        case VTDT_FLAG:
            value = reinterpret_cast<void*>(static_cast<uintptr_t>(va_arg(args, unsigned int)));
            break;
        default:
            value = va_arg(args, void*);
            break;
        }
        SetData(pRow, col, value);
    }
}

bool VTRBListView::AddRow_VA(LPARAM lParam, int image, void* first, va_list args, unsigned long flags,
                             int pos) {
    // A dead window answers every message with 0, which would read as "inserted at index 0". While
    // our procedure is installed the control is alive: it is taken off at WM_NCDESTROY, and asking
    // the window manager costs a trip out of the process's own code under Wine on every row.
    if (!m_hWnd || !m_pCols || (!m_pfnOldProc && !IsWindow(m_hWnd)))
        return false;
    Row* pRow = AllocRow();
    if (!pRow)
        return false;
    pRow->lParam = lParam;
    pRow->dwFlags = flags;
    va_list copy;
    va_copy(copy, args);
    if (flags & VTR_ROW_CHECKPTR) {
        pRow->pbCheck = static_cast<bool*>(first);
        ReadCells(pRow, 0, copy);
    } else {
        if (m_iColCnt > 0)
            SetData(pRow, 0, first);
        ReadCells(pRow, 1, copy);
    }
    va_end(copy);
    LVITEMW lvi{};
    lvi.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    lvi.iItem = pos;
    lvi.pszText = LPSTR_TEXTCALLBACKW;
    lvi.iImage = image;
    lvi.lParam = reinterpret_cast<LPARAM>(pRow);
    int const item = static_cast<int>(SendToControl(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&lvi)));
    m_iLastAddedItem = item;
    if (item < 0) {
        FreeRow(pRow);
        return false;
    }
    m_pLastAddedRow = pRow;
    m_bTreeInfoDirty = true;
    return true;
}

bool VTRBListView::AddRow(LPARAM lParam, int image, void* cell0, ...) {
    va_list args;
    va_start(args, cell0);
    bool ok = AddRow_VA(lParam, image, cell0, args, 0, 0x7fffffff);
    va_end(args);
    return ok;
}

bool VTRBListView::AddRowEx(LPARAM lParam, int image, bool* pbCheck, void* ignored, ...) {
    // The parameter before the cells keeps the call shape of AddRow; its value means nothing.
    (void)ignored;
    va_list args;
    va_start(args, ignored);
    bool ok = AddRow_VA(lParam, image, pbCheck, args, VTR_ROW_CHECKPTR, 0x7fffffff);
    va_end(args);
    return ok;
}

bool VTRBListView::AddSumRow(LPARAM lParam, int image, void* cell0, ...) {
    va_list args;
    va_start(args, cell0);
    bool ok = AddRow_VA(lParam, image, cell0, args, VTR_ROW_SUM | VTR_ROW_BOLD, 0x7fffffff);
    va_end(args);
    return ok;
}

bool VTRBListView::UpdateRow_VA(int item, LPARAM lParam, int image, void* first, va_list args) {
    Row* pRow = GetRow(item);
    if (!pRow)
        return false;
    pRow->lParam = lParam;
    va_list copy;
    va_copy(copy, args);
    if (pRow->dwFlags & VTR_ROW_CHECKPTR) {
        pRow->pbCheck = static_cast<bool*>(first);
        ReadCells(pRow, 0, copy);
    } else {
        if (m_iColCnt > 0)
            SetData(pRow, 0, first);
        ReadCells(pRow, 1, copy);
    }
    va_end(copy);
    LVITEMW lvi{};
    lvi.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    lvi.iItem = item;
    lvi.pszText = LPSTR_TEXTCALLBACKW;
    lvi.iImage = image;
    lvi.lParam = reinterpret_cast<LPARAM>(pRow);
    return SendMessageW(m_hWnd, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&lvi)) != 0;
}

bool VTRBListView::UpdateRow(int item, LPARAM lParam, int image, void* cell0, ...) {
    va_list args;
    va_start(args, cell0);
    bool ok = UpdateRow_VA(item, lParam, image, cell0, args);
    va_end(args);
    return ok;
}

bool VTRBListView::UpdateRowEx(int item, LPARAM lParam, int image, bool* pbCheck, void* ignored, ...) {
    (void)ignored;
    va_list args;
    va_start(args, ignored);
    bool ok = UpdateRow_VA(item, lParam, image, pbCheck, args);
    va_end(args);
    return ok;
}

bool VTRBListView::IsSingleSelect() {
    return m_hWnd && (GetWindowLongPtrW(m_hWnd, GWL_STYLE) & LVS_SINGLESEL) != 0;
}

bool VTRBListView::SetCurSel(int item) {
    if (!m_hWnd || item < 0 || item >= GetItemCount())
        return false;
    LVITEMW lvi{};
    lvi.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    lvi.state = 0;
    SendMessageW(m_hWnd, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&lvi));
    lvi.state = LVIS_SELECTED | LVIS_FOCUSED;
    return SendMessageW(m_hWnd, LVM_SETITEMSTATE, item, reinterpret_cast<LPARAM>(&lvi)) != 0;
}

bool VTRBListView::DeleteRow(int item, bool bSelectNext) {
    if (!m_hWnd || item < 0)
        return false;
    if (!SendMessageW(m_hWnd, LVM_DELETEITEM, item, 0))
        return false;
    if (bSelectNext) {
        int const count = GetItemCount();
        int const next = item < count ? item : count - 1;
        if (next >= 0) {
            LVITEMW lvi{};
            lvi.stateMask = IsSingleSelect() ? (LVIS_SELECTED | LVIS_FOCUSED) : LVIS_SELECTED;
            lvi.state = lvi.stateMask;
            SendMessageW(m_hWnd, LVM_SETITEMSTATE, next, reinterpret_cast<LPARAM>(&lvi));
        }
    }
    return true;
}

bool VTRBListView::RefreshRow(int item) {
    if (!m_hWnd)
        return false;
    RECT rc{};
    rc.left = LVIR_BOUNDS;
    if (!SendMessageW(m_hWnd, LVM_GETITEMRECT, item, reinterpret_cast<LPARAM>(&rc)))
        return false;
    return InvalidateRect(m_hWnd, &rc, TRUE) != 0;
}

bool VTRBListView::SetBold(int item, bool bBold) {
    Row* pRow = GetRow(item);
    if (!pRow)
        return false;
    bool const bOld = (pRow->dwFlags & VTR_ROW_BOLD) != 0;
    if (bOld != bBold) {
        pRow->dwFlags ^= VTR_ROW_BOLD;
        RefreshRow(item);
    }
    return bOld;
}

bool VTRBListView::IsSumRow(int item) {
    Row* pRow = GetRow(item);
    return pRow && (pRow->dwFlags & VTR_ROW_SUM) != 0;
}

void VTRBListView::SetCellNumFormat(int item, int col, char const* lpszFormat) {
    Row* pRow = GetRow(item);
    if (!pRow || col < 0 || col >= m_iColCnt)
        return;
    pRow->cells[col].pszNumFormat = lpszFormat;
}
