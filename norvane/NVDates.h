// Date and time arithmetic on 32-bit seconds since 1970 (UTC), in a time zone.
//
// Times are `long` (32 bits on Windows, also in the 64-bit build) and never MinGW's 64-bit time_t.
// The last argument of the functions names the zone: 0 is the machine's own, other numbers are
// zones installed with NVSetTimeZone (tests install a known zone so that results never depend on
// the host). Every function honours the zone's daylight-saving rules.
#pragma once

#include "NVExport.h"

#include <windows.h>

enum NVDateTimeFormatStringType {
    NVDT_DATE = 1,           // date cells: read and written, e.g. "dd.MM.yyyy"
    NVDT_TIME = 2,           // hours and minutes, e.g. "HH:mm"
    NVDT_TIME_SECONDS = 6,   // with seconds, e.g. "HH:mm:ss"
    NVDT_DATE_SHORTYEAR = 7, // two-digit year, e.g. "dd.MM.yy"
    NVDT_DATE_WEEKDAY = 10,  // with the weekday, e.g. "ddd dd.MM.yyyy"
};

// A format text such as "dd.MM.yyyy" for the language (0: current).
NV_API char const* NVGetDateTimeFormatString(NVDateTimeFormatStringType type, unsigned short wLangID);

// Installs (or with null removes) zone number dwTZ (1 and above). Zone 0 is always the machine's.
NV_API bool NVSetTimeZone(unsigned long dwTZ, TIME_ZONE_INFORMATION const* pTZI);

// "Now" in seconds; tests pin it with NVSetNowOverride (0 gives the clock back).
NV_API long NVGetNow();
NV_API void NVSetNowOverride(long tNow);

// Text of a time value. The formats use GetDateFormat/GetTimeFormat pictures ("dd.MM.yyyy", "HH:mm").
// Return the characters written, 0 on failure.
NV_API int FormatDate(long t, char const* lpszFormat, char* out, int size, unsigned long dwTZ);
NV_API int FormatTime(long t, char const* lpszFormat, char* out, int size, unsigned long dwTZ);
NV_API int FormatDateTime(long t, char const* lpszDateFormat, char const* lpszTimeFormat, char* out, int size,
                          unsigned long dwTZ);

// Parses a date (and optional time) in the current format; at or below 0 when invalid.
NV_API long String2DateTime(char const* text);
NV_API long String2DateTime(wchar_t const* text);
NV_API long String2DateTimeUSFormat(char const* text);

NV_API bool String2SYSTEMTIME(char const* text, char const* lpszFormat, SYSTEMTIME& st, bool b1, bool b2,
                              bool b3);
NV_API bool String2SYSTEMTIME(wchar_t const* text, wchar_t const* lpszFormat, SYSTEMTIME& st, bool b1,
                              bool b2, bool b3);
NV_API bool SYSTEMTIME2String(char* out, char const* lpszFormat, SYSTEMTIME& st);

NV_API void Time_tToSystemTime(long t, SYSTEMTIME* pst, unsigned long dwTZ, bool bUTC = false,
                               int* pDST = nullptr, long reserved = 999);
NV_API long SystemTimeToTime_t(SYSTEMTIME* pst, unsigned long dwTZ, bool bUTC = false);

NV_API long NVAddDays(long t, int iDays, unsigned long dwTZ);
NV_API long NVAddToTime_t(long t, int iSeconds, unsigned long dwTZ);
NV_API long NVGetBeginOfDay(long t, unsigned long dwTZ);
NV_API int NVGetTime_tDiv(long t1, long t2, unsigned long dwTZ);
NV_API int GetLastDayInMonth(int iMonth, int iYear);
NV_API void vAufVolleMinuteAbrunden(long& t);
