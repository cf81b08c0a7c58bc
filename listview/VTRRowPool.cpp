#include "listview/VTRRowPool.h"

#include <cstdlib>
#include <cstring>

VTRRowPool::~VTRRowPool() {
    for (char* p : m_chunks)
        free(p);
}

void* VTRRowPool::Alloc(std::size_t size) {
    if (size != m_size) {
        // Blocks of the old size may still be in use: their chunks stay, only reuse stops.
        m_size = size;
        m_free.clear();
        m_used = BLOCKS_PER_CHUNK;
    }
    if (!m_free.empty()) {
        void* p = m_free.back();
        m_free.pop_back();
        memset(p, 0, m_size);
        return p;
    }
    if (m_used == BLOCKS_PER_CHUNK) {
        char* chunk = static_cast<char*>(calloc(BLOCKS_PER_CHUNK, m_size));
        if (!chunk)
            return nullptr;
        m_chunks.push_back(chunk);
        m_used = 0;
    }
    return m_chunks.back() + m_size * m_used++;
}

void VTRRowPool::Free(void* block) {
    if (block)
        m_free.push_back(block);
}
