// JSON, in and out: the one file that knows the JSON library.

#include "json.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace {

using Library = nlohmann::ordered_json;

/// Takes the parser's events: no tree of the library is made, whose depth nothing bounds.
class CValueBuilder : public nlohmann::json_sax<nlohmann::json> {
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

Library ToLibrary(const Value& value) {
    if (value.IsRecord()) {
        Library object = Library::object();
        for (const auto& [name, member] : value.Members()) {
            object.emplace(name, ToLibrary(member));
        }
        return object;
    }
    if (value.IsList()) {
        Library array = Library::array();
        for (const Value& item : value.Items()) {
            array.push_back(ToLibrary(item));
        }
        return array;
    }
    if (value.IsNumber()) {
        return Library::parse(value.Text());
    }
    return value.IsNull() ? Library() : value.IsBool() ? Library(value.IsTrue()) : Library(value.Text());
}

} // namespace

Value ParseJson(std::istream& stream) {
    CValueBuilder builder;
    nlohmann::json::sax_parse(stream, &builder);
    return builder.Result();
}

std::string FormatJson(const Value& value) {
    return ToLibrary(value).dump(2, ' ', false, Library::error_handler_t::replace);
}
