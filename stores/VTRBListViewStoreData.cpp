#include "stores/VTRBListViewStoreData.h"

#include "NVLanguage.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <memory>

// The cell arguments of AddRow_VA are handed over as an array of pointer-sized slots, which is what
// a va_list is in the 64-bit Windows calling convention: every variadic argument takes one 8-byte
// slot, read back by va_arg with its own type (an int from the low half).
static_assert(sizeof(va_list) == sizeof(void*), "va_list must be a pointer to argument slots");
static_assert(sizeof(uintptr_t) == sizeof(void*), "one slot per argument");

namespace {

template <class T> T ReadField(void const* pBlock, int iOffset) {
    T value;
    memcpy(&value, static_cast<char const*>(pBlock) + iOffset, sizeof value);
    return value;
}

void* Word(uintptr_t value) {
    return reinterpret_cast<void*>(value);
}

// The argument list of one row: column count plus two slots. Lists of usual width live on the
// stack, since a heap block per row costs more than the rest of adding it.
class CellSlots {
public:
    explicit CellSlots(int iColCnt) {
        size_t const n = static_cast<size_t>(iColCnt > 0 ? iColCnt : 0) + 2;
        if (n > kLocal) {
            m_pHeap.reset(new (std::nothrow) uintptr_t[n]);
            m_pSlots = m_pHeap.get();
        }
    }
    uintptr_t* get() { return m_pSlots; }

private:
    static size_t const kLocal = 64;
    uintptr_t m_local[kLocal];
    std::unique_ptr<uintptr_t[]> m_pHeap;
    uintptr_t* m_pSlots = m_local;
};

} // namespace

VTRBListViewStoreData::VTRBListViewStoreData()
    : m_pRowAlloc(nullptr), m_iFieldCnt(0), m_piOffsets(nullptr), m_iCheckBoxOffset(-1),
      m_iStateImageOffset(-1), m_iDifferentOffset(-1), m_uStructSize(0), m_pFilterRow(nullptr) {}

VTRBListViewStoreData::~VTRBListViewStoreData() {
    // The rows go while this is still a store, so that each gives its block back.
    VTRBListView::ClearAll();
    FreeStructure();
}

void VTRBListViewStoreData::FreeStructure() {
    delete m_pRowAlloc;
    m_pRowAlloc = nullptr;
    delete[] m_piOffsets;
    m_piOffsets = nullptr;
    m_iFieldCnt = 0;
    m_uStructSize = 0;
    m_iCheckBoxOffset = -1;
    m_iStateImageOffset = -1;
    m_iDifferentOffset = -1;
    free(m_pFilterRow);
    m_pFilterRow = nullptr;
}

void VTRBListViewStoreData::Reset() {
    VTRBListView::Reset();
    FreeStructure();
}

void VTRBListViewStoreData::UnAssign() {
    VTRBListView::UnAssign();
    FreeStructure();
}

unsigned int VTRBListViewStoreData::GetBlockSize() const {
    return m_uStructSize;
}

int VTRBListViewStoreData::GetUsedBlockCount() const {
    return m_pRowAlloc ? m_pRowAlloc->GetUsedCount() : 0;
}

// ---------------------------------------------------------------- definition

bool VTRBListViewStoreData::DefineStructure(unsigned int uSize, DynaArrayTpl<int, 0, 0>& daOffsets) {
    if (m_pRowAlloc || uSize == 0 || uSize > 0x7fffffff || daOffsets.GetCount() <= 0)
        return false;
    int const iRoom = daOffsets.GetCount() + (m_iExtraColCnt > 0 ? m_iExtraColCnt : 0);
    int* piOffsets = new (std::nothrow) int[static_cast<size_t>(iRoom)];
    if (!piOffsets)
        return false;
    // Chunks of up to 256 records (a store is meant for long lists), but not much over 64 KB: a
    // record of thousands of fields would otherwise take megabytes for the first row.
    int const iPerChunk = static_cast<int>(std::clamp(65536u / uSize, 8u, 256u));
    CFixSizeAlloc* pAlloc = new (std::nothrow) CFixSizeAlloc(static_cast<int>(uSize), false, iPerChunk);
    if (!pAlloc) {
        delete[] piOffsets;
        return false;
    }
    for (int i = 0; i < iRoom; ++i)
        piOffsets[i] = i < daOffsets.GetCount() ? *daOffsets.Get(i) : -1;
    m_piOffsets = piOffsets;
    m_pRowAlloc = pAlloc;
    m_iFieldCnt = daOffsets.GetCount();
    m_uStructSize = uSize;
    return true;
}

