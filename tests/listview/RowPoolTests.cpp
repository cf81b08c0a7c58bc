#include "listview/VTRRowPool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

bool AllZero(void const* p, size_t n) {
    unsigned char const* b = static_cast<unsigned char const*>(p);
    for (size_t i = 0; i < n; ++i)
        if (b[i])
            return false;
    return true;
}

} // namespace

TEST(RowPool, BlocksComeBackZeroedAndAnEmptyPoolGivesItsChunksBack) {
    VTRRowPool pool;
    EXPECT_EQ(nullptr, pool.Alloc(0));
    std::vector<void*> blocks;
    for (int i = 0; i < 3000; ++i) {
        void* p = pool.Alloc(40);
        ASSERT_NE(nullptr, p);
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(p) % 8) << "rows hold doubles and pointers";
        ASSERT_TRUE(AllZero(p, 40));
        memset(p, 0xAB, 40);
        blocks.push_back(p);
    }
    EXPECT_EQ(3000u, pool.GetLiveCount());
    EXPECT_EQ(3u, pool.GetChunkCount());
    pool.Free(blocks[7]);
    void* again = pool.Alloc(40);
    EXPECT_EQ(blocks[7], again) << "a freed block is handed out first";
    EXPECT_TRUE(AllZero(again, 40));
    memset(again, 0xAB, 40);
    for (void* p : blocks)
        pool.Free(p);
    EXPECT_EQ(0u, pool.GetLiveCount());
    EXPECT_EQ(0u, pool.GetChunkCount());
    pool.Free(nullptr);
    EXPECT_EQ(0u, pool.GetLiveCount());
}

TEST(RowPool, ColumnsDefinedAgainAndAgainDoNotKeepEveryOldSize) {
    VTRRowPool pool;
    // A list whose rows are all deleted before its columns change, thousands of times over.
    for (int round = 0; round < 2000; ++round) {
        size_t const size = 16 + static_cast<size_t>(round % 7) * 24;
        void* a = pool.Alloc(size);
        void* b = pool.Alloc(size);
        ASSERT_TRUE(a && b);
        pool.Free(a);
        pool.Free(b);
    }
    EXPECT_EQ(0u, pool.GetChunkCount());

    // A block of an old size that is still in use stays intact, and when it comes back it is
    // never handed out for a larger size.
    void* small = pool.Alloc(16);
    memset(small, 0x5C, 16);
    std::vector<void*> large;
    for (int i = 0; i < 1030; ++i)
        large.push_back(pool.Alloc(64));
    EXPECT_EQ(2u + 1u, pool.GetChunkCount());
    pool.Free(small);
    void* next = pool.Alloc(64);
    EXPECT_NE(small, next);
    memset(next, 0x11, 64);
    for (int i = 0; i < 1030; ++i)
        memset(large[static_cast<size_t>(i)], 0x22, 64);
    pool.Free(next);
    for (void* p : large)
        pool.Free(p);
    EXPECT_EQ(0u, pool.GetChunkCount());
}
