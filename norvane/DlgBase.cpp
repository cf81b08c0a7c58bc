// DlgBase: life of the dialog, its procedure, the size-and-move layout, the remembered position and
// the activation of tab pages before a field gets the focus.
#include "DlgBase.h"

#include "DlgBaseInternal.h"

#include "NVApp.h"
#include "NVLanguage.h"
#include "NVStrings.h"

#include <commctrl.h>

#include <string>

using namespace nvdlg;

namespace {
// The object is kept in a window property rather than DWLP_USER, which derived dialogs may use.
wchar_t const kDlgBaseProp[] = L"Prop_NVDlgBase";
char const kHistSubKey[] = "DlgPos";

bool IsCheckOrRadio(HWND hButton) {
    switch (GetWindowLongW(hButton, GWL_STYLE) & BS_TYPEMASK) {
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
    case BS_3STATE:
    case BS_AUTO3STATE:
        return true;
    default:
        return false;
    }
}

enum FocusEvent { FOCUS_NONE, FOCUS_SET, FOCUS_KILL };

// WM_COMMAND codes mean different things per class; sort them into value changes and focus moves.
bool ClassifyCommand(HWND hCtrl, UINT uCode, FocusEvent& focus) {
    focus = FOCUS_NONE;
    if (IsClass(hCtrl, L"Edit")) {
        focus = uCode == EN_SETFOCUS ? FOCUS_SET : uCode == EN_KILLFOCUS ? FOCUS_KILL : FOCUS_NONE;
        return uCode == EN_CHANGE;
    }
    if (IsClass(hCtrl, L"ComboBox")) {
        focus = uCode == CBN_SETFOCUS ? FOCUS_SET : uCode == CBN_KILLFOCUS ? FOCUS_KILL : FOCUS_NONE;
        return uCode == CBN_SELCHANGE || uCode == CBN_EDITCHANGE;
    }
    if (IsClass(hCtrl, L"ListBox")) {
        focus = uCode == LBN_SETFOCUS ? FOCUS_SET : uCode == LBN_KILLFOCUS ? FOCUS_KILL : FOCUS_NONE;
        return uCode == LBN_SELCHANGE;
    }
    if (IsClass(hCtrl, L"Button")) {
        focus = uCode == BN_SETFOCUS ? FOCUS_SET : uCode == BN_KILLFOCUS ? FOCUS_KILL : FOCUS_NONE;
        return uCode == BN_CLICKED && IsCheckOrRadio(hCtrl);
    }
    return false;
}

std::string HistKeyPath() {
    char path[512];
    StrNZCpy(path, NVGetRegAppBaseKey(), sizeof path);
    AppendFile(path, kHistSubKey);
    return path;
}
} // namespace

DlgBase::DlgBase(HWND hParent)
    : m_hWnd(nullptr), m_hParent(hParent), m_iTabPage(-1), m_hTabWnd(nullptr), m_iTabPage2(-1),
      m_hTabWnd2(nullptr), m_bModal(false), m_bChanged(false),
      m_bHasMinMax(false), m_ptMin{0, 0}, m_ptMax{0, 0} {
    m_szHistIdent[0] = 0;
}

DlgBase::~DlgBase() {
    // A modeless dialog must not outlive its object: its procedure would call into freed memory.
    if (m_hWnd && IsWindow(m_hWnd) && GetDlgBasePtr(m_hWnd) == this) {
        RemovePropW(m_hWnd, kDlgBaseProp);
        if (!m_bModal)
            DestroyWindow(m_hWnd);
    }
}

void DlgBase::OnDlgInit() {}
void DlgBase::OnFieldChange(int, HWND, UINT) {}
bool DlgBase::OnVetoClose(int) {
    return false;
}
void DlgBase::OnDlgDestroy() {}
void DlgBase::OnSetFocus(HWND) {}
void DlgBase::OnKillFocus(HWND) {}

void DlgBase::DlgClose(int iResult) {
    if (!m_hWnd || OnVetoClose(iResult))
        return;
    if (m_bModal)
        EndDialog(m_hWnd, iResult);
    else
        DestroyWindow(m_hWnd);
}

int DlgBase::DlgOpen(HINSTANCE hInst, int iTemplateId, HWND hParent) {
    if (m_hWnd)
        return -1;
    m_bModal = true;
    m_hParent = hParent;
    INT_PTR r;
    if (NVIsUNICodeDlg())
        r = DialogBoxParamW(hInst, MAKEINTRESOURCEW(iTemplateId), hParent, &DlgBase::StaticDlgProc,
                            reinterpret_cast<LPARAM>(this));
    else
        r = DialogBoxParamA(hInst, MAKEINTRESOURCEA(iTemplateId), hParent, &DlgBase::StaticDlgProc,
                            reinterpret_cast<LPARAM>(this));
    m_bModal = false;
    return static_cast<int>(r);
}

