// Writes what the screen shows of a window as a PNG file, through WIC.
#pragma once

#include <windows.h>

bool SaveWindowScreenshot(HWND hWnd, wchar_t const* lpszPngPath);
