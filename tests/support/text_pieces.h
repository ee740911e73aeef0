// A text as the contents of a file that is replaced.

#pragma once

#include "safe_save.h"

#include <cstddef>
#include <string_view>

/// Gives `text`, which it does not copy, in pieces of at most so many bytes.
inline platform::ContentsProducer InPieces(std::string_view text, std::size_t pieceBytes = 16384) {
    return [=](const platform::PieceSink& sink) {
        for (std::size_t offset = 0; offset < text.size(); offset += pieceBytes) {
            sink(text.substr(offset, pieceBytes));
        }
        return true;
    };
}
