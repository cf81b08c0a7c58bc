#include "CFixSizeAlloc.h"

#include <windows.h>

namespace {
// Blocks are aligned for any scalar, as malloc's are (and HeapAlloc's are on 64-bit).
constexpr int kAlign = 16;
} // namespace

void* NVGetChunkHeap() {
    static HANDLE s_hHeap = HeapCreate(0, 0, 0);
    return s_hHeap ? s_hHeap : GetProcessHeap();
}

CFixSizeAlloc::CFixSizeAlloc(int blockSize, bool, int blocksPerChunk, bool, CMemAllocator*, void* heap)
    : m_iBlockSize(((blockSize > 0 ? blockSize : 1) + kAlign - 1) / kAlign * kAlign),
      m_iBlocksPerChunk(blocksPerChunk > 0 ? blocksPerChunk : 32), m_hHeap(heap ? heap : NVGetChunkHeap()) {}

CFixSizeAlloc::~CFixSizeAlloc() {
    for (Chunk& c : m_vChunks)
        HeapFree(m_hHeap, 0, c.pData);
}

void* CFixSizeAlloc::Alloc() {
    if (m_vFree.empty()) {
        auto* data = static_cast<unsigned char*>(HeapAlloc(
            m_hHeap, 0, static_cast<size_t>(m_iBlockSize) * static_cast<size_t>(m_iBlocksPerChunk)));
        if (!data)
            return nullptr;
        m_mChunkByStart[reinterpret_cast<uintptr_t>(data)] = m_vChunks.size();
        m_vChunks.push_back(Chunk{data, std::vector<bool>(m_iBlocksPerChunk, false)});
        // Hand out the chunk from its start: push in reverse so that the lowest block is taken first.
        for (int i = m_iBlocksPerChunk - 1; i >= 0; --i)
            m_vFree.push_back(data + static_cast<size_t>(i) * m_iBlockSize);
    }
    void* block = m_vFree.back();
    m_vFree.pop_back();
    size_t chunk, index;
    Locate(block, chunk, index);
    m_vChunks[chunk].vUsed[index] = true;
    ++m_iUsed;
    return block;
}

bool CFixSizeAlloc::Locate(void* block, size_t& chunk, size_t& index) const {
    auto const p = reinterpret_cast<uintptr_t>(block);
    // The last chunk starting at or before the block is the only one that can hold it.
    auto it = m_mChunkByStart.upper_bound(p);
    if (it == m_mChunkByStart.begin())
        return false;
    --it;
    uintptr_t const start = it->first;
    uintptr_t const end =
        start + static_cast<uintptr_t>(m_iBlockSize) * static_cast<uintptr_t>(m_iBlocksPerChunk);
    if (p >= end || (p - start) % static_cast<uintptr_t>(m_iBlockSize))
        return false;
    chunk = it->second;
    index = (p - start) / static_cast<uintptr_t>(m_iBlockSize);
    return true;
}

bool CFixSizeAlloc::Free(void* block) {
    size_t chunk, index;
    if (!block || !Locate(block, chunk, index) || !m_vChunks[chunk].vUsed[index])
        return false;
    m_vChunks[chunk].vUsed[index] = false;
    m_vFree.push_back(block);
    --m_iUsed;
    return true;
}