HWND DlgBase::DlgCreateModeless(HINSTANCE hInst, int iTemplateId, HWND hParent) {
    if (m_hWnd)
        return nullptr;
    m_bModal = false;
    m_hParent = hParent;
    if (NVIsUNICodeDlg())
        return CreateDialogParamW(hInst, MAKEINTRESOURCEW(iTemplateId), hParent, &DlgBase::StaticDlgProc,
                                  reinterpret_cast<LPARAM>(this));
    return CreateDialogParamA(hInst, MAKEINTRESOURCEA(iTemplateId), hParent, &DlgBase::StaticDlgProc,
                              reinterpret_cast<LPARAM>(this));
}

void DlgBase::SetHistIdent(char const* lpszIdent) {
    StrNZCpy(m_szHistIdent, lpszIdent ? lpszIdent : "", sizeof m_szHistIdent);
}

DlgBase* DlgBase::GetDlgBasePtr(HWND hWnd) {
    if (!hWnd || !IsWindow(hWnd))
        return nullptr;
    return static_cast<DlgBase*>(GetPropW(hWnd, kDlgBaseProp));
}

INT_PTR CALLBACK DlgBase::StaticDlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    DlgBase* self;
    if (uMsg == WM_INITDIALOG) {
        self = reinterpret_cast<DlgBase*>(lParam);
        SetPropW(hWnd, kDlgBaseProp, self);
        self->m_hWnd = hWnd;
    } else {
        self = GetDlgBasePtr(hWnd);
    }
    if (!self)
        return FALSE;
    INT_PTR r = self->DlgProc(hWnd, uMsg, wParam, lParam);
    if (uMsg == WM_INITDIALOG && self->m_hWnd == hWnd) {
        // Only now has the derived class registered its layout, so the restored size lays it out;
        // and filling the fields must not count as the user's change.
        self->RestoreHistPos();
        self->m_bChanged = false;
    } else if (uMsg == WM_NCDESTROY) {
        RemovePropW(hWnd, kDlgBaseProp);
        if (self->m_hWnd == hWnd)
            self->m_hWnd = nullptr;
        self->m_items.clear();
    }
    return r;
}

INT_PTR DlgBase::DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    switch (uMsg) {
    case WM_INITDIALOG:
        m_hWnd = hWnd;
        m_bChanged = false;
        OnDlgInit();
        return TRUE;
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED)
            ApplyLayout();
        return FALSE;
    case WM_GETMINMAXINFO:
        if (m_bHasMinMax) {
            auto* mmi = reinterpret_cast<MINMAXINFO*>(lParam);
            mmi->ptMinTrackSize = m_ptMin;
            if (m_ptMax.x > 0)
                mmi->ptMaxTrackSize.x = m_ptMax.x;
            if (m_ptMax.y > 0)
                mmi->ptMaxTrackSize.y = m_ptMax.y;
            return TRUE;
        }
        return FALSE;
    case WM_COMMAND: {
        HWND hCtrl = reinterpret_cast<HWND>(lParam);
        if (!hCtrl)
            return FALSE;
        FocusEvent focus;
        if (ClassifyCommand(hCtrl, HIWORD(wParam), focus)) {
            m_bChanged = true;
            OnFieldChange(LOWORD(wParam), hCtrl, HIWORD(wParam));
        } else if (focus == FOCUS_SET) {
            OnSetFocus(hCtrl);
        } else if (focus == FOCUS_KILL) {
            OnKillFocus(hCtrl);
        }
        return FALSE;
    }
    case WM_NOTIFY: {
        auto* hdr = reinterpret_cast<NMHDR*>(lParam);
        if (hdr && hdr->code == DTN_DATETIMECHANGE) {
            m_bChanged = true;
            OnFieldChange(static_cast<int>(hdr->idFrom), hdr->hwndFrom, hdr->code);
        }
        return FALSE;
    }
    case WM_CLOSE:
        DlgClose(IDCANCEL);
        return TRUE;
    case WM_DESTROY:
        StoreHistPos();
        OnDlgDestroy();
        return FALSE;
    default:
        return FALSE;
    }
}

// ---- Remembered position

void DlgBase::StoreHistPos() {
    if (!m_szHistIdent[0] || !m_hWnd || IsIconic(m_hWnd))
        return;
    RECT rc;
    if (!GetWindowRect(m_hWnd, &rc))
        return;
    LONG data[4] = {rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top};
    HKEY hKey;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, HistKeyPath().c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &hKey,
                        nullptr) != ERROR_SUCCESS)
        return;
    RegSetValueExA(hKey, m_szHistIdent, 0, REG_BINARY, reinterpret_cast<BYTE const*>(data), sizeof data);
    RegCloseKey(hKey);
}

