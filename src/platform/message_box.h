// The message box and the windows that the host lends for it.

#pragma once

#include "cordelbox.h"

namespace platform {

/// Shows a modal message box with an OK button and the error icon, owned by `owner` (may be null).
void ShowErrorMessage(WindowHandle owner, const char* text, const char* caption) noexcept;

void SetWindowEnabled(WindowHandle window, bool enabled) noexcept;

} // namespace platform
