// The page of texts formatted by the utility library: messages with numbered placeholders, checks,
// amounts and dates in three languages.
#include "TextsPage.h"

#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"
#include "frame/VantrelBase.h"

#include "Norvane.h"

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

struct DemoRow {
    std::wstring example;
    std::wstring result;
};

std::wstring Widen(char const* text) {
    wchar_t* w = NVMakeUNICODEWindowText(text, -1, 0);
    std::wstring s = w ? w : L"";
    NVFreeUNICODEWindowText(w);
    return s;
}

std::vector<DemoRow> BuildRows() {
    std::vector<DemoRow> rows;
    wchar_t buf[512];

    // One call, two languages: the German text puts its placeholders the other way round.
    wchar_t const* english = L"\u00a71!d! tickets sold for \u00a72";
    wchar_t const* german = L"F\u00fcr \u00a72 wurden \u00a71!d! Karten verkauft";
    SNPrintf(buf, 512, english, 42, L"Hamlet");
    rows.push_back({L"Message, English order", buf});
    SNPrintf(buf, 512, german, 42, L"Hamlet");
    rows.push_back({L"Message, German order", buf});
    SNPrintf(buf, 512, L"Seat %-4s row %02d, %.2f EUR", L"12A", 7, 39.5);
    rows.push_back({L"printf codes", buf});

    unsigned short const langs[] = {1033, 1031, 1045};
    wchar_t const* names[] = {L"English", L"German", L"Polish"};
    for (int i = 0; i < 3; ++i) {
        SNPrintf(buf, 512, GSRCW(NV_IDS_FIELD_EMPTY, langs[i]), L"Name");
        rows.push_back({std::wstring(L"Empty field check, ") + names[i], buf});
    }
    for (int i = 0; i < 3; ++i) {
        SNPrintf(buf, 512, GSRCW(NV_IDS_OUT_OF_RANGE, langs[i]), L"1", L"99");
        rows.push_back({std::wstring(L"Range check, ") + names[i], buf});
    }

    // Numbers, dates and the library's own texts as each language writes them.
    long const tShow = 1795441500; // 23.11.2026 14:45 in Central Europe
    for (int i = 0; i < 3; ++i) {
        NVSetCurrentLangID(langs[i]);
        char num[100], date[100];
        FormatNumber(-1234567.891, NVGetNumberFormatString(NVNF_DEFAULT, 0, false), num, sizeof num);
        FormatDateTime(tShow, NVGetDateTimeFormatString(NVDT_DATE_WEEKDAY, 0),
                       NVGetDateTimeFormatString(NVDT_TIME, 0), date, sizeof date, 0);
        std::wstring texts = std::wstring(VTRStringTable::GetTextW(IDS_VTR_YES)) + L" / " +
                             VTRStringTable::GetTextW(IDS_VTR_NO) + L" / " +
                             VTRStringTable::GetTextW(IDS_VTR_DIFFERENT);
        rows.push_back({std::wstring(L"Amount, ") + names[i], Widen(num)});
        rows.push_back({std::wstring(L"Date and time, ") + names[i], Widen(date)});
        rows.push_back({std::wstring(L"Library texts, ") + names[i], texts});
    }
    NVSetCurrentLangID(0);

    char text[256] = "  Parkett, Reihe 7  ";
    StrTrim(text);
    rows.push_back({L"StrTrim", L"[" + Widen(text) + L"]"});
    char label[64] = "&Save && close";
    DelChar(label, '&');
    rows.push_back({L"DelChar of '&'", Widen(label)});

    DynaArrayTpl<int> prices;
    int const values[] = {45, 12, 30, 12, 99};
    for (int v : values)
        prices.Add(v);
    prices.Sort([](void const* a, void const* b) {
        return *static_cast<int const*>(a) - *static_cast<int const*>(b);
    });
    std::wstring sorted;
    for (int i = 0; i < prices.GetCount(); ++i)
        sorted += (i ? L", " : L"") + std::to_wstring(*prices.Get(i));
    rows.push_back({L"DynaArray sorted", sorted});

    wchar_t module[MAX_PATH] = L"";
    GetModuleFileNameW(VTRGetInstance(), module, MAX_PATH);
    rows.push_back({L"Controls library", module});

    try {
        Throw(0,
              "Line \xA7"
              "1!d!: '\xA7"
              "2' is not a number",
              17, "12x");
    } catch (NVThrowData const& e) {
        rows.push_back({L"Throw and catch", Widen(e.GetText())});
    }
    return rows;
}

} // namespace

void FillTextsList(HWND hList) {
    SendMessageW(hList, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    LVCOLUMNW col{};
    col.mask = LVCF_TEXT | LVCF_WIDTH;
    col.cx = 190;
    col.pszText = const_cast<wchar_t*>(L"Example");
    SendMessageW(hList, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&col));
    col.cx = 420;
    col.pszText = const_cast<wchar_t*>(L"Result");
    SendMessageW(hList, LVM_INSERTCOLUMNW, 1, reinterpret_cast<LPARAM>(&col));
    int row = 0;
    for (DemoRow const& r : BuildRows()) {
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.pszText = const_cast<wchar_t*>(r.example.c_str());
        SendMessageW(hList, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        item.iSubItem = 1;
        item.pszText = const_cast<wchar_t*>(r.result.c_str());
        SendMessageW(hList, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
        ++row;
    }
}
