// The values that a verb's result is made of.

#include "value.h"

#include <algorithm>

std::string Value::Text() const {
    if (const auto* const text = std::get_if<std::string>(&m_content)) {
        return *text;
    }
    const auto* const number = std::get_if<Number>(&m_content);
    return number != nullptr ? number->text : std::string();
}

const Value::List& Value::Items() const noexcept {
    static const List none;
    const auto* const list = std::get_if<List>(&m_content);
    return list != nullptr ? *list : none;
}

const Value::Record& Value::Members() const noexcept {
    static const Record none;
    const auto* const record = std::get_if<Record>(&m_content);
    return record != nullptr ? *record : none;
}

const Value* Value::Find(std::string_view name) const noexcept {
    const Record& members = Members();
    const auto found =
        std::find_if(members.begin(), members.end(), [name](const Member& member) { return member.first == name; });
    return found != members.end() ? &found->second : nullptr;
}

const Value& Value::operator[](std::string_view name) const noexcept {
    static const Value none;
    const Value* const found = Find(name);
    return found != nullptr ? *found : none;
}

void Value::Add(std::string name, Value value) {
    if (IsNull()) {
        m_content = Record();
    }
    std::get<Record>(m_content).emplace_back(std::move(name), std::move(value));
}

void Value::Append(Value value) {
    if (IsNull()) {
        m_content = List();
    }
    std::get<List>(m_content).push_back(std::move(value));
}
