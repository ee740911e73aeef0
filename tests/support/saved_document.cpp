// A recursive reader over the bytes of the document: prologue, elements, attributes with their entity and character
// references, and what may stand between elements.

#include "saved_document.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool IsXmlCharacter(std::uint32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

void AppendUtf8(std::string& text, std::uint32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    const int nFollowing = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    const std::uint32_t nLead = nFollowing == 1 ? 0xC0 : nFollowing == 2 ? 0xE0 : 0xF0;
    text += static_cast<char>(nLead | (c >> (6 * nFollowing)));
    for (int i = nFollowing - 1; i >= 0; --i) {
        text += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
    }
}

class CReader {
public:
    explicit CReader(std::string_view text) : m_text(text) {}

    SavedElement ReadDocument() {
        CheckCharacters();
        Take("\xEF\xBB\xBF");
        if (Take("<?xml")) {
            SkipTo("?>");
        }
        SkipMisc();
        if (Take("<!DOCTYPE")) {
            SkipDoctype();
            SkipMisc();
        }
        Expect("<");
        SavedElement element = ReadElement();
        SkipMisc();
        if (m_nPosition != m_text.size()) {
            Fail("something follows the document element");
        }
        return element;
    }

private:
    [[noreturn]] void Fail(const char* reason) const {
        throw std::runtime_error(std::string(reason) + " at byte " + std::to_string(m_nPosition));
    }

    bool Starts(std::string_view text) const { return m_text.substr(m_nPosition).starts_with(text); }

    bool Take(std::string_view text) {
        if (!Starts(text)) {
            return false;
        }
        m_nPosition += text.size();
        return true;
    }

    void Expect(std::string_view text) {
        if (!Take(text)) {
            Fail(("expected " + std::string(text)).c_str());
        }
    }

    char Next() {
        if (m_nPosition == m_text.size()) {
            Fail("the document ends too early");
        }
        return m_text[m_nPosition++];
    }

    void SkipTo(std::string_view end) {
        const std::size_t nEnd = m_text.find(end, m_nPosition);
        if (nEnd == std::string_view::npos) {
            Fail("no end of a construct");
        }
        m_nPosition = nEnd + end.size();
    }

    bool SkipBlanks() {
        const std::size_t nStart = m_nPosition;
        while (m_nPosition < m_text.size() && IsBlank(m_text[m_nPosition])) {
            ++m_nPosition;
        }
        return m_nPosition != nStart;
    }

    bool SkipCommentOrInstruction() {
        if (Take("<!--")) {
            SkipTo("--");
            Expect(">");
            return true;
        }
        if (Take("<?")) {
            SkipTo("?>");
            return true;
        }
        return false;
    }

    void SkipMisc() {
        while (SkipBlanks() || SkipCommentOrInstruction()) {
        }
    }

    void SkipDoctype() {
        for (int nDepth = 0;;) {
            if (SkipCommentOrInstruction()) {
                continue;
            }
            const char c = Next();
            if (c == '"' || c == '\'') {
                SkipTo(std::string_view(&c, 1));
            } else if (c == '[' || c == '<') {
                ++nDepth;
            } else if (c == ']') {
                --nDepth;
            } else if (c == '>' && nDepth-- == 0) {
                return;
            }
        }
    }

    std::string ReadName() {
        const std::size_t nStart = m_nPosition;
        while (m_nPosition < m_text.size()) {
            const unsigned char c = static_cast<unsigned char>(m_text[m_nPosition]);
            const bool bFirst = m_nPosition == nStart;
            if (c < 0x80 && std::isalpha(c) == 0 && c != '_' && c != ':' &&
                (bFirst || (std::isdigit(c) == 0 && c != '-' && c != '.'))) {
                break;
            }
            ++m_nPosition;
        }
        if (m_nPosition == nStart) {
            Fail("expected a name");
        }
        return std::string(m_text.substr(nStart, m_nPosition - nStart));
    }

