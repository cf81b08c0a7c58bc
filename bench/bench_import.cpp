// CSV import speed: rows x 10 typed columns with type detection, into the structure store (a real
// list control) and into the owner-data list (hooks only), against Python's csv.reader over the same
// file (measured by bench/run_bench_import.sh and passed in) and against our own export of the rows.
//
//   bench_import.exe --make <file> <rows>       writes the file
//   bench_import.exe --run <file> <py MB/s>     imports it (and a file four times as long, <file>.4x)
#include "exchange/VTRCSVFormat.h"
#include "exchange/VTRCSVImportFields.h"
#include "exchange/VTRCSVImportRows.h"
#include "exchange/VTRCSVImportTypes.h"
#include "stores/VTRBListViewStoreData.h"
#include "stores/VTRBListViewVirtual.h"

#include "BenchSupport.h"

#include "NVDates.h"
#include "NVLanguage.h"

#include <windows.h>
#include <commctrl.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

double Seconds(std::chrono::steady_clock::time_point t0) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

long long FileSize(char const* path) {
    WIN32_FILE_ATTRIBUTE_DATA fad;
    if (!GetFileAttributesExA(path, GetFileExInfoStandard, &fad))
        return 0;
    return (static_cast<long long>(fad.nFileSizeHigh) << 32) | fad.nFileSizeLow;
}

bool MakeFile(char const* path, int rows) {
    FILE* fp = fopen(path, "wb");
    if (!fp)
        return false;
    fputs("Id;Name;Menge;Preis;Datum;Nummer;Ort;Code;Anteil;Notiz\r\n", fp);
    char const* const towns[] = {"Berlin", "M\xFCnchen", "Hamburg", "K\xF6ln", "Leipzig"};
    unsigned seed = 12345;
    for (int r = 0; r < rows; ++r) {
        seed = seed * 1103515245u + 12345u;
        unsigned v = seed >> 8;
        fprintf(fp,
                "%d;\"Kunde %u\";%u;%u,%02u;%02u.%02u.20%02u 1%u:%02u:00;%llu;%s;\"C-%05u\";;\"Text mit "
                "\"\"Zitat\"\"\"\r\n",
                r + 1, v % 100000, v % 1000, v % 5000, v % 100, 1 + v % 28, 1 + v % 12, 10 + v % 20, v % 10,
                v % 60, 5000000000ULL + v, towns[v % 5], v % 99999);
    }
    return fclose(fp) == 0;
}

class CountingVirtual : public VTRBListViewVirtual {
public:
    long long llFields = 0;
    long long llRows = 0;
    void OnImportCSVField(int, int, char const* psz) override {
        if (psz)
            ++llFields;
    }
    void OnImportCSVRow(int) override { ++llRows; }
};

// A store that converts every line but keeps none: the import without the control's insertion.
class DroppingStore : public VTRBListViewStoreData {
public:
    long long llLines = 0;
    bool PrepareCSVStruct(int, char const*, void*, LPARAM&) override {
        ++llLines;
        return false;
    }
};

// The engine's row pass without a list: each field converted into one structure by the layout.
struct ConvertSink : VTRCSVRowSink {
    std::vector<VTRCSVLayoutCol> cols;
    std::vector<unsigned char> block;
    std::string narrow;
    std::wstring wide;
    int GetColCount() override { return static_cast<int>(cols.size()); }
    bool IsColImported(int) override { return true; }
    void OnEmptyRow() override {}
    void OnBeginRow(int) override { memset(block.data(), 0, block.size()); }
    void OnField(int iLine, int iCol, char* psz8, wchar_t* pszW) override {
        VTRCSVLayoutCol const& c = cols[static_cast<size_t>(iCol)];
        VTRCSVConvertField(c.eType, block.data() + c.iOffset, static_cast<unsigned>(c.iRoom),
                           c.eType == VTDT_WSTRING ? c.iRoom / 2 : c.iRoom, psz8, pszW, iLine, narrow, wide);
    }
    void OnEndRow(int, char const*) override {}
    bool OnBadField(NVThrowData const&) override { return true; }
};

