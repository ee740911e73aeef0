#include "reply_words.h"

#include <charconv>

namespace {

constexpr std::string_view kBlanks = " \t";

char Capital(char letter) noexcept {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - ('a' - 'A')) : letter;
}

bool BeginsWith(std::string_view text, std::string_view word) noexcept {
    if (text.size() < word.size()) {
        return false;
    }
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (Capital(text[i]) != word[i]) {
            return false;
        }
    }
    return true;
}

void SkipBlanks(std::string_view& text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

/// The value at the beginning, quoted or up to the next blank; cuts it off.
std::string_view TakeValue(std::string_view& text) noexcept {
    const bool quoted = !text.empty() && text[0] == '"';
    if (quoted) {
        text.remove_prefix(1);
    }
    const std::size_t end = std::min(quoted ? text.find('"') : text.find_first_of(kBlanks), text.size());
    const std::string_view value = text.substr(0, end);
    text.remove_prefix(std::min(end + (quoted ? 1 : 0), text.size()));
    return value;
}

} // namespace

std::string_view Trimmed(std::string_view text) noexcept {
    SkipBlanks(text);
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool SkipWord(std::string_view& text, std::string_view word) noexcept {
    if (!BeginsWith(text, word)) {
        return false;
    }
    const std::string_view rest = text.substr(word.size());
    if (!rest.empty() && kBlanks.find(rest[0]) == std::string_view::npos && rest[0] != '[') {
        return false;
    }
    text = rest;
    SkipBlanks(text);
    return true;
}

std::optional<std::int64_t> NumberOf(std::string_view text) noexcept {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || text[0] == '-' || error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::string> ParameterOf(std::string_view parameters, std::string_view name) {
    while (true) {
        SkipBlanks(parameters);
        if (parameters.empty()) {
            return std::nullopt;
        }
        const std::size_t nameEnd = std::min(parameters.find_first_of("= \t"), parameters.size());
        const bool isNamed = nameEnd == name.size() && BeginsWith(parameters, name);
        parameters.remove_prefix(nameEnd);
        SkipBlanks(parameters);
        if (parameters.empty() || parameters[0] != '=') {
            continue; // a word without a value
        }
        parameters.remove_prefix(1);
        SkipBlanks(parameters);
        const std::string_view value = TakeValue(parameters);
        if (isNamed) {
            return std::string(value);
        }
    }
}
