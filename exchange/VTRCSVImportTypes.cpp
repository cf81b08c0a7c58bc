#include "exchange/VTRCSVImportTypes.h"

#include "exchange/VTRCSVFormat.h"
#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"

#include "NVDates.h"
#include "NVErrors.h"
#include "NVFormat.h"
#include "NVLanguage.h"

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <commctrl.h>

#include <cstring>

namespace {

char const* SkipBlanks(char const* p) {
    while (*p == ' ' || *p == '\t')
        ++p;
    return p;
}

wchar_t const kTextSample[] = L"WWWWWWWWWWWWWWWWW";
wchar_t const kDateSample[] = L"01.01.2006 13:19:14";

bool IsTextType(VTRBDataType eType) {
    return eType == VTDT_STRING || eType == VTDT_WSTRING;
}

} // namespace

// ---------------------------------------------------------------- the plain shapes

bool VTRCSVTypeScan::QuickInt(char const* pszText, long& lValue) {
    char const* p = pszText;
    bool const bNeg = *p == '-';
    if (bNeg)
        ++p;
    long v = 0;
    int n = 0;
    for (; *p >= '0' && *p <= '9'; ++p, ++n) {
        if (n == 9)
            return false;
        v = v * 10 + (*p - '0');
    }
    if (n == 0 || *p)
        return false;
    lValue = bNeg ? -v : v;
    return true;
}

bool VTRCSVTypeScan::QuickUInt64(char const* pszText, unsigned long long& ullValue) {
    unsigned long long v = 0;
    int n = 0;
    char const* p = pszText;
    for (; *p >= '0' && *p <= '9'; ++p, ++n) {
        if (n == 19)
            return false;
        v = v * 10 + static_cast<unsigned>(*p - '0');
    }
    if (n == 0 || *p)
        return false;
    ullValue = v;
    return true;
}

namespace {

// Two or four digits at p; -2 when one of them is no digit.
int Digits(char const* p, int n) {
    int v = 0;
    for (int i = 0; i < n; ++i) {
        if (p[i] < '0' || p[i] > '9')
            return -2;
        v = v * 10 + (p[i] - '0');
    }
    return v;
}

int DaysInMonth(int iYear, int iMonth) {
    static int const days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (iMonth == 2 && iYear % 4 == 0 && (iYear % 100 != 0 || iYear % 400 == 0))
        return 29;
    return days[iMonth - 1];
}

} // namespace

bool VTRCSVTypeScan::QuickDate(char const* pszText, long& t) {
    // Only the pictures made of "dd", "MM", "yyyy" and single separators, ten characters long.
    char const* pattern = NVGetDateTimeFormatString(NVDT_DATE, 0);
    if (!pattern || strlen(pattern) != 10)
        return false;
    int iDay = 0, iMonth = 0, iYear = 0;
    for (int i = 0; i < 10;) {
        char const c = pattern[i];
        if (c == 'd' && pattern[i + 1] == 'd') {
            iDay = Digits(pszText + i, 2);
            i += 2;
        } else if (c == 'M' && pattern[i + 1] == 'M') {
            iMonth = Digits(pszText + i, 2);
            i += 2;
        } else if (c == 'y' && strncmp(pattern + i, "yyyy", 4) == 0) {
            iYear = Digits(pszText + i, 4);
            i += 4;
        } else if (c == '.' || c == '/' || c == '-') {
            if (pszText[i] != c)
                return false;
            ++i;
        } else {
            return false;
        }
        // A digit test stops at the first non-digit, the terminator included: nothing is read beyond.
        if (iDay == -2 || iMonth == -2 || iYear == -2)
            return false;
    }
    if (iDay < 1 || iMonth < 1 || iMonth > 12 || iYear < 1970 || iYear > 2037 ||
        iDay > DaysInMonth(iYear, iMonth))
        return false;
    SYSTEMTIME st{};
    st.wYear = static_cast<WORD>(iYear);
    st.wMonth = static_cast<WORD>(iMonth);
    st.wDay = static_cast<WORD>(iDay);
    char const* p = pszText + 10;
    if (*p) {
        // The time must be the first picture that the general parser would try.
        char const* timePattern = NVGetDateTimeFormatString(NVDT_TIME_SECONDS, 0);
        if (!timePattern || strcmp(timePattern, "HH:mm:ss") != 0)
            return false;
        if (strlen(p) != 9 || p[0] != ' ' || p[3] != ':' || p[6] != ':')
            return false;
        int const h = Digits(p + 1, 2), m = Digits(p + 4, 2), s = Digits(p + 7, 2);
        if (h < 0 || h > 23 || m < 0 || m > 59 || s < 0 || s > 59)
            return false;
        st.wHour = static_cast<WORD>(h);
        st.wMinute = static_cast<WORD>(m);
        st.wSecond = static_cast<WORD>(s);
    }
    t = SystemTimeToTime_t(&st, 0, false);
    return true;
}

