// The four patterns with their modes, ordinals and day kinds, and the rules in which this library's
// series deliberately differ from an RFC 5545 recurrence of the same pattern.
#include "ScheduleTestSupport.h"

using namespace scheduletest;

namespace {

class SeriesPattern : public ScheduleTest {
protected:
    // The begin of the one date of a monthly ordinal series in the month that begins the series.
    long OrdinalDay(int y, int mo, BYTE bOrdinal, BYTE bKind) {
        auto sd = Series(SCHEDULE_MONTHLY, Local(y, mo, 1), 0);
        sd.bMonthlyMode = 1;
        sd.bMonthOrdinal = bOrdinal;
        sd.bMonthDayKind = bKind;
        sd.bEndMode = SCHEDULE_END_COUNT;
        sd.wEndCount = 1;
        auto begins = Begins(sd);
        return begins.size() == 1 ? begins[0] : -1;
    }
};

TEST_F(SeriesPattern, DailyEveryNthDayWorkdaysAndWeekends) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1, 15, 30), Local(2020, 1, 12));
    sd.wDayInterval = 3;
    auto begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 1}, {2020, 1, 4}, {2020, 1, 7}, {2020, 1, 10}}), begins) << Show(begins);
    ASSERT_EQ(4, m_daTermine.GetCount());
    EXPECT_EQ(Local(2020, 1, 1, 22), m_daTermine.Get(0)->tEnd);

    // Friday start: the weekend in between holds nothing, Monday to Friday all do.
    sd = Series(SCHEDULE_DAILY, Local(2020, 1, 3), Local(2020, 1, 14));
    sd.bDailyMode = SCHEDULE_DAILY_WORKDAYS;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 3},
                    {2020, 1, 6},
                    {2020, 1, 7},
                    {2020, 1, 8},
                    {2020, 1, 9},
                    {2020, 1, 10},
                    {2020, 1, 13}}),
              begins)
        << Show(begins);

    sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 1, 13));
    sd.bDailyMode = SCHEDULE_DAILY_WEEKEND;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 4}, {2020, 1, 5}, {2020, 1, 11}, {2020, 1, 12}}), begins) << Show(begins);
}

TEST_F(SeriesPattern, LocalTimeOfDayHoldsAcrossDaylightSavingChanges) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 3, 27), Local(2020, 3, 31));
    auto begins = Begins(sd);
    ASSERT_EQ(At20({{2020, 3, 27}, {2020, 3, 28}, {2020, 3, 29}, {2020, 3, 30}}), begins) << Show(begins);
    EXPECT_EQ(86400, begins[1] - begins[0]);
    EXPECT_EQ(82800, begins[2] - begins[1]) << "the night of 29 March is one hour short";
    for (int i = 0; i < m_daTermine.GetCount(); ++i)
        EXPECT_EQ(7200, m_daTermine.Get(i)->tEnd - m_daTermine.Get(i)->tStart) << i;

    sd = Series(SCHEDULE_WEEKLY, Local(2020, 10, 1), Local(2020, 11, 1));
    sd.bWeekDays = 0x01; // Sundays
    begins = Begins(sd);
    ASSERT_EQ(At20({{2020, 10, 4}, {2020, 10, 11}, {2020, 10, 18}, {2020, 10, 25}}), begins) << Show(begins);
    EXPECT_EQ(7 * 86400 + 3600, begins[3] - begins[2]) << "the clocks go back in the morning of 25 October";

    sd = Series(SCHEDULE_MONTHLY, Local(2020, 2, 1), Local(2020, 5, 1));
    sd.bMonthDay = 29;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 2, 29}, {2020, 3, 29}, {2020, 4, 29}}), begins) << Show(begins);
}

