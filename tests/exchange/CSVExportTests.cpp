#include "harness/MsgBoxRecorder.h"
#include "listview/ListFixture.h"
#include "stores/VTRBListViewVirtual.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <set>
#include <string>
#include <vector>

using lvtest::ListHost;
using vtrtest::ReadFileBytes;
using vtrtest::TempDir;

namespace {

// Column 2 is a check box in rows 0 and 1, a tri-state box in rows 2 and 4, a radio button in row 5;
// rows whose lParam is in vetoed stay out of the file.
class ExportList : public lvtest::TestList {
public:
    std::set<LPARAM> vetoed;

protected:
    bool OnIsInCSVexport(int item) override {
        LPARAM lp = 0;
        return !GetLParam(item, lp) || vetoed.count(lp) == 0;
    }
    bool IsCheckBox(int item, int col) override { return col == 2 && (item == 0 || item == 1); }
    bool GetCheckBoxState(int item, int) override { return item == 0; }
    bool IsTriStateBox(int item, int col) override { return col == 2 && (item == 2 || item == 4); }
    unsigned int GetTriStateBoxState(int item, int) override { return item == 2 ? 3 : 0; }
    bool IsRadioButton(int item, int col) override { return col == 2 && item == 5; }
    bool GetRadioButtonState(int, int) override { return true; }
};

char* S(char const* text) {
    return const_cast<char*>(text);
}

// Rows: 0..2 ordinary, a sum row, a vetoed row (lParam 9), then a radio row.
void Fill(ListHost<ExportList>& h) {
    ASSERT_TRUE(h.list.DefineCols("  Name ", 1, nullptr, 80, 0, VTDT_STRING, "Note", 2, nullptr, 80, 0,
                                  VTDT_STRING, "Flag", 3, nullptr, 40, 0, VTDT_STRING, nullptr));
    ASSERT_TRUE(h.list.AddRow(0, -1, S("He said \"hi\""), S("a\\b"), S("x")));
    ASSERT_TRUE(h.list.AddRow(1, -1, S("line1\nline2\r"), S(""), S("x")));
    ASSERT_TRUE(h.list.AddRow(2, -1, S("caf\xe9"), nullptr, S("x")));
    ASSERT_TRUE(h.list.AddSumRow(3, -1, S("Total"), S("t"), S("t")));
    ASSERT_TRUE(h.list.AddRow(9, -1, S("vetoed"), S("v"), S("v")));
    ASSERT_TRUE(h.list.AddRow(5, -1, S("radio"), S("r;r"), S("x")));
    h.list.vetoed.insert(9);
}

std::string Wide(std::string const& ascii) {
    std::string out("\xFF\xFE", 2);
    for (unsigned char c : ascii) {
        out.push_back(static_cast<char>(c));
        out.push_back('\0');
    }
    return out;
}

} // namespace

TEST(CSVExport, BytesOfBothFormsWithHeaderEscapesHooksAndSkippedRows) {
    ListHost<ExportList> h;
    Fill(h);
    TempDir dir;
    std::string const header = "\"Name\";\"Note\";\"Flag\"\r\n";
    std::string const rows = "\"He said \"\"hi\"\"\";\"a\\\\b\";\"yes\"\r\n"
                             "\"line1\\nline2\\r\";\"\";\"no\"\r\n"
                             "\"caf\xe9\";\"\";\"Undefined\"\r\n"
                             "\"radio\";\"r;r\";\"yes\"\r\n";
    ASSERT_TRUE(h.list.ExportCSV(dir.File("a.csv").c_str(), ';', false, true));
    EXPECT_EQ(header + rows, ReadFileBytes(dir.File("a.csv")));
    ASSERT_TRUE(h.list.ExportCSV(dir.File("b.csv").c_str(), ';', false, false));
    EXPECT_EQ(rows, ReadFileBytes(dir.File("b.csv")));

    // UTF-16 LE with its mark; é is one unit, line ends are 0D 00 0A 00.
    ASSERT_TRUE(h.list.ExportCSVW(dir.File("w.csv").c_str(), L'\t', false, true, false));
    std::string expected =
        Wide("\"Name\"\t\"Note\"\t\"Flag\"\r\n\"He said \"\"hi\"\"\"\t\"a\\\\b\"\t\"yes\"\r\n"
             "\"line1\\nline2\\r\"\t\"\"\t\"no\"\r\n\"caf\xe9\"\t\"\"\t\"Undefined\"\r\n"
             "\"radio\"\t\"r;r\"\t\"yes\"\r\n");
    EXPECT_EQ(expected, ReadFileBytes(dir.File("w.csv")));

    // A tri-state box in an unknown state exports an empty text.
    h.list.vetoed.clear();
    ASSERT_TRUE(h.list.ExportCSV(dir.File("c.csv").c_str(), ',', false, false));
    std::string const all = ReadFileBytes(dir.File("c.csv"));
    EXPECT_NE(std::string::npos, all.find("\"vetoed\",\"v\",\"\"\r\n")) << all;
    EXPECT_NE(std::string::npos, all.find("\"radio\",\"r;r\",\"yes\"\r\n")) << all;
    EXPECT_EQ(std::string::npos, all.find("Total")) << all;
}

