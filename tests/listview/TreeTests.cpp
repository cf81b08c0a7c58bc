#include "ListFixture.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

using lvtest::ListHost;
using lvtest::TestList;

namespace {

char const* const kEnd = nullptr;

// Opening a row adds two children, the first of which can open again; the client sorts afterwards.
class TreeList : public TestList {
public:
    int iExpandCalls = 0;
    int iStateChanged = 0;
    bool bRefuseCollapse = false;
    LPARAM nextLParam = 100;

protected:
    bool OnExpandItem(int, void* row) override {
        ++iExpandCalls;
        Row* pParent = static_cast<Row*>(row);
        std::string const base =
            pParent->cells[0].pValue ? static_cast<char const*>(pParent->cells[0].pValue) : "";
        m_names.push_back(base + "-2");
        AddChild(pParent, nextLParam++, m_names.back().c_str(), 5);
        m_names.push_back(base + "-1");
        AddChild(pParent, nextLParam++, m_names.back().c_str(), 4, true);
        Resort(true);
        return true;
    }
    bool OnCollapsItem(int item, void* row) override {
        return bRefuseCollapse ? false : TestList::OnCollapsItem(item, row);
    }
    void OnExpandStateChanged(int) override { ++iStateChanged; }

private:
    std::deque<std::string> m_names;
};

int ItemOf(ListHost<TreeList>& h, LPARAM lParam) {
    int item = -1;
    h.list.GetItem(lParam, item);
    return item;
}

UINT StateImage(ListHost<TreeList>& h, int item) {
    return ListView_GetItemState(h.hList, item, LVIS_STATEIMAGEMASK) >> 12;
}

} // namespace

TEST(ListTree, ExpandCollapseKeepChildrenUnderParentsInEverySort) {
    ListHost<TreeList> h;
    ASSERT_TRUE(
        h.list.DefineCols("Name", 0, nullptr, 80, 0, VTDT_STRING, "N", 1, nullptr, 40, 0, VTDT_int, kEnd));
    ASSERT_TRUE(h.list.SetTreeMode(true, false));
    EXPECT_TRUE(h.list.IsTreeMode());
    ASSERT_TRUE(h.list.AddChild(nullptr, 1, "b", 2, true));
    ASSERT_TRUE(h.list.AddChild(nullptr, 2, "a", 1, true));
    ASSERT_TRUE(h.list.AddChild(nullptr, 3, "c", 3));
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    EXPECT_EQ((std::vector<LPARAM>{2, 1, 3}), h.Order());

    EXPECT_FALSE(h.list.ExpandItem(ItemOf(h, 3))) << "a leaf does not open";
    EXPECT_TRUE(h.list.CollapsItem(ItemOf(h, 3))) << "closing a closed row is done at once";
    EXPECT_EQ(0, h.list.iExpandCalls);
    EXPECT_EQ(2u, StateImage(h, ItemOf(h, 1))) << "a closed row shows the plus";
    EXPECT_EQ(0u, StateImage(h, ItemOf(h, 3)));

    ASSERT_TRUE(h.list.ExpandItem(ItemOf(h, 2)));
    EXPECT_TRUE(h.list.IsExpanded(ItemOf(h, 2)));
    EXPECT_EQ(1u, StateImage(h, ItemOf(h, 2)));
    EXPECT_EQ(1, h.list.iStateChanged);
    EXPECT_TRUE(h.list.ExpandItem(ItemOf(h, 2))) << "already open";
    EXPECT_EQ(1, h.list.iExpandCalls);
    // a, a-1 (101), a-2 (100), b, c
    EXPECT_EQ((std::vector<LPARAM>{2, 101, 100, 1, 3}), h.Order());
    ASSERT_TRUE(h.list.ExpandItem(ItemOf(h, 101)));
    EXPECT_EQ((std::vector<LPARAM>{2, 101, 103, 102, 100, 1, 3}), h.Order());
    EXPECT_EQ(h.list.GetLVITEMHANDLE(ItemOf(h, 101)), h.list.GetParentLVITEMHANDLE(ItemOf(h, 103)));

    ASSERT_TRUE(h.list.SetSortMode(0, true));
    EXPECT_EQ((std::vector<LPARAM>{3, 1, 2, 100, 101, 102, 103}), h.Order())
        << "descending, children below parents";
    ASSERT_TRUE(h.list.SetSortMode(1, false));
    EXPECT_EQ((std::vector<LPARAM>{2, 101, 103, 102, 100, 1, 3}), h.Order());

    DynaArrayTpl<int, -1, 0> all, direct;
    ASSERT_TRUE(h.list.GetChilds(0, true, all));
    ASSERT_TRUE(h.list.GetChilds(0, false, direct));
    ASSERT_EQ(4, all.GetCount());
    EXPECT_EQ(1, *all[0]);
    EXPECT_EQ(2, *all[1]);
    EXPECT_EQ(3, *all[2]);
    EXPECT_EQ(4, *all[3]);
    ASSERT_EQ(2, direct.GetCount());
    EXPECT_EQ(1, *direct[0]);
    EXPECT_EQ(4, *direct[1]);
    h.list.RecomputeTree();
    EXPECT_EQ(4, h.list.Get(0)->iLastChild);
    EXPECT_EQ(3, h.list.Get(1)->iLastChild);
    EXPECT_EQ(-1, h.list.Get(5)->iLastChild);

    h.list.bRefuseCollapse = true;
    EXPECT_FALSE(h.list.CollapsItem(0));
    EXPECT_TRUE(h.list.IsExpanded(0)) << "a refusal keeps the row open";
    h.list.bRefuseCollapse = false;

    // Closing with the focus on a grandchild removes the subtree and selects the parent.
    ASSERT_TRUE(h.list.SetCurSel(2));
    int const freedBefore = h.list.iRowsFreed;
    ASSERT_TRUE(h.list.CollapsItem(0));
    EXPECT_EQ(freedBefore + 4, h.list.iRowsFreed);
    EXPECT_EQ((std::vector<LPARAM>{2, 1, 3}), h.Order());
    EXPECT_FALSE(h.list.IsExpanded(0));
    EXPECT_EQ(0, h.list.GetSelItem());
    EXPECT_EQ(LVIS_FOCUSED, ListView_GetItemState(h.hList, 0, LVIS_FOCUSED));

    ASSERT_TRUE(h.list.ToggleExpandState(0));
    EXPECT_EQ(5, h.list.GetItemCount());
    ASSERT_TRUE(h.list.ToggleExpandState(0));
    EXPECT_EQ(3, h.list.GetItemCount());

    // A click on the open/close picture toggles; elsewhere on the row it does not.
    RECT rc{};
    rc.left = LVIR_BOUNDS;
    ASSERT_TRUE(SendMessageW(h.hList, LVM_GETITEMRECT, 0, (LPARAM)&rc));
    NMITEMACTIVATE click{};
    click.hdr.hwndFrom = h.hList;
    click.hdr.idFrom = 1012;
    click.hdr.code = NM_CLICK;
    click.iItem = 0;
    click.ptAction = POINT{rc.left + 8, (rc.top + rc.bottom) / 2};
    LVHITTESTINFO hit{};
    hit.pt = click.ptAction;
    SendMessageW(h.hList, LVM_SUBITEMHITTEST, 0, (LPARAM)&hit);
    ASSERT_TRUE(hit.flags & LVHT_ONITEMSTATEICON) << "flags " << hit.flags;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&click);
    EXPECT_TRUE(h.list.IsExpanded(0));
    EXPECT_EQ(5, h.list.GetItemCount());
    click.hdr.code = NM_DBLCLK;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&click);
    EXPECT_FALSE(h.list.IsExpanded(0));
    click.hdr.code = NM_CLICK;
    click.ptAction.x = rc.left + 60;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&click);
    EXPECT_FALSE(h.list.IsExpanded(0));
}

