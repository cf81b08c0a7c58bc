// Export macro of vantrel.dll for the classes and functions that client modules link.
#pragma once

#ifdef VTR_BUILDING_DLL
#define VTR_API __declspec(dllexport)
#else
#define VTR_API __declspec(dllimport)
#endif