bool VTRBListViewStoreData::DefineStructure_VA(unsigned int uSize, int iOffset0, va_list args) {
    DynaArrayTpl<int, 0, 0> daOffsets;
    for (int iOffset = iOffset0; iOffset >= 0; iOffset = va_arg(args, int))
        daOffsets.Add(iOffset);
    return DefineStructure(uSize, daOffsets);
}

bool VTRBListViewStoreData::DefineStructure(unsigned int uSize, int iOffset0, ...) {
    va_list args;
    va_start(args, iOffset0);
    bool const ok = DefineStructure_VA(uSize, iOffset0, args);
    va_end(args);
    return ok;
}

bool VTRBListViewStoreData::DefineStructureAndCols_VA(unsigned int uSize, int iOffset, char const* pszTitle,
                                                      unsigned long ulColID, char const* pszSample,
                                                      int iWidth, int iFormat, VTRBDataType eType,
                                                      va_list args) {
    DynaArrayTpl<int, 0, 0> daOffsets;
    DynaArrayTpl<VTRBListViewCol, 0, 0> daCols;
    while (iOffset >= 0) {
        VTRBListViewCol col{};
        col.lpszTitle = pszTitle;
        col.lpszSample = pszSample;
        col.iWidth = iWidth;
        col.dwFlags = static_cast<unsigned long>(iFormat);
        col.eType = eType;
        col.dwColFlags = (static_cast<unsigned long>(iFormat) >> 15) & 30;
        col.dwID = ulColID;
        void* extra[3] = {nullptr, nullptr, nullptr};
        int const iExtra = GetExtraArgCnt(eType);
        for (int i = 0; i < iExtra; ++i) {
            // A flag mask is a 32-bit value in its slot; every other extra argument a pointer.
            void* value = eType == VTDT_FLAG ? Word(va_arg(args, unsigned int)) : va_arg(args, void*);
            if (i < 3)
                extra[i] = value;
        }
        col.pExtra1 = extra[0];
        col.pExtra2 = extra[1];
        col.pExtra3 = extra[2];
        // A skipped column makes no list column, so it takes no offset either: offsets stay aligned
        // with the columns that exist.
        if (!(col.dwFlags & VTR_COLFMT_SKIP)) {
            daOffsets.Add(iOffset);
            daCols.Add(col);
        }
        iOffset = va_arg(args, int);
        if (iOffset < 0)
            break;
        pszTitle = va_arg(args, char const*);
        ulColID = va_arg(args, unsigned long);
        pszSample = va_arg(args, char const*);
        iWidth = va_arg(args, int);
        iFormat = va_arg(args, int);
        eType = static_cast<VTRBDataType>(va_arg(args, int));
    }
    if (!DefineStructure(uSize, daOffsets))
        return false;
    if (!VTRBListView::DefineCols(daCols)) {
        FreeStructure();
        return false;
    }
    return true;
}

bool VTRBListViewStoreData::DefineStructureAndCols(unsigned int uSize, int iOffset, char const* pszTitle,
                                                   unsigned long ulColID, char const* pszSample, int iWidth,
                                                   int iFormat, VTRBDataType eType, ...) {
    va_list args;
    va_start(args, eType);
    bool const ok =
        DefineStructureAndCols_VA(uSize, iOffset, pszTitle, ulColID, pszSample, iWidth, iFormat, eType, args);
    va_end(args);
    return ok;
}

bool VTRBListViewStoreData::DefineCols(char const* pszTitle, unsigned long ulColID, char const* pszSample,
                                       int iWidth, int iFormat, VTRBDataType eType, ...) {
    if (!m_pRowAlloc)
        return false;
    // The base reads the same tuples; it has no va_list form, so the tuples are read here once.
    DynaArrayTpl<VTRBListViewCol, 0, 0> daCols;
    va_list args;
    va_start(args, eType);
    while (pszTitle) {
        VTRBListViewCol col{};
        col.lpszTitle = pszTitle;
        col.lpszSample = pszSample;
        col.iWidth = iWidth;
        col.dwFlags = static_cast<unsigned long>(iFormat);
        col.eType = eType;
        col.dwColFlags = (static_cast<unsigned long>(iFormat) >> 15) & 30;
        col.dwID = ulColID;
        void* extra[3] = {nullptr, nullptr, nullptr};
        int const iExtra = GetExtraArgCnt(eType);
        for (int i = 0; i < iExtra && i < 3; ++i)
            extra[i] = eType == VTDT_FLAG ? Word(va_arg(args, unsigned int)) : va_arg(args, void*);
        col.pExtra1 = extra[0];
        col.pExtra2 = extra[1];
        col.pExtra3 = extra[2];
        daCols.Add(col);
        pszTitle = va_arg(args, char const*);
        if (!pszTitle)
            break;
        ulColID = va_arg(args, unsigned long);
        pszSample = va_arg(args, char const*);
        iWidth = va_arg(args, int);
        iFormat = va_arg(args, int);
        eType = static_cast<VTRBDataType>(va_arg(args, int));
    }
    va_end(args);
    return VTRBListView::DefineCols(daCols);
}

