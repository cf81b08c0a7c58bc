// Column definition: the control's header columns and the typed Col records beside them.
#include "listview/VTRBListView.h"

#include "NVLanguage.h"
#include "NVStrings.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::wstring ToWide(char const* text) {
    if (!text)
        return std::wstring();
    int n = MultiByteToWideChar(NVGetCurCodePage(), 0, text, -1, nullptr, 0);
    if (n <= 0)
        return std::wstring();
    std::wstring out(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(NVGetCurCodePage(), 0, text, -1, &out[0], n);
    out.resize(static_cast<size_t>(n - 1));
    return out;
}

// One column tuple of the variable DefineCols protocol.
struct ColTuple {
    void const* title;
    unsigned long id;
    void const* sample;
    int width;
    int flags;
    VTRBDataType type;
    void* extra[3];
};

// Reads the extras of a type; a flag mask is a 32-bit value in its slot, everything else a pointer.
void ReadExtras(ColTuple& t, va_list& args) {
    t.extra[0] = t.extra[1] = t.extra[2] = nullptr;
    int const n = VTRBListView::GetExtraArgCnt(t.type);
    for (int i = 0; i < n; ++i) {
        if (t.type == VTDT_FLAG)
            t.extra[i] = reinterpret_cast<void*>(static_cast<uintptr_t>(va_arg(args, unsigned int)));
        else
            t.extra[i] = va_arg(args, void*);
    }
}

// Reads the next tuple behind the first; false at the null title that ends the list.
bool ReadTuple(ColTuple& t, va_list& args) {
    t.title = va_arg(args, void const*);
    if (!t.title)
        return false;
    t.id = va_arg(args, unsigned long);
    t.sample = va_arg(args, void const*);
    t.width = va_arg(args, int);
    t.flags = va_arg(args, int);
    t.type = static_cast<VTRBDataType>(va_arg(args, int));
    ReadExtras(t, args);
    return true;
}

} // namespace

Col* VTRBListView::GetCol(int col) {
    if (!m_pCols || col < 0 || col >= m_iColCnt)
        return nullptr;
    return &m_pCols[col];
}

VTRBDataType VTRBListView::GetColDataType(int col) {
    Col* pCol = GetCol(col);
    return pCol ? pCol->eType : VTDT_STRING;
}

unsigned long VTRBListView::GetColID(int col) {
    Col* pCol = GetCol(col);
    return pCol ? pCol->dwID : static_cast<unsigned long>(-1);
}

bool VTRBListView::SetColID(int col, unsigned long id) {
    Col* pCol = GetCol(col);
    if (!pCol)
        return false;
    pCol->dwID = id;
    return true;
}

int VTRBListView::FindColByID(unsigned long id) {
    for (int i = 0; i < m_iColCnt && m_pCols; ++i)
        if (m_pCols[i].dwID == id)
            return i;
    return -1;
}

bool VTRBListView::SetColIDs(int col, unsigned long id, ...) {
    if (!SetColID(col, id))
        return false;
    va_list args;
    va_start(args, id);
    bool ok = true;
    for (;;) {
        int next = va_arg(args, int);
        if (next < 0)
            break;
        unsigned long nextID = va_arg(args, unsigned long);
        if (!SetColID(next, nextID)) {
            ok = false;
            break;
        }
    }
    va_end(args);
    return ok;
}

bool VTRBListView::SetExtraColCnt(int count) {
    if (m_pCols || count < 0)
        return false;
    m_iExtraColCnt = count;
    return true;
}

