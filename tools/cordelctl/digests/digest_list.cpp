#include "digest_list.h"

#include <algorithm>

namespace {

constexpr std::size_t kDigestLength = 64;
constexpr std::string_view kBetween = "  ";

bool IsDigest(std::string_view text) {
    return text.size() == kDigestLength && std::all_of(text.begin(), text.end(), [](char digit) {
               return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f');
           });
}

// A backslash begins the line of a path with line ends or backslashes in it.
std::string Escaped(const std::string& path, bool& escaped) {
    std::string text;
    for (const char letter : path) {
        escaped = escaped || letter == '\\' || letter == '\n' || letter == '\r';
        text += letter == '\\' ? "\\\\" : letter == '\n' ? "\\n" : letter == '\r' ? "\\r" : std::string(1, letter);
    }
    return text;
}

std::string Unescaped(std::string_view text) {
    std::string path;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
            path += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i];
        } else {
            path += text[i];
        }
    }
    return path;
}

} // namespace

DigestList ReadDigestList(std::string_view text) {
    DigestList list;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const bool escaped = !line.empty() && line.front() == '\\';
        line.remove_prefix(escaped ? 1 : 0);
        if (line.size() > kDigestLength + kBetween.size() && IsDigest(line.substr(0, kDigestLength)) &&
            line.substr(kDigestLength, kBetween.size()) == kBetween) {
            const std::string_view path = line.substr(kDigestLength + kBetween.size());
            list[escaped ? Unescaped(path) : std::string(path)] = line.substr(0, kDigestLength);
        }
    }
    return list;
}

std::string DigestListText(const DigestList& list) {
    std::string text;
    for (const auto& [path, digest] : list) {
        bool escaped = false;
        const std::string written = Escaped(path, escaped);
        text += (escaped ? "\\" : "") + digest + std::string(kBetween) + written + "\n";
    }
    return text;
}
