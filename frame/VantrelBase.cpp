#include "frame/VantrelBase.h"

#include "NVStrings.h"

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
