// Only the marks of ASCII and whole names matter here, and no character of any encoding that a DOM reads has the byte
// of such a mark for one of its own.

#include "markup_check.h"

#include "platform/document_encoding.h"
#include "platform/namespaces.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr std::wstring_view kWhite = L" \t\r\n";

/// The document in wide characters: those of UTF-16 as they are, a byte beyond ASCII as some letter of its own.
std::wstring Widen(std::string_view bytes, const DocumentEncoding& encoding) {
    constexpr wchar_t kSomeLetter = 0x4E00;
    bytes.remove_prefix(encoding.m_nMarkBytes);
    std::wstring text;
    if (encoding.IsUtf16()) {
        const std::size_t low = encoding.m_form == EncodingForm::Utf16BigEndian ? 1 : 0;
        text.reserve(bytes.size() / 2);
        for (std::size_t position = 0; position + 1 < bytes.size(); position += 2) {
            const unsigned lowByte = static_cast<unsigned char>(bytes[position + low]);
            const unsigned highByte = static_cast<unsigned char>(bytes[position + 1 - low]);
            text += static_cast<wchar_t>(highByte << 8 | lowByte);
        }
        return text;
    }
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += static_cast<wchar_t>(value < 0x80 ? value : kSomeLetter + value);
    }
    return text;
}

class CMarkup {
public:
    explicit CMarkup(std::wstring_view text) noexcept : m_text(text) {}

    MarkupFindings Check() {
        while (m_findings.m_pFault == nullptr && Find(L"<")) {
            if (Skip(L"<!--")) {
                Find(L"-->");
            } else if (Skip(L"<![CDATA[")) {
                Find(L"]]>");
            } else if (Skip(L"<?")) {
                Find(L"?>");
            } else if (Skip(L"<!DOCTYPE")) {
                ReadDoctype();
            } else if (Skip(L"</")) {
                m_namespaces.Leave(m_nDepth);
                m_nDepth -= m_nDepth > 0 ? 1 : 0;
            } else {
                ++m_nPosition;
                ReadStartTag();
            }
        }
        return m_findings;
    }

private:
    /// Moves to the next occurrence, or to the end.
    bool Find(std::wstring_view wanted) noexcept {
        m_nPosition = std::min(m_text.find(wanted, m_nPosition), m_text.size());
        return m_nPosition < m_text.size();
    }

    /// Moves behind what stands here, if it is that.
    bool Skip(std::wstring_view wanted) noexcept {
        if (!m_text.substr(m_nPosition).starts_with(wanted)) {
            return false;
        }
        m_nPosition += wanted.size();
        return true;
    }

    void SkipWhite() noexcept { m_nPosition = std::min(m_text.find_first_not_of(kWhite, m_nPosition), m_text.size()); }

    wchar_t Here() const noexcept { return m_nPosition < m_text.size() ? m_text[m_nPosition] : L'\0'; }

    /// What stands before the next of these marks.
    std::wstring_view UpTo(std::wstring_view marks) noexcept {
        const std::size_t start = m_nPosition;
        m_nPosition = std::min(m_text.find_first_of(marks, start), m_text.size());
        return m_text.substr(start, m_nPosition - start);
    }

    /// What stands in the quotes that begin here.
    std::wstring_view Quoted() noexcept {
        const wchar_t quote = Here();
        ++m_nPosition;
        const std::wstring_view text = UpTo({&quote, 1});
        m_nPosition = std::min(m_nPosition + 1, m_text.size());
        return text;
    }

    bool IsAtQuote() const noexcept { return Here() == L'"' || Here() == L'\''; }

    void ReadDoctype() {
        bool bInside = false;
        while (m_nPosition < m_text.size()) {
            if (IsAtQuote()) {
                m_bUnreadDeclarations = m_bUnreadDeclarations || !bInside; // the external subset
                Quoted();
            } else if (Skip(L"<!--")) {
                Find(L"-->");
            } else if (Skip(L"<?")) {
                Find(L"?>");
            } else if (Skip(L"<!ENTITY")) {
                SkipWhite();
                m_entities.insert(UpTo(L" \t\r\n%>"));
            } else if (Skip(L"<!ATTLIST")) {
                m_findings.m_bDeclaresAttributes = true;
            } else if (Skip(L"%")) {
                // A reference to a parameter entity, as opposed to the declaration of one.
                m_bUnreadDeclarations = m_bUnreadDeclarations || kWhite.find(Here()) == std::wstring_view::npos;
            } else if (Here() == L'[' || Here() == L']') {
                bInside = Here() == L'[';
                ++m_nPosition;
            } else if (Skip(L">")) {
                if (!bInside) {
                    return;
                }
            } else {
                ++m_nPosition;
            }
        }
    }

    void ReadStartTag() {
        const std::wstring_view name = UpTo(L" \t\r\n/>");
        bool bNamespaces = ConcernsNamespaces(name);
        m_attributes.clear();
        for (SkipWhite(); m_nPosition < m_text.size() && Here() != L'>' && Here() != L'/'; SkipWhite()) {
            const std::wstring_view attribute = UpTo(L" \t\r\n=/>");
            UpTo(L"\"'>");
            const std::wstring_view text = IsAtQuote() ? Quoted() : std::wstring_view();
            m_attributes.push_back({attribute, text});
            bNamespaces = bNamespaces || ConcernsNamespaces(attribute);
            if (m_bUnreadDeclarations && NamesUnread(text)) {
                m_findings.m_pFault = "reference to an entity that is not read";
            }
        }
        ++m_nDepth;
        const char* const wrong = bNamespaces ? m_namespaces.Enter(m_nDepth, name, m_attributes) : nullptr;
        if (wrong != nullptr) {
            m_findings.m_pFault = wrong;
        }
        if (Here() == L'/') {
            m_namespaces.Leave(m_nDepth);
            --m_nDepth;
        }
    }

    /// Whether the text of an attribute names an entity that is not declared here.
    bool NamesUnread(std::wstring_view text) const {
        constexpr std::wstring_view kPredefined[] = {L"amp", L"lt", L"gt", L"quot", L"apos"};
        for (std::size_t start = 0; (start = text.find(L'&', start)) != std::wstring_view::npos; ++start) {
            const std::size_t end = std::min(text.find(L';', start), text.size());
            const std::wstring_view name = text.substr(start + 1, end - start - 1);
            if (!name.starts_with(L'#') && m_entities.count(name) == 0 &&
                std::find(std::begin(kPredefined), std::end(kPredefined), name) == std::end(kPredefined)) {
                return true;
            }
        }
        return false;
    }

    const std::wstring_view m_text;
    std::size_t m_nPosition = 0;
    std::size_t m_nDepth = 0;
    CNamespaceScopes m_namespaces;
    std::vector<NamedText> m_attributes;
    std::set<std::wstring_view> m_entities; // declared in the document itself
    bool m_bUnreadDeclarations = false;
    MarkupFindings m_findings;
};

} // namespace

MarkupFindings CheckMarkup(std::string_view bytes) {
    const DocumentEncoding encoding = FindEncoding(bytes);
    if (encoding.IsContradictory()) {
        return {"the byte order mark contradicts the declared encoding", ReasonKind::Encoding, false};
    }
    return CMarkup(Widen(bytes, encoding)).Check();
}
