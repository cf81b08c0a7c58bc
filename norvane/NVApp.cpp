#include "NVApp.h"

#include "NVStrings.h"

namespace {
char g_szRegBaseKey[260] = "Software\\Vantrel";
}

char const* NVGetRegAppBaseKey() {
    return g_szRegBaseKey;
}

void NVSetRegAppBaseKey(char const* lpszKey) {
    StrNZCpy(g_szRegBaseKey, TestLeer(lpszKey) ? "Software\\Vantrel" : lpszKey, sizeof g_szRegBaseKey);
}