bool VTRBListViewStoreData::DefineCols(DynaArrayTpl<VTRBListViewCol, 0, 0>& daCols) {
    return m_pRowAlloc && VTRBListView::DefineCols(daCols);
}

// ---------------------------------------------------------------- hooks

void* VTRBListViewStoreData::OnAllocRowData() {
    return m_pRowAlloc ? m_pRowAlloc->Alloc() : nullptr;
}

bool VTRBListViewStoreData::OnFreeRowData(void* pData) {
    return m_pRowAlloc && pData && m_pRowAlloc->Free(pData);
}

void* VTRBListViewStoreData::OnDuplicateRowData(void const* pSrc) {
    void* pDst = OnAllocRowData();
    if (pDst && pSrc)
        OnCopyRowData(pSrc, pDst);
    return pDst;
}

void VTRBListViewStoreData::OnCopyRowData(void const* pSrc, void* pDst) {
    if (pSrc && pDst && pSrc != pDst && m_pRowAlloc)
        memcpy(pDst, pSrc, m_uStructSize);
}

void VTRBListViewStoreData::OnDeleteRowData(void* pData) {
    OnFreeRowData(pData);
}

bool VTRBListViewStoreData::OnGetDataHook(void*, int, void*&) {
    return false;
}

void* VTRBListViewStoreData::GetData(void* pData, int iCol) {
    if (!pData || iCol < 0 || iCol >= m_iFieldCnt || iCol >= m_iColCnt || !m_piOffsets || !m_pCols)
        return nullptr;
    void* pValue = nullptr;
    if (OnGetDataHook(pData, iCol, pValue))
        return pValue;
    int const iOffset = m_piOffsets[iCol];
    if (iOffset < 0)
        return nullptr;
    char* pField = static_cast<char*>(pData) + iOffset;
    switch (m_pCols[iCol].eType) {
    case VTDT_STRING:
    case VTDT_DOUBLE:
    case VTDT_SYSTEMTIME:
    case VTDT_CALLBACK_PTR:
    case VTDT_WSTRING:
    case VTDT_QWORD:
    case VTDT_CHECKBOX:
        return pField;
    case VTDT_LPSTR:
    case VTDT_LPINT:
    case VTDT_LPDWORD:
    case VTDT_LPTIME_T:
    case VTDT_LPDOUBLE:
    case VTDT_LPCARD_DATE:
    case VTDT_LPint32_CUSTOM:
    case VTDT_CALLBACK:
    case VTDT_LPSYSTEMTIME:
    case VTDT_LPWSTR:
        return ReadField<void*>(pData, iOffset);
    case VTDT_int:
    case VTDT_TIME_T:
    case VTDT_int32_CUSTOM:
        return reinterpret_cast<void*>(static_cast<intptr_t>(ReadField<int32_t>(pData, iOffset)));
    case VTDT_DWORD:
    case VTDT_DWORD_NOT_NULL:
    case VTDT_FLAG:
        return Word(ReadField<uint32_t>(pData, iOffset));
    case VTDT_CARD_DATE:
    case VTDT_WORD:
        return Word(ReadField<uint16_t>(pData, iOffset));
    case VTDT_bool:
        return Word(ReadField<uint8_t>(pData, iOffset));
    default:
        return nullptr;
    }
}

int VTRBListViewStoreData::GetFieldSize(int) {
    return 0;
}

bool VTRBListViewStoreData::PrepareCSVStruct(int, char const*, void*, LPARAM& lParam) {
    lParam = 0;
    return true;
}

bool VTRBListViewStoreData::OnGetAllRows(DynaArrayTpl<void*, 0, 0>&) {
    return false;
}

bool VTRBListViewStoreData::OnGetlParamAndImage(int, LPARAM&, int&) {
    return false;
}

