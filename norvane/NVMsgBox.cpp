#include "NVMsgBox.h"

#include "NVFormat.h"
#include "NVLanguage.h"
#include "NVStrings.h"

#include <string>
#include <vector>

namespace {
NVMSGBOXSINK g_pSink = nullptr;
void* g_pSinkContext = nullptr;
char g_szAppName[260] = "";
wchar_t g_wszAppName[260] = L"";

// Message texts may be long (lists of records); the box takes what fits here.
constexpr unsigned kTextSize = 8192;

std::wstring ToWide(char const* text) {
    std::wstring w;
    if (TestLeer(text))
        return w;
    wchar_t* p = NVMakeUNICODEWindowText(text, -1, 0);
    if (p) {
        w = p;
        NVFreeUNICODEWindowText(p);
    }
    return w;
}
} // namespace

NVMSGBOXSINK NVSetMsgBoxSink(NVMSGBOXSINK pSink, void* pContext, void** ppPrevContext) {
    NVMSGBOXSINK prev = g_pSink;
    if (ppPrevContext)
        *ppPrevContext = g_pSinkContext;
    g_pSink = pSink;
    g_pSinkContext = pContext;
    return prev;
}

int NVMessageBoxW(HWND hParent, wchar_t const* lpszText, wchar_t const* lpszTitle, unsigned int uFlags) {
    if (TestLeer(lpszTitle))
        lpszTitle = NVGetAppNameU();
    if (!lpszText)
        lpszText = L"";
    if (g_pSink)
        return g_pSink(g_pSinkContext, hParent, lpszTitle, lpszText, uFlags);
    return MessageBoxW(hParent, lpszText, lpszTitle, uFlags);
}

int NVMessageBox(HWND hParent, char const* lpszText, char const* lpszTitle, unsigned int uFlags) {
    std::wstring title = ToWide(lpszTitle);
    return NVMessageBoxW(hParent, ToWide(lpszText).c_str(), title.empty() ? nullptr : title.c_str(), uFlags);
}

int NVMsgBox_VA(HWND hParent, char const* lpszTitle, unsigned int uFlags, char const* lpszText,
                va_list args) {
    std::vector<char> text(kTextSize);
    VSNPrintf(text.data(), kTextSize, lpszText ? lpszText : "", args, 0);
    return NVMessageBox(hParent, text.data(), lpszTitle, uFlags);
}

int NVMsgBox_VA_W(HWND hParent, wchar_t const* lpszTitle, unsigned int uFlags, wchar_t const* lpszText,
                  va_list args) {
    std::vector<wchar_t> text(kTextSize);
    VSNPrintf(text.data(), kTextSize, lpszText ? lpszText : L"", args, 0);
    return NVMessageBoxW(hParent, text.data(), lpszTitle, uFlags);
}

int NVMsgBox(HWND hParent, char const* lpszTitle, unsigned int uFlags, char const* lpszText, ...) {
    va_list args;
    va_start(args, lpszText);
    int r = NVMsgBox_VA(hParent, lpszTitle, uFlags, lpszText, args);
    va_end(args);
    return r;
}

int NVMsgBoxW(HWND hParent, wchar_t const* lpszTitle, unsigned int uFlags, wchar_t const* lpszText, ...) {
    va_list args;
    va_start(args, lpszText);
    int r = NVMsgBox_VA_W(hParent, lpszTitle, uFlags, lpszText, args);
    va_end(args);
    return r;
}

HWND NVGetMsgBoxParent(HWND hWanted) {
    if (hWanted && IsWindow(hWanted)) {
        HWND root = GetAncestor(hWanted, GA_ROOT);
        return root ? root : hWanted;
    }
    return GetActiveWindow();
}

char const* NVGetAppName() {
    return g_szAppName;
}

wchar_t const* NVGetAppNameU() {
    return g_wszAppName;
}

void NVSetAppName(char const* lpszName) {
    StrNZCpy(g_szAppName, lpszName ? lpszName : "", sizeof g_szAppName);
    std::wstring w = ToWide(g_szAppName);
    StrNZCpy(g_wszAppName, w.c_str(), sizeof g_wszAppName / sizeof g_wszAppName[0]);
}
