// Wide text into the current code page for 8-bit callers and files.
#pragma once

// The text in the current code page, cut to what fits into size bytes of out: whole characters only,
// never half of a surrogate pair or of a multi-byte sequence; always terminated.
void VTRToCodePage(wchar_t const* pszText, char* out, int size);
