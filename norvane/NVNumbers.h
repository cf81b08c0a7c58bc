// Number formats, parsing and rounding.
//
// A number format text expresses all of a Win32 NUMBERFMT. Its full form is six fields after a '#',
// separated by '|':
//
//     #<decimals>|<leading zero>|<grouping>|<decimal separator>|<thousands separator>|<negative order>
//
//   decimals          0 to 9 places after the separator
//   leading zero      1: "0.5", 0: ".5"
//   grouping          NUMBERFMT.Grouping: each digit is a group size counted from the separator
//                     leftwards; the last group repeats unless it is 0. 0: no groups, 3: 1,234,567,
//                     32: 12,34,567, 30: 1234,567
//   decimal separator 1 to 3 characters, no digit and no '|'
//   thousands sep.    0 to 3 characters, no digit and no '|', not equal to the decimal separator
//   negative order    NUMBERFMT.NegativeOrder: 0 "(1.1)", 1 "-1.1", 2 "- 1.1", 3 "1.1-", 4 "1.1 -"
//
// Fields may be left off at the end ("#0" or "#2|1|3"); they are then the current language's, as
// NVGetNumberFormatString gives them. German amounts: "#2|1|3|,|.|1"; US: "#2|1|3|.|,|1"; Swiss:
// "#2|1|3|.|'|1"; without groups: "#2|1|0|,||1". printf's "%.Nf" (and "%f" for six places) stands for
// the current language's format with N decimals. A null or empty format is the default format.
#pragma once

#include "NVExport.h"

#include <windows.h>

enum NVNumberFormatStringType {
    NVNF_DEFAULT = 0, // the user's number format, with two decimals (or none for amounts when switched)
    NVNF_EDIT = 8,    // the same without thousands groups, as typed into a number field
};

// Formats value, rounded with Runden to the format's decimals, per the format text into out (size
// bytes, always terminated; empty on failure). A value that rounds to zero has no sign. False on a
// bad format, a buffer too small, or a value that is not finite or reaches 1e18.
NV_API bool FormatNumber(double value, char const* lpszFormat, char* out, int size);

// The default format text for the type and language (0: current), read from the language's locale
// data. bAmountsWithoutDecimals asks for the form without decimal places. Null for an unknown type.
// The text stays valid for the life of the process.
NV_API char const* NVGetNumberFormatString(NVNumberFormatStringType type, unsigned short wLangID,
                                           bool bAmountsWithoutDecimals);

// Splits a format text into the NUMBERFMT and its two separator strings. The NUMBERFMT's separator
// pointers point into the given buffers (or into static storage when a buffer is null).
NV_API bool NVExtractNumberFormat(char const* lpszFormat, NUMBERFMTA& nf, char* lpszDecimal,
                                  unsigned int cbDecimal, char* lpszThousand, unsigned int cbThousand);

// Parses text written per the format: the format's separators, thousands groups of the format's sizes
// (or none at all), any number of decimals, and a sign in any of the five negative forms or a leading
// '+', whatever the format's own order. Blanks around the number are allowed, nothing else. first
// and last receive the start and the end (one past) of the number within text when given. The text
// is not changed.
NV_API bool NVIsValidDouble(char* text, char const* lpszFormat, double& out, char const** first,
                            char const** last);

// Commercial rounding (halves away from zero) to digits places, on the decimal value that the double
// stands for (15 significant digits), so that 2.675 becomes 2.68 although its binary form is below.
NV_API double Runden(double value, unsigned int digits);

// Process-wide switch: amounts are shown without decimals.
NV_API bool NVGetAmountsWithoutDecimalPlaces();
NV_API void NVSetAmountsWithoutDecimalPlaces(bool bWithout);
