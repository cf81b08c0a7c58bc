#include "frame/VTRStringTable.h"

#include "NVFormat.h"
#include "NVLanguage.h"

#include <cstring>
#include <cwchar>
#include <string>

HMODULE VTRStringTable::s_hModule = nullptr;
bool VTRStringTable::s_bAllLanguages = false;
bool VTRStringTable::s_bScanFormats = false;
WORD VTRStringTable::s_wCurLangID = 0;
DWORD VTRStringTable::s_dwCurCodePage = 0;
WORD VTRStringTable::s_wFirstLangID = 0;
DynaArrayTpl<WORD, 0, 0> VTRStringTable::s_daLanguages;
HANDLE VTRStringTable::s_hMutex = nullptr;
DynaArrayTpl<RSStringTableData, -1, 0> VTRStringTable::s_daStrings;

namespace {

// The languages tried, in this order, when the current one has no table at all.
WORD const kFallbackLangs[] = {1024, 2048};
int const kMaxFormatList = 129;
// Marker resource that keeps all languages of a module in memory.
char const kMarkerType[] = "TxtResGUI";
char const kMarkerName[] = "AL";

char const kEmpty[] = "";
wchar_t const kEmptyW[] = L"";

int CompareRecords(void const* a, void const* b) {
    auto const* x = static_cast<RSStringTableData const*>(a);
    auto const* y = static_cast<RSStringTableData const*>(b);
    if (x->dwID != y->dwID)
        return x->dwID < y->dwID ? -1 : 1;
    if (x->wLangID != y->wLangID)
        return x->wLangID < y->wLangID ? -1 : 1;
    return 0;
}

// A text may carry the marker ")*" in front of its message part. With format scanning the numbers of
// the placeholders behind the "*" are written after the ")": "Seats (hall)*§2!d! of §1" becomes
// "Seats (hall){2,1}*§2!d! of §1", so that the arguments a text takes can be read off without
// parsing it.
void InsertFormatList(std::wstring& text) {
    size_t pos = text.find(L")*");
    if (pos == std::wstring::npos)
        return;
    DynaArrayTpl<NVFormatMessageFormat, 0, 0> formats;
    if (!NVScanFormatString(text.c_str() + pos + 1, formats))
        return;
    std::wstring list;
    for (int i = 0; i < formats.GetCount(); ++i) {
        wchar_t item[16];
        std::swprintf(item, 16, i == 0 ? L"{%x" : L",%x", formats.Get(i)->iNumber);
        if (static_cast<int>(list.size() + std::wcslen(item)) + 1 > kMaxFormatList)
            break;
        list += item;
    }
    list += L'}';
    text.insert(pos + 1, list);
}

char* NarrowCopy(wchar_t const* lpwszText, int iLen, UINT uCodePage) {
    // WC_COMPOSITECHECK is refused by the code pages that take no flags (UTF-8 among them).
    DWORD dwFlags = WC_COMPOSITECHECK;
    int iNeed = WideCharToMultiByte(uCodePage, dwFlags, lpwszText, iLen, nullptr, 0, nullptr, nullptr);
    if (iNeed <= 0 && GetLastError() == ERROR_INVALID_FLAGS) {
        dwFlags = 0;
        iNeed = WideCharToMultiByte(uCodePage, dwFlags, lpwszText, iLen, nullptr, 0, nullptr, nullptr);
    }
    if (iNeed < 0)
        iNeed = 0;
    char* lpszText = new char[iNeed + 1];
    int iDone = WideCharToMultiByte(uCodePage, dwFlags, lpwszText, iLen, lpszText, iNeed, nullptr, nullptr);
    lpszText[iDone > 0 ? iDone : 0] = 0;
    return lpszText;
}

// Mutex ownership for the length of a scope.
class MutexLock {
public:
    explicit MutexLock(HANDLE hMutex) : m_hMutex(hMutex) {
        if (m_hMutex)
            WaitForSingleObject(m_hMutex, INFINITE);
    }
    ~MutexLock() {
        if (m_hMutex)
            ReleaseMutex(m_hMutex);
    }
    MutexLock(MutexLock const&) = delete;
    MutexLock& operator=(MutexLock const&) = delete;

private:
    HANDLE m_hMutex;
};

} // namespace

bool VTRStringTable::Init(HMODULE hModule, bool bScanFormats) {
    if (!s_hMutex)
        s_hMutex = CreateMutexA(nullptr, FALSE, nullptr);
    MutexLock lock(s_hMutex);
    s_hModule = hModule;
    s_bScanFormats = bScanFormats;
    return Load();
}

