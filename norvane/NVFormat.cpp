#include "NVFormat.h"

#include "DynaArray.h"
#include "NVLanguage.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace {

// What one conversion reads from the argument list.
enum class ArgKind {
    None,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Double,
    LongDouble,
    Ptr,
    NarrowText,
    WideText,
    NarrowChar,
    WideChar
};

struct Conversion {
    std::string flags;
    int iWidth = -1;       // -1: none; -2: taken from the argument list
    int iPrecision = -1;   // -1: none; -2: taken from the argument list
    std::string lengthMod; // normalised to "", "hh", "h", "ll" or "L"
    char cConv = 0;        // d i u o x X c s e E f F g G a A p
    ArgKind kind = ArgKind::None;
};

struct ArgValue {
    ArgKind kind = ArgKind::None;
    long long i = 0;
    unsigned long long u = 0;
    double d = 0;
    long double ld = 0;
    void const* p = nullptr;
};

template <class CharT> bool IsDigit(CharT c) {
    return c >= '0' && c <= '9';
}

// Parses a printf conversion behind the '%' (or inside "!...!"). bWide tells the width of the
// function, which decides what %s and %c mean. Returns the characters consumed, 0 when it is none.
template <class CharT>
size_t ParseConversion(CharT const* s, size_t n, bool bWide, bool bAllowStar, Conversion& cv) {
    size_t i = 0;
    cv = Conversion();
    while (i < n && (s[i] == '-' || s[i] == '+' || s[i] == ' ' || s[i] == '#' || s[i] == '0'))
        cv.flags += static_cast<char>(s[i++]);
    if (i < n && s[i] == '*' && bAllowStar) {
        cv.iWidth = -2;
        ++i;
    } else if (i < n && IsDigit(s[i])) {
        long w = 0;
        while (i < n && IsDigit(s[i]) && w < 100000)
            w = w * 10 + (s[i++] - '0');
        if (i < n && IsDigit(s[i]))
            return 0; // an absurd width
        cv.iWidth = static_cast<int>(w);
    }
    if (i < n && s[i] == '.') {
        ++i;
        if (i < n && s[i] == '*' && bAllowStar) {
            cv.iPrecision = -2;
            ++i;
        } else {
            long p = 0;
            while (i < n && IsDigit(s[i]) && p < 100000)
                p = p * 10 + (s[i++] - '0');
            if (i < n && IsDigit(s[i]))
                return 0;
            cv.iPrecision = static_cast<int>(p);
        }
    }
    // Length modifiers, as C99 and the Windows runtime spell them.
    bool b64 = false, bLong = false, bShort = false, bChar = false, bLongDouble = false;
    if (i + 2 < n && s[i] == 'I' && s[i + 1] == '6' && s[i + 2] == '4') {
        b64 = true;
        i += 3;
    } else if (i + 2 < n && s[i] == 'I' && s[i + 1] == '3' && s[i + 2] == '2') {
        i += 3;
    } else if (i < n && s[i] == 'I') {
        b64 = true; // pointer-sized
        ++i;
    } else if (i + 1 < n && s[i] == 'l' && s[i + 1] == 'l') {
        b64 = true;
        i += 2;
    } else if (i + 1 < n && s[i] == 'h' && s[i + 1] == 'h') {
        bChar = true;
        i += 2;
    } else if (i < n && (s[i] == 'z' || s[i] == 'j' || s[i] == 't')) {
        b64 = true;
        ++i;
    } else if (i < n && s[i] == 'l') {
        bLong = true; // long is 32 bits on Windows; on text it names the wide width
        ++i;
    } else if (i < n && s[i] == 'h') {
        bShort = true;
        ++i;
    } else if (i < n && s[i] == 'L') {
        bLongDouble = true;
        ++i;
    }
    if (i >= n)
        return 0;
    char c = static_cast<char>(s[i]);
    switch (c) {
    case 'd':
    case 'i':
        cv.kind = b64 ? ArgKind::Int64 : ArgKind::Int32;
        break;
    case 'u':
    case 'o':
    case 'x':
    case 'X':
        cv.kind = b64 ? ArgKind::UInt64 : ArgKind::UInt32;
        break;
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
        cv.kind = bLongDouble ? ArgKind::LongDouble : ArgKind::Double;
        break;
    case 'p':
        cv.kind = ArgKind::Ptr;
        break;
    case 's':
    case 'S': {
        bool bOther = (c == 'S');
        bool bWideText = bLong ? true : bShort ? false : (bWide != bOther);
        cv.kind = bWideText ? ArgKind::WideText : ArgKind::NarrowText;
        break;
    }
    case 'c':
    case 'C': {
        bool bOther = (c == 'C');
        bool bWideChar = bLong ? true : bShort ? false : (bWide != bOther);
        cv.kind = bWideChar ? ArgKind::WideChar : ArgKind::NarrowChar;
        break;
    }
    default:
        return 0;
    }
    cv.cConv = c;
    if (cv.kind == ArgKind::Int32 || cv.kind == ArgKind::UInt32)
        cv.lengthMod = bChar ? "hh" : bShort ? "h" : "";
    else if (cv.kind == ArgKind::Int64 || cv.kind == ArgKind::UInt64)
        cv.lengthMod = "ll";
    else if (cv.kind == ArgKind::LongDouble)
        cv.lengthMod = "L";
    return i + 1;
}

