// One attribute of every child of a container, to be walked with a range-for.

#pragma once

#include "store/node_readers.h"

#include <utility>

class CCollectedValues {
public:
    CCollectedValues(CXmlObject* document, AnsiString element, AnsiString attribute) noexcept
        : m_query(std::move(element), std::move(attribute)) {
        CollectAttribute(document, &m_query);
    }

    /// Number of values, which may be partial: what stands before a child that cannot be read.
    int32_t Count() const noexcept { return m_query.m_nCount; }

    class Iterator {
    public:
        explicit Iterator(const CXmlAttribute::Pair* pair) noexcept : m_pPair(pair) {}
        const AnsiString& operator*() const noexcept { return m_pPair->value; }
        Iterator& operator++() noexcept {
            m_pPair = m_pPair->next;
            return *this;
        }
        bool operator!=(const Iterator& other) const noexcept { return m_pPair != other.m_pPair; }

    private:
        const CXmlAttribute::Pair* m_pPair;
    };
    Iterator begin() const noexcept { return Iterator(m_query.m_attrs.Head()); }
    Iterator end() const noexcept { return Iterator(nullptr); }

private:
    CXmlQuery m_query;
};
