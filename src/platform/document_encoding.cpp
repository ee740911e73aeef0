#include "platform/document_encoding.h"

#include <algorithm>

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

/// One character of two for each unit of UTF-16; what is not ASCII is of no interest here.
std::string Narrow(std::string_view utf16, bool bBigEndian) {
    std::string text;
    for (std::size_t position = 0; position + 1 < utf16.size(); position += 2) {
        const char high = utf16[position + (bBigEndian ? 0 : 1)];
        const char low = utf16[position + (bBigEndian ? 1 : 0)];
        text += high == '\0' ? low : '?';
    }
    return text;
}

/// The value of the pseudo attribute "encoding" of the XML declaration that `head` begins with, in upper case; empty
/// when there is none.
std::string DeclaredEncoding(std::string_view head) {
    constexpr std::string_view kWhite = " \t\r\n";
    if (!head.starts_with("<?xml") || head.size() < 6 || kWhite.find(head[5]) == std::string_view::npos) {
        return {};
    }
    const std::string_view declaration = head.substr(0, head.find("?>"));
    const std::size_t name = declaration.find("encoding");
    const std::size_t open = name == std::string_view::npos ? name : declaration.find_first_of("\"'", name);
    const std::size_t close = open == std::string_view::npos ? open : declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos) {
        return {};
    }
    std::string encoding(declaration.substr(open + 1, close - open - 1));
    std::transform(encoding.begin(), encoding.end(), encoding.begin(), [](char character) {
        return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
    });
    return encoding;
}

template <std::size_t count>
bool IsOneOf(std::string_view name, const std::string_view (&names)[count]) noexcept {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

} // namespace

bool DocumentEncoding::IsContradictory() const noexcept {
    constexpr std::string_view kUtf8[] = {"UTF-8", "UTF8"};
    constexpr std::string_view kAnyUtf16[] = {"UTF-16", "UTF16", "UCS-2", "ISO-10646-UCS-2"};
    constexpr std::string_view kLittleEndian[] = {"UTF-16LE", "UNICODE"};
    constexpr std::string_view kBigEndian[] = {"UTF-16BE", "UNICODEFFFE"};
    if (m_strDeclared.empty()) {
        return false;
    }
    switch (m_form) {
    case EncodingForm::MarkedUtf8:
        return !IsOneOf(m_strDeclared, kUtf8);
    case EncodingForm::Utf16LittleEndian:
        return !IsOneOf(m_strDeclared, kAnyUtf16) && !IsOneOf(m_strDeclared, kLittleEndian);
    case EncodingForm::Utf16BigEndian:
        return !IsOneOf(m_strDeclared, kAnyUtf16) && !IsOneOf(m_strDeclared, kBigEndian);
    case EncodingForm::OneByteUnits:
        return IsOneOf(m_strDeclared, kAnyUtf16) || IsOneOf(m_strDeclared, kLittleEndian) ||
               IsOneOf(m_strDeclared, kBigEndian);
    }
    return false;
}

DocumentEncoding FindEncoding(std::string_view head) {
    head = head.substr(0, kDeclarationBytes);
    DocumentEncoding encoding;
    if (head.starts_with(kUtf8Mark)) {
        encoding.m_form = EncodingForm::MarkedUtf8;
        encoding.m_nMarkBytes = kUtf8Mark.size();
    } else if (head.starts_with(kLittleEndianMark)) {
        encoding.m_form = EncodingForm::Utf16LittleEndian;
        encoding.m_nMarkBytes = kLittleEndianMark.size();
    } else if (head.starts_with(kBigEndianMark)) {
        encoding.m_form = EncodingForm::Utf16BigEndian;
        encoding.m_nMarkBytes = kBigEndianMark.size();
    } else if (head.starts_with(std::string_view("<\0?\0", 4))) {
        encoding.m_form = EncodingForm::Utf16LittleEndian;
    } else if (head.starts_with(std::string_view("\0<\0?", 4))) {
        encoding.m_form = EncodingForm::Utf16BigEndian;
    }
    const std::string_view text = head.substr(encoding.m_nMarkBytes);
    encoding.m_strDeclared = encoding.IsUtf16()
                                 ? DeclaredEncoding(Narrow(text, encoding.m_form == EncodingForm::Utf16BigEndian))
                                 : DeclaredEncoding(text);
    return encoding;
}
