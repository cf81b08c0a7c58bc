// main() of every test program: common controls and COM are ready, and any message box that a test
// did not expect fails that test instead of waiting for a click.
#include "harness/MsgBoxRecorder.h"
#include "harness/TestHost.h"

#include "NVMsgBox.h"

#include <gtest/gtest.h>

#include <objbase.h>

namespace {
int CALLBACK UnexpectedBox(void*, HWND, wchar_t const* lpszTitle, wchar_t const* lpszText,
                           unsigned int uFlags) {
    ADD_FAILURE() << "unexpected message box \"" << vtrtest::Utf8(lpszTitle ? lpszTitle : L"")
                  << "\": " << vtrtest::Utf8(lpszText ? lpszText : L"");
    return vtrtest::MsgBoxRecorder::DefaultButton(uFlags);
}
} // namespace

int main(int argc, char** argv) {
    INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_WIN95_CLASSES | ICC_DATE_CLASSES | ICC_USEREX_CLASSES |
                                              ICC_COOL_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&icc);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    NVSetMsgBoxSink(&UnexpectedBox, nullptr);
    testing::InitGoogleTest(&argc, argv);
    int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
