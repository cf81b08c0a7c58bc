#include "listview/ListFixture.h"
#include "stores/VTRBListViewStoreData.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

using lvtest::ListHost;

namespace {

struct Rec {
    char szName[24];
    int iQty;
    double dPrice;
    wchar_t const* pszNote;
    unsigned short wCard;
    bool bDone;
    unsigned __int64 ullDiff;
    long lKey;
};

#define OFF(m) static_cast<int>(offsetof(Rec, m))

class TestStore : public VTRBListViewStoreData {
public:
    using VTRBListView::GetRow;
    int iDeleted = 0;

protected:
    void OnDeleteRowData(void* pData) override {
        ++iDeleted;
        VTRBListViewStoreData::OnDeleteRowData(pData);
    }
};

Rec MakeRec(char const* name, int qty, double price, wchar_t const* note, unsigned short w = 0) {
    Rec r{};
    strcpy(r.szName, name);
    r.iQty = qty;
    r.dPrice = price;
    r.pszNote = note;
    r.wCard = w;
    return r;
}

template <class Store> bool DefineRecCols(Store& s) {
    return s.DefineStructureAndCols(sizeof(Rec), OFF(szName), "Name", 1, nullptr, 80, 0, VTDT_STRING, //
                                    OFF(iQty), "Qty", 2, nullptr, 40, 0, VTDT_int,                    //
                                    OFF(dPrice), "Price", 3, nullptr, 60, 0, VTDT_DOUBLE, "%.2f",     //
                                    OFF(pszNote), "Note", 4, nullptr, 60, 0, VTDT_LPWSTR,             //
                                    OFF(wCard), "Word", 5, nullptr, 40, 0, VTDT_WORD,                 //
                                    -1);
}

} // namespace

TEST(StoreData, RowsAreCopiesThatOutliveTheClientsBuffer) {
    ListHost<TestStore> h;
    ASSERT_TRUE(DefineRecCols(h.list));
    EXPECT_EQ(sizeof(Rec), h.list.GetBlockSize());
    EXPECT_EQ(5, h.list.GetColCnt());

    Rec buf = MakeRec("Alpha", 7, 2.5, L"n\u00e9", 0x1234);
    ASSERT_TRUE(h.list.AddRow(11, -1, &buf, false, false));
    buf = MakeRec("Beta", -3, 0.0, nullptr, 1);
    ASSERT_TRUE(h.list.AddRow(12, -1, &buf, false, false));
    // The client reuses its buffer: the rows keep what they were given.
    memset(&buf, 0x5A, sizeof buf);

    EXPECT_EQ("Alpha", h.TextA(0, 0));
    EXPECT_EQ("7", h.TextA(0, 1));
    EXPECT_EQ("n\xc3\xa9", h.TextA(0, 3));
    EXPECT_EQ("4660", h.TextA(0, 4));
    EXPECT_EQ("Beta", h.TextA(1, 0));
    EXPECT_EQ("-3", h.TextA(1, 1));
    EXPECT_EQ("", h.TextA(1, 3));

    void* pBlock = nullptr;
    ASSERT_TRUE(h.list.GetRowData(0, pBlock));
    EXPECT_NE(static_cast<void*>(&buf), pBlock);
    EXPECT_STREQ("Alpha", static_cast<Rec*>(pBlock)->szName);
    // A string column's text is the field in the block itself.
    EXPECT_EQ(static_cast<Rec*>(pBlock)->szName, h.list.GetCellText(0, 0));
    EXPECT_EQ(nullptr, h.list.GetCellText(0, 1));
    EXPECT_EQ(nullptr, h.list.GetCellText(5, 0));
    EXPECT_STREQ(L"n\u00e9", h.list.GetCellTextUC(0, 3));
    EXPECT_EQ(0, h.list.GetStructOffset(0));
    EXPECT_EQ(OFF(dPrice), h.list.GetStructOffset(2));
    EXPECT_EQ(-1, h.list.GetStructOffset(-1));
    EXPECT_EQ(-1, h.list.GetStructOffset(5));

    h.list.SetCurSel(1);
    int iRow = -1;
    void* pSel = h.list.GetCurSelRowData(&iRow);
    ASSERT_NE(nullptr, pSel);
    EXPECT_EQ(1, iRow);
    EXPECT_STREQ("Beta", static_cast<Rec*>(pSel)->szName);

    // Typed reads of a row's columns.
    VTRItemData d;
    ASSERT_TRUE(h.list.GetColData(0, 2, d));
    EXPECT_EQ(VTDT_DOUBLE, d.eType);
    EXPECT_EQ(2.5, d.dValue);
    ASSERT_TRUE(h.list.GetColData(1, 1, d));
    EXPECT_EQ(-3, d.lValue);
    ASSERT_TRUE(h.list.GetColData(0, 4, d));
    EXPECT_EQ(0x1234, d.wValue);
    EXPECT_FALSE(h.list.GetColData(0, 5, d));
    EXPECT_FALSE(h.list.GetColData(9, 0, d));

    // Text written into the block, also into a wide field through its pointer.
    wchar_t wszNote[16] = L"old";
    Rec withBuf = MakeRec("Gamma", 1, 1.0, wszNote);
    ASSERT_TRUE(h.list.AddRow(13, -1, &withBuf, false, false));
    h.list.SetCellText(2, 0, const_cast<char*>("Delta"));
    h.list.SetCellText(2, 3, const_cast<char*>("new"));
    h.list.SetCellText(2, 1, const_cast<char*>("99")); // not a text column: unchanged
    EXPECT_EQ("Delta", h.TextA(2, 0));
    EXPECT_STREQ(L"new", wszNote);
    EXPECT_EQ("new", h.TextA(2, 3));
    EXPECT_EQ("1", h.TextA(2, 1));
}

