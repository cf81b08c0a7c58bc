// File and print dialogs, temporary files and file information.
//
// The dialogs can be answered by a sink instead of the screen (NVSetFileDialogSink,
// NVSetPrinterDCSink), as message boxes can: tests use it so that no modal dialog hangs a run, and a
// client may use it to script its exports.
#pragma once

#include "DynaArray.h"
#include "NVExport.h"

#include <windows.h>

// One language block of a file's version information.
struct NVStringFileInfo {
    WORD wLanguage;
    WORD wCodePage;
    char szCompanyName[128];
    char szFileDescription[256];
    char szFileVersion[64];
    char szInternalName[128];
    char szLegalCopyright[256];
    char szOriginalFilename[260];
    char szProductName[128]; // the display name of the product: the module name of message titles
    char szProductVersion[64];
};

struct NVFileInfo {
    DWORD dwAttributes;
    unsigned __int64 qwSize;
    FILETIME ftCreation;
    FILETIME ftLastAccess;
    FILETIME ftLastWrite;
    bool bHasVersion; // the file has version information; the fields below are valid
    DWORD dwFileVersionMS;
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DynaArrayTpl<NVStringFileInfo, 0, 0> daStringFileInfo; // one record per language block, in file order
};

// Fills info with the file's attributes, size, times and version information (empty array when
// the file has none). False when the file cannot be found; dwError then holds the system's code,
// 0 otherwise.
NV_API bool NVGetFileInfo(char const* lpszPath, NVFileInfo& info, unsigned long& dwError);

// The file dialogs. lpszFilter is "name|*.ext|name|*.ext..." (null: all files); lpszExt the
// extension added to a name typed without one ("csv" or ".csv"). lpszPath (uSize bytes) holds the
// initial file or folder and receives the chosen path. False on cancel.
// bMustExist: only an existing file can be chosen. bOverwritePrompt: choosing an existing file asks
// first.
NV_API bool BrowseReadFile(HWND hParent, char const* lpszTitle, char* lpszPath, char const* lpszFilter,
                           char const* lpszExt, bool bMustExist, unsigned int uSize);
NV_API bool BrowseWriteFile(HWND hParent, char const* lpszTitle, char* lpszPath, char const* lpszFilter,
                            bool bOverwritePrompt, char const* lpszExt, unsigned int uSize);

// Answers the file dialogs instead of the screen: the sink gets what the dialog would show and
// writes the chosen path (uSize bytes); false means cancel. Null gives the dialogs back. Returns
// the previous sink.
typedef bool(CALLBACK* NVFILEDLGSINK)(void* pContext, HWND hParent, bool bSave, char const* lpszTitle,
                                      char const* lpszFilter, char const* lpszExt, char* lpszPath,
                                      unsigned int uSize);
NV_API NVFILEDLGSINK NVSetFileDialogSink(NVFILEDLGSINK pSink, void* pContext, void** ppPrevContext = nullptr);

// Creates an empty file with a new name and the extension in lpszDir (null: the temporary folder)
// and writes its path to lpszPath (MAX_PATH bytes). bTemporary marks it FILE_ATTRIBUTE_TEMPORARY,
// so that the system keeps it in memory where it can.
NV_API bool CreateTempFile(char const* lpszDir, bool bTemporary, char const* lpszExt, char* lpszPath);

// A printer device context: with bShowDialog from the print dialog, otherwise for the default
// printer. dwCopies receives the copies the caller has to print itself (1 when the driver makes
// them). abortProc, when given, is set on the context. Null on cancel or failure.
typedef int(CALLBACK* NVABORTPROC)(HDC, int);
NV_API HDC GetPrinterDC(HWND hParent, bool bShowDialog, unsigned long& dwCopies, NVABORTPROC abortProc);

// Answers GetPrinterDC instead of the print dialog: returns the context (null: cancel) and sets the
// copies. Returns the previous sink.
typedef HDC(CALLBACK* NVPRINTERDCSINK)(void* pContext, HWND hParent, bool bShowDialog,
                                       unsigned long& dwCopies);
NV_API NVPRINTERDCSINK NVSetPrinterDCSink(NVPRINTERDCSINK pSink, void* pContext,
                                          void** ppPrevContext = nullptr);
