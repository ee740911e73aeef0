// The DOM of the platform, through its COM interfaces.

#include "platform/dom.h"

#include "byte_stream.h"
#include "com_pointer.h"
#include "platform/code_page.h"
#include "platform/document_limits.h"
#include "safe_save.h"
#include "wide_text.h"

#include <objbase.h>

#include <cstdint>
#include <new>
#include <utility>

namespace {

constexpr CLSID kDocumentClass = {0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};

void Check(HRESULT result, const char* failure) {
    if (FAILED(result)) {
        throw DomError(failure);
    }
}

/// For calls that answer with S_FALSE that there is nothing: what they gave, or none.
template <typename Interface>
CComPointer<Interface> Optional(HRESULT result, CComPointer<Interface>& given, const char* failure) {
    Check(result, failure);
    return result == S_OK ? std::move(given) : CComPointer<Interface>();
}

/// For calls that always give something: what they gave.
template <typename Interface>
CComPointer<Interface> Required(HRESULT result, CComPointer<Interface>& given, const char* failure) {
    Check(result, failure);
    if (result != S_OK || !given) {
        throw DomError(failure);
    }
    return std::move(given);
}

DomNode FirstChildOf(IXMLDOMNode* node) {
    DomNode child;
    const HRESULT result = node->get_firstChild(child.Receive());
    return Optional(result, child, "the DOM cannot give the first child");
}

DomNode NextSiblingOf(IXMLDOMNode* node) {
    DomNode sibling;
    const HRESULT result = node->get_nextSibling(sibling.Receive());
    return Optional(result, sibling, "the DOM cannot give the next sibling");
}

CComPointer<IXMLDOMElement> DocumentElement(IXMLDOMDocument* document) {
    CComPointer<IXMLDOMElement> element;
    const HRESULT result = document->get_documentElement(element.Receive());
    return Optional(result, element, "the DOM cannot give the document element");
}

DomText NameOf(IXMLDOMNode* node) {
    DomText name;
    Check(node->get_nodeName(name.Receive()), "the DOM cannot give a node's name");
    return name;
}

/// None for a node of a kind that has no attributes.
CComPointer<IXMLDOMNamedNodeMap> AttributesOf(IXMLDOMNode* node) {
    CComPointer<IXMLDOMNamedNodeMap> attributes;
    const HRESULT result = node->get_attributes(attributes.Receive());
    return Optional(result, attributes, "the DOM cannot give a node's attributes");
}

DomNode AttributeAt(IXMLDOMNamedNodeMap* attributes, std::size_t index) {
    DomNode attribute;
    const HRESULT result = attributes->get_item(static_cast<long>(index), attribute.Receive());
    return Required(result, attribute, "the DOM cannot give an attribute");
}

/// The value, since not every DOM gives white space alone as the text.
DomText TextOf(IXMLDOMNode* attribute) {
    constexpr const char* kFailure = "the DOM cannot give an attribute's text";
    VARIANT value;
    ::VariantInit(&value);
    Check(attribute->get_nodeValue(&value), kFailure);
    if (value.vt != VT_BSTR) {
        ::VariantClear(&value);
        throw DomError(kFailure);
    }
    DomText text;
    *text.Receive() = value.bstrVal;
    return text;
}

DomText BaseNameOf(IXMLDOMNode* attribute) {
    DomText name;
    Check(attribute->get_baseName(name.Receive()), "the DOM cannot give an attribute's base name");
    // Not every DOM cuts the prefix off an attribute that was set under its whole name.
    const std::size_t colon = name.View().rfind(L':');
    if (colon != DomView::npos) {
        name = DomText(name.View().substr(colon + 1));
    }
    return name;
}

/// The first element of a list with this whole name.
DomNode FirstNamed(IXMLDOMNodeList* list, DomView name) {
    for (;;) {
        DomNode node;
        const HRESULT result = list->nextNode(node.Receive());
        node = Optional(result, node, "the DOM cannot give the next node of a list");
        if (!node || NameOf(node.Get()).View() == name) {
            return node;
        }
    }
}

CComPointer<IXMLDOMNodeList> ElementsByTagName(IXMLDOMElement* element, DomView name) {
    const DomText argument(name);
    CComPointer<IXMLDOMNodeList> list;
    const HRESULT result = element->getElementsByTagName(argument.Get(), list.Receive());
    return Required(result, list, "the DOM cannot list elements");
}

/// Whether the file can be a document as far as its size tells.
bool IsOfLoadableSize(const std::wstring& path) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA data;
    return ::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) != FALSE &&
           (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow) <= kMaxDocumentBytes;
}

