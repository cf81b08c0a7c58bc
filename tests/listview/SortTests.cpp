#include "ListFixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

using lvtest::ListHost;
using lvtest::TestList;

namespace {

char const* const kEnd = nullptr;

void* W(intptr_t v) {
    return reinterpret_cast<void*>(v);
}

std::vector<LPARAM> Reversed(std::vector<LPARAM> v) {
    return std::vector<LPARAM>(v.rbegin(), v.rend());
}

int ReverseInts(void* a, LPARAM, void* b, LPARAM, int, void*) {
    return static_cast<int>(reinterpret_cast<intptr_t>(b) - reinterpret_cast<intptr_t>(a));
}

// Every neighbour pair is in the comparison's order.
void ExpectSortedByComparison(ListHost<>& h) {
    for (int i = 0; i + 1 < h.list.GetItemCount(); ++i)
        EXPECT_LE(VTRBListView::CompareFunc(reinterpret_cast<LPARAM>(h.list.Get(i)),
                                            reinterpret_cast<LPARAM>(h.list.Get(i + 1)),
                                            reinterpret_cast<LPARAM>(&h.list)),
                  0)
            << "items " << i << " and " << i + 1;
}

// Sorts through the control with the same comparison.
std::vector<LPARAM> OrderByControlSort(ListHost<>& h) {
    EXPECT_TRUE(SendMessageW(h.hList, LVM_SORTITEMS, reinterpret_cast<WPARAM>(&h.list),
                             reinterpret_cast<LPARAM>(&VTRBListView::CompareFunc)));
    return h.Order();
}

} // namespace

TEST(ListSort, EachTypeOrdersByItsRuleInBothDirections) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols(
        "S", 0, nullptr, 30, 0, VTDT_STRING, "I", 1, nullptr, 30, 0, VTDT_int,          // 0 1
        "D", 2, nullptr, 30, 0, VTDT_DWORD, "PD", 3, nullptr, 30, 0, VTDT_LPDOUBLE, "", // 2 3
        "CD", 4, nullptr, 30, 0, VTDT_CARD_DATE, "T", 5, nullptr, 30, 0, VTDT_TIME_T,   // 4 5
        nullptr, nullptr, "Q", 6, nullptr, 30, 0, VTDT_QWORD,                           // 6
        "CB", 7, nullptr, 30, 0, VTDT_CHECKBOX, "WS", 8, nullptr, 30, 0, VTDT_WSTRING,  // 7 8
        "F", 9, nullptr, 30, 0, VTDT_FLAG, 2u, "ST", 10, nullptr, 30, 0, VTDT_SYSTEMTIME, nullptr,
        nullptr,                                                                 // 9 10
        "CB", 11, nullptr, 30, 0, VTDT_CALLBACK, nullptr, &ReverseInts, nullptr, // 11
        "PI", 12, nullptr, 30, 0, VTDT_LPINT, "B", 13, nullptr, 30, 0, VTDT_bool, "TD", 14, nullptr, 30, 0,
        VTDT_TIME_T, "dd", nullptr, kEnd)); // 12 13 14
    double d[] = {1.5, -2, 1.25, 100};
    unsigned long long q[] = {5, 1ull << 63, 1, 7, 0};
    bool t = true, f = false;
    SYSTEMTIME st[5] = {{2024, 1, 0, 2, 0, 0, 0, 0},
                        {2023, 12, 0, 31, 23, 59, 59, 999},
                        {2024, 1, 0, 2, 0, 0, 0, 1},
                        {2020, 6, 0, 1, 0, 0, 0, 0},
                        {2025, 1, 0, 1, 0, 0, 0, 0}};
    int pi[] = {3, -9, 0, 2};
    struct {
        char const* s;
        int i;
        unsigned d;
        double* pd;
        int card;
        int time;
        bool* cb;
        wchar_t const* ws;
        unsigned flag;
        int* pi;
        int b;
    } const rows[5] = {
        {"beta", 5, 1, &d[0], 0x6303, 10 * 86400 + 3600, &t, L"b", 3, &pi[0], 1},
        {"Alpha", -3, 4000000000u, nullptr, 0x050C, 1 * 86400 + 7200, &f, L"A", 1, nullptr, 0},
        {nullptr, 100, 2, &d[1], 0x0001, 100 * 86400 + 60, nullptr, L"c", 2, &pi[1], 1},
        {"alpha2", 0, 3, &d[2], 0, 5 * 86400 + 3599, &t, nullptr, 0, &pi[2], 0},
        {"Gamma", -50, 0, &d[3], 0x6301, 3 * 86400 + 80000, &f, L"D", 6, &pi[3], 0},
    };
    for (int r = 0; r < 5; ++r)
        ASSERT_TRUE(h.list.AddRow(r, 0, const_cast<char*>(rows[r].s), rows[r].i, rows[r].d, rows[r].pd,
                                  rows[r].card, rows[r].time, &q[r], rows[r].cb, rows[r].ws, rows[r].flag,
                                  &st[r], W(10 - r), rows[r].pi, rows[r].b, rows[r].time));
    struct Case {
        int col;
        std::vector<LPARAM> asc;
        std::vector<LPARAM> desc; // empty: the reverse of asc
    } const cases[] = {
        {0, {2, 1, 3, 0, 4}, {}},               // nulls first, case-insensitive
        {1, {4, 1, 3, 0, 2}, {}},               // signed
        {2, {4, 0, 2, 3, 1}, {}},               // unsigned
        {3, {1, 2, 3, 0, 4}, {}},               // null double first
        {4, {3, 4, 0, 2, 1}, {}},               // 0, 01/99, 03/99, 01/00, 12/05
        {5, {2, 3, 0, 1, 4}, {}},               // no date format: time of day
        {6, {4, 2, 0, 3, 1}, {}},               // 64-bit unsigned
        {7, {2, 1, 4, 0, 3}, {0, 3, 1, 4, 2}},  // null, no, yes; ties keep their order
        {8, {3, 1, 0, 2, 4}, {}},               // wide, null first
        {9, {1, 3, 0, 2, 4}, {0, 2, 4, 1, 3}},  // masked with 2
        {10, {3, 1, 0, 2, 4}, {}},              // by the time they stand for
        {11, {0, 1, 2, 3, 4}, {}},              // the column's own function (10 - r reversed)
        {12, {1, 2, 3, 4, 0}, {}},              // int pointers, null first
        {13, {1, 3, 4, 0, 2}, {0, 2, 1, 3, 4}}, // bool
        {14, {1, 4, 3, 0, 2}, {}},              // with a date format: whole seconds
    };
    for (Case const& c : cases) {
        // Ties keep the order they had: start each case from the order of creation.
        ASSERT_TRUE(h.list.SetSortMode(11, false));
        ASSERT_TRUE(h.list.SetSortMode(c.col, false));
        EXPECT_EQ(c.asc, h.Order()) << "column " << c.col << " ascending";
        ASSERT_TRUE(h.list.SetSortMode(c.col, true));
        EXPECT_EQ(c.desc.empty() ? Reversed(c.asc) : c.desc, h.Order())
            << "column " << c.col << " descending";
    }
}

