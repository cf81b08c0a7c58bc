#include "NVNumbers.h"

#include "NVLanguage.h"

#include <atomic>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <new>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

bool g_bAmountsWithoutDecimals = false;

constexpr size_t MAX_SEPARATOR = 3;

// A separator of at most MAX_SEPARATOR characters. cch keeps the length of a longer text so that
// the check can refuse it; only the first MAX_SEPARATOR characters are stored.
struct Separator {
    char sz[MAX_SEPARATOR + 1] = "";
    size_t cch = 0;

    void Set(char const* p, size_t n) {
        cch = n;
        size_t const keep = n < MAX_SEPARATOR ? n : MAX_SEPARATOR;
        std::memcpy(sz, p, keep);
        sz[keep] = '\0';
    }
    bool operator==(Separator const& o) const { return cch == o.cch && std::strcmp(sz, o.sz) == 0; }
    bool HasDigit() const {
        for (char const* p = sz; *p; ++p)
            if (*p >= '0' && *p <= '9')
                return true;
        return false;
    }
};

// Fixed storage only: formatting a cell must not touch the heap.
struct NumberFormat {
    unsigned int uDecimals = 2;
    unsigned int uLeadingZero = 1;
    unsigned int uGrouping = 3;
    Separator decimal;
    Separator thousand;
    unsigned int uNegativeOrder = 1;

    NumberFormat() {
        decimal.Set(".", 1);
        thousand.Set(",", 1);
    }
};

// A field of a format text never contains '|', the splitter of the fields.
bool IsValid(NumberFormat const& nf) {
    return nf.uDecimals <= 9 && nf.uLeadingZero <= 1 && nf.uGrouping <= 9999 && nf.uNegativeOrder <= 4 &&
           nf.decimal.cch != 0 && nf.decimal.cch <= MAX_SEPARATOR && nf.thousand.cch <= MAX_SEPARATOR &&
           !nf.decimal.HasDigit() && !nf.thousand.HasDigit() && !(nf.decimal == nf.thousand) &&
           !std::strchr(nf.decimal.sz, '|') && !std::strchr(nf.thousand.sz, '|');
}

std::string LocaleText(unsigned short wLangID, LCTYPE type) {
    wchar_t wbuf[32];
    if (!GetLocaleInfoW(MAKELCID(wLangID, SORT_DEFAULT), type, wbuf, 32))
        return std::string();
    // Some languages group with a narrow or non-breaking space that 8-bit code pages may lack.
    for (wchar_t* p = wbuf; *p; ++p)
        if (*p == 0x202F || *p == 0x00A0)
            *p = L' ';
    char buf[64];
    BOOL bLost = FALSE;
    int const n = WideCharToMultiByte(NVGetCurCodePage(), 0, wbuf, -1, buf, sizeof buf, nullptr, &bLost);
    return n > 0 && !bLost ? std::string(buf) : std::string();
}

unsigned int LocaleNumber(unsigned short wLangID, LCTYPE type, unsigned int uDefault) {
    DWORD value = 0;
    if (GetLocaleInfoW(MAKELCID(wLangID, SORT_DEFAULT), type | LOCALE_RETURN_NUMBER,
                       reinterpret_cast<LPWSTR>(&value), sizeof(value) / sizeof(WCHAR)))
        return value;
    return uDefault;
}

// The language's number format, with two decimals, read from the locale data.
NumberFormat ReadLanguageFormat(unsigned short wLangID) {
    NumberFormat nf;
    nf.uLeadingZero = LocaleNumber(wLangID, LOCALE_ILZERO, 1) ? 1 : 0;
    nf.uNegativeOrder = LocaleNumber(wLangID, LOCALE_INEGNUMBER, 1);
    std::string const decimal = LocaleText(wLangID, LOCALE_SDECIMAL);
    std::string const thousand = LocaleText(wLangID, LOCALE_STHOUSAND);
    if (!decimal.empty())
        nf.decimal.Set(decimal.c_str(), decimal.size());
    nf.thousand.Set(thousand.c_str(), thousand.size());
    // "3;2;0" is NUMBERFMT's 32, "3;0" its 3, "3" its 30.
    std::string const grouping = LocaleText(wLangID, LOCALE_SGROUPING);
    if (!grouping.empty()) {
        unsigned int g = 0;
        for (char c : grouping)
            if (c >= '0' && c <= '9')
                g = g * 10 + static_cast<unsigned int>(c - '0');
        if (grouping.size() >= 2 && grouping.compare(grouping.size() - 2, 2, ";0") == 0)
            g /= 10;
        else if (g != 0)
            g *= 10;
        nf.uGrouping = g;
    }
    if (!IsValid(nf))
        nf = NumberFormat();
    return nf;
}

