#include "frame/VTRStringTable.h"
#include "frame/VTRStringIds.h"
#include "frame/VantrelBase.h"

#include "harness/TestHost.h"

#include "DynaArray.h"
#include "NVFormat.h"
#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

WORD const kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
WORD const kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
WORD const kPolish = MAKELANGID(LANG_POLISH, SUBLANG_DEFAULT);
WORD const kFrench = MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH);

std::string W(wchar_t const* text) {
    return vtrtest::Utf8(text);
}

// Every test leaves the process language free and the library's own table loaded again.
class StringTable : public testing::Test {
protected:
    void TearDown() override {
        NVSetCurrentLangID(0);
        NVSetCurCodePage(0);
        NVSetDefaultLangID(0);
        VTRStringTable::Init(VTRGetInstance(), false);
    }
    static HMODULE TestModule() { return GetModuleHandleW(nullptr); }
};

TEST_F(StringTable, LibraryTextsFollowTheLanguageSwitchInAllThreeLanguages) {
    NVSetCurrentLangID(kEnglish);
    ASSERT_TRUE(VTRStringTable::Init(VTRGetInstance(), false));
    EXPECT_FALSE(VTRStringTable::IsAllLanguages());
    EXPECT_EQ(kEnglish, VTRStringTable::GetCurLangID());
    EXPECT_STREQ("Error", VTRStringTable::GetText(IDS_VTR_ERROR_TITLE));
    EXPECT_STREQ("<Different>", VTRStringTable::GetText(IDS_VTR_DIFFERENT));

    // The next lookup after a switch reloads: no Init in between.
    NVSetCurrentLangID(kGerman);
    EXPECT_STREQ("Fehler", VTRStringTable::GetText(IDS_VTR_ERROR_TITLE));
    EXPECT_EQ(kGerman, VTRStringTable::GetCurLangID());
    EXPECT_EQ(L"Anzeigen", std::wstring(VTRStringTable::GetTextW(IDS_VTR_DISPLAY)));

    NVSetCurrentLangID(kPolish);
    EXPECT_EQ(L"B\u0142\u0105d", std::wstring(VTRStringTable::GetTextW(IDS_VTR_ERROR_TITLE)));
    // The narrow form is in the Polish code page, 1250.
    EXPECT_STREQ("B\xB3\xB9"
                 "d",
                 VTRStringTable::GetText(IDS_VTR_ERROR_TITLE));
    EXPECT_EQ(kPolish, VTRStringTable::GetCurLangID());

    // Asking for the loaded language by name finds it; another language is not held.
    EXPECT_STREQ("B\xB3\xB9"
                 "d",
                 VTRStringTable::GetText(IDS_VTR_ERROR_TITLE, kPolish));
    EXPECT_STREQ("", VTRStringTable::GetText(IDS_VTR_ERROR_TITLE, kGerman));

    NVSetCurrentLangID(kEnglish);
    EXPECT_STREQ("yes", VTRStringTable::GetText(IDS_VTR_YES));
}

TEST_F(StringTable, EnsureLanguageReloadsOnlyAfterAChange) {
    NVSetCurrentLangID(kGerman);
    ASSERT_TRUE(VTRStringTable::Init(VTRGetInstance(), false));
    EXPECT_TRUE(VTRStringTable::EnsureLanguage());

    NVSetCurrentLangID(kEnglish);
    EXPECT_FALSE(VTRStringTable::EnsureLanguage()) << "a language switch reloads";
    EXPECT_EQ(kEnglish, VTRStringTable::GetCurLangID());
    EXPECT_TRUE(VTRStringTable::EnsureLanguage());

    NVSetCurCodePage(850);
    EXPECT_FALSE(VTRStringTable::EnsureLanguage()) << "a code page switch reloads";
    EXPECT_TRUE(VTRStringTable::EnsureLanguage());
    EXPECT_STREQ("Error", VTRStringTable::GetText(IDS_VTR_ERROR_TITLE));
}

