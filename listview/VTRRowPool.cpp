#include "listview/VTRRowPool.h"

#include "CFixSizeAlloc.h"

#include <windows.h>

#include <cstring>

namespace {

// Each block is preceded by the size it was cut for, so that a block of an earlier size that comes
// back is never handed out again for a larger one.
std::size_t const kHeader = sizeof(std::size_t) > 8 ? sizeof(std::size_t) : 8;

std::size_t Stride(std::size_t size) {
    return kHeader + (size + 7) / 8 * 8;
}

} // namespace

VTRRowPool::~VTRRowPool() {
    Release();
}

void VTRRowPool::Release() {
    for (char* p : m_chunks)
        HeapFree(NVGetChunkHeap(), 0, p);
    m_chunks.clear();
    m_free.clear();
    m_used = BLOCKS_PER_CHUNK;
}

void* VTRRowPool::Alloc(std::size_t size) {
    if (size == 0)
        return nullptr;
    if (size != m_size) {
        // Blocks of the old size may still be in use: their chunks stay, only reuse stops.
        m_size = size;
        m_free.clear();
        m_used = BLOCKS_PER_CHUNK;
    }
    void* p;
    if (!m_free.empty()) {
        p = m_free.back();
        m_free.pop_back();
        memset(p, 0, m_size);
    } else {
        if (m_used == BLOCKS_PER_CHUNK) {
            // Chunks come from the utility library's chunk heap. The list control grows its item
            // array a few entries at a time and can only do so in place while nothing lies behind
            // it; chunks from the process heap kept landing there, and every growth copied the array.
            char* chunk = static_cast<char*>(
                HeapAlloc(NVGetChunkHeap(), HEAP_ZERO_MEMORY, BLOCKS_PER_CHUNK * Stride(m_size)));
            if (!chunk)
                return nullptr;
            m_chunks.push_back(chunk);
            m_used = 0;
        }
        char* const pBlock = m_chunks.back() + Stride(m_size) * m_used++;
        memcpy(pBlock, &m_size, sizeof m_size);
        p = pBlock + kHeader;
    }
    ++m_live;
    return p;
}

void VTRRowPool::Free(void* block) {
    if (!block || m_live == 0)
        return;
    if (--m_live == 0) {
        // The list is empty: whatever sizes the chunks were cut for, none of them is needed now.
        Release();
        return;
    }
    std::size_t size = 0;
    memcpy(&size, static_cast<char*>(block) - kHeader, sizeof size);
    if (size == m_size)
        m_free.push_back(block);
}