TEST(ListSort, TextRulesNumbersInFrontAndTrailingNumbers) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols("Num", 0, nullptr, 50, 0x40000, VTDT_STRING, "Trail", 1, nullptr, 50,
                                  0x80000, VTDT_STRING, "WNum", 2, nullptr, 50, 0x40000, VTDT_WSTRING, "R", 3,
                                  nullptr, 50, 0, VTDT_int, kEnd));
    ASSERT_TRUE(h.list.AddRow(0, 0, const_cast<char*>("10 B"), "Block 10", L"10 B", 0));
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("9"), "Block 9", L"9", 1));
    ASSERT_TRUE(h.list.AddRow(2, 0, const_cast<char*>("10 A"), "block 10", L"10 A", 2));
    ASSERT_TRUE(h.list.AddRow(3, 0, const_cast<char*>("x"), "Block", L"x", 3));
    ASSERT_TRUE(h.list.AddRow(4, 0, const_cast<char*>("100"), "Blocx", L"100", 4));
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    EXPECT_EQ((std::vector<LPARAM>{1, 2, 0, 4, 3}), h.Order());
    ASSERT_TRUE(h.list.SetSortMode(2, false));
    EXPECT_EQ((std::vector<LPARAM>{1, 2, 0, 4, 3}), h.Order());
    ASSERT_TRUE(h.list.SetSortMode(3, false));
    ASSERT_TRUE(h.list.SetSortMode(1, false));
    EXPECT_EQ((std::vector<LPARAM>{3, 1, 0, 2, 4}), h.Order());
    int item0 = -1, item2 = -1;
    h.list.GetItem(0, item0);
    h.list.GetItem(2, item2);
    EXPECT_EQ(0, TestList::CompareFuncWithContext(&h.list, h.list.Get(item0), h.list.Get(item2)))
        << "block 10 equals Block 10";
    ASSERT_TRUE(h.list.SetSortMode(1, true));
    EXPECT_EQ((std::vector<LPARAM>{4, 0, 2, 1, 3}), h.Order()) << "ties keep their order descending too";
}