// Formats read once per language and code page. Entries are never freed nor changed once published,
// so readers need no lock; a full table only means reading the locale again.
struct CachedFormat {
    unsigned short wLangID;
    int iCodePage;
    NumberFormat nf;
};
constexpr size_t FORMAT_CACHE_SLOTS = 32;
std::atomic<CachedFormat const*> g_apFormatCache[FORMAT_CACHE_SLOTS];

// The language's number format (0: current), with two decimals.
NumberFormat LanguageFormat(unsigned short wLangID) {
    if (!wLangID)
        wLangID = GetCurrentLangID(false);
    int const cp = NVGetCurCodePage();
    for (std::atomic<CachedFormat const*>& slot : g_apFormatCache) {
        CachedFormat const* p = slot.load(std::memory_order_acquire);
        if (!p)
            break;
        if (p->wLangID == wLangID && p->iCodePage == cp)
            return p->nf;
    }
    NumberFormat const nf = ReadLanguageFormat(wLangID);
    auto* entry = new (std::nothrow) CachedFormat{wLangID, cp, nf};
    if (!entry)
        return nf;
    for (std::atomic<CachedFormat const*>& slot : g_apFormatCache) {
        CachedFormat const* expected = nullptr;
        if (slot.compare_exchange_strong(expected, entry, std::memory_order_acq_rel))
            return nf;
        if (expected->wLangID == wLangID && expected->iCodePage == cp)
            break; // another thread was quicker
    }
    delete entry;
    return nf;
}

bool ParseUnsigned(char const* s, size_t cch, unsigned int& value) {
    if (cch == 0 || cch > 4)
        return false;
    value = 0;
    for (size_t i = 0; i < cch; ++i) {
        char const c = s[i];
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + static_cast<unsigned int>(c - '0');
    }
    return true;
}

bool ParseFormat(char const* lpszFormat, NumberFormat& nf) {
    if (!lpszFormat || !*lpszFormat)
        lpszFormat = NVGetNumberFormatString(NVNF_DEFAULT, 0, g_bAmountsWithoutDecimals);
    nf = LanguageFormat(0);
    if (lpszFormat[0] == '%') {
        if (std::strcmp(lpszFormat, "%f") == 0 || std::strcmp(lpszFormat, "%lf") == 0) {
            nf.uDecimals = 6;
            return true;
        }
        if (lpszFormat[1] != '.' || lpszFormat[2] < '0' || lpszFormat[2] > '9')
            return false;
        char const* p = lpszFormat + 2;
        unsigned int decimals = 0;
        while (*p >= '0' && *p <= '9' && decimals <= 9)
            decimals = decimals * 10 + static_cast<unsigned int>(*p++ - '0');
        if (*p == 'l')
            ++p;
        if (std::strcmp(p, "f") != 0 || decimals > 9)
            return false;
        nf.uDecimals = decimals;
        return true;
    }
    if (lpszFormat[0] != '#')
        return false;
    // Up to six fields split by '|', taken in place.
    char const* apField[6];
    size_t acchField[6];
    size_t nFields = 0;
    char const* p = lpszFormat + 1;
    while (true) {
        if (nFields == 6)
            return false;
        char const* end = std::strchr(p, '|');
        size_t const cch = end ? static_cast<size_t>(end - p) : std::strlen(p);
        apField[nFields] = p;
        acchField[nFields] = cch;
        ++nFields;
        if (!end)
            break;
        p = end + 1;
    }
    if ((nFields > 0 && !ParseUnsigned(apField[0], acchField[0], nf.uDecimals)) ||
        (nFields > 1 && !ParseUnsigned(apField[1], acchField[1], nf.uLeadingZero)) ||
        (nFields > 2 && !ParseUnsigned(apField[2], acchField[2], nf.uGrouping)) ||
        (nFields > 5 && !ParseUnsigned(apField[5], acchField[5], nf.uNegativeOrder)))
        return false;
    if (nFields > 3)
        nf.decimal.Set(apField[3], acchField[3]);
    if (nFields > 4)
        nf.thousand.Set(apField[4], acchField[4]);
    return IsValid(nf);
}

