// The input checks on a real dialog: every field has its static label before it, so a failed check
// names the field by its label, shows one warning and leaves the focus in the field.
#include "DlgBase.h"
#include "DynaArray.h"
#include "NVLanguage.h"

#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <string>

using vtrtest::MsgBoxRecorder;
using vtrtest::Utf8;

namespace {

enum {
    IDC_NAME = 101,
    IDC_EMAIL = 103,
    IDC_COUNT = 105,
    IDC_PRICE = 107,
    IDC_CARD = 109,
    IDC_CATEGORY = 111,
    IDC_CITY = 113,
    IDC_SEAT = 115,
    IDC_SHOWDATE = 117,
    IDC_MEMBER = 118,
    IDC_UNLABELLED = 119,
};

class ChecksDialog : public DlgBase {
public:
    int iChanges = 0;
    int iLastChangedId = 0;
    void OnFieldChange(int id, HWND, UINT) override {
        ++iChanges;
        iLastChangedId = id;
    }
};

class DlgChecks : public ::testing::Test {
protected:
    void SetUp() override {
        NVSetCurrentLangID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
        hDlg = dlg.DlgCreateModeless(GetModuleHandleW(nullptr), 9101, nullptr);
        ASSERT_NE(nullptr, hDlg);
    }
    void TearDown() override {
        if (dlg.m_hWnd)
            DestroyWindow(dlg.m_hWnd);
        NVSetCurrentLangID(0);
    }
    HWND Item(int id) { return GetDlgItem(hDlg, id); }
    void SetText(int id, wchar_t const* text) { SetWindowTextW(Item(id), text); }
    // The focus is put elsewhere first, so that a check that leaves it alone is seen.
    void FocusOk() { SetFocus(Item(IDOK)); }

    // One warning with exactly this text, and the focus in field id.
    void ExpectFailure(MsgBoxRecorder const& rec, int id, wchar_t const* text) {
        ASSERT_EQ(1u, rec.count()) << "one box for one failed check";
        EXPECT_EQ(std::wstring(text), rec.last().text) << Utf8(rec.last().text);
        EXPECT_EQ(static_cast<unsigned>(MB_SETFOREGROUND | MB_ICONEXCLAMATION), rec.last().uFlags);
        HWND focus = GetFocus();
        EXPECT_TRUE(focus == Item(id) || GetParent(focus) == Item(id))
            << "focus on " << GetDlgCtrlID(focus) << " instead of " << id;
    }

    ChecksDialog dlg;
    HWND hDlg = nullptr;
};

TEST_F(DlgChecks, TextFieldNamesItsLabelAndTrimsByFlags) {
    char out[64];
    {
        MsgBoxRecorder rec;
        FocusOk();
        EXPECT_FALSE(dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, nullptr, NVCF_PFLICHT));
        ExpectFailure(rec, IDC_NAME, L"The field 'Name' must be filled in.");
    }
    {
        MsgBoxRecorder rec;
        SetText(IDC_NAME, L"   ");
        FocusOk();
        EXPECT_FALSE(dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, "Surname", NVCF_PFLICHT));
        ExpectFailure(rec, IDC_NAME, L"The field 'Surname' must be filled in.");
    }
    {
        MsgBoxRecorder rec;
        FocusOk();
        EXPECT_FALSE(
            dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, nullptr, NVCF_PFLICHT | NVCF_SILENT));
        EXPECT_EQ(0u, rec.count());
        EXPECT_EQ(Item(IDOK), GetFocus()) << "a silent check leaves the focus alone";
        EXPECT_TRUE(dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, nullptr, 0)) << "optional";
        EXPECT_STREQ("", out);

        SetText(IDC_NAME, L"  Anna Berg ");
        EXPECT_TRUE(dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, nullptr, NVCF_PFLICHT));
        EXPECT_STREQ("Anna Berg", out);
        EXPECT_TRUE(dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, nullptr, NVCF_NO_TRIM));
        EXPECT_STREQ("  Anna Berg ", out);
        EXPECT_TRUE(dlg.GetAndCheckTextField(IDC_NAME, out, sizeof out, nullptr, NVCF_UPPER));
        EXPECT_STREQ("ANNA BERG", out);
        char small[5];
        EXPECT_TRUE(dlg.GetAndCheckTextField(IDC_NAME, small, sizeof small, nullptr, 0));
        EXPECT_STREQ("Anna", small) << "cut to the buffer";

        wchar_t wide[32];
        SetText(IDC_NAME, L" \x0141\x00f3d\x017a ");
        EXPECT_TRUE(dlg.GetAndCheckTextFieldW(IDC_NAME, wide, 32, nullptr, NVCF_PFLICHT));
        EXPECT_EQ(std::wstring(L"\x0141\x00f3d\x017a"), wide)
            << "the wide form keeps what no code page holds";
        EXPECT_EQ(0u, rec.count());
    }
    {
        MsgBoxRecorder rec;
        wchar_t wide[32];
        SetText(IDC_NAME, L"");
        FocusOk();
        EXPECT_FALSE(dlg.GetAndCheckTextFieldW(IDC_NAME, wide, 32, nullptr, NVCF_PFLICHT));
        ExpectFailure(rec, IDC_NAME, L"The field 'Name' must be filled in.");
    }
}

