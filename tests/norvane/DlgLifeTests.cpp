// Life of dialogs (modal, modeless, the object lookup, the remembered position), the layout after
// resizing, and windows of a class of their own.
#include "DlgBase.h"
#include "NVApp.h"
#include "WindowBase.h"

#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

UINT const WM_TEST_CLOSE = WM_APP + 7;

class ModalDlg : public DlgBase {
public:
    HWND hSeen = nullptr;
    DlgBase* pFound = nullptr;
    int iVetoes = 0;
    int iInits = 0;
    int iDestroys = 0;
    int iResult = 77;
    bool bPostClose = true;

    INT_PTR DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) override {
        INT_PTR r = DlgBase::DlgProc(hWnd, uMsg, wParam, lParam);
        if (uMsg == WM_INITDIALOG) {
            hSeen = m_hWnd;
            pFound = GetDlgBasePtr(hWnd);
            PostMessageW(hWnd, bPostClose ? WM_TEST_CLOSE : WM_CLOSE, 0, 0);
        } else if (uMsg == WM_TEST_CLOSE) {
            DlgClose(iResult);
            return TRUE;
        }
        return r;
    }
    void OnDlgInit() override { ++iInits; }
    void OnDlgDestroy() override { ++iDestroys; }
    bool OnVetoClose(int) override {
        // The first attempt is refused and a second one posted.
        if (iVetoes++ == 0) {
            PostMessageW(m_hWnd, WM_TEST_CLOSE, 0, 0);
            return true;
        }
        return false;
    }
};

TEST(DlgLife, ModalDialogEndsWithThePostedResult) {
    ModalDlg dlg;
    EXPECT_EQ(77, dlg.DlgOpen(GetModuleHandleW(nullptr), 9103, nullptr));
    EXPECT_NE(nullptr, dlg.hSeen);
    EXPECT_EQ(&dlg, dlg.pFound) << "GetDlgBasePtr finds the object during the dialog";
    EXPECT_EQ(2, dlg.iVetoes) << "the veto kept it open once";
    EXPECT_EQ(1, dlg.iInits);
    EXPECT_EQ(1, dlg.iDestroys);
    EXPECT_EQ(nullptr, dlg.m_hWnd) << "no window after the end";
    EXPECT_FALSE(IsWindow(dlg.hSeen));
    EXPECT_EQ(nullptr, DlgBase::GetDlgBasePtr(dlg.hSeen));

    ModalDlg closeBox;
    closeBox.bPostClose = false;
    closeBox.iVetoes = 1;
    EXPECT_EQ(IDCANCEL, closeBox.DlgOpen(GetModuleHandleW(nullptr), 9103, nullptr)) << "WM_CLOSE cancels";

    ModalDlg missing;
    EXPECT_EQ(-1, missing.DlgOpen(GetModuleHandleW(nullptr), 4711, nullptr));
    EXPECT_EQ(nullptr, missing.DlgCreateModeless(GetModuleHandleW(nullptr), 4711, nullptr));
    EXPECT_EQ(nullptr, DlgBase::GetDlgBasePtr(nullptr));
}

TEST(DlgLife, ModelessDialogIsFoundAndDestroyedWithItsObject) {
    vtrtest::HostDialog host;
    HWND hDlg;
    {
        DlgBase dlg;
        hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9103, host.hwnd());
        ASSERT_NE(nullptr, hDlg);
        EXPECT_EQ(hDlg, dlg.m_hWnd);
        EXPECT_EQ(host.hwnd(), dlg.m_hParent);
        EXPECT_EQ(&dlg, DlgBase::GetDlgBasePtr(hDlg));
        EXPECT_FALSE(dlg.IsModal());
        EXPECT_EQ(nullptr, dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9103, nullptr))
            << "one window per object";
        EXPECT_EQ(nullptr, DlgBase::GetDlgBasePtr(host.hwnd())) << "a dialog without an object";
    }
    EXPECT_FALSE(IsWindow(hDlg)) << "the object took its window along";

    DlgBase dlg;
    hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9103, nullptr);
    dlg.DlgClose(IDOK);
    EXPECT_FALSE(IsWindow(hDlg));
    EXPECT_EQ(nullptr, dlg.m_hWnd);
    EXPECT_NE(nullptr, dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9103, nullptr)) << "and opens again";
}

