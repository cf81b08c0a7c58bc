// CSV export figures: ExportCSV and ExportCSVW of 100k rows x 10 mixed columns, against writing the
// same cell texts field by field with WriteCSVString / WriteCSVStringW.
//
// Run under Wine: cd build/bin && xvfb-run -a ../../scripts/wine-run.sh bench_csv.exe [cells-file]
// With a cells file the cell texts are also written there (UTF-8, fields split by 0x1F, records by
// 0x1E) for bench_csv_python.py; run_bench_csv.sh runs both.
#include "listview/VTRBListView.h"

#include "BenchSupport.h"

#include "NVLanguage.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

double FileMB(char const* name) {
    WIN32_FILE_ATTRIBUTE_DATA fa{};
    if (!GetFileAttributesExA(name, GetFileExInfoStandard, &fa))
        return 0;
    return (static_cast<double>(fa.nFileSizeHigh) * 4294967296.0 + fa.nFileSizeLow) / (1024.0 * 1024.0);
}

void Line(char const* figure, double value, char const* unit, double base, char const* baseline) {
    printf("%s: %.1f %s (ratio %.3f vs %s)\n", figure, value, unit, base > 0 ? value / base : 0.0, baseline);
    fflush(stdout);
}

// The cells the list points at: ten columns of mixed types.
struct Cells {
    std::vector<std::string> names, cities;
    std::vector<std::wstring> notes;
    std::vector<int> ints, lpints;
    std::vector<double> doubles;
    std::vector<unsigned long long> qwords;
    explicit Cells(size_t n) : names(n), cities(n), notes(n), ints(n), lpints(n), doubles(n), qwords(n) {
        std::mt19937 rng(42);
        char const* shows[] = {"Hamlet", "Faust", "Tosca", "Aida", "Carmen", "Nabucco", "Norma", "Lulu"};
        char const* places[] = {"Wien", "M\xfcnchen", "Z\xfcrich", "K\xf6ln", "Graz", "Linz"};
        wchar_t const* remarks[] = {L"Loge 3, \"Mitte\"", L"ohne Pause", L"Rang\\links",
                                    L"Zeile 1\nZeile 2",  L"Abo A; B",   L"\u00c9tage 2"};
        for (size_t i = 0; i < n; ++i) {
            names[i] = std::string(shows[rng() % 8]) + " " + std::to_string(rng() % 1000);
            cities[i] = places[rng() % 6];
            notes[i] = remarks[rng() % 6];
            ints[i] = static_cast<int>(rng() % 5000) - 100;
            lpints[i] = static_cast<int>(rng());
            doubles[i] = static_cast<double>(rng() % 10000000) / 100.0;
            qwords[i] = (static_cast<unsigned long long>(rng()) << 20) + i;
        }
    }
};

volatile LPARAM g_lFloorSink = 0;

// What no export of these rows can avoid: asking the control for each item's row (straight from its
// procedure, the cheapest way), and writing the file's bytes. Best of three, in seconds.
double ExportFloor(HWND hList, size_t n, char const* pszFile) {
    std::vector<char> bytes;
    if (FILE* in = fopen(pszFile, "rb")) {
        char chunk[65536];
        size_t got;
        while ((got = fread(chunk, 1, sizeof chunk, in)) > 0)
            bytes.insert(bytes.end(), chunk, chunk + got);
        fclose(in);
    }
    auto pfn = reinterpret_cast<WNDPROC>(GetClassLongPtrW(hList, GCLP_WNDPROC));
    double tFloor = 1e9;
    for (int round = 0; round < 3; ++round) {
        double const t0 = BenchNow();
        LPARAM sum = 0;
        for (int i = 0; i < static_cast<int>(n); ++i) {
            LVITEMW lvi{};
            lvi.mask = LVIF_PARAM;
            lvi.iItem = i;
            pfn(hList, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
            sum += lvi.lParam;
        }
        FILE* out = fopen("bench_csv_floor.csv", "wb");
        for (size_t at = 0; out && at < bytes.size(); at += 256 * 1024)
            fwrite(bytes.data() + at, 1, std::min<size_t>(256 * 1024, bytes.size() - at), out);
        if (out)
            fclose(out);
        tFloor = std::min(tFloor, BenchNow() - t0);
        g_lFloorSink += sum;
    }
    return tFloor;
}

} // namespace

