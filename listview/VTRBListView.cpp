#include "listview/VTRBListView.h"
#include "listview/VTRRowPool.h"

#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"

#include "NVLanguage.h"
#include "NVStrings.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

char const s_szProp[] = "Prop_VTREditWndProc";

// Windows bound to a list object. The window property names the object for everyone else, but
// reading a property costs a round trip to the window server under Wine on every message, so the
// list's own procedure looks its object up here. GUI thread only, and only a few entries.
struct BoundWindow {
    HWND hWnd;
    VTRBListView* pList;
};
std::vector<BoundWindow> s_aBound;

void Bind(HWND hWnd, VTRBListView* pList) {
    s_aBound.push_back(BoundWindow{hWnd, pList});
}

void Unbind(HWND hWnd) {
    for (size_t i = 0; i < s_aBound.size(); ++i)
        if (s_aBound[i].hWnd == hWnd) {
            s_aBound.erase(s_aBound.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
}

VTRBListView* BoundList(HWND hWnd) {
    for (BoundWindow const& b : s_aBound)
        if (b.hWnd == hWnd)
            return b.pList;
    return nullptr;
}

// Draws one picture and its mask (white where transparent) into two fresh bitmaps.
struct PictureDC {
    HDC hdc = nullptr;
    HBITMAP hBmp = nullptr;
    HGDIOBJ hOld = nullptr;
    PictureDC(int cx, int cy, bool bMono) {
        HDC hScreen = GetDC(nullptr);
        hdc = CreateCompatibleDC(hScreen);
        hBmp = bMono ? CreateBitmap(cx, cy, 1, 1, nullptr) : CreateCompatibleBitmap(hScreen, cx, cy);
        ReleaseDC(nullptr, hScreen);
        hOld = SelectObject(hdc, hBmp);
        RECT rc{0, 0, cx, cy};
        FillRect(hdc, &rc, static_cast<HBRUSH>(GetStockObject(bMono ? WHITE_BRUSH : WHITE_BRUSH)));
    }
    HBITMAP Release() {
        SelectObject(hdc, hOld);
        DeleteDC(hdc);
        return hBmp;
    }
};

// Sort arrows: kind 0 points up, 1 down, 2 is the small mark of the second key.
void DrawSortPicture(HDC hdc, int kind, int size, COLORREF clr) {
    HBRUSH hBrush = CreateSolidBrush(clr);
    HPEN hPen = CreatePen(PS_SOLID, 1, clr);
    HGDIOBJ hOldB = SelectObject(hdc, hBrush);
    HGDIOBJ hOldP = SelectObject(hdc, hPen);
    int const m = size / 2;
    if (kind == 2) {
        Ellipse(hdc, m - 2, m - 2, m + 2, m + 2);
    } else {
        POINT pts[3];
        if (kind == 0) {
            pts[0] = {m, 2};
            pts[1] = {size - 2, size - 3};
            pts[2] = {1, size - 3};
        } else {
            pts[0] = {1, 2};
            pts[1] = {size - 2, 2};
            pts[2] = {m, size - 3};
        }
        Polygon(hdc, pts, 3);
    }
    SelectObject(hdc, hOldB);
    SelectObject(hdc, hOldP);
    DeleteObject(hBrush);
    DeleteObject(hPen);
}

// Tree state pictures: a box with a minus (open row) or a plus (closed row).
void DrawTreePicture(HDC hdc, bool bOpen, COLORREF clr) {
    HPEN hPen = CreatePen(PS_SOLID, 1, clr);
    HGDIOBJ hOldP = SelectObject(hdc, hPen);
    HGDIOBJ hOldB = SelectObject(hdc, GetStockObject(NULL_BRUSH));
    Rectangle(hdc, 3, 3, 12, 12);
    MoveToEx(hdc, 5, 7, nullptr);
    LineTo(hdc, 10, 7);
    if (!bOpen) {
        MoveToEx(hdc, 7, 5, nullptr);
        LineTo(hdc, 7, 10);
    }
    SelectObject(hdc, hOldP);
    SelectObject(hdc, hOldB);
    DeleteObject(hPen);
}

// The mask is derived from the picture: what was drawn is opaque.
void AddDrawnPicture(HIMAGELIST hList, int cx, int cy, void (*draw)(HDC, int, int), int arg) {
    PictureDC pic(cx, cy, false);
    draw(pic.hdc, arg, cx);
    PictureDC mask(cx, cy, true);
    BitBlt(mask.hdc, 0, 0, cx, cy, pic.hdc, 0, 0, SRCCOPY);
    HBITMAP hPic = pic.Release();
    HBITMAP hMask = mask.Release();
    ImageList_Add(hList, hPic, hMask);
    DeleteObject(hPic);
    DeleteObject(hMask);
}

} // namespace

HINSTANCE VTRBListView::s_hInstIcons = nullptr;

VTRBListView::VTRBListView()
    : m_iColCnt(0), m_iExtraColCnt(0), m_iColMaxCnt(0), m_pCols(nullptr), m_iLastAddedItem(-1),
      m_pLastAddedRow(nullptr), m_bTreeInfoDirty(false), m_bTrimColTitle(false),
      m_bDontSetClipChildren(false), m_bDoubleBufferInAssign(true), m_bNoColTrack(false),
      m_bForceStringColumns(false), m_bCheckBoxes(false), m_bExportAllowed(true), m_bHeaderDragRefused(false),
      m_iSavedSel(-1), m_iSortCol(-1), m_wSecondSortCol(0xFFFF), m_wThirdSortCol(0xFFFF), m_bSortDesc(false),
      m_bSortSumRowsLParam(false), m_iImgSortAsc(-1), m_iImgSortDesc(-1), m_hHeaderImages(nullptr),
      m_bTreeMode(false), m_bTreeIndent(false), m_clrTreeLines(GetSysColor(COLOR_3DLIGHT)),
      m_hStateImages(nullptr), m_bOwnerData(false), m_bShareImageLists(false), m_pRowPool(nullptr),
      m_pSortRanks(nullptr), m_pfnOldProc(nullptr), m_pfnControlProc(nullptr), m_pfnOldHeaderProc(nullptr),
      m_hHeader(nullptr) {
    m_szText[0] = 0;
    m_wszText[0] = 0;
}

VTRBListView::~VTRBListView() {
    if (m_hWnd && IsWindow(m_hWnd)) {
        SendMessageW(m_hWnd, LVM_DELETEALLITEMS, 0, 0);
        if (m_hHeader && IsWindow(m_hHeader))
            SendMessageW(m_hHeader, HDM_SETIMAGELIST, 0, 0);
    }
    RemoveHooks();
    delete[] m_pCols;
    m_pCols = nullptr;
    delete m_pRowPool;
    m_pRowPool = nullptr;
    if (m_hHeaderImages)
        ImageList_Destroy(m_hHeaderImages);
    if (m_hStateImages && (m_bShareImageLists || !m_hWnd || !IsWindow(m_hWnd)))
        ImageList_Destroy(m_hStateImages);
}

void VTRBListView::OnSetIdent(char const*) {}

void VTRBListView::BuildHeaderImages() {
    if (m_hHeaderImages)
        return;
    int const size = 12;
    m_hHeaderImages = ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, 3, 1);
    if (!m_hHeaderImages)
        return;
    auto draw = [](HDC hdc, int kind, int cx) {
        DrawSortPicture(hdc, kind, cx, GetSysColor(COLOR_BTNSHADOW));
    };
    AddDrawnPicture(m_hHeaderImages, size, size, draw, 0);
    AddDrawnPicture(m_hHeaderImages, size, size, draw, 1);
    AddDrawnPicture(m_hHeaderImages, size, size, draw, 2);
    m_iImgSortAsc = 0;
    m_iImgSortDesc = 1;
}

