#include "NVWindows.h"

#include "NVLanguage.h"

#include <commctrl.h>

#include <cstring>
#include <map>
#include <mutex>
#include <string>

namespace {

std::wstring ToWide(char const* text, int length = -1) {
    if (!text)
        return std::wstring();
    int const n = length < 0 ? static_cast<int>(std::strlen(text)) : length;
    if (n == 0)
        return std::wstring();
    UINT const cp = static_cast<UINT>(NVGetCurCodePage());
    int const wlen = MultiByteToWideChar(cp, 0, text, n, nullptr, 0);
    std::wstring out(static_cast<size_t>(wlen > 0 ? wlen : 0), L'\0');
    if (wlen > 0)
        MultiByteToWideChar(cp, 0, text, n, &out[0], wlen);
    return out;
}

std::string ToNarrow(wchar_t const* text, int length = -1) {
    if (!text)
        return std::string();
    int const n = length < 0 ? static_cast<int>(std::wcslen(text)) : length;
    if (n == 0)
        return std::string();
    UINT const cp = static_cast<UINT>(NVGetCurCodePage());
    int const len = WideCharToMultiByte(cp, 0, text, n, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(len > 0 ? len : 0), '\0');
    if (len > 0)
        WideCharToMultiByte(cp, 0, text, n, &out[0], len, nullptr, nullptr);
    return out;
}

// Copies as much as fits, never splitting a double-byte character; returns the bytes copied.
int CopyText(std::string const& text, char* out, size_t size) {
    if (!out || size == 0)
        return 0;
    size_t n = 0;
    UINT const cp = static_cast<UINT>(NVGetCurCodePage());
    while (n < text.size()) {
        size_t const step = IsDBCSLeadByteEx(cp, static_cast<BYTE>(text[n])) ? 2 : 1;
        if (n + step > size - 1)
            break;
        n += step;
    }
    std::memcpy(out, text.data(), n);
    out[n] = '\0';
    return static_cast<int>(n);
}

std::string WindowText(HWND hWnd) {
    if (!IsWindow(hWnd))
        return std::string();
    if (NVIsUNICodeDlg()) {
        int const len = GetWindowTextLengthW(hWnd);
        std::wstring w(static_cast<size_t>(len) + 1, L'\0');
        int const got = GetWindowTextW(hWnd, &w[0], len + 1);
        return ToNarrow(w.c_str(), got);
    }
    int const len = GetWindowTextLengthA(hWnd);
    std::string s(static_cast<size_t>(len) + 1, '\0');
    int const got = GetWindowTextA(hWnd, &s[0], len + 1);
    s.resize(static_cast<size_t>(got > 0 ? got : 0));
    return s;
}

BYTE CharSetOfCodePage(UINT cp) {
    CHARSETINFO csi{};
    if (TranslateCharsetInfo(reinterpret_cast<DWORD*>(static_cast<ULONG_PTR>(cp)), &csi, TCI_SRCCODEPAGE))
        return static_cast<BYTE>(csi.ciCharset);
    return DEFAULT_CHARSET;
}

// One regular and one bold font per character set, kept for the life of the process: windows
// may hold them at any time.
HFONT DialogFont(bool bBold) {
    static std::mutex lock;
    static std::map<std::pair<BYTE, bool>, HFONT> fonts;
    BYTE const charSet = NVGetDlgFontCharSet();
    std::lock_guard<std::mutex> guard(lock);
    auto key = std::make_pair(charSet, bBold);
    auto it = fonts.find(key);
    if (it != fonts.end())
        return it->second;
    NONCLIENTMETRICSW ncm{};
    ncm.cbSize = sizeof(ncm);
    LOGFONTW lf{};
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(ncm), &ncm, 0)) {
        lf = ncm.lfMessageFont;
    } else {
        lf.lfHeight = -11;
        lstrcpynW(lf.lfFaceName, L"MS Shell Dlg 2", LF_FACESIZE);
    }
    lf.lfCharSet = charSet;
    lf.lfWeight = bBold ? FW_BOLD : FW_NORMAL;
    HFONT hFont = CreateFontIndirectW(&lf);
    if (hFont)
        fonts.emplace(key, hFont);
    return hFont;
}

} // namespace

