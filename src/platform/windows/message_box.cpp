// The message box of the system.

#include "platform/message_box.h"

namespace platform {

void ShowErrorMessage(WindowHandle owner, const char* text, const char* caption) noexcept {
    ::MessageBoxA(owner, text, caption, MB_OK | MB_ICONERROR);
}

void SetWindowEnabled(WindowHandle window, bool enabled) noexcept { ::EnableWindow(window, enabled ? TRUE : FALSE); }

} // namespace platform
