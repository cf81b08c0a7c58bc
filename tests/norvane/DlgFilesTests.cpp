// File dialogs answered through their sink, temporary files, file information with the version
// record, the printer context, and the registered message boxes in the real registry.
#include "CMessageBox.h"
#include "NVApp.h"
#include "NVFileDialogs.h"
#include "NVStrings.h"

#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <string>

using vtrtest::MsgBoxRecorder;
using vtrtest::TempDir;

namespace {

struct FileAnswer {
    bool bAnswer = true;
    std::string path;
    int iCalls = 0;
    bool bSave = false;
    std::string title, filter, ext, initial;
    static bool CALLBACK Sink(void* ctx, HWND, bool bSave, char const* lpszTitle, char const* lpszFilter,
                              char const* lpszExt, char* lpszPath, unsigned int uSize) {
        auto* self = static_cast<FileAnswer*>(ctx);
        ++self->iCalls;
        self->bSave = bSave;
        self->title = lpszTitle ? lpszTitle : "";
        self->filter = lpszFilter ? lpszFilter : "";
        self->ext = lpszExt ? lpszExt : "";
        self->initial = lpszPath;
        StrNZCpy(lpszPath, self->path.c_str(), uSize);
        return self->bAnswer;
    }
};

class FileSinkScope {
public:
    explicit FileSinkScope(FileAnswer& answer) {
        m_prev = NVSetFileDialogSink(&FileAnswer::Sink, &answer, &m_ctx);
    }
    ~FileSinkScope() { NVSetFileDialogSink(m_prev, m_ctx); }

private:
    NVFILEDLGSINK m_prev;
    void* m_ctx = nullptr;
};

TEST(DlgFiles, BrowseDialogsTakeTheAnswerAndAddTheExtension) {
    TempDir dir;
    FileAnswer answer;
    FileSinkScope scope(answer);
    char path[MAX_PATH];
    StrNZCpy(path, "C:\\start\\list.csv", sizeof path);
    answer.path = dir.File("export");
    EXPECT_TRUE(
        BrowseWriteFile(nullptr, "Export", path, "CSV files|*.csv|All files|*.*", true, "csv", sizeof path));
    EXPECT_EQ(answer.path + ".csv", path) << "a name without extension gets the default one";
    EXPECT_TRUE(answer.bSave);
    EXPECT_EQ("Export", answer.title);
    EXPECT_EQ("CSV files|*.csv|All files|*.*", answer.filter);
    EXPECT_EQ("C:\\start\\list.csv", answer.initial) << "the dialog starts at the given path";

    answer.path = dir.File("export.txt");
    EXPECT_TRUE(BrowseWriteFile(nullptr, "Export", path, nullptr, false, ".csv", sizeof path));
    EXPECT_EQ(answer.path, path) << "an extension of the user's stays";

    answer.bAnswer = false;
    EXPECT_FALSE(BrowseWriteFile(nullptr, "Export", path, nullptr, false, "csv", sizeof path)) << "cancel";

    // Reading: a file that must exist has to.
    answer.bAnswer = true;
    answer.path = dir.File("missing.csv");
    EXPECT_FALSE(BrowseReadFile(nullptr, "Import", path, "CSV|*.csv", "csv", true, sizeof path));
    EXPECT_FALSE(answer.bSave);
    EXPECT_TRUE(BrowseReadFile(nullptr, "Import", path, "CSV|*.csv", "csv", false, sizeof path));
    FILE* f = std::fopen(answer.path.c_str(), "wb");
    ASSERT_NE(nullptr, f);
    std::fclose(f);
    EXPECT_TRUE(BrowseReadFile(nullptr, "Import", path, "CSV|*.csv", "csv", true, sizeof path));
    EXPECT_EQ(answer.path, path);

    char tiny[8] = "";
    answer.path = dir.File("export");
    EXPECT_FALSE(BrowseWriteFile(nullptr, "Export", tiny, nullptr, false, "csv", 1)) << "no room for a path";
}

TEST(DlgFiles, TempFilesAreNewEmptyAndCarryTheExtension) {
    TempDir dir;
    char a[MAX_PATH], b[MAX_PATH];
    ASSERT_TRUE(CreateTempFile(dir.path().c_str(), false, "csv", a));
    ASSERT_TRUE(CreateTempFile(dir.path().c_str(), true, ".html", b));
    EXPECT_STRNE(a, b);
    EXPECT_EQ(0, std::string(a).find(dir.path() + "\\")) << a;
    EXPECT_EQ(".csv", std::string(a).substr(strlen(a) - 4));
    EXPECT_EQ(".html", std::string(b).substr(strlen(b) - 5));
    WIN32_FILE_ATTRIBUTE_DATA data;
    ASSERT_TRUE(GetFileAttributesExA(a, GetFileExInfoStandard, &data));
    EXPECT_EQ(0u, data.nFileSizeLow);
    // FILE_ATTRIBUTE_TEMPORARY of the second file is not checked: Wine does not keep that attribute.
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(b));

