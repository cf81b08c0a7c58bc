#include "ListFixture.h"

#include "NVDates.h"
#include "NVErrors.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

using lvtest::ListHost;
using lvtest::TestList;

namespace {

char const* const kNoTitle = nullptr;

void* W(intptr_t v) {
    return reinterpret_cast<void*>(v);
}

char const* NarrowCallback(void* cell, int, int col, LPARAM lParam, void* user, char* buf) {
    snprintf(buf, 64, "n%d/%d/%d/%d", static_cast<int>(reinterpret_cast<intptr_t>(cell)), col,
             static_cast<int>(lParam), static_cast<int>(reinterpret_cast<intptr_t>(user)));
    return buf;
}

wchar_t const* WideCallback(void* cell, int, int, LPARAM, void*, wchar_t* buf) {
    swprintf(buf, 64, L"w\u00e9%d", static_cast<int>(reinterpret_cast<intptr_t>(cell)));
    return buf;
}

} // namespace

TEST(ListCellText, EachTypeShowsItsTextFormAndNullsShowNothing) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols(
        "S", 1, nullptr, 40, 0, VTDT_STRING,                                              // 0
        "I", 2, nullptr, 40, 0, VTDT_int,                                                 // 1
        "D", 3, nullptr, 40, 0, VTDT_DWORD,                                               // 2
        "PI", 4, nullptr, 40, 0, VTDT_LPINT,                                              // 3
        "PD", 5, nullptr, 40, 0, VTDT_LPDWORD,                                            // 4
        "CD", 6, nullptr, 40, 0, VTDT_CARD_DATE,                                          // 5
        "PCD", 7, nullptr, 40, 0, VTDT_LPCARD_DATE,                                       // 6
        "NN", 8, nullptr, 40, 0, VTDT_DWORD_NOT_NULL,                                     // 7
        "C", 9, nullptr, 40, 0, VTDT_int32_CUSTOM, "<%05d>",                              // 8
        "PC", 10, nullptr, 40, 0, VTDT_LPint32_CUSTOM, "[%x]",                            // 9
        "CB", 11, nullptr, 40, 0, VTDT_CHECKBOX,                                          // 10
        "WS", 12, nullptr, 40, 0, VTDT_WSTRING,                                           // 11
        "Q", 13, nullptr, 40, 0, VTDT_QWORD,                                              // 12
        "WO", 14, nullptr, 40, 0, VTDT_WORD,                                              // 13
        "F", 15, nullptr, 40, 0, VTDT_FLAG, 4u,                                           // 14
        "B", 16, nullptr, 40, 0, VTDT_bool,                                               // 15
        "TO", 17, nullptr, 40, 0, VTDT_SYSTEMTIME_TIMEONLY,                               // 16
        "DB", 18, nullptr, 40, 0, VTDT_DOUBLE, "%.3f",                                    // 17
        "CBN", 19, nullptr, 40, 0, VTDT_CALLBACK, &NarrowCallback, nullptr, W(77),        // 18
        "CBW", 20, nullptr, 40, 0x200000, VTDT_CALLBACK, &WideCallback, nullptr, nullptr, // 19
        kNoTitle));
    ASSERT_EQ(20, h.list.GetColCnt());

    int iNeg = -7;
    unsigned long dwAll = 4294967295u;
    unsigned short wCard = 0x6303; // March 99
    int i42 = 42;
    bool bTrue = true;
    unsigned long long q = 18446744073709551614ull;
    double dbl = 2.5;
    ASSERT_TRUE(h.list.AddRow(5, 0, const_cast<char*>("abc"), -5, 4294967295u, &iNeg, &dwAll, 0x050C, &wCard,
                              0u, 42, &i42, &bTrue, L"wide", &q, 0x12345, 6u, 1, W(9), &dbl, W(3), W(8)));
    std::vector<std::string> const expected{"abc",
                                            "-5",
                                            "4294967295",
                                            "-7",
                                            "-1",
                                            "12/05",
                                            "03/99",
                                            "",
                                            "<00042>",
                                            "[2a]",
                                            "yes",
                                            "wide",
                                            "18446744073709551614",
                                            "9029",
                                            "yes",
                                            "yes",
                                            "",
                                            "2.500",
                                            "n3/18/5/77",
                                            "w\xc3\xa9"
                                            "8"};
    for (int c = 0; c < 20; ++c)
        EXPECT_EQ(expected[static_cast<size_t>(c)], h.TextA(0, c)) << "column " << c;

    // Null pointers and zero values where the types show nothing.
    unsigned short wZero = 0;
    double dEmpty = EMPTY_DOUBLE;
    ASSERT_TRUE(h.list.AddRow(6, 0, nullptr, 0, 0u, nullptr, nullptr, 0, &wZero, 0u, 0, nullptr, nullptr,
                              nullptr, &q, 0, 3u, 0, nullptr, &dEmpty, W(0), W(0)));
    for (int c : {0, 3, 4, 5, 6, 7, 9, 10, 11, 17})
        EXPECT_EQ("", h.TextA(1, c)) << "column " << c;
    EXPECT_EQ("0", h.TextA(1, 1));
    EXPECT_EQ("no", h.TextA(1, 14)); // 3 & 4 is 0
    EXPECT_EQ("no", h.TextA(1, 15));
    // A cell the base class does not store stays zero.
    Row* pRow = h.list.Get(0);
    ASSERT_NE(nullptr, pRow);
    EXPECT_EQ(nullptr, pRow->cells[16].pValue);
    EXPECT_FALSE(h.list.Set(pRow, 16, W(5)));
    EXPECT_EQ(nullptr, pRow->cells[16].pValue);

    // A per-cell number format wins over the column's.
    h.list.SetCellNumFormat(0, 17, "%.1f");
    EXPECT_EQ("2.5", h.TextA(0, 17));
    h.list.SetCellNumFormat(0, 99, "%.0f"); // out of range: nothing happens
    h.list.SetCellNumFormat(99, 17, "%.0f");
    EXPECT_EQ("2.5", h.TextA(0, 17));
}

