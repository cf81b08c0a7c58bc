#include "frame/VTRBrowserEmulation.h"

#include <cstring>

namespace {
char const kFeatureKey[] =
    "Software\\Microsoft\\Internet Explorer\\Main\\FeatureControl\\FEATURE_BROWSER_EMULATION";
}

bool VTRSetBrowserEmulation(DWORD dwValue) {
    char szPath[MAX_PATH];
    DWORD dwLen = GetModuleFileNameA(nullptr, szPath, MAX_PATH);
    if (dwLen == 0 || dwLen >= MAX_PATH)
        return false;
    char const* lpszName = std::strrchr(szPath, '\\');
    lpszName = lpszName ? lpszName + 1 : szPath;

    // Per user only: the machine-wide key needs rights a ticket desk does not have.
    HKEY hKey = nullptr;
    DWORD dwDisposition = 0;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, kFeatureKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &hKey,
                        &dwDisposition) != ERROR_SUCCESS)
        return false;

    DWORD dwStored = 0;
    if (dwDisposition == REG_OPENED_EXISTING_KEY) {
        DWORD dwType = 0;
        DWORD dwSize = sizeof(dwStored);
        if (RegQueryValueExA(hKey, lpszName, nullptr, &dwType, reinterpret_cast<BYTE*>(&dwStored), &dwSize) !=
                ERROR_SUCCESS ||
            dwType != REG_DWORD || dwSize != sizeof(dwStored))
            dwStored = 0;
    }

    bool bOk = true;
    if (dwStored < dwValue)
        bOk = RegSetValueExA(hKey, lpszName, 0, REG_DWORD, reinterpret_cast<BYTE const*>(&dwValue),
                             sizeof(dwValue)) == ERROR_SUCCESS;
    RegCloseKey(hKey);
    return bOk;
}