TEST(ListTree, StatesKeysAndLeavingTreeMode) {
    ListHost<TreeList> h;
    ASSERT_TRUE(
        h.list.DefineCols("Name", 0, nullptr, 80, 0, VTDT_STRING, "N", 1, nullptr, 40, 0, VTDT_int, kEnd));
    ASSERT_TRUE(h.list.AddChild(nullptr, 1, "p", 1, true));
    EXPECT_FALSE(h.list.ExpandItem(0)) << "outside tree mode";
    EXPECT_FALSE(h.list.SetChildsState(0, true));
    EXPECT_FALSE(h.list.IsExpanded(0));
    ASSERT_TRUE(h.list.SetTreeMode(true, true));
    ASSERT_TRUE(h.list.AddChild(nullptr, 2, "q", 2));
    ASSERT_TRUE(h.list.SetSortMode(0, false));

    // Opening by state alone adds no children and asks no hook.
    ASSERT_TRUE(h.list.SetExpandState(0, true));
    EXPECT_TRUE(h.list.IsExpanded(0));
    EXPECT_EQ(0, h.list.iExpandCalls);
    EXPECT_EQ(2, h.list.GetItemCount());
    EXPECT_FALSE(h.list.SetExpandState(1, true)) << "q has no children";
    ASSERT_TRUE(h.list.SetExpandState(0, false));
    EXPECT_FALSE(h.list.IsExpanded(0));

    ASSERT_TRUE(h.list.SetChildsState(1, true));
    EXPECT_TRUE(h.list.GetChildsState(1));
    EXPECT_EQ(2u, StateImage(h, 1));

    // The plus key opens the focused row, the minus key closes it.
    ASSERT_TRUE(h.list.SetCurSel(0));
    NMLVKEYDOWN key{};
    key.hdr.hwndFrom = h.hList;
    key.hdr.idFrom = 1012;
    key.hdr.code = LVN_KEYDOWN;
    key.wVKey = VK_ADD;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&key);
    EXPECT_EQ(0, key.wVKey) << "a handled key is cleared";
    EXPECT_EQ(4, h.list.GetItemCount());
    int item = -1;
    ASSERT_TRUE(h.list.GetItem(1, item));
    ASSERT_TRUE(h.list.SetCurSel(item));
    key.wVKey = VK_SUBTRACT;
    SendMessageW(h.dlg.hwnd(), WM_NOTIFY, 1012, (LPARAM)&key);
    EXPECT_EQ(2, h.list.GetItemCount());

    ASSERT_TRUE(h.list.ExpandItem(0));
    void* parent = h.list.GetLVITEMHANDLE(0);
    ASSERT_TRUE(h.list.SetTreeMode(false, false));
    EXPECT_FALSE(h.list.IsTreeMode());
    ASSERT_TRUE(h.list.SetSortMode(1, true));
    // Flat now: the children sort by their own values, but keep their parent.
    EXPECT_EQ((std::vector<LPARAM>{102, 103, 2, 1}), h.Order());
    EXPECT_EQ(parent, h.list.GetParentLVITEMHANDLE(0));
    EXPECT_EQ(nullptr, h.list.GetParentLVITEMHANDLE(3));
    EXPECT_FALSE(h.list.RemoveAllChilds(3)) << "outside tree mode";
    EXPECT_EQ(nullptr, h.list.GetParentLVITEMHANDLE(-1));
}

