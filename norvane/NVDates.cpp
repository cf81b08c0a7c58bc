#include "NVDates.h"

#include "NVLanguage.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace {

// ---- Calendar ----------------------------------------------------------------------------------

bool IsLeapYear(long long y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int DaysInMonth(int m, long long y) {
    static int const days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (m < 1 || m > 12)
        return 0;
    return m == 2 && IsLeapYear(y) ? 29 : days[m - 1];
}

// Days since 01.01.1970 of a proleptic Gregorian date (valid for any year).
long long DaysFromCivil(long long y, int m, int d) {
    y -= m <= 2;
    long long const era = (y >= 0 ? y : y - 399) / 400;
    long long const yoe = y - era * 400;
    long long const doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    long long const doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(long long z, long long& y, int& m, int& d) {
    z += 719468;
    long long const era = (z >= 0 ? z : z - 146096) / 146097;
    long long const doe = z - era * 146097;
    long long const yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    long long const doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    long long const mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = yoe + era * 400 + (m <= 2);
}

long long FloorDiv(long long a, long long b) {
    long long q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0)))
        --q;
    return q;
}

// 0 = Sunday, as in SYSTEMTIME.
int WeekDayOfDays(long long days) {
    return static_cast<int>(((days % 7) + 7 + 4) % 7);
}

void FieldsFromSeconds(long long s, SYSTEMTIME& st) {
    long long const days = FloorDiv(s, 86400);
    long long const rest = s - days * 86400;
    long long y;
    int m, d;
    CivilFromDays(days, y, m, d);
    st.wYear = static_cast<WORD>(y);
    st.wMonth = static_cast<WORD>(m);
    st.wDay = static_cast<WORD>(d);
    st.wDayOfWeek = static_cast<WORD>(WeekDayOfDays(days));
    st.wHour = static_cast<WORD>(rest / 3600);
    st.wMinute = static_cast<WORD>(rest / 60 % 60);
    st.wSecond = static_cast<WORD>(rest % 60);
    st.wMilliseconds = 0;
}

bool IsValidTime(long long t) {
    return t >= 0 && t <= NV_TIME_MAX;
}

long CheckedResult(long long t) {
    return t > 0 && t <= NV_TIME_MAX ? static_cast<long>(t) : -1;
}

// ---- Zones ---------------------------------------------------------------------------------------

// Seconds are "local" when counted like UTC seconds but on the zone's wall clock.
class Zone {
public:
    explicit Zone(TIME_ZONE_INFORMATION const& tzi) : m_tzi(tzi) {}

    bool HasDaylight() const { return m_tzi.StandardDate.wMonth != 0 && m_tzi.DaylightDate.wMonth != 0; }

    bool IsDaylight(long long utc) const {
        if (!HasDaylight())
            return false;
        long long const standardLocal = utc - OffsetSeconds(false);
        long long y;
        int m, d;
        CivilFromDays(FloorDiv(standardLocal, 86400), y, m, d);
        long long start, end;
        if (!Transition(m_tzi.DaylightDate, y, start) || !Transition(m_tzi.StandardDate, y, end))
            return false;
        // The change into summer time happens on the standard clock, the change back on the summer one.
        start += OffsetSeconds(false);
        end += OffsetSeconds(true);
        if (start < end)
            return utc >= start && utc < end;
        return utc >= start || utc < end;
    }

    long long ToLocal(long long utc, bool* pbDaylight = nullptr) const {
        bool const bDaylight = IsDaylight(utc);
        if (pbDaylight)
            *pbDaylight = bDaylight;
        return utc - OffsetSeconds(bDaylight);
    }

    long long FromLocal(long long local) const {
        long long const asDaylight = local + OffsetSeconds(true);
        if (HasDaylight() && IsDaylight(asDaylight) && ToLocal(asDaylight) == local)
            return asDaylight;
        // Standard time also for the hour the spring change skips: the clock then reads one hour later.
        return local + OffsetSeconds(false);
    }

private:
    // UTC = local + offset.
    long long OffsetSeconds(bool bDaylight) const {
        return 60LL * (m_tzi.Bias + (bDaylight ? m_tzi.DaylightBias : m_tzi.StandardBias));
    }

