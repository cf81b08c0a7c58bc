// Date series: expanding a ScheduleData record into dates, comparing records, the duration text.
//
// The generation needs no window; the scheduler's dialog and its pattern pages edit the record and
// call the static operations here, and client modules call them directly.
#pragma once

#include "frame/VTRExport.h"
#include "schedule/ScheduleData.h"

class VTR_API DlgScheduler {
public:
    // The dialog's working record: the stored fields and what only the dialog needs.
    struct VTR_API ScheduleDataExt : public ScheduleData {
        long tShownStart;       // begin of the current or next date, from the grouped GetFields
        long tShownEnd;         // end of the same date
        long tEventDate;        // end of a series with SCHEDULE_END_EVENTDATE; 0 or less: none
        long tSaleStart;        // the 'Display in SALES from' date; 0 or less: none
        BYTE bMonthIntervalOrd; // working copy of bMonthInterval on the monthly page
        BYTE bYearMonthOrd;     // working copy of bYearMonth on the yearly page
        char szDuration[21];    // duration text, see SetDurationText
        DWORD dwGroupKey;       // the caller's key for grouping records

        // All fields zero, then the defaults of a daily series that has one date per day.
        ScheduleDataExt();
    };

    // Expands sd into daTermine in ascending order. iCurrent gets the index of the first date
    // that is not over, or -1. With bAll false the generation stops one date behind that one and
    // resumes from the restart fields of sd when they are valid. On failure the text goes to
    // lpszError (cbError bytes) or, with a null lpszError, to an error box; pdwError gets the
    // message id. sd is written: bFlags, the restart fields, and tSeriesEnd unless the end mode
    // is a count or a date.
    static bool CreateTermine(ScheduleData& sd, long tEventDate,
                              DynaArrayTpl<ScheduleTermin, 0, 0>& daTermine, int& iCurrent, char* lpszError,
                              unsigned int cbError, unsigned long* pdwError, bool bAll);

    // 0 when a and b describe the same dates, otherwise a signed difference usable as a sort order.
    static int CmpScheduleData(ScheduleData& a, ScheduleData& b);

    // Writes sd.szDuration from tStart and tEnd: days, hours and minutes with the language's time
    // separator ("1:02:03"), or the text for a negative duration.
    static void SetDurationText(ScheduleDataExt& sd);

    // The same text into any buffer; returns the characters written.
    static int GetDurationText(long tStart, long tEnd, unsigned long dwTimeZone, char* lpszText,
                               unsigned int cbText);
};
