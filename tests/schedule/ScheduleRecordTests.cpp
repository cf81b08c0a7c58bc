// The record's stored layout and defaults, the comparison of records, the duration text.
#include "ScheduleTestSupport.h"

#include <cstddef>

using namespace scheduletest;

namespace {

class ScheduleRecord : public ScheduleTest {};

TEST_F(ScheduleRecord, StoredLayoutAndDefaultsOfTheDialogsRecord) {
    // Client modules store the record as it is: these offsets are the interface.
    EXPECT_EQ(4u, offsetof(ScheduleData, dwTimeZone));
    EXPECT_EQ(24u, offsetof(ScheduleData, bEndMode));
    EXPECT_EQ(25u, offsetof(ScheduleData, wEndCount));
    EXPECT_EQ(30u, offsetof(ScheduleData, wDayInterval));
    EXPECT_EQ(44u, offsetof(ScheduleData, tRestartDate));
    EXPECT_EQ(48u, offsetof(ScheduleData, wRestartIndex));

    DlgScheduler::ScheduleDataExt sd;
    EXPECT_EQ(50, sd.wStructSize);
    EXPECT_EQ(1, sd.wEndCount);
    EXPECT_EQ(1, sd.wDayInterval);
    EXPECT_EQ(1, sd.bWeekInterval);
    EXPECT_EQ(1, sd.bMonthDay);
    EXPECT_EQ(1, sd.bMonthInterval);
    EXPECT_EQ(1, sd.bYearDay);
    EXPECT_EQ(0, sd.bSeries | sd.bPattern | sd.bEndMode | sd.bFlags | sd.bWeekDays | sd.bMonthIntervalOrd);
    EXPECT_EQ(0, sd.tStart | sd.tSeriesStart | sd.tEventDate | sd.tSaleStart | sd.tRestartDate);
    EXPECT_EQ(0u, sd.dwGroupKey);
    EXPECT_STREQ("", sd.szDuration);
}

TEST_F(ScheduleRecord, ComparisonOrdersByItsStepsAndIgnoresFieldsNotInForce) {
    // Each case changes the second record of an equal pair; the sign is first minus second.
    struct Case {
        char const* lpszWhat;
        BYTE bPattern;
        void (*change)(ScheduleData& sd);
        int iSign;
    };
    static Case const s_cases[] = {
        {"zone", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.dwTimeZone = 7; }, 0},
        {"ordinal of the day-number mode", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.bMonthOrdinal = 3; },
         0},
        {"weekly fields of a monthly series", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.bWeekDays = 9; },
         0},
        {"restart fields", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.tRestartDate = 5; }, 0},
        {"day of tStart", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.tStart += 86400, sd.tEnd += 86400; },
         0},
        {"release bit", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.bFlags = 0; }, 1},
        {"duration", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.tEnd += 60; }, -1},
        {"time of day", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.tStart += 3600, sd.tEnd += 3600; }, -1},
        {"series start", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.tSeriesStart -= 86400; }, 1},
        {"end date", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.tSeriesEnd += 1; }, -1},
        {"end mode", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.bEndMode = SCHEDULE_END_COUNT; }, 1},
        {"day of the month", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.bMonthDay = 2; }, -1},
        {"month interval", SCHEDULE_MONTHLY, [](ScheduleData& sd) { sd.bMonthInterval = 3; }, -1},
        {"day interval", SCHEDULE_DAILY, [](ScheduleData& sd) { sd.wDayInterval = 4; }, -1},
        {"week days", SCHEDULE_WEEKLY, [](ScheduleData& sd) { sd.bWeekDays = 1; }, 1},
        {"yearly day", SCHEDULE_YEARLY, [](ScheduleData& sd) { sd.bYearDay = 9; }, -1},
        {"yearly ordinal in day mode", SCHEDULE_YEARLY, [](ScheduleData& sd) { sd.bYearOrdinal = 2; }, 0},
    };
    for (Case const& c : s_cases) {
        auto a = Series(c.bPattern, Local(2020, 1, 1), Local(2021, 1, 1));
        a.bWeekDays = 2;
        auto b = a;
        c.change(b);
        int r = DlgScheduler::CmpScheduleData(a, b);
        EXPECT_EQ(c.iSign, (r > 0) - (r < 0)) << c.lpszWhat << ": " << r;
        int s = DlgScheduler::CmpScheduleData(b, a);
        EXPECT_EQ(-c.iSign, (s > 0) - (s < 0)) << c.lpszWhat << " reversed";
    }

    // The end data in force: a count, not the end date; in the weekend mode the interval is not.
    auto a = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2021, 1, 1));
    a.bEndMode = SCHEDULE_END_COUNT;
    auto b = a;
    b.tSeriesEnd = 99;
    b.bDailyMode = a.bDailyMode = SCHEDULE_DAILY_WEEKEND;
    b.wDayInterval = 9;
    EXPECT_EQ(0, DlgScheduler::CmpScheduleData(a, b));
    b.wEndCount = 5;
    EXPECT_LT(DlgScheduler::CmpScheduleData(a, b), 0);

    // Two single dates at the same begin differ by their end alone; at different begins they are
    // equal when duration, time of day and the series fields agree.
    DlgScheduler::ScheduleDataExt s1, s2;
    s1.tStart = s2.tStart = Local(2020, 5, 1, 20);
    s1.tEnd = s2.tEnd = Local(2020, 5, 1, 22);
    s2.bPattern = SCHEDULE_YEARLY;
    EXPECT_EQ(0, DlgScheduler::CmpScheduleData(s1, s2))
        << "the pattern is not looked at when the begins agree";
    s2.tEnd += 60;
    EXPECT_LT(DlgScheduler::CmpScheduleData(s1, s2), 0);
    s2.tStart += 86400;
    s2.tEnd += 86400 - 60;
    EXPECT_LT(DlgScheduler::CmpScheduleData(s1, s2), 0) << "pattern 0 against 3";
    s2.bPattern = SCHEDULE_DAILY;
    EXPECT_EQ(0, DlgScheduler::CmpScheduleData(s1, s2));
}

TEST_F(ScheduleRecord, DurationTextInDaysHoursAndMinutes) {
    DlgScheduler::ScheduleDataExt sd;
    sd.dwTimeZone = kZone;
    sd.tStart = Local(2020, 3, 28, 20);
    sd.tEnd = Local(2020, 3, 29, 22, 3, 59);
    // The clocks move on 29 March: the duration is counted on the wall clock.
    DlgScheduler::SetDurationText(sd);
    EXPECT_STREQ("1:02:03", sd.szDuration);

    sd.tEnd = sd.tStart + 45 * 60;
    DlgScheduler::SetDurationText(sd);
    EXPECT_STREQ("0:00:45", sd.szDuration);

    sd.tEnd = Local(2021, 5, 2, 20);
    DlgScheduler::SetDurationText(sd);
    EXPECT_STREQ("400:00:00", sd.szDuration);

    sd.tEnd = sd.tStart - 1;
    DlgScheduler::SetDurationText(sd);
    EXPECT_STREQ("Negative", sd.szDuration);
    NVSetCurrentLangID(1031);
    DlgScheduler::SetDurationText(sd);
    EXPECT_STREQ("Negativ", sd.szDuration) << "the text follows the language";

    char szSmall[5];
    EXPECT_EQ(4, DlgScheduler::GetDurationText(Local(2020, 1, 1), Local(2020, 1, 2, 1), kZone, szSmall,
                                               sizeof szSmall));
    EXPECT_STREQ("1:01", szSmall);
}

} // namespace
