// Draws specimens: HarfBuzz chooses and places the glyphs, FreeType reads their outlines.

#include "page/specimen.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include <hb-ft.h>
#include <hb.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <tuple>
#include <type_traits>

namespace {

constexpr double kEm = 1000;

/// Two hundred specimens fit a page that can be sent by mail.
constexpr std::size_t kMostPathBytes = 7000;

/// A glyph with more points than any that people read.
constexpr int kMostPoints = 4000;

struct DoneLibrary {
    void operator()(FT_Library library) const noexcept { FT_Done_FreeType(library); }
};
struct DoneFace {
    void operator()(FT_Face face) const noexcept { FT_Done_Face(face); }
};
struct DestroyFont {
    void operator()(hb_font_t* font) const noexcept { hb_font_destroy(font); }
};
struct DestroyBuffer {
    void operator()(hb_buffer_t* buffer) const noexcept { hb_buffer_destroy(buffer); }
};

class CFont {
public:
    explicit CFont(const std::filesystem::path& path) {
        FT_Library library = nullptr;
        if (FT_Init_FreeType(&library) != 0) {
            throw std::runtime_error("the font reader cannot be started");
        }
        m_library.reset(library);
        FT_Face face = nullptr;
        const FT_Error error = FT_New_Face(library, path.string().c_str(), 0, &face);
        if (error != 0) {
            throw std::runtime_error(error == FT_Err_Cannot_Open_Resource ? "it cannot be opened"
                                                                          : "it is damaged, or is no font");
        }
        m_face.reset(face);
        if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) {
            throw std::runtime_error("it has no outlines");
        }
    }
    FT_Face Face() const noexcept { return m_face.get(); }
    int Scaled(double units) const noexcept {
        // The bounds keep a damaged font's numbers from running over.
        return static_cast<int>(std::clamp(std::round(units * kEm / m_face->units_per_EM), -1e6, 1e6));
    }

private:
    std::unique_ptr<std::remove_pointer_t<FT_Library>, DoneLibrary> m_library;
    std::unique_ptr<std::remove_pointer_t<FT_Face>, DoneFace> m_face;
};

/// Writes the commands of a path, each relative to the point before it.
class CPathWriter {
public:
    CPathWriter(const CFont& font, double x, double y) noexcept : m_font(font), m_left(x), m_base(y) {}

    void Start(const FT_Vector* point) {
        Close();
        const auto [x, y] = Place(point);
        m_strPath += 'M' + std::to_string(x) + ' ' + std::to_string(y);
        m_x = x;
        m_y = y;
        m_bOpen = true;
    }

    /// Each point is relative to where the command began; the last is where the next begins.
    void Append(char command, std::initializer_list<const FT_Vector*> points) {
        m_strPath += command;
        int x = m_x;
        int y = m_y;
        for (const FT_Vector* const point : points) {
            std::tie(x, y) = Place(point);
            AppendNumber(x - m_x);
            AppendNumber(y - m_y);
        }
        m_x = x;
        m_y = y;
    }

    void Close() {
        if (m_bOpen) {
            m_strPath += 'z';
        }
        m_bOpen = false;
    }

    const std::string& Path() const noexcept { return m_strPath; }

private:
    std::pair<int, int> Place(const FT_Vector* point) const noexcept {
        return {m_font.Scaled(m_left + static_cast<double>(point->x)),
                m_font.Scaled(-(m_base + static_cast<double>(point->y)))};
    }

    void AppendNumber(int number) {
        const char last = m_strPath.back();
        if (number >= 0 && last >= '0' && last <= '9') {
            m_strPath += ' ';
        }
        m_strPath += std::to_string(number);
    }

    const CFont& m_font;
    const double m_left;
    const double m_base;
    std::string m_strPath;
    int m_x = 0;
    int m_y = 0;
    bool m_bOpen = false;
};