void VTRBListView::BuildStateImages() {
    if (m_hStateImages)
        return;
    m_hStateImages = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 2, 1);
    if (!m_hStateImages)
        return;
    HICON hOpen = s_hInstIcons ? LoadIconW(s_hInstIcons, MAKEINTRESOURCEW(109)) : nullptr;
    HICON hClosed = s_hInstIcons ? LoadIconW(s_hInstIcons, MAKEINTRESOURCEW(110)) : nullptr;
    if (hOpen && hClosed) {
        ImageList_AddIcon(m_hStateImages, hOpen);
        ImageList_AddIcon(m_hStateImages, hClosed);
        return;
    }
    auto draw = [](HDC hdc, int open, int) { DrawTreePicture(hdc, open != 0, GetSysColor(COLOR_BTNSHADOW)); };
    AddDrawnPicture(m_hStateImages, 16, 16, draw, 1);
    AddDrawnPicture(m_hStateImages, 16, 16, draw, 0);
}

void VTRBListView::SethInstanceIcons(HINSTANCE hInst) {
    s_hInstIcons = hInst;
}

void VTRBListView::Assign(HWND hWnd) {
    if (!IsWindow(hWnd))
        return;
    BuildHeaderImages();
    VantrelBase::Assign(hWnd);
    m_bCheckBoxes = false;
    m_bHeaderDragRefused = false;
    LONG_PTR style = GetWindowLongPtrW(hWnd, GWL_STYLE);
    if (!m_bDontSetClipChildren)
        SetWindowLongPtrW(hWnd, GWL_STYLE, style | WS_CLIPCHILDREN);
    m_bOwnerData = (style & LVS_OWNERDATA) != 0;
    m_bShareImageLists = (style & LVS_SHAREIMAGELISTS) != 0;
    SendMessageW(hWnd, CCM_SETUNICODEFORMAT, 1, 0);
    DWORD dwEx = LVS_EX_FULLROWSELECT | (m_bDoubleBufferInAssign ? LVS_EX_DOUBLEBUFFER : 0);
    SendMessageW(hWnd, LVM_SETEXTENDEDLISTVIEWSTYLE, dwEx, dwEx);
    m_hHeader = reinterpret_cast<HWND>(SendMessageW(hWnd, LVM_GETHEADER, 0, 0));
    if (m_hHeader) {
        SendMessageW(m_hHeader, HDM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_hHeaderImages));
        SendMessageW(m_hHeader, HDM_SETBITMAPMARGIN, 1, 0);
    }
    m_iSavedSel = -1;
    m_iLastAddedItem = -1;
    InstallHooks();
    OnSetIdent(m_szIdent);
}

