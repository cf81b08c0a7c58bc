#include "NVFileDialogs.h"

#include "NVLanguage.h"
#include "NVStrings.h"

#include <commdlg.h>

#include <cstring>
#include <string>
#include <vector>

namespace {
NVFILEDLGSINK g_pFileSink = nullptr;
void* g_pFileSinkContext = nullptr;
NVPRINTERDCSINK g_pPrinterSink = nullptr;
void* g_pPrinterSinkContext = nullptr;

// "name|*.ext|..." as the dialog wants it: parts ended by a zero and the list by a second one.
std::vector<char> DialogFilter(char const* lpszFilter) {
    std::vector<char> out;
    if (TestLeer(lpszFilter))
        return out;
    std::string f = lpszFilter;
    // A pattern alone names itself.
    if (f.find('|') == std::string::npos)
        f = f + "|" + f;
    for (char c : f)
        out.push_back(c == '|' ? '\0' : c);
    if (out.back() != '\0')
        out.push_back('\0');
    out.push_back('\0');
    return out;
}

// "csv", ".csv" and "*.csv" all mean csv.
std::string BareExt(char const* lpszExt) {
    std::string e = lpszExt ? lpszExt : "";
    size_t dot = e.rfind('.');
    if (dot != std::string::npos)
        e = e.substr(dot + 1);
    if (e == "*")
        e.clear();
    return e;
}

void AddExtIfMissing(char* lpszPath, unsigned int uSize, std::string const& ext) {
    if (ext.empty() || !lpszPath[0])
        return;
    char const* name = std::strrchr(lpszPath, '\\');
    name = name ? name + 1 : lpszPath;
    if (std::strchr(name, '.'))
        return;
    std::string withExt = std::string(lpszPath) + "." + ext;
    if (withExt.size() < uSize)
        StrNZCpy(lpszPath, withExt.c_str(), uSize);
}

bool IsFolder(char const* lpszPath) {
    DWORD attr = GetFileAttributesA(lpszPath);
    return attr != INVALID_FILE_ATTRIBUTES && (attr & FILE_ATTRIBUTE_DIRECTORY);
}

bool Browse(HWND hParent, bool bSave, char const* lpszTitle, char* lpszPath, char const* lpszFilter,
            char const* lpszExt, bool bFlag, unsigned int uSize) {
    if (!lpszPath || uSize < 2)
        return false;
    std::string ext = BareExt(lpszExt);
    bool bOk;
    if (g_pFileSink) {
        bOk =
            g_pFileSink(g_pFileSinkContext, hParent, bSave, lpszTitle, lpszFilter, lpszExt, lpszPath, uSize);
    } else {
        std::vector<char> filter = DialogFilter(lpszFilter);
        std::vector<char> file(uSize < MAX_PATH ? MAX_PATH : uSize, '\0');
        std::string initialDir;
        if (IsFolder(lpszPath))
            initialDir = lpszPath;
        else
            StrNZCpy(file.data(), lpszPath, static_cast<unsigned>(file.size()));
        OPENFILENAMEA ofn{};
        ofn.lStructSize = sizeof ofn;
        ofn.hwndOwner = hParent;
        ofn.lpstrFilter = filter.empty() ? nullptr : filter.data();
        ofn.nFilterIndex = 1;
        ofn.lpstrFile = file.data();
        ofn.nMaxFile = static_cast<DWORD>(file.size());
        ofn.lpstrInitialDir = initialDir.empty() ? nullptr : initialDir.c_str();
        ofn.lpstrTitle = TestLeer(lpszTitle) ? nullptr : lpszTitle;
        ofn.lpstrDefExt = ext.empty() ? nullptr : ext.c_str();
        ofn.Flags = OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
        if (bSave) {
            if (bFlag)
                ofn.Flags |= OFN_OVERWRITEPROMPT;
            bOk = GetSaveFileNameA(&ofn) != FALSE;
        } else {
            if (bFlag)
                ofn.Flags |= OFN_FILEMUSTEXIST;
            bOk = GetOpenFileNameA(&ofn) != FALSE;
        }
        if (bOk) {
            if (std::strlen(file.data()) >= uSize)
                return false; // a cut path would name another file
            StrNZCpy(lpszPath, file.data(), uSize);
        }
    }
    if (!bOk || !lpszPath[0])
        return false;
    AddExtIfMissing(lpszPath, uSize, ext);
    // Whoever answered, an open that must find its file fails on a missing one.
    if (!bSave && bFlag && GetFileAttributesA(lpszPath) == INVALID_FILE_ATTRIBUTES)
        return false;
    return true;
}

// version.dll is loaded on demand: norvane.dll does not link it, and only NVGetFileInfo needs it.
struct VersionApi {
    typedef DWORD(WINAPI* SizeProc)(LPCSTR, LPDWORD);
    typedef BOOL(WINAPI* InfoProc)(LPCSTR, DWORD, DWORD, LPVOID);
    typedef BOOL(WINAPI* QueryProc)(LPCVOID, LPCSTR, LPVOID*, PUINT);
    SizeProc pSize = nullptr;
    InfoProc pInfo = nullptr;
    QueryProc pQuery = nullptr;
    VersionApi() {
        HMODULE h = LoadLibraryW(L"version.dll");
        if (!h)
            return;
        pSize =
            reinterpret_cast<SizeProc>(reinterpret_cast<void*>(GetProcAddress(h, "GetFileVersionInfoSizeA")));
        pInfo = reinterpret_cast<InfoProc>(reinterpret_cast<void*>(GetProcAddress(h, "GetFileVersionInfoA")));
        pQuery = reinterpret_cast<QueryProc>(reinterpret_cast<void*>(GetProcAddress(h, "VerQueryValueA")));
    }
    bool Ok() const { return pSize && pInfo && pQuery; }
};

VersionApi const& Version() {
    static VersionApi api;
    return api;
}

void QueryString(void* block, WORD wLang, WORD wCP, char const* name, char* out, unsigned size) {
    char path[128];
    wsprintfA(path, "\\StringFileInfo\\%04x%04x\\%s", wLang, wCP, name);
    void* value = nullptr;
    UINT len = 0;
    if (Version().pQuery(block, path, &value, &len) && value && len)
        StrNZCpy(out, static_cast<char const*>(value), size);
}

void ReadVersion(char const* lpszPath, NVFileInfo& info) {
    VersionApi const& api = Version();
    if (!api.Ok())
        return;
    DWORD dummy = 0;
    DWORD size = api.pSize(lpszPath, &dummy);
    if (!size)
        return;
    std::vector<char> block(size);
    if (!api.pInfo(lpszPath, 0, size, block.data()))
        return;
    VS_FIXEDFILEINFO* ffi = nullptr;
    UINT len = 0;
    if (api.pQuery(block.data(), "\\", reinterpret_cast<void**>(&ffi), &len) && ffi && len >= sizeof *ffi) {
        info.bHasVersion = true;
        info.dwFileVersionMS = ffi->dwFileVersionMS;
        info.dwFileVersionLS = ffi->dwFileVersionLS;
        info.dwProductVersionMS = ffi->dwProductVersionMS;
        info.dwProductVersionLS = ffi->dwProductVersionLS;
    }
    struct LangCP {
        WORD wLang;
        WORD wCP;
    }* langs = nullptr;
    if (!api.pQuery(block.data(), "\\VarFileInfo\\Translation", reinterpret_cast<void**>(&langs), &len) ||
        !langs)
        return;
    for (UINT i = 0; i < len / sizeof(LangCP); ++i) {
        NVStringFileInfo sfi{};
        sfi.wLanguage = langs[i].wLang;
        sfi.wCodePage = langs[i].wCP;
        void* b = block.data();
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "CompanyName", sfi.szCompanyName,
                    sizeof sfi.szCompanyName);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "FileDescription", sfi.szFileDescription,
                    sizeof sfi.szFileDescription);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "FileVersion", sfi.szFileVersion,
                    sizeof sfi.szFileVersion);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "InternalName", sfi.szInternalName,
                    sizeof sfi.szInternalName);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "LegalCopyright", sfi.szLegalCopyright,
                    sizeof sfi.szLegalCopyright);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "OriginalFilename", sfi.szOriginalFilename,
                    sizeof sfi.szOriginalFilename);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "ProductName", sfi.szProductName,
                    sizeof sfi.szProductName);
        QueryString(b, sfi.wLanguage, sfi.wCodePage, "ProductVersion", sfi.szProductVersion,
                    sizeof sfi.szProductVersion);
        info.daStringFileInfo.Add(sfi);
    }
}
} // namespace

