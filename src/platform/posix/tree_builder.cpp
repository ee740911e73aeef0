#include "tree_builder.h"

#include "document_source.h"
#include "platform/document_limits.h"
#include "shared_names.h"

#define XML_DTD // makes Expat declare its limits on entity expansion
#include <expat.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t kFirstChunk = std::size_t{256} << 10;

bool IsWhiteSpace(std::string_view text) noexcept {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// Makes every line end a line feed, as Expat does in what it passes on.
void NormalizeLineEnds(std::string& text) noexcept {
    std::size_t end = 0;
    for (std::size_t position = 0; position < text.size(); ++position) {
        const bool bReturn = text[position] == '\r';
        if (bReturn && position + 1 < text.size() && text[position + 1] == '\n') {
            continue;
        }
        text[end++] = bReturn ? '\n' : text[position];
    }
    text.resize(end);
}

/// Takes Expat's events. An exception must not pass through Expat: a handler that cannot go on notes why and stops
/// the parser.
class CTreeBuilder {
public:
    CTreeBuilder(const CDocumentSource& source, pugi::xml_document& tree)
        : m_source(source), m_names(tree), m_current(tree), m_pParser(XML_ParserCreate("UTF-8"), XML_ParserFree) {
        if (m_pParser == nullptr) {
            throw std::bad_alloc();
        }
        XML_Parser parser = m_pParser.get();
        XML_SetUserData(parser, this);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, kMaxEntityAmplification);
        XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, kEntityExpansionThreshold);
        XML_SetXmlDeclHandler(parser, &OnDeclaration);
        XML_SetDoctypeDeclHandler(parser, &OnDoctypeStart, &OnDoctypeEnd);
        XML_SetElementHandler(parser, &OnElementStart, &OnElementEnd);
        XML_SetCharacterDataHandler(parser, &OnText);
        XML_SetCdataSectionHandler(parser, &OnCdataStart, &OnCdataEnd);
        XML_SetCommentHandler(parser, &OnComment);
        XML_SetProcessingInstructionHandler(parser, &OnProcessingInstruction);
    }

    /// Why the document was not built.
    CReason Reason() const noexcept {
        XML_Parser parser = m_pParser.get();
        CReason reason = CReason::OfReader(XML_GetCurrentLineNumber(parser), XML_GetCurrentColumnNumber(parser) + 1,
                                           XML_ErrorString(XML_GetErrorCode(parser)));
        if (m_nDepth > kMaxElementDepth) {
            reason.m_kind = ReasonKind::TooDeep;
            reason.m_strWords = {};
        }
        return reason;
    }

    bool Build() {
        std::size_t offset = 0;
        std::size_t chunk = kFirstChunk;
        bool bWhole = true;
        while (bWhole && offset < m_source.Size()) {
            m_bProgress = false;
            const std::size_t count = std::min(chunk, m_source.Size() - offset);
            void* const buffer = XML_GetBuffer(m_pParser.get(), static_cast<int>(count));
            if (buffer == nullptr) {
                throw std::bad_alloc();
            }
            if (!m_source.Read(offset, static_cast<char*>(buffer), count)) {
                return false;
            }
            offset += count;
            bWhole =
                XML_ParseBuffer(m_pParser.get(), static_cast<int>(count), offset == m_source.Size()) == XML_STATUS_OK;
            // Expat scans an unfinished token again with every chunk: larger chunks keep that linear.
            chunk = m_bProgress ? kFirstChunk : chunk * 2;
        }
        if (m_bOutOfMemory || XML_GetErrorCode(m_pParser.get()) == XML_ERROR_NO_MEMORY) {
            throw std::bad_alloc();
        }
        return bWhole;
    }

