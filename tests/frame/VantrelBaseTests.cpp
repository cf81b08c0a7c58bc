#include "frame/VTRBrowserEmulation.h"
#include "frame/VTRResourceIds.h"
#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"
#include "frame/VantrelBase.h"

#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

#include "NVApp.h"
#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

WORD const kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
WORD const kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
WORD const kPolish = MAKELANGID(LANG_POLISH, SUBLANG_DEFAULT);

// A wrapper as a client writes one: records its hooks and opens the protected message boxes.
class RecordingWrapper : public VantrelBase {
public:
    std::vector<std::string> idents;
    UINT uLastCode = 0;

    using VantrelBase::AskMsg;
    using VantrelBase::ErrMsg;

protected:
    void OnSetIdent(char const* ident) override { idents.push_back(ident); }
    LRESULT OnNotify(NMHDR* pHdr) override {
        uLastCode = pHdr->code;
        return 77;
    }
};

class LanguagePinned : public testing::Test {
protected:
    void SetUp() override { NVSetCurrentLangID(kEnglish); }
    void TearDown() override {
        NVSetCurrentLangID(0);
        NVSetCurCodePage(0);
        NVSetRegAppBaseKey(nullptr);
    }
};

TEST_F(LanguagePinned, IdentityIsCutStoredAndAnnounced) {
    RecordingWrapper wrapper;
    EXPECT_STREQ("", wrapper.GetIdent());
    EXPECT_EQ(nullptr, wrapper.GethWnd());

    EXPECT_TRUE(wrapper.SetIdent("Kasse_Plaetze"));
    EXPECT_STREQ("Kasse_Plaetze", wrapper.GetIdent());

    std::string sLong(100, 'x');
    EXPECT_TRUE(wrapper.SetIdent(sLong.c_str()));
    EXPECT_EQ(std::string(59, 'x'), wrapper.GetIdent()) << "60 characters with the terminator";

    EXPECT_TRUE(wrapper.SetIdent(""));
    EXPECT_STREQ("", wrapper.GetIdent());
    ASSERT_EQ(3u, wrapper.idents.size());
    EXPECT_EQ("Kasse_Plaetze", wrapper.idents[0]);
    EXPECT_EQ(std::string(59, 'x'), wrapper.idents[1]) << "the hook sees the stored, cut identity";
    EXPECT_EQ("", wrapper.idents[2]) << "an empty identity is announced as well";
}

TEST_F(LanguagePinned, AssignBindsAndNotificationsReachOnNotify) {
    vtrtest::HostDialog host;
    HWND hList = host.AddControl(WC_LISTVIEWW, LVS_REPORT, 1012, 0, 0, 200, 100);
    RecordingWrapper wrapper;
    wrapper.Assign(hList);
    EXPECT_EQ(hList, wrapper.GethWnd());

    NMHDR hdr{hList, 1012, static_cast<UINT>(NM_DBLCLK)};
    EXPECT_EQ(77, wrapper.HandleNotify(1012, reinterpret_cast<LPARAM>(&hdr)));
    EXPECT_EQ(static_cast<UINT>(NM_DBLCLK), wrapper.uLastCode);

    wrapper.UnAssign();
    EXPECT_EQ(nullptr, wrapper.GethWnd());
    EXPECT_TRUE(IsWindow(hList)) << "the dialog owns the control, not the wrapper";

    VantrelBase plain;
    EXPECT_EQ(0, plain.HandleNotify(0, reinterpret_cast<LPARAM>(&hdr)));
    EXPECT_FALSE(plain.StoreSettings());
    EXPECT_FALSE(plain.RestoreSettings());
}

