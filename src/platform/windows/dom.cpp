// The DOM of the platform, through its COM interfaces.

#include "platform/dom.h"

#include "byte_stream.h"
#include "com_pointer.h"
#include "file_handle.h"
#include "markup_check.h"
#include "platform/code_page.h"
#include "platform/document_limits.h"
#include "platform/namespaces.h"
#include "safe_save.h"
#include "wide_text.h"

#include <objbase.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace {

constexpr CLSID kDocumentClass = {0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};

/// Within these every DOM is at ease: after a change that goes beyond, it is asked whether it would load the document.
constexpr std::size_t kUsualDepth = 100;
constexpr std::size_t kUsualText = std::size_t{1} << 20;

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

DOMNodeType TypeOf(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    Check(node->get_nodeType(&type), "the DOM cannot give a node's type");
    return type;
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
    VARIANT value{};
    Check(attribute->get_nodeValue(&value), kFailure);
    if (value.vt != VT_BSTR) { // none then, and nothing to free
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

bool IsTooLarge(std::uint64_t bytes) noexcept { return bytes > kMaxDocumentBytes; }

/// Reads a file that nobody changes meanwhile. False when it cannot be read or is larger than a document.
bool ReadAll(const CFileHandle& file, std::string& bytes, CReason* reason) {
    LARGE_INTEGER size;
    if (!file || ::GetFileSizeEx(file.Get(), &size) == FALSE) {
        GiveReason(reason, CReason::OfCall(file ? "GetFileSizeEx" : "CreateFileW", ::GetLastError()));
        return false;
    }
    if (IsTooLarge(static_cast<std::uint64_t>(size.QuadPart))) {
        GiveReason(reason, CReason::Of(ReasonKind::TooLarge));
        return false;
    }
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD count = 0;
    if (::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) == FALSE ||
        count != bytes.size()) {
        GiveReason(reason, CReason::OfCall("ReadFile", ::GetLastError()));
        return false;
    }
    return true;
}

/// Whether elements lie deeper within each other than the limit, the document element counted as one.
bool IsTooDeep(IXMLDOMNode* documentElement) {
    std::vector<DomNode> path; // from below the document element on, to where the node lies
    for (DomNode node = FirstChildOf(documentElement); node || !path.empty();) {
        if (!node) {
            node = NextSiblingOf(path.back().Get());
            path.pop_back();
            continue;
        }
        if (path.size() + 2 > kMaxElementDepth && TypeOf(node.Get()) == NODE_ELEMENT) {
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

/// The element in which a node lies; empty for the document element.
DomNode ParentOf(IXMLDOMNode* node) {
    DomNode parent;
    const HRESULT result = node->get_parentNode(parent.Receive());
    parent = Optional(result, parent, "the DOM cannot give a node's parent");
    return parent && TypeOf(parent.Get()) == NODE_ELEMENT ? std::move(parent) : DomNode();
}

/// An element and those that it lies in, from the inside out.
std::vector<DomNode> PathOf(DomNode element) {
    std::vector<DomNode> path;
    while (element) {
        DomNode parent = ParentOf(element.Get());
        path.push_back(std::move(element));
        element = std::move(parent);
    }
    return path;
}

/// Goes into an element of a document that was loaded, whose names are right.
void EnterElement(CNamespaceScopes& scopes, std::size_t depth, IXMLDOMNode* element) {
    const CComPointer<IXMLDOMNamedNodeMap> map = AttributesOf(element);
    long count = 0;
    if (map) {
        Check(map->get_length(&count), "the DOM cannot count attributes");
    }
    std::vector<DomText> texts; // a name and a text each
    for (long index = 0; index < count; ++index) {
        const DomNode attribute = AttributeAt(map.Get(), static_cast<std::size_t>(index));
        texts.push_back(NameOf(attribute.Get()));
        texts.push_back(TextOf(attribute.Get()));
    }
    std::vector<NamedText> attributes;
    for (std::size_t index = 0; index < texts.size(); index += 2) {
        attributes.push_back({texts[index].View(), texts[index + 1].View()});
    }
    const DomText name = NameOf(element);
    scopes.Enter(depth, name.View(), attributes);
}

/// Throws DomError when a new element with these attributes, of which the last of a name counts, would break the rules
/// of namespaces at the end of the path.
void RequireNames(const std::vector<DomNode>& path, DomView tagName, const std::vector<DomPair>& pairs) {
    std::vector<NamedText> attributes;
    bool bNamespaces = ConcernsNamespaces(tagName);
    for (const DomPair& pair : pairs) {
        std::erase_if(attributes, [&](const NamedText& other) { return other.name == pair.name; });
        attributes.push_back({pair.name, pair.text});
        bNamespaces = bNamespaces || ConcernsNamespaces(pair.name);
    }
    if (!bNamespaces) {
        return;
    }
    CNamespaceScopes scopes;
    for (std::size_t outer = 1; outer <= path.size(); ++outer) {
        EnterElement(scopes, outer, path[path.size() - outer].Get());
    }
    const char* const wrong = scopes.Enter(path.size() + 1, tagName, attributes);
    if (wrong != nullptr) {
        throw DomError(wrong);
    }
}

/// Whether a reader that takes an attribute for tokens would cut blanks from the text.
bool HasLooseBlanks(DomView text) noexcept {
    return !text.empty() && (text.front() == L' ' || text.back() == L' ' || text.find(L"  ") != DomView::npos);
}

/// A document of the DOM that is set up for loading; empty when it cannot be had.
CComPointer<IXMLDOMDocument> CreateDocument() noexcept {
    CComPointer<IXMLDOMDocument> document;
    constexpr DWORD kContext = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER;
    if (FAILED(::CoCreateInstance(kDocumentClass, nullptr, kContext, IID_IXMLDOMDocument,
                                  reinterpret_cast<void**>(document.Receive()))) ||
        !document || FAILED(document->put_async(VARIANT_FALSE)) ||
        FAILED(document->put_validateOnParse(VARIANT_FALSE)) || FAILED(document->put_resolveExternals(VARIANT_FALSE))) {
        return {};
    }
    return document;
}

/// Writes the whole document, in UTF-8.
void Write(IXMLDOMDocument* document, CByteStream& bytes) {
    VARIANT destination{};
    destination.vt = VT_UNKNOWN;
    destination.punkVal = &bytes;
    if (document->save(destination) != S_OK || bytes.View().empty()) {
        throw DomError("the DOM failed to write the document");
    }
}

/// Whether the DOM takes the bytes for a document.
bool IsLoadable(std::string_view bytes) {
    const CComPointer<IXMLDOMDocument> document = CreateDocument();
    SAFEARRAY* const array = ::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    if (!document || array == nullptr) {
        return false;
    }
    VARIANT source{};
    source.vt = VT_ARRAY | VT_UI1;
    source.parray = array;
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(array->pvData));
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->load(source, &isLoaded);
    ::SafeArrayDestroy(array);
    return result == S_OK && isLoaded != VARIANT_FALSE;
}

} // namespace

struct DomDocument::Native {
    CComPointer<IXMLDOMDocument> document;
    bool m_bDeclaresAttributes = false; // some may be declared to hold tokens

    bool Load(const char* path, CReason* reason);
    void RequireHolds(DomView text) const;
    void RequireLoadable() const;
};

bool DomDocument::Native::Load(const char* path, CReason* reason) {
    const std::wstring widePath = platform::ToWideText(path);
    // Nobody writes to the file as long as it is open here: what is looked through is what the DOM loads.
    const CFileHandle file(::CreateFileW(widePath.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string bytes;
    if (!ReadAll(file, bytes, reason)) {
        return false;
    }
    const DomText argument(widePath);
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->load(argument.AsVariant(), &isLoaded);
    Check(result, "the DOM cannot load a document");
    if (result != S_OK || isLoaded == VARIANT_FALSE) {
        GiveReason(reason, ParseReason(document.Get()));
        return false;
    }
    const MarkupFindings findings = CheckMarkup(bytes);
    if (findings.m_pFault != nullptr) {
        GiveReason(reason, CReason::Of(findings.m_kind, findings.m_pFault));
        return false;
    }
    if (!IsUsable(document.Get())) {
        GiveReason(reason, CReason::Of(ReasonKind::TooDeep));
        return false;
    }
    m_bDeclaresAttributes = findings.m_bDeclaresAttributes;
    return true;
}

/// Throws DomError when the DOM would not load what it would save.
void DomDocument::Native::RequireLoadable() const {
    CByteStream bytes;
    Write(document.Get(), bytes);
    if (!IsLoadable(bytes.View())) {
        throw DomError("the document could not be loaded again", CReason::Of(ReasonKind::TooLarge));
    }
}

/// Throws DomError for a text that an attribute might lose a part of when it is loaded again.
void DomDocument::Native::RequireHolds(DomView text) const {
    if (m_bDeclaresAttributes && HasLooseBlanks(text)) {
        throw DomError("the attribute may be declared to hold tokens");
    }
}

DomDocument::DomDocument(std::unique_ptr<Native> native) noexcept : m_pNative(std::move(native)) {}

DomDocument::~DomDocument() = default;

std::unique_ptr<DomDocument> DomDocument::Create() noexcept {
    // Never balanced: the thread's other documents live on after this one.
    if (FAILED(::CoInitialize(nullptr))) {
        return nullptr;
    }
    CComPointer<IXMLDOMDocument> document = CreateDocument();
    if (!document) {
        return nullptr;
    }
    std::unique_ptr<Native> native(new (std::nothrow) Native{std::move(document), false});
    if (native == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<DomDocument>(new (std::nothrow) DomDocument(std::move(native)));
}

bool DomDocument::Load(const char* path, CReason* reason, DomPositions) {
    try {
        return m_pNative->Load(path, reason);
    } catch (const std::bad_alloc&) {
        throw DomError("out of memory while loading a document", CReason::Of(ReasonKind::OutOfMemory));
    }
}

void DomDocument::Save(const char* path, const LastLook& isAsLoaded) {
    CByteStream bytes;
    Write(m_pNative->document.Get(), bytes);
    if (IsTooLarge(bytes.View().size())) {
        throw DomError("the document could not be loaded again", CReason::Of(ReasonKind::TooLarge));
    }
    CReason reason;
    if (!platform::ReplaceContents(path, bytes.View(), &reason, isAsLoaded)) {
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
    switch (TypeOf(node.Get())) {
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
    const DomText name = NameOf(attribute.Get());
    if (DeclaresNamespace(name.View()) && former.View() != text) {
        throw DomError("the DOM keeps the namespaces that it has loaded");
    }
    m_pNative->RequireHolds(text);
    Check(attribute->put_text(argument.Get()), "the DOM cannot set an attribute's text");
    try {
        if (text.size() > kUsualText) {
            m_pNative->RequireLoadable();
        }
        return TextOf(attribute.Get());
    } catch (const DomError&) {
        attribute->put_text(former.Get()); // what is in memory is what a save writes
        throw;
    }
}

DomText DomDocument::AddAttribute(const DomNode& element, const DomPair& attribute) {
    if (ConcernsNamespaces(attribute.name)) {
        throw DomError("an attribute that is added has no prefix");
    }
    m_pNative->RequireHolds(attribute.text);
    const DomText name(attribute.name);
    const DomText text(attribute.text);
    CComPointer<IXMLDOMElement> owner;
    HRESULT result = element->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(owner.Receive()));
    owner = Required(result, owner, "the node has no attributes");
    Check(owner->setAttribute(name.Get(), text.AsVariant()), "the DOM cannot set an attribute");
    try {
        if (attribute.text.size() > kUsualText) {
            m_pNative->RequireLoadable();
        }
        CComPointer<IXMLDOMAttribute> added;
        result = owner->getAttributeNode(name.Get(), added.Receive());
        return TextOf(Required(result, added, "the DOM cannot give an attribute").Get());
    } catch (const DomError&) {
        owner->removeAttribute(name.Get()); // what is in memory is what a save writes
        throw;
    }
}

DomNode DomDocument::AppendElement(const DomNode& parent, DomView tagName, const std::vector<DomPair>& attributes) {
    const std::vector<DomNode> path = PathOf(parent);
    if (path.size() + 1 > kMaxElementDepth) {
        throw DomError("an element would lie too deep", CReason::Of(ReasonKind::TooDeep));
    }
    RequireNames(path, tagName, attributes);
    bool bUnusual = path.size() > kUsualDepth;
    for (const DomPair& attribute : attributes) {
        m_pNative->RequireHolds(attribute.text);
        bUnusual = bUnusual || attribute.text.size() > kUsualText;
    }
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
    item = Required(result, item, "the DOM cannot append an element");
    if (bUnusual) {
        try {
            m_pNative->RequireLoadable();
        } catch (const DomError&) {
            RemoveChild(parent, item);
            throw;
        }
    }
    return item;
}

void DomDocument::RemoveChild(const DomNode& container, const DomNode& child) {
    DomNode removed;
    Check(container->removeChild(child.Get(), removed.Receive()), "the DOM cannot remove a child");
}