LONG_PTR NVGetWindowLongPtr(HWND hWnd, int iIndex) {
    return NVIsUNICodeDlg() ? GetWindowLongPtrW(hWnd, iIndex) : GetWindowLongPtrA(hWnd, iIndex);
}

LONG_PTR NVSetWindowLongPtr(HWND hWnd, int iIndex, LONG_PTR lValue) {
    return NVIsUNICodeDlg() ? SetWindowLongPtrW(hWnd, iIndex, lValue)
                            : SetWindowLongPtrA(hWnd, iIndex, lValue);
}

LONG NVSetWindowLong(HWND hWnd, int iIndex, LONG lValue) {
    return NVIsUNICodeDlg() ? SetWindowLongW(hWnd, iIndex, lValue) : SetWindowLongA(hWnd, iIndex, lValue);
}

LRESULT NVCallWindowProc(WNDPROC pfnProc, HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
    if (!pfnProc)
        return 0;
    return NVIsUNICodeDlg() ? CallWindowProcW(pfnProc, hWnd, uMsg, wParam, lParam)
                            : CallWindowProcA(pfnProc, hWnd, uMsg, wParam, lParam);
}

int NVGetWindowTextUC(HWND hWnd, char* lpszText, int iSize) {
    if (!lpszText || iSize <= 0)
        return 0;
    return CopyText(WindowText(hWnd), lpszText, static_cast<size_t>(iSize));
}

int NVSetWindowTextUC(HWND hWnd, char const* lpszText) {
    if (!lpszText)
        lpszText = "";
    if (NVIsUNICodeDlg())
        return SetWindowTextW(hWnd, ToWide(lpszText).c_str());
    return SetWindowTextA(hWnd, lpszText);
}

int NVSetDlgItemTextUC(HWND hDlg, int iID, char const* lpszText) {
    HWND hItem = GetDlgItem(hDlg, iID);
    return hItem ? NVSetWindowTextUC(hItem, lpszText) : 0;
}

int NVGetWindowTextNoPrefix(HWND hWnd, char* lpszText, unsigned int uSize) {
    if (!lpszText || uSize == 0)
        return 0;
    std::string const text = WindowText(hWnd);
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && i + 1 < text.size())
            ++i; // "&&" keeps one '&', "&x" keeps the x
        else if (text[i] == '&')
            continue;
        plain += text[i];
    }
    return CopyText(plain, lpszText, uSize);
}

int NVComboBox_AddString(HWND hCombo, char const* lpszText) {
    if (!IsWindow(hCombo))
        return CB_ERR;
    if (!lpszText)
        lpszText = "";
    if (NVIsUNICodeDlg()) {
        std::wstring const w = ToWide(lpszText);
        return static_cast<int>(SendMessageW(hCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(w.c_str())));
    }
    return static_cast<int>(SendMessageA(hCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszText)));
}

int NVAppendMenu(HMENU hMenu, unsigned int uFlags, UINT_PTR uID, char const* lpszText) {
    bool const bData = (uFlags & (MF_BITMAP | MF_OWNERDRAW)) != 0;
    if (bData || !lpszText || !NVIsUNICodeDlg())
        return AppendMenuA(hMenu, uFlags, uID, lpszText);
    return AppendMenuW(hMenu, uFlags, uID, ToWide(lpszText).c_str());
}

