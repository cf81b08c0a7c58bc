// DlgBase: the GetAndCheck family. Every failure goes through Fail, so that all checks tell the
// user the same way and leave the focus in the field.
#include "DlgBase.h"

#include "DlgBaseInternal.h"

#include "NVChecks.h"
#include "NVFormat.h"
#include "NVLanguage.h"
#include "NVMsgBox.h"
#include "NVNumbers.h"
#include "NVDates.h"
#include "NVStrings.h"

#include <commctrl.h>

#include <cstring>
#include <string>
#include <vector>

using namespace nvdlg;

namespace {
unsigned int const kLabelSize = 128;

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Digits only, with blanks around; false on anything else or on a value above uMax.
bool ParseUnsigned(char const* text, unsigned __int64 uMax, unsigned __int64& out) {
    out = 0;
    while (IsBlank(*text))
        ++text;
    if (*text < '0' || *text > '9')
        return false;
    for (; *text >= '0' && *text <= '9'; ++text) {
        unsigned digit = static_cast<unsigned>(*text - '0');
        if (out > (uMax - digit) / 10)
            return false;
        out = out * 10 + digit;
    }
    while (IsBlank(*text))
        ++text;
    return *text == 0;
}

// A card date: month and year separated by '/', '.', '-' or nothing; two or four digits of year.
bool ParseCardDate(char const* text, int& iMonth, int& iYear) {
    char digits[8];
    int n = 0, month = 0;
    char const* p = text;
    auto readDigits = [&](int maxDigits) {
        n = 0;
        while (*p >= '0' && *p <= '9' && n < maxDigits)
            digits[n++] = *p++;
        digits[n] = 0;
    };
    readDigits(2);
    if (n != 2)
        return false;
    month = (digits[0] - '0') * 10 + (digits[1] - '0');
    if (*p == '/' || *p == '.' || *p == '-')
        ++p;
    readDigits(4);
    if (*p || (n != 2 && n != 4) || month < 1 || month > 12)
        return false;
    int year = 0;
    for (int i = 0; i < n; ++i)
        year = year * 10 + (digits[i] - '0');
    if (n == 2)
        year += 2000;
    if (year < 2000 || year > 2099)
        return false;
    iMonth = month;
    iYear = year;
    return true;
}

std::string DoubleText(double value) {
    char out[100];
    if (!FormatNumber(value, NVGetNumberFormatString(NVNF_DEFAULT, 0, false), out, sizeof out))
        SNPrintf(out, sizeof out, "%g", value);
    return out;
}
} // namespace

void DlgBase::FieldName(HWND hCtrl, char const* lpszName, char* lpszOut, unsigned int uSize) const {
    if (!TestLeer(lpszName)) {
        StrNZCpy(lpszOut, lpszName, uSize);
        DelChar(lpszOut, '&');
        return;
    }
    GetPrevWindowText_(hCtrl, lpszOut, uSize);
}

bool DlgBase::Fail(HWND hCtrl, unsigned long dwFlags, unsigned long dwMsgId, char const* lpszArg1,
                   char const* lpszArg2) {
    if (dwFlags & NVCF_SILENT)
        return false;
    // The page first, so that the field is visible behind the box.
    SetFocusToControl(hCtrl);
    NVMsgBox(NVGetMsgBoxParent(m_hWnd), nullptr, MB_SETFOREGROUND | MB_ICONEXCLAMATION, GSRC(dwMsgId, 0),
             lpszArg1 ? lpszArg1 : "", lpszArg2 ? lpszArg2 : "");
    // A real box gives the focus back to whatever had it at its start; make sure it is the field.
    if (hCtrl && IsWindow(hCtrl) && GetFocus() != hCtrl)
        SetFocus(hCtrl);
    return false;
}

