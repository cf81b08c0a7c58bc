#include "NVErrors.h"
#include "NVLanguage.h"
#include "NVMsgBox.h"

#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Throws from inside a callee, as long operations do, with resources to release on the way.
struct Guard {
    int& iReleased;
    ~Guard() { ++iReleased; }
};
void ImportLine(int line, char const* text, int& released) {
    Guard g{released};
    Throw(0,
          "Invalid numerical value in line \xA7"
          "1!d!. '\xA7"
          "2'",
          line, text);
}

TEST(Throw, CarriesTheFormattedTextToTheCatchAcrossModules) {
    int released = 0;
    try {
        ImportLine(17, "12x", released);
        FAIL() << "Throw returned";
    } catch (NVThrowData& e) {
        EXPECT_STREQ("Invalid numerical value in line 17. '12x'", e.m_lpszText);
        EXPECT_EQ(0, e.m_iCode);
        EXPECT_FALSE(e.IsSilent());
    }
    EXPECT_EQ(1, released) << "unwinding released the guard";

    try {
        Throw(ERROR_FILE_NOT_FOUND, "CreateFile");
    } catch (NVThrowData e) { // by value, as some callers do
        EXPECT_EQ(ERROR_FILE_NOT_FOUND, e.m_iCode);
        std::string text = e.GetText();
        EXPECT_EQ(0u, text.find("CreateFile failed: ")) << text;
        EXPECT_NE(std::string::npos, text.find("(0x00000002)")) << text;
    }

    try {
        Throw(0, "");
    } catch (NVThrowData const& e) {
        EXPECT_TRUE(e.IsSilent()) << "an empty text means the user was told already";
    }

    NVThrowData a(0, "first");
    NVThrowData b(a);
    b = NVThrowData(0, "second");
    EXPECT_STREQ("first", a.GetText());
    EXPECT_STREQ("second", b.GetText());
    NVThrowData none(0, nullptr);
    EXPECT_STREQ("", none.GetText());
}

TEST(MsgBoxSink, RecordsFormattedBoxesAndAnswersAsScripted) {
    vtrtest::MsgBoxRecorder boxes;
    NVSetAppName("Kasse");
    EXPECT_EQ(IDOK, NVMsgBox(nullptr, nullptr, 0x10010,
                             "\xA7"
                             "2 of \xA7"
                             "1!d! seats left",
                             80, "Four"));
    ASSERT_EQ(1u, boxes.count());
    EXPECT_EQ(L"Kasse", boxes.last().title) << "a box without title takes the application's name";
    EXPECT_EQ(L"Four of 80 seats left", boxes.last().text);
    EXPECT_EQ(0x10010u, boxes.last().uFlags);

    boxes.Answer(IDNO);
    EXPECT_EQ(IDNO, NVMsgBoxW(nullptr, L"Frage", MB_YESNO | MB_SETFOREGROUND, L"Delete \u00a71?", L"row"));
    EXPECT_EQ(L"Frage", boxes.last().title);
    EXPECT_EQ(L"Delete row?", boxes.last().text);
    EXPECT_EQ(IDNO, NVMessageBox(nullptr,
                                 "plain \xA7"
                                 "1",
                                 "T", MB_YESNO | MB_DEFBUTTON2))
        << "no script: the default button";
    EXPECT_EQ(L"plain \u00a71", boxes.last().text) << "plain boxes do not format";
    EXPECT_EQ(IDCANCEL, NVMessageBox(nullptr, "x", "T", MB_YESNOCANCEL | MB_DEFBUTTON3));
    NVSetAppName("");
}

TEST(MsgBoxParent, IsTheTopLevelWindowOfTheWantedOne) {
    vtrtest::HostDialog dlg;
    HWND edit = dlg.AddControl(L"EDIT", 0, 100, 0, 0, 50, 20);
    EXPECT_EQ(dlg.hwnd(), NVGetMsgBoxParent(edit));
    EXPECT_EQ(dlg.hwnd(), NVGetMsgBoxParent(dlg.hwnd()));
    EXPECT_EQ(GetActiveWindow(), NVGetMsgBoxParent(reinterpret_cast<HWND>(0x1234)));
}

TEST(ErrorTexts, LogAndSystemTexts) {
    char buf[256];
    SetLastError(ERROR_ACCESS_DENIED);
    std::string denied = GetLastErrorText(buf, sizeof buf, 0, 0);
    EXPECT_FALSE(denied.empty());
    EXPECT_EQ(denied, GetLastErrorText(buf, sizeof buf, ERROR_ACCESS_DENIED, 0))
        << "code 0 is the last error";
    EXPECT_NE('\n', denied.back()) << "no trailing line break";
    EXPECT_STREQ("Error 4294967 (0x00418937)", GetLastErrorText(buf, sizeof buf, 4294967, 0));
    char tiny[8];
    GetLastErrorText(tiny, sizeof tiny, 4294967, 0);
    EXPECT_EQ(7u, std::string(tiny).size());

    vtrtest::TempDir dir;
    std::string log = dir.File("Webcam.log");
    EXPECT_GT(WriteToLog(log.c_str(),
                         "graph \xA7"
                         "1 failed: 0x%08X",
                         "Preview"),
              0);
    EXPECT_GT(WriteToLog(log.c_str(), "second %d", 2), 0);
    std::string text = vtrtest::ReadFileBytes(log);
    ASSERT_EQ(2, std::count(text.begin(), text.end(), '\n')) << text;
    EXPECT_NE(std::string::npos, text.find(" graph Preview failed: 0x%08X\r\n"))
        << "a message text keeps '%'";
    EXPECT_NE(std::string::npos, text.find(" second 2\r\n"));
    EXPECT_EQ(-1, WriteToLog((dir.path() + "\\no\\such\\dir.log").c_str(), "x"));
    EXPECT_EQ(-1, WriteToLog(nullptr, "x"));
}

} // namespace