HMENU NVLoadMenu(HINSTANCE hInst, char const* lpszName) {
    if (!lpszName)
        return nullptr;
    if (IS_INTRESOURCE(lpszName))
        return NVIsUNICodeDlg() ? LoadMenuW(hInst, reinterpret_cast<LPCWSTR>(lpszName))
                                : LoadMenuA(hInst, lpszName);
    if (NVIsUNICodeDlg())
        return LoadMenuW(hInst, ToWide(lpszName).c_str());
    return LoadMenuA(hInst, lpszName);
}

int NVInsertTabItem(HWND hTab, int iIndex, unsigned int uMask, unsigned long dwState,
                    unsigned long dwStateMask, wchar_t const* lpszText, int iImage, LPARAM lParam) {
    if (!IsWindow(hTab))
        return -1;
    if (NVIsUNICodeDlg()) {
        std::wstring text = lpszText ? lpszText : L"";
        TCITEMW item{};
        item.mask = uMask;
        item.dwState = dwState;
        item.dwStateMask = dwStateMask;
        item.pszText = &text[0];
        item.iImage = iImage;
        item.lParam = lParam;
        return static_cast<int>(SendMessageW(hTab, TCM_INSERTITEMW, static_cast<WPARAM>(iIndex),
                                             reinterpret_cast<LPARAM>(&item)));
    }
    std::string text = ToNarrow(lpszText);
    TCITEMA item{};
    item.mask = uMask;
    item.dwState = dwState;
    item.dwStateMask = dwStateMask;
    item.pszText = &text[0];
    item.iImage = iImage;
    item.lParam = lParam;
    return static_cast<int>(
        SendMessageA(hTab, TCM_INSERTITEMA, static_cast<WPARAM>(iIndex), reinterpret_cast<LPARAM>(&item)));
}

int NVStatusBarSetText(HWND hStatus, int iPart, char* lpszText) {
    if (!IsWindow(hStatus))
        return 0;
    if ((iPart & SBT_OWNERDRAW) || !NVIsUNICodeDlg())
        return static_cast<int>(SendMessageA(hStatus, SB_SETTEXTA, static_cast<WPARAM>(iPart),
                                             reinterpret_cast<LPARAM>(lpszText)));
    std::wstring const w = ToWide(lpszText);
    return static_cast<int>(
        SendMessageW(hStatus, SB_SETTEXTW, static_cast<WPARAM>(iPart), reinterpret_cast<LPARAM>(w.c_str())));
}

int NVStatusBarSetText(HWND hStatus, int iPart, wchar_t* lpszText) {
    if (!IsWindow(hStatus))
        return 0;
    if ((iPart & SBT_OWNERDRAW) || NVIsUNICodeDlg())
        return static_cast<int>(SendMessageW(hStatus, SB_SETTEXTW, static_cast<WPARAM>(iPart),
                                             reinterpret_cast<LPARAM>(lpszText)));
    std::string const s = ToNarrow(lpszText);
    return static_cast<int>(
        SendMessageA(hStatus, SB_SETTEXTA, static_cast<WPARAM>(iPart), reinterpret_cast<LPARAM>(s.c_str())));
}

int NVDrawText(HDC hDC, char const* lpszText, int iLength, RECT* pRect, unsigned int uFormat) {
    return NVDrawTextEx(hDC, const_cast<char*>(lpszText), iLength, pRect, uFormat, nullptr);
}

int NVDrawTextEx(HDC hDC, char* lpszText, int iLength, RECT* pRect, unsigned int uFormat,
                 DRAWTEXTPARAMS* pParams) {
    if (!hDC || !lpszText || !pRect)
        return 0;
    if (!NVIsUNICodeDlg())
        return DrawTextExA(hDC, lpszText, iLength, pRect, uFormat, pParams);
    int const bytes = iLength < 0 ? static_cast<int>(std::strlen(lpszText)) : iLength;
    std::wstring w = ToWide(lpszText, bytes);
    // DrawText may write an ellipsis and four more characters behind the text.
    size_t const wlen = w.size();
    w.resize(wlen + 5, L'\0');
    int const result = DrawTextExW(hDC, &w[0], static_cast<int>(wlen), pRect, uFormat, pParams);
    if (uFormat & DT_MODIFYSTRING) {
        std::string const changed = ToNarrow(w.c_str());
        CopyText(changed, lpszText, static_cast<size_t>(bytes) + 4);
    }
    return result;
}

