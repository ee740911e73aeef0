// What a verb leaves: data, which prints as text or as JSON, and lines for a person.

#pragma once

#include "failure.h"
#include "value.h"

#include <string>
#include <vector>

/// How a column of a table shows its values.
enum class Format {
    Text,   // as it is; yes or no for a truth value
    Number, // aligned on the right
    Size,   // a number of bytes, in units that people read
    Tick,   // x for true, nothing for false
    Usage   // a bar; the value is the share in per cent
};

struct Column {
    std::string key;     // member of each row
    std::string heading; // above the column
    Format format = Format::Text;
};

struct Result {
    enum class Shape {
        Said,  // nothing but what `said` holds; `data` is for JSON alone
        Plain, // one value on a line, and nothing else
        Lines, // a list of values, one on a line
        Table, // a list of records
        Record // one record, a line for each member
    };

    Shape shape = Shape::Said;
    Value data;
    std::vector<Column> columns;    // of a table
    std::vector<std::string> names; // what its rows may have beside these
    std::vector<std::string> said;  // what was done, for a person; printed before a table or record
    std::vector<std::string> notes; // what deserves attention, for standard error
    ExitCode status = ExitCode::Done;
    bool partial = false; // with a status that says so: something failed, and what did not is to be kept all the same
    bool silent = false;  // everything was printed on the way
};
