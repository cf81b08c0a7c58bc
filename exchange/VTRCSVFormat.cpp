#include "exchange/VTRCSVFormat.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>

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
    for (size_t i = 0; i < n; ++i) {
        CharT c = text[i];
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
            *p++ = '"';
            *p++ = '"';
            break;
        case '\\':
            *p++ = '\\';
            *p++ = '\\';
            break;
        default:
            *p++ = c;
        }
    }
    *p++ = '"';
    *p = 0;
    return out;
}

// The field is measured first, so that it is written with one resize and no per-character growth.
template <class CharT> void Append(std::basic_string<CharT>& out, CharT const* text) {
    size_t n = 0, extra = 0;
    if (text)
        for (; text[n]; ++n)
            extra += (text[n] == '\n' || text[n] == '\r' || text[n] == '"' || text[n] == '\\') ? 1 : 0;
    size_t const at = out.size();
    out.resize(at + n + extra + 2);
    CharT* p = &out[at];
    *p++ = '"';
    if (extra == 0) {
        if (n)
            std::char_traits<CharT>::copy(p, text, n);
        p += n;
    } else {
        for (size_t i = 0; i < n; ++i) {
            CharT const c = text[i];
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
                *p++ = c;
                *p++ = c;
                break;
            default:
                *p++ = c;
            }
        }
    }
    *p = '"';
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

void VTRAppendCSVField(std::string& out, char const* pszText) {
    Append(out, pszText);
}

void VTRAppendCSVField(std::wstring& out, wchar_t const* pszText) {
    Append(out, pszText);
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