ArgValue ReadArg(ArgKind kind, va_list& args) {
    ArgValue v;
    v.kind = kind;
    switch (kind) {
    case ArgKind::Int32:
    case ArgKind::NarrowChar:
    case ArgKind::WideChar:
        v.i = va_arg(args, int);
        break;
    case ArgKind::UInt32:
        v.u = va_arg(args, unsigned int);
        break;
    case ArgKind::Int64:
        v.i = va_arg(args, long long);
        break;
    case ArgKind::UInt64:
        v.u = va_arg(args, unsigned long long);
        break;
    case ArgKind::Double:
        v.d = va_arg(args, double);
        break;
    case ArgKind::LongDouble:
        v.ld = va_arg(args, long double);
        break;
    case ArgKind::Ptr:
    case ArgKind::NarrowText:
    case ArgKind::WideText:
    case ArgKind::None:
        v.p = va_arg(args, void const*);
        break;
    }
    return v;
}

// The bounded output: characters beyond the room are dropped, the terminator always fits.
template <class CharT> struct Output {
    CharT* pBuf;
    size_t nSize;
    size_t nLen = 0;
    void Put(CharT c) {
        if (nLen + 1 < nSize)
            pBuf[nLen++] = c;
    }
    void Put(CharT const* s, size_t n) {
        for (size_t k = 0; k < n; ++k)
            Put(s[k]);
    }
    void Pad(size_t n) {
        for (size_t k = 0; k < n; ++k)
            Put(CharT(' '));
    }
};

std::wstring Widen(char const* s, size_t n) {
    std::wstring w;
    if (!n)
        return w;
    UINT cp = static_cast<UINT>(NVGetCurCodePage());
    int len = MultiByteToWideChar(cp, 0, s, static_cast<int>(n), nullptr, 0);
    if (len > 0) {
        w.resize(len);
        MultiByteToWideChar(cp, 0, s, static_cast<int>(n), &w[0], len);
    }
    return w;
}

std::string Narrow(wchar_t const* s, size_t n) {
    std::string a;
    if (!n)
        return a;
    UINT cp = static_cast<UINT>(NVGetCurCodePage());
    int len = WideCharToMultiByte(cp, 0, s, static_cast<int>(n), nullptr, 0, nullptr, nullptr);
    if (len > 0) {
        a.resize(len);
        WideCharToMultiByte(cp, 0, s, static_cast<int>(n), &a[0], len, nullptr, nullptr);
    }
    return a;
}

// Converts an 8-bit or wide piece to the output's width.
void Append(std::string& out, char const* s, size_t n) {
    out.append(s, n);
}
void Append(std::string& out, wchar_t const* s, size_t n) {
    out += Narrow(s, n);
}
void Append(std::wstring& out, wchar_t const* s, size_t n) {
    out.append(s, n);
}
void Append(std::wstring& out, char const* s, size_t n) {
    out += Widen(s, n);
}

