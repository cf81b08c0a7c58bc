#include "ListFixture.h"

#include <gtest/gtest.h>

#include <cstdint>

using lvtest::ListHost;
using lvtest::TestList;

namespace {

char const* const kEnd = nullptr;

void* W(intptr_t v) {
    return reinterpret_cast<void*>(v);
}

char const* Cb(void*, int, int, LPARAM, void*, char* buf) {
    buf[0] = 'x';
    buf[1] = 0;
    return buf;
}

} // namespace

TEST(ListColumns, SkippedTuplesConsumeTheirExtrasAndFlagsAreDerived) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols("Name", 10, "A long sample text", 0, 0x40000, VTDT_STRING, "Gone", 11,
                                  nullptr, 50, 0x100000, VTDT_CALLBACK, &Cb, nullptr, W(1), "Price", 12,
                                  nullptr, 50, LVCFMT_RIGHT | 0x10000, VTDT_DOUBLE, "%.2f", "Gone2", 13,
                                  nullptr, 50, 0x100000, VTDT_TIME_T, "dd", "HH", "Code", 14, nullptr, -1,
                                  0x80000 | 0x20000, VTDT_int32_CUSTOM, "#%d", kEnd));
    ASSERT_EQ(3, h.list.GetColCnt());
    EXPECT_EQ(3, h.list.GetColMaxCnt());
    EXPECT_EQ(VTDT_STRING, h.list.GetColDataType(0));
    EXPECT_EQ(VTDT_DOUBLE, h.list.GetColDataType(1));
    EXPECT_EQ(VTDT_int32_CUSTOM, h.list.GetColDataType(2));
    EXPECT_EQ(2, h.list.FindColByID(14));
    EXPECT_EQ(-1, h.list.FindColByID(11));
    VTRBListViewCol c{};
    ASSERT_TRUE(h.list.FillVTRBListViewCol(1, c));
    EXPECT_EQ(2u, c.dwColFlags);
    EXPECT_EQ(static_cast<unsigned long>(LVCFMT_RIGHT | 0x10000), c.dwFlags);
    EXPECT_STREQ("%.2f", static_cast<char const*>(c.pExtra1));
    ASSERT_TRUE(h.list.FillVTRBListViewCol(2, c));
    EXPECT_EQ(16u | 4u, c.dwColFlags);
    EXPECT_EQ(8u, h.list.ColRec(0)->dwColFlags);
    // Width 0 measures title and sample; -1 fills the rest of the window.
    int const w0 = h.list.GetColumnWidth(0);
    int const wTitle = static_cast<int>(SendMessageW(h.hList, LVM_GETSTRINGWIDTHW, 0, (LPARAM)L"Name")) + 12;
    EXPECT_GT(w0, wTitle);
    EXPECT_EQ(h.list.ColRec(0)->iDefWidth, w0);
    RECT rc{};
    GetClientRect(h.hList, &rc);
    EXPECT_EQ(rc.right - GetSystemMetrics(SM_CXVSCROLL) - 1 - w0 - 50, h.list.GetColumnWidth(2));
    double d = 3.14159;
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("n"), &d, 7));
    EXPECT_EQ("3.14", h.TextA(0, 1));
    EXPECT_EQ("#7", h.TextA(0, 2));

    EXPECT_FALSE(h.list.DefineCols("Again", 1, nullptr, 10, 0, VTDT_int, kEnd)) << "columns exist already";
    EXPECT_FALSE(h.list.SetExtraColCnt(2)) << "only before a definition";
    wchar_t title[32];
    ASSERT_TRUE(h.list.GetColTitle(2, title, 32));
    EXPECT_EQ(std::wstring(L"Code"), title);
    EXPECT_FALSE(h.list.GetColTitle(3, title, 32));
    EXPECT_TRUE(h.list.SetColTitle(2, "Kode"));
    char titleA[32];
    ASSERT_TRUE(h.list.GetColTitle(2, titleA, 32));
    EXPECT_STREQ("Kode", titleA);
    EXPECT_FALSE(h.list.SetColIDs(0, 100, 1, 101, 7, 107, -1));
    EXPECT_EQ(100u, h.list.GetColID(0));
    EXPECT_EQ(101u, h.list.GetColID(1)) << "pairs before a bad one stay set";
    EXPECT_EQ(static_cast<unsigned long>(-1), h.list.GetColID(3));
    EXPECT_EQ(static_cast<unsigned long>(-1), h.list.GetColID(-1));
    EXPECT_FALSE(h.list.SetColID(-1, 5));
    EXPECT_EQ(nullptr, h.list.ColRec(3));
}

