#include "CFixSizeAlloc.h"
#include <windows.h>
#include "DBaum.h"
#include "DynaArray.h"
#include "DynaArrayStatPtr.h"
#include "MemStack.h"

#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

struct Seat {
    unsigned int dwKey;
    int iRow;
    char szName[12];
};

int CmpRow(void const* a, void const* b) {
    return static_cast<Seat const*>(a)->iRow - static_cast<Seat const*>(b)->iRow;
}

TEST(DynaArray, AddInsertDeleteKeepTheElementsInPlaceAndCounted) {
    DynaArrayTpl<int> arr;
    EXPECT_EQ(nullptr, arr.m_pData);
    EXPECT_EQ(static_cast<int>(sizeof(int)), arr.m_iElemSize);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(i, arr.Add(i * 3));
    EXPECT_EQ(1000, arr.m_iCount);
    EXPECT_EQ(2997, *arr.Get(999));
    EXPECT_EQ(nullptr, arr.Get(1000)) << "index equal to the count";
    EXPECT_EQ(nullptr, arr.Get(-1)) << "negative index compares unsigned";

    ASSERT_TRUE(arr.Insert(0, -1));
    ASSERT_TRUE(arr.Insert(arr.GetCount(), 5000));
    EXPECT_FALSE(arr.Insert(arr.GetCount() + 1, 1));
    EXPECT_EQ(-1, *arr.Get(0));
    EXPECT_EQ(0, *arr.Get(1));
    EXPECT_EQ(5000, *arr.Get(1001));

    ASSERT_TRUE(arr.Delete(0));
    EXPECT_FALSE(arr.Delete(5000));
    EXPECT_EQ(0, *arr.Get(0));
    ASSERT_TRUE(arr.Update(1, 77));
    EXPECT_EQ(77, *arr.Get(1));
    ASSERT_TRUE(arr.Swap(0, 1));
    EXPECT_EQ(77, *arr.Get(0));
    EXPECT_FALSE(arr.Swap(0, 5000));
    EXPECT_EQ(1, arr.GetIndex(arr.Get(1)));
    int outside = 0;
    EXPECT_EQ(-1, arr.GetIndex(&outside));

    arr.Clear(false);
    EXPECT_EQ(0, arr.GetCount());
    arr.Clear(false); // on an empty array: nothing happens
    arr.Clear(true);
    EXPECT_EQ(nullptr, arr.m_pData);
}

TEST(DynaArray, CopiesMovesAndFillsAreDeep) {
    DynaArrayTpl<Seat> a;
    Seat s{7, 3, "Loge"};
    a.Add(s);
    s.iRow = 1;
    a.Add(s);
    DynaArrayTpl<Seat> b;
    b = a;
    b.Get(0)->iRow = 99;
    EXPECT_EQ(3, a.Get(0)->iRow) << "assignment copies the bytes";

    DynaArrayTpl<Seat> c;
    ASSERT_TRUE(c.Move(b));
    EXPECT_EQ(0, b.GetCount());
    EXPECT_EQ(nullptr, b.m_pData);
    EXPECT_EQ(99, c.Get(0)->iRow);

    ASSERT_TRUE(c.Add(a));
    EXPECT_EQ(4, c.GetCount());
    ASSERT_TRUE(c.Add(c)) << "appending an array to itself";
    EXPECT_EQ(8, c.GetCount());
    DynaArrayTpl<int> ints;
    EXPECT_FALSE(c.Add(ints)) << "element sizes differ";

    DynaArrayTpl<char> bytes;
    ASSERT_TRUE(bytes.SetElemCnt(5, 'x', true));
    ASSERT_TRUE(bytes.SetElemCnt(8, 'y', true));
    EXPECT_EQ(std::string("xxxxxyyy"), std::string(bytes.GetData(), 8));
    ASSERT_TRUE(bytes.SetMemElemCnt(100));
    EXPECT_EQ(8, bytes.GetCount());
    EXPECT_FALSE(bytes.SetElemCnt(-1, 0, true));
}