    // Local seconds of a change in year y. A rule with a year applies to that year only.
    static bool Transition(SYSTEMTIME const& rule, long long y, long long& local) {
        int day;
        if (rule.wYear != 0) {
            if (rule.wYear != y)
                return false;
            day = rule.wDay;
        } else {
            int const first = WeekDayOfDays(DaysFromCivil(y, rule.wMonth, 1));
            day = 1 + (rule.wDayOfWeek - first + 7) % 7 + (rule.wDay - 1) * 7;
            while (day > DaysInMonth(rule.wMonth, y))
                day -= 7;
        }
        local =
            DaysFromCivil(y, rule.wMonth, day) * 86400 + rule.wHour * 3600 + rule.wMinute * 60 + rule.wSecond;
        return true;
    }

    TIME_ZONE_INFORMATION m_tzi;
};

bool IsValidRule(SYSTEMTIME const& r) {
    if (r.wMonth < 1 || r.wMonth > 12 || r.wHour > 23 || r.wMinute > 59 || r.wSecond > 59)
        return false;
    if (r.wYear != 0)
        return r.wDay >= 1 && r.wDay <= DaysInMonth(r.wMonth, r.wYear);
    return r.wDay >= 1 && r.wDay <= 5 && r.wDayOfWeek <= 6;
}

struct ZoneTable {
    std::mutex lock;
    std::map<unsigned long, Zone> zones;
};

ZoneTable& Zones() {
    static ZoneTable table;
    return table;
}

// A copy of the zone, or false when it is unknown.
bool FindZone(unsigned long dwTZ, Zone& out) {
    ZoneTable& table = Zones();
    std::lock_guard<std::mutex> guard(table.lock);
    auto it = table.zones.find(dwTZ);
    if (it == table.zones.end()) {
        if (dwTZ != 0)
            return false;
        // The machine's zone is read once: a process does not expect its dates to move under it.
        TIME_ZONE_INFORMATION tzi{};
        if (GetTimeZoneInformation(&tzi) == TIME_ZONE_ID_INVALID)
            tzi = TIME_ZONE_INFORMATION{};
        if (!IsValidRule(tzi.StandardDate) || !IsValidRule(tzi.DaylightDate))
            tzi.StandardDate.wMonth = tzi.DaylightDate.wMonth = 0;
        it = table.zones.emplace(0, Zone(tzi)).first;
    }
    out = it->second;
    return true;
}

long g_tNowOverride = 0;

// ---- Names of the current language, in the current code page ------------------------------------

// The locale text in the current code page into buf; its length, 0 (and an empty text) on failure.
size_t LocaleText(LCTYPE type, char* buf, int size) {
    wchar_t wbuf[128];
    buf[0] = '\0';
    LCID const lcid = MAKELCID(GetCurrentLangID(false), SORT_DEFAULT);
    if (!GetLocaleInfoW(lcid, type, wbuf, 128))
        return 0;
    int const n = WideCharToMultiByte(NVGetCurCodePage(), 0, wbuf, -1, buf, size, nullptr, nullptr);
    if (n <= 0) {
        buf[0] = '\0';
        return 0;
    }
    return static_cast<size_t>(n - 1);
}

std::string LocaleText(LCTYPE type) {
    char buf[256];
    LocaleText(type, buf, sizeof buf);
    return buf;
}

LCTYPE DayNameType(int wd, bool bAbbrev) {
    int const index = (wd + 6) % 7; // the locale's list starts on Monday
    return (bAbbrev ? LOCALE_SABBREVDAYNAME1 : LOCALE_SDAYNAME1) + index;
}

LCTYPE MonthNameType(int m, bool bAbbrev) {
    return (bAbbrev ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1) + (m - 1);
}

std::string DayName(int wd, bool bAbbrev) {
    return LocaleText(DayNameType(wd, bAbbrev));
}

