// Which of its two files a document is read from, the reading, and the writing.

#pragma once

#include "platform/dom.h"
#include "store/outcome.h"

#include <memory>

enum class LoadState : int32_t { NotLoaded = 0, FromInstallFolder = 1, FromUserCopy = 2 };

/// The file that a document is read from.
struct FileChoice {
    LoadState m_nLoadState = LoadState::NotLoaded; // NotLoaded: there is none to read
    AnsiString m_strPath;
    CReason m_whyNotUserCopy; // why the per-user copy was not taken
};

/// Chooses the per-user copy when it is present and writable, else the installed file. None when the copy's path cannot
/// be had: such a document could never be saved.
FileChoice ChooseFile(const AnsiString& installFolderPath);

/// Loads the file. Null when there is no document in it, and `reason`, where one is wanted, says why. Throws DomError
/// when the DOM's load call itself fails, std::bad_alloc.
std::unique_ptr<DomDocument> LoadFile(const AnsiString& path, CReason* reason, DomPositions positions);

/// Writes the document over its per-user copy, wherever it was loaded from: Done, NoUserCopy or Failed.
COutcome SaveToUserCopy(DomDocument& dom, const AnsiString& installFolderPath) noexcept;
