// The real message box and real windows: a thread finds each box that this program opens, notes what a user would see
// and presses its button. Windows tell themselves when they are enabled and disabled.

#include "message_watch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

struct CMessageWatch::State {
    std::vector<SeenMessage> messages;
    std::vector<WindowChange> allChanges;
    std::vector<WindowChange> changes; // without those of the owners
};

namespace {

std::mutex s_mutex;                              // guards what follows
std::vector<HWND> s_windows;                     // all test windows that live, oldest first
std::vector<SeenMessage>* s_pMessages = nullptr; // of the live watch, as is the next
std::vector<WindowChange>* s_pChanges = nullptr;
std::function<void()> s_whileShown;

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ENABLE) {
        const std::lock_guard lock(s_mutex);
        if (s_pChanges != nullptr) {
            s_pChanges->push_back({window, wParam != FALSE});
        }
    }
    return ::DefWindowProcA(window, message, wParam, lParam);
}

const char* WindowClass() {
    static const char* const s_pName = [] {
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = WindowProcedure;
        windowClass.hInstance = ::GetModuleHandleA(nullptr);
        windowClass.lpszClassName = "TestWindow";
        ::RegisterClassA(&windowClass);
        return "TestWindow";
    }();
    return s_pName;
}

std::string TextOf(HWND window) {
    std::string text(static_cast<std::size_t>(::GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(::GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::string ClassOf(HWND window) {
    std::array<char, 64> name{};
    ::GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

unsigned int FlagOf(HICON icon) {
    const std::array<std::pair<LPSTR, unsigned int>, 4> icons = {{{IDI_ERROR, MB_ICONERROR},
                                                                  {IDI_QUESTION, MB_ICONQUESTION},
                                                                  {IDI_WARNING, MB_ICONWARNING},
                                                                  {IDI_INFORMATION, MB_ICONINFORMATION}}};
    for (const auto& [name, flag] : icons) {
        if (icon == ::LoadIconA(nullptr, name)) {
            return flag;
        }
    }
    return 0;
}

/// What is in a message box.
struct BoxContents {
    std::string text;
    unsigned int icon = 0;
    std::vector<HWND> buttons;
};

BOOL CALLBACK NoteControl(HWND control, LPARAM contentsAddress) {
    auto& contents = *reinterpret_cast<BoxContents*>(contentsAddress);
    if (::IsWindowVisible(control) == FALSE) {
        return TRUE;
    }
    if (ClassOf(control) == "Button") {
        contents.buttons.push_back(control);
    } else if ((::GetWindowLongA(control, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
        contents.icon = FlagOf(reinterpret_cast<HICON>(::SendMessageA(control, STM_GETICON, 0, 0)));
    } else {
        contents.text = TextOf(control);
    }
    return TRUE;
}

void Answer(HWND box) {
    BoxContents contents;
    ::EnumChildWindows(box, NoteControl, reinterpret_cast<LPARAM>(&contents));
    SeenMessage message{contents.text, TextOf(box), contents.icon, ::GetWindow(box, GW_OWNER), {}};
    if (contents.buttons.size() != 1) {
        ADD_FAILURE() << "not one button but " << contents.buttons.size();
    }
    {
        const std::lock_guard lock(s_mutex);
        for (const HWND window : s_windows) {
            if (::IsWindowEnabled(window) == FALSE && window != message.owner) {
                message.disabled.push_back(window);
            }
        }
        if (s_pMessages != nullptr) {
            s_pMessages->push_back(message);
        } else {
            ADD_FAILURE() << "unexpected message box: " << message.text;
        }
        if (s_whileShown) {
            s_whileShown();
        }
    }
    for (const HWND button : contents.buttons) {
        ::PostMessageA(button, BM_CLICK, 0, 0);
    }
}

/// A visible dialog of this process.
BOOL CALLBACK FindBox(HWND window, LPARAM foundAddress) {
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == ::GetCurrentProcessId() && ::IsWindowVisible(window) != FALSE && ClassOf(window) == "#32770") {
        *reinterpret_cast<HWND*>(foundAddress) = window;
        return FALSE;
    }
    return TRUE;
}

[[noreturn]] void Watch() {
    HWND answered = nullptr;
    for (;;) {
        HWND box = nullptr;
        ::EnumWindows(FindBox, reinterpret_cast<LPARAM>(&box));
        if (box != nullptr && box != answered) {
            Answer(box);
        }
        answered = box;
        ::Sleep(5);
    }
}

/// Watches as long as the process lives, so that a message box that no test expects does not stop the tests.
class CWatching : public ::testing::Environment {
public:
    void SetUp() override { std::thread(Watch).detach(); }
};

::testing::Environment* const s_pWatching = ::testing::AddGlobalTestEnvironment(new CWatching);

} // namespace

CMessageWatch::CMessageWatch(std::function<void()> whileShown) : m_pState(std::make_unique<State>()) {
    const std::lock_guard lock(s_mutex);
    EXPECT_EQ(s_pMessages, nullptr) << "a second watch";
    s_pMessages = &m_pState->messages;
    s_pChanges = &m_pState->allChanges;
    s_whileShown = std::move(whileShown);
}

CMessageWatch::~CMessageWatch() {
    const std::lock_guard lock(s_mutex);
    s_pMessages = nullptr;
    s_pChanges = nullptr;
    s_whileShown = nullptr;
}

const std::vector<SeenMessage>& CMessageWatch::Messages() const noexcept { return m_pState->messages; }

const std::vector<WindowChange>& CMessageWatch::Changes() const noexcept {
    const std::lock_guard lock(s_mutex);
    m_pState->changes.clear();
    for (const WindowChange& change : m_pState->allChanges) {
        const bool bOwner = std::any_of(m_pState->messages.begin(), m_pState->messages.end(),
                                        [&](const SeenMessage& message) { return message.owner == change.window; });
        if (!bOwner) {
            m_pState->changes.push_back(change);
        }
    }
    return m_pState->changes;
}

int CMessageWatch::NullHandles() const noexcept { return 0; }

void ExpectNullHandlesAsked(int) {} // the system passes over them by itself

CTestWindow::CTestWindow()
    : m_hWindow(::CreateWindowExA(0, WindowClass(), "", WS_OVERLAPPED, 0, 0, 100, 100, nullptr, nullptr,
                                  ::GetModuleHandleA(nullptr), nullptr)) {
    if (m_hWindow == nullptr) {
        throw std::runtime_error("no window");
    }
    const std::lock_guard lock(s_mutex);
    s_windows.push_back(m_hWindow);
}

CTestWindow::~CTestWindow() {
    {
        const std::lock_guard lock(s_mutex);
        s_windows.erase(std::find(s_windows.begin(), s_windows.end(), m_hWindow));
    }
    ::DestroyWindow(m_hWindow);
}

bool CTestWindow::IsEnabled() const noexcept { return ::IsWindowEnabled(m_hWindow) != FALSE; }