TEST_F(LanguagePinned, HistoryKeyLiesBelowTheApplicationKeyInTheRealRegistry) {
    RecordingWrapper wrapper;
    HKEY hRoot = nullptr;
    char szPath[MAX_PATH] = "untouched";
    EXPECT_FALSE(wrapper.GetHistRegKey(hRoot, szPath)) << "no identity";
    EXPECT_STREQ("untouched", szPath);
    EXPECT_FALSE(wrapper.GetHistRegKey(hRoot, nullptr, "Other"));

    NVSetRegAppBaseKey("Software\\VantrelFrameTest\\");
    wrapper.SetIdent("Kasse_Plaetze");
    ASSERT_TRUE(wrapper.GetHistRegKey(hRoot, szPath));
    EXPECT_EQ(HKEY_CURRENT_USER, hRoot);
    EXPECT_STREQ("Software\\VantrelFrameTest\\VantrelHist\\Kasse_Plaetze", szPath);
    ASSERT_TRUE(wrapper.GetHistRegKey(hRoot, szPath, "Vantrel_ColFilter"));
    EXPECT_STREQ("Software\\VantrelFrameTest\\VantrelHist\\Vantrel_ColFilter", szPath)
        << "the given ident wins";

    // A setting written at that path is found again by a second wrapper with the same identity.
    wrapper.GetHistRegKey(hRoot, szPath);
    HKEY hKey = nullptr;
    ASSERT_EQ(ERROR_SUCCESS,
              RegCreateKeyExA(hRoot, szPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &hKey, nullptr));
    DWORD dwWidth = 123;
    RegSetValueExA(hKey, "Width", 0, REG_DWORD, reinterpret_cast<BYTE*>(&dwWidth), sizeof(dwWidth));
    RegCloseKey(hKey);

    RecordingWrapper second;
    second.SetIdent("Kasse_Plaetze");
    char szPath2[MAX_PATH];
    ASSERT_TRUE(second.GetHistRegKey(hRoot, szPath2));
    DWORD dwRead = 0, dwSize = sizeof(dwRead);
    EXPECT_EQ(ERROR_SUCCESS,
              RegGetValueA(hRoot, szPath2, "Width", RRF_RT_REG_DWORD, nullptr, &dwRead, &dwSize));
    EXPECT_EQ(123u, dwRead);
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\VantrelFrameTest"));

    // A path that cannot fit is refused rather than overrun.
    NVSetRegAppBaseKey(std::string(250, 'k').c_str());
    EXPECT_FALSE(wrapper.GetHistRegKey(hRoot, szPath));
}

// Colour of the pixel (x, y) after drawing image i of the list transparently over red.
COLORREF DrawnPixel(HIMAGELIST hList, int i, int x, int y) {
    BITMAPINFO bmi{};
    bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
    bmi.bmiHeader.biWidth = 16;
    bmi.bmiHeader.biHeight = -16;
    bmi.bmiHeader.biPlanes = 1;
    bmi.bmiHeader.biBitCount = 32;
    void* pBits = nullptr;
    HDC hDC = CreateCompatibleDC(nullptr);
    HBITMAP hBmp = CreateDIBSection(hDC, &bmi, DIB_RGB_COLORS, &pBits, nullptr, 0);
    HGDIOBJ hOld = SelectObject(hDC, hBmp);
    RECT rc{0, 0, 16, 16};
    HBRUSH hRed = CreateSolidBrush(RGB(255, 0, 0));
    FillRect(hDC, &rc, hRed);
    DeleteObject(hRed);
    ImageList_Draw(hList, i, hDC, 0, 0, ILD_TRANSPARENT);
    GdiFlush();
    DWORD dwPixel = static_cast<DWORD*>(pBits)[y * 16 + x];
    SelectObject(hDC, hOld);
    DeleteObject(hBmp);
    DeleteDC(hDC);
    return RGB((dwPixel >> 16) & 0xFF, (dwPixel >> 8) & 0xFF, dwPixel & 0xFF);
}

TEST_F(LanguagePinned, IconsJoinTheImageListWithTheirMask) {
    HIMAGELIST hList = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 2, 1);
    ASSERT_NE(nullptr, hList);
    EXPECT_EQ(0, VantrelBase::AddIconToImageList(hList, nullptr, IDI_VTR_ROW_OPEN));
    EXPECT_EQ(1, VantrelBase::AddIconToImageList(hList, VTRGetInstance(), IDI_VTR_ROW_CLOSED));
    EXPECT_EQ(-1, VantrelBase::AddIconToImageList(hList, nullptr, 4711)) << "missing icon";
    EXPECT_EQ(-1, VantrelBase::AddIconToImageList(hList, GetModuleHandleW(nullptr), IDI_VTR_ROW_OPEN))
        << "a given instance is searched, not the library";
    EXPECT_EQ(2, ImageList_GetImageCount(hList));

    // Outside the box the mask lets the background through; the sign is black on white.
    EXPECT_EQ(RGB(255, 0, 0), DrawnPixel(hList, 0, 0, 0));
    EXPECT_EQ(RGB(0, 0, 0), DrawnPixel(hList, 0, 7, 7));
    EXPECT_EQ(RGB(255, 255, 255), DrawnPixel(hList, 0, 7, 5)) << "minus: no vertical bar";
    EXPECT_EQ(RGB(0, 0, 0), DrawnPixel(hList, 1, 7, 5)) << "plus: vertical bar";
    ImageList_Destroy(hList);
}