int VTRBListView::InsertControlColumn(int pos, wchar_t const* title, wchar_t const* sample, int width,
                                      unsigned long flags, int skipCol, bool bUpdate) {
    std::wstring text = title ? title : L"";
    if (m_bTrimColTitle && !text.empty()) {
        StrTrim(&text[0]);
        text.resize(wcslen(text.c_str()));
    }
    HWND hHeader = reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0));
    int const count = hHeader ? static_cast<int>(SendMessageW(hHeader, HDM_GETITEMCOUNT, 0, 0)) : 0;
    if (width == 0) {
        width = static_cast<int>(
                    SendMessageW(m_hWnd, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text.c_str()))) +
                12;
        if (sample) {
            int w = static_cast<int>(
                        SendMessageW(m_hWnd, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(sample))) +
                    12;
            if (w > width)
                width = w;
        }
    } else if (width < 0) {
        RECT rc{};
        GetClientRect(m_hWnd, &rc);
        width = rc.right - rc.left - GetSystemMetrics(SM_CXVSCROLL) - 1;
        for (int i = 0; i < count; ++i)
            if (i != skipCol)
                width -= static_cast<int>(SendMessageW(m_hWnd, LVM_GETCOLUMNWIDTH, i, 0));
        if (width < 0)
            width = 0;
    }
    LVCOLUMNW lvc{};
    lvc.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    lvc.fmt = static_cast<int>(flags & 0xFFFF);
    lvc.cx = width;
    lvc.pszText = &text[0];
    if (bUpdate) {
        lvc.iSubItem = pos;
        return SendMessageW(m_hWnd, LVM_SETCOLUMNW, pos, reinterpret_cast<LPARAM>(&lvc)) ? pos : -1;
    }
    if (pos < 0 || pos > count)
        pos = count;
    lvc.iSubItem = pos;
    return static_cast<int>(SendMessageW(m_hWnd, LVM_INSERTCOLUMNW, pos, reinterpret_cast<LPARAM>(&lvc)));
}

void VTRBListView::FillColFromArgs(Col& c, VTRBDataType type, unsigned long flags, void* e1, void* e2,
                                   void* e3, unsigned long id, int col) {
    int const n = GetExtraArgCnt(type);
    c.eType = type;
    c.pExtra1 = n > 0 ? e1 : nullptr;
    c.pExtra2 = n > 1 ? e2 : nullptr;
    c.pExtra3 = n > 2 ? e3 : nullptr;
    c.dwColFlags = (flags >> 15) & 30;
    c.dwFormat = flags;
    c.dwID = id;
    c.iDefWidth = static_cast<int>(SendMessageW(m_hWnd, LVM_GETCOLUMNWIDTH, col, 0));
}

bool VTRBListView::DefineColsImpl(bool bWide, void const* title, unsigned long id, void const* sample,
                                  int width, int flags, VTRBDataType type, va_list args) {
    if (!m_hWnd || !IsWindow(m_hWnd) || m_pCols || m_iColCnt > 0)
        return false;
    auto text = [bWide](void const* p) {
        return bWide ? std::wstring(p ? static_cast<wchar_t const*>(p) : L"")
                     : ToWide(static_cast<char const*>(p));
    };
    va_list first;
    va_copy(first, args);
    ColTuple t{title, id, sample, width, flags, type, {nullptr, nullptr, nullptr}};
    ReadExtras(t, first);
    do {
        if (!(t.flags & VTR_COLFMT_SKIP)) {
            std::wstring s = text(t.sample);
            if (InsertControlColumn(-1, text(t.title).c_str(), t.sample ? s.c_str() : nullptr, t.width,
                                    static_cast<unsigned long>(t.flags), -1, false) >= 0)
                ++m_iColCnt;
        }
    } while (ReadTuple(t, first));
    va_end(first);

    m_iColMaxCnt = m_iColCnt + m_iExtraColCnt;
    m_pCols = new Col[m_iColMaxCnt > 0 ? m_iColMaxCnt : 1]();

    va_list second;
    va_copy(second, args);
    t = ColTuple{title, id, sample, width, flags, type, {nullptr, nullptr, nullptr}};
    ReadExtras(t, second);
    int col = 0;
    do {
        if (!(t.flags & VTR_COLFMT_SKIP) && col < m_iColCnt) {
            FillColFromArgs(m_pCols[col], t.type, static_cast<unsigned long>(t.flags), t.extra[0], t.extra[1],
                            t.extra[2], t.id, col);
            ++col;
        }
    } while (ReadTuple(t, second));
    va_end(second);
    return true;
}

