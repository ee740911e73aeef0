#include "tree_builder.h"

#include "entity_nesting.h"
#include "platform/document_limits.h"
#include "platform/namespaces.h"
#include "shared_names.h"

#define XML_DTD // makes Expat declare its limits on entity expansion
#include <expat.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFirstChunk = std::size_t{256} << 10;

/// Where the declarations of a document are not all read, Expat passes over references to what may have been declared
/// in the others. They must not vanish.
constexpr const char* kUnreadEntity = "reference to an entity that is not read";

bool IsWhiteSpace(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char character) {
        return character == ' ' || character == '\n' || character == '\t' || character == '\r';
    });
}

/// Makes every line end a line feed, as Expat does in what it passes on.
void NormalizeLineEnds(std::string& text) noexcept {
    std::size_t end = 0;
    for (std::size_t position = 0; position < text.size(); ++position) {
        const bool bReturn = text[position] == '\r';
        if (bReturn && text[position + 1] == '\n') {
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
    CTreeBuilder(std::string_view text, BuiltDocument& document)
        : m_text(text), m_document(document), m_names(document.m_tree), m_current(document.m_tree),
          m_pParser(XML_ParserCreate("UTF-8"), XML_ParserFree) {
        if (m_pParser == nullptr) {
            throw std::bad_alloc();
        }
        XML_Parser parser = m_pParser.get();
        XML_SetUserData(parser, this);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, 1.0F);
        XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, kEntityExpansionThreshold);
        XML_SetXmlDeclHandler(parser, &OnDeclaration);
        XML_SetDoctypeDeclHandler(parser, &OnDoctypeStart, &OnDoctypeEnd);
        XML_SetNotStandaloneHandler(parser, &OnNotStandalone);
        XML_SetEntityDeclHandler(parser, &OnEntityDeclaration);
        XML_SetAttlistDeclHandler(parser, &OnAttributeDeclaration);
        XML_SetSkippedEntityHandler(parser, &OnSkippedEntity);
        XML_SetExternalEntityRefHandler(parser, &OnExternalEntity);
        XML_SetElementHandler(parser, &OnElementStart, &OnElementEnd);
        XML_SetCharacterDataHandler(parser, &OnText);
        XML_SetCdataSectionHandler(parser, &OnCdataStart, &OnCdataEnd);
        XML_SetCommentHandler(parser, &OnComment);
        XML_SetProcessingInstructionHandler(parser, &OnProcessingInstruction);
    }

    bool Build() {
        std::size_t offset = 0;
        std::size_t chunk = kFirstChunk;
        bool bWhole = true;
        do {
            m_bProgress = false;
            const std::size_t count = std::min(chunk, m_text.size() - offset);
            void* const buffer = XML_GetBuffer(m_pParser.get(), static_cast<int>(std::max(count, std::size_t{1})));
            if (buffer == nullptr) {
                throw std::bad_alloc();
            }
            m_text.copy(static_cast<char*>(buffer), count, offset);
            offset += count;
            bWhole =
                XML_ParseBuffer(m_pParser.get(), static_cast<int>(count), offset == m_text.size()) == XML_STATUS_OK;
            // Expat scans an unfinished token again with every chunk: larger chunks keep that linear.
            chunk = m_bProgress ? kFirstChunk : chunk * 2;
        } while (bWhole && offset < m_text.size());
        if (m_bOutOfMemory || XML_GetErrorCode(m_pParser.get()) == XML_ERROR_NO_MEMORY) {
            throw std::bad_alloc();
        }
        return bWhole;
    }

    /// Why the document was not built.
    CReason Reason() const noexcept {
        return m_refusal ? m_refusal : HereBecause(XML_ErrorString(XML_GetErrorCode(m_pParser.get())));
    }

private:
    static CTreeBuilder& Self(void* self) noexcept { return *static_cast<CTreeBuilder*>(self); }

    void Stop() noexcept {
        m_bStopped = true;
        XML_StopParser(m_pParser.get(), XML_FALSE);
    }

    /// Refuses the document for a reason of one's own; `words` is a literal.
    void Refuse(const char* words, ReasonKind kind = ReasonKind::Malformed) noexcept {
        m_refusal = HereBecause(words);
        m_refusal.m_kind = kind;
        Stop();
    }

    CReason HereBecause(const char* words) const noexcept {
        return CReason::OfReader(XML_GetCurrentLineNumber(m_pParser.get()),
                                 XML_GetCurrentColumnNumber(m_pParser.get()) + 1, words);
    }

    /// Runs a handler's work. Some events still come when the parser has been stopped.
    template <class Work>
    void Handle(Work work) noexcept {
        m_bProgress = true;
        if (m_bStopped) {
            return;
        }
        try {
            work();
        } catch (const std::bad_alloc&) {
            m_bOutOfMemory = true;
            Stop();
        }
    }

    /// Nothing can be set of a node that there was no memory for.
    static void Require(bool allocated) {
        if (!allocated) {
            throw std::bad_alloc();
        }
    }

    void AppendAttribute(pugi::xml_node node, const char* name, const char* value) {
        pugi::xml_attribute attribute = AppendNamedAttribute(node, name);
        Require(!attribute.empty() && attribute.set_value(value));
    }

    void FlushText() {
        if (!IsWhiteSpace(m_strText)) {
            pugi::xml_node text = m_current.append_child(pugi::node_pcdata);
            Require(text.set_value(m_strText.c_str()));
            NotePosition(text, m_textStart);
        }
        m_strText.clear();
        m_bBlankText = true;
    }

    DomPosition Here() const noexcept {
        return {static_cast<std::uint32_t>(XML_GetCurrentLineNumber(m_pParser.get())),
                static_cast<std::uint32_t>(XML_GetCurrentColumnNumber(m_pParser.get())) + 1};
    }

    void NotePosition(pugi::xml_node node, DomPosition position) {
        if (m_document.m_positions.has_value()) {
            m_document.m_positions->Note(node, position);
        }
    }

    /// The markup of the event as it stands in the document; inside an entity the reference to it.
    std::string_view EventText() const noexcept {
        return m_text.substr(static_cast<std::size_t>(XML_GetCurrentByteIndex(m_pParser.get())),
                             static_cast<std::size_t>(XML_GetCurrentByteCount(m_pParser.get())));
    }

    std::size_t EventEnd() const noexcept {
        return static_cast<std::size_t>(XML_GetCurrentByteIndex(m_pParser.get()) +
                                        XML_GetCurrentByteCount(m_pParser.get()));
    }

    /// Notes where a comment or an instruction before the document element ends: in them "<!DOCTYPE" may stand, and
    /// behind the last the document type declaration is what comes next.
    void NotePrologEnd() noexcept {
        if (m_nDepth == 0) {
            m_nPrologEnd = EventEnd();
        }
    }

    static void XMLCALL OnDeclaration(void* self, const XML_Char* version, const XML_Char* encoding, int standalone) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            const pugi::xml_node declaration = builder.m_current.append_child(pugi::node_declaration);
            builder.AppendAttribute(declaration, "version", version);
            if (encoding != nullptr) {
                builder.AppendAttribute(declaration, "encoding", "UTF-8"); // as it will be saved
            }
            if (standalone >= 0) {
                builder.AppendAttribute(declaration, "standalone", standalone != 0 ? "yes" : "no");
            }
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
        std::string text(m_text.substr(m_nPrologEnd, end - m_nPrologEnd));
        NormalizeLineEnds(text);
        text.erase(0, text.find_first_not_of(" \t\n", text.find(kOpening) + kOpening.size()));
        Require(m_current.append_child(pugi::node_doctype).set_value(text.c_str()));
        if (m_bUnreadDeclarations && (m_entities.HasUndeclared() || m_entities.NamesUndeclared(text))) {
            Refuse(kUnreadEntity);
        }
    }

    /// There are declarations that are not read: those of an external subset, or behind a parameter entity.
    static int XMLCALL OnNotStandalone(void* self) {
        Self(self).m_bUnreadDeclarations = true;
        return XML_STATUS_OK;
    }

    static void XMLCALL OnEntityDeclaration(void* self, const XML_Char* name, int parameter, const XML_Char* text,
                                            int length, const XML_Char*, const XML_Char*, const XML_Char*,
                                            const XML_Char*) {
        CTreeBuilder& builder = Self(self);
        if (parameter != 0) {
            return; // not read where it could be expanded
        }
        builder.Handle([&] {
            const std::string_view replacement(text != nullptr ? text : "", static_cast<std::size_t>(length));
            if (!builder.m_entities.Declare(name, replacement)) {
                builder.Refuse("entities lie too deep within each other");
            }
        });
    }

    static void XMLCALL OnAttributeDeclaration(void* self, const XML_Char* element, const XML_Char* attribute,
                                               const XML_Char* type, const XML_Char* defaultText, int) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            const bool bTokens = std::strcmp(type, "CDATA") != 0;
            builder.m_document.m_declarations.Add(element, attribute, bTokens, defaultText);
        });
    }

    static void XMLCALL OnSkippedEntity(void* self, const XML_Char*, int parameter) {
        CTreeBuilder& builder = Self(self);
        if (parameter == 0) {
            builder.Handle([&] { builder.Refuse(kUnreadEntity); });
        }
    }

    static int XMLCALL OnExternalEntity(XML_Parser parser, const XML_Char*, const XML_Char*, const XML_Char*,
                                        const XML_Char*) {
        CTreeBuilder& builder = Self(XML_GetUserData(parser));
        builder.Handle([&] { builder.Refuse(kUnreadEntity); });
        return XML_STATUS_ERROR;
    }

    static void XMLCALL OnElementStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] { builder.StartElement(name, attributes); });
    }

    void StartElement(const char* name, const char** attributes) {
        FlushText();
        if (++m_nDepth > kMaxElementDepth) {
            Refuse("elements lie too deep within each other", ReasonKind::TooDeep);
            return;
        }
        if (m_nDepth == 1) {
            XML_SetBillionLaughsAttackProtectionMaximumAmplification(m_pParser.get(), kMaxEntityAmplification);
        }
        m_current = m_current.append_child(pugi::node_element);
        Require(m_current.set_name(name));
        if (m_document.m_positions.has_value()) {
            m_document.m_positions->NoteElement(m_current, Here(), EventText());
        }
        bool bNamespaces = ConcernsNamespaces(name);
        std::size_t count = 0;
        for (const char** attribute = attributes; *attribute != nullptr; attribute += 2, ++count) {
            pugi::xml_attribute appended = m_names.AppendAttribute(m_current, count, attribute[0]);
            Require(!appended.empty() && appended.set_value(attribute[1]));
            bNamespaces = bNamespaces || m_names.ConcernsNamespaces(count);
        }
        CountDefaults(attributes + XML_GetSpecifiedAttributeCount(m_pParser.get()));
        if (bNamespaces) {
            EnterNamespaces(name, attributes);
        }
        if (m_bUnreadDeclarations && m_entities.NamesUndeclared(EventText())) {
            Refuse(kUnreadEntity);
        }
    }

    /// A default is written once and held by every element: without a limit a small document would fill the memory.
    void CountDefaults(const char** attributes) noexcept {
        for (; *attributes != nullptr; ++attributes) {
            m_document.m_nDefaultBytes += std::strlen(*attributes);
        }
        if (m_document.m_nDefaultBytes > kMaxDocumentBytes) {
            Refuse("the defaults of attributes are too large", ReasonKind::TooLarge);
        }
    }

    void EnterNamespaces(const char* name, const char** attributes) {
        std::vector<NamedText> named;
        for (; *attributes != nullptr; attributes += 2) {
            named.push_back({attributes[0], attributes[1]});
        }
        const char* const wrong = m_namespaces.Enter(m_nDepth, name, named);
        if (wrong != nullptr) {
            Refuse(wrong);
        }
    }

    static void XMLCALL OnElementEnd(void* self, const XML_Char*) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            builder.FlushText();
            builder.m_namespaces.Leave(builder.m_nDepth);
            --builder.m_nDepth;
            builder.m_current = builder.m_current.parent();
        });
    }

    static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] { builder.AppendText({text, static_cast<std::size_t>(length)}); });
    }

    void AppendText(std::string_view text) {
        if (m_document.m_positions.has_value() && m_bBlankText) {
            m_textStart = Here();
            m_bBlankText = IsWhiteSpace(text); // each piece is looked at once: there is one for each line end
        }
        m_strText += text;
    }

    static void XMLCALL OnCdataStart(void* self) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] {
            builder.FlushText();
            builder.m_cdataStart = builder.Here();
        });
    }

    static void XMLCALL OnCdataEnd(void* self) {
        CTreeBuilder& builder = Self(self);
        builder.Handle([&] { builder.AppendCdata(); });
    }

    /// Only inside an entity can a section hold a carriage return, and only text can be written with one.
    void AppendCdata() {
        const bool bReturn = m_strText.find('\r') != std::string::npos;
        if (bReturn && !IsWhiteSpace(m_strText)) {
            FlushText();
            return;
        }
        NormalizeLineEnds(m_strText);
        pugi::xml_node section = m_current.append_child(pugi::node_cdata);
        Require(section.set_value(m_strText.c_str()));
        NotePosition(section, m_cdataStart);
        m_strText.clear();
        m_bBlankText = true;
    }

    static void XMLCALL OnComment(void* self, const XML_Char* text) {
        CTreeBuilder& builder = Self(self);
        if (builder.m_bInDoctype) {
            return; // kept with the declaration
        }
        builder.Handle([&] {
            builder.FlushText();
            pugi::xml_node node = builder.m_current.append_child(pugi::node_comment);
            Require(node.set_value(text));
            builder.NotePosition(node, builder.Here());
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
            pugi::xml_node instruction = builder.m_current.append_child(pugi::node_pi);
            Require(instruction.set_name(target) && instruction.set_value(data));
            builder.NotePosition(instruction, builder.Here());
            builder.NotePrologEnd();
        });
    }

    const std::string_view m_text;
    BuiltDocument& m_document;
    CSharedNames m_names;
    CEntityNesting m_entities;
    CNamespaceScopes m_namespaces;
    pugi::xml_node m_current;
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_pParser;
    bool m_bBlankText = true; // so far
    std::string m_strText;    // text since the last markup
    DomPosition m_textStart;
    DomPosition m_cdataStart;
    std::size_t m_nPrologEnd = 0;
    std::size_t m_nDepth = 0;
    CReason m_refusal; // one of our own
    bool m_bInDoctype = false;
    bool m_bUnreadDeclarations = false;
    bool m_bProgress = false;
    bool m_bStopped = false;
    bool m_bOutOfMemory = false;
};

} // namespace

bool BuildTree(std::string_view text, BuiltDocument& document, CReason* reason) {
    CTreeBuilder builder(text, document);
    if (builder.Build()) {
        return true;
    }
    GiveReason(reason, builder.Reason());
    return false;
}