bool DlgBase::ReadTrimmed(HWND hCtrl, char* lpszOut, unsigned int uSize, unsigned long dwFlags) {
    // Trim the whole text before cutting it to the buffer, or blanks would take the place of text.
    std::wstring wide = WindowTextW(hCtrl);
    std::vector<char> text(wide.size() * 4 + 1);
    Narrow(wide.c_str(), text.data(), static_cast<int>(text.size()));
    if (!(dwFlags & NVCF_NO_TRIM))
        StrTrim(text.data());
    if (dwFlags & NVCF_UPPER)
        for (char* p = text.data(); *p; ++p)
            *p = ToUpper(*p);
    StrNZCpy(lpszOut, text.data(), uSize);
    return lpszOut[0] != 0;
}

bool DlgBase::GetAndCheckTextField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                   unsigned long dwFlags) {
    HWND hCtrl = ItemOf(id);
    if (!hCtrl || !lpszOut || !uSize)
        return false;
    if (!ReadTrimmed(hCtrl, lpszOut, uSize, dwFlags) && (dwFlags & NVCF_PFLICHT)) {
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    return true;
}

bool DlgBase::GetAndCheckTextFieldW(int id, wchar_t* lpszOut, unsigned int uSize, char const* lpszName,
                                    unsigned long dwFlags) {
    HWND hCtrl = ItemOf(id);
    if (!hCtrl || !lpszOut || !uSize)
        return false;
    std::wstring text = WindowTextW(hCtrl);
    if (!(dwFlags & NVCF_NO_TRIM))
        text.resize(wcslen(StrTrim(&text[0])));
    if (dwFlags & NVCF_UPPER)
        CharUpperW(&text[0]);
    StrNZCpy(lpszOut, text.c_str(), uSize);
    if (!lpszOut[0] && (dwFlags & NVCF_PFLICHT)) {
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    return true;
}

bool DlgBase::GetAndCheckEMailField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                    unsigned long dwFlags) {
    if (!GetAndCheckTextField(id, lpszOut, uSize, lpszName, dwFlags))
        return false;
    if (lpszOut[0] && !NVIsValidEmailAddress(lpszOut))
        return Fail(ItemOf(id), dwFlags, NV_IDS_EMAIL_INVALID, lpszOut);
    return true;
}

bool DlgBase::GetAndCheckMultipleEMailField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                            unsigned long dwFlags) {
    if (!GetAndCheckTextField(id, lpszOut, uSize, lpszName, dwFlags))
        return false;
    std::string joined;
    std::string text = lpszOut;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find_first_of(";,", start);
        if (end == std::string::npos)
            end = text.size();
        std::vector<char> part(text.begin() + static_cast<long>(start),
                               text.begin() + static_cast<long>(end));
        part.push_back(0);
        StrTrim(part.data());
        if (part[0]) {
            if (!NVIsValidEmailAddress(part.data()))
                return Fail(ItemOf(id), dwFlags, NV_IDS_EMAIL_INVALID, part.data());
            if (!joined.empty())
                joined += "; ";
            joined += part.data();
        }
        start = end + 1;
    }
    if (joined.empty() && (dwFlags & NVCF_PFLICHT)) {
        char label[kLabelSize];
        FieldName(ItemOf(id), lpszName, label, kLabelSize);
        return Fail(ItemOf(id), dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    StrNZCpy(lpszOut, joined.c_str(), uSize);
    return true;
}

bool DlgBase::GetAndCheckNumField(int id, unsigned __int64& qwOut, char const* lpszName,
                                  unsigned long dwFlags) {
    qwOut = 0;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    char text[64];
    char label[kLabelSize];
    bool bFilled = ReadTrimmed(hCtrl, text, sizeof text, dwFlags);
    unsigned __int64 value = 0;
    if (bFilled && !ParseUnsigned(text, ~0ULL, value)) {
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_NUMBER_INVALID, label);
    }
    bool bEmpty = !bFilled || (value == 0 && (dwFlags & NVCF_ZERO_IS_EMPTY));
    if (bEmpty && (dwFlags & NVCF_PFLICHT)) {
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    if (bFilled && (dwFlags & NVCF_REFORMAT)) {
        SNPrintf(text, sizeof text, "%I64u", value);
        SetWindowTextA(hCtrl, text);
    }
    qwOut = value;
    return true;
}

bool DlgBase::GetAndCheckNumField(int id, unsigned long& dwOut, char const* lpszName, unsigned long dwFlags) {
    dwOut = 0;
    unsigned __int64 value;
    if (!GetAndCheckNumField(id, value, lpszName, dwFlags))
        return false;
    if (value > 0xFFFFFFFFULL) {
        char label[kLabelSize];
        FieldName(ItemOf(id), lpszName, label, kLabelSize);
        return Fail(ItemOf(id), dwFlags, NV_IDS_NUMBER_INVALID, label);
    }
    dwOut = static_cast<unsigned long>(value);
    return true;
}

bool DlgBase::GetAndCheckNumFieldRange(int id, unsigned long& dwOut, unsigned long dwMin, unsigned long dwMax,
                                       char const* lpszName, unsigned long dwFlags) {
    unsigned long value;
    if (!GetAndCheckNumField(id, value, lpszName, dwFlags))
        return false;
    // An optional field left empty is no value, so no bound applies to it.
    char text[32];
    if (!ReadTrimmed(ItemOf(id), text, sizeof text, dwFlags) && !(dwFlags & NVCF_PFLICHT)) {
        dwOut = value;
        return true;
    }
    if (value < dwMin || value > dwMax) {
        char lo[16], hi[16];
        SNPrintf(lo, sizeof lo, "%lu", dwMin);
        SNPrintf(hi, sizeof hi, "%lu", dwMax);
        return Fail(ItemOf(id), dwFlags, NV_IDS_OUT_OF_RANGE, lo, hi);
    }
    dwOut = value;
    return true;
}

bool DlgBase::GetAndCheckNumFieldSigned(int id, long& lOut, char const* lpszName, unsigned long dwFlags) {
    lOut = 0;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    char text[64];
    char label[kLabelSize];
    bool bFilled = ReadTrimmed(hCtrl, text, sizeof text, dwFlags);
    long value = 0;
    if (bFilled) {
        char const* p = text;
        bool bNegative = *p == '-';
        if (*p == '-' || *p == '+')
            ++p;
        unsigned __int64 magnitude;
        if (!ParseUnsigned(p, bNegative ? 0x80000000ULL : 0x7FFFFFFFULL, magnitude) || IsBlank(*p)) {
            FieldName(hCtrl, lpszName, label, kLabelSize);
            return Fail(hCtrl, dwFlags, NV_IDS_NUMBER_INVALID, label);
        }
        value =
            bNegative ? static_cast<long>(-static_cast<__int64>(magnitude)) : static_cast<long>(magnitude);
    }
    bool bEmpty = !bFilled || (value == 0 && (dwFlags & NVCF_ZERO_IS_EMPTY));
    if (bEmpty && (dwFlags & NVCF_PFLICHT)) {
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    if (bFilled && (dwFlags & NVCF_REFORMAT)) {
        SNPrintf(text, sizeof text, "%ld", value);
        SetWindowTextA(hCtrl, text);
    }
    lOut = value;
    return true;
}

bool DlgBase::GetAndCheckDoubleField(int id, double& dOut, char const* lpszName, unsigned long dwFlags,
                                     double const* pMin, double const* pMax, char const* lpszFormat) {
    dOut = 0;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    if (!lpszFormat)
        lpszFormat = NVGetNumberFormatString(NVNF_DEFAULT, 0, NVGetAmountsWithoutDecimalPlaces());
    char text[128];
    char label[kLabelSize];
    bool bFilled = ReadTrimmed(hCtrl, text, sizeof text, dwFlags);
    double value = 0;
    if (bFilled && !NVIsValidDouble(text, lpszFormat, value, nullptr, nullptr)) {
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_NUMBER_INVALID, label);
    }
    bool bEmpty = !bFilled || (value == 0 && (dwFlags & NVCF_ZERO_IS_EMPTY));
    if (bEmpty && (dwFlags & NVCF_PFLICHT)) {
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    if (bFilled && ((pMin && value < *pMin) || (pMax && value > *pMax))) {
        std::string lo = pMin ? DoubleText(*pMin) : std::string();
        std::string hi = pMax ? DoubleText(*pMax) : std::string();
        return Fail(hCtrl, dwFlags, NV_IDS_OUT_OF_RANGE, lo.c_str(), hi.c_str());
    }
    if (bFilled && (dwFlags & NVCF_REFORMAT)) {
        char out[100];
        if (FormatNumber(value, lpszFormat, out, sizeof out))
            NVSetWindowTextUC(hCtrl, out);
    }
    dOut = value;
    return true;
}

bool DlgBase::GetAndCheckKartenDatumFieldMonYear(int id, int& iMonth, int& iYear, char const* lpszName,
                                                 unsigned long dwFlags) {
    iMonth = iYear = 0;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    char text[32];
    char label[kLabelSize];
    if (!ReadTrimmed(hCtrl, text, sizeof text, dwFlags)) {
        if (!(dwFlags & NVCF_PFLICHT))
            return true;
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_FIELD_EMPTY, label);
    }
    if (!ParseCardDate(text, iMonth, iYear)) {
        iMonth = iYear = 0;
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_CARDDATE_INVALID, label);
    }
    return true;
}

