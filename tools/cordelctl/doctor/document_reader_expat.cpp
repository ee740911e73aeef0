// Reads a document with Expat, which knows the place of everything.

#include "document_reader.h"

#include "document_bytes.h"

#define XML_DTD // makes Expat declare its limits on entity expansion
#include <expat.h>
#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

namespace {

// The library's limits on entities: the expanded text may be this many times the document, once it exceeds the
// threshold in bytes.
constexpr float kLargestAmplification = 100.0F;
constexpr unsigned long long kAmplificationThreshold = 8ULL << 20;

constexpr std::string_view kWhiteSpace = " \t\r\n";

/// The text as UTF-8; none when some of it is not in that encoding, or no such encoding is known.
std::optional<std::string> ConvertToUtf8(std::string text, const std::string& encoding) {
    const auto close = [](iconv_t converter) { iconv_close(converter); };
    const iconv_t opened = iconv_open("UTF-8", encoding.c_str());
    if (opened == reinterpret_cast<iconv_t>(-1)) { // NOLINT(performance-no-int-to-ptr): so iconv defines it
        return std::nullopt;
    }
    const std::unique_ptr<void, decltype(close)> converter(opened, close);
    std::string converted;
    char* input = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        char buffer[16384];
        char* output = buffer;
        std::size_t room = sizeof buffer;
        const std::size_t result = iconv(converter.get(), &input, &left, &output, &room);
        const bool refused = result == static_cast<std::size_t>(-1) && errno != E2BIG;
        converted.append(buffer, sizeof buffer - room);
        if (refused || converted.size() > kLargestDocument) {
            return std::nullopt;
        }
    }
    return converted;
}

/// Takes Expat's events. The nodes that are open, from the document element to the innermost, lie on a stack, and move
/// into their parents when they end.
class CContentBuilder {
public:
    explicit CContentBuilder(DocumentContent& content)
        : m_content(content), m_pParser(XML_ParserCreate("UTF-8"), XML_ParserFree) {
        XML_Parser parser = m_pParser.get();
        XML_SetUserData(parser, this);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, kLargestAmplification);
        XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, kAmplificationThreshold);
        XML_SetElementHandler(parser, &OnStart, &OnEnd);
        XML_SetCharacterDataHandler(parser, &OnText);
        XML_SetCdataSectionHandler(parser, &OnCDataStart, &OnCDataEnd);
        XML_SetCommentHandler(parser, &OnComment);
        XML_SetProcessingInstructionHandler(parser, &OnInstruction);
    }

    void Build(const std::string& text) {
        XML_Parser parser = m_pParser.get();
        if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), XML_TRUE) != XML_STATUS_OK) {
            const bool deep = m_content.depth > kDeepestDocument;
            m_content.error = {deep ? "elements lie more than 1,000 deep within each other"
                                    : XML_ErrorString(XML_GetErrorCode(parser)),
                               Place()};
        }
        while (!m_open.empty()) {
            Close();
        }
    }

private:
    static CContentBuilder& Self(void* self) { return *static_cast<CContentBuilder*>(self); }

    SourcePlace Place() const {
        return {static_cast<long>(XML_GetCurrentLineNumber(m_pParser.get())),
                static_cast<long>(XML_GetCurrentColumnNumber(m_pParser.get())) + 1};
    }

    void AddLeaf(NodeKind kind, SourcePlace place) {
        if (!m_open.empty()) {
            m_open.back().children.push_back({kind, {}, place, {}, {}});
        }
    }

    void FlushText() {
        if (m_strText.find_first_not_of(kWhiteSpace) != std::string::npos) {
            AddLeaf(NodeKind::Text, m_textPlace);
        }
        m_strText.clear();
    }

    void Close() {
        DocumentNode node = std::move(m_open.back());
        m_open.pop_back();
        (m_open.empty() ? m_content.root : m_open.back().children.emplace_back()) = std::move(node);
    }

    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        CContentBuilder& builder = Self(self);
        builder.FlushText();
        DocumentNode node{NodeKind::Element, name, builder.Place(), {}, {}};
        for (; *attributes != nullptr; attributes += 2) {
            node.attributes.push_back({attributes[0], attributes[1]});
        }
        builder.m_open.push_back(std::move(node));
        builder.m_content.depth = std::max(builder.m_content.depth, static_cast<int>(builder.m_open.size()));
        if (builder.m_content.depth > kDeepestDocument) {
            XML_StopParser(builder.m_pParser.get(), XML_FALSE);
        }
    }

    static void XMLCALL OnEnd(void* self, const XML_Char*) {
        Self(self).FlushText();
        Self(self).Close();
    }

    static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
        CContentBuilder& builder = Self(self);
        const std::string_view piece(text, static_cast<std::size_t>(length));
        if (builder.m_bCData) {
            return;
        }
        if (builder.m_strText.find_first_not_of(kWhiteSpace) == std::string::npos) {
            builder.m_textPlace = builder.Place();
        }
        builder.m_strText += piece;
    }

    static void XMLCALL OnCDataStart(void* self) {
        Self(self).FlushText();
        Self(self).AddLeaf(NodeKind::CData, Self(self).Place());
        Self(self).m_bCData = true;
    }

    static void XMLCALL OnCDataEnd(void* self) { Self(self).m_bCData = false; }

    static void XMLCALL OnComment(void* self, const XML_Char*) {
        Self(self).FlushText();
        Self(self).AddLeaf(NodeKind::Comment, Self(self).Place());
    }

    static void XMLCALL OnInstruction(void* self, const XML_Char*, const XML_Char*) {
        Self(self).FlushText();
        Self(self).AddLeaf(NodeKind::Instruction, Self(self).Place());
    }

    DocumentContent& m_content;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_pParser;
    std::vector<DocumentNode> m_open;
    std::string m_strText;
    SourcePlace m_textPlace;
    bool m_bCData = false;
};

} // namespace

DocumentContent ReadDocument(const std::filesystem::path& path) {
    DocumentContent content;
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    std::ifstream stream(path, std::ios::binary);
    if (error || !stream) {
        content.error = {std::string("the file cannot be read: ") + (error ? error.message() : std::strerror(errno)),
                         {}};
        return content;
    }
    if (size > kLargestDocument) {
        content.error = {"the file is larger than 256 MiB", {}};
        return content;
    }
    std::string text(std::istreambuf_iterator<char>(stream), {});
    content.encoding = EncodingOf(text);
    if (content.encoding != "UTF-8" && content.encoding != "US-ASCII" && content.encoding != "ASCII") {
        const bool marked = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
        auto converted = ConvertToUtf8(marked ? text.substr(2) : text, content.encoding);
        if (!converted) {
            content.error = {"the file is not in its encoding, " + content.encoding, {}};
            return content;
        }
        text = std::move(*converted);
    }
    CContentBuilder(content).Build(text);
    return content;
}
