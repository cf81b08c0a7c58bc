#include "exchange/VTRCSVImportRows.h"

#include "exchange/VTRCSVFormat.h"
#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"

#include "NVFileDialogs.h"
#include "NVLanguage.h"

#include <cstring>

VTRCSVRowSink::~VTRCSVRowSink() {}

void VTRCSVRowSink::OnNoField(int, int) {}

char* VTRCSVNarrow(wchar_t const* pszW, std::string& buf) {
    size_t const len = pszW ? wcslen(pszW) : 0;
    buf.resize(len + 1);
    size_t i = 0;
    for (; i < len && pszW[i] < 0x80; ++i)
        buf[i] = static_cast<char>(pszW[i]);
    if (i == len) {
        buf[len] = 0;
        return &buf[0];
    }
    UINT const cp = NVGetCurCodePage();
    int const cw = static_cast<int>(len);
    int n = WideCharToMultiByte(cp, WC_COMPOSITECHECK, pszW, cw, nullptr, 0, nullptr, nullptr);
    buf.assign(static_cast<size_t>(n > 0 ? n : 0) + 1, 0);
    if (n > 0)
        WideCharToMultiByte(cp, WC_COMPOSITECHECK, pszW, cw, &buf[0], n, nullptr, nullptr);
    return &buf[0];
}

wchar_t* VTRCSVWiden(char const* psz8, std::wstring& buf) {
    int const cb = psz8 ? static_cast<int>(strlen(psz8)) : 0;
    int n = cb ? MultiByteToWideChar(NVGetCurCodePage(), 0, psz8, cb, nullptr, 0) : 0;
    buf.assign(static_cast<size_t>(n > 0 ? n : 0) + 1, 0);
    if (n > 0)
        MultiByteToWideChar(NVGetCurCodePage(), 0, psz8, cb, &buf[0], n);
    return &buf[0];
}

namespace {

// Hands one field to the sink; a failed conversion asks the sink whether to go on.
void PassField(VTRCSVRowSink& sink, int iLine, int iCol, char* psz8, wchar_t* pszW) {
    try {
        sink.OnField(iLine, iCol, psz8, pszW);
    } catch (NVThrowData const& e) {
        if (e.IsSilent() || !sink.OnBadField(e))
            throw NVThrowData(0, "");
    }
}

// The next column from iCol on that takes a field; the ones passed over are told they get none.
int NextImportCol(VTRCSVRowSink& sink, int iLine, int iCol, int iColCnt) {
    while (iCol < iColCnt && !sink.IsColImported(iCol)) {
        sink.OnNoField(iLine, iCol);
        ++iCol;
    }
    return iCol;
}

} // namespace

int VTRCSVReadRows(VTRCSVLineReader& reader, VTRCSVRowParams const& params, VTRCSVRowSink& sink) {
    bool const bWide = reader.IsWide();
    wchar_t const cSepW = static_cast<wchar_t>(static_cast<unsigned char>(params.cSep));
    std::string line8, field8, lineNarrow;
    std::wstring lineW, fieldW;
    int iStop = params.iMaxLines;
    int iLine = 1;
    int iSkip = params.iSkipLines;
    int iRows = 0;
    bool bFirst = true;
    if (params.bAddEmptyRow) {
        sink.OnEmptyRow();
        ++iRows;
    }
    int const iColCnt = sink.GetColCount();
    for (;;) {
        bool const bGot = bWide ? reader.ReadLine(lineW) : reader.ReadLine(line8);
        if (!bGot)
            break;
        if (bFirst) {
            bFirst = false;
            if (params.bAddEmptyRow && iSkip == 0) {
                ++iStop;
                iLine = 2;
            }
        }
        if (bWide ? lineW.empty() : line8.empty()) {
            ++iLine;
            continue;
        }
        if (iSkip > 0) {
            ++iStop;
            ++iLine;
            --iSkip;
            continue;
        }
        if (params.iMaxLines > 0 && iStop < iLine)
            Throw(0, VTRStringTable::GetText(IDS_VTR_IMPORT_MAX_LINES),
                  static_cast<unsigned>(params.iMaxLines));
        sink.OnBeginRow(iLine);
        int iCol = params.iFirstCol;
        if (bWide) {
            fieldW.resize(lineW.size() + 1);
            wchar_t const* cursor = lineW.c_str();
            while (VTRParseNextCSVField(cursor, &fieldW[0], cSepW)) {
                iCol = NextImportCol(sink, iLine, iCol, iColCnt);
                if (iCol >= iColCnt)
                    continue; // fields beyond the last column are read and dropped
                PassField(sink, iLine, iCol, nullptr, &fieldW[0]);
                ++iCol;
            }
        } else {
            if (field8.size() < line8.size() + 1)
                field8.resize(line8.size() + 1);
            char const* cursor = line8.data();
            char const* const end = cursor + line8.size();
            size_t cchField = 0;
            while (VTRCSVNextField(cursor, end, &field8[0], params.cSep, cchField)) {
                iCol = NextImportCol(sink, iLine, iCol, iColCnt);
                if (iCol >= iColCnt)
                    continue;
                PassField(sink, iLine, iCol, &field8[0], nullptr);
                ++iCol;
            }
        }
        for (; iCol < iColCnt; ++iCol)
            sink.OnNoField(iLine, iCol);
        sink.OnEndRow(iLine, bWide ? VTRCSVNarrow(lineW.c_str(), lineNarrow) : line8.c_str());
        ++iRows;
        ++iLine;
    }
    return iRows;
}