TEST(ListColumns, AllSkippedWideFormAndUnboundList) {
    ListHost<> h;
    EXPECT_TRUE(h.list.DefineCols(L"A", 1, nullptr, 10, 0x100000, VTDT_LPDOUBLE, nullptr, L"B", 2, nullptr,
                                  10, 0x100000, VTDT_FLAG, 8u, static_cast<wchar_t const*>(nullptr)));
    EXPECT_EQ(0, h.list.GetColCnt());
    h.list.Reset();
    EXPECT_FALSE(h.list.AddRow(1, 0, nullptr)) << "no row without a definition";
    ASSERT_TRUE(h.list.DefineCols(L"Wide \u00e9", 1, nullptr, 40, 0, VTDT_WSTRING,
                                  static_cast<wchar_t const*>(nullptr)));
    EXPECT_EQ(1, h.list.GetColCnt());
    wchar_t title[16];
    ASSERT_TRUE(h.list.GetColTitle(0, title, 16));
    EXPECT_EQ(std::wstring(L"Wide \u00e9"), title);

    TestList unbound;
    EXPECT_FALSE(unbound.DefineCols("A", 1, nullptr, 10, 0, VTDT_int, kEnd));
    DynaArrayTpl<VTRBListViewCol, 0, 0> empty;
    EXPECT_FALSE(h.list.DefineCols(empty));
    EXPECT_FALSE(unbound.AddRow(1, 0, nullptr));
    EXPECT_EQ(nullptr, unbound.GetLVITEMHANDLE(0));
}

