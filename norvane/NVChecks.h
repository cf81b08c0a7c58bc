// Checks of what a user typed into a field.
#pragma once

#include "NVExport.h"

// True for an address of the form local@domain: the local part of 1 to 64 characters from letters,
// digits and !#$%&'*+/=?^_`{|}~.- without a dot at either end or two dots in a row; the domain of
// at least two labels of letters, digits and '-' (1 to 63 characters, no '-' at either end), the
// last one of at least two letters; 254 characters at most. Blanks at either end are not allowed.
NV_API bool NVIsValidEmailAddress(char const* lpszAddress);

// Card types of CreditCardValidate.
enum : int {
    NVCC_ANY = 0,        // any of the types below
    NVCC_VISA = 1,       // 4; 13, 16 or 19 digits
    NVCC_MASTERCARD = 2, // 51-55, 2221-2720; 16 digits
    NVCC_AMEX = 3,       // 34, 37; 15 digits
    NVCC_DINERS = 4,     // 300-305, 36, 38, 39; 14 to 19 digits
    NVCC_DISCOVER = 5,   // 6011, 622126-622925, 644-649, 65; 16 to 19 digits
    NVCC_JCB = 6,        // 3528-3589; 16 to 19 digits
    NVCC_MAESTRO = 7,    // 50, 56-69; 12 to 19 digits
};

// Results of CreditCardValidate.
enum : int {
    NVCC_OK = 0,
    NVCC_ERR_EMPTY = 1,     // null or no digits
    NVCC_ERR_CHARACTER = 2, // something other than digits, blanks and '-'
    NVCC_ERR_LENGTH = 3,    // a number of digits that the type does not have
    NVCC_ERR_PREFIX = 4,    // digits that do not begin as the type's numbers do
    NVCC_ERR_CHECKSUM = 5,  // the Luhn check digit is wrong
    NVCC_ERR_TYPE = 6,      // unknown card type
};

// Checks a card number of the type: 0 when valid, else one of the NVCC_ERR_ codes. Blanks and '-'
// between the digits are ignored; the text is not changed.
NV_API int CreditCardValidate(int iType, char* lpszNumber);
