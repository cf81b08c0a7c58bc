// The sales desk's ticket list: one group row per performance, its tickets as child rows that are
// added when the group is opened, every cell read out of a copied ticket record.
#pragma once

#include "stores/VTRBListViewStoreData.h"

#include <string>
#include <vector>

struct Ticket {
    char szEvent[40];
    char szSeat[12];
    long tShow; // 32-bit seconds, as the list's time cells hold them
    double dPrice;
    DWORD dwNo; // 0 in a group row, which the column shows empty
    char szCustomer[40];
};

class TicketList : public VTRBListViewStoreData {
public:
    // Columns, the generated performances and their group rows; the first two groups open.
    bool Create(HWND hList);
    // Rows that are tickets (imported ones included), group rows left out.
    int GetTicketCount();
    int GetGroupCount() const { return static_cast<int>(m_performances.size()); }

protected:
    bool OnExpandItem(int item, void* pRow) override;
    int GetFieldSize(int iCol) override;

private:
    struct Performance {
        Ticket group;
        std::vector<Ticket> tickets;
    };
    std::vector<Performance> m_performances;
};
