// Independent cross-check: thousands of seeded random series, expanded on the host by
// python-dateutil's rrule (scripts/make_schedule_reference.py) and here by CreateTermine, must give
// the same begins. The script only writes patterns that map exactly onto a recurrence; the rules
// in which this library differs on purpose are tested in SeriesPatternTests and
// SeriesGenerationTests.
#include "ScheduleTestSupport.h"

#include <cstdio>
#include <fstream>
#include <sstream>

using namespace scheduletest;

namespace {

// The build folder as Wine sees it: the host's root is drive Z.
std::string ReferenceFile(char const* lpszName) {
    char szDir[MAX_PATH] = "";
    DWORD dwLen = GetEnvironmentVariableA("VTR_BUILD_DIR", szDir, sizeof szDir);
    if (dwLen == 0 || dwLen >= sizeof szDir)
        return "";
    std::string path = szDir;
    if (!path.empty() && path[0] == '/')
        path = "Z:" + path;
    path += "/reference/";
    path += lpszName;
    for (char& c : path)
        if (c == '/')
            c = '\\';
    return path;
}

struct Reference {
    int iLine;
    DlgScheduler::ScheduleDataExt sd;
    long tLimit;
    std::vector<long> begins;
};

bool ParseRecord(std::string const& line, Reference& ref) {
    std::istringstream in(line);
    long v[21];
    for (long& x : v)
        if (!(in >> x))
            return false;
    ScheduleData& sd = ref.sd;
    sd.bSeries = 1;
    sd.bFlags = SCHEDULE_FLAG_OBSERVE_RELEASE;
    sd.dwTimeZone = kZone;
    sd.bPattern = static_cast<BYTE>(v[0]);
    sd.bDailyMode = static_cast<BYTE>(v[1]);
    sd.wDayInterval = static_cast<WORD>(v[2]);
    sd.bWeekInterval = static_cast<BYTE>(v[3]);
    sd.bWeekDays = static_cast<BYTE>(v[4]);
    sd.bMonthlyMode = static_cast<BYTE>(v[5]);
    sd.bMonthDay = static_cast<BYTE>(v[6]);
    sd.bMonthInterval = static_cast<BYTE>(v[7]);
    sd.bMonthOrdinal = static_cast<BYTE>(v[8]);
    sd.bMonthDayKind = static_cast<BYTE>(v[9]);
    sd.bYearlyMode = static_cast<BYTE>(v[10]);
    sd.bYearDay = static_cast<BYTE>(v[11]);
    sd.bYearMonth = static_cast<BYTE>(v[12]);
    sd.bYearOrdinal = static_cast<BYTE>(v[13]);
    sd.bYearDayKind = static_cast<BYTE>(v[14]);
    sd.bEndMode = static_cast<BYTE>(v[15]);
    sd.wEndCount = static_cast<WORD>(v[16]);
    sd.tStart = v[17];
    sd.tEnd = v[18];
    sd.tSeriesStart = v[19];
    ref.tLimit = v[20];
    if (sd.bEndMode == SCHEDULE_END_DATE)
        sd.tSeriesEnd = ref.tLimit;
    int n = 0;
    if (!(in >> n) || n < 0)
        return false;
    ref.begins.resize(n);
    for (long& t : ref.begins)
        if (!(in >> t))
            return false;
    return true;
}

TEST_F(ScheduleTest, RandomSeriesAgreeWithIndependentRecurrenceExpansion) {
    std::string path = ReferenceFile("schedule_rrule.txt");
    ASSERT_FALSE(path.empty()) << "VTR_BUILD_DIR is not set";
    std::ifstream file(path);
    ASSERT_TRUE(file.is_open()) << "missing " << path
                                << ": run scripts/make-reference-data.sh <build>/reference";

    int iRecords = 0, iDates = 0, iMismatches = 0, iLine = 0;
    std::string line;
    while (std::getline(file, line)) {
        ++iLine;
        if (line.empty() || line[0] == '#')
            continue;
        Reference ref;
        ref.iLine = iLine;
        ASSERT_TRUE(ParseRecord(line, ref)) << "line " << iLine << " cannot be read";

        // The generation that the dialog's date list shows: the whole series, far in the past.
        NVSetNowOverride(86400);
        int iCurrent = -2;
        char szError[256] = "";
        bool bOk = DlgScheduler::CreateTermine(ref.sd, ref.tLimit, m_daTermine, iCurrent, szError,
                                               sizeof szError, nullptr, true);
        std::vector<long> begins;
        for (int i = 0; i < m_daTermine.GetCount(); ++i)
            begins.push_back(m_daTermine.Get(i)->tStart);
        ++iRecords;
        iDates += static_cast<int>(ref.begins.size());
        if (!bOk || begins != ref.begins) {
            if (++iMismatches <= 10)
                ADD_FAILURE() << "line " << iLine << ": " << line.substr(0, line.find(' ', 80)) << "\n  "
                              << (bOk ? "" : szError) << "\n  expected " << ref.begins.size() << ": "
                              << Show(ref.begins) << "\n  actual   " << begins.size() << ": " << Show(begins);
            continue;
        }
        EXPECT_EQ(ref.begins.empty() ? -1 : 0, iCurrent) << "line " << iLine;
    }
    EXPECT_EQ(0, iMismatches);
    EXPECT_GE(iRecords, 1000) << "the reference file is short";
    std::printf("rrule cross-check: %d records, %d dates compared, %d mismatches\n", iRecords, iDates,
                iMismatches);
}

} // namespace
