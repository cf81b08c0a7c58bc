// Dynamic array of fixed-size elements in one contiguous block.
//
// Callers read m_pData, m_iElemSize and m_iCount directly, so they come first and stay public.
// Elements are plain bytes: the array copies them with memcpy and never runs constructors.
//
// Keyed use: AddUnique and FindIndexUnique keep a key list of their own beside the elements, sorted
// by key. Every operation that moves elements (Insert, Delete, Swap, Sort, Move, assignment) moves
// the keys with them; elements added without a key carry key 0.
#pragma once

#include "NVExport.h"

#include <cstddef>
#include <vector>

class NV_API DynaArray {
public:
    void* m_pData = nullptr; // null while empty
    int m_iElemSize = 0;     // bytes per element
    int m_iCount = 0;        // elements in use

    // Set by callers to mark an array as filled (the list of chosen export columns uses it).
    bool m_bValid = false;

    DynaArray(int elemSize, int grow = 0, void* heap = nullptr);
    DynaArray(DynaArray const& other);
    virtual ~DynaArray();

    virtual bool AllocMem(unsigned int elemCount);
    virtual bool ReAllocMem(unsigned int elemCount, bool keep);
    virtual void FreeMem();
    virtual bool CreateHeap();
    virtual void DestroyHeap(bool freeMem);

    int GetCount() const { return m_iCount; }
    int GetElemSize() const { return m_iElemSize; }
    void* GetData() const { return m_pData; }

    // Pointer to element i, or null when i is not below the count (compared unsigned).
    void* Get(int index) const;

    int Add(void const* elem);
    bool Add(DynaArray const& other);
    bool Insert(int index, void const* elem);
    bool Update(int index, void const* elem);
    bool Delete(int index);
    bool Swap(int a, int b);
    bool Move(DynaArray& src);
    DynaArray& operator=(DynaArray const& other);

    // Clear(true) also gives the memory back; Clear(false) keeps it for refilling.
    void Clear(bool freeMem = false);
    void Reset(bool freeMem = false);

    bool SetElemCnt(int count, char fill, bool keep = true);
    bool SetMemElemCnt(int count);
    int GetIndex(void const* elem) const;

    int AddUnique(unsigned long key, void const* elem, bool replace = false);
    int FindIndexUnique(unsigned long key) const;

    void Sort(int (*cmp)(void const*, void const*));
    void Sort(void* ctx, int (*cmp)(void*, void const*, void const*));
    void SortFirstIsDWORD();
    void SortFirstIsPtr();
    void* BSearch(void const* key, int (*cmp)(void const*, void const*)) const;
    void* BSearchFirstIsDWORD(unsigned long key) const;
    void* BSearchFirstIsPtr(void* key) const;

protected:
    int m_iAllocCount = 0; // elements the block has room for
    int m_iGrow = 0;       // 0: double the room; -1: grow by one page of elements; >0: by that many

private:
    std::vector<unsigned long>* m_pKeys = nullptr; // the key list of keyed use, null while unused

    bool EnsureRoom(int count);
    char* At(int index) const {
        return static_cast<char*>(m_pData) + static_cast<size_t>(index) * m_iElemSize;
    }
    void ApplyOrder(std::vector<int> const& order);
    bool HasKeys() const { return m_pKeys && static_cast<int>(m_pKeys->size()) == m_iCount; }
};

// Typed view of DynaArray: adds no field. A and B are the original's template arguments; A == -1
// asks for the page-wise growth that DynaArray's grow argument -1 gives.
template <class T, int A = 0, int B = 0> class DynaArrayTpl : public DynaArray {
public:
    DynaArrayTpl() : DynaArray(static_cast<int>(sizeof(T)), A < 0 ? -1 : 0) {}
    explicit DynaArrayTpl(int grow) : DynaArray(static_cast<int>(sizeof(T)), grow) {}

    T* Get(int index) const { return static_cast<T*>(DynaArray::Get(index)); }
    T* operator[](int index) const { return Get(index); }
    T* GetData() const { return static_cast<T*>(m_pData); }
    int Add(T const& elem) { return DynaArray::Add(&elem); }
    bool Add(DynaArray const& other) { return DynaArray::Add(other); }
    bool Insert(int index, T const& elem) { return DynaArray::Insert(index, &elem); }
    bool Update(int index, T const& elem) { return DynaArray::Update(index, &elem); }
    int AddUnique(unsigned long key, T const& elem, bool replace = false) {
        return DynaArray::AddUnique(key, &elem, replace);
    }
    T* FindUnique(unsigned long key) const { return Get(FindIndexUnique(key)); }
};