private:
    static CTreeBuilder& Self(void* self) noexcept { return *static_cast<CTreeBuilder*>(self); }

    void Stop() noexcept { XML_StopParser(m_pParser.get(), XML_FALSE); }

    /// Runs a handler's work.
    template <class Work>
    void Handle(Work work) noexcept {
        m_bProgress = true;
        try {
            work();
        } catch (const std::bad_alloc&) {
            m_bOutOfMemory = true;
            Stop();
        }
    }

    static void Require(bool allocated) {
        if (!allocated) {
            throw std::bad_alloc();
        }
    }

    pugi::xml_node Append(pugi::xml_node_type type) {
        const pugi::xml_node node = m_current.append_child(type);
        Require(!node.empty());
        return node;
    }

    void AppendAttribute(pugi::xml_node node, const char* name, const char* value) {
        pugi::xml_attribute attribute = AppendNamedAttribute(node, name);
        Require(!attribute.empty() && attribute.set_value(value));
    }

    void FlushText() {
        if (!IsWhiteSpace(m_strText)) {
            Require(Append(pugi::node_pcdata).set_value(m_strText.c_str()));
        }
        m_strText.clear();
    }

    std::size_t EventEnd() const noexcept {
        return static_cast<std::size_t>(XML_GetCurrentByteIndex(m_pParser.get()) +
                                        XML_GetCurrentByteCount(m_pParser.get()));
    }

    /// Notes where markup before the document element ends: the document type declaration is what comes next.
    void NotePrologEnd() noexcept {
        if (m_nDepth == 0) {
            m_nPrologEnd = EventEnd();
        }
    }

    static void XMLCALL OnDeclaration(void* self, const XML_Char* version, const XML_Char* encoding, int standalone) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            const pugi::xml_node declaration = builder.Append(pugi::node_declaration);
            builder.AppendAttribute(declaration, "version", version);
            if (encoding != nullptr) {
                builder.AppendAttribute(declaration, "encoding", "UTF-8"); // as it will be saved
            }
            if (standalone >= 0) {
                builder.AppendAttribute(declaration, "standalone", standalone != 0 ? "yes" : "no");
            }
            builder.NotePrologEnd();
        });
    }

    static void XMLCALL OnDoctypeStart(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        Self(self).m_bInDoctype = true;
    }

    static void XMLCALL OnDoctypeEnd(void* self) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            builder.m_bInDoctype = false;
            builder.AppendDoctype(static_cast<std::size_t>(XML_GetCurrentByteIndex(builder.m_pParser.get())));
        });
    }

    /// Keeps the declaration as it stands in the source, but for its line ends; `end` is the position of its ">".
    void AppendDoctype(std::size_t end) {
        constexpr std::string_view kOpening = "<!DOCTYPE";
        std::string text(end - m_nPrologEnd, '\0');
        if (!m_source.Read(m_nPrologEnd, text.data(), text.size())) {
            Stop();
            return;
        }
        NormalizeLineEnds(text);
        const std::size_t content = text.find_first_not_of(" \t\n", text.find(kOpening) + kOpening.size());
        Require(Append(pugi::node_doctype).set_value(text.c_str() + content));
    }

    static void XMLCALL OnElementStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            builder.FlushText();
            if (++builder.m_nDepth > kMaxElementDepth) {
                builder.Stop();
                return;
            }
            pugi::xml_node element = builder.Append(pugi::node_element);
            Require(element.set_name(name));
            for (std::size_t position = 0; attributes[0] != nullptr; attributes += 2, ++position) {
                pugi::xml_attribute attribute = builder.m_names.AppendAttribute(element, position, attributes[0]);
                Require(!attribute.empty() && attribute.set_value(attributes[1]));
            }
            builder.m_current = element;
        });
    }

    static void XMLCALL OnElementEnd(void* self, const XML_Char*) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            builder.FlushText();
            --builder.m_nDepth;
            builder.m_current = builder.m_current.parent();
        });
    }

    static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] { builder.m_strText.append(text, static_cast<std::size_t>(length)); });
    }

    static void XMLCALL OnCdataStart(void* self) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] { builder.FlushText(); });
    }

    static void XMLCALL OnCdataEnd(void* self) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            Require(builder.Append(pugi::node_cdata).set_value(builder.m_strText.c_str()));
            builder.m_strText.clear();
        });
    }

    static void XMLCALL OnComment(void* self, const XML_Char* text) {
        CTreeBuilder& builder = Self(self);
        if (builder.m_bInDoctype) {
            return; // kept with the declaration
        }
        builder.Handle([&] {
            builder.FlushText();
            Require(builder.Append(pugi::node_comment).set_value(text));
            builder.NotePrologEnd();
        });
    }

    static void XMLCALL OnProcessingInstruction(void* self, const XML_Char* target, const XML_Char* data) {
        CTreeBuilder& builder = Self(self);
        if (builder.m_bInDoctype) {
            return; // kept with the declaration
        }
        builder.Handle([&] {
            builder.FlushText();
            pugi::xml_node instruction = builder.Append(pugi::node_pi);
            Require(instruction.set_name(target) && instruction.set_value(data));
            builder.NotePrologEnd();
        });
    }

    const CDocumentSource& m_source;
    CSharedNames m_names;
    pugi::xml_node m_current;
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_pParser;
    std::string m_strText; // text since the last markup
    std::size_t m_nPrologEnd = 0;
    std::size_t m_nDepth = 0;
    bool m_bInDoctype = false;
    bool m_bProgress = false;
    bool m_bOutOfMemory = false;
};

} // namespace

bool BuildTree(const CDocumentSource& source, pugi::xml_document& tree, CReason* reason) {
    CTreeBuilder builder(source, tree);
    if (builder.Build()) {
        return true;
    }
    GiveReason(reason, builder.Reason());
    return false;
}