TEST(ListSort, ThreeKeysSumRowsAndBothSortPathsAgree) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols("S", 0, nullptr, 50, 0, VTDT_STRING, "I", 1, nullptr, 50, 0, VTDT_int, "D",
                                  2, nullptr, 50, 0, VTDT_DOUBLE, "%.1f", kEnd));
    double v[] = {1.5, 0.5, 2.5, 0.5, 0.1};
    char const* s[] = {"A", "B", "A", "A", "B"};
    int n[] = {2, 1, 1, 2, 1};
    for (int r = 0; r < 5; ++r)
        ASSERT_TRUE(h.list.AddRow(r, r, const_cast<char*>(s[r]), n[r], &v[r]));
    double sumValue = 9;
    ASSERT_TRUE(h.list.AddSumRow(20, 20, const_cast<char*>("A"), 0, &sumValue));
    ASSERT_TRUE(h.list.AddSumRow(10, 10, const_cast<char*>("Z"), 0, &sumValue));
    ListView_SetItemState(h.hList, 3, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_SetItemState(h.hList, 4, LVIS_SELECTED, LVIS_SELECTED);

    h.list.SetSecondSortCols(1, 2);
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    EXPECT_EQ((std::vector<LPARAM>{2, 3, 0, 4, 1, 20, 10}), h.Order());
    ExpectSortedByComparison(h);
    // Image, selection and focus moved with their rows.
    for (int i = 0; i < 7; ++i) {
        LVITEMW lvi{};
        lvi.mask = LVIF_IMAGE | LVIF_STATE;
        lvi.iItem = i;
        lvi.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageW(h.hList, LVM_GETITEMW, 0, (LPARAM)&lvi);
        LPARAM lp = 0;
        h.list.GetLParam(i, lp);
        EXPECT_EQ(lp, lvi.iImage) << "item " << i;
        UINT const want = lp == 3 ? (LVIS_SELECTED | LVIS_FOCUSED) : (lp == 4 ? LVIS_SELECTED : 0);
        EXPECT_EQ(want, lvi.state) << "item " << i;
    }

    ASSERT_TRUE(h.list.SetSortMode(0, true));
    EXPECT_EQ((std::vector<LPARAM>{1, 4, 0, 3, 2, 10, 20}), h.Order()) << "sum rows stay last descending";
    ExpectSortedByComparison(h);
    h.list.SetSortSumRowsLParam(true);
    ASSERT_TRUE(h.list.Resort(false));
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    ASSERT_TRUE(h.list.SetSortMode(0, true));
    EXPECT_EQ((std::vector<LPARAM>{1, 4, 0, 3, 2, 10, 20}), h.Order())
        << "sum rows by lParam in both directions";
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    EXPECT_EQ((std::vector<LPARAM>{2, 3, 0, 4, 1, 10, 20}), h.Order());

    // The control's own sort with the same comparison comes to the same order.
    std::vector<LPARAM> const own = h.Order();
    ASSERT_TRUE(h.list.SetSortMode(1, true));
    ASSERT_NE(own, h.Order());
    ASSERT_TRUE(h.list.SetKeysOnly(0, false));
    EXPECT_EQ(own, OrderByControlSort(h));

    // The second key equal to the first is skipped: ties go on to the third.
    h.list.SetSecondSortCols(0, 2);
    ASSERT_TRUE(h.list.Resort(true));
    EXPECT_EQ((std::vector<LPARAM>{3, 0, 2, 4, 1, 10, 20}), h.Order());
}