TEST(StoreData, UpdatesDeletesAndResetGiveEveryBlockBack) {
    ListHost<TestStore> h;
    // Columns only after a structure.
    EXPECT_FALSE(h.list.DefineCols("A", 1, nullptr, 40, 0, VTDT_int, nullptr));
    ASSERT_TRUE(h.list.DefineStructure(sizeof(Rec), OFF(szName), OFF(iQty), -1));
    EXPECT_FALSE(h.list.DefineStructure(sizeof(Rec), OFF(szName), -1));
    ASSERT_TRUE(h.list.DefineCols("Name", 1, nullptr, 80, 0, VTDT_STRING, "Qty", 2, nullptr, 40, 0, VTDT_int,
                                  nullptr));
    ASSERT_EQ(2, h.list.GetColCnt());

    for (int i = 0; i < 40; ++i) {
        Rec r = MakeRec("row", i, 0, nullptr);
        ASSERT_TRUE(h.list.AddRow(i, -1, &r, false, false));
    }
    EXPECT_EQ(40, h.list.GetUsedBlockCount());

    Rec r = MakeRec("changed", 500, 0, nullptr);
    ASSERT_TRUE(h.list.UpdateRow(3, 77, -1, &r, false));
    EXPECT_EQ(40, h.list.GetUsedBlockCount());
    EXPECT_EQ("changed", h.TextA(3, 0));
    EXPECT_EQ("500", h.TextA(3, 1));
    LPARAM lp = 0;
    EXPECT_TRUE(h.list.GetLParam(3, lp));
    EXPECT_EQ(77, lp);

    // Without data the row loses its block and shows empty cells.
    ASSERT_TRUE(h.list.UpdateRow(4, 4, -1, nullptr, false));
    EXPECT_EQ(39, h.list.GetUsedBlockCount());
    void* pBlock = reinterpret_cast<void*>(1);
    EXPECT_FALSE(h.list.GetRowData(4, pBlock));
    EXPECT_EQ(nullptr, pBlock);
    EXPECT_EQ("", h.TextA(4, 0));
    // ... and gets a new one with data.
    ASSERT_TRUE(h.list.UpdateRow(4, 4, -1, &r, false));
    EXPECT_EQ(40, h.list.GetUsedBlockCount());

    ASSERT_TRUE(h.list.DeleteRow(0, false));
    ASSERT_TRUE(h.list.DeleteRow(0, false));
    EXPECT_EQ(38, h.list.GetUsedBlockCount());
    EXPECT_EQ(3, h.list.iDeleted); // one went with UpdateRow above

    ASSERT_TRUE(h.list.AddRow(99, -1, nullptr, false, false));
    EXPECT_EQ(38, h.list.GetUsedBlockCount());
    h.list.ClearAll();
    EXPECT_EQ(0, h.list.GetUsedBlockCount());
    EXPECT_EQ(41, h.list.iDeleted);

    h.list.AddRow(1, -1, &r, false, false);
    h.list.Reset();
    EXPECT_FALSE(h.list.IsStructureDefined());
    EXPECT_EQ(0, h.list.GetItemCount());
    EXPECT_FALSE(h.list.AddRow(1, -1, &r, false, false));
    // After Reset a new structure may be defined.
    EXPECT_TRUE(DefineRecCols(h.list));
    EXPECT_TRUE(h.list.AddRow(1, -1, &r, false, false));
}

