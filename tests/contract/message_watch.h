// Sees the message boxes that the library shows, closes them, and knows what became of the windows that a test
// lent meanwhile. One implementation for each target.

#pragma once

#include "cordelbox.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A window that a test lends for a message box; enabled until something disables it. Lives as long as the calls
/// that it is lent for.
class CTestWindow {
public:
    CTestWindow();
    ~CTestWindow();
    CTestWindow(const CTestWindow&) = delete;
    CTestWindow& operator=(const CTestWindow&) = delete;

    WindowHandle Handle() const noexcept { return m_hWindow; }
    /// What a slot or the owner of MessageWindows points to.
    WindowHandle* Slot() noexcept { return &m_hWindow; }
    bool IsEnabled() const noexcept;

private:
    WindowHandle m_hWindow;
};

/// One message box, as the user saw it.
struct SeenMessage {
    std::string text;
    std::string caption;
    unsigned int flags; // buttons and icon, as MessageBoxA takes them
    WindowHandle owner;
    std::vector<WindowHandle> disabled; // the test windows that were disabled while it was open, oldest window first,
                                        // its owner left out: the system may disable that one by itself
};

/// One change of a test window from enabled to disabled or back.
struct WindowChange {
    WindowHandle window;
    bool enabled;
    friend bool operator==(const WindowChange&, const WindowChange&) = default;
};

/// Closes every message box that is shown while it lives. One at a time; a message box without a watch fails the test.
class CMessageWatch {
public:
    /// `whileShown` runs while a message box is open, in whatever thread closes it.
    explicit CMessageWatch(std::function<void()> whileShown = {});
    ~CMessageWatch();
    CMessageWatch(const CMessageWatch&) = delete;
    CMessageWatch& operator=(const CMessageWatch&) = delete;

    const std::vector<SeenMessage>& Messages() const noexcept;
    /// What happened to the test windows, in order; the owners of message boxes are left out.
    const std::vector<WindowChange>& Changes() const noexcept;
    /// How often a window was to be disabled or enabled that is none, where the host learns of it.
    int NullHandles() const noexcept;

private:
    struct State;
    const std::unique_ptr<State> m_pState;
};

/// Checks how often the host was asked for the one null handle of its record around one message.
void ExpectNullHandlesAsked(int count);