TEST(ListColumns, InsertUpdateRemoveMoveCellsAndSortKeys) {
    ListHost<> h;
    EXPECT_TRUE(h.list.SetExtraColCnt(2));
    ASSERT_TRUE(h.list.DefineCols("A", 1, nullptr, 40, 0, VTDT_STRING, "B", 2, nullptr, 40, 0, VTDT_int, "C",
                                  3, nullptr, 40, 0, VTDT_int, kEnd));
    EXPECT_EQ(5, h.list.GetColMaxCnt());
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("a1"), 11, 21));
    ASSERT_TRUE(h.list.AddRow(2, 0, const_cast<char*>("a2"), 12, 22));
    EXPECT_EQ(static_cast<unsigned>(offsetof(Row, cells) + 5 * sizeof(RowCell)), h.list.RowSize());

    ASSERT_TRUE(h.list.SetSortMode(2, true));
    h.list.SetSecondSortCols(1, 0xFFFF);
    h.list.iSortModeChanged = 0;
    ASSERT_EQ(1, h.list.InsertCol(1, "New", nullptr, 30, 0, VTDT_WORD, nullptr, nullptr, nullptr, 9));
    EXPECT_EQ(4, h.list.GetColCnt());
    EXPECT_EQ("a1", h.TextA(1, 0));
    EXPECT_EQ("0", h.TextA(1, 1)) << "the new cell is zero";
    EXPECT_EQ("11", h.TextA(1, 2));
    EXPECT_EQ("21", h.TextA(1, 3));
    EXPECT_EQ(3, h.list.GetSortCol()) << "the sort column moves with its column";
    EXPECT_EQ(1, h.list.GetSecondSortCol()) << "with the third key unset the second does not move";
    EXPECT_EQ(1, h.list.iSortModeChanged);
    HDITEMW hdi{};
    hdi.mask = HDI_FORMAT | HDI_IMAGE;
    HWND hHeader = ListView_GetHeader(h.hList);
    SendMessageW(hHeader, HDM_GETITEMW, 3, (LPARAM)&hdi);
    EXPECT_TRUE(hdi.fmt & HDF_IMAGE) << "the arrow moved with the column";

    // A set third key makes the shared word large, so the second key moves too.
    h.list.SetSecondSortCols(0, 0);
    ASSERT_EQ(0, h.list.InsertCol(0, "First", nullptr, 30, 0, VTDT_int, nullptr, nullptr, nullptr, 8));
    EXPECT_EQ(1, h.list.GetSecondSortCol());
    EXPECT_EQ(4, h.list.GetSortCol());
    EXPECT_EQ(-1, h.list.InsertCol(0, "Full", nullptr, 30, 0, VTDT_int, nullptr, nullptr, nullptr, 7))
        << "no reserved column left";
    // Columns now: First(int) A B New C(sort)

    ASSERT_TRUE(h.list.UpdateCol(3, "Word", nullptr, 30, 0, VTDT_STRING, nullptr, nullptr, nullptr, 9));
    EXPECT_EQ(VTDT_STRING, h.list.GetColDataType(3));
    EXPECT_EQ(nullptr, h.list.Get(0)->cells[3].pValue) << "a new type clears the cell";
    EXPECT_FALSE(h.list.UpdateCol(5, "X", nullptr, 30, 0, VTDT_int, nullptr, nullptr, nullptr, 1));
    EXPECT_FALSE(h.list.UpdateCol(-1, "X", nullptr, 30, 0, VTDT_int, nullptr, nullptr, nullptr, 1));

    h.list.SetSecondSortCols(1, 0); // word of second and third equals 1 only with third 0
    h.list.iSortModeChanged = 0;
    ASSERT_TRUE(h.list.RemoveCol(1));
    EXPECT_EQ(0xFFFF, h.list.GetSecondSortCol()) << "the removed second key is unset";
    EXPECT_EQ(3, h.list.GetSortCol()) << "a sort column behind the removed one follows it";
    EXPECT_EQ("21", h.TextA(1, 3)) << "cells moved down";
    ASSERT_TRUE(h.list.RemoveCol(3));
    EXPECT_EQ(-1, h.list.GetSortCol());
    EXPECT_TRUE(h.list.GetSortDesc()) << "the direction is kept";
    EXPECT_GE(h.list.iSortModeChanged, 2);
    EXPECT_FALSE(h.list.RemoveCol(3));
    EXPECT_FALSE(h.list.RemoveCol(-1));
    EXPECT_EQ(3, h.list.GetColCnt());
    EXPECT_EQ(3, h.list.InsertCol(99, "End", nullptr, 30, 0, VTDT_int, nullptr, nullptr, nullptr, 6))
        << "a position past the end appends";
}

