// Single dates, the end rules, the latest date, the failures with their messages, the current date
// and the partial generation that resumes from the record's restart fields.
#include "ScheduleTestSupport.h"

#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

using namespace scheduletest;

namespace {

class SeriesGeneration : public ScheduleTest {
protected:
    struct Outcome {
        bool bOk;
        int iCurrent;
        unsigned long dwError;
        std::string text;
    };

    Outcome Generate(ScheduleData& sd, long tEventDate, bool bAll) {
        Outcome out{false, -2, 0xFFFF, ""};
        char szError[512] = "";
        out.bOk = DlgScheduler::CreateTermine(sd, tEventDate, m_daTermine, out.iCurrent, szError,
                                              sizeof szError, &out.dwError, bAll);
        out.text = szError;
        return out;
    }

    // The failure text names this library's source and line before the message.
    static void ExpectMessage(std::string const& text, char const* lpszMessage) {
        std::string const prefix = "(DlgSchedulerTermine.cpp ";
        EXPECT_EQ(0u, text.find(prefix)) << text;
        size_t star = text.find(")*");
        ASSERT_NE(std::string::npos, star) << text;
        std::string line = text.substr(prefix.size(), star - prefix.size());
        EXPECT_GT(atoi(line.c_str()), 0) << text;
        EXPECT_EQ(lpszMessage, text.substr(star + 2));
    }
};

TEST_F(SeriesGeneration, SingleDateAndThePlaceholderOfAnUnreleasedSeries) {
    DlgScheduler::ScheduleDataExt sd;
    sd.dwTimeZone = kZone;
    sd.tStart = Local(2020, 3, 1, 20);
    sd.tEnd = Local(2020, 3, 1, 23);

    NVSetNowOverride(Local(2020, 2, 1));
    Outcome out = Generate(sd, 0, true);
    ASSERT_TRUE(out.bOk);
    ASSERT_EQ(1, m_daTermine.GetCount());
    EXPECT_EQ(sd.tStart, m_daTermine.Get(0)->tStart);
    EXPECT_EQ(sd.tEnd, m_daTermine.Get(0)->tEnd);
    EXPECT_EQ(-1, out.iCurrent) << "a single date still to come is not current";

    NVSetNowOverride(Local(2020, 3, 1, 21));
    EXPECT_EQ(0, Generate(sd, 0, true).iCurrent) << "running now";
    NVSetNowOverride(Local(2020, 3, 1, 23));
    EXPECT_EQ(-1, Generate(sd, 0, true).iCurrent) << "over";

    // Reversed times stand as they are in a single date.
    std::swap(sd.tStart, sd.tEnd);
    ASSERT_TRUE(Generate(sd, 0, true).bOk);
    EXPECT_EQ(Local(2020, 3, 1, 23), m_daTermine.Get(0)->tStart);

    // A series that the client has not released yields one date spanning all time, whatever it says.
    sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 2, 1));
    sd.bFlags = 0;
    std::swap(sd.tStart, sd.tEnd);
    out = Generate(sd, 0, true);
    ASSERT_TRUE(out.bOk);
    ASSERT_EQ(1, m_daTermine.GetCount());
    EXPECT_EQ(86000, m_daTermine.Get(0)->tStart);
    EXPECT_EQ(0x7FFF0000, m_daTermine.Get(0)->tEnd);
    EXPECT_EQ(-1, out.iCurrent);
}

TEST_F(SeriesGeneration, EndDateIsExclusiveAndCutsTheLastDate) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 1, 3, 21));
    auto begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 1}, {2020, 1, 2}, {2020, 1, 3}}), begins) << Show(begins);
    ASSERT_EQ(3, m_daTermine.GetCount());
    EXPECT_EQ(Local(2020, 1, 2, 22), m_daTermine.Get(1)->tEnd);
    EXPECT_EQ(Local(2020, 1, 3, 21), m_daTermine.Get(2)->tEnd) << "cut at the series end";
    EXPECT_EQ(Local(2020, 1, 3, 21), sd.tSeriesEnd) << "an end date is not rewritten";

    // A date that begins exactly at the end is not part of the series.
    sd.tSeriesEnd = Local(2020, 1, 3, 20);
    begins = Begins(sd);
    EXPECT_EQ(At20({{2020, 1, 1}, {2020, 1, 2}}), begins) << Show(begins);
}

