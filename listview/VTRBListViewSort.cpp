// Sorting by up to three keys with one direction, sum rows last and tree children under parents.
#include "listview/VTRBListView.h"

#include "NVStrings.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <vector>

namespace {

template <class T> int Sign(T a, T b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

int SignOf(long long d) {
    return d < 0 ? -1 : (d > 0 ? 1 : 0);
}

int CardKey(unsigned int v) {
    if (v == 0)
        return 0;
    int const year = static_cast<int>((v >> 8) & 0xFF);
    int const month = static_cast<int>(v & 0xFF);
    return month + (year + 1900 + (year < 80 ? 100 : 0)) * 12;
}

// Null rule: both null are equal, a null value is less than any value.
bool NullOrder(void const* a, void const* b, int& r) {
    if (a && b)
        return false;
    r = (a ? 1 : 0) - (b ? 1 : 0);
    return true;
}

long TimeKey(long t, bool bWholeDate) {
    return bWholeDate ? t : t % 86400;
}

// Index of the character before a text's trailing digits, or 0 when the digits reach the start.
int TrailingStop(char const* s) {
    int i = static_cast<int>(strlen(s)) - 1;
    while (i > 0 && isdigit(static_cast<unsigned char>(s[i])))
        --i;
    return i < 0 ? 0 : i;
}

} // namespace

// The ranks of the rows' texts in the string key columns, built once per sort of a long list: the
// locale's case-insensitive comparison is slow, and a sort asks it many times for the same few
// texts. Identical texts share a rank, so only the distinct texts meet that comparison; equal rank
// means the comparison finds them equal. Indexed by the row's place in the array being sorted.
struct SortRanks {
    std::vector<int> rowRank[3]; // -1 where the row has no text
    int colIndex[3] = {-1, -1, -1};
};

namespace {

int const kRankMinRows = 64;

// Writing a row back into its item makes the control send two notifications to the parent; its own
// sort moves items without any, but its merging grows faster than n log n. Up to this many items
// the control moves them, into the order found here.
int const kControlMovesMaxRows = 32768;

// What the control keeps per item besides the row; it moves with the row.
UINT const kMovingStates =
    LVIS_SELECTED | LVIS_FOCUSED | LVIS_CUT | LVIS_DROPHILITED | LVIS_OVERLAYMASK | LVIS_STATEIMAGEMASK;

struct ItemState {
    Row* pRow;
    int iImage;
    int iIndent;
    UINT state;
};

// Writes each item's new row into it, with the image, indent and states that go with the row. An
// item's own text (one that a client put in without a row) stays where it is. pfnDirect, when not
// null, is the control's own procedure, which may take the messages without the dispatcher.
void PutRowsBack(HWND hWnd, WNDPROC pfnDirect, std::vector<ItemState> const& items,
                 std::vector<int> const& order) {
    int const count = static_cast<int>(items.size());
    std::vector<ItemState> sorted(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        sorted[static_cast<size_t>(i)] = items[static_cast<size_t>(order[static_cast<size_t>(i)])];
    SendMessageW(hWnd, WM_SETREDRAW, FALSE, 0);
    for (int i = 0; i < count; ++i) {
        ItemState const& now = items[static_cast<size_t>(i)];
        ItemState const& want = sorted[static_cast<size_t>(i)];
        if (now.pRow == want.pRow)
            continue;
        // Only what differs is written: each field costs the control work and notifications.
        LVITEMW lvi{};
        lvi.mask = LVIF_PARAM;
        lvi.iItem = i;
        lvi.lParam = reinterpret_cast<LPARAM>(want.pRow);
        if (want.iImage != now.iImage) {
            lvi.mask |= LVIF_IMAGE;
            lvi.iImage = want.iImage;
        }
        if (want.iIndent != now.iIndent) {
            lvi.mask |= LVIF_INDENT;
            lvi.iIndent = want.iIndent;
        }
        if (want.state != now.state) {
            lvi.mask |= LVIF_STATE;
            lvi.stateMask = kMovingStates;
            lvi.state = want.state;
        }
        if (pfnDirect)
            pfnDirect(hWnd, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
        else
            SendMessageW(hWnd, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
    }
    SendMessageW(hWnd, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(hWnd, nullptr, FALSE);
}

// The place each row takes in the new order, found by the row's address: the whole comparison the
// control's sort needs.
class RowPlaces {
public:
    RowPlaces(std::vector<Row*> const& rows, std::vector<int> const& order) {
        size_t slots = 16;
        while (slots < rows.size() * 2)
            slots *= 2;
        m_mask = slots - 1;
        m_table.assign(slots, Entry{nullptr, 0});
        for (size_t i = 0; i < order.size() && m_bValid; ++i) {
            Row* const pRow = rows[static_cast<size_t>(order[i])];
            // Items without a row come first and keep their order among themselves; the control's
            // merge is stable, so one place serves them all.
            if (!pRow)
                continue;
            size_t h = Hash(pRow);
            while (m_table[h].pRow && m_table[h].pRow != pRow)
                h = (h + 1) & m_mask;
            if (m_table[h].pRow)
                m_bValid = false; // a row in two items: places by address cannot tell them apart
            m_table[h] = Entry{pRow, static_cast<int>(i)};
        }
    }

    // False when two items share a row.
    bool IsValid() const { return m_bValid; }

    static int CALLBACK Compare(LPARAM row1, LPARAM row2, LPARAM self) {
        RowPlaces const* pThis = reinterpret_cast<RowPlaces const*>(self);
        return pThis->PlaceOf(reinterpret_cast<Row*>(row1)) - pThis->PlaceOf(reinterpret_cast<Row*>(row2));
    }

private:
    struct Entry {
        Row* pRow;
        int iPlace;
    };

    size_t Hash(Row const* p) const {
        return static_cast<size_t>((reinterpret_cast<uintptr_t>(p) >> 4) * 0x9E3779B97F4A7C15ull >> 17) &
               m_mask;
    }

    int PlaceOf(Row* pRow) const {
        if (!pRow)
            return -1;
        for (size_t h = Hash(pRow); m_table[h].pRow; h = (h + 1) & m_mask)
            if (m_table[h].pRow == pRow)
                return m_table[h].iPlace;
        return 0;
    }

    std::vector<Entry> m_table;
    size_t m_mask = 0;
    bool m_bValid = true;
};

bool IsRankedColumn(Col const& c) {
    switch (c.eType) {
    case VTDT_STRING:
    case VTDT_LPSTR:
        return !(c.dwColFlags & (VTR_COLF_NUMSTRING | VTR_COLF_TRAILNUMBER));
    case VTDT_WSTRING:
    case VTDT_LPWSTR:
        return !(c.dwColFlags & VTR_COLF_NUMSTRING);
    default:
        return false;
    }
}

int RawCompare(void const* a, void const* b, bool bWide) {
    return bWide ? wcscmp(static_cast<wchar_t const*>(a), static_cast<wchar_t const*>(b))
                 : strcmp(static_cast<char const*>(a), static_cast<char const*>(b));
}

int LocaleCompare(void const* a, void const* b, bool bWide) {
    return bWide ? lstrcmpiW(static_cast<wchar_t const*>(a), static_cast<wchar_t const*>(b))
                 : lstrcmpiA(static_cast<char const*>(a), static_cast<char const*>(b));
}

} // namespace

void VTRBListView::BuildSortRanks(Row* const* rows, int count) {
    delete m_pSortRanks;
    m_pSortRanks = nullptr;
    if (count < kRankMinRows || !m_pCols)
        return;
    int const keys[3] = {m_iSortCol, m_wSecondSortCol, m_wThirdSortCol};
    SortRanks* pRanks = new SortRanks;
    for (int k = 0; k < 3; ++k) {
        int const col = keys[k];
        if (col < 0 || col >= m_iColCnt || !IsRankedColumn(m_pCols[col]))
            continue;
        bool const bWide = m_pCols[col].eType == VTDT_WSTRING || m_pCols[col].eType == VTDT_LPWSTR;
        std::vector<int>& rowRank = pRanks->rowRank[k];
        rowRank.assign(static_cast<size_t>(count), -1);
        struct Text {
            void const* text;
            int iRow;
        };
        std::vector<Text> texts;
        texts.reserve(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i)
            if (rows[i] && rows[i]->cells[col].pValue)
                texts.push_back(Text{rows[i]->cells[col].pValue, i});
        // Identical texts side by side; the first of each run stands for it.
        std::sort(texts.begin(), texts.end(),
                  [bWide](Text const& a, Text const& b) { return RawCompare(a.text, b.text, bWide) < 0; });
        struct Run {
            size_t first, end;
        };
        std::vector<Run> runs;
        for (size_t i = 0; i < texts.size(); ++i)
            if (runs.empty() || RawCompare(texts[runs.back().first].text, texts[i].text, bWide) != 0)
                runs.push_back(Run{i, i + 1});
            else
                runs.back().end = i + 1;
        std::stable_sort(runs.begin(), runs.end(), [&texts, bWide](Run const& a, Run const& b) {
            return LocaleCompare(texts[a.first].text, texts[b.first].text, bWide) < 0;
        });
        int rank = 0;
        for (size_t r = 0; r < runs.size(); ++r) {
            if (r > 0 && LocaleCompare(texts[runs[r - 1].first].text, texts[runs[r].first].text, bWide) != 0)
                ++rank;
            for (size_t i = runs[r].first; i < runs[r].end; ++i)
                rowRank[static_cast<size_t>(texts[i].iRow)] = rank;
        }
        pRanks->colIndex[k] = col;
    }
    m_pSortRanks = pRanks;
}

bool VTRBListView::RankOf(int col, int iRow, int& rank) const {
    if (!m_pSortRanks || iRow < 0)
        return false;
    for (int k = 0; k < 3; ++k) {
        if (m_pSortRanks->colIndex[k] != col)
            continue;
        std::vector<int> const& rowRank = m_pSortRanks->rowRank[k];
        if (static_cast<size_t>(iRow) >= rowRank.size())
            return false;
        rank = rowRank[static_cast<size_t>(iRow)];
        return rank >= 0;
    }
    return false;
}

int VTRBListView::CompareCells(Row* a, Row* b, Col const& c, int col, bool& bFinal, int ia, int ib) {
    void* const va = a->cells[col].pValue;
    void* const vb = b->cells[col].pValue;
    uintptr_t const wa = reinterpret_cast<uintptr_t>(va);
    uintptr_t const wb = reinterpret_cast<uintptr_t>(vb);
    int r = 0;
    switch (c.eType) {
    case VTDT_STRING:
    case VTDT_LPSTR: {
        if (NullOrder(va, vb, r))
            return r;
        char const* sa = static_cast<char const*>(va);
        char const* sb = static_cast<char const*>(vb);
        if ((c.dwColFlags & VTR_COLF_NUMSTRING) && isdigit(static_cast<unsigned char>(sa[0])) &&
            isdigit(static_cast<unsigned char>(sb[0]))) {
            char* ea = nullptr;
            char* eb = nullptr;
            double const da = strtod(sa, &ea);
            double const db = strtod(sb, &eb);
            if (da != db)
                return da < db ? -1 : 1;
            return lstrcmpiA(ea, eb);
        }
        if ((c.dwColFlags & VTR_COLF_TRAILNUMBER) && !TestLeer(sa) && !TestLeer(sb)) {
            int const ia = TrailingStop(sa);
            int const ib = TrailingStop(sb);
            int const lastA = static_cast<int>(strlen(sa)) - 1;
            int const lastB = static_cast<int>(strlen(sb)) - 1;
            if (ia == 0 && ib == 0) {
                if (isdigit(static_cast<unsigned char>(sa[0])) && isdigit(static_cast<unsigned char>(sb[0])))
                    return Sign(atoi(sa), atoi(sb));
                return lstrcmpiA(sa, sb);
            }
            // Without trailing digits on both sides there is no number to compare: plain text.
            if (ia != ib || (ia == lastA && ib == lastB))
                return lstrcmpiA(sa, sb);
            r = StrNICmp(sa, sb, static_cast<unsigned int>(ia));
            if (r != 0) {
                bFinal = true;
                return m_bSortDesc ? -r : r;
            }
            return Sign(atoi(sa + ia + 1), atoi(sb + ib + 1));
        }
        int ra = 0, rb = 0;
        if (RankOf(col, ia, ra) && RankOf(col, ib, rb))
            return Sign(ra, rb);
        return lstrcmpiA(sa, sb);
    }
    case VTDT_WSTRING:
    case VTDT_LPWSTR: {
        if (NullOrder(va, vb, r))
            return r;
        wchar_t const* sa = static_cast<wchar_t const*>(va);
        wchar_t const* sb = static_cast<wchar_t const*>(vb);
        if ((c.dwColFlags & VTR_COLF_NUMSTRING) && iswdigit(sa[0]) && iswdigit(sb[0])) {
            wchar_t* ea = nullptr;
            wchar_t* eb = nullptr;
            double const da = wcstod(sa, &ea);
            double const db = wcstod(sb, &eb);
            if (da != db)
                return da < db ? -1 : 1;
            return lstrcmpiW(ea, eb);
        }
        int ra = 0, rb = 0;
        if (RankOf(col, ia, ra) && RankOf(col, ib, rb))
            return Sign(ra, rb);
        return lstrcmpiW(sa, sb);
    }
    case VTDT_int:
    case VTDT_int32_CUSTOM:
        return Sign(static_cast<int32_t>(wa), static_cast<int32_t>(wb));
    case VTDT_DWORD:
    case VTDT_DWORD_NOT_NULL:
        return Sign(static_cast<uint32_t>(wa), static_cast<uint32_t>(wb));
    case VTDT_WORD:
        return Sign(static_cast<uint16_t>(wa), static_cast<uint16_t>(wb));
    case VTDT_LPINT:
    case VTDT_LPint32_CUSTOM:
        if (NullOrder(va, vb, r))
            return r;
        return Sign(*static_cast<int32_t const*>(va), *static_cast<int32_t const*>(vb));
    case VTDT_LPDWORD:
        if (NullOrder(va, vb, r))
            return r;
        return Sign(*static_cast<uint32_t const*>(va), *static_cast<uint32_t const*>(vb));
    case VTDT_TIME_T:
        return SignOf(static_cast<long long>(TimeKey(static_cast<int32_t>(wa), c.pExtra1 != nullptr)) -
                      TimeKey(static_cast<int32_t>(wb), c.pExtra1 != nullptr));
    case VTDT_LPTIME_T:
        if (NullOrder(va, vb, r))
            return r;
        return SignOf(static_cast<long long>(TimeKey(*static_cast<long const*>(va), c.pExtra1 != nullptr)) -
                      TimeKey(*static_cast<long const*>(vb), c.pExtra1 != nullptr));
    case VTDT_DOUBLE:
    case VTDT_LPDOUBLE:
        if (NullOrder(va, vb, r))
            return r;
        return Sign(*static_cast<double const*>(va), *static_cast<double const*>(vb));
    case VTDT_CARD_DATE:
        return Sign(CardKey(static_cast<uint16_t>(wa)), CardKey(static_cast<uint16_t>(wb)));
    case VTDT_LPCARD_DATE:
        if (NullOrder(va, vb, r))
            return r;
        return Sign(CardKey(*static_cast<uint16_t const*>(va)), CardKey(*static_cast<uint16_t const*>(vb)));
    case VTDT_CALLBACK:
    case VTDT_CALLBACK_PTR:
        if (!c.pExtra2)
            return 0;
        return reinterpret_cast<VTRCellCompareFunc>(c.pExtra2)(va, a->lParam, vb, b->lParam, col, c.pExtra3);
    case VTDT_SYSTEMTIME:
    case VTDT_LPSYSTEMTIME: {
        if (NullOrder(va, vb, r))
            return r;
        FILETIME fa{}, fb{};
        if (!SystemTimeToFileTime(static_cast<SYSTEMTIME const*>(va), &fa))
            fa = FILETIME{};
        if (!SystemTimeToFileTime(static_cast<SYSTEMTIME const*>(vb), &fb))
            fb = FILETIME{};
        return CompareFileTime(&fa, &fb);
    }
    case VTDT_CHECKBOX:
        if (NullOrder(va, vb, r))
            return r;
        return (*static_cast<bool const*>(va) ? 1 : 0) - (*static_cast<bool const*>(vb) ? 1 : 0);
    case VTDT_QWORD: {
        unsigned long long const qa = va ? *static_cast<unsigned long long const*>(va) : 0;
        unsigned long long const qb = vb ? *static_cast<unsigned long long const*>(vb) : 0;
        return Sign(qa, qb);
    }
    case VTDT_CHECKROW:
        if (col != 0)
            return 0;
        if (NullOrder(a->pbCheck, b->pbCheck, r))
            return r;
        return (*a->pbCheck ? 1 : 0) - (*b->pbCheck ? 1 : 0);
    case VTDT_FLAG: {
        uintptr_t const mask = reinterpret_cast<uintptr_t>(c.pExtra1);
        return Sign(wa & mask, wb & mask);
    }
    case VTDT_bool:
        return (wa ? 1 : 0) - (wb ? 1 : 0);
    default:
        return 0;
    }
}

int VTRBListView::Compare(Row* a, Row* b, int level, int ia, int ib) {
    if (level == 0 && m_bTreeMode && a->pParent != b->pParent) {
        // A descendant follows its ancestor, whatever the direction.
        for (Row* p = a->pParent; p; p = p->pParent)
            if (p == b)
                return 1;
        for (Row* p = b->pParent; p; p = p->pParent)
            if (p == a)
                return -1;
        // Otherwise the two ancestors that are siblings decide, so a subtree moves as a whole.
        for (Row* x = a; x; x = x->pParent)
            for (Row* y = b; y; y = y->pParent)
                if (x->pParent == y->pParent)
                    return Compare(x, y, 0);
        return Compare(a->pParent ? a->pParent : a, b->pParent ? b->pParent : b, 0);
    }
    bool const bSumA = (a->dwFlags & VTR_ROW_SUM) != 0;
    bool const bSumB = (b->dwFlags & VTR_ROW_SUM) != 0;
    if (bSumA != bSumB)
        return bSumA ? 1 : -1;
    if (bSumA && m_bSortSumRowsLParam && a->lParam != b->lParam)
        return a->lParam < b->lParam ? -1 : 1;
    int r = OnCmp(a->pData, b->pData);
    if (r != 0)
        return r;
    // Creation order stands in for a key in a tree: blocks are allocated in rising order.
    auto const addressOrder = [this, a, b]() {
        int d = SignOf((reinterpret_cast<intptr_t>(a) - reinterpret_cast<intptr_t>(b)) / 32);
        return m_bSortDesc ? -d : d;
    };
    if (m_iSortCol < 0 || m_iSortCol >= m_iColCnt || !m_pCols) {
        if (m_bTreeMode)
            return addressOrder();
        if (m_bSortSumRowsLParam)
            return Sign(a->lParam, b->lParam);
        return 0;
    }
    bool bFinal = false;
    r = CompareCells(a, b, m_pCols[m_iSortCol], m_iSortCol, bFinal, ia, ib);
    if (bFinal)
        return r;
    if (r != 0)
        return m_bSortDesc ? -r : r;
    if (level == 0) {
        int const first = m_iSortCol;
        if (m_wSecondSortCol != first) {
            m_iSortCol = m_wSecondSortCol;
            r = Compare(a, b, 1, ia, ib);
        }
        if (r == 0 && m_wThirdSortCol != m_iSortCol) {
            m_iSortCol = m_wThirdSortCol;
            r = Compare(a, b, 2, ia, ib);
        }
        m_iSortCol = first;
        if (r != 0)
            return r;
    }
    if (m_bTreeMode)
        return addressOrder();
    return 0;
}

int CALLBACK VTRBListView::CompareFunc(LPARAM row1, LPARAM row2, LPARAM list) {
    auto* pThis = reinterpret_cast<VTRBListView*>(list);
    Row* a = reinterpret_cast<Row*>(row1);
    Row* b = reinterpret_cast<Row*>(row2);
    if (!pThis || !a || !b)
        return (a ? 1 : 0) - (b ? 1 : 0);
    return pThis->Compare(a, b, 0);
}

int VTRBListView::CompareFuncWithContext(void* list, Row* a, Row* b) {
    return CompareFunc(reinterpret_cast<LPARAM>(a), reinterpret_cast<LPARAM>(b),
                       reinterpret_cast<LPARAM>(list));
}

bool VTRBListView::SetHeaderImage(int col, int image, bool bNoSide) {
    if (!m_hWnd || col < 0 || col >= m_iColCnt)
        return false;
    HWND hHeader = reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0));
    if (!hHeader)
        return false;
    HDITEMW hdi{};
    hdi.mask = HDI_FORMAT | HDI_IMAGE;
    if (!SendMessageW(hHeader, HDM_GETITEMW, col, reinterpret_cast<LPARAM>(&hdi)))
        return false;
    if (image < 0) {
        hdi.fmt &= ~(HDF_IMAGE | HDF_BITMAP_ON_RIGHT);
    } else {
        hdi.iImage = image;
        hdi.fmt |= HDF_IMAGE;
        // A right-aligned title keeps the picture on its left, where the text does not run into it.
        if (!bNoSide && (hdi.fmt & HDF_JUSTIFYMASK) != HDF_RIGHT)
            hdi.fmt |= HDF_BITMAP_ON_RIGHT;
    }
    return SendMessageW(hHeader, HDM_SETITEMW, col, reinterpret_cast<LPARAM>(&hdi)) != 0;
}

bool VTRBListView::_SetSortMode(int col, bool bDesc, bool bNoResort, bool bSetImage) {
    if (col >= m_iColCnt)
        return false;
    if (bSetImage) {
        if (m_iSortCol >= 0 && m_iSortCol < m_iColCnt)
            SetHeaderImage(m_iSortCol, m_iSortCol == m_wSecondSortCol ? m_iImgSortDesc + 1 : -1, false);
        m_iSortCol = col;
        m_bSortDesc = bDesc;
        if (col >= 0)
            SetHeaderImage(col, bDesc ? m_iImgSortDesc : m_iImgSortAsc, false);
    } else {
        m_iSortCol = col;
        m_bSortDesc = bDesc;
    }
    OnSortModeChanged();
    return bNoResort ? true : Resort(false);
}

bool VTRBListView::SetSortMode(int col, bool bDesc) {
    return _SetSortMode(col, bDesc, false, SetImageIndSortDraw());
}

bool VTRBListView::_SetSecondSortCol(int col, bool bNoResort) {
    if (col == m_wSecondSortCol)
        return true;
    if (m_wSecondSortCol < m_iColCnt && m_wSecondSortCol != m_iSortCol)
        SetHeaderImage(m_wSecondSortCol, -1, false);
    m_wSecondSortCol = static_cast<unsigned short>(col);
    if (m_wSecondSortCol < m_iColCnt && m_wSecondSortCol != m_iSortCol)
        SetHeaderImage(m_wSecondSortCol, m_iImgSortDesc + 1, false);
    OnSortModeChanged();
    return bNoResort ? true : Resort(false);
}

void VTRBListView::SetSecondSortCol(int col) {
    _SetSecondSortCol(col, false);
}

void VTRBListView::SetSecondSortCols(int second, int third) {
    m_wSecondSortCol = static_cast<unsigned short>(second);
    m_wThirdSortCol = static_cast<unsigned short>(third);
}

bool VTRBListView::SetSortable(bool bSortable) {
    HWND hHeader = m_hWnd ? reinterpret_cast<HWND>(SendMessageW(m_hWnd, LVM_GETHEADER, 0, 0)) : nullptr;
    if (!hHeader || !IsWindow(hHeader))
        return false;
    LONG_PTR style = GetWindowLongPtrW(hHeader, GWL_STYLE);
    style = bSortable ? (style | HDS_BUTTONS) : (style & ~static_cast<LONG_PTR>(HDS_BUTTONS));
    SetWindowLongPtrW(hHeader, GWL_STYLE, style);
    return true;
}

// The control's own sort merges by shifting entries and grows worse than n log n on long lists, so
// the rows are ordered here with the same comparison and put back into the items. What the control
// keeps per item (image, indent, selection, focus, check and other state bits) moves with its row.
bool VTRBListView::Resort(bool bKeepPosition) {
    if (!m_hWnd || !IsWindow(m_hWnd))
        return false;
    m_bTreeInfoDirty = true;
    if (m_bOwnerData)
        return true;
    int const count = GetItemCount();
    if (count > 1) {
        std::vector<ItemState> items(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) {
            LVITEMW lvi{};
            lvi.mask = LVIF_PARAM | LVIF_IMAGE | LVIF_INDENT | LVIF_STATE;
            lvi.iItem = i;
            lvi.stateMask = kMovingStates;
            if (!SendToControl(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi)))
                return false;
            items[static_cast<size_t>(i)] = ItemState{reinterpret_cast<Row*>(lvi.lParam), lvi.iImage,
                                                      lvi.iIndent, lvi.state & kMovingStates};
        }
        std::vector<Row*> rows(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i)
            rows[static_cast<size_t>(i)] = items[static_cast<size_t>(i)].pRow;
        BuildSortRanks(rows.data(), count);
        // Places are sorted rather than the items: they move cheaply and name the rows' ranks.
        std::vector<int> order(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i)
            order[static_cast<size_t>(i)] = i;
        std::stable_sort(order.begin(), order.end(), [this, &rows](int x, int y) {
            Row* const a = rows[static_cast<size_t>(x)];
            Row* const b = rows[static_cast<size_t>(y)];
            if (!a || !b)
                return (a ? 1 : 0) < (b ? 1 : 0);
            return Compare(a, b, 0, x, y) < 0;
        });
        delete m_pSortRanks;
        m_pSortRanks = nullptr;
        bool bMoved = false;
        if (count <= kControlMovesMaxRows) {
            RowPlaces const places(rows, order);
            bMoved =
                places.IsValid() && SendMessageW(m_hWnd, LVM_SORTITEMS, reinterpret_cast<WPARAM>(&places),
                                                 reinterpret_cast<LPARAM>(&RowPlaces::Compare));
        }
        if (!bMoved)
            PutRowsBack(m_hWnd, DirectControlProc(), items, order);
    }
    if (!bKeepPosition) {
        int const focus =
            static_cast<int>(SendMessageW(m_hWnd, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
        if (focus >= 0)
            SendMessageW(m_hWnd, LVM_ENSUREVISIBLE, focus, FALSE);
    }
    return true;
}
