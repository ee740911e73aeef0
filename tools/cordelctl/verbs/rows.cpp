// What verbs on rows share.

#include "verbs/rows.h"

#include "failure.h"
#include "text/nearest.h"
#include "text/number_text.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <map>
#include <set>

const ContainerSchema& Schema(std::string_view container) { return *FindContainerSchema(container); }

Filter FilterOf(const std::vector<std::string>& texts) {
    Filter filter;
    for (const std::string& text : texts) {
        const auto separator = text.find('=');
        if (separator == std::string::npos || separator == 0) {
            throw CFailure(ExitCode::Usage, "--where \"" + text + "\" is not of the form NAME=VALUE");
        }
        filter.emplace_back(text.substr(0, separator), text.substr(separator + 1));
    }
    return filter;
}

Option WhereOption(std::string_view help) {
    return {Option::Kind::Texts, "--where", "NAME=VALUE", help, false, Offer::Attributes};
}

std::vector<Row> ChosenRows(const Context& context, CDocument& document, const ContainerSchema& container,
                            std::string_view operand) {
    const std::string name(container.name);
    const std::string key(container.key);
    const auto keys = context.Texts(operand);
    const Filter filter = FilterOf(context.Texts("--where"));
    if (keys.empty() && filter.empty() && !context.Has("--all")) {
        throw CFailure(ExitCode::Usage, "which items of " + name + " are meant is not said",
                       "name them by " + key + ", by --where NAME=VALUE, or give --all");
    }
    const std::vector<Row> rows = document.Rows(name);
    std::set<RowNumber> chosen;
    for (const std::string& wanted : keys) {
        if (wanted.empty()) {
            throw CFailure(ExitCode::Usage, "a " + key + " is empty");
        }
        std::vector<std::string> known;
        std::size_t found = 0;
        for (const Row& row : rows) {
            if (row.Value(key) == wanted) {
                chosen.insert(row.number);
                ++found;
            }
            known.push_back(row.Value(key));
        }
        if (found == 0) {
            throw CFailure(ExitCode::Missing, "no item of " + name + " has the " + key + " \"" + wanted + "\"" +
                                                  DidYouMean(wanted, known));
        }
    }
    std::size_t matching = 0;
    for (const Row& row : rows) {
        const bool passes = std::all_of(filter.begin(), filter.end(), [&](const Pair& pair) {
            const std::string* const value = row.Find(pair.first);
            return value != nullptr && *value == pair.second;
        });
        if (passes && (!filter.empty() || context.Has("--all"))) {
            chosen.insert(row.number);
            ++matching;
        }
    }
    if (matching == 0 && !filter.empty()) {
        throw CFailure(ExitCode::Missing,
                       "no item of " + name + " has these values: " + Joined(context.Texts("--where"), ", "));
    }
    std::vector<Row> result;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(result),
                 [&](const Row& row) { return chosen.count(row.number) != 0; });
    return result;
}

std::string OptionNameOf(std::string_view attribute) {
    std::string name = "--";
    for (std::size_t i = 0; i < attribute.size(); ++i) {
        const bool upper = std::isupper(static_cast<unsigned char>(attribute[i])) != 0;
        const bool afterLower = i > 0 && std::islower(static_cast<unsigned char>(attribute[i - 1])) != 0;
        if (upper && afterLower) {
            name += '-';
        }
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(attribute[i])));
    }
    return name;
}

std::vector<Option> EditOptions(const ContainerSchema& container, const std::vector<std::string_view>& without) {
    static std::deque<std::string> texts; // what the options refer to
    std::vector<Option> options;
    for (const AttributeSchema& attribute : container.attributes) {
        if (std::find(without.begin(), without.end(), attribute.name) != without.end()) {
            continue;
        }
        const std::string& name = texts.emplace_back(OptionNameOf(attribute.name));
        if (std::any_of(options.begin(), options.end(), [&](const Option& other) { return other.name == name; })) {
            continue;
        }
        const bool size = attribute.kind == ValueKind::Bytes || attribute.kind == ValueKind::Kibibytes;
        const std::string& help =
            texts.emplace_back(std::string(attribute.name) + ": " + std::string(attribute.meaning) +
                               (size ? ", in bytes or with a unit: 4G" : "") +
                               (attribute.allowed.empty() ? "" : " (" + std::string(attribute.allowed) + ")"));
        options.push_back({Option::Kind::Text, name, size ? "SIZE" : "VALUE", help});
    }
    return options;
}

std::string StoredValue(const AttributeSchema& attribute, const std::string& value) {
    std::string stored = value;
    if (attribute.kind == ValueKind::Bytes || attribute.kind == ValueKind::Kibibytes) {
        const bool unit = value.find_first_not_of("0123456789") != std::string::npos;
        if (const auto bytes = unit ? ParseSizeWithUnit(value) : std::nullopt) {
            stored = std::to_string(attribute.kind == ValueKind::Bytes ? *bytes : *bytes / 1024);
        }
    }
    RequireValue(attribute, stored);
    return stored;
}

std::vector<Pair> GivenValues(const Arguments& arguments, const ContainerSchema& container) {
    std::vector<Pair> values;
    for (const AttributeSchema& attribute : container.attributes) {
        const std::string option = OptionNameOf(attribute.name);
        const bool known =
            std::any_of(values.begin(), values.end(), [&](const Pair& pair) { return pair.first == attribute.name; });
        if (arguments.Has(option) && !known) {
            values.emplace_back(attribute.name, StoredValue(attribute, arguments.Text(option)));
        }
    }
    return values;
}

namespace {

/// Whether a row without it could not be found again, here or on the printer.
bool TellsApart(const ContainerSchema& container, std::string_view attribute) {
    return attribute == container.key ||
           (container.name == "Files" && (attribute == "Volume" || attribute == "LocalPath"));
}

} // namespace

void EditRows(CDocument& document, const ContainerSchema& container, std::vector<Row>& rows,
              const std::vector<Pair>& values) {
    const std::string name(container.name);
    for (const auto& [attribute, value] : values) {
        if (value.empty() && TellsApart(container, attribute)) {
            throw CFailure(ExitCode::Usage, "the value behind " + OptionNameOf(attribute) + " is empty");
        }
        if (attribute == container.key) {
            const auto others = document.RowsWhere(name, {{attribute, value}});
            const bool taken = rows.size() > 1 || (!others.empty() && others.front().number != rows.front().number);
            if (taken) {
                throw CFailure(ExitCode::Refused,
                               "two items of " + name + " would have the " + attribute + " \"" + value + "\"");
            }
        }
    }
    for (Row& row : rows) {
        for (const auto& [attribute, value] : values) {
            document.SetValue(name, row, attribute, value);
        }
    }
}

Value DataOf(const Row& row) {
    Value record = Value::Record();
    for (const auto& [name, value] : row.values) {
        if (record.Find(name) == nullptr) { // the first of a name counts
            record.Add(name, value);
        }
    }
    return record;
}

std::vector<std::string> AttributeNames(const ContainerSchema& container) {
    std::vector<std::string> names;
    std::transform(container.attributes.begin(), container.attributes.end(), std::back_inserter(names),
                   [](const AttributeSchema& attribute) { return std::string(attribute.name); });
    return names;
}

Result TableOf(const std::vector<Row>& rows) {
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    std::set<std::string> known;
    for (const Row& row : rows) {
        result.data.Append(DataOf(row));
        for (const auto& [name, value] : row.values) {
            if (known.insert(name).second) {
                result.columns.push_back({name, name, Format::Text});
            }
        }
    }
    return result;
}

std::string Counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}
