// The byte stream of a CSV export: fields quoted and escaped in the shared text format, in the current
// code page or in UTF-16, written to an open file in large pieces.
//
// The first failed write is remembered and every later one skipped.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

class VTRCSVSink {
public:
    VTRCSVSink(FILE* fp, bool bWide);
    VTRCSVSink(VTRCSVSink const&) = delete;
    VTRCSVSink& operator=(VTRCSVSink const&) = delete;

    // One field, then the separator, or CR LF after the last field of a line. In the code page a text
    // is cut to 1023 bytes, as the shared converter cuts it; UTF-16 text is written whole. Null is an
    // empty field.
    void Field(wchar_t const* pszText, bool bLast, wchar_t cSep);
    // Bytes as they are (the byte order mark).
    void Raw(void const* pData, size_t cb);
    // Writes what is left; false when any write failed.
    bool Finish();

private:
    char* Fill() { return reinterpret_cast<char*>(m_pFill.get()); }
    void FieldNarrow(wchar_t const* pszText);
    bool AsciiField(wchar_t const* pszText);
    void FieldWide(wchar_t const* pszText);
    void Flush();

    FILE* m_fp;
    bool m_bWide;
    bool m_bAsciiAsIs;
    // The piece being filled, typed wide so that both forms may write it; m_pcCur runs through it, and
    // it is written once the cursor passes m_pcFlush.
    std::unique_ptr<wchar_t[]> m_pFill;
    char* m_pcCur;
    char* m_pcFlush;
    char* m_pcEnd;
    bool m_bOk = true;
    char m_szConv[1024];
};
