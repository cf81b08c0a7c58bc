#include "exchange/VTRCSVImportReader.h"

#include "NVLanguage.h"

#include <cstring>
#include <emmintrin.h>

namespace {

size_t const kBlock = 65536;
wchar_t const kReplacement = 0xFFFD;
wchar_t const kMark = 0xFEFF;

bool IsContinuation(unsigned char b) {
    return (b & 0xC0) == 0x80;
}

} // namespace

VTRCSVEncoding VTRCSVEncodingFromMark(unsigned char const* p, size_t n) {
    if (!p || n < 2)
        return VTRCSV_ANSI;
    if (n >= 3 && p[0] == 0xEF && p[1] == 0xBB && p[2] == 0xBF)
        return VTRCSV_UTF8;
    if (p[0] == 0xFF && p[1] == 0xFE)
        return VTRCSV_UTF16LE;
    if (p[0] == 0xFE && p[1] == 0xFF)
        return VTRCSV_UTF16BE;
    return VTRCSV_ANSI;
}

void VTRCSVSwapBytePairs(unsigned char* p, size_t n) {
    if (!p)
        return;
    for (size_t i = 0; i + 1 < n; i += 2) {
        unsigned char b = p[i];
        p[i] = p[i + 1];
        p[i + 1] = b;
    }
}

// The platform's memchr and strlen go byte by byte; lines and fields are found sixteen at a time.
char const* VTRCSVFindEither(char const* p, char const* end, char a, char b) {
    __m128i const va = _mm_set1_epi8(a);
    __m128i const vb = _mm_set1_epi8(b);
    while (end - p >= 16) {
        __m128i const v = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
        int const mask = _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(v, va), _mm_cmpeq_epi8(v, vb)));
        if (mask)
            return p + __builtin_ctz(static_cast<unsigned>(mask));
        p += 16;
    }
    for (; p < end; ++p)
        if (*p == a || *p == b)
            return p;
    return end;
}

namespace {

bool SkipsBlank(char c, char cSep) {
    return c != cSep && (c == ' ' || c == '\t' || c == '\n');
}

} // namespace

bool VTRCSVNextField(char const*& cursor, char const* end, char* pszField, char cSep, size_t& cchField) {
    cchField = 0;
    if (!cursor || !pszField)
        return false;
    char const* p = cursor;
    while (p < end && SkipsBlank(*p, cSep))
        ++p;
    if (p == end) {
        cursor = p;
        return false;
    }
    if (*p != '"') {
        // Unquoted: leading blanks belong to the field.
        p = cursor;
        char const* stop = VTRCSVFindEither(p, end, cSep, '\n');
        size_t const n = static_cast<size_t>(stop - p);
        memcpy(pszField, p, n);
        pszField[n] = 0;
        cchField = n;
        cursor = stop < end ? stop + 1 : stop;
        return true;
    }
    ++p;
    char* out = pszField;
    while (p < end) {
        char const* q = static_cast<char const*>(VTRCSVFindEither(p, end, '"', '"'));
        size_t const n = static_cast<size_t>(q - p);
        memcpy(out, p, n);
        out += n;
        p = q;
        if (p == end)
            break;
        if (p + 1 < end && p[1] == '"') {
            *out++ = '"';
            p += 2;
            continue;
        }
        ++p;
        break;
    }
    *out = 0;
    cchField = static_cast<size_t>(out - pszField);
    while (p < end && SkipsBlank(*p, cSep))
        ++p;
    if (p < end && *p == cSep)
        ++p;
    cursor = p;
    return true;
}

// ---------------------------------------------------------------- sources

VTRCSVByteSource::~VTRCSVByteSource() {}

bool VTRCSVByteSource::Failed() const {
    return false;
}

VTRCSVMemorySource::VTRCSVMemorySource(void const* pData, size_t cb)
    : m_pData(static_cast<unsigned char const*>(pData)), m_cb(pData ? cb : 0), m_pos(0) {}

size_t VTRCSVMemorySource::Read(void* p, size_t n) {
    size_t take = m_cb - m_pos < n ? m_cb - m_pos : n;
    if (take)
        memcpy(p, m_pData + m_pos, take);
    m_pos += take;
    return take;
}