bool DlgBase::GetAndCheckKartenDatumField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                          unsigned long dwFlags) {
    if (!lpszOut || !uSize)
        return false;
    lpszOut[0] = 0;
    int iMonth, iYear;
    if (!GetAndCheckKartenDatumFieldMonYear(id, iMonth, iYear, lpszName, dwFlags))
        return false;
    if (iMonth)
        SNPrintf(lpszOut, uSize, "%02d/%02d", iMonth, iYear % 100);
    return true;
}

bool DlgBase::GetAndCheckCBField(int id, long& lData, char const* lpszName, unsigned long dwFlags) {
    lData = -1;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    LRESULT sel = SendMessageW(hCtrl, CB_GETCURSEL, 0, 0);
    if (sel < 0) {
        if (!(dwFlags & NVCF_PFLICHT))
            return true;
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_SELECT_ENTRY, label);
    }
    lData = static_cast<long>(SendMessageW(hCtrl, CB_GETITEMDATA, static_cast<WPARAM>(sel), 0));
    return true;
}

bool DlgBase::GetAndCheckCBFieldPtr(int id, void*& pData, char const* lpszName, unsigned long dwFlags) {
    pData = nullptr;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    LRESULT sel = SendMessageW(hCtrl, CB_GETCURSEL, 0, 0);
    if (sel < 0) {
        if (!(dwFlags & NVCF_PFLICHT))
            return true;
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_SELECT_ENTRY, label);
    }
    pData = reinterpret_cast<void*>(SendMessageW(hCtrl, CB_GETITEMDATA, static_cast<WPARAM>(sel), 0));
    return true;
}

