// The client module base: title rule, message box styles, focus on tab pages, and the input checks
// forwarded to the dialog's DlgBase or to the shared one.
#include "frame/ClientModuleGUIBase.h"
#include "frame/VantrelBase.h"

#include "DlgBase.h"
#include "NVLanguage.h"
#include "NVMsgBox.h"
#include "NVNumbers.h"
#include "NVStrings.h"

#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <cstdlib>
#include <string>
#include <vector>

using vtrtest::HostDialog;
using vtrtest::MsgBoxRecorder;
using vtrtest::Utf8;

namespace {

enum { IDD_PAGE = 9201, IDC_SEAT = 11, IDC_PRICE = 13, IDC_WHOLE = 14, IDC_AMOUNT = 15, IDC_GO = 16 };

INT_PTR CALLBACK PlainPageProc(HWND, UINT uMsg, WPARAM, LPARAM) {
    return uMsg == WM_INITDIALOG;
}

// A page dialog without a DlgBase of its own, as client dialogs often are.
HWND CreatePlainPage(HWND hParent) {
    return CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_PAGE), hParent, &PlainPageProc,
                              0);
}

TEST(ClientModuleTitle, FirstNonEmptyNameWins) {
    ClientModuleGUIBase::SetModuleName("First Module");
    std::string first = ClientModuleGUIBase::GetFirstModuleName();
    ClientModuleGUIBase::SetModuleName("Shared");
    EXPECT_EQ(first, ClientModuleGUIBase::GetFirstModuleName()) << "the first name stays";
    EXPECT_STRNE("Shared", ClientModuleGUIBase::GetFirstModuleName());
    EXPECT_STREQ("Shared", NVGetAppName()) << "the title is handed on";

    EXPECT_STREQ("Explicit", ClientModuleGUIBase::GetMsgBoxTitle("Explicit", "Object"));
    EXPECT_STREQ(" ", ClientModuleGUIBase::GetMsgBoxTitle(" ", "Object"))
        << "an explicit blank title is a title";
    EXPECT_STREQ("Object", ClientModuleGUIBase::GetMsgBoxTitle("", "Object"));
    EXPECT_STREQ("Object", ClientModuleGUIBase::GetMsgBoxTitle(nullptr, "Object"));
    EXPECT_STREQ("Shared", ClientModuleGUIBase::GetMsgBoxTitle("", "  "))
        << "a blank module name counts as empty";
    EXPECT_STREQ("Shared", ClientModuleGUIBase::GetMsgBoxTitle(nullptr, nullptr));
    EXPECT_STREQ(L"Wide", ClientModuleGUIBase::GetMsgBoxTitle(L"Wide"));
    EXPECT_STREQ(L"Shared", ClientModuleGUIBase::GetMsgBoxTitle(L""));

    ClientModuleGUIBase::SetModuleName("");
    NVSetAppName("Application");
    EXPECT_STREQ("Application", ClientModuleGUIBase::GetMsgBoxTitle("", "\t"));
    EXPECT_STREQ(L"Application", ClientModuleGUIBase::GetMsgBoxTitle(static_cast<wchar_t const*>(nullptr)));

    // All empty: the product name of the running program's version information.
    NVSetAppName("");
    EXPECT_STREQ("Client Module Tests", ClientModuleGUIBase::GetMsgBoxTitle("", ""));
    EXPECT_STREQ("Client Module Tests", NVGetAppName());
    ClientModuleGUIBase::SetModuleName("");
    NVSetAppName("");
    EXPECT_STREQ(L"Client Module Tests", ClientModuleGUIBase::GetMsgBoxTitle(L""));

    std::string longName(200, 'x');
    ClientModuleGUIBase::SetModuleName(longName.c_str());
    EXPECT_EQ(127u, strlen(ClientModuleGUIBase::GetMsgBoxTitle(nullptr, nullptr)))
        << "cut to the shared buffer";
    ClientModuleGUIBase::SetModuleName(nullptr);
    EXPECT_STREQ("Client Module Tests", ClientModuleGUIBase::GetMsgBoxTitle(nullptr, nullptr));
}

