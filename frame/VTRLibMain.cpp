// Load and unload steps of vantrel.dll.
#include "frame/VantrelBase.h"

namespace {
HINSTANCE g_hInstance = nullptr;
}

HINSTANCE VTRGetInstance() {
    return g_hInstance;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID) {
    if (dwReason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(hInstance);
        g_hInstance = hInstance;
    }
    return TRUE;
}
