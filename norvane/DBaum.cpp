#include "DBaum.h"

#include <cstring>
#include <new>

DBaum::DBaum(int valueSize, int /*blockCount*/, CMemAllocator* /*alloc*/)
    : m_iValueSize(valueSize > 0 ? valueSize : 1) {}

DBaum::~DBaum() = default;

void* DBaum::Add(unsigned long key, void const* value, bool& existed) {
    auto k = static_cast<unsigned int>(key);
    auto it = m_Map.find(k);
    if (it != m_Map.end()) {
        existed = true;
        return it->second.get();
    }
    existed = false;
    std::unique_ptr<unsigned char[]> block(new (std::nothrow) unsigned char[m_iValueSize]);
    if (!block)
        return nullptr;
    if (value)
        std::memcpy(block.get(), value, m_iValueSize);
    else
        std::memset(block.get(), 0, m_iValueSize);
    void* stored = block.get();
    m_Map.emplace(k, std::move(block));
    return stored;
}

void* DBaum::Find(unsigned long key) const {
    auto it = m_Map.find(static_cast<unsigned int>(key));
    return it == m_Map.end() ? nullptr : it->second.get();
}

bool DBaum::Remove(unsigned long key) {
    return m_Map.erase(static_cast<unsigned int>(key)) != 0;
}

void DBaum::Clear() {
    m_Map.clear();
}