/// The path of the glyph that the face has loaded.
std::string OutlineOf(const CFont& font, double x, double y) {
    FT_Outline& outline = font.Face()->glyph->outline;
    if (font.Face()->glyph->format != FT_GLYPH_FORMAT_OUTLINE || outline.n_points > kMostPoints) {
        throw std::runtime_error("its outlines cannot be drawn");
    }
    FT_Outline_Funcs functions{};
    functions.move_to = [](const FT_Vector* to, void* writer) {
        static_cast<CPathWriter*>(writer)->Start(to);
        return 0;
    };
    functions.line_to = [](const FT_Vector* to, void* writer) {
        static_cast<CPathWriter*>(writer)->Append('l', {to});
        return 0;
    };
    functions.conic_to = [](const FT_Vector* control, const FT_Vector* to, void* writer) {
        static_cast<CPathWriter*>(writer)->Append('q', {control, to});
        return 0;
    };
    functions.cubic_to = [](const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* writer) {
        static_cast<CPathWriter*>(writer)->Append('c', {first, second, to});
        return 0;
    };
    CPathWriter writer(font, x, y);
    if (FT_Outline_Decompose(&outline, &functions, &writer) != 0) {
        throw std::runtime_error("its outlines are damaged");
    }
    writer.Close();
    return writer.Path();
}

std::string BoxPath(int left, int width) {
    return 'M' + std::to_string(left + 60) + " 0v-700h" + std::to_string(width - 120) + "v700z";
}

} // namespace

Specimen DrawSpecimen(const std::filesystem::path& path, const std::string& utf8) {
    const CFont font(path);
    FT_Set_Char_Size(font.Face(), 0, font.Face()->units_per_EM * 64L, 72, 72); // the shaper counts in font units
    const std::unique_ptr<hb_font_t, DestroyFont> shaped(hb_ft_font_create(font.Face(), nullptr));
    hb_ft_font_set_load_flags(shaped.get(), FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP);
    const std::unique_ptr<hb_buffer_t, DestroyBuffer> buffer(hb_buffer_create());
    hb_buffer_add_utf8(buffer.get(), utf8.data(), static_cast<int>(utf8.size()), 0, -1);
    hb_buffer_guess_segment_properties(buffer.get());
    hb_shape(shaped.get(), buffer.get(), nullptr, 0);

    unsigned count = 0;
    const hb_glyph_info_t* const glyphs = hb_buffer_get_glyph_infos(buffer.get(), &count);
    const hb_glyph_position_t* const places = hb_buffer_get_glyph_positions(buffer.get(), &count);
    constexpr double kUnit = 64; // places are in 64ths
    Specimen specimen;
    specimen.ascent = std::clamp(font.Scaled(font.Face()->ascender), 700, 2000);
    specimen.descent = std::clamp(font.Scaled(-font.Face()->descender), 0, 1000);
    double pen = 0;
    for (unsigned index = 0; index < count; ++index) {
        const double advance = places[index].x_advance / kUnit;
        if (glyphs[index].codepoint == 0) {
            const int width = std::clamp(font.Scaled(advance), 300, 1000);
            specimen.missingPath += BoxPath(font.Scaled(pen), width);
            ++specimen.missingGlyphs;
            pen += width * font.Face()->units_per_EM / kEm;
            continue;
        }
        if (FT_Load_Glyph(font.Face(), glyphs[index].codepoint, FT_LOAD_NO_SCALE) != 0) {
            throw std::runtime_error("its outlines are damaged");
        }
        const std::string outline =
            OutlineOf(font, pen + places[index].x_offset / kUnit, places[index].y_offset / kUnit);
        if (specimen.path.size() + outline.size() > kMostPathBytes) {
            specimen.isShortened = true;
            break;
        }
        specimen.path += outline;
        pen += std::max(advance, 0.0);
    }
    specimen.width = std::max(font.Scaled(pen), 1);
    return specimen;
}