TEST(DynaArray, SortsStablyAndSearches) {
    DynaArrayTpl<Seat> arr;
    unsigned int const keys[] = {40, 10, 30, 10, 20};
    for (int i = 0; i < 5; ++i) {
        Seat s{keys[i], static_cast<int>(keys[i] / 10), ""};
        std::snprintf(s.szName, sizeof s.szName, "n%d", i);
        arr.Add(s);
    }
    arr.Sort(&CmpRow);
    EXPECT_STREQ("n1", arr.Get(0)->szName);
    EXPECT_STREQ("n3", arr.Get(1)->szName) << "equal elements keep their order";
    Seat key{0, 3, ""};
    Seat* found = static_cast<Seat*>(arr.BSearch(&key, &CmpRow));
    ASSERT_NE(nullptr, found);
    EXPECT_STREQ("n2", found->szName);

    arr.Sort(nullptr, [](void*, void const* a, void const* b) { return CmpRow(b, a); });
    EXPECT_EQ(4, arr.Get(0)->iRow);

    arr.SortFirstIsDWORD();
    EXPECT_EQ(10u, arr.Get(0)->dwKey);
    EXPECT_EQ(40u, arr.Get(4)->dwKey);
    ASSERT_NE(nullptr, arr.BSearchFirstIsDWORD(30));
    EXPECT_EQ(30u, static_cast<Seat*>(arr.BSearchFirstIsDWORD(30))->dwKey);
    EXPECT_EQ(nullptr, arr.BSearchFirstIsDWORD(25));

    int a = 0, b = 0, c = 0;
    DynaArrayTpl<int*> ptrs;
    ptrs.Add(&c);
    ptrs.Add(&a);
    ptrs.Add(&b);
    ptrs.SortFirstIsPtr();
    EXPECT_LT(reinterpret_cast<uintptr_t>(*ptrs.Get(0)), reinterpret_cast<uintptr_t>(*ptrs.Get(1)));
    EXPECT_EQ(&b, *static_cast<int**>(ptrs.BSearchFirstIsPtr(&b)));
}

TEST(DynaArray, KeyedElementsAreUniqueAndFollowTheirElements) {
    DynaArrayTpl<unsigned short> langs(-1);
    EXPECT_LT(langs.FindIndexUnique(1031), 0) << "empty array";
    unsigned short const ids[] = {1045, 1031, 1033, 1031};
    for (unsigned short id : ids)
        EXPECT_GE(langs.AddUnique(id, id), 0);
    EXPECT_EQ(3, langs.GetCount()) << "the second 1031 is not added again";
    EXPECT_EQ(1031, *langs.Get(0));
    EXPECT_EQ(1045, *langs.Get(2));
    EXPECT_EQ(1, langs.FindIndexUnique(1033));
    EXPECT_LT(langs.FindIndexUnique(2048), 0);

    ASSERT_TRUE(langs.Delete(0));
    EXPECT_EQ(0, langs.FindIndexUnique(1033)) << "keys move with their elements";
    EXPECT_LT(langs.FindIndexUnique(1031), 0);
    EXPECT_EQ(1045, *langs.FindUnique(1045));
}

TEST(DynaArrayStatPtr, ElementsStayWhereTheyAreWhileTheArrayChanges) {
    DynaArrayStatPtrTpl<Seat> arr;
    std::vector<Seat*> kept;
    for (int i = 0; i < 500; ++i) {
        Seat s{static_cast<unsigned>(i), 500 - i, ""};
        kept.push_back(arr.Add(s));
    }
    EXPECT_EQ(kept[10], arr.Get(10));
    arr.Sort([](void const** a, void const** b) {
        return static_cast<Seat const*>(*a)->iRow - static_cast<Seat const*>(*b)->iRow;
    });
    EXPECT_EQ(kept[499], arr.Get(0)) << "sorting reorders pointers, not elements";
    EXPECT_EQ(1, kept[499]->iRow);
    ASSERT_TRUE(arr.Delete(0));
    EXPECT_EQ(499, arr.GetCount());
    EXPECT_EQ(2, kept[498]->iRow) << "other elements untouched";
    EXPECT_EQ(nullptr, arr.Get(499));
    EXPECT_EQ(-1, arr.GetIndex(kept[499]));
    arr.Clear();
    EXPECT_EQ(0, arr.GetCount());
}