TEST_F(StringTable, UnknownIdsGiveAnEmptyTextNeverNull) {
    for (DWORD dwID : {0ul, 20ul, 28ul, 95ul, 510ul, 516ul, 65535ul, 0xFFFFFFFFul}) {
        char const* lpsz = VTRStringTable::GetText(dwID);
        wchar_t const* lpwsz = VTRStringTable::GetTextW(dwID, kGerman);
        ASSERT_NE(nullptr, lpsz) << dwID;
        ASSERT_NE(nullptr, lpwsz) << dwID;
        EXPECT_STREQ("", lpsz) << dwID;
        EXPECT_EQ(L'\0', lpwsz[0]) << dwID;
    }
}

TEST_F(StringTable, LanguageWithoutTableFallsBackToTheUserDefault) {
    NVSetCurrentLangID(kFrench);
    ASSERT_TRUE(VTRStringTable::Init(VTRGetInstance(), false));
    // The module has no French; language 1024 stands for the user's default language.
    std::string text = VTRStringTable::GetText(IDS_VTR_ERROR_TITLE);
    switch (PRIMARYLANGID(GetUserDefaultUILanguage())) {
    case LANG_GERMAN:
        EXPECT_EQ("Fehler", text);
        break;
    case LANG_POLISH:
        EXPECT_EQ("B\xB3\xB9"
                  "d",
                  text);
        break;
    default:
        EXPECT_EQ("Error", text);
    }
    EXPECT_EQ(kFrench, VTRStringTable::GetCurLangID())
        << "the asked language is remembered, not the fallback";
    EXPECT_TRUE(VTRStringTable::EnsureLanguage()) << "no reload loop on a fallback";
}

TEST_F(StringTable, MarkerKeepsAllLanguagesAndBlocksMapToTheirIds) {
    NVSetCurrentLangID(kEnglish);
    ASSERT_TRUE(VTRStringTable::Init(TestModule(), false));
    ASSERT_TRUE(VTRStringTable::IsAllLanguages());

    // Block 1 holds 0..15, block 2 holds 16..31, block 3 begins with 32.
    EXPECT_STREQ("fifteen", VTRStringTable::GetText(15));
    EXPECT_STREQ("sixteen", VTRStringTable::GetText(16));
    EXPECT_STREQ("thirty-one", VTRStringTable::GetText(31));
    EXPECT_STREQ("thirty-two", VTRStringTable::GetText(32));
    EXPECT_STREQ("", VTRStringTable::GetText(17));

    EXPECT_EQ("sechzehn", W(VTRStringTable::GetTextW(16, kGerman)));
    EXPECT_EQ("einunddreißig", W(VTRStringTable::GetTextW(31, kGerman)));
    EXPECT_STREQ("f\xFCnfzehn", VTRStringTable::GetText(15, kGerman))
        << "German narrow text is code page 1252";
    EXPECT_EQ("trzydzieści dwa", W(VTRStringTable::GetTextW(32, kPolish)));

    // A client's default language wins over the current one.
    NVSetDefaultLangID(kPolish);
    EXPECT_EQ("szesnaście", W(VTRStringTable::GetTextW(16)));
    NVSetDefaultLangID(0);

    // Held languages are not reloaded on a switch.
    NVSetCurrentLangID(kGerman);
    EXPECT_TRUE(VTRStringTable::EnsureLanguage());
    EXPECT_STREQ("sixteen", VTRStringTable::GetText(16));

    // A miss without a language retries the first language of the module (German sorts first);
    // a miss in a named language does not.
    EXPECT_STREQ("nur deutsch", VTRStringTable::GetText(40));
    EXPECT_STREQ("", VTRStringTable::GetText(40, kEnglish));
    EXPECT_STREQ("", VTRStringTable::GetText(15, kFrench));
}

TEST_F(StringTable, FormatScanningListsThePlaceholdersOnlyWhenAsked) {
    NVSetCurrentLangID(kEnglish);
    ASSERT_TRUE(VTRStringTable::Init(TestModule(), false));
    EXPECT_EQ("Seats (hall)*§2!d! of §1", W(VTRStringTable::GetTextW(41)));

    ASSERT_TRUE(VTRStringTable::Init(TestModule(), true));
    EXPECT_EQ("Seats (hall){2,1}*§2!d! of §1", W(VTRStringTable::GetTextW(41)));
    EXPECT_EQ("Plätze (Saal){2,1}*§2!d! von §1", W(VTRStringTable::GetTextW(41, kGerman)));
    EXPECT_EQ("sixteen", W(VTRStringTable::GetTextW(16))) << "texts without the marker stay as they are";
}

