#include "NVErrors.h"

#include "NVFormat.h"
#include "NVStrings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
char* DupText(char const* text) {
    if (!text)
        return nullptr;
    size_t n = std::strlen(text) + 1;
    auto* p = static_cast<char*>(std::malloc(n));
    if (p)
        std::memcpy(p, text, n);
    return p;
}
} // namespace

NVThrowData::NVThrowData(int iCode, char const* lpszText) : m_lpszText(DupText(lpszText)), m_iCode(iCode) {}

NVThrowData::NVThrowData(NVThrowData const& other)
    : m_lpszText(DupText(other.m_lpszText)), m_iCode(other.m_iCode) {}

NVThrowData& NVThrowData::operator=(NVThrowData const& other) {
    if (this != &other) {
        char* text = DupText(other.m_lpszText);
        std::free(m_lpszText);
        m_lpszText = text;
        m_iCode = other.m_iCode;
    }
    return *this;
}

NVThrowData::~NVThrowData() {
    std::free(m_lpszText);
}

void Throw(int iCode, char const* lpszFormat, ...) {
    char text[2048];
    va_list args;
    va_start(args, lpszFormat);
    VSNPrintf(text, sizeof text, lpszFormat, args, 0);
    va_end(args);
    if (iCode == 0)
        throw NVThrowData(0, text);
    char sys[1024];
    GetLastErrorText(sys, sizeof sys, static_cast<unsigned long>(iCode), 0);
    char message[3200];
    SNPrintf(message, sizeof message, "%s failed: %s (0x%08X)", text, sys, static_cast<unsigned>(iCode));
    throw NVThrowData(iCode, message);
}

void Trace(char const* lpszFormat, ...) {
    char text[2048];
    va_list args;
    va_start(args, lpszFormat);
    VSNPrintf(text, sizeof text, lpszFormat, args, 0);
    va_end(args);
    OutputDebugStringA(text);
}

int WriteToLog(char const* lpszFile, char const* lpszFormat, ...) {
    if (TestLeer(lpszFile))
        return -1;
    char text[4096];
    va_list args;
    va_start(args, lpszFormat);
    VSNPrintf(text, sizeof text, lpszFormat, args, 0);
    va_end(args);
    SYSTEMTIME st;
    GetLocalTime(&st);
    char line[4200];
    int len = SNPrintf(line, sizeof line, "%04u-%02u-%02u %02u:%02u:%02u %s\r\n", st.wYear, st.wMonth,
                       st.wDay, st.wHour, st.wMinute, st.wSecond, text);
    HANDLE h = CreateFileA(lpszFile, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return -1;
    DWORD written = 0;
    BOOL ok = WriteFile(h, line, static_cast<DWORD>(len), &written, nullptr);
    CloseHandle(h);
    return ok ? static_cast<int>(written) : -1;
}

char const* GetLastErrorText(char* buf, int size, unsigned long dwCode, unsigned short wLangID) {
    if (!buf || size <= 0)
        return buf;
    if (dwCode == 0)
        dwCode = GetLastError();
    DWORD n = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, dwCode,
                             wLangID, buf, static_cast<DWORD>(size), nullptr);
    if (!n && wLangID)
        n = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, dwCode, 0,
                           buf, static_cast<DWORD>(size), nullptr);
    if (!n)
        SNPrintf(buf, static_cast<unsigned>(size), "Error %lu (0x%08lX)", dwCode, dwCode);
    StrTrim(buf);
    return buf;
}

StdWaitCursor::StdWaitCursor() : m_hPrev(SetCursor(LoadCursor(nullptr, IDC_WAIT))) {}

StdWaitCursor::~StdWaitCursor() {
    SetCursor(m_hPrev);
}
