#include "reference_text.h"

#include <array>
#include <cstddef>
#include <vector>

namespace {

struct ByteRange {
    unsigned char first;
    unsigned char last;
};

/// The well-formed sequences of UTF-8, one line for each shape.
const std::vector<std::vector<ByteRange>> kSequences = {
    {{0x00, 0x7F}},
    {{0xC2, 0xDF}, {0x80, 0xBF}},
    {{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}},
    {{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}},
    {{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
    {{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}},
};

/// How many bytes at `position` agree with the beginning of the sequence.
std::size_t Agreement(const std::string& bytes, std::size_t position, const std::vector<ByteRange>& sequence) {
    std::size_t count = 0;
    while (count < sequence.size() && position + count < bytes.size()) {
        const auto byte = static_cast<unsigned char>(bytes[position + count]);
        if (byte < sequence[count].first || byte > sequence[count].last) {
            break;
        }
        ++count;
    }
    return count;
}

} // namespace

std::string ReferenceText(const std::string& bytes) {
    std::string text;
    for (std::size_t position = 0; position < bytes.size();) {
        std::size_t longest = 0;
        bool bWhole = false;
        for (const std::vector<ByteRange>& sequence : kSequences) {
            const std::size_t count = Agreement(bytes, position, sequence);
            if (count > longest) {
                longest = count;
                bWhole = count == sequence.size();
            }
        }
        if (bWhole) {
            text += bytes.substr(position, longest);
        } else {
            text += "\xEF\xBF\xBD";
        }
        position += longest > 0 ? longest : 1;
    }
    return text;
}

bool IsDocumentText(const std::string& text) {
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 && character != '\t' && character != '\n' && character != '\r') {
            return false;
        }
    }
    return text.find("\xEF\xBF\xBE") == std::string::npos && text.find("\xEF\xBF\xBF") == std::string::npos;
}

bool IsDocumentName(const std::string& text) {
    const auto isLetter = [](char character) {
        return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') || character == '_' ||
               character == ':' || static_cast<unsigned char>(character) >= 0x80;
    };
    if (text.empty() || !isLetter(text[0])) {
        return false;
    }
    for (const char character : text) {
        const bool bFurther = (character >= '0' && character <= '9') || character == '-' || character == '.';
        if (!isLetter(character) && !bFurther) {
            return false;
        }
    }
    return true;
}

std::string BaseName(const std::string& name) {
    const std::size_t colon = name.find(':');
    return colon != std::string::npos ? name.substr(colon + 1) : name;
}
