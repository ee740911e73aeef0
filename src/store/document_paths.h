// Where a document's two files are. Computed on 8-bit paths of at most 259 bytes; the files are not touched.

#pragma once

#include "cordelbox.h"

/// The path of a document beside the host's executable: its folder and the relative path, from which one leading '\' is
/// dropped. Empty when it cannot be had or is too long.
AnsiString InstallFolderPath(const AnsiString& relativePath);

/// The path of the per-user copy of the document with that install-folder path: the same place relative to
/// Marvane/Hollivet in the user's application data. Empty for a document outside the host's folder, and when the path
/// is too long.
AnsiString UserCopyPath(const AnsiString& installFolderPath);
