#include "NVDates.h"
#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

// Zone numbers the tests install: a northern and a southern zone with summer time, and plain UTC.
constexpr unsigned long TZ_CET = 7;
constexpr unsigned long TZ_SYDNEY = 8;
constexpr unsigned long TZ_UTC = 9;

// UTC seconds (Z: the hour is UTC) of moments in 2024, worked out independently of the library.
constexpr long T_2024_01_15_080509 = 1705305909;
constexpr long T_2024_03_30_1200Z = 1711800000;
constexpr long T_2024_03_31_0100 = 1711846800; // summer time starts in Central Europe
constexpr long T_2024_10_26_1200Z = 1729944000;
constexpr long T_2024_10_27_0100 = 1729990800; // and ends

SYSTEMTIME Rule(WORD month, WORD week, WORD hour) {
    SYSTEMTIME st{};
    st.wMonth = month;
    st.wDayOfWeek = 0; // Sunday
    st.wDay = week;    // 5: the last one
    st.wHour = hour;
    return st;
}

SYSTEMTIME Fields(WORD y, WORD m, WORD d, WORD h = 0, WORD mi = 0, WORD s = 0) {
    SYSTEMTIME st{};
    st.wYear = y;
    st.wMonth = m;
    st.wDay = d;
    st.wHour = h;
    st.wMinute = mi;
    st.wSecond = s;
    return st;
}

std::string Text(SYSTEMTIME const& st) {
    char buf[64];
    snprintf(buf, sizeof buf, "%04u-%02u-%02u %02u:%02u:%02u wd%u", st.wYear, st.wMonth, st.wDay, st.wHour,
             st.wMinute, st.wSecond, st.wDayOfWeek);
    return buf;
}

std::string Local(long t, unsigned long tz, int* pDST = nullptr) {
    SYSTEMTIME st;
    Time_tToSystemTime(t, &st, tz, false, pDST);
    return Text(st);
}

std::string Format(long t, char const* date, char const* time, unsigned long tz = TZ_CET) {
    char buf[100];
    FormatDateTime(t, date, time, buf, sizeof buf, tz);
    return buf;
}

class Dates : public ::testing::Test {
protected:
    void SetUp() override {
        TIME_ZONE_INFORMATION cet{};
        cet.Bias = -60;
        cet.DaylightBias = -60;
        cet.StandardDate = Rule(10, 5, 3);
        cet.DaylightDate = Rule(3, 5, 2);
        ASSERT_TRUE(NVSetTimeZone(TZ_CET, &cet));

        TIME_ZONE_INFORMATION sydney{};
        sydney.Bias = -600;
        sydney.DaylightBias = -60;
        sydney.StandardDate = Rule(4, 1, 3);
        sydney.DaylightDate = Rule(10, 1, 2);
        ASSERT_TRUE(NVSetTimeZone(TZ_SYDNEY, &sydney));

        TIME_ZONE_INFORMATION utc{};
        ASSERT_TRUE(NVSetTimeZone(TZ_UTC, &utc));
    }
    void TearDown() override {
        NVSetCurrentLangID(0);
        NVSetNowOverride(0);
    }
};

