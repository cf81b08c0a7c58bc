// Row blocks of one size, carved out of large chunks. The heap of the platform costs microseconds
// per block, which dominated filling long lists; a freed block goes on a list and is handed out
// again first. Chunks live until the pool dies, so a block stays valid memory until then.
#pragma once

#include <cstddef>
#include <vector>

class VTRRowPool {
public:
    VTRRowPool() = default;
    ~VTRRowPool();
    VTRRowPool(VTRRowPool const&) = delete;
    VTRRowPool& operator=(VTRRowPool const&) = delete;

    // A zero-filled block of the given size; a new size starts a fresh free list.
    void* Alloc(std::size_t size);
    void Free(void* block);

private:
    enum { BLOCKS_PER_CHUNK = 1024 };
    std::size_t m_size = 0;
    std::size_t m_used = BLOCKS_PER_CHUNK; // blocks handed out of the newest chunk
    std::vector<char*> m_chunks;
    std::vector<void*> m_free;
};