TEST(MemStack, IsOneContiguousBlockThatGrowsAndShrinks) {
    MemStack mem(1024, -1);
    EXPECT_EQ(0, mem.m_iUsed);
    std::string expect;
    for (int i = 0; i < 3000; ++i) {
        ASSERT_TRUE(mem.Sprintf("<td>%d</td>", i));
        expect += "<td>" + std::to_string(i) + "</td>";
    }
    mem << "end";
    expect += "end";
    ASSERT_TRUE(mem.AddData(static_cast<unsigned char>('!')));
    expect += "!";
    ASSERT_EQ(static_cast<int>(expect.size()), mem.m_iUsed);
    EXPECT_EQ(expect, std::string(mem.m_pBuffer, mem.m_iUsed));

    ASSERT_TRUE(mem.SetBufferUsed(4));
    EXPECT_EQ("<td>", std::string(mem.m_pBuffer, mem.m_iUsed));
    ASSERT_TRUE(mem.SetBufferUsed(9)) << "lengthening keeps what the room holds";
    EXPECT_EQ("<td>0</td", std::string(mem.m_pBuffer, 9));
    EXPECT_FALSE(mem.SetBufferUsed(-1));

    MemStack capped(16, 32);
    EXPECT_TRUE(capped.AddData("0123456789012345678901234567890", 31));
    EXPECT_FALSE(capped.AddData("xy", 2)) << "over the maximum size";
    EXPECT_EQ(31, capped.m_iUsed);

    vtrtest::TempDir dir;
    std::string path = dir.File("out.html");
    ASSERT_TRUE(mem.MemToFile(path.c_str(), 0, nullptr, false));
    EXPECT_EQ("<td>0</td", vtrtest::ReadFileBytes(path));
    ASSERT_TRUE(mem.MemToFile(path.c_str(), 0, nullptr, true));
    EXPECT_EQ("<td>0</td<td>0</td", vtrtest::ReadFileBytes(path));
    EXPECT_FALSE(mem.MemToFile((dir.path() + "\\missing\\x.html").c_str(), 0, nullptr, false));
    mem.FreeAllPages();
    EXPECT_EQ(nullptr, mem.m_pBuffer);
}

TEST(DBaum, FindsWhatWasAddedAndKeepsValueAddresses) {
    DBaum tree(4, 128, nullptr);
    bool existed = true;
    std::vector<void*> stored;
    for (unsigned int k = 0; k < 2000; ++k) {
        unsigned int v = k * 7;
        void* p = tree.Add(k * 13 % 2000, &v, existed);
        ASSERT_NE(nullptr, p);
        EXPECT_FALSE(existed);
        stored.push_back(p);
    }
    unsigned int other = 1;
    void* again = tree.Add(13, &other, existed);
    EXPECT_TRUE(existed);
    EXPECT_EQ(stored[1], again);
    EXPECT_EQ(7u, *static_cast<unsigned int*>(again)) << "an existing value is not overwritten";
    EXPECT_EQ(stored[1], tree.Find(13));
    EXPECT_EQ(nullptr, tree.Find(5000));
    EXPECT_TRUE(tree.Remove(13));
    EXPECT_EQ(nullptr, tree.Find(13));
    EXPECT_EQ(1999, tree.GetCount());
}

