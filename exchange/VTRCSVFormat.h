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

// Writes character c of a field at p as the writer escapes it (one or two characters); returns the
// place behind it. Text of the code page goes byte by byte.
template <class CharT> inline CharT* VTRPutCSVChar(CharT* p, unsigned int c) {
    switch (c) {
    case '\n':
        *p++ = '\\';
        *p++ = 'n';
        break;
    case '\r':
        *p++ = '\\';
        *p++ = 'r';
        break;
    case '"':
    case '\\':
        *p++ = static_cast<CharT>(c);
        *p++ = static_cast<CharT>(c);
        break;
    default:
        *p++ = static_cast<CharT>(c);
    }
    return p;
}

// Reads one field from the cursor into pszField, which must be as large as the rest of the line.
// False when the line holds no further field; the cursor then stands at its end.
VTR_API bool VTRParseNextCSVField(char const*& pszCursor, char* pszField, char cSep);
VTR_API bool VTRParseNextCSVField(wchar_t const*& pszCursor, wchar_t* pszField, wchar_t cSep);

// Fills a combo box with the four separators (item data: the separator's character code) and selects
// entry iSel.
VTR_API void VTRFillSeparatorCB(HWND hCombo, int iSel);
