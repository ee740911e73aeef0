// What every saving export ends with.

#pragma once

/// Saves the current document under its lock, if one was opened. Whether that succeeded is not reported.
void SaveCurrentDocument() noexcept;