void VTRBListViewStoreData::RowDelete(int item, Row* pRow) {
    // The base frees the Row, so its block is taken first.
    void* pBlock = pRow ? pRow->pData : nullptr;
    VTRBListView::RowDelete(item, pRow);
    if (pBlock && m_pRowAlloc)
        OnDeleteRowData(pBlock);
}

// ---------------------------------------------------------------- rows

void VTRBListViewStoreData::FillCellSlots(void* pBlock, uintptr_t* slots) {
    int n = 0;
    if (m_iCheckBoxOffset >= 0)
        slots[n++] = pBlock ? reinterpret_cast<uintptr_t>(static_cast<char*>(pBlock) + m_iCheckBoxOffset) : 0;
    for (int iCol = 0; iCol < m_iColCnt; ++iCol)
        slots[n++] = reinterpret_cast<uintptr_t>(GetData(pBlock, iCol));
    slots[n] = 0;
}

bool VTRBListViewStoreData::AddRow(LPARAM lParam, int iImage, void* pData, bool bResort, bool bSumRow) {
    return AddRowEx(lParam, iImage, pData, nullptr, false, bResort, bSumRow, 0x7fffffff);
}

bool VTRBListViewStoreData::AddRowEx(LPARAM lParam, int iImage, void* pData, void* pParent, bool bHasChilds,
                                     bool bResort, bool bSumRow, int iPos) {
    if (!m_pRowAlloc)
        return false;
    void* pBlock = nullptr;
    if (pData) {
        pBlock = OnDuplicateRowData(pData);
        if (!pBlock)
            return false;
    }
    CellSlots slots(m_iColCnt);
    if (!slots.get()) {
        if (pBlock)
            OnDeleteRowData(pBlock);
        return false;
    }
    FillCellSlots(pBlock, slots.get());
    unsigned long dwFlags = 0;
    if (m_iCheckBoxOffset >= 0)
        dwFlags |= VTR_ROW_CHECKPTR;
    if (bSumRow)
        dwFlags |= VTR_ROW_SUM | VTR_ROW_BOLD;
    if (!AddRow_VA(lParam, iImage, Word(slots.get()[0]), reinterpret_cast<va_list>(slots.get() + 1), dwFlags,
                   iPos)) {
        if (pBlock)
            OnDeleteRowData(pBlock);
        return false;
    }
    Row* pRow = m_pLastAddedRow;
    if (!pRow)
        return false;
    pRow->pData = pBlock;
    if (pParent) {
        pRow->pParent = static_cast<Row*>(pParent);
        int iDepth = 0;
        for (Row* p = pRow->pParent; p; p = p->pParent)
            ++iDepth;
        if (m_bTreeIndent) {
            LVITEMW lvi{};
            lvi.mask = LVIF_INDENT;
            lvi.iItem = m_iLastAddedItem;
            lvi.iIndent = iDepth;
            SendMessageW(m_hWnd, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&lvi));
        }
    }
    if (bHasChilds)
        pRow->dwFlags |= VTR_ROW_HASCHILDS;
    if (bResort)
        Resort(false);
    return true;
}

bool VTRBListViewStoreData::AddArray(DynaArray const& daRows, int iKeyOffset, bool bAppend) {
    if (!m_pRowAlloc || !m_hWnd || static_cast<unsigned int>(daRows.GetElemSize()) != m_uStructSize)
        return false;
    SendMessageW(m_hWnd, WM_SETREDRAW, FALSE, 0);
    if (!bAppend)
        ClearAll();
    bool ok = true;
    for (int i = 0; i < daRows.GetCount() && ok; ++i) {
        void* pElem = daRows.Get(i);
        LPARAM const lParam = iKeyOffset < 0 ? i : ReadField<long>(pElem, iKeyOffset);
        ok = AddRowEx(lParam, -1, pElem, nullptr, false, false, false, 0x7fffffff);
    }
    Resort(false);
    SendMessageW(m_hWnd, WM_SETREDRAW, TRUE, 0);
    return ok;
}

bool VTRBListViewStoreData::GetArray(DynaArray& daRows, bool bAppend) {
    if (!m_pRowAlloc || static_cast<unsigned int>(daRows.GetElemSize()) != m_uStructSize)
        return false;
    if (!bAppend)
        daRows.Clear();
    int const count = GetItemCount();
    for (int i = 0; i < count; ++i) {
        Row* pRow = GetRow(i);
        if (!pRow || !pRow->pData)
            break;
        if (daRows.Add(pRow->pData) < 0)
            return false;
    }
    return true;
}

