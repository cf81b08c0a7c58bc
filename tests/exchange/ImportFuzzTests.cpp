// Hostile input for the import: seeded random files and mutations of valid ones. Every input must
// import or fail without crash, hang or a write outside the structure, and leave the list as a
// finished or a failed import does. VTR_FUZZ_COUNT and VTR_FUZZ_SEED choose the run; a failing input
// is named by seed and index, and the same pair gives the same bytes again.
#include "exchange/VTRCSVImportFields.h"
#include "exchange/VTRCSVImportReader.h"
#include "exchange/VTRCSVImportRows.h"
#include "exchange/VTRCSVImportTypes.h"
#include "harness/MsgBoxRecorder.h"
#include "listview/ListFixture.h"
#include "stores/VTRBListViewStoreData.h"

#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <psapi.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

class Rng {
public:
    explicit Rng(unsigned long long seed) : m_s(seed * 0x9E3779B97F4A7C15ULL + 0x2545F4914F6CDD1DULL) {
        Next();
    }
    unsigned long long Next() {
        m_s ^= m_s << 13;
        m_s ^= m_s >> 7;
        m_s ^= m_s << 17;
        return m_s;
    }
    size_t Below(size_t n) { return n ? static_cast<size_t>(Next() % n) : 0; }
    bool OneIn(size_t n) { return Below(n) == 0; }

private:
    unsigned long long m_s;
};

size_t const kGuard = 32;
unsigned char const kGuardByte = 0xA7;

// Each row block sits between guard bytes; a write outside the block shows when it is given back.
class GuardedStore : public VTRBListViewStoreData {
public:
    int iLive = 0;
    int iBroken = 0;
    int iFieldSize = 0;

    void* OnAllocRowData() override {
        size_t const cb = GetBlockSize();
        if (cb == 0)
            return nullptr;
        unsigned char* p = static_cast<unsigned char*>(malloc(cb + 2 * kGuard));
        if (!p)
            return nullptr;
        memset(p, kGuardByte, kGuard);
        memset(p + kGuard, 0x5C, cb);
        memset(p + kGuard + cb, kGuardByte, kGuard);
        memcpy(p, &cb, sizeof cb);
        ++iLive;
        return p + kGuard;
    }
    bool OnFreeRowData(void* pData) override {
        if (!pData)
            return false;
        unsigned char* p = static_cast<unsigned char*>(pData) - kGuard;
        size_t cb = 0;
        memcpy(&cb, p, sizeof cb);
        for (size_t i = sizeof cb; i < kGuard; ++i)
            if (p[i] != kGuardByte)
                ++iBroken;
        for (size_t i = 0; i < kGuard; ++i)
            if (p[kGuard + cb + i] != kGuardByte)
                ++iBroken;
        free(p);
        --iLive;
        return true;
    }
    int GetFieldSize(int) override { return iFieldSize; }
};

char const* const kNumbers[] = {
    "0",
    "-0",
    "007",
    "1",
    "-1",
    "2147483647",
    "2147483648",
    "-2147483648",
    "-2147483649",
    "4294967295",
    "4294967296",
    "65535",
    "65536",
    "18446744073709551614",
    "18446744073709551615",
    "18446744073709551616",
    "99999999999999999999",
    "123456789012345678901",
    "1,5",
    "1.5",
    "-0,0",
    "1e308",
    "1e309",
    "-1e-320",
    ",",
    "+",
    "-",
    " 12 ",
    "\t3\t",
    "1,2,3",
    "0x10",
    "nan",
    "inf",
    "12abc",
};
char const* const kDates[] = {
    "01.02.2006", "31.02.2006",          "01.01.1960", "29.02.2000",
    "29.02.1900", "18.01.2038 03:14:07", "19.01.2038", "01.01.1970 00:00:00",
    "32.13.2006", "01.02.2006 25:61:61", "1.2.06",     "..",
};

