// Shared set-up of the date series tests: a known zone, a pinned "now", records and expectations.
#pragma once

#include "schedule/DlgScheduler.h"

#include "NVDates.h"
#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace scheduletest {

// Zone 1 is installed with the rules of Central Europe (CET, CEST from the last Sunday of March to
// the last Sunday of October), so that results never depend on the host's zone.
constexpr unsigned long kZone = 1;

inline TIME_ZONE_INFORMATION CentralEurope() {
    TIME_ZONE_INFORMATION tzi{};
    tzi.Bias = -60;
    tzi.StandardDate.wMonth = 10;
    tzi.StandardDate.wDay = 5; // last
    tzi.StandardDate.wHour = 3;
    tzi.DaylightDate.wMonth = 3;
    tzi.DaylightDate.wDay = 5;
    tzi.DaylightDate.wHour = 2;
    tzi.DaylightBias = -60;
    return tzi;
}

// Seconds since 1970 of a UTC calendar time, computed without the library.
inline long long UtcSeconds(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
    y -= mo <= 2;
    long long era = (y >= 0 ? y : y - 399) / 400;
    long long yoe = y - era * 400;
    long long doy = (153 * (mo + (mo > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    long long days = era * 146097 + doe - 719468;
    return days * 86400 + h * 3600 + mi * 60 + s;
}

// Last Sunday of March or October (both have 31 days).
inline int LastSundayOf(int y, int mo) {
    long long days = UtcSeconds(y, mo, 31) / 86400;
    int dow = static_cast<int>((days + 4) % 7); // 1.1.1970 was a Thursday
    return 31 - dow;
}

// A local time of the test zone as seconds, by the rule that summer time runs from 01:00 UTC on the
// last Sunday of March to 01:00 UTC on the last Sunday of October. The oracle of the tests.
inline long Local(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
    long long t = UtcSeconds(y, mo, d, h, mi, s) - 3600;
    long long summerFrom = UtcSeconds(y, 3, LastSundayOf(y, 3), 1);
    long long summerTo = UtcSeconds(y, 10, LastSundayOf(y, 10), 1);
    if (t - 3600 >= summerFrom && t - 3600 < summerTo)
        t -= 3600;
    return static_cast<long>(t);
}

class ScheduleTest : public ::testing::Test {
protected:
    void SetUp() override {
        TIME_ZONE_INFORMATION tzi = CentralEurope();
        ASSERT_TRUE(NVSetTimeZone(kZone, &tzi));
        NVSetCurrentLangID(1033);
        NVSetNowOverride(Local(2020, 1, 1));
    }
    void TearDown() override {
        NVSetNowOverride(0);
        NVSetCurrentLangID(0); // the process language is free again
    }

    // A series in the test zone whose dates run from 20:00 to 22:00, released for generation,
    // ending on tSeriesEnd.
    static DlgScheduler::ScheduleDataExt Series(BYTE bPattern, long tSeriesStart, long tSeriesEnd) {
        DlgScheduler::ScheduleDataExt sd;
        sd.bSeries = 1;
        sd.bPattern = bPattern;
        sd.dwTimeZone = kZone;
        sd.tStart = Local(2019, 12, 2, 20);
        sd.tEnd = Local(2019, 12, 2, 22);
        sd.tSeriesStart = tSeriesStart;
        sd.bEndMode = SCHEDULE_END_DATE;
        sd.tSeriesEnd = tSeriesEnd;
        sd.bFlags = SCHEDULE_FLAG_OBSERVE_RELEASE;
        return sd;
    }

    // Runs a full generation that must succeed and returns the begins.
    std::vector<long> Begins(ScheduleData& sd, long tEventDate = 0) {
        int iCurrent = 0;
        char szError[256] = "";
        bool bOk = DlgScheduler::CreateTermine(sd, tEventDate, m_daTermine, iCurrent, szError, sizeof szError,
                                               nullptr, true);
        EXPECT_TRUE(bOk) << szError;
        m_iCurrent = iCurrent;
        std::vector<long> result;
        for (int i = 0; i < m_daTermine.GetCount(); ++i)
            result.push_back(m_daTermine.Get(i)->tStart);
        return result;
    }

    // The same days at 20:00 local, the begins the helper Series gives.
    static std::vector<long> At20(std::vector<std::vector<int>> const& days) {
        std::vector<long> result;
        for (auto const& d : days)
            result.push_back(Local(d[0], d[1], d[2], 20));
        return result;
    }

    DynaArrayTpl<ScheduleTermin, 0, 0> m_daTermine;
    int m_iCurrent = -2;
};

// Readable form of a list of times for failure messages.
inline std::string Show(std::vector<long> const& times) {
    std::string text;
    for (long t : times) {
        SYSTEMTIME st;
        Time_tToSystemTime(t, &st, kZone, false, nullptr, 999);
        char buf[40];
        wsprintfA(buf, "%02u.%02u.%04u %02u:%02u ", st.wDay, st.wMonth, st.wYear, st.wHour, st.wMinute);
        text += buf;
    }
    return text;
}

} // namespace scheduletest
