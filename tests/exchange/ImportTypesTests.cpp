#include "exchange/VTRCSVImportTypes.h"

#include "NVDates.h"
#include "NVLanguage.h"

#include <cerrno>
#include <cstdlib>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Where the quick reader takes a text, it reads what the C runtime reads: the whole text, in range.
template <class T, class Quick, class Runtime>
void ExpectQuickReadsAsRuntime(char const* text, Quick quick, Runtime runtime) {
    T value = 0;
    if (!quick(text, value))
        return;
    errno = 0;
    char* end = nullptr;
    EXPECT_EQ(runtime(text, &end), value) << text;
    EXPECT_EQ(0, errno) << text;
    EXPECT_EQ('\0', *end) << text;
}

// Scans the lines as an 8-bit file and, for the same text, as a wide one; both must agree on
// everything but the text type.
struct Scanned {
    std::vector<VTRBDataType> types;
    std::vector<int> lens;
    std::vector<std::wstring> titles;
    int lines = 0;
};

Scanned Scan(std::vector<std::string> const& lines, int skip = 0, signed char minWidth = 0,
             bool bForce = false, char const* numberTitle = nullptr, bool bWide = false) {
    NVSetCurrentLangID(1031);
    VTRCSVTypeScan scan(bWide, ';', skip, minWidth, bForce, numberTitle);
    for (std::string const& l : lines) {
        if (bWide)
            scan.AddLine(std::wstring(l.begin(), l.end()).c_str());
        else
            scan.AddLine(l.c_str());
    }
    Scanned out;
    out.lines = scan.GetLineCount();
    for (int i = 0; i < scan.GetColCount(); ++i) {
        out.types.push_back(scan.GetCol(i).eType);
        out.lens.push_back(scan.GetCol(i).iMaxLen);
        out.titles.push_back(scan.GetCol(i).strTitle);
    }
    return out;
}

VTRBDataType TypeOf(std::vector<std::string> const& fields, bool bWide = false) {
    std::vector<std::string> lines;
    for (auto const& f : fields)
        lines.push_back("\"" + f + "\"");
    Scanned s = Scan(lines, 0, 0, false, nullptr, bWide);
    return s.types.empty() ? VTRCSV_TYPE_UNKNOWN : s.types[0];
}

TEST(ImportTypes, EachColumnMovesByItsFields) {
    EXPECT_EQ(VTDT_int, TypeOf({"1", "-2", " 3 ", "0"}));
    EXPECT_EQ(VTDT_STRING, TypeOf({"1", "2", "x"})) << "1, 2, x ends as text";
    EXPECT_EQ(VTDT_STRING, TypeOf({"1,5", "2,5"})) << "a second number turns a double column into text";
    EXPECT_EQ(VTDT_DOUBLE, TypeOf({"1,5", "x"})) << "one number, then others that don't parse";
    EXPECT_EQ(VTDT_DOUBLE, TypeOf({"1", "2.5"})) << "an int column meets a fraction";
    EXPECT_EQ(VTDT_STRING, TypeOf({"007"})) << "a leading zero keeps the digits as they were written";
    EXPECT_EQ(VTDT_STRING, TypeOf({"1", "007"})) << "an int column with a code in it is a code column";
    EXPECT_EQ(VTDT_STRING, TypeOf({"4294967296", "0815"})) << "a 64-bit column keeps codes too";
    EXPECT_EQ(VTDT_STRING, TypeOf({"1,5", "-00,5"}));
    EXPECT_EQ(VTDT_DOUBLE, TypeOf({"0,5"})) << "a zero before the decimal sign pads nothing";
    EXPECT_EQ(VTDT_int, TypeOf({"0", "-0", " 0 "}));
    EXPECT_EQ(VTDT_TIME_T, TypeOf({"01.02.2006", "09.10.2007"})) << "dates start with zeros and stay dates";
    EXPECT_EQ(VTDT_QWORD, TypeOf({"4294967296", "x", "1,5"})) << "a 64-bit column stays whatever follows";
    EXPECT_EQ(VTDT_QWORD, TypeOf({"18446744073709551614"}));
    EXPECT_EQ(VTDT_STRING, TypeOf({"18446744073709551615"})) << "all ones is the overflow result";
    EXPECT_EQ(VTDT_STRING, TypeOf({"123456789012345678901"})) << "21 digits are no 64-bit number";
    EXPECT_EQ(VTDT_STRING, TypeOf({"-3000000000"})) << "a big negative number must not wrap round to 64 bits";
    EXPECT_EQ(VTDT_DOUBLE, TypeOf({"-1,25"}));
    EXPECT_EQ(VTDT_STRING, TypeOf({"nan"}));
    EXPECT_EQ(VTDT_STRING, TypeOf({"0x1A"}));
    EXPECT_EQ(VTDT_TIME_T, TypeOf({"01.02.2006", "03.04.2007 13:19:14"}));
    EXPECT_EQ(VTDT_SYSTEMTIME, TypeOf({"01.02.2006", "24.12.1960"}))
        << "before 1970 only a SYSTEMTIME holds it";
    EXPECT_EQ(VTDT_SYSTEMTIME, TypeOf({"24.12.1960"}));
    EXPECT_EQ(VTDT_STRING, TypeOf({"24.12.1960", "31.02.2001"}));
    EXPECT_EQ(VTDT_STRING, TypeOf({"01.02.2006", "soon"}));
    EXPECT_EQ(VTRCSV_TYPE_UNKNOWN, TypeOf({"", ""})) << "only empty fields: still unknown";
    EXPECT_EQ(VTDT_int, TypeOf({"", "5", ""})) << "empty fields pass the integer test";
    EXPECT_EQ(VTDT_STRING, TypeOf({"1,5", ""})) << "an empty field parses as a double, so the column turns";
}