std::string RandomField(Rng& rng) {
    switch (rng.Below(6)) {
    case 0:
        return kNumbers[rng.Below(sizeof kNumbers / sizeof *kNumbers)];
    case 1:
        return kDates[rng.Below(sizeof kDates / sizeof *kDates)];
    case 2:
        return "";
    case 3: {
        std::string s = "\"";
        for (size_t i = rng.Below(12); i > 0; --i) {
            char const pool[] = "ab;,|\t\"\"\\n x\xE4\xC3\xA4";
            s.push_back(pool[rng.Below(sizeof pool - 1)]);
        }
        if (!rng.OneIn(8))
            s.push_back('"');
        return s;
    }
    default: {
        std::string s;
        for (size_t i = rng.Below(10); i > 0; --i)
            s.push_back(static_cast<char>('a' + rng.Below(26)));
        return s;
    }
    }
}

char const kSeps[] = {';', ',', '|', '\t'};

std::string RandomCSV(Rng& rng, char cSep) {
    std::string out;
    size_t const cols = rng.OneIn(1000) ? 1000 + rng.Below(1500) : 1 + rng.Below(6);
    size_t const rows = cols > 100 ? 2 : rng.Below(12);
    for (size_t r = 0; r < rows; ++r) {
        size_t n = rng.OneIn(4) ? rng.Below(cols + 2) : cols;
        for (size_t c = 0; c < n; ++c) {
            out += RandomField(rng);
            if (c + 1 < n || rng.OneIn(6))
                out.push_back(cSep);
        }
        char const* const ends[] = {"\r\n", "\n", "\r", "\n\r", "\r\r\n", "\n\n"};
        out += ends[rng.OneIn(3) ? rng.Below(6) : 0];
    }
    if (rng.OneIn(60)) {
        // Longer than any piece, and a field that long too.
        out += std::string(20480 + rng.Below(30000), rng.OneIn(2) ? 'x' : '7');
        out += "\r\n1;2\r\n";
    }
    return out;
}

std::string Encode(Rng& rng, std::string const& text) {
    switch (rng.Below(5)) {
    case 0:
    case 1:
        return text;
    case 2:
        return "\xEF\xBB\xBF" + text;
    default: {
        bool const bBE = rng.OneIn(2);
        std::string out = bBE ? "\xFE\xFF" : "\xFF\xFE";
        for (unsigned char c : text) {
            // Bytes taken as Latin-1: good enough for hostile UTF-16.
            out.push_back(static_cast<char>(bBE ? 0 : c));
            out.push_back(static_cast<char>(bBE ? c : 0));
        }
        return out;
    }
    }
}

void Mutate(Rng& rng, std::string& bytes) {
    for (size_t k = rng.Below(4); k > 0; --k) {
        size_t const pos = rng.Below(bytes.size() + 1);
        switch (rng.Below(9)) {
        case 0:
            bytes.resize(pos);
            break;
        case 1:
            bytes.insert(pos, 1, '\0');
            break;
        case 2:
            bytes.insert(pos, rng.OneIn(2) ? "\xFF\xFE" : "\xFE\xFF");
            break;
        case 3:
            bytes.insert(pos, "\xEF\xBB\xBF");
            break;
        case 4:
            if (pos < bytes.size())
                bytes[pos] = static_cast<char>(rng.Below(256));
            break;
        case 5:
            bytes.insert(pos, rng.OneIn(2) ? "\xC3" : "\xF0\x9F\x98");
            break;
        case 6:
            bytes.push_back('"');
            break;
        case 7:
            bytes.insert(pos, rng.OneIn(2) ? "\r" : "\n");
            break;
        default:
            if (!bytes.empty() && bytes.size() % 2 == 0)
                bytes.pop_back(); // odd length
            break;
        }
    }
}

std::string RandomBytes(Rng& rng) {
    std::string s(rng.Below(300), '\0');
    for (char& c : s)
        c = static_cast<char>(rng.OneIn(3) ? "\n\r;\"\0"[rng.Below(5)] : rng.Below(256));
    return s;
}

