// Tree mode: the control stays a flat list; parents, children and the open state live in the rows,
// and the comparison keeps every subtree directly behind its parent.
#include "listview/VTRBListView.h"

#include "NVErrors.h"

#include <algorithm>
#include <vector>

bool VTRBListView::SetTreeMode(bool bOn, bool bIndent) {
    if (!m_hWnd)
        return false;
    UINT const mask = static_cast<UINT>(SendMessageW(m_hWnd, LVM_GETCALLBACKMASK, 0, 0));
    if (!bOn) {
        m_bTreeMode = false;
        SendMessageW(m_hWnd, LVM_SETIMAGELIST, LVSIL_STATE, 0);
        SendMessageW(m_hWnd, LVM_SETCALLBACKMASK, mask & ~0xF000u, 0);
        Resort(false);
        return true;
    }
    m_bTreeIndent = bIndent;
    m_bCheckBoxes = false;
    SendMessageW(m_hWnd, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES, 0);
    SendMessageW(m_hWnd, LVM_SETCALLBACKMASK, mask & ~0xF000u, 0);
    BuildStateImages();
    if (!(GetWindowLongPtrW(m_hWnd, GWL_STYLE) & LVS_OWNERDRAWFIXED)) {
        SendMessageW(m_hWnd, LVM_SETIMAGELIST, LVSIL_STATE, reinterpret_cast<LPARAM>(m_hStateImages));
        SendMessageW(m_hWnd, LVM_SETCALLBACKMASK, mask | 0xF000u, 0);
    }
    m_bTreeMode = true;
    Resort(false);
    return true;
}

bool VTRBListView::ExpandItem(int item) {
    StdWaitCursor wait;
    Row* pRow = GetRow(item);
    if (!pRow || !m_bTreeMode || !(pRow->dwFlags & VTR_ROW_HASCHILDS))
        return false;
    if (pRow->dwFlags & VTR_ROW_EXPANDED)
        return true;
    if (!OnExpandItem(item, pRow))
        return false;
    // The hook may have added and sorted rows: the item is found again by its row.
    int const now = FindItem(pRow);
    pRow->dwFlags |= VTR_ROW_EXPANDED;
    RefreshRow(now);
    OnExpandStateChanged(now);
    return true;
}

bool VTRBListView::CollapsItem(int item) {
    StdWaitCursor wait;
    Row* pRow = GetRow(item);
    if (!pRow || !m_bTreeMode)
        return false;
    if (!(pRow->dwFlags & VTR_ROW_EXPANDED))
        return true;
    if (!OnCollapsItem(item, pRow))
        return false;
    int const now = FindItem(pRow);
    pRow->dwFlags &= ~static_cast<unsigned long>(VTR_ROW_EXPANDED);
    RefreshRow(now);
    if (GetWindowLongPtrW(m_hWnd, GWL_STYLE) & LVS_OWNERDRAWFIXED)
        InvalidateRect(m_hWnd, nullptr, FALSE);
    OnExpandStateChanged(now);
    return true;
}

bool VTRBListView::ToggleExpandState(int item) {
    Row* pRow = GetRow(item);
    if (!pRow || !m_bTreeMode || !(pRow->dwFlags & VTR_ROW_HASCHILDS))
        return false;
    return (pRow->dwFlags & VTR_ROW_EXPANDED) ? CollapsItem(item) : ExpandItem(item);
}

bool VTRBListView::SetExpandState(int item, bool bExpanded) {
    Row* pRow = GetRow(item);
    if (!pRow || !m_bTreeMode || !(pRow->dwFlags & VTR_ROW_HASCHILDS))
        return false;
    if (bExpanded) {
        if (!(pRow->dwFlags & VTR_ROW_EXPANDED)) {
            pRow->dwFlags |= VTR_ROW_EXPANDED;
            RefreshRow(item);
        }
    } else if (pRow->dwFlags & VTR_ROW_EXPANDED) {
        CollapsItem(item);
        pRow->dwFlags &= ~static_cast<unsigned long>(VTR_ROW_EXPANDED);
        RefreshRow(FindItem(pRow));
    }
    return true;
}

bool VTRBListView::IsExpanded(int item) {
    Row* pRow = GetRow(item);
    return pRow && m_bTreeMode && (pRow->dwFlags & VTR_ROW_EXPANDED);
}

bool VTRBListView::SetChildsState(int item, bool bHas) {
    Row* pRow = GetRow(item);
    if (!pRow || !m_bTreeMode)
        return false;
    if (bHas) {
        if (!(pRow->dwFlags & VTR_ROW_HASCHILDS)) {
            pRow->dwFlags |= VTR_ROW_HASCHILDS;
            RefreshRow(item);
        }
    } else if (pRow->dwFlags & VTR_ROW_HASCHILDS) {
        CollapsItem(item);
        pRow->dwFlags &= ~static_cast<unsigned long>(VTR_ROW_HASCHILDS);
        RefreshRow(FindItem(pRow));
    }
    return true;
}

