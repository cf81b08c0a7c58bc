#include "NVStrings.h"

#include "MemStack.h"
#include "NVLanguage.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <type_traits>

namespace {
template <class CharT> bool IsBlank(CharT c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

template <class CharT> unsigned int CopyBounded(CharT* dest, CharT const* src, unsigned int size) {
    if (!dest || !size)
        return 0;
    unsigned int n = 0;
    if (src)
        while (n + 1 < size && src[n]) {
            dest[n] = src[n];
            ++n;
        }
    dest[n] = 0;
    return n;
}

template <class CharT> CharT* Trim(CharT* text) {
    if (!text)
        return text;
    size_t len = std::char_traits<CharT>::length(text);
    size_t start = 0;
    while (start < len && IsBlank(text[start]))
        ++start;
    size_t end = len;
    while (end > start && IsBlank(text[end - 1]))
        --end;
    if (start)
        std::memmove(text, text + start, (end - start) * sizeof(CharT));
    text[end - start] = 0;
    return text;
}

template <class CharT> CharT* Remove(CharT* text, CharT c) {
    if (!text)
        return text;
    CharT* out = text;
    for (CharT* in = text; *in; ++in)
        if (*in != c)
            *out++ = *in;
    *out = 0;
    return text;
}

template <class CharT> int Replace(CharT* text, CharT const* from, CharT const* to) {
    if (!text || !from || !*from)
        return 0;
    if (!to)
        to = std::basic_string<CharT>().c_str();
    std::basic_string<CharT> s(text);
    std::basic_string<CharT> f(from), t(to);
    int count = 0;
    for (size_t pos = s.find(f); pos != std::basic_string<CharT>::npos; pos = s.find(f, pos + t.size())) {
        s.replace(pos, f.size(), t);
        ++count;
    }
    if (count)
        std::memcpy(text, s.c_str(), (s.size() + 1) * sizeof(CharT));
    return count;
}

wchar_t ToUpperW(wchar_t c) {
    return static_cast<wchar_t>(
        reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(c)))));
}
wchar_t ToLowerW(wchar_t c) {
    return static_cast<wchar_t>(
        reinterpret_cast<ULONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(c)))));
}

// Case mapping of one 8-bit character through its UTF-16 form in the current code page.
char MapChar(char c, bool bUpper) {
    if (static_cast<unsigned char>(c) < 0x80) {
        if (bUpper && c >= 'a' && c <= 'z')
            return static_cast<char>(c - 'a' + 'A');
        if (!bUpper && c >= 'A' && c <= 'Z')
            return static_cast<char>(c - 'A' + 'a');
        return c;
    }
    UINT cp = static_cast<UINT>(NVGetCurCodePage());
    wchar_t w;
    if (MultiByteToWideChar(cp, MB_ERR_INVALID_CHARS, &c, 1, &w, 1) != 1)
        return c;
    w = bUpper ? ToUpperW(w) : ToLowerW(w);
    char out;
    BOOL lossy = FALSE;
    if (WideCharToMultiByte(cp, 0, &w, 1, &out, 1, nullptr, &lossy) != 1 || lossy)
        return c;
    return out;
}

template <class CharT> CharT Upper(CharT c);
template <> char Upper(char c) {
    return MapChar(c, true);
}
template <> wchar_t Upper(wchar_t c) {
    return ToUpperW(c);
}

template <class CharT> int CompareNoCase(CharT const* a, CharT const* b, unsigned int n) {
    if (!a || !b)
        return a == b ? 0 : (a ? 1 : -1);
    for (unsigned int i = 0; i < n; ++i) {
        CharT ca = Upper(a[i]), cb = Upper(b[i]);
        if (ca != cb) {
            using U = typename std::make_unsigned<CharT>::type;
            return static_cast<U>(ca) < static_cast<U>(cb) ? -1 : 1;
        }
        if (!ca)
            return 0;
    }
    return 0;
}

template <class CharT> CharT const* FindNoCase(CharT const* text, CharT const* find) {
    if (!text || !find)
        return nullptr;
    size_t n = std::char_traits<CharT>::length(find);
    if (!n)
        return text;
    for (CharT const* p = text; *p; ++p)
        if (CompareNoCase(p, find, static_cast<unsigned>(n)) == 0)
            return p;
    return nullptr;
}

