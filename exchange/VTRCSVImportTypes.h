// Column types of a CSV file found by reading it once, and the row structure laid out from them.
//
// Each column starts as "not yet known" (VTDT_CALLBACK, which has no other meaning here) and moves
// by the rules of NextType as its fields come in. The same rules serve 8-bit and wide files, so that
// one file gives the same columns in either encoding; only the text type differs (VTDT_STRING or
// VTDT_WSTRING).
#pragma once

#include "exchange/VTRCSVImportReader.h"
#include "listview/VTRBDataType.h"

#include "DynaArray.h"

#include <string>
#include <vector>

// The mark of a column whose type is not yet known.
#define VTRCSV_TYPE_UNKNOWN VTDT_CALLBACK

// Pieces are cut at this many characters while types are detected.
enum { VTRCSV_SCAN_LINE = 20480 };

struct VTRCSVScanCol {
    std::wstring strTitle; // the title in either encoding (8-bit titles are widened)
    bool bHasTitle = false;
    VTRBDataType eType = VTRCSV_TYPE_UNKNOWN;
    int iMaxLen = 0; // greatest text length seen, in characters
};

// One column of the laid-out structure.
struct VTRCSVLayoutCol {
    std::wstring strTitle;
    VTRBDataType eType;
    int iOffset; // byte offset in the structure
    int iRoom;   // bytes that belong to the field
};

class VTR_API VTRCSVTypeScan {
public:
    // cMinWidth: least text length of a column (0: none). pszNumberTitle: a first column with the
    // file's line number under this title (null or empty: none).
    VTRCSVTypeScan(bool bWide, char cSep, int iSkipLines, signed char cMinWidth, bool bForceString,
                   char const* pszNumberTitle);

    // Feeds every line of the reader, cut into pieces of VTRCSV_SCAN_LINE characters.
    void Scan(VTRCSVLineReader& reader);
    // One line, trailing CR and LF already cut.
    void AddLine(char const* pszLine);
    void AddLine(char const* pszLine, size_t cchLine);
    void AddLine(wchar_t const* pszLine);

    int GetLineCount() const { return m_iLines; }
    int GetColCount() const { return static_cast<int>(m_cols.size()); }
    VTRCSVScanCol const& GetCol(int iCol) const { return m_cols[static_cast<size_t>(iCol)]; }
    bool HasNumberCol() const { return m_bNumberCol; }

    // The structure: the first four bytes hold the line number (the number column's field when there
    // is one), then one field per column in order. Untitled columns get "Column n". Returns the end
    // offset, the start of any extra space.
    int Layout(std::vector<VTRCSVLayoutCol>& cols) const;

    // The column definitions for DefineCols, titles and samples pointing into cols and the static
    // samples. Date columns get the current language's formats as extras.
    static void MakeColDefs(std::vector<VTRCSVLayoutCol> const& cols,
                            DynaArrayTpl<VTRBListViewColW, 0, 0>& defs);

    // The type a column takes after seeing one more field. pszText is the field as 8-bit text and may
    // be changed by the tests; iLen is its length in characters as read, raised to the minimum.
    static VTRBDataType NextType(VTRBDataType eBefore, char* pszText, int iLen, int iRawLen, bool bWide);

    // The single tests behind NextType, exposed for the row conversion and for tests.
    static bool IsInteger(char const* pszText);
    static bool IsUInt64(char const* pszText, int iLen);
    static bool IsDouble(char const* pszText);
    // A number that starts with a zero before a further digit: "007", "-0815", "00,5".
    static bool IsZeroPadded(char const* pszText);
    static bool IsDate(char const* pszText);
    static bool IsSystemTime(char const* pszText);

    // The common shapes read without the general parsers. Each returns false when the text is not
    // of its plain shape, and the caller then asks the general function, whose answer it would have
    // been anyway. QuickInt: up to nine digits with an optional minus. QuickUInt64: up to nineteen
    // digits. QuickDate: the current language's four-digit-year date, optionally followed by a blank and
    // a 24-hour time with seconds; t is what String2DateTime gives for it (-1 outside the range).
    static bool QuickInt(char const* pszText, long& lValue);
    static bool QuickUInt64(char const* pszText, unsigned long long& ullValue);
    static bool QuickDate(char const* pszText, long& t);

private:
    void AddField(int iCol, char* psz8, wchar_t const* pszW, int iLen);
    void EndLine(int iFields);
    VTRCSVScanCol& ColAt(int iCol);

    bool m_bWide;
    char m_cSep;
    int m_iSkip;
    int m_iMinWidth;
    bool m_bForceString;
    bool m_bNumberCol;
    int m_iFirstCol;
    bool m_bTitlesPending;
    int m_iTitleCols;
    int m_iLines;
    bool m_bLineHasTitles;
    std::vector<VTRCSVScanCol> m_cols;
    std::string m_field8;
    std::wstring m_fieldW;
    std::string m_narrow;
};