TEST(ListCellText, SumRowsBlankBoolFlagAndFlaggedColumnsOnly) {
    ListHost<> h;
    DynaArrayTpl<VTRBListViewCol, 0, 0> cols;
    cols.Add(VTRBListViewCol{"Name", nullptr, 60, 0, VTDT_STRING, nullptr, nullptr, nullptr, 32, 1});
    cols.Add(VTRBListViewCol{"Ok", nullptr, 60, 0, VTDT_bool, nullptr, nullptr, nullptr, 0, 2});
    cols.Add(VTRBListViewCol{"Flag", nullptr, 60, 0, VTDT_FLAG, W(1), nullptr, nullptr, 0, 3});
    cols.Add(VTRBListViewCol{"Box", nullptr, 60, 0, VTDT_CHECKBOX, nullptr, nullptr, nullptr, 0, 4});
    ASSERT_TRUE(h.list.DefineCols(cols));
    bool b = false;
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("row"), 1, 1u, &b));
    ASSERT_TRUE(h.list.AddSumRow(2, 0, const_cast<char*>("sum"), 1, 1u, &b));
    EXPECT_EQ("row", h.TextA(0, 0));
    EXPECT_EQ("yes", h.TextA(0, 1));
    EXPECT_EQ("yes", h.TextA(0, 2));
    EXPECT_EQ("", h.TextA(1, 0)) << "column flag 32 blanks the sum row";
    EXPECT_EQ("", h.TextA(1, 1));
    EXPECT_EQ("", h.TextA(1, 2));
    EXPECT_EQ("no", h.TextA(1, 3)) << "a check box cell shows in a sum row";
    EXPECT_TRUE(h.list.IsSumRow(1));
    EXPECT_FALSE(h.list.IsSumRow(0));
}

TEST(ListCellText, PasswordMasksBufferedTextButNotWideStringsAndEditorsSeePlainText) {
    ListHost<> h;
    ASSERT_TRUE(h.list.DefineCols("S", 1, nullptr, 60, 0, VTDT_STRING, "W", 2, nullptr, 60, 0, VTDT_WSTRING,
                                  "I", 3, nullptr, 60, 0, VTDT_int, kNoTitle));
    h.list.passwordCols = {0, 1, 2};
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("secret"), L"open", -12));
    EXPECT_EQ("******", h.TextA(0, 0));
    EXPECT_EQ("open", h.TextA(0, 1));
    EXPECT_EQ("***", h.TextA(0, 2));
    EXPECT_EQ(L"secret", h.list.Text(h.list.Get(0), 0, 0, true));
    wchar_t buf[4];
    EXPECT_TRUE(h.list.GetCellTextFormated(0, 2, buf, 4));
    EXPECT_EQ(std::wstring(L"**"), buf) << "the copy keeps room for one character less than the buffer";
}