// ---------------------------------------------------------------- the single tests

bool VTRCSVTypeScan::IsInteger(char const* pszText) {
    long lQuick = 0;
    if (QuickInt(pszText, lQuick))
        return lQuick == 0 || *pszText != '0';
    errno = 0;
    char* end = nullptr;
    long value = strtol(pszText, &end, 10);
    if (errno == ERANGE || *SkipBlanks(end))
        return false;
    // "007" is no integer of this column: its zeros would be lost.
    return value == 0 || *SkipBlanks(pszText) != '0';
}

bool VTRCSVTypeScan::IsUInt64(char const* pszText, int iLen) {
    if (iLen > 20)
        return false;
    char const* p = SkipBlanks(pszText);
    // A negative number would wrap round to a huge positive one.
    if (*p == '-')
        return false;
    errno = 0;
    char* end = nullptr;
    unsigned long long value = _strtoui64(p, &end, 10);
    if (errno == EINVAL || errno == ERANGE || value == ~0ULL || *SkipBlanks(end))
        return false;
    return value != 0;
}

bool VTRCSVTypeScan::IsDouble(char const* pszText) {
    size_t const len = strlen(pszText);
    if (len > 251)
        return false;
    char const* first = SkipBlanks(pszText);
    // strtod also reads "nan", "inf" and hex numbers; words are text here.
    if (*first && !((*first >= '0' && *first <= '9') || *first == '-' || *first == '+' || *first == '.' ||
                    *first == ','))
        return false;
    if (*first && (first[1] == 'x' || first[1] == 'X'))
        return false;
    char copy[256];
    memcpy(copy, pszText, len + 1);
    lconv const* lc = localeconv();
    char const* point = lc ? lc->decimal_point : nullptr;
    if (point && strcmp(point, ",") == 0) {
        if (char* p = strchr(copy, '.'))
            *p = ',';
    } else if (!point || !*point || strcmp(point, ".") == 0) {
        if (char* p = strchr(copy, ','))
            *p = '.';
    }
    char* end = nullptr;
    strtod(copy, &end);
    return *SkipBlanks(end) == 0;
}

bool VTRCSVTypeScan::IsDate(char const* pszText) {
    long t = 0;
    if (QuickDate(pszText, t))
        return t > 0;
    return String2DateTime(pszText) > 0;
}

bool VTRCSVTypeScan::IsSystemTime(char const* pszText) {
    SYSTEMTIME st;
    return String2SYSTEMTIME(pszText, NVGetDateTimeFormatString(NVDT_DATE, 0), st, false, false, false);
}

bool VTRCSVTypeScan::IsZeroPadded(char const* pszText) {
    char const* p = SkipBlanks(pszText);
    if (*p == '-' || *p == '+')
        ++p;
    return p[0] == '0' && p[1] >= '0' && p[1] <= '9' && IsDouble(pszText);
}