template <class CharT>
void EmitConversion(Output<CharT>& out, Conversion const& cv, ArgValue const& v, int width, int precision) {
    using String = std::basic_string<CharT>;
    String text;
    bool bText = false;
    if (v.kind == ArgKind::NarrowText || v.kind == ArgKind::WideText) {
        bText = true;
        if (v.kind == ArgKind::NarrowText) {
            char const* s = v.p ? static_cast<char const*>(v.p) : "(null)";
            size_t n = precision >= 0 ? strnlen(s, precision) : std::strlen(s);
            Append(text, s, n);
        } else {
            wchar_t const* s = v.p ? static_cast<wchar_t const*>(v.p) : L"(null)";
            size_t n = precision >= 0 ? wcsnlen(s, precision) : std::wcslen(s);
            Append(text, s, n);
        }
    } else if (v.kind == ArgKind::NarrowChar) {
        bText = true;
        char c = static_cast<char>(v.i);
        Append(text, &c, 1);
    } else if (v.kind == ArgKind::WideChar) {
        bText = true;
        wchar_t c = static_cast<wchar_t>(v.i);
        Append(text, &c, 1);
    }
    if (bText) {
        size_t pad = width > 0 && static_cast<size_t>(width) > text.size() ? width - text.size() : 0;
        bool bLeft = cv.flags.find('-') != std::string::npos;
        if (!bLeft)
            out.Pad(pad);
        out.Put(text.data(), text.size());
        if (bLeft)
            out.Pad(pad);
        return;
    }
    // Numbers go through the C runtime's 8-bit formatting; their characters are plain ASCII.
    std::string spec = "%" + cv.flags;
    if (width >= 0)
        spec += std::to_string(width);
    if (precision >= 0)
        spec += "." + std::to_string(precision);
    spec += cv.lengthMod;
    spec += cv.cConv;
    std::vector<char> tmp(64);
    for (int attempt = 0; attempt < 2; ++attempt) {
        int len = 0;
        switch (v.kind) {
        case ArgKind::Int32:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), static_cast<int>(v.i));
            break;
        case ArgKind::UInt32:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), static_cast<unsigned int>(v.u));
            break;
        case ArgKind::Int64:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), v.i);
            break;
        case ArgKind::UInt64:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), v.u);
            break;
        case ArgKind::Double:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), v.d);
            break;
        case ArgKind::LongDouble:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), v.ld);
            break;
        case ArgKind::Ptr:
            len = std::snprintf(tmp.data(), tmp.size(), spec.c_str(), v.p);
            break;
        default:
            return;
        }
        if (len < 0)
            return;
        if (static_cast<size_t>(len) < tmp.size()) {
            for (int k = 0; k < len; ++k)
                out.Put(static_cast<CharT>(static_cast<unsigned char>(tmp[k])));
            return;
        }
        tmp.resize(static_cast<size_t>(len) + 1);
    }
}

// A numbered placeholder found in a message text.
struct Placeholder {
    size_t nStart;
    size_t nLength;
    int iNumber;
    Conversion cv;
};

// Length of a section sign at s[i], 0 when there is none.
size_t SectionSignAt(char const* s, size_t i, size_t n) {
    if (static_cast<unsigned char>(s[i]) == 0xA7)
        return 1;
    if (static_cast<unsigned char>(s[i]) == 0xC2 && i + 1 < n && static_cast<unsigned char>(s[i + 1]) == 0xA7)
        return 2;
    return 0;
}
size_t SectionSignAt(wchar_t const* s, size_t i, size_t) {
    return s[i] == 0x00A7 ? 1 : 0;
}

template <class CharT> std::vector<Placeholder> ScanPlaceholders(CharT const* s, size_t n, bool bWide) {
    std::vector<Placeholder> found;
    for (size_t i = 0; i < n; ++i) {
        size_t sign = SectionSignAt(s, i, n);
        if (!sign)
            continue;
        size_t j = i + sign;
        int number = 0;
        int digits = 0;
        while (j < n && IsDigit(s[j]) && digits < 2) {
            number = number * 10 + (s[j] - '0');
            ++j;
            ++digits;
        }
        if (!digits || number < 1)
            continue;
        Placeholder ph{i, j - i, number, Conversion()};
        ph.cv.kind = bWide ? ArgKind::WideText : ArgKind::NarrowText;
        ph.cv.cConv = 's';
        if (j < n && s[j] == '!') {
            size_t close = j + 1;
            while (close < n && close - j <= 16 && s[close] != '!')
                ++close;
            Conversion cv;
            if (close < n && s[close] == '!' && close > j + 1 &&
                ParseConversion(s + j + 1, close - j - 1, bWide, false, cv) == close - j - 1) {
                ph.cv = cv;
                ph.nLength = close + 1 - i;
            }
        }
        found.push_back(ph);
        i += ph.nLength - 1;
    }
    return found;
}