void VTRBListView::UnAssign() {
    if (!m_hWnd)
        return;
    Reset();
    if (m_hHeader && IsWindow(m_hHeader))
        SendMessageW(m_hHeader, HDM_SETIMAGELIST, 0, 0);
    RemoveHooks();
    bool const bControlOwnsStates =
        !m_bShareImageLists && IsWindow(m_hWnd) &&
        SendMessageW(m_hWnd, LVM_GETIMAGELIST, LVSIL_STATE, 0) == reinterpret_cast<LRESULT>(m_hStateImages);
    if (m_hStateImages && !bControlOwnsStates)
        ImageList_Destroy(m_hStateImages);
    m_hStateImages = nullptr;
    m_hHeader = nullptr;
    VantrelBase::UnAssign();
}

void VTRBListView::InstallHooks() {
    if (!m_pfnOldProc && m_hWnd) {
        SetPropA(m_hWnd, s_szProp, this);
        Bind(m_hWnd, this);
        bool const bUnicodeProc = IsWindowUnicode(m_hWnd) != FALSE;
        m_pfnOldProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&VTRBListView::SubclassProc)));
        // Only a Unicode class procedure is a plain function here; anything else may be a handle
        // that just CallWindowProc understands, or a client's subclass that must see every message.
        WNDPROC const pfnClass = reinterpret_cast<WNDPROC>(GetClassLongPtrW(m_hWnd, GCLP_WNDPROC));
        m_pfnControlProc = bUnicodeProc && m_pfnOldProc == pfnClass ? pfnClass : nullptr;
    }
    if (!m_pfnOldHeaderProc && m_hHeader) {
        SetPropA(m_hHeader, s_szProp, this);
        Bind(m_hHeader, this);
        m_pfnOldHeaderProc = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
            m_hHeader, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&VTRBListView::SubclassProc)));
    }
}

void VTRBListView::RemoveHooks() {
    if (m_pfnOldProc) {
        if (m_hWnd && IsWindow(m_hWnd)) {
            SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnOldProc));
            RemovePropA(m_hWnd, s_szProp);
        }
        Unbind(m_hWnd);
        m_pfnOldProc = nullptr;
        m_pfnControlProc = nullptr;
    }
    if (m_pfnOldHeaderProc) {
        if (m_hHeader && IsWindow(m_hHeader)) {
            SetWindowLongPtrW(m_hHeader, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnOldHeaderProc));
            RemovePropA(m_hHeader, s_szProp);
        }
        Unbind(m_hHeader);
        m_pfnOldHeaderProc = nullptr;
    }
}

// The list talks to its control once per row when it fills, sorts or exports, and the dispatcher
// costs more than the control's own work on such a message. While our procedure is the window's
// and the control's own lies directly under it, nobody else could see the message on its way, and
// the control's procedure takes it directly.
WNDPROC VTRBListView::DirectControlProc() const {
    if (m_pfnControlProc &&
        GetWindowLongPtrW(m_hWnd, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&VTRBListView::SubclassProc))
        return m_pfnControlProc;
    return nullptr;
}

LRESULT VTRBListView::SendToControl(UINT uMsg, WPARAM wParam, LPARAM lParam) {
    if (WNDPROC pfn = DirectControlProc())
        return pfn(m_hWnd, uMsg, wParam, lParam);
    return SendMessageW(m_hWnd, uMsg, wParam, lParam);
}

