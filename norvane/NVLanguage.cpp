#include "NVLanguage.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace {
unsigned short g_wLangOverride = 0;
unsigned short g_wDefaultLang = 0;
int g_iCodePageOverride = 0;
bool g_bUnicodeDlg = true;

HMODULE NorvaneModule() {
    HMODULE h = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&NorvaneModule), &h);
    return h;
}

// The string of a block in exactly this language, or false.
bool LoadStringLang(HMODULE hMod, unsigned long id, unsigned short lang, std::wstring& out) {
    HRSRC hRes = FindResourceExW(hMod, reinterpret_cast<LPCWSTR>(RT_STRING),
                                 MAKEINTRESOURCEW(static_cast<WORD>((id >> 4) + 1)), lang);
    if (!hRes)
        return false;
    HGLOBAL hData = LoadResource(hMod, hRes);
    auto const* p = static_cast<WORD const*>(hData ? LockResource(hData) : nullptr);
    if (!p)
        return false;
    DWORD size = SizeofResource(hMod, hRes) / sizeof(WORD);
    DWORD pos = 0;
    for (unsigned i = 0; i < (id & 15); ++i) {
        if (pos >= size)
            return false;
        pos += 1 + p[pos];
    }
    if (pos >= size || p[pos] == 0 || pos + 1 + p[pos] > size)
        return false;
    out.assign(reinterpret_cast<wchar_t const*>(p + pos + 1), p[pos]);
    return true;
}

struct TextCache {
    std::mutex lock;
    std::map<std::pair<unsigned long, unsigned short>, std::wstring> wide;
    std::map<std::pair<std::pair<unsigned long, unsigned short>, int>, std::string> narrow;
};
TextCache& Cache() {
    static TextCache cache;
    return cache;
}

std::wstring const& WideText(unsigned long id, unsigned short lang) {
    if (!lang)
        lang = GetCurrentLangID(false);
    TextCache& c = Cache();
    auto key = std::make_pair(id, lang);
    auto it = c.wide.find(key);
    if (it != c.wide.end())
        return it->second;
    std::wstring text;
    HMODULE hMod = NorvaneModule();
    unsigned short const tries[] = {lang, MAKELANGID(PRIMARYLANGID(lang), SUBLANG_DEFAULT),
                                    MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)};
    for (unsigned short l : tries)
        if (LoadStringLang(hMod, id, l, text))
            break;
    return c.wide.emplace(key, std::move(text)).first->second;
}
} // namespace

unsigned short GetCurrentLangID(bool) {
    if (g_wLangOverride)
        return g_wLangOverride;
    return GetUserDefaultUILanguage();
}

void NVSetCurrentLangID(unsigned short wLangID) {
    g_wLangOverride = wLangID;
}

unsigned short NVGetSetDefaultLangID() {
    return g_wDefaultLang;
}

void NVSetDefaultLangID(unsigned short wLangID) {
    g_wDefaultLang = wLangID;
}

int NVGetCurCodePage() {
    return g_iCodePageOverride ? g_iCodePageOverride : static_cast<int>(GetACP());
}

void NVSetCurCodePage(int iCodePage) {
    g_iCodePageOverride = iCodePage;
}

unsigned long NVGetCodePageFromLangID(unsigned short wLangID) {
    if (!wLangID)
        return NVGetCurCodePage();
    DWORD cp = 0;
    if (GetLocaleInfoW(MAKELCID(wLangID, SORT_DEFAULT), LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                       reinterpret_cast<LPWSTR>(&cp), sizeof(cp) / sizeof(WCHAR)) &&
        cp)
        return cp;
    return NVGetCurCodePage();
}

bool NVIsUNICodeDlg() {
    return g_bUnicodeDlg;
}

void NVSetUNICodeDlg(bool bUnicode) {
    g_bUnicodeDlg = bUnicode;
}

bool NVIsWindowsVersionOrGreater(unsigned short wMajor, unsigned short wMinor, unsigned short wBuild) {
    // GetVersionEx lies to programs without a manifest; the kernel's own answer does not.
    typedef LONG(WINAPI * RtlGetVersionProc)(OSVERSIONINFOW*);
    OSVERSIONINFOW vi{};
    vi.dwOSVersionInfoSize = sizeof(vi);
    auto proc = reinterpret_cast<RtlGetVersionProc>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    if (!proc || proc(&vi) != 0)
        return false;
    if (vi.dwMajorVersion != wMajor)
        return vi.dwMajorVersion > wMajor;
    if (vi.dwMinorVersion != wMinor)
        return vi.dwMinorVersion > wMinor;
    return vi.dwBuildNumber >= wBuild;
}

wchar_t const* GSRCW(unsigned long dwID, unsigned short wLangID) {
    TextCache& c = Cache();
    std::lock_guard<std::mutex> guard(c.lock);
    return WideText(dwID, wLangID).c_str();
}

char const* GSRC(unsigned long dwID, unsigned short wLangID) {
    TextCache& c = Cache();
    std::lock_guard<std::mutex> guard(c.lock);
    if (!wLangID)
        wLangID = GetCurrentLangID(false);
    int cp = NVGetCurCodePage();
    auto key = std::make_pair(std::make_pair(dwID, wLangID), cp);
    auto it = c.narrow.find(key);
    if (it != c.narrow.end())
        return it->second.c_str();
    std::wstring const& w = WideText(dwID, wLangID);
    std::string a;
    if (!w.empty()) {
        int len =
            WideCharToMultiByte(cp, 0, w.data(), static_cast<int>(w.size()), nullptr, 0, nullptr, nullptr);
        if (len > 0) {
            a.resize(len);
            WideCharToMultiByte(cp, 0, w.data(), static_cast<int>(w.size()), &a[0], len, nullptr, nullptr);
        }
    }
    return c.narrow.emplace(key, std::move(a)).first->second.c_str();
}
