#include "exchange/VTRCSVSink.h"

#include "exchange/VTRCSVFormat.h"
#include "frame/VTRCodePage.h"

#include "NVLanguage.h"

#include <windows.h>

#include <cstring>
#include <cwchar>

namespace {

// A piece is handed to the writer once it holds this much; behind it lies room for the longest field
// of the code page form (1023 bytes, each escaped to two, the quotes and CR LF).
size_t const kPieceBytes = 256 * 1024;
size_t const kSlackBytes = 4096;
size_t const kMaxNarrowField = 1023;

} // namespace

VTRCSVSink::VTRCSVSink(FILE* fp, bool bWide)
    : m_fp(fp), m_bWide(bWide), m_pFill(new wchar_t[(kPieceBytes + kSlackBytes) / sizeof(wchar_t)]) {
    // Plain ASCII is the same bytes in every code page of the system but UTF-7.
    m_bAsciiAsIs = NVGetCurCodePage() != CP_UTF7;
    m_pcCur = Fill();
    m_pcFlush = Fill() + kPieceBytes;
    m_pcEnd = m_pcFlush + kSlackBytes;
}

void VTRCSVSink::Field(wchar_t const* pszText, bool bLast, wchar_t cSep) {
    if (m_bWide) {
        FieldWide(pszText ? pszText : L"");
        if (m_pcEnd - m_pcCur < 4)
            Flush();
        auto* p = reinterpret_cast<wchar_t*>(m_pcCur);
        if (bLast) {
            *p++ = L'\r';
            *p++ = L'\n';
        } else {
            *p++ = cSep;
        }
        m_pcCur = reinterpret_cast<char*>(p);
    } else {
        FieldNarrow(pszText);
        if (bLast) {
            *m_pcCur++ = '\r';
            *m_pcCur++ = '\n';
        } else {
            *m_pcCur++ = static_cast<char>(cSep);
        }
    }
    if (m_pcCur >= m_pcFlush)
        Flush();
}

// Below m_pcFlush there is always room for a whole field of this form.
void VTRCSVSink::FieldNarrow(wchar_t const* pszText) {
    if (pszText && m_bAsciiAsIs && AsciiField(pszText))
        return;
    VTRToCodePage(pszText, m_szConv, sizeof m_szConv);
    char* p = m_pcCur;
    *p++ = '"';
    for (char const* s = m_szConv; *s; ++s)
        p = VTRPutCSVChar(p, static_cast<unsigned char>(*s));
    *p++ = '"';
    m_pcCur = p;
}

// A plain ASCII text (the usual cell) goes straight from its wide form into the piece; false, with
// nothing written, at the first character that needs the code page.
bool VTRCSVSink::AsciiField(wchar_t const* pszText) {
    char* p = m_pcCur;
    *p++ = '"';
    for (size_t i = 0; i < kMaxNarrowField && pszText[i]; ++i) {
        wchar_t const c = pszText[i];
        if (c >= 0x80)
            return false;
        p = VTRPutCSVChar(p, c);
    }
    *p++ = '"';
    m_pcCur = p;
    return true;
}

// UTF-16 text has no length limit: a long field runs on into the next piece.
void VTRCSVSink::FieldWide(wchar_t const* pszText) {
    auto* p = reinterpret_cast<wchar_t*>(m_pcCur);
    *p++ = L'"';
    while (*pszText) {
        // Each character takes at most two; one place stays for the closing quote.
        size_t room = (static_cast<size_t>(m_pcEnd - reinterpret_cast<char*>(p)) / sizeof(wchar_t) - 1) / 2;
        for (; room && *pszText; --room, ++pszText)
            p = VTRPutCSVChar(p, *pszText);
        m_pcCur = reinterpret_cast<char*>(p);
        if (*pszText) {
            Flush();
            p = reinterpret_cast<wchar_t*>(m_pcCur);
        }
    }
    *p++ = L'"';
    m_pcCur = reinterpret_cast<char*>(p);
}

void VTRCSVSink::Raw(void const* pData, size_t cb) {
    auto const* src = static_cast<char const*>(pData);
    while (cb) {
        size_t const n = cb < static_cast<size_t>(m_pcFlush - m_pcCur) ? cb : m_pcFlush - m_pcCur;
        memcpy(m_pcCur, src, n);
        m_pcCur += n;
        src += n;
        cb -= n;
        if (m_pcCur >= m_pcFlush)
            Flush();
    }
}

// A writer thread that wrote one piece while the next filled measured slower under Wine: each
// hand-over cost more than the write it hid.
void VTRCSVSink::Flush() {
    size_t const cb = static_cast<size_t>(m_pcCur - Fill());
    if (m_bOk && cb && fwrite(Fill(), 1, cb, m_fp) != cb)
        m_bOk = false;
    m_pcCur = Fill();
}

bool VTRCSVSink::Finish() {
    Flush();
    return m_bOk;
}