LRESULT CALLBACK VTRBListView::SubclassProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    VTRBListView* pThis = BoundList(hWnd);
    if (!pThis)
        return DefWindowProcA(hWnd, uMsg, wParam, lParam);
    if (hWnd == pThis->m_hHeader)
        return CallWindowProcW(pThis->m_pfnOldHeaderProc, hWnd, uMsg, wParam, lParam);
    return pThis->WndProc(hWnd, uMsg, wParam, lParam);
}

LRESULT VTRBListView::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    WNDPROC pfnOld = m_pfnOldProc;
    switch (uMsg) {
    case WM_COMMAND:
        OnCommand(wParam, lParam);
        break;
    case WM_NOTIFY: {
        auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
        LRESULT r = OnChildsNotify(pHdr);
        if (r)
            return r;
        if (pHdr && pHdr->hwndFrom == m_hHeader) {
            switch (pHdr->code) {
            case HDN_BEGINDRAG:
                if (m_bTreeMode && (reinterpret_cast<NMHEADERW*>(pHdr)->iItem == 0 || m_bHeaderDragRefused)) {
                    m_bHeaderDragRefused = true;
                    return 1;
                }
                break;
            case HDN_ENDDRAG: {
                m_bHeaderDragRefused = false;
                auto* pNM = reinterpret_cast<NMHEADERW*>(pHdr);
                if (m_bTreeMode && pNM->pitem && (pNM->pitem->mask & HDI_ORDER) && pNM->pitem->iOrder == 0)
                    return 1;
                break;
            }
            case NM_RELEASEDCAPTURE:
                m_bHeaderDragRefused = false;
                break;
            case HDN_DIVIDERDBLCLICKA:
            case HDN_DIVIDERDBLCLICKW:
                if (OnDividerDblClick(reinterpret_cast<NMHEADERA*>(pHdr)))
                    return 0;
                break;
            case HDN_ITEMCHANGEDA:
            case HDN_ITEMCHANGEDW: {
                auto* pNM = reinterpret_cast<NMHEADERW*>(pHdr);
                if (pNM->pitem && (pNM->pitem->mask & HDI_WIDTH))
                    OnColumnWidthChanged(pNM->iItem, pNM->pitem->cxy);
                break;
            }
            default:
                break;
            }
        }
        break;
    }
    case WM_ERASEBKGND:
        if (OnEraseBkGnd(reinterpret_cast<HDC>(wParam)))
            return 0;
        break;
    case WM_SIZE:
        OnSize(wParam, lParam);
        break;
    case WM_NCHITTEST: {
        LRESULT result = 0;
        if (OnNCHitTest(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)), result))
            return result;
        break;
    }
    case WM_GETMINMAXINFO:
        if (GetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam)))
            return 0;
        break;
    case WM_MEASUREITEM:
        if (OnChildWindowMeasureItem(wParam, lParam))
            return TRUE;
        break;
    case WM_DRAWITEM:
        if (OnChildWindowDrawItem(wParam, lParam))
            return TRUE;
        break;
    case WM_CONTEXTMENU:
        OnContextMenu();
        break;
    case WM_NCDESTROY:
        RemoveHooks();
        break;
    default:
        break;
    }
    return pfnOld ? CallWindowProcW(pfnOld, hWnd, uMsg, wParam, lParam)
                  : DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

// ---------------------------------------------------------------- notifications

void VTRBListView::OnGetDispInfo(NMHDR* pHdr, bool bWide) {
    // Both forms share the LVITEM layout up to pszText; only the text differs.
    auto* pInfo = reinterpret_cast<NMLVDISPINFOW*>(pHdr);
    LVITEMW& item = pInfo->item;
    Row* pRow = reinterpret_cast<Row*>(item.lParam);
    if (!pRow)
        pRow = GetRow(item.iItem);
    if ((item.mask & LVIF_TEXT) && item.pszText && item.cchTextMax > 0) {
        wchar_t const* text = GetDataText(pRow, item.iItem, item.iSubItem, false);
        if (bWide) {
            StrNZCpy(item.pszText, text, static_cast<unsigned int>(item.cchTextMax));
        } else {
            char* out = reinterpret_cast<char*>(item.pszText);
            int n =
                WideCharToMultiByte(NVGetCurCodePage(), 0, text, -1, out, item.cchTextMax, nullptr, nullptr);
            if (n == 0)
                out[item.cchTextMax - 1] = 0;
        }
    }
    if (item.mask & LVIF_IMAGE) {
        if (m_bCheckBoxes && pRow && pRow->pbCheck && item.iSubItem == 0) {
            item.mask |= LVIF_STATE;
            item.stateMask |= LVIS_STATEIMAGEMASK;
            item.state = (item.state & ~LVIS_STATEIMAGEMASK) | (*pRow->pbCheck ? 0x2000 : 0x1000);
        }
        OnImageCallback(reinterpret_cast<LVITEMA*>(&item));
    }
    if (item.mask & LVIF_STATE) {
        if (m_bTreeMode && pRow && (pRow->dwFlags & VTR_ROW_HASCHILDS)) {
            item.stateMask |= LVIS_STATEIMAGEMASK;
            item.state = (item.state & ~LVIS_STATEIMAGEMASK) |
                         INDEXTOSTATEIMAGEMASK((pRow->dwFlags & VTR_ROW_EXPANDED) ? 1 : 2);
        }
        if (m_bCheckBoxes && pRow && pRow->pbCheck) {
            item.stateMask |= LVIS_STATEIMAGEMASK;
            item.state = (item.state & ~LVIS_STATEIMAGEMASK) | (*pRow->pbCheck ? 0x2000 : 0x1000);
        }
        OnStateCallback(reinterpret_cast<LVITEMA*>(&item));
    }
}