VTRBDataType const kTypes[] = {VTDT_STRING,         VTDT_LPSTR,        VTDT_int,        VTDT_DWORD,
                               VTDT_LPINT,          VTDT_TIME_T,       VTDT_LPTIME_T,   VTDT_DOUBLE,
                               VTDT_LPDOUBLE,       VTDT_int32_CUSTOM, VTDT_SYSTEMTIME, VTDT_LPSYSTEMTIME,
                               VTDT_WSTRING,        VTDT_LPWSTR,       VTDT_QWORD,      VTDT_WORD,
                               VTDT_DWORD_NOT_NULL, VTDT_CHECKBOX,     VTDT_bool};

// A structure of the caller's: fields one behind the other, the last ones maybe cut off by the
// structure's end, and a field size that may lie.
bool DefineRandomStructure(Rng& rng, GuardedStore& list) {
    int const cols = 1 + static_cast<int>(rng.Below(6));
    DynaArrayTpl<int, 0, 0> offsets;
    DynaArrayTpl<VTRBListViewCol, 0, 0> defs;
    int iOffset = static_cast<int>(rng.Below(5));
    for (int c = 0; c < cols; ++c) {
        VTRBListViewCol col{};
        col.lpszTitle = "c";
        col.lpszSample = "www";
        col.eType = kTypes[rng.Below(sizeof kTypes / sizeof *kTypes)];
        col.dwFlags = rng.OneIn(8) ? static_cast<unsigned long>(VTR_COLFMT_NOIMPORT) : 0UL;
        defs.Add(col);
        offsets.Add(iOffset);
        switch (col.eType) {
        case VTDT_STRING:
        case VTDT_WSTRING:
            iOffset += 1 + static_cast<int>(rng.Below(24));
            break;
        case VTDT_DOUBLE:
        case VTDT_QWORD:
        case VTDT_LPSTR:
        case VTDT_LPINT:
        case VTDT_LPTIME_T:
        case VTDT_LPDOUBLE:
        case VTDT_LPSYSTEMTIME:
        case VTDT_LPWSTR:
            iOffset += 8;
            break;
        case VTDT_SYSTEMTIME:
            iOffset += 16;
            break;
        default:
            iOffset += 4;
            break;
        }
    }
    int const size = rng.OneIn(4) ? 1 + static_cast<int>(rng.Below(static_cast<size_t>(iOffset)))
                                  : iOffset + static_cast<int>(rng.Below(8));
    list.iFieldSize =
        rng.OneIn(3) ? static_cast<int>(rng.Below(100000)) - 10 : static_cast<int>(rng.Below(40));
    return list.DefineStructure(static_cast<unsigned>(size), offsets) && list.DefineCols(defs);
}

// Lines the row pass will see: the oracle for the row count of a finished import.
int DataLines(std::string const& bytes, VTRCSVEncoding enc, size_t piece, int skip) {
    VTRCSVMemorySource src(bytes.data(), bytes.size());
    VTRCSVLineReader reader(src, enc, piece);
    int n = 0;
    std::wstring line;
    while (reader.ReadLine(line))
        if (!line.empty()) {
            if (skip > 0)
                --skip;
            else
                ++n;
        }
    return n;
}

// The engine without a list: columns from the scan, rows converted into one guarded structure,
// bad fields answered alternately. Most inputs go this way, since a real list costs milliseconds.
struct EngineRun : VTRCSVRowSink {
    std::vector<VTRCSVLayoutCol> cols;
    std::vector<unsigned char> buf;
    unsigned int uSize = 0;
    int rows = 0;
    unsigned long long questions = 0;
    bool bRetry = true;
    std::string narrow;
    std::wstring wide;

