#include "DynaArray.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>

namespace {
// Page-wise growth (grow == -1) adds room for about 4 KiB of elements at a time.
constexpr int kPageBytes = 4096;
} // namespace

DynaArray::DynaArray(int elemSize, int grow, void* /*heap*/)
    : m_iElemSize(elemSize > 0 ? elemSize : 1), m_iGrow(grow) {}

DynaArray::DynaArray(DynaArray const& other) : m_iElemSize(other.m_iElemSize), m_iGrow(other.m_iGrow) {
    *this = other;
}

DynaArray::~DynaArray() {
    FreeMem();
}

bool DynaArray::AllocMem(unsigned int elemCount) {
    FreeMem();
    return ReAllocMem(elemCount, false);
}

bool DynaArray::ReAllocMem(unsigned int elemCount, bool keep) {
    if (elemCount == 0) {
        FreeMem();
        return true;
    }
    if (elemCount > 0x7FFFFFFFu / static_cast<unsigned>(m_iElemSize))
        return false;
    size_t bytes = static_cast<size_t>(elemCount) * m_iElemSize;
    void* p = keep ? std::realloc(m_pData, bytes) : std::malloc(bytes);
    if (!p)
        return false;
    if (!keep) {
        std::free(m_pData);
        m_iCount = 0;
        if (m_pKeys)
            m_pKeys->clear();
    }
    m_pData = p;
    m_iAllocCount = static_cast<int>(elemCount);
    if (m_iCount > m_iAllocCount)
        m_iCount = m_iAllocCount;
    return true;
}

void DynaArray::FreeMem() {
    std::free(m_pData);
    m_pData = nullptr;
    m_iCount = 0;
    m_iAllocCount = 0;
    delete m_pKeys;
    m_pKeys = nullptr;
}

bool DynaArray::CreateHeap() {
    return true; // the process heap serves every array
}

void DynaArray::DestroyHeap(bool freeMem) {
    if (freeMem)
        FreeMem();
}

bool DynaArray::EnsureRoom(int count) {
    if (count < 0)
        return false;
    if (count <= m_iAllocCount)
        return true;
    int room;
    if (m_iGrow > 0)
        room = m_iAllocCount + std::max(m_iGrow, count - m_iAllocCount);
    else if (m_iGrow < 0)
        room = count + std::max(1, kPageBytes / m_iElemSize);
    else
        room = std::max(count, m_iAllocCount < 8 ? 8 : m_iAllocCount * 2);
    if (room < count)
        room = count; // overflow of the doubling
    return ReAllocMem(static_cast<unsigned>(room), true);
}

void* DynaArray::Get(int index) const {
    if (static_cast<unsigned>(index) >= static_cast<unsigned>(m_iCount))
        return nullptr;
    return At(index);
}

int DynaArray::Add(void const* elem) {
    if (!EnsureRoom(m_iCount + 1))
        return -1;
    if (elem)
        std::memcpy(At(m_iCount), elem, m_iElemSize);
    else
        std::memset(At(m_iCount), 0, m_iElemSize);
    if (HasKeys())
        m_pKeys->push_back(0);
    return m_iCount++;
}

bool DynaArray::Add(DynaArray const& other) {
    if (other.m_iElemSize != m_iElemSize)
        return false;
    if (other.m_iCount == 0)
        return true;
    bool keyed = HasKeys();
    int n = other.m_iCount; // other may be *this
    if (!EnsureRoom(m_iCount + n))
        return false;
    std::memmove(At(m_iCount), other.m_pData, static_cast<size_t>(n) * m_iElemSize);
    if (keyed)
        m_pKeys->resize(m_iCount + n, 0);
    m_iCount += n;
    return true;
}

bool DynaArray::Insert(int index, void const* elem) {
    if (index < 0 || index > m_iCount)
        return false;
    bool keyed = HasKeys();
    if (!EnsureRoom(m_iCount + 1))
        return false;
    std::memmove(At(index + 1), At(index), static_cast<size_t>(m_iCount - index) * m_iElemSize);
    if (elem)
        std::memcpy(At(index), elem, m_iElemSize);
    else
        std::memset(At(index), 0, m_iElemSize);
    if (keyed)
        m_pKeys->insert(m_pKeys->begin() + index, 0);
    ++m_iCount;
    return true;
}

