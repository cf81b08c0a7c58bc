// Window, text and drawing calls that take 8-bit text in the current code page (NVGetCurCodePage)
// and choose the 8-bit or the wide Win32 call as NVIsUNICodeDlg says. With wide dialogs the text is
// converted with the current code page, so that it reaches the window unchanged whatever the
// process's ANSI code page is. Results are those of the Win32 call that is wrapped.
#pragma once

#include "NVExport.h"

#include <windows.h>

NV_API LONG_PTR NVGetWindowLongPtr(HWND hWnd, int iIndex);
NV_API LONG_PTR NVSetWindowLongPtr(HWND hWnd, int iIndex, LONG_PTR lValue);
NV_API LONG NVSetWindowLong(HWND hWnd, int iIndex, LONG lValue);
NV_API LRESULT NVCallWindowProc(WNDPROC pfnProc, HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

// Text of a window into lpszText (iSize bytes, always terminated); the bytes copied.
NV_API int NVGetWindowTextUC(HWND hWnd, char* lpszText, int iSize);
NV_API int NVSetWindowTextUC(HWND hWnd, char const* lpszText);
NV_API int NVSetDlgItemTextUC(HWND hDlg, int iID, char const* lpszText);
// As NVGetWindowTextUC, without the '&' that mark access keys ("&&" stays as one '&').
NV_API int NVGetWindowTextNoPrefix(HWND hWnd, char* lpszText, unsigned int uSize);

// Index of the new item, CB_ERR or CB_ERRSPACE on failure.
NV_API int NVComboBox_AddString(HWND hCombo, char const* lpszText);
// uID is the item's command id, or its HMENU with MF_POPUP. With MF_BITMAP or MF_OWNERDRAW the text
// pointer is item data and is passed on unchanged.
NV_API int NVAppendMenu(HMENU hMenu, unsigned int uFlags, UINT_PTR uID, char const* lpszText);
NV_API HMENU NVLoadMenu(HINSTANCE hInst, char const* lpszName);
// TCM_INSERTITEM with the fields of a TCITEM; the index of the new tab or -1.
NV_API int NVInsertTabItem(HWND hTab, int iIndex, unsigned int uMask, unsigned long dwState,
                           unsigned long dwStateMask, wchar_t const* lpszText, int iImage, LPARAM lParam);
// SB_SETTEXT: iPart holds the part index and the SBT_ flags. With SBT_OWNERDRAW the text pointer is
// the part's data and is passed on unchanged.
NV_API int NVStatusBarSetText(HWND hStatus, int iPart, char* lpszText);
NV_API int NVStatusBarSetText(HWND hStatus, int iPart, wchar_t* lpszText);

// iLength -1: up to the terminator. With DT_MODIFYSTRING the changed text comes back into lpszText,
// which must then hold iLength + 4 bytes, as for DrawText itself.
NV_API int NVDrawText(HDC hDC, char const* lpszText, int iLength, RECT* pRect, unsigned int uFormat);
NV_API int NVDrawTextEx(HDC hDC, char* lpszText, int iLength, RECT* pRect, unsigned int uFormat,
                        DRAWTEXTPARAMS* pParams);
NV_API int NVTextOut(HDC hDC, int x, int y, char const* lpszText, int iLength);

// The application's dialog fonts: the system's message font, made for the character set of the
// current code page. Owned by the library; never delete them.
NV_API HFONT NVGetDlgFont();
NV_API HFONT NVGetDlgBoldFont();
NV_API unsigned char NVGetDlgFontCharSet();

// Position in the parent's client coordinates (screen coordinates for a top-level window) and size
// of the window rectangle. Either output may be null. False for a window that does not exist.
NV_API bool GetWindowPosAndSize(HWND hWnd, POINT* pPos, SIZE* pSize);
NV_API void ScreenToClient(HWND hWnd, RECT& rc);
// Shifts inner to lie within outer. Where inner is the larger, its left or top edge meets outer's.
NV_API void NVMoveInsideRect(RECT& inner, RECT& outer);
// Sets (bSet) or clears mask in flags and returns the new flags.
NV_API unsigned long NVCheckFlag(unsigned long& flags, unsigned long mask, bool bSet);

// Draws cx x cy pixels of hbmImage from (xSrc, ySrc) at (x, y), leaving out the transparent pixels:
// those that are white in the monochrome hbmMask, or without a mask, those of the transparent
// colour: the image's top left pixel with bCornerIsTransparent, else magenta (255, 0, 255). cx or cy
// 0 or below: the rest of the image. False when a handle or the part of the image is invalid.
NV_API bool NVTransparentBlit(HDC hDC, HBITMAP hbmImage, HBITMAP hbmMask, int x, int y,
                              bool bCornerIsTransparent, int cx, int cy, int xSrc, int ySrc);
