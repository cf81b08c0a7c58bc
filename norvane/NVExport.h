// Export macro of norvane.dll. Client modules and vantrel.dll import what norvane.dll exports.
#pragma once

#ifdef NV_BUILDING_DLL
#define NV_API __declspec(dllexport)
#else
#define NV_API __declspec(dllimport)
#endif