void DlgBase::RestoreHistPos() {
    if (!m_szHistIdent[0] || !m_hWnd)
        return;
    HKEY hKey;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, HistKeyPath().c_str(), 0, KEY_READ, &hKey) != ERROR_SUCCESS)
        return;
    LONG data[4];
    DWORD cb = sizeof data, type = 0;
    LONG rc = RegQueryValueExA(hKey, m_szHistIdent, nullptr, &type, reinterpret_cast<BYTE*>(data), &cb);
    RegCloseKey(hKey);
    if (rc != ERROR_SUCCESS || type != REG_BINARY || cb != sizeof data || data[2] <= 0 || data[3] <= 0)
        return;
    // A position saved on a monitor that is gone would put the dialog out of reach.
    RECT saved = {data[0], data[1], data[0] + data[2], data[1] + data[3]};
    if (!MonitorFromRect(&saved, MONITOR_DEFAULTTONULL))
        return;
    UINT flags = SWP_NOZORDER | SWP_NOACTIVATE;
    // A dialog without a sizing frame keeps the size of its template.
    if (!(GetWindowLongW(m_hWnd, GWL_STYLE) & WS_THICKFRAME))
        flags |= SWP_NOSIZE;
    HWND hOwner = GetParent(m_hWnd);
    POINT pt = {saved.left, saved.top};
    if (GetWindowLongW(m_hWnd, GWL_STYLE) & WS_CHILD)
        ScreenToClient(hOwner, &pt);
    SetWindowPos(m_hWnd, nullptr, pt.x, pt.y, data[2], data[3], flags);
}

// ---- Size and move

bool DlgBase::AddSizeMoveItem(HWND hCtrl, unsigned long dwFlags, int iPart, int iParts) {
    if (!m_hWnd || !hCtrl || !IsChild(m_hWnd, hCtrl))
        return false;
    SizeMoveItem item{};
    item.hCtrl = hCtrl;
    item.dwFlags = dwFlags;
    item.iPart = iPart;
    item.iParts = iParts;
    GetWindowRect(hCtrl, &item.rcStart);
    MapWindowPoints(nullptr, GetParent(hCtrl), reinterpret_cast<POINT*>(&item.rcStart), 2);
    RECT rcClient;
    GetClientRect(m_hWnd, &rcClient);
    item.sizeClient = {rcClient.right, rcClient.bottom};
    for (SizeMoveItem& existing : m_items) {
        if (existing.hCtrl == hCtrl) {
            existing = item;
            return true;
        }
    }
    m_items.push_back(item);
    return true;
}

void DlgBase::ApplyLayout() {
    if (!m_hWnd || m_items.empty())
        return;
    RECT rcClient;
    GetClientRect(m_hWnd, &rcClient);
    for (SizeMoveItem const& item : m_items) {
        if (!IsWindow(item.hCtrl))
            continue;
        int dx = rcClient.right - item.sizeClient.cx;
        int dy = rcClient.bottom - item.sizeClient.cy;
        RECT rc = item.rcStart;
        unsigned long f = item.dwFlags;
        if (f & NVSM_SIZE_X)
            rc.right += dx;
        if (f & NVSM_SIZE_Y)
            rc.bottom += dy;
        if (f & (NVSM_MOVE_X | NVSM_MOVE_XY)) {
            rc.left += dx;
            rc.right += dx;
        }
        if (f & (NVSM_MOVE_Y | NVSM_MOVE_XY)) {
            rc.top += dy;
            rc.bottom += dy;
        }
        bool bShared = item.iParts >= 1 && item.iPart >= 0 && item.iPart < item.iParts;
        if (f & NVSM_SIZE_X_PART) {
            if (bShared) {
                rc.left += dx * item.iPart / item.iParts;
                rc.right += dx * (item.iPart + 1) / item.iParts;
            } else {
                rc.right += dx;
            }
        }
        if (f & NVSM_SIZE_Y_PART) {
            if (bShared) {
                rc.top += dy * item.iPart / item.iParts;
                rc.bottom += dy * (item.iPart + 1) / item.iParts;
            } else {
                rc.bottom += dy;
            }
        }
        if (rc.right < rc.left)
            rc.right = rc.left;
        if (rc.bottom < rc.top)
            rc.bottom = rc.top;
        SetWindowPos(item.hCtrl, nullptr, rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    InvalidateRect(m_hWnd, nullptr, TRUE);
}

bool DlgBase::SetMinMaxPos(POINT* pMin, POINT* pMax) {
    if (!m_hWnd)
        return false;
    if (pMin) {
        m_ptMin = *pMin;
    } else {
        RECT rc;
        GetWindowRect(m_hWnd, &rc);
        m_ptMin = {rc.right - rc.left, rc.bottom - rc.top};
    }
    m_ptMax = pMax ? *pMax : POINT{0, 0};
    m_bHasMinMax = true;
    return true;
}

bool DlgBase::GetDlgItemPosAndSize(int id, POINT* pPos, SIZE* pSize) {
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    RECT rc;
    GetWindowRect(hCtrl, &rc);
    MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&rc), 2);
    if (pPos)
        *pPos = {rc.left, rc.top};
    if (pSize)
        *pSize = {rc.right - rc.left, rc.bottom - rc.top};
    return true;
}

