#include "frame/VantrelBase.h"

#include "frame/VTRStringIds.h"
#include "frame/VTRStringTable.h"

#include "NVApp.h"
#include "NVMsgBox.h"
#include "NVStrings.h"

#include <cstdarg>
#include <cstring>

namespace {
// Boxes of the library come to the front even when the client's window is not active.
unsigned int const kErrMsgStyle = MB_SETFOREGROUND | MB_ICONINFORMATION;
char const kHistKey[] = "VantrelHist";
} // namespace

VantrelBase::VantrelBase() : m_hWnd(nullptr) {
    m_szIdent[0] = 0;
}

VantrelBase::~VantrelBase() = default;

void VantrelBase::OnSetIdent(char const*) {}

void VantrelBase::Assign(HWND hWnd) {
    m_hWnd = hWnd;
}

void VantrelBase::UnAssign() {
    m_hWnd = nullptr;
}

LRESULT VantrelBase::HandleNotify(WPARAM, LPARAM lParam) {
    return OnNotify(reinterpret_cast<NMHDR*>(lParam));
}

LRESULT VantrelBase::OnNotify(NMHDR*) {
    return 0;
}

void VantrelBase::ClearAll() {}

bool VantrelBase::StoreSettings() {
    return false;
}

bool VantrelBase::RestoreSettings() {
    return false;
}

bool VantrelBase::SetIdent(char const* ident) {
    StrNZCpy(m_szIdent, ident ? ident : "", IDENT_SIZE);
    OnSetIdent(m_szIdent);
    return true;
}

bool VantrelBase::GetHistRegKey(HKEY& key, char* path, char const* ident) const {
    if (!path)
        return false;
    char const* lpszIdent = ident ? ident : m_szIdent;
    if (!*lpszIdent)
        return false;
    char const* lpszBase = NVGetRegAppBaseKey();
    // Base, two separators, "VantrelHist" and the identity must fit the caller's MAX_PATH buffer.
    if (std::strlen(lpszBase) + std::strlen(kHistKey) + std::strlen(lpszIdent) + 3 > MAX_PATH)
        return false;
    key = HKEY_CURRENT_USER;
    std::strcpy(path, lpszBase);
    AppendFile(path, kHistKey);
    AppendFile(path, lpszIdent);
    return true;
}

int VantrelBase::AddIconToImageList(HIMAGELIST list, HINSTANCE inst, int id) {
    HICON hIcon = static_cast<HICON>(
        LoadImageA(inst ? inst : VTRGetInstance(), MAKEINTRESOURCEA(id), IMAGE_ICON, 16, 16, 0));
    if (!hIcon)
        return -1;
    int iIndex = -1;
    ICONINFO info{};
    if (GetIconInfo(hIcon, &info)) {
        iIndex = ImageList_Add(list, info.hbmColor, info.hbmMask);
        if (info.hbmColor)
            DeleteObject(info.hbmColor);
        if (info.hbmMask)
            DeleteObject(info.hbmMask);
    }
    DestroyIcon(hIcon);
    return iIndex;
}

void VantrelBase::ErrMsg(HWND parent, char const* format, ...) {
    va_list args;
    va_start(args, format);
    NVMsgBox_VA(parent, VTRStringTable::GetText(IDS_VTR_ERROR_TITLE), kErrMsgStyle, format, args);
    va_end(args);
}

void VantrelBase::ErrMsg(HWND parent, wchar_t const* format, ...) {
    va_list args;
    va_start(args, format);
    NVMsgBox_VA_W(parent, VTRStringTable::GetTextW(IDS_VTR_ERROR_TITLE), kErrMsgStyle, format, args);
    va_end(args);
}

int VantrelBase::AskMsg(HWND parent, char const* title, unsigned int style, char const* format, ...) {
    va_list args;
    va_start(args, format);
    int iResult = NVMsgBox_VA(parent, title ? title : VTRStringTable::GetText(IDS_VTR_ASK_TITLE),
                              style | MB_SETFOREGROUND, format, args);
    va_end(args);
    return iResult;
}

char const* VTRGetDifferntText() {
    return VTRStringTable::GetText(IDS_VTR_DIFFERENT);
}

char const* VTRGetAnzeigenText() {
    return VTRStringTable::GetText(IDS_VTR_DISPLAY);
}
