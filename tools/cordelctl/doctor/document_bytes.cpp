// What the first bytes of a document say of its encoding.

#include "document_bytes.h"

#include <algorithm>

namespace {

/// The value of "encoding" in the XML declaration; empty when there is none.
std::string_view DeclaredEncoding(std::string_view bytes) {
    const auto declaration = bytes.substr(0, std::min(bytes.find("?>"), bytes.size()));
    const auto name = declaration.find("encoding");
    if (!declaration.starts_with("<?xml") || name == std::string_view::npos) {
        return {};
    }
    const auto quote = declaration.find_first_of("\"'", name);
    if (quote == std::string_view::npos) {
        return {};
    }
    const auto end = declaration.find(declaration[quote], quote + 1);
    return end == std::string_view::npos ? std::string_view() : declaration.substr(quote + 1, end - quote - 1);
}

} // namespace

std::string EncodingOf(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with(std::string_view("<\0?\0", 4))) {
        return "UTF-16LE";
    }
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with(std::string_view("\0<\0?", 4))) {
        return "UTF-16BE";
    }
    std::string encoding(bytes.starts_with("\xEF\xBB\xBF") ? std::string_view() : DeclaredEncoding(bytes));
    std::transform(encoding.begin(), encoding.end(), encoding.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return encoding.empty() ? "UTF-8" : encoding;
}
