// The CSV text format shared by export, import and the clipboard.
//
// The writer quotes every field and doubles '"'; it also doubles '\' and writes line feed and
// carriage return as "\n" and "\r", so that one record is one physical line. The reader undoes only
// the doubled quote: backslash sequences come back as they were written, on purpose, since files
// exchanged with other desks carry them that way.
#pragma once

#include "frame/VTRExport.h"

#include <windows.h>

#include <cstdio>
#include <string>

// The separators offered to the user, in their order, with their combo box item data.
struct VTRCSVSeparator {
    char const* lpszText;
    char cSep;
};
VTR_API extern VTRCSVSeparator const g_VTRCSVSeparators[4];

// A new heap text (free it with free()) with the quoted, escaped field; null only when memory runs
// out. A null or empty text gives the two quotes.
VTR_API char* VTRConvertToCSVString(char const* pszText);
VTR_API wchar_t* VTRConvertToCSVStringW(wchar_t const* pszText);

// Appends the quoted, escaped field to out without allocating per field (the export's fast path).
VTR_API void VTRAppendCSVField(std::string& out, char const* pszText);
VTR_API void VTRAppendCSVField(std::wstring& out, wchar_t const* pszText);

// Reads one field from the cursor into pszField, which must be as large as the rest of the line.
// False when the line holds no further field; the cursor then stands at its end.
VTR_API bool VTRParseNextCSVField(char const*& pszCursor, char* pszField, char cSep);
VTR_API bool VTRParseNextCSVField(wchar_t const*& pszCursor, wchar_t* pszField, wchar_t cSep);

// Fills a combo box with the four separators (item data: the separator's character code) and selects
// entry iSel.
VTR_API void VTRFillSeparatorCB(HWND hCombo, int iSel);