TEST_F(DlgChecks, EMailFieldsNameTheBadAddress) {
    char out[128];
    MsgBoxRecorder rec;
    char const* bad[] = {"anna@",         "@host.de",      "anna.host.de",  "anna@host",
                         "an na@host.de", "anna@host..de", "anna@@host.de", "anna@host.d"};
    for (char const* address : bad) {
        rec.clear();
        SetWindowTextA(Item(IDC_EMAIL), address);
        FocusOk();
        EXPECT_FALSE(dlg.GetAndCheckEMailField(IDC_EMAIL, out, sizeof out, nullptr, 0)) << address;
        std::wstring expected =
            L"'" + std::wstring(address, address + strlen(address)) + L"' is not a valid e-mail address.";
        ExpectFailure(rec, IDC_EMAIL, expected.c_str());
    }
    rec.clear();
    SetText(IDC_EMAIL, L" anna.berg+tickets@host-1.example.de ");
    EXPECT_TRUE(dlg.GetAndCheckEMailField(IDC_EMAIL, out, sizeof out, nullptr, NVCF_PFLICHT));
    EXPECT_STREQ("anna.berg+tickets@host-1.example.de", out);

    SetText(IDC_EMAIL, L"a@b.de,  c@d.com;;e@f.org ");
    EXPECT_TRUE(dlg.GetAndCheckMultipleEMailField(IDC_EMAIL, out, sizeof out, nullptr, NVCF_PFLICHT));
    EXPECT_STREQ("a@b.de; c@d.com; e@f.org", out);
    EXPECT_EQ(0u, rec.count());

    SetText(IDC_EMAIL, L"a@b.de; c@d; e@f.org");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckMultipleEMailField(IDC_EMAIL, out, sizeof out, nullptr, 0));
    ExpectFailure(rec, IDC_EMAIL, L"'c@d' is not a valid e-mail address.");

    rec.clear();
    SetText(IDC_EMAIL, L" ; ");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckMultipleEMailField(IDC_EMAIL, out, sizeof out, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_EMAIL, L"The field 'E-mail' must be filled in.");
}

