// Allocator of equal-sized blocks, carved out of chunks. Free blocks are kept on a list and handed
// out again before a new chunk is taken. Alloc does not clear the block. Chunks come from the heap
// handle given as heap, or else from a heap the utility library keeps for such chunks: in the
// process heap they would land between the small blocks of the controls (a list control's item
// array, grown in place only while nothing lies behind it, was copied over and over).
#pragma once

#include "NVExport.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

class CMemAllocator;

// The heap (a HANDLE) the utility library keeps for chunks of fixed-size blocks, shared by every
// allocator of long-lived row data.
NV_API void* NVGetChunkHeap();

class NV_API CFixSizeAlloc {
public:
    CFixSizeAlloc(int blockSize, bool unused1 = false, int blocksPerChunk = 32, bool unused2 = true,
                  CMemAllocator* alloc = nullptr, void* heap = nullptr);
    CFixSizeAlloc(CFixSizeAlloc const&) = delete;
    CFixSizeAlloc& operator=(CFixSizeAlloc const&) = delete;
    virtual ~CFixSizeAlloc();

    void* Alloc();
    // False for a pointer that is not a block of this allocator or that is already free.
    bool Free(void* block);
    int GetBlockSize() const { return m_iBlockSize; }
    int GetUsedCount() const { return m_iUsed; }

private:
    struct Chunk {
        unsigned char* pData;
        std::vector<bool> vUsed;
    };
    int m_iBlockSize;
    int m_iBlocksPerChunk;
    int m_iUsed = 0;
    void* m_hHeap;
    std::vector<Chunk> m_vChunks;
    std::map<std::uintptr_t, std::size_t> m_mChunkByStart; // a block is found in log time
    std::vector<void*> m_vFree;

    bool Locate(void* block, std::size_t& chunk, std::size_t& index) const;
};