    int GetColCount() override { return static_cast<int>(cols.size()); }
    bool IsColImported(int) override { return true; }
    void OnEmptyRow() override { ++rows; }
    void OnBeginRow(int iLine) override {
        memset(buf.data() + kGuard, 0, uSize);
        if (uSize >= 4)
            memcpy(buf.data() + kGuard, &iLine, 4);
    }
    void OnField(int iLine, int iCol, char* psz8, wchar_t* pszW) override {
        VTRCSVLayoutCol const& c = cols[static_cast<size_t>(iCol)];
        unsigned int const uOff = static_cast<unsigned int>(c.iOffset);
        if (uOff >= uSize)
            return;
        unsigned int const uRoom = static_cast<unsigned int>(c.iRoom) < uSize - uOff
                                       ? static_cast<unsigned int>(c.iRoom)
                                       : uSize - uOff;
        int const iText = c.eType == VTDT_WSTRING ? c.iRoom / 2 : c.iRoom;
        VTRCSVConvertField(c.eType, buf.data() + kGuard + uOff, uRoom, iText, psz8, pszW, iLine, narrow,
                           wide);
    }
    void OnEndRow(int, char const*) override { ++rows; }
    bool OnBadField(NVThrowData const&) override {
        ++questions;
        bRetry = !bRetry;
        return !bRetry;
    }
    bool GuardsIntact() const {
        for (size_t i = 0; i < kGuard; ++i)
            if (buf[i] != kGuardByte || buf[kGuard + uSize + i] != kGuardByte)
                return false;
        return true;
    }

    // True when the import finished.
    bool Import(std::string const& bytes, VTRCSVEncoding enc, char cSep, int skip, bool bEmptyRow,
                char const* numberTitle, signed char minWidth, bool bForce, int extra, int maxLines) {
        VTRCSVMemorySource src(bytes.data(), bytes.size());
        VTRCSVLineReader reader(src, enc, 20479);
        VTRCSVTypeScan scan(reader.IsWide(), cSep, skip, minWidth, bForce, numberTitle);
        scan.Scan(reader);
        uSize = static_cast<unsigned int>(scan.Layout(cols) + extra);
        buf.assign(uSize + 2 * kGuard, kGuardByte);
        rows = 0;
        if (cols.empty())
            return false;
        reader.Rewind();
        VTRCSVRowParams params;
        params.cSep = cSep;
        params.iSkipLines = skip;
        params.bAddEmptyRow = bEmptyRow;
        params.iMaxLines = maxLines;
        params.iFirstCol = scan.HasNumberCol() ? 1 : 0;
        try {
            VTRCSVReadRows(reader, params, *this);
        } catch (NVThrowData const&) {
            return false;
        }
        return true;
    }
};

// The process's committed memory: a run of many inputs must not keep growing it.
size_t CommittedBytes() {
    PROCESS_MEMORY_COUNTERS pmc{};
    pmc.cb = sizeof pmc;
    return K32GetProcessMemoryInfo(GetCurrentProcess(), &pmc, sizeof pmc) ? pmc.PagefileUsage : 0;
}

unsigned long long EnvNumber(char const* name, unsigned long long dflt) {
    char const* v = getenv(name);
    return v && *v ? strtoull(v, nullptr, 0) : dflt;
}