template <class CharT> void PrepareSearch(CharT* text, int size, bool bUpper, bool bTrim) {
    if (!text || size <= 0)
        return;
    text[size - 1] = 0;
    if (bUpper)
        for (CharT* p = text; *p; ++p)
            *p = Upper(*p);
    if (bTrim) {
        Trim(text);
        CharT* out = text;
        bool bPrevBlank = false;
        for (CharT* in = text; *in; ++in) {
            bool bBlank = IsBlank(*in);
            if (bBlank && bPrevBlank)
                continue;
            *out++ = bBlank ? CharT(' ') : *in;
            bPrevBlank = bBlank;
        }
        *out = 0;
    }
}
} // namespace

unsigned int StrNZCpy(char* dest, char const* src, unsigned int size) {
    return CopyBounded(dest, src, size);
}
unsigned int StrNZCpy(wchar_t* dest, wchar_t const* src, unsigned int size) {
    return CopyBounded(dest, src, size);
}

char* StrTrim(char* text) {
    return Trim(text);
}
wchar_t* StrTrim(wchar_t* text) {
    return Trim(text);
}

bool TestLeer(char const* text) {
    return !text || !*text;
}
bool TestLeer(wchar_t const* text) {
    return !text || !*text;
}

char* DelChar(char* text, char c) {
    return Remove(text, c);
}
wchar_t* DelChar(wchar_t* text, wchar_t c) {
    return Remove(text, c);
}

int SwapChars(char* text, char const* from, char const* to) {
    return Replace(text, from, to);
}
int SwapChars(wchar_t* text, wchar_t const* from, wchar_t const* to) {
    return Replace(text, from, to);
}

char ToUpper(char c) {
    return MapChar(c, true);
}
char ToLower(char c) {
    return MapChar(c, false);
}

int StrNICmp(char const* a, char const* b, unsigned int n) {
    return CompareNoCase(a, b, n);
}
int StrNICmp(wchar_t const* a, wchar_t const* b, unsigned int n) {
    return CompareNoCase(a, b, n);
}

char const* StrIStr(char const* text, char const* find) {
    return FindNoCase(text, find);
}
wchar_t const* StrIStr(wchar_t const* text, wchar_t const* find) {
    return FindNoCase(text, find);
}

void NVPrepareSearchString(char* text, int size, bool bUpper, bool bTrim) {
    PrepareSearch(text, size, bUpper, bTrim);
}
void NVPrepareSearchString(wchar_t* text, int size, bool bUpper, bool bTrim) {
    PrepareSearch(text, size, bUpper, bTrim);
}

bool NVPrepareHTMLstring(wchar_t const* text, MemStack& out, bool bLineBreaks) {
    if (!text)
        return true;
    std::wstring s;
    for (wchar_t const* p = text; *p; ++p) {
        switch (*p) {
        case L'&':
            s += L"&amp;";
            break;
        case L'<':
            s += L"&lt;";
            break;
        case L'>':
            s += L"&gt;";
            break;
        case L'"':
            s += L"&quot;";
            break;
        case L'\'':
            s += L"&#39;";
            break;
        case L'\r':
            if (bLineBreaks) {
                if (p[1] == L'\n')
                    ++p;
                s += L"<br>";
            } else
                s += *p;
            break;
        case L'\n':
            s += bLineBreaks ? L"<br>" : L"\n";
            break;
        default:
            s += *p;
        }
    }
    return out.AddData(s.data(), static_cast<int>(s.size() * sizeof(wchar_t)));
}

char* AppendFile(char* path, char const* name) {
    if (!path)
        return path;
    if (!name || !*name)
        return path;
    size_t len = std::strlen(path);
    while (*name == '\\' || *name == '/')
        ++name;
    if (len && path[len - 1] != '\\' && path[len - 1] != '/')
        path[len++] = '\\';
    std::strcpy(path + len, name);
    return path;
}

wchar_t* NVMakeUNICODEWindowText(char const* text, int length, int codePage) {
    if (!text)
        text = "";
    UINT cp = static_cast<UINT>(codePage ? codePage : NVGetCurCodePage());
    int n = length < 0 ? static_cast<int>(std::strlen(text)) : length;
    int wlen = n ? MultiByteToWideChar(cp, 0, text, n, nullptr, 0) : 0;
    auto* w = static_cast<wchar_t*>(std::malloc((static_cast<size_t>(wlen) + 1) * sizeof(wchar_t)));
    if (!w)
        return nullptr;
    if (wlen)
        MultiByteToWideChar(cp, 0, text, n, w, wlen);
    w[wlen] = 0;
    return w;
}

void NVFreeUNICODEWindowText(wchar_t* text) {
    std::free(text);
}