TEST(CFixSizeAlloc, HandsOutDistinctBlocksAndTakesOnlyItsOwnBack) {
    CFixSizeAlloc alloc(24, false, 32, true, nullptr, nullptr);
    std::set<void*> blocks;
    for (int i = 0; i < 100; ++i) {
        void* p = alloc.Alloc();
        ASSERT_NE(nullptr, p);
        std::memset(p, i, 24); // the whole block is usable
        EXPECT_TRUE(blocks.insert(p).second) << "a block handed out twice";
    }
    EXPECT_EQ(100, alloc.GetUsedCount());
    void* first = *blocks.begin();
    EXPECT_TRUE(alloc.Free(first));
    EXPECT_FALSE(alloc.Free(first)) << "a double free is refused";
    int local = 0;
    EXPECT_FALSE(alloc.Free(&local));
    EXPECT_FALSE(alloc.Free(static_cast<char*>(*blocks.rbegin()) + 1)) << "not the start of a block";
    EXPECT_EQ(first, alloc.Alloc()) << "freed blocks are reused first";
}

namespace {
// True when the address lies inside a block of the heap that is in use.
bool InUseBlockOf(HANDLE hHeap, void const* p) {
    PROCESS_HEAP_ENTRY e{};
    bool bFound = false;
    HeapLock(hHeap);
    while (!bFound && HeapWalk(hHeap, &e)) {
        auto const* start = static_cast<char const*>(e.lpData);
        bFound = (e.wFlags & PROCESS_HEAP_ENTRY_BUSY) && p >= start && p < start + e.cbData;
    }
    HeapUnlock(hHeap);
    return bFound;
}
} // namespace

TEST(CFixSizeAlloc, ChunksComeFromTheGivenHeapOrTheLibrarysOwn) {
    HANDLE hHeap = HeapCreate(0, 0, 0);
    ASSERT_NE(nullptr, hHeap);
    {
        CFixSizeAlloc alloc(64, false, 16, true, nullptr, hHeap);
        void* p = alloc.Alloc();
        ASSERT_NE(nullptr, p);
        EXPECT_TRUE(InUseBlockOf(hHeap, p));
        EXPECT_FALSE(InUseBlockOf(GetProcessHeap(), p));
    }
    EXPECT_TRUE(HeapValidate(hHeap, 0, nullptr));
    HeapDestroy(hHeap);

    CFixSizeAlloc own(64, false, 16, true, nullptr, nullptr);
    void* p = own.Alloc();
    ASSERT_NE(nullptr, p);
    ASSERT_NE(GetProcessHeap(), NVGetChunkHeap());
    EXPECT_TRUE(InUseBlockOf(static_cast<HANDLE>(NVGetChunkHeap()), p));
    EXPECT_FALSE(InUseBlockOf(GetProcessHeap(), p)) << "the control's heap stays free of row chunks";
}

TEST(CFixSizeAlloc, FindsItsBlocksAmongManyChunksInAnyOrder) {
    CFixSizeAlloc alloc(40, false, 8, true, nullptr, nullptr);
    std::vector<void*> blocks;
    for (int i = 0; i < 5000; ++i) {
        blocks.push_back(alloc.Alloc());
        ASSERT_NE(nullptr, blocks.back());
        std::memset(blocks.back(), 0x5A, 40);
    }
    // Every other block first, from the back, then the rest from the front.
    for (size_t i = blocks.size(); i-- > 0;) {
        if (i % 2) {
            ASSERT_TRUE(alloc.Free(blocks[i])) << i;
        }
    }
    for (size_t i = 0; i < blocks.size(); i += 2) {
        EXPECT_FALSE(alloc.Free(static_cast<char*>(blocks[i]) + 8)) << "inside a used block";
        ASSERT_TRUE(alloc.Free(blocks[i])) << i;
    }
    EXPECT_EQ(0, alloc.GetUsedCount());
    EXPECT_FALSE(alloc.Free(blocks[4321])) << "already free";
    uintptr_t lowest = UINTPTR_MAX;
    for (void* p : blocks)
        lowest = std::min(lowest, reinterpret_cast<uintptr_t>(p));
    EXPECT_FALSE(alloc.Free(reinterpret_cast<void*>(lowest - 16))) << "before every chunk";
    std::set<void*> again;
    for (int i = 0; i < 5000; ++i)
        again.insert(alloc.Alloc());
    EXPECT_EQ(5000u, again.size()) << "the freed blocks serve again, each once";
    EXPECT_EQ(5000, alloc.GetUsedCount());
}

} // namespace
