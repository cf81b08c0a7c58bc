// Cell types: names, extra arguments, text form of every type, and the parsers from text to value.
#include "listview/VTRBListView.h"

#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"

#include "NVDates.h"
#include "NVErrors.h"
#include "NVFormat.h"
#include "NVLanguage.h"
#include "NVNumbers.h"
#include "NVStrings.h"

#include <cerrno>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

wchar_t const s_wszEmpty[] = L"";

// Names in enumerator order; null where a type has no name of its own.
char const* const s_aTypeNames[VTDT_COUNT] = {
    "VTDT_STRING",
    nullptr,
    "VTDT_int",
    "VTDT_DWORD",
    "VTDT_LPINT",
    "VTDT_LPDWORD",
    "VTDT_TIME_T",
    "VTDT_LPTIME_T",
    "VTDT_DOUBLE",
    "VTDT_LPDOUBLE",
    "VTDT_CARD_DATE",
    "VTDT_LPCARD_DATE",
    "VTDT_DWORD_NOT_NULL",
    "VTDT_int32_CUSTOM",
    nullptr,
    "VTDT_CALLBACK",
    "VTDT_SYSTEMTIME",
    "VTDT_LPSYSTEMTIME",
    "VTDT_CHECKBOX",
    "VTDT_CALLBACK_PTR",
    "VTDT_WSTRING",
    "VTDT_LPWSTR",
    "VTDT_QWORD",
    "VTDT_SYSTEMTIME_TIMEONLY",
    "VTDT_WORD",
    nullptr,
    nullptr,
    "VTDT_FLAG",
    "VTDT_bool",
};

char const* SkipBlanks(char const* p) {
    while (*p == ' ' || *p == '\t')
        ++p;
    return p;
}

// The 8-bit copy that the wide parsers hand on; freed by its destructor, also when a parser throws.
class NarrowCopy {
public:
    explicit NarrowCopy(wchar_t const* text) {
        int const cp = NVGetCurCodePage();
        int n = text ? WideCharToMultiByte(cp, 0, text, -1, nullptr, 0, nullptr, nullptr) : 0;
        int const len = text ? static_cast<int>(wcslen(text)) + 1 : 1;
        if (n < len)
            n = len;
        m_p = static_cast<char*>(malloc(static_cast<size_t>(n)));
        if (m_p) {
            m_p[0] = 0;
            if (text)
                WideCharToMultiByte(cp, 0, text, -1, m_p, n, nullptr, nullptr);
        }
    }
    ~NarrowCopy() { free(m_p); }
    NarrowCopy(NarrowCopy const&) = delete;
    NarrowCopy& operator=(NarrowCopy const&) = delete;
    char* get() { return m_p; }

private:
    char* m_p;
};

// Code pages that map the bytes 0x01 to 0x7F to the same code points: the Windows ANSI and OEM
// pages, ISO 8859 and UTF-8. In them ASCII text widens byte by byte, which is far cheaper than
// asking the system. Others (EBCDIC, the stateful ISO 2022 pages, UTF-7) always go to the system.
bool IsAsciiCodePage(UINT cp) {
    switch (cp) {
    case CP_ACP:
    case CP_OEMCP:
    case CP_THREAD_ACP:
    case 437:
    case 850:
    case 852:
    case 866:
    case 874:
    case 932:
    case 936:
    case 949:
    case 950:
    case 20127:
    case CP_UTF8:
        return true;
    default:
        return (cp >= 1250 && cp <= 1258) || (cp >= 28591 && cp <= 28605);
    }
}

// Writes the decimal digits of v, at least minDigits of them, after an optional '-' into buf; the
// text that printf's "%d", "%u", "%llu" and "%02u" give.
wchar_t* WideDecimal(wchar_t* buf, unsigned long long v, bool bNegative, int minDigits = 1) {
    wchar_t rev[24];
    int n = 0;
    do {
        rev[n++] = static_cast<wchar_t>(L'0' + v % 10);
        v /= 10;
    } while (v);
    while (n < minDigits)
        rev[n++] = L'0';
    wchar_t* p = buf;
    if (bNegative)
        *p++ = L'-';
    while (n > 0)
        *p++ = rev[--n];
    *p = 0;
    return p;
}

wchar_t* WideSigned(wchar_t* buf, int v) {
    unsigned long long const magnitude =
        v < 0 ? 0ULL - static_cast<unsigned long long>(static_cast<long long>(v))
              : static_cast<unsigned long long>(v);
    return WideDecimal(buf, magnitude, v < 0);
}