bool VTRBListView::GetChildsState(int item) {
    Row* pRow = GetRow(item);
    return pRow && (pRow->dwFlags & VTR_ROW_HASCHILDS);
}

bool VTRBListView::GetChilds(int item, bool bRecursive, DynaArrayTpl<int, -1, 0>& out) {
    Row* pRow = GetRow(item);
    if (!pRow || !m_bTreeMode)
        return false;
    unsigned long const open = VTR_ROW_HASCHILDS | VTR_ROW_EXPANDED;
    if ((pRow->dwFlags & open) != open)
        return true;
    int const count = GetItemCount();
    for (int i = 0; i < count; ++i) {
        Row* pChild = GetRow(i);
        if (!pChild || pChild->pParent != pRow)
            continue;
        out.Add(i);
        if (bRecursive && !GetChilds(i, true, out))
            return false;
    }
    return true;
}

bool VTRBListView::RemoveAllChilds(int item) {
    DynaArrayTpl<int, -1, 0> childs;
    if (!GetChilds(item, true, childs))
        return false;
    std::vector<int> list(childs.GetData(), childs.GetData() + childs.GetCount());
    std::sort(list.begin(), list.end());
    int const focus =
        static_cast<int>(SendMessageW(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
    bool const bFocusGone = std::binary_search(list.begin(), list.end(), focus);
    Row* pParent = GetRow(item);
    SendMessageW(m_hWnd, WM_SETREDRAW, FALSE, 0);
    for (auto it = list.rbegin(); it != list.rend(); ++it) {
        RefreshRow(*it);
        SendMessageW(m_hWnd, LVM_DELETEITEM, *it, 0);
    }
    if (bFocusGone)
        SetCurSel(FindItem(pParent));
    SendMessageW(m_hWnd, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(m_hWnd, nullptr, FALSE);
    return true;
}

void VTRBListView::UpdateTreeInfo() {
    int const count = GetItemCount();
    std::vector<Row*> rows(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        rows[static_cast<size_t>(i)] = GetRow(i);
        if (rows[static_cast<size_t>(i)])
            rows[static_cast<size_t>(i)]->iLastChild = -1;
    }
    for (int i = count - 1; i >= 0; --i) {
        Row* pRow = rows[static_cast<size_t>(i)];
        if (pRow && pRow->pParent && pRow->pParent->iLastChild < 0)
            pRow->pParent->iLastChild = i;
    }
    m_bTreeInfoDirty = false;
}

void VTRBListView::SetTreeLinesColor(unsigned long clr) {
    m_clrTreeLines = clr;
    if (m_hWnd && m_bTreeMode)
        InvalidateRect(m_hWnd, nullptr, TRUE);
}

void VTRBListView::DrawTreeLines(HDC hDC, int item) {
    Row* pRow = GetRow(item);
    if (!hDC || !pRow || !pRow->pParent)
        return;
    LVITEMW lvi{};
    lvi.mask = LVIF_INDENT;
    lvi.iItem = item;
    SendMessageW(m_hWnd, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
    int const indent = lvi.iIndent > 0 ? lvi.iIndent : 1;
    RECT rc{};
    rc.left = LVIR_BOUNDS;
    if (!SendMessageW(m_hWnd, LVM_GETITEMRECT, item, reinterpret_cast<LPARAM>(&rc)))
        return;
    int x = rc.left - 8 + indent * 16;
    int const mid = (rc.top + rc.bottom) / 2;
    bool const bSmallImages = SendMessageW(m_hWnd, LVM_GETIMAGELIST, LVSIL_SMALL, 0) != 0;
    HPEN hPen = CreatePen(PS_SOLID, 1, m_clrTreeLines);
    HGDIOBJ hOld = SelectObject(hDC, hPen);
    Row* pNode = pRow;
    for (int level = 0; level < indent && pNode && pNode->pParent; ++level) {
        int const last = pNode->pParent->iLastChild;
        if (last >= item) {
            MoveToEx(hDC, x, rc.top, nullptr);
            LineTo(hDC, x, last == item ? mid : rc.bottom);
        }
        if (level == 0) {
            int const len = (pRow->dwFlags & VTR_ROW_HASCHILDS) ? 8 : (bSmallImages ? 26 : 16);
            MoveToEx(hDC, x, mid, nullptr);
            LineTo(hDC, x + len, mid);
        }
        pNode = pNode->pParent;
        x -= 16;
    }
    SelectObject(hDC, hOld);
    DeleteObject(hPen);
}
