#include "NVLanguage.h"
#include "NVTheme.h"
#include "NVWindows.h"
#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <uxtheme.h>
#include <vssym32.h>

#include <string>
#include <vector>

namespace {

using vtrtest::HostDialog;
using vtrtest::Utf8;

// "Łódź, Żółć" in code page 1250 and "Müller & Söhne" in 1252, with the texts they stand for.
char const POLISH_1250[] = "\xA3\xF3"
                           "d\x9F, \xAF\xF3\xB3\xE6";
wchar_t const POLISH_WIDE[] = L"\u0141\u00f3d\u017a, \u017b\u00f3\u0142\u0107";
char const GERMAN_1252[] = "M\xFCller & S\xF6hne";
wchar_t const GERMAN_WIDE[] = L"M\u00fcller & S\u00f6hne";

std::wstring WideText(HWND hWnd) {
    wchar_t buf[256] = L"";
    GetWindowTextW(hWnd, buf, 256);
    return buf;
}

class Windows : public ::testing::Test {
protected:
    void TearDown() override {
        NVSetCurCodePage(0);
        NVSetUNICodeDlg(true);
        NVSetThemesEnabled(true);
    }
    HostDialog m_dlg;
};

TEST_F(Windows, EightBitTextRoundTripsThroughWideWindowsInTheCurrentCodePage) {
    HWND hEdit = m_dlg.AddControl(L"EDIT", ES_AUTOHSCROLL, 101, 10, 10, 200, 24);
    struct Case {
        int iCodePage;
        char const* lpszText;
        wchar_t const* lpszWide;
    };
    for (Case c : {Case{1250, POLISH_1250, POLISH_WIDE}, Case{1252, GERMAN_1252, GERMAN_WIDE}}) {
        NVSetCurCodePage(c.iCodePage);
        ASSERT_TRUE(NVSetWindowTextUC(hEdit, c.lpszText));
        EXPECT_EQ(Utf8(c.lpszWide), Utf8(WideText(hEdit))) << c.iCodePage;
        char buf[64];
        EXPECT_EQ(static_cast<int>(strlen(c.lpszText)), NVGetWindowTextUC(hEdit, buf, sizeof buf));
        EXPECT_STREQ(c.lpszText, buf);

        SetWindowTextW(hEdit, L"");
        ASSERT_TRUE(NVSetDlgItemTextUC(m_dlg.hwnd(), 101, c.lpszText));
        EXPECT_EQ(Utf8(c.lpszWide), Utf8(WideText(hEdit)));
    }

    char small[5] = "xxxx";
    EXPECT_EQ(4, NVGetWindowTextUC(hEdit, small, sizeof small)) << "cut to the buffer";
    EXPECT_STREQ("M\xFCll", small);
    EXPECT_EQ(0, NVGetWindowTextUC(nullptr, small, sizeof small));
    EXPECT_STREQ("", small);
    EXPECT_FALSE(NVSetDlgItemTextUC(m_dlg.hwnd(), 999, "no such item"));

    // The 8-bit calls, for dialogs that run 8-bit window procedures.
    NVSetUNICodeDlg(false);
    ASSERT_TRUE(NVSetWindowTextUC(hEdit, "plain text"));
    EXPECT_EQ("plain text", Utf8(WideText(hEdit)));
    char buf[64];
    EXPECT_EQ(10, NVGetWindowTextUC(hEdit, buf, sizeof buf));
    EXPECT_STREQ("plain text", buf);
}

TEST_F(Windows, TextWithoutAccessKeyMarks) {
    HWND hLabel = m_dlg.AddControl(L"STATIC", 0, 102, 10, 10, 200, 20, L"&Save && close &");
    char buf[64];
    EXPECT_EQ(13, NVGetWindowTextNoPrefix(hLabel, buf, sizeof buf));
    EXPECT_STREQ("Save & close ", buf) << "a lone '&' at the end goes";
    EXPECT_EQ(3, NVGetWindowTextNoPrefix(hLabel, buf, 4));
    EXPECT_STREQ("Sav", buf);
    NVSetCurCodePage(1250);
    SetWindowTextW(hLabel, L"&\u0141\u00f3d\u017a");
    EXPECT_EQ(4, NVGetWindowTextNoPrefix(hLabel, buf, sizeof buf));
    EXPECT_STREQ("\xA3\xF3"
                 "d\x9F",
                 buf);
}

TEST_F(Windows, ComboMenuTabAndStatusBarTakeConvertedText) {
    NVSetCurCodePage(1250);
    HWND hCombo = m_dlg.AddControl(L"ComboBox", CBS_DROPDOWNLIST, 103, 10, 10, 200, 120);
    EXPECT_EQ(0, NVComboBox_AddString(hCombo, POLISH_1250));
    EXPECT_EQ(1, NVComboBox_AddString(hCombo, "second"));
    wchar_t item[64] = L"";
    SendMessageW(hCombo, CB_GETLBTEXT, 0, reinterpret_cast<LPARAM>(item));
    EXPECT_EQ(Utf8(POLISH_WIDE), Utf8(item));
    EXPECT_EQ(CB_ERR, NVComboBox_AddString(nullptr, "x"));

    HMENU hMenu = CreatePopupMenu();
    HMENU hSub = CreatePopupMenu();
    ASSERT_TRUE(NVAppendMenu(hMenu, MF_STRING, 40001, POLISH_1250));
    ASSERT_TRUE(NVAppendMenu(hMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(hSub), "&More"));
    ASSERT_TRUE(NVAppendMenu(hMenu, MF_SEPARATOR, 0, nullptr));
    EXPECT_EQ(3, GetMenuItemCount(hMenu));
    GetMenuStringW(hMenu, 40001, item, 64, MF_BYCOMMAND);
    EXPECT_EQ(Utf8(POLISH_WIDE), Utf8(item));
    EXPECT_EQ(hSub, GetSubMenu(hMenu, 1));
    DestroyMenu(hMenu);

    HMENU hLoaded = NVLoadMenu(GetModuleHandleW(nullptr), "NVTESTMENU");
    ASSERT_NE(nullptr, hLoaded);
    HMENU hFile = GetSubMenu(hLoaded, 0);
    ASSERT_NE(nullptr, hFile);
    GetMenuStringW(hFile, 501, item, 64, MF_BYCOMMAND);
    EXPECT_EQ("&Open", Utf8(item));
    DestroyMenu(hLoaded);
    hLoaded = NVLoadMenu(GetModuleHandleW(nullptr), MAKEINTRESOURCEA(7001));
    ASSERT_NE(nullptr, hLoaded);
    DestroyMenu(hLoaded);
    EXPECT_EQ(nullptr, NVLoadMenu(GetModuleHandleW(nullptr), "NOSUCHMENU"));
    EXPECT_EQ(nullptr, NVLoadMenu(GetModuleHandleW(nullptr), nullptr));

    HWND hTab = m_dlg.AddControl(WC_TABCONTROLW, 0, 104, 10, 40, 300, 100);
    EXPECT_EQ(0, NVInsertTabItem(hTab, 0, TCIF_TEXT | TCIF_PARAM, 0, 0, L"First", -1, 77));
    EXPECT_EQ(0, NVInsertTabItem(hTab, 0, TCIF_TEXT | TCIF_PARAM, 0, 0, POLISH_WIDE, -1, 78))
        << "put in front";
    NVSetUNICodeDlg(false);
    EXPECT_EQ(2, NVInsertTabItem(hTab, 5, TCIF_TEXT | TCIF_PARAM, 0, 0, L"Third", -1, 79));
    NVSetUNICodeDlg(true);
    EXPECT_EQ(3, TabCtrl_GetItemCount(hTab));
    TCITEMW tci{};
    tci.mask = TCIF_TEXT | TCIF_PARAM;
    tci.pszText = item;
    tci.cchTextMax = 64;
    ASSERT_TRUE(SendMessageW(hTab, TCM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tci)));
    EXPECT_EQ(Utf8(POLISH_WIDE), Utf8(item));
    EXPECT_EQ(78, tci.lParam);
    ASSERT_TRUE(SendMessageW(hTab, TCM_GETITEMW, 2, reinterpret_cast<LPARAM>(&tci)));
    EXPECT_EQ("Third", Utf8(item));
    EXPECT_EQ(79, tci.lParam);
    EXPECT_EQ(-1, NVInsertTabItem(nullptr, 0, TCIF_TEXT, 0, 0, L"x", -1, 0));