[[noreturn]] void ThrowInvalid(DWORD id, int line, char const* text) {
    Throw(0, VTRStringTable::GetText(id), line, text ? text : "");
}

} // namespace

VTRBDataType VTRBListView::VTRBDataTypeFromString(char const* name) {
    if (!name)
        return VTDT_STRING;
    for (int i = 0; i < VTDT_COUNT; ++i)
        if (s_aTypeNames[i] && strcmp(s_aTypeNames[i], name) == 0)
            return static_cast<VTRBDataType>(i);
    return VTDT_STRING;
}

int VTRBListView::GetExtraArgCnt(VTRBDataType type) {
    switch (type) {
    case VTDT_TIME_T:
    case VTDT_LPTIME_T:
    case VTDT_SYSTEMTIME:
    case VTDT_LPSYSTEMTIME:
        return 2;
    case VTDT_DOUBLE:
    case VTDT_LPDOUBLE:
    case VTDT_int32_CUSTOM:
    case VTDT_LPint32_CUSTOM:
    case VTDT_FLAG:
        return 1;
    case VTDT_CALLBACK:
    case VTDT_CALLBACK_PTR:
        return 3;
    default:
        return 0;
    }
}

// ---------------------------------------------------------------- parsers

unsigned long VTRBListView::Str2Val(char* text, bool bSigned, int line, bool& ok, bool bLenient,
                                    bool bSilent) {
    if (!text) {
        ok = false;
        return 0;
    }
    errno = 0;
    char* end = nullptr;
    unsigned long value =
        bSigned ? static_cast<unsigned long>(strtol(text, &end, 10)) : strtoul(text, &end, 10);
    if (errno == ERANGE) {
        ok = false;
        if (!bLenient && !bSilent)
            ThrowInvalid(IDS_VTR_BAD_NUMBER_LINE, line, text);
        return 0;
    }
    if (*SkipBlanks(end)) {
        ok = false;
        if (!bLenient && !bSilent)
            ThrowInvalid(IDS_VTR_BAD_NUMBER_LINE, line, text);
        return value;
    }
    ok = true;
    // A number written with a leading zero reads, but is not taken for a number.
    if (bLenient && value != 0 && *SkipBlanks(text) == '0')
        ok = false;
    return value;
}

unsigned long VTRBListView::Str2Val(wchar_t* text, bool bSigned, int line, bool& ok, bool bLenient,
                                    bool bSilent) {
    NarrowCopy copy(text);
    if (!copy.get()) {
        ok = false;
        return 0;
    }
    return Str2Val(copy.get(), bSigned, line, ok, bLenient, bSilent);
}

unsigned __int64 VTRBListView::Str2UVal64(char* text, int line, bool& ok, bool bLenient) {
    if (!text) {
        ok = false;
        return 0;
    }
    errno = 0;
    char* end = nullptr;
    unsigned __int64 value = _strtoui64(text, &end, 10);
    if (errno == EINVAL || value == ~0ULL) {
        ok = false;
        if (!bLenient)
            ThrowInvalid(IDS_VTR_BAD_NUMBER_LINE, line, text);
        return 0;
    }
    if (*SkipBlanks(end)) {
        ok = false;
        if (!bLenient)
            ThrowInvalid(IDS_VTR_BAD_NUMBER_LINE, line, text);
        return value;
    }
    ok = true;
    if (bLenient && value != 0 && *SkipBlanks(text) == '0')
        ok = false;
    return value;
}

unsigned __int64 VTRBListView::Str2UVal64(wchar_t* text, int line, bool& ok, bool bLenient) {
    NarrowCopy copy(text);
    if (!copy.get()) {
        ok = false;
        return 0;
    }
    return Str2UVal64(copy.get(), line, ok, bLenient);
}

