#include "stores/VTRBListViewVirtual.h"

#include "frame/VTRCodePage.h"

VTRBListViewVirtual::VTRBListViewVirtual() = default;
VTRBListViewVirtual::~VTRBListViewVirtual() = default;

bool VTRBListViewVirtual::SetItemCount(unsigned long ulCount) {
    if (!m_hWnd || !IsWindow(m_hWnd) || !m_bOwnerData)
        return false;
    SendMessageW(m_hWnd, LVM_SETITEMCOUNT, ulCount, LVSICF_NOINVALIDATEALL);
    return true;
}

void VTRBListViewVirtual::ClearAll() {
    SetItemCount(0);
}

void VTRBListViewVirtual::OnNeedText(int, int, wchar_t* pszBuf) {
    if (pszBuf)
        pszBuf[0] = 0;
}

void VTRBListViewVirtual::OnImportCSVRow(int) {}
void VTRBListViewVirtual::OnImportCSVField(int, int, char const*) {}
void VTRBListViewVirtual::OnResort(int, int, bool) {}

bool VTRBListViewVirtual::Resort(bool bKeepPos) {
    if (m_iSortCol < 0 || !m_hWnd)
        return false;
    int const iKeys = static_cast<int>(static_cast<unsigned long>(m_wSecondSortCol) |
                                       (static_cast<unsigned long>(m_wThirdSortCol) << 16));
    OnResort(m_iSortCol, iKeys, m_bSortDesc);
    m_bTreeInfoDirty = true;
    if (!bKeepPos) {
        int const iSel =
            static_cast<int>(SendMessageW(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
        if (iSel >= 0)
            SendMessageW(m_hWnd, LVM_ENSUREVISIBLE, iSel, FALSE);
    }
    InvalidateRect(m_hWnd, nullptr, TRUE);
    return true;
}

void VTRBListViewVirtual::OnGetDispInfo(NMHDR* pHdr, bool bWide) {
    // Both forms share the LVITEM layout up to pszText; only the text differs.
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(pHdr)->item;
    if (item.mask & LVIF_TEXT) {
        m_wszText[0] = 0;
        OnNeedText(item.iItem, item.iSubItem, m_wszText);
        m_wszText[1023] = 0;
        if (bWide) {
            item.pszText = m_wszText;
        } else {
            VTRToCodePage(m_wszText, m_szText, sizeof m_szText);
            reinterpret_cast<LVITEMA&>(item).pszText = m_szText;
        }
    }
    if (item.mask & LVIF_IMAGE)
        OnImageCallback(reinterpret_cast<LVITEMA*>(&item));
    if (item.mask & LVIF_STATE)
        OnStateCallback(reinterpret_cast<LVITEMA*>(&item));
}

LRESULT VTRBListViewVirtual::HandleNotify(WPARAM wParam, LPARAM lParam) {
    auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
    if (!pHdr || !m_hWnd || pHdr->hwndFrom != m_hWnd)
        return VTRBListView::HandleNotify(wParam, lParam);
    switch (pHdr->code) {
    case LVN_GETDISPINFOW:
        OnGetDispInfo(pHdr, true);
        return 0;
    case LVN_GETDISPINFOA:
        OnGetDispInfo(pHdr, false);
        return 0;
    case LVN_DELETEITEM:
        return 0;
    default:
        return VTRBListView::HandleNotify(wParam, lParam);
    }
}