bool DlgBase::GetAndCheckCBFieldText(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                     unsigned long dwFlags) {
    HWND hCtrl = ItemOf(id);
    if (!hCtrl || !lpszOut || !uSize)
        return false;
    lpszOut[0] = 0;
    LRESULT sel = SendMessageW(hCtrl, CB_GETCURSEL, 0, 0);
    if (sel < 0) {
        if (!(dwFlags & NVCF_PFLICHT))
            return true;
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_SELECT_ENTRY, label);
    }
    LRESULT len = SendMessageW(hCtrl, CB_GETLBTEXTLEN, static_cast<WPARAM>(sel), 0);
    std::wstring text(static_cast<size_t>(len > 0 ? len : 0) + 1, L'\0');
    SendMessageW(hCtrl, CB_GETLBTEXT, static_cast<WPARAM>(sel), reinterpret_cast<LPARAM>(&text[0]));
    Narrow(text.c_str(), lpszOut, static_cast<int>(uSize));
    return true;
}

bool DlgBase::GetAndCheckCBEditField(int id, char* lpszOut, unsigned int uSize, char const* lpszName,
                                     unsigned long dwFlags) {
    // The window text of a combo box with an edit part is what was typed there.
    return GetAndCheckTextField(id, lpszOut, uSize, lpszName, dwFlags);
}