bool DynaArray::Update(int index, void const* elem) {
    void* p = Get(index);
    if (!p || !elem)
        return false;
    std::memmove(p, elem, m_iElemSize);
    return true;
}

bool DynaArray::Delete(int index) {
    if (!Get(index))
        return false;
    bool keyed = HasKeys();
    std::memmove(At(index), At(index + 1), static_cast<size_t>(m_iCount - index - 1) * m_iElemSize);
    if (keyed)
        m_pKeys->erase(m_pKeys->begin() + index);
    --m_iCount;
    return true;
}

bool DynaArray::Swap(int a, int b) {
    char* pa = static_cast<char*>(Get(a));
    char* pb = static_cast<char*>(Get(b));
    if (!pa || !pb)
        return false;
    if (a == b)
        return true;
    std::swap_ranges(pa, pa + m_iElemSize, pb);
    if (HasKeys())
        std::swap((*m_pKeys)[a], (*m_pKeys)[b]);
    return true;
}

bool DynaArray::Move(DynaArray& src) {
    if (&src == this)
        return true;
    if (src.m_iElemSize != m_iElemSize)
        return false;
    FreeMem();
    m_pData = src.m_pData;
    m_iCount = src.m_iCount;
    m_iAllocCount = src.m_iAllocCount;
    m_pKeys = src.m_pKeys;
    src.m_pData = nullptr;
    src.m_iCount = 0;
    src.m_iAllocCount = 0;
    src.m_pKeys = nullptr;
    return true;
}

DynaArray& DynaArray::operator=(DynaArray const& other) {
    if (&other == this)
        return *this;
    FreeMem();
    m_iElemSize = other.m_iElemSize;
    if (other.m_iCount && EnsureRoom(other.m_iCount)) {
        std::memcpy(m_pData, other.m_pData, static_cast<size_t>(other.m_iCount) * m_iElemSize);
        m_iCount = other.m_iCount;
        if (other.HasKeys())
            m_pKeys = new std::vector<unsigned long>(*other.m_pKeys);
    }
    m_bValid = other.m_bValid;
    return *this;
}

void DynaArray::Clear(bool freeMem) {
    if (freeMem) {
        FreeMem();
        return;
    }
    m_iCount = 0;
    if (m_pKeys)
        m_pKeys->clear();
}

void DynaArray::Reset(bool freeMem) {
    Clear(freeMem);
    m_bValid = false;
}

bool DynaArray::SetElemCnt(int count, char fill, bool keep) {
    if (count < 0)
        return false;
    if (!keep)
        Clear(false);
    bool keyed = HasKeys();
    if (!EnsureRoom(count))
        return false;
    if (count > m_iCount)
        std::memset(At(m_iCount), fill, static_cast<size_t>(count - m_iCount) * m_iElemSize);
    if (keyed)
        m_pKeys->resize(count, 0);
    m_iCount = count;
    return true;
}

bool DynaArray::SetMemElemCnt(int count) {
    return EnsureRoom(count);
}

int DynaArray::GetIndex(void const* elem) const {
    char const* p = static_cast<char const*>(elem);
    char const* base = static_cast<char const*>(m_pData);
    if (!p || !base || p < base || p >= base + static_cast<size_t>(m_iCount) * m_iElemSize)
        return -1;
    return static_cast<int>((p - base) / m_iElemSize);
}

int DynaArray::AddUnique(unsigned long key, void const* elem, bool replace) {
    if (!m_pKeys)
        m_pKeys = new std::vector<unsigned long>();
    if (!HasKeys())
        m_pKeys->assign(m_iCount, 0);
    auto it = std::lower_bound(m_pKeys->begin(), m_pKeys->end(), key);
    int index = static_cast<int>(it - m_pKeys->begin());
    if (it != m_pKeys->end() && *it == key) {
        if (replace && elem)
            Update(index, elem);
        return index;
    }
    if (!Insert(index, elem))
        return -1;
    (*m_pKeys)[index] = key;
    return index;
}

