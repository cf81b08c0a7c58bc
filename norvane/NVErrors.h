// The library's exception, tracing, logging and error texts.
#pragma once

#include "NVExport.h"

#include <windows.h>

// Raised by Throw and caught by long operations at their end, where resources are released in one
// place and the text goes to a message box. An empty or null text means the user has been told.
class NV_API NVThrowData {
public:
    char* m_lpszText; // formatted message, owned; may be null
    int m_iCode;      // the code given to Throw: 0 for a message, else a system or COM error code

    NVThrowData(int iCode, char const* lpszText);
    NVThrowData(NVThrowData const& other);
    NVThrowData& operator=(NVThrowData const& other);
    ~NVThrowData();

    char const* GetText() const { return m_lpszText ? m_lpszText : ""; }
    bool IsSilent() const { return !m_lpszText || !*m_lpszText; }
};

// Formats the text (printf codes or the numbered scheme of SNPrintf) and throws NVThrowData.
// With code 0 the text is the message. With another code the text names the failed call and the
// message becomes "<text> failed: <system text of the code> (0x<code>)".
[[noreturn]] NV_API void Throw(int iCode, char const* lpszFormat, ...);

// Debug trace through OutputDebugString; no visible effect.
NV_API void Trace(char const* lpszFormat, ...);

// Appends "yyyy-mm-dd hh:mm:ss <text>" and CR LF to the file (created if missing). Returns the bytes
// written, or -1 when the file cannot be written.
NV_API int WriteToLog(char const* lpszFile, char const* lpszFormat, ...);

// Text of a system error code, without the trailing line break; code 0 takes GetLastError().
// Language 0 is the system's choice. A code without a text gives "Error <code> (0x<code>)".
// Returns buf.
NV_API char const* GetLastErrorText(char* buf, int size, unsigned long dwCode, unsigned short wLangID = 0);

// Shows the hourglass from construction to destruction.
class NV_API StdWaitCursor {
public:
    StdWaitCursor();
    ~StdWaitCursor();
    StdWaitCursor(StdWaitCursor const&) = delete;
    StdWaitCursor& operator=(StdWaitCursor const&) = delete;

private:
    HCURSOR m_hPrev;
};
