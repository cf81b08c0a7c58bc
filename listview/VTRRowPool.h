// Row blocks of one size, carved out of large chunks. The heap of the platform costs microseconds
// per block, which dominated filling long lists; a freed block goes on a list and is handed out
// again first. A block stays valid memory while it is in use, also after the size changed; once
// no block is in use the chunks go back to the heap, so a list whose columns are defined again and
// again does not keep the chunks of every earlier row size.
#pragma once

#include "frame/VTRExport.h"

#include <cstddef>
#include <vector>

class VTR_API VTRRowPool {
public:
    VTRRowPool() = default;
    ~VTRRowPool();
    VTRRowPool(VTRRowPool const&) = delete;
    VTRRowPool& operator=(VTRRowPool const&) = delete;

    // A zero-filled block of the given size; a new size starts a fresh free list.
    void* Alloc(std::size_t size);
    void Free(void* block);

    std::size_t GetLiveCount() const { return m_live; }
    std::size_t GetChunkCount() const { return m_chunks.size(); }

private:
    void Release();

    enum { BLOCKS_PER_CHUNK = 1024 };
    std::size_t m_size = 0;
    std::size_t m_used = BLOCKS_PER_CHUNK; // blocks handed out of the newest chunk
    std::size_t m_live = 0;                // blocks handed out and not given back
    std::vector<char*> m_chunks;
    std::vector<void*> m_free;
};
