// Reads a document with the system's DOM, which tells the place of an error only.

#include "document_reader.h"

#include "document_bytes.h"
#include "utf8.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <msxml2.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

namespace {

constexpr CLSID kDocumentClass = {0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};

template <class Interface>
class CReference {
public:
    CReference() = default;
    CReference(CReference&& other) noexcept : m_pInterface(std::exchange(other.m_pInterface, nullptr)) {}
    CReference& operator=(CReference&& other) noexcept {
        std::swap(m_pInterface, other.m_pInterface);
        return *this;
    }
    ~CReference() {
        if (m_pInterface != nullptr) {
            m_pInterface->Release();
        }
    }
    explicit operator bool() const noexcept { return m_pInterface != nullptr; }
    Interface* operator->() const noexcept { return m_pInterface; }
    Interface** Receive() noexcept { return &m_pInterface; }

private:
    Interface* m_pInterface = nullptr;
};

class CText {
public:
    CText() = default;
    explicit CText(const std::wstring& text) : m_bstrText(SysAllocString(text.c_str())) {}
    ~CText() { SysFreeString(m_bstrText); }
    CText(const CText&) = delete;
    CText& operator=(const CText&) = delete;
    BSTR Get() const noexcept { return m_bstrText; }
    BSTR* Receive() noexcept { return &m_bstrText; }
    std::string Utf8() const {
        const std::u16string wide(m_bstrText, m_bstrText + SysStringLen(m_bstrText));
        return Utf16ToUtf8(wide);
    }

private:
    BSTR m_bstrText = nullptr;
};

/// COM on this thread.
class CComUse {
public:
    CComUse() : m_bUsable(SUCCEEDED(CoInitialize(nullptr))) {}
    ~CComUse() {
        if (m_bUsable) {
            CoUninitialize();
        }
    }
    CComUse(const CComUse&) = delete;
    CComUse& operator=(const CComUse&) = delete;

private:
    bool m_bUsable;
};

std::string NameOf(IXMLDOMNode* node) {
    CText name;
    node->get_nodeName(name.Receive());
    return name.Utf8();
}

std::vector<DocumentAttribute> AttributesOf(IXMLDOMNode* node) {
    std::vector<DocumentAttribute> attributes;
    CReference<IXMLDOMNamedNodeMap> map;
    long count = 0;
    if (node->get_attributes(map.Receive()) != S_OK || map->get_length(&count) != S_OK) {
        return attributes;
    }
    for (long index = 0; index < count; ++index) {
        CReference<IXMLDOMNode> attribute;
        CText value;
        if (map->get_item(index, attribute.Receive()) == S_OK && SUCCEEDED(attribute->get_text(value.Receive()))) {
            attributes.push_back({NameOf(*attribute.Receive()), value.Utf8()});
        }
    }
    return attributes;
}

NodeKind KindOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_ELEMENT;
    node->get_nodeType(&type);
    switch (type) {
    case NODE_COMMENT:
        return NodeKind::Comment;
    case NODE_TEXT:
        return NodeKind::Text;
    case NODE_CDATA_SECTION:
        return NodeKind::CData;
    case NODE_PROCESSING_INSTRUCTION:
        return NodeKind::Instruction;
    default:
        return NodeKind::Element;
    }
}

/// Copies a node and what is below it; no deeper than the library goes.
DocumentNode Copy(IXMLDOMNode* source, int depth, DocumentContent& content) {
    DocumentNode node;
    node.kind = KindOf(source);
    if (node.kind != NodeKind::Element) {
        return node;
    }
    content.depth = std::max(content.depth, depth);
    node.name = NameOf(source);
    node.attributes = AttributesOf(source);
    CReference<IXMLDOMNode> child;
    source->get_firstChild(child.Receive());
    while (child && depth <= kDeepestDocument) {
        node.children.push_back(Copy(*child.Receive(), depth + 1, content));
        CReference<IXMLDOMNode> next;
        child->get_nextSibling(next.Receive());
        child = std::move(next);
    }
    return node;
}

DocumentError ErrorOf(IXMLDOMDocument* document) {
    CReference<IXMLDOMParseError> error;
    DocumentError result{"the file cannot be read as XML", {}};
    if (document->get_parseError(error.Receive()) != S_OK) {
        return result;
    }
    CText reason;
    error->get_reason(reason.Receive());
    error->get_line(&result.place.line);
    error->get_linepos(&result.place.column);
    if (const std::string text = reason.Utf8(); !text.empty()) {
        result.reason = text.substr(0, text.find_last_not_of(" \r\n") + 1);
    }
    return result;
}

void Load(const std::filesystem::path& path, DocumentContent& content) {
    CReference<IXMLDOMDocument> document;
    if (FAILED(CoCreateInstance(kDocumentClass, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                reinterpret_cast<void**>(document.Receive())))) {
        content.error = {"the system has no XML DOM", {}};
        return;
    }
    document->put_async(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    document->put_resolveExternals(VARIANT_FALSE);
    const CText name(path.native());
    VARIANT source;
    VariantInit(&source);
    source.vt = VT_BSTR;
    source.bstrVal = name.Get();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    CReference<IXMLDOMElement> root;
    if (document->load(source, &loaded) != S_OK || loaded != VARIANT_TRUE ||
        document->get_documentElement(root.Receive()) != S_OK) {
        content.error = ErrorOf(*document.Receive());
        return;
    }
    content.root = Copy(*root.Receive(), 1, content);
}

} // namespace

DocumentContent ReadDocument(const std::filesystem::path& path) {
    constexpr std::size_t kHead = 1024; // where an encoding is declared
    DocumentContent content;
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    std::ifstream stream(path, std::ios::binary);
    if (error || !stream) {
        content.error = {"the file cannot be read", {}};
        return content;
    }
    if (size > kLargestDocument) {
        content.error = {"the file is larger than 256 MiB", {}};
        return content;
    }
    std::string head(kHead, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    stream.close();
    content.encoding = EncodingOf(head);
    const CComUse com;
    Load(path, content);
    if (!content.error && content.depth > kDeepestDocument) {
        content.error = {"elements lie more than 1,000 deep within each other", {}};
    }
    return content;
}
