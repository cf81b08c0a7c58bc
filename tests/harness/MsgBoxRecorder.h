// Records the message boxes shown while it lives and answers them with scripted buttons, so that a
// test can check title, flags and text, and no modal box can hang a run.
#pragma once

#include <windows.h>

#include <deque>
#include <string>
#include <vector>

namespace vtrtest {

struct RecordedBox {
    HWND hParent;
    std::wstring title;
    std::wstring text;
    unsigned int uFlags;
};

class MsgBoxRecorder {
public:
    MsgBoxRecorder();
    ~MsgBoxRecorder();
    MsgBoxRecorder(MsgBoxRecorder const&) = delete;
    MsgBoxRecorder& operator=(MsgBoxRecorder const&) = delete;

    // The next box is answered with this button id; without a script a box gets its default button.
    void Answer(int iButton) { m_answers.push_back(iButton); }

    std::vector<RecordedBox> const& boxes() const { return m_boxes; }
    size_t count() const { return m_boxes.size(); }
    RecordedBox const& last() const { return m_boxes.back(); }
    void clear() { m_boxes.clear(); }

    // The button a real box would take on Enter: its default button.
    static int DefaultButton(unsigned int uFlags);

private:
    static int CALLBACK Sink(void* pContext, HWND hParent, wchar_t const* lpszTitle, wchar_t const* lpszText,
                             unsigned int uFlags);
    std::vector<RecordedBox> m_boxes;
    std::deque<int> m_answers;
    void* m_pPrevSink;
    void* m_pPrevContext = nullptr;
};

} // namespace vtrtest