bool VTRBListView::DefineCols(char const* title, unsigned long id, char const* sample, int width, int flags,
                              VTRBDataType type, ...) {
    va_list args;
    va_start(args, type);
    bool ok = DefineColsImpl(false, title, id, sample, width, flags, type, args);
    va_end(args);
    return ok;
}

bool VTRBListView::DefineCols(wchar_t const* title, unsigned long id, wchar_t const* sample, int width,
                              int flags, VTRBDataType type, ...) {
    va_list args;
    va_start(args, type);
    bool ok = DefineColsImpl(true, title, id, sample, width, flags, type, args);
    va_end(args);
    return ok;
}

bool VTRBListView::DefineCols(DynaArrayTpl<VTRBListViewCol, 0, 0>& cols) {
    if (!m_hWnd || !IsWindow(m_hWnd) || m_pCols || m_iColCnt > 0 || cols.GetCount() == 0)
        return false;
    DynaArrayTpl<VTRBListViewColW, 0, 0> wide;
    std::wstring* keep = new std::wstring[static_cast<size_t>(cols.GetCount()) * 2];
    for (int i = 0; i < cols.GetCount(); ++i) {
        VTRBListViewCol const& c = *cols.Get(i);
        keep[i * 2] = ToWide(c.lpszTitle);
        keep[i * 2 + 1] = ToWide(c.lpszSample);
        VTRBListViewColW w{keep[i * 2].c_str(),
                           c.lpszSample ? keep[i * 2 + 1].c_str() : nullptr,
                           c.iWidth,
                           c.dwFlags,
                           c.eType,
                           c.pExtra1,
                           c.pExtra2,
                           c.pExtra3,
                           c.dwColFlags,
                           c.dwID};
        wide.Add(w);
    }
    bool ok = DefineCols(wide);
    delete[] keep;
    return ok;
}

bool VTRBListView::DefineCols(DynaArrayTpl<VTRBListViewColW, 0, 0>& cols) {
    if (!m_hWnd || !IsWindow(m_hWnd) || m_pCols || m_iColCnt > 0 || cols.GetCount() == 0)
        return false;
    int* made = new int[static_cast<size_t>(cols.GetCount())];
    for (int i = 0; i < cols.GetCount(); ++i) {
        VTRBListViewColW const& c = *cols.Get(i);
        made[i] = 0;
        if (c.dwFlags & VTR_COLFMT_SKIP)
            continue;
        if (InsertControlColumn(-1, c.lpszTitle, c.lpszSample, c.iWidth, c.dwFlags, -1, false) >= 0) {
            made[i] = 1;
            ++m_iColCnt;
        }
    }
    m_iColMaxCnt = m_iColCnt + m_iExtraColCnt;
    m_pCols = new Col[m_iColMaxCnt > 0 ? m_iColMaxCnt : 1]();
    int col = 0;
    for (int i = 0; i < cols.GetCount(); ++i) {
        if (!made[i])
            continue;
        VTRBListViewColW const& c = *cols.Get(i);
        FillColFromArgs(m_pCols[col], c.eType, c.dwFlags, c.pExtra1, c.pExtra2, c.pExtra3, c.dwID, col);
        // The array form is the one way to flags beyond those the raw flags give.
        m_pCols[col].dwColFlags = c.dwColFlags;
        ++col;
    }
    delete[] made;
    return true;
}

