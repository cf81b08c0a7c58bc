// Bounded formatting with printf codes and the numbered message scheme.
//
// A text is formatted in one of two ways:
//
// * Message texts hold numbered placeholders: the section sign and a number, "§1", "§2", ... up to
//   "§99". Argument n of the call fills placeholder n wherever it stands, so a language may put "§2"
//   before "§1" and the call stays the same. A placeholder may name its type between exclamation
//   marks, with any printf conversion: "§1!d!" (int), "§2!u!" (unsigned), "§3!.2f!" (double),
//   "§4!I64u!" (unsigned 64-bit), "§5!08X!". Without it the argument is a text: char const* in the
//   8-bit functions, wchar_t const* in the wide ones ("!S!" takes the other width). A number that
//   the text skips is read as a pointer-sized value and not shown. In a message text '%' is an
//   ordinary character.
//   The 8-bit form recognises the section sign as the code page byte 0xA7 and also as its UTF-8
//   pair C2 A7, so that texts from source files and from the string tables both work.
//
// * Any other text is a printf format: flags, width and precision (also '*'), the length modifiers
//   hh h l ll L z j t I I32 I64, and the conversions d i u o x X c C s S e E f F g G a A p and %%.
//   As in the Windows runtime, %s is a text of the function's own width and %S one of the other
//   width (%hs and %ls name the width explicitly). %n is never honoured and is written as it stands.
//
// The result is cut to fit the buffer and always terminated. The functions return the characters
// written, not counting the terminator; a null buffer or size 0 returns -1 and writes nothing.
#pragma once

#include "NVExport.h"

#include <cstdarg>

template <class T, int A, int B> class DynaArrayTpl;

NV_API int SNPrintf(char* buf, unsigned int size, char const* format, ...);
NV_API int SNPrintf(wchar_t* buf, unsigned int size, wchar_t const* format, ...);
// The last argument is kept for the original's signature; pass 0.
NV_API int VSNPrintf(char* buf, unsigned int size, char const* format, va_list args, int reserved = 0);
NV_API int VSNPrintf(wchar_t* buf, unsigned int size, wchar_t const* format, va_list args, int reserved = 0);

// One numbered placeholder of a message text.
struct NVFormatMessageFormat {
    int iNumber;          // the placeholder's number, 1 to 99
    int iStart;           // where it begins in the text (the section sign), in characters
    int iLength;          // its length in characters, with the type in exclamation marks
    wchar_t szFormat[16]; // the printf conversion without '%', "s" when none was given
};

// Parses a text into its placeholders in the order they stand. True when at least one was found.
NV_API bool NVScanFormatString(wchar_t const* text, DynaArrayTpl<NVFormatMessageFormat, 0, 0>& out);