TEST_F(StringTable, SetStringsReplacesTheTableAndHoldsItAcrossSwitches) {
    NVSetCurrentLangID(kEnglish);
    VTRStringTableEntry const table[] = {{500, "Kasse"}, {7, "Platz"}, {501, nullptr}, {300, "Ma\xDF"}};
    ASSERT_TRUE(VTRStringTable::SetStrings(table, 4, kGerman));
    EXPECT_TRUE(VTRStringTable::IsAllLanguages());
    EXPECT_STREQ("Kasse", VTRStringTable::GetText(500));
    EXPECT_STREQ("Platz", VTRStringTable::GetText(7, kGerman));
    EXPECT_EQ(L"Ma\u00DF", std::wstring(VTRStringTable::GetTextW(300))) << "converted with code page 1252";
    EXPECT_STREQ("", VTRStringTable::GetText(501));
    EXPECT_STREQ("", VTRStringTable::GetText(500, kEnglish)) << "only the given language is held";
    EXPECT_STREQ("", VTRStringTable::GetText(IDS_VTR_ERROR_TITLE)) << "the module's texts are gone";

    NVSetCurrentLangID(kPolish);
    EXPECT_TRUE(VTRStringTable::EnsureLanguage());
    EXPECT_STREQ("Kasse", VTRStringTable::GetText(500));

    VTRStringTableEntry const polish[] = {{7, "Miejsce \xB3"}};
    ASSERT_TRUE(VTRStringTable::SetStrings(polish, 1, kPolish));
    EXPECT_EQ(L"Miejsce \u0142", std::wstring(VTRStringTable::GetTextW(7)))
        << "converted with code page 1250";
    EXPECT_STREQ("", VTRStringTable::GetText(500));

    EXPECT_FALSE(VTRStringTable::SetStrings(nullptr, 3, kGerman));
    EXPECT_FALSE(VTRStringTable::SetStrings(polish, -1, kGerman));
    EXPECT_STREQ("Miejsce \xB3", VTRStringTable::GetText(7)) << "a refused call keeps the table";

    VTRStringTable::Free();
    EXPECT_STREQ("", VTRStringTable::GetText(7));
}

// The placeholders of a text as number and type, e.g. {"1:d", "2:s"}.
std::set<std::wstring> Placeholders(wchar_t const* text) {
    std::set<std::wstring> result;
    DynaArrayTpl<NVFormatMessageFormat, 0, 0> found;
    NVScanFormatString(text, found);
    for (int i = 0; i < found.GetCount(); ++i)
        result.insert(std::to_wstring(found.Get(i)->iNumber) + L":" + found.Get(i)->szFormat);
    return result;
}

TEST_F(StringTable, EveryLibraryTextExistsInAllThreeLanguagesWithTheSamePlaceholders) {
    // One pass per language: every switch costs a reload.
    std::vector<std::wstring> texts[3];
    WORD const langs[3] = {kEnglish, kGerman, kPolish};
    for (int l = 0; l < 3; ++l) {
        NVSetCurrentLangID(langs[l]);
        for (DWORD dwID = 0; dwID < 1024; ++dwID)
            texts[l].push_back(VTRStringTable::GetTextW(dwID));
    }
    int iTexts = 0;
    for (DWORD dwID = 0; dwID < 1024; ++dwID) {
        std::wstring const& english = texts[0][dwID];
        std::wstring const& german = texts[1][dwID];
        std::wstring const& polish = texts[2][dwID];
        EXPECT_EQ(english.empty(), german.empty()) << "id " << dwID << ": " << W(english.c_str());
        EXPECT_EQ(english.empty(), polish.empty()) << "id " << dwID << ": " << W(english.c_str());
        if (english.empty())
            continue;
        ++iTexts;
        EXPECT_EQ(Placeholders(english.c_str()), Placeholders(german.c_str()))
            << "id " << dwID << ": " << W(german.c_str());
        EXPECT_EQ(Placeholders(english.c_str()), Placeholders(polish.c_str()))
            << "id " << dwID << ": " << W(polish.c_str());
    }
    EXPECT_GE(iTexts, 90);

    NVSetCurrentLangID(kEnglish);
    EXPECT_EQ(
        "The Hot key combination '§1' is already being used for  '§2' .\nDo you still want to execute the "
        "assignment and undo the original assignment. ",
        W(VTRStringTable::GetTextW(IDS_VTR_HOTKEY_IN_USE)))
        << "texts keep their spaces and line breaks";
    EXPECT_EQ("1)\tA maximum of §1!u! data sets can be imported at once.\nPlease reduce the import data.",
              W(VTRStringTable::GetTextW(IDS_VTR_IMPORT_MAX_LINES)));
}

} // namespace

