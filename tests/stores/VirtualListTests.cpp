#include "listview/ListFixture.h"
#include "stores/VTRBListViewVirtual.h"

#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <string>
#include <vector>

using lvtest::ListHost;

namespace {

// Rows live here; the list only knows their number.
class Numbers : public VTRBListViewVirtual {
public:
    std::vector<int> rows;
    int iTextCalls = 0;
    std::vector<int> resorts; // sort column, key word, direction per call

    void OnNeedText(int iRow, int iCol, wchar_t* pszBuf) override {
        ++iTextCalls;
        if (iRow < 0 || iRow >= static_cast<int>(rows.size()))
            return VTRBListViewVirtual::OnNeedText(iRow, iCol, pszBuf);
        swprintf(pszBuf, 1024, iCol == 0 ? L"%d" : L"r%d\u00e9c%d", rows[static_cast<size_t>(iRow)], iCol);
    }
    void OnResort(int iSortCol, int iKeys, bool bDesc) override {
        resorts.insert(resorts.end(), {iSortCol, iKeys, bDesc ? 1 : 0});
        if (bDesc)
            std::sort(rows.begin(), rows.end(), [](int a, int b) { return a > b; });
        else
            std::sort(rows.begin(), rows.end());
    }
    void OnImageCallback(LVITEMA* pItem) override { pItem->iImage = 40 + pItem->iItem; }
    void OnStateCallback(LVITEMA* pItem) override {
        pItem->state |= INDEXTOSTATEIMAGEMASK(2);
        pItem->stateMask |= LVIS_STATEIMAGEMASK;
    }
};

DWORD const kOwnerData = LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS;

bool TwoCols(VTRBListView& l) {
    return l.DefineCols("N", 1, nullptr, 60, 0, VTDT_STRING, "T", 2, nullptr, 80, 0, VTDT_STRING, nullptr);
}

} // namespace

TEST(VirtualList, CountAndCellTextComeFromTheClient) {
    ListHost<Numbers> h(kOwnerData);
    ASSERT_TRUE(TwoCols(h.list));
    h.list.rows = {30, 10, 20};
    ASSERT_TRUE(h.list.SetItemCount(3));
    EXPECT_EQ(3, h.list.GetItemCount());
    // LVM_GETITEMTEXTW on an owner-data list asks through LVN_GETDISPINFOW.
    EXPECT_EQ("30", h.TextA(0, 0));
    EXPECT_EQ("r20\xc3\xa9"
              "c1",
              h.TextA(2, 1));
    EXPECT_GE(h.list.iTextCalls, 2);

    // The 8-bit request gets the text in the current code page.
    EXPECT_EQ("r10\xe9"
              "c1",
              h.AskTextA(1, 1));

    // Image and state are the client's too.
    LVITEMW lvi{};
    lvi.mask = LVIF_IMAGE | LVIF_STATE;
    lvi.stateMask = LVIS_STATEIMAGEMASK;
    lvi.iItem = 2;
    ASSERT_TRUE(SendMessageW(h.hList, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi)));
    EXPECT_EQ(42, lvi.iImage);

    h.list.ClearAll();
    EXPECT_EQ(0, h.list.GetItemCount());
}

TEST(VirtualList, BaseShowsEmptyCellsAndPlainListsRefuseACount) {
    ListHost<VTRBListViewVirtual> v(kOwnerData);
    ASSERT_TRUE(TwoCols(v.list));
    ASSERT_TRUE(v.list.SetItemCount(5));
    EXPECT_EQ(5, v.list.GetItemCount());
    EXPECT_EQ("", v.TextA(4, 1));
    // Sorting asks for a column.
    EXPECT_FALSE(v.list.Resort(false));

    ListHost<VTRBListViewVirtual> plain;
    ASSERT_TRUE(TwoCols(plain.list));
    EXPECT_FALSE(plain.list.SetItemCount(5));
    EXPECT_EQ(0, plain.list.GetItemCount());
}

TEST(VirtualList, SortingIsHandedToTheClientWithAllThreeKeys) {
    ListHost<Numbers> h(kOwnerData);
    ASSERT_TRUE(h.list.DefineCols("A", 1, nullptr, 60, 0, VTDT_STRING, "B", 2, nullptr, 60, 0, VTDT_STRING,
                                  "C", 3, nullptr, 60, 0, VTDT_STRING, nullptr));
    h.list.rows = {5, 3, 9, 1};
    ASSERT_TRUE(h.list.SetItemCount(4));
    h.list.SetSecondSortCols(2, 1);
    h.list.resorts.clear();
    ASSERT_TRUE(h.list.SetSortMode(0, true));
    ASSERT_EQ(3u, h.list.resorts.size());
    EXPECT_EQ(0, h.list.resorts[0]);
    EXPECT_EQ(0x00010002, h.list.resorts[1]); // second key low, third key high
    EXPECT_EQ(1, h.list.resorts[2]);
    EXPECT_EQ("9", h.TextA(0, 0));
    EXPECT_EQ("1", h.TextA(3, 0));

    ASSERT_TRUE(h.list.Resort(true));
    EXPECT_EQ(6u, h.list.resorts.size());

    // Without keepPos the selected row is scrolled into view.
    h.list.rows.resize(500);
    for (int i = 0; i < 500; ++i)
        h.list.rows[static_cast<size_t>(i)] = i;
    ASSERT_TRUE(h.list.SetItemCount(500));
    ASSERT_TRUE(h.list.SetCurSel(450));
    ASSERT_TRUE(h.list.Resort(false));
    int const top = static_cast<int>(SendMessageW(h.hList, LVM_GETTOPINDEX, 0, 0));
    int const per = static_cast<int>(SendMessageW(h.hList, LVM_GETCOUNTPERPAGE, 0, 0));
    EXPECT_LE(top, 450);
    EXPECT_GT(top + per + 1, 450) << "top " << top << " per page " << per;
    // With keepPos the scroll position stays.
    SendMessageW(h.hList, LVM_ENSUREVISIBLE, 0, FALSE);
    ASSERT_TRUE(h.list.Resort(true));
    EXPECT_EQ(0, SendMessageW(h.hList, LVM_GETTOPINDEX, 0, 0));
}

namespace {

class LongText : public VTRBListViewVirtual {
public:
    std::wstring text;
    void OnNeedText(int, int, wchar_t* pszBuf) override { wcsncpy(pszBuf, text.c_str(), 1023); }
};

struct Utf8CodePage {
    Utf8CodePage() { NVSetCurCodePage(CP_UTF8); }
    ~Utf8CodePage() { NVSetCurCodePage(0); }
};

} // namespace

// An 8-bit parent gets as many whole characters as its buffer holds, never half of one.
TEST(VirtualList, EightBitTextLongerThanTheBufferIsCutBetweenCharacters) {
    Utf8CodePage utf8;
    ListHost<LongText> h(kOwnerData);
    ASSERT_TRUE(TwoCols(h.list));
    ASSERT_TRUE(h.list.SetItemCount(1));
    h.list.text = L"ab" + std::wstring(700, L'\u00e9'); // 1402 bytes in UTF-8
    std::string const cut = h.AskTextA(0, 1);
    std::string expected = "ab";
    while (expected.size() + 2 <= 1023)
        expected += "\xc3\xa9";
    EXPECT_EQ(expected.size(), cut.size());
    EXPECT_TRUE(expected == cut) << "ends in " << cut.substr(cut.size() > 4 ? cut.size() - 4 : 0);
    h.list.text = L"short \u00e9";
    EXPECT_EQ("short \xc3\xa9", h.AskTextA(0, 1));
}
