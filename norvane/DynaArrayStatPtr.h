// Array whose elements never move: each element has a block of its own, so callers may keep element
// pointers while the array grows, shrinks or is sorted.
#pragma once

#include "NVExport.h"

#include <vector>

class NV_API DynaArrayStatPtr {
public:
    DynaArrayStatPtr(int elemSize, int grow = -1, bool ownHeap = false, void* heap = nullptr);
    DynaArrayStatPtr(DynaArrayStatPtr const&) = delete;
    DynaArrayStatPtr& operator=(DynaArrayStatPtr const&) = delete;
    virtual ~DynaArrayStatPtr();

    // Returns the stable address of the new element (a copy of *elem, zeroed when elem is null),
    // or null when memory runs out.
    void* Add(void const* elem);
    void* Get(int index);
    void const* Get(int index) const;
    bool Delete(int index);
    void Clear();
    int GetCount() const { return static_cast<int>(m_vItems.size()); }
    int GetElemSize() const { return m_iElemSize; }
    int GetIndex(void const* elem) const;
    // Orders the element pointers; the elements themselves stay where they are.
    void Sort(int (*cmp)(void const**, void const**));

protected:
    virtual void* Alloc(void const* elem);
    virtual void* AllocMove(void const* elem);
    virtual void Free(void* elem);

private:
    int m_iElemSize;
    std::vector<void*> m_vItems;
};

template <class T, int A = -1, int B = 0> class DynaArrayStatPtrTpl : public DynaArrayStatPtr {
public:
    DynaArrayStatPtrTpl() : DynaArrayStatPtr(static_cast<int>(sizeof(T)), A) {}
    T* Add(T const& elem) { return static_cast<T*>(DynaArrayStatPtr::Add(&elem)); }
    T* Get(int index) { return static_cast<T*>(DynaArrayStatPtr::Get(index)); }
    T const* Get(int index) const { return static_cast<T const*>(DynaArrayStatPtr::Get(index)); }
    T* operator[](int index) { return Get(index); }
};
