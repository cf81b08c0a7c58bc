#include "DynaArrayStatPtr.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

DynaArrayStatPtr::DynaArrayStatPtr(int elemSize, int /*grow*/, bool /*ownHeap*/, void* /*heap*/)
    : m_iElemSize(elemSize > 0 ? elemSize : 1) {}

DynaArrayStatPtr::~DynaArrayStatPtr() {
    // Free is virtual, but a derived part is gone by now: release with the base's own routine.
    for (void* p : m_vItems)
        std::free(p);
}

void* DynaArrayStatPtr::Alloc(void const* elem) {
    void* p = std::malloc(m_iElemSize);
    if (!p)
        return nullptr;
    if (elem)
        std::memcpy(p, elem, m_iElemSize);
    else
        std::memset(p, 0, m_iElemSize);
    return p;
}

void* DynaArrayStatPtr::AllocMove(void const* elem) {
    return Alloc(elem);
}

void DynaArrayStatPtr::Free(void* elem) {
    std::free(elem);
}

void* DynaArrayStatPtr::Add(void const* elem) {
    void* p = Alloc(elem);
    if (!p)
        return nullptr;
    try {
        m_vItems.push_back(p);
    } catch (...) {
        Free(p);
        return nullptr;
    }
    return p;
}

void* DynaArrayStatPtr::Get(int index) {
    if (static_cast<unsigned>(index) >= m_vItems.size())
        return nullptr;
    return m_vItems[index];
}

void const* DynaArrayStatPtr::Get(int index) const {
    if (static_cast<unsigned>(index) >= m_vItems.size())
        return nullptr;
    return m_vItems[index];
}

bool DynaArrayStatPtr::Delete(int index) {
    if (static_cast<unsigned>(index) >= m_vItems.size())
        return false;
    Free(m_vItems[index]);
    m_vItems.erase(m_vItems.begin() + index);
    return true;
}

void DynaArrayStatPtr::Clear() {
    for (void* p : m_vItems)
        Free(p);
    m_vItems.clear();
}

int DynaArrayStatPtr::GetIndex(void const* elem) const {
    auto it = std::find(m_vItems.begin(), m_vItems.end(), elem);
    return it == m_vItems.end() ? -1 : static_cast<int>(it - m_vItems.begin());
}

void DynaArrayStatPtr::Sort(int (*cmp)(void const**, void const**)) {
    if (!cmp)
        return;
    std::stable_sort(m_vItems.begin(), m_vItems.end(), [cmp](void* a, void* b) {
        void const* pa = a;
        void const* pb = b;
        return cmp(&pa, &pb) < 0;
    });
}