NVFILEDLGSINK NVSetFileDialogSink(NVFILEDLGSINK pSink, void* pContext, void** ppPrevContext) {
    NVFILEDLGSINK prev = g_pFileSink;
    if (ppPrevContext)
        *ppPrevContext = g_pFileSinkContext;
    g_pFileSink = pSink;
    g_pFileSinkContext = pContext;
    return prev;
}

NVPRINTERDCSINK NVSetPrinterDCSink(NVPRINTERDCSINK pSink, void* pContext, void** ppPrevContext) {
    NVPRINTERDCSINK prev = g_pPrinterSink;
    if (ppPrevContext)
        *ppPrevContext = g_pPrinterSinkContext;
    g_pPrinterSink = pSink;
    g_pPrinterSinkContext = pContext;
    return prev;
}

bool BrowseReadFile(HWND hParent, char const* lpszTitle, char* lpszPath, char const* lpszFilter,
                    char const* lpszExt, bool bMustExist, unsigned int uSize) {
    return Browse(hParent, false, lpszTitle, lpszPath, lpszFilter, lpszExt, bMustExist, uSize);
}

bool BrowseWriteFile(HWND hParent, char const* lpszTitle, char* lpszPath, char const* lpszFilter,
                     bool bOverwritePrompt, char const* lpszExt, unsigned int uSize) {
    return Browse(hParent, true, lpszTitle, lpszPath, lpszFilter, lpszExt, bOverwritePrompt, uSize);
}