TEST(ListRows, AddUpdateDeleteAndEveryRowFreedOnce) {
    ListHost<> h;
    ASSERT_TRUE(
        h.list.DefineCols("A", 1, nullptr, 40, 0, VTDT_STRING, "B", 2, nullptr, 40, 0, VTDT_STRING, kEnd));
    bool b = true;
    char const* x = "x";
    ASSERT_TRUE(h.list.AddRowEx(1, 0, &b, const_cast<char*>(x), "a", "b"));
    EXPECT_EQ("a", h.TextA(0, 0));
    EXPECT_EQ("b", h.TextA(0, 1));
    EXPECT_EQ(&b, h.list.Get(0)->pbCheck);
    EXPECT_EQ(0u + VTR_ROW_CHECKPTR, h.list.Get(0)->dwFlags);
    ASSERT_TRUE(h.list.AddRow(7, 3, const_cast<char*>("c"), "d"));
    EXPECT_EQ(1, h.list.GetLastAddedItem());
    ASSERT_TRUE(h.list.AddSumRow(7, 0, const_cast<char*>("sum"), "s"));
    EXPECT_TRUE(h.list.IsSumRow(2));
    EXPECT_TRUE(h.list.SetBold(2, true)) << "a sum row is bold";
    EXPECT_FALSE(h.list.SetBold(1, true));
    EXPECT_TRUE(h.list.SetBold(1, true));
    EXPECT_FALSE(h.list.SetBold(99, true));

    int item = 0;
    EXPECT_TRUE(h.list.GetItem(7, item));
    EXPECT_EQ(2, item) << "the search runs from the last row";
    EXPECT_FALSE(h.list.GetItem(99, item));
    EXPECT_EQ(-1, item);
    LPARAM lp = 5;
    EXPECT_FALSE(h.list.GetLParam(3, lp));
    EXPECT_EQ(0, lp);

    ASSERT_TRUE(h.list.UpdateRow(1, 8, 2, const_cast<char*>("C"), "D"));
    EXPECT_EQ("C", h.TextA(1, 0));
    EXPECT_EQ("D", h.TextA(1, 1));
    EXPECT_TRUE(h.list.GetLParam(1, lp));
    EXPECT_EQ(8, lp);
    LVITEMW lvi{};
    lvi.mask = LVIF_IMAGE;
    lvi.iItem = 1;
    SendMessageW(h.hList, LVM_GETITEMW, 0, (LPARAM)&lvi);
    EXPECT_EQ(2, lvi.iImage);
    bool b2 = false;
    ASSERT_TRUE(h.list.UpdateRowEx(0, 1, 0, &b2, const_cast<char*>(x), "e", "f"));
    EXPECT_EQ("e", h.TextA(0, 0));
    EXPECT_EQ(&b2, h.list.Get(0)->pbCheck);
    EXPECT_FALSE(h.list.UpdateRow(3, 1, 0, const_cast<char*>("z"), "z"));
    EXPECT_FALSE(h.list.UpdateRow(-1, 1, 0, const_cast<char*>("z"), "z"));

    void* handle = h.list.GetLVITEMHANDLE(1);
    EXPECT_EQ(1, h.list.FindItem(handle));
    EXPECT_EQ(-1, h.list.FindItem(nullptr));
    EXPECT_EQ(nullptr, h.list.GetLVITEMHANDLE(-1));
    EXPECT_EQ(nullptr, h.list.GetLVITEMHANDLE(3));

    EXPECT_FALSE(h.list.DeleteRow(-1, true));
    EXPECT_FALSE(h.list.DeleteRow(3, true));
    EXPECT_EQ(0, h.list.iRowsFreed);
    ASSERT_TRUE(h.list.DeleteRow(2, true));
    EXPECT_EQ(1, h.list.iRowsFreed);
    EXPECT_EQ(LVIS_SELECTED, ListView_GetItemState(h.hList, 1, LVIS_SELECTED))
        << "past the end selects the last";
    ASSERT_TRUE(h.list.DeleteRow(0, true));
    EXPECT_EQ(2, h.list.iRowsFreed);
    EXPECT_EQ(-1, h.list.FindItem(nullptr));
    EXPECT_EQ(0, h.list.FindItem(handle)) << "a handle survives the move";

    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(h.list.AddRow(100 + i, 0, const_cast<char*>("r"), "r"));
    h.list.ClearAll();
    EXPECT_EQ(13, h.list.iRowsFreed);
    EXPECT_EQ(0, h.list.GetItemCount());
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("r"), "r"));
    h.list.UnAssign();
    EXPECT_EQ(14, h.list.iRowsFreed) << "releasing the control frees the rows";
    EXPECT_EQ(0, h.list.GetColCnt());
    EXPECT_EQ(nullptr, h.list.GethWnd());
}