TEST(ListSort, LargeListOwnSortMatchesTheControlsSortExactly) {
    // Two lists with the same rows: one sorts itself, the other lets the control sort with the
    // same comparison. The third key is unique, so exactly one order is right.
    ListHost<> own, ctrl;
    std::mt19937 rng(7);
    // Texts that differ only in case are equal to the comparison; each row has its own copy.
    char const* names[] = {"Hamlet", "hamlet", "Faust", "FAUST", "Tosca", "Aida", "aida ", "\xC4gypten", ""};
    std::vector<std::string> texts(3000);
    std::vector<double> values(3000);
    for (ListHost<>* h : {&own, &ctrl})
        ASSERT_TRUE(h->list.DefineCols("S", 0, nullptr, 50, 0, VTDT_STRING, "I", 1, nullptr, 50, 0, VTDT_int,
                                       "D", 2, nullptr, 50, 0, VTDT_DOUBLE, "%.1f", kEnd));
    for (int r = 0; r < 3000; ++r) {
        values[static_cast<size_t>(r)] = static_cast<double>(rng() % 1000) + r / 4096.0;
        texts[static_cast<size_t>(r)] = names[rng() % (sizeof names / sizeof *names)];
        char* name = &texts[static_cast<size_t>(r)][0];
        int const n = static_cast<int>(rng() % 5) - 2;
        ASSERT_TRUE(own.list.AddRow(r, 0, name, n, &values[static_cast<size_t>(r)]));
        ASSERT_TRUE(ctrl.list.AddRow(r, 0, name, n, &values[static_cast<size_t>(r)]));
    }
    for (bool bDesc : {false, true}) {
        for (ListHost<>* h : {&own, &ctrl})
            h->list.SetSecondSortCols(1, 2);
        ASSERT_TRUE(own.list.SetSortMode(0, bDesc));
        ExpectSortedByComparison(own);
        ASSERT_TRUE(ctrl.list.SetKeysOnly(0, bDesc));
        std::vector<LPARAM> const byControl = OrderByControlSort(ctrl);
        ExpectSortedByComparison(ctrl);
        EXPECT_EQ(own.Order(), byControl) << (bDesc ? "descending" : "ascending");
    }
}

// Long lists take the other way of moving rows: each item is written back. Images, indents,
// selection and focus must come along there as well.
TEST(ListSort, LongListsMoveImagesAndStatesWithTheirRows) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols("S", 0, nullptr, 50, 0, VTDT_STRING, "I", 1, nullptr, 50, 0, VTDT_int, "D",
                                  2, nullptr, 50, 0, VTDT_DOUBLE, "%.2f", kEnd));
    int const n = 40000;
    char const* names[] = {"Tosca", "aida", "Aida", "Faust"};
    // The third key is unique (7919 and 40000 share no factor), so exactly one order is right.
    std::vector<double> values(static_cast<size_t>(n));
    SendMessageW(h.hList, WM_SETREDRAW, FALSE, 0);
    for (int r = 0; r < n; ++r) {
        values[static_cast<size_t>(r)] = (r * 7919LL) % n + 0.25;
        ASSERT_TRUE(h.list.AddRow(r, r % 7, const_cast<char*>(names[(r * 7919) % 4]),
                                  static_cast<int>((r * 104729LL) % 1000), &values[static_cast<size_t>(r)]));
    }
    for (int item : {5, 17, 39999})
        ListView_SetItemState(h.hList, item, LVIS_SELECTED, LVIS_SELECTED);
    ListView_SetItemState(h.hList, 17, LVIS_FOCUSED, LVIS_FOCUSED);
    h.list.SetSecondSortCols(1, 2);
    for (bool bDesc : {false, true}) {
        ASSERT_TRUE(h.list.SetSortMode(0, bDesc));
        ExpectSortedByComparison(h);
        std::vector<LPARAM> const order = h.Order();
        ASSERT_EQ(static_cast<size_t>(n), order.size());
        int iChecked = 0;
        for (int i = 0; i < n; ++i) {
            LVITEMW lvi{};
            lvi.mask = LVIF_IMAGE | LVIF_STATE;
            lvi.iItem = i;
            lvi.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
            SendMessageW(h.hList, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
            LPARAM const lp = order[static_cast<size_t>(i)];
            UINT const want = (lp == 5 || lp == 39999 ? LVIS_SELECTED : 0u) |
                              (lp == 17 ? (LVIS_SELECTED | LVIS_FOCUSED) : 0u);
            if (lvi.iImage != lp % 7 || lvi.state != want) {
                ADD_FAILURE() << "item " << i << " (row " << lp << "): image " << lvi.iImage << ", state "
                              << lvi.state;
                if (++iChecked > 5)
                    break;
            }
        }
    }
}