    HWND hStatus = m_dlg.AddControl(STATUSCLASSNAMEW, 0, 105, 0, 0, 0, 0);
    int const widths[] = {100, -1};
    SendMessageW(hStatus, SB_SETPARTS, 2, reinterpret_cast<LPARAM>(widths));
    char text[] = "\xA3\xF3"
                  "d\x9F";
    ASSERT_TRUE(NVStatusBarSetText(hStatus, 1 | SBT_NOBORDERS, text));
    SendMessageW(hStatus, SB_GETTEXTW, 1, reinterpret_cast<LPARAM>(item));
    EXPECT_EQ("\u0141\u00f3d\u017a", Utf8(item));
    EXPECT_EQ(SBT_NOBORDERS, HIWORD(SendMessageW(hStatus, SB_GETTEXTLENGTHW, 1, 0)));
    wchar_t wide[] = L"Sp\u00e4t";
    ASSERT_TRUE(NVStatusBarSetText(hStatus, 0, wide));
    SendMessageW(hStatus, SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(item));
    EXPECT_EQ("Sp\u00e4t", Utf8(item));
    EXPECT_FALSE(NVStatusBarSetText(nullptr, 0, text));
}

// A 32-bit top-down DIB section to draw into and read back.
class Canvas {
public:
    Canvas(int cx, int cy) : m_cx(cx) {
        BITMAPINFO bmi{};
        bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
        bmi.bmiHeader.biWidth = cx;
        bmi.bmiHeader.biHeight = -cy;
        bmi.bmiHeader.biPlanes = 1;
        bmi.bmiHeader.biBitCount = 32;
        m_hDC = CreateCompatibleDC(nullptr);
        m_hBmp =
            CreateDIBSection(m_hDC, &bmi, DIB_RGB_COLORS, reinterpret_cast<void**>(&m_pBits), nullptr, 0);
        m_hOld = SelectObject(m_hDC, m_hBmp);
        m_cy = cy;
    }
    ~Canvas() {
        SelectObject(m_hDC, m_hOld);
        DeleteObject(m_hBmp);
        DeleteDC(m_hDC);
    }
    HDC dc() const { return m_hDC; }
    void Fill(COLORREF clr) {
        GdiFlush();
        for (int i = 0; i < m_cx * m_cy; ++i)
            m_pBits[i] = RGB(GetBValue(clr), GetGValue(clr), GetRValue(clr));
    }
    COLORREF At(int x, int y) const {
        GdiFlush();
        DWORD const v = m_pBits[y * m_cx + x];
        return RGB((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
    }
    int CountNot(COLORREF clr) const {
        int n = 0;
        for (int y = 0; y < m_cy; ++y)
            for (int x = 0; x < m_cx; ++x)
                n += At(x, y) != clr;
        return n;
    }

private:
    HDC m_hDC;
    HBITMAP m_hBmp;
    HGDIOBJ m_hOld;
    DWORD* m_pBits = nullptr;
    int m_cx, m_cy;
};

TEST_F(Windows, DrawingCallsPaintTheConvertedText) {
    NVSetCurCodePage(1250);
    Canvas canvas(200, 40);
    canvas.Fill(RGB(255, 255, 255));
    SelectObject(canvas.dc(), NVGetDlgFont());
    SetTextColor(canvas.dc(), RGB(0, 0, 0));
    SetBkMode(canvas.dc(), TRANSPARENT);
    RECT rc{0, 0, 200, 40};
    EXPECT_GT(NVDrawText(canvas.dc(), POLISH_1250, -1, &rc, DT_LEFT | DT_TOP | DT_SINGLELINE), 0);
    EXPECT_GT(canvas.CountNot(RGB(255, 255, 255)), 20);

    // The same text measured both ways gives the same rectangle.
    RECT rcNarrow{0, 0, 0, 0}, rcWide{0, 0, 0, 0};
    NVDrawText(canvas.dc(), POLISH_1250, 4, &rcNarrow, DT_CALCRECT | DT_SINGLELINE);
    DrawTextW(canvas.dc(), POLISH_WIDE, 4, &rcWide, DT_CALCRECT | DT_SINGLELINE);
    EXPECT_EQ(rcWide.right, rcNarrow.right);
    EXPECT_GT(rcNarrow.right, 0);

    char longText[64] = "A rather long text that cannot fit";
    RECT rcSmall{0, 0, 40, 20};
    DRAWTEXTPARAMS dtp{};
    dtp.cbSize = sizeof(dtp);
    NVDrawTextEx(canvas.dc(), longText, -1, &rcSmall, DT_SINGLELINE | DT_END_ELLIPSIS | DT_MODIFYSTRING,
                 &dtp);
    std::string const shortened = longText;
    EXPECT_NE(std::string::npos, shortened.find("...")) << shortened;
    EXPECT_LT(shortened.size(), strlen("A rather long text that cannot fit"));

    canvas.Fill(RGB(255, 255, 255));
    EXPECT_TRUE(NVTextOut(canvas.dc(), 2, 2, POLISH_1250, -1));
    EXPECT_GT(canvas.CountNot(RGB(255, 255, 255)), 20);
    EXPECT_FALSE(NVTextOut(nullptr, 0, 0, "x", 1));
    EXPECT_EQ(0, NVDrawText(canvas.dc(), nullptr, -1, &rc, 0));

    HFONT hFont = NVGetDlgFont(), hBold = NVGetDlgBoldFont();
    ASSERT_NE(nullptr, hFont);
    ASSERT_NE(nullptr, hBold);
    EXPECT_EQ(hFont, NVGetDlgFont()) << "made once";
    LOGFONTW lf{}, lfBold{};
    GetObjectW(hFont, sizeof(lf), &lf);
    GetObjectW(hBold, sizeof(lfBold), &lfBold);
    EXPECT_EQ(EASTEUROPE_CHARSET, NVGetDlgFontCharSet());
    EXPECT_EQ(EASTEUROPE_CHARSET, lf.lfCharSet);
    EXPECT_GE(lfBold.lfWeight, FW_BOLD);
    EXPECT_LT(lf.lfWeight, FW_BOLD);
    NVSetCurCodePage(1252);
    EXPECT_EQ(ANSI_CHARSET, NVGetDlgFontCharSet());
    EXPECT_NE(hFont, NVGetDlgFont()) << "a font for the other character set";
}

TEST_F(Windows, GeometryHelpers) {
    HWND hButton = m_dlg.AddControl(L"BUTTON", BS_PUSHBUTTON, 106, 10, 20, 100, 30, L"OK");
    POINT pt{};
    SIZE size{};
    ASSERT_TRUE(GetWindowPosAndSize(hButton, &pt, &size));
    EXPECT_EQ(10, pt.x);
    EXPECT_EQ(20, pt.y);
    EXPECT_EQ(100, size.cx);
    EXPECT_EQ(30, size.cy);
    EXPECT_TRUE(GetWindowPosAndSize(hButton, nullptr, &size));
    EXPECT_TRUE(GetWindowPosAndSize(hButton, &pt, nullptr));
    EXPECT_FALSE(GetWindowPosAndSize(nullptr, &pt, &size));
    RECT rcDlg;
    GetWindowRect(m_dlg.hwnd(), &rcDlg);
    ASSERT_TRUE(GetWindowPosAndSize(m_dlg.hwnd(), &pt, &size));
    EXPECT_EQ(rcDlg.left, pt.x) << "a top-level window in screen coordinates";
    EXPECT_EQ(rcDlg.right - rcDlg.left, size.cx);

    RECT rc;
    GetWindowRect(hButton, &rc);
    ScreenToClient(m_dlg.hwnd(), rc);
    EXPECT_EQ(10, rc.left);
    EXPECT_EQ(20, rc.top);
    EXPECT_EQ(110, rc.right);
    EXPECT_EQ(50, rc.bottom);

    RECT outer{0, 0, 100, 100};
    RECT inner{90, -5, 120, 20};
    NVMoveInsideRect(inner, outer);
    EXPECT_EQ(70, inner.left);
    EXPECT_EQ(100, inner.right);
    EXPECT_EQ(0, inner.top);
    EXPECT_EQ(25, inner.bottom);
    RECT inside{10, 10, 20, 20};
    NVMoveInsideRect(inside, outer);
    EXPECT_EQ(10, inside.left);
    EXPECT_EQ(10, inside.top);
    RECT wide{50, 50, 200, 60};
    NVMoveInsideRect(wide, outer);
    EXPECT_EQ(0, wide.left) << "too wide: left edges meet";
    EXPECT_EQ(150, wide.right);

    unsigned long flags = 0x11;
    EXPECT_EQ(0x13u, NVCheckFlag(flags, 0x02, true));
    EXPECT_EQ(0x13u, flags);
    EXPECT_EQ(0x03u, NVCheckFlag(flags, 0x10, false));
    EXPECT_EQ(0x03u, NVCheckFlag(flags, 0x10, false));
}

LRESULT CALLBACK CountingProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    auto* pOld = reinterpret_cast<WNDPROC>(GetPropW(hWnd, L"NVTestOldProc"));
    if (uMsg == WM_SETTEXT)
        SetPropW(hWnd, L"NVTestCount",
                 reinterpret_cast<HANDLE>(reinterpret_cast<INT_PTR>(GetPropW(hWnd, L"NVTestCount")) + 1));
    return NVCallWindowProc(pOld, hWnd, uMsg, wParam, lParam);
}

TEST_F(Windows, WindowLongsAndSubclassing) {
    HWND hEdit = m_dlg.AddControl(L"EDIT", 0, 107, 10, 10, 100, 20);
    LONG_PTR const big = static_cast<LONG_PTR>(0x123456789ABCLL);
    NVSetWindowLongPtr(hEdit, GWLP_USERDATA, big);
    EXPECT_EQ(big, NVGetWindowLongPtr(hEdit, GWLP_USERDATA)) << "pointer-sized";
    EXPECT_EQ(big, NVSetWindowLongPtr(hEdit, GWLP_USERDATA, 5)) << "returns the old value";
    EXPECT_EQ(5, NVSetWindowLong(hEdit, GWLP_USERDATA, 6));
    EXPECT_EQ(6, NVGetWindowLongPtr(hEdit, GWLP_USERDATA));

    for (bool bUnicode : {true, false}) {
        NVSetUNICodeDlg(bUnicode);
        auto pOld = reinterpret_cast<WNDPROC>(
            NVSetWindowLongPtr(hEdit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountingProc)));
        ASSERT_NE(nullptr, pOld);
        SetPropW(hEdit, L"NVTestOldProc", reinterpret_cast<HANDLE>(pOld));
        SetPropW(hEdit, L"NVTestCount", nullptr);
        NVSetCurCodePage(1252);
        ASSERT_TRUE(NVSetWindowTextUC(hEdit, bUnicode ? GERMAN_1252 : "ascii"));
        EXPECT_EQ(1, reinterpret_cast<INT_PTR>(GetPropW(hEdit, L"NVTestCount"))) << bUnicode;
        EXPECT_EQ(bUnicode ? Utf8(GERMAN_WIDE) : "ascii", Utf8(WideText(hEdit)))
            << "the old procedure stored it";
        NVSetWindowLongPtr(hEdit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pOld));
        RemovePropW(hEdit, L"NVTestOldProc");
        RemovePropW(hEdit, L"NVTestCount");
    }
    EXPECT_EQ(0, NVCallWindowProc(nullptr, hEdit, WM_SETTEXT, 0, 0));
}