int NVTextOut(HDC hDC, int x, int y, char const* lpszText, int iLength) {
    if (!hDC || !lpszText)
        return 0;
    int const bytes = iLength < 0 ? static_cast<int>(std::strlen(lpszText)) : iLength;
    if (!NVIsUNICodeDlg())
        return TextOutA(hDC, x, y, lpszText, bytes);
    std::wstring const w = ToWide(lpszText, bytes);
    return TextOutW(hDC, x, y, w.c_str(), static_cast<int>(w.size()));
}

unsigned char NVGetDlgFontCharSet() {
    return CharSetOfCodePage(static_cast<UINT>(NVGetCurCodePage()));
}

HFONT NVGetDlgFont() {
    return DialogFont(false);
}

HFONT NVGetDlgBoldFont() {
    return DialogFont(true);
}

bool GetWindowPosAndSize(HWND hWnd, POINT* pPos, SIZE* pSize) {
    RECT rc;
    if (!IsWindow(hWnd) || !GetWindowRect(hWnd, &rc))
        return false;
    HWND hParent = (GetWindowLongPtrW(hWnd, GWL_STYLE) & WS_CHILD) ? GetParent(hWnd) : nullptr;
    if (hParent)
        MapWindowPoints(HWND_DESKTOP, hParent, reinterpret_cast<POINT*>(&rc), 2);
    if (pPos) {
        pPos->x = rc.left;
        pPos->y = rc.top;
    }
    if (pSize) {
        pSize->cx = rc.right - rc.left;
        pSize->cy = rc.bottom - rc.top;
    }
    return true;
}