int VTRBListView::InsertColImpl(int pos, wchar_t const* title, wchar_t const* sample, int width, int flags,
                                VTRBDataType type, void* extra1, void* extra2, void* extra3,
                                unsigned long id) {
    if (!m_hWnd || !m_pCols || m_iColCnt >= m_iColMaxCnt || static_cast<unsigned>(type) >= VTDT_COUNT)
        return -1;
    if (pos < 0 || pos > m_iColCnt)
        pos = m_iColCnt;
    int const got =
        InsertControlColumn(pos, title, sample, width, static_cast<unsigned long>(flags), -1, false);
    if (got < 0)
        return -1;
    pos = got;
    memmove(&m_pCols[pos + 1], &m_pCols[pos], sizeof(Col) * static_cast<size_t>(m_iColCnt - pos));
    m_pCols[pos] = Col{};
    FillColFromArgs(m_pCols[pos], type, static_cast<unsigned long>(flags), extra1, extra2, extra3, id, pos);
    int const items = GetItemCount();
    for (int i = 0; i < items; ++i) {
        Row* pRow = GetRow(i);
        if (!pRow)
            continue;
        memmove(&pRow->cells[pos + 1], &pRow->cells[pos],
                sizeof(RowCell) * static_cast<size_t>(m_iColCnt - pos));
        pRow->cells[pos] = RowCell{nullptr, nullptr};
    }
    ++m_iColCnt;
    // The header items moved with the control's columns, so the arrows already stand right.
    if (m_iSortCol >= pos) {
        ++m_iSortCol;
        OnSortModeChanged();
    }
    if (static_cast<long>(SortKeyWord()) >= pos) {
        ++m_wSecondSortCol;
        OnSortModeChanged();
    }
    return pos;
}

int VTRBListView::InsertCol(int pos, char const* title, char const* sample, int width, int flags,
                            VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id) {
    std::wstring s = ToWide(sample);
    return InsertColImpl(pos, ToWide(title).c_str(), sample ? s.c_str() : nullptr, width, flags, type, extra1,
                         extra2, extra3, id);
}

int VTRBListView::InsertCol(int pos, wchar_t const* title, wchar_t const* sample, int width, int flags,
                            VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id) {
    return InsertColImpl(pos, title, sample, width, flags, type, extra1, extra2, extra3, id);
}

bool VTRBListView::UpdateColImpl(int col, wchar_t const* title, wchar_t const* sample, int width, int flags,
                                 VTRBDataType type, void* extra1, void* extra2, void* extra3,
                                 unsigned long id) {
    Col* pCol = GetCol(col);
    if (!pCol || static_cast<unsigned>(type) >= VTDT_COUNT)
        return false;
    if (InsertControlColumn(col, title, sample, width, static_cast<unsigned long>(flags), col, true) < 0)
        return false;
    if (col == m_iSortCol)
        _SetSortMode(col, m_bSortDesc, true, true);
    *pCol = Col{};
    FillColFromArgs(*pCol, type, static_cast<unsigned long>(flags), extra1, extra2, extra3, id, col);
    // The old cell word has no meaning under the new definition.
    int const items = GetItemCount();
    for (int i = 0; i < items; ++i) {
        Row* pRow = GetRow(i);
        if (pRow)
            pRow->cells[col] = RowCell{nullptr, nullptr};
    }
    return true;
}

bool VTRBListView::UpdateCol(int col, char const* title, char const* sample, int width, int flags,
                             VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id) {
    std::wstring s = ToWide(sample);
    return UpdateColImpl(col, ToWide(title).c_str(), sample ? s.c_str() : nullptr, width, flags, type, extra1,
                         extra2, extra3, id);
}

bool VTRBListView::UpdateCol(int col, wchar_t const* title, wchar_t const* sample, int width, int flags,
                             VTRBDataType type, void* extra1, void* extra2, void* extra3, unsigned long id) {
    return UpdateColImpl(col, title, sample, width, flags, type, extra1, extra2, extra3, id);
}

