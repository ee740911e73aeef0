// Names in the list of files.

#pragma once

#include "cordelbox.h"

/// Made once by a function that needs them for every file, so that its queries share them.
struct FileListNames {
    const AnsiString files = "Files";
    const AnsiString fileId = "FileID";
    const AnsiString id = "ID";
    const AnsiString type = "Type";
    const AnsiString localPath = "LocalPath";
    const AnsiString checked = "checked";
    const AnsiString ticked = "1"; // a value of it
    const AnsiString profileType = "ProfileType";
};
