#include "MemStack.h"
#include "NVLanguage.h"
#include "NVStrings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

// Pins the 8-bit code page for one test and gives the process's back at its end.
struct CodePageScope {
    explicit CodePageScope(int cp) { NVSetCurCodePage(cp); }
    ~CodePageScope() { NVSetCurCodePage(0); }
};

TEST(StrNZCpy, CopiesBoundedAndAlwaysTerminates) {
    char buf[6];
    EXPECT_EQ(5u, StrNZCpy(buf, "Parkett", sizeof buf));
    EXPECT_STREQ("Parke", buf);
    EXPECT_EQ(3u, StrNZCpy(buf, "Rang", 4));
    EXPECT_STREQ("Ran", buf);
    EXPECT_EQ(0u, StrNZCpy(buf, nullptr, sizeof buf));
    EXPECT_STREQ("", buf);
    buf[0] = 'x';
    EXPECT_EQ(0u, StrNZCpy(buf, "abc", 0)) << "size 0 writes nothing";
    EXPECT_EQ('x', buf[0]);
    wchar_t w[4];
    EXPECT_EQ(3u, StrNZCpy(w, L"Loge", 4));
    EXPECT_EQ(std::wstring(L"Log"), w);
}

TEST(StrTrim, TrimsInPlaceFromTheBufferStart) {
    char buf[32] = " \t Reihe 7 \r\n";
    char* result = StrTrim(buf);
    EXPECT_EQ(buf, result);
    EXPECT_STREQ("Reihe 7", buf);
    char blank[8] = "   ";
    EXPECT_STREQ("", StrTrim(blank));
    EXPECT_EQ(nullptr, StrTrim(static_cast<char*>(nullptr)));
    wchar_t w[16] = L"  Sitz  ";
    EXPECT_EQ(std::wstring(L"Sitz"), StrTrim(w));
    EXPECT_TRUE(TestLeer(static_cast<char const*>(nullptr)));
    EXPECT_TRUE(TestLeer(""));
    EXPECT_FALSE(TestLeer(" "));
    EXPECT_TRUE(TestLeer(static_cast<wchar_t const*>(nullptr)));
}

TEST(StringEdits, DelCharSwapCharsAndAppendFile) {
    char label[32] = "&Save && &close";
    EXPECT_STREQ("Save  close", DelChar(label, '&'));
    char time[32] = "HH:mm:ss.MS";
    EXPECT_EQ(1, SwapChars(time, "MS", "007"));
    EXPECT_STREQ("HH:mm:ss.007", time);
    char many[32] = "a-b-c";
    EXPECT_EQ(2, SwapChars(many, "-", "--"));
    EXPECT_STREQ("a--b--c", many) << "replacements are not scanned again";
    EXPECT_EQ(0, SwapChars(many, "", "x"));
    char path[MAX_PATH] = "Software\\Vantrel";
    EXPECT_STREQ("Software\\Vantrel\\VantrelHist", AppendFile(path, "VantrelHist"));
    char root[MAX_PATH] = "C:\\";
    EXPECT_STREQ("C:\\x.csv", AppendFile(root, "\\x.csv"));
}

TEST(StringCase, FollowsTheCurrentCodePage) {
    CodePageScope cp(1252);
    EXPECT_EQ('A', ToUpper('a'));
    EXPECT_EQ('\xC4', ToUpper('\xE4')) << "a umlaut in 1252";
    EXPECT_EQ('\xE4', ToLower('\xC4'));
    EXPECT_EQ('1', ToUpper('1'));
    EXPECT_EQ(0, StrNICmp("Parkett", "PARKETT rechts", 7));
    EXPECT_GT(0, StrNICmp("abc", "abd", 3));
    EXPECT_EQ(0, StrNICmp("\xE4rger", "\xC4RGER", 5));
    std::wstring text = L"Hamlet, Parkett links";
    EXPECT_EQ(text.c_str() + 8, StrIStr(text.c_str(), L"PARKETT"));
    EXPECT_EQ(nullptr, StrIStr(text.c_str(), L"Loge"));
    {
        CodePageScope polish(1250);
        EXPECT_EQ('\xA3', ToUpper('\xB3')) << "l with stroke in 1250";
    }
}

TEST(StringSearch, PreparedTextsCompareAndHtmlIsEscaped) {
    char a[32] = "  parkett   LINKS ";
    NVPrepareSearchString(a, sizeof a, true, true);
    EXPECT_STREQ("PARKETT LINKS", a);
    wchar_t w[32] = L"\tloge\t\trechts";
    NVPrepareSearchString(w, 32, false, true);
    EXPECT_EQ(std::wstring(L"loge rechts"), w);

    MemStack mem(1024, -1);
    ASSERT_TRUE(NVPrepareHTMLstring(L"Tom & Jerry <3 \"x\"\r\nnext", mem, true));
    std::wstring html(reinterpret_cast<wchar_t*>(mem.m_pBuffer), mem.m_iUsed / sizeof(wchar_t));
    EXPECT_EQ(L"Tom &amp; Jerry &lt;3 &quot;x&quot;<br>next", html);
}

TEST(UnicodeWindowText, ConvertsInTheCurrentCodePage) {
    CodePageScope cp(1250);
    wchar_t* w = NVMakeUNICODEWindowText("\xA3\xF3\x64\x9F", -1, 0); // "Łódź" in 1250
    ASSERT_NE(nullptr, w);
    EXPECT_EQ(std::wstring(L"\u0141\u00f3d\u017a"), w);
    NVFreeUNICODEWindowText(w);
    w = NVMakeUNICODEWindowText("abcdef", 3, 0);
    EXPECT_EQ(std::wstring(L"abc"), w);
    NVFreeUNICODEWindowText(w);
    w = NVMakeUNICODEWindowText(nullptr, -1, 0);
    EXPECT_EQ(std::wstring(), w);
    NVFreeUNICODEWindowText(w);
}

TEST(GSRC, AnswersInEachLanguageAndFallsBack) {
    EXPECT_EQ(std::wstring(L"The field '\u00a71' must be filled in."), GSRCW(NV_IDS_FIELD_EMPTY, 1033));
    EXPECT_EQ(std::wstring(L"Das Feld '\u00a71' muss ausgef\u00fcllt werden."),
              GSRCW(NV_IDS_FIELD_EMPTY, 1031));
    EXPECT_EQ(std::wstring(L"Pole '\u00a71' musi zosta\u0107 wype\u0142nione."),
              GSRCW(NV_IDS_FIELD_EMPTY, 1045));
    EXPECT_EQ(std::wstring(GSRCW(NV_IDS_FIELD_EMPTY, 1031)), GSRCW(NV_IDS_FIELD_EMPTY, 2055))
        << "Swiss German falls back to German";
    EXPECT_EQ(std::wstring(GSRCW(NV_IDS_FIELD_EMPTY, 1033)), GSRCW(NV_IDS_FIELD_EMPTY, 1036))
        << "French falls back to English";
    EXPECT_STREQ("", GSRC(9999, 1033));

    NVSetCurrentLangID(1031);
    NVSetCurCodePage(1252);
    EXPECT_STREQ("Das Feld '\xA7"
                 "1' muss ausgef\xFCllt werden.",
                 GSRC(NV_IDS_FIELD_EMPTY, 0));
    NVSetCurrentLangID(0);
    NVSetCurCodePage(0);
}

} // namespace
