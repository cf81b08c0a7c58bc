// The list view whose rows are copies of one client-defined record. The client describes the record
// once (block size and one byte offset per column) and from then on adds rows by handing over a
// pointer to a record; cell values are read out of the copy by offset and column type, so the
// client never fills cells by hand and may reuse its buffer at once.
//
// All copies come from one fixed-size allocator, so tens of thousands of rows cost no allocation
// per row beyond the allocator's chunks.
//
// Field widths in the record: value types keep their own width (int, DWORD, time as 32 bits, WORD
// as 16, bool as one byte); every pointer type (LPSTR, LPINT, LPDOUBLE, LPWSTR, ...) and the word of
// a VTDT_CALLBACK column is pointer-sized, 8 bytes in our 64-bit build. VTDT_CHECKBOX and
// VTDT_CALLBACK_PTR columns read the field's address.
//
// Not built here yet: the column filter's dialog (OnFilterButtonClick, OnFilterChanged); the base
// class defaults stay in force for it. IsFilterMatch already answers
// from the filter maps that the columns carry.
#pragma once

#include "listview/VTRBListView.h"

#include "CFixSizeAlloc.h"
#include "DynaArray.h"
#include "MemStack.h"

class VTRCSVLineReader;

// A column's filter: the allowed cell texts, sorted by the filter's own comparison (ordinal by
// 16-bit units when case-sensitive, lstrcmpiW otherwise). The column filter owns it through
// Col::pFilterInfo; this store only reads it.
struct VTRColFilterMap {
    DynaArrayTpl<wchar_t const*, 0, 0> daTexts; // pointers into msTexts
    MemStack msTexts;
    bool bCaseSensitive = false;
};

// A cell value tagged with its column type.
struct VTRItemData {
    VTRBDataType eType;
    union {
        void* pValue;
        DWORD dwValue;
        long lValue;
        double dValue;
        WORD wValue;
        unsigned __int64 ullValue;
        BYTE byValue;
        SYSTEMTIME stValue;
    };
};

class VTR_API VTRBListViewStoreData : public VTRBListView {
public:
    // One row while a filter is re-evaluated.
    struct FilterMap {
        LPARAM lParam;
        int iImage;
        void* pRowData;
        bool bMatch;
        bool bNotInList; // true until the row is found in the list
    };
    // One distinct cell text in the filter dialog.
    struct UniqueData {
        wchar_t const* pszText;
        bool bChecked;
        int iRowInd;
    };
    // Pairs a distinct text with a row, for sorting the texts by the column's sort order.
    struct UniqueDataSort {
        UniqueData* pData;
        Row* pRow;
    };

    VTRBListViewStoreData();
    ~VTRBListViewStoreData() override;

    // ---- overrides of VTRBListView
    void UnAssign() override;
    void Reset() override;
    bool DefineStructure(unsigned int uSize, DynaArrayTpl<int, 0, 0>& daOffsets) override;

protected:
    void RowDelete(int item, Row* pRow) override;
    bool IsDifferent(Row* pRow, int item, int iCol) override;

public:
    using VTRBListView::IsDifferent;

    // ---- hooks added behind the base class's, in this order
    virtual void* OnAllocRowData();
    virtual bool OnFreeRowData(void* pData);
    // A new block holding a copy of the record; null when no block can be had.
    virtual void* OnDuplicateRowData(void const* pSrc);
    virtual void OnCopyRowData(void const* pSrc, void* pDst);
    virtual void OnDeleteRowData(void* pData);
    // Returning true makes pValue the column's value; GetData then looks no further.
    virtual bool OnGetDataHook(void* pData, int iCol, void*& pValue);
    // The column's cell word read from a block (see the field widths above); null without a block,
    // for a column out of range and for types that have no value in a record.
    virtual void* GetData(void* pData, int iCol);
    // Room of a string field for the import; 0 leaves imported string fields empty.
    virtual int GetFieldSize(int iCol);
    // The import's last word on a line before its row is added; false drops the line.
    virtual bool PrepareCSVStruct(int iLine, char const* pszLine, void* pData, LPARAM& lParam);
    // A subclass using the column filter delivers all its records, also those filtered out.
    virtual bool OnGetAllRows(DynaArrayTpl<void*, 0, 0>& daRows);
    // lParam and image of record iRow of the array OnGetAllRows delivered.
    virtual bool OnGetlParamAndImage(int iRow, LPARAM& lParam, int& iImage);

    // ---- definition
    // Offsets follow iOffset0 as ints, ended by a negative value. False when a structure is defined
    // already or memory runs out; then nothing stays allocated.
    bool DefineStructure(unsigned int uSize, int iOffset0, ...);
    // Per column: offset, title, id, sample, width, format, type and the type's extra arguments;
    // ended by a negative offset. Extra arguments beyond the third are read over.
    bool DefineStructureAndCols(unsigned int uSize, int iOffset, char const* pszTitle, unsigned long ulColID,
                                char const* pszSample, int iWidth, int iFormat, VTRBDataType eType, ...);
    // As in the plain list, but refused until a structure is defined.
    bool DefineCols(char const* pszTitle, unsigned long ulColID, char const* pszSample, int iWidth,
                    int iFormat, VTRBDataType eType, ...);
    bool DefineCols(DynaArrayTpl<VTRBListViewCol, 0, 0>& daCols);
    bool IsStructureDefined() const { return m_pRowAlloc != nullptr; }
    unsigned int GetBlockSize() const;
    // Blocks handed out by the allocator and not given back: the rows' copies.
    int GetUsedBlockCount() const;

