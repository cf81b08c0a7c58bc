// Visual styles for the library's own painting. Every wrapper reports false or null where no theme
// is active, upon which callers paint classically. NVSetThemesEnabled(false) makes the library
// behave as if no theme were active, whatever the system says.
#pragma once

#include "NVExport.h"

#include <windows.h>

// A theme handle for the window and class list (e.g. L"BUTTON"), null without an active theme.
NV_API void* NVOpenThemeData(HWND hWnd, wchar_t const* lpszClasses);
NV_API bool NVCloseThemeData(void* hTheme);
// Draws a part's background. With hWnd given, a partly transparent part first gets its parent's
// background behind it.
NV_API bool NVDrawThemeBackground(void* hTheme, HDC hDC, int iPart, int iState, RECT const* pRect,
                                  RECT const* pClip, HWND hWnd);
NV_API bool NVDrawThemeText(void* hTheme, HDC hDC, int iPart, int iState, wchar_t const* lpszText,
                            int iLength, unsigned long dwFlags, RECT const* pRect);
NV_API bool NVIsThemeActive();

// On by default.
NV_API void NVSetThemesEnabled(bool bEnabled);
NV_API bool NVGetThemesEnabled();