/// Whether elements lie deeper within each other than the limit, the document element counted as one.
bool IsTooDeep(IXMLDOMNode* documentElement) {
    std::vector<DomNode> path; // the first child of each level, then its siblings
    for (DomNode node = FirstChildOf(documentElement); node || !path.empty();) {
        if (!node) {
            node = NextSiblingOf(path.back().Get());
            path.pop_back();
            continue;
        }
        if (path.size() + 1 > kMaxElementDepth) {
            return true;
        }
        DomNode child = FirstChildOf(node.Get());
        if (child) {
            path.push_back(std::move(node));
            node = std::move(child);
        } else {
            node = NextSiblingOf(node.Get());
        }
    }
    return false;
}

/// The data of an XML declaration with UTF-8 for its encoding; empty when it names UTF-8 or none already.
std::wstring DeclarationInUtf8(DomView data) {
    const std::size_t name = data.find(L"encoding");
    const std::size_t open = name != DomView::npos ? data.find_first_of(L"\"'", name) : name;
    const std::size_t close = open != DomView::npos ? data.find(data[open], open + 1) : open;
    if (close == DomView::npos) {
        return std::wstring();
    }
    std::wstring declaration(data.substr(0, open + 1));
    declaration += L"UTF-8";
    declaration += data.substr(close);
    return declaration;
}

/// Makes the document's declaration say that it is in UTF-8, which is how every document is saved.
void DeclareUtf8(IXMLDOMDocument* document) {
    const DomNode first = FirstChildOf(document);
    CComPointer<IXMLDOMProcessingInstruction> declaration;
    if (!first ||
        FAILED(
            first->QueryInterface(IID_IXMLDOMProcessingInstruction, reinterpret_cast<void**>(declaration.Receive()))) ||
        !declaration || NameOf(first.Get()).View() != L"xml") {
        return;
    }
    DomText data;
    Check(declaration->get_data(data.Receive()), "the DOM cannot give the XML declaration");
    const std::wstring inUtf8 = DeclarationInUtf8(data.View());
    if (inUtf8.empty()) {
        return;
    }
    const DomText target(L"xml");
    const DomText newData(inUtf8);
    CComPointer<IXMLDOMProcessingInstruction> replacement;
    HRESULT result = document->createProcessingInstruction(target.Get(), newData.Get(), replacement.Receive());
    replacement = Required(result, replacement, "the DOM cannot create an XML declaration");
    DomNode old;
    Check(document->replaceChild(replacement.Get(), first.Get(), old.Receive()),
          "the DOM cannot replace the XML declaration");
}

/// Whether a document that was loaded keeps to the limits. It is ready for use then.
bool IsUsable(IXMLDOMDocument* document) {
    try {
        const CComPointer<IXMLDOMElement> documentElement = DocumentElement(document);
        if (!documentElement || IsTooDeep(documentElement.Get())) {
            return false;
        }
        DeclareUtf8(document);
        return true;
    } catch (const DomError&) {
        return false; // only a failure of the load call itself passes to the host
    }
}

/// What the DOM says of a document that it did not load.
CReason ParseReason(IXMLDOMDocument* document) {
    CComPointer<IXMLDOMParseError> error;
    if (FAILED(document->get_parseError(error.Receive())) || !error) {
        return CReason::Of(ReasonKind::Malformed);
    }
    long code = 0;
    error->get_errorCode(&code);
    if (platform::KindOfError(static_cast<std::uint32_t>(code)) != ReasonKind::CallFailed) {
        return CReason::OfCall("IXMLDOMDocument::load", static_cast<std::uint32_t>(code));
    }
    long line = 0;
    long column = 0;
    DomText words;
    error->get_line(&line);
    error->get_linepos(&column);
    error->get_reason(words.Receive());
    return CReason::OfReader(static_cast<std::size_t>(line), static_cast<std::size_t>(column),
                             platform::ToAnsi(words.View()).c_str());
}