TEST_F(SeriesPattern, WeeklyWeeksRunFromMondayAndTheIntervalCountsWholeWeeks) {
    // Thursday start: the first week is the rest of the week of the start; with interval 2 the
    // dates lie in every second Monday-based week, not in days 8 to 14 after the start.
    auto sd = Series(SCHEDULE_WEEKLY, Local(2020, 1, 2, 23), Local(2020, 2, 1));
    sd.bWeekDays = 0x02 | 0x08 | 0x40 | 0x01; // Monday, Wednesday, Saturday, Sunday
    sd.bWeekInterval = 2;
    auto begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 4},
                    {2020, 1, 5},
                    {2020, 1, 13},
                    {2020, 1, 15},
                    {2020, 1, 18},
                    {2020, 1, 19},
                    {2020, 1, 27},
                    {2020, 1, 29}}),
              begins)
        << Show(begins);

    // A count ends in the middle of a week.
    sd = Series(SCHEDULE_WEEKLY, Local(2020, 1, 1), 0);
    sd.bWeekDays = 0x3E; // Monday to Friday
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 7;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 1},
                    {2020, 1, 2},
                    {2020, 1, 3},
                    {2020, 1, 6},
                    {2020, 1, 7},
                    {2020, 1, 8},
                    {2020, 1, 9}}),
              begins)
        << Show(begins);
}

TEST_F(SeriesPattern, MonthlyDayIsCappedByEachMonthAndTheMonthCarriesIntoTheYear) {
    auto sd = Series(SCHEDULE_MONTHLY, Local(2023, 1, 1), 0);
    sd.bMonthDay = 31;
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 4;
    auto begins = Begins(sd);
    EXPECT_EQ(At20({{2023, 1, 31}, {2023, 2, 28}, {2023, 3, 31}, {2023, 4, 30}}), begins) << Show(begins);

    sd.tSeriesStart = Local(2024, 2, 1);
    sd.bMonthInterval = 12;
    sd.wEndCount = 2;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2024, 2, 29}, {2025, 2, 28}}), begins) << Show(begins);

    sd.tSeriesStart = Local(2020, 11, 1);
    sd.bMonthDay = 15;
    sd.bMonthInterval = 3;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 11, 15}, {2021, 2, 15}}), begins) << Show(begins);

    // The 5th of the start month is over before the start: it is neither a date nor counted.
    sd.tSeriesStart = Local(2020, 1, 10);
    sd.bMonthDay = 5;
    sd.bMonthInterval = 1;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 2, 5}, {2020, 3, 5}}), begins) << Show(begins);
}

// Where a recurrence with BYDAY=SA,SU;BYSETPOS=n would count every weekend day, this library
// counts the later weekend ordinals by Saturdays: the second day of weekend is the next week's
// Saturday, not the Sunday after the first Saturday.
TEST_F(SeriesPattern, LaterWeekendOrdinalsCountSaturdaysUnlikeASetPosition) {
    std::vector<long> saturdayFirst, sundayFirst, wednesdayFirst;
    for (BYTE n = 0; n <= 3; ++n) {
        saturdayFirst.push_back(OrdinalDay(2020, 2, n, SCHEDULE_KIND_WEEKEND));
        sundayFirst.push_back(OrdinalDay(2020, 3, n, SCHEDULE_KIND_WEEKEND));
        wednesdayFirst.push_back(OrdinalDay(2020, 1, n, SCHEDULE_KIND_WEEKEND));
    }
    EXPECT_EQ(At20({{2020, 2, 1}, {2020, 2, 8}, {2020, 2, 15}, {2020, 2, 22}}), saturdayFirst)
        << Show(saturdayFirst);
    EXPECT_EQ(At20({{2020, 3, 1}, {2020, 3, 7}, {2020, 3, 14}, {2020, 3, 21}}), sundayFirst)
        << Show(sundayFirst);
    EXPECT_EQ(At20({{2020, 1, 4}, {2020, 1, 11}, {2020, 1, 18}, {2020, 1, 25}}), wednesdayFirst)
        << Show(wednesdayFirst);
    // The last ones: April 2020 ends on a Thursday, May 2020 on a Sunday (whose last workday, Saturday
    // counting as one, is the 30th).
    EXPECT_EQ(Local(2020, 4, 26, 20), OrdinalDay(2020, 4, SCHEDULE_ORD_LAST, SCHEDULE_KIND_WEEKEND));
    EXPECT_EQ(Local(2020, 5, 31, 20), OrdinalDay(2020, 5, SCHEDULE_ORD_LAST, SCHEDULE_KIND_WEEKEND));
    EXPECT_EQ(Local(2020, 5, 30, 20), OrdinalDay(2020, 5, SCHEDULE_ORD_LAST, SCHEDULE_KIND_WORKDAY));
    EXPECT_EQ(Local(2020, 1, 27, 20), OrdinalDay(2020, 1, 7, 1)) << "every ordinal from 4 on is the last";
}

