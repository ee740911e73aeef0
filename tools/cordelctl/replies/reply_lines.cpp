#include "reply_lines.h"

#include "platform/utf8.h"
#include "reply_error.h"

#include <array>
#include <utility>

namespace {

constexpr char kTab = '\t';
constexpr char kFormFeed = '\f';

bool IsUtf8(std::string_view bytes) {
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < bytes.size();) {
        if (!DecodeUtf8(bytes, position, codePoint)) {
            return false;
        }
    }
    return true;
}

std::string FromRoman8(std::string_view bytes) {
    // From 0xA0; 0xFF is not in use.
    constexpr std::u32string_view kUpperPart =
        U"\u00A0ÀÂÈÊËÎÏ´ˋˆ¨˜ÙÛ₤¯Ýý°ÇçÑñ¡¿¤£¥§ƒ¢âêôûáéóúàèòùäëöüÅîØÆåíøæÄìÖÜÉïßÔÁÃãÐðÍÌÓÒÕõŠšÚŸÿÞþ·µ¶¾—¼½ªº«■»±\uFFFD";
    static_assert(kUpperPart.size() == 96);
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        AppendUtf8(text, code < 0x80 ? code : code < 0xA0 ? U'\uFFFD' : kUpperPart[code - 0xA0U]);
    }
    return text;
}

/// The control character that is typed out at this place, and how long it is there; nothing when there is none.
std::pair<char, std::size_t> TypedOut(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, char>, 5> kNames{
        {{"<CR>", '\r'}, {"<LF>", '\n'}, {"<HT>", kTab}, {"<FF>", kFormFeed}, {"<ESC>", '\x1B'}}};
    for (const auto& [name, character] : kNames) {
        if (text.substr(0, name.size()) == name) {
            return {character, name.size()};
        }
    }
    return {'\0', 0};
}

class CLineSplitter {
public:
    explicit CLineSplitter(std::string_view capture) : m_strCapture(capture), m_bUtf8(IsUtf8(capture)) {}

    std::vector<ReplyLine> Split() {
        while (m_nPosition < m_strCapture.size()) {
            Step();
        }
        EndLine(false);
        return std::move(m_lines);
    }

private:
    void Step() {
        const std::string_view rest = m_strCapture.substr(m_nPosition);
        auto [character, length] = rest[0] == '<' ? TypedOut(rest) : std::pair(rest[0], std::size_t{1});
        if (length == 0) {
            character = '<';
            length = 1;
        }
        if (character == '\x1B') {
            // Behind a typed-out escape character stands the same as behind a real one.
            if (rest.substr(length, kUniversalExit.size() - 1) != kUniversalExit.substr(1)) {
                throw CReplyError(m_nLine, "there is an escape sequence other than the universal exit");
            }
            m_nPosition += length + kUniversalExit.size() - 1;
            EndLine(false);
            return;
        }
        m_nPosition += length;
        switch (character) {
        case '\r':
        case '\n':
            EndLine(false);
            // One that is typed out ends a line of the reply, but none of the capture.
            if (length == 1 && (character == '\n' || m_strCapture.substr(m_nPosition, 1) != "\n")) {
                ++m_nLine;
            }
            break;
        case kFormFeed:
            EndLine(true);
            break;
        default:
            if (static_cast<unsigned char>(character) < 0x20 && character != kTab) {
                throw CReplyError(m_nLine, "there is a control character (" +
                                               std::to_string(static_cast<int>(character)) +
                                               ") that belongs in no reply");
            }
            m_strLine += character;
        }
    }

    void EndLine(bool formFeed) {
        m_strLine.erase(m_strLine.find_last_not_of(" \t") + 1);
        if (!m_strLine.empty()) {
            m_lines.push_back({m_nLine, m_bUtf8 ? m_strLine : FromRoman8(m_strLine), formFeed});
            m_strLine.clear();
        } else if (formFeed) {
            m_lines.push_back({m_nLine, "", true});
        }
    }

    std::string_view m_strCapture;
    bool m_bUtf8;
    std::size_t m_nPosition = 0;
    unsigned int m_nLine = 1;
    std::string m_strLine;
    std::vector<ReplyLine> m_lines;
};

} // namespace

std::vector<ReplyLine> SplitReply(std::string_view capture) {
    if (capture.size() > kLargestCapture) {
        throw CReplyError(1, "it is larger than any reply");
    }
    return CLineSplitter(capture).Split();
}