TEST(ImportTypes, WideFilesGiveTheSameColumns) {
    std::vector<std::vector<std::string>> cols = {{"1", "2"},     {"007"},        {"1,5", "x"}, {"1", "007"},
                                                  {"01.02.2006"}, {"24.12.1960"}, {"1", "x"},   {"", ""}};
    for (auto const& c : cols) {
        VTRBDataType e8 = TypeOf(c, false);
        VTRBDataType eW = TypeOf(c, true);
        if (e8 == VTDT_STRING)
            EXPECT_EQ(VTDT_WSTRING, eW) << c[0];
        else
            EXPECT_EQ(e8, eW) << c[0];
    }
}

TEST(ImportTypes, TitlesWidthsAndLineShape) {
    Scanned s = Scan({"Name;Zahl", "", "abc;12345", "abcdef", "x;1;extra;"}, 1, 0);
    ASSERT_EQ(3u, s.types.size()) << "the longest line decides the column count";
    EXPECT_EQ(L"Name", s.titles[0]);
    EXPECT_EQ(L"Zahl", s.titles[1]);
    EXPECT_EQ(L"", s.titles[2]);
    EXPECT_EQ(VTDT_STRING, s.types[0]);
    EXPECT_EQ(VTDT_int, s.types[1]);
    EXPECT_EQ(VTDT_STRING, s.types[2]);
    EXPECT_EQ((std::vector<int>{6, 5, 5}), s.lens) << "titles don't count for the width";
    EXPECT_EQ(5, s.lines) << "empty lines are counted";

    Scanned skip2 = Scan({"T1;T2", "comment;here", "1;2"}, 2);
    EXPECT_EQ(VTDT_int, skip2.types[0]) << "lines skipped beyond the title line are no data";

    Scanned minw = Scan({"A;B", "1;", "2"}, 1, 8);
    EXPECT_EQ((std::vector<int>{8, 8}), minw.lens) << "the minimum widens title and missing columns";
    Scanned minEmpty = Scan({";x", ";y"}, 0, 3);
    EXPECT_EQ(VTDT_int, minEmpty.types[0]) << "with a minimum an empty field is tested and passes as integer";

    Scanned forced = Scan({"1;2,5;01.02.2006"}, 0, 0, true);
    EXPECT_EQ((std::vector<VTRBDataType>{VTDT_STRING, VTDT_STRING, VTDT_STRING}), forced.types);
    Scanned forcedW = Scan({"1;2"}, 0, 0, true, nullptr, true);
    EXPECT_EQ((std::vector<VTRBDataType>{VTDT_WSTRING, VTDT_WSTRING}), forcedW.types);

    Scanned numbered = Scan({"a;1"}, 0, 0, false, "Nr");
    ASSERT_EQ(3u, numbered.types.size());
    EXPECT_EQ(L"Nr", numbered.titles[0]);
    EXPECT_EQ(VTDT_int, numbered.types[0]);
    EXPECT_EQ(VTDT_STRING, numbered.types[1]) << "the file's fields start at column 1";
}

TEST(ImportTypes, LayoutPlacesEachFieldBehindTheLast) {
    NVSetCurrentLangID(1033);
    VTRCSVTypeScan scan(false, ';', 0, 0, false, nullptr);
    scan.AddLine("abc;1;2,5;4294967296;;01/02/2006;12/24/1960");
    std::vector<VTRCSVLayoutCol> cols;
    int iEnd = scan.Layout(cols);
    ASSERT_EQ(7u, cols.size());
    std::vector<VTRBDataType> types;
    std::vector<int> offsets;
    for (auto const& c : cols) {
        types.push_back(c.eType);
        offsets.push_back(c.iOffset);
    }
    EXPECT_EQ((std::vector<VTRBDataType>{VTDT_STRING, VTDT_int, VTDT_DOUBLE, VTDT_QWORD, VTDT_STRING,
                                         VTDT_TIME_T, VTDT_SYSTEMTIME}),
              types);
    EXPECT_EQ((std::vector<int>{4, 8, 12, 20, 28, 29, 33}), offsets) << "text takes its length plus one";
    EXPECT_EQ(33 + 16, iEnd);
    EXPECT_EQ(L"Column 5", cols[4].strTitle);

    VTRCSVTypeScan wide(true, ';', 0, 0, false, "No.");
    wide.AddLine(L"\u0141\u00f3d\u017a;7");
    int iEndW = wide.Layout(cols);
    ASSERT_EQ(3u, cols.size());
    EXPECT_EQ(0, cols[0].iOffset) << "the number column holds the line number word";
    EXPECT_EQ(4, cols[1].iOffset);
    EXPECT_EQ(VTDT_WSTRING, cols[1].eType);
    EXPECT_EQ(4 + 2 * 4 + 2, cols[2].iOffset);
    EXPECT_EQ(cols[2].iOffset + 4, iEndW);

    DynaArrayTpl<VTRBListViewColW, 0, 0> defs;
    VTRCSVTypeScan::MakeColDefs(cols, defs);
    ASSERT_EQ(3, defs.GetCount());
    EXPECT_EQ(std::wstring(L"No."), defs.Get(0)->lpszTitle);
    EXPECT_EQ(0, defs.Get(1)->iWidth);
}

