// A million generated tickets in an owner-data list: the rows live here in a compact array, the
// control only knows their number and asks for the text of the cells it paints.
#pragma once

#include "stores/VTRBListViewVirtual.h"

#include <cstdint>
#include <vector>

class LargeTicketList : public VTRBListViewVirtual {
public:
    bool Create(HWND hList, unsigned int uCount);
    unsigned int GetCount() const { return static_cast<unsigned int>(m_order.size()); }
    // Milliseconds the last sort of the rows took.
    unsigned long GetLastSortMs() const { return m_ulSortMs; }

    void OnNeedText(int iRow, int iCol, wchar_t* pszBuf) override;
    void OnResort(int iSortCol, int iSecondSortCol, bool bDescending) override;

private:
    struct BigTicket {
        uint32_t dwNo;
        int32_t tShow;
        uint32_t uCents;
        uint16_t wEvent;
        uint16_t wCustomer;
        uint8_t byRow;
        uint8_t bySeat;
    };
    // A column's key of a row; names compare by their alphabetical rank.
    int64_t Key(BigTicket const& t, int iCol) const;

    std::vector<BigTicket> m_rows;
    std::vector<uint32_t> m_order; // list position -> row
    unsigned long m_ulSortMs = 0;
};