void ScreenToClient(HWND hWnd, RECT& rc) {
    POINT corners[2] = {{rc.left, rc.top}, {rc.right, rc.bottom}};
    if (!ScreenToClient(hWnd, &corners[0]) || !ScreenToClient(hWnd, &corners[1]))
        return;
    rc = RECT{corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

void NVMoveInsideRect(RECT& inner, RECT& outer) {
    auto shift = [](LONG& lo, LONG& hi, LONG outerLo, LONG outerHi) {
        LONG delta = 0;
        if (hi > outerHi)
            delta = outerHi - hi;
        if (lo + delta < outerLo)
            delta = outerLo - lo;
        lo += delta;
        hi += delta;
    };
    shift(inner.left, inner.right, outer.left, outer.right);
    shift(inner.top, inner.bottom, outer.top, outer.bottom);
}

unsigned long NVCheckFlag(unsigned long& flags, unsigned long mask, bool bSet) {
    if (bSet)
        flags |= mask;
    else
        flags &= ~mask;
    return flags;
}

bool NVTransparentBlit(HDC hDC, HBITMAP hbmImage, HBITMAP hbmMask, int x, int y, bool bCornerIsTransparent,
                       int cx, int cy, int xSrc, int ySrc) {
    BITMAP bm{};
    if (!hDC || !hbmImage || !GetObjectW(hbmImage, sizeof(bm), &bm))
        return false;
    if (xSrc < 0 || ySrc < 0 || xSrc >= bm.bmWidth || ySrc >= bm.bmHeight)
        return false;
    if (cx <= 0)
        cx = bm.bmWidth - xSrc;
    if (cy <= 0)
        cy = bm.bmHeight - ySrc;
    if (xSrc + cx > bm.bmWidth || ySrc + cy > bm.bmHeight)
        return false;
    BITMAP bmMask{};
    if (hbmMask && (!GetObjectW(hbmMask, sizeof(bmMask), &bmMask) || bmMask.bmWidth < xSrc + cx ||
                    bmMask.bmHeight < ySrc + cy))
        return false;

    HDC hImageDC = CreateCompatibleDC(hDC);
    HDC hMaskDC = CreateCompatibleDC(hDC);
    HDC hWorkDC = CreateCompatibleDC(hDC);
    HBITMAP hOwnMask = nullptr;
    HBITMAP hWork = CreateCompatibleBitmap(hDC, cx, cy);
    bool bOk = hImageDC && hMaskDC && hWorkDC && hWork;
    HGDIOBJ hOldImage = nullptr, hOldMask = nullptr, hOldWork = nullptr;
    if (bOk) {
        hOldImage = SelectObject(hImageDC, hbmImage);
        if (!hbmMask) {
            // A monochrome copy against the transparent colour as background gives white there.
            hOwnMask = CreateBitmap(cx, cy, 1, 1, nullptr);
            bOk = hOwnMask != nullptr;
            if (bOk) {
                hOldMask = SelectObject(hMaskDC, hOwnMask);
                COLORREF const key = bCornerIsTransparent ? GetPixel(hImageDC, 0, 0) : RGB(255, 0, 255);
                COLORREF const oldBk = SetBkColor(hImageDC, key);
                BitBlt(hMaskDC, 0, 0, cx, cy, hImageDC, xSrc, ySrc, SRCCOPY);
                SetBkColor(hImageDC, oldBk);
            }
        } else {
            // Work in mask coordinates that match the image part.
            hOwnMask = CreateBitmap(cx, cy, 1, 1, nullptr);
            bOk = hOwnMask != nullptr;
            if (bOk) {
                HDC hSrcMaskDC = CreateCompatibleDC(hDC);
                HGDIOBJ hOldSrc = SelectObject(hSrcMaskDC, hbmMask);
                hOldMask = SelectObject(hMaskDC, hOwnMask);
                BitBlt(hMaskDC, 0, 0, cx, cy, hSrcMaskDC, xSrc, ySrc, SRCCOPY);
                SelectObject(hSrcMaskDC, hOldSrc);
                DeleteDC(hSrcMaskDC);
            }
        }
    }
    if (bOk) {
        // Monochrome to colour maps 0 to the text colour and 1 to the background colour.
        COLORREF const oldText = SetTextColor(hDC, RGB(0, 0, 0));
        COLORREF const oldBk = SetBkColor(hDC, RGB(255, 255, 255));
        hOldWork = SelectObject(hWorkDC, hWork);
        SetTextColor(hWorkDC, RGB(0, 0, 0));
        SetBkColor(hWorkDC, RGB(255, 255, 255));
        // Image with its transparent pixels made black ...
        BitBlt(hWorkDC, 0, 0, cx, cy, hImageDC, xSrc, ySrc, SRCCOPY);
        BitBlt(hWorkDC, 0, 0, cx, cy, hMaskDC, 0, 0, 0x00220326); // DSna: image AND NOT mask
        // ... target with the opaque pixels made black, then both joined.
        bOk = BitBlt(hDC, x, y, cx, cy, hMaskDC, 0, 0, SRCAND) &&
              BitBlt(hDC, x, y, cx, cy, hWorkDC, 0, 0, SRCPAINT);
        SetTextColor(hDC, oldText);
        SetBkColor(hDC, oldBk);
    }
    if (hOldWork)
        SelectObject(hWorkDC, hOldWork);
    if (hOldMask)
        SelectObject(hMaskDC, hOldMask);
    if (hOldImage)
        SelectObject(hImageDC, hOldImage);
    if (hWork)
        DeleteObject(hWork);
    if (hOwnMask)
        DeleteObject(hOwnMask);
    if (hWorkDC)
        DeleteDC(hWorkDC);
    if (hMaskDC)
        DeleteDC(hMaskDC);
    if (hImageDC)
        DeleteDC(hImageDC);
    return bOk;
}