TEST(StoreData, ArraysInAndOut) {
    ListHost<TestStore> h;
    ASSERT_TRUE(DefineRecCols(h.list));
    DynaArrayTpl<Rec, 0, 0> da;
    for (int i = 0; i < 5; ++i) {
        Rec r = MakeRec("x", i * 10, 0, nullptr);
        r.lKey = 1000 + i;
        da.Add(r);
    }
    DynaArray wrong(sizeof(Rec) + 1);
    wrong.Add(da.Get(0));
    EXPECT_FALSE(h.list.AddArray(wrong, -1, false));
    EXPECT_EQ(0, h.list.GetItemCount());

    ASSERT_TRUE(h.list.AddArray(da, OFF(lKey), false));
    ASSERT_EQ(5, h.list.GetItemCount());
    EXPECT_EQ((std::vector<LPARAM>{1000, 1001, 1002, 1003, 1004}), h.Order());
    ASSERT_TRUE(h.list.AddArray(da, -1, true));
    EXPECT_EQ((std::vector<LPARAM>{1000, 1001, 1002, 1003, 1004, 0, 1, 2, 3, 4}), h.Order());
    ASSERT_TRUE(h.list.AddArray(da, -1, false));
    EXPECT_EQ(5, h.list.GetItemCount());
    EXPECT_EQ(5, h.list.GetUsedBlockCount());

    DynaArrayTpl<Rec, 0, 0> out;
    ASSERT_TRUE(h.list.GetArray(out, false));
    ASSERT_EQ(5, out.GetCount());
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(0, memcmp(da.Get(i), out.Get(i), sizeof(Rec))) << i;
    // A row without a block ends the copy, which still succeeds.
    ASSERT_TRUE(h.list.UpdateRow(2, 2, -1, nullptr, false));
    ASSERT_TRUE(h.list.GetArray(out, true));
    EXPECT_EQ(7, out.GetCount());
    DynaArray wrongOut(4);
    EXPECT_FALSE(h.list.GetArray(wrongOut, false));
}

TEST(StoreData, DifferencesOverSeveralRecords) {
    ListHost<TestStore> h;
    ASSERT_TRUE(DefineRecCols(h.list));
    // Without a column nothing is read and the mask stays.
    ListHost<TestStore> empty;
    unsigned __int64 ullKeep = 0x8;
    Rec a = MakeRec("same", 1, 1.5, L"w", 7);
    EXPECT_TRUE(empty.list.CheckDifferent(&a, &a, ullKeep));
    EXPECT_EQ(0x8u, ullKeep);

    Rec b = a, c = a;
    b.iQty = 2;           // column 1
    c.dPrice = 1.75;      // column 2
    c.pszNote = L"other"; // column 3
    Rec d = a;
    d.pszNote = nullptr; // null against a text differs
    unsigned __int64 ull = 0;
    ASSERT_TRUE(h.list.CheckDifferent(&a, &b, ull));
    EXPECT_EQ(0x2u, ull);
    ASSERT_TRUE(h.list.CheckDifferent(&a, &c, ull));
    EXPECT_EQ(0xEu, ull);
    ull = 0;
    ASSERT_TRUE(h.list.CheckDifferent(&a, &d, ull));
    EXPECT_EQ(0x8u, ull);
    // A set bit is not compared again; copies of equal values never differ.
    Rec sameText = a;
    wchar_t wsz[] = L"w";
    sameText.pszNote = wsz;
    ull = 0x1;
    ASSERT_TRUE(h.list.CheckDifferent(&a, &sameText, ull));
    EXPECT_EQ(0x1u, ull);
    EXPECT_FALSE(h.list.CheckDifferent(&a, nullptr, ull));

    // The mask in each row marks its cells.
    ASSERT_TRUE(h.list.SetDifferentColsOffset(OFF(ullDiff)));
    a.ullDiff = 0;
    b.ullDiff = 0x6;
    ASSERT_TRUE(h.list.AddRow(1, -1, &a, false, false));
    ASSERT_TRUE(h.list.AddRow(2, -1, &b, false, false));
    EXPECT_FALSE(h.list.IsDifferent(0, -1));
    EXPECT_TRUE(h.list.IsDifferent(1, -1));
    EXPECT_FALSE(h.list.IsDifferent(1, 0));
    EXPECT_TRUE(h.list.IsDifferent(1, 1));
    EXPECT_TRUE(h.list.IsDifferent(1, 2));
    EXPECT_EQ("<Different>", h.TextA(1, 1));
    EXPECT_EQ("same", h.TextA(1, 0));
}

