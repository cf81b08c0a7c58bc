// A real report-style list control in a hidden dialog that forwards its notifications to the list
// object, as a client dialog does, and a list class that counts the rows it frees.
#pragma once

#include "harness/TestHost.h"
#include "listview/VTRBListView.h"

#include "NVLanguage.h"

#include <string>
#include <vector>

namespace lvtest {

class TestList : public VTRBListView {
public:
    int iRowsFreed = 0;
    int iSortModeChanged = 0;
    std::vector<int> passwordCols;

    using VTRBListView::CompareFuncWithContext;
    Row* Get(int item) { return GetRow(item); }
    Row* LastAdded() { return m_pLastAddedRow; }
    Col* ColRec(int col) { return GetCol(col); }
    bool Set(Row* pRow, int col, void* value) { return SetData(pRow, col, value); }
    std::wstring Text(Row* pRow, int item, int col, bool bNoPassword = false) {
        return GetDataText(pRow, item, col, bNoPassword);
    }
    unsigned int RowSize() const { return GetRowSize(); }
    void RecomputeTree() { UpdateTreeInfo(); }
    // Sets the first key without sorting, as restoring settings does.
    bool SetKeysOnly(int col, bool bDesc) { return _SetSortMode(col, bDesc, true, false); }

    // What a store does for a child row: the last added row gets its parent. For lists of a text
    // and an int column.
    bool AddChild(void* parent, LPARAM lParam, char const* text, int value, bool bHasChilds = false) {
        if (!AddRow(lParam, 0, const_cast<char*>(text), value))
            return false;
        m_pLastAddedRow->pParent = static_cast<Row*>(parent);
        if (bHasChilds)
            m_pLastAddedRow->dwFlags |= VTR_ROW_HASCHILDS;
        return true;
    }

protected:
    void RowDelete(int item, Row* pRow) override {
        ++iRowsFreed;
        VTRBListView::RowDelete(item, pRow);
    }
    void OnSortModeChanged() override { ++iSortModeChanged; }
    bool OnIsPassword(int, int col) override {
        for (int c : passwordCols)
            if (c == col)
                return true;
        return false;
    }
};

// The dialog is declared first so that it outlives the list object.
template <class List = TestList> struct ListHost {
    vtrtest::HostDialog dlg{640, 420};
    HWND hList = nullptr;
    List list;

    explicit ListHost(DWORD style = LVS_REPORT | LVS_SHOWSELALWAYS) {
        NVSetCurrentLangID(1033);
        hList = dlg.AddControl(WC_LISTVIEWW, style, 1012, 0, 0, 600, 380);
        dlg.onNotify = [this](UINT, WPARAM wParam, LPARAM lParam, LRESULT& result) {
            if (reinterpret_cast<NMHDR*>(lParam)->hwndFrom != hList)
                return false;
            result = list.HandleNotify(wParam, lParam);
            return true;
        };
        list.Assign(hList);
    }
    ~ListHost() { list.UnAssign(); }

    // The text the control shows: asked through LVN_GETDISPINFO like painting does.
    std::wstring Text(int item, int col) {
        wchar_t buf[1100] = L"";
        LVITEMW lvi{};
        lvi.iSubItem = col;
        lvi.pszText = buf;
        lvi.cchTextMax = 1100;
        SendMessageW(hList, LVM_GETITEMTEXTW, item, reinterpret_cast<LPARAM>(&lvi));
        return buf;
    }
    std::string TextA(int item, int col) { return vtrtest::Utf8(Text(item, col)); }

    // The text an 8-bit parent gets: LVN_GETDISPINFOA sent through the dialog, into a buffer of
    // cchBuf characters; the text that the answer points to. pbInBuffer tells whether it was copied
    // into the parent's buffer rather than handed over as a pointer of the list's.
    std::string AskTextA(int item, int col, int cchBuf = 64, bool* pbInBuffer = nullptr) {
        std::string buf(static_cast<size_t>(cchBuf), '?');
        NMLVDISPINFOA info{};
        info.hdr.hwndFrom = hList;
        info.hdr.idFrom = 1012;
        info.hdr.code = LVN_GETDISPINFOA;
        info.item.mask = LVIF_TEXT;
        info.item.iItem = item;
        info.item.iSubItem = col;
        info.item.pszText = &buf[0];
        info.item.cchTextMax = cchBuf;
        SendMessageW(dlg.hwnd(), WM_NOTIFY, 1012, reinterpret_cast<LPARAM>(&info));
        if (pbInBuffer)
            *pbInBuffer = info.item.pszText == buf.data();
        return info.item.pszText ? std::string(info.item.pszText) : std::string("(null)");
    }

    // The rows' lParam values in list order.
    std::vector<LPARAM> Order() {
        std::vector<LPARAM> out;
        for (int i = 0; i < list.GetItemCount(); ++i) {
            LPARAM lp = -1;
            list.GetLParam(i, lp);
            out.push_back(lp);
        }
        return out;
    }
};

} // namespace lvtest