// A recurrence of BYMONTH=2;BYMONTHDAY=29 has no date in common years; this library's day is capped
// by the month's length anew each year.
TEST_F(SeriesPattern, YearlyDayIsCappedInCommonYears) {
    auto sd = Series(SCHEDULE_YEARLY, Local(2023, 1, 1), 0);
    sd.bYearMonth = 1;
    sd.bYearDay = 29;
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 4;
    auto begins = Begins(sd);
    EXPECT_EQ(At20({{2023, 2, 28}, {2024, 2, 29}, {2025, 2, 28}, {2026, 2, 28}}), begins) << Show(begins);

    // The start lies after this year's date.
    sd.tSeriesStart = Local(2020, 6, 1);
    sd.bYearMonth = 2;
    sd.bYearDay = 15;
    sd.wEndCount = 2;
    begins = Begins(sd);
    EXPECT_EQ(At20({{2021, 3, 15}, {2022, 3, 15}}), begins) << Show(begins);
}

// A recurrence begins with its DTSTART and would drop a date of the first month that began the day
// before; this library keeps the part of it that runs into the series start day.
TEST_F(SeriesPattern, DateRunningIntoTheSeriesStartIsClippedToItsDay) {
    auto sd = Series(SCHEDULE_MONTHLY, Local(2020, 1, 2, 9), 0);
    sd.tStart = Local(2019, 12, 2, 22);
    sd.tEnd = Local(2019, 12, 3, 2);
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 2;
    auto begins = Begins(sd);
    ASSERT_EQ(2, m_daTermine.GetCount()) << Show(begins);
    EXPECT_EQ(Local(2020, 1, 2), m_daTermine.Get(0)->tStart);
    EXPECT_EQ(Local(2020, 1, 2, 2), m_daTermine.Get(0)->tEnd);
    EXPECT_EQ(Local(2020, 2, 1, 22), m_daTermine.Get(1)->tStart);
    EXPECT_EQ(Local(2020, 2, 2, 2), m_daTermine.Get(1)->tEnd);
}

// Values that the dialog never lets through describe no dates instead of walking for ever.
TEST_F(SeriesPattern, PatternsThatCannotWalkGiveNoDates) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2021, 1, 1));
    sd.wDayInterval = 0;
    EXPECT_TRUE(Begins(sd).empty());
    sd.bDailyMode = SCHEDULE_NOT_CHOSEN;
    EXPECT_TRUE(Begins(sd).empty());
    sd = Series(SCHEDULE_NOT_CHOSEN, Local(2020, 1, 1), Local(2021, 1, 1));
    EXPECT_TRUE(Begins(sd).empty());
    sd = Series(SCHEDULE_MONTHLY, Local(2020, 1, 1), Local(2021, 1, 1));
    sd.bMonthInterval = 0;
    EXPECT_TRUE(Begins(sd).empty());
    sd = Series(SCHEDULE_YEARLY, Local(2020, 1, 1), Local(2021, 1, 1));
    sd.bYearMonth = 12;
    EXPECT_TRUE(Begins(sd).empty());

    // A week mask of 0 walks to the latest date and finds nothing.
    sd = Series(SCHEDULE_WEEKLY, Local(2020, 1, 1), 0);
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 3;
    EXPECT_TRUE(Begins(sd).empty());
}

} // namespace