bool VTRBListViewStoreData::UpdateCells(int iRow, LPARAM lParam, int iImage, void* pBlock) {
    Row* pRow = GetRow(iRow);
    if (!pRow)
        return false;
    CellSlots slots(m_iColCnt);
    if (!slots.get())
        return false;
    // The list reads a leading check box address only from rows that carry one.
    int const iSaved = m_iCheckBoxOffset;
    if (!(pRow->dwFlags & VTR_ROW_CHECKPTR))
        m_iCheckBoxOffset = -1;
    FillCellSlots(pBlock, slots.get());
    m_iCheckBoxOffset = iSaved;
    return UpdateRow_VA(iRow, lParam, iImage, Word(slots.get()[0]),
                        reinterpret_cast<va_list>(slots.get() + 1));
}

bool VTRBListViewStoreData::UpdateRow(int iRow, LPARAM lParam, int iImage, void* pData, bool bResort) {
    Row* pRow = GetRow(iRow);
    if (!pRow || !m_pRowAlloc)
        return false;
    if (pData) {
        if (!pRow->pData) {
            void* pBlock = OnDuplicateRowData(pData);
            if (!pBlock)
                return false;
            pRow->pData = pBlock;
        } else if (pData != pRow->pData) {
            OnCopyRowData(pData, pRow->pData);
        }
    } else if (pRow->pData) {
        OnDeleteRowData(pRow->pData);
        pRow->pData = nullptr;
        pRow->pbCheck = nullptr;
    }
    bool const ok = UpdateCells(iRow, lParam, iImage, pRow->pData);
    if (bResort)
        Resort(false);
    RefreshRow(iRow);
    return ok;
}

bool VTRBListViewStoreData::GetRowData(int iRow, void*& pData) {
    Row* pRow = GetRow(iRow);
    pData = pRow ? pRow->pData : nullptr;
    return pData != nullptr;
}

void* VTRBListViewStoreData::GetCurSelRowData(int* piRow) {
    LPARAM lParam = 0;
    int iRow = -1;
    if (!GetCurSel(lParam, iRow))
        return nullptr;
    if (piRow)
        *piRow = iRow;
    void* pData = nullptr;
    GetRowData(iRow, pData);
    return pData;
}

void* VTRBListViewStoreData::GetCurFocusSelRowData(int* piRow) {
    LPARAM lParam = 0;
    int iRow = -1;
    if (!GetCurFocusSel(lParam, iRow))
        return nullptr;
    if (piRow)
        *piRow = iRow;
    void* pData = nullptr;
    GetRowData(iRow, pData);
    return pData;
}

char* VTRBListViewStoreData::GetCellText(int iRow, int iCol) {
    void* pData = nullptr;
    if (iCol < 0 || iCol >= m_iFieldCnt || iCol >= m_iColCnt || !GetRowData(iRow, pData))
        return nullptr;
    VTRBDataType const eType = m_pCols[iCol].eType;
    if (eType != VTDT_STRING && eType != VTDT_LPSTR)
        return nullptr;
    return static_cast<char*>(GetData(pData, iCol));
}

wchar_t* VTRBListViewStoreData::GetCellTextUC(int iRow, int iCol) {
    void* pData = nullptr;
    if (iCol < 0 || iCol >= m_iFieldCnt || iCol >= m_iColCnt || !GetRowData(iRow, pData))
        return nullptr;
    VTRBDataType const eType = m_pCols[iCol].eType;
    if (eType != VTDT_WSTRING && eType != VTDT_LPWSTR)
        return nullptr;
    return static_cast<wchar_t*>(GetData(pData, iCol));
}

void VTRBListViewStoreData::SetCellText(int iRow, int iCol, char* pszText) {
    Row* pRow = GetRow(iRow);
    if (!pRow || !pRow->pData)
        return;
    char const* pszSrc = pszText ? pszText : "";
    if (iCol >= 0 && iCol < m_iFieldCnt && iCol < m_iColCnt) {
        void* pField = GetData(pRow->pData, iCol);
        switch (m_pCols[iCol].eType) {
        case VTDT_STRING:
        case VTDT_LPSTR:
            if (pField)
                strcpy(static_cast<char*>(pField), pszSrc);
            break;
        case VTDT_WSTRING:
        case VTDT_LPWSTR:
            if (pField) {
                UINT const cp = static_cast<UINT>(NVGetCurCodePage());
                int const n = MultiByteToWideChar(cp, 0, pszSrc, -1, nullptr, 0);
                if (n > 0)
                    MultiByteToWideChar(cp, 0, pszSrc, -1, static_cast<wchar_t*>(pField), n);
            }
            break;
        default:
            break;
        }
    }
    UpdateRow(iRow, pRow->lParam, -1, pRow->pData, false);
}

