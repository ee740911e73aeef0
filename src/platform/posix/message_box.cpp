// Off Windows the two functions belong to the host: they are referred to weakly, and absent in a host without a
// user interface.

#include "platform/message_box.h"

#include <cstdio>

extern "C" {
__attribute__((weak)) int MessageBoxA(WindowHandle owner, const char* text, const char* caption, unsigned int flags);
__attribute__((weak)) int EnableWindow(WindowHandle window, int enable);
}

namespace platform {

namespace {
constexpr unsigned int kOkWithErrorIcon = 0x10;
}

void ShowErrorMessage(WindowHandle owner, const char* text, const char* caption) noexcept {
    if (MessageBoxA != nullptr) {
        MessageBoxA(owner, text, caption, kOkWithErrorIcon);
    } else {
        std::fprintf(stderr, "%s: %s\n", caption, text);
    }
}

void SetWindowEnabled(WindowHandle window, bool enabled) noexcept {
    if (EnableWindow != nullptr) {
        EnableWindow(window, enabled ? 1 : 0);
    }
}

} // namespace platform
