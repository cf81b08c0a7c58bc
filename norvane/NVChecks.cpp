#include "NVChecks.h"

#include <cstring>
#include <string>

namespace {

bool IsAsciiAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsValidLocalPart(std::string const& local) {
    if (local.empty() || local.size() > 64 || local.front() == '.' || local.back() == '.')
        return false;
    for (size_t i = 0; i < local.size(); ++i) {
        char const c = local[i];
        if (c == '.' && local[i + 1] == '.')
            return false;
        if (!IsAsciiAlpha(c) && !IsAsciiDigit(c) && !std::strchr("!#$%&'*+/=?^_`{|}~.-", c))
            return false;
    }
    return true;
}

bool IsValidDomain(std::string const& domain) {
    if (domain.empty() || domain.size() > 253)
        return false;
    size_t labels = 0, start = 0;
    while (true) {
        size_t const dot = domain.find('.', start);
        std::string const label =
            domain.substr(start, dot == std::string::npos ? std::string::npos : dot - start);
        if (label.empty() || label.size() > 63 || label.front() == '-' || label.back() == '-')
            return false;
        for (char c : label)
            if (!IsAsciiAlpha(c) && !IsAsciiDigit(c) && c != '-')
                return false;
        ++labels;
        if (dot == std::string::npos) {
            if (label.size() < 2)
                return false;
            for (char c : label)
                if (!IsAsciiAlpha(c))
                    return false;
            break;
        }
        start = dot + 1;
    }
    return labels >= 2;
}

struct CardRule {
    int iType;
    char const* lpszLow; // prefix range, as many digits as the prefix has
    char const* lpszHigh;
    int iMinLength;
    int iMaxLength;
    bool bOnly13_16_19; // Visa's lengths are not a range
};

CardRule const g_rules[] = {
    {NVCC_VISA, "4", "4", 13, 19, true},
    {NVCC_MASTERCARD, "51", "55", 16, 16, false},
    {NVCC_MASTERCARD, "2221", "2720", 16, 16, false},
    {NVCC_AMEX, "34", "34", 15, 15, false},
    {NVCC_AMEX, "37", "37", 15, 15, false},
    {NVCC_DINERS, "300", "305", 14, 19, false},
    {NVCC_DINERS, "36", "36", 14, 19, false},
    {NVCC_DINERS, "38", "39", 14, 19, false},
    {NVCC_DISCOVER, "6011", "6011", 16, 19, false},
    {NVCC_DISCOVER, "622126", "622925", 16, 19, false},
    {NVCC_DISCOVER, "644", "649", 16, 19, false},
    {NVCC_DISCOVER, "65", "65", 16, 19, false},
    {NVCC_JCB, "3528", "3589", 16, 19, false},
    {NVCC_MAESTRO, "50", "50", 12, 19, false},
    {NVCC_MAESTRO, "56", "69", 12, 19, false},
};

bool PrefixFits(CardRule const& rule, std::string const& digits) {
    size_t const n = std::strlen(rule.lpszLow);
    if (digits.size() < n)
        return false;
    std::string const prefix = digits.substr(0, n);
    return prefix >= rule.lpszLow && prefix <= rule.lpszHigh;
}

bool LengthFits(CardRule const& rule, size_t length) {
    int const n = static_cast<int>(length);
    if (rule.bOnly13_16_19)
        return n == 13 || n == 16 || n == 19;
    return n >= rule.iMinLength && n <= rule.iMaxLength;
}

bool LuhnFits(std::string const& digits) {
    int sum = 0;
    bool bDouble = false;
    for (size_t i = digits.size(); i-- > 0;) {
        int d = digits[i] - '0';
        if (bDouble) {
            d *= 2;
            if (d > 9)
                d -= 9;
        }
        sum += d;
        bDouble = !bDouble;
    }
    return sum % 10 == 0;
}

} // namespace

bool NVIsValidEmailAddress(char const* lpszAddress) {
    if (!lpszAddress)
        return false;
    std::string const address = lpszAddress;
    size_t const at = address.find('@');
    if (address.size() > 254 || at == std::string::npos || address.find('@', at + 1) != std::string::npos)
        return false;
    return IsValidLocalPart(address.substr(0, at)) && IsValidDomain(address.substr(at + 1));
}

int CreditCardValidate(int iType, char* lpszNumber) {
    if (iType < NVCC_ANY || iType > NVCC_MAESTRO)
        return NVCC_ERR_TYPE;
    if (!lpszNumber)
        return NVCC_ERR_EMPTY;
    std::string digits;
    for (char const* p = lpszNumber; *p; ++p) {
        if (IsAsciiDigit(*p))
            digits += *p;
        else if (*p != ' ' && *p != '-')
            return NVCC_ERR_CHARACTER;
    }
    if (digits.empty())
        return NVCC_ERR_EMPTY;
    bool bPrefix = false, bLength = false;
    for (CardRule const& rule : g_rules) {
        if ((iType != NVCC_ANY && rule.iType != iType) || !PrefixFits(rule, digits))
            continue;
        bPrefix = true;
        if (LengthFits(rule, digits.size()))
            bLength = true;
    }
    if (!bPrefix)
        return NVCC_ERR_PREFIX;
    if (!bLength)
        return NVCC_ERR_LENGTH;
    return LuhnFits(digits) ? NVCC_OK : NVCC_ERR_CHECKSUM;
}
