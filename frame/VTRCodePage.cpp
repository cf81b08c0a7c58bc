#include "frame/VTRCodePage.h"

#include "NVLanguage.h"

#include <windows.h>

#include <cwchar>

namespace {

DWORD ConvertFlags(UINT cp) {
    // The UTF code pages refuse every flag but WC_ERR_INVALID_CHARS.
    return (cp == CP_UTF8 || cp == CP_UTF7) ? 0 : WC_COMPOSITECHECK;
}

} // namespace

void VTRToCodePage(wchar_t const* pszText, char* out, int size) {
    out[0] = 0;
    if (!pszText || !*pszText)
        return;
    UINT const cp = static_cast<UINT>(NVGetCurCodePage());
    // Plain ASCII is the same bytes in every code page of the system but UTF-7, and the conversion
    // call costs more than the rest of writing a cell.
    if (cp != CP_UTF7) {
        int i = 0;
        while (i < size - 1 && pszText[i] && pszText[i] < 0x80) {
            out[i] = static_cast<char>(pszText[i]);
            ++i;
        }
        if (!pszText[i]) {
            out[i] = 0;
            return;
        }
    }
    DWORD const dwFlags = ConvertFlags(cp);
    if (WideCharToMultiByte(cp, dwFlags, pszText, -1, out, size, nullptr, nullptr) > 0)
        return;
    // Too long: take as many characters as fit, never half of a surrogate pair.
    int len = static_cast<int>(wcslen(pszText));
    while (len > 0) {
        int const need = WideCharToMultiByte(cp, dwFlags, pszText, len, nullptr, 0, nullptr, nullptr);
        if (need > 0 && need < size)
            break;
        int const over = need > size ? (need - size + 1) / 4 : 0;
        len -= over > 1 ? over : 1;
        if (len > 0 && IS_HIGH_SURROGATE(pszText[len - 1]))
            --len;
    }
    int const n =
        len > 0 ? WideCharToMultiByte(cp, dwFlags, pszText, len, out, size - 1, nullptr, nullptr) : 0;
    out[n > 0 ? n : 0] = 0;
}
