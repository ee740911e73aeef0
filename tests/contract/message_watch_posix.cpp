// The message box and the windows of a host without a screen: the test program is the host, so it supplies the two
// functions that the library calls, and a window is an entry in a list.

#include "message_watch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

struct FakeWindow {
    bool bEnabled = true;
};

std::vector<FakeWindow*> s_windows;              // all that live, oldest first
std::vector<SeenMessage>* s_pMessages = nullptr; // of the live watch, as is the next
std::vector<WindowChange>* s_pChanges = nullptr;
std::function<void()> s_whileShown;
int* s_pNullHandles = nullptr;

} // namespace

struct CMessageWatch::State {
    std::vector<SeenMessage> messages;
    std::vector<WindowChange> changes;
    int nNullHandles = 0;
};

CMessageWatch::CMessageWatch(std::function<void()> whileShown) : m_pState(std::make_unique<State>()) {
    EXPECT_EQ(s_pMessages, nullptr) << "a second watch";
    s_pMessages = &m_pState->messages;
    s_pChanges = &m_pState->changes;
    s_whileShown = std::move(whileShown);
    s_pNullHandles = &m_pState->nNullHandles;
}

CMessageWatch::~CMessageWatch() {
    s_pMessages = nullptr;
    s_pChanges = nullptr;
    s_whileShown = nullptr;
    s_pNullHandles = nullptr;
}

const std::vector<SeenMessage>& CMessageWatch::Messages() const noexcept { return m_pState->messages; }

const std::vector<WindowChange>& CMessageWatch::Changes() const noexcept { return m_pState->changes; }

int CMessageWatch::NullHandles() const noexcept { return m_pState->nNullHandles; }

void ExpectNullHandlesAsked(int count) { EXPECT_EQ(count, 2) << "disabled and enabled like any other"; }

CTestWindow::CTestWindow() : m_hWindow(new FakeWindow) { s_windows.push_back(static_cast<FakeWindow*>(m_hWindow)); }

CTestWindow::~CTestWindow() {
    FakeWindow* const window = static_cast<FakeWindow*>(m_hWindow);
    s_windows.erase(std::find(s_windows.begin(), s_windows.end(), window));
    delete window;
}

bool CTestWindow::IsEnabled() const noexcept { return static_cast<FakeWindow*>(m_hWindow)->bEnabled; }

extern "C" {

CORDELBOX_API int MessageBoxA(WindowHandle owner, const char* text, const char* caption, unsigned int flags) {
    if (s_pMessages == nullptr) {
        ADD_FAILURE() << "unexpected message box: " << text;
        return 1;
    }
    SeenMessage message{text, caption, flags, owner, {}};
    for (FakeWindow* window : s_windows) {
        if (!window->bEnabled && window != owner) {
            message.disabled.push_back(window);
        }
    }
    s_pMessages->push_back(message);
    if (s_whileShown) {
        s_whileShown();
    }
    return 1;
}

CORDELBOX_API int EnableWindow(WindowHandle window, int enable) {
    if (window == nullptr && s_pNullHandles != nullptr) {
        ++*s_pNullHandles;
        return 0;
    }
    const auto found = std::find(s_windows.begin(), s_windows.end(), window);
    if (found == s_windows.end()) {
        ADD_FAILURE() << "a window that no test lent";
        return 0;
    }
    const bool wasDisabled = !(*found)->bEnabled;
    if ((*found)->bEnabled != (enable != 0)) {
        (*found)->bEnabled = enable != 0;
        if (s_pChanges != nullptr) {
            s_pChanges->push_back({window, enable != 0});
        }
    }
    return wasDisabled ? 1 : 0;
}

} // extern "C"