    // ---- rows
    bool AddRow(LPARAM lParam, int iImage, void* pData, bool bResort, bool bSumRow);
    // pParent is the Row* (GetLVITEMHANDLE) of the parent in tree mode; iPos 0x7fffffff appends.
    bool AddRowEx(LPARAM lParam, int iImage, void* pData, void* pParent, bool bHasChilds, bool bResort,
                  bool bSumRow, int iPos);
    // The array's element size must be the block size. lParam is the element's index when
    // iKeyOffset is below 0, else the long at that offset of the element.
    bool AddArray(DynaArray const& daRows, int iKeyOffset, bool bAppend);
    // Appends the blocks in list order; the first row without a block ends the copy.
    bool GetArray(DynaArray& daRows, bool bAppend);
    // A null pData removes the row's block.
    bool UpdateRow(int iRow, LPARAM lParam, int iImage, void* pData, bool bResort);
    bool GetRowData(int iRow, void*& pData);
    void* GetCurSelRowData(int* piRow);
    void* GetCurFocusSelRowData(int* piRow);
    char* GetCellText(int iRow, int iCol);
    wchar_t* GetCellTextUC(int iRow, int iCol);
    // Writes text columns only; the copy checks no length. The row's cells are refreshed in any case.
    void SetCellText(int iRow, int iCol, char* pszText);
    bool GetColData(int iRow, int iCol, VTRItemData& data);
    int GetStructOffset(int iCol);

    // ---- columns
    int InsertCol(int iCol, int iOffset, char const* pszTitle, char const* pszSample, int iWidth, int iFormat,
                  VTRBDataType eType, void* pExtra1, void* pExtra2, void* pExtra3, unsigned long ulColID);
    bool UpdateCol(int iCol, int iOffset, char const* pszTitle, char const* pszSample, int iWidth,
                   int iFormat, VTRBDataType eType, void* pExtra1, void* pExtra2, void* pExtra3,
                   unsigned long ulColID);
    bool RemoveCol(int iCol);

    // ---- change marking
    bool SetCheckBoxBoolOffset(int iOffset, bool bShowCheckBoxes);
    // Keeps the offset of the int holding each row's state image index and gives the control the
    // image list (none for a negative offset).
    bool SetStateImageIntOffset(HIMAGELIST hImages, int iOffset);
    int GetStateImageIntOffset() const { return m_iStateImageOffset; }
    bool SetDifferentColsOffset(int iOffset);
    // Sets the bit of each column whose values differ between the two records, skipping columns
    // whose bit is set already. False only when a record cannot be read.
    bool CheckDifferent(void* pData1, void* pData2, unsigned __int64& ullDiff);

    // True when the record passes the filter maps of all columns (see VTRColFilterMap).
    bool IsFilterMatch(void* pData);

    // ---- CSV import (exchange/VTRCSVImportStore.cpp)
    bool ImportCSV(char const* pszFile, char cSep, int iSkipLines, bool bDefineCols, bool bAddEmptyRow,
                   char const* pszNumberTitle) override;
    // The same import from lines already open (a file or a memory block, in any encoding).
    bool ImportCSVLines(VTRCSVLineReader& reader, char cSep, int iSkipLines, bool bDefineCols,
                        bool bAddEmptyRow, char const* pszNumberTitle);
    void SetImportMaxLines(int iMaxLines) { m_iImportMaxLines = iMaxLines; }

private:
    class CSVImportSink;

protected:
    // Reads a column's value from a block by type, as GetColData does for a row.
    bool ReadColData(void* pBlock, int iCol, VTRItemData& data);
    // The argument list of AddRow_VA/UpdateRow_VA for a block: slot 0 leads (check box address or
    // column 0), then the other columns, then 0. slots must hold m_iColCnt + 2 entries.
    void FillCellSlots(void* pBlock, uintptr_t* slots);
    bool UpdateCells(int iRow, LPARAM lParam, int iImage, void* pBlock);
    void RefillCol(int iCol);
    void FreeStructure();
    bool DefineStructure_VA(unsigned int uSize, int iOffset0, va_list args);
    bool DefineStructureAndCols_VA(unsigned int uSize, int iOffset, char const* pszTitle,
                                   unsigned long ulColID, char const* pszSample, int iWidth, int iFormat,
                                   VTRBDataType eType, va_list args);

    CFixSizeAlloc* m_pRowAlloc;
    int m_iFieldCnt;
    int* m_piOffsets;
    int m_iCheckBoxOffset;
    int m_iStateImageOffset;
    int m_iDifferentOffset;

private:
    unsigned int m_uStructSize; // as defined; the allocator's blocks may be rounded up
    Row* m_pFilterRow;          // scratch row for IsFilterMatch
};

// The store with a block of one pointer: each row's block holds the pointer-sized value that the
// AddRow argument points at (8 bytes in our 64-bit build, where the design had 4). Columns read
// through that pointer come from OnGetDataHook of a subclass; otherwise the offsets apply to the
// block itself.
class VTR_API VTRBListViewStoreDataPtr : public VTRBListViewStoreData {
public:
    VTRBListViewStoreDataPtr();
    ~VTRBListViewStoreDataPtr() override;

    bool DefineStructure(int iOffset0, ...);
    bool DefineStructure(DynaArrayTpl<int, 0, 0>& daOffsets);
    // The first argument is ignored: the block is one pointer.
    bool DefineStructureAndCols(unsigned int uIgnored, int iOffset, char const* pszTitle,
                                unsigned long ulColID, char const* pszSample, int iWidth, int iFormat,
                                VTRBDataType eType, ...);
};