bool DlgBase::GetAndCheckLBField(int id, long& lData, char const* lpszName, unsigned long dwFlags) {
    lData = -1;
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    LRESULT sel;
    if (GetWindowLongW(hCtrl, GWL_STYLE) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) {
        int first = -1;
        sel = SendMessageW(hCtrl, LB_GETSELITEMS, 1, reinterpret_cast<LPARAM>(&first)) == 1 ? first : -1;
    } else {
        sel = SendMessageW(hCtrl, LB_GETCURSEL, 0, 0);
    }
    if (sel < 0) {
        if (!(dwFlags & NVCF_PFLICHT))
            return true;
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_SELECT_ENTRY, label);
    }
    lData = static_cast<long>(SendMessageW(hCtrl, LB_GETITEMDATA, static_cast<WPARAM>(sel), 0));
    return true;
}

bool DlgBase::GetAndCheckDateTimePicker(int id, SYSTEMTIME& st, char const* lpszName, unsigned long dwFlags) {
    st = SYSTEMTIME{};
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    SYSTEMTIME value{};
    if (SendMessageW(hCtrl, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&value)) != GDT_VALID) {
        if (!(dwFlags & NVCF_PFLICHT))
            return true;
        char label[kLabelSize];
        FieldName(hCtrl, lpszName, label, kLabelSize);
        return Fail(hCtrl, dwFlags, NV_IDS_DATE_EMPTY, label);
    }
    st = value;
    return true;
}

bool DlgBase::GetAndCheckDateTimePicker(int id, long& t, char const* lpszName, unsigned long dwFlags,
                                        unsigned long dwTZ) {
    t = 0;
    SYSTEMTIME st;
    if (!GetAndCheckDateTimePicker(id, st, lpszName, dwFlags))
        return false;
    if (st.wYear)
        t = SystemTimeToTime_t(&st, dwTZ, false);
    return true;
}

bool DlgBase::GetCheckBoxFlag(int id, unsigned long& dwFlags, unsigned long dwMask) {
    bool bChecked = m_hWnd && IsDlgButtonChecked(m_hWnd, id) == BST_CHECKED;
    if (bChecked)
        dwFlags |= dwMask;
    else
        dwFlags &= ~dwMask;
    return bChecked;
}

bool DlgBase::CheckRange(int id, long lValue, long lMin, long lMax, char const*, unsigned long dwFlags) {
    if (lValue >= lMin && lValue <= lMax)
        return true;
    char lo[16], hi[16];
    SNPrintf(lo, sizeof lo, "%ld", lMin);
    SNPrintf(hi, sizeof hi, "%ld", lMax);
    return Fail(ItemOf(id), dwFlags, NV_IDS_OUT_OF_RANGE, lo, hi);
}

bool DlgBase::CheckRangeDouble(int id, double dValue, double dMin, double dMax, char const*,
                               unsigned long dwFlags) {
    if (dValue >= dMin && dValue <= dMax)
        return true;
    return Fail(ItemOf(id), dwFlags, NV_IDS_OUT_OF_RANGE, DoubleText(dMin).c_str(), DoubleText(dMax).c_str());
}

bool DlgBase::CheckStreamForKLTConnectorBase(int id, char const*, unsigned long dwFlags) {
    HWND hCtrl = ItemOf(id);
    if (!hCtrl)
        return false;
    std::wstring text = WindowTextW(hCtrl);
    for (wchar_t c : text) {
        if (c < 0x20 || c == L'|') {
            char shown[256];
            Narrow(text.c_str(), shown, sizeof shown);
            return Fail(hCtrl, dwFlags, NV_IDS_FIELD_INVALID, shown);
        }
    }
    return true;
}
