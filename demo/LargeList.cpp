#include "LargeList.h"

#include "NVDates.h"
#include "NVNumbers.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>

namespace {

wchar_t const* const kEvents[] = {
    L"Hamlet",       L"The Magic Flute", L"Swan Lake",     L"Jazz Night", L"Carmen", L"Chamber Concert",
    L"Don Giovanni", L"Nutcracker",      L"Organ Recital", L"Aida",       L"Tosca",  L"Gala Evening"};
wchar_t const* const kCustomers[] = {L"Anna Nowak",        L"Jan Kowalski",  L"Maria Schmidt",
                                     L"Lukas M\u00fcller", L"Peter Braun",   L"Ewa Zieli\u0144ska",
                                     L"Sophie Wagner",     L"Claire Dubois", L"Zofia Wi\u015bniewska",
                                     L"Box office",        L"Online shop",   L"Travel agency"};
int const kEventCount = sizeof kEvents / sizeof kEvents[0];
int const kCustomerCount = sizeof kCustomers / sizeof kCustomers[0];

// Alphabetical rank of each name, so that sorting compares small integers.
std::vector<int> RanksOf(wchar_t const* const* names, int count) {
    std::vector<int> index(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        index[static_cast<size_t>(i)] = i;
    std::sort(index.begin(), index.end(),
              [names](int a, int b) { return lstrcmpiW(names[a], names[b]) < 0; });
    std::vector<int> rank(static_cast<size_t>(count));
    for (int r = 0; r < count; ++r)
        rank[static_cast<size_t>(index[static_cast<size_t>(r)])] = r;
    return rank;
}

std::vector<int> const& EventRanks() {
    static std::vector<int> const ranks = RanksOf(kEvents, kEventCount);
    return ranks;
}
std::vector<int> const& CustomerRanks() {
    static std::vector<int> const ranks = RanksOf(kCustomers, kCustomerCount);
    return ranks;
}

enum { COL_NO, COL_EVENT, COL_SEAT, COL_SHOW, COL_PRICE, COL_CUSTOMER };

} // namespace

bool LargeTicketList::Create(HWND hList, unsigned int uCount) {
    Assign(hList);
    SendMessageW(hList, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    if (!DefineCols("Ticket", 1, "0000000 ", 0, LVCFMT_RIGHT, VTDT_DWORD,                         //
                    "Performance", 2, "The Magic Flute ", 0, 0, VTDT_STRING,                      //
                    "Seat", 3, "Seat ", 0, 0, VTDT_STRING,                                        //
                    "Show", 4, "Mon, 00/00/0000 00:00 PM  ", 0, 0, VTDT_TIME_T, nullptr, nullptr, //
                    "Price", 5, "0,000.00 ", 0, LVCFMT_RIGHT, VTDT_DOUBLE, nullptr,               //
                    "Customer", 6, "Zofia Wisniewska ", -1, 0, VTDT_STRING, nullptr))
        return false;

    m_rows.resize(uCount);
    m_order.resize(uCount);
    uint32_t seed = 77;
    auto next = [&seed](uint32_t n) {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 8) % n;
    };
    int32_t const tFirst = 1795458600; // 23.11.2026 19:30 in Central Europe
    for (uint32_t i = 0; i < uCount; ++i) {
        BigTicket& t = m_rows[i];
        t.dwNo = 1000000 + i;
        t.wEvent = static_cast<uint16_t>(next(kEventCount));
        t.tShow = tFirst + static_cast<int32_t>(next(120)) * 86400 + (t.wEvent % 3) * 1800;
        t.byRow = static_cast<uint8_t>(next(20));
        t.bySeat = static_cast<uint8_t>(1 + next(30));
        t.uCents = 1990u + t.byRow * 150u + (next(4) == 0 ? 0u : 500u);
        t.wCustomer = static_cast<uint16_t>(next(kCustomerCount));
        m_order[i] = i;
    }
    return SetItemCount(uCount);
}

int64_t LargeTicketList::Key(BigTicket const& t, int iCol) const {
    switch (iCol) {
    case COL_NO:
        return t.dwNo;
    case COL_EVENT:
        return EventRanks()[t.wEvent];
    case COL_SEAT:
        return t.byRow * 256 + t.bySeat;
    case COL_SHOW:
        return t.tShow;
    case COL_PRICE:
        return t.uCents;
    case COL_CUSTOMER:
        return CustomerRanks()[t.wCustomer];
    default:
        return 0;
    }
}

void LargeTicketList::OnResort(int iSortCol, int iSecondSortCol, bool bDescending) {
    DWORD const start = GetTickCount();
    int keys[3] = {iSortCol, iSecondSortCol & 0xFFFF, (iSecondSortCol >> 16) & 0xFFFF};
    int nKeys = 1;
    while (nKeys < 3 && keys[nKeys] != 0xFFFF && keys[nKeys] != iSortCol)
        ++nKeys;
    // The keys are taken out once, so that the sort compares plain integers.
    struct Entry {
        int64_t k[3];
        uint32_t row;
    };
    std::vector<Entry> entries(m_order.size());
    for (size_t i = 0; i < m_order.size(); ++i) {
        BigTicket const& t = m_rows[m_order[i]];
        for (int k = 0; k < 3; ++k)
            entries[i].k[k] = k < nKeys ? Key(t, keys[k]) : 0;
        entries[i].row = m_order[i];
    }
    // All keys turn round together, as in the list's own sort; ties keep their order.
    std::stable_sort(entries.begin(), entries.end(), [bDescending](Entry const& a, Entry const& b) {
        for (int k = 0; k < 3; ++k)
            if (a.k[k] != b.k[k])
                return bDescending ? a.k[k] > b.k[k] : a.k[k] < b.k[k];
        return false;
    });
    for (size_t i = 0; i < entries.size(); ++i)
        m_order[i] = entries[i].row;
    m_ulSortMs = GetTickCount() - start;
}

void LargeTicketList::OnNeedText(int iRow, int iCol, wchar_t* pszBuf) {
    if (iRow < 0 || static_cast<size_t>(iRow) >= m_order.size()) {
        pszBuf[0] = 0;
        return;
    }
    BigTicket const& t = m_rows[m_order[static_cast<size_t>(iRow)]];
    char text[128];
    switch (iCol) {
    case COL_NO:
        swprintf(pszBuf, 1024, L"%u", t.dwNo);
        break;
    case COL_EVENT:
        swprintf(pszBuf, 1024, L"%ls", kEvents[t.wEvent]);
        break;
    case COL_SEAT:
        swprintf(pszBuf, 1024, L"%c%u", L'A' + t.byRow, t.bySeat);
        break;
    case COL_SHOW:
        if (FormatDateTime(t.tShow, NVGetDateTimeFormatString(NVDT_DATE_WEEKDAY_COMMA, 0),
                           NVGetDateTimeFormatString(NVDT_TIME, 0), text, sizeof text, 0) <= 0)
            text[0] = 0;
        MultiByteToWideChar(CP_ACP, 0, text, -1, pszBuf, 1024);
        break;
    case COL_PRICE:
        if (!FormatNumber(t.uCents / 100.0, NVGetNumberFormatString(NVNF_DEFAULT, 0, false), text,
                          sizeof text))
            text[0] = 0;
        MultiByteToWideChar(CP_ACP, 0, text, -1, pszBuf, 1024);
        break;
    case COL_CUSTOMER:
        swprintf(pszBuf, 1024, L"%ls", kCustomers[t.wCustomer]);
        break;
    default:
        pszBuf[0] = 0;
    }
}
