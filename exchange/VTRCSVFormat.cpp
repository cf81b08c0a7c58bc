#include "exchange/VTRCSVFormat.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <type_traits>

VTRCSVSeparator const g_VTRCSVSeparators[4] = {{";", ';'}, {",", ','}, {"|", '|'}, {"<TAB>", '\t'}};

namespace {

// Escaping never needs more than two characters per character plus the quotes and terminator.
template <class CharT> CharT* Convert(CharT const* text) {
    size_t n = text ? std::char_traits<CharT>::length(text) : 0;
    auto* out = static_cast<CharT*>(std::malloc((2 * n + 3) * sizeof(CharT)));
    if (!out)
        return nullptr;
    CharT* p = out;
    *p++ = '"';
    for (size_t i = 0; i < n; ++i)
        p = VTRPutCSVChar(p, static_cast<std::make_unsigned_t<CharT>>(text[i]));
    *p++ = '"';
    *p = 0;
    return out;
}

template <class CharT> bool SkipsBlank(CharT c, CharT cSep) {
    return c != cSep && (c == ' ' || c == '\t' || c == '\n');
}

template <class CharT> bool ParseField(CharT const*& cursor, CharT* field, CharT cSep) {
    if (!cursor || !field)
        return false;
    CharT const* start = cursor;
    CharT const* p = cursor;
    while (*p && SkipsBlank(*p, cSep))
        ++p;
    if (!*p) {
        cursor = p;
        return false;
    }
    if (*p != '"') {
        // Unquoted: leading blanks belong to the field.
        p = start;
        CharT* out = field;
        while (*p && *p != cSep && *p != '\n')
            *out++ = *p++;
        *out = 0;
        if (*p)
            ++p;
        cursor = p;
        return true;
    }
    ++p;
    CharT* out = field;
    while (*p) {
        if (*p == '"') {
            if (p[1] == '"') {
                *out++ = '"';
                p += 2;
                continue;
            }
            ++p;
            break;
        }
        *out++ = *p++;
    }
    *out = 0;
    while (*p && SkipsBlank(*p, cSep))
        ++p;
    if (*p == cSep)
        ++p;
    cursor = p;
    return true;
}

} // namespace

char* VTRConvertToCSVString(char const* pszText) {
    return Convert(pszText);
}

wchar_t* VTRConvertToCSVStringW(wchar_t const* pszText) {
    return Convert(pszText);
}

bool VTRParseNextCSVField(char const*& pszCursor, char* pszField, char cSep) {
    return ParseField(pszCursor, pszField, cSep);
}

bool VTRParseNextCSVField(wchar_t const*& pszCursor, wchar_t* pszField, wchar_t cSep) {
    return ParseField(pszCursor, pszField, cSep);
}

void VTRFillSeparatorCB(HWND hCombo, int iSel) {
    if (!hCombo)
        return;
    for (VTRCSVSeparator const& sep : g_VTRCSVSeparators) {
        LRESULT i = SendMessageA(hCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(sep.lpszText));
        if (i >= 0)
            SendMessageA(hCombo, CB_SETITEMDATA, static_cast<WPARAM>(i),
                         static_cast<unsigned char>(sep.cSep));
    }
    SendMessageA(hCombo, CB_SETCURSEL, static_cast<WPARAM>(iSel), 0);
}