bool VTRCSVMemorySource::Rewind() {
    m_pos = 0;
    return true;
}

VTRCSVFileSource::VTRCSVFileSource(FILE* fp) : m_fp(fp) {}

size_t VTRCSVFileSource::Read(void* p, size_t n) {
    return m_fp ? fread(p, 1, n, m_fp) : 0;
}

bool VTRCSVFileSource::Rewind() {
    return m_fp && fseek(m_fp, 0, SEEK_SET) == 0;
}

bool VTRCSVFileSource::Failed() const {
    return !m_fp || ferror(m_fp) != 0;
}

// ---------------------------------------------------------------- reader

VTRCSVLineReader::VTRCSVLineReader(VTRCSVByteSource& src, VTRCSVEncoding enc, size_t cchMaxPiece)
    : m_src(src), m_enc(enc), m_cchMax(2), m_buf(kBlock), m_pos(0), m_end(0), m_bEOF(false) {
    SetMaxPiece(cchMaxPiece);
}

void VTRCSVLineReader::SetMaxPiece(size_t cchMaxPiece) {
    m_cchMax = cchMaxPiece < 2 ? 2 : cchMaxPiece;
}

bool VTRCSVLineReader::Rewind() {
    m_pos = m_end = 0;
    m_bEOF = false;
    return m_src.Rewind();
}

bool VTRCSVLineReader::Ensure(size_t cb) {
    if (m_end - m_pos >= cb)
        return true;
    if (!m_bEOF) {
        if (m_pos > 0) {
            memmove(m_buf.data(), m_buf.data() + m_pos, m_end - m_pos);
            m_end -= m_pos;
            m_pos = 0;
        }
        while (m_end - m_pos < cb && !m_bEOF) {
            size_t got = m_src.Read(m_buf.data() + m_end, m_buf.size() - m_end);
            if (got == 0)
                m_bEOF = true;
            m_end += got;
        }
    }
    return m_end > m_pos;
}

void VTRCSVLineReader::CutLineEnd(std::string& line) {
    size_t n = line.size();
    while (n > 0 && (line[n - 1] == '\n' || line[n - 1] == '\r'))
        --n;
    line.resize(n);
}

void VTRCSVLineReader::CutLineEnd(std::wstring& line) {
    size_t n = line.size();
    while (n > 0 && (line[n - 1] == L'\n' || line[n - 1] == L'\r'))
        --n;
    line.resize(n);
}

bool VTRCSVLineReader::ReadLine(std::string& line) {
    line.clear();
    if (IsWide()) {
        if (!ReadWide(m_wScratch))
            return false;
        if (!m_wScratch.empty()) {
            UINT const cp = NVGetCurCodePage();
            int const cw = static_cast<int>(m_wScratch.size());
            int n = WideCharToMultiByte(cp, WC_COMPOSITECHECK, m_wScratch.data(), cw, nullptr, 0, nullptr,
                                        nullptr);
            if (n > 0) {
                line.resize(static_cast<size_t>(n));
                WideCharToMultiByte(cp, WC_COMPOSITECHECK, m_wScratch.data(), cw, &line[0], n, nullptr,
                                    nullptr);
            }
        }
        return true;
    }
    bool bAny = false;
    while (line.size() < m_cchMax) {
        if (!Ensure(1))
            break;
        bAny = true;
        size_t const avail = m_end - m_pos;
        size_t const room = m_cchMax - line.size();
        size_t const n = avail < room ? avail : room;
        char const* p = reinterpret_cast<char const*>(m_buf.data() + m_pos);
        char const* hit = VTRCSVFindEither(p, p + n, '\n', 0);
        if (hit < p + n && *hit == 0) {
            // A NUL would end the text for every C function behind us: it is dropped.
            line.append(p, static_cast<size_t>(hit - p));
            m_pos += static_cast<size_t>(hit - p) + 1;
            continue;
        }
        size_t const take = hit < p + n ? static_cast<size_t>(hit - p) + 1 : n;
        line.append(p, take);
        m_pos += take;
        if (hit < p + n)
            break;
    }
    if (!bAny)
        return false;
    CutLineEnd(line);
    return true;
}

