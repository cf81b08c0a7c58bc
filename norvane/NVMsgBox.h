// Message boxes and the application's name.
//
// Every box of the library and of its clients goes through NVMessageBox/NVMessageBoxW. A sink set
// with NVSetMsgBoxSink receives each box instead of the screen (title, text and flags, already
// formatted) and answers with the button id to return; tests use it so that no modal box can hang
// a run, and a client may use it to route messages elsewhere.
#pragma once

#include "NVExport.h"

#include <windows.h>

#include <cstdarg>

typedef int(CALLBACK* NVMSGBOXSINK)(void* pContext, HWND hParent, wchar_t const* lpszTitle,
                                    wchar_t const* lpszText, unsigned int uFlags);

// Installs a sink (null: boxes go to the screen again) and returns the previous one.
NV_API NVMSGBOXSINK NVSetMsgBoxSink(NVMSGBOXSINK pSink, void* pContext, void** ppPrevContext = nullptr);

// Formats text with the arguments (SNPrintf's rules), shows a modal box with MessageBox flags and
// returns the button id. A null or empty title takes the application's name.
NV_API int NVMsgBox_VA(HWND hParent, char const* lpszTitle, unsigned int uFlags, char const* lpszText,
                       va_list args);
NV_API int NVMsgBox_VA_W(HWND hParent, wchar_t const* lpszTitle, unsigned int uFlags, wchar_t const* lpszText,
                         va_list args);
NV_API int NVMsgBox(HWND hParent, char const* lpszTitle, unsigned int uFlags, char const* lpszText, ...);
NV_API int NVMsgBoxW(HWND hParent, wchar_t const* lpszTitle, unsigned int uFlags, wchar_t const* lpszText,
                     ...);

// A plain box: the text is shown as it is.
NV_API int NVMessageBox(HWND hParent, char const* lpszText, char const* lpszTitle, unsigned int uFlags);
NV_API int NVMessageBoxW(HWND hParent, wchar_t const* lpszText, wchar_t const* lpszTitle,
                         unsigned int uFlags);

// The owner for a box: the wanted window's top-level window when it is one, otherwise this thread's
// active window (null when there is none).
NV_API HWND NVGetMsgBoxParent(HWND hWanted);

// The application's name, the title of boxes that have no other. Empty until set.
NV_API char const* NVGetAppName();
NV_API wchar_t const* NVGetAppNameU();
NV_API void NVSetAppName(char const* lpszName);
