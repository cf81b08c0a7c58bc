// Allocator of equal-sized blocks, carved out of chunks. Free blocks are kept on a list and handed
// out again before a new chunk is taken. Alloc does not clear the block.
#pragma once

#include "NVExport.h"

#include <cstddef>
#include <vector>

class CMemAllocator;

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
    std::vector<Chunk> m_vChunks;
    std::vector<void*> m_vFree;

    bool Locate(void* block, std::size_t& chunk, std::size_t& index) const;
};