TEST_F(Dates, ConversionFollowsTheZonesSummerTime) {
    int dst = -1;
    EXPECT_EQ("2024-03-31 01:59:59 wd0", Local(T_2024_03_31_0100 - 1, TZ_CET, &dst));
    EXPECT_EQ(0, dst);
    EXPECT_EQ("2024-03-31 03:00:00 wd0", Local(T_2024_03_31_0100, TZ_CET, &dst));
    EXPECT_EQ(1, dst);
    EXPECT_EQ("2024-10-27 02:59:59 wd0", Local(T_2024_10_27_0100 - 1, TZ_CET, &dst));
    EXPECT_EQ(1, dst);
    EXPECT_EQ("2024-10-27 02:00:00 wd0", Local(T_2024_10_27_0100, TZ_CET, &dst));
    EXPECT_EQ(0, dst);

    // South of the equator summer time spans the turn of the year.
    EXPECT_EQ("2024-01-15 19:05:09 wd1", Local(T_2024_01_15_080509, TZ_SYDNEY, &dst));
    EXPECT_EQ(1, dst);
    EXPECT_EQ("2024-07-15 18:05:09 wd1", Local(T_2024_01_15_080509 + 182 * 86400, TZ_SYDNEY, &dst));
    EXPECT_EQ(0, dst);

    SYSTEMTIME st;
    Time_tToSystemTime(T_2024_01_15_080509, &st, TZ_CET, true);
    EXPECT_EQ("2024-01-15 08:05:09 wd1", Text(st)) << "bUTC ignores the zone";

    // Back again, for each hour of a year in both zones.
    for (long t = T_2024_01_15_080509; t < T_2024_01_15_080509 + 366L * 86400; t += 3607) {
        for (unsigned long tz : {TZ_CET, TZ_SYDNEY}) {
            Time_tToSystemTime(t, &st, tz);
            long const back = SystemTimeToTime_t(&st, tz);
            int isDst = 0;
            Time_tToSystemTime(t, &st, tz, false, &isDst);
            // The hour that the autumn change repeats comes back as its first occurrence.
            if (back != t) {
                EXPECT_EQ(t - 3600, back) << "t=" << t << " tz=" << tz << " " << Text(st);
            }
        }
    }
}

TEST_F(Dates, LocalFieldsToSecondsAtTheChangesAndAtTheLimits) {
    SYSTEMTIME st = Fields(2024, 3, 31, 1, 30);
    EXPECT_EQ(T_2024_03_31_0100 - 1800, SystemTimeToTime_t(&st, TZ_CET));
    st = Fields(2024, 3, 31, 2, 30); // skipped by the clock: read as standard time, shown as 03:30
    EXPECT_EQ(T_2024_03_31_0100 + 1800, SystemTimeToTime_t(&st, TZ_CET));
    st = Fields(2024, 10, 27, 2, 30); // shown twice: the first, summer-time one
    EXPECT_EQ(T_2024_10_27_0100 - 1800, SystemTimeToTime_t(&st, TZ_CET));
    st = Fields(2024, 10, 27, 3, 0);
    EXPECT_EQ(T_2024_10_27_0100 + 3600, SystemTimeToTime_t(&st, TZ_CET));

    st = Fields(2024, 4, 31, 12);
    SYSTEMTIME may1 = Fields(2024, 5, 1, 12);
    EXPECT_EQ(SystemTimeToTime_t(&may1, TZ_CET), SystemTimeToTime_t(&st, TZ_CET))
        << "31 April runs on to 1 May";
    st = Fields(2023, 2, 29);
    SYSTEMTIME march1 = Fields(2023, 3, 1);
    EXPECT_EQ(SystemTimeToTime_t(&march1, TZ_CET), SystemTimeToTime_t(&st, TZ_CET));

    st = Fields(2038, 1, 18, 9, 1, 52);
    EXPECT_EQ(NV_TIME_MAX, SystemTimeToTime_t(&st, TZ_UTC));
    EXPECT_EQ(NV_TIME_MAX, SystemTimeToTime_t(&st, TZ_CET, true));
    st.wSecond = 53;
    EXPECT_EQ(-1, SystemTimeToTime_t(&st, TZ_UTC)) << "beyond 18.01.2038";
    st = Fields(2038, 1, 19);
    EXPECT_EQ(-1, SystemTimeToTime_t(&st, TZ_UTC));
    st = Fields(1970, 1, 1, 0, 30);
    EXPECT_EQ(-1, SystemTimeToTime_t(&st, TZ_CET)) << "23:30 UTC of 1969";

    for (SYSTEMTIME bad : {Fields(2024, 13, 1), Fields(2024, 0, 1), Fields(2024, 1, 0), Fields(2024, 1, 32),
                           Fields(2024, 1, 1, 24), Fields(2024, 1, 1, 0, 60), Fields(2024, 1, 1, 0, 0, 60),
                           Fields(1601, 1, 1), Fields(0, 0, 0)}) {
        EXPECT_EQ(-1, SystemTimeToTime_t(&bad, TZ_CET)) << Text(bad);
    }
    EXPECT_EQ(-1, SystemTimeToTime_t(nullptr, TZ_CET));
}