bool CreateTempFile(char const* lpszDir, bool bTemporary, char const* lpszExt, char* lpszPath) {
    if (!lpszPath)
        return false;
    lpszPath[0] = 0;
    char dir[MAX_PATH];
    if (TestLeer(lpszDir)) {
        if (!GetTempPathA(MAX_PATH, dir))
            return false;
    } else {
        StrNZCpy(dir, lpszDir, MAX_PATH);
    }
    std::string ext = BareExt(lpszExt);
    static LONG s_counter = 0;
    DWORD seed = GetTickCount() ^ (GetCurrentProcessId() << 16);
    for (int attempt = 0; attempt < 1000; ++attempt) {
        char name[64];
        wsprintfA(name, "NV%08lX%s%s", static_cast<unsigned long>(seed + InterlockedIncrement(&s_counter)),
                  ext.empty() ? "" : ".", ext.c_str());
        char path[MAX_PATH * 2];
        StrNZCpy(path, dir, sizeof path);
        AppendFile(path, name);
        if (std::strlen(path) >= MAX_PATH)
            return false;
        HANDLE h = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                               bTemporary ? FILE_ATTRIBUTE_TEMPORARY : FILE_ATTRIBUTE_NORMAL, nullptr);
        if (h != INVALID_HANDLE_VALUE) {
            CloseHandle(h);
            StrNZCpy(lpszPath, path, MAX_PATH);
            return true;
        }
        DWORD err = GetLastError();
        if (err != ERROR_FILE_EXISTS && err != ERROR_ALREADY_EXISTS)
            return false;
    }
    return false;
}

bool NVGetFileInfo(char const* lpszPath, NVFileInfo& info, unsigned long& dwError) {
    dwError = 0;
    info.dwAttributes = 0;
    info.qwSize = 0;
    info.ftCreation = info.ftLastAccess = info.ftLastWrite = FILETIME{0, 0};
    info.bHasVersion = false;
    info.dwFileVersionMS = info.dwFileVersionLS = info.dwProductVersionMS = info.dwProductVersionLS = 0;
    info.daStringFileInfo.Clear(false);
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (TestLeer(lpszPath) || !GetFileAttributesExA(lpszPath, GetFileExInfoStandard, &data)) {
        dwError = TestLeer(lpszPath) ? ERROR_INVALID_PARAMETER : GetLastError();
        return false;
    }
    info.dwAttributes = data.dwFileAttributes;
    info.qwSize = (static_cast<unsigned __int64>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    info.ftCreation = data.ftCreationTime;
    info.ftLastAccess = data.ftLastAccessTime;
    info.ftLastWrite = data.ftLastWriteTime;
    if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
        ReadVersion(lpszPath, info);
    return true;
}

HDC GetPrinterDC(HWND hParent, bool bShowDialog, unsigned long& dwCopies, NVABORTPROC abortProc) {
    dwCopies = 1;
    HDC hdc = nullptr;
    if (g_pPrinterSink) {
        hdc = g_pPrinterSink(g_pPrinterSinkContext, hParent, bShowDialog, dwCopies);
    } else {
        PRINTDLGA pd{};
        pd.lStructSize = sizeof pd;
        pd.hwndOwner = hParent;
        pd.Flags = PD_RETURNDC | PD_NOSELECTION | PD_NOPAGENUMS | (bShowDialog ? 0 : PD_RETURNDEFAULT);
        pd.nCopies = 1;
        if (PrintDlgA(&pd)) {
            hdc = pd.hDC;
            // With PD_USEDEVMODECOPIESANDCOLLATE unset, nCopies is what the driver does not do itself.
            dwCopies = pd.nCopies ? pd.nCopies : 1;
        }
        if (pd.hDevMode)
            GlobalFree(pd.hDevMode);
        if (pd.hDevNames)
            GlobalFree(pd.hDevNames);
    }
    if (hdc && abortProc)
        SetAbortProc(hdc, abortProc);
    return hdc;
}
