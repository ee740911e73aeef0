// What becomes of a text that a host hands in, stated apart from the library.

#pragma once

#include <optional>
#include <string>

struct StoredText {
    std::string inDocument; // in the document, as UTF-8
    std::string readBack;   // what the getters give, in the code page
};

/// None when no document can hold the text.
std::optional<StoredText> StoreText(const std::string& bytes);