// The quick readers must give what the general ones give, for every text they take.
TEST(ImportTypes, PlainShapesReadAsTheGeneralParsersDo) {
    char const* const days[] = {"00", "01", "09", "10", "28", "29", "30", "31", "32", "1", "x1"};
    char const* const months[] = {"00", "01", "02", "03", "10", "12", "13", "2"};
    char const* const years[] = {"1900", "1968", "1969", "1970", "1996", "2000",
                                 "2015", "2037", "2038", "2039", "06",   "0000"};
    char const* const times[] = {"",          " 00:00:00",  " 23:59:59", " 24:00:00",
                                 " 12:60:00", " 01:02:60",  " 02:30:00", " 1:02:03",
                                 " 01:02",    " 01:02:03 ", "T01:02:03", " 01:02:03 PM"};
    for (unsigned short lang : {1031, 1033}) {
        NVSetCurrentLangID(lang);
        int quick = 0, checked = 0;
        for (char const* d : days)
            for (char const* m : months)
                for (char const* y : years)
                    for (char const* t : times)
                        for (char sep : {'.', '/', '-'}) {
                            std::string text = lang == 1031 ? std::string(d) + sep + m + sep + y
                                                            : std::string(m) + sep + d + sep + y;
                            text += t;
                            long got = 0;
                            long const want = String2DateTime(text.c_str());
                            ++checked;
                            if (VTRCSVTypeScan::QuickDate(text.c_str(), got)) {
                                ++quick;
                                ASSERT_EQ(want, got) << text << " in language " << lang;
                            }
                            ASSERT_EQ(want > 0, VTRCSVTypeScan::IsDate(text.c_str())) << text;
                        }
        // English times carry AM/PM first, so there only the bare dates go the quick way.
        EXPECT_GT(quick, lang == 1031 ? 500 : 100) << "language " << lang << " of " << checked;
    }
    long t = 0;
    NVSetCurrentLangID(1031);
    EXPECT_TRUE(VTRCSVTypeScan::QuickDate("29.03.2015 02:30:00", t)) << "an hour the clock skips";
    EXPECT_EQ(String2DateTime("29.03.2015 02:30:00"), t);
    for (char const* text : {"", "0", "1", "12.", "12.03", "12.03.201", "12.03.2015 1", "12.03.2015 10:00:0"})
        EXPECT_FALSE(VTRCSVTypeScan::QuickDate(text, t)) << "cut short: '" << text << "'";

    char const* const numbers[] = {"0",
                                   "-0",
                                   "7",
                                   "-7",
                                   "007",
                                   "123456789",
                                   "-123456789",
                                   "1234567890",
                                   "2147483647",
                                   "-2147483648",
                                   "4294967295",
                                   "",
                                   "-",
                                   " 1",
                                   "1 ",
                                   "+1",
                                   "1,5",
                                   "1e3",
                                   "0x10",
                                   "99999999999999999999",
                                   "9999999999999999999",
                                   "18446744073709551615"};
    for (char const* text : numbers) {
        ExpectQuickReadsAsRuntime<long>(text, VTRCSVTypeScan::QuickInt,
                                        [](char const* p, char** end) { return strtol(p, end, 10); });
        ExpectQuickReadsAsRuntime<unsigned long long>(
            text, VTRCSVTypeScan::QuickUInt64,
            [](char const* p, char** end) { return _strtoui64(p, end, 10); });
    }
    long l = 0;
    unsigned long long ull = 0;
    EXPECT_TRUE(VTRCSVTypeScan::QuickInt("-123456789", l));
    EXPECT_EQ(-123456789, l);
    EXPECT_FALSE(VTRCSVTypeScan::QuickInt("1234567890", l)) << "ten digits may overflow: the long way";
    EXPECT_TRUE(VTRCSVTypeScan::QuickUInt64("9999999999999999999", ull));
    EXPECT_EQ(9999999999999999999ULL, ull);
    EXPECT_FALSE(VTRCSVTypeScan::QuickUInt64("18446744073709551615", ull));
    EXPECT_FALSE(VTRCSVTypeScan::QuickUInt64("-1", ull));
}

} // namespace
