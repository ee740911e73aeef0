// A document for tests of the engine itself: loaded from text, open as the current document, with no file behind it.

#pragma once

#include "store/xml_object.h"
#include "store/xml_query.h"

#include <pugixml.hpp>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

class CEngineDocument {
public:
    /// Throws std::runtime_error when the document is refused.
    explicit CEngineDocument(const std::string& xml);
    /// Leaves no current document.
    ~CEngineDocument();
    CEngineDocument(const CEngineDocument&) = delete;
    CEngineDocument& operator=(const CEngineDocument&) = delete;

    CXmlObject& Object() noexcept { return m_object; }
    CDocumentTables& Tables() noexcept { return *m_object.m_pTables; }

    /// The document element as the DOM holds it now. `tagName` is some element below it.
    pugi::xml_node Root(const char* tagName);

    /// The element of that name as text, without blanks between its parts.
    std::string Text(const char* tagName);

private:
    CXmlObject m_object;
};

using TextPairs = std::vector<std::pair<std::string, std::string>>;

/// A request with these pairs, of which all count.
class CRequest : public CXmlQuery {
public:
    CRequest(const char* element, const char* attribute, const char* value = "");
    CRequest(const CRequest& other);
    CRequest& With(const char* name, const char* pairValue);
    CRequest& Counting(int32_t count);
};

/// The pairs of a query, in order.
TextPairs PairsOf(const CXmlQuery& query);

/// A file in memory; its path can be opened as long as the object lives.
class CMemoryFile {
public:
    explicit CMemoryFile(const std::string& bytes);
    ~CMemoryFile();
    CMemoryFile(const CMemoryFile&) = delete;
    CMemoryFile& operator=(const CMemoryFile&) = delete;
    const char* Path() const noexcept { return m_strPath.c_str(); }
    int Descriptor() const noexcept { return m_nFile; }

private:
    const int m_nFile;
    std::string m_strPath;
};
