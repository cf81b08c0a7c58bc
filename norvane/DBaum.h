// Ordered map from a 32-bit key to a value of fixed size. Stored values keep their address until
// their key is removed or the tree is cleared.
#pragma once

#include "NVExport.h"

#include <map>
#include <memory>

class CMemAllocator; // callers always pass null; the process heap serves every tree

class NV_API DBaum {
public:
    DBaum(int valueSize, int blockCount = 128, CMemAllocator* alloc = nullptr);
    DBaum(DBaum const&) = delete;
    DBaum& operator=(DBaum const&) = delete;
    virtual ~DBaum();

    // Stores a copy of *value under key, or finds the value already there (existed true, value
    // untouched). A null value stores zero bytes. Returns the stored value, null on failure.
    void* Add(unsigned long key, void const* value, bool& existed);
    void* Find(unsigned long key) const;
    bool Remove(unsigned long key);
    void Clear();
    int GetCount() const { return static_cast<int>(m_Map.size()); }
    int GetValueSize() const { return m_iValueSize; }

private:
    int m_iValueSize;
    std::map<unsigned int, std::unique_ptr<unsigned char[]>> m_Map;
};