// An item that a client put into the control directly has no row: sorting must neither crash nor
// lose it, and it comes first, as the comparison orders a missing row before any row.
TEST(ListSort, ItemsWithoutARowSortFirst) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols("S", 0, nullptr, 50, 0, VTDT_STRING, kEnd));
    char const* names[] = {"c", "a", "b"};
    for (int r = 0; r < 3; ++r)
        ASSERT_TRUE(h.list.AddRow(r + 1, 0, const_cast<char*>(names[r])));
    LVITEMW lvi{};
    lvi.mask = LVIF_TEXT | LVIF_PARAM;
    lvi.iItem = 1;
    lvi.pszText = const_cast<wchar_t*>(L"raw");
    lvi.lParam = 0;
    ASSERT_EQ(1, SendMessageW(h.hList, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&lvi)));
    for (bool bDesc : {false, true}) {
        ASSERT_TRUE(h.list.SetSortMode(0, bDesc));
        ASSERT_EQ(4, h.list.GetItemCount());
        EXPECT_EQ(nullptr, h.list.Get(0)) << "a missing row is first in both directions";
        EXPECT_EQ(L"raw", h.Text(0, 0)) << "the item keeps its own text";
        std::vector<LPARAM> const order = h.Order();
        std::vector<LPARAM> const want = bDesc ? std::vector<LPARAM>{1, 3, 2} : std::vector<LPARAM>{2, 3, 1};
        EXPECT_EQ(want, std::vector<LPARAM>(order.begin() + 1, order.end()));
    }
    h.list.ClearAll();
    EXPECT_EQ(0, h.list.GetItemCount());
}

class CmpList : public TestList {
public:
    void SetData(int item, int* p) { Get(item)->pData = p; }

protected:
    int OnCmp(void* a, void* b) override {
        if (!a || !b)
            return 0;
        return *static_cast<int*>(a) - *static_cast<int*>(b);
    }
};

TEST(ListSort, ClientComparisonFirstAndColumnClicksHeaderImagesAndHooks) {
    ListHost<CmpList> h;
    ASSERT_TRUE(
        h.list.DefineCols("S", 0, nullptr, 50, 0, VTDT_STRING, "I", 1, nullptr, 50, 0, VTDT_int, kEnd));
    int keys[] = {2, 1, 3};
    char const* s[] = {"c", "a", "b"};
    for (int r = 0; r < 3; ++r) {
        ASSERT_TRUE(h.list.AddRow(r, 0, const_cast<char*>(s[r]), r));
        h.list.SetData(r, &keys[r]);
    }
    ASSERT_TRUE(h.list.SetSortMode(0, true));
    EXPECT_EQ((std::vector<LPARAM>{1, 0, 2}), h.Order()) << "OnCmp decides and its direction stands";
    for (int r = 0; r < 3; ++r)
        h.list.SetData(r, nullptr);

    h.list.iSortModeChanged = 0;
    NMLISTVIEW nm{};
    nm.hdr.hwndFrom = h.hList;
    nm.hdr.idFrom = 1012;
    nm.hdr.code = LVN_COLUMNCLICK;
    nm.iItem = -1;
    nm.iSubItem = 1;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&nm);
    EXPECT_EQ(1, h.list.GetSortCol());
    EXPECT_FALSE(h.list.GetSortDesc());
    EXPECT_EQ((std::vector<LPARAM>{0, 1, 2}), h.Order());
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&nm);
    EXPECT_TRUE(h.list.GetSortDesc()) << "the same column turns the direction";
    EXPECT_EQ((std::vector<LPARAM>{2, 1, 0}), h.Order());
    EXPECT_EQ(2, h.list.iSortModeChanged);

    HWND hHeader = ListView_GetHeader(h.hList);
    auto image = [hHeader](int col) {
        HDITEMW hdi{};
        hdi.mask = HDI_FORMAT | HDI_IMAGE;
        SendMessageW(hHeader, HDM_GETITEMW, col, (LPARAM)&hdi);
        return (hdi.fmt & HDF_IMAGE) ? hdi.iImage : -1;
    };
    int const descImage = image(1);
    EXPECT_GE(descImage, 0);
    EXPECT_EQ(-1, image(0));

    // Ctrl with a click sets the second key and marks its header.
    BYTE keysState[256] = {};
    GetKeyboardState(keysState);
    keysState[VK_CONTROL] = 0x80;
    SetKeyboardState(keysState);
    nm.iSubItem = 0;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&nm);
    keysState[VK_CONTROL] = 0;
    SetKeyboardState(keysState);
    EXPECT_EQ(0, h.list.GetSecondSortCol());
    EXPECT_EQ(1, h.list.GetSortCol());
    EXPECT_EQ(descImage + 1, image(0));
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    EXPECT_NE(-1, image(0));
    EXPECT_NE(descImage + 1, image(0)) << "the arrow replaces the mark";
    EXPECT_EQ(-1, image(1)) << "the old sort column lost its arrow";
    EXPECT_TRUE(h.list.SetSortable(true));
    EXPECT_TRUE(GetWindowLongPtrW(hHeader, GWL_STYLE) & HDS_BUTTONS);
}
