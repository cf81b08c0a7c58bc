// Growable byte buffer for building HTML and clipboard text. The buffer is one contiguous block at
// all times, so m_pBuffer and m_iUsed can be handed on (to the clipboard, to a file) as they are.
#pragma once

#include "NVExport.h"

#include <windows.h>

class NV_API MemStack {
public:
    char* m_pBuffer = nullptr; // start of the data, null until something is added
    int m_iUsed = 0;           // bytes in use

    // pageSize: the step in which room grows; maxSize: the most bytes the buffer may hold, -1 for no limit.
    MemStack(int pageSize = 1024, int maxSize = -1);
    MemStack(MemStack const&) = delete;
    MemStack& operator=(MemStack const&) = delete;
    virtual ~MemStack();

    bool AddData(void const* data, int size);
    bool AddData(unsigned char byte);
    bool Sprintf(char const* format, ...);
    MemStack& operator<<(char const* text);

    bool SetSize(int size);       // reserves room for size bytes
    bool SetBufferUsed(int used); // sets the used length; lengthening keeps what the room holds
    void FreeAllPages();

    char* GetBuffer() const { return m_pBuffer; }
    int GetBufferUsed() const { return m_iUsed; }

    // Writes the used bytes to path (created or replaced). With a file time it is set on the file;
    // bAppend adds to an existing file instead. dwFlags is passed to CreateFile as attributes (0: normal).
    bool MemToFile(char const* path, unsigned long dwFlags = 0, FILETIME* pTime = nullptr,
                   bool bAppend = false);

private:
    int m_iPageSize;
    int m_iMaxSize;
    int m_iRoom = 0;
};