bool VTRBListViewStoreData::ReadColData(void* pBlock, int iCol, VTRItemData& data) {
    if (!pBlock || iCol < 0 || iCol >= m_iFieldCnt || iCol >= m_iColCnt)
        return false;
    memset(&data, 0, sizeof data);
    data.eType = m_pCols[iCol].eType;
    void* pValue = GetData(pBlock, iCol);
    uintptr_t const word = reinterpret_cast<uintptr_t>(pValue);
    switch (data.eType) {
    case VTDT_LPINT:
    case VTDT_LPDWORD:
    case VTDT_LPTIME_T:
    case VTDT_LPint32_CUSTOM:
        data.dwValue = pValue ? *static_cast<DWORD*>(pValue) : 0;
        break;
    case VTDT_DOUBLE:
    case VTDT_LPDOUBLE:
        data.dValue = pValue ? *static_cast<double*>(pValue) : 0.0;
        break;
    case VTDT_CARD_DATE:
    case VTDT_WORD:
        data.wValue = static_cast<WORD>(word);
        break;
    case VTDT_LPCARD_DATE:
        data.wValue = pValue ? *static_cast<WORD*>(pValue) : 0;
        break;
    case VTDT_SYSTEMTIME:
    case VTDT_LPSYSTEMTIME:
        if (pValue)
            memcpy(&data.stValue, pValue, sizeof data.stValue);
        break;
    case VTDT_CHECKBOX:
        data.byValue = pValue ? *static_cast<BYTE*>(pValue) : 0;
        break;
    case VTDT_bool:
        data.byValue = static_cast<BYTE>(word);
        break;
    case VTDT_QWORD:
        data.ullValue = pValue ? *static_cast<unsigned __int64*>(pValue) : 0;
        break;
    case VTDT_FLAG:
        data.byValue = (word & reinterpret_cast<uintptr_t>(m_pCols[iCol].pExtra1)) != 0 ? 1 : 0;
        break;
    default:
        data.pValue = pValue;
        break;
    }
    return true;
}

bool VTRBListViewStoreData::GetColData(int iRow, int iCol, VTRItemData& data) {
    void* pData = nullptr;
    if (!GetRowData(iRow, pData))
        return false;
    return ReadColData(pData, iCol, data);
}

int VTRBListViewStoreData::GetStructOffset(int iCol) {
    if (!m_piOffsets || iCol < 0 || iCol >= m_iFieldCnt)
        return -1;
    return m_piOffsets[iCol];
}

// ---------------------------------------------------------------- columns

void VTRBListViewStoreData::RefillCol(int iCol) {
    for (int i = GetItemCount() - 1; i >= 0; --i) {
        Row* pRow = GetRow(i);
        if (pRow)
            SetData(pRow, iCol, GetData(pRow->pData, iCol));
    }
}

int VTRBListViewStoreData::InsertCol(int iCol, int iOffset, char const* pszTitle, char const* pszSample,
                                     int iWidth, int iFormat, VTRBDataType eType, void* pExtra1,
                                     void* pExtra2, void* pExtra3, unsigned long ulColID) {
    if (!m_pRowAlloc || !m_piOffsets || m_iFieldCnt != m_iColCnt)
        return -1;
    int const iNew = VTRBListView::InsertCol(iCol, pszTitle, pszSample, iWidth, iFormat, eType, pExtra1,
                                             pExtra2, pExtra3, ulColID);
    if (iNew < 0)
        return -1;
    // The offsets have room for the extra columns, the same room the list has for columns.
    memmove(&m_piOffsets[iNew + 1], &m_piOffsets[iNew],
            sizeof(int) * static_cast<size_t>(m_iFieldCnt - iNew));
    m_piOffsets[iNew] = iOffset;
    m_iFieldCnt = m_iColCnt;
    RefillCol(iNew);
    return iNew;
}

bool VTRBListViewStoreData::UpdateCol(int iCol, int iOffset, char const* pszTitle, char const* pszSample,
                                      int iWidth, int iFormat, VTRBDataType eType, void* pExtra1,
                                      void* pExtra2, void* pExtra3, unsigned long ulColID) {
    if (!m_piOffsets || iCol < 0 || iCol >= m_iFieldCnt)
        return false;
    if (!VTRBListView::UpdateCol(iCol, pszTitle, pszSample, iWidth, iFormat, eType, pExtra1, pExtra2, pExtra3,
                                 ulColID))
        return false;
    m_piOffsets[iCol] = iOffset;
    RefillCol(iCol);
    InvalidateRect(m_hWnd, nullptr, TRUE);
    return true;
}