bool VTRStringTable::Load() {
    Free();
    s_bAllLanguages = false;
    s_wFirstLangID = 0;
    if (!s_hModule)
        return false;

    EnumResourceLanguagesA(s_hModule, kMarkerType, kMarkerName, &EnumMarkerLang, 0);

    WORD wCurLang = GetCurrentLangID(false);
    bool bOk = LoadLanguage(s_bAllLanguages ? 0 : wCurLang);
    s_wCurLangID = wCurLang;
    for (WORD wLang : kFallbackLangs) {
        if (s_bAllLanguages || s_daStrings.GetCount() > 0)
            break;
        bOk = LoadLanguage(wLang);
    }

    s_daStrings.Sort(&CompareRecords);
    s_dwCurCodePage = static_cast<DWORD>(NVGetCurCodePage());
    return bOk;
}

bool VTRStringTable::LoadLanguage(WORD wLang) {
    return EnumResourceNamesA(s_hModule, MAKEINTRESOURCEA(6) /* RT_STRING */, &EnumBlock,
                              static_cast<LONG_PTR>(wLang)) != FALSE;
}

BOOL CALLBACK VTRStringTable::EnumMarkerLang(HMODULE hModule, LPCSTR lpszType, LPCSTR lpszName, WORD wLang,
                                             LONG_PTR) {
    HRSRC hRes = FindResourceExA(hModule, lpszType, lpszName, wLang);
    HGLOBAL hData = hRes ? LoadResource(hModule, hRes) : nullptr;
    auto const* pData = static_cast<unsigned char const*>(hData ? LockResource(hData) : nullptr);
    s_bAllLanguages = pData && SizeofResource(hModule, hRes) > 0 && pData[0] != 0;
    return FALSE;
}

// lParam of the language enumeration of one block: read the block in that language, or only note
// the language.
enum { LANGS_READ = 0, LANGS_COLLECT = 1 };

BOOL CALLBACK VTRStringTable::EnumBlock(HMODULE hModule, LPCSTR lpszType, LPSTR lpszName, LONG_PTR lParam) {
    WORD wLang = static_cast<WORD>(lParam);
    if (wLang == 0) {
        EnumResourceLanguagesA(hModule, lpszType, lpszName, &EnumBlockLang, LANGS_READ);
    } else {
        EnumResourceLanguagesA(hModule, lpszType, lpszName, &EnumBlockLang, LANGS_COLLECT);
        ReadBlock(lpszName, wLang);
    }
    return TRUE;
}

BOOL CALLBACK VTRStringTable::EnumBlockLang(HMODULE, LPCSTR, LPCSTR lpszName, WORD wLang, LONG_PTR lParam) {
    if (lParam == LANGS_COLLECT)
        s_daLanguages.AddUnique(wLang, wLang);
    else
        ReadBlock(lpszName, wLang);
    return TRUE;
}

bool VTRStringTable::ReadBlock(LPCSTR lpszName, WORD wLang) {
    // String blocks are always numbered: block N holds the ids (N - 1) * 16 to N * 16 - 1.
    if (!IS_INTRESOURCE(lpszName))
        return false;
    DWORD dwBlock = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(lpszName));
    HRSRC hRes = FindResourceExA(s_hModule, MAKEINTRESOURCEA(6) /* RT_STRING */, lpszName, wLang);
    if (!hRes)
        return false;
    HGLOBAL hData = LoadResource(s_hModule, hRes);
    auto const* pWords = static_cast<WORD const*>(hData ? LockResource(hData) : nullptr);
    if (!pWords)
        return false;
    DWORD dwWords = SizeofResource(s_hModule, hRes) / sizeof(WORD);

    if (s_wFirstLangID == 0)
        s_wFirstLangID = wLang;
    UINT uCodePage = static_cast<UINT>(NVGetCodePageFromLangID(wLang));
    DWORD dwPos = 0;
    for (DWORD i = 0; i < 16; ++i) {
        if (dwPos >= dwWords)
            return false;
        DWORD dwLen = pWords[dwPos++];
        if (dwPos + dwLen > dwWords)
            return false;
        if (dwLen > 0) {
            auto const* lpwsz = reinterpret_cast<wchar_t const*>(pWords + dwPos);
            if (!AddText((dwBlock << 4) - 16 + i, s_bAllLanguages ? wLang : 0, lpwsz, static_cast<int>(dwLen),
                         uCodePage))
                return false;
        }
        dwPos += dwLen;
    }
    return true;
}

