#include "exchange/VTRCSVImportReader.h"
#include "harness/MsgBoxRecorder.h"
#include "listview/ListFixture.h"
#include "stores/VTRBListViewStoreData.h"
#include "stores/VTRBListViewVirtual.h"

#include "NVDates.h"
#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

class ImportStore : public VTRBListViewStoreData {
public:
    int iFieldSize = 0;
    int GetFieldSize(int) override { return iFieldSize; }
};

using StoreHost = lvtest::ListHost<ImportStore>;

void WriteFile(std::string const& path, std::string const& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string Utf16LE(std::wstring const& text) {
    std::string out = "\xFF\xFE";
    for (wchar_t c : text) {
        out.push_back(static_cast<char>(c & 0xFF));
        out.push_back(static_cast<char>(c >> 8));
    }
    return out;
}

int Int(VTRBListViewStoreData& list, int row, int col) {
    VTRItemData d{};
    EXPECT_TRUE(list.GetColData(row, col, d));
    return static_cast<int>(d.lValue);
}

int LineNo(VTRBListViewStoreData& list, int row) {
    void* p = nullptr;
    if (!list.GetRowData(row, p))
        return -1;
    int v = 0;
    memcpy(&v, p, 4);
    return v;
}

TEST(ImportStore, DefinesColumnsAndRowsFromTheFile) {
    vtrtest::TempDir dir;
    std::string path = dir.File("kunden.csv");
    WriteFile(
        path,
        "Name;Menge;Preis;Seit\r\n\"M\xFCller, A.\";3;2,5;01.02.2006\r\n\r\nSchmidt;12;x;03.04.2007 10:11:12;"
        "zu viel\r\n");
    NVSetCurCodePage(1252);
    StoreHost host;
    NVSetCurrentLangID(1031);
    host.list.SetCSVImpExtraSpace(-6);
    vtrtest::MsgBoxRecorder boxes;
    boxes.Answer(IDRETRY);
    ASSERT_TRUE(host.list.ImportCSV(path.c_str(), ';', 1, true, true, "Nr"));
    EXPECT_EQ(1u, boxes.count()) << "x stays in the double column and then fails to convert";
    ASSERT_EQ(6, host.list.GetColCnt()) << "number column, four titled columns, one untitled";
    EXPECT_EQ(
        (std::vector<VTRBDataType>{VTDT_int, VTDT_STRING, VTDT_int, VTDT_DOUBLE, VTDT_TIME_T, VTDT_STRING}),
        (std::vector<VTRBDataType>{host.list.GetColDataType(0), host.list.GetColDataType(1),
                                   host.list.GetColDataType(2), host.list.GetColDataType(3),
                                   host.list.GetColDataType(4), host.list.GetColDataType(5)}));
    wchar_t title[64];
    ASSERT_TRUE(host.list.GetColTitle(5, title, 64));
    EXPECT_EQ(std::wstring(L"Spalte 6"), title);
    ASSERT_TRUE(host.list.GetColTitle(1, title, 64));
    EXPECT_EQ(std::wstring(L"Name"), title);
    // Nr at 0, Name (10 + 1) at 4, Menge at 15, Preis at 19, Seit at 27, untitled (7 + 1) at 31.
    EXPECT_EQ(39, host.list.GetCSVImpNextOffset());
    EXPECT_LE(39u + 6u, host.list.GetBlockSize()) << "the extra space is taken as its absolute value";
    EXPECT_GT(39u + 6u + 8u, host.list.GetBlockSize()) << "the allocator rounds up to 8 at most";

    ASSERT_EQ(3, host.list.GetItemCount()) << "the empty row and two data rows";
    host.list.SetSortMode(0, false);
    EXPECT_EQ(1, LineNo(host.list, 0)) << "the empty row carries line 1";
    EXPECT_EQ((std::vector<int>{2, 4}), (std::vector<int>{LineNo(host.list, 1), LineNo(host.list, 2)}))
        << "the title line is line 1 of the file; the blank line counts";
    EXPECT_STREQ("M\xFC"
                 "ller, A.",
                 host.list.GetCellText(1, 1));
    EXPECT_EQ(12, Int(host.list, 2, 2));
    VTRItemData d{};
    ASSERT_TRUE(host.list.GetColData(1, 3, d));
    EXPECT_DOUBLE_EQ(2.5, d.dValue);
    ASSERT_TRUE(host.list.GetColData(2, 3, d));
    EXPECT_DOUBLE_EQ(0.0, d.dValue)
        << "x in a double column: the odd rule keeps the column, the value stays 0";
    EXPECT_EQ(String2DateTime("03.04.2007 10:11:12"), Int(host.list, 2, 4));
    EXPECT_STREQ("zu viel", host.list.GetCellText(2, 5));
    EXPECT_EQ(';', host.list.GetImportSep());
    EXPECT_EQ(1, host.list.GetImportSkipLines());
    EXPECT_STREQ("", host.list.GetImportCSVFile()) << "the structure store leaves the name to its dialog";
}

TEST(ImportStore, CodesWithLeadingZerosComeBackAsWritten) {
    vtrtest::TempDir dir;
    std::string path = dir.File("plz.csv");
    WriteFile(path, "PLZ;Ort;Kunde;Menge\r\n01067;Dresden;0815;3\r\n80331;M\xFCnchen;42;007\r\n");
    NVSetCurCodePage(1252);
    NVSetCurrentLangID(1031);
    StoreHost host;
    vtrtest::MsgBoxRecorder boxes;
    ASSERT_TRUE(host.list.ImportCSV(path.c_str(), ';', 1, true, false, nullptr));
    EXPECT_EQ(0u, boxes.count());
    ASSERT_EQ(4, host.list.GetColCnt());
    for (int iCol : {0, 2, 3})
        EXPECT_EQ(VTDT_STRING, host.list.GetColDataType(iCol)) << "column " << iCol;
    ASSERT_EQ(2, host.list.GetItemCount());
    host.list.SetSortMode(0, false);
    EXPECT_STREQ("01067", host.list.GetCellText(0, 0));
    EXPECT_STREQ("0815", host.list.GetCellText(0, 2));
    EXPECT_STREQ("42", host.list.GetCellText(1, 2));
    EXPECT_STREQ("007", host.list.GetCellText(1, 3));
}

TEST(ImportStore, AllFourEncodingsGiveTheSameRows) {
    vtrtest::TempDir dir;
    std::wstring const text = L"A;B\r\n\u0141\u00f3d\u017a;1\r\n\uFEFFx;2\r\n";
    std::string be;
    for (wchar_t c : std::wstring(L"\uFEFF") + text) {
        be.push_back(static_cast<char>(c >> 8));
        be.push_back(static_cast<char>(c & 0xFF));
    }
    std::vector<std::pair<std::string, std::string>> files = {
        {"le.csv", Utf16LE(text)},
        {"be.csv", be},
        {"u8.csv", "\xEF\xBB\xBF"
                   "A;B\r\n\xC5\x81\xC3\xB3\x64\xC5\xBA;1\r\n\xEF\xBB\xBFx;2\r\n"},
    };
    for (auto const& f : files) {
        std::string path = dir.File(f.first.c_str());
        WriteFile(path, f.second);
        StoreHost host;
        ASSERT_TRUE(host.list.ImportCSV(path.c_str(), ';', 1, true, false, nullptr)) << f.first;
        ASSERT_EQ(VTDT_WSTRING, host.list.GetColDataType(0)) << f.first;
        ASSERT_EQ(2, host.list.GetItemCount()) << f.first;
        host.list.SetSortMode(1, false);
        EXPECT_STREQ(L"\u0141\u00f3d\u017a", host.list.GetCellTextUC(0, 0)) << f.first;
        EXPECT_STREQ(L"x", host.list.GetCellTextUC(1, 0)) << f.first << ": a mark in the middle is no text";
        EXPECT_EQ(2, Int(host.list, 1, 1)) << f.first;
    }
    std::string ansi = dir.File("ansi.csv");
    WriteFile(ansi, "A;B\r\nGr\xFC\xDF;1\r\n");
    NVSetCurCodePage(1252);
    StoreHost host;
    ASSERT_TRUE(host.list.ImportCSV(ansi.c_str(), ';', 1, true, false, nullptr));
    EXPECT_EQ(VTDT_STRING, host.list.GetColDataType(0));
    EXPECT_STREQ("Gr\xFC\xDF", host.list.GetCellText(0, 0));

    std::string one = dir.File("one.csv");
    WriteFile(one, "7");
    StoreHost small;
    ASSERT_TRUE(small.list.ImportCSV(one.c_str(), ';', 1, true, false, nullptr));
    EXPECT_EQ(0, small.list.GetImportSkipLines()) << "a one-byte file leaves the skip count alone";

    vtrtest::MsgBoxRecorder boxes;
    StoreHost empty;
    std::string none = dir.File("empty.csv");
    WriteFile(none, "");
    EXPECT_FALSE(empty.list.ImportCSV(none.c_str(), ';', 0, true, false, nullptr));
    ASSERT_EQ(1u, boxes.count());
    EXPECT_EQ(L"error duringDefineCols()", boxes.last().text);
    EXPECT_FALSE(empty.list.ImportCSV(dir.File("missing.csv").c_str(), ';', 0, true, false, nullptr));
    ASSERT_EQ(2u, boxes.count());
    EXPECT_NE(std::wstring::npos, boxes.last().text.find(L"missing.csv")) << vtrtest::Utf8(boxes.last().text);
}

struct Rec {
    int iLine;
    int iValue;
    char szName[12];
};

void DefineRec(ImportStore& list) {
    ASSERT_TRUE(list.DefineStructureAndCols(sizeof(Rec), offsetof(Rec, iValue), "Value", 1, "123", 0,
                                            LVCFMT_RIGHT, VTDT_int, offsetof(Rec, szName), "Name", 2, "WWW",
                                            0, LVCFMT_LEFT, VTDT_STRING, -1));
    list.iFieldSize = sizeof(Rec::szName);
}

TEST(ImportStore, LineLimitCountsBlankLinesButNotSkippedOnes) {
    vtrtest::TempDir dir;
    std::string path = dir.File("limit.csv");
    struct Case {
        char const* text;
        int skip;
        bool ok;
        int rows;
    } cases[] = {
        {"1;a\r\n2;b\r\n", 0, true, 2},
        {"1;a\r\n2;b\r\n3;c\r\n", 0, false, 2},
        {"1;a\r\n\r\n2;b\r\n", 0, false, 1},
        {"head\r\nmore\r\n1;a\r\n2;b\r\n", 2, true, 2},
    };
    for (Case const& c : cases) {
        WriteFile(path, c.text);
        vtrtest::MsgBoxRecorder boxes;
        StoreHost host;
        DefineRec(host.list);
        host.list.SetImportMaxLines(2);
        EXPECT_EQ(c.ok, host.list.ImportCSV(path.c_str(), ';', c.skip, false, false, nullptr)) << c.text;
        EXPECT_EQ(c.rows, host.list.GetItemCount()) << c.text << ": rows before the limit stay";
        if (c.ok) {
            EXPECT_EQ(0u, boxes.count()) << c.text;
        } else {
            ASSERT_EQ(1u, boxes.count()) << c.text;
            EXPECT_NE(std::wstring::npos, boxes.last().text.find(L"A maximum of 2 data sets")) << c.text;
        }
    }
}

TEST(ImportStore, BadFieldAsksAndRetryGoesOnWhileCancelStops) {
    vtrtest::TempDir dir;
    std::string path = dir.File("bad.csv");
    WriteFile(path, "1;eins\r\nzwei;zwei\r\n3;drei\r\n");
    {
        vtrtest::MsgBoxRecorder boxes;
        boxes.Answer(IDRETRY);
        StoreHost host;
        DefineRec(host.list);
        ASSERT_TRUE(host.list.ImportCSV(path.c_str(), ';', 0, false, false, nullptr));
        ASSERT_EQ(1u, boxes.count());
        EXPECT_EQ(static_cast<unsigned>(MB_RETRYCANCEL | MB_ICONERROR), boxes.last().uFlags & 0xFF);
        EXPECT_EQ(L"Error", boxes.last().title);
        EXPECT_NE(std::wstring::npos, boxes.last().text.find(L"Invalid numerical value in line 2. 'zwei'"))
            << vtrtest::Utf8(boxes.last().text);
        ASSERT_EQ(3, host.list.GetItemCount()) << "the row with the bad field is added all the same";
        host.list.SetSortMode(1, false);
        EXPECT_STREQ("zwei", host.list.GetCellText(2, 1));
        EXPECT_EQ(0, Int(host.list, 2, 0));
    }
    {
        vtrtest::MsgBoxRecorder boxes;
        boxes.Answer(IDCANCEL);
        StoreHost host;
        DefineRec(host.list);
        EXPECT_FALSE(host.list.ImportCSV(path.c_str(), ';', 0, false, false, nullptr));
        EXPECT_EQ(1u, boxes.count()) << "no further message after the answer";
        ASSERT_EQ(1, host.list.GetItemCount()) << "earlier rows stay";
        EXPECT_STREQ("eins", host.list.GetCellText(0, 1));
    }
    StoreHost fresh;
    EXPECT_FALSE(fresh.list.ImportCSV(path.c_str(), ';', 0, false, false, nullptr))
        << "no structure, no import";
}

// Every type a structure can hold, with values that survive the trip through text.
struct AllTypes {
    int iLine;
    char szText[16];
    wchar_t wszText[16];
    int iInt;
    DWORD dwVal;
    long tTime;
    double dVal;
    SYSTEMTIME st;
    unsigned __int64 ullVal;
    WORD wVal;
};

class TypedStore : public ImportStore {
public:
    TypedStore() { iFieldSize = 16; }
};

void DefineAllTypes(TypedStore& list) {
    char const* date = NVGetDateTimeFormatString(NVDT_DATE, 0);
    char const* time = NVGetDateTimeFormatString(NVDT_TIME_SECONDS, 0);
    ASSERT_TRUE(list.DefineStructureAndCols(
        sizeof(AllTypes), offsetof(AllTypes, szText), "Text", 1, "W", 0, 0, VTDT_STRING,
        offsetof(AllTypes, wszText), "Wide", 2, "W", 0, 0, VTDT_WSTRING, offsetof(AllTypes, iInt), "Int", 3,
        "1", 0, 0, VTDT_int, offsetof(AllTypes, dwVal), "DWord", 4, "1", 0, 0, VTDT_DWORD,
        offsetof(AllTypes, tTime), "Time", 5, "1", 0, 0, VTDT_TIME_T, date, time, offsetof(AllTypes, dVal),
        "Double", 6, "1", 0, 0, VTDT_DOUBLE, "#3|1|0|,||1", offsetof(AllTypes, st), "Date", 7, "1", 0, 0,
        VTDT_SYSTEMTIME, date, static_cast<char const*>(nullptr), offsetof(AllTypes, ullVal), "QWord", 8, "1",
        0, 0, VTDT_QWORD, offsetof(AllTypes, wVal), "Word", 9, "1", 0, 0, VTDT_WORD, -1));
}

TEST(ImportStore, ExportThenImportGivesTheSameRecordsInBothEncodings) {
    NVSetCurCodePage(1252);
    vtrtest::TempDir dir;
    std::vector<AllTypes> recs(3);
    memset(recs.data(), 0, recs.size() * sizeof(AllTypes));
    strcpy(recs[0].szText, "a;\"b\"\xE4");
    wcscpy(recs[0].wszText, L"\u00c4rger \"x\"");
    recs[0].iInt = -2147483647;
    recs[0].dwVal = 4294967295u;
    recs[0].dVal = -1234.125;
    recs[0].ullVal = 18446744073709551614ull;
    recs[0].wVal = 65535;
    recs[1].iInt = 7;
    recs[1].dwVal = 1;
    recs[1].ullVal = 1;
    recs[1].dVal = EMPTY_DOUBLE;
    strcpy(recs[2].szText, "z");
    recs[2].dVal = 0.5;
    recs[2].ullVal = 5;
    SYSTEMTIME st{};
    st.wYear = 1960;
    st.wMonth = 12;
    st.wDay = 24;
    recs[0].st = st;
    recs[2].st = st;
    recs[2].st.wYear = 2037;
    for (int lang : {1031, 1033}) {
        NVSetCurrentLangID(static_cast<unsigned short>(lang));
        recs[0].tTime = String2DateTime(lang == 1031 ? "01.02.2006 13:19:14" : "02/01/2006 13:19:14");
        recs[2].tTime = 86400 * 365;
        lvtest::ListHost<TypedStore> src;
        DefineAllTypes(src.list);
        for (size_t i = 0; i < recs.size(); ++i)
            ASSERT_TRUE(src.list.AddRow(static_cast<LPARAM>(i), -1, &recs[i], false, false));
        for (bool bWide : {false, true}) {
            std::string path = dir.File(bWide ? "w.csv" : "a.csv");
            ASSERT_TRUE(bWide ? src.list.ExportCSVW(path.c_str(), L';', false, true, false)
                              : src.list.ExportCSV(path.c_str(), ';', false, true));
            lvtest::ListHost<TypedStore> dst;
            DefineAllTypes(dst.list);
            ASSERT_TRUE(dst.list.ImportCSV(path.c_str(), ';', 1, false, false, nullptr)) << path;
            ASSERT_EQ(3, dst.list.GetItemCount());
            for (int i = 0; i < 3; ++i) {
                void* p = nullptr;
                ASSERT_TRUE(dst.list.GetRowData(i, p));
                AllTypes got;
                memcpy(&got, p, sizeof got);
                got.iLine = 0;
                got.st.wDayOfWeek = recs[static_cast<size_t>(i)].st.wDayOfWeek;
                EXPECT_EQ(0, memcmp(&got, &recs[static_cast<size_t>(i)], sizeof got))
                    << "language " << lang << (bWide ? " wide" : " 8-bit") << ", row " << i << ": text '"
                    << got.szText << "' int " << got.iInt << " dword " << got.dwVal << " time " << got.tTime
                    << " double " << got.dVal << " year " << got.st.wYear << " qword " << got.ullVal
                    << " word " << got.wVal;
            }

            // Columns from the file: the types the values call for.
            lvtest::ListHost<TypedStore> found;
            ASSERT_TRUE(found.list.ImportCSV(path.c_str(), ';', 1, true, false, nullptr));
            std::vector<VTRBDataType> types;
            for (int c = 0; c < found.list.GetColCnt(); ++c)
                types.push_back(found.list.GetColDataType(c));
            VTRBDataType const eText = bWide ? VTDT_WSTRING : VTDT_STRING;
            // The empty second row turns the date and double columns into text.
            EXPECT_EQ((std::vector<VTRBDataType>{eText, eText, VTDT_int, VTDT_QWORD, eText, eText, eText,
                                                 VTDT_QWORD, VTDT_int}),
                      types)
                << "language " << lang << (bWide ? " wide" : " 8-bit");
        }
    }
}

class RecordingVirtual : public VTRBListViewVirtual {
public:
    std::vector<std::string> calls;
    void OnImportCSVField(int iLine, int iCol, char const* pszField) override {
        calls.push_back(std::to_string(iLine) + ":" + std::to_string(iCol) + "=" +
                        (pszField ? pszField : "<null>"));
        if (pszField && std::string(pszField) == "bad") {
            bool ok = false;
            Str2Val(const_cast<char*>(pszField), true, iLine, ok, false, false);
        }
    }
    void OnImportCSVRow(int iLine) override { calls.push_back("row " + std::to_string(iLine)); }
};

TEST(ImportStore, VirtualListHandsEveryFieldToItsHooks) {
    vtrtest::TempDir dir;
    std::string path = dir.File("virtual.csv");
    WriteFile(path, "a;b;c\r\n\r\nx;bad;z;extra\r\ny\r\n");
    lvtest::ListHost<RecordingVirtual> host(LVS_REPORT | LVS_OWNERDATA);
    ASSERT_TRUE(host.list.DefineCols("A", 1, "W", 0, 0, VTDT_STRING, "B", 2, "W", 0, 0x20000, VTDT_STRING,
                                     "C", 3, "W", 0, 0, VTDT_STRING, "D", 4, "W", 0, 0, VTDT_STRING,
                                     static_cast<char const*>(nullptr)));
    vtrtest::MsgBoxRecorder boxes;
    boxes.Answer(IDRETRY);
    ASSERT_TRUE(host.list.ImportCSV(path.c_str(), ';', 0, false, false, nullptr));
    EXPECT_EQ((std::vector<std::string>{"1:0=a", "1:1=<null>", "1:2=b", "1:3=c", "row 1", "3:0=x",
                                        "3:1=<null>", "3:2=bad", "3:3=z", "row 3", "4:0=y", "4:1=<null>",
                                        "4:2=<null>", "4:3=<null>", "row 4"}),
              host.list.calls);
    EXPECT_EQ(1u, boxes.count()) << "a bad field in a hook is asked about";
    EXPECT_EQ(3, static_cast<int>(SendMessageW(host.hList, LVM_GETITEMCOUNT, 0, 0)));
    EXPECT_STREQ(path.c_str(), host.list.GetImportCSVFile());
}

} // namespace
