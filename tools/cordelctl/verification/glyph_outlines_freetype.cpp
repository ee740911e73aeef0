// Loads every glyph with FreeType.

#include "glyph_outlines.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace {

struct EndLibrary {
    void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
};
struct CloseFace {
    void operator()(FT_Face face) const noexcept { FT_Done_Face(face); }
};

FT_Library Library() {
    static const std::unique_ptr<FT_LibraryRec_, EndLibrary> library([] {
        FT_Library made = nullptr;
        if (FT_Init_FreeType(&made) != 0) {
            throw std::runtime_error("the font reader cannot be started");
        }
        return made;
    }());
    return library.get();
}

} // namespace

GlyphOutlines LoadOutlines(const CFontTables& font, const std::optional<CGlyphPlaces>& places) {
    GlyphOutlines read = ReadOutlines(font, places);
    FT_Face opened = nullptr;
    const std::string_view file = font.File();
    const FT_Error error =
        FT_New_Memory_Face(Library(), reinterpret_cast<const FT_Byte*>(file.data()), static_cast<FT_Long>(file.size()),
                           static_cast<FT_Long>(font.Member()), &opened);
    if (error != 0) {
        if (read.refusal.empty()) {
            read.refusal = "the font engine cannot open it";
        }
        return read;
    }
    const std::unique_ptr<FT_FaceRec_, CloseFace> face(opened);
    std::vector<std::uint32_t> refused;
    const auto count = static_cast<std::uint32_t>(std::max<FT_Long>(face->num_glyphs, 0));
    for (std::uint32_t glyph = 0; glyph < count; ++glyph) {
        if (FT_Load_Glyph(face.get(), glyph, FT_LOAD_NO_SCALE) != 0) {
            refused.push_back(glyph);
        }
    }
    std::vector<std::uint32_t> all;
    std::set_union(read.unreadable.begin(), read.unreadable.end(), refused.begin(), refused.end(),
                   std::back_inserter(all));
    read.unreadable = std::move(all);
    return read;
}