// Lays out dialog 9102: an edit growing in width, three lists sharing the growth side by side, a
// list below growing both ways by the share flags with the whole change, a button in the corner.
class LayoutDlg : public DlgBase {
public:
    void OnDlgInit() override {
        AddSizeMoveItem(GetDlgItem(m_hWnd, 205), NVSM_SIZE_X, 0, -1);
        for (int i = 0; i < 3; ++i)
            AddSizeMoveItem(GetDlgItem(m_hWnd, 201 + i), NVSM_SIZE_X_PART | NVSM_SIZE_Y, i, 3);
        AddSizeMoveItem(GetDlgItem(m_hWnd, 206), NVSM_SIZE_X_PART | NVSM_SIZE_Y_PART, 0, -1);
        AddSizeMoveItem(GetDlgItem(m_hWnd, 204), NVSM_MOVE_XY, 0, -1);
        SetMinMaxPos(nullptr, nullptr);
        SendMessageW(m_hWnd, WM_SIZE, 0, 0);
    }
};

RECT ChildRect(HWND hDlg, int id) {
    RECT rc;
    GetWindowRect(GetDlgItem(hDlg, id), &rc);
    MapWindowPoints(nullptr, hDlg, reinterpret_cast<POINT*>(&rc), 2);
    return rc;
}

TEST(DlgLayout, ChildrenFollowTheResizedDialogByTheirFlags) {
    LayoutDlg dlg;
    HWND hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9102, nullptr);
    ASSERT_NE(nullptr, hDlg);
    int const ids[] = {201, 202, 203, 204, 205, 206};
    std::vector<RECT> before;
    for (int id : ids)
        before.push_back(ChildRect(hDlg, id));
    RECT rcWin;
    GetWindowRect(hDlg, &rcWin);
    int const dx = 90, dy = 60;
    SetWindowPos(hDlg, nullptr, 0, 0, rcWin.right - rcWin.left + dx, rcWin.bottom - rcWin.top + dy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessageW(hDlg, WM_SIZE, 0, 0);
    auto expectRect = [&](int index, int dl, int dt, int dr, int db) {
        RECT now = ChildRect(hDlg, ids[index]);
        RECT const& b = before[static_cast<size_t>(index)];
        EXPECT_EQ(b.left + dl, now.left) << "left of " << ids[index];
        EXPECT_EQ(b.top + dt, now.top) << "top of " << ids[index];
        EXPECT_EQ(b.right + dr, now.right) << "right of " << ids[index];
        EXPECT_EQ(b.bottom + db, now.bottom) << "bottom of " << ids[index];
    };
    expectRect(0, 0, 0, 30, dy);   // first third
    expectRect(1, 30, 0, 60, dy);  // second third
    expectRect(2, 60, 0, 90, dy);  // last third
    expectRect(3, dx, dy, dx, dy); // button in the corner
    expectRect(4, 0, 0, dx, 0);    // edit: wider only
    expectRect(5, 0, 0, dx, dy);   // whole change both ways

    MINMAXINFO mmi{};
    SendMessageW(hDlg, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&mmi));
    EXPECT_EQ(rcWin.right - rcWin.left, mmi.ptMinTrackSize.x) << "the size at SetMinMaxPos is the minimum";
    EXPECT_EQ(rcWin.bottom - rcWin.top, mmi.ptMinTrackSize.y);
    POINT ptMin = {100, 80}, ptMax = {500, 400};
    EXPECT_TRUE(dlg.SetMinMaxPos(&ptMin, &ptMax));
    SendMessageW(hDlg, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&mmi));
    EXPECT_EQ(100, mmi.ptMinTrackSize.x);
    EXPECT_EQ(400, mmi.ptMaxTrackSize.y);

    // Back to the start size: everything returns to its place.
    SetWindowPos(hDlg, nullptr, 0, 0, rcWin.right - rcWin.left, rcWin.bottom - rcWin.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    for (size_t i = 0; i < before.size(); ++i) {
        RECT back = ChildRect(hDlg, ids[i]);
        EXPECT_TRUE(EqualRect(&before[i], &back)) << "child " << ids[i];
    }
}

