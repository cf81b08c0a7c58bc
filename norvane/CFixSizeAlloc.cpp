#include "CFixSizeAlloc.h"

#include <cstdint>
#include <cstdlib>

namespace {
// Blocks are aligned for any scalar, as malloc's are.
constexpr int kAlign = 16;
} // namespace

CFixSizeAlloc::CFixSizeAlloc(int blockSize, bool, int blocksPerChunk, bool, CMemAllocator*, void*)
    : m_iBlockSize(((blockSize > 0 ? blockSize : 1) + kAlign - 1) / kAlign * kAlign),
      m_iBlocksPerChunk(blocksPerChunk > 0 ? blocksPerChunk : 32) {}

CFixSizeAlloc::~CFixSizeAlloc() {
    for (Chunk& c : m_vChunks)
        std::free(c.pData);
}

void* CFixSizeAlloc::Alloc() {
    if (m_vFree.empty()) {
        auto* data =
            static_cast<unsigned char*>(std::malloc(static_cast<size_t>(m_iBlockSize) * m_iBlocksPerChunk));
        if (!data)
            return nullptr;
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
    auto p = reinterpret_cast<uintptr_t>(block);
    for (size_t c = 0; c < m_vChunks.size(); ++c) {
        auto start = reinterpret_cast<uintptr_t>(m_vChunks[c].pData);
        uintptr_t end = start + static_cast<uintptr_t>(m_iBlockSize) * m_iBlocksPerChunk;
        if (p >= start && p < end) {
            if ((p - start) % m_iBlockSize)
                return false;
            chunk = c;
            index = (p - start) / m_iBlockSize;
            return true;
        }
    }
    return false;
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