TEST(ClientModuleMessages, EachBoxHasTheStyleOfItsKind) {
    ClientModuleGUIBase::SetModuleName("Sales");
    HostDialog host;
    HWND hOwner = host.hwnd();
    ClientModuleGUIBase cm;
    StrNZCpy(cm.szModuleName, "Box Office", sizeof cm.szModuleName);
    MsgBoxRecorder rec;
    struct Row {
        char const* what;
        UINT uFlags;
        HWND hParent;
        wchar_t const* title;
    };
    std::vector<Row> expected;
    auto expect = [&](char const* what, UINT flags, HWND parent, wchar_t const* title) {
        expected.push_back(Row{what, flags, parent, title});
    };
    cm.ShowErrorMsg("E \xA7"
                    "1!d!",
                    1);
    expect("ShowErrorMsg", 0x10010, nullptr, L"Box Office");
    cm.ShowErrorMsgTitle("T",
                         "E \xA7"
                         "1!d!",
                         2);
    expect("ShowErrorMsgTitle", 0x10010, nullptr, L"T");
    cm.ShowWarningMsg("W \xA7"
                      "1!d!",
                      3);
    expect("ShowWarningMsg", 0x10030, nullptr, L"Box Office");
    cm.ShowWarningMsg(hOwner,
                      L"W \xA7"
                      L"1!d!",
                      4);
    expect("ShowWarningMsg wide", 0x10030, hOwner, L"Sales");
    cm.ShowWarningMsgTitle("T",
                           "W \xA7"
                           "1!d!",
                           5);
    expect("ShowWarningMsgTitle", 0x10030, nullptr, L"T");
    cm.ShowInfoMsg(hOwner, nullptr,
                   "I \xA7"
                   "1!d!",
                   6);
    expect("ShowInfoMsg", 0x10040, hOwner, L"Box Office");
    cm.ShowInfoMsgTitle("T",
                        "I \xA7"
                        "1!d!",
                        7);
    expect("ShowInfoMsgTitle", 0x10040, nullptr, L"T");
    cm.ShowPlainMsg("T",
                    "P \xA7"
                    "1!d!",
                    8);
    expect("ShowPlainMsg", 0x10000, nullptr, L"T");
    cm.ShowMsg(hOwner, "T", MB_ICONSTOP | MB_OKCANCEL,
               "M \xA7"
               "1!d!",
               9);
    expect("ShowMsg", 0x10011, hOwner, L"T");
    cm.ShowMsg(hOwner, L"T", 0,
               L"M \xA7"
               L"1!d!",
               10);
    expect("ShowMsg wide", 0x10000, hOwner, L"T");
    cm.AskYesNo(hOwner, nullptr,
                "Q \xA7"
                "1!d!",
                11);
    expect("AskYesNo", 0x10024, hOwner, L"Box Office");
    cm.AskYesNo(hOwner, L"",
                L"Q \xA7"
                L"1!d!",
                12);
    expect("AskYesNo wide", 0x10024, hOwner, L"Sales");
    cm.AskYesNoDefNo(hOwner, "T",
                     "Q \xA7"
                     "1!d!",
                     13);
    expect("AskYesNoDefNo", 0x10124, hOwner, L"T");
    cm.AskYesNoDefNo(hOwner, L"T",
                     L"Q \xA7"
                     L"1!d!",
                     14);
    expect("AskYesNoDefNo wide", 0x10124, hOwner, L"T");
    cm.AskYesNoCancel(hOwner, "T",
                      "Q \xA7"
                      "1!d!",
                      15);
    expect("AskYesNoCancel", 0x10223, nullptr, L"T");
    cm.AskOkCancel(hOwner, "T",
                   "Q \xA7"
                   "1!d!",
                   16);
    expect("AskOkCancel", 0x10031, hOwner, L"T");
    cm.AskRetryCancel(hOwner, "T",
                      "Q \xA7"
                      "1!d!",
                      17);
    expect("AskRetryCancel", 0x10035, hOwner, L"T");

    ASSERT_EQ(expected.size(), rec.count());
    for (size_t i = 0; i < expected.size(); ++i) {
        auto const& box = rec.boxes()[i];
        EXPECT_EQ(expected[i].uFlags, box.uFlags) << expected[i].what;
        EXPECT_EQ(expected[i].hParent, box.hParent) << expected[i].what;
        EXPECT_EQ(std::wstring(expected[i].title), box.title) << expected[i].what << ": " << Utf8(box.title);
        EXPECT_EQ(std::to_wstring(i + 1), box.text.substr(2)) << expected[i].what << ": " << Utf8(box.text);
    }

    rec.Answer(IDNO);
    EXPECT_EQ(IDNO, cm.AskYesNo(hOwner, "T", "Sure?"));
    rec.Answer(IDCANCEL);
    EXPECT_EQ(IDCANCEL, cm.AskYesNoCancel(hOwner, "T", "Sure?"));
    EXPECT_EQ(IDNO, cm.AskYesNoDefNo(hOwner, "T", "Sure?")) << "the default button of the box";
}