std::string MonthName(int m, bool bAbbrev) {
    return LocaleText(MonthNameType(m, bAbbrev));
}

size_t DayPeriod(bool bPM, char* buf, int size) {
    size_t const n = LocaleText(bPM ? LOCALE_S2359 : LOCALE_S1159, buf, size);
    if (n)
        return n;
    std::strcpy(buf, bPM ? "PM" : "AM");
    return 2;
}

std::string DayPeriod(bool bPM) {
    char buf[256];
    DayPeriod(bPM, buf, sizeof buf);
    return buf;
}

bool IsPictureLetter(char c) {
    return std::strchr("dMyghHmst", c) != nullptr && c != '\0';
}

// Writes into the caller's buffer and notes when the text would not fit with its terminator.
class PictureText {
public:
    PictureText(char* out, int size) : m_out(out), m_size(static_cast<size_t>(size)) {}
    void Put(char c) {
        if (m_len + 1 < m_size)
            m_out[m_len] = c;
        else
            m_bOverflow = true;
        ++m_len;
    }
    void Put(char const* p, size_t n) {
        for (size_t i = 0; i < n; ++i)
            Put(p[i]);
    }
    // Zero-padded to width digits, as printf's "%0*d" writes a non-negative value.
    void PutNumber(int value, int width) {
        char rev[12];
        int n = 0;
        unsigned int v = static_cast<unsigned int>(value);
        do {
            rev[n++] = static_cast<char>('0' + v % 10);
            v /= 10;
        } while (v);
        for (int i = n; i < width; ++i)
            Put('0');
        while (n > 0)
            Put(rev[--n]);
    }
    void PutLocaleText(LCTYPE type) {
        char buf[256];
        Put(buf, LocaleText(type, buf, sizeof buf));
    }
    // Terminates the text; on overflow the buffer holds an empty text. The length, -1 on overflow.
    int Finish() {
        if (m_bOverflow) {
            m_out[0] = '\0';
            return -1;
        }
        m_out[m_len] = '\0';
        return static_cast<int>(m_len);
    }

private:
    char* m_out;
    size_t m_size;
    size_t m_len = 0;
    bool m_bOverflow = false;
};

// Writes st by a GetDateFormat/GetTimeFormat picture; date and time letters may be mixed.
void FormatPicture(SYSTEMTIME const& st, char const* picture, PictureText& out) {
    for (char const* p = picture; *p;) {
        char const c = *p;
        if (c == '\'') {
            ++p;
            while (*p) {
                if (*p == '\'') {
                    if (p[1] != '\'')
                        break;
                    ++p;
                }
                out.Put(*p++);
            }
            if (*p)
                ++p;
            continue;
        }
        if (!IsPictureLetter(c)) {
            out.Put(*p++);
            continue;
        }
        int n = 0;
        while (p[n] == c)
            ++n;
        p += n;
        int const h12 = st.wHour % 12 == 0 ? 12 : st.wHour % 12;
        switch (c) {
        case 'd':
            if (n <= 2)
                out.PutNumber(st.wDay, n);
            else
                out.PutLocaleText(DayNameType(st.wDayOfWeek, n == 3));
            break;
        case 'M':
            if (n <= 2)
                out.PutNumber(st.wMonth, n);
            else
                out.PutLocaleText(MonthNameType(st.wMonth, n == 3));
            break;
        case 'y':
            if (n <= 2)
                out.PutNumber(st.wYear % 100, n);
            else
                out.PutNumber(st.wYear, 4);
            break;
        case 'g': // eras are not written: this calendar has only one
            break;
        case 'h':
            out.PutNumber(h12, n > 2 ? 2 : n);
            break;
        case 'H':
            out.PutNumber(st.wHour, n > 2 ? 2 : n);
            break;
        case 'm':
            out.PutNumber(st.wMinute, n > 2 ? 2 : n);
            break;
        case 's':
            out.PutNumber(st.wSecond, n > 2 ? 2 : n);
            break;
        case 't': {
            char period[256];
            size_t const len = DayPeriod(st.wHour >= 12, period, sizeof period);
            out.Put(period, n == 1 && len > 1 ? 1 : len);
            break;
        }
        }
    }
}