TEST(CSVExport, SelectedRowsAndTheColumnMask) {
    ListHost<ExportList> h;
    Fill(h);
    TempDir dir;
    // No selection: only the header.
    ASSERT_TRUE(h.list.ExportCSV(dir.File("s0.csv").c_str(), ';', true, true));
    EXPECT_EQ("\"Name\";\"Note\";\"Flag\"\r\n", ReadFileBytes(dir.File("s0.csv")));
    ASSERT_TRUE(h.list.SetCurSel(1));
    LVITEMW lvi{};
    lvi.stateMask = LVIS_SELECTED;
    lvi.state = LVIS_SELECTED;
    SendMessageW(h.hList, LVM_SETITEMSTATE, 3, reinterpret_cast<LPARAM>(&lvi)); // the sum row
    ASSERT_TRUE(h.list.ExportCSVW(dir.File("s1.csv").c_str(), L';', true, false, true));
    EXPECT_EQ(Wide("\"line1\\nline2\\r\";\"\";\"no\"\r\n"), ReadFileBytes(dir.File("s1.csv")));

    // Mask: columns 0 and 2 only, in index order even after the user dragged them.
    int order[3] = {2, 1, 0};
    SendMessageW(h.hList, LVM_SETCOLUMNORDERARRAY, 3, reinterpret_cast<LPARAM>(order));
    EXPECT_TRUE(h.list.IsExportColVisible(1));
    DynaArrayTpl<bool, 0, 0> cols;
    cols.Add(true);
    cols.Add(false);
    ASSERT_TRUE(h.list.SetExportCols(cols));
    EXPECT_FALSE(h.list.IsExportColVisible(1));
    EXPECT_TRUE(h.list.IsExportColVisible(2));
    EXPECT_EQ(0, h.list.GetNextExportCol(0));
    EXPECT_EQ(2, h.list.GetNextExportCol(1));
    EXPECT_EQ(7, h.list.GetNextExportCol(7));
    int iMask = 0;
    EXPECT_EQ(1, h.list.GetExportColIndexAndBitMask(10, iMask));
    EXPECT_EQ(4, iMask);
    DynaArrayTpl<bool, 0, 0> got;
    got.Add(false);
    ASSERT_TRUE(h.list.GetExportCols(got));
    ASSERT_EQ(3, got.GetCount());
    EXPECT_TRUE(*got.Get(0));
    EXPECT_FALSE(*got.Get(1));
    EXPECT_TRUE(*got.Get(2));
    EXPECT_TRUE(got.m_bValid);
    ASSERT_TRUE(h.list.ExportCSV(dir.File("m.csv").c_str(), '|', false, true));
    EXPECT_EQ("\"Name\"|\"Flag\"\r\n\"He said \"\"hi\"\"\"|\"yes\"\r\n\"line1\\nline2\\r\"|\"no\"\r\n"
              "\"caf\xe9\"|\"Undefined\"\r\n\"radio\"|\"yes\"\r\n",
              ReadFileBytes(dir.File("m.csv")));

    // No column left: an empty file, header or not.
    cols.Clear();
    for (int i = 0; i < 3; ++i)
        cols.Add(false);
    ASSERT_TRUE(h.list.SetExportCols(cols));
    EXPECT_EQ(3, h.list.GetNextExportCol(0));
    ASSERT_TRUE(h.list.ExportCSV(dir.File("none.csv").c_str(), ';', false, true));
    EXPECT_EQ("", ReadFileBytes(dir.File("none.csv")));
    ASSERT_TRUE(h.list.ExportCSVW(dir.File("nonew.csv").c_str(), L';', false, true, false));
    EXPECT_EQ("\xFF\xFE", ReadFileBytes(dir.File("nonew.csv")));

    // An empty array, like one of all true, removes the mask.
    cols.Clear();
    ASSERT_TRUE(h.list.SetExportCols(cols));
    EXPECT_TRUE(h.list.IsExportColVisible(1));
    EXPECT_EQ(1, h.list.GetNextExportCol(1));
}

