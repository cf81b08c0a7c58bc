#include "exchange/VTRCSVImportFields.h"

#include "exchange/VTRCSVImportRows.h"
#include "exchange/VTRCSVImportTypes.h"
#include "listview/VTRBListView.h"

#include "NVDates.h"
#include "NVStrings.h"

#include <cstring>

namespace {

char const* SkipBlanks(char const* p) {
    while (*p == ' ' || *p == '\t')
        ++p;
    return p;
}

// Where a value goes: straight into the field, or through the pointer the field holds.
void* Target(unsigned char* pField, bool bIndirect) {
    if (!bIndirect)
        return pField;
    void* p = nullptr;
    memcpy(&p, pField, sizeof p);
    return p;
}

} // namespace

void VTRCSVConvertField(VTRBDataType eType, unsigned char* pField, unsigned int uRoom, int iTextRoom,
                        char* psz8, wchar_t* pszW, int iLine, std::string& narrowBuf, std::wstring& wideBuf) {
    if (!pField || uRoom == 0 || (!psz8 && !pszW))
        return;
    bool const bWideType = eType == VTDT_WSTRING || eType == VTDT_LPWSTR;
    if (!psz8 && !bWideType)
        psz8 = VTRCSVNarrow(pszW, narrowBuf);

    // Value types: the field must lie wholly inside the structure.
    bool bIndirect = false;
    unsigned int uWidth = 0;
    switch (eType) {
    case VTDT_int:
    case VTDT_int32_CUSTOM:
    case VTDT_DWORD:
    case VTDT_DWORD_NOT_NULL:
    case VTDT_TIME_T:
        uWidth = 4;
        break;
    case VTDT_DOUBLE:
    case VTDT_QWORD:
        uWidth = 8;
        break;
    case VTDT_SYSTEMTIME:
        uWidth = sizeof(SYSTEMTIME);
        break;
    case VTDT_WORD:
        uWidth = 2;
        break;
    case VTDT_LPSTR:
    case VTDT_LPINT:
    case VTDT_LPint32_CUSTOM:
    case VTDT_LPDWORD:
    case VTDT_LPTIME_T:
    case VTDT_LPDOUBLE:
    case VTDT_LPSYSTEMTIME:
    case VTDT_LPWSTR:
        uWidth = sizeof(void*);
        bIndirect = true;
        break;
    default:
        break;
    }
    if (uWidth > uRoom)
        return;

    switch (eType) {
    case VTDT_STRING:
    case VTDT_LPSTR: {
        if (iTextRoom < 1)
            return;
        unsigned int uMax = static_cast<unsigned int>(iTextRoom);
        char* pDst = static_cast<char*>(Target(pField, bIndirect));
        if (!pDst)
            return;
        if (!bIndirect && uMax > uRoom)
            uMax = uRoom;
        StrNZCpy(pDst, psz8, uMax);
        break;
    }
    case VTDT_WSTRING:
    case VTDT_LPWSTR: {
        wchar_t const* pszText = pszW ? pszW : VTRCSVWiden(psz8, wideBuf);
        if (iTextRoom < 1)
            return;
        unsigned int uMax = static_cast<unsigned int>(iTextRoom);
        wchar_t* pDst = static_cast<wchar_t*>(Target(pField, bIndirect));
        if (!pDst)
            return;
        if (!bIndirect && uMax > uRoom / 2)
            uMax = uRoom / 2;
        if (uMax == 0)
            return;
        // Byte-wise: a field at an odd offset is no aligned wchar_t.
        size_t len = wcslen(pszText);
        if (len > uMax - 1)
            len = uMax - 1;
        memcpy(pDst, pszText, len * sizeof(wchar_t));
        wchar_t const nul = 0;
        memcpy(reinterpret_cast<unsigned char*>(pDst) + len * sizeof(wchar_t), &nul, sizeof nul);
        break;
    }
    case VTDT_int:
    case VTDT_int32_CUSTOM:
    case VTDT_LPINT:
    case VTDT_LPint32_CUSTOM:
    case VTDT_DWORD:
    case VTDT_DWORD_NOT_NULL:
    case VTDT_LPDWORD: {
        void* pDst = Target(pField, bIndirect);
        if (!pDst)
            return;
        bool const bSigned = eType != VTDT_DWORD && eType != VTDT_DWORD_NOT_NULL && eType != VTDT_LPDWORD;
        unsigned long v = 0;
        long lQuick = 0;
        if ((bSigned || *psz8 != '-') && VTRCSVTypeScan::QuickInt(psz8, lQuick)) {
            v = static_cast<unsigned long>(lQuick);
        } else {
            bool ok = false;
            v = VTRBListView::Str2Val(psz8, bSigned, iLine, ok, false, false);
        }
        memcpy(pDst, &v, 4);
        break;
    }
    case VTDT_WORD: {
        long lQuick = 0;
        unsigned short w = 0;
        if (*psz8 != '-' && VTRCSVTypeScan::QuickInt(psz8, lQuick)) {
            w = static_cast<unsigned short>(lQuick);
        } else {
            bool ok = false;
            w = static_cast<unsigned short>(VTRBListView::Str2Val(psz8, false, iLine, ok, false, false));
        }
        memcpy(pField, &w, 2);
        break;
    }
    case VTDT_TIME_T:
    case VTDT_LPTIME_T: {
        void* pDst = Target(pField, bIndirect);
        // An empty date is no wrong date: the field keeps its zero.
        if (!pDst || !*SkipBlanks(psz8))
            return;
        long t = 0;
        // A date out of range still goes the long way, which raises the message.
        if (!VTRCSVTypeScan::QuickDate(psz8, t) || t < 0)
            t = VTRBListView::Str2Date(psz8, false, iLine);
        memcpy(pDst, &t, 4);
        break;
    }
    case VTDT_DOUBLE:
    case VTDT_LPDOUBLE: {
        void* pDst = Target(pField, bIndirect);
        if (!pDst)
            return;
        // An empty field is a cell without value, not 0.
        double d = *SkipBlanks(psz8) ? VTRBListView::Str2Double(psz8, iLine, false) : EMPTY_DOUBLE;
        memcpy(pDst, &d, 8);
        break;
    }
    case VTDT_SYSTEMTIME:
    case VTDT_LPSYSTEMTIME: {
        void* pDst = Target(pField, bIndirect);
        SYSTEMTIME st;
        if (pDst && String2SYSTEMTIME(psz8, NVGetDateTimeFormatString(NVDT_DATE, 0), st, false, false, false))
            memcpy(pDst, &st, sizeof st);
        break;
    }
    case VTDT_QWORD: {
        unsigned long long ullQuick = 0;
        unsigned __int64 v = 0;
        if (VTRCSVTypeScan::QuickUInt64(psz8, ullQuick)) {
            v = ullQuick;
        } else {
            bool ok = false;
            v = VTRBListView::Str2UVal64(psz8, iLine, ok, false);
        }
        memcpy(pField, &v, 8);
        break;
    }
    default:
        break;
    }
}