double VTRBListView::Str2Double(char* text, int line, bool bLenient) {
    if (!text)
        return EMPTY_DOUBLE;
    lconv const* lc = localeconv();
    char const* point = lc ? lc->decimal_point : nullptr;
    if (strlen(text) > 251)
        return EMPTY_DOUBLE;
    char* copy = static_cast<char*>(malloc(251));
    if (!copy)
        return EMPTY_DOUBLE;
    StrNZCpy(copy, text, 250);
    // Both separators are accepted: the first foreign one becomes the locale's.
    if (point && strcmp(point, ",") == 0) {
        if (char* p = strchr(text, '.'))
            *p = ',';
    } else if (!point || !*point || strcmp(point, ".") == 0) {
        if (char* p = strchr(text, ','))
            *p = '.';
    }
    char* end = nullptr;
    double value = strtod(text, &end);
    if (*SkipBlanks(end)) {
        if (bLenient) {
            strcpy(text, copy);
            free(copy);
            return EMPTY_DOUBLE;
        }
        try {
            ThrowInvalid(IDS_VTR_BAD_NUMBER_LINE, line, text);
        } catch (...) {
            free(copy);
            throw;
        }
    }
    free(copy);
    if (bLenient && value != 0) {
        char const* p = SkipBlanks(text);
        bool const bHasPoint =
            strchr(text, '.') || strchr(text, ',') || (point && *point && strstr(text, point));
        if (*p == '0' && !bHasPoint)
            return EMPTY_DOUBLE;
    }
    return value;
}

double VTRBListView::Str2Double(wchar_t* text, int line, bool bLenient) {
    NarrowCopy copy(text);
    if (!copy.get())
        return EMPTY_DOUBLE;
    return Str2Double(copy.get(), line, bLenient);
}

long VTRBListView::Str2Date(char* text, bool bUSFormat, int line) {
    long value = bUSFormat ? String2DateTimeUSFormat(text ? text : "") : String2DateTime(text ? text : "");
    if (value < 0)
        ThrowInvalid(IDS_VTR_BAD_DATE_LINE, line, text);
    return value;
}

long VTRBListView::Str2Date(wchar_t* text, bool bUSFormat, int line) {
    NarrowCopy copy(text);
    return Str2Date(copy.get(), bUSFormat, line);
}

// ---------------------------------------------------------------- text of a cell

wchar_t const* VTRBListView::Widen(char const* text, UINT cp) {
    if (!text || !*text) {
        m_wszText[0] = 0;
        return m_wszText;
    }
    if (IsAsciiCodePage(cp)) {
        // The bytes of plain ASCII are the characters; at the first other byte the system takes over.
        int i = 0;
        while (i < 1023 && text[i] && static_cast<unsigned char>(text[i]) < 0x80) {
            m_wszText[i] = static_cast<wchar_t>(text[i]);
            ++i;
        }
        if (i == 1023 || !text[i]) {
            m_wszText[i] = 0;
            return m_wszText;
        }
    }
    int n = MultiByteToWideChar(cp, 0, text, -1, m_wszText, 1024);
    if (n == 0) {
        // Too long for the buffer: show what fits.
        int const len = static_cast<int>(strnlen(text, 1023));
        n = MultiByteToWideChar(cp, 0, text, len, m_wszText, 1023);
        m_wszText[n > 0 ? n : 0] = 0;
    }
    return m_wszText;
}