// Where the time of an import goes, step by step over the same file.
void Profile(char const* path, double mb) {
    FILE* fp = fopen(path, "rb");
    if (!fp)
        return;
    VTRCSVFileSource src(fp);
    auto t0 = std::chrono::steady_clock::now();
    {
        std::vector<char> buf(1 << 16);
        while (fread(buf.data(), 1, buf.size(), fp) > 0) {
        }
    }
    double const tRead = Seconds(t0);
    VTRCSVLineReader reader(src, VTRCSV_ANSI, VTRCSV_SCAN_LINE - 1);
    reader.Rewind();
    std::string line, field;
    long long lines = 0, fields = 0;
    t0 = std::chrono::steady_clock::now();
    while (reader.ReadLine(line))
        ++lines;
    double const tLines = Seconds(t0);
    reader.Rewind();
    t0 = std::chrono::steady_clock::now();
    while (reader.ReadLine(line)) {
        field.resize(line.size() + 1);
        char const* cursor = line.c_str();
        while (VTRParseNextCSVField(cursor, &field[0], ';'))
            ++fields;
    }
    double const tFields = Seconds(t0);
    reader.Rewind();
    VTRCSVTypeScan scan(false, ';', 1, 0, false, nullptr);
    t0 = std::chrono::steady_clock::now();
    scan.Scan(reader);
    double const tScan = Seconds(t0);
    ConvertSink sink;
    int const iEnd = scan.Layout(sink.cols);
    sink.block.assign(static_cast<size_t>(iEnd), 0);
    reader.Rewind();
    VTRCSVRowParams params;
    params.iSkipLines = 1;
    t0 = std::chrono::steady_clock::now();
    VTRCSVReadRows(reader, params, sink);
    double const tRows = Seconds(t0);
    fclose(fp);
    {
        // The single conversions the pass calls, 100000 times each.
        char date[] = "12.07.2015 13:45:00";
        char num[] = "123456";
        char dbl[] = "1234,56";
        char q[] = "5000123456";
        int const n = 100000;
        volatile long sink = 0;
        auto t = std::chrono::steady_clock::now();
        for (int i = 0; i < n; ++i)
            sink = sink + String2DateTime(date);
        double const tDate = Seconds(t);
        t = std::chrono::steady_clock::now();
        for (int i = 0; i < n; ++i)
            sink = sink + strtol(num, nullptr, 10);
        double const tLong = Seconds(t);
        t = std::chrono::steady_clock::now();
        for (int i = 0; i < n; ++i)
            sink = sink + (VTRCSVTypeScan::IsDouble(dbl) ? 1 : 0);
        double const tDbl = Seconds(t);
        t = std::chrono::steady_clock::now();
        for (int i = 0; i < n; ++i)
            sink = sink + static_cast<long>(_strtoui64(q, nullptr, 10));
        double const tQ = Seconds(t);
        t = std::chrono::steady_clock::now();
        for (int i = 0; i < n; ++i)
            sink = sink + (VTRCSVTypeScan::IsInteger(num) ? 1 : 0);
        double const tInt = Seconds(t);
        printf("profile: 100000 x String2DateTime %.3f s, strtol %.3f s, IsDouble %.3f s, _strtoui64 %.3f s, "
               "IsInteger %.3f s\n",
               tDate, tLong, tDbl, tQ, tInt);
    }
    printf("profile: read %.3f s, lines %.3f s, lines+fields %.3f s (%lld lines, %lld fields)\n", tRead,
           tLines, tFields, lines, fields);
    printf("profile: type scan pass %.3f s (%.1f MB/s), row pass with conversion %.3f s (%.1f MB/s)\n", tScan,
           mb / tScan, tRows, mb / tRows);
}

INT_PTR CALLBACK HostProc(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

HWND MakeHost() {
    struct {
        DLGTEMPLATE t;
        WORD menu, cls, title;
    } tpl{};
    tpl.t.style = WS_POPUP;
    tpl.t.cx = 300;
    tpl.t.cy = 200;
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &tpl.t, nullptr, HostProc, 0);
}

