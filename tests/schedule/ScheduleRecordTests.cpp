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

    // Copied by value, the defaults describe one date a day.
    DlgScheduler::ScheduleDataExt copy = sd;
    copy.bSeries = 1;
    copy.bFlags = SCHEDULE_FLAG_OBSERVE_RELEASE;
    copy.dwTimeZone = kZone;
    copy.tStart = Local(2020, 1, 1, 10);
    copy.tEnd = Local(2020, 1, 1, 11);
    copy.tSeriesStart = Local(2020, 1, 1);
    copy.bEndMode = SCHEDULE_END_COUNT;
    copy.wEndCount = 3;
    EXPECT_EQ(3u, Begins(copy).size());
}

TEST_F(ScheduleRecord, ComparisonOrdersByItsStepsAndIgnoresFieldsNotInForce) {
    auto a = Series(SCHEDULE_MONTHLY, Local(2020, 1, 1), Local(2021, 1, 1));
    auto b = a;
    EXPECT_EQ(0, DlgScheduler::CmpScheduleData(a, b));

    // Fields that take no part: the zone, the ordinal of the day-number mode, the weekly fields.
    b.dwTimeZone = 7;
    b.bMonthlyMode = 0;
    b.bMonthOrdinal = 3;
    b.bWeekDays = 0x7F;
    b.tRestartDate = 12345;
    EXPECT_EQ(0, DlgScheduler::CmpScheduleData(a, b));

    // Each step decides by its sign, first minus second.
    auto cmp = [](ScheduleData x, ScheduleData y) {
        int r = DlgScheduler::CmpScheduleData(x, y);
        int s = DlgScheduler::CmpScheduleData(y, x);
        EXPECT_EQ(r > 0, s < 0) << "antisymmetric";
        return r;
    };
    b = a;
    b.bFlags = 0;
    EXPECT_GT(cmp(a, b), 0) << "release bit";
    b = a;
    b.tEnd += 60;
    EXPECT_LT(cmp(a, b), 0) << "duration";
    b = a;
    b.tStart += 3600;
    b.tEnd += 3600;
    EXPECT_LT(cmp(a, b), 0) << "time of day";
    b = a;
    b.tStart += 86400;
    b.tEnd += 86400;
    EXPECT_EQ(0, cmp(a, b)) << "the day of tStart is not part of a series";
    b = a;
    b.tSeriesStart -= 86400;
    EXPECT_GT(cmp(a, b), 0) << "series start";
    b = a;
    b.tSeriesEnd += 1;
    EXPECT_LT(cmp(a, b), 0) << "end date";
    b = a;
    b.bMonthDay = 2;
    EXPECT_LT(cmp(a, b), 0) << "day of the month";
    b = a;
    b.bMonthInterval = 3;
    EXPECT_LT(cmp(a, b), 0) << "interval";
    b = a;
    b.bEndMode = SCHEDULE_END_COUNT;
    b.wEndCount = 5;
    EXPECT_GT(cmp(a, b), 0) << "end mode";
    a.bEndMode = SCHEDULE_END_COUNT;
    a.tSeriesEnd = 99;
    EXPECT_LT(cmp(a, b), 0) << "count, the end date being out of force";

    // Daily: the interval counts only in its own mode.
    a = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2021, 1, 1));
    b = a;
    b.wDayInterval = 4;
    EXPECT_LT(cmp(a, b), 0);
    a.bDailyMode = b.bDailyMode = SCHEDULE_DAILY_WEEKEND;
    EXPECT_EQ(0, cmp(a, b));

    // Yearly ordinal: ordinal, kind, month.
    a = Series(SCHEDULE_YEARLY, Local(2020, 1, 1), Local(2030, 1, 1));
    a.bYearlyMode = 1;
    b = a;
    b.bYearDay = 9;
    EXPECT_EQ(0, cmp(a, b));
    b.bYearMonth = 4;
    EXPECT_LT(cmp(a, b), 0);

    // Two single dates at the same begin differ by their end alone; at different begins they are
    // equal when duration and time of day agree.
    DlgScheduler::ScheduleDataExt s1, s2;
    s1.tStart = s2.tStart = Local(2020, 5, 1, 20);
    s1.tEnd = Local(2020, 5, 1, 22);
    s2.tEnd = Local(2020, 5, 1, 23);
    s2.bPattern = 3;
    EXPECT_LT(cmp(s1, s2), 0);
    s2.tEnd = s1.tEnd;
    EXPECT_EQ(0, cmp(s1, s2)) << "the pattern is not looked at when the begins agree";
    s2.tStart += 86400;
    s2.tEnd += 86400;
    EXPECT_LT(cmp(s1, s2), 0) << "series fields differ: pattern 0 against 3";
    s2.bPattern = 0;
    EXPECT_EQ(0, cmp(s1, s2));
    s1.bSeries = 1;
    EXPECT_GT(cmp(s1, s2), 0);
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

    char szSmall[5];
    EXPECT_EQ(4, DlgScheduler::GetDurationText(Local(2020, 1, 1), Local(2020, 1, 2, 1), kZone, szSmall,
                                               sizeof szSmall));
    EXPECT_STREQ("1:01", szSmall);
}

} // namespace