wchar_t const* VTRBListView::GetDataText(Row* pRow, int item, int col, bool bNoPassword) {
    if (!pRow || col < 0 || col >= m_iColCnt || !m_pCols)
        return s_wszEmpty;
    Col const& c = m_pCols[col];
    bool const bSumRow = (pRow->dwFlags & VTR_ROW_SUM) != 0;
    if ((c.dwColFlags & VTR_COLF_SUMROWEMPTY) && bSumRow)
        return s_wszEmpty;
    if (item >= 0) {
        if (IsDifferent(pRow, item, col))
            return VTRStringTable::GetTextW(IDS_VTR_DIFFERENT);
        m_wszText[0] = 0;
        if (OnGetCellText(item, col, m_wszText, 1024))
            return m_wszText;
    }

    void* const word = pRow->cells[col].pValue;
    UINT const curCP = static_cast<UINT>(NVGetCurCodePage());
    // Numbers are plain ASCII: in such a code page their digits go straight into the wide buffer.
    bool const bAsciiCP = IsAsciiCodePage(curCP);
    wchar_t const* result = s_wszEmpty;
    m_szText[0] = 0;
    switch (c.eType) {
    case VTDT_STRING:
    case VTDT_LPSTR: {
        unsigned long cp = curCP;
        if (!OnGetCodePage(pRow->lParam, col, pRow->pData, cp))
            cp = curCP;
        result = word ? Widen(static_cast<char const*>(word), static_cast<UINT>(cp)) : s_wszEmpty;
        break;
    }
    case VTDT_int:
        if (bAsciiCP) {
            WideSigned(m_wszText, static_cast<int>(reinterpret_cast<intptr_t>(word)));
            result = m_wszText;
            break;
        }
        snprintf(m_szText, sizeof m_szText, "%d", static_cast<int>(reinterpret_cast<intptr_t>(word)));
        result = Widen(m_szText, curCP);
        break;
    case VTDT_DWORD:
    case VTDT_DWORD_NOT_NULL: {
        unsigned int v = static_cast<unsigned int>(reinterpret_cast<uintptr_t>(word));
        if (c.eType == VTDT_DWORD_NOT_NULL && v == 0)
            break;
        if (bAsciiCP) {
            WideDecimal(m_wszText, v, false);
            result = m_wszText;
            break;
        }
        snprintf(m_szText, sizeof m_szText, "%u", v);
        result = Widen(m_szText, curCP);
        break;
    }
    case VTDT_WORD:
        if (bAsciiCP) {
            WideDecimal(m_wszText, static_cast<uint16_t>(reinterpret_cast<uintptr_t>(word)), false);
            result = m_wszText;
            break;
        }
        snprintf(m_szText, sizeof m_szText, "%u",
                 static_cast<unsigned int>(static_cast<uint16_t>(reinterpret_cast<uintptr_t>(word))));
        result = Widen(m_szText, curCP);
        break;
    case VTDT_LPINT:
    case VTDT_LPDWORD:
        // Both show signed: a DWORD target of all ones reads -1, as it always did.
        if (word && bAsciiCP) {
            WideSigned(m_wszText, *static_cast<int const*>(word));
            result = m_wszText;
        } else if (word) {
            snprintf(m_szText, sizeof m_szText, "%d", *static_cast<int const*>(word));
            result = Widen(m_szText, curCP);
        }
        break;
    case VTDT_TIME_T:
    case VTDT_LPTIME_T: {
        long value = 0;
        if (c.eType == VTDT_TIME_T)
            value = static_cast<long>(reinterpret_cast<intptr_t>(word));
        else if (word)
            value = *static_cast<long const*>(word);
        if (value < 1) {
            m_szText[0] = 0;
            if (OnGetInvalidDateText(value, item, col, m_szText))
                result = Widen(m_szText, curCP);
            break;
        }
        unsigned long tz = OnGetTZIndex(item, col);
        char const* time = OnGetTimeFormat(item, col, static_cast<char const*>(c.pExtra2));
        char const* date = OnGetDateFormat(item, col, static_cast<char const*>(c.pExtra1));
        if (FormatDateTime(value, date, time, m_szText, 1024, tz) <= 0)
            m_szText[0] = 0;
        result = Widen(m_szText, curCP);
        break;
    }
    case VTDT_DOUBLE:
    case VTDT_LPDOUBLE: {
        double const* p = static_cast<double const*>(word);
        if (!p || *p == EMPTY_DOUBLE)
            break;
        char const* format = pRow->cells[col].pszNumFormat ? pRow->cells[col].pszNumFormat
                                                           : static_cast<char const*>(c.pExtra1);
        if (!FormatNumber(*p, format, m_szText, 1024))
            m_szText[0] = 0;
        result = Widen(m_szText, curCP);
        break;
    }
    case VTDT_CARD_DATE:
    case VTDT_LPCARD_DATE: {
        unsigned int v = 0;
        if (c.eType == VTDT_CARD_DATE)
            v = static_cast<uint16_t>(reinterpret_cast<uintptr_t>(word));
        else if (word)
            v = *static_cast<uint16_t const*>(word);
        if (v == 0)
            break;
        if (bAsciiCP) {
            wchar_t* p = WideDecimal(m_wszText, v & 0xFF, false, 2);
            *p++ = L'/';
            WideDecimal(p, v >> 8, false, 2);
            result = m_wszText;
            break;
        }
        snprintf(m_szText, sizeof m_szText, "%02u/%02u", v & 0xFF, v >> 8);
        result = Widen(m_szText, curCP);
        break;
    }
    case VTDT_int32_CUSTOM:
    case VTDT_LPint32_CUSTOM: {
        char const* format = static_cast<char const*>(c.pExtra1);
        if (!format)
            break;
        int v;
        if (c.eType == VTDT_int32_CUSTOM)
            v = static_cast<int>(reinterpret_cast<intptr_t>(word));
        else if (word)
            v = *static_cast<int const*>(word);
        else
            break;
        snprintf(m_szText, sizeof m_szText, format, v);
        result = Widen(m_szText, curCP);
        break;
    }
    case VTDT_CALLBACK:
    case VTDT_CALLBACK_PTR: {
        if (!c.pExtra1)
            break;
        if (c.eType == VTDT_CALLBACK && (c.dwFormat & VTR_COLFMT_WIDECALLBACK)) {
            auto fn = reinterpret_cast<VTRCellTextFuncW>(c.pExtra1);
            m_wszText[0] = 0;
            result = fn(word, item, col, pRow->lParam, c.pExtra3, m_wszText);
            if (!result)
                result = s_wszEmpty;
        } else {
            auto fn = reinterpret_cast<VTRCellTextFunc>(c.pExtra1);
            m_szText[0] = 0;
            result = Widen(fn(word, item, col, pRow->lParam, c.pExtra3, m_szText), curCP);
        }
        break;
    }
    case VTDT_SYSTEMTIME:
    case VTDT_LPSYSTEMTIME: {
        SYSTEMTIME const* st = static_cast<SYSTEMTIME const*>(word);
        if (!st)
            break;
        if (c.pExtra1) {
            static SYSTEMTIME const stZero{};
            if (memcmp(st, &stZero, sizeof(SYSTEMTIME)) == 0)
                break;
        } else if (st->wHour == 65535) {
            break;
        }
        LCID const lcid = MAKELCID(GetCurrentLangID(false), SORT_DEFAULT);
        int offset = 0;
        char const* date = OnGetDateFormat(item, col, static_cast<char const*>(c.pExtra1));
        if (date) {
            int n = GetDateFormatA(lcid, 0, st, date, m_szText, 1024);
            offset = n > 0 ? n - 1 : 0;
        }
        m_szText[offset] = 0;
        char const* time = OnGetTimeFormat(item, col, static_cast<char const*>(c.pExtra2));
        if (time) {
            char* timeText = m_szText + offset;
            if (GetTimeFormatA(lcid, 0, st, time, timeText, 1024 - offset) <= 0)
                *timeText = 0;
            char millis[8];
            snprintf(millis, sizeof millis, "%03d", static_cast<int>(st->wMilliseconds));
            SwapChars(timeText, "MS", millis);
        }
        result = Widen(m_szText, curCP);
        break;
    }
    case VTDT_CHECKBOX:
        if (word)
            result = VTRStringTable::GetTextW(*static_cast<bool const*>(word) ? IDS_VTR_YES : IDS_VTR_NO);
        break;
    case VTDT_WSTRING:
    case VTDT_LPWSTR:
        result = word ? static_cast<wchar_t const*>(word) : s_wszEmpty;
        break;
    case VTDT_QWORD:
        if (word && bAsciiCP) {
            WideDecimal(m_wszText, *static_cast<unsigned long long const*>(word), false);
            result = m_wszText;
        } else if (word) {
            snprintf(m_szText, sizeof m_szText, "%llu", *static_cast<unsigned long long const*>(word));
            result = Widen(m_szText, curCP);
        }
        break;
    case VTDT_FLAG:
        if (!bSumRow) {
            uintptr_t const mask = reinterpret_cast<uintptr_t>(c.pExtra1);
            result = VTRStringTable::GetTextW((reinterpret_cast<uintptr_t>(word) & mask) ? IDS_VTR_YES
                                                                                         : IDS_VTR_NO);
        }
        break;
    case VTDT_bool:
        if (!bSumRow)
            result = VTRStringTable::GetTextW(reinterpret_cast<uintptr_t>(word) ? IDS_VTR_YES : IDS_VTR_NO);
        break;
    default:
        break;
    }
    // The yes/no texts live in the string table: copy them so that masking never touches the table.
    if (result && result != m_wszText && result != s_wszEmpty &&
        (c.eType == VTDT_CHECKBOX || c.eType == VTDT_FLAG || c.eType == VTDT_bool)) {
        StrNZCpy(m_wszText, result, 1024);
        result = m_wszText;
    }
    if (!bNoPassword && result == m_wszText && OnIsPassword(item, col)) {
        for (wchar_t* p = m_wszText; *p; ++p)
            *p = L'*';
    }
    return result;
}

bool VTRBListView::GetCellTextFormated(Row* pRow, int item, int col, wchar_t* buf, unsigned int size) {
    if (!pRow || !buf || size == 0 || col < 0 || col >= m_iColCnt)
        return false;
    wchar_t const* text = GetDataText(pRow, item, col, false);
    if (!text)
        return false;
    StrNZCpy(buf, text, size - 1 > 0 ? size - 1 : 1);
    return true;
}

bool VTRBListView::GetCellTextFormated(int item, int col, wchar_t* buf, unsigned int size) {
    if (col < 0 || col >= m_iColCnt)
        return false;
    return GetCellTextFormated(GetRow(item), item, col, buf, size);
}