std::string ToText(NumberFormat const& nf) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "#%u|%u|%u|%s|%s|%u", nf.uDecimals, nf.uLeadingZero, nf.uGrouping,
                  nf.decimal.sz, nf.thousand.sz, nf.uNegativeOrder);
    return buf;
}

// Group sizes from the decimal separator leftwards; the last one repeats unless it is 0.
std::vector<unsigned int> GroupSizes(unsigned int uGrouping) {
    std::vector<unsigned int> sizes;
    std::string const digits = std::to_string(uGrouping);
    for (char c : digits)
        sizes.push_back(static_cast<unsigned int>(c - '0'));
    return sizes;
}

// The text of a number under construction, in a fixed buffer: long enough for 18 integer digits
// grouped by ones with three-character separators, the decimals and the sign.
class NumberText {
public:
    void Put(char c) {
        if (m_cch < sizeof m_sz - 1)
            m_sz[m_cch++] = c;
        else
            m_bOverflow = true;
    }
    void Put(char const* p, size_t cch) {
        for (size_t i = 0; i < cch; ++i)
            Put(p[i]);
    }
    void Put(char const* p) { Put(p, std::strlen(p)); }
    // Writes the text with the sign into out; false when it does not fit.
    bool CopyTo(char* out, int size, bool bNegative, unsigned int uOrder) const {
        char const* before = "";
        char const* after = "";
        if (bNegative) {
            switch (uOrder) {
            case 0:
                before = "(";
                after = ")";
                break;
            case 2:
                before = "- ";
                break;
            case 3:
                after = "-";
                break;
            case 4:
                after = " -";
                break;
            default:
                before = "-";
            }
        }
        size_t const cchBefore = std::strlen(before), cchAfter = std::strlen(after);
        size_t const total = cchBefore + m_cch + cchAfter;
        if (m_bOverflow || total >= static_cast<size_t>(size))
            return false;
        std::memcpy(out, before, cchBefore);
        std::memcpy(out + cchBefore, m_sz, m_cch);
        std::memcpy(out + cchBefore + m_cch, after, cchAfter);
        out[total] = '\0';
        return true;
    }

private:
    char m_sz[128];
    size_t m_cch = 0;
    bool m_bOverflow = false;
};

// Writes the integer digits with the format's thousands groups.
void PutGrouped(NumberText& text, char const* digits, size_t cch, NumberFormat const& nf) {
    if (nf.uGrouping == 0 || nf.thousand.cch == 0) {
        text.Put(digits, cch);
        return;
    }
    // Group sizes from the decimal separator leftwards; the last one repeats unless it is 0.
    unsigned int sizes[4];
    size_t nSizes = 0;
    for (unsigned int g = nf.uGrouping; g != 0 && nSizes < 4; g /= 10)
        sizes[nSizes++] = g % 10;
    for (size_t i = 0; i < nSizes / 2; ++i)
        std::swap(sizes[i], sizes[nSizes - 1 - i]);
    // Lengths of the groups from the right; at most one group per digit.
    size_t lengths[32];
    size_t nGroups = 0;
    size_t end = cch;
    while (end > 0 && nGroups < 32) {
        unsigned int const size = nGroups < nSizes ? sizes[nGroups] : sizes[nSizes - 1];
        if (size == 0 || size >= end) {
            lengths[nGroups++] = end;
            break;
        }
        lengths[nGroups++] = size;
        end -= size;
    }
    char const* p = digits;
    for (size_t i = nGroups; i-- > 0;) {
        text.Put(p, lengths[i]);
        p += lengths[i];
        if (i)
            text.Put(nf.thousand.sz, nf.thousand.cch);
    }
}

