// Prints results.

#include "print.h"

#include "decoration.h"
#include "json.h"
#include "system/terminal.h"
#include "text/nearest.h"
#include "text/number_text.h"
#include "text/printable.h"

#include <algorithm>

namespace {

constexpr std::size_t kNarrowest = 8; // of a column that is cut to fit the terminal

std::string Shown(const Value& value) {
    return value.IsBool()                       ? (value.IsTrue() ? "yes" : "no")
           : value.IsList() || value.IsRecord() ? FormatJson(value)
                                                : value.Text();
}

std::string ShownIn(const Column& column, const Value& value) {
    switch (column.format) {
    case Format::Size:
        return ReadableSize(Shown(value));
    case Format::Tick:
        return value.IsTrue() ? "x" : "";
    case Format::Usage:
        return value.IsNull() ? "" : UsageBar(std::stod(value.Text()), 100);
    default:
        return Shown(value);
    }
}

bool IsAlignedRight(const Column& column) { return column.format == Format::Number || column.format == Format::Size; }

/// The names of --columns.
std::vector<std::string> NamesIn(const std::string& columns) {
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin <= columns.size();) {
        const std::size_t end = std::min(columns.find(',', begin), columns.size());
        names.push_back(columns.substr(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

/// The columns that were asked for; the table's own without --columns.
std::vector<Column> ChosenColumns(const Result& result, const Globals& globals) {
    if (globals.columns.empty()) {
        return result.columns;
    }
    std::vector<Column> chosen;
    for (const std::string& name : NamesIn(globals.columns)) {
        const auto own = std::find_if(result.columns.begin(), result.columns.end(),
                                      [&](const Column& column) { return column.key == name; });
        chosen.push_back(own != result.columns.end() ? *own : Column{name, name, Format::Text});
    }
    return chosen;
}

/// What rows of the result can have, whether there are any or not.
std::vector<std::string> KnownNames(const Result& result) {
    std::vector<std::string> known;
    const auto add = [&known](const std::string& name) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            known.push_back(name);
        }
    };
    for (const Column& column : result.columns) {
        add(column.key);
    }
    std::for_each(result.names.begin(), result.names.end(), add);
    for (const Value& row : result.data.Items()) {
        for (const auto& [name, value] : row.Members()) {
            add(name);
        }
    }
    return known;
}

/// Makes the widest columns narrower until a line fits the terminal; the last may run over when that is not enough.
void FitToTerminal(std::vector<std::size_t>& widths) {
    const std::size_t room = host::OutputWidth();
    if (room == 0) {
        return;
    }
    const auto total = [&] {
        std::size_t sum = 2 * (widths.size() - 1);
        for (const std::size_t width : widths) {
            sum += width;
        }
        return sum;
    };
    while (total() > room) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= kNarrowest) {
            return;
        }
        const std::size_t excess = total() - room;
        const std::size_t step = std::max<std::size_t>(1, std::min(excess, *widest - kNarrowest) / 4);
        *widest -= step;
    }
}

std::string LineOf(const std::vector<Column>& columns, const std::vector<std::size_t>& widths,
                   const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string cell = FitWidth(cells[i], widths[i]);
        const std::string padding(widths[i] - std::min(widths[i], DisplayWidth(cell)), ' ');
        line += (i == 0 ? "" : "  ") + (IsAlignedRight(columns[i]) ? padding + cell : cell + padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

void PrintTable(const std::vector<Column>& columns, const Value& rows) {
    std::vector<std::vector<std::string>> lines(1);
    for (const Column& column : columns) {
        lines.front().push_back(Printable(column.heading));
    }
    for (const Value& row : rows.Items()) {
        auto& cells = lines.emplace_back();
        for (const Column& column : columns) {
            cells.push_back(Printable(ShownIn(column, row[column.key])));
        }
    }
    std::vector<std::size_t> widths(columns.size());
    for (const auto& cells : lines) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(cells[i]));
        }
    }
    FitToTerminal(widths);
    std::string text;
    for (const auto& cells : lines) {
        text += LineOf(columns, widths, cells);
    }
    host::WriteOutput(text);
}

/// One line for each row by the user's own pattern.
std::string Filled(const std::string& pattern, const Value& row) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char next = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
        if (pattern[i] == '\\' && (next == 't' || next == 'n' || next == '\\' || next == '0')) {
            text += next == 't' ? '\t' : next == 'n' ? '\n' : next == '0' ? '\0' : '\\';
            ++i;
            continue;
        }
        const std::size_t end = pattern[i] == '{' ? pattern.find('}', i) : std::string::npos;
        if (end == std::string::npos) {
            text += pattern[i];
            continue;
        }
        const std::string name = pattern.substr(i + 1, end - i - 1);
        text += Shown(row[name]); // not every row has every value
        i = end;
    }
    return text;
}