TEST(CSVExport, FileThatCannotBeCreatedIsReportedWithItsName) {
    ListHost<ExportList> h;
    Fill(h);
    vtrtest::MsgBoxRecorder boxes;
    std::string const file = "C:\\no-such-folder-vtr\\out.csv";
    EXPECT_FALSE(h.list.ExportCSV(file.c_str(), ';', false, true));
    ASSERT_EQ(1u, boxes.count());
    EXPECT_EQ(L"Unable to generate file 'C:\\no-such-folder-vtr\\out.csv' .", boxes.last().text);
    EXPECT_FALSE(h.list.ExportCSVW(file.c_str(), L';', false, true, false));
    ASSERT_EQ(2u, boxes.count());
    EXPECT_EQ(L"Unable to generate file 'C:\\no-such-folder-vtr\\out.csv' .", boxes.last().text);
}

namespace {

class VirtualRows : public VTRBListViewVirtual {
public:
    void OnNeedText(int iRow, int iCol, wchar_t* pszBuf) override {
        swprintf(pszBuf, 1024, L"%d\"%d", iRow, iCol);
    }
    bool OnIsInCSVexport(int iRow) override { return iRow != 1; }
};

} // namespace

TEST(CSVExport, VirtualListWritesTheClientsTexts) {
    ListHost<VirtualRows> h(LVS_REPORT | LVS_OWNERDATA);
    ASSERT_TRUE(
        h.list.DefineCols("A", 1, nullptr, 60, 0, VTDT_STRING, "B", 2, nullptr, 60, 0, VTDT_STRING, nullptr));
    ASSERT_TRUE(h.list.SetItemCount(3));
    TempDir dir;
    ASSERT_TRUE(h.list.ExportCSV(dir.File("v.csv").c_str(), ';', false, true));
    EXPECT_EQ("\"A\";\"B\"\r\n\"0\"\"0\";\"0\"\"1\"\r\n\"2\"\"0\";\"2\"\"1\"\r\n",
              ReadFileBytes(dir.File("v.csv")));
}

TEST(CSVExport, TextFormatMembersAndSeparatorChoices) {
    auto take = [](char* p) {
        std::string s = p ? p : "(null)";
        free(p);
        return s;
    };
    EXPECT_EQ("\"\"", take(VTRBListView::ConvertToCSVString(nullptr)));
    EXPECT_EQ("\"\"\"\"", take(VTRBListView::ConvertToCSVString("\"")));
    wchar_t* w = VTRBListView::ConvertToCSVStringW(L"a\\\n");
    ASSERT_NE(nullptr, w);
    EXPECT_STREQ(L"\"a\\\\\\n\"", w);
    free(w);

    char field[32];
    char const* cursor = "\"ab\"cd;e";
    std::vector<std::string> fields;
    while (VTRBListView::ParseNextCSVField(cursor, field, ';'))
        fields.push_back(field);
    EXPECT_EQ((std::vector<std::string>{"ab", "cd", "e"}), fields);
    wchar_t wfield[32];
    wchar_t const* wcursor = L"a;;b";
    std::vector<std::wstring> wfields;
    while (VTRBListView::ParseNextCSVField(wcursor, wfield, L';'))
        wfields.push_back(wfield);
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"", L"b"}), wfields);

    ListHost<ExportList> h;
    TempDir dir;
    FILE* fp = fopen(dir.File("n.txt").c_str(), "wb");
    ASSERT_NE(nullptr, fp);
    EXPECT_TRUE(h.list.WriteCSVString(fp, "a\"b", ';'));
    EXPECT_TRUE(h.list.WriteCSVString(fp, L"\u00e9\u20ac", '\n'));
    fclose(fp);
    EXPECT_EQ("\"a\"\"b\";\"\xe9\x80\"\n", ReadFileBytes(dir.File("n.txt")));
    std::string const wname = dir.File("w.txt");
    fp = _wfopen(std::wstring(wname.begin(), wname.end()).c_str(), L"w, ccs=UNICODE");
    ASSERT_NE(nullptr, fp);
    EXPECT_TRUE(h.list.WriteCSVStringW(fp, L"\u0141", L'\n'));
    fclose(fp);
    EXPECT_EQ(std::string("\xFF\xFE\"\0\x41\x01\"\0\r\0\n\0", 12), ReadFileBytes(dir.File("w.txt")));

    HWND hCombo = h.dlg.AddControl(L"ComboBox", CBS_DROPDOWNLIST, 1100, 0, 0, 100, 200);
    VTRBListView::FillSepeatorCB(hCombo, 3);
    ASSERT_EQ(4, SendMessageW(hCombo, CB_GETCOUNT, 0, 0));
    EXPECT_EQ(3, SendMessageW(hCombo, CB_GETCURSEL, 0, 0));
    std::vector<LRESULT> data;
    std::vector<std::wstring> texts;
    for (int i = 0; i < 4; ++i) {
        data.push_back(SendMessageW(hCombo, CB_GETITEMDATA, i, 0));
        wchar_t buf[16] = L"";
        SendMessageW(hCombo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(buf));
        texts.push_back(buf);
    }
    EXPECT_EQ((std::vector<LRESULT>{59, 44, 124, 9}), data);
    EXPECT_EQ((std::vector<std::wstring>{L";", L",", L"|", L"<TAB>"}), texts);
}