    char c[MAX_PATH];
    ASSERT_TRUE(CreateTempFile(nullptr, false, "txt", c));
    char tempDir[MAX_PATH];
    GetTempPathA(MAX_PATH, tempDir);
    EXPECT_EQ(0, StrNICmp(c, tempDir, static_cast<unsigned>(strlen(tempDir)))) << c;
    DeleteFileA(c);
    EXPECT_FALSE(CreateTempFile((dir.path() + "\\no\\such").c_str(), false, "csv", c));
    EXPECT_STREQ("", c);
}

TEST(DlgFiles, FileInfoReadsAttributesAndVersionRecords) {
    char exe[MAX_PATH];
    GetModuleFileNameA(nullptr, exe, MAX_PATH);
    NVFileInfo info;
    unsigned long err = 99;
    ASSERT_TRUE(NVGetFileInfo(exe, info, err));
    EXPECT_EQ(0ul, err);
    EXPECT_GT(info.qwSize, 0ull);
    ASSERT_TRUE(info.bHasVersion);
    EXPECT_EQ(MAKELONG(1, 3), info.dwFileVersionMS);
    EXPECT_EQ(MAKELONG(15, 4), info.dwFileVersionLS);
    ASSERT_EQ(1, info.daStringFileInfo.GetCount());
    NVStringFileInfo const* sfi = info.daStringFileInfo.Get(0);
    EXPECT_EQ(0x0409, sfi->wLanguage);
    EXPECT_EQ(1200, sfi->wCodePage);
    EXPECT_STREQ("Norvane Dialog Tests", sfi->szProductName);
    EXPECT_STREQ("Dialog base tests", sfi->szFileDescription);
    EXPECT_STREQ("3.1.4.15", sfi->szFileVersion);
    EXPECT_STREQ("", sfi->szLegalCopyright) << "a missing value stays empty";

    TempDir dir;
    std::string plain = dir.File("plain.txt");
    FILE* f = std::fopen(plain.c_str(), "wb");
    ASSERT_NE(nullptr, f);
    std::fputs("12345", f);
    std::fclose(f);
    ASSERT_TRUE(NVGetFileInfo(plain.c_str(), info, err));
    EXPECT_EQ(5ull, info.qwSize);
    EXPECT_FALSE(info.bHasVersion);
    EXPECT_EQ(0, info.daStringFileInfo.GetCount()) << "the records of the earlier call are gone";

    EXPECT_FALSE(NVGetFileInfo(dir.File("missing.txt").c_str(), info, err));
    EXPECT_EQ(static_cast<unsigned long>(ERROR_FILE_NOT_FOUND), err);
    EXPECT_FALSE(NVGetFileInfo(nullptr, info, err));
}

struct PrinterAnswer {
    HDC hdc = nullptr;
    bool bDialogAsked = false;
    static HDC CALLBACK Sink(void* ctx, HWND, bool bShowDialog, unsigned long& dwCopies) {
        auto* self = static_cast<PrinterAnswer*>(ctx);
        self->bDialogAsked = bShowDialog;
        dwCopies = 3;
        return self->hdc;
    }
};

int CALLBACK NoAbort(HDC, int) {
    return TRUE;
}

TEST(DlgFiles, PrinterContextComesFromTheAnswer) {
    PrinterAnswer answer;
    answer.hdc = CreateCompatibleDC(nullptr);
    void* prevCtx = nullptr;
    NVPRINTERDCSINK prev = NVSetPrinterDCSink(&PrinterAnswer::Sink, &answer, &prevCtx);
    unsigned long copies = 0;
    EXPECT_EQ(answer.hdc, GetPrinterDC(nullptr, true, copies, &NoAbort));
    EXPECT_TRUE(answer.bDialogAsked);
    EXPECT_EQ(3ul, copies);
    HDC hdc = answer.hdc;
    answer.hdc = nullptr;
    EXPECT_EQ(nullptr, GetPrinterDC(nullptr, false, copies, nullptr)) << "cancel";
    EXPECT_FALSE(answer.bDialogAsked);
    NVSetPrinterDCSink(prev, prevCtx);
    DeleteDC(hdc);
}

class DlgRegisteredBoxes : public ::testing::Test {
protected:
    void SetUp() override {
        NVSetRegAppBaseKey(kBase);
        RegDeleteTreeA(HKEY_CURRENT_USER, kBase);
        CMessageBox::GetdaRegisterdMessageBox().Clear(false);
    }
    void TearDown() override {
        CMessageBox::GetdaRegisterdMessageBox().Clear(false);
        RegDeleteTreeA(HKEY_CURRENT_USER, kBase);
        // The common parent goes only when no other test keeps a key there.
        RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\VantrelTests");
        NVSetRegAppBaseKey(nullptr);
    }
    static bool ValueExists(char const* name) {
        HKEY hKey;
        if (RegOpenKeyExA(HKEY_CURRENT_USER, NVGetpDontShowMeThisDialogAgainRegKey(), 0, KEY_READ, &hKey))
            return false;
        bool exists = RegQueryValueExA(hKey, name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
        RegCloseKey(hKey);
        return exists;
    }
    static void WriteString(char const* name, char const* data) {
        HKEY hKey;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_CURRENT_USER, NVGetpDontShowMeThisDialogAgainRegKey(),
                                                 0, nullptr, 0, KEY_WRITE, nullptr, &hKey, nullptr));
        RegSetValueExA(hKey, name, 0, REG_SZ, reinterpret_cast<BYTE const*>(data),
                       static_cast<DWORD>(strlen(data)));
        RegCloseKey(hKey);
    }
    static constexpr char const* kBase = "Software\\VantrelTests\\Boxes";
};