TEST_F(Dates, CalendarDaysKeepTheWallClockAcrossBothChanges) {
    long const spring = NVAddDays(T_2024_03_30_1200Z, 1, TZ_CET);
    EXPECT_EQ("2024-03-31 13:00:00 wd0", Local(spring, TZ_CET));
    EXPECT_EQ(23 * 3600, spring - T_2024_03_30_1200Z) << "the spring day has 23 hours";
    EXPECT_EQ(T_2024_03_30_1200Z, NVAddDays(spring, -1, TZ_CET));

    long const autumn = NVAddDays(T_2024_10_26_1200Z, 1, TZ_CET);
    EXPECT_EQ("2024-10-27 14:00:00 wd0", Local(autumn, TZ_CET));
    EXPECT_EQ(25 * 3600, autumn - T_2024_10_26_1200Z) << "the autumn day has 25 hours";

    long const year = NVAddDays(T_2024_03_30_1200Z, 366, TZ_CET);
    EXPECT_EQ("2025-03-31 13:00:00 wd1", Local(year, TZ_CET));
    EXPECT_EQ(T_2024_03_30_1200Z + 366 * 86400, NVAddDays(T_2024_03_30_1200Z, 366, TZ_UTC))
        << "all days are equal without summer time";

    // A day's first moment, and its length measured from one to the next.
    long const begin = NVGetBeginOfDay(spring, TZ_CET);
    EXPECT_EQ("2024-03-31 00:00:00 wd0", Local(begin, TZ_CET));
    EXPECT_EQ(T_2024_03_31_0100 - 2 * 3600, begin);
    EXPECT_EQ(23 * 3600, NVGetBeginOfDay(NVAddDays(spring, 1, TZ_CET), TZ_CET) - begin);
    EXPECT_EQ(25 * 3600,
              NVGetBeginOfDay(NVAddDays(autumn, 1, TZ_CET), TZ_CET) - NVGetBeginOfDay(autumn, TZ_CET));
    EXPECT_EQ(begin, NVGetBeginOfDay(begin, TZ_CET));
    EXPECT_EQ("2024-01-15 00:00:00 wd1", Local(NVGetBeginOfDay(T_2024_01_15_080509, TZ_SYDNEY), TZ_SYDNEY));

    // Differences and offsets count on the wall clock, so that a series keeps its times.
    EXPECT_EQ(86400, NVGetTime_tDiv(spring, T_2024_03_30_1200Z, TZ_CET));
    EXPECT_EQ(-86400, NVGetTime_tDiv(T_2024_10_26_1200Z, autumn, TZ_CET));
    EXPECT_EQ(25 * 3600, NVGetTime_tDiv(autumn, T_2024_10_26_1200Z, TZ_UTC));
    EXPECT_EQ(spring, NVAddToTime_t(T_2024_03_30_1200Z, 86400, TZ_CET));
    EXPECT_EQ(T_2024_03_31_0100, NVAddToTime_t(T_2024_03_31_0100 - 3600, 2 * 3600, TZ_CET))
        << "01:00 + 2 h reads 03:00, one real hour later";
    for (int secs : {1, 59, 3600, 7 * 86400 + 5, -86400 * 40}) {
        long const later = NVAddToTime_t(T_2024_10_26_1200Z, secs, TZ_CET);
        EXPECT_EQ(secs, NVGetTime_tDiv(later, T_2024_10_26_1200Z, TZ_CET)) << secs;
    }
}