// The 15 significant digits of v > 0 as printf's "%.14e" rounds them (a number from 10^14 to below
// 10^15), and the decimal exponent of the first. Exact integer arithmetic on the binary value; false
// where that needs more than 128 bits or printf would have to settle an exact tie, so that the
// caller asks printf itself and the result never depends on this shortcut.
bool SignificantDigits(double v, unsigned long long& digits, int& exponent) {
    int e2 = 0;
    double const f = std::frexp(v, &e2);
    // v = m / 2^shift with m below 2^53.
    auto const m = static_cast<unsigned long long>(std::ldexp(f, 53));
    int const shift = 53 - e2;
    if (shift <= 0 || shift >= 120)
        return false;
    static unsigned __int128 const* const s_aPow10 = [] {
        static unsigned __int128 pow10[23];
        pow10[0] = 1;
        for (int i = 1; i < 23; ++i)
            pow10[i] = pow10[i - 1] * 10;
        return pow10;
    }();
    unsigned long long const low = 100000000000000ULL, high = 1000000000000000ULL;
    // v lies in [2^(e2-1), 2^e2), so its decimal exponent is this estimate or one more; the loop
    // settles it without a logarithm.
    int e10 = static_cast<int>(std::floor((e2 - 1) * 0.30102999566398120));
    for (int tries = 0; tries < 3; ++tries) {
        int const s = 14 - e10;
        if (s < 0 || s > 22)
            return false;
        unsigned __int128 const scaled = static_cast<unsigned __int128>(m) * s_aPow10[s];
        unsigned __int128 const q = scaled >> shift;
        if (q >= high) {
            ++e10;
            continue;
        }
        if (q < low) {
            --e10;
            continue;
        }
        unsigned __int128 const rest = scaled - (q << shift);
        unsigned __int128 const half = static_cast<unsigned __int128>(1) << (shift - 1);
        if (rest == half)
            return false;
        digits = static_cast<unsigned long long>(q) + (rest > half ? 1 : 0);
        exponent = e10;
        if (digits == high) {
            digits = low;
            ++exponent;
        }
        return true;
    }
    return false;
}

// Runden's result for v = |value| > 0 as an integer count of 10^-decimals: the same digits that
// printf gives of Runden's double, since that double lies far closer to this decimal than half a
// unit of its last place. False where Runden keeps the value unrounded or the shortcut cannot
// decide; the caller then takes Runden and printf.
bool RoundedUnits(double v, unsigned int decimals, unsigned long long& units) {
    unsigned long long digits = 0;
    int exponent = 0;
    if (!SignificantDigits(v, digits, exponent))
        return false;
    long long const keep = static_cast<long long>(exponent) + 1 + decimals;
    if (keep >= 15)
        return false;
    if (keep < 0) {
        units = 0;
        return true;
    }
    unsigned long long divisor = 1;
    for (long long i = keep; i < 14; ++i)
        divisor *= 10;
    // digits / divisor leaves one digit more than kept: that digit decides.
    unsigned long long const withNext = digits / divisor;
    units = withNext / 10 + (withNext % 10 >= 5 ? 1 : 0);
    return true;
}

// The decimal separator that the C runtime's strtod expects.
char RuntimeDecimalPoint() {
    lconv const* lc = std::localeconv();
    return lc && lc->decimal_point && lc->decimal_point[0] ? lc->decimal_point[0] : '.';
}

bool StartsWith(char const* p, Separator const& s) {
    return s.cch != 0 && std::strncmp(p, s.sz, s.cch) == 0;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Whether the integer groups (left to right) have the sizes of the format: the leftmost group may be
// shorter, the others must match exactly.
bool GroupsFit(std::vector<size_t> const& groups, NumberFormat const& nf) {
    if (groups.size() <= 1)
        return true;
    if (nf.uGrouping == 0)
        return false;
    std::vector<unsigned int> const sizes = GroupSizes(nf.uGrouping);
    size_t index = 0;
    for (size_t i = groups.size(); i-- > 1; ++index) {
        unsigned int const size = index < sizes.size() ? sizes[index] : sizes.back();
        if (size == 0 || groups[i] != size)
            return false;
    }
    unsigned int const leftMax = index < sizes.size() ? sizes[index] : sizes.back();
    return groups[0] >= 1 && (leftMax == 0 || groups[0] <= leftMax);
}

} // namespace

bool NVGetAmountsWithoutDecimalPlaces() {
    return g_bAmountsWithoutDecimals;
}

void NVSetAmountsWithoutDecimalPlaces(bool bWithout) {
    g_bAmountsWithoutDecimals = bWithout;
}

