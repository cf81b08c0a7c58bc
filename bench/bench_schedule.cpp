// Date series generation: 10,000 daily dates against a plain walk of 10,000 days through the same
// zone arithmetic, measured in one run.
#include "schedule/DlgScheduler.h"

#include "NVDates.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double Milliseconds(LARGE_INTEGER const& from, LARGE_INTEGER const& to) {
    LARGE_INTEGER freq;
    QueryPerformanceFrequency(&freq);
    return 1000.0 * static_cast<double>(to.QuadPart - from.QuadPart) / static_cast<double>(freq.QuadPart);
}

// Median of several rounds, so that one slow round of a shared machine does not decide.
template <class F> double MedianMs(int iRounds, F run) {
    std::vector<double> times;
    for (int i = 0; i < iRounds; ++i) {
        LARGE_INTEGER a, b;
        QueryPerformanceCounter(&a);
        run();
        QueryPerformanceCounter(&b);
        times.push_back(Milliseconds(a, b));
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    TIME_ZONE_INFORMATION tzi{};
    tzi.Bias = -60;
    tzi.StandardDate.wMonth = 10;
    tzi.StandardDate.wDay = 5;
    tzi.StandardDate.wHour = 3;
    tzi.DaylightDate.wMonth = 3;
    tzi.DaylightDate.wDay = 5;
    tzi.DaylightDate.wHour = 2;
    tzi.DaylightBias = -60;
    NVSetTimeZone(1, &tzi);
    NVSetNowOverride(1262304000); // 1 January 2010

    long const tFirst = 946681200; // 1 January 2000, 00:00 in the zone
    DlgScheduler::ScheduleDataExt sd;
    sd.bSeries = 1;
    sd.bFlags = SCHEDULE_FLAG_OBSERVE_RELEASE;
    sd.dwTimeZone = 1;
    sd.tStart = tFirst + 20 * 3600;
    sd.tEnd = tFirst + 22 * 3600;
    sd.tSeriesStart = tFirst;
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 10000;

    DynaArrayTpl<ScheduleTermin, 0, 0> daTermine;
    int iCurrent = 0;
    char szError[256] = "";
    bool bOk = true;
    double dGenerate = MedianMs(15, [&] {
        bOk = bOk &&
              DlgScheduler::CreateTermine(sd, 0, daTermine, iCurrent, szError, sizeof szError, nullptr, true);
    });
    if (!bOk || daTermine.GetCount() != 10000) {
        std::printf("generation failed: %d dates, %s\n", daTermine.GetCount(), szError);
        return 1;
    }

    volatile long tSink = 0;
    double dWalk = MedianMs(15, [&] {
        long t = tFirst;
        for (int i = 0; i < 10000; ++i)
            t = NVAddDays(t, 1, 1);
        tSink = t;
    });

    std::printf("generate 10000 dates: %.3f ms (ratio %.2f vs 10000 NVAddDays steps %.3f ms)\n", dGenerate,
                dWalk > 0 ? dGenerate / dWalk : 0.0, dWalk);
    return 0;
}
