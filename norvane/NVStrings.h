// String helpers. 8-bit text is in the code page of NVGetCurCodePage(); the wide forms are UTF-16.
#pragma once

#include "NVExport.h"

#include <windows.h>

class MemStack;

// Bounded copy that always terminates; size counts the whole buffer. Returns the characters copied.
NV_API unsigned int StrNZCpy(char* dest, char const* src, unsigned int size);
NV_API unsigned int StrNZCpy(wchar_t* dest, wchar_t const* src, unsigned int size);

// Removes blanks, tabs and line breaks at both ends in place; the text stays at the buffer's start.
NV_API char* StrTrim(char* text);
NV_API wchar_t* StrTrim(wchar_t* text);

// True for a null pointer or an empty text.
NV_API bool TestLeer(char const* text);
NV_API bool TestLeer(wchar_t const* text);

// Removes every occurrence of c (labels lose their '&' this way).
NV_API char* DelChar(char* text, char c);
NV_API wchar_t* DelChar(wchar_t* text, wchar_t c);

// Replaces each occurrence of from by to, in place; the buffer must hold the longer result.
// Returns the number of replacements.
NV_API int SwapChars(char* text, char const* from, char const* to);
NV_API int SwapChars(wchar_t* text, wchar_t const* from, wchar_t const* to);

// Case mapping in the current code page.
NV_API char ToUpper(char c);
NV_API char ToLower(char c);
NV_API int StrNICmp(char const* a, char const* b, unsigned int n);
NV_API int StrNICmp(wchar_t const* a, wchar_t const* b, unsigned int n);
NV_API char const* StrIStr(char const* text, char const* find);
NV_API wchar_t const* StrIStr(wchar_t const* text, wchar_t const* find);

// Normalises a search text in place so that two texts can be compared with a plain comparison:
// bUpper folds to upper case, bTrim removes blanks at both ends and folds runs of blanks to one.
// size is the buffer's size in characters.
NV_API void NVPrepareSearchString(char* text, int size, bool bUpper, bool bTrim);
NV_API void NVPrepareSearchString(wchar_t* text, int size, bool bUpper, bool bTrim);

// Appends text to out as UTF-16 with &, <, >, " and ' escaped. bLineBreaks turns CR LF and LF into
// "<br>". Returns false when memory runs out.
NV_API bool NVPrepareHTMLstring(wchar_t const* text, MemStack& out, bool bLineBreaks);

// Appends a file or registry key name to a path with a single backslash between them.
NV_API char* AppendFile(char* path, char const* name);

// Allocates the wide form of an 8-bit text (length -1: up to the terminator) in the current code
// page; free it with NVFreeUNICODEWindowText. codePage 0 means the current code page.
NV_API wchar_t* NVMakeUNICODEWindowText(char const* text, int length = -1, int codePage = 0);
NV_API void NVFreeUNICODEWindowText(wchar_t* text);
