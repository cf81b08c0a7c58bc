// The application's place in the registry.
#pragma once

#include "NVExport.h"

// The application's base key below HKEY_CURRENT_USER, "Software\Vantrel" unless a client sets its own.
NV_API char const* NVGetRegAppBaseKey();
NV_API void NVSetRegAppBaseKey(char const* lpszKey);