/// What a script gets: as it is, unless a terminal would show it.
std::string Raw(const std::string& text) { return host::IsOutputTerminal() ? Printable(text) : text; }

void PrintRows(const Result& result, const Globals& globals) {
    const std::vector<Column> columns = ChosenColumns(result, globals);
    const std::string end = globals.zero ? std::string(1, '\0') : "\n";
    if (!globals.format.empty()) {
        for (const Value& row : result.data.Items()) {
            host::WriteOutput(
                (host::IsOutputTerminal() ? PrintableLines(Filled(globals.format, row)) : Filled(globals.format, row)) +
                end);
        }
    } else if (globals.zero) {
        for (const Value& row : result.data.Items()) {
            std::vector<std::string> cells;
            std::transform(columns.begin(), columns.end(), std::back_inserter(cells),
                           [&](const Column& column) { return Raw(Shown(row[column.key])); });
            host::WriteOutput(Joined(cells, "\t") + end);
        }
    } else {
        PrintTable(columns, result.data);
    }
}

void PrintRecord(const Value& record) {
    std::size_t width = 0;
    for (const auto& [name, value] : record.Members()) {
        width = std::max(width, DisplayWidth(name));
    }
    for (const auto& [name, value] : record.Members()) {
        std::string line = Printable(name) + std::string(width - DisplayWidth(name) + 2, ' ') + Printable(Shown(value));
        line.erase(line.find_last_not_of(' ') + 1);
        host::WriteOutput(line + "\n");
    }
}

void PrintSaid(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        const std::string text = Printable(line);
        host::WriteOutput((line.starts_with("+ ")   ? Coloured(text, Colour::Green)
                           : line.starts_with("- ") ? Coloured(text, Colour::Red)
                           : line.starts_with("~ ") ? Coloured(text, Colour::Yellow)
                                                    : text) +
                          "\n");
    }
}

void PrintForPeople(const Result& result, const Globals& globals) {
    if (!globals.quiet) {
        PrintSaid(result.said);
    }
    const std::string end = globals.zero ? std::string(1, '\0') : "\n";
    switch (result.shape) {
    case Result::Shape::Said:
        break;
    case Result::Shape::Plain:
        host::WriteOutput(Raw(Shown(result.data)) + end);
        break;
    case Result::Shape::Lines:
        for (const Value& line : result.data.Items()) {
            host::WriteOutput(Raw(Shown(line)) + end);
        }
        break;
    case Result::Shape::Table:
        PrintRows(result, globals);
        break;
    case Result::Shape::Record:
        PrintRecord(result.data);
        break;
    }
}

} // namespace

void RequireColumns(const Result& result, const Globals& globals) {
    if (globals.columns.empty() || result.silent) {
        return;
    }
    const std::vector<std::string> known = KnownNames(result);
    for (const std::string& name : NamesIn(globals.columns)) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw CFailure(ExitCode::Usage, "there is no column \"" + name + "\"" + DidYouMean(name, known),
                           known.empty() ? "this prints no table" : "columns: " + Joined(known, ", "));
        }
    }
}

void PrintResult(const Result& result, const Globals& globals) {
    if (result.silent) {
        return;
    }
    if (globals.json) {
        host::WriteOutput(FormatJson(result.data) + "\n");
    } else {
        PrintForPeople(result, globals);
    }
    std::for_each(result.notes.begin(), result.notes.end(), Note);
}

void PrintResults(const std::vector<std::pair<std::string, Result>>& results, const Globals& globals) {
    if (globals.json) {
        Value all = Value::List();
        for (const auto& [name, result] : results) {
            all.Append(Value::Record{{"printer", name}, {"result", result.data}});
        }
        host::WriteOutput(FormatJson(all) + "\n");
    }
    for (const auto& [name, result] : results) {
        if (!globals.json) {
            if (!globals.quiet && globals.format.empty() && !globals.zero) {
                host::WriteOutput(Coloured(Printable(name) + ":", Colour::Blue) + "\n");
            }
            PrintForPeople(result, globals);
        }
        for (const std::string& note : result.notes) {
            std::string line = name;
            Note(line.append(": ").append(note));
        }
    }
}

void PrintFailure(const CFailure& failure, const Globals& globals) {
    if (globals.json) {
        Value error = Value::Record{{"status", static_cast<int>(failure.Code())}, {"reason", failure.what()}};
        error.Add("advice", failure.Advice().empty() ? Value() : Value(failure.Advice()));
        host::WriteOutput(FormatJson(Value::Record{{"error", error}}) + "\n");
    }
    Note(failure.what());
    if (!failure.Advice().empty()) {
        host::WriteError("  " + PrintableLines(failure.Advice()) + "\n");
    }
}

void Note(const std::string& line) { host::WriteError("cordelctl: " + Printable(line) + "\n"); }