VTRBDataType VTRCSVTypeScan::NextType(VTRBDataType eBefore, char* pszText, int iLen, int iRawLen,
                                      bool bWide) {
    VTRBDataType const eText = bWide ? VTDT_WSTRING : VTDT_STRING;
    // Digits written with a leading zero are a code (postal codes, ticket and customer numbers), not
    // a quantity: read as a number they would lose the zeros, so the column keeps them as text.
    if (!IsTextType(eBefore) && iLen > 1 && IsZeroPadded(pszText))
        return eText;
    switch (eBefore) {
    case VTRCSV_TYPE_UNKNOWN:
        if (iLen == 0)
            return VTRCSV_TYPE_UNKNOWN;
        if (IsInteger(pszText))
            return VTDT_int;
        if (IsUInt64(pszText, iRawLen))
            return VTDT_QWORD;
        if (iRawLen < 11 && IsDouble(pszText))
            return VTDT_DOUBLE;
        if (IsDate(pszText))
            return VTDT_TIME_T;
        if (IsSystemTime(pszText))
            return VTDT_SYSTEMTIME;
        return eText;
    case VTDT_int:
        if (IsInteger(pszText))
            return VTDT_int;
        return IsDouble(pszText) ? VTDT_DOUBLE : eText;
    case VTDT_DOUBLE:
        // Deliberately so: a second number turns a double column into text.
        return IsDouble(pszText) ? eText : VTDT_DOUBLE;
    case VTDT_TIME_T:
        if (IsDate(pszText))
            return VTDT_TIME_T;
        return IsSystemTime(pszText) ? VTDT_SYSTEMTIME : eText;
    case VTDT_SYSTEMTIME:
        return IsSystemTime(pszText) ? VTDT_SYSTEMTIME : eText;
    default:
        return eBefore;
    }
}

// ---------------------------------------------------------------- scanning

VTRCSVTypeScan::VTRCSVTypeScan(bool bWide, char cSep, int iSkipLines, signed char cMinWidth,
                               bool bForceString, char const* pszNumberTitle)
    : m_bWide(bWide), m_cSep(cSep), m_iSkip(iSkipLines > 0 ? iSkipLines - 1 : 0),
      m_iMinWidth(cMinWidth > 0 ? cMinWidth : 0), m_bForceString(bForceString),
      m_bNumberCol(pszNumberTitle && *pszNumberTitle), m_iFirstCol(m_bNumberCol ? 1 : 0),
      m_bTitlesPending(iSkipLines > 0), m_iTitleCols(0), m_iLines(0), m_bLineHasTitles(false) {
    if (m_bNumberCol) {
        VTRCSVScanCol col;
        int n = MultiByteToWideChar(NVGetCurCodePage(), 0, pszNumberTitle, -1, nullptr, 0);
        if (n > 0) {
            col.strTitle.resize(static_cast<size_t>(n));
            MultiByteToWideChar(NVGetCurCodePage(), 0, pszNumberTitle, -1, &col.strTitle[0], n);
            col.strTitle.resize(static_cast<size_t>(n - 1));
        }
        col.bHasTitle = true;
        col.eType = VTDT_int;
        col.iMaxLen = 6;
        m_cols.push_back(col);
    }
}

VTRCSVScanCol& VTRCSVTypeScan::ColAt(int iCol) {
    while (static_cast<int>(m_cols.size()) <= iCol) {
        VTRCSVScanCol col;
        if (m_bForceString)
            col.eType = m_bWide ? VTDT_WSTRING : VTDT_STRING;
        m_cols.push_back(col);
    }
    return m_cols[static_cast<size_t>(iCol)];
}

void VTRCSVTypeScan::Scan(VTRCSVLineReader& reader) {
    reader.SetMaxPiece(VTRCSV_SCAN_LINE - 1);
    if (m_bWide) {
        std::wstring line;
        while (reader.ReadLine(line))
            AddLine(line.c_str());
    } else {
        std::string line;
        while (reader.ReadLine(line))
            AddLine(line.c_str(), line.size());
    }
}

void VTRCSVTypeScan::AddLine(char const* pszLine) {
    AddLine(pszLine, pszLine ? strlen(pszLine) : 0);
}

