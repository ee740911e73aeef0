// The values that a verb's result is made of, and that are read from JSON: a small tree. All texts are UTF-8.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

class Value {
public:
    using List = std::vector<Value>;
    using Member = std::pair<std::string, Value>;
    using Record = std::vector<Member>; // in order; of two members with one name the first counts

    /// A number as JSON writes it: kept as text, so that none is too large or loses digits.
    struct Number {
        std::string text;
        bool operator==(const Number&) const = default;
    };

    Value() = default;
    Value(bool truth) : m_content(truth) {}
    Value(int number) : m_content(Number{std::to_string(number)}) {}
    Value(std::int64_t number) : m_content(Number{std::to_string(number)}) {}
    Value(std::size_t number) : m_content(Number{std::to_string(number)}) {}
    Value(Number number) : m_content(std::move(number)) {}
    Value(const char* text) : m_content(std::string(text)) {}
    Value(std::string_view text) : m_content(std::string(text)) {}
    Value(std::string text) : m_content(std::move(text)) {}
    Value(List list) : m_content(std::move(list)) {}
    Value(Record record) : m_content(std::move(record)) {}

    bool IsNull() const noexcept { return std::holds_alternative<std::monostate>(m_content); }
    bool IsBool() const noexcept { return std::holds_alternative<bool>(m_content); }
    bool IsNumber() const noexcept { return std::holds_alternative<Number>(m_content); }
    bool IsText() const noexcept { return std::holds_alternative<std::string>(m_content); }
    bool IsList() const noexcept { return std::holds_alternative<List>(m_content); }
    bool IsRecord() const noexcept { return std::holds_alternative<Record>(m_content); }

    bool IsTrue() const noexcept { return IsBool() && std::get<bool>(m_content); }

    /// The text, or the number as text; empty for anything else.
    std::string Text() const;

    /// The items of a list, the members of a record; none of anything else.
    const List& Items() const noexcept;
    const Record& Members() const noexcept;

    /// The member of a record; null when there is none, or when this is no record.
    const Value* Find(std::string_view name) const noexcept;

    /// The same, with a null value for none.
    const Value& operator[](std::string_view name) const noexcept;

    /// Makes this a record, if it is null, and adds a member.
    void Add(std::string name, Value value);

    /// Makes this a list, if it is null, and adds an item.
    void Append(Value value);

    bool operator==(const Value&) const = default;

private:
    std::variant<std::monostate, bool, Number, std::string, List, Record> m_content;
};
