#include "NVTheme.h"

#include <uxtheme.h>

namespace {
bool g_bThemesEnabled = true;
}

void NVSetThemesEnabled(bool bEnabled) {
    g_bThemesEnabled = bEnabled;
}

bool NVGetThemesEnabled() {
    return g_bThemesEnabled;
}

bool NVIsThemeActive() {
    return g_bThemesEnabled && IsThemeActive();
}

void* NVOpenThemeData(HWND hWnd, wchar_t const* lpszClasses) {
    if (!lpszClasses || !*lpszClasses || !NVIsThemeActive())
        return nullptr;
    return OpenThemeData(hWnd, lpszClasses);
}

bool NVCloseThemeData(void* hTheme) {
    // A handle opened while themes were on is closed even after they were switched off.
    return hTheme && SUCCEEDED(CloseThemeData(static_cast<HTHEME>(hTheme)));
}

bool NVDrawThemeBackground(void* hTheme, HDC hDC, int iPart, int iState, RECT const* pRect, RECT const* pClip,
                           HWND hWnd) {
    if (!hTheme || !hDC || !pRect || !NVIsThemeActive())
        return false;
    HTHEME const h = static_cast<HTHEME>(hTheme);
    if (hWnd && IsThemeBackgroundPartiallyTransparent(h, iPart, iState)) {
        RECT rc = *pRect;
        DrawThemeParentBackground(hWnd, hDC, &rc);
    }
    return SUCCEEDED(DrawThemeBackground(h, hDC, iPart, iState, pRect, pClip));
}

bool NVDrawThemeText(void* hTheme, HDC hDC, int iPart, int iState, wchar_t const* lpszText, int iLength,
                     unsigned long dwFlags, RECT const* pRect) {
    if (!hTheme || !hDC || !lpszText || !pRect || !NVIsThemeActive())
        return false;
    return SUCCEEDED(
        DrawThemeText(static_cast<HTHEME>(hTheme), hDC, iPart, iState, lpszText, iLength, dwFlags, 0, pRect));
}