// Seconds of a store import with type detection; the list keeps the rows for the export after.
double ImportStore(HWND hList, VTRBListViewStoreData& list, char const* path, bool& ok) {
    list.Assign(hList);
    auto t0 = std::chrono::steady_clock::now();
    ok = list.ImportCSV(path, ';', 1, true, false, nullptr);
    return Seconds(t0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc >= 4 && strcmp(argv[1], "--make") == 0)
        return MakeFile(argv[2], atoi(argv[3])) ? 0 : 1;
    if (argc >= 4 && strcmp(argv[1], "--store") == 0) {
        // Experiment: the same store import repeated into fresh lists.
        INITCOMMONCONTROLSEX icc{sizeof icc, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&icc);
        NVSetCurrentLangID(1031);
        NVSetCurCodePage(1252);
        HWND hDlg = MakeHost();
        for (int i = 3; i < argc; ++i) {
            HWND h = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 400, 300, hDlg,
                                     nullptr, nullptr, nullptr);
            VTRBListViewStoreData st;
            bool ok = false;
            double t = ImportStore(h, st, argv[i], ok);
            printf("%s: %.2f s, %d rows\n", argv[i], t, st.GetItemCount());
            auto t0 = std::chrono::steady_clock::now();
            st.UnAssign();
            DestroyWindow(h);
            printf("  teardown %.2f s\n", Seconds(t0));
        }
        return 0;
    }
    if (argc < 4 || strcmp(argv[1], "--run") != 0) {
        fprintf(stderr, "usage: bench_import --make <file> <rows> | --run <file> <python MB/s>\n");
        return 2;
    }
    char const* path = argv[2];
    double const pyMBs = atof(argv[3]);
    std::string const path4 = std::string(path) + ".4x";
    NVSetCurrentLangID(1031);
    NVSetCurCodePage(1252);
    INITCOMMONCONTROLSEX icc{sizeof icc, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&icc);
    HWND hDlg = MakeHost();
    double const mb = FileSize(path) / 1e6;
    double const mb4 = FileSize(path4.c_str()) / 1e6;
    if (!hDlg || mb <= 0) {
        fprintf(stderr, "no host window or no file\n");
        return 1;
    }

    // Owner-data list: detection and every field to the hooks, no control rows.
    HWND hVirt = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT | LVS_OWNERDATA, 0, 0, 400, 300,
                                 hDlg, nullptr, nullptr, nullptr);
    double tVirt = 0, tVirt4 = 0;
    {
        CountingVirtual virt;
        virt.Assign(hVirt);
        auto t0 = std::chrono::steady_clock::now();
        bool ok = virt.ImportCSV(path, ';', 1, true, false, nullptr);
        tVirt = Seconds(t0);
        if (!ok || virt.llRows == 0) {
            fprintf(stderr, "virtual import failed\n");
            return 1;
        }
        virt.UnAssign();
    }
    // Without the longer file its imports are left out: a failed import would wait for an answer.
    if (mb4 > 0) {
        CountingVirtual virt;
        virt.Assign(hVirt);
        auto t0 = std::chrono::steady_clock::now();
        virt.ImportCSV(path4.c_str(), ';', 1, true, false, nullptr);
        tVirt4 = Seconds(t0);
        virt.UnAssign();
    }

    // Structure store: detection, structure, one control row per line.
    HWND hList = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 400, 300, hDlg, nullptr,
                                 nullptr, nullptr);
    VTRBListViewStoreData store;
    bool ok = false;
    double const tStore = ImportStore(hList, store, path, ok);
    if (!ok) {
        fprintf(stderr, "store import failed\n");
        return 1;
    }
    int const rows = store.GetItemCount();
    std::string const out = std::string(path) + ".export.csv";
    auto t0 = std::chrono::steady_clock::now();
    bool const exported = store.ExportCSV(out.c_str(), ';', false, true);
    double const tExport = Seconds(t0);
    double const mbOut = FileSize(out.c_str()) / 1e6;
    DeleteFileA(out.c_str());
    store.UnAssign();

    HWND hList4 = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 400, 300, hDlg, nullptr,
                                  nullptr, nullptr);
    VTRBListViewStoreData store4;
    bool ok4 = false;
    double const tStore4 = mb4 > 0 ? ImportStore(hList4, store4, path4.c_str(), ok4) : 0;
    store4.UnAssign();

    // The same import with every row dropped before insertion: the control's share is the difference.
    HWND hListD = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 400, 300, hDlg, nullptr,
                                  nullptr, nullptr);
    DroppingStore dropping;
    bool okD = false;
    double const tDrop = ImportStore(hListD, dropping, path, okD);
    dropping.UnAssign();
    // The floor of any import into a list control: inserting as many callback items into a bare
    // control, redraw off, and nothing else.
    HWND hBare = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 400, 300, hDlg, nullptr,
                                 nullptr, nullptr);
    AddBareColumns(hBare);
    SendMessageW(hBare, WM_SETREDRAW, FALSE, 0);
    t0 = std::chrono::steady_clock::now();
    for (int i = 0; i < rows; ++i)
        InsertCallbackItem(hBare, i);
    double const tBare = Seconds(t0);
    DestroyWindow(hBare);
    if (getenv("VTR_BENCH_PROFILE"))
        Profile(path, mb);

    double const virtMBs = mb / tVirt;
    double const storeMBs = mb / tStore;
    printf("rows: %d x 10 columns, %.1f MB\n", rows, mb);
    printf("virtual list import with type detection: %.1f MB/s (ratio %.2f vs Python csv.reader %.1f MB/s)\n",
           virtMBs, pyMBs > 0 ? virtMBs / pyMBs : 0.0, pyMBs);
    printf(
        "structure store import with type detection: %.1f MB/s (ratio %.2f vs Python csv.reader %.1f MB/s)\n",
        storeMBs, pyMBs > 0 ? storeMBs / pyMBs : 0.0, pyMBs);
    if (exported)
        printf("structure store import: %.1f MB/s (ratio %.2f vs our ExportCSV of the same rows %.1f MB/s)\n",
               storeMBs, storeMBs / (mbOut / tExport), mbOut / tExport);
    if (okD)
        printf("structure store import without inserting rows: %.1f MB/s (ratio %.2f vs Python csv.reader "
               "%.1f MB/s; insertion into the control %.2f of %.2f s)\n",
               mb / tDrop, pyMBs > 0 ? mb / tDrop / pyMBs : 0.0, pyMBs, tStore - tDrop, tStore);
    printf("floor: inserting %d bare callback items alone: %.1f MB/s of this file (ratio %.2f vs Python "
           "csv.reader %.1f MB/s)\n",
           rows, mb / tBare, pyMBs > 0 ? mb / tBare / pyMBs : 0.0, pyMBs);
    if (mb4 > 0) {
        printf("virtual list import of 4x the rows: %.2f s (ratio %.2f vs 1x %.2f s, ideal 4)\n", tVirt4,
               tVirt4 / tVirt, tVirt);
        if (ok4)
            printf("structure store import of 4x the rows: %.2f s (ratio %.2f vs 1x %.2f s, ideal 4)\n",
                   tStore4, tStore4 / tStore, tStore);
    }
    DestroyWindow(hDlg);
    return 0;
}