class HookList : public TestList {
public:
    int iDifferentCol = -1;
    int iOwnTextCol = -1;
    UINT uCodePage = 0;

protected:
    bool IsDifferent(Row*, int, int col) override { return col == iDifferentCol; }
    bool OnGetCellText(int item, int col, wchar_t* buf, unsigned int size) override {
        if (col != iOwnTextCol)
            return false;
        swprintf(buf, size, L"own %d", item);
        return true;
    }
    bool OnGetCodePage(LPARAM, int, void*, unsigned long& cp) override {
        if (!uCodePage)
            return false;
        cp = uCodePage;
        return true;
    }
    unsigned long OnGetTZIndex(int, int) override { return 5; }
    bool OnGetInvalidDateText(long value, int, int, char* buf) override {
        if (value != 0)
            return false;
        strcpy(buf, "never");
        return true;
    }
};

TEST(ListCellText, HooksComeFirstAndCodePageOfStrings) {
    ListHost<HookList> h;
    ASSERT_TRUE(
        h.list.DefineCols("S", 1, nullptr, 60, 0, VTDT_STRING, "I", 2, nullptr, 60, 0, VTDT_int, kNoTitle));
    ASSERT_TRUE(h.list.AddRow(1, 0, const_cast<char*>("\xe9t\xe9"), 4));
    h.list.uCodePage = 1252;
    EXPECT_EQ(L"\u00e9t\u00e9", h.Text(0, 0));
    h.list.uCodePage = 1251;
    EXPECT_EQ(L"\u0439t\u0439", h.Text(0, 0));
    h.list.iDifferentCol = 1;
    h.list.iOwnTextCol = 1;
    EXPECT_EQ("<Different>", h.TextA(0, 1));
    h.list.iDifferentCol = -1;
    EXPECT_EQ("own 0", h.TextA(0, 1));
    // With no item the hooks are not asked.
    EXPECT_EQ(L"4", h.list.Text(h.list.Get(0), -1, 1));
}

TEST(ListCellText, NumbersAtTheirLimitsAndLongTextsAtTheBufferEdge) {
    ListHost<HookList> h;
    ASSERT_TRUE(h.list.DefineCols("I", 1, nullptr, 40, 0, VTDT_int, "D", 2, nullptr, 40, 0, VTDT_DWORD, "PI",
                                  3, nullptr, 40, 0, VTDT_LPINT, "Q", 4, nullptr, 40, 0, VTDT_QWORD, "WO", 5,
                                  nullptr, 40, 0, VTDT_WORD, "CD", 6, nullptr, 40, 0, VTDT_CARD_DATE, "NN", 7,
                                  nullptr, 40, 0, VTDT_DWORD_NOT_NULL, "S", 8, nullptr, 40, 0, VTDT_STRING,
                                  kNoTitle));
    int iMin = INT32_MIN, iMax = INT32_MAX;
    unsigned long long qMax = UINT64_MAX, qZero = 0;
    ASSERT_TRUE(h.list.AddRow(1, 0, reinterpret_cast<void*>(static_cast<intptr_t>(INT32_MIN)), 0u, &iMin,
                              &qMax, 0, 0x0101, 1u, const_cast<char*>("")));
    ASSERT_TRUE(h.list.AddRow(2, 0, reinterpret_cast<void*>(static_cast<intptr_t>(INT32_MAX)), 4294967295u,
                              &iMax, &qZero, 65535, 0xFFFF, 4294967295u, const_cast<char*>("x")));
    ASSERT_TRUE(h.list.AddRow(3, 0, nullptr, 10u, &iMin, &qZero, 10, 0x0A09, 10u, const_cast<char*>("y")));
    char const* const expected[3][7] = {
        {"-2147483648", "0", "-2147483648", "18446744073709551615", "0", "01/01", "1"},
        {"2147483647", "4294967295", "2147483647", "0", "65535", "255/255", "4294967295"},
        {"0", "10", "-2147483648", "0", "10", "09/10", "10"}};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 7; ++c)
            EXPECT_EQ(expected[r][c], h.TextA(r, c)) << "row " << r << ", column " << c;

    // Texts around the 1023 characters that a cell shows, ASCII and not.
    Row* pRow = h.list.Get(0);
    ASSERT_NE(nullptr, pRow);
    std::string text;
    auto show = [&](std::string const& s, UINT cp) {
        text = s;
        h.list.uCodePage = cp;
        pRow->cells[7].pValue = &text[0];
        return h.list.Text(pRow, -1, 7);
    };
    for (size_t len : {1022u, 1023u, 1024u, 2000u})
        EXPECT_EQ(std::wstring(len < 1023 ? len : 1023, L'a'), show(std::string(len, 'a'), 1252)) << len;
    EXPECT_EQ(std::wstring(1022, L'a') + L"\u00e9", show(std::string(1022, 'a') + "\xe9zz", 1252));
    EXPECT_EQ(std::wstring(1000, L'a') + L"\u00e9z", show(std::string(1000, 'a') + "\xe9z", 1252));
    EXPECT_EQ(L"ab\u00e9\u4e2d", show("ab\xc3\xa9\xe4\xb8\xad", CP_UTF8));
    EXPECT_EQ(L"ab\u0439", show("ab\xe9", 1251));
    // A page whose bytes below 0x80 are no ASCII is left to the system.
    if (IsValidCodePage(37)) {
        wchar_t wsz[8] = L"";
        MultiByteToWideChar(37, 0, "AB", -1, wsz, 8);
        EXPECT_NE(L"AB", std::wstring(wsz));
        EXPECT_EQ(std::wstring(wsz), show("AB", 37));
    }
    pRow->cells[7].pValue = nullptr;
}

