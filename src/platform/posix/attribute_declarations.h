// What a document's type declaration says of attributes, as far as it bears on what may be written: a reader cuts
// blanks from some, and adds others by itself.

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

class CAttributeDeclarations {
public:
    struct Declaration {
        bool bTokens = false; // blanks at the ends go, and several become one
        bool bDefault = false;
        std::string strDefault;
    };
    using Declarations = std::map<std::string, Declaration, std::less<>>;

    /// The first declaration of an attribute is the one that counts. `defaultText`: null when it has none. Throws
    /// std::bad_alloc.
    void Add(std::string_view element, std::string_view attribute, bool bTokens, const char* defaultText);

    /// By name, those of the elements of one name.
    const Declarations& Of(std::string_view element) const noexcept;

    /// Whether an attribute can hold the text, so that a reader gives it back as it is.
    bool CanHold(std::string_view element, std::string_view attribute, std::string_view text) const noexcept;

private:
    std::map<std::string, Declarations, std::less<>> m_byElement;
};