bool IsValidFields(SYSTEMTIME const& st) {
    return st.wYear >= 1601 && st.wYear <= 30827 && st.wMonth >= 1 && st.wMonth <= 12 && st.wDay >= 1 &&
           st.wDay <= DaysInMonth(st.wMonth, st.wYear) && st.wHour < 24 && st.wMinute < 60 &&
           st.wSecond < 60 && st.wMilliseconds < 1000;
}

// ---- Parsing ---------------------------------------------------------------------------------------

bool IsAlnum(char c) {
    return IsCharAlphaNumericA(c) != FALSE;
}

// Case-insensitive comparison of n bytes in the current code page.
bool EqualsNoCase(char const* a, char const* b, size_t n) {
    if (n == 0)
        return true;
    int const cp = NVGetCurCodePage();
    wchar_t wa[256], wb[256];
    int const la = MultiByteToWideChar(cp, 0, a, static_cast<int>(n), wa, 256);
    int const lb = MultiByteToWideChar(cp, 0, b, static_cast<int>(n), wb, 256);
    return la > 0 && lb > 0 &&
           CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, wa, la, wb, lb) == CSTR_EQUAL;
}

// Longest of the candidates that text starts with, case-insensitively; its index or -1.
int MatchName(char const* text, std::vector<std::string> const& names, size_t& len) {
    int best = -1;
    len = 0;
    size_t const available = std::strlen(text);
    for (size_t i = 0; i < names.size(); ++i) {
        size_t const n = names[i].size();
        if (n > len && n <= available && EqualsNoCase(text, names[i].c_str(), n)) {
            best = static_cast<int>(i);
            len = n;
        }
    }
    return best;
}

class PictureParser {
public:
    PictureParser(char const* text, bool bLenient, bool bPartial)
        : m_p(text), m_bLenient(bLenient), m_bPartial(bPartial) {}

    // Fills the fields it reads into st; false when the text does not fit the picture.
    bool Parse(char const* picture, SYSTEMTIME& st) {
        bool bPM = false, bPeriod = false, bHour12 = false;
        for (char const* f = picture; *f;) {
            if (m_bPartial && AtEnd())
                break;
            char const c = *f;
            if (c == '\'') {
                ++f;
                while (*f) {
                    if (*f == '\'') {
                        if (f[1] != '\'')
                            break;
                        ++f;
                    }
                    if (!*m_p || !EqualsNoCase(m_p, f, 1))
                        return false;
                    ++m_p;
                    ++f;
                }
                if (*f)
                    ++f;
                continue;
            }
            if (!IsPictureLetter(c)) {
                if (!Literal(c))
                    return false;
                ++f;
                continue;
            }
            int n = 0;
            while (f[n] == c)
                ++n;
            f += n;
            int value = 0;
            switch (c) {
            case 'd':
                if (n <= 2) {
                    if (!Number(1, 2, value))
                        return false;
                    st.wDay = static_cast<WORD>(value);
                } else if (!Names(true)) {
                    return false;
                }
                break;
            case 'M':
                if (n <= 2) {
                    if (!Number(1, 2, value))
                        return false;
                    st.wMonth = static_cast<WORD>(value);
                } else {
                    int const m = MonthByName();
                    if (m < 1)
                        return false;
                    st.wMonth = static_cast<WORD>(m);
                }
                break;
            case 'y': {
                bool const bLong = n > 2;
                int const lo = m_bLenient ? 2 : (bLong ? 4 : 2);
                int const hi = m_bLenient ? 4 : (bLong ? 4 : 2);
                char const* start = m_p;
                if (!Number(lo, hi, value))
                    return false;
                if (m_p - start <= 2)
                    value += value < 70 ? 2000 : 1900;
                st.wYear = static_cast<WORD>(value);
                break;
            }
            case 'g':
                break;
            case 'h':
            case 'H':
                if (!Number(1, 2, value))
                    return false;
                st.wHour = static_cast<WORD>(value);
                bHour12 = c == 'h';
                break;
            case 'm':
                if (!Number(1, 2, value))
                    return false;
                st.wMinute = static_cast<WORD>(value);
                break;
            case 's':
                if (!Number(1, 2, value))
                    return false;
                st.wSecond = static_cast<WORD>(value);
                break;
            case 't': {
                std::string const am = DayPeriod(false), pm = DayPeriod(true);
                std::vector<std::string> names = {am, pm};
                if (n == 1)
                    names = {am.substr(0, 1), pm.substr(0, 1)};
                size_t len;
                int const i = MatchName(m_p, names, len);
                if (i < 0)
                    return false;
                m_p += len;
                bPM = i == 1;
                bPeriod = true;
                break;
            }
            }
        }
        while (*m_p == ' ' || *m_p == '\t')
            ++m_p;
        if (*m_p)
            return false;
        if (bHour12) {
            if (st.wHour > 12 || (bPeriod && st.wHour == 0))
                return false;
            if (bPeriod)
                st.wHour = static_cast<WORD>(st.wHour % 12 + (bPM ? 12 : 0));
        }
        return true;
    }

private:
    bool AtEnd() const {
        char const* p = m_p;
        while (*p == ' ' || *p == '\t')
            ++p;
        return *p == '\0';
    }