bool VTRCSVLineReader::ReadLine(std::wstring& line) {
    if (IsWide())
        return ReadWide(line);
    // An 8-bit file read wide: the bytes are in the current code page.
    std::string narrow;
    line.clear();
    if (!ReadLine(narrow))
        return false;
    if (!narrow.empty()) {
        UINT const cp = NVGetCurCodePage();
        int const cb = static_cast<int>(narrow.size());
        int n = MultiByteToWideChar(cp, 0, narrow.data(), cb, nullptr, 0);
        if (n > 0) {
            line.resize(static_cast<size_t>(n));
            MultiByteToWideChar(cp, 0, narrow.data(), cb, &line[0], n);
        }
    }
    return true;
}

bool VTRCSVLineReader::ReadWide(std::wstring& line) {
    line.clear();
    bool bAny = false;
    bool bEnd = false;
    while (!bEnd && line.size() < m_cchMax) {
        if (!Ensure(1))
            break;
        bAny = true;
        if (m_enc == VTRCSV_UTF8) {
            unsigned char const* p = m_buf.data() + m_pos;
            if (*p < 0x80) {
                // The common case: a run of ASCII.
                size_t const avail = m_end - m_pos;
                size_t const room = m_cchMax - line.size();
                size_t const lim = avail < room ? avail : room;
                size_t k = 0;
                while (k < lim && p[k] < 0x80 && p[k] != '\n' && p[k] != 0)
                    ++k;
                line.append(p, p + k);
                m_pos += k;
                if (k < lim && p[k] == '\n') {
                    line.push_back(L'\n');
                    ++m_pos;
                    bEnd = true;
                } else if (k < lim && p[k] == 0) {
                    ++m_pos;
                }
                continue;
            }
            Ensure(4);
            p = m_buf.data() + m_pos;
            size_t const avail = m_end - m_pos;
            unsigned char const b0 = p[0];
            size_t len = 0;
            unsigned long cp = 0;
            unsigned char lo = 0x80, hi = 0xBF;
            if (b0 >= 0xC2 && b0 <= 0xDF) {
                len = 2;
                cp = b0 & 0x1F;
            } else if (b0 >= 0xE0 && b0 <= 0xEF) {
                len = 3;
                cp = b0 & 0x0F;
                if (b0 == 0xE0)
                    lo = 0xA0;
                else if (b0 == 0xED)
                    hi = 0x9F; // no surrogate halves
            } else if (b0 >= 0xF0 && b0 <= 0xF4) {
                len = 4;
                cp = b0 & 0x07;
                if (b0 == 0xF0)
                    lo = 0x90;
                else if (b0 == 0xF4)
                    hi = 0x8F;
            }
            bool bValid = len > 0 && avail >= len;
            for (size_t i = 1; bValid && i < len; ++i) {
                unsigned char b = p[i];
                if (!IsContinuation(b) || (i == 1 && (b < lo || b > hi)))
                    bValid = false;
                else
                    cp = (cp << 6) | (b & 0x3F);
            }
            if (!bValid) {
                // One replacement per bad byte; the next byte gets its own chance.
                line.push_back(kReplacement);
                ++m_pos;
                continue;
            }
            m_pos += len;
            if (cp == kMark)
                continue;
            if (cp >= 0x10000) {
                cp -= 0x10000;
                line.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
                line.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
            } else {
                line.push_back(static_cast<wchar_t>(cp));
            }
            continue;
        }
        // UTF-16
        if (!Ensure(2) || m_end - m_pos < 2) {
            line.push_back(kReplacement);
            m_pos = m_end;
            continue;
        }
        bool const bBE = m_enc == VTRCSV_UTF16BE;
        while (m_end - m_pos >= 2 && line.size() < m_cchMax) {
            unsigned char const* p = m_buf.data() + m_pos;
            wchar_t c =
                bBE ? static_cast<wchar_t>((p[0] << 8) | p[1]) : static_cast<wchar_t>(p[0] | (p[1] << 8));
            m_pos += 2;
            if (c == 0 || c == kMark)
                continue;
            line.push_back(c);
            if (c == L'\n') {
                bEnd = true;
                break;
            }
        }
    }
    if (!bAny)
        return false;
    CutLineEnd(line);
    return true;
}
