// Expansion of a ScheduleData record into dates, the comparison of records and the duration text.
#include "schedule/DlgScheduler.h"

#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"
#include "norvane/NVDates.h"
#include "norvane/NVErrors.h"
#include "norvane/NVFormat.h"
#include "norvane/NVLanguage.h"
#include "frame/ClientModuleGUIBase.h"
#include "norvane/NVMsgBox.h"
#include "norvane/NVStrings.h"

#include <cstring>

namespace {

// The messages name the place of the failure by the source's base name, as every error of the
// library's long operations does, so that a report from the field leads to the line.
char const* SourceBaseName() {
    char const* lpszName = __FILE__;
    for (char const* p = lpszName; *p; ++p)
        if (*p == '/' || *p == '\\')
            lpszName = p + 1;
    return lpszName;
}

// Norvane's Throw turns a non-zero code into a failed-call report with a system text; these
// failures carry a message of our own string table and its id as the code, so the exception is
// built directly.
[[noreturn]] void Fail(unsigned long dwMessageId, int iLine) {
    char szText[1024];
    SNPrintf(szText, sizeof szText, VTRStringTable::GetText(dwMessageId), SourceBaseName(), iLine);
    throw NVThrowData(static_cast<int>(dwMessageId), szText);
}

#define SCHEDULE_FAIL(id) Fail(id, __LINE__)

// Weekday of a calendar day, 0 = Sunday: it does not depend on the zone, and the ordinal search
// runs for every generated month, so it is computed rather than converted.
int DayOfWeek(int iYear, int iMonth, int iDay) {
    static int const s_aiOffset[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
    if (iMonth < 3)
        iYear -= 1;
    return (iYear + iYear / 4 - iYear / 100 + iYear / 400 + s_aiOffset[(iMonth - 1) % 12] + iDay) % 7;
}

bool IsLast(BYTE bOrdinal) {
    return bOrdinal > SCHEDULE_ORD_FOURTH;
}

// Sets wDay (and wDayOfWeek) of st to the ordinal day of the kind in st's month; the rest of st is
// left alone.
void FindOrdinalDay(BYTE bOrdinal, BYTE bKind, SYSTEMTIME& st) {
    int iLast = GetLastDayInMonth(st.wMonth, st.wYear);
    int iDay;
    if (!IsLast(bOrdinal)) {
        int n = bOrdinal;
        iDay = 1;
        int iDow = DayOfWeek(st.wYear, st.wMonth, 1);
        if (bKind <= 6) {
            iDay += (bKind - iDow + 7) % 7 + n * 7;
        } else if (bKind == SCHEDULE_KIND_DAY) {
            iDay += n;
        } else if (bKind == SCHEDULE_KIND_WORKDAY) {
            // Saturday is a workday here; only Sundays are passed over.
            if (iDow == 0) {
                iDay = 2;
                iDow = 1;
            }
            for (int i = 0; i < n; ++i) {
                ++iDay;
                iDow = (iDow + 1) % 7;
                if (iDow == 0) {
                    ++iDay;
                    iDow = 1;
                }
            }
        } else if (bKind == SCHEDULE_KIND_WEEKEND) {
            // The later weekend ordinals count Saturdays: the second day of weekend is the next
            // week's Saturday, not the Sunday after the first Saturday.
            if (iDow >= 1 && iDow <= 5) {
                iDay += 6 - iDow;
                iDow = 6;
            }
            if (n > 0)
                iDay += iDow == 6 ? n * 7 : 6 + (n - 1) * 7;
        }
    } else {
        iDay = iLast;
        int iDow = DayOfWeek(st.wYear, st.wMonth, iLast);
        if (bKind <= 6)
            iDay -= (iDow - bKind + 7) % 7;
        else if (bKind == SCHEDULE_KIND_WORKDAY && iDow == 0)
            iDay -= 1;
        else if (bKind == SCHEDULE_KIND_WEEKEND && iDow >= 1 && iDow <= 5)
            iDay -= iDow;
    }
    st.wDay = static_cast<WORD>(iDay);
    st.wDayOfWeek = static_cast<WORD>(DayOfWeek(st.wYear, st.wMonth, iDay));
}

// Seconds of local calendar fields counted as if they were UTC; zone-free calendar arithmetic.
long long LocalSeconds(SYSTEMTIME const& st) {
    long long y = st.wYear - (st.wMonth <= 2 ? 1 : 0);
    long long era = (y >= 0 ? y : y - 399) / 400;
    long long yoe = y - era * 400;
    long long doy = (153 * (st.wMonth + (st.wMonth > 2 ? -3 : 9)) + 2) / 5 + st.wDay - 1;
    long long days = era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
    return days * 86400 + st.wHour * 3600 + st.wMinute * 60 + st.wSecond;
}

// Moves calendar fields by whole days to that day's midnight, with its weekday.
void AddCalendarDays(SYSTEMTIME& st, int iDays) {
    long long z = LocalSeconds(st) / 86400 + iDays + 719468;
    long long era = (z >= 0 ? z : z - 146096) / 146097;
    long long doe = z - era * 146097;
    long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    long long mp = (5 * doy + 2) / 153;
    int iMonth = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    st.wYear = static_cast<WORD>(yoe + era * 400 + (iMonth <= 2 ? 1 : 0));
    st.wMonth = static_cast<WORD>(iMonth);
    st.wDay = static_cast<WORD>(doy - (153 * mp + 2) / 5 + 1);
    st.wDayOfWeek = static_cast<WORD>(DayOfWeek(st.wYear, st.wMonth, st.wDay));
    st.wHour = st.wMinute = st.wSecond = st.wMilliseconds = 0;
}

long long const LAST_32BIT_TIME = 0x7FFFFFFFLL;

// One run of the generation over one record. It throws NVThrowData on failure; CreateTermine
// catches it.
//
// The time helpers answer -1 for every time after TERMIN_MAX_DATE, but a date between that limit
// and the end of the 32-bit range is only dropped while one beyond it is a failure. Times are
// therefore held in 64 bits here, and a result the helpers refuse is carried on with the zone's
// offset at TERMIN_MAX_DATE (no zone changes its clocks in the hours after it).
class TerminGenerator {
public:
    TerminGenerator(ScheduleData& sd, ScheduleTerminArray& daTermine, int& iCurrent, long tNow, bool bAll)
        : m_sd(sd), m_daTermine(daTermine), m_iCurrent(iCurrent), m_tNow(tNow), m_bAll(bAll) {}

    void Run(long tEventDate);

private:
    bool CanWalk() const;
    bool CountReached() const {
        return m_daTermine.m_iCount + static_cast<long long>(m_iBase) >= m_llMaxCount;
    }
    void RefreshWalk() {
        Time_tToSystemTime(static_cast<long>(m_tWalk), &m_stWalk, m_sd.dwTimeZone, false, nullptr, 999);
    }
    long long BeyondMaxDate(long long llLocal) const;
    long long ToTime(SYSTEMTIME const& st) const;
    void WalkDays(int iDays);
    void SetWalk(long long t);
    void AddTermin(SYSTEMTIME& st);
    void StepDaily();
    void StepWeekly();
    void StepMonthly();
    void StepYearly();

    ScheduleData& m_sd;
    ScheduleTerminArray& m_daTermine;
    int& m_iCurrent;
    long const m_tNow;
    bool const m_bAll;

    int m_iDuration = 0;
    long long m_llMaxCount = 0;
    long long m_tLimit = 0;
    long long m_llOffsetAtMax = 0; // local minus UTC seconds at TERMIN_MAX_DATE
    bool m_bOffsetKnown = false;   // false for a zone the helpers do not know
    int m_iBase = 0;
    long long m_tWalk = 0;
    long long m_tPrevEnd = 0;
    bool m_bFirstPass = true;
    bool m_bBeyond32Bits = false;
    bool m_bWalkFieldsSet = false; // m_stWalk already holds the fields of m_tWalk
    SYSTEMTIME m_stStart{};
    SYSTEMTIME m_stWalk{};
};

// Values that the dialog never lets through would make a pattern step stand still; such a record
// describes no dates.
bool TerminGenerator::CanWalk() const {
    switch (m_sd.bPattern) {
    case SCHEDULE_DAILY:
        if (m_sd.bDailyMode == SCHEDULE_DAILY_INTERVAL)
            return m_sd.wDayInterval > 0;
        return m_sd.bDailyMode == SCHEDULE_DAILY_WORKDAYS || m_sd.bDailyMode == SCHEDULE_DAILY_WEEKEND;
    case SCHEDULE_WEEKLY:
        return true;
    case SCHEDULE_MONTHLY:
        if (m_sd.bMonthInterval == 0)
            return false;
        return (m_sd.bMonthlyMode == 0 && m_sd.bMonthDay > 0) || m_sd.bMonthlyMode == 1;
    case SCHEDULE_YEARLY:
        if (m_sd.bYearMonth > 11)
            return false;
        return (m_sd.bYearlyMode == 0 && m_sd.bYearDay > 0) || m_sd.bYearlyMode == 1;
    default:
        return false;
    }
}

// A local time that the helpers refused: after TERMIN_MAX_DATE it is carried on, anything else
// (before 1970, unknown zone) stays -1.
long long TerminGenerator::BeyondMaxDate(long long llLocal) const {
    if (!m_bOffsetKnown)
        return -1;
    long long t = llLocal - m_llOffsetAtMax;
    return t > TERMIN_MAX_DATE ? t : -1;
}

long long TerminGenerator::ToTime(SYSTEMTIME const& st) const {
    SYSTEMTIME stCopy = st;
    long t = SystemTimeToTime_t(&stCopy, m_sd.dwTimeZone, false);
    return t >= 0 ? t : BeyondMaxDate(LocalSeconds(st));
}

// Walks to the midnight iDays on, keeping the walking fields in step, as NVAddDays would from the
// walking date's midnight; the calendar arithmetic spares the conversion back for every day.
void TerminGenerator::WalkDays(int iDays) {
    AddCalendarDays(m_stWalk, iDays);
    SetWalk(ToTime(m_stWalk));
    m_bWalkFieldsSet = true;
}

// Every step moves forward. A walk that the helpers refuse or that leaves the 32-bit range has gone
// where no date can be; whether that is a failure is decided at the head of the next pass.
void TerminGenerator::SetWalk(long long t) {
    if (t < m_tWalk || t > LAST_32BIT_TIME) {
        m_bBeyond32Bits = true;
        t = LAST_32BIT_TIME + 1;
    }
    m_tWalk = t;
}

void TerminGenerator::Run(long tEventDate) {
    m_iDuration = NVGetTime_tDiv(m_sd.tEnd, m_sd.tStart, m_sd.dwTimeZone);
    if (m_iDuration < 0)
        SCHEDULE_FAIL(IDS_VTR_DURATION_NEGATIVE);

    if (m_sd.bEndMode == SCHEDULE_END_COUNT) {
        m_llMaxCount = m_sd.wEndCount;
        m_tLimit = TERMIN_MAX_DATE;
    } else if (m_sd.bEndMode == SCHEDULE_END_DATE) {
        m_llMaxCount = 0x7FFFFFFF;
        m_tLimit = m_sd.tSeriesEnd;
    } else {
        m_sd.tSeriesEnd = tEventDate;
        m_llMaxCount = 0x7FFFFFFF;
        m_tLimit = tEventDate;
    }
    // No time after the latest date can be converted, and no date picker reaches beyond it.
    if (m_tLimit > TERMIN_MAX_DATE)
        m_tLimit = TERMIN_MAX_DATE;

    Time_tToSystemTime(m_sd.tStart, &m_stStart, m_sd.dwTimeZone, false, nullptr, 999);
    SYSTEMTIME stMax;
    Time_tToSystemTime(TERMIN_MAX_DATE, &stMax, m_sd.dwTimeZone, false, nullptr, 999);
    m_bOffsetKnown = stMax.wYear != 0;
    m_llOffsetAtMax = LocalSeconds(stMax) - TERMIN_MAX_DATE;

    long tFrom = m_sd.tSeriesStart;
    if (!m_bAll && (m_sd.bFlags & SCHEDULE_FLAG_RESTART_VALID)) {
        m_iBase = m_sd.wRestartIndex;
        tFrom = m_sd.tRestartDate;
    }
    m_daTermine.iFirstTerminIndex = m_iBase;
    m_sd.bFlags &= ~SCHEDULE_FLAG_RESTART_VALID;
    m_bFirstPass = true;

    // Days after the latest date hold no date that could be converted.
    if (!CanWalk() || tFrom > TERMIN_MAX_DATE || m_tLimit <= 0)
        return;
    m_tWalk = NVGetBeginOfDay(tFrom, m_sd.dwTimeZone);
    if (m_tWalk < 0)
        SCHEDULE_FAIL(IDS_VTR_DATE_BEYOND_MAX);

    for (;;) {
        if (CountReached())
            return;
        // A series that still wants dates but walked out of the 32-bit range cannot have them; one
        // with an end of its own has simply passed it.
        if (m_bBeyond32Bits && m_tLimit >= TERMIN_MAX_DATE)
            SCHEDULE_FAIL(IDS_VTR_DATE_BEYOND_MAX);
        if (m_tWalk >= m_tLimit)
            return;
        if (!m_bWalkFieldsSet)
            RefreshWalk();
        m_bWalkFieldsSet = false;
        switch (m_sd.bPattern) {
        case SCHEDULE_DAILY:
            StepDaily();
            break;
        case SCHEDULE_WEEKLY:
            StepWeekly();
            break;
        case SCHEDULE_MONTHLY:
            StepMonthly();
            break;
        case SCHEDULE_YEARLY:
            StepYearly();
            break;
        }
        m_bFirstPass = false;
        if (m_iCurrent >= 0 && !m_bAll && (m_sd.bFlags & SCHEDULE_FLAG_MORE_DATES))
            return;
    }
}

void TerminGenerator::AddTermin(SYSTEMTIME& st) {
    st.wHour = m_stStart.wHour;
    st.wMinute = m_stStart.wMinute;
    st.wSecond = m_stStart.wSecond;
    long long tBegin = ToTime(st);
    if (tBegin < 0)
        SCHEDULE_FAIL(IDS_VTR_DATE_BEYOND_MAX);
    // Behind an end of the series' own nothing matters, not even the 32-bit range.
    if (tBegin >= m_tLimit && m_tLimit < TERMIN_MAX_DATE)
        return;
    long tAdded = tBegin <= TERMIN_MAX_DATE
                      ? NVAddToTime_t(static_cast<long>(tBegin), m_iDuration, m_sd.dwTimeZone)
                      : -1;
    long long tFinish = tAdded >= 0 ? tAdded : BeyondMaxDate(LocalSeconds(st) + m_iDuration);
    // A time that does not fit 32 bits is a negative one there.
    if (tFinish < 0 || tBegin > LAST_32BIT_TIME || tFinish > LAST_32BIT_TIME)
        SCHEDULE_FAIL(IDS_VTR_DATE_BEYOND_MAX);

    // Dates at or after the end are not part of the series, nor dates of the first month or year
    // that are over before the series starts.
    if (tBegin >= m_tLimit || tFinish < m_tWalk)
        return;

    ScheduleTermin termin;
    termin.tStart = static_cast<long>(tBegin > m_tWalk ? tBegin : m_tWalk);
    termin.tEnd = static_cast<long>(tFinish < m_tLimit ? tFinish : m_tLimit);
    if (m_tPrevEnd > termin.tStart)
        SCHEDULE_FAIL(IDS_VTR_DATES_OVERLAP);

    int iIndex = m_daTermine.Add(termin);
    if (iIndex < 0)
        Throw(ERROR_NOT_ENOUGH_MEMORY, "DynaArray::Add");
    m_tPrevEnd = termin.tEnd;

    if (m_iCurrent >= 0) {
        m_sd.bFlags |= SCHEDULE_FLAG_MORE_DATES;
    } else if (termin.tEnd > m_tNow) {
        m_iCurrent = iIndex;
        if (!(m_sd.bFlags & SCHEDULE_FLAG_RESTART_VALID)) {
            m_sd.bFlags |= SCHEDULE_FLAG_RESTART_VALID;
            m_sd.wRestartIndex = static_cast<WORD>(m_iBase + iIndex);
            m_sd.tRestartDate = static_cast<long>(m_tWalk);
        }
    }
}

void TerminGenerator::StepDaily() {
    int iDays = 0;
    int iDow = m_stWalk.wDayOfWeek;
    switch (m_sd.bDailyMode) {
    case SCHEDULE_DAILY_INTERVAL:
        AddTermin(m_stWalk);
        iDays = m_sd.wDayInterval;
        break;
    case SCHEDULE_DAILY_WORKDAYS:
        if (iDow >= 1 && iDow <= 5)
            AddTermin(m_stWalk);
        iDays = (iDow == 5 || iDow == 6) ? 2 : 1;
        break;
    case SCHEDULE_DAILY_WEEKEND:
        if (iDow == 6 || iDow == 0)
            AddTermin(m_stWalk);
        iDays = iDow == 6 ? 1 : (iDow == 0 ? 6 : 6 - iDow);
        break;
    }
    WalkDays(iDays);
}

// Weeks run from Monday to Sunday; the first is the week of the series start, from its weekday on,
// and the interval counts such weeks.
void TerminGenerator::StepWeekly() {
    for (int iPos = (m_stWalk.wDayOfWeek + 6) % 7; iPos < 7; ++iPos) {
        // The base index counts here as at the head of the pass, so that a resumed generation
        // cannot run past the end count in the middle of a week.
        if (CountReached() || m_tWalk >= m_tLimit)
            return;
        if (m_sd.bWeekDays & (1 << m_stWalk.wDayOfWeek))
            AddTermin(m_stWalk);
        WalkDays(1);
    }
    if (m_sd.bWeekInterval > 1 && m_tWalk < m_tLimit)
        WalkDays(m_sd.bWeekInterval * 7 - 7);
}

void TerminGenerator::StepMonthly() {
    SYSTEMTIME& st = m_stWalk;
    if (m_sd.bMonthlyMode == 0) {
        int iLast = GetLastDayInMonth(st.wMonth, st.wYear);
        st.wDay = static_cast<WORD>(m_sd.bMonthDay >= iLast ? iLast : m_sd.bMonthDay);
    } else if (m_bFirstPass) {
        FindOrdinalDay(m_sd.bMonthOrdinal, m_sd.bMonthDayKind, st);
    }
    AddTermin(st);

    int iMonthIndex = st.wYear * 12 + m_sd.bMonthInterval + st.wMonth - 1;
    st.wYear = static_cast<WORD>(iMonthIndex / 12);
    st.wMonth = static_cast<WORD>(iMonthIndex % 12 + 1);
    st.wHour = st.wMinute = st.wSecond = st.wMilliseconds = 0;
    if (m_sd.bMonthlyMode == 0) {
        int iLast = GetLastDayInMonth(st.wMonth, st.wYear);
        st.wDay = static_cast<WORD>(m_sd.bMonthDay >= iLast ? iLast : m_sd.bMonthDay);
    } else {
        st.wDay = 1;
        FindOrdinalDay(m_sd.bMonthOrdinal, m_sd.bMonthDayKind, st);
    }
    SetWalk(ToTime(st));
}

// There is no year interval. The time of day stays in the walking date, which makes no difference
// to the tests of AddTermin for a date of the same day.
void TerminGenerator::StepYearly() {
    SYSTEMTIME& st = m_stWalk;
    if (m_sd.bYearlyMode == 0) {
        st.wMonth = static_cast<WORD>(m_sd.bYearMonth + 1);
        int iLast = GetLastDayInMonth(st.wMonth, st.wYear);
        st.wDay = static_cast<WORD>(m_sd.bYearDay >= iLast ? iLast : m_sd.bYearDay);
        AddTermin(st);
        st.wYear += 1;
        // Only the year of the next walking date matters, but the walking date must not lie after
        // the next year's date: 29 February would otherwise become 1 March and the 28th would
        // count as over before the walk.
        iLast = GetLastDayInMonth(st.wMonth, st.wYear);
        if (st.wDay > iLast)
            st.wDay = static_cast<WORD>(iLast);
    } else {
        if (m_bFirstPass) {
            st.wMonth = static_cast<WORD>(m_sd.bYearMonth + 1);
            FindOrdinalDay(m_sd.bYearOrdinal, m_sd.bYearDayKind, st);
        }
        AddTermin(st);
        st.wYear += 1;
        FindOrdinalDay(m_sd.bYearOrdinal, m_sd.bYearDayKind, st);
    }
    SetWalk(ToTime(st));
}

int Sign(long long llDiff) {
    if (llDiff > 0x7FFFFFFF)
        return 0x7FFFFFFF;
    if (llDiff < -0x7FFFFFFF)
        return -0x7FFFFFFF;
    return static_cast<int>(llDiff);
}

} // namespace

DlgScheduler::ScheduleDataExt::ScheduleDataExt() {
    std::memset(static_cast<void*>(this), 0, sizeof(*this));
    wStructSize = sizeof(ScheduleData);
    wEndCount = 1;
    wDayInterval = 1;
    bWeekInterval = 1;
    bMonthDay = 1;
    bMonthInterval = 1;
    bYearDay = 1;
}

bool DlgScheduler::CreateTermine(ScheduleData& sd, long tEventDate,
                                 DynaArrayTpl<ScheduleTermin, 0, 0>& daTermine, int& iCurrent,
                                 char* lpszError, unsigned int cbError, unsigned long* pdwError, bool bAll) {
    iCurrent = -1;
    long tNow = NVGetNow();
    daTermine.Clear();
    daTermine.iFirstTerminIndex = 0;
    sd.bFlags &= ~SCHEDULE_FLAG_MORE_DATES;

    if (!sd.bSeries) {
        // A single date is current only while it runs; one still to come is not, unlike the
        // next date of a series.
        daTermine.Add(ScheduleTermin{sd.tStart, sd.tEnd});
        if (sd.tStart <= tNow && sd.tEnd > tNow)
            iCurrent = 0;
        return true;
    }
    if (!(sd.bFlags & SCHEDULE_FLAG_OBSERVE_RELEASE)) {
        daTermine.Add(ScheduleTermin{TERMIN_MIN_DATE, TERMIN_MAX_DATE});
        return true;
    }

    try {
        TerminGenerator generator(sd, daTermine, iCurrent, tNow, bAll);
        generator.Run(tEventDate);
    } catch (NVThrowData& e) {
        if (!lpszError) {
            ClientModuleGUIBase module; // the module's title rule picks the box's title
            module.ShowErrorMsg("%s", e.GetText());
        } else
            StrNZCpy(lpszError, e.GetText(), cbError);
        if (pdwError)
            *pdwError = static_cast<unsigned long>(e.m_iCode);
        return false;
    }
    return true;
}

int DlgScheduler::CmpScheduleData(ScheduleData& a, ScheduleData& b) {
    int iDiff = (a.bFlags & SCHEDULE_FLAG_OBSERVE_RELEASE) - (b.bFlags & SCHEDULE_FLAG_OBSERVE_RELEASE);
    if (iDiff)
        return iDiff;
    if ((iDiff = a.bSeries - b.bSeries) != 0)
        return iDiff;
    if (!a.bSeries && a.tStart == b.tStart)
        return Sign(static_cast<long long>(a.tEnd) - b.tEnd);

    long long llDiff = (static_cast<long long>(a.tEnd) - b.tEnd) - a.tStart + b.tStart;
    if (llDiff)
        return Sign(llDiff);
    if ((iDiff = static_cast<int>(a.tStart % 86400 - b.tStart % 86400)) != 0)
        return iDiff;
    if ((llDiff = static_cast<long long>(a.tSeriesStart) - b.tSeriesStart) != 0)
        return Sign(llDiff);
    if ((iDiff = a.bPattern - b.bPattern) != 0)
        return iDiff;
    if ((iDiff = a.bEndMode - b.bEndMode) != 0)
        return iDiff;

    switch (a.bEndMode) {
    case SCHEDULE_END_EVENTDATE:
        break;
    case SCHEDULE_END_COUNT:
        if ((iDiff = a.wEndCount - b.wEndCount) != 0)
            return iDiff;
        break;
    case SCHEDULE_END_DATE:
        if ((llDiff = static_cast<long long>(a.tSeriesEnd) - b.tSeriesEnd) != 0)
            return Sign(llDiff);
        break;
    default:
        return 0;
    }

    switch (a.bPattern) {
    case SCHEDULE_DAILY:
        if ((iDiff = a.bDailyMode - b.bDailyMode) != 0)
            return iDiff;
        return a.bDailyMode == SCHEDULE_DAILY_INTERVAL ? a.wDayInterval - b.wDayInterval : 0;
    case SCHEDULE_WEEKLY:
        if ((iDiff = a.bWeekInterval - b.bWeekInterval) != 0)
            return iDiff;
        return a.bWeekDays - b.bWeekDays;
    case SCHEDULE_MONTHLY:
        if ((iDiff = a.bMonthlyMode - b.bMonthlyMode) != 0)
            return iDiff;
        if (a.bMonthlyMode == 0) {
            if ((iDiff = a.bMonthDay - b.bMonthDay) != 0)
                return iDiff;
            return a.bMonthInterval - b.bMonthInterval;
        }
        if (a.bMonthlyMode == 1) {
            if ((iDiff = a.bMonthOrdinal - b.bMonthOrdinal) != 0)
                return iDiff;
            if ((iDiff = a.bMonthDayKind - b.bMonthDayKind) != 0)
                return iDiff;
            return a.bMonthInterval - b.bMonthInterval;
        }
        return 0;
    case SCHEDULE_YEARLY:
        if ((iDiff = a.bYearlyMode - b.bYearlyMode) != 0)
            return iDiff;
        if (a.bYearlyMode == 0) {
            if ((iDiff = a.bYearDay - b.bYearDay) != 0)
                return iDiff;
            return a.bYearMonth - b.bYearMonth;
        }
        if (a.bYearlyMode == 1) {
            if ((iDiff = a.bYearOrdinal - b.bYearOrdinal) != 0)
                return iDiff;
            if ((iDiff = a.bYearDayKind - b.bYearDayKind) != 0)
                return iDiff;
            return a.bYearMonth - b.bYearMonth;
        }
        return 0;
    default:
        return 0;
    }
}

int DlgScheduler::GetDurationText(long tStart, long tEnd, unsigned long dwTimeZone, char* lpszText,
                                  unsigned int cbText) {
    if (!lpszText || cbText == 0)
        return 0;
    int iSeconds = NVGetTime_tDiv(tEnd, tStart, dwTimeZone);
    if (iSeconds < 0)
        return static_cast<int>(StrNZCpy(lpszText, VTRStringTable::GetText(IDS_VTR_NEGATIVE), cbText));

    char szSep[8];
    char cSep = ':';
    LCID lcid = MAKELCID(GetCurrentLangID(), SORT_DEFAULT);
    if (GetLocaleInfoA(lcid, LOCALE_STIME | LOCALE_NOUSEROVERRIDE, szSep, sizeof szSep) > 0 && szSep[0])
        cSep = szSep[0];
    int iLen = SNPrintf(lpszText, cbText, "%d%c%02d%c%02d", iSeconds / 86400, cSep, iSeconds % 86400 / 3600,
                        cSep, iSeconds % 3600 / 60);
    return iLen < 0 ? 0 : iLen;
}

void DlgScheduler::SetDurationText(ScheduleDataExt& sd) {
    GetDurationText(sd.tStart, sd.tEnd, sd.dwTimeZone, sd.szDuration, sizeof sd.szDuration);
}
