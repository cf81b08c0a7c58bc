#include "harness/MsgBoxRecorder.h"

#include "NVMsgBox.h"

namespace vtrtest {

MsgBoxRecorder::MsgBoxRecorder() {
    m_pPrevSink = reinterpret_cast<void*>(NVSetMsgBoxSink(&MsgBoxRecorder::Sink, this, &m_pPrevContext));
}

MsgBoxRecorder::~MsgBoxRecorder() {
    NVSetMsgBoxSink(reinterpret_cast<NVMSGBOXSINK>(m_pPrevSink), m_pPrevContext);
}

int MsgBoxRecorder::DefaultButton(unsigned int uFlags) {
    static int const buttons[][3] = {
        {IDOK, IDOK, IDOK},                 // MB_OK
        {IDOK, IDCANCEL, IDCANCEL},         // MB_OKCANCEL
        {IDABORT, IDRETRY, IDIGNORE},       // MB_ABORTRETRYIGNORE
        {IDYES, IDNO, IDCANCEL},            // MB_YESNOCANCEL
        {IDYES, IDNO, IDNO},                // MB_YESNO
        {IDRETRY, IDCANCEL, IDCANCEL},      // MB_RETRYCANCEL
        {IDCANCEL, IDTRYAGAIN, IDCONTINUE}, // MB_CANCELTRYCONTINUE
    };
    unsigned type = uFlags & MB_TYPEMASK;
    unsigned def = (uFlags & MB_DEFMASK) >> 8;
    if (type > 6)
        type = 0;
    if (def > 2)
        def = 0;
    return buttons[type][def];
}

int CALLBACK MsgBoxRecorder::Sink(void* pContext, HWND hParent, wchar_t const* lpszTitle,
                                  wchar_t const* lpszText, unsigned int uFlags) {
    auto* self = static_cast<MsgBoxRecorder*>(pContext);
    self->m_boxes.push_back(
        RecordedBox{hParent, lpszTitle ? lpszTitle : L"", lpszText ? lpszText : L"", uFlags});
    if (!self->m_answers.empty()) {
        int answer = self->m_answers.front();
        self->m_answers.pop_front();
        return answer;
    }
    return DefaultButton(uFlags);
}

} // namespace vtrtest
