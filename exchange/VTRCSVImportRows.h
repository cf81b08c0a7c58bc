// The row pass of the CSV import: which lines are data, which line number each gets, which column
// each field goes to, the line limit, and what happens to a field that does not convert.
//
// The pass knows nothing of where rows end up: a sink receives the fields of each data line. Its
// conversions raise NVThrowData for a bad value; the sink then decides whether the import goes on
// with the next field or ends.
#pragma once

#include "exchange/VTRCSVImportReader.h"

#include "NVErrors.h"

#include <string>

class VTR_API VTRCSVRowSink {
public:
    virtual ~VTRCSVRowSink();
    virtual int GetColCount() = 0;
    // False for columns that take no field (the no-import column flag).
    virtual bool IsColImported(int iCol) = 0;
    // The empty row asked for before the first data row.
    virtual void OnEmptyRow() = 0;
    virtual void OnBeginRow(int iLine) = 0;
    // One field; exactly one of the two texts is given, as the file was read. May throw NVThrowData.
    virtual void OnField(int iLine, int iCol, char* psz8, wchar_t* pszW) = 0;
    // A column that receives no field in this line.
    virtual void OnNoField(int iLine, int iCol);
    // The fields of the line are through. May throw NVThrowData.
    virtual void OnEndRow(int iLine, char const* pszLine) = 0;
    // A field's conversion failed with e: true goes on with the next field, false ends the import.
    virtual bool OnBadField(NVThrowData const& e) = 0;
};

struct VTRCSVRowParams {
    char cSep = ';';
    int iSkipLines = 0;
    bool bAddEmptyRow = false;
    int iMaxLines = 0; // 0: no limit
    int iFirstCol = 0; // 1 when a number column comes first
};

// Reads every line of the reader and feeds the data lines to the sink. Returns the count of rows
// handed to the sink (the empty row included). Throws NVThrowData: the line limit (the library's
// text 515 with the limit), a bad field the sink would not pass over (an empty text: the user has been
// told), or whatever the sink throws.
VTR_API int VTRCSVReadRows(VTRCSVLineReader& reader, VTRCSVRowParams const& params, VTRCSVRowSink& sink);

// 8-bit text of a wide field in the current code page, into buf; returns buf's text.
VTR_API char* VTRCSVNarrow(wchar_t const* pszW, std::string& buf);
// Wide text of an 8-bit field in the current code page, into buf; returns buf's text.
VTR_API wchar_t* VTRCSVWiden(char const* psz8, std::wstring& buf);

// An open import file: the encoding found by its first bytes, a byte-swapped temporary copy for
// UTF-16 big endian (deleted by the destructor, however the import ends), and the reader on it.
class VTR_API VTRCSVImportFile {
public:
    VTRCSVImportFile();
    ~VTRCSVImportFile();
    VTRCSVImportFile(VTRCSVImportFile const&) = delete;
    VTRCSVImportFile& operator=(VTRCSVImportFile const&) = delete;

    // bDetect: look for a byte order mark (else the file is 8-bit text). Throws NVThrowData with
    // the library's texts 3, 4, 5, 91 or 92. *pbMoreThanOneByte tells whether the probe read more
    // than one byte.
    void Open(char const* pszFile, bool bDetect, size_t cchMaxPiece, bool* pbMoreThanOneByte = nullptr);
    VTRCSVLineReader& Reader() { return *m_pReader; }
    VTRCSVEncoding GetEncoding() const { return m_enc; }
    // The swapped copy while it exists, else empty.
    char const* GetTempPath() const { return m_szTemp; }
    void Close();

private:
    void MakeSwappedCopy(char const* pszFile);

    FILE* m_fp;
    VTRCSVFileSource* m_pSource;
    VTRCSVLineReader* m_pReader;
    VTRCSVEncoding m_enc;
    char m_szTemp[MAX_PATH];
};
