#include "MemStack.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

MemStack::MemStack(int pageSize, int maxSize)
    : m_iPageSize(pageSize > 0 ? pageSize : 1024), m_iMaxSize(maxSize) {}

MemStack::~MemStack() {
    FreeAllPages();
}

bool MemStack::SetSize(int size) {
    if (size < 0 || (m_iMaxSize >= 0 && size > m_iMaxSize))
        return false;
    if (size <= m_iRoom)
        return true;
    long long room = (static_cast<long long>(size) + m_iPageSize - 1) / m_iPageSize * m_iPageSize;
    if (room < static_cast<long long>(m_iRoom) * 2)
        room = static_cast<long long>(m_iRoom) * 2; // keep appends amortised on large texts
    if (m_iMaxSize >= 0 && room > m_iMaxSize)
        room = m_iMaxSize;
    if (room > 0x7FFFFFFF)
        room = 0x7FFFFFFF;
    char* p = static_cast<char*>(std::realloc(m_pBuffer, static_cast<size_t>(room)));
    if (!p)
        return false;
    m_pBuffer = p;
    m_iRoom = static_cast<int>(room);
    return true;
}

bool MemStack::AddData(void const* data, int size) {
    if (size < 0 || (size > 0 && !data))
        return false;
    if (size > 0x7FFFFFFF - m_iUsed || !SetSize(m_iUsed + size))
        return false;
    std::memcpy(m_pBuffer + m_iUsed, data, size);
    m_iUsed += size;
    return true;
}

bool MemStack::AddData(unsigned char byte) {
    return AddData(&byte, 1);
}

bool MemStack::Sprintf(char const* format, ...) {
    if (!format)
        return false;
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int len = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    bool ok = false;
    // Room for the terminator, which is not counted as used.
    if (len >= 0 && len < 0x7FFFFFFF - m_iUsed && SetSize(m_iUsed + len + 1)) {
        std::vsnprintf(m_pBuffer + m_iUsed, static_cast<size_t>(len) + 1, format, args);
        m_iUsed += len;
        ok = true;
    }
    va_end(args);
    return ok;
}

MemStack& MemStack::operator<<(char const* text) {
    if (text)
        AddData(text, static_cast<int>(std::strlen(text)));
    return *this;
}

bool MemStack::SetBufferUsed(int used) {
    if (used < 0 || !SetSize(used))
        return false;
    m_iUsed = used;
    return true;
}

void MemStack::FreeAllPages() {
    std::free(m_pBuffer);
    m_pBuffer = nullptr;
    m_iUsed = 0;
    m_iRoom = 0;
}

bool MemStack::MemToFile(char const* path, unsigned long dwFlags, FILETIME* pTime, bool bAppend) {
    if (!path || !*path)
        return false;
    HANDLE h = CreateFileA(path, GENERIC_WRITE, 0, nullptr, bAppend ? OPEN_ALWAYS : CREATE_ALWAYS,
                           dwFlags ? dwFlags : FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return false;
    bool ok = true;
    if (bAppend)
        ok = SetFilePointer(h, 0, nullptr, FILE_END) != INVALID_SET_FILE_POINTER;
    DWORD written = 0;
    if (ok && m_iUsed > 0)
        ok = WriteFile(h, m_pBuffer, static_cast<DWORD>(m_iUsed), &written, nullptr) &&
             written == static_cast<DWORD>(m_iUsed);
    if (ok && pTime)
        ok = SetFileTime(h, nullptr, nullptr, pTime) != FALSE;
    CloseHandle(h);
    return ok;
}
