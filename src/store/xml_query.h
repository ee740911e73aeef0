// The request that an export hands to the node engine, and the answer that it reads back.

#pragma once

#include "cordelbox.h"

/// A list of (name, value) pairs with a cursor: filter pairs or new attributes on the way in, results on the way out.
class CXmlAttribute {
public:
    CXmlAttribute() = default;
    virtual ~CXmlAttribute();
    CXmlAttribute(const CXmlAttribute&) = delete;
    CXmlAttribute& operator=(const CXmlAttribute&) = delete;

    struct Pair {
        Pair* next;
        AnsiString name;
        AnsiString value;
    };

    /// Appends a pair and leaves the cursor: after the first one it stays without a pair until Rewind. Returns 0, or 1
    /// when there is no memory for the pair.
    int32_t Add(AnsiString name, AnsiString value) noexcept;

    /// The same for zero-terminated text. A null or empty name adds nothing and returns 1; a null value is empty.
    int32_t Add(const char* name, const char* value) noexcept;

    void Clear() noexcept;
    void Swap(CXmlAttribute& other) noexcept;

    /// Puts the cursor on the first pair.
    void Rewind() noexcept;

    /// Moves the cursor on; behind the last pair it has none, and its position goes on counting.
    void MoveNext() noexcept;

    /// Name and value of the pair under the cursor; empty when there is none.
    AnsiString GetName() const noexcept;
    AnsiString GetValue() const noexcept;

    /// The value under the cursor, which moves on.
    AnsiString TakeValue() noexcept;

    const Pair* Head() const noexcept { return m_pHead; }
    int32_t Count() const noexcept { return m_nPairs; }
    int32_t Index() const noexcept { return m_nIndex; }

private:
    Pair* m_pHead = nullptr; // owned, in the order of insertion
    int32_t m_nIndex = 0;    // position of the cursor
    Pair* m_pCur = nullptr;  // the cursor
    int32_t m_nPairs = 0;
    Pair* m_pPrev = nullptr; // the pair before the cursor
    Pair* m_pTail = nullptr; // the last pair, so that appending costs the same for every length
};

/// One request.
struct CXmlQuery {
    CXmlQuery() = default;
    CXmlQuery(AnsiString element, AnsiString attribute, AnsiString value = {}) noexcept;

    /// Adds a pair and counts it. Throws std::bad_alloc.
    void AddPair(AnsiString name, AnsiString value);

    /// The value of the first pair, or the empty string: after a read that found something its result, otherwise the
    /// first filter pair's value. Exports with filters rely on the latter.
    AnsiString FirstValue() noexcept;

    int32_t m_nCount = 0;    // in: pairs of m_attrs that count; out of the readers: pairs delivered
    AnsiString m_strElement; // tag name of the container
    AnsiString m_strAttr;    // attribute to read or write
    AnsiString m_strValue;   // value to write, or the key's value
    CXmlAttribute m_attrs;
};