bool LoadFile(IXMLDOMDocument* document, const char* path, CReason* reason) {
    const std::wstring widePath = platform::ToWideText(path);
    if (!IsOfLoadableSize(widePath)) {
        GiveReason(reason, CReason::Of(ReasonKind::TooLarge));
        return false;
    }
    const DomText argument(widePath);
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->load(argument.AsVariant(), &isLoaded);
    Check(result, "the DOM cannot load a document");
    if (result != S_OK || isLoaded == VARIANT_FALSE) {
        GiveReason(reason, ParseReason(document));
        return false;
    }
    if (!IsUsable(document)) {
        GiveReason(reason, CReason::Of(ReasonKind::TooDeep));
        return false;
    }
    return true;
}

} // namespace

struct DomDocument::Native {
    CComPointer<IXMLDOMDocument> document;
};

DomDocument::DomDocument(std::unique_ptr<Native> native) noexcept : m_pNative(std::move(native)) {}

DomDocument::~DomDocument() = default;

std::unique_ptr<DomDocument> DomDocument::Create() noexcept {
    // Never balanced: the thread's other documents live on after this one.
    if (FAILED(::CoInitialize(nullptr))) {
        return nullptr;
    }
    CComPointer<IXMLDOMDocument> document;
    constexpr DWORD kContext = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER;
    if (FAILED(::CoCreateInstance(kDocumentClass, nullptr, kContext, IID_IXMLDOMDocument,
                                  reinterpret_cast<void**>(document.Receive()))) ||
        !document || FAILED(document->put_async(VARIANT_FALSE)) ||
        FAILED(document->put_validateOnParse(VARIANT_FALSE)) || FAILED(document->put_resolveExternals(VARIANT_FALSE))) {
        return nullptr;
    }
    std::unique_ptr<Native> native(new (std::nothrow) Native{std::move(document)});
    if (native == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<DomDocument>(new (std::nothrow) DomDocument(std::move(native)));
}

bool DomDocument::Load(const char* path, CReason* reason, DomPositions) {
    try {
        return LoadFile(m_pNative->document.Get(), path, reason);
    } catch (const std::bad_alloc&) {
        throw DomError("out of memory while loading a document", CReason::Of(ReasonKind::OutOfMemory));
    }
}

void DomDocument::Save(const char* path) {
    CByteStream bytes;
    VARIANT destination;
    ::VariantInit(&destination);
    destination.vt = VT_UNKNOWN;
    destination.punkVal = &bytes;
    if (m_pNative->document->save(destination) != S_OK || bytes.View().empty()) {
        throw DomError("the DOM failed to write the document");
    }
    CReason reason;
    if (!platform::ReplaceContents(path, bytes.View(), &reason)) {
        throw DomError("the document could not be saved", std::move(reason));
    }
}

DomNode DomDocument::DocumentElement() {
    const CComPointer<IXMLDOMElement> element = ::DocumentElement(m_pNative->document.Get());
    DomNode node;
    if (element) {
        const HRESULT result = element->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(node.Receive()));
        node = Required(result, node, "the DOM cannot give the document element as a node");
    }
    return node;
}

DomKind DomDocument::Kind(const DomNode& node) {
    DOMNodeType type;
    Check(node->get_nodeType(&type), "the DOM cannot give a node's type");
    switch (type) {
    case NODE_ELEMENT:
        return DomKind::Element;
    case NODE_TEXT:
        return DomKind::Text;
    case NODE_CDATA_SECTION:
        return DomKind::Cdata;
    case NODE_COMMENT:
        return DomKind::Comment;
    case NODE_PROCESSING_INSTRUCTION:
        return DomKind::Instruction;
    default:
        return DomKind::Other;
    }
}

DomText DomDocument::Text(const DomNode& node) { return TextOf(node.Get()); }

DomPosition DomDocument::Position(const DomNode&) { return {}; } // this DOM does not say

DomPosition DomDocument::AttributePosition(const DomNode&, std::size_t) { return {}; }

