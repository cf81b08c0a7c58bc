#include "CMessageBox.h"

#include "NVApp.h"
#include "NVFormat.h"
#include "NVMsgBox.h"
#include "NVStrings.h"

#include <cstdarg>

static_assert(sizeof(CMessageBox::RegisterdMessageBox) == 360, "rows of the visibility dialog copy it whole");

namespace {
char g_szDontShowKey[300];

void OwnValueName(DWORD dwID, char* out, unsigned size) {
    SNPrintf(out, size, "MsgBox_%lu", static_cast<unsigned long>(dwID));
}

// Reads the record's setting; a missing key or value means the box is shown.
void ReadSetting(CMessageBox::RegisterdMessageBox& box) {
    box.bDontShow = false;
    HKEY hKey;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, NVGetpDontShowMeThisDialogAgainRegKey(), 0, KEY_READ, &hKey) !=
        ERROR_SUCCESS)
        return;
    if (box.bUseRegValue) {
        char data[16] = "";
        DWORD cb = sizeof data - 1, type = 0;
        if (RegQueryValueExA(hKey, box.szRegValue, nullptr, &type, reinterpret_cast<BYTE*>(data), &cb) ==
                ERROR_SUCCESS &&
            type == REG_SZ) {
            data[cb < sizeof data ? cb : sizeof data - 1] = 0;
            box.bDontShow = lstrcmpiA(data, "NO") == 0;
        }
    } else {
        char name[32];
        OwnValueName(box.dwID, name, sizeof name);
        DWORD value = 0, cb = sizeof value, type = 0;
        if (RegQueryValueExA(hKey, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &cb) ==
                ERROR_SUCCESS &&
            type == REG_DWORD)
            box.bDontShow = value != 0;
    }
    RegCloseKey(hKey);
}
} // namespace

char const* NVGetpDontShowMeThisDialogAgainRegKey() {
    StrNZCpy(g_szDontShowKey, NVGetRegAppBaseKey(), sizeof g_szDontShowKey);
    AppendFile(g_szDontShowKey, "DontShowAgain");
    return g_szDontShowKey;
}

CMessageBox::CMessageBox() = default;

DynaArrayTpl<CMessageBox::RegisterdMessageBox, 0, 0>& CMessageBox::GetdaRegisterdMessageBox() {
    static DynaArrayTpl<RegisterdMessageBox, 0, 0> s_table;
    return s_table;
}

bool CMessageBox::RegisterMessageBox(DWORD dwID, char const* lpszText, char const* lpszRegValue) {
    if (!dwID)
        return false;
    RegisterdMessageBox box{};
    box.dwID = dwID;
    StrNZCpy(box.szText, lpszText ? lpszText : "", sizeof box.szText);
    box.bUseRegValue = !TestLeer(lpszRegValue);
    if (box.bUseRegValue)
        StrNZCpy(box.szRegValue, lpszRegValue, sizeof box.szRegValue);
    ReadSetting(box);
    DynaArrayTpl<RegisterdMessageBox, 0, 0>& table = GetdaRegisterdMessageBox();
    for (int i = 0; i < table.GetCount(); ++i)
        if (table.Get(i)->dwID == dwID)
            return table.Update(i, box);
    return table.Add(box) >= 0;
}

CMessageBox::RegisterdMessageBox* CMessageBox::FindRegisteredMessageBox(unsigned long dwID) {
    DynaArrayTpl<RegisterdMessageBox, 0, 0>& table = GetdaRegisterdMessageBox();
    for (int i = 0; i < table.GetCount(); ++i)
        if (table.Get(i)->dwID == dwID)
            return table.Get(i);
    return nullptr;
}

bool CMessageBox::StoreRegisteredMessageBox(RegisterdMessageBox* pBox) {
    if (!pBox || !pBox->dwID)
        return false;
    HKEY hKey;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, NVGetpDontShowMeThisDialogAgainRegKey(), 0, nullptr, 0, KEY_WRITE,
                        nullptr, &hKey, nullptr) != ERROR_SUCCESS)
        return false;
    LONG rc;
    if (pBox->bUseRegValue) {
        // The visibility dialog writes the same two bytes without a terminator.
        rc = pBox->bDontShow
                 ? RegSetValueExA(hKey, pBox->szRegValue, 0, REG_SZ, reinterpret_cast<BYTE const*>("NO"), 2)
                 : RegDeleteValueA(hKey, pBox->szRegValue);
        if (rc == ERROR_FILE_NOT_FOUND)
            rc = ERROR_SUCCESS;
    } else {
        char name[32];
        OwnValueName(pBox->dwID, name, sizeof name);
        DWORD value = pBox->bDontShow ? 1 : 0;
        rc = RegSetValueExA(hKey, name, 0, REG_DWORD, reinterpret_cast<BYTE const*>(&value), sizeof value);
    }
    RegCloseKey(hKey);
    if (rc != ERROR_SUCCESS)
        return false;
    DynaArrayTpl<RegisterdMessageBox, 0, 0>& table = GetdaRegisterdMessageBox();
    for (int i = 0; i < table.GetCount(); ++i) {
        RegisterdMessageBox* p = table.Get(i);
        if (p->dwID == pBox->dwID)
            return p == pBox || table.Update(i, *pBox);
    }
    return table.Add(*pBox) >= 0;
}

bool CMessageBox::DeleteRegisteredMessageBox(unsigned long dwID) {
    DynaArrayTpl<RegisterdMessageBox, 0, 0>& table = GetdaRegisterdMessageBox();
    for (int i = 0; i < table.GetCount(); ++i) {
        RegisterdMessageBox box = *table.Get(i);
        if (box.dwID != dwID)
            continue;
        table.Delete(i);
        HKEY hKey;
        if (RegOpenKeyExA(HKEY_CURRENT_USER, NVGetpDontShowMeThisDialogAgainRegKey(), 0, KEY_WRITE, &hKey) ==
            ERROR_SUCCESS) {
            char name[32];
            OwnValueName(box.dwID, name, sizeof name);
            RegDeleteValueA(hKey, box.bUseRegValue ? box.szRegValue : name);
            RegCloseKey(hKey);
        }
        return true;
    }
    return false;
}

bool CMessageBox::IsSwitchedOff(unsigned long dwID) {
    RegisterdMessageBox* pBox = FindRegisteredMessageBox(dwID);
    if (!pBox)
        return false;
    ReadSetting(*pBox);
    return pBox->bDontShow;
}

int CMessageBox::Show(HWND hParent, unsigned long dwID, char const* lpszTitle, UINT uFlags,
                      int iAnswerWhenOff, char const* lpszFormat, ...) {
    if (IsSwitchedOff(dwID))
        return iAnswerWhenOff;
    RegisterdMessageBox* pBox = FindRegisteredMessageBox(dwID);
    char const* lpszText = lpszFormat ? lpszFormat : pBox ? pBox->szText : "";
    va_list args;
    va_start(args, lpszFormat);
    int r = NVMsgBox_VA(NVGetMsgBoxParent(hParent), lpszTitle, uFlags, lpszText, args);
    va_end(args);
    return r;
}