TEST(ListCellText, DatesFromSecondsAndSystemTimes) {
    TIME_ZONE_INFORMATION utc{};
    ASSERT_TRUE(NVSetTimeZone(5, &utc));
    ListHost<HookList> h;
    ASSERT_TRUE(h.list.DefineCols("T", 1, nullptr, 60, 0, VTDT_TIME_T, "dd.MM.yyyy", "HH:mm",             // 0
                                  "PT", 2, nullptr, 60, 0, VTDT_LPTIME_T, "dd.MM.yyyy", nullptr,          // 1
                                  "ST", 3, nullptr, 60, 0, VTDT_SYSTEMTIME, "dd.MM.yyyy", " HH:mm:ss.MS", // 2
                                  "SN", 4, nullptr, 60, 0, VTDT_SYSTEMTIME, nullptr, "HH:mm",             // 3
                                  kNoTitle));
    long t = 1700000000; // 14.11.2023 22:13:20 UTC
    SYSTEMTIME st{2024, 3, 2, 5, 14, 7, 9, 45};
    SYSTEMTIME stNoHour{};
    stNoHour.wHour = 65535;
    ASSERT_TRUE(h.list.AddRow(1, 0, W(t), &t, &st, &stNoHour));
    EXPECT_EQ("14.11.2023 22:13", h.TextA(0, 0));
    EXPECT_EQ("14.11.2023", h.TextA(0, 1));
    EXPECT_EQ("05.03.2024 14:07:09.045", h.TextA(0, 2));
    EXPECT_EQ("", h.TextA(0, 3)) << "no date format and hour 65535";

    SYSTEMTIME stZero{};
    SYSTEMTIME stMidnight{};
    stMidnight.wMinute = 30;
    ASSERT_TRUE(h.list.AddRow(2, 0, W(0), nullptr, &stZero, &stMidnight));
    EXPECT_EQ("never", h.TextA(1, 0)) << "invalid seconds ask the hook";
    EXPECT_EQ("never", h.TextA(1, 1)) << "a null pointer counts as 0";
    EXPECT_EQ("", h.TextA(1, 2)) << "an all-zero structure with a date format";
    EXPECT_EQ("00:30", h.TextA(1, 3)) << "hour 0 is a time";
    ASSERT_TRUE(h.list.AddRow(3, 0, W(-5), nullptr, nullptr, nullptr));
    EXPECT_EQ("", h.TextA(2, 0)) << "the default hook shows nothing";
    EXPECT_EQ("", h.TextA(2, 2));
    NVSetTimeZone(5, nullptr);
}

TEST(ListCellText, TypeNamesAndExtraArguments) {
    EXPECT_EQ(VTDT_QWORD, VTRBListView::VTRBDataTypeFromString("VTDT_QWORD"));
    EXPECT_EQ(VTDT_bool, VTRBListView::VTRBDataTypeFromString("VTDT_bool"));
    EXPECT_EQ(VTDT_SYSTEMTIME_TIMEONLY, VTRBListView::VTRBDataTypeFromString("VTDT_SYSTEMTIME_TIMEONLY"));
    EXPECT_EQ(VTDT_STRING, VTRBListView::VTRBDataTypeFromString("VTDT_BOOL"))
        << "names compare case-sensitively";
    EXPECT_EQ(VTDT_STRING, VTRBListView::VTRBDataTypeFromString("VTDT_LPSTR")) << "type 1 has no name";
    EXPECT_EQ(VTDT_STRING, VTRBListView::VTRBDataTypeFromString(nullptr));
    int const expected[VTDT_COUNT] = {0, 0, 0, 0, 0, 0, 2, 2, 1, 1, 0, 0, 0, 1, 1,
                                      3, 2, 2, 0, 3, 0, 0, 0, 0, 0, 0, 0, 1, 0};
    for (int i = 0; i < VTDT_COUNT; ++i)
        EXPECT_EQ(expected[i], VTRBListView::GetExtraArgCnt(static_cast<VTRBDataType>(i))) << "type " << i;
    double const empty = EMPTY_DOUBLE;
    uint64_t bits = 0;
    memcpy(&bits, &empty, sizeof bits);
    EXPECT_EQ(0x017342BC3629C632ull, bits);
}

