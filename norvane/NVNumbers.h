// Number formats, parsing and rounding.
//
// The number format text (its syntax is written down by the implementation below this line and is
// the one place that defines it) expresses all of a Win32 NUMBERFMT: decimals, leading zero,
// grouping, decimal and thousands separators and the negative order; printf's "%.Nf" is accepted as
// a shorthand.
#pragma once

#include "NVExport.h"

#include <windows.h>

enum NVNumberFormatStringType {
    NVNF_DEFAULT = 0, // the user's number format, with two decimals (or none for amounts when switched)
};

// Formats value per the format text into out (size bytes, always terminated). False on a bad format
// or a buffer too small.
NV_API bool FormatNumber(double value, char const* lpszFormat, char* out, int size);

// The default format text for the type and language (0: current). bAmountsWithoutDecimals asks for
// the form without decimal places.
NV_API char const* NVGetNumberFormatString(NVNumberFormatStringType type, unsigned short wLangID,
                                           bool bAmountsWithoutDecimals);

// Splits a format text into the NUMBERFMT and its two separator strings. The NUMBERFMT's separator
// pointers point into the given buffers (or into static storage when a buffer is null).
NV_API bool NVExtractNumberFormat(char const* lpszFormat, NUMBERFMTA& nf, char* lpszDecimal,
                                  unsigned int cbDecimal, char* lpszThousand, unsigned int cbThousand);

// Parses text written per the format (grouping, separators, negative forms). first/last receive the
// start and end of the number within text when given.
NV_API bool NVIsValidDouble(char* text, char const* lpszFormat, double& out, char const** first,
                            char const** last);

// Commercial rounding (halves away from zero) to digits places.
NV_API double Runden(double value, unsigned int digits);

// Process-wide switch: amounts are shown without decimals.
NV_API bool NVGetAmountsWithoutDecimalPlaces();
NV_API void NVSetAmountsWithoutDecimalPlaces(bool bWithout);
