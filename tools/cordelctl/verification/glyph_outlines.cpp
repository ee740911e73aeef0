// Outlines as the tables have them: the points of TrueType glyphs, and the charstrings of compact fonts.

#include "glyph_outlines.h"

#include "compact_outlines.h"
#include "table_reader.h"

namespace {

// Flags of a point.
constexpr std::uint32_t kXIsByte = 0x02;
constexpr std::uint32_t kYIsByte = 0x04;
constexpr std::uint32_t kRepeats = 0x08;
constexpr std::uint32_t kXIsSame = 0x10;
constexpr std::uint32_t kYIsSame = 0x20;

// Flags of a part.
constexpr std::uint32_t kArgumentsAreWords = 0x0001;
constexpr std::uint32_t kArgumentsAreOffsets = 0x0002;
constexpr std::uint32_t kHasScale = 0x0008;
constexpr std::uint32_t kMoreParts = 0x0020;
constexpr std::uint32_t kHasTwoScales = 0x0040;
constexpr std::uint32_t kHasMatrix = 0x0080;

constexpr std::size_t kGlyphHead = 10;

/// `points` becomes how many it has.
bool IsSimpleGlyphWhole(std::string_view glyph, std::uint32_t contours, std::uint32_t& points) {
    std::size_t place = kGlyphHead;
    if (!Holds(glyph, place, contours * 2 + 2)) {
        return false;
    }
    points = 0;
    for (std::uint32_t i = 0; i < contours; ++i, place += 2) {
        const std::uint32_t end = Word16At(glyph, place) + 1;
        if (end < points || (end == points && i > 0)) {
            return false;
        }
        points = end;
    }
    const std::size_t instructions = Word16At(glyph, place);
    place += 2;
    if (!Holds(glyph, place, instructions)) {
        return false;
    }
    place += instructions;
    std::size_t coordinates = 0;
    for (std::uint32_t point = 0; point < points;) {
        if (place >= glyph.size()) {
            return false;
        }
        const std::uint32_t flags = ByteAt(glyph, place++);
        std::uint32_t count = 1;
        if ((flags & kRepeats) != 0) {
            if (place >= glyph.size()) {
                return false;
            }
            count += ByteAt(glyph, place++);
        }
        if (count > points - point) {
            return false;
        }
        const std::size_t size = ((flags & kXIsByte) != 0   ? 1
                                  : (flags & kXIsSame) != 0 ? 0
                                                            : 2) +
                                 ((flags & kYIsByte) != 0   ? 1
                                  : (flags & kYIsSame) != 0 ? 0
                                                            : 2);
        coordinates += size * count;
        point += count;
    }
    return Holds(glyph, place, coordinates);
}

/// Glyphs that are put together from others.
class CCompositeGlyphs {
public:
    explicit CCompositeGlyphs(const CGlyphPlaces& places)
        : m_places(places), m_states(places.Count()), m_points(places.Count()) {}

    bool IsWhole(std::uint32_t glyph) {
        State& state = m_states[glyph];
        if (state == State::Unseen) {
            state = State::Open;
            const bool whole = Read(glyph);
            m_states[glyph] = whole ? State::Whole : State::Broken;
        }
        return m_states[glyph] == State::Whole; // one that is still open is a part of itself
    }

private:
    enum class State : unsigned char { Unseen, Open, Whole, Broken };

    bool Read(std::uint32_t number) {
        const std::string_view glyph = m_places.Glyph(number);
        if (glyph.empty()) {
            return true;
        }
        if (glyph.size() < kGlyphHead) {
            return false;
        }
        const std::uint32_t contours = Word16At(glyph, 0);
        if (contours < 0x8000) {
            return contours == 0 || IsSimpleGlyphWhole(glyph, contours, m_points[number]);
        }
        std::uint32_t flags = kMoreParts;
        for (std::size_t place = kGlyphHead; (flags & kMoreParts) != 0;) {
            if (!Holds(glyph, place, 4)) {
                return false;
            }
            flags = Word16At(glyph, place);
            const std::uint32_t part = Word16At(glyph, place + 2);
            const std::size_t arguments = place + 4;
            place += 4 + ((flags & kArgumentsAreWords) != 0 ? 4 : 2) +
                     ((flags & kHasScale) != 0       ? 2
                      : (flags & kHasTwoScales) != 0 ? 4
                      : (flags & kHasMatrix) != 0    ? 8
                                                     : 0);
            if (place > glyph.size() || part >= m_places.Count() || !IsPartWhole(part)) {
                return false;
            }
            // A part that is put where one of its points falls on one of the glyph's.
            if ((flags & kArgumentsAreOffsets) == 0) {
                const bool words = (flags & kArgumentsAreWords) != 0;
                const std::uint32_t own = words ? Word16At(glyph, arguments) : ByteAt(glyph, arguments);
                const std::uint32_t other = words ? Word16At(glyph, arguments + 2) : ByteAt(glyph, arguments + 1);
                if (own >= m_points[number] || other >= m_points[part]) {
                    return false;
                }
            }
            m_points[number] += m_points[part];
        }
        return true;
    }

    bool IsPartWhole(std::uint32_t part) {
        constexpr int kDeepest = 64; // of parts of parts; fonts have two or three
        if (m_nDepth == kDeepest) {
            return false;
        }
        ++m_nDepth;
        const bool whole = IsWhole(part);
        --m_nDepth;
        return whole;
    }

    const CGlyphPlaces& m_places;
    std::vector<State> m_states;
    std::vector<std::uint32_t> m_points;
    int m_nDepth = 0;
};

} // namespace

GlyphOutlines ReadOutlines(const CFontTables& font, const std::optional<CGlyphPlaces>& places) {
    GlyphOutlines outlines;
    if (font.HasCompactOutlines()) {
        return ReadCompactOutlines(font);
    }
    if (!places) {
        return outlines;
    }
    CCompositeGlyphs glyphs(*places);
    outlines.empty.resize(places->Count());
    for (std::uint32_t glyph = 0; glyph < places->Count(); ++glyph) {
        const std::string_view bytes = places->Glyph(glyph);
        outlines.empty[glyph] = bytes.size() < kGlyphHead || Word16At(bytes, 0) == 0;
        if (!glyphs.IsWhole(glyph)) {
            outlines.unreadable.push_back(glyph);
        }
    }
    return outlines;
}