int main(int argc, char** argv) {
    NVSetCurrentLangID(1033);
    HWND hHost = MakeBenchHost(L"VTRBenchCSVHost", false);
    HWND hList = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 800, 600, hHost,
                                 reinterpret_cast<HMENU>(1012), GetModuleHandleW(nullptr), nullptr);
    VTRBListView list;
    g_pBenchList = &list;
    list.Assign(hList);
    list.DefineCols("Name", 1, nullptr, 80, 0, VTDT_STRING, "City", 2, nullptr, 60, 0, VTDT_STRING, "Note", 3,
                    nullptr, 80, 0, VTDT_LPWSTR, "Qty", 4, nullptr, 40, 0, VTDT_int, "Price", 5, nullptr, 60,
                    0, VTDT_DOUBLE, "%.2f", "No", 6, nullptr, 60, 0, VTDT_DWORD, "Code", 7, nullptr, 40, 0,
                    VTDT_WORD, "Id", 8, nullptr, 80, 0, VTDT_QWORD, "Seat", 9, nullptr, 40, 0, VTDT_LPINT,
                    "Paid", 10, nullptr, 30, 0, VTDT_bool, nullptr);
    size_t const n = 100000;
    Cells cells(n);
    SendMessageW(hList, WM_SETREDRAW, FALSE, 0);
    for (size_t i = 0; i < n; ++i)
        list.AddRow(static_cast<LPARAM>(i), -1, const_cast<char*>(cells.names[i].c_str()),
                    cells.cities[i].c_str(), cells.notes[i].c_str(), cells.ints[i], &cells.doubles[i],
                    static_cast<unsigned>(i), static_cast<int>(i & 0xFFFF), &cells.qwords[i],
                    &cells.lpints[i], static_cast<int>(i & 1));
    int const cols = list.GetColCnt();

    if (argc > 1) {
        // The same texts for the Python writer.
        FILE* fp = fopen(argv[1], "wb");
        if (!fp)
            return 1;
        wchar_t buf[1100];
        for (int i = 0; i < static_cast<int>(n); ++i)
            for (int c = 0; c < cols; ++c) {
                list.GetCellTextFormated(i, c, buf, 1024);
                char out[4096];
                int const len = WideCharToMultiByte(CP_UTF8, 0, buf, -1, out, sizeof out, nullptr, nullptr);
                fwrite(out, 1, len > 0 ? static_cast<size_t>(len - 1) : 0, fp);
                fputc(c + 1 < cols ? 0x1F : 0x1E, fp);
            }
        fclose(fp);
    }

    // Best of three per side, alternating: the machine is shared.
    double tExport = 1e9, tPerField = 1e9, tExportW = 1e9, tPerFieldW = 1e9;
    wchar_t buf[1100];
    for (int round = 0; round < 3; ++round) {
        double t0 = BenchNow();
        list.ExportCSV("bench_csv_out.csv", ';', false, true);
        tExport = std::min(tExport, BenchNow() - t0);

        t0 = BenchNow();
        FILE* fp = fopen("bench_csv_field.csv", "w");
        for (int i = 0; i < static_cast<int>(n); ++i)
            for (int c = 0; c < cols; ++c) {
                list.GetCellTextFormated(i, c, buf, 1024);
                list.WriteCSVString(fp, buf, c + 1 < cols ? ';' : '\n');
            }
        fclose(fp);
        tPerField = std::min(tPerField, BenchNow() - t0);

        t0 = BenchNow();
        list.ExportCSVW("bench_csv_out_w.csv", L';', false, true, false);
        tExportW = std::min(tExportW, BenchNow() - t0);

        t0 = BenchNow();
        fp = _wfopen(L"bench_csv_field_w.csv", L"w, ccs=UNICODE");
        for (int i = 0; i < static_cast<int>(n); ++i)
            for (int c = 0; c < cols; ++c) {
                list.GetCellTextFormated(i, c, buf, 1024);
                list.WriteCSVStringW(fp, buf, c + 1 < cols ? L';' : L'\n');
            }
        fclose(fp);
        tPerFieldW = std::min(tPerFieldW, BenchNow() - t0);
    }
    // What no export of these rows can avoid: asking the control for each item's row (straight
    // from its procedure, the cheapest way), and writing the file's bytes.
    double const tFloor = ExportFloor(hList, n, "bench_csv_out.csv");
    double const tFloorW = ExportFloor(hList, n, "bench_csv_out_w.csv");
    double const mb = FileMB("bench_csv_out.csv"), mbField = FileMB("bench_csv_field.csv");
    double const mbW = FileMB("bench_csv_out_w.csv"), mbFieldW = FileMB("bench_csv_field_w.csv");
    Line("ExportCSV 100k rows x 10 mixed cols", mb / tExport, "MB/s", mbField / tPerField,
         "WriteCSVString per field");
    Line("ExportCSVW 100k rows x 10 mixed cols", mbW / tExportW, "MB/s", mbFieldW / tPerFieldW,
         "WriteCSVStringW per field");
    Line("Export floor, 100k rows read back and the ExportCSV file's bytes written", mb / tFloor, "MB/s",
         mb / tExport, "ExportCSV");
    Line("ExportW floor, 100k rows read back and the ExportCSVW file's bytes written", mbW / tFloorW, "MB/s",
         mbW / tExportW, "ExportCSVW");

    list.UnAssign();
    g_pBenchList = nullptr;
    DestroyWindow(hHost);
    return 0;
}