bool VTRStringTable::AddText(DWORD dwID, WORD wLangID, wchar_t const* lpwszText, int iLen, UINT uCodePage) {
    std::wstring text(lpwszText, static_cast<size_t>(iLen));
    if (s_bScanFormats)
        InsertFormatList(text);

    RSStringTableData rec;
    rec.dwID = dwID;
    rec.wLangID = wLangID;
    rec.lpwszText = new wchar_t[text.size() + 1];
    std::wmemcpy(rec.lpwszText, text.c_str(), text.size() + 1);
    rec.lpszText = NarrowCopy(text.c_str(), static_cast<int>(text.size()), uCodePage);
    if (s_daStrings.Add(rec) < 0) {
        delete[] rec.lpszText;
        delete[] rec.lpwszText;
        return false;
    }
    return true;
}

bool VTRStringTable::NeedsReload() {
    if (s_bAllLanguages || s_daLanguages.GetCount() < 2)
        return false;
    return GetCurrentLangID(false) != s_wCurLangID ||
           static_cast<DWORD>(NVGetCurCodePage()) != s_dwCurCodePage;
}

bool VTRStringTable::EnsureLanguage() {
    if (!NeedsReload())
        return true;
    MutexLock lock(s_hMutex);
    // Another thread may have reloaded while this one waited.
    if (NeedsReload())
        Load();
    return false;
}

RSStringTableData const* VTRStringTable::Find(DWORD dwID, WORD wLangID) {
    EnsureLanguage();

    WORD wKey = wLangID;
    if (s_bAllLanguages) {
        if (wKey == 0)
            wKey = NVGetSetDefaultLangID();
        if (wKey == 0)
            wKey = s_wCurLangID;
    } else if (wKey == s_wCurLangID) {
        // Only one language is held, under key 0; asking for it by name is the same as asking for it.
        wKey = 0;
    }

    RSStringTableData key{};
    key.dwID = dwID;
    key.wLangID = wKey;
    auto const* rec = static_cast<RSStringTableData const*>(s_daStrings.BSearch(&key, &CompareRecords));
    if (!rec && s_bAllLanguages && wLangID == 0 && s_wFirstLangID != 0 && s_wFirstLangID != wKey) {
        key.wLangID = s_wFirstLangID;
        rec = static_cast<RSStringTableData const*>(s_daStrings.BSearch(&key, &CompareRecords));
    }
    return rec;
}

char const* VTRStringTable::GetText(DWORD dwID, WORD wLangID) {
    RSStringTableData const* rec = Find(dwID, wLangID);
    return rec && rec->lpszText ? rec->lpszText : kEmpty;
}

wchar_t const* VTRStringTable::GetTextW(DWORD dwID, WORD wLangID) {
    RSStringTableData const* rec = Find(dwID, wLangID);
    return rec && rec->lpwszText ? rec->lpwszText : kEmptyW;
}

WORD VTRStringTable::GetCurLangID() {
    return s_wCurLangID;
}

bool VTRStringTable::IsAllLanguages() {
    return s_bAllLanguages;
}

bool VTRStringTable::SetStrings(VTRStringTableEntry const* table, int count, WORD wLangID) {
    if (count < 0 || (count > 0 && !table))
        return false;
    Free();
    s_bAllLanguages = true;
    s_wCurLangID = wLangID;
    s_wFirstLangID = wLangID;
    UINT uCodePage = static_cast<UINT>(NVGetCodePageFromLangID(wLangID));
    bool bOk = true;
    for (int i = 0; i < count; ++i) {
        char const* lpszText = table[i].lpszText;
        if (!lpszText)
            continue;
        int iLen = static_cast<int>(std::strlen(lpszText));
        int iWide = MultiByteToWideChar(uCodePage, 0, lpszText, iLen, nullptr, 0);
        RSStringTableData rec;
        rec.dwID = table[i].dwID;
        rec.wLangID = wLangID;
        rec.lpszText = new char[iLen + 1];
        std::memcpy(rec.lpszText, lpszText, static_cast<size_t>(iLen) + 1);
        rec.lpwszText = new wchar_t[iWide + 1];
        int iDone = MultiByteToWideChar(uCodePage, 0, lpszText, iLen, rec.lpwszText, iWide);
        rec.lpwszText[iDone > 0 ? iDone : 0] = 0;
        if (s_daStrings.Add(rec) < 0) {
            delete[] rec.lpszText;
            delete[] rec.lpwszText;
            bOk = false;
        }
    }
    s_daStrings.Sort(&CompareRecords);
    s_dwCurCodePage = static_cast<DWORD>(NVGetCurCodePage());
    return bOk;
}

void VTRStringTable::Free() {
    for (int i = 0; i < s_daStrings.GetCount(); ++i) {
        RSStringTableData* rec = s_daStrings.Get(i);
        delete[] rec->lpszText;
        delete[] rec->lpwszText;
    }
    s_daStrings.Clear(true);
    // Without languages no lookup tries to reload a module that may be on its way out.
    s_daLanguages.Clear(true);
}