    bool Literal(char c) {
        if (c == ' ') {
            if (*m_p != ' ' && *m_p != '\t')
                return m_bLenient && !IsAlnum(*m_p) && *m_p;
            while (*m_p == ' ' || *m_p == '\t')
                ++m_p;
            return true;
        }
        if (*m_p == c || (m_bLenient && *m_p && !IsAlnum(*m_p) && !IsAlnum(c))) {
            ++m_p;
            return true;
        }
        return false;
    }

    bool Number(int minDigits, int maxDigits, int& value) {
        int digits = 0;
        value = 0;
        while (digits < maxDigits && *m_p >= '0' && *m_p <= '9') {
            value = value * 10 + (*m_p - '0');
            ++m_p;
            ++digits;
        }
        return digits >= minDigits && !(*m_p >= '0' && *m_p <= '9');
    }

    bool Names(bool bDays) {
        std::vector<std::string> names;
        for (int i = 0; i < 7 && bDays; ++i) {
            names.push_back(DayName(i, false));
            names.push_back(DayName(i, true));
        }
        size_t len;
        if (MatchName(m_p, names, len) < 0)
            return false;
        m_p += len;
        return true;
    }

    int MonthByName() {
        std::vector<std::string> names;
        for (int m = 1; m <= 12; ++m) {
            names.push_back(MonthName(m, false));
            names.push_back(MonthName(m, true));
        }
        size_t len;
        int const i = MatchName(m_p, names, len);
        if (i < 0)
            return 0;
        m_p += len;
        return i / 2 + 1;
    }

    char const* m_p;
    bool m_bLenient;
    bool m_bPartial;
};