TEST_F(Dates, InvalidTimesAndZonesFailClearly) {
    for (long bad : {-1L, -86400L, NV_TIME_MAX + 1, 0x7FFFFFFFL}) {
        SYSTEMTIME st = Fields(2000, 1, 1);
        int dst = 5;
        Time_tToSystemTime(bad, &st, TZ_CET, false, &dst);
        EXPECT_EQ(0, st.wYear) << bad;
        EXPECT_EQ(0, dst);
        EXPECT_EQ(-1, NVAddDays(bad, 1, TZ_CET));
        EXPECT_EQ(-1, NVAddToTime_t(bad, 1, TZ_CET));
        EXPECT_EQ(-1, NVGetBeginOfDay(bad, TZ_CET));
        char buf[32] = "x";
        EXPECT_EQ(0, FormatDate(bad, "dd.MM.yyyy", buf, sizeof buf, TZ_CET));
        EXPECT_STREQ("", buf);
    }
    EXPECT_EQ(-1, NVAddDays(NV_TIME_MAX - 3600, 1, TZ_CET)) << "past 2038";
    EXPECT_EQ(-1, NVAddToTime_t(NV_TIME_MAX, 1, TZ_UTC));
    EXPECT_EQ(NV_TIME_MAX, NVAddToTime_t(NV_TIME_MAX - 1, 1, TZ_UTC));
    EXPECT_EQ(-1, NVAddDays(86400, -2, TZ_UTC)) << "before 1970";

    EXPECT_EQ(-1, NVAddDays(T_2024_03_30_1200Z, 1, 99)) << "zone never installed";
    EXPECT_EQ(0, NVGetTime_tDiv(T_2024_03_30_1200Z, 0, 99));
    char buf[32];
    EXPECT_EQ(0, FormatDate(T_2024_03_30_1200Z, nullptr, buf, sizeof buf, 99));
    SYSTEMTIME st = Fields(2024, 1, 1);
    EXPECT_EQ(-1, SystemTimeToTime_t(&st, 99));
    Time_tToSystemTime(T_2024_03_30_1200Z, nullptr, TZ_CET); // nothing to write: no crash

    TIME_ZONE_INFORMATION tzi{};
    EXPECT_FALSE(NVSetTimeZone(0, &tzi)) << "zone 0 is the machine's";
    tzi.StandardDate = Rule(13, 5, 3);
    tzi.DaylightDate = Rule(3, 5, 2);
    EXPECT_FALSE(NVSetTimeZone(12, &tzi));
    tzi.StandardDate = Rule(10, 6, 3);
    EXPECT_FALSE(NVSetTimeZone(12, &tzi));
    EXPECT_TRUE(NVSetTimeZone(TZ_UTC, nullptr));
    EXPECT_EQ(-1, NVAddDays(T_2024_03_30_1200Z, 1, TZ_UTC)) << "a removed zone is unknown";
    EXPECT_FALSE(NVSetTimeZone(TZ_UTC, nullptr));

    EXPECT_NE(-1, NVAddDays(T_2024_03_30_1200Z, 1, 0)) << "the machine's zone is always there";
}

TEST_F(Dates, CalendarHelpers) {
    EXPECT_EQ(29, GetLastDayInMonth(2, 2024));
    EXPECT_EQ(28, GetLastDayInMonth(2, 2023));
    EXPECT_EQ(28, GetLastDayInMonth(2, 1900));
    EXPECT_EQ(29, GetLastDayInMonth(2, 2000));
    EXPECT_EQ(31, GetLastDayInMonth(12, 2037));
    EXPECT_EQ(30, GetLastDayInMonth(4, 2037));
    EXPECT_EQ(0, GetLastDayInMonth(0, 2024));
    EXPECT_EQ(0, GetLastDayInMonth(13, 2024));

    long t = T_2024_01_15_080509;
    vAufVolleMinuteAbrunden(t);
    EXPECT_EQ(T_2024_01_15_080509 - 9, t);
    vAufVolleMinuteAbrunden(t);
    EXPECT_EQ(T_2024_01_15_080509 - 9, t);

    NVSetNowOverride(T_2024_03_30_1200Z);
    EXPECT_EQ(T_2024_03_30_1200Z, NVGetNow());
    NVSetNowOverride(0);
    long const now = NVGetNow();
    EXPECT_GT(now, T_2024_03_30_1200Z) << "the clock comes back";
    EXPECT_LT(now, NV_TIME_MAX);
}