TEST_F(DlgChecks, NumberFieldsReadDigitsAndHonourRangesAndZero) {
    MsgBoxRecorder rec;
    unsigned long dw = 99;
    char const* bad[] = {"12x", "-3", "1 2", "+", "4294967296"};
    for (char const* text : bad) {
        rec.clear();
        SetWindowTextA(Item(IDC_COUNT), text);
        FocusOk();
        EXPECT_FALSE(dlg.GetAndCheckNumField(IDC_COUNT, dw, nullptr, 0)) << text;
        ExpectFailure(rec, IDC_COUNT, L"The field 'Count' needs a number.");
    }
    rec.clear();
    SetText(IDC_COUNT, L" 42 ");
    EXPECT_TRUE(dlg.GetAndCheckNumField(IDC_COUNT, dw, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(42ul, dw);
    unsigned __int64 qw = 0;
    SetText(IDC_COUNT, L"12345678901");
    EXPECT_TRUE(dlg.GetAndCheckNumField(IDC_COUNT, qw, nullptr, 0));
    EXPECT_EQ(12345678901ull, qw);
    SetText(IDC_COUNT, L"007");
    EXPECT_TRUE(dlg.GetAndCheckNumField(IDC_COUNT, dw, nullptr, NVCF_REFORMAT));
    EXPECT_EQ(7ul, dw);
    char text[16];
    GetWindowTextA(Item(IDC_COUNT), text, sizeof text);
    EXPECT_STREQ("7", text);
    SetText(IDC_COUNT, L"");
    EXPECT_TRUE(dlg.GetAndCheckNumField(IDC_COUNT, dw, nullptr, 0));
    EXPECT_EQ(0ul, dw) << "an optional empty field reads 0";
    EXPECT_EQ(0u, rec.count());

    SetText(IDC_COUNT, L"0");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckNumField(IDC_COUNT, dw, nullptr, NVCF_PFLICHT | NVCF_ZERO_IS_EMPTY));
    ExpectFailure(rec, IDC_COUNT, L"The field 'Count' must be filled in.");

    rec.clear();
    SetText(IDC_COUNT, L"11");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckNumFieldRange(IDC_COUNT, dw, 5, 10, nullptr, 0));
    ExpectFailure(rec, IDC_COUNT, L"The value must lie between 5 and 10.");
    rec.clear();
    SetText(IDC_COUNT, L"10");
    EXPECT_TRUE(dlg.GetAndCheckNumFieldRange(IDC_COUNT, dw, 5, 10, nullptr, 0));
    EXPECT_EQ(10ul, dw);
    SetText(IDC_COUNT, L"");
    EXPECT_TRUE(dlg.GetAndCheckNumFieldRange(IDC_COUNT, dw, 5, 10, nullptr, 0)) << "no value, no bound";

    long l = 0;
    SetText(IDC_COUNT, L"-2147483648");
    EXPECT_TRUE(dlg.GetAndCheckNumFieldSigned(IDC_COUNT, l, nullptr, 0));
    EXPECT_EQ(-2147483647L - 1, l);
    SetText(IDC_COUNT, L"+17");
    EXPECT_TRUE(dlg.GetAndCheckNumFieldSigned(IDC_COUNT, l, nullptr, 0));
    EXPECT_EQ(17L, l);
    EXPECT_EQ(0u, rec.count());
    SetText(IDC_COUNT, L"2147483648");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckNumFieldSigned(IDC_COUNT, l, nullptr, 0));
    ExpectFailure(rec, IDC_COUNT, L"The field 'Count' needs a number.");

    rec.clear();
    FocusOk();
    EXPECT_FALSE(dlg.CheckRange(IDC_COUNT, -6, -5, 5, nullptr, 0));
    ExpectFailure(rec, IDC_COUNT, L"The value must lie between -5 and 5.");
    EXPECT_TRUE(dlg.CheckRange(IDC_COUNT, 5, -5, 5, nullptr, 0));
    EXPECT_EQ(1u, rec.count());
}

TEST_F(DlgChecks, DoubleFieldParsesPerFormatAndBounds) {
    MsgBoxRecorder rec;
    double d = 1;
    SetText(IDC_PRICE, L"12.5");
    EXPECT_TRUE(dlg.GetAndCheckDoubleField(IDC_PRICE, d, nullptr, NVCF_PFLICHT, nullptr, nullptr, "%.2f"));
    EXPECT_DOUBLE_EQ(12.5, d);
    EXPECT_EQ(0u, rec.count());

    SetText(IDC_PRICE, L"abc");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckDoubleField(IDC_PRICE, d, nullptr, 0, nullptr, nullptr, "%.2f"));
    ExpectFailure(rec, IDC_PRICE, L"The field 'Price' needs a number.");

    rec.clear();
    double lo = 0, hi = 10;
    SetText(IDC_PRICE, L"10.5");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckDoubleField(IDC_PRICE, d, nullptr, 0, &lo, &hi, "%.2f"));
    ASSERT_EQ(1u, rec.count());
    EXPECT_NE(std::wstring::npos, rec.last().text.find(L"The value must lie between"));
    EXPECT_EQ(Item(IDC_PRICE), GetFocus());

    rec.clear();
    SetText(IDC_PRICE, L"");
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckDoubleField(IDC_PRICE, d, nullptr, NVCF_PFLICHT, nullptr, nullptr, "%.2f"));
    ExpectFailure(rec, IDC_PRICE, L"The field 'Price' must be filled in.");

    rec.clear();
    FocusOk();
    EXPECT_FALSE(dlg.CheckRangeDouble(IDC_PRICE, 10.01, 0, 10, nullptr, 0));
    ASSERT_EQ(1u, rec.count());
    EXPECT_EQ(Item(IDC_PRICE), GetFocus());
    EXPECT_TRUE(dlg.CheckRangeDouble(IDC_PRICE, 10, 0, 10, nullptr, 0));
    EXPECT_EQ(1u, rec.count());
}