struct AsyncCapture {
    HANDLE hShown = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE hRelease = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    DWORD dwThread = 0;
    std::wstring text;
    unsigned int uFlags = 0;
    HWND hParent = nullptr;
    ~AsyncCapture() {
        CloseHandle(hShown);
        CloseHandle(hRelease);
    }
    static int CALLBACK Sink(void* ctx, HWND hParent, wchar_t const*, wchar_t const* lpszText,
                             unsigned int uFlags) {
        auto* self = static_cast<AsyncCapture*>(ctx);
        self->dwThread = GetCurrentThreadId();
        self->text = lpszText;
        self->uFlags = uFlags;
        self->hParent = hParent;
        SetEvent(self->hShown);
        WaitForSingleObject(self->hRelease, 5000);
        return IDOK;
    }
};

TEST(ClientModuleMessages, AsyncErrorReturnsWhileItsBoxIsOpen) {
    HostDialog host;
    AsyncCapture cap;
    void* prevCtx = nullptr;
    NVMSGBOXSINK prev = NVSetMsgBoxSink(&AsyncCapture::Sink, &cap, &prevCtx);
    ClientModuleGUIBase::ShowErrorMsgAsync(host.hwnd(),
                                           "Printer \xA7"
                                           "1 is offline (\xA7"
                                           "2!d!)",
                                           "P1", 5);
    DWORD waited = WaitForSingleObject(cap.hShown, 5000);
    EXPECT_EQ(WAIT_OBJECT_0, waited) << "the box is shown";
    // The caller got here while the box still waits for its answer.
    EXPECT_NE(GetCurrentThreadId(), cap.dwThread);
    EXPECT_EQ(L"Printer P1 is offline (5)", cap.text);
    EXPECT_EQ(0x10010u, cap.uFlags);
    EXPECT_EQ(host.hwnd(), cap.hParent);
    SetEvent(cap.hRelease);
    Sleep(50);
    NVSetMsgBoxSink(prev, prevCtx);
}