TEST_F(Dates, FormatsInGermanAndEnglish) {
    NVSetCurrentLangID(1031);
    EXPECT_STREQ("dd.MM.yyyy", NVGetDateTimeFormatString(NVDT_DATE, 0));
    EXPECT_EQ("15.01.2024 09:05", Format(T_2024_01_15_080509, "dd.MM.yyyy", "HH:mm"));
    EXPECT_EQ("15.01.2024 09:05", Format(T_2024_01_15_080509, nullptr, nullptr)) << "the defaults";
    EXPECT_EQ("09:05:09", Format(T_2024_01_15_080509, "", "HH:mm:ss"));
    EXPECT_EQ("Montag, 15. Januar 2024", Format(T_2024_01_15_080509, "dddd, d. MMMM yyyy", nullptr));
    EXPECT_EQ("Mo. 15.1.24 9:5:9", Format(T_2024_01_15_080509, "ddd d.M.yy H:m:s", nullptr));
    EXPECT_EQ("Woche vom 15.01. um 09 Uhr",
              Format(T_2024_01_15_080509, "'Woche vom' dd.MM.", "'um' HH 'Uhr'"));
    EXPECT_EQ("it's 9", Format(T_2024_01_15_080509, "'it''s' H", nullptr));
    EXPECT_EQ("So., 31.03.2024 03:00",
              Format(T_2024_03_31_0100, NVGetDateTimeFormatString(NVDT_DATE_WEEKDAY_COMMA, 0),
                     NVGetDateTimeFormatString(NVDT_TIME, 0)));
    EXPECT_EQ("18.01.2038 09:01:52", Format(NV_TIME_MAX, "dd.MM.yyyy", "HH:mm:ss", TZ_UTC));
    // The halves of a date-time cell read well whether joined here or simply written one after the other.
    char const* date = NVGetDateTimeFormatString(NVDT_DATETIME_DATE, 0);
    char const* time = NVGetDateTimeFormatString(NVDT_DATETIME_TIME, 0);
    EXPECT_EQ("15.01.2024 09:05:09", Format(T_2024_01_15_080509, date, time));
    EXPECT_EQ("15.01.2024 09:05:09",
              Format(T_2024_01_15_080509, date, nullptr) + Format(T_2024_01_15_080509, "", time));

    NVSetCurrentLangID(1033);
    EXPECT_STREQ("MM/dd/yyyy", NVGetDateTimeFormatString(NVDT_DATE, 0));
    EXPECT_STREQ("dd.MM.yyyy", NVGetDateTimeFormatString(NVDT_DATE, 1031)) << "language given explicitly";
    EXPECT_EQ("01/15/2024 09:05 AM", Format(T_2024_01_15_080509, nullptr, nullptr));
    EXPECT_EQ("Monday, January 15, 2024 9:05 PM",
              Format(T_2024_01_15_080509 + 12 * 3600, "dddd, MMMM d, yyyy", "h:mm tt"));
    EXPECT_EQ("12:00 A", Format(T_2024_03_30_1200Z - 13 * 3600, nullptr, "hh:mm t"));
    EXPECT_EQ(nullptr, NVGetDateTimeFormatString(static_cast<NVDateTimeFormatStringType>(4), 0));

    char small[6] = "xxxxx";
    EXPECT_EQ(0, FormatDate(T_2024_01_15_080509, "dd.MM.yyyy", small, sizeof small, TZ_CET)) << "too small";
    EXPECT_STREQ("", small);
    char exact[11];
    EXPECT_EQ(10, FormatDate(T_2024_01_15_080509, "dd.MM.yyyy", exact, sizeof exact, TZ_CET));
    EXPECT_STREQ("15.01.2024", exact);
    EXPECT_EQ(10, FormatTime(T_2024_01_15_080509, "HH:mm:ss t", exact, sizeof exact, TZ_CET));
    EXPECT_STREQ("09:05:09 A", exact);

    SYSTEMTIME st = Fields(1999, 12, 31, 23, 59, 58);
    char buf[64];
    ASSERT_TRUE(SYSTEMTIME2String(buf, "yyyy-MM-dd HH:mm:ss ddd", st));
    EXPECT_STREQ("1999-12-31 23:59:58 Fri", buf);
    st.wDay = 32;
    EXPECT_FALSE(SYSTEMTIME2String(buf, "yyyy", st));
}