std::string Narrow(wchar_t const* text) {
    if (!text)
        return std::string();
    int const n = WideCharToMultiByte(NVGetCurCodePage(), 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (n <= 0)
        return std::string();
    std::string out(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(NVGetCurCodePage(), 0, text, -1, &out[0], n, nullptr, nullptr);
    out.resize(static_cast<size_t>(n - 1));
    return out;
}

// The first of the pictures that parses the whole text, as a time in the machine's zone.
long ParseWithPictures(char const* text, std::vector<std::string> const& pictures) {
    if (!text)
        return -1;
    while (*text == ' ' || *text == '\t')
        ++text;
    if (!*text)
        return -1;
    for (std::string const& picture : pictures) {
        SYSTEMTIME st{};
        if (String2SYSTEMTIME(text, picture.c_str(), st, false, false, false))
            return SystemTimeToTime_t(&st, 0, false);
    }
    return -1;
}

std::vector<std::string> DateTimePictures(char const* date, char const* shortYear, char const* time,
                                          char const* timeSeconds) {
    std::vector<std::string> out;
    for (char const* d : {date, shortYear}) {
        for (char const* t : {timeSeconds, time, "HH:mm:ss", "HH:mm"})
            out.push_back(std::string(d) + " " + t);
        out.push_back(d);
    }
    return out;
}

struct LanguageFormats {
    char const* pszDate;
    char const* pszTime;
    char const* pszTimeSeconds;
    char const* pszTimeBehindDate;
    char const* pszWeekdayComma;
    char const* pszShortYear;
    char const* pszWeekday;
};

// The time that follows a date carries its blank, so that a date and a time written one after the
// other without a separator still read well.
LanguageFormats const g_German = {"dd.MM.yyyy",      "HH:mm",    "HH:mm:ss",      " HH:mm:ss",
                                  "ddd, dd.MM.yyyy", "dd.MM.yy", "ddd dd.MM.yyyy"};
LanguageFormats const g_English = {"MM/dd/yyyy",      "hh:mm tt", "hh:mm:ss tt",   " hh:mm:ss tt",
                                   "ddd, MM/dd/yyyy", "MM/dd/yy", "ddd MM/dd/yyyy"};

LanguageFormats const& FormatsOf(unsigned short wLangID) {
    if (!wLangID)
        wLangID = GetCurrentLangID(false);
    switch (PRIMARYLANGID(wLangID)) {
    case LANG_GERMAN:
    case LANG_POLISH:
        return g_German;
    default:
        return g_English;
    }
}

} // namespace

char const* NVGetDateTimeFormatString(NVDateTimeFormatStringType type, unsigned short wLangID) {
    LanguageFormats const& f = FormatsOf(wLangID);
    switch (type) {
    case NVDT_DATETIME_DATE:
    case NVDT_DATE:
        return f.pszDate;
    case NVDT_TIME:
        return f.pszTime;
    case NVDT_DATETIME_TIME:
        return f.pszTimeBehindDate;
    case NVDT_TIME_SECONDS:
        return f.pszTimeSeconds;
    case NVDT_DATE_WEEKDAY_COMMA:
        return f.pszWeekdayComma;
    case NVDT_DATE_SHORTYEAR:
        return f.pszShortYear;
    case NVDT_DATE_WEEKDAY:
        return f.pszWeekday;
    }
    return nullptr;
}

bool NVSetTimeZone(unsigned long dwTZ, TIME_ZONE_INFORMATION const* pTZI) {
    if (dwTZ == 0)
        return false;
    ZoneTable& table = Zones();
    std::lock_guard<std::mutex> guard(table.lock);
    if (!pTZI)
        return table.zones.erase(dwTZ) != 0;
    bool const bNoDaylight = pTZI->StandardDate.wMonth == 0 && pTZI->DaylightDate.wMonth == 0;
    if (!bNoDaylight && (!IsValidRule(pTZI->StandardDate) || !IsValidRule(pTZI->DaylightDate)))
        return false;
    if (pTZI->Bias < -24 * 60 || pTZI->Bias > 24 * 60)
        return false;
    table.zones.erase(dwTZ);
    table.zones.emplace(dwTZ, Zone(*pTZI));
    return true;
}

long NVGetNow() {
    if (g_tNowOverride)
        return g_tNowOverride;
    FILETIME ft;
    GetSystemTimeAsFileTime(&ft);
    unsigned long long const ticks =
        (static_cast<unsigned long long>(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
    long long const seconds = static_cast<long long>(ticks / 10000000ULL) - 11644473600LL;
    return seconds > NV_TIME_MAX ? -1 : static_cast<long>(seconds);
}

void NVSetNowOverride(long tNow) {
    g_tNowOverride = tNow;
}

void Time_tToSystemTime(long t, SYSTEMTIME* pst, unsigned long dwTZ, bool bUTC, int* pDST, long) {
    if (pDST)
        *pDST = 0;
    if (!pst)
        return;
    *pst = SYSTEMTIME{};
    Zone zone(TIME_ZONE_INFORMATION{});
    if (!IsValidTime(t) || !FindZone(dwTZ, zone))
        return;
    bool bDaylight = false;
    long long const local = bUTC ? t : zone.ToLocal(t, &bDaylight);
    FieldsFromSeconds(local, *pst);
    if (pDST)
        *pDST = bDaylight ? 1 : 0;
}

long SystemTimeToTime_t(SYSTEMTIME* pst, unsigned long dwTZ, bool bUTC) {
    Zone zone(TIME_ZONE_INFORMATION{});
    if (!pst || !FindZone(dwTZ, zone))
        return -1;
    SYSTEMTIME const& st = *pst;
    if (st.wYear < 1969 || st.wYear > 2038 || st.wMonth < 1 || st.wMonth > 12 || st.wDay < 1 ||
        st.wDay > 31 || st.wHour > 23 || st.wMinute > 59 || st.wSecond > 59)
        return -1;
    long long const local =
        DaysFromCivil(st.wYear, st.wMonth, st.wDay) * 86400 + st.wHour * 3600 + st.wMinute * 60 + st.wSecond;
    return CheckedResult(bUTC ? local : zone.FromLocal(local));
}

int FormatDate(long t, char const* lpszFormat, char* out, int size, unsigned long dwTZ) {
    if (!out || size <= 0)
        return 0;
    out[0] = '\0';
    SYSTEMTIME st;
    Time_tToSystemTime(t, &st, dwTZ);
    if (st.wYear == 0)
        return 0;
    if (!lpszFormat || !*lpszFormat)
        lpszFormat = NVGetDateTimeFormatString(NVDT_DATE, 0);
    PictureText text(out, size);
    FormatPicture(st, lpszFormat, text);
    int const len = text.Finish();
    return len > 0 ? len : 0;
}

int FormatTime(long t, char const* lpszFormat, char* out, int size, unsigned long dwTZ) {
    if (!lpszFormat || !*lpszFormat)
        lpszFormat = NVGetDateTimeFormatString(NVDT_TIME, 0);
    return FormatDate(t, lpszFormat, out, size, dwTZ);
}

int FormatDateTime(long t, char const* lpszDateFormat, char const* lpszTimeFormat, char* out, int size,
                   unsigned long dwTZ) {
    bool const bDate = lpszDateFormat && *lpszDateFormat;
    bool const bTime = lpszTimeFormat && *lpszTimeFormat;
    if (!bDate && !bTime) {
        lpszDateFormat = NVGetDateTimeFormatString(NVDT_DATE, 0);
        lpszTimeFormat = NVGetDateTimeFormatString(NVDT_TIME, 0);
    } else if (!bDate) {
        return FormatDate(t, lpszTimeFormat, out, size, dwTZ);
    } else if (!bTime) {
        return FormatDate(t, lpszDateFormat, out, size, dwTZ);
    }
    // One picture, so that a quote left open in the date part goes on into the time part.
    size_t const cchDate = std::strlen(lpszDateFormat), cchTime = std::strlen(lpszTimeFormat);
    bool const bBlank = lpszDateFormat[cchDate - 1] != ' ' && lpszTimeFormat[0] != ' ';
    char szPicture[256];
    std::string strPicture;
    char* picture = szPicture;
    if (cchDate + cchTime + 2 > sizeof szPicture) {
        strPicture.resize(cchDate + cchTime + 2);
        picture = &strPicture[0];
    }
    std::memcpy(picture, lpszDateFormat, cchDate);
    size_t len = cchDate;
    if (bBlank)
        picture[len++] = ' ';
    std::memcpy(picture + len, lpszTimeFormat, cchTime + 1);
    return FormatDate(t, picture, out, size, dwTZ);
}

bool String2SYSTEMTIME(char const* text, char const* lpszFormat, SYSTEMTIME& st, bool bLenient, bool bPartial,
                       bool bKeepUnset) {
    if (!text)
        return false;
    if (!lpszFormat || !*lpszFormat)
        lpszFormat = NVGetDateTimeFormatString(NVDT_DATE, 0);
    SYSTEMTIME result = st;
    if (!bKeepUnset) {
        result = SYSTEMTIME{};
        result.wYear = 1900;
        result.wMonth = 1;
        result.wDay = 1;
    }
    while (*text == ' ' || *text == '\t')
        ++text;
    if (!*text && !bPartial)
        return false;
    PictureParser parser(text, bLenient, bPartial);
    if (!parser.Parse(lpszFormat, result) || !IsValidFields(result))
        return false;
    result.wDayOfWeek =
        static_cast<WORD>(WeekDayOfDays(DaysFromCivil(result.wYear, result.wMonth, result.wDay)));
    st = result;
    return true;
}

bool String2SYSTEMTIME(wchar_t const* text, wchar_t const* lpszFormat, SYSTEMTIME& st, bool bLenient,
                       bool bPartial, bool bKeepUnset) {
    if (!text)
        return false;
    std::string const format = Narrow(lpszFormat);
    return String2SYSTEMTIME(Narrow(text).c_str(), lpszFormat ? format.c_str() : nullptr, st, bLenient,
                             bPartial, bKeepUnset);
}

bool SYSTEMTIME2String(char* out, char const* lpszFormat, SYSTEMTIME& st, int iSize) {
    if (!out || iSize <= 0)
        return false;
    out[0] = '\0';
    SYSTEMTIME copy = st;
    if (!IsValidFields(copy))
        return false;
    copy.wDayOfWeek = static_cast<WORD>(WeekDayOfDays(DaysFromCivil(copy.wYear, copy.wMonth, copy.wDay)));
    if (!lpszFormat || !*lpszFormat)
        lpszFormat = NVGetDateTimeFormatString(NVDT_DATE, 0);
    PictureText text(out, iSize);
    FormatPicture(copy, lpszFormat, text);
    return text.Finish() >= 0;
}

long String2DateTime(char const* text) {
    LanguageFormats const& f = FormatsOf(0);
    return ParseWithPictures(text, DateTimePictures(f.pszDate, f.pszShortYear, f.pszTime, f.pszTimeSeconds));
}

long String2DateTime(wchar_t const* text) {
    if (!text)
        return -1;
    return String2DateTime(Narrow(text).c_str());
}

long String2DateTimeUSFormat(char const* text) {
    return ParseWithPictures(text, DateTimePictures(g_English.pszDate, g_English.pszShortYear,
                                                    g_English.pszTime, g_English.pszTimeSeconds));
}

long NVAddDays(long t, int iDays, unsigned long dwTZ) {
    Zone zone(TIME_ZONE_INFORMATION{});
    if (!IsValidTime(t) || !FindZone(dwTZ, zone))
        return -1;
    long long const local = zone.ToLocal(t) + static_cast<long long>(iDays) * 86400;
    return CheckedResult(zone.FromLocal(local));
}

long NVAddToTime_t(long t, int iSeconds, unsigned long dwTZ) {
    Zone zone(TIME_ZONE_INFORMATION{});
    if (!IsValidTime(t) || !FindZone(dwTZ, zone))
        return -1;
    return CheckedResult(zone.FromLocal(zone.ToLocal(t) + iSeconds));
}

long NVGetBeginOfDay(long t, unsigned long dwTZ) {
    Zone zone(TIME_ZONE_INFORMATION{});
    if (!IsValidTime(t) || !FindZone(dwTZ, zone))
        return -1;
    long long const local = zone.ToLocal(t);
    return CheckedResult(zone.FromLocal(FloorDiv(local, 86400) * 86400));
}

int NVGetTime_tDiv(long t1, long t2, unsigned long dwTZ) {
    Zone zone(TIME_ZONE_INFORMATION{});
    if (!IsValidTime(t1) || !IsValidTime(t2) || !FindZone(dwTZ, zone))
        return 0;
    return static_cast<int>(zone.ToLocal(t1) - zone.ToLocal(t2));
}

int GetLastDayInMonth(int iMonth, int iYear) {
    return DaysInMonth(iMonth, iYear);
}

void vAufVolleMinuteAbrunden(long& t) {
    t = static_cast<long>(FloorDiv(t, 60) * 60);
}
