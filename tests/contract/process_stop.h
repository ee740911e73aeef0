// Recognises the last line of a process that stops because a value does not fit.

#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

/// The words of a text: runs of letters, digits and underscores, in lower case.
inline std::vector<std::string> WordsOf(const std::string& text) {
    std::vector<std::string> words(1);
    for (const char character : text) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_') {
            words.back() += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    return words;
}

/// One line, and nothing else, that names the field, the length of the text and the size of the field.
MATCHER_P3(IsStopLine, field, length, size, "") {
    const std::string text = arg;
    if (text.rfind("cordelbox: ", 0) != 0 || text.empty() || text.back() != '\n' ||
        std::count(text.begin(), text.end(), '\n') != 1) {
        *result_listener << "which is not one line of the library";
        return false;
    }
    std::vector<std::string> words = WordsOf(text);
    for (const std::string& wanted : {WordsOf(field).front(), std::to_string(length), std::to_string(size)}) {
        const auto found = std::find(words.begin(), words.end(), wanted);
        if (found == words.end()) {
            *result_listener << "which lacks " << wanted;
            return false;
        }
        words.erase(found);
    }
    return true;
}