TEST_F(SeriesGeneration, EventDateEndsTheSeriesAndIsWrittenAsItsEnd) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2030, 1, 1));
    sd.bEndMode = SCHEDULE_END_EVENTDATE;
    auto begins = Begins(sd, Local(2020, 1, 2, 21));
    EXPECT_EQ(At20({{2020, 1, 1}, {2020, 1, 2}}), begins) << Show(begins);
    EXPECT_EQ(Local(2020, 1, 2, 21), m_daTermine.Get(1)->tEnd);
    EXPECT_EQ(Local(2020, 1, 2, 21), sd.tSeriesEnd);

    // An event date at or before the first day gives no dates and no failure.
    EXPECT_TRUE(Begins(sd, Local(2020, 1, 1)).empty());
    EXPECT_TRUE(Begins(sd, 0).empty());
    EXPECT_EQ(0, sd.tSeriesEnd);

    // Any end mode that is neither a count nor a date ends at the event date.
    sd.bEndMode = SCHEDULE_NOT_CHOSEN;
    begins = Begins(sd, Local(2020, 1, 2));
    EXPECT_EQ(At20({{2020, 1, 1}}), begins) << Show(begins);
}

TEST_F(SeriesGeneration, CountStopsSilentlyAtTheLatestDateButAStepBeyond32BitsFails) {
    // Small steps: the last day whose 20:00 lies before 18.01.2038 09:01:52 UTC is the 17th.
    auto sd = Series(SCHEDULE_DAILY, Local(2038, 1, 10), 0);
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 100;
    Outcome out = Generate(sd, 0, true);
    ASSERT_TRUE(out.bOk) << out.text;
    EXPECT_EQ(8, m_daTermine.GetCount());
    EXPECT_EQ(Local(2038, 1, 17, 20), m_daTermine.Get(m_daTermine.GetCount() - 1)->tStart);

    // A morning date of the 18th still fits.
    sd.tStart = Local(2019, 12, 2, 8);
    sd.tEnd = Local(2019, 12, 2, 9);
    ASSERT_TRUE(Generate(sd, 0, true).bOk);
    EXPECT_EQ(9, m_daTermine.GetCount());
    EXPECT_EQ(Local(2038, 1, 18, 8), m_daTermine.Get(8)->tStart);

    // A date that runs past the latest date is cut there.
    sd.tEnd = Local(2019, 12, 2, 11);
    ASSERT_TRUE(Generate(sd, 0, true).bOk);
    EXPECT_EQ(0x7FFF0000, m_daTermine.Get(8)->tEnd);

    // A monthly step from January 2038 lands in February, beyond 32 bits.
    sd = Series(SCHEDULE_MONTHLY, Local(2037, 11, 1), 0);
    sd.bMonthDay = 18;
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 10;
    out = Generate(sd, 0, true);
    EXPECT_FALSE(out.bOk);
    EXPECT_EQ(61u, out.dwError);
    ExpectMessage(out.text, "At least one date exceeds the maximum date of 18.01.2038");
    EXPECT_EQ(At20({{2037, 11, 18}, {2037, 12, 18}}),
              std::vector<long>({m_daTermine.Get(0)->tStart, m_daTermine.Get(1)->tStart}))
        << "the dates before the failure stay";
}

TEST_F(SeriesGeneration, NegativeDurationAndOverlapFailWithTheirMessages) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 1, 10));
    std::swap(sd.tStart, sd.tEnd);
    Outcome out = Generate(sd, 0, true);
    EXPECT_FALSE(out.bOk);
    EXPECT_EQ(57u, out.dwError);
    EXPECT_EQ(-1, out.iCurrent);
    EXPECT_EQ(0, m_daTermine.GetCount());
    ExpectMessage(out.text, "Date duration is negative");

    // 25 hours a day cannot follow each other; exactly 24 touch and pass.
    sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 1, 10));
    sd.tEnd = Local(2019, 12, 3, 21);
    out = Generate(sd, 0, true);
    EXPECT_FALSE(out.bOk);
    EXPECT_EQ(58u, out.dwError);
    EXPECT_EQ(1, m_daTermine.GetCount()) << "the first date stays";
    ExpectMessage(out.text, "One or more dates overlap.\nPlease correct your entries");
    sd.tEnd = Local(2019, 12, 3, 20);
    out = Generate(sd, 0, true);
    EXPECT_TRUE(out.bOk) << out.text;
    EXPECT_EQ(9, m_daTermine.GetCount());

    // A small buffer gets the start of the text; without a code pointer the call still reports.
    sd.tEnd = Local(2019, 12, 3, 21);
    char szShort[8] = "xxxxxxx";
    int iCurrent = 0;
    EXPECT_FALSE(
        DlgScheduler::CreateTermine(sd, 0, m_daTermine, iCurrent, szShort, sizeof szShort, nullptr, true));
    EXPECT_STREQ("(DlgSch", szShort);
}

TEST_F(SeriesGeneration, WithoutABufferTheFailureGoesToAnErrorBox) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 1, 10));
    sd.tEnd = Local(2019, 12, 4, 20);
    vtrtest::MsgBoxRecorder boxes;
    int iCurrent = 0;
    unsigned long dwError = 0;
    EXPECT_FALSE(DlgScheduler::CreateTermine(sd, 0, m_daTermine, iCurrent, nullptr, 0, &dwError, true));
    EXPECT_EQ(58u, dwError);
    ASSERT_EQ(1u, boxes.count());
    std::string text = vtrtest::Utf8(boxes.last().text);
    EXPECT_NE(std::string::npos, text.find(")*One or more dates overlap.\nPlease correct your entries"))
        << text;
    EXPECT_EQ(static_cast<unsigned>(MB_SETFOREGROUND | MB_ICONHAND), boxes.last().uFlags);
}

