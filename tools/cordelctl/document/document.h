// One document, loaded by the library's own loader: its containers and rows, and changes to them, in memory until it is
// saved. All texts are UTF-8.

#pragma once

#include "document/document_tree.h"
#include "rows/document_tables.h"
#include "store/xml_object.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Why a document could not be loaded, in the words of the reader.
struct DocumentError {
    std::string reason;
    SourcePlace place;
    bool tooLarge = false; // or it would be with what its elements have by default
};

using Pair = std::pair<std::string, std::string>;

/// One row of a container: a copy of its values, and which row it is. Good until the container is changed in another
/// way than through SetValue.
struct Row {
    RowNumber number = 0;
    int position = 0; // among the container's rows, from 1
    std::vector<Pair> values;

    const std::string* Find(std::string_view name) const noexcept;
    std::string Value(std::string_view name) const;
};

/// A condition on rows: an attribute and its value.
using Filter = std::vector<Pair>;

class CDocument {
public:
    /// Loads a file. Throws CFailure (NoDocument) that names `title`, the file, the reason and the place.
    static std::unique_ptr<CDocument> Load(const std::filesystem::path& file, const std::string& title);

    /// The same, without throwing: null, and why. With `positions` Noted the tree tells where everything stands.
    static std::unique_ptr<CDocument> TryLoad(const std::filesystem::path& file, DocumentError& error,
                                              DomPositions positions = DomPositions::Forgotten);

    const std::string& Title() const noexcept { return m_strTitle; }
    const std::filesystem::path& File() const noexcept { return m_file; }

    /// A copy of everything.
    DocumentNode Tree() const;

    bool HasContainer(const std::string& container);

    /// All rows in order: also those behind a comment or a text, which no function of the library reaches.
    /// Throws CFailure (Missing) when there is no such container.
    std::vector<Row> Rows(const std::string& container);

    /// The same; none when there is no such container.
    std::vector<Row> RowsOrNone(const std::string& container);

    /// The rows that have all these values.
    std::vector<Row> RowsWhere(const std::string& container, const Filter& filter);

    /// The attribute of the first row that carries it.
    std::optional<std::string> FirstValue(const std::string& container, std::string_view attribute);

    /// What makes hosts read wrong values of the container: a child that is no element, where reads of the library
    /// stop, a key that is missing or used twice. None when it is sound.
    std::optional<std::string> ErrorIn(const std::string& container);

    /// The same, of all containers that were asked for so far, each as a sentence.
    std::vector<std::string> ErrorsInUse();

    // Changes. They throw CFailure (Refused) for what a document cannot hold, and have then changed nothing.

    /// Sets a value, and adds the attribute when the row does not have it. `row` is brought up to date.
    void SetValue(const std::string& container, Row& row, const std::string& attribute, const std::string& value);

    /// Adds an item at the end.
    void AppendRow(const std::string& container, const std::vector<Pair>& values);

    void RemoveRows(const std::string& container, const std::vector<Row>& rows);

    /// Removes whatever the container holds, comments and texts too. Returns how many children that were.
    std::size_t RemoveAllChildren(const std::string& container);

    /// Removes the comments that stand among the container's items.
    void RemoveComments(const std::string& container);

    /// Adds an empty container below the document element.
    void AddContainer(const std::string& name);

    bool IsChanged() const noexcept { return m_bChanged; }
    void NoteChange() noexcept { m_bChanged = true; }

    /// Saves it over the file. False, and the file stays as it is, when that is no longer `isAsLoaded`, which is asked
    /// immediately before the file is replaced. Throws CFailure (NotKept).
    bool SaveOver(const std::filesystem::path& file, const LastLook& isAsLoaded);

    /// For the operations of the library. A change that one of them made is noted with NoteChange.
    CXmlObject* Object() noexcept { return &m_object; }

private:
    CDocument(std::filesystem::path file, std::unique_ptr<DomDocument> dom);
    CRowTable* FindTable(const std::string& container);
    CRowTable& RequireTable(const std::string& container);
    void ForgetTables();

    std::filesystem::path m_file;
    std::string m_strTitle;
    mutable CXmlObject m_object;  // what the library's operations work on
    std::set<std::string> m_used; // containers
    bool m_bChanged = false;
};
