#include "TicketList.h"

#include "NVDates.h"
#include "NVNumbers.h"
#include "NVStrings.h"

#include <cstddef>
#include <cstdio>

namespace {

// Group rows carry this bit in their lParam; a ticket's lParam is its ticket number.
LPARAM const kGroupFlag = 0x40000000;

char const* const kEvents[] = {"Hamlet",     "The Magic Flute", "Swan Lake",
                               "Jazz Night", "Carmen",          "Chamber Concert"};
char const* const kCustomers[] = {"Anna Nowak",    "Jan Kowalski",     "Maria Schmidt", "Lukas M\xfcller",
                                  "Peter Braun",   "Ewa Zieli\xf1ska", "Sophie Wagner", "Tomasz Lewandowski",
                                  "Claire Dubois", "Box office"};

#define OFF(m) static_cast<int>(offsetof(Ticket, m))

// The price format is the language's amount format, kept for the life of the columns.
char g_szPriceFormat[64];

} // namespace

bool TicketList::Create(HWND hList) {
    Assign(hList);
    SendMessageW(hList, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    StrNZCpy(g_szPriceFormat, NVGetNumberFormatString(NVNF_DEFAULT, 0, false), sizeof g_szPriceFormat);
    // Show times in the language's date and time; the import reads them back the same way.
    if (!DefineStructureAndCols(
            sizeof(Ticket),                                                          //
            OFF(szEvent), "Performance", 1, "Chamber Concert   ", 0, 0, VTDT_STRING, //
            OFF(szSeat), "Seat", 2, "Seat ", 0, VTR_COLFMT_TRAILNUMBER, VTDT_STRING, OFF(tShow), "Show", 3,
            "00/00/0000 00:00 PM  ", 0, 0, VTDT_TIME_T, nullptr, nullptr, //
            OFF(dPrice), "Price", 4, "0,000.00 ", 0, LVCFMT_RIGHT, VTDT_DOUBLE,
            g_szPriceFormat,                                                         //
            OFF(dwNo), "Ticket", 5, "000000 ", 0, LVCFMT_RIGHT, VTDT_DWORD_NOT_NULL, //
            OFF(szCustomer), "Customer", 6, "Tomasz Lewandowski  ", -1, 0, VTDT_STRING, -1))
        return false;
    if (!SetTreeMode(true, true))
        return false;
    SetSecondSortCols(3, 1);
    SetSortMode(0, false);

    // A few hundred tickets over six performances, the same on every run.
    unsigned int seed = 20261123;
    auto next = [&seed](unsigned int n) {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) % n;
    };
    long const tFirst = 1795458600; // 23.11.2026 19:30 in Central Europe
    DWORD dwNo = 100200;
    m_performances.clear();
    for (int e = 0; e < 6; ++e) {
        Performance p{};
        Ticket& g = p.group;
        StrNZCpy(g.szEvent, kEvents[e], sizeof g.szEvent);
        g.tShow = tFirst + e * 86400 + (e % 2) * 1800;
        int const count = 38 + static_cast<int>(next(30));
        for (int i = 0; i < count; ++i) {
            Ticket t{};
            StrNZCpy(t.szEvent, g.szEvent, sizeof t.szEvent);
            char const row = static_cast<char>('A' + next(8));
            snprintf(t.szSeat, sizeof t.szSeat, "%c%u", row, 1 + next(24));
            t.tShow = g.tShow;
            t.dPrice = row <= 'B' ? 89.0 : row <= 'E' ? 64.5 : 39.9;
            if (next(5) == 0)
                t.dPrice /= 2; // reduced
            t.dwNo = dwNo++;
            StrNZCpy(t.szCustomer, kCustomers[next(10)], sizeof t.szCustomer);
            g.dPrice += t.dPrice;
            p.tickets.push_back(t);
        }
        snprintf(g.szCustomer, sizeof g.szCustomer, "%d tickets", count);
        m_performances.push_back(p);
    }

    SendMessageW(hList, WM_SETREDRAW, FALSE, 0);
    for (size_t e = 0; e < m_performances.size(); ++e) {
        if (!AddRowEx(kGroupFlag | static_cast<LPARAM>(e), -1, &m_performances[e].group, nullptr, true, false,
                      false, 0x7fffffff))
            return false;
        SetBold(GetLastAddedItem(), true);
    }
    Resort(false);
    for (int group = 1; group >= 0; --group)
        ExpandItem(FindItem(GetLVITEMHANDLE(group)));
    SendMessageW(hList, WM_SETREDRAW, TRUE, 0);
    return true;
}

int TicketList::GetTicketCount() {
    int n = 0;
    LPARAM lParam = 0;
    for (int i = 0, count = GetItemCount(); i < count; ++i)
        if (GetLParam(i, lParam) && !(lParam & kGroupFlag))
            ++n;
    return n;
}

bool TicketList::OnExpandItem(int item, void* pRow) {
    LPARAM lParam = 0;
    if (!GetLParam(item, lParam) || !(lParam & kGroupFlag))
        return false;
    size_t const e = static_cast<size_t>(lParam & ~kGroupFlag);
    if (e >= m_performances.size())
        return false;
    SendMessageW(m_hWnd, WM_SETREDRAW, FALSE, 0);
    for (Ticket& t : m_performances[e].tickets)
        AddRowEx(static_cast<LPARAM>(t.dwNo), -1, &t, pRow, false, false, false, 0x7fffffff);
    // Children are appended; the sort puts them under their group in the list's order.
    Resort(true);
    SendMessageW(m_hWnd, WM_SETREDRAW, TRUE, 0);
    return true;
}

int TicketList::GetFieldSize(int iCol) {
    switch (iCol) {
    case 0:
        return sizeof(Ticket::szEvent);
    case 1:
        return sizeof(Ticket::szSeat);
    case 5:
        return sizeof(Ticket::szCustomer);
    default:
        return 0;
    }
}