bool VTRBListView::ToggleOnStateIcon(NMITEMACTIVATE* pNM) {
    if (!m_bTreeMode || pNM->iItem < 0)
        return false;
    LVHITTESTINFO hit{};
    hit.pt = pNM->ptAction;
    SendMessageW(m_hWnd, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    Row* pRow = GetRow(pNM->iItem);
    if (hit.iItem != pNM->iItem || !(hit.flags & LVHT_ONITEMSTATEICON) || !pRow ||
        !(pRow->dwFlags & VTR_ROW_HASCHILDS))
        return false;
    ToggleExpandState(pNM->iItem);
    return true;
}

LRESULT VTRBListView::HandleNotify(WPARAM wParam, LPARAM lParam) {
    LRESULT result = VantrelBase::HandleNotify(wParam, lParam);
    if (result)
        return result;
    auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
    if (!pHdr || !m_hWnd || pHdr->hwndFrom != m_hWnd)
        return 0;
    switch (pHdr->code) {
    case LVN_GETDISPINFOW:
        OnGetDispInfo(pHdr, true);
        break;
    case LVN_GETDISPINFOA:
        OnGetDispInfo(pHdr, false);
        break;
    case LVN_DELETEITEM: {
        auto* pNM = reinterpret_cast<NMLISTVIEW*>(pHdr);
        RowDelete(pNM->iItem, reinterpret_cast<Row*>(pNM->lParam));
        break;
    }
    case LVN_COLUMNCLICK: {
        int const col = reinterpret_cast<NMLISTVIEW*>(pHdr)->iSubItem;
        if (GetKeyState(VK_CONTROL) < 0)
            _SetSecondSortCol(col, false);
        else
            SetSortMode(col, col == m_iSortCol ? !m_bSortDesc : false);
        break;
    }
    case LVN_KEYDOWN: {
        auto* pKey = reinterpret_cast<NMLVKEYDOWN*>(pHdr);
        int const focus =
            static_cast<int>(SendMessageW(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
        if (m_bTreeMode && focus >= 0) {
            if (pKey->wVKey == VK_ADD && ExpandItem(focus))
                pKey->wVKey = 0;
            else if (pKey->wVKey == VK_SUBTRACT && CollapsItem(focus))
                pKey->wVKey = 0;
        }
        OnKeyDown(pKey->wVKey);
        // Ctrl with a digit sorts: 1 to 9 are columns 0 to 8, 0 is column 10.
        if (GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0 && pKey->wVKey >= '0' &&
            pKey->wVKey <= '9') {
            int const col = pKey->wVKey == '0' ? 10 : pKey->wVKey - '1';
            if (GetKeyState(VK_SHIFT) < 0)
                _SetSecondSortCol(col, false);
            else
                SetSortMode(col, col == m_iSortCol ? !m_bSortDesc : false);
            pKey->wVKey = 0;
        }
        break;
    }
    case LVN_BEGINDRAG:
        OnBeginDrag(reinterpret_cast<NMLISTVIEW*>(pHdr));
        break;
    case LVN_BEGINRDRAG:
        OnBeginRDrag(reinterpret_cast<NMLISTVIEW*>(pHdr));
        break;
    case LVN_BEGINLABELEDITA:
    case LVN_BEGINLABELEDITW:
        result = OnBeginLabelEdit(reinterpret_cast<NMLVDISPINFOA*>(pHdr)) ? 1 : 0;
        break;
    case LVN_ENDLABELEDITA:
    case LVN_ENDLABELEDITW:
        result = OnEndLabelEdit(reinterpret_cast<NMLVDISPINFOA*>(pHdr)) ? 1 : 0;
        break;
    case NM_CUSTOMDRAW: {
        auto* pCD = reinterpret_cast<NMLVCUSTOMDRAW*>(pHdr);
        result = CDRF_DODEFAULT;
        if (!m_bTreeMode)
            break;
        // The tree lines go over the finished row: drawn earlier, the row's own painting would
        // cover them.
        if (pCD->nmcd.dwDrawStage == CDDS_PREPAINT) {
            if (m_bTreeInfoDirty)
                UpdateTreeInfo();
            result = CDRF_NOTIFYITEMDRAW;
        } else if (pCD->nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
            result = CDRF_NOTIFYPOSTPAINT;
        } else if (pCD->nmcd.dwDrawStage == CDDS_ITEMPOSTPAINT) {
            DrawTreeLines(pCD->nmcd.hdc, static_cast<int>(pCD->nmcd.dwItemSpec));
        }
        break;
    }
    case NM_CLICK: {
        auto* pNM = reinterpret_cast<NMITEMACTIVATE*>(pHdr);
        OnLClick(pNM->iItem);
        LVHITTESTINFO hit{};
        hit.pt = pNM->ptAction;
        SendMessageW(m_hWnd, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        if (!OnLClick(pNM->iItem, hit.iSubItem, &hit))
            ToggleOnStateIcon(pNM);
        break;
    }
    case NM_DBLCLK: {
        auto* pNM = reinterpret_cast<NMITEMACTIVATE*>(pHdr);
        if (!ToggleOnStateIcon(pNM))
            OnDblClick(pNM->iItem);
        break;
    }
    case NM_RCLICK:
        OnRClick(reinterpret_cast<NMITEMACTIVATE*>(pHdr)->iItem);
        break;
    case NM_SETFOCUS:
        OnSetFocus();
        break;
    case NM_KILLFOCUS:
        OnKillFocus();
        break;
    default:
        result = OnNotify(pHdr);
        break;
    }
    // The dialog manager clears the field before each message, and writing it costs a server round
    // trip under Wine for every notification, so only a result that is not 0 is written.
    HWND hParent = result ? GetParent(m_hWnd) : nullptr;
    if (hParent)
        SetWindowLongPtrW(hParent, DWLP_MSGRESULT, result);
    return result;
}

// ---------------------------------------------------------------- hooks with defaults

LRESULT VTRBListView::OnNotify(NMHDR*) {
    return 0;
}
bool VTRBListView::StoreSettings() {
    return false;
}
bool VTRBListView::RestoreSettings() {
    return false;
}

void VTRBListView::RowDelete(int item, Row* pRow) {
    if (!pRow)
        return;
    OnDeleteRow(item);
    if (pRow == m_pLastAddedRow)
        m_pLastAddedRow = nullptr;
    FreeRow(pRow);
    m_bTreeInfoDirty = true;
}

bool VTRBListView::IsDifferent(int item, int col) {
    return IsDifferent(GetRow(item), item, col);
}
bool VTRBListView::IsDifferent(Row*, int, int) {
    return false;
}
bool VTRBListView::OnGetComboBkColour(int, unsigned long&) {
    return false;
}
bool VTRBListView::DefineStructure(unsigned int, DynaArrayTpl<int, 0, 0>&) {
    return false;
}
void VTRBListView::OnSelChange(int) {}
void VTRBListView::OnCheckChange(int) {}
bool VTRBListView::OnIsSelChangeAllowed(NMLISTVIEW*) {
    return true;
}
bool VTRBListView::OnIsSelChangeAllowed() {
    return true;
}
bool VTRBListView::OnIsCheckChangeAllowed(NMLISTVIEW*) {
    return true;
}
bool VTRBListView::OnLButtonDown(int) {
    return true;
}
bool VTRBListView::OnLButtonUp(int) {
    return true;
}
void VTRBListView::OnDblClick(int) {}
void VTRBListView::OnRClick(int) {}
bool VTRBListView::OnLClick(int, int, LVHITTESTINFO*) {
    return false;
}
void VTRBListView::OnLClick(int) {}
void VTRBListView::OnKeyDown(unsigned int, LPARAM) {}
void VTRBListView::OnKeyDown(unsigned short) {}
void VTRBListView::OnDeleteRow(int) {}

void VTRBListView::SetDoubleBuffer(bool bOn) {
    if (m_hWnd)
        SendMessageW(m_hWnd, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_DOUBLEBUFFER,
                     bOn ? LVS_EX_DOUBLEBUFFER : 0);
}

void VTRBListView::OnItemPrepaint(NMLVCUSTOMDRAW*) {}
void VTRBListView::OnItemPostpaint(NMLVCUSTOMDRAW*) {}
void VTRBListView::OnSubItemPostpaint(NMLVCUSTOMDRAW*) {}
bool VTRBListView::OnItemDraw(int, LPARAM, HDC, unsigned long&, unsigned long&, unsigned int&, bool&) {
    return false;
}
bool VTRBListView::OnSubItemDraw(int, int, NMLVCUSTOMDRAW*, bool&) {
    return false;
}

bool VTRBListView::GetCurSel(LPARAM& lParam, int& item) {
    lParam = 0;
    item =
        m_hWnd
            ? static_cast<int>(SendMessageW(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED))
            : -1;
    if (item < 0)
        return false;
    if (m_bOwnerData)
        return true;
    return GetLParam(item, lParam);
}

int VTRBListView::GetSelItem() {
    LPARAM lParam = 0;
    int item = -1;
    return GetCurSel(lParam, item) ? item : -1;
}

bool VTRBListView::GetCurFocusSel(LPARAM& lParam, int& item) {
    lParam = 0;
    item = m_hWnd ? static_cast<int>(SendMessageW(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                                  LVNI_FOCUSED | LVNI_SELECTED))
                  : -1;
    if (item < 0)
        return false;
    if (m_bOwnerData)
        return true;
    return GetLParam(item, lParam);
}

void VTRBListView::OnImageCallback(LVITEMA*) {}
void VTRBListView::OnStateCallback(LVITEMA*) {}
bool VTRBListView::OnBeginLabelEdit(NMLVDISPINFOA*) {
    return false;
}
bool VTRBListView::OnEndLabelEdit(NMLVDISPINFOA*) {
    return false;
}
bool VTRBListView::IsEditable(int, int) {
    return false;
}
bool VTRBListView::OnCreateEditField(int, int, HWND) {
    return true;
}
bool VTRBListView::OnDestroyEditField(int, int, HWND) {
    return false;
}
bool VTRBListView::OnIsPassword(int, int) {
    return false;
}
bool VTRBListView::IsComboBox(int, int) {
    return false;
}
bool VTRBListView::IsComboBoxDisabled(int, int) {
    return false;
}
bool VTRBListView::OnIsComboBoxEx(int, int) {
    return false;
}
unsigned long VTRBListView::OnGetComboBoxWindowStyle(int, int) {
    return 0x200103;
}
bool VTRBListView::OnCreateComboBox(int, int, HWND) {
    return true;
}
bool VTRBListView::OnDestroyComboBox(int, int, HWND) {
    return false;
}
bool VTRBListView::OnGetComboBoxText(int, int, char*, int) {
    return false;
}
bool VTRBListView::IsComboBoxEnlargeOnLButtonDown() {
    return false;
}
bool VTRBListView::IsDateTimePicker(int, int) {
    return false;
}
unsigned long VTRBListView::OnDateTimePickerWindowStyle(int, int) {
    return 0x20;
}
bool VTRBListView::OnGetDateTimePickerRange(int, int, SYSTEMTIME&, SYSTEMTIME&) {
    return false;
}
bool VTRBListView::OnCreateDateTimePicker(int, int, HWND, SYSTEMTIME&) {
    return true;
}
bool VTRBListView::OnDestroyDateTimePicker(int, int, HWND, SYSTEMTIME&, SYSTEMTIME&) {
    return false;
}
bool VTRBListView::OnClearDateTimePickerField(int, int) {
    return false;
}
bool VTRBListView::OnDateTimePickerVirtKey(unsigned short, bool, bool, bool&) {
    return false;
}
bool VTRBListView::OnChildWindowMeasureItem(WPARAM, LPARAM) {
    return false;
}
bool VTRBListView::OnChildWindowDrawItem(WPARAM, LPARAM) {
    return false;
}
void VTRBListView::OnBeginDrag(NMLISTVIEW*) {}
void VTRBListView::OnBeginRDrag(NMLISTVIEW*) {}
bool VTRBListView::OnToolTip(int, int, POINT&, RECT&, char*&) {
    return false;
}
bool VTRBListView::OnDividerDblClick(NMHEADERA*) {
    return false;
}
int VTRBListView::OnPrintGetMinColWidth(int, int) {
    return 0;
}
unsigned long VTRBListView::OnGetTZIndex(int, int) {
    return 0;
}
bool VTRBListView::OnGetInvalidDateText(long, int, int, char*) {
    return false;
}
char const* VTRBListView::OnGetDateFormat(int, int, char const* lpszFormat) {
    return lpszFormat;
}
char const* VTRBListView::OnGetTimeFormat(int, int, char const* lpszFormat) {
    return lpszFormat;
}

void VTRBListView::OnNeedText(int, int, wchar_t* buf) {
    if (buf)
        buf[0] = 0;
}

bool VTRBListView::OnIsInCSVexport(int) {
    return true;
}
bool VTRBListView::IsExportAllowed() {
    return m_bExportAllowed;
}
void VTRBListView::SetExportAllowed(bool bAllowed) {
    m_bExportAllowed = bAllowed;
}
bool VTRBListView::OnGetCellText(void*, int, wchar_t*, unsigned int) {
    return false;
}
bool VTRBListView::OnGetCellText(int, int, wchar_t*, unsigned int) {
    return false;
}
int VTRBListView::OnCmp(void*, void*) {
    return 0;
}
unsigned long VTRBListView::IsCloneSource(int, int) {
    return 0;
}
bool VTRBListView::IsCloneDest(int, int, int, int, unsigned long) {
    return false;
}
bool VTRBListView::OnDoClone(int, int, int, int, unsigned long) {
    return false;
}
bool VTRBListView::OnBeginClone(int, int, int, int, unsigned long) {
    return true;
}
void VTRBListView::OnEndClone(int, int, unsigned long) {}
bool VTRBListView::OnNCHitTest(int, int, LRESULT&) {
    return false;
}
void VTRBListView::OnSize(WPARAM, LPARAM) {}
bool VTRBListView::GetMinMaxInfo(MINMAXINFO*) {
    return false;
}
bool VTRBListView::OnFilterButtonClick(NMHDFILTERBTNCLICK*) {
    return false;
}
void VTRBListView::OnFilterChanged(int) {}
void VTRBListView::OnSortModeChanged() {}
void VTRBListView::OnColumnWidthChanged(int, int) {}
void VTRBListView::OnColumnDrag(int, int) {}
bool VTRBListView::OnIsColumnHeaderBold(int) {
    return false;
}
bool VTRBListView::OnColumnHeaderCustomDraw(NMCUSTOMDRAW*, LRESULT*) {
    return false;
}
void VTRBListView::OnContextMenu() {}
void VTRBListView::OnSetFocus() {}
void VTRBListView::OnKillFocus() {}
bool VTRBListView::OnExpandItem(int, void*) {
    return false;
}
bool VTRBListView::OnCollapsItem(int item, void*) {
    return RemoveAllChilds(item);
}
void VTRBListView::OnExpandStateChanged(int) {}
bool VTRBListView::IsCheckBox(int, int) {
    return false;
}
bool VTRBListView::IsRadioButton(int, int) {
    return false;
}
bool VTRBListView::GetCheckBoxState(int, int) {
    return false;
}
bool VTRBListView::GetRadioButtonState(int, int) {
    return false;
}
bool VTRBListView::IsCheckDisabled(int, int) {
    return false;
}
bool VTRBListView::OnCheckBoxClick(int, int) {
    return false;
}
bool VTRBListView::OnRadioButtonClick(int, int) {
    return false;
}
bool VTRBListView::IsTriStateBox(int, int) {
    return false;
}
unsigned int VTRBListView::GetTriStateBoxState(int, int) {
    return 0;
}
bool VTRBListView::OnTriStateBoxClick(int, int) {
    return false;
}
wchar_t const* VTRBListView::GetCheckBoxText(int, int) {
    return nullptr;
}
bool VTRBListView::IsButton(int, int) {
    return false;
}
bool VTRBListView::IsButtonDisabled(int, int) {
    return false;
}
bool VTRBListView::GetButtonWith(int&) {
    return false;
}
char const* VTRBListView::GetButtonText(int, int) {
    return VTRStringTable::GetText(IDS_VTR_ELLIPSIS);
}
HICON VTRBListView::GetButtonIcon(int, int) {
    return nullptr;
}
bool VTRBListView::OnButtonClick(int, int) {
    return false;
}
bool VTRBListView::OnGetButtonPos(int, int, unsigned long&) {
    return false;
}
bool VTRBListView::OnEraseBkGnd(HDC) {
    return false;
}
bool VTRBListView::IsSubItemDraw(int) {
    return false;
}
bool VTRBListView::OnGetCodePage(LPARAM, int, void*, unsigned long&) {
    return false;
}
void VTRBListView::OnCommand(WPARAM, LPARAM) {}
LRESULT VTRBListView::OnChildsNotify(NMHDR*) {
    return 0;
}
bool VTRBListView::IsColumnSizeable(NMHEADERA*) {
    return false;
}
bool VTRBListView::SetImageIndSortDraw() {
    return true;
}
bool VTRBListView::ImportCSV(char const*, char, int, bool, bool, char const*) {
    return false;
}
