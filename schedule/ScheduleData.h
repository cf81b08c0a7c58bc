// The record of one event date or of a series of dates, and the dates generated from it.
//
// Client modules store ScheduleData as it is and the scheduler's field bindings address its
// members by byte offset, so its field order and its byte packing are part of the interface.
#pragma once

#include "norvane/DynaArray.h"

#include <windows.h>

// Begin of the placeholder date and lower limit of the date pickers.
#define TERMIN_MIN_DATE 86000L
// 18.01.2038 09:01:52 UTC: end of the placeholder date, upper limit of the date pickers and the
// walking limit of a series that ends after a count of dates.
#define TERMIN_MAX_DATE 0x7FFF0000L

// Values of bPattern.
enum ScheduleSeriesPattern : BYTE {
    SCHEDULE_DAILY = 0,
    SCHEDULE_WEEKLY = 1,
    SCHEDULE_MONTHLY = 2,
    SCHEDULE_YEARLY = 3,
};

// Values of bEndMode.
enum ScheduleEndMode : BYTE {
    SCHEDULE_END_EVENTDATE = 0,
    SCHEDULE_END_COUNT = 1,
    SCHEDULE_END_DATE = 2,
};

// bPattern, bEndMode and the ...Mode fields hold this when the user has chosen nothing.
#define SCHEDULE_NOT_CHOSEN 100

// Values of bDailyMode.
enum ScheduleDailyMode : BYTE {
    SCHEDULE_DAILY_INTERVAL = 0,
    SCHEDULE_DAILY_WORKDAYS = 1, // Monday to Friday
    SCHEDULE_DAILY_WEEKEND = 2,  // Saturday and Sunday
};

// Ordinals of the monthly and yearly ordinal modes; every value from 4 on acts as the last.
enum ScheduleOrdinal : BYTE {
    SCHEDULE_ORD_FIRST = 0,
    SCHEDULE_ORD_SECOND = 1,
    SCHEDULE_ORD_THIRD = 2,
    SCHEDULE_ORD_FOURTH = 3,
    SCHEDULE_ORD_LAST = 255,
};

// Day kinds of the ordinal modes; 0 to 6 name a weekday in wDayOfWeek numbering (0 = Sunday).
enum ScheduleDayKind : BYTE {
    SCHEDULE_KIND_WORKDAY = 100, // Monday to Saturday, Saturday included
    SCHEDULE_KIND_WEEKEND = 101, // Saturday or Sunday
    SCHEDULE_KIND_DAY = 102,     // any day
};

// bFlags bits.
#define SCHEDULE_FLAG_MORE_DATES 0x01      // output: a further date follows the first one not over
#define SCHEDULE_FLAG_OBSERVE_RELEASE 0x02 // input: without it a series yields the placeholder date
#define SCHEDULE_FLAG_RESTART_VALID 0x04   // output: tRestartDate and wRestartIndex may be used

#pragma pack(push, 1)
struct ScheduleData {
    WORD wStructSize; // always sizeof(ScheduleData)
    BYTE bSeries;     // 0: one date from tStart to tEnd; otherwise a series
    BYTE bPattern;    // ScheduleSeriesPattern
    DWORD dwTimeZone; // zone of every conversion between times and calendar fields
    long tStart;      // of a series: time of day and, with tEnd, duration of every date
    long tEnd;
    long tSeriesStart; // first day of the series; its time of day has no effect
    long tSeriesEnd;   // end for SCHEDULE_END_DATE; the event date is written here for mode 0
    BYTE bEndMode;     // ScheduleEndMode
    WORD wEndCount;    // number of dates for SCHEDULE_END_COUNT
    BYTE bFlags;       // SCHEDULE_FLAG_...
    BYTE bReserved;
    BYTE bDailyMode;    // ScheduleDailyMode
    WORD wDayInterval;  // days between dates in SCHEDULE_DAILY_INTERVAL
    BYTE bWeekInterval; // weeks between the weeks that hold dates
    BYTE bWeekDays;     // bit n for wDayOfWeek n
    BYTE bMonthlyMode;  // 0: day number, 1: ordinal day
    BYTE bMonthDay;     // 1 to 31, capped by the month's length
    BYTE bMonthInterval;
    BYTE bMonthOrdinal; // ScheduleOrdinal
    BYTE bMonthDayKind; // ScheduleDayKind or weekday
    BYTE bYearlyMode;   // 0: day and month, 1: ordinal day of a month
    BYTE bYearDay;      // 1 to 31, capped by the month's length in each year
    BYTE bYearMonth;    // 0 = January ... 11 = December
    BYTE bYearOrdinal;  // ScheduleOrdinal
    BYTE bYearDayKind;  // ScheduleDayKind or weekday
    long tRestartDate;  // walking date from which a partial generation resumes
    WORD wRestartIndex; // ordinal in the whole series of the date found at tRestartDate
};
#pragma pack(pop)