TEST_F(DlgChecks, CardDateAcceptsMonthAndYearForms) {
    MsgBoxRecorder rec;
    char out[16];
    int m = 0, y = 0;
    struct {
        wchar_t const* text;
        char const* canonical;
        int month, year;
    } good[] = {{L"05/27", "05/27", 5, 2027}, {L"0527", "05/27", 5, 2027}, {L"12/2031", "12/31", 12, 2031}};
    for (auto const& g : good) {
        SetText(IDC_CARD, g.text);
        EXPECT_TRUE(dlg.GetAndCheckKartenDatumField(IDC_CARD, out, sizeof out, nullptr, NVCF_PFLICHT));
        EXPECT_STREQ(g.canonical, out);
        EXPECT_TRUE(dlg.GetAndCheckKartenDatumFieldMonYear(IDC_CARD, m, y, nullptr, NVCF_PFLICHT));
        EXPECT_EQ(g.month, m);
        EXPECT_EQ(g.year, y);
    }
    EXPECT_EQ(0u, rec.count());
    wchar_t const* bad[] = {L"13/27", L"00/27", L"5/27", L"05/2", L"05-27x"};
    for (wchar_t const* text : bad) {
        rec.clear();
        SetText(IDC_CARD, text);
        FocusOk();
        EXPECT_FALSE(dlg.GetAndCheckKartenDatumFieldMonYear(IDC_CARD, m, y, nullptr, 0)) << Utf8(text);
        ExpectFailure(rec, IDC_CARD, L"The field 'Card date' needs a card date as MM/YY.");
    }
}