char const* NVGetNumberFormatString(NVNumberFormatStringType type, unsigned short wLangID,
                                    bool bAmountsWithoutDecimals) {
    if (type != NVNF_DEFAULT && type != NVNF_EDIT)
        return nullptr;
    if (!wLangID)
        wLangID = GetCurrentLangID(false);
    static std::mutex lock;
    static std::map<std::tuple<int, unsigned short, bool, int>, std::string> cache;
    std::lock_guard<std::mutex> guard(lock);
    auto key = std::make_tuple(static_cast<int>(type), wLangID, bAmountsWithoutDecimals, NVGetCurCodePage());
    auto it = cache.find(key);
    if (it == cache.end()) {
        NumberFormat nf = LanguageFormat(wLangID);
        nf.uDecimals = bAmountsWithoutDecimals ? 0 : 2;
        if (type == NVNF_EDIT)
            nf.uGrouping = 0;
        it = cache.emplace(key, ToText(nf)).first;
    }
    return it->second.c_str();
}

bool NVExtractNumberFormat(char const* lpszFormat, NUMBERFMTA& nfOut, char* lpszDecimal,
                           unsigned int cbDecimal, char* lpszThousand, unsigned int cbThousand) {
    NumberFormat nf;
    if (!ParseFormat(lpszFormat, nf))
        return false;
    // Without caller buffers the separators live here until the next call of this thread.
    thread_local char szDecimal[MAX_SEPARATOR + 1];
    thread_local char szThousand[MAX_SEPARATOR + 1];
    if (!lpszDecimal) {
        lpszDecimal = szDecimal;
        cbDecimal = sizeof szDecimal;
    }
    if (!lpszThousand) {
        lpszThousand = szThousand;
        cbThousand = sizeof szThousand;
    }
    if (nf.decimal.cch >= cbDecimal || nf.thousand.cch >= cbThousand)
        return false;
    std::memcpy(lpszDecimal, nf.decimal.sz, nf.decimal.cch + 1);
    std::memcpy(lpszThousand, nf.thousand.sz, nf.thousand.cch + 1);
    nfOut.NumDigits = nf.uDecimals;
    nfOut.LeadingZero = nf.uLeadingZero;
    nfOut.Grouping = nf.uGrouping;
    nfOut.lpDecimalSep = lpszDecimal;
    nfOut.lpThousandSep = lpszThousand;
    nfOut.NegativeOrder = nf.uNegativeOrder;
    return true;
}

double Runden(double value, unsigned int digits) {
    if (!std::isfinite(value) || value == 0.0)
        return value;
    // The 15 significant digits that a double holds reliably, as d.dddddddddddddde±x.
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    int digitValues[15];
    int count = 0;
    char const* p = buf;
    for (; *p && *p != 'e' && count < 15; ++p)
        if (IsDigit(*p))
            digitValues[count++] = *p - '0';
    while (*p && *p != 'e')
        ++p;
    if (*p != 'e' || count != 15)
        return value;
    int const exponent = std::atoi(p + 1);
    // The mantissa 0.d1d2...d15 times 10^(exponent + 1); keep as many digits as the places allow.
    long long const keep = static_cast<long long>(exponent) + 1 + digits;
    if (keep >= 15)
        return value;
    if (keep < 0)
        return value < 0 ? -0.0 : 0.0;
    long long mantissa = 0;
    for (long long i = 0; i < keep; ++i)
        mantissa = mantissa * 10 + digitValues[i];
    if (digitValues[keep] >= 5)
        ++mantissa;
    // No decimal point in the text, so the runtime's locale cannot get in the way.
    std::snprintf(buf, sizeof buf, "%llde-%u", mantissa, digits);
    double const rounded = std::strtod(buf, nullptr);
    return value < 0 ? -rounded : rounded;
}

