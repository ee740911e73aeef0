#include "sqlite_lookups.h"

#include "projects.h"

#include <cstdio>
#include <cstdlib>

CSqliteLookups::CSqliteLookups(int rows) : m_strEditedId(std::to_string(rows / 2)) {
    sqlite3_open(":memory:", &m_pDatabase);
    Run("CREATE TABLE Files (FileID TEXT, ID TEXT, Type TEXT, LocalPath TEXT, checked TEXT)");
    Run("BEGIN");
    sqlite3_stmt* const insert = Prepare("INSERT INTO Files VALUES (?1, ?2, '5', ?3, '1')");
    for (int row = 0; row < rows; ++row) {
        m_fileIds.push_back(FontFileId(row));
        const std::string id = std::to_string(row);
        const std::string path = FontLocalPath(row);
        Bind(insert, 1, m_fileIds.back());
        Bind(insert, 2, id);
        Bind(insert, 3, path);
        IsFound(insert);
    }
    sqlite3_finalize(insert);
    Run("COMMIT");
    Run("CREATE INDEX OfCheckID ON Files (FileID, ID, Type)");
    Run("CREATE INDEX OfIdsAreValid ON Files (FileID, checked)");
    Run("ANALYZE");
}

CSqliteLookups::~CSqliteLookups() { sqlite3_close(m_pDatabase); }

void CSqliteLookups::Run(const char* sql) {
    if (sqlite3_exec(m_pDatabase, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(m_pDatabase));
        std::exit(EXIT_FAILURE);
    }
}

sqlite3_stmt* CSqliteLookups::Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_pDatabase, sql, -1, &statement, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(m_pDatabase));
        std::exit(EXIT_FAILURE);
    }
    return statement;
}

/// `text` must live until the statement has run.
void CSqliteLookups::Bind(sqlite3_stmt* statement, int column, const std::string& text) {
    sqlite3_bind_text(statement, column, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

/// Runs the statement to its first row.
bool CSqliteLookups::IsFound(sqlite3_stmt* statement) {
    const bool bFound = sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_text(statement, 0) != nullptr;
    sqlite3_reset(statement);
    return bFound;
}

int CSqliteLookups::CheckId() {
    sqlite3_stmt* const find = Prepare("SELECT LocalPath FROM Files WHERE FileID = ?1 AND ID = ?2 AND Type = ?3");
    const std::string types[] = {"1", "5"};
    int users = 0;
    for (const std::string& fileId : m_fileIds) {
        for (const std::string& type : types) {
            Bind(find, 1, fileId);
            Bind(find, 2, m_strEditedId);
            Bind(find, 3, type);
            users += IsFound(find) ? 1 : 0;
        }
    }
    sqlite3_finalize(find);
    return users;
}

int CSqliteLookups::IdsAreValid() {
    sqlite3_stmt* const findType = Prepare("SELECT Type FROM Files WHERE FileID = ?1 AND checked = ?2");
    sqlite3_stmt* const findId = Prepare("SELECT ID FROM Files WHERE FileID = ?1 AND checked = ?2");
    const std::string ticked = "1";
    int count = 0;
    for (const std::string& fileId : m_fileIds) {
        bool bFound = true;
        for (sqlite3_stmt* const find : {findType, findId}) {
            Bind(find, 1, fileId);
            Bind(find, 2, ticked);
            bFound = IsFound(find) && bFound;
        }
        count += bFound ? 1 : 0;
    }
    sqlite3_finalize(findType);
    sqlite3_finalize(findId);
    return count;
}
