// The file behind such a document is one in memory, which is gone as soon as it was loaded.

#include "engine_document.h"

#include "store/module_state.h"

#include <sys/mman.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>

CMemoryFile::CMemoryFile(const std::string& bytes)
    : m_nFile(::memfd_create("document", MFD_CLOEXEC)), m_strPath("/proc/self/fd/" + std::to_string(m_nFile)) {
    if (m_nFile < 0 || ::write(m_nFile, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("no file in memory");
    }
}

CMemoryFile::~CMemoryFile() { ::close(m_nFile); }

CEngineDocument::CEngineDocument(const std::string& xml) {
    const CMemoryFile file(xml);
    m_object.m_pDom = DomDocument::Create();
    if (!m_object.m_pDom->Load(file.Path())) {
        throw std::runtime_error("the document is refused:\n" + xml);
    }
    m_object.m_pTables = std::make_unique<CDocumentTables>(*m_object.m_pDom);
    State().currentDocument = &m_object;
}

CEngineDocument::~CEngineDocument() { State().currentDocument = nullptr; }

pugi::xml_node CEngineDocument::Root(const char* tagName) {
    return m_object.m_pDom->FirstElementNamed(tagName).root().find_child(
        [](const pugi::xml_node& node) { return node.type() == pugi::node_element; });
}

std::string CEngineDocument::Text(const char* tagName) {
    std::ostringstream text;
    m_object.m_pDom->FirstElementNamed(tagName).print(text, "", pugi::format_raw);
    return text.str();
}

CRequest::CRequest(const char* element, const char* attribute, const char* value)
    : CXmlQuery(element, attribute, value) {}

CRequest::CRequest(const CRequest& other) : CXmlQuery(other.m_strElement, other.m_strAttr, other.m_strValue) {
    for (const CXmlAttribute::Pair* pair = other.m_attrs.Head(); pair != nullptr; pair = pair->next) {
        m_attrs.Add(pair->name, pair->value);
    }
    m_nCount = other.m_nCount;
}

CRequest& CRequest::With(const char* name, const char* pairValue) {
    AddPair(name, pairValue);
    return *this;
}

CRequest& CRequest::Counting(int32_t count) {
    m_nCount = count;
    return *this;
}

TextPairs PairsOf(const CXmlQuery& query) {
    TextPairs pairs;
    for (const CXmlAttribute::Pair* pair = query.m_attrs.Head(); pair != nullptr; pair = pair->next) {
        pairs.emplace_back(pair->name.c_str(), pair->value.c_str());
    }
    return pairs;
}