void VTRCSVTypeScan::AddLine(char const* pszLine, size_t cchLine) {
    ++m_iLines;
    if (!cchLine)
        return;
    if (!m_bTitlesPending && m_iSkip > 0 && !m_bLineHasTitles) {
        // Further lines to skip are no data either.
        --m_iSkip;
        return;
    }
    m_bLineHasTitles = m_bTitlesPending;
    if (m_field8.size() < cchLine + 1)
        m_field8.resize(cchLine + 1);
    char const* cursor = pszLine;
    char const* const end = pszLine + cchLine;
    int iFields = 0;
    size_t cchField = 0;
    while (VTRCSVNextField(cursor, end, &m_field8[0], m_cSep, cchField)) {
        AddField(m_iFirstCol + iFields, &m_field8[0], nullptr, static_cast<int>(cchField));
        ++iFields;
    }
    EndLine(iFields);
}

void VTRCSVTypeScan::AddLine(wchar_t const* pszLine) {
    ++m_iLines;
    if (!*pszLine)
        return;
    if (!m_bTitlesPending && m_iSkip > 0 && !m_bLineHasTitles) {
        --m_iSkip;
        return;
    }
    m_bLineHasTitles = m_bTitlesPending;
    m_fieldW.resize(wcslen(pszLine) + 1);
    wchar_t const* cursor = pszLine;
    int iFields = 0;
    while (VTRParseNextCSVField(cursor, &m_fieldW[0],
                                static_cast<wchar_t>(static_cast<unsigned char>(m_cSep)))) {
        AddField(m_iFirstCol + iFields, nullptr, m_fieldW.c_str(),
                 static_cast<int>(wcslen(m_fieldW.c_str())));
        ++iFields;
    }
    EndLine(iFields);
}

void VTRCSVTypeScan::AddField(int iCol, char* psz8, wchar_t const* pszW, int iLen) {
    VTRCSVScanCol& col = ColAt(iCol);
    if (m_bLineHasTitles) {
        if (pszW) {
            col.strTitle = pszW;
        } else {
            int n = MultiByteToWideChar(NVGetCurCodePage(), 0, psz8, iLen, nullptr, 0);
            col.strTitle.assign(static_cast<size_t>(n > 0 ? n : 0), L' ');
            if (n > 0)
                MultiByteToWideChar(NVGetCurCodePage(), 0, psz8, iLen, &col.strTitle[0], n);
        }
        col.bHasTitle = true;
        col.iMaxLen = m_iMinWidth;
        ++m_iTitleCols;
        return;
    }
    int const iRaised = iLen < m_iMinWidth ? m_iMinWidth : iLen;
    if (iRaised > col.iMaxLen)
        col.iMaxLen = iRaised;
    VTRBDataType const eBefore = col.eType;
    if (IsTextType(eBefore))
        return;
    if (pszW) {
        // The tests read 8-bit text; a field that is pure ASCII needs no code page.
        m_narrow.resize(static_cast<size_t>(iLen) + 1);
        bool bAscii = true;
        for (int i = 0; i < iLen && bAscii; ++i) {
            if (pszW[i] >= 0x80)
                bAscii = false;
            else
                m_narrow[static_cast<size_t>(i)] = static_cast<char>(pszW[i]);
        }
        if (bAscii) {
            m_narrow[static_cast<size_t>(iLen)] = 0;
        } else {
            int n = WideCharToMultiByte(NVGetCurCodePage(), WC_COMPOSITECHECK, pszW, iLen, nullptr, 0,
                                        nullptr, nullptr);
            m_narrow.assign(static_cast<size_t>(n > 0 ? n : 0) + 1, 0);
            if (n > 0)
                WideCharToMultiByte(NVGetCurCodePage(), WC_COMPOSITECHECK, pszW, iLen, &m_narrow[0], n,
                                    nullptr, nullptr);
        }
        psz8 = &m_narrow[0];
    }
    col.eType = NextType(eBefore, psz8, iRaised, iLen, m_bWide);
}