int DynaArray::FindIndexUnique(unsigned long key) const {
    if (!HasKeys())
        return -1;
    auto it = std::lower_bound(m_pKeys->begin(), m_pKeys->end(), key);
    if (it == m_pKeys->end() || *it != key)
        return -1;
    return static_cast<int>(it - m_pKeys->begin());
}

// Reorders elements (and their keys) so that position i receives the element at order[i].
void DynaArray::ApplyOrder(std::vector<int> const& order) {
    if (m_iCount < 2)
        return;
    size_t bytes = static_cast<size_t>(m_iCount) * m_iElemSize;
    char* sorted = static_cast<char*>(std::malloc(bytes));
    if (!sorted)
        return;
    for (int i = 0; i < m_iCount; ++i)
        std::memcpy(sorted + static_cast<size_t>(i) * m_iElemSize, At(order[i]), m_iElemSize);
    std::memcpy(m_pData, sorted, bytes);
    std::free(sorted);
    if (HasKeys()) {
        std::vector<unsigned long> keys(m_iCount);
        for (int i = 0; i < m_iCount; ++i)
            keys[i] = (*m_pKeys)[order[i]];
        m_pKeys->swap(keys);
    }
}

void DynaArray::Sort(int (*cmp)(void const*, void const*)) {
    if (!cmp || m_iCount < 2)
        return;
    std::vector<int> order(m_iCount);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return cmp(At(a), At(b)) < 0; });
    ApplyOrder(order);
}

void DynaArray::Sort(void* ctx, int (*cmp)(void*, void const*, void const*)) {
    if (!cmp || m_iCount < 2)
        return;
    std::vector<int> order(m_iCount);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return cmp(ctx, At(a), At(b)) < 0; });
    ApplyOrder(order);
}

namespace {
unsigned long FirstDWORD(void const* p) {
    unsigned int v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
void* FirstPtr(void const* p) {
    void* v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
} // namespace

void DynaArray::SortFirstIsDWORD() {
    if (m_iElemSize < 4 || m_iCount < 2)
        return;
    std::vector<int> order(m_iCount);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return FirstDWORD(At(a)) < FirstDWORD(At(b)); });
    ApplyOrder(order);
}

void DynaArray::SortFirstIsPtr() {
    if (m_iElemSize < static_cast<int>(sizeof(void*)) || m_iCount < 2)
        return;
    std::vector<int> order(m_iCount);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return reinterpret_cast<uintptr_t>(FirstPtr(At(a))) < reinterpret_cast<uintptr_t>(FirstPtr(At(b)));
    });
    ApplyOrder(order);
}

void* DynaArray::BSearch(void const* key, int (*cmp)(void const*, void const*)) const {
    if (!cmp || !key || !m_iCount)
        return nullptr;
    return std::bsearch(key, m_pData, m_iCount, m_iElemSize, cmp);
}

void* DynaArray::BSearchFirstIsDWORD(unsigned long key) const {
    if (m_iElemSize < 4)
        return nullptr;
    int lo = 0, hi = m_iCount;
    while (lo < hi) {
        int mid = lo + (hi - lo) / 2;
        if (FirstDWORD(At(mid)) < (key & 0xFFFFFFFFul))
            lo = mid + 1;
        else
            hi = mid;
    }
    return (lo < m_iCount && FirstDWORD(At(lo)) == (key & 0xFFFFFFFFul)) ? At(lo) : nullptr;
}

void* DynaArray::BSearchFirstIsPtr(void* key) const {
    if (m_iElemSize < static_cast<int>(sizeof(void*)))
        return nullptr;
    auto k = reinterpret_cast<uintptr_t>(key);
    int lo = 0, hi = m_iCount;
    while (lo < hi) {
        int mid = lo + (hi - lo) / 2;
        if (reinterpret_cast<uintptr_t>(FirstPtr(At(mid))) < k)
            lo = mid + 1;
        else
            hi = mid;
    }
    return (lo < m_iCount && reinterpret_cast<uintptr_t>(FirstPtr(At(lo))) == k) ? At(lo) : nullptr;
}
