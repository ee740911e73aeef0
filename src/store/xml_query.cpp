#include "store/xml_query.h"

#include <new>
#include <utility>

CXmlAttribute::~CXmlAttribute() { Clear(); }

int32_t CXmlAttribute::Add(AnsiString name, AnsiString value) noexcept {
    Pair* const pair = new (std::nothrow) Pair{nullptr, std::move(name), std::move(value)};
    if (pair == nullptr) {
        return 1;
    }
    (m_pTail != nullptr ? m_pTail->next : m_pHead) = pair;
    m_pTail = pair;
    ++m_nPairs;
    return 0;
}

int32_t CXmlAttribute::Add(const char* name, const char* value) noexcept {
    if (name == nullptr || name[0] == '\0') {
        return 1;
    }
    try {
        return Add(AnsiString(name), AnsiString(value));
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

void CXmlAttribute::Clear() noexcept {
    while (m_pHead != nullptr) {
        delete std::exchange(m_pHead, m_pHead->next);
    }
    m_nIndex = 0;
    m_pCur = nullptr;
    m_nPairs = 0;
    m_pPrev = nullptr;
    m_pTail = nullptr;
}

void CXmlAttribute::Swap(CXmlAttribute& other) noexcept {
    std::swap(m_pHead, other.m_pHead);
    std::swap(m_nIndex, other.m_nIndex);
    std::swap(m_pCur, other.m_pCur);
    std::swap(m_nPairs, other.m_nPairs);
    std::swap(m_pPrev, other.m_pPrev);
    std::swap(m_pTail, other.m_pTail);
}

void CXmlAttribute::Rewind() noexcept {
    m_nIndex = 0;
    m_pCur = m_pHead;
    m_pPrev = nullptr;
}

void CXmlAttribute::MoveNext() noexcept {
    ++m_nIndex;
    if (m_pCur != nullptr) {
        m_pPrev = m_pCur;
        m_pCur = m_pCur->next;
    }
}

AnsiString CXmlAttribute::GetName() const noexcept { return m_pCur != nullptr ? m_pCur->name : AnsiString(); }

AnsiString CXmlAttribute::GetValue() const noexcept { return m_pCur != nullptr ? m_pCur->value : AnsiString(); }

AnsiString CXmlAttribute::TakeValue() noexcept {
    AnsiString value = GetValue();
    MoveNext();
    return value;
}

CXmlQuery::CXmlQuery(AnsiString element, AnsiString attribute, AnsiString value) noexcept
    : m_strElement(std::move(element)), m_strAttr(std::move(attribute)), m_strValue(std::move(value)) {}

void CXmlQuery::AddPair(AnsiString name, AnsiString value) {
    if (m_attrs.Add(std::move(name), std::move(value)) != 0) {
        throw std::bad_alloc();
    }
    ++m_nCount;
}

AnsiString CXmlQuery::FirstValue() noexcept {
    m_attrs.Rewind();
    return m_attrs.GetValue();
}