TEST_F(SeriesGeneration, PartialGenerationResumesFromTheRestartFields) {
    auto sd = Series(SCHEDULE_DAILY, Local(2020, 1, 1), Local(2020, 1, 31));
    NVSetNowOverride(Local(2020, 1, 10, 12));

    // Without valid restart fields a partial run walks from the start and ends one date behind.
    Outcome out = Generate(sd, 0, false);
    ASSERT_TRUE(out.bOk);
    EXPECT_EQ(11, m_daTermine.GetCount());
    EXPECT_EQ(9, out.iCurrent);
    EXPECT_EQ(9, sd.wRestartIndex);

    // Now it resumes at the current date: element 0 is date 9 of the series.
    out = Generate(sd, 0, false);
    ASSERT_TRUE(out.bOk);
    EXPECT_EQ(9, m_daTermine.iFirstTerminIndex);
    EXPECT_EQ(At20({{2020, 1, 10}, {2020, 1, 11}}),
              std::vector<long>({m_daTermine.Get(0)->tStart, m_daTermine.Get(1)->tStart}));
    EXPECT_EQ(2, m_daTermine.GetCount());
    EXPECT_EQ(0, out.iCurrent);
    EXPECT_TRUE(sd.bFlags & SCHEDULE_FLAG_MORE_DATES);

    // Later, the restart fields move on with the current date.
    NVSetNowOverride(Local(2020, 1, 20, 21));
    out = Generate(sd, 0, false);
    EXPECT_EQ(9, m_daTermine.iFirstTerminIndex);
    EXPECT_EQ(10, out.iCurrent);
    EXPECT_EQ(12, m_daTermine.GetCount());
    EXPECT_EQ(19, sd.wRestartIndex);
    EXPECT_EQ(Local(2020, 1, 20), sd.tRestartDate);

    // A full generation ignores them but writes them again.
    out = Generate(sd, 0, true);
    EXPECT_EQ(0, m_daTermine.iFirstTerminIndex);
    EXPECT_EQ(30, m_daTermine.GetCount());
    EXPECT_EQ(19, out.iCurrent);
    EXPECT_EQ(19, sd.wRestartIndex);
    EXPECT_EQ(SCHEDULE_FLAG_OBSERVE_RELEASE | SCHEDULE_FLAG_MORE_DATES | SCHEDULE_FLAG_RESTART_VALID,
              sd.bFlags);

    // With the last date current no further date follows.
    NVSetNowOverride(Local(2020, 1, 30, 21));
    EXPECT_EQ(29, Generate(sd, 0, true).iCurrent);
    EXPECT_EQ(SCHEDULE_FLAG_OBSERVE_RELEASE | SCHEDULE_FLAG_RESTART_VALID, sd.bFlags);
    NVSetNowOverride(Local(2020, 1, 20, 21));
    Generate(sd, 0, true);

    // Once everything is over the partial run finds no current date and drops the restart fields.
    NVSetNowOverride(Local(2020, 3, 1));
    out = Generate(sd, 0, false);
    EXPECT_EQ(-1, out.iCurrent);
    EXPECT_EQ(11, m_daTermine.GetCount()) << "dates 19 to 29";
    EXPECT_FALSE(sd.bFlags & SCHEDULE_FLAG_RESTART_VALID);
    out = Generate(sd, 0, false);
    EXPECT_EQ(0, m_daTermine.iFirstTerminIndex);
    EXPECT_EQ(30, m_daTermine.GetCount());
}

TEST_F(SeriesGeneration, ResumedWeekKeepsTheEndCountOfTheWholeSeries) {
    auto sd = Series(SCHEDULE_WEEKLY, Local(2020, 1, 6), 0);
    sd.bWeekDays = 0x7F;
    sd.bEndMode = SCHEDULE_END_COUNT;
    sd.wEndCount = 5; // 6 to 10 January
    NVSetNowOverride(Local(2020, 1, 8, 12));
    Outcome out = Generate(sd, 0, true);
    ASSERT_EQ(5, m_daTermine.GetCount());
    EXPECT_EQ(2, out.iCurrent);

    out = Generate(sd, 0, false);
    ASSERT_TRUE(out.bOk);
    EXPECT_EQ(2, m_daTermine.iFirstTerminIndex);
    auto begins = std::vector<long>();
    for (int i = 0; i < m_daTermine.GetCount(); ++i)
        begins.push_back(m_daTermine.Get(i)->tStart);
    EXPECT_EQ(At20({{2020, 1, 8}, {2020, 1, 9}, {2020, 1, 10}}), begins) << Show(begins);
}

} // namespace