bool VTRBListViewStoreData::RemoveCol(int iCol) {
    if (!VTRBListView::RemoveCol(iCol))
        return false;
    if (m_piOffsets && iCol < m_iFieldCnt) {
        memmove(&m_piOffsets[iCol], &m_piOffsets[iCol + 1],
                sizeof(int) * static_cast<size_t>(m_iFieldCnt - iCol - 1));
        --m_iFieldCnt;
    }
    return true;
}

// ---------------------------------------------------------------- change marking

bool VTRBListViewStoreData::SetCheckBoxBoolOffset(int iOffset, bool bShowCheckBoxes) {
    if (iOffset < 0)
        iOffset = -1;
    if (iOffset != m_iCheckBoxOffset) {
        m_iCheckBoxOffset = iOffset;
        for (int i = GetItemCount() - 1; i >= 0; --i) {
            Row* pRow = GetRow(i);
            if (!pRow)
                continue;
            if (iOffset >= 0) {
                pRow->pbCheck = pRow->pData
                                    ? reinterpret_cast<bool*>(static_cast<char*>(pRow->pData) + iOffset)
                                    : nullptr;
                pRow->dwFlags |= VTR_ROW_CHECKPTR;
            } else {
                pRow->pbCheck = nullptr;
                pRow->dwFlags &= ~VTR_ROW_CHECKPTR;
            }
        }
    }
    m_bCheckBoxes = iOffset >= 0 && bShowCheckBoxes;
    if (m_hWnd)
        SendMessageW(m_hWnd, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES,
                     m_bCheckBoxes ? LVS_EX_CHECKBOXES : 0);
    return true;
}

bool VTRBListViewStoreData::SetStateImageIntOffset(HIMAGELIST hImages, int iOffset) {
    m_iStateImageOffset = iOffset < 0 ? -1 : iOffset;
    if (!m_hWnd)
        return false;
    SendMessageW(m_hWnd, LVM_SETIMAGELIST, LVSIL_STATE,
                 reinterpret_cast<LPARAM>(m_iStateImageOffset >= 0 ? hImages : nullptr));
    return true;
}

bool VTRBListViewStoreData::SetDifferentColsOffset(int iOffset) {
    m_iDifferentOffset = iOffset < 0 ? -1 : iOffset;
    return true;
}

bool VTRBListViewStoreData::IsDifferent(Row* pRow, int, int iCol) {
    if (m_iDifferentOffset < 0 || !pRow || !pRow->pData)
        return false;
    unsigned __int64 const ullMask = ReadField<unsigned __int64>(pRow->pData, m_iDifferentOffset);
    if (iCol < 0)
        return ullMask != 0;
    return iCol < 64 && (ullMask & (1ull << iCol)) != 0;
}

