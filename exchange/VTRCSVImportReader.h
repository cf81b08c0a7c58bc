// Lines of a CSV file for the import, in whatever encoding the file came in.
//
// The reader hands out one line at a time, without its trailing CR and LF, either as 8-bit text in
// the file's own code page or decoded to UTF-16. Hostile input must never hurt it: invalid UTF-8
// becomes U+FFFD, an odd trailing byte of a UTF-16 file becomes U+FFFD, NUL characters are dropped,
// byte order marks never reach the text, and a line longer than the piece size comes in pieces,
// each of them a line of its own, so that no caller needs a buffer bigger than the piece.
#pragma once

#include "frame/VTRExport.h"

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

enum VTRCSVEncoding {
    VTRCSV_ANSI = 0,    // 8-bit text in the current code page
    VTRCSV_UTF8 = 1,    // with mark EF BB BF
    VTRCSV_UTF16LE = 2, // with mark FF FE
    VTRCSV_UTF16BE = 3, // with mark FE FF; read through a byte-swapped copy
};

// The encoding that the first bytes of a file announce; n is how many were read (at most three are
// looked at). Fewer than two bytes are always 8-bit text.
VTR_API VTRCSVEncoding VTRCSVEncodingFromMark(unsigned char const* p, size_t n);

// Swaps the two bytes of each pair in place; an odd last byte stays where it is.
VTR_API void VTRCSVSwapBytePairs(unsigned char* p, size_t n);

// The first byte in [p, end) that is a or b; end when there is none. Sixteen bytes at a time.
VTR_API char const* VTRCSVFindEither(char const* p, char const* end, char a, char b);

// One field of an 8-bit line [cursor, end) into pszField (room for the rest of the line and a
// terminator), read exactly as VTRParseNextCSVField reads it, the field's length in cchField. The
// line holds no NUL. False when the line holds no further field; the cursor then stands at its end.
VTR_API bool VTRCSVNextField(char const*& cursor, char const* end, char* pszField, char cSep,
                             size_t& cchField);

// Where the bytes come from: a file or a memory block.
class VTR_API VTRCSVByteSource {
public:
    virtual ~VTRCSVByteSource();
    // Up to n bytes into p; 0 at the end (or after a read error, see Failed).
    virtual size_t Read(void* p, size_t n) = 0;
    // Back to the first byte.
    virtual bool Rewind() = 0;
    virtual bool Failed() const;
};

// Reads a block the caller keeps alive.
class VTR_API VTRCSVMemorySource : public VTRCSVByteSource {
public:
    VTRCSVMemorySource(void const* pData, size_t cb);
    size_t Read(void* p, size_t n) override;
    bool Rewind() override;

private:
    unsigned char const* m_pData;
    size_t m_cb;
    size_t m_pos;
};

// Reads an open file (binary mode); the file stays the caller's.
class VTR_API VTRCSVFileSource : public VTRCSVByteSource {
public:
    explicit VTRCSVFileSource(FILE* fp);
    size_t Read(void* p, size_t n) override;
    bool Rewind() override;
    bool Failed() const override;

private:
    FILE* m_fp;
};

class VTR_API VTRCSVLineReader {
public:
    // cchMaxPiece: the most characters of one piece, the line feed counted; below 2 is taken as 2.
    VTRCSVLineReader(VTRCSVByteSource& src, VTRCSVEncoding enc, size_t cchMaxPiece);
    VTRCSVLineReader(VTRCSVLineReader const&) = delete;
    VTRCSVLineReader& operator=(VTRCSVLineReader const&) = delete;

    // True for the two UTF encodings: lines are read with the wide ReadLine. UTF-16 BE is decoded
    // like LE after the caller swapped the bytes; a reader given BE swaps them itself.
    bool IsWide() const { return m_enc != VTRCSV_ANSI; }
    VTRCSVEncoding GetEncoding() const { return m_enc; }
    void SetMaxPiece(size_t cchMaxPiece);

    // The next line or piece, trailing CR and LF cut. False at the end of the data. A wide reader
    // may also be read with the 8-bit form: its text is converted to the current code page.
    bool ReadLine(std::string& line);
    bool ReadLine(std::wstring& line);

    // Back to the beginning; the mark is skipped again.
    bool Rewind();
    bool Failed() const { return m_src.Failed(); }

private:
    // Makes at least cb bytes available when the data still has them; false when none is left.
    bool Ensure(size_t cb);
    bool ReadWide(std::wstring& line);
    static void CutLineEnd(std::string& line);
    static void CutLineEnd(std::wstring& line);

    VTRCSVByteSource& m_src;
    VTRCSVEncoding m_enc;
    size_t m_cchMax;
    std::vector<unsigned char> m_buf;
    size_t m_pos;
    size_t m_end;
    bool m_bEOF;
    std::wstring m_wScratch;
};
