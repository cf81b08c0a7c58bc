// The library's own texts: every string of the module's string tables, copied once into memory in
// narrow and wide form, so that a lookup is a binary search with no conversion.
//
// A module normally holds one table per language and only the current language is kept; when the
// process switches its language or code page, the next lookup reloads. A module carrying the marker
// resource "AL" of type "TxtResGUI" (first byte not 0) keeps all its languages at once, and the caller
// picks one by its language id.
#pragma once

#include "frame/VTRExport.h"

#include "DynaArray.h"

#include <windows.h>

// One text of the table. The array is sorted by id, then by language.
struct RSStringTableData {
    DWORD dwID;
    WORD wLangID;       // 0 unless all languages are held
    char* lpszText;     // owned; in the code page of the text's language
    wchar_t* lpwszText; // owned
};

// One entry of a table handed to SetStrings.
struct VTRStringTableEntry {
    DWORD dwID;
    char const* lpszText; // in the code page of the language passed to SetStrings
};

class VTR_API VTRStringTable {
public:
    // Reads all string tables of hModule. True when the module's strings could be enumerated.
    static bool Init(HMODULE hModule, bool bScanFormats);

    // The text of an id, never null: "" when the id is unknown. Language 0 means the current one.
    // The result stays valid until the next reload; use it at once.
    static char const* GetText(DWORD dwID, WORD wLangID = 0);
    static wchar_t const* GetTextW(DWORD dwID, WORD wLangID = 0);

    static WORD GetCurLangID();
    static bool IsAllLanguages();

    // Reloads when the process's language or code page changed since the last load. True when
    // nothing was to do, false after a reload (texts handed out before are gone then).
    static bool EnsureLanguage();

    // Replaces the whole table with the given texts, converted with the code page of wLangID. The
    // table then counts as holding all languages, so no language switch replaces it.
    static bool SetStrings(VTRStringTableEntry const* table, int count, WORD wLangID);

    // Frees all texts and empties the table.
    static void Free();

private:
    static bool Load();
    static bool LoadLanguage(WORD wLang);
    static bool ReadBlock(LPCSTR lpszName, WORD wLang);
    static bool AddText(DWORD dwID, WORD wLangID, wchar_t const* lpwszText, int iLen, UINT uCodePage);
    static bool NeedsReload();
    static RSStringTableData const* Find(DWORD dwID, WORD wLangID);

    static BOOL CALLBACK EnumMarkerLang(HMODULE hModule, LPCSTR lpszType, LPCSTR lpszName, WORD wLang,
                                        LONG_PTR lParam);
    static BOOL CALLBACK EnumBlock(HMODULE hModule, LPCSTR lpszType, LPSTR lpszName, LONG_PTR lParam);
    static BOOL CALLBACK EnumBlockLang(HMODULE hModule, LPCSTR lpszType, LPCSTR lpszName, WORD wLang,
                                       LONG_PTR lParam);

    static HMODULE s_hModule;
    static bool s_bAllLanguages;
    static bool s_bScanFormats;
    static WORD s_wCurLangID;
    static DWORD s_dwCurCodePage;
    static WORD s_wFirstLangID;
    static DynaArrayTpl<WORD, 0, 0> s_daLanguages;
    static HANDLE s_hMutex;
    static DynaArrayTpl<RSStringTableData, -1, 0> s_daStrings;
};
