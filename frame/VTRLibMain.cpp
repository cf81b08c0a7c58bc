// Load and unload steps of vantrel.dll.
#include "frame/VTRBrowserEmulation.h"
#include "frame/VTRStringTable.h"
#include "frame/VantrelBase.h"

#include "NVLanguage.h"

#include <objbase.h>

namespace {
HINSTANCE g_hInstance = nullptr;
}

HINSTANCE VTRGetInstance() {
    return g_hInstance;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID) {
    if (dwReason == DLL_PROCESS_ATTACH) {
        // The dialog list box registers its window class here, once that class exists.
        DisableThreadLibraryCalls(hInstance);
        g_hInstance = hInstance;
        VTRStringTable::Init(hInstance, false);
        // Pages shown in the embedded browser expect a current document mode, not the old default.
        VTRSetBrowserEmulation(NVIsWindowsVersionOrGreater(6, 0, 0) ? 10000 : 9000);
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    } else if (dwReason == DLL_PROCESS_DETACH) {
        VTRStringTable::Free();
        // The multi-selection radio button closes its themes here, once that class exists.
    }
    return TRUE;
}