static_assert(sizeof(ScheduleData) ==
                  sizeof(ScheduleData::wStructSize) + sizeof(ScheduleData::bSeries) +
                      sizeof(ScheduleData::bPattern) + sizeof(ScheduleData::dwTimeZone) +
                      sizeof(ScheduleData::tStart) + sizeof(ScheduleData::tEnd) +
                      sizeof(ScheduleData::tSeriesStart) + sizeof(ScheduleData::tSeriesEnd) +
                      sizeof(ScheduleData::bEndMode) + sizeof(ScheduleData::wEndCount) +
                      sizeof(ScheduleData::bFlags) + sizeof(ScheduleData::bReserved) +
                      sizeof(ScheduleData::bDailyMode) + sizeof(ScheduleData::wDayInterval) +
                      sizeof(ScheduleData::bWeekInterval) + sizeof(ScheduleData::bWeekDays) +
                      sizeof(ScheduleData::bMonthlyMode) + sizeof(ScheduleData::bMonthDay) +
                      sizeof(ScheduleData::bMonthInterval) + sizeof(ScheduleData::bMonthOrdinal) +
                      sizeof(ScheduleData::bMonthDayKind) + sizeof(ScheduleData::bYearlyMode) +
                      sizeof(ScheduleData::bYearDay) + sizeof(ScheduleData::bYearMonth) +
                      sizeof(ScheduleData::bYearOrdinal) + sizeof(ScheduleData::bYearDayKind) +
                      sizeof(ScheduleData::tRestartDate) + sizeof(ScheduleData::wRestartIndex),
              "ScheduleData must stay byte-packed");
// Stored records and the field bindings rely on these: 50 bytes, the end count at an odd offset,
// and times of 32 bits also in the 64-bit build.
static_assert(sizeof(ScheduleData) == 50, "ScheduleData is 50 bytes");
static_assert(sizeof(long) == 4 && sizeof(DWORD) == 4, "times and zone numbers are 32 bits");

// One generated date.
struct ScheduleTermin {
    long tStart;
    long tEnd;
};

// The generated dates carry the ordinal in the whole series of their element 0 beside them, since a
// partial generation may begin in the middle of a series.
template <> class DynaArrayTpl<ScheduleTermin, 0, 0> : public DynaArray {
public:
    int iFirstTerminIndex = 0;

    DynaArrayTpl() : DynaArray(static_cast<int>(sizeof(ScheduleTermin)), 0) {}
    explicit DynaArrayTpl(int grow) : DynaArray(static_cast<int>(sizeof(ScheduleTermin)), grow) {}

    ScheduleTermin* Get(int index) const { return static_cast<ScheduleTermin*>(DynaArray::Get(index)); }
    ScheduleTermin* operator[](int index) const { return Get(index); }
    ScheduleTermin* GetData() const { return static_cast<ScheduleTermin*>(m_pData); }
    int Add(ScheduleTermin const& elem) { return DynaArray::Add(&elem); }
    bool Insert(int index, ScheduleTermin const& elem) { return DynaArray::Insert(index, &elem); }
    bool Update(int index, ScheduleTermin const& elem) { return DynaArray::Update(index, &elem); }
};

typedef DynaArrayTpl<ScheduleTermin, 0, 0> ScheduleTerminArray;