TEST(DlgLayout, ItemPositionsAreSetAndReadInClientCoordinates) {
    LayoutDlg dlg;
    HWND hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9102, nullptr);
    ASSERT_NE(nullptr, hDlg);
    POINT pos;
    SIZE size;
    ASSERT_TRUE(dlg.GetDlgItemPosAndSize(205, &pos, &size));
    RECT rc = ChildRect(hDlg, 205);
    EXPECT_EQ(rc.left, pos.x);
    EXPECT_EQ(rc.bottom - rc.top, size.cy);
    EXPECT_FALSE(dlg.GetDlgItemPosAndSize(999, &pos, nullptr));

    POINT newPos = {7, 9};
    SIZE newSize = {size.cx + 25, size.cy + 4};
    int ddx = 0, ddy = 0;
    EXPECT_TRUE(dlg.SetDlgItemPosAndSize(205, nullptr, &newPos, &newSize, 0, NVSM_MOVE_XY, &ddx, &ddy));
    EXPECT_EQ(25, ddx);
    EXPECT_EQ(4, ddy);
    rc = ChildRect(hDlg, 205);
    EXPECT_EQ(7, rc.left);
    EXPECT_EQ(9, rc.top);
    EXPECT_EQ(newSize.cx, rc.right - rc.left);
    SIZE keep;
    EXPECT_TRUE(dlg.SetDlgItemPosAndSize(205, nullptr, nullptr, nullptr, 0, 0, nullptr, nullptr));
    dlg.GetDlgItemPosAndSize(205, &pos, &keep);
    EXPECT_EQ(7, pos.x) << "null position and size keep both";

    // Registered anew with NVSM_MOVE_XY at its new place: a resize now moves it.
    RECT rcWin;
    GetWindowRect(hDlg, &rcWin);
    SetWindowPos(hDlg, nullptr, 0, 0, rcWin.right - rcWin.left + 10, rcWin.bottom - rcWin.top + 20,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    rc = ChildRect(hDlg, 205);
    EXPECT_EQ(17, rc.left);
    EXPECT_EQ(29, rc.top);
    EXPECT_EQ(newSize.cx, rc.right - rc.left);

    POINT wpos = {40, 50};
    SIZE wsize = {500, 400};
    EXPECT_TRUE(dlg.SetWindowPosAndSize(hDlg, &wpos, &wsize, true));
    GetWindowRect(hDlg, &rcWin);
    EXPECT_EQ(40, rcWin.left);
    EXPECT_EQ(400, rcWin.bottom - rcWin.top);
    SIZE tooSmall = {20, 20};
    EXPECT_TRUE(dlg.SetWindowPosAndSize(hDlg, nullptr, &tooSmall, false));
    GetWindowRect(hDlg, &rcWin);
    EXPECT_LT(20, rcWin.bottom - rcWin.top) << "the minimum of SetMinMaxPos holds";
    EXPECT_FALSE(dlg.SetWindowPosAndSize(nullptr, &wpos, nullptr, false));
}