TEST(ListRows, BadArgumentsFailWithoutHarm) {
    ListHost<> h;
    ASSERT_TRUE(
        h.list.DefineCols("A", 1, nullptr, 40, 0, VTDT_STRING, "N", 2, nullptr, 40, 0, VTDT_int, kEnd));
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("a"), 1));
    wchar_t buf[16];
    EXPECT_FALSE(h.list.GetCellTextFormated(0, -1, buf, 16));
    EXPECT_FALSE(h.list.GetCellTextFormated(0, 2, buf, 16));
    EXPECT_FALSE(h.list.GetCellTextFormated(1, 0, buf, 16));
    EXPECT_FALSE(h.list.GetCellTextFormated(nullptr, 0, 0, buf, 16));
    EXPECT_TRUE(h.list.GetCellTextFormated(0, 1, buf, 16));
    EXPECT_EQ(std::wstring(L"1"), buf);
    EXPECT_EQ(L"", h.list.Text(nullptr, 0, 0));
    EXPECT_EQ(L"", h.list.Text(h.list.Get(0), 0, 5));
    EXPECT_EQ(L"", h.list.Text(h.list.Get(0), 0, -1));
    EXPECT_FALSE(h.list.Set(nullptr, 0, W(1)));
    EXPECT_FALSE(h.list.Set(h.list.Get(0), 2, W(1)));
    EXPECT_FALSE(h.list.IsSumRow(-1));
    EXPECT_FALSE(h.list.RefreshRow(5));
    EXPECT_EQ(VTDT_STRING, h.list.GetColDataType(9));
    EXPECT_FALSE(h.list.SetSortMode(2, false)) << "the sort column must be below the count";
    EXPECT_TRUE(h.list.SetSortMode(-1, false)) << "no sort column is allowed";
    EXPECT_FALSE(h.list.ExpandItem(0)) << "not in tree mode";
    EXPECT_EQ(1, h.list.GetItemCount());
}

TEST(ListRows, CheckRowSortSingleSelectionAndNarrowTextRequests) {
    ListHost<> h(LVS_REPORT | LVS_SINGLESEL);
    ASSERT_TRUE(h.list.DefineCols("Chk", 0, nullptr, 30, 0, VTDT_CHECKROW, "Name", 1, nullptr, 60, 0,
                                  VTDT_STRING, kEnd));
    bool yes = true, no = false;
    char const* x = "ignored";
    ASSERT_TRUE(h.list.AddRowEx(1, 0, &yes, const_cast<char*>(x), W(1), "one"));
    ASSERT_TRUE(h.list.AddRowEx(2, 0, &no, const_cast<char*>(x), W(1), "two"));
    ASSERT_TRUE(h.list.AddRowEx(3, 0, nullptr, const_cast<char*>(x), W(1), "three"));
    EXPECT_EQ(nullptr, h.list.Get(0)->cells[0].pValue) << "a check row column stores nothing";
    EXPECT_EQ("", h.TextA(0, 0));
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    EXPECT_EQ((std::vector<LPARAM>{3, 2, 1}), h.Order()) << "no check pointer, unchecked, checked";

    ASSERT_TRUE(h.list.DeleteRow(0, true));
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED | LVIS_FOCUSED),
              ListView_GetItemState(h.hList, 0, LVIS_SELECTED | LVIS_FOCUSED))
        << "single selection moves the focus too";

    bool bInBuffer = false;
    EXPECT_EQ("one", h.AskTextA(1, 1, 16, &bInBuffer));
    EXPECT_TRUE(bInBuffer) << "an 8-bit parent gets the text in its own buffer";
}

TEST(ListRows, WindowDestroyedFirstFreesRowsAndTheListCanBindAgain) {
    ListHost<> h;
    ASSERT_TRUE(
        h.list.DefineCols("A", 1, nullptr, 40, 0, VTDT_STRING, "B", 2, nullptr, 40, 0, VTDT_int, kEnd));
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(h.list.AddRow(i, 0, const_cast<char*>("r"), i));
    DestroyWindow(h.hList);
    EXPECT_EQ(5, h.list.iRowsFreed) << "the dying control reports every row";
    EXPECT_EQ(0, h.list.GetItemCount());
    EXPECT_FALSE(h.list.AddRow(9, 0, const_cast<char*>("r"), 9));
    h.list.UnAssign();

    // A fresh control: definitions start over, and column widths follow the rules.
    h.hList = h.dlg.AddControl(WC_LISTVIEWW, LVS_REPORT, 1013, 0, 0, 400, 300);
    h.list.Assign(h.hList);
    ASSERT_TRUE(
        h.list.DefineCols("Short", 1, nullptr, 50, 0, VTDT_STRING, "N", 2, nullptr, 50, 0, VTDT_int, kEnd));
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("a much longer text than the title"), 7));
    EXPECT_EQ("7", h.TextA(0, 1)) << "the new control is served";
    ASSERT_TRUE(h.list.SetColmnWidth());
    int const wide = static_cast<int>(
        SendMessageW(h.hList, LVM_GETSTRINGWIDTHW, 0, (LPARAM)L"a much longer text than the title"));
    EXPECT_EQ(wide + 12, h.list.GetColumnWidth(0));
    h.list.SetColumnWidth(1, 33);
    EXPECT_EQ(33, h.list.GetColumnWidth(1));
    EXPECT_TRUE(h.list.EnsureColVisible(1));
    EXPECT_FALSE(h.list.EnsureColVisible(2));
}

