// Cell data types of a list column and the records that describe columns and rows.
#pragma once

#include "frame/VTRExport.h"

#include <windows.h>

// What one cell argument of a row means, how the cell is held, shown and compared. The numbers are
// part of the interface: persisted settings and import definitions store them.
enum VTRBDataType {
    VTDT_STRING = 0,
    VTDT_LPSTR = 1,
    VTDT_int = 2,
    VTDT_DWORD = 3,
    VTDT_LPINT = 4,
    VTDT_LPDWORD = 5,
    VTDT_TIME_T = 6,
    VTDT_LPTIME_T = 7,
    VTDT_DOUBLE = 8,
    VTDT_LPDOUBLE = 9,
    VTDT_CARD_DATE = 10,
    VTDT_LPCARD_DATE = 11,
    VTDT_DWORD_NOT_NULL = 12,
    VTDT_int32_CUSTOM = 13,
    VTDT_LPint32_CUSTOM = 14,
    VTDT_CALLBACK = 15,
    VTDT_SYSTEMTIME = 16,
    VTDT_LPSYSTEMTIME = 17,
    VTDT_CHECKBOX = 18,
    VTDT_CALLBACK_PTR = 19,
    VTDT_WSTRING = 20,
    VTDT_LPWSTR = 21,
    VTDT_QWORD = 22,
    VTDT_SYSTEMTIME_TIMEONLY = 23,
    VTDT_WORD = 24,
    VTDT_RESERVED25 = 25,
    VTDT_CHECKROW = 26,
    VTDT_FLAG = 27,
    VTDT_bool = 28,
};

enum { VTDT_COUNT = 29 };

// "No value" in a double cell or field; bit pattern 0x017342BC3629C632.
#define EMPTY_DOUBLE 1.123456e-301

// Text function of VTDT_CALLBACK / VTDT_CALLBACK_PTR columns: (cell word, item, col, row lParam,
// user word, buffer). The buffer is wide when the column's raw flags hold VTR_COLFMT_WIDECALLBACK.
typedef char const* (*VTRCellTextFunc)(void* cell, int item, int col, LPARAM lParam, void* user, char* buf);
typedef wchar_t const* (*VTRCellTextFuncW)(void* cell, int item, int col, LPARAM lParam, void* user,
                                           wchar_t* buf);
// Compare function of the same columns: (cell a, lParam a, cell b, lParam b, col, user word).
typedef int (*VTRCellCompareFunc)(void* a, LPARAM lParamA, void* b, LPARAM lParamB, int col, void* user);

// Raw column flags beyond the LVCFMT_ value in the low 16 bits.
enum : unsigned long {
    VTR_COLFMT_NOPRINT = 0x10000,
    VTR_COLFMT_NOIMPORT = 0x20000,
    VTR_COLFMT_NUMSTRING = 0x40000,   // text that compares as a number when both begin with a digit
    VTR_COLFMT_TRAILNUMBER = 0x80000, // 8-bit text whose trailing number compares numerically
    VTR_COLFMT_SKIP = 0x100000,       // DefineCols reads the tuple but makes no column
    VTR_COLFMT_WIDECALLBACK = 0x200000,
};

// Derived column flags (Col::dwColFlags).
enum : unsigned long {
    VTR_COLF_NOPRINT = 2,
    VTR_COLF_NOIMPORT = 4,
    VTR_COLF_NUMSTRING = 8,
    VTR_COLF_TRAILNUMBER = 16,
    VTR_COLF_SUMROWEMPTY = 32,
};

// Row::dwFlags.
enum : unsigned long {
    VTR_ROW_SUM = 1,
    VTR_ROW_BOLD = 2,
    VTR_ROW_CHECKPTR = 4,
    VTR_ROW_HASCHILDS = 8,
    VTR_ROW_EXPANDED = 16,
};

struct Col {
    VTRBDataType eType;
    void* pExtra1;
    void* pExtra2;
    void* pExtra3;
    unsigned long dwColFlags;
    unsigned long dwFormat;
    void* pFilterInfo; // the column filter's data; always null until a filter is set
    unsigned long dwID;
    int iDefWidth;
};

// A cell word is pointer-sized: pointers travel in it unchanged, and smaller values (int, DWORD,
// WORD, bool) are stored zero- or sign-extended and read back with their own width.
struct RowCell {
    void* pValue;
    char const* pszNumFormat;
};

struct Row {
    LPARAM lParam;
    void* pData;
    unsigned long dwFlags;
    bool* pbCheck;
    Row* pParent;
    int iLastChild;
    RowCell cells[1]; // m_iColMaxCnt cells; the block is sized by VTRBListView::GetRowSize
};

struct VTRBListViewCol {
    char const* lpszTitle;
    char const* lpszSample;
    int iWidth;
    unsigned long dwFlags;
    VTRBDataType eType;
    void* pExtra1;
    void* pExtra2;
    void* pExtra3;
    unsigned long dwColFlags;
    unsigned long dwID;
};

struct VTRBListViewColW {
    wchar_t const* lpszTitle;
    wchar_t const* lpszSample;
    int iWidth;
    unsigned long dwFlags;
    VTRBDataType eType;
    void* pExtra1;
    void* pExtra2;
    void* pExtra3;
    unsigned long dwColFlags;
    unsigned long dwID;
};
