// Document mode of the WebBrowser control for this process.
#pragma once

#include "frame/VTRExport.h"

#include <windows.h>

// Raises the per-user FEATURE_BROWSER_EMULATION value named after the running program to dwValue
// (e.g. 10000 or 11001); a higher stored value is left alone. True when nothing failed.
VTR_API bool VTRSetBrowserEmulation(DWORD dwValue);