TEST_F(DlgChecks, ComboAndListSelectionsByItemData) {
    HWND hCat = Item(IDC_CATEGORY);
    MsgBoxRecorder rec;
    long data = 0;
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckCBField(IDC_CATEGORY, data, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_CATEGORY, L"Please choose an entry in the field 'Category'.");
    rec.clear();
    EXPECT_TRUE(dlg.GetAndCheckCBField(IDC_CATEGORY, data, nullptr, 0));
    EXPECT_EQ(-1L, data) << "no selection in an optional field";

    EXPECT_EQ(0, DlgBase::AddCBItem_(hCat, "Concert", 70, false));
    EXPECT_EQ(1, DlgBase::AddCBItem_(hCat, "Theatre", 71, true));
    EXPECT_EQ(2, DlgBase::AddCBItem_(hCat, "Opera", -5, false));
    EXPECT_TRUE(dlg.GetAndCheckCBField(IDC_CATEGORY, data, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(71L, data);
    EXPECT_EQ(2, DlgBase::SelectCBItem_(hCat, -5));
    EXPECT_TRUE(dlg.GetAndCheckCBField(IDC_CATEGORY, data, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(-5L, data);
    char text[32];
    EXPECT_TRUE(dlg.GetAndCheckCBFieldText(IDC_CATEGORY, text, sizeof text, nullptr, NVCF_PFLICHT));
    EXPECT_STREQ("Opera", text);
    EXPECT_EQ(0, dlg.FindCBEntryByItemData(IDC_CATEGORY, 70));
    EXPECT_EQ(-1, dlg.FindCBEntryByItemData(IDC_CATEGORY, 72));
    EXPECT_EQ(-1, DlgBase::SelectCBItem_(hCat, 72));
    EXPECT_EQ(CB_ERR, SendMessageW(hCat, CB_GETCURSEL, 0, 0)) << "a missing key clears the selection";
    EXPECT_EQ(0u, rec.count());

    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckCBFieldText(IDC_CATEGORY, text, sizeof text, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_CATEGORY, L"Please choose an entry in the field 'Category'.");

    rec.clear();
    static int s_target = 0;
    DlgBase::AddCBItem_(hCat, "Pointer", static_cast<long>(0), true);
    SendMessageW(hCat, CB_SETITEMDATA, 3, reinterpret_cast<LPARAM>(&s_target));
    void* p = nullptr;
    EXPECT_TRUE(dlg.GetAndCheckCBFieldPtr(IDC_CATEGORY, p, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(static_cast<void*>(&s_target), p) << "the full pointer, not 32 bits of it";

    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckCBEditField(IDC_CITY, text, sizeof text, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_CITY, L"The field 'City' must be filled in.");
    rec.clear();
    SetText(IDC_CITY, L" Danzig ");
    EXPECT_TRUE(dlg.GetAndCheckCBEditField(IDC_CITY, text, sizeof text, nullptr, NVCF_PFLICHT));
    EXPECT_STREQ("Danzig", text);

    HWND hSeat = Item(IDC_SEAT);
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckLBField(IDC_SEAT, data, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_SEAT, L"Please choose an entry in the field 'Seat'.");
    rec.clear();
    SendMessageW(hSeat, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Row 1"));
    SendMessageW(hSeat, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Row 2"));
    SendMessageW(hSeat, LB_SETITEMDATA, 1, 902);
    SendMessageW(hSeat, LB_SETCURSEL, 1, 0);
    EXPECT_TRUE(dlg.GetAndCheckLBField(IDC_SEAT, data, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(902L, data);
    EXPECT_EQ(0u, rec.count());
}

TEST_F(DlgChecks, DateTimePickerReadsSecondsOrReportsMissingDate) {
    HWND hPicker = Item(IDC_SHOWDATE);
    MsgBoxRecorder rec;
    long t = 5;
    DlgBase::SetDateTimePickerDate_(hPicker, 0, true, 0);
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckDateTimePicker(IDC_SHOWDATE, t, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_SHOWDATE, L"The date or time in the field 'Show date' is missing.");
    rec.clear();
    EXPECT_TRUE(dlg.GetAndCheckDateTimePicker(IDC_SHOWDATE, t, nullptr, 0));
    EXPECT_EQ(0L, t) << "no date in an optional picker";
    SYSTEMTIME st{};
    FocusOk();
    EXPECT_FALSE(dlg.GetAndCheckDateTimePicker(IDC_SHOWDATE, st, nullptr, NVCF_PFLICHT));
    ExpectFailure(rec, IDC_SHOWDATE, L"The date or time in the field 'Show date' is missing.");
    rec.clear();

    long const tShow = 1718013600; // a full minute
    DlgBase::SetDateTimePickerDate_(hPicker, tShow, true, 0);
    EXPECT_TRUE(dlg.GetAndCheckDateTimePicker(IDC_SHOWDATE, t, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(tShow, t);
    long tRead = 0;
    DlgBase::GetDateTimePickerDate_(hPicker, tRead, 0);
    EXPECT_EQ(tShow, tRead);
    EXPECT_TRUE(dlg.GetAndCheckDateTimePicker(IDC_SHOWDATE, st, nullptr, NVCF_PFLICHT));
    EXPECT_EQ(2024, st.wYear);
    EXPECT_EQ(0u, rec.count());

    SYSTEMTIME range[2] = {};
    DlgBase::SetDateTimePickerRange_(hPicker, 0, 0, 0);
    EXPECT_EQ(static_cast<DWORD>(GDTR_MIN | GDTR_MAX),
              SendMessageW(hPicker, DTM_GETRANGE, 0, reinterpret_cast<LPARAM>(range)));
    EXPECT_EQ(1970, range[0].wYear);
    EXPECT_EQ(2038, range[1].wYear);
}

TEST_F(DlgChecks, CheckBoxFlagStreamTextAndLabelRules) {
    unsigned long flags = 0x10;
    CheckDlgButton(hDlg, IDC_MEMBER, BST_CHECKED);
    EXPECT_TRUE(dlg.GetCheckBoxFlag(IDC_MEMBER, flags, 0x4));
    EXPECT_EQ(0x14ul, flags);
    CheckDlgButton(hDlg, IDC_MEMBER, BST_UNCHECKED);
    EXPECT_FALSE(dlg.GetCheckBoxFlag(IDC_MEMBER, flags, 0x14));
    EXPECT_EQ(0ul, flags);

    MsgBoxRecorder rec;
    SetText(IDC_NAME, L"Anna|Berg");
    FocusOk();
    EXPECT_FALSE(dlg.CheckStreamForKLTConnectorBase(IDC_NAME, nullptr, 0));
    ExpectFailure(rec, IDC_NAME, L"'Anna|Berg' is not a valid value.");
    rec.clear();
    SetText(IDC_NAME, L"Anna\tBerg");
    EXPECT_FALSE(dlg.CheckStreamForKLTConnectorBase(IDC_NAME, nullptr, NVCF_SILENT));
    SetText(IDC_NAME, L"Anna Berg; 12");
    EXPECT_TRUE(dlg.CheckStreamForKLTConnectorBase(IDC_NAME, nullptr, 0));
    EXPECT_EQ(0u, rec.count());

    char label[128];
    EXPECT_TRUE(DlgBase::GetPrevWindowText_(Item(IDC_NAME), label, sizeof label));
    EXPECT_STREQ("Name", label) << "no '&', no colon";
    EXPECT_FALSE(DlgBase::GetPrevWindowText_(Item(IDC_UNLABELLED), label, sizeof label))
        << "a check box before a field is not its label";
    EXPECT_STREQ("", label);
    HWND hCityEdit = GetDlgItem(Item(IDC_CITY), 1001);
    ASSERT_NE(nullptr, hCityEdit);
    EXPECT_TRUE(DlgBase::GetPrevWindowText_(hCityEdit, label, sizeof label));
    EXPECT_STREQ("City", label) << "a combo box's edit part is labelled as the combo box";
    char tiny[4];
    EXPECT_TRUE(DlgBase::GetPrevWindowText_(Item(IDC_CARD), tiny, sizeof tiny));
    EXPECT_STREQ("Car", tiny);
}

TEST_F(DlgChecks, ChangesAreCountedAfterInitAndReset) {
    EXPECT_FALSE(dlg.IsChanged());
    SetText(IDC_NAME, L"typed");
    EXPECT_TRUE(dlg.IsChanged());
    EXPECT_EQ(IDC_NAME, dlg.iLastChangedId);
    dlg.ResetEditState();
    EXPECT_FALSE(dlg.IsChanged());
    SendMessageW(Item(IDC_MEMBER), BM_CLICK, 0, 0);
    EXPECT_TRUE(dlg.IsChanged()) << "a check box click is a change";
    EXPECT_EQ(IDC_MEMBER, dlg.iLastChangedId);
    dlg.ResetEditState();
    SendMessageW(Item(IDOK), BM_CLICK, 0, 0);
    EXPECT_FALSE(dlg.IsChanged()) << "a push button is not";
}

TEST_F(DlgChecks, EnableAllInputChildsSparesExcludedAndStatics) {
    DynaArrayTpl<unsigned long, 0, 0> keep;
    keep.Add(static_cast<unsigned long>(IDC_NAME));
    SetFocus(Item(IDC_COUNT));
    EXPECT_TRUE(dlg.EnableAllInputChilds(false, &keep, false));
    EXPECT_TRUE(IsWindowEnabled(Item(IDC_NAME)));
    EXPECT_FALSE(IsWindowEnabled(Item(IDC_COUNT)));
    EXPECT_FALSE(IsWindowEnabled(Item(IDC_SHOWDATE)));
    EXPECT_FALSE(IsWindowEnabled(Item(IDOK)));
    EXPECT_TRUE(IsWindowEnabled(Item(104))) << "labels stay";
    EXPECT_NE(Item(IDC_COUNT), GetFocus()) << "the focus left the disabled field";
    EXPECT_TRUE(dlg.EnableAllInputChilds(true, nullptr, false));
    EXPECT_TRUE(IsWindowEnabled(Item(IDC_COUNT)));

    EXPECT_TRUE(dlg.EnableAllInputChilds(false, nullptr, true));
    EXPECT_TRUE(IsWindowEnabled(Item(IDC_COUNT)));
    EXPECT_TRUE(GetWindowLongW(Item(IDC_COUNT), GWL_STYLE) & ES_READONLY);
    EXPECT_FALSE(IsWindowEnabled(Item(IDC_CATEGORY)));
    dlg.EnableAllInputChilds(true, nullptr, true);
    EXPECT_FALSE(GetWindowLongW(Item(IDC_COUNT), GWL_STYLE) & ES_READONLY);

    dlg.EnableDialogItem(IDC_PRICE, false);
    EXPECT_FALSE(IsWindowEnabled(Item(IDC_PRICE)));
    dlg.ShowDialogItem(IDC_PRICE, false);
    EXPECT_FALSE(GetWindowLongW(Item(IDC_PRICE), GWL_STYLE) & WS_VISIBLE);
    dlg.SetDialogFocus(IDC_EMAIL);
    EXPECT_EQ(Item(IDC_EMAIL), GetFocus());
}

} // namespace