    void ReadReference(std::string& text) {
        const std::size_t nEnd = m_text.find(';', m_nPosition);
        if (nEnd == std::string_view::npos) {
            Fail("a reference without end");
        }
        const std::string name(m_text.substr(m_nPosition, nEnd - m_nPosition));
        m_nPosition = nEnd + 1;
        if (name.starts_with('#')) {
            const bool bHex = name.starts_with("#x");
            std::size_t nUsed = 0;
            const std::string digits = name.substr(bHex ? 2 : 1);
            const unsigned long c = digits.empty() ? 0 : std::stoul(digits, &nUsed, bHex ? 16 : 10);
            if (nUsed != digits.size() || c > 0x10FFFF || !IsXmlCharacter(static_cast<std::uint32_t>(c))) {
                Fail("a reference to no character");
            }
            AppendUtf8(text, static_cast<std::uint32_t>(c));
            return;
        }
        static const std::pair<const char*, char> predefined[] = {
            {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
        for (const auto& [entity, character] : predefined) {
            if (name == entity) {
                text += character;
                return;
            }
        }
        Fail("an entity that is not predefined");
    }

    std::string ReadAttributeValue() {
        const char quote = Next();
        if (quote != '"' && quote != '\'') {
            Fail("expected a quote");
        }
        std::string value;
        for (;;) {
            const char c = Next();
            if (c == quote) {
                return value;
            }
            if (c == '<') {
                Fail("a bare < in a value");
            } else if (c == '&') {
                ReadReference(value);
            } else if (c == '\r' && Starts("\n")) {
                // one line end, read as one blank with the byte that follows
            } else {
                value += IsBlank(c) ? ' ' : c;
            }
        }
    }

    SavedElement ReadElement() {
        SavedElement element;
        element.name = ReadName();
        for (;;) {
            const bool bBlanks = SkipBlanks();
            if (Take("/>")) {
                return element;
            }
            if (Take(">")) {
                break;
            }
            if (!bBlanks) {
                Fail("attributes that are not kept apart");
            }
            std::string name = ReadName();
            SkipBlanks();
            Expect("=");
            SkipBlanks();
            std::string value = ReadAttributeValue();
            if (std::any_of(element.attributes.begin(), element.attributes.end(),
                            [&name](const auto& attribute) { return attribute.first == name; })) {
                Fail("a repeated attribute");
            }
            element.attributes.emplace_back(std::move(name), std::move(value));
        }
        for (;;) {
            if (Take("</")) {
                if (ReadName() != element.name) {
                    Fail("an end tag of another name");
                }
                SkipBlanks();
                Expect(">");
                return element;
            }
            if (Take("<![CDATA[")) {
                SkipTo("]]>");
            } else if (SkipCommentOrInstruction()) {
                continue;
            } else if (Take("<")) {
                element.children.push_back(ReadElement());
            } else if (Take("&")) {
                std::string text;
                ReadReference(text);
            } else {
                Next();
            }
        }
    }

    // The whole document is UTF-8 without what XML cannot hold.
    void CheckCharacters() {
        while (m_nPosition < m_text.size()) {
            const unsigned char lead = static_cast<unsigned char>(m_text[m_nPosition]);
            const std::size_t nFollowing = lead < 0x80 ? 0 : lead < 0xC2 ? 4 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
            if (nFollowing == 4 || lead > 0xF4 || m_nPosition + nFollowing >= m_text.size()) {
                Fail("no UTF-8");
            }
            std::uint32_t c = nFollowing == 0 ? lead : lead & (0x3Fu >> nFollowing);
            for (std::size_t i = 1; i <= nFollowing; ++i) {
                const unsigned char following = static_cast<unsigned char>(m_text[m_nPosition + i]);
                if ((following & 0xC0) != 0x80) {
                    Fail("no UTF-8");
                }
                c = (c << 6) | (following & 0x3Fu);
            }
            if (!IsXmlCharacter(c) || (nFollowing == 2 && c < 0x800) || (nFollowing == 3 && c < 0x10000)) {
                Fail("a character that XML cannot hold");
            }
            m_nPosition += nFollowing + 1;
        }
        m_nPosition = 0;
    }

    std::string_view m_text;
    std::size_t m_nPosition = 0;
};

} // namespace

SavedElement ReadSavedDocument(const std::string& bytes) { return CReader(bytes).ReadDocument(); }

const SavedElement* FindBelow(const SavedElement& element, const std::string& name) {
    for (const SavedElement& child : element.children) {
        if (child.name == name) {
            return &child;
        }
        if (const SavedElement* const found = FindBelow(child, name); found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

std::vector<Record> RecordsBelow(const SavedElement& element, const std::string& name) {
    const SavedElement* const container = FindBelow(element, name);
    if (container == nullptr) {
        throw std::runtime_error("no element " + name);
    }
    std::vector<Record> records;
    for (const SavedElement& child : container->children) {
        records.push_back(child.attributes);
    }
    return records;
}
