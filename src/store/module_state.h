// What the library remembers between calls. Written by the exports that open and release documents, which the host
// calls from one thread at a time; without a lock.

#pragma once

#include "cordelbox.h"

struct ModuleState {
    PoolOwner* poolOwner = nullptr; // the host's
    CXmlObject* currentDocument = nullptr;
    CXmlObject* stringsDocument = nullptr;
    AnsiString stringsPath; // relative path of the strings document last opened
};

ModuleState& State() noexcept;

/// What every saving export ends with: saves the current document under its lock, if one was opened. Whether that
/// succeeded is not reported.
void SaveCurrentDocument() noexcept;
