// Prints data: as aligned tables for people, as JSON for scripts.

#pragma once

#include "globals.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

using Json = nlohmann::ordered_json;

/// A text of the library as a JSON string.
Json JsonText(std::string_view text);

/// How a column of a table shows its values.
enum class Format {
    Text,   // as it is; yes or no for a truth value
    Number, // aligned on the right
    Size,   // a number of bytes, in units that people read
    Tick    // x for true, nothing for false
};

struct Column {
    const char* key;     // member of each row
    const char* heading; // above the column
    Format format = Format::Text;
};

/// Prints one row for each object. In a table only the columns are shown; JSON gets the whole objects.
void PrintRows(const Globals& globals, const std::vector<Column>& columns, const std::vector<Json>& rows);

/// Prints one object, a line for each member.
void PrintRecord(const Globals& globals, const Json& record);

/// Prints data for a script.
void PrintJson(const Json& data);

/// Prints one text on a line.
void PrintText(const Globals& globals, const std::string& text);

/// Tells a person what was done. Scripts, which asked for JSON, see only data.
void Say(const Globals& globals, const std::string& line);

/// Tells on standard error what deserves attention.
void Note(const std::string& line);
