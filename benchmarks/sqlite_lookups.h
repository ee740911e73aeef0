// Peer: a project's files in an SQLite table in memory, with an index over the filter columns of each check, and the
// lookups of the ID checks as prepared statements.

#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

class CSqliteLookups {
public:
    /// A table of the files of FontProject(rows).
    explicit CSqliteLookups(int rows);
    ~CSqliteLookups();
    CSqliteLookups(const CSqliteLookups&) = delete;
    CSqliteLookups& operator=(const CSqliteLookups&) = delete;

    /// As many lookups as CheckID makes for the file being edited; the number of those that found a file.
    int CheckId();

    /// As many lookups as IdsAreValid makes; the number of ticked files.
    int IdsAreValid();

private:
    void Run(const char* sql);
    sqlite3_stmt* Prepare(const char* sql);
    static void Bind(sqlite3_stmt* statement, int column, const std::string& text);
    static bool IsFound(sqlite3_stmt* statement);

    sqlite3* m_pDatabase = nullptr;
    std::vector<std::string> m_fileIds;
    std::string m_strEditedId;
};
