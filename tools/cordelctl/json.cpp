// JSON, in and out: the one file that knows the JSON library.

#include "json.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace {

using Library = nlohmann::ordered_json;

/// Takes the parser's events: no tree of the library is made, whose depth nothing bounds.
class CValueBuilder : public nlohmann::json_sax<Library> {
public:
    bool null() override { return Put({}); }
    bool boolean(bool truth) override { return Put(truth); }
    bool number_integer(number_integer_t number) override { return Put(static_cast<std::int64_t>(number)); }
    bool number_unsigned(number_unsigned_t number) override { return Put(Value::Number{std::to_string(number)}); }
    bool number_float(number_float_t, const string_t& text) override { return Put(Value::Number{text}); }
    bool string(string_t& text) override { return Put(std::move(text)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return Open(Value(Value::Record())); }
    bool start_array(std::size_t) override { return Open(Value(Value::List())); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }

    bool key(string_t& name) override {
        m_open.back().name = std::move(name);
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        const std::string reason = error.what();
        m_strError = reason.substr(reason.find(']') + 2); // behind the library's own number
        return false;
    }

    Value Result() {
        if (!m_strError.empty()) {
            throw std::runtime_error(m_strError);
        }
        return std::move(m_result);
    }

private:
    struct Open_ {
        Value value;
        std::string name; // of the member that comes next
    };

    bool Put(Value value) {
        if (m_open.empty()) {
            m_result = std::move(value);
        } else if (Open_& parent = m_open.back(); parent.value.IsRecord()) {
            parent.value.Add(std::move(parent.name), std::move(value));
        } else {
            parent.value.Append(std::move(value));
        }
        return true;
    }

    bool Open(Value value) {
        if (m_open.size() == kDeepestJson) {
            m_strError = "it is nested more than " + std::to_string(kDeepestJson) + " deep";
            return false;
        }
        m_open.push_back({std::move(value), {}});
        return true;
    }

    bool Close() {
        Value value = std::move(m_open.back().value);
        m_open.pop_back();
        return Put(std::move(value));
    }

    std::vector<Open_> m_open;
    Value m_result;
    std::string m_strError;
};

std::string Quoted(const std::string& text) {
    return Library(text).dump(-1, ' ', false, Library::error_handler_t::replace);
}

/// What stands within brackets: each item on a line of its own.
template <class Items, class WriteItem>
void WriteItems(std::string& json, const char* brackets, const Items& items, std::size_t depth, WriteItem writeItem) {
    json += brackets[0];
    const char* separator = "";
    for (const auto& item : items) {
        json.append(separator).append(1, '\n').append(2 * (depth + 1), ' ');
        writeItem(item);
        separator = ",";
    }
    if (!items.empty()) {
        json.append(1, '\n').append(2 * depth, ' ');
    }
    json += brackets[1];
}

void Write(std::string& json, const Value& value, std::size_t depth) {
    if (value.IsRecord()) {
        std::vector<const Value::Member*> members;
        for (const Value::Member& member : value.Members()) {
            if (value.Find(member.first) == &member.second) {
                members.push_back(&member);
            }
        }
        WriteItems(json, "{}", members, depth, [&](const Value::Member* member) {
            json.append(Quoted(member->first)).append(": ");
            Write(json, member->second, depth + 1);
        });
    } else if (value.IsList()) {
        WriteItems(json, "[]", value.Items(), depth, [&](const Value& item) { Write(json, item, depth + 1); });
    } else if (value.IsNumber()) {
        json += value.Text();
    } else if (value.IsText()) {
        json += Quoted(value.Text());
    } else {
        json += value.IsNull() ? "null" : value.IsTrue() ? "true" : "false";
    }
}

} // namespace

Value ParseJson(std::istream& stream) {
    CValueBuilder builder;
    Library::sax_parse(stream, &builder);
    return builder.Result();
}

std::string FormatJson(const Value& value) {
    std::string json;
    Write(json, value, 0);
    return json;
}