bool VTRBListView::RemoveCol(int col) {
    if (!GetCol(col))
        return false;
    if (!SendMessageW(m_hWnd, LVM_DELETECOLUMN, col, 0))
        return false;
    memmove(&m_pCols[col], &m_pCols[col + 1], sizeof(Col) * static_cast<size_t>(m_iColCnt - col - 1));
    m_pCols[m_iColCnt - 1] = Col{};
    int const items = GetItemCount();
    for (int i = 0; i < items; ++i) {
        Row* pRow = GetRow(i);
        if (!pRow)
            continue;
        memmove(&pRow->cells[col], &pRow->cells[col + 1],
                sizeof(RowCell) * static_cast<size_t>(m_iColCnt - col - 1));
        pRow->cells[m_iColCnt - 1] = RowCell{nullptr, nullptr};
    }
    --m_iColCnt;
    // The second and third key are one word: only a removed second key with third key 0 matches it.
    if (SortKeyWord() == static_cast<unsigned long>(col)) {
        m_wSecondSortCol = 0xFFFF;
        OnSortModeChanged();
    } else if (m_wSecondSortCol != 0xFFFF && m_wSecondSortCol > col) {
        --m_wSecondSortCol;
        OnSortModeChanged();
    }
    if (m_iSortCol == col) {
        m_iSortCol = -1;
        OnSortModeChanged();
    } else if (m_iSortCol > col) {
        --m_iSortCol;
        OnSortModeChanged();
    }
    return true;
}

bool VTRBListView::FillVTRBListViewCol(int col, VTRBListViewCol& out) {
    Col* pCol = GetCol(col);
    if (!pCol)
        return false;
    out.lpszTitle = nullptr;
    out.lpszSample = nullptr;
    out.iWidth = GetColumnWidth(col);
    out.dwFlags = pCol->dwFormat;
    out.eType = pCol->eType;
    out.pExtra1 = pCol->pExtra1;
    out.pExtra2 = pCol->pExtra2;
    out.pExtra3 = pCol->pExtra3;
    out.dwColFlags = pCol->dwColFlags;
    out.dwID = pCol->dwID;
    return true;
}

bool VTRBListView::GetColTitle(int col, wchar_t* buf, unsigned int size) {
    if (!m_hWnd || !buf || size == 0 || col < 0 || col >= m_iColCnt)
        return false;
    LVCOLUMNW lvc{};
    lvc.mask = LVCF_TEXT;
    lvc.pszText = buf;
    lvc.cchTextMax = static_cast<int>(size);
    buf[0] = 0;
    return SendMessageW(m_hWnd, LVM_GETCOLUMNW, col, reinterpret_cast<LPARAM>(&lvc)) != 0;
}

bool VTRBListView::GetColTitle(int col, char* buf, unsigned int size) {
    if (!buf || size == 0)
        return false;
    wchar_t wbuf[260];
    if (!GetColTitle(col, wbuf, 260))
        return false;
    if (!WideCharToMultiByte(NVGetCurCodePage(), 0, wbuf, -1, buf, static_cast<int>(size), nullptr, nullptr))
        buf[size - 1] = 0;
    return true;
}

bool VTRBListView::SetColTitle(int col, wchar_t const* title) {
    if (!m_hWnd || col < 0 || col >= m_iColCnt)
        return false;
    LVCOLUMNW lvc{};
    lvc.mask = LVCF_TEXT;
    lvc.pszText = const_cast<wchar_t*>(title ? title : L"");
    return SendMessageW(m_hWnd, LVM_SETCOLUMNW, col, reinterpret_cast<LPARAM>(&lvc)) != 0;
}

bool VTRBListView::SetColTitle(int col, char const* title) {
    return SetColTitle(col, ToWide(title).c_str());
}

bool VTRBListView::SetHeaderText(int col, char const* title) {
    if (!m_hWnd)
        return false;
    HWND hHeader = reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0));
    if (!hHeader)
        return false;
    wchar_t* text = NVMakeUNICODEWindowText(title ? title : "");
    HDITEMW hdi{};
    hdi.mask = HDI_TEXT;
    hdi.pszText = text;
    bool ok = SendMessageW(hHeader, HDM_SETITEMW, col, reinterpret_cast<LPARAM>(&hdi)) != 0;
    NVFreeUNICODEWindowText(text);
    return ok;
}