bool FormatNumber(double value, char const* lpszFormat, char* out, int size) {
    if (!out || size <= 0)
        return false;
    out[0] = '\0';
    NumberFormat nf;
    if (!ParseFormat(lpszFormat, nf) || !std::isfinite(value))
        return false;
    // The digits of the rounded value without sign, and where its decimals begin.
    char digits[64];
    size_t cchInteger = 0;
    char const* fraction = "";
    bool bNegative = false;
    unsigned long long units = 0;
    if (value == 0.0 || RoundedUnits(std::fabs(value), nf.uDecimals, units)) {
        // Integer part, then exactly uDecimals decimals, as printf's "%.*f" writes them.
        char rev[24];
        size_t n = 0;
        unsigned long long rest = units;
        for (unsigned int i = 0; i < nf.uDecimals; ++i) {
            rev[n++] = static_cast<char>('0' + rest % 10);
            rest /= 10;
        }
        do {
            rev[n++] = static_cast<char>('0' + rest % 10);
            rest /= 10;
        } while (rest);
        cchInteger = n - nf.uDecimals;
        for (size_t i = 0; i < n; ++i)
            digits[i] = rev[n - 1 - i];
        digits[n] = '\0';
        fraction = digits + cchInteger;
        bNegative = value < 0 && units != 0;
    } else {
        double const rounded = Runden(value, nf.uDecimals);
        if (std::fabs(rounded) >= 1e18)
            return false;
        // printf's digits of the rounded value are exact at this precision; its decimal point is
        // replaced.
        std::snprintf(digits, sizeof digits, "%.*f", static_cast<int>(nf.uDecimals), std::fabs(rounded));
        cchInteger = std::strspn(digits, "0123456789");
        fraction = digits[cchInteger] ? digits + cchInteger + 1 : digits + cchInteger;
        bNegative = rounded < 0 && digits[std::strspn(digits, "0.,")] != '\0';
    }
    NumberText text;
    bool const bBareZero = cchInteger == 1 && digits[0] == '0';
    if (!(bBareZero && !nf.uLeadingZero && nf.uDecimals > 0))
        PutGrouped(text, digits, cchInteger, nf);
    if (nf.uDecimals > 0) {
        text.Put(nf.decimal.sz, nf.decimal.cch);
        text.Put(fraction);
    }
    return text.CopyTo(out, size, bNegative, nf.uNegativeOrder);
}

bool NVIsValidDouble(char* text, char const* lpszFormat, double& out, char const** first, char const** last) {
    NumberFormat nf;
    if (!text || !ParseFormat(lpszFormat, nf))
        return false;
    char const* p = text;
    while (IsBlank(*p))
        ++p;
    char const* const start = p;

    // Sign in front: "(", "-", "- ", "+".
    bool bNegative = false, bParen = false, bSigned = false;
    if (*p == '(') {
        bNegative = bParen = bSigned = true;
        ++p;
    } else if (*p == '-' || *p == '+') {
        bNegative = *p == '-';
        bSigned = true;
        ++p;
        while (IsBlank(*p))
            ++p;
    }

    std::string integer, fraction;
    std::vector<size_t> groups(1, 0);
    while (true) {
        if (IsDigit(*p)) {
            integer += *p++;
            ++groups.back();
        } else if (nf.thousand.cch != 0 && groups.back() > 0 && StartsWith(p, nf.thousand) &&
                   IsDigit(p[nf.thousand.cch])) {
            p += nf.thousand.cch;
            groups.push_back(0);
        } else {
            break;
        }
    }
    if (!GroupsFit(groups, nf))
        return false;
    if (StartsWith(p, nf.decimal)) {
        p += nf.decimal.cch;
        while (IsDigit(*p))
            fraction += *p++;
    }
    if (integer.empty() && fraction.empty())
        return false;

    // Sign behind: ")", "-", " -".
    if (bParen) {
        if (*p != ')')
            return false;
        ++p;
    } else if (!bSigned) {
        char const* q = p;
        while (IsBlank(*q))
            ++q;
        if (*q == '-') {
            bNegative = true;
            p = q + 1;
        }
    }
    char const* const end = p;
    while (IsBlank(*p))
        ++p;
    if (*p)
        return false;

    std::string plain = integer.empty() ? "0" : integer;
    if (!fraction.empty())
        plain += RuntimeDecimalPoint() + fraction;
    char* parsedEnd = nullptr;
    double const value = std::strtod(plain.c_str(), &parsedEnd);
    if (!parsedEnd || *parsedEnd || !std::isfinite(value))
        return false;
    out = bNegative ? -value : value;
    if (first)
        *first = start;
    if (last)
        *last = end;
    return true;
}