bool DlgBase::SetDlgItemPosAndSize(int id, HWND hInsertAfter, POINT* pPos, SIZE* pSize,
                                   unsigned long dwSWPFlags, unsigned long dwSizeMoveFlags, int* pDX,
                                   int* pDY) {
    HWND hCtrl = ItemOf(id);
    POINT pos;
    SIZE size;
    if (!hCtrl || !GetDlgItemPosAndSize(id, &pos, &size))
        return false;
    UINT flags = static_cast<UINT>(dwSWPFlags) | SWP_NOACTIVATE;
    if (!hInsertAfter)
        flags |= SWP_NOZORDER;
    if (!pPos)
        flags |= SWP_NOMOVE;
    if (!pSize)
        flags |= SWP_NOSIZE;
    POINT newPos = pPos ? *pPos : pos;
    SIZE newSize = pSize ? *pSize : size;
    if (!SetWindowPos(hCtrl, hInsertAfter, newPos.x, newPos.y, newSize.cx, newSize.cy, flags))
        return false;
    if (pDX)
        *pDX = newSize.cx - size.cx;
    if (pDY)
        *pDY = newSize.cy - size.cy;
    if (dwSizeMoveFlags)
        AddSizeMoveItem(hCtrl, dwSizeMoveFlags, 0, -1);
    return true;
}

bool DlgBase::SetWindowPosAndSize(HWND hWnd, POINT* pPos, SIZE* pSize, bool bRepaint) {
    if (!hWnd || !IsWindow(hWnd))
        return false;
    UINT flags = SWP_NOZORDER | SWP_NOACTIVATE;
    if (!pPos)
        flags |= SWP_NOMOVE;
    if (!pSize)
        flags |= SWP_NOSIZE;
    if (!bRepaint)
        flags |= SWP_NOREDRAW;
    return SetWindowPos(hWnd, nullptr, pPos ? pPos->x : 0, pPos ? pPos->y : 0, pSize ? pSize->cx : 0,
                        pSize ? pSize->cy : 0, flags) != FALSE;
}

// ---- Tab pages and focus

bool DlgBase::SelectTabPage_(HWND hTab, int iPage) {
    if (!hTab || !IsWindow(hTab) || iPage < 0 ||
        iPage >= static_cast<int>(SendMessageW(hTab, TCM_GETITEMCOUNT, 0, 0)))
        return false;
    if (static_cast<int>(SendMessageW(hTab, TCM_GETCURSEL, 0, 0)) == iPage)
        return true;
    // TCM_SETCURSEL alone sends no notification: the owner would keep showing the old page.
    HWND hOwner = GetParent(hTab);
    NMHDR hdr{hTab, static_cast<UINT_PTR>(GetDlgCtrlID(hTab)), static_cast<UINT>(TCN_SELCHANGING)};
    if (SendMessageW(hOwner, WM_NOTIFY, hdr.idFrom, reinterpret_cast<LPARAM>(&hdr)))
        return false;
    SendMessageW(hTab, TCM_SETCURSEL, static_cast<WPARAM>(iPage), 0);
    hdr.code = static_cast<UINT>(TCN_SELCHANGE);
    SendMessageW(hOwner, WM_NOTIFY, hdr.idFrom, reinterpret_cast<LPARAM>(&hdr));
    return true;
}

void DlgBase::SetFocusToControl(HWND hCtrl) {
    if (m_iTabPage >= 0) {
        if (m_hTabWnd && IsWindow(m_hTabWnd))
            SelectTabPage_(m_hTabWnd, m_iTabPage);
        else if (m_hWnd && GetParent(m_hWnd))
            SendMessageW(GetParent(m_hWnd), NVWM_ACTIVATE_TABPAGE, static_cast<WPARAM>(m_iTabPage), 0);
    }
    if (m_iTabPage2 >= 0 && m_hTabWnd2 && IsWindow(m_hTabWnd2))
        SelectTabPage_(m_hTabWnd2, m_iTabPage2);
    if (!hCtrl || !IsWindow(hCtrl))
        return;
    SetFocus(hCtrl);
    // The user is to retype the value: select it all.
    if (IsClass(hCtrl, L"Edit"))
        SendMessageW(hCtrl, EM_SETSEL, 0, -1);
}

HWND DlgBase::ItemOf(int id) const {
    return m_hWnd ? GetDlgItem(m_hWnd, id) : nullptr;
}