DomNode DomDocument::FirstElementNamed(DomView tagName) {
    const CComPointer<IXMLDOMElement> documentElement = ::DocumentElement(m_pNative->document.Get());
    if (!documentElement) {
        return DomNode();
    }
    // Whether a prefix counts in the search differs between DOMs: the whole name is compared again, and a name
    // with a prefix that was not found is looked for among all elements.
    DomNode element = FirstNamed(ElementsByTagName(documentElement.Get(), tagName).Get(), tagName);
    if (!element && tagName.find(L':') != DomView::npos) {
        element = FirstNamed(ElementsByTagName(documentElement.Get(), L"*").Get(), tagName);
    }
    return element;
}

DomNode DomDocument::FirstChild(const DomNode& node) { return FirstChildOf(node.Get()); }

DomNode DomDocument::NextSibling(const DomNode& node) { return NextSiblingOf(node.Get()); }

bool DomDocument::ListAttributes(const DomNode& node, std::vector<DomAttribute>& attributes) {
    const CComPointer<IXMLDOMNamedNodeMap> map = AttributesOf(node.Get());
    if (!map) {
        return false;
    }
    long count = 0;
    Check(map->get_length(&count), "the DOM cannot count attributes");
    for (long index = 0; index < count; ++index) {
        const DomNode attribute = AttributeAt(map.Get(), static_cast<std::size_t>(index));
        attributes.push_back({BaseNameOf(attribute.Get()), TextOf(attribute.Get())});
    }
    return true;
}

DomText DomDocument::TagName(const DomNode& node) {
    return Kind(node) == DomKind::Element ? NameOf(node.Get()) : DomText();
}

bool DomDocument::HasChildren(const DomNode& node) {
    VARIANT_BOOL hasChildren = VARIANT_FALSE;
    Check(node->hasChildNodes(&hasChildren), "the DOM cannot look for children");
    return hasChildren != VARIANT_FALSE;
}

DomText DomDocument::SetAttributeText(const DomNode& element, std::size_t index, DomView text) {
    const DomText argument(text);
    const CComPointer<IXMLDOMNamedNodeMap> map = AttributesOf(element.Get());
    if (!map) {
        throw DomError("the node has no attributes");
    }
    const DomNode attribute = AttributeAt(map.Get(), index);
    const DomText former = TextOf(attribute.Get());
    Check(attribute->put_text(argument.Get()), "the DOM cannot set an attribute's text");
    try {
        return TextOf(attribute.Get());
    } catch (const DomError&) {
        attribute->put_text(former.Get()); // what is in memory is what a save writes
        throw;
    }
}

DomText DomDocument::AddAttribute(const DomNode& element, const DomPair& attribute) {
    const DomText name(attribute.name);
    const DomText text(attribute.text);
    CComPointer<IXMLDOMElement> owner;
    HRESULT result = element->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(owner.Receive()));
    owner = Required(result, owner, "the node has no attributes");
    Check(owner->setAttribute(name.Get(), text.AsVariant()), "the DOM cannot set an attribute");
    try {
        CComPointer<IXMLDOMAttribute> added;
        result = owner->getAttributeNode(name.Get(), added.Receive());
        return TextOf(Required(result, added, "the DOM cannot give an attribute").Get());
    } catch (const DomError&) {
        owner->removeAttribute(name.Get()); // what is in memory is what a save writes
        throw;
    }
}

DomNode DomDocument::AppendElement(const DomNode& parent, DomView tagName, const std::vector<DomPair>& attributes) {
    const DomText tagNameText(tagName);
    CComPointer<IXMLDOMElement> element;
    HRESULT result = m_pNative->document->createElement(tagNameText.Get(), element.Receive());
    element = Required(result, element, "the DOM cannot create an element");
    for (const DomPair& attribute : attributes) {
        const DomText name(attribute.name);
        const DomText text(attribute.text);
        Check(element->setAttribute(name.Get(), text.AsVariant()), "the DOM cannot set an attribute");
    }
    DomNode item;
    result = parent->appendChild(element.Get(), item.Receive());
    return Required(result, item, "the DOM cannot append an element");
}

void DomDocument::RemoveChild(const DomNode& container, const DomNode& child) {
    DomNode removed;
    Check(container->removeChild(child.Get(), removed.Receive()), "the DOM cannot remove a child");
}