namespace {
WNDPROC g_pfnBeforeClient = nullptr;
int g_iClientRowQueries = 0;

LRESULT CALLBACK ClientSubclass(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    if (uMsg == LVM_GETITEMW)
        ++g_iClientRowQueries;
    return CallWindowProcW(g_pfnBeforeClient, hWnd, uMsg, wParam, lParam);
}

void AddThreeRows(TestList& list) {
    ASSERT_TRUE(list.DefineCols("A", 1, nullptr, 40, 0, VTDT_STRING, "B", 2, nullptr, 40, 0, VTDT_int, kEnd));
    ASSERT_TRUE(list.AddRow(10, 0, const_cast<char*>("c"), 3));
    ASSERT_TRUE(list.AddRow(11, 0, const_cast<char*>("a"), 1));
    ASSERT_TRUE(list.AddRow(12, 0, const_cast<char*>("b"), 2));
}
} // namespace

TEST(ListRows, RowsReadBackWithAndWithoutAClientsOwnSubclass) {
    ListHost<> h;
    AddThreeRows(h.list);
    ASSERT_TRUE(h.list.SetSortMode(1, false));
    for (int i = 0; i < 3; ++i)
        ASSERT_NE(nullptr, h.list.Get(i));
    EXPECT_EQ(11, h.list.Get(0)->lParam);
    EXPECT_EQ(12, h.list.Get(1)->lParam);
    EXPECT_EQ(10, h.list.Get(2)->lParam);
    EXPECT_EQ(nullptr, h.list.Get(3));

    // A client that subclassed the control after it was bound sees the list's messages too.
    g_pfnBeforeClient = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(h.hList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ClientSubclass)));
    g_iClientRowQueries = 0;
    ASSERT_NE(nullptr, h.list.Get(1));
    EXPECT_EQ(12, h.list.Get(1)->lParam);
    EXPECT_EQ(2, g_iClientRowQueries);
    SetWindowLongPtrW(h.hList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_pfnBeforeClient));

    // A client that subclassed the control before binding it sees every query the list sends.
    h.list.UnAssign();
    g_pfnBeforeClient = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(h.hList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ClientSubclass)));
    h.list.Assign(h.hList);
    AddThreeRows(h.list);
    g_iClientRowQueries = 0;
    ASSERT_NE(nullptr, h.list.Get(2));
    EXPECT_EQ(12, h.list.Get(2)->lParam);
    EXPECT_GE(g_iClientRowQueries, 1);
    int const iBeforeSort = g_iClientRowQueries;
    ASSERT_TRUE(h.list.SetSortMode(1, true));
    EXPECT_GE(g_iClientRowQueries - iBeforeSort, 3) << "the sort reads every item through the client";
    EXPECT_EQ(10, h.list.Get(0)->lParam);
    EXPECT_EQ(11, h.list.Get(2)->lParam);
    h.list.UnAssign();
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&ClientSubclass), GetWindowLongPtrW(h.hList, GWLP_WNDPROC))
        << "unbinding gives the client its procedure back";
    SetWindowLongPtrW(h.hList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_pfnBeforeClient));
}