TEST_F(Dates, DateAndTimePicturesJoinAsOneOfAnyLength) {
    NVSetCurrentLangID(1031);
    // A quote left open in the date part goes on through the time part.
    EXPECT_EQ("15.01. um HH:mm", Format(T_2024_01_15_080509, "dd.MM. 'um", "HH:mm"));
    EXPECT_EQ("15.01.2024 um 09:05", Format(T_2024_01_15_080509, "dd.MM.yyyy 'um'", "HH:mm"));
    EXPECT_EQ("15.01.2024 09:05", Format(T_2024_01_15_080509, "dd.MM.yyyy ", "HH:mm")) << "no second blank";

    // Pictures far longer than a name or a number, joined and written into a buffer of exactly their size.
    std::string const words(300, 'x');
    std::string const date = "'" + words + "' dd.MM.yyyy";
    std::string const expected = words + " 15.01.2024 09:05:09 " + words;
    char buf[700];
    EXPECT_EQ(static_cast<int>(expected.size()),
              FormatDateTime(T_2024_01_15_080509, date.c_str(), ("HH:mm:ss '" + words + "'").c_str(), buf,
                             static_cast<int>(expected.size()) + 1, TZ_CET));
    EXPECT_EQ(expected, buf);
    std::memset(buf, 'z', sizeof buf);
    EXPECT_EQ(0, FormatDateTime(T_2024_01_15_080509, date.c_str(), ("HH:mm:ss '" + words + "'").c_str(), buf,
                                static_cast<int>(expected.size()), TZ_CET))
        << "one byte short";
    EXPECT_STREQ("", buf);
}

// Whatever the format functions write, the parsers read back to the same second.
TEST_F(Dates, ParsingReadsWhatFormattingWrites) {
    for (unsigned short lang : {1031, 1033}) {
        NVSetCurrentLangID(lang);
        char const* date = NVGetDateTimeFormatString(NVDT_DATE, 0);
        char const* seconds = NVGetDateTimeFormatString(NVDT_TIME_SECONDS, 0);
        int checked = 0;
        for (long long tt = 86000; tt < NV_TIME_MAX; tt += 2000000 + 3607) {
            long const t = static_cast<long>(tt);
            std::string const text = Format(t, date, seconds, 0);
            long const back = String2DateTime(text.c_str());
            ASSERT_GT(back, 0) << lang << " '" << text << "' t=" << t << " " << Local(t, 0);
            // Only the hour that the autumn change repeats may come back as its other occurrence.
            if (back != t) {
                EXPECT_EQ(text, Format(back, date, seconds, 0)) << lang;
            }
            ++checked;
        }
        EXPECT_GT(checked, 1000);

        // Without seconds, without a time, with a short year, with blanks around it.
        std::string const withMinutes =
            Format(T_2024_01_15_080509, date, NVGetDateTimeFormatString(NVDT_TIME, 0), 0);
        EXPECT_EQ(T_2024_01_15_080509 - 9, String2DateTime((" " + withMinutes + " ").c_str())) << withMinutes;
        std::string const dayOnly = Format(T_2024_01_15_080509, date, nullptr, 0);
        EXPECT_EQ(NVGetBeginOfDay(T_2024_01_15_080509, 0), String2DateTime(dayOnly.c_str())) << dayOnly;
        std::string const shortYear =
            Format(T_2024_01_15_080509, NVGetDateTimeFormatString(NVDT_DATE_SHORTYEAR, 0), nullptr, 0);
        EXPECT_EQ(NVGetBeginOfDay(T_2024_01_15_080509, 0), String2DateTime(shortYear.c_str())) << shortYear;
        std::wstring const wide(dayOnly.begin(), dayOnly.end());
        EXPECT_EQ(NVGetBeginOfDay(T_2024_01_15_080509, 0), String2DateTime(wide.c_str()));
    }

    NVSetCurrentLangID(1031);
    SYSTEMTIME st;
    ASSERT_TRUE(String2SYSTEMTIME("18.01.2038 00:00", "dd.MM.yyyy HH:mm", st, false, false, false));
    EXPECT_EQ("2038-01-18 00:00:00 wd1", Text(st));
    EXPECT_EQ(-1, String2DateTime("19.01.2038")) << "a valid date beyond the limit";
    EXPECT_EQ(-1, String2DateTime("01/15/2024")) << "the other language's order";
    for (char const* bad : {"", "   ", "31.02.2024", "29.02.2023", "00.01.2024", "15.13.2024",
                            "15.01.2024 24:00", "15.01.2024 12:60", "15.01.2024x", "15.01", "15.01.20244",
                            "15..01.2024", "abc", "15.01.2024 12:00:00:00", "-1.01.2024"}) {
        EXPECT_EQ(-1, String2DateTime(bad)) << "'" << bad << "'";
    }
    EXPECT_EQ(-1, String2DateTime(static_cast<char const*>(nullptr)));
    EXPECT_EQ(-1, String2DateTime(static_cast<wchar_t const*>(nullptr)));
    EXPECT_GT(String2DateTime("29.02.2024"), 0);
    EXPECT_GT(String2DateTime("1.2.2024 7:05"), 0) << "one-digit numbers";
}