bool VTRBListViewStoreData::CheckDifferent(void* pData1, void* pData2, unsigned __int64& ullDiff) {
    int const cols = m_iFieldCnt < m_iColCnt ? m_iFieldCnt : m_iColCnt;
    for (int iCol = 0; iCol < cols; ++iCol) {
        unsigned __int64 const bit = iCol < 64 ? (1ull << iCol) : 0;
        if (bit && (ullDiff & bit))
            continue;
        VTRItemData a, b;
        if (!ReadColData(pData1, iCol, a) || !ReadColData(pData2, iCol, b))
            return false;
        bool bDiffers = false;
        switch (a.eType) {
        case VTDT_STRING:
        case VTDT_LPSTR:
            bDiffers = (!a.pValue != !b.pValue) ||
                       (a.pValue && strcmp(static_cast<char*>(a.pValue), static_cast<char*>(b.pValue)) != 0);
            break;
        case VTDT_WSTRING:
        case VTDT_LPWSTR:
            bDiffers = (!a.pValue != !b.pValue) || (a.pValue && wcscmp(static_cast<wchar_t*>(a.pValue),
                                                                       static_cast<wchar_t*>(b.pValue)) != 0);
            break;
        case VTDT_int:
        case VTDT_LPINT:
        case VTDT_TIME_T:
        case VTDT_LPTIME_T:
        case VTDT_int32_CUSTOM:
        case VTDT_LPint32_CUSTOM:
        case VTDT_DWORD:
        case VTDT_LPDWORD:
        case VTDT_DWORD_NOT_NULL:
        case VTDT_WORD:
            bDiffers = a.dwValue != b.dwValue;
            break;
        case VTDT_CALLBACK:
        case VTDT_CALLBACK_PTR:
            bDiffers = a.pValue != b.pValue;
            break;
        case VTDT_DOUBLE:
        case VTDT_LPDOUBLE:
            bDiffers = a.dValue != b.dValue;
            break;
        case VTDT_CARD_DATE:
        case VTDT_LPCARD_DATE:
            bDiffers = a.wValue != b.wValue;
            break;
        case VTDT_SYSTEMTIME:
        case VTDT_LPSYSTEMTIME:
            bDiffers = memcmp(&a.stValue, &b.stValue, sizeof a.stValue) != 0;
            break;
        case VTDT_CHECKBOX:
            bDiffers = a.byValue != b.byValue;
            break;
        case VTDT_QWORD:
            bDiffers = a.ullValue != b.ullValue;
            break;
        case VTDT_FLAG: {
            uintptr_t const mask = reinterpret_cast<uintptr_t>(m_pCols[iCol].pExtra1);
            bDiffers = (reinterpret_cast<uintptr_t>(GetData(pData1, iCol)) & mask) !=
                       (reinterpret_cast<uintptr_t>(GetData(pData2, iCol)) & mask);
            break;
        }
        case VTDT_bool:
            bDiffers = (a.byValue != 0) != (b.byValue != 0);
            break;
        default:
            break;
        }
        if (bDiffers)
            ullDiff |= bit;
    }
    return true;
}

// ---------------------------------------------------------------- filter

bool VTRBListViewStoreData::IsFilterMatch(void* pData) {
    if (!m_pCols || m_iColCnt <= 0)
        return true;
    for (int iCol = 0; iCol < m_iColCnt; ++iCol) {
        auto const* pMap = static_cast<VTRColFilterMap const*>(m_pCols[iCol].pFilterInfo);
        if (!pMap)
            continue;
        if (!m_pFilterRow) {
            m_pFilterRow = static_cast<Row*>(calloc(1, GetRowSize()));
            if (!m_pFilterRow)
                return true;
        }
        m_pFilterRow->pData = pData;
        SetData(m_pFilterRow, iCol, GetData(pData, iCol));
        wchar_t const* pszText = nullptr;
        m_wszText[0] = 0;
        if (OnGetCellText(pData, iCol, m_wszText, 1024))
            pszText = m_wszText;
        else
            pszText = GetDataText(m_pFilterRow, -2, iCol, false);
        if (!pszText)
            continue;
        int lo = 0, hi = pMap->daTexts.GetCount() - 1;
        bool bFound = false;
        while (lo <= hi && !bFound) {
            int const mid = (lo + hi) / 2;
            wchar_t const* pszEntry = *pMap->daTexts.Get(mid);
            int const cmp = pMap->bCaseSensitive ? wcscmp(pszText, pszEntry) : lstrcmpiW(pszText, pszEntry);
            if (cmp == 0)
                bFound = true;
            else if (cmp < 0)
                hi = mid - 1;
            else
                lo = mid + 1;
        }
        if (!bFound)
            return false;
    }
    return true;
}

// ---------------------------------------------------------------- pointer store

VTRBListViewStoreDataPtr::VTRBListViewStoreDataPtr() = default;
VTRBListViewStoreDataPtr::~VTRBListViewStoreDataPtr() = default;

bool VTRBListViewStoreDataPtr::DefineStructure(int iOffset0, ...) {
    va_list args;
    va_start(args, iOffset0);
    bool const ok = DefineStructure_VA(sizeof(void*), iOffset0, args);
    va_end(args);
    return ok;
}

bool VTRBListViewStoreDataPtr::DefineStructure(DynaArrayTpl<int, 0, 0>& daOffsets) {
    return VTRBListViewStoreData::DefineStructure(sizeof(void*), daOffsets);
}

bool VTRBListViewStoreDataPtr::DefineStructureAndCols(unsigned int, int iOffset, char const* pszTitle,
                                                      unsigned long ulColID, char const* pszSample,
                                                      int iWidth, int iFormat, VTRBDataType eType, ...) {
    va_list args;
    va_start(args, eType);
    bool const ok = DefineStructureAndCols_VA(sizeof(void*), iOffset, pszTitle, ulColID, pszSample, iWidth,
                                              iFormat, eType, args);
    va_end(args);
    return ok;
}