TEST(StoreData, CheckBoxOffsetColumnsAndTreeParents) {
    ListHost<TestStore> h;
    ASSERT_TRUE(DefineRecCols(h.list));
    ASSERT_TRUE(h.list.SetCheckBoxBoolOffset(OFF(bDone), true));
    EXPECT_TRUE(SendMessageW(h.hList, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0) & LVS_EX_CHECKBOXES);
    Rec r = MakeRec("parent", 1, 0, nullptr);
    r.bDone = true;
    ASSERT_TRUE(h.list.AddRow(1, -1, &r, false, false));
    Row* pRow = h.list.GetRow(0);
    void* pBlock = nullptr;
    ASSERT_TRUE(h.list.GetRowData(0, pBlock));
    ASSERT_NE(nullptr, pRow->pbCheck);
    EXPECT_EQ(reinterpret_cast<bool*>(static_cast<char*>(pBlock) + OFF(bDone)), pRow->pbCheck);
    EXPECT_EQ("parent", h.TextA(0, 0)); // cells still start at column 0 behind the check box address
    EXPECT_EQ("1", h.TextA(0, 1));
    EXPECT_TRUE(*pRow->pbCheck);

    ASSERT_TRUE(h.list.SetCheckBoxBoolOffset(-1, true));
    EXPECT_FALSE(SendMessageW(h.hList, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0) & LVS_EX_CHECKBOXES);
    EXPECT_EQ(nullptr, h.list.GetRow(0)->pbCheck);

    // Tree children: parent chain and indent by depth.
    ASSERT_TRUE(h.list.SetTreeMode(true, true));
    void* pParent = h.list.GetLVITEMHANDLE(0);
    Rec child = MakeRec("child", 2, 0, nullptr);
    ASSERT_TRUE(h.list.AddRowEx(2, -1, &child, pParent, true, false, false, 0x7fffffff));
    void* pChild = h.list.GetLVITEMHANDLE(1);
    Rec grand = MakeRec("grand", 3, 0, nullptr);
    ASSERT_TRUE(h.list.AddRowEx(3, -1, &grand, pChild, false, false, false, 0x7fffffff));
    EXPECT_EQ(pParent, h.list.GetParentLVITEMHANDLE(1));
    EXPECT_EQ(pChild, h.list.GetParentLVITEMHANDLE(2));
    EXPECT_TRUE(h.list.GetChildsState(1));
    EXPECT_FALSE(h.list.GetChildsState(2));
    LVITEMW lvi{};
    lvi.mask = LVIF_INDENT;
    lvi.iItem = 2;
    SendMessageW(h.hList, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
    EXPECT_EQ(2, lvi.iIndent);

    // A column inserted later is filled from each row's block; removing it closes the gap.
    int const col =
        h.list.InsertCol(1, OFF(lKey), "Key", nullptr, 40, 0, VTDT_int, nullptr, nullptr, nullptr, 9);
    EXPECT_EQ(-1, col); // no extra room was asked for
    ListHost<TestStore> g;
    ASSERT_TRUE(g.list.SetExtraColCnt(1));
    ASSERT_TRUE(DefineRecCols(g.list));
    Rec k = MakeRec("k", 5, 0, nullptr);
    k.lKey = 4242;
    ASSERT_TRUE(g.list.AddRow(1, -1, &k, false, false));
    ASSERT_EQ(1,
              g.list.InsertCol(1, OFF(lKey), "Key", nullptr, 40, 0, VTDT_int, nullptr, nullptr, nullptr, 9));
    EXPECT_EQ("4242", g.TextA(0, 1));
    EXPECT_EQ("5", g.TextA(0, 2));
    EXPECT_EQ(OFF(iQty), g.list.GetStructOffset(2));
    ASSERT_TRUE(
        g.list.UpdateCol(1, OFF(wCard), "Word", nullptr, 40, 0, VTDT_int, nullptr, nullptr, nullptr, 9));
    EXPECT_EQ("0", g.TextA(0, 1));
    ASSERT_TRUE(g.list.RemoveCol(1));
    EXPECT_EQ(OFF(iQty), g.list.GetStructOffset(1));
    EXPECT_EQ("5", g.TextA(0, 1));
}

TEST(StoreData, FilterMapsDecideWhichRecordsPass) {
    struct FilterStore : TestStore {
        using VTRBListView::GetCol;
    };
    ListHost<FilterStore> h;
    ASSERT_TRUE(DefineRecCols(h.list));
    Rec a = MakeRec("Apple", 1, 0, nullptr), b = MakeRec("apple", 2, 0, nullptr),
        c = MakeRec("Pear", 3, 0, nullptr);
    EXPECT_TRUE(h.list.IsFilterMatch(&c)); // no map at all

    VTRColFilterMap names;
    names.daTexts.Add(L"Apple");
    names.daTexts.Add(L"Banana");
    names.bCaseSensitive = true;
    h.list.GetCol(0)->pFilterInfo = &names;
    EXPECT_TRUE(h.list.IsFilterMatch(&a));
    EXPECT_FALSE(h.list.IsFilterMatch(&b));
    EXPECT_FALSE(h.list.IsFilterMatch(&c));
    names.bCaseSensitive = false;
    EXPECT_TRUE(h.list.IsFilterMatch(&b));

    // Two maps act together.
    VTRColFilterMap qty;
    qty.daTexts.Add(L"2");
    h.list.GetCol(1)->pFilterInfo = &qty;
    EXPECT_FALSE(h.list.IsFilterMatch(&a));
    EXPECT_TRUE(h.list.IsFilterMatch(&b));
    h.list.GetCol(0)->pFilterInfo = nullptr;
    h.list.GetCol(1)->pFilterInfo = nullptr;
}

namespace {

struct Ticket {
    int iNo;
    char const* pszHolder;
};

// Columns read through the stored pointer.
class TicketList : public VTRBListViewStoreDataPtr {
protected:
    bool OnGetDataHook(void* pData, int iCol, void*& pValue) override {
        Ticket* t = *static_cast<Ticket**>(pData);
        if (!t)
            return false;
        pValue = iCol == 0 ? reinterpret_cast<void*>(static_cast<intptr_t>(t->iNo))
                           : const_cast<char*>(t->pszHolder);
        return true;
    }
};

} // namespace

TEST(StoreDataPtr, BlockIsOnePointerAndColumnsReadThroughIt) {
    ListHost<TicketList> h;
    ASSERT_TRUE(h.list.DefineStructureAndCols(100, 0, "No", 1, nullptr, 40, 0, VTDT_int, //
                                              0, "Holder", 2, nullptr, 80, 0, VTDT_LPSTR, -1));
    EXPECT_EQ(sizeof(void*), h.list.GetBlockSize());
    Ticket t1{17, "Ann"}, t2{18, "Bob"};
    Ticket* p = &t1;
    ASSERT_TRUE(h.list.AddRow(1, -1, &p, false, false));
    p = &t2;
    ASSERT_TRUE(h.list.AddRow(2, -1, &p, false, false));
    p = nullptr;
    EXPECT_EQ("17", h.TextA(0, 0));
    EXPECT_EQ("Ann", h.TextA(0, 1));
    EXPECT_EQ("Bob", h.TextA(1, 1));
    void* pBlock = nullptr;
    ASSERT_TRUE(h.list.GetRowData(1, pBlock));
    EXPECT_EQ(&t2, *static_cast<Ticket**>(pBlock)); // the block, not the object
    EXPECT_EQ(2, h.list.GetUsedBlockCount());

    ListHost<VTRBListViewStoreDataPtr> plain;
    DynaArrayTpl<int, 0, 0> offsets;
    EXPECT_FALSE(plain.list.DefineStructure(offsets));
    offsets.Add(0);
    ASSERT_TRUE(plain.list.DefineStructure(offsets));
    EXPECT_EQ(sizeof(void*), plain.list.GetBlockSize());
}