TEST(ListParsers, IntegersWithLeadingZerosRangeAndRest) {
    bool ok = true;
    char t1[] = "007";
    EXPECT_EQ(7u, VTRBListView::Str2Val(t1, false, 1, ok, true, false));
    EXPECT_FALSE(ok) << "a leading zero is not taken for a number";
    char t2[] = " 42 \t";
    EXPECT_EQ(42u, VTRBListView::Str2Val(t2, false, 1, ok, true, false));
    EXPECT_TRUE(ok);
    char t3[] = "-3";
    EXPECT_EQ(static_cast<unsigned long>(-3), VTRBListView::Str2Val(t3, true, 1, ok, false, false));
    EXPECT_TRUE(ok);
    char t4[] = "12x";
    EXPECT_EQ(12u, VTRBListView::Str2Val(t4, false, 1, ok, false, true));
    EXPECT_FALSE(ok) << "silent: no throw, the number read so far";
    char t5[] = "99999999999";
    EXPECT_EQ(0u, VTRBListView::Str2Val(t5, true, 1, ok, true, false));
    EXPECT_FALSE(ok);
    char t6[] = "12x";
    try {
        VTRBListView::Str2Val(t6, false, 3, ok, false, false);
        ADD_FAILURE() << "no throw";
    } catch (NVThrowData& e) {
        EXPECT_STREQ("Invalid numerical value in line 3. '12x'", e.GetText());
    }
    wchar_t w1[] = L"0815";
    EXPECT_EQ(815u, VTRBListView::Str2Val(w1, false, 1, ok, true, false));
    EXPECT_FALSE(ok);

    char q1[] = "18446744073709551615";
    EXPECT_EQ(0u, VTRBListView::Str2UVal64(q1, 1, ok, true));
    EXPECT_FALSE(ok) << "all ones is taken for the overflow result";
    char q2[] = "18446744073709551614";
    EXPECT_EQ(18446744073709551614ull, VTRBListView::Str2UVal64(q2, 1, ok, true));
    EXPECT_TRUE(ok);
    wchar_t q3[] = L"5 z";
    EXPECT_THROW(VTRBListView::Str2UVal64(q3, 1, ok, false), NVThrowData);
}

TEST(ListParsers, DoublesAdaptTheSeparatorAndDatesThrow) {
    ASSERT_STREQ(".", localeconv()->decimal_point);
    char d1[] = "1,5";
    EXPECT_DOUBLE_EQ(1.5, VTRBListView::Str2Double(d1, 0, false));
    EXPECT_STREQ("1.5", d1) << "the adapted text stays in the buffer";
    char d2[] = "0123";
    EXPECT_EQ(EMPTY_DOUBLE, VTRBListView::Str2Double(d2, 0, true));
    char d3[] = "0.5";
    EXPECT_DOUBLE_EQ(0.5, VTRBListView::Str2Double(d3, 0, true));
    char d4[] = "0";
    EXPECT_DOUBLE_EQ(0.0, VTRBListView::Str2Double(d4, 0, true));
    char d5[] = "1,5x";
    EXPECT_EQ(EMPTY_DOUBLE, VTRBListView::Str2Double(d5, 0, true));
    EXPECT_STREQ("1,5x", d5) << "a failed lenient parse restores the text";
    char d6[] = "abc";
    EXPECT_THROW(VTRBListView::Str2Double(d6, 7, false), NVThrowData);
    std::string longText(252, '1');
    EXPECT_EQ(EMPTY_DOUBLE, VTRBListView::Str2Double(&longText[0], 0, false));
    wchar_t w[] = L"2,25";
    EXPECT_DOUBLE_EQ(2.25, VTRBListView::Str2Double(w, 0, false));

    char bad[] = "31.02.2024";
    try {
        VTRBListView::Str2Date(bad, false, 4);
        ADD_FAILURE() << "no throw";
    } catch (NVThrowData& e) {
        EXPECT_STREQ("Invalid date value in line 4. '31.02.2024'", e.GetText());
    }
    wchar_t wbad[] = L"nonsense";
    EXPECT_THROW(VTRBListView::Str2Date(wbad, true, 1), NVThrowData);
}
