// Writes exported files and the cells they must hold into test-output/csv below the working
// directory, for a reader that shares no code with the writer (check_csv_export.py).
#include "listview/ListFixture.h"

#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using lvtest::ListHost;

namespace {

using Table = std::vector<std::vector<std::wstring>>;

std::string Json(std::wstring const& text) {
    std::string out = "\"";
    for (wchar_t c : text) {
        if (c == L'"' || c == L'\\') {
            out.push_back('\\');
            out.push_back(static_cast<char>(c));
        } else if (c < 0x20 || c > 0x7E) {
            char buf[8];
            snprintf(buf, sizeof buf, "\\u%04x", static_cast<unsigned>(c));
            out += buf;
        } else {
            out.push_back(static_cast<char>(c));
        }
    }
    return out + "\"";
}

std::string Json(Table const& rows) {
    std::string out = "[";
    for (size_t r = 0; r < rows.size(); ++r) {
        out += r ? ",\n    [" : "\n    [";
        for (size_t c = 0; c < rows[r].size(); ++c)
            out += (c ? ", " : "") + Json(rows[r][c]);
        out += "]";
    }
    return out + "]";
}

Table const kHeader = {{L"Col A", L"Col;B", L"Col \"C\"", L"Col\\D"}};
Table const kCodePageRows = {
    {L"He said \"hi\"", L"a;b,c|d", L"tab\there", L"back\\slash"},
    {L"line1\nline2", L"cr\rend", L"", L" lead and trail "},
    {L"caf\u00e9 \u00fc \u20ac", L"\"\"", L"\\n literal", L"x"},
};
Table const kWideOnlyRows = {
    {L"\u0141\u00f3d\u017a", L"\u65e5\u672c\u8a9e", L"\U0001F600", L"mixed \u00e9 \u0141"},
};

bool FillList(ListHost<>& h, Table const& rows) {
    if (!h.list.DefineCols(L"  Col A", 1, nullptr, 60, 0, VTDT_WSTRING, L"Col;B", 2, nullptr, 60, 0,
                           VTDT_WSTRING, L"Col \"C\" ", 3, nullptr, 60, 0, VTDT_WSTRING, L"Col\\D", 4,
                           nullptr, 60, 0, VTDT_WSTRING, nullptr))
        return false;
    for (size_t r = 0; r < rows.size(); ++r)
        if (!h.list.AddRow(static_cast<LPARAM>(r), -1, const_cast<wchar_t*>(rows[r][0].c_str()),
                           rows[r][1].c_str(), rows[r][2].c_str(), rows[r][3].c_str()))
            return false;
    return true;
}

} // namespace

TEST(CSVExport, FilesForAnIndependentReader) {
    CreateDirectoryA("test-output", nullptr);
    CreateDirectoryA("test-output\\csv", nullptr);
    std::string const dir = "test-output\\csv\\";
    std::string const cp = "cp" + std::to_string(NVGetCurCodePage());

    ListHost<> narrow;
    ASSERT_TRUE(FillList(narrow, kCodePageRows));
    Table wideRows = kCodePageRows;
    wideRows.insert(wideRows.end(), kWideOnlyRows.begin(), kWideOnlyRows.end());
    ListHost<> wide;
    ASSERT_TRUE(FillList(wide, wideRows));

    struct Out {
        char const* name;
        bool bWide;
        wchar_t cSep;
    };
    Out const outs[] = {{"semicolon.csv", false, L';'},
                        {"tab.csv", false, L'\t'},
                        {"comma_w.csv", true, L','},
                        {"tab_w.csv", true, L'\t'},
                        {"pipe_w.csv", true, L'|'}};
    std::string json = "{\"files\": [";
    for (size_t i = 0; i < sizeof outs / sizeof outs[0]; ++i) {
        Out const& o = outs[i];
        std::string const file = dir + o.name;
        Table expected = kHeader;
        if (o.bWide) {
            ASSERT_TRUE(wide.list.ExportCSVW(file.c_str(), o.cSep, false, true, false)) << o.name;
            expected.insert(expected.end(), wideRows.begin(), wideRows.end());
        } else {
            ASSERT_TRUE(narrow.list.ExportCSV(file.c_str(), static_cast<char>(o.cSep), false, true))
                << o.name;
            expected.insert(expected.end(), kCodePageRows.begin(), kCodePageRows.end());
        }
        json += std::string(i ? ",\n  " : "\n  ") + "{\"name\": \"" + o.name + "\", \"encoding\": \"" +
                (o.bWide ? std::string("utf-16") : cp) + "\", \"sep\": " + Json(std::wstring(1, o.cSep)) +
                ", \"rows\": " + Json(expected) + "}";
    }
    json += "\n]}\n";
    FILE* fp = fopen((dir + "expected.json").c_str(), "wb");
    ASSERT_NE(nullptr, fp);
    ASSERT_EQ(json.size(), fwrite(json.data(), 1, json.size(), fp));
    fclose(fp);
}
