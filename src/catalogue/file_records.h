// The files of a project.
//
// A file's attributes are taken by position: "FileID" is found by its name, and the nine that follow it are what
// AddProjectFile writes behind it, "checked" the last.

#pragma once

#include "store/node_readers.h"

/// One file as it is listed.
struct ProjectFile {
    AnsiString fileId;
    AnsiString component;
    AnsiString id;
    AnsiString type;
    AnsiString volume;
    AnsiString path;
    AnsiString localPath;
    AnsiString size;
    AnsiString createDate;
    AnsiString checked;
    bool IsTicked() const noexcept { return checked == "1"; }
};

/// Reads the files one after the other.
class CProjectFiles {
public:
    explicit CProjectFiles(CXmlObject* document);

    /// Reads the next file. False behind the last one.
    bool Next(ProjectFile& file);

    /// Whether all rows could be read: otherwise the files end before a row without attributes.
    const COutcome& Outcome() const noexcept { return m_outcome; }

private:
    CXmlQuery m_query;
    COutcome m_outcome;
};