TEST(CSVExport, LongCellsAreCutToTheBufferInTheCodePageForm) {
    ListHost<ExportList> h;
    std::string const longAscii(1500, 'a');
    std::string longMixed;
    for (int i = 0; i < 700; ++i)
        longMixed += "\xe9";
    ASSERT_TRUE(h.list.DefineCols("A", 1, nullptr, 60, 0, VTDT_STRING, nullptr));
    ASSERT_TRUE(h.list.AddRow(0, -1, S(longAscii.c_str())));
    ASSERT_TRUE(h.list.AddRow(1, -1, S(longMixed.c_str())));
    TempDir dir;
    ASSERT_TRUE(h.list.ExportCSV(dir.File("l.csv").c_str(), ';', false, false));
    std::string const bytes = ReadFileBytes(dir.File("l.csv"));
    size_t const firstEnd = bytes.find("\r\n");
    ASSERT_NE(std::string::npos, firstEnd);
    // Never more than the 1023 characters of a text buffer, never less than the whole short cell.
    EXPECT_GT(firstEnd, 2u);
    EXPECT_LE(firstEnd, 1023u + 2u);
    EXPECT_EQ("\"" + std::string(firstEnd - 2, 'a') + "\"", bytes.substr(0, firstEnd));
    EXPECT_EQ("\"" + longMixed + "\"\r\n", bytes.substr(firstEnd + 2));
}

namespace {

std::wstring Escaped(std::wstring const& text) {
    std::wstring out = L"\"";
    for (wchar_t c : text) {
        if (c == L'"' || c == L'\\')
            out += c;
        out += c;
    }
    return out + L"\"";
}

std::string Bytes(std::wstring const& text, bool bWide) {
    std::string out;
    for (wchar_t c : text) {
        out.push_back(static_cast<char>(c & 0xFF));
        if (bWide)
            out.push_back(static_cast<char>(c >> 8));
    }
    return out;
}

} // namespace

// The file is built in pieces of a few hundred kilobytes: rows and a single text longer than a piece
// must come out whole and in order.
TEST(CSVExport, FilesOfManyPiecesAndTextsLongerThanAPieceComeOutWhole) {
    ListHost<ExportList> h;
    ASSERT_TRUE(
        h.list.DefineCols("A", 1, nullptr, 60, 0, VTDT_LPWSTR, "B", 2, nullptr, 40, 0, VTDT_int, nullptr));
    std::wstring huge;
    for (int i = 0; i < 300000; ++i)
        huge += (i % 1000 == 999) ? L'"' : static_cast<wchar_t>(L'a' + i % 26);
    std::vector<std::wstring> notes(20000);
    SendMessageW(h.hList, WM_SETREDRAW, FALSE, 0);
    ASSERT_TRUE(h.list.AddRow(0, -1, const_cast<wchar_t*>(huge.c_str()), -7));
    for (size_t i = 0; i < notes.size(); ++i) {
        notes[i] = L"row " + std::to_wstring(i) + L" \\ \"x\"";
        ASSERT_TRUE(h.list.AddRow(static_cast<LPARAM>(i + 1), -1, const_cast<wchar_t*>(notes[i].c_str()),
                                  static_cast<int>(i)));
    }
    std::wstring wide = Escaped(huge) + L";\"-7\"\r\n",
                 narrow = Escaped(huge.substr(0, 1023)) + L";\"-7\"\r\n";
    for (size_t i = 0; i < notes.size(); ++i) {
        std::wstring const line = Escaped(notes[i]) + L";\"" + std::to_wstring(i) + L"\"\r\n";
        wide += line;
        narrow += line;
    }
    TempDir dir;
    ASSERT_TRUE(h.list.ExportCSVW(dir.File("w.csv").c_str(), L';', false, false, false));
    std::string const bytesW = ReadFileBytes(dir.File("w.csv"));
    EXPECT_GT(bytesW.size(), 3u * 256 * 1024);
    EXPECT_TRUE(bytesW == "\xFF\xFE" + Bytes(wide, true));
    ASSERT_TRUE(h.list.ExportCSV(dir.File("n.csv").c_str(), ';', false, false));
    std::string const bytes = ReadFileBytes(dir.File("n.csv"));
    EXPECT_GT(bytes.size(), 2u * 256 * 1024);
    EXPECT_TRUE(bytes == Bytes(narrow, false));
}