TEST(DlgLayout, PositionAndSizeComeBackUnderTheHistIdent) {
    char const* kBase = "Software\\VantrelTests\\DlgHist";
    NVSetRegAppBaseKey(kBase);
    RegDeleteTreeA(HKEY_CURRENT_USER, kBase);
    {
        LayoutDlg dlg;
        dlg.SetHistIdent("HistLayout");
        HWND hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9102, nullptr);
        ASSERT_NE(nullptr, hDlg);
        SetWindowPos(hDlg, nullptr, 61, 43, 420, 330, SWP_NOZORDER | SWP_NOACTIVATE);
        DestroyWindow(hDlg);
    }
    HKEY hKey;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\VantrelTests\\DlgHist\\DlgPos", 0,
                                           KEY_READ, &hKey));
    LONG data[4] = {};
    DWORD cb = sizeof data;
    EXPECT_EQ(ERROR_SUCCESS,
              RegQueryValueExA(hKey, "HistLayout", nullptr, nullptr, reinterpret_cast<BYTE*>(data), &cb));
    RegCloseKey(hKey);
    EXPECT_EQ(61, data[0]);
    EXPECT_EQ(330, data[3]);
    {
        LayoutDlg dlg;
        dlg.SetHistIdent("HistLayout");
        HWND hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9102, nullptr);
        RECT rc;
        GetWindowRect(hDlg, &rc);
        EXPECT_EQ(61, rc.left);
        EXPECT_EQ(43, rc.top);
        EXPECT_EQ(420, rc.right - rc.left);
        EXPECT_EQ(330, rc.bottom - rc.top);
        // The layout saw the restored size: the corner button keeps its margin.
        RECT client, button;
        GetClientRect(hDlg, &client);
        button = ChildRect(hDlg, 204);
        LayoutDlg fresh;
        HWND hFresh = fresh.DlgCreateModeless(GetModuleHandleW(nullptr), 9102, nullptr);
        RECT freshClient, freshButton;
        GetClientRect(hFresh, &freshClient);
        freshButton = ChildRect(hFresh, 204);
        EXPECT_EQ(freshClient.right - freshButton.left, client.right - button.left);
        EXPECT_EQ(freshClient.bottom - freshButton.top, client.bottom - button.top);
    }
    {
        DlgBase plain; // fixed size: only the position comes back
        plain.SetHistIdent("HistLayout");
        HWND hDlg = plain.DlgCreateModeless(GetModuleHandleW(nullptr), 9103, nullptr);
        RECT rc;
        GetWindowRect(hDlg, &rc);
        EXPECT_EQ(61, rc.left);
        EXPECT_NE(420, rc.right - rc.left);
    }
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\VantrelTests"));
    NVSetRegAppBaseKey(nullptr);
}

class CountingWindow : public WindowBase {
public:
    std::vector<UINT> seen;
    LRESULT WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) override {
        seen.push_back(uMsg);
        if (uMsg == WM_APP)
            return 4242;
        return DefaultWndProc(hWnd, uMsg, wParam, lParam);
    }
    HWND Create() {
        return CreateWindowExW(0, GetWndClassName(), L"w", WS_OVERLAPPED, 0, 0, 50, 50, nullptr, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
    }
};

TEST(WindowBase, EachObjectHandlesTheWindowsOfItsOwnClass) {
    CountingWindow a, b;
    EXPECT_STREQ(L"", a.GetWndClassName());
    ASSERT_TRUE(a.Register(GetModuleHandleW(nullptr), CS_DBLCLKS, nullptr, nullptr, nullptr, 0));
    ASSERT_TRUE(b.Register(GetModuleHandleW(nullptr), 0, nullptr, nullptr, nullptr, 0));
    EXPECT_FALSE(a.Register(GetModuleHandleW(nullptr), 0, nullptr, nullptr, nullptr, 0)) << "once per object";
    EXPECT_STRNE(a.GetWndClassName(), b.GetWndClassName());
    HWND ha = a.Create();
    HWND hb = b.Create();
    ASSERT_NE(nullptr, ha);
    ASSERT_NE(nullptr, hb);
    EXPECT_EQ(ha, a.m_hWnd);
    EXPECT_EQ(&a, WindowBase::FromHandle(ha));
    EXPECT_EQ(&b, WindowBase::FromHandle(hb));
    EXPECT_EQ(4242, SendMessageW(ha, WM_APP, 0, 0));
    size_t seenByB = b.seen.size();
    SendMessageW(ha, WM_APP, 0, 0);
    EXPECT_EQ(seenByB, b.seen.size()) << "b sees nothing of a's window";
    EXPECT_EQ(WM_GETMINMAXINFO, a.seen.front()) << "even the first message reaches the object";
    SetWindowTextW(ha, L"title");
    wchar_t text[16];
    GetWindowTextW(ha, text, 16);
    EXPECT_STREQ(L"title", text) << "the default handling works";
    DestroyWindow(ha);
    EXPECT_EQ(nullptr, a.m_hWnd);
    EXPECT_EQ(static_cast<UINT>(WM_NCDESTROY), a.seen.back());
    EXPECT_EQ(nullptr, WindowBase::FromHandle(GetDesktopWindow()));
}

} // namespace