void VTRCSVTypeScan::EndLine(int iFields) {
    if (m_bLineHasTitles) {
        m_bTitlesPending = false;
        m_bLineHasTitles = false;
        return;
    }
    int const iTitleEnd = m_iFirstCol + m_iTitleCols;
    int const iEnd = m_iFirstCol + iFields;
    if (iEnd < iTitleEnd) {
        Trace("Zeile %d Hat %d Spalten (statt %d)", m_iLines, iFields, m_iTitleCols);
        for (int iCol = iEnd; iCol < iTitleEnd; ++iCol) {
            Trace("Spalte %d hinzugef\xFCgt", iCol);
            VTRCSVScanCol& col = ColAt(iCol);
            if (col.iMaxLen < m_iMinWidth)
                col.iMaxLen = m_iMinWidth;
        }
    }
}

// ---------------------------------------------------------------- layout

int VTRCSVTypeScan::Layout(std::vector<VTRCSVLayoutCol>& cols) const {
    cols.clear();
    int iOffset = m_bNumberCol ? 0 : 4;
    for (size_t i = 0; i < m_cols.size(); ++i) {
        VTRCSVScanCol const& scan = m_cols[i];
        VTRCSVLayoutCol col;
        if (scan.bHasTitle) {
            col.strTitle = scan.strTitle;
        } else {
            wchar_t title[64];
            SNPrintf(title, 64, VTRStringTable::GetTextW(IDS_VTR_COLUMN_N), static_cast<int>(i) + 1);
            col.strTitle = title;
        }
        col.iOffset = iOffset;
        VTRBDataType eType = scan.eType;
        if (eType == VTRCSV_TYPE_UNKNOWN)
            eType = m_bWide ? VTDT_WSTRING : VTDT_STRING;
        col.eType = eType;
        switch (eType) {
        case VTDT_STRING:
            col.iRoom = scan.iMaxLen + 1;
            break;
        case VTDT_WSTRING:
            col.iRoom = 2 * scan.iMaxLen + 2;
            break;
        case VTDT_QWORD:
        case VTDT_DOUBLE:
            col.iRoom = 8;
            break;
        case VTDT_SYSTEMTIME:
            col.iRoom = static_cast<int>(sizeof(SYSTEMTIME));
            break;
        default: // VTDT_int, VTDT_TIME_T
            col.iRoom = 4;
            break;
        }
        iOffset += col.iRoom;
        cols.push_back(col);
    }
    return iOffset;
}

void VTRCSVTypeScan::MakeColDefs(std::vector<VTRCSVLayoutCol> const& cols,
                                 DynaArrayTpl<VTRBListViewColW, 0, 0>& defs) {
    defs.Clear();
    for (VTRCSVLayoutCol const& col : cols) {
        VTRBListViewColW def;
        memset(&def, 0, sizeof def);
        def.lpszTitle = col.strTitle.c_str();
        def.iWidth = 0;
        def.eType = col.eType;
        switch (col.eType) {
        case VTDT_int:
            def.lpszSample = L"1234567";
            def.dwFlags = LVCFMT_RIGHT;
            break;
        case VTDT_QWORD:
            def.lpszSample = L"123456789012345678";
            def.dwFlags = LVCFMT_RIGHT;
            break;
        case VTDT_DOUBLE:
            def.lpszSample = L"123456,987";
            def.dwFlags = LVCFMT_RIGHT;
            break;
        case VTDT_TIME_T:
            def.lpszSample = kDateSample;
            def.dwFlags = LVCFMT_LEFT;
            def.pExtra1 = const_cast<char*>(NVGetDateTimeFormatString(NVDT_DATETIME_DATE, 0));
            def.pExtra2 = const_cast<char*>(NVGetDateTimeFormatString(NVDT_DATETIME_TIME, 0));
            break;
        case VTDT_SYSTEMTIME:
            def.lpszSample = kDateSample;
            def.dwFlags = LVCFMT_LEFT;
            def.pExtra1 = const_cast<char*>(NVGetDateTimeFormatString(NVDT_DATETIME_DATE, 0));
            break;
        default:
            def.lpszSample = kTextSample;
            def.dwFlags = LVCFMT_LEFT;
            break;
        }
        defs.Add(def);
    }
}