int VTRBListView::GetColumnWidth(int col) {
    if (!m_hWnd)
        return 0;
    return static_cast<int>(SendMessageW(m_hWnd, LVM_GETCOLUMNWIDTH, col, 0));
}

void VTRBListView::SetColumnWidth(int col, int width) {
    if (!m_hWnd)
        return;
    SendMessageW(m_hWnd, WM_SETREDRAW, FALSE, 0);
    SendMessageW(m_hWnd, LVM_SETCOLUMNWIDTH, col, width < 0 ? LVSCW_AUTOSIZE_USEHEADER : width);
    SendMessageW(m_hWnd, WM_SETREDRAW, TRUE, 0);
}

bool VTRBListView::SetColmnWidth() {
    if (!m_hWnd)
        return false;
    int const items = GetItemCount();
    if (m_iColCnt <= 0 || items <= 0)
        return true;
    int* widths = new int[static_cast<size_t>(m_iColCnt)]();
    for (int i = 0; i < items; ++i) {
        Row* pRow = GetRow(i);
        for (int c = 0; c < m_iColCnt; ++c) {
            wchar_t const* text = GetDataText(pRow, i, c, false);
            int w = static_cast<int>(
                        SendMessageW(m_hWnd, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text))) +
                    12;
            if (w > widths[c])
                widths[c] = w;
        }
    }
    SendMessageW(m_hWnd, WM_SETREDRAW, FALSE, 0);
    for (int c = 0; c < m_iColCnt; ++c)
        SendMessageW(m_hWnd, LVM_SETCOLUMNWIDTH, c, widths[c]);
    SendMessageW(m_hWnd, WM_SETREDRAW, TRUE, 0);
    delete[] widths;
    return true;
}

bool VTRBListView::EnsureColVisible(int col) {
    if (!m_hWnd || col < 0 || col >= m_iColCnt)
        return false;
    HWND hHeader = reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0));
    RECT rcItem{}, rcClient{};
    if (!hHeader || !SendMessageW(hHeader, HDM_GETITEMRECT, col, reinterpret_cast<LPARAM>(&rcItem)))
        return false;
    GetClientRect(m_hWnd, &rcClient);
    int const scroll = GetScrollPos(m_hWnd, SB_HORZ);
    int const left = rcItem.left - scroll;
    int const right = rcItem.right - scroll;
    if (left < rcClient.left || right > rcClient.right)
        SendMessageW(m_hWnd, LVM_SCROLL, left - rcClient.left, 0);
    return true;
}

bool VTRBListView::EnsureVisible(int item) {
    return m_hWnd && SendMessageW(m_hWnd, LVM_ENSUREVISIBLE, item, FALSE) != 0;
}

void VTRBListView::Reset() {
    ClearAll();
    if (m_hWnd && IsWindow(m_hWnd)) {
        // From the last column on: deleting the first one shifts all others, which makes thousands of
        // columns take minutes.
        HWND hHeader = reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0));
        int n = hHeader ? static_cast<int>(SendMessageW(hHeader, HDM_GETITEMCOUNT, 0, 0)) : 0;
        while (n > 0 && SendMessageW(m_hWnd, LVM_DELETECOLUMN, static_cast<WPARAM>(n - 1), 0))
            --n;
        while (SendMessageW(m_hWnd, LVM_DELETECOLUMN, 0, 0))
            ;
    }
    delete[] m_pCols;
    m_pCols = nullptr;
    m_iColCnt = 0;
}

void VTRBListView::ClearAll() {
    if (m_hWnd && IsWindow(m_hWnd))
        SendMessageW(m_hWnd, LVM_DELETEALLITEMS, 0, 0);
    m_iLastAddedItem = -1;
    m_bTreeInfoDirty = true;
}
