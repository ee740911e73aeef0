// Prints data: as aligned tables for people, as JSON for scripts.

#include "output.h"

#include "number_text.h"
#include "platform/platform.h"

#include <algorithm>
#include <iostream>

namespace {

/// What is shown of a value. A control character from a document must not reach the terminal.
std::string Shown(const Json& value) {
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    std::string text = value.is_string() ? value.get<std::string>() : value.is_null() ? "" : value.dump();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    return text;
}

std::string ShownIn(const Column& column, const Json& value) {
    switch (column.format) {
    case Format::Size:
        return ReadableSize(Shown(value));
    case Format::Tick:
        return value.get<bool>() ? "x" : "";
    default:
        return Shown(value);
    }
}

bool IsAlignedRight(const Column& column) { return column.format == Format::Number || column.format == Format::Size; }

std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

void PrintCells(const std::vector<Column>& columns, const std::vector<std::size_t>& widths,
                const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string padding(widths[i] - Width(cells[i]), ' ');
        line += (i == 0 ? "" : "  ") + (IsAlignedRight(columns[i]) ? padding + cells[i] : cells[i] + padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    std::cout << platform::FromUtf8(line) << '\n';
}

} // namespace

Json JsonText(std::string_view text) { return platform::ToUtf8(text); }

void PrintJson(const Json& data) { std::cout << data.dump(2, ' ', false, Json::error_handler_t::replace) << '\n'; }

void PrintRows(const Globals& globals, const std::vector<Column>& columns, const std::vector<Json>& rows) {
    if (globals.json) {
        PrintJson(Json(rows));
        return;
    }
    std::vector<std::vector<std::string>> lines(1);
    for (const Column& column : columns) {
        lines.front().emplace_back(column.heading);
    }
    for (const Json& row : rows) {
        auto& cells = lines.emplace_back();
        for (const Column& column : columns) {
            cells.push_back(ShownIn(column, row.value(column.key, Json())));
        }
    }
    std::vector<std::size_t> widths(columns.size());
    for (const auto& cells : lines) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            widths[i] = std::max(widths[i], Width(cells[i]));
        }
    }
    for (const auto& cells : lines) {
        PrintCells(columns, widths, cells);
    }
}

void PrintRecord(const Globals& globals, const Json& record) {
    if (globals.json) {
        PrintJson(record);
        return;
    }
    std::size_t width = 0;
    for (const auto& member : record.items()) {
        width = std::max(width, Width(member.key()));
    }
    for (const auto& member : record.items()) {
        std::cout << member.key() << std::string(width - Width(member.key()) + 2, ' ')
                  << platform::FromUtf8(Shown(member.value())) << '\n';
    }
}

void PrintText(const Globals& globals, const std::string& text) {
    if (globals.json) {
        PrintJson(JsonText(text));
    } else {
        std::cout << text << '\n';
    }
}

void Say(const Globals& globals, const std::string& line) {
    if (!globals.json) {
        std::cout << line << '\n';
    }
}

void Note(const std::string& line) { std::cerr << "cordelctl: " << line << '\n'; }