TEST_F(LanguagePinned, ErrorAndQuestionBoxesTakeTitleAndStyle) {
    vtrtest::MsgBoxRecorder boxes;
    vtrtest::HostDialog host;
    RecordingWrapper wrapper;

    wrapper.ErrMsg(host.hwnd(), "§1!d! seats in §2", 5, "Hall A");
    ASSERT_EQ(1u, boxes.count());
    EXPECT_EQ(L"Error", boxes.last().title);
    EXPECT_EQ(L"5 seats in Hall A", boxes.last().text);
    EXPECT_EQ(0x10040u, boxes.last().uFlags);

    NVSetCurrentLangID(kGerman);
    wrapper.ErrMsg(host.hwnd(), L"Datei '§1' fehlt", L"plan.csv");
    ASSERT_EQ(2u, boxes.count());
    EXPECT_EQ(L"Fehler", boxes.last().title) << "the title follows the language";
    EXPECT_EQ(L"Datei 'plan.csv' fehlt", boxes.last().text);
    EXPECT_EQ(0x10040u, boxes.last().uFlags);

    // A Polish desk runs code page 1250, the code page of the narrow Polish texts.
    NVSetCurrentLangID(kPolish);
    NVSetCurCodePage(1250);
    boxes.Answer(IDNO);
    EXPECT_EQ(IDNO, wrapper.AskMsg(host.hwnd(), nullptr, MB_YESNO | MB_ICONQUESTION, "Weiter mit %d?", 3));
    EXPECT_EQ(L"B\u0142\u0105d", boxes.last().title);
    EXPECT_EQ(L"Weiter mit 3?", boxes.last().text);
    EXPECT_EQ(static_cast<unsigned>(MB_YESNO | MB_ICONQUESTION | MB_SETFOREGROUND), boxes.last().uFlags);

    boxes.Answer(IDRETRY);
    EXPECT_EQ(IDRETRY, wrapper.AskMsg(nullptr, "Import", MB_RETRYCANCEL | MB_ICONERROR,
                                      VTRStringTable::GetText(IDS_VTR_IMPORT_SKIP_LINE), "bad value"));
    EXPECT_EQ(L"Import", boxes.last().title);
    EXPECT_NE(std::wstring::npos, boxes.last().text.find(L"\nbad value\n"))
        << vtrtest::Utf8(boxes.last().text);
    EXPECT_EQ(4u, boxes.count());
}

TEST_F(LanguagePinned, CommonTextsFollowTheLanguage) {
    EXPECT_STREQ("<Different>", VTRGetDifferntText());
    EXPECT_STREQ("Display", VTRGetAnzeigenText());
    NVSetCurrentLangID(kGerman);
    EXPECT_STREQ("<Verschieden>", VTRGetDifferntText());
    EXPECT_STREQ("Anzeigen", VTRGetAnzeigenText());
}

// The library raised this program's value at load; the test puts back what it found.
TEST(BrowserEmulation, ValueIsOnlyEverRaised) {
    char const* const kKey =
        "Software\\Microsoft\\Internet Explorer\\Main\\FeatureControl\\FEATURE_BROWSER_EMULATION";
    char szExe[MAX_PATH];
    GetModuleFileNameA(nullptr, szExe, MAX_PATH);
    std::string sName = std::strrchr(szExe, '\\') ? std::strrchr(szExe, '\\') + 1 : szExe;
    auto readValue = [&]() -> DWORD {
        DWORD dwValue = 0, dwSize = sizeof(dwValue);
        if (RegGetValueA(HKEY_CURRENT_USER, kKey, sName.c_str(), RRF_RT_REG_DWORD, nullptr, &dwValue,
                         &dwSize) != ERROR_SUCCESS)
            return 0;
        return dwValue;
    };
    DWORD dwAtLoad = readValue();
    EXPECT_GE(dwAtLoad, NVIsWindowsVersionOrGreater(6, 0, 0) ? 10000u : 9000u)
        << "set when the library loaded";

    HKEY hKey = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExA(HKEY_CURRENT_USER, kKey, 0, KEY_ALL_ACCESS, &hKey));
    RegDeleteValueA(hKey, sName.c_str());
    EXPECT_TRUE(VTRSetBrowserEmulation(9000));
    EXPECT_EQ(9000u, readValue()) << "a missing value is written";
    EXPECT_TRUE(VTRSetBrowserEmulation(8000));
    EXPECT_EQ(9000u, readValue()) << "a lower value leaves the stored one";
    EXPECT_TRUE(VTRSetBrowserEmulation(11001));
    EXPECT_EQ(11001u, readValue());

    if (dwAtLoad)
        RegSetValueExA(hKey, sName.c_str(), 0, REG_DWORD, reinterpret_cast<BYTE*>(&dwAtLoad),
                       sizeof(dwAtLoad));
    else
        RegDeleteValueA(hKey, sName.c_str());
    RegCloseKey(hKey);
}

} // namespace