TEST_F(DlgRegisteredBoxes, SettingsAreStoredReadAndDeletedInTheRegistry) {
    EXPECT_STREQ("Software\\VantrelTests\\Boxes\\DontShowAgain", NVGetpDontShowMeThisDialogAgainRegKey());
    ASSERT_TRUE(CMessageBox::RegisterMessageBox(501, "Print all tickets?", nullptr));
    ASSERT_TRUE(CMessageBox::RegisterMessageBox(502, "Close the shift?", "AskCloseShift"));
    EXPECT_FALSE(CMessageBox::RegisterMessageBox(0, "no id", nullptr));
    EXPECT_EQ(2, CMessageBox::GetdaRegisterdMessageBox().GetCount());

    CMessageBox mb;
    CMessageBox::RegisterdMessageBox* own = mb.FindRegisteredMessageBox(501);
    ASSERT_NE(nullptr, own);
    EXPECT_FALSE(own->bDontShow) << "no key: shown";
    EXPECT_FALSE(own->bUseRegValue);
    EXPECT_EQ(nullptr, mb.FindRegisteredMessageBox(503));

    own->bDontShow = true;
    EXPECT_TRUE(CMessageBox::StoreRegisteredMessageBox(own));
    EXPECT_TRUE(ValueExists("MsgBox_501"));
    CMessageBox::RegisterdMessageBox copy = *mb.FindRegisteredMessageBox(502);
    copy.bDontShow = true;
    EXPECT_TRUE(CMessageBox::StoreRegisteredMessageBox(&copy)) << "a copy updates the table";
    EXPECT_TRUE(mb.FindRegisteredMessageBox(502)->bDontShow);
    EXPECT_TRUE(ValueExists("AskCloseShift"));

    // A new process would read them back.
    CMessageBox::GetdaRegisterdMessageBox().Clear(false);
    CMessageBox::RegisterMessageBox(501, "Print all tickets?", nullptr);
    CMessageBox::RegisterMessageBox(502, "Close the shift?", "AskCloseShift");
    EXPECT_TRUE(mb.FindRegisteredMessageBox(501)->bDontShow);
    EXPECT_TRUE(mb.FindRegisteredMessageBox(502)->bDontShow);

    {
        MsgBoxRecorder rec;
        EXPECT_EQ(IDYES, mb.Show(nullptr, 502, "Shift", MB_YESNO, IDYES, nullptr));
        EXPECT_EQ(0u, rec.count()) << "a switched-off box is not shown";
        WriteString("AskCloseShift", "no");
        EXPECT_TRUE(mb.IsSwitchedOff(502)) << "any case of NO";
        WriteString("AskCloseShift", "YES");
        EXPECT_FALSE(mb.IsSwitchedOff(502));
        rec.Answer(IDNO);
        EXPECT_EQ(IDNO, mb.Show(nullptr, 502, "Shift", MB_YESNO, IDYES, nullptr));
        ASSERT_EQ(1u, rec.count());
        EXPECT_EQ(L"Close the shift?", rec.last().text) << "the registered text";
        EXPECT_EQ(L"Shift", rec.last().title);
        mb.Show(nullptr, 777, nullptr, MB_OK, IDOK,
                "Unregistered \xA7"
                "1!d!",
                7);
        EXPECT_EQ(L"Unregistered 7", rec.last().text) << "an unregistered box is always shown";
    }

    own = mb.FindRegisteredMessageBox(501);
    own->bDontShow = false;
    EXPECT_TRUE(CMessageBox::StoreRegisteredMessageBox(own));
    EXPECT_FALSE(mb.IsSwitchedOff(501));

    EXPECT_TRUE(mb.DeleteRegisteredMessageBox(502));
    EXPECT_FALSE(ValueExists("AskCloseShift"));
    EXPECT_EQ(nullptr, mb.FindRegisteredMessageBox(502));
    EXPECT_TRUE(mb.DeleteRegisteredMessageBox(501));
    EXPECT_FALSE(ValueExists("MsgBox_501"));
    EXPECT_FALSE(mb.DeleteRegisteredMessageBox(501));
    EXPECT_EQ(0, CMessageBox::GetdaRegisterdMessageBox().GetCount());
}

} // namespace