HBITMAP MakeBitmap(int cx, int cy, std::vector<COLORREF> const& pixels) {
    HDC hScreen = GetDC(nullptr);
    HBITMAP hbm = CreateCompatibleBitmap(hScreen, cx, cy);
    HDC hDC = CreateCompatibleDC(hScreen);
    HGDIOBJ hOld = SelectObject(hDC, hbm);
    for (int y = 0; y < cy; ++y)
        for (int x = 0; x < cx; ++x)
            SetPixel(hDC, x, y, pixels[static_cast<size_t>(y * cx + x)]);
    SelectObject(hDC, hOld);
    DeleteDC(hDC);
    ReleaseDC(nullptr, hScreen);
    return hbm;
}

TEST_F(Windows, TransparentBlitLeavesTheTransparentPixels) {
    COLORREF const M = RGB(255, 0, 255), R = RGB(255, 0, 0), G = RGB(0, 255, 0), B = RGB(0, 0, 255);
    COLORREF const W = RGB(255, 255, 255), K = RGB(0, 0, 0);
    HBITMAP hImage = MakeBitmap(3, 2, {M, R, G, G, M, R});
    Canvas canvas(8, 8);

    canvas.Fill(B);
    ASSERT_TRUE(NVTransparentBlit(canvas.dc(), hImage, nullptr, 1, 1, false, 0, 0, 0, 0));
    EXPECT_EQ(B, canvas.At(1, 1)) << "magenta is transparent";
    EXPECT_EQ(R, canvas.At(2, 1));
    EXPECT_EQ(G, canvas.At(3, 1));
    EXPECT_EQ(G, canvas.At(1, 2));
    EXPECT_EQ(B, canvas.At(2, 2));
    EXPECT_EQ(R, canvas.At(3, 2));
    EXPECT_EQ(B, canvas.At(4, 1)) << "nothing beyond the image";

    HBITMAP hCorner = MakeBitmap(2, 2, {G, R, R, G});
    canvas.Fill(B);
    ASSERT_TRUE(NVTransparentBlit(canvas.dc(), hCorner, nullptr, 0, 0, true, 0, 0, 0, 0));
    EXPECT_EQ(B, canvas.At(0, 0)) << "the corner's colour is transparent";
    EXPECT_EQ(R, canvas.At(1, 0));
    EXPECT_EQ(B, canvas.At(1, 1));

    // A part of the image, with a mask whose white pixels are transparent.
    HBITMAP hMask = CreateBitmap(3, 2, 1, 1, nullptr);
    {
        HDC hDC = CreateCompatibleDC(nullptr);
        HGDIOBJ hOld = SelectObject(hDC, hMask);
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 3; ++x)
                SetPixel(hDC, x, y, (x == 2 && y == 0) ? W : K);
        SelectObject(hDC, hOld);
        DeleteDC(hDC);
    }
    canvas.Fill(B);
    ASSERT_TRUE(NVTransparentBlit(canvas.dc(), hImage, hMask, 4, 4, false, 2, 2, 1, 0));
    EXPECT_EQ(R, canvas.At(4, 4));
    EXPECT_EQ(B, canvas.At(5, 4)) << "white in the mask";
    EXPECT_EQ(M, canvas.At(4, 5)) << "magenta is just a colour when a mask is given";
    EXPECT_EQ(R, canvas.At(5, 5));
    EXPECT_EQ(B, canvas.At(6, 4));

    EXPECT_FALSE(NVTransparentBlit(canvas.dc(), nullptr, nullptr, 0, 0, false, 0, 0, 0, 0));
    EXPECT_FALSE(NVTransparentBlit(nullptr, hImage, nullptr, 0, 0, false, 0, 0, 0, 0));
    EXPECT_FALSE(NVTransparentBlit(canvas.dc(), hImage, nullptr, 0, 0, false, 4, 1, 0, 0))
        << "wider than the image";
    EXPECT_FALSE(NVTransparentBlit(canvas.dc(), hImage, nullptr, 0, 0, false, 0, 0, 3, 0));
    HBITMAP hSmallMask = CreateBitmap(1, 1, 1, 1, nullptr);
    EXPECT_FALSE(NVTransparentBlit(canvas.dc(), hImage, hSmallMask, 0, 0, false, 0, 0, 0, 0));
    DeleteObject(hSmallMask);
    DeleteObject(hMask);
    DeleteObject(hCorner);
    DeleteObject(hImage);
}

