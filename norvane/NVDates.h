// Date and time arithmetic on 32-bit seconds since 1970 (UTC), in a time zone.
//
// Times are `long` (32 bits on Windows, also in the 64-bit build) and never MinGW's 64-bit time_t.
// The last argument of the functions names the zone: 0 is the machine's own, other numbers are
// zones installed with NVSetTimeZone (tests install a known zone so that results never depend on
// the host). Every function honours the zone's daylight-saving rules.
#pragma once

#include "NVExport.h"

#include <windows.h>

// The German forms are shown; English (all sublanguages) uses "MM/dd/yyyy" and a 12-hour clock
// ("hh:mm tt"), Polish the German pictures. Other languages get the English forms.
enum NVDateTimeFormatStringType {
    NVDT_DATETIME_DATE = 0,      // date half of a date-time cell, "dd.MM.yyyy"
    NVDT_DATE = 1,               // date cells: read and written, "dd.MM.yyyy"
    NVDT_TIME = 2,               // hours and minutes, "HH:mm"
    NVDT_DATETIME_TIME = 3,      // time half of a date-time cell, " HH:mm:ss" (with its blank)
    NVDT_DATE_WEEKDAY_COMMA = 5, // lists of dates, "ddd, dd.MM.yyyy"
    NVDT_TIME_SECONDS = 6,       // with seconds, "HH:mm:ss"
    NVDT_DATE_SHORTYEAR = 7,     // two-digit year, "dd.MM.yy"
    NVDT_DATE_WEEKDAY = 10,      // with the weekday, "ddd dd.MM.yyyy"
};

// A format text such as "dd.MM.yyyy" for the language (0: current); null for an unknown type.
// The text is static and stays valid.
NV_API char const* NVGetDateTimeFormatString(NVDateTimeFormatStringType type, unsigned short wLangID);

// Valid times run from 0 to this value (18.01.2038); results outside it are failures.
constexpr long NV_TIME_MAX = 0x7FFF0000L;

// Installs (or with null removes) zone number dwTZ (1 and above). Zone 0 is always the machine's.
// False for zone 0 or rules that make no sense (month 13, sixth week, ...). Using a zone number that
// was never installed is a failure in every function.
NV_API bool NVSetTimeZone(unsigned long dwTZ, TIME_ZONE_INFORMATION const* pTZI);

// "Now" in seconds; tests pin it with NVSetNowOverride (0 gives the clock back).
NV_API long NVGetNow();
NV_API void NVSetNowOverride(long tNow);

// Text of a time value. The formats use GetDateFormat/GetTimeFormat pictures ("dd.MM.yyyy", "HH:mm",
// "dddd", "MMM", "hh:mm tt", 'quoted text'); names come from the current language and are written in
// the current code page. A null or empty format takes the current language's NVDT_DATE or NVDT_TIME.
// FormatDateTime leaves out a part whose format is null or empty (both: the defaults) and puts one
// blank between the parts unless the date format ends or the time format begins with one.
// Return the characters written, 0 on failure (invalid time, unknown zone, buffer too small; the
// buffer then holds an empty text).
NV_API int FormatDate(long t, char const* lpszFormat, char* out, int size, unsigned long dwTZ);
NV_API int FormatTime(long t, char const* lpszFormat, char* out, int size, unsigned long dwTZ);
NV_API int FormatDateTime(long t, char const* lpszDateFormat, char const* lpszTimeFormat, char* out, int size,
                          unsigned long dwTZ);

// Parses a date in the current language's NVDT_DATE format (or its NVDT_DATE_SHORTYEAR form),
// optionally followed by a time in its NVDT_TIME_SECONDS or NVDT_TIME format or as 24-hour "HH:mm:ss"
// or "HH:mm", in the machine's zone (0). Blanks around the text are ignored. -1 when invalid.
NV_API long String2DateTime(char const* text);
NV_API long String2DateTime(wchar_t const* text);
// The same for "MM/dd/yyyy" with an optional 24-hour or "hh:mm tt" time, whatever the language.
NV_API long String2DateTimeUSFormat(char const* text);

// Parses text by a picture as FormatDate writes it. One- and two-digit day, month, hour, minute and
// second numbers are both accepted; "yyyy" wants four digits, "yy" two (years below 70 are 20xx);
// a blank in the format matches one or more blanks; names match case-insensitively, full or
// abbreviated; a weekday name is read but not checked against the date.
//   bLenient: any non-alphanumeric character stands for any separator, and both year widths pass.
//   bPartial: the text may stop early; what was not read keeps its default.
//   bKeepUnset: fields not read keep the values already in st; otherwise the date defaults to
//               01.01.1900 and the time to 00:00:00.
// False (st unchanged) when the text does not match or the result is no valid calendar time.
NV_API bool String2SYSTEMTIME(char const* text, char const* lpszFormat, SYSTEMTIME& st, bool bLenient,
                              bool bPartial, bool bKeepUnset);
NV_API bool String2SYSTEMTIME(wchar_t const* text, wchar_t const* lpszFormat, SYSTEMTIME& st, bool bLenient,
                              bool bPartial, bool bKeepUnset);
// Text of st by a picture (null: NVDT_DATE) into out, which holds iSize bytes. False on an invalid st.
NV_API bool SYSTEMTIME2String(char* out, char const* lpszFormat, SYSTEMTIME& st, int iSize = 64);

// Calendar fields (wDayOfWeek too) of t in the zone, or in UTC with bUTC. *pDST receives 1 while
// daylight saving is in effect, else 0. An invalid time or zone gives all fields 0.
NV_API void Time_tToSystemTime(long t, SYSTEMTIME* pst, unsigned long dwTZ, bool bUTC = false,
                               int* pDST = nullptr, long reserved = 999);
// The inverse. A day beyond the month's end runs on into the next month (31.04. is 01.05.); a wall
// time that the spring change skips counts in standard time (02:30 becomes 03:30 summer time); one
// that the autumn change repeats is its first, summer-time occurrence. -1 when invalid.
NV_API long SystemTimeToTime_t(SYSTEMTIME* pst, unsigned long dwTZ, bool bUTC = false);

// Calendar days: the same wall-clock time iDays later, however long the days in between are.
NV_API long NVAddDays(long t, int iDays, unsigned long dwTZ);
// Wall-clock seconds: moves the zone's clock reading by iSeconds.
NV_API long NVAddToTime_t(long t, int iSeconds, unsigned long dwTZ);
// The first moment of t's day in the zone.
NV_API long NVGetBeginOfDay(long t, unsigned long dwTZ);
// Wall-clock seconds from t2 to t1 (negative when t1 lies before), so that
// NVAddToTime_t(t2, NVGetTime_tDiv(t1, t2, z), z) == t1. 0 for invalid arguments.
NV_API int NVGetTime_tDiv(long t1, long t2, unsigned long dwTZ);
// 28 to 31 for iMonth 1 to 12; 0 for another month.
NV_API int GetLastDayInMonth(int iMonth, int iYear);
NV_API void vAufVolleMinuteAbrunden(long& t);