template <class CharT>
int FormatMessageText(Output<CharT>& out, CharT const* fmt, size_t n, std::vector<Placeholder> const& phs,
                      va_list args) {
    int maxNumber = 0;
    for (auto const& ph : phs)
        maxNumber = ph.iNumber > maxNumber ? ph.iNumber : maxNumber;
    // Arguments come in their numbers' order; the first placeholder of a number decides its type.
    std::vector<ArgValue> values(maxNumber + 1);
    for (int num = 1; num <= maxNumber; ++num) {
        ArgKind kind = ArgKind::None;
        for (auto const& ph : phs)
            if (ph.iNumber == num) {
                kind = ph.cv.kind;
                break;
            }
        values[num] = ReadArg(kind, args);
    }
    size_t pos = 0;
    for (auto const& ph : phs) {
        out.Put(fmt + pos, ph.nStart - pos);
        EmitConversion(out, ph.cv, values[ph.iNumber], ph.cv.iWidth, ph.cv.iPrecision);
        pos = ph.nStart + ph.nLength;
    }
    out.Put(fmt + pos, n - pos);
    return static_cast<int>(out.nLen);
}

template <class CharT>
int FormatPrintf(Output<CharT>& out, CharT const* fmt, size_t n, bool bWide, va_list args) {
    for (size_t i = 0; i < n; ++i) {
        if (fmt[i] != '%') {
            out.Put(fmt[i]);
            continue;
        }
        if (i + 1 < n && fmt[i + 1] == '%') {
            out.Put(CharT('%'));
            ++i;
            continue;
        }
        Conversion cv;
        size_t used = ParseConversion(fmt + i + 1, n - i - 1, bWide, true, cv);
        if (!used) {
            out.Put(fmt[i]); // not a conversion (or %n): written as it stands
            continue;
        }
        int width = cv.iWidth, precision = cv.iPrecision;
        if (width == -2) {
            width = va_arg(args, int);
            if (width < 0) {
                cv.flags += '-';
                width = -width;
            }
        }
        if (precision == -2) {
            precision = va_arg(args, int);
            if (precision < 0)
                precision = -1;
        }
        ArgValue v = ReadArg(cv.kind, args);
        EmitConversion(out, cv, v, width, precision);
        i += used;
    }
    return static_cast<int>(out.nLen);
}

template <class CharT>
int FormatAny(CharT* buf, unsigned int size, CharT const* fmt, va_list args, bool bWide) {
    if (!buf || !size)
        return -1;
    Output<CharT> out{buf, size};
    int len = 0;
    if (fmt) {
        size_t n = std::char_traits<CharT>::length(fmt);
        std::vector<Placeholder> phs = ScanPlaceholders(fmt, n, bWide);
        len =
            phs.empty() ? FormatPrintf(out, fmt, n, bWide, args) : FormatMessageText(out, fmt, n, phs, args);
    }
    buf[out.nLen] = 0;
    return len;
}

} // namespace

int VSNPrintf(char* buf, unsigned int size, char const* format, va_list args, int) {
    return FormatAny(buf, size, format, args, false);
}

int VSNPrintf(wchar_t* buf, unsigned int size, wchar_t const* format, va_list args, int) {
    return FormatAny(buf, size, format, args, true);
}

int SNPrintf(char* buf, unsigned int size, char const* format, ...) {
    va_list args;
    va_start(args, format);
    int len = VSNPrintf(buf, size, format, args, 0);
    va_end(args);
    return len;
}

int SNPrintf(wchar_t* buf, unsigned int size, wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    int len = VSNPrintf(buf, size, format, args, 0);
    va_end(args);
    return len;
}

bool NVScanFormatString(wchar_t const* text, DynaArrayTpl<NVFormatMessageFormat, 0, 0>& out) {
    out.Clear(false);
    if (!text)
        return false;
    size_t n = std::wcslen(text);
    for (auto const& ph : ScanPlaceholders(text, n, true)) {
        NVFormatMessageFormat f{};
        f.iNumber = ph.iNumber;
        f.iStart = static_cast<int>(ph.nStart);
        f.iLength = static_cast<int>(ph.nLength);
        size_t sign = 1;
        while (ph.nStart + sign < n && IsDigit(text[ph.nStart + sign]))
            ++sign;
        size_t fmtLen = ph.nLength > sign + 2 ? ph.nLength - sign - 2 : 0;
        if (fmtLen && fmtLen < 16) {
            std::wmemcpy(f.szFormat, text + ph.nStart + sign + 1, fmtLen);
            f.szFormat[fmtLen] = 0;
        } else {
            f.szFormat[0] = L's';
            f.szFormat[1] = 0;
        }
        out.Add(f);
    }
    return out.GetCount() > 0;
}
