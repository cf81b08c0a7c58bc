#include "NVNumbers.h"

#include "NVLanguage.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace {

bool g_bAmountsWithoutDecimals = false;

constexpr size_t MAX_SEPARATOR = 3;

struct NumberFormat {
    unsigned int uDecimals = 2;
    unsigned int uLeadingZero = 1;
    unsigned int uGrouping = 3;
    std::string strDecimal = ".";
    std::string strThousand = ",";
    unsigned int uNegativeOrder = 1;
};

bool HasDigit(std::string const& s) {
    for (char c : s)
        if (c >= '0' && c <= '9')
            return true;
    return false;
}

bool IsValid(NumberFormat const& nf) {
    return nf.uDecimals <= 9 && nf.uLeadingZero <= 1 && nf.uGrouping <= 9999 && nf.uNegativeOrder <= 4 &&
           !nf.strDecimal.empty() && nf.strDecimal.size() <= MAX_SEPARATOR &&
           nf.strThousand.size() <= MAX_SEPARATOR && !HasDigit(nf.strDecimal) && !HasDigit(nf.strThousand) &&
           nf.strDecimal != nf.strThousand && nf.strDecimal.find('|') == std::string::npos &&
           nf.strThousand.find('|') == std::string::npos;
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

// The language's number format, with two decimals.
NumberFormat LanguageFormat(unsigned short wLangID) {
    if (!wLangID)
        wLangID = GetCurrentLangID(false);
    NumberFormat nf;
    nf.uLeadingZero = LocaleNumber(wLangID, LOCALE_ILZERO, 1) ? 1 : 0;
    nf.uNegativeOrder = LocaleNumber(wLangID, LOCALE_INEGNUMBER, 1);
    std::string const decimal = LocaleText(wLangID, LOCALE_SDECIMAL);
    std::string const thousand = LocaleText(wLangID, LOCALE_STHOUSAND);
    if (!decimal.empty())
        nf.strDecimal = decimal;
    nf.strThousand = thousand;
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

bool ParseUnsigned(std::string const& s, unsigned int& value) {
    if (s.empty() || s.size() > 4)
        return false;
    value = 0;
    for (char c : s) {
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
    std::vector<std::string> fields(1);
    for (char const* p = lpszFormat + 1; *p; ++p) {
        if (*p == '|')
            fields.emplace_back();
        else
            fields.back() += *p;
    }
    if (fields.size() > 6)
        return false;
    if ((fields.size() > 0 && !ParseUnsigned(fields[0], nf.uDecimals)) ||
        (fields.size() > 1 && !ParseUnsigned(fields[1], nf.uLeadingZero)) ||
        (fields.size() > 2 && !ParseUnsigned(fields[2], nf.uGrouping)) ||
        (fields.size() > 5 && !ParseUnsigned(fields[5], nf.uNegativeOrder)))
        return false;
    if (fields.size() > 3)
        nf.strDecimal = fields[3];
    if (fields.size() > 4)
        nf.strThousand = fields[4];
    return IsValid(nf);
}

std::string ToText(NumberFormat const& nf) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "#%u|%u|%u|%s|%s|%u", nf.uDecimals, nf.uLeadingZero, nf.uGrouping,
                  nf.strDecimal.c_str(), nf.strThousand.c_str(), nf.uNegativeOrder);
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

std::string InsertGroups(std::string const& digits, NumberFormat const& nf) {
    if (nf.uGrouping == 0 || nf.strThousand.empty())
        return digits;
    std::vector<unsigned int> const sizes = GroupSizes(nf.uGrouping);
    std::vector<std::string> groups;
    size_t end = digits.size();
    size_t index = 0;
    while (end > 0) {
        unsigned int size = index < sizes.size() ? sizes[index] : sizes.back();
        if (size == 0 || size >= end) {
            groups.push_back(digits.substr(0, end));
            break;
        }
        groups.push_back(digits.substr(end - size, size));
        end -= size;
        ++index;
    }
    std::string out;
    for (size_t i = groups.size(); i-- > 0;) {
        out += groups[i];
        if (i)
            out += nf.strThousand;
    }
    return out;
}

std::string WithSign(std::string const& number, unsigned int uOrder) {
    switch (uOrder) {
    case 0:
        return "(" + number + ")";
    case 2:
        return "- " + number;
    case 3:
        return number + "-";
    case 4:
        return number + " -";
    default:
        return "-" + number;
    }
}

// The decimal separator that the C runtime's strtod expects.
char RuntimeDecimalPoint() {
    lconv const* lc = std::localeconv();
    return lc && lc->decimal_point && lc->decimal_point[0] ? lc->decimal_point[0] : '.';
}

bool StartsWith(char const* p, std::string const& s) {
    return !s.empty() && std::strncmp(p, s.c_str(), s.size()) == 0;
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
    if (nf.strDecimal.size() >= cbDecimal || nf.strThousand.size() >= cbThousand)
        return false;
    std::memcpy(lpszDecimal, nf.strDecimal.c_str(), nf.strDecimal.size() + 1);
    std::memcpy(lpszThousand, nf.strThousand.c_str(), nf.strThousand.size() + 1);
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
    double const rounded = Runden(value, nf.uDecimals);
    if (std::fabs(rounded) >= 1e18)
        return false;
    // printf's digits of the rounded value are exact at this precision; its decimal point is replaced.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", static_cast<int>(nf.uDecimals), std::fabs(rounded));
    std::string digits = buf;
    std::string integer = digits, fraction;
    size_t const point = digits.find_first_not_of("0123456789");
    if (point != std::string::npos) {
        integer = digits.substr(0, point);
        fraction = digits.substr(point + 1);
    }
    std::string number;
    if (!(integer == "0" && !nf.uLeadingZero && nf.uDecimals > 0))
        number = InsertGroups(integer, nf);
    if (nf.uDecimals > 0)
        number += nf.strDecimal + fraction;
    bool const bNegative = rounded < 0 && digits.find_first_not_of("0.,") != std::string::npos;
    if (bNegative)
        number = WithSign(number, nf.uNegativeOrder);
    if (number.size() >= static_cast<size_t>(size))
        return false;
    std::memcpy(out, number.c_str(), number.size() + 1);
    return true;
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
        } else if (!nf.strThousand.empty() && groups.back() > 0 && StartsWith(p, nf.strThousand) &&
                   IsDigit(p[nf.strThousand.size()])) {
            p += nf.strThousand.size();
            groups.push_back(0);
        } else {
            break;
        }
    }
    if (!GroupsFit(groups, nf))
        return false;
    if (StartsWith(p, nf.strDecimal)) {
        p += nf.strDecimal.size();
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