// ---------------------------------------------------------------- the file

namespace {

[[noreturn]] void ThrowWithSystemText(DWORD id, char const* pszName, DWORD dwErr) {
    char err[512];
    GetLastErrorText(err, sizeof err, dwErr);
    if (pszName)
        Throw(0, VTRStringTable::GetText(id), pszName, err);
    Throw(0, VTRStringTable::GetText(id), err);
}

// Closes a handle at the end of a scope.
struct HandleGuard {
    HANDLE h;
    ~HandleGuard() {
        if (h != INVALID_HANDLE_VALUE)
            CloseHandle(h);
    }
};

} // namespace

VTRCSVImportFile::VTRCSVImportFile()
    : m_fp(nullptr), m_pSource(nullptr), m_pReader(nullptr), m_enc(VTRCSV_ANSI), m_szTemp() {}

VTRCSVImportFile::~VTRCSVImportFile() {
    Close();
}

void VTRCSVImportFile::Close() {
    delete m_pReader;
    m_pReader = nullptr;
    delete m_pSource;
    m_pSource = nullptr;
    if (m_fp)
        fclose(m_fp);
    m_fp = nullptr;
    if (m_szTemp[0])
        DeleteFileA(m_szTemp);
    m_szTemp[0] = 0;
}

void VTRCSVImportFile::Open(char const* pszFile, bool bDetect, size_t cchMaxPiece, bool* pbMoreThanOneByte) {
    Close();
    if (pbMoreThanOneByte)
        *pbMoreThanOneByte = false;
    char const* pszName = pszFile ? pszFile : "";
    m_enc = VTRCSV_ANSI;
    if (bDetect) {
        HandleGuard file{CreateFileA(pszName, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
        if (file.h == INVALID_HANDLE_VALUE)
            ThrowWithSystemText(IDS_VTR_FILE_OPEN, pszName, GetLastError());
        unsigned char mark[3] = {0, 0, 0};
        DWORD dwRead = 0;
        if (!ReadFile(file.h, mark, sizeof mark, &dwRead, nullptr))
            dwRead = 0;
        if (pbMoreThanOneByte)
            *pbMoreThanOneByte = dwRead > 1;
        m_enc = VTRCSVEncodingFromMark(mark, dwRead);
    }
    char const* pszOpen = pszName;
    if (m_enc == VTRCSV_UTF16BE) {
        MakeSwappedCopy(pszName);
        pszOpen = m_szTemp;
        m_enc = VTRCSV_UTF16LE;
    }
    m_fp = fopen(pszOpen, "rb");
    if (!m_fp)
        Throw(0, VTRStringTable::GetText(IDS_VTR_FILE_OPEN), pszName, "");
    m_pSource = new VTRCSVFileSource(m_fp);
    m_pReader = new VTRCSVLineReader(*m_pSource, m_enc, cchMaxPiece);
}

void VTRCSVImportFile::MakeSwappedCopy(char const* pszFile) {
    if (!CreateTempFile(nullptr, true, "CSV", m_szTemp)) {
        m_szTemp[0] = 0;
        ThrowWithSystemText(IDS_VTR_TEMP_FILE, nullptr, GetLastError());
    }
    HandleGuard dst{
        CreateFileA(m_szTemp, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr)};
    if (dst.h == INVALID_HANDLE_VALUE)
        Throw(0, VTRStringTable::GetText(IDS_VTR_FILE_CREATE), m_szTemp);
    HandleGuard src{CreateFileA(pszFile, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    if (src.h == INVALID_HANDLE_VALUE)
        ThrowWithSystemText(IDS_VTR_FILE_READ_FAILED, pszFile, GetLastError());
    // Even-sized blocks keep every pair inside one block.
    std::string block(65536, 0);
    for (;;) {
        DWORD dwRead = 0;
        if (!ReadFile(src.h, &block[0], static_cast<DWORD>(block.size()), &dwRead, nullptr))
            ThrowWithSystemText(IDS_VTR_FILE_READ_FAILED, pszFile, GetLastError());
        if (dwRead == 0)
            break;
        VTRCSVSwapBytePairs(reinterpret_cast<unsigned char*>(&block[0]), dwRead);
        DWORD dwWritten = 0;
        if (!WriteFile(dst.h, block.data(), dwRead, &dwWritten, nullptr) || dwWritten != dwRead)
            ThrowWithSystemText(IDS_VTR_FILE_WRITE, m_szTemp, GetLastError());
    }
}