TEST_F(Dates, PictureParsingAndItsFlags) {
    NVSetCurrentLangID(1031);
    SYSTEMTIME st = Fields(2000, 6, 6, 6, 6, 6);
    SYSTEMTIME const before = st;
    ASSERT_TRUE(
        String2SYSTEMTIME("Dienstag, 5. M\xC4RZ 2024", "dddd, d. MMMM yyyy", st, false, false, false));
    EXPECT_EQ("2024-03-05 00:00:00 wd2", Text(st));
    ASSERT_TRUE(String2SYSTEMTIME(L"5. M\u00e4r 24", L"d. MMM yy", st, false, false, false));
    EXPECT_EQ("2024-03-05 00:00:00 wd2", Text(st));
    ASSERT_TRUE(String2SYSTEMTIME("13:45", "HH:mm", st, false, false, false));
    EXPECT_EQ("1900-01-01 13:45:00 wd1", Text(st)) << "a time alone gets the neutral date";

    st = before;
    EXPECT_FALSE(String2SYSTEMTIME("15/01/2024", "dd.MM.yyyy", st, false, false, false));
    EXPECT_FALSE(String2SYSTEMTIME("15.01.24", "dd.MM.yyyy", st, false, false, false));
    EXPECT_EQ(Text(before), Text(st)) << "a failed parse leaves st alone";
    ASSERT_TRUE(String2SYSTEMTIME("15/01-24", "dd.MM.yyyy", st, true, false, false)) << "lenient";
    EXPECT_EQ("2024-01-15 00:00:00 wd1", Text(st));
    EXPECT_FALSE(String2SYSTEMTIME("15x01x2024", "dd.MM.yyyy", st, true, false, false));

    st = before;
    ASSERT_TRUE(String2SYSTEMTIME("15.01.2024", "dd.MM.yyyy HH:mm", st, false, true, false)) << "partial";
    EXPECT_EQ("2024-01-15 00:00:00 wd1", Text(st));
    EXPECT_FALSE(String2SYSTEMTIME("15.01.2024", "dd.MM.yyyy HH:mm", st, false, false, false));

    st = before;
    ASSERT_TRUE(String2SYSTEMTIME("13:45", "HH:mm", st, false, false, true)) << "keep the date";
    EXPECT_EQ("2000-06-06 13:45:06 wd2", Text(st));

    NVSetCurrentLangID(1033);
    ASSERT_TRUE(String2SYSTEMTIME("12:30 am", "hh:mm tt", st, false, false, false));
    EXPECT_EQ(0, st.wHour);
    ASSERT_TRUE(String2SYSTEMTIME("12:30 PM", "hh:mm tt", st, false, false, false));
    EXPECT_EQ(12, st.wHour);
    ASSERT_TRUE(String2SYSTEMTIME("1:30 P", "h:mm t", st, false, false, false));
    EXPECT_EQ(13, st.wHour);
    EXPECT_FALSE(String2SYSTEMTIME("13:30 PM", "hh:mm tt", st, false, false, false));
    EXPECT_FALSE(String2SYSTEMTIME("Funday 1", "dddd d", st, false, false, false));

    NVSetCurrentLangID(1031);
    SYSTEMTIME jan15 = Fields(2024, 1, 15, 14, 30);
    long const expected = SystemTimeToTime_t(&jan15, 0);
    EXPECT_EQ(expected, String2DateTimeUSFormat("01/15/2024 14:30")) << "US order whatever the language";
    EXPECT_EQ(expected, String2DateTimeUSFormat("1/15/2024 02:30 PM"));
    EXPECT_EQ(-1, String2DateTimeUSFormat("15/01/2024"));
    EXPECT_EQ(-1, String2DateTimeUSFormat(nullptr));
}

} // namespace