TEST(ListTree, LinesJoinChildrenToTheirParent) {
    ListHost<TreeList> h;
    ASSERT_TRUE(
        h.list.DefineCols("Name", 0, nullptr, 120, 0, VTDT_STRING, "N", 1, nullptr, 40, 0, VTDT_int, kEnd));
    ASSERT_TRUE(h.list.SetTreeMode(true, false));
    ASSERT_TRUE(h.list.AddChild(nullptr, 1, "a", 1, true));
    ASSERT_TRUE(h.list.AddChild(nullptr, 2, "b", 2));
    ASSERT_TRUE(h.list.SetSortMode(0, false));
    ASSERT_TRUE(h.list.ExpandItem(0)); // a, a-1 (open-able), a-2, b
    ASSERT_EQ(4, h.list.GetItemCount());
    h.list.SetTreeLinesColor(RGB(255, 0, 0));

    RECT rcClient{};
    GetClientRect(h.hList, &rcClient);
    BITMAPINFO bmi{};
    bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
    bmi.bmiHeader.biWidth = rcClient.right;
    bmi.bmiHeader.biHeight = -rcClient.bottom;
    bmi.bmiHeader.biPlanes = 1;
    bmi.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    HDC hdc = CreateCompatibleDC(nullptr);
    HBITMAP hBmp = CreateDIBSection(hdc, &bmi, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ hOld = SelectObject(hdc, hBmp);
    ASSERT_TRUE(PrintWindow(h.hList, hdc, PW_CLIENTONLY));
    auto red = [&](int x, int y) {
        DWORD const px = static_cast<DWORD const*>(bits)[y * rcClient.right + x];
        return (px & 0xFFFFFF) == 0xFF0000;
    };
    auto rowRect = [&](int item) {
        RECT rc{};
        rc.left = LVIR_BOUNDS;
        SendMessageW(h.hList, LVM_GETITEMRECT, item, (LPARAM)&rc);
        return rc;
    };
    RECT const r1 = rowRect(1), r2 = rowRect(2), r0 = rowRect(0), r3 = rowRect(3);
    int const x = r1.left + 8;
    int const mid1 = (r1.top + r1.bottom) / 2, mid2 = (r2.top + r2.bottom) / 2;
    EXPECT_TRUE(red(x, r1.top + 1)) << "a middle child's line runs through its row";
    EXPECT_TRUE(red(x, r1.bottom - 1));
    EXPECT_TRUE(red(x + 4, mid1)) << "and branches off to the right";
    EXPECT_FALSE(red(x + 12, mid1)) << "8 pixels for a row that can open";
    EXPECT_TRUE(red(x + 12, mid2)) << "16 for a leaf";
    EXPECT_TRUE(red(x, r2.top + 1));
    EXPECT_FALSE(red(x, r2.bottom - 1)) << "the last child's line ends at its middle";
    EXPECT_FALSE(red(x, (r0.top + r0.bottom) / 2)) << "no line on a top row";
    EXPECT_FALSE(red(x, (r3.top + r3.bottom) / 2));
    SelectObject(hdc, hOld);
    DeleteObject(hBmp);
    DeleteDC(hdc);
}
