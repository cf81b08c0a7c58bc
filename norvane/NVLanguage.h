// Language, code page and the library's own texts.
#pragma once

#include "NVExport.h"

#include <windows.h>

// Language of the running user interface. Tests pin it with NVSetCurrentLangID; 0 there gives the
// system's answer back.
NV_API unsigned short GetCurrentLangID(bool bUser = false);
NV_API void NVSetCurrentLangID(unsigned short wLangID);

// The default language that a client chose for its texts, 0 when none was chosen.
NV_API unsigned short NVGetSetDefaultLangID();
NV_API void NVSetDefaultLangID(unsigned short wLangID);

// Code page of all 8-bit text: the process's ANSI code page unless pinned with NVSetCurCodePage
// (0 gives the system's answer back).
NV_API int NVGetCurCodePage();
NV_API void NVSetCurCodePage(int iCodePage);
// The ANSI code page of a language; the current code page for 0 or an unknown language.
NV_API unsigned long NVGetCodePageFromLangID(unsigned short wLangID);

// Whether dialogs run with wide window procedures: chooses the 8-bit or wide window calls.
// True unless switched off.
NV_API bool NVIsUNICodeDlg();
NV_API void NVSetUNICodeDlg(bool bUnicode);

// True when the running Windows is at least major.minor.build.
NV_API bool NVIsWindowsVersionOrGreater(unsigned short wMajor, unsigned short wMinor, unsigned short wBuild);

// Texts of this library's own string table (the messages of the field checks). Language 0 means the
// current one; a language without the text falls back to its primary language, then to English.
// The result stays valid for the life of the process; an unknown id gives "".
NV_API char const* GSRC(unsigned long dwID, unsigned short wLangID = 0);
NV_API wchar_t const* GSRCW(unsigned long dwID, unsigned short wLangID = 0);

// Ids of GSRC.
enum : unsigned long {
    NV_IDS_FIELD_EMPTY = 1024,      // §1: the field's label
    NV_IDS_FIELD_INVALID = 1025,    // §1: the field's text
    NV_IDS_EMAIL_INVALID = 1026,    // §1: the address
    NV_IDS_CARDDATE_INVALID = 1027, // §1: the field's label
    NV_IDS_SELECT_ENTRY = 1028,     // §1: the field's label
    NV_IDS_DATE_EMPTY = 1029,       // §1: the field's label
    NV_IDS_NUMBER_INVALID = 1030,   // §1: the field's label
    NV_IDS_OUT_OF_RANGE = 1042,     // §1, §2: lower and upper bound, as text
};