namespace {

// A copy of this test program whose resources are only a marker and the string blocks of the
// chosen languages (copied from this program), loaded as a data file: a module whose languages and
// marker the test decides.
class ResourceModule {
public:
    ResourceModule(char bMarker, std::vector<WORD> const& keepLangs) {
        wchar_t szExe[MAX_PATH];
        GetModuleFileNameW(nullptr, szExe, MAX_PATH);
        std::string path = m_temp.File("strings.dll");
        std::wstring wpath(path.begin(), path.end());
        if (!CopyFileW(szExe, wpath.c_str(), FALSE))
            return;
        HANDLE hUpdate = BeginUpdateResourceW(wpath.c_str(), TRUE);
        if (!hUpdate)
            return;
        UpdateResourceA(hUpdate, "TXTRESGUI", "AL", kEnglish, &bMarker, 1);
        HMODULE hSelf = GetModuleHandleW(nullptr);
        for (WORD wLang : keepLangs) {
            for (WORD wBlock : {1, 2, 3}) {
                HRSRC hRes = FindResourceExW(hSelf, MAKEINTRESOURCEW(6), MAKEINTRESOURCEW(wBlock), wLang);
                if (!hRes)
                    continue;
                void* pData = LockResource(LoadResource(hSelf, hRes));
                UpdateResourceW(hUpdate, MAKEINTRESOURCEW(6), MAKEINTRESOURCEW(wBlock), wLang, pData,
                                SizeofResource(hSelf, hRes));
            }
        }
        if (!EndUpdateResourceW(hUpdate, FALSE))
            return;
        m_hModule = LoadLibraryExW(wpath.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    }
    ~ResourceModule() {
        if (m_hModule)
            FreeLibrary(m_hModule);
    }
    HMODULE get() const { return m_hModule; }

private:
    vtrtest::TempDir m_temp;
    HMODULE m_hModule = nullptr;
};

TEST_F(StringTable, MarkerWithZeroByteKeepsOnlyTheCurrentLanguage) {
    ResourceModule module(0, {kGerman, kEnglish, kPolish});
    ASSERT_NE(nullptr, module.get());
    NVSetCurrentLangID(kEnglish);
    ASSERT_TRUE(VTRStringTable::Init(module.get(), false));
    EXPECT_FALSE(VTRStringTable::IsAllLanguages());
    EXPECT_STREQ("sixteen", VTRStringTable::GetText(16));
    EXPECT_STREQ("", VTRStringTable::GetText(16, kGerman));
    EXPECT_STREQ("", VTRStringTable::GetText(40)) << "no retry in another language";

    NVSetCurrentLangID(kGerman);
    EXPECT_STREQ("sechzehn", VTRStringTable::GetText(16));
    EXPECT_STREQ("nur deutsch", VTRStringTable::GetText(40));
}

TEST_F(StringTable, ModuleWithOneLanguageIsNotReloadedOnASwitch) {
    ResourceModule module(0, {kGerman});
    ASSERT_NE(nullptr, module.get());
    NVSetCurrentLangID(kGerman);
    ASSERT_TRUE(VTRStringTable::Init(module.get(), false));
    EXPECT_FALSE(VTRStringTable::IsAllLanguages());
    EXPECT_STREQ("f\xFCnfzehn", VTRStringTable::GetText(15));

    NVSetCurrentLangID(kPolish);
    EXPECT_TRUE(VTRStringTable::EnsureLanguage()) << "nothing else to switch to";
    EXPECT_EQ(kGerman, VTRStringTable::GetCurLangID());
    EXPECT_STREQ("sechzehn", VTRStringTable::GetText(16));
}

} // namespace