TEST(ImportFuzz, HostileInputNeverHurtsTheList) {
    unsigned long long const count = EnvNumber("VTR_FUZZ_COUNT", 20000);
    unsigned long long const seed = EnvNumber("VTR_FUZZ_SEED", 20261123);
    // To replay one input: VTR_FUZZ_FIRST=<index> VTR_FUZZ_COUNT=1; VTR_FUZZ_TRACE=1 names each input.
    unsigned long long const first = EnvNumber("VTR_FUZZ_FIRST", 0);
    bool const bTrace = EnvNumber("VTR_FUZZ_TRACE", 0) != 0;
    NVSetCurCodePage(1252);
    lvtest::ListHost<GuardedStore> host;
    NVSetCurrentLangID(1031);
    vtrtest::TempDir dir;
    std::string const filePath = dir.File("fuzz.csv");

    // A hang shows as no progress for half a minute: name the input and end the run.
    std::atomic<unsigned long long> current{0};
    std::atomic<bool> done{false};
    std::thread watchdog([&] {
        unsigned long long last = ~0ULL;
        int still = 0;
        while (!done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            unsigned long long now = current;
            still = now == last ? still + 1 : 0;
            last = now;
            if (still > 150) {
                fprintf(stderr, "import hangs at input %llu of seed %llu\n", now, seed);
                fflush(stderr);
                TerminateProcess(GetCurrentProcess(), 3);
            }
        }
    });

    auto const start = std::chrono::steady_clock::now();
    std::unique_ptr<vtrtest::MsgBoxRecorder> boxes;
    EngineRun engine;
    unsigned long long failed = 0, questions = 0, brokenInputs = 0;
    size_t memAfterWarmUp = 0;
    unsigned long long const kWarmUp = 2000;
    for (unsigned long long i = first; i < first + count; ++i) {
        current = i;
        if (i - first == kWarmUp)
            memAfterWarmUp = CommittedBytes();
        if ((i - first) % 100000 == 0 && i > first) {
            fprintf(stderr, "fuzz progress: %llu inputs\n", i - first);
            fflush(stderr);
        }
        if (bTrace) {
            fprintf(stderr, "input %llu\n", i);
            fflush(stderr);
        }
        if (!boxes || i % 500 == 0) {
            // Drops the record and the unused answers; the old recorder must go before the new one comes.
            boxes.reset();
            boxes.reset(new vtrtest::MsgBoxRecorder);
        }
        Rng rng(seed ^ (i * 0x100000001B3ULL));
        char const cSep = kSeps[rng.Below(4)];
        std::string bytes = rng.OneIn(10) ? RandomBytes(rng) : Encode(rng, RandomCSV(rng, cSep));
        if (rng.OneIn(2))
            Mutate(rng, bytes);
        GuardedStore& list = host.list;
        bool const bList = rng.OneIn(8);
        bool const bDefine = !bList || !rng.OneIn(4);
        int const skip = static_cast<int>(rng.Below(3));
        bool const bEmptyRow = rng.OneIn(5);
        char const* const numberTitle = rng.OneIn(5) ? "Nr" : nullptr;
        list.SetCSVMinColWidth(rng.OneIn(4) ? static_cast<int>(rng.Below(300)) - 20 : 0);
        list.SetForceStringColumns(rng.OneIn(8));
        list.SetCSVImpExtraSpace(rng.OneIn(4) ? static_cast<int>(rng.Below(64)) : 0);
        int const maxLines = rng.OneIn(5) ? static_cast<int>(rng.Below(8)) : 0;
        list.SetImportMaxLines(maxLines);
        VTRCSVEncoding const encEngine = VTRCSVEncodingFromMark(
            reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size() < 3 ? bytes.size() : 3);
        if (!bList) {
            signed char const minWidth = rng.OneIn(4) ? static_cast<signed char>(rng.Below(256)) : 0;
            bool const bForce = rng.OneIn(8);
            int const extra = rng.OneIn(4) ? static_cast<int>(rng.Below(64)) : 0;
            unsigned long long const q = engine.questions;
            bool const ok = engine.Import(bytes, encEngine, cSep, skip, bEmptyRow, numberTitle, minWidth,
                                          bForce, extra, maxLines);
            if (engine.questions > q)
                ++questions;
            if (!engine.GuardsIntact()) {
                ADD_FAILURE() << "input " << i << " of seed " << seed << " wrote outside the structure";
                if (++brokenInputs > 5)
                    break;
            }
            if (!ok) {
                ++failed;
            } else if (maxLines == 0) {
                int const expected = DataLines(bytes, encEngine, 20479, skip) + (bEmptyRow ? 1 : 0);
                if (engine.rows != expected) {
                    ADD_FAILURE() << "input " << i << " of seed " << seed << ": " << engine.rows
                                  << " rows, expected " << expected;
                    if (++brokenInputs > 5)
                        break;
                }
            }
            continue;
        }
        if (!bDefine) {
            list.Reset();
            if (!DefineRandomStructure(rng, list)) {
                ADD_FAILURE() << "input " << i << ": a random structure must be definable";
                continue;
            }
        }
        for (int a = 0; a < 3; ++a)
            boxes->Answer((i + static_cast<unsigned long long>(a)) % 2 ? IDCANCEL : IDRETRY);
        size_t const boxesBefore = boxes->count();
        char const sepBefore = list.GetImportSep();

        VTRCSVEncoding const enc = VTRCSVEncodingFromMark(
            reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size() < 3 ? bytes.size() : 3);
        if (bTrace) {
            fprintf(stderr,
                    "  %zu bytes, encoding %d, define %d, skip %d, empty row %d, number %d, limit %d\n",
                    bytes.size(), static_cast<int>(enc), bDefine, skip, bEmptyRow, numberTitle != nullptr,
                    maxLines);
            fflush(stderr);
        }
        bool ok;
        if (rng.OneIn(200)) {
            // Now and then through a real file, the byte-swapped copy included.
            std::ofstream(filePath, std::ios::binary | std::ios::trunc) << bytes;
            ok = list.ImportCSV(filePath.c_str(), cSep, skip, bDefine, bEmptyRow, numberTitle);
        } else {
            VTRCSVMemorySource src(bytes.data(), bytes.size());
            VTRCSVLineReader reader(src, enc, 20479);
            ok = list.ImportCSVLines(reader, cSep, skip, bDefine, bEmptyRow, numberTitle);
        }
        size_t const shown = boxes->count() - boxesBefore;
        for (size_t b = boxesBefore; b < boxes->count(); ++b)
            if ((boxes->boxes()[b].uFlags & MB_TYPEMASK) == MB_RETRYCANCEL)
                ++questions;

        int const rows = list.GetItemCount();
        bool bInputBad = false;
        if (list.iBroken) {
            ADD_FAILURE() << "input " << i << " of seed " << seed << " wrote outside a structure";
            list.iBroken = 0;
            bInputBad = true;
        }
        if (list.iLive != rows) {
            ADD_FAILURE() << "input " << i << " of seed " << seed << ": " << list.iLive << " blocks live for "
                          << rows << " rows";
            bInputBad = true;
        }
        if (ok) {
            EXPECT_EQ(cSep, list.GetImportSep()) << "input " << i;
            if (maxLines == 0) {
                size_t const piece = bDefine ? 20479 : list.GetBlockSize() + 16383;
                int const expected = DataLines(bytes, enc, piece, skip) + (bEmptyRow ? 1 : 0);
                if (rows != expected) {
                    ADD_FAILURE() << "input " << i << " of seed " << seed << ": " << rows
                                  << " rows, expected " << expected;
                    bInputBad = true;
                }
            }
        } else {
            ++failed;
            EXPECT_EQ(sepBefore, list.GetImportSep())
                << "input " << i << ": a failed import keeps the separator";
            if (bDefine && list.GetColCnt() == 0) {
                EXPECT_EQ(0, rows) << "input " << i << ": no columns, no rows";
            }
            EXPECT_GT(shown, 0u) << "input " << i << ": a failed import has told the user";
        }
        if (bInputBad) {
            ++brokenInputs;
            if (brokenInputs > 5)
                break;
        }
    }
    done = true;
    watchdog.join();
    host.list.Reset();
    EXPECT_EQ(0, host.list.iBroken) << "the last rows' blocks";
    EXPECT_EQ(0, host.list.iLive);
    if (count >= 5 * kWarmUp && memAfterWarmUp) {
        // What a list keeps after an import is freed by the next one: more inputs must not need
        // more memory.
        size_t const memAtEnd = CommittedBytes();
        EXPECT_LT(memAtEnd, memAfterWarmUp + (64u << 20))
            << "memory grew from " << (memAfterWarmUp >> 20) << " MB to " << (memAtEnd >> 20) << " MB";
    }
    double const secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    printf(
        "fuzz: %llu inputs, seed %llu, %.1f s, %.0f inputs per minute, %llu failed imports, %llu questions\n",
        count, seed, secs, secs > 0 ? count * 60.0 / secs : 0.0, failed, questions);
    if (count >= 1000) {
        // A replay of a few inputs need not reach them; a run of many must.
        EXPECT_GT(questions, 0u) << "the inputs must reach the question about a bad field";
        EXPECT_GT(failed, 0u) << "the inputs must reach the failures";
    }
}

} // namespace