class ClientModuleFocus : public ::testing::Test {
protected:
    void SetUp() override {
        NVSetCurrentLangID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
        host.onMessage = [this](UINT uMsg, WPARAM wParam, LPARAM, LRESULT&) {
            if (uMsg == NVWM_ACTIVATE_TABPAGE)
                pagesAsked.push_back(static_cast<int>(wParam));
            return false;
        };
        host.onNotify = [this](UINT, WPARAM, LPARAM lParam, LRESULT&) {
            tabNotes.push_back(reinterpret_cast<NMHDR*>(lParam)->code);
            return false;
        };
        hTab = host.AddControl(WC_TABCONTROLW, 0, 50, 0, 0, 400, 300);
        for (int i = 0; i < 3; ++i) {
            TCITEMW item{};
            item.mask = TCIF_TEXT;
            wchar_t text[] = L"Page";
            item.pszText = text;
            SendMessageW(hTab, TCM_INSERTITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        }
        hPage = CreatePlainPage(host.hwnd());
        ASSERT_NE(nullptr, hPage);
        StrNZCpy(cm.szModuleName, "Box Office", sizeof cm.szModuleName);
    }
    void TearDown() override {
        DestroyWindow(hPage);
        NVSetCurrentLangID(0);
    }
    HWND Item(int id) { return GetDlgItem(hPage, id); }

    HostDialog host;
    HWND hTab = nullptr;
    HWND hPage = nullptr;
    ClientModuleGUIBase cm;
    std::vector<int> pagesAsked;
    std::vector<UINT> tabNotes;
};

TEST_F(ClientModuleFocus, PageWithoutTabWrapperIsAskedOfTheParent) {
    EXPECT_EQ(-1, cm.iTabPage);
    SetFocus(Item(IDC_GO));
    cm.SetFocusToField(hPage, IDC_PRICE);
    EXPECT_TRUE(pagesAsked.empty()) << "no page stored, no message";
    EXPECT_EQ(Item(IDC_PRICE), GetFocus());

    cm.iTabPage = 0;
    SetFocus(Item(IDC_GO));
    cm.SetFocusToField(hPage, IDC_SEAT);
    ASSERT_EQ(1u, pagesAsked.size()) << "message 1125 reaches the dialog's parent";
    EXPECT_EQ(0, pagesAsked[0]);
    EXPECT_EQ(Item(IDC_SEAT), GetFocus());
    EXPECT_TRUE(tabNotes.empty()) << "nothing goes to the tab control";

    cm.iTabPage = 2;
    cm.SetFocusToField(Item(IDC_PRICE));
    ASSERT_EQ(2u, pagesAsked.size());
    EXPECT_EQ(2, pagesAsked[1]);
    EXPECT_EQ(Item(IDC_PRICE), GetFocus());
}

TEST_F(ClientModuleFocus, TabWrapperSelectsThePageAsAClickWould) {
    // A wrapper bound to the tab control; the client module sees only its window.
    VantrelBase wrapper;
    wrapper.Assign(hTab);
    auto* pTab = reinterpret_cast<VTRTabControl*>(&wrapper);
    cm.SetTabPage(2, pTab);
    EXPECT_EQ(hTab, cm.hTabWnd);
    EXPECT_EQ(pTab, cm.pTabControl);
    cm.SetFocusToField(hPage, IDC_PRICE);
    EXPECT_EQ(2, static_cast<int>(SendMessageW(hTab, TCM_GETCURSEL, 0, 0)));
    ASSERT_EQ(2u, tabNotes.size());
    EXPECT_EQ(static_cast<UINT>(TCN_SELCHANGING), tabNotes[0]);
    EXPECT_EQ(static_cast<UINT>(TCN_SELCHANGE), tabNotes[1]);
    EXPECT_TRUE(pagesAsked.empty());
    EXPECT_EQ(Item(IDC_PRICE), GetFocus());

    // A veto of the owner keeps the page.
    host.onNotify = [this](UINT, WPARAM, LPARAM lParam, LRESULT& result) {
        tabNotes.push_back(reinterpret_cast<NMHDR*>(lParam)->code);
        result = TRUE;
        return true;
    };
    cm.SetTabPage(1, pTab);
    cm.SetFocusToField(hPage, IDC_SEAT);
    EXPECT_EQ(2, static_cast<int>(SendMessageW(hTab, TCM_GETCURSEL, 0, 0)));
    cm.SetTabPage(-1, nullptr);
    EXPECT_EQ(nullptr, cm.hTabWnd);
}

TEST_F(ClientModuleFocus, CheckNotEmptyNamesTheLabelAndMovesTheFocus) {
    MsgBoxRecorder rec;
    EXPECT_TRUE(cm.CheckNotEmpty(hPage, IDC_SEAT, "12"));
    EXPECT_TRUE(cm.CheckNotEmpty(hPage, IDC_SEAT, L"12"));
    EXPECT_EQ(0u, rec.count());
    cm.iTabPage = 1;
    SetFocus(Item(IDC_GO));
    EXPECT_FALSE(cm.CheckNotEmpty(hPage, IDC_SEAT, ""));
    ASSERT_EQ(1u, rec.count());
    EXPECT_EQ(L"The field 'Seat number' must be filled in.", rec.last().text);
    EXPECT_EQ(0x10010u, rec.last().uFlags);
    EXPECT_EQ(L"Box Office", rec.last().title);
    EXPECT_EQ(Item(IDC_SEAT), GetFocus());
    ASSERT_EQ(1u, pagesAsked.size());
    EXPECT_EQ(1, pagesAsked[0]);
    SetFocus(Item(IDC_GO));
    EXPECT_FALSE(cm.CheckNotEmpty(hPage, IDC_PRICE, static_cast<wchar_t const*>(nullptr)));
    EXPECT_EQ(L"The field 'Price' must be filled in.", rec.last().text);
    EXPECT_EQ(Item(IDC_PRICE), GetFocus());
}

TEST_F(ClientModuleFocus, ShowDlgItemMovesTheFocusBeforeHiding) {
    SetFocus(Item(IDC_PRICE));
    EXPECT_TRUE(ClientModuleGUIBase::ShowDlgItem(hPage, IDC_PRICE, false));
    EXPECT_FALSE(GetWindowLongW(Item(IDC_PRICE), GWL_STYLE) & WS_VISIBLE);
    EXPECT_NE(Item(IDC_PRICE), GetFocus()) << "a hidden control must not keep the focus";
    EXPECT_TRUE(IsChild(hPage, GetFocus()) || GetFocus() == hPage);
    EXPECT_TRUE(ClientModuleGUIBase::ShowDlgItem(hPage, IDC_PRICE, false)) << "already hidden";
    EXPECT_TRUE(ClientModuleGUIBase::ShowDlgItem(hPage, IDC_PRICE, true));
    EXPECT_TRUE(GetWindowLongW(Item(IDC_PRICE), GWL_STYLE) & WS_VISIBLE);
    SetFocus(Item(IDC_SEAT));
    EXPECT_TRUE(ClientModuleGUIBase::ShowDlgItem(hPage, IDC_PRICE, false));
    EXPECT_EQ(Item(IDC_SEAT), GetFocus()) << "hiding another control leaves the focus alone";
    EXPECT_FALSE(ClientModuleGUIBase::ShowDlgItem(hPage, 999, true));
}

TEST_F(ClientModuleFocus, ChecksGoToTheDialogsOwnOrTheSharedDlgBase) {
    MsgBoxRecorder rec;
    char out[32];
    // A dialog without a DlgBase: the shared one serves it, with this module's page.
    cm.iTabPage = 1;
    cm.hTabWnd = reinterpret_cast<HWND>(static_cast<INT_PTR>(0x7FF0)); // not a window: treated as none
    SetFocus(Item(IDC_GO));
    EXPECT_FALSE(cm.GetAndCheckTextField(hPage, IDC_SEAT, out, sizeof out, nullptr, NVCF_PFLICHT));
    ASSERT_EQ(1u, rec.count());
    EXPECT_EQ(L"The field 'Seat number' must be filled in.", rec.last().text);
    EXPECT_EQ(Item(IDC_SEAT), GetFocus());
    ASSERT_EQ(1u, pagesAsked.size());
    EXPECT_EQ(1, pagesAsked[0]);
    SetWindowTextW(Item(IDC_SEAT), L" 14 ");
    unsigned long seat = 0;
    EXPECT_TRUE(cm.GetAndCheckNumField(hPage, IDC_SEAT, seat, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(14ul, seat);

    // A dialog with its own DlgBase gets this module's tab slots.
    DlgBase own;
    HWND hOwn = own.DlgCreateModeless(GetModuleHandleW(nullptr), IDD_PAGE, host.hwnd());
    ASSERT_NE(nullptr, hOwn);
    cm.iTabPage = 2;
    cm.hTabWnd = hTab;
    cm.iTabPage2 = 0;
    rec.clear();
    EXPECT_FALSE(cm.GetAndCheckTextField(hOwn, IDC_PRICE, out, sizeof out, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(2, own.m_iTabPage);
    EXPECT_EQ(hTab, own.m_hTabWnd);
    EXPECT_EQ(0, own.m_iTabPage2);
    EXPECT_EQ(nullptr, own.m_hTabWnd2);
    EXPECT_EQ(2, static_cast<int>(SendMessageW(hTab, TCM_GETCURSEL, 0, 0))) << "the page of the failed field";
    EXPECT_EQ(GetDlgItem(hOwn, IDC_PRICE), GetFocus());
    ASSERT_EQ(1u, rec.count());
    EXPECT_EQ(L"The field 'Price' must be filled in.", rec.last().text);
    EXPECT_EQ(1u, pagesAsked.size()) << "a tab window needs no message to the parent";
    DestroyWindow(hOwn);
}

TEST_F(ClientModuleFocus, AmountsRoundAndRewriteWithTheirOwnSwitch) {
    MsgBoxRecorder rec;
    NVSetAmountsWithoutDecimalPlaces(false);
    HWND hAmount = Item(IDC_AMOUNT);
    double d = 0;
    SetWindowTextW(hAmount, L"12.6");
    EXPECT_TRUE(cm.GetAndCheckAmount(hPage, IDC_AMOUNT, d, true, false, nullptr, 0));
    EXPECT_DOUBLE_EQ(13.0, d) << "rounded to whole units";
    char const* wholeFormat = NVGetNumberFormatString(NVNF_DEFAULT, 0, true);
    char expected[100];
    ASSERT_TRUE(FormatNumber(13.0, wholeFormat, expected, sizeof expected));
    char text[100];
    GetWindowTextA(hAmount, text, sizeof text);
    EXPECT_STREQ(expected, text);
    EXPECT_EQ(17, static_cast<int>(SendMessageW(hAmount, EM_GETLIMITTEXT, 0, 0)));
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(wholeFormat), GetWindowLongPtrW(hAmount, GWLP_USERDATA));
    EXPECT_FALSE(NVGetAmountsWithoutDecimalPlaces()) << "the switch comes back";

    SetWindowTextW(hAmount, L"12.6");
    EXPECT_TRUE(cm.GetAndCheckAmount(hPage, IDC_AMOUNT, d, true, true, nullptr, 0));
    EXPECT_DOUBLE_EQ(12.6, d) << "no rounding asked";

    SetWindowTextW(hAmount, L"12.25");
    CheckDlgButton(hPage, IDC_WHOLE, BST_UNCHECKED);
    EXPECT_TRUE(cm.GetAndCheckAmountByCheckBox(hPage, IDC_AMOUNT, d, IDC_WHOLE, false, nullptr, 0));
    EXPECT_DOUBLE_EQ(12.25, d);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(NVGetNumberFormatString(NVNF_DEFAULT, 0, false)),
              GetWindowLongPtrW(hAmount, GWLP_USERDATA));
    CheckDlgButton(hPage, IDC_WHOLE, BST_CHECKED);
    SetWindowTextW(hAmount, L"12.25");
    EXPECT_TRUE(cm.GetAndCheckAmountByCheckBox(hPage, IDC_AMOUNT, d, IDC_WHOLE, false, nullptr, 0));
    EXPECT_DOUBLE_EQ(12.0, d);
    EXPECT_EQ(0u, rec.count());

    SetWindowTextW(hAmount, L"twelve");
    EXPECT_FALSE(cm.GetAndCheckAmount(hPage, IDC_AMOUNT, d, false, false, nullptr, 0));
    ASSERT_EQ(1u, rec.count());
    EXPECT_EQ(L"The field 'Amount' needs a number.", rec.last().text);
    GetWindowTextA(hAmount, text, sizeof text);
    EXPECT_STREQ("twelve", text) << "a wrong entry stays for the user to correct";
}

TEST(ClientModuleHelpers, FormatDupMenuTextPopupAndIcons) {
    char const* dup = ClientModuleGUIBase::FormatDup("\xA7"
                                                     "2 of \xA7"
                                                     "1!d!",
                                                     3, "Row");
    ASSERT_NE(nullptr, dup);
    EXPECT_STREQ("Row of 3", dup);
    std::free(const_cast<char*>(dup));

    HINSTANCE hSaved = ClientModuleGUIBase::GetInstance();
    ClientModuleGUIBase::SetInstance(GetModuleHandleW(nullptr));
    EXPECT_EQ(GetModuleHandleW(nullptr), ClientModuleGUIBase::GetInstance());
    char text[64] = "old";
    EXPECT_TRUE(ClientModuleGUIBase::GetMenuText(700, 701, text, sizeof text));
    EXPECT_STREQ("&Open\tCtrl+O", text);
    EXPECT_TRUE(ClientModuleGUIBase::GetMenuText(700, 702, text, 4));
    EXPECT_STREQ("&Cl", text) << "cut to the buffer";
    EXPECT_FALSE(ClientModuleGUIBase::GetMenuText(700, 799, text, sizeof text));
    EXPECT_STREQ("", text);
    EXPECT_FALSE(ClientModuleGUIBase::GetMenuText(799, 701, text, sizeof text));

    HostDialog host;
    EXPECT_EQ(0u,
              ClientModuleGUIBase::TrackPopup(host.hwnd(), static_cast<unsigned short>(799), nullptr, 0, 0))
        << "missing menu";
    EXPECT_EQ(0u,
              ClientModuleGUIBase::TrackPopup(host.hwnd(), static_cast<unsigned short>(700), nullptr, 0, 5))
        << "missing sub-menu";
    HMENU hMenu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(700));
    EXPECT_EQ(0u, ClientModuleGUIBase::TrackPopup(host.hwnd(), hMenu, nullptr, 0, 3));
    EXPECT_TRUE(IsMenu(hMenu)) << "the caller's menu stays";
    DestroyMenu(hMenu);

    // Icons come from the instance given to SetInstance.
    HIMAGELIST hList = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 2, 2);
    EXPECT_EQ(-1, ClientModuleGUIBase::AddIconToImageList(hList, 1)) << "this program has no icon 1";
    EXPECT_EQ(-1, ClientModuleGUIBase::AddIconToImageList(nullptr, 1));
    HMODULE hShell = LoadLibraryExW(L"shell32.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(nullptr, hShell);
    ClientModuleGUIBase::SetInstance(hShell);
    EXPECT_EQ(0, ClientModuleGUIBase::AddIconToImageList(hList, 1));
    EXPECT_EQ(1, ClientModuleGUIBase::AddIconToImageList(hList, 1));
    EXPECT_EQ(2, ImageList_GetImageCount(hList));
    ImageList_Destroy(hList);
    FreeLibrary(hShell);
    ClientModuleGUIBase::SetInstance(hSaved);
}

} // namespace