TEST_F(Windows, ThemeWrappersFollowTheSwitch) {
    HWND hButton = m_dlg.AddControl(L"BUTTON", BS_PUSHBUTTON, 108, 10, 10, 80, 24, L"OK");
    Canvas canvas(40, 20);
    RECT rc{0, 0, 40, 20};

    EXPECT_EQ(IsThemeActive() != FALSE, NVIsThemeActive()) << "on by default, as the system says";
    if (NVIsThemeActive()) {
        void* hTheme = NVOpenThemeData(hButton, L"BUTTON");
        ASSERT_NE(nullptr, hTheme);
        canvas.Fill(RGB(1, 2, 3));
        EXPECT_TRUE(
            NVDrawThemeBackground(hTheme, canvas.dc(), BP_PUSHBUTTON, PBS_NORMAL, &rc, nullptr, nullptr));
        EXPECT_GT(canvas.CountNot(RGB(1, 2, 3)), 100);
        EXPECT_TRUE(
            NVDrawThemeText(hTheme, canvas.dc(), BP_PUSHBUTTON, PBS_NORMAL, L"OK", -1, DT_CENTER, &rc));
        NVSetThemesEnabled(false);
        EXPECT_FALSE(
            NVDrawThemeBackground(hTheme, canvas.dc(), BP_PUSHBUTTON, PBS_NORMAL, &rc, nullptr, nullptr))
            << "switched off: classic painting";
        EXPECT_TRUE(NVCloseThemeData(hTheme)) << "a handle is closed even after the switch";
    }

    NVSetThemesEnabled(false);
    EXPECT_FALSE(NVGetThemesEnabled());
    EXPECT_FALSE(NVIsThemeActive());
    void* hNone = NVOpenThemeData(hButton, L"BUTTON");
    EXPECT_EQ(nullptr, hNone);
    EXPECT_FALSE(NVDrawThemeBackground(hNone, canvas.dc(), BP_PUSHBUTTON, PBS_NORMAL, &rc, nullptr, hButton));
    EXPECT_FALSE(NVDrawThemeText(hNone, canvas.dc(), BP_PUSHBUTTON, PBS_NORMAL, L"OK", -1, 0, &rc));
    EXPECT_FALSE(NVCloseThemeData(hNone));
    NVSetThemesEnabled(true);
    EXPECT_TRUE(NVGetThemesEnabled());
    EXPECT_EQ(nullptr, NVOpenThemeData(hButton, nullptr));
}

} // namespace
