#include "compact_outlines.h"

#include "table_reader.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <stdexcept>

namespace {

/// What is wrong with the table as a whole.
class CMalformed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::string_view PartOf(std::string_view table, std::size_t offset, std::size_t length) {
    if (!Holds(table, offset, length)) {
        throw CMalformed("it ends too early");
    }
    return table.substr(offset, length);
}

/// Texts of bytes, one after another, with their places in front.
class CIndex {
public:
    CIndex() = default;
    /// `wideCount`: the number of texts has 32 bits, as in CFF2.
    CIndex(std::string_view table, std::size_t offset, bool wideCount) {
        const std::size_t countSize = wideCount ? 4 : 2;
        const std::string_view head = PartOf(table, offset, countSize);
        m_nCount = wideCount ? Word32At(head, 0) : Word16At(head, 0);
        m_nEnd = offset + countSize;
        if (m_nCount == 0) {
            return;
        }
        m_nOffsetSize = ByteAt(PartOf(table, m_nEnd, 1), 0);
        if (m_nOffsetSize < 1 || m_nOffsetSize > 4) {
            throw CMalformed("an index has places of " + std::to_string(m_nOffsetSize) + " bytes");
        }
        m_strPlaces = PartOf(table, m_nEnd + 1, (m_nCount + 1) * m_nOffsetSize);
        const std::size_t texts = m_nEnd + m_strPlaces.size(); // places count from 1
        std::size_t last = 1;
        for (std::size_t i = 0; i <= m_nCount; ++i) {
            if (Place(i) < last || (i == 0 && Place(0) != 1)) {
                throw CMalformed("the places of an index do not rise");
            }
            last = Place(i);
        }
        m_strTexts = PartOf(table, texts, last);
        m_nEnd = texts + last;
    }

    std::size_t Count() const noexcept { return m_nCount; }
    std::size_t End() const noexcept { return m_nEnd; }
    std::string_view At(std::size_t number) const noexcept {
        return m_strTexts.substr(Place(number), Place(number + 1) - Place(number));
    }

private:
    std::size_t Place(std::size_t number) const noexcept {
        std::size_t place = 0;
        for (std::size_t i = 0; i < m_nOffsetSize; ++i) {
            place = place << 8 | ByteAt(m_strPlaces, number * m_nOffsetSize + i);
        }
        return place;
    }

    std::size_t m_nCount = 0;
    std::size_t m_nEnd = 0;
    std::size_t m_nOffsetSize = 0;
    std::string_view m_strPlaces;
    std::string_view m_strTexts;
};

constexpr int kEscapeOperator = 12; // operators of two bytes are 12 * 256 + the second
constexpr int kCharStrings = 17;
constexpr int kPrivate = 18;
constexpr int kSubroutines = 19;
constexpr int kFontArray = kEscapeOperator * 256 + 36;
constexpr int kFontSelect = kEscapeOperator * 256 + 37;

/// Operators with their operands. Real numbers count as 0: no place is one.
std::map<int, std::vector<std::int64_t>> ReadDictionary(std::string_view bytes) {
    std::map<int, std::vector<std::int64_t>> dictionary;
    std::vector<std::int64_t> operands;
    for (std::size_t i = 0; i < bytes.size();) {
        const std::uint32_t first = ByteAt(bytes, i);
        if (first <= 27 && first != 22 && first != 23) {
            int key = static_cast<int>(first);
            ++i;
            if (key == kEscapeOperator) {
                key = kEscapeOperator * 256 + static_cast<int>(ByteAt(PartOf(bytes, i, 1), 0));
                ++i;
            }
            dictionary[key] = operands;
            operands.clear();
        } else if (first == 28) {
            operands.push_back(static_cast<std::int16_t>(Word16At(PartOf(bytes, i, 3), 1)));
            i += 3;
        } else if (first == 29) {
            operands.push_back(static_cast<std::int32_t>(Word32At(PartOf(bytes, i, 5), 1)));
            i += 5;
        } else if (first == 30) {
            constexpr std::uint32_t kEnd = 0xF;
            std::uint32_t byte = 0;
            do {
                byte = ByteAt(PartOf(bytes, ++i, 1), 0);
            } while ((byte & 0xF) != kEnd && byte >> 4 != kEnd);
            ++i;
            operands.push_back(0);
        } else if (first >= 32 && first <= 246) {
            operands.push_back(static_cast<std::int64_t>(first) - 139);
            ++i;
        } else if (first >= 247 && first <= 254) {
            const auto second = static_cast<std::int64_t>(ByteAt(PartOf(bytes, i, 2), 1));
            operands.push_back(first <= 250 ? (static_cast<std::int64_t>(first) - 247) * 256 + second + 108
                                            : -(static_cast<std::int64_t>(first) - 251) * 256 - second - 108);
            i += 2;
        } else {
            throw CMalformed("a dictionary has a byte " + std::to_string(first));
        }
    }
    return dictionary;
}

std::size_t PlaceIn(const std::map<int, std::vector<std::int64_t>>& dictionary, int key, std::size_t operand = 0) {
    const auto found = dictionary.find(key);
    if (found == dictionary.end()) {
        return 0;
    }
    if (found->second.size() <= operand || found->second[operand] < 0) {
        throw CMalformed("a dictionary has no proper place for an entry");
    }
    return static_cast<std::size_t>(found->second[operand]);
}

/// Runs a charstring as far as its end and its calls go; what it draws does not matter, but that it draws does.
class CCharstring {
public:
    CCharstring(const CIndex& global, const CIndex& local, bool second)
        : m_global(global), m_local(local), m_bSecond(second) {}

    /// False when it cannot be run to its end.
    bool Run(std::string_view code) { return Step(code, 0) && (m_bSecond || m_bEnded || End()); }
    bool Draws() const noexcept { return m_bDraws; }

private:
    static constexpr int kDeepest = 10;

    bool Step(std::string_view code, int depth) {
        if (depth > kDeepest) {
            return false;
        }
        for (std::size_t i = 0; i < code.size() && !m_bEnded;) {
            const std::uint32_t first = ByteAt(code, i);
            if (first == 28 || first >= 32) {
                const std::size_t size = first == 28 ? 3 : first < 247 ? 1 : first < 255 ? 2 : 5;
                if (!Holds(code, i, size) || !Push(code.substr(i, size))) {
                    return false;
                }
                i += size;
                continue;
            }
            ++i;
            if (first == kReturn) {
                return depth > 0;
            }
            if (first == kCallLocal || first == kCallGlobal) {
                if (!Call(first == kCallLocal ? m_local : m_global, depth)) {
                    return false;
                }
            } else if (!Operate(first, code, i)) {
                return false;
            }
        }
        return true;
    }

    bool Push(std::string_view number) {
        const std::size_t most = m_bSecond ? 513 : 48;
        const std::uint32_t first = ByteAt(number, 0);
        const auto second = number.size() > 1 ? static_cast<std::int32_t>(ByteAt(number, 1)) : 0;
        const auto start = static_cast<std::int32_t>(first);
        m_stack.push_back(first == 28    ? static_cast<std::int16_t>(Word16At(number, 1))
                          : first < 247  ? start - 139
                          : first <= 250 ? (start - 247) * 256 + second + 108
                          : first <= 254 ? -(start - 251) * 256 - second - 108
                                         : static_cast<std::int32_t>(Word32At(number, 1)) >> 16);
        return m_stack.size() <= most;
    }

    bool Call(const CIndex& routines, int depth) {
        if (m_stack.empty()) {
            return false;
        }
        const std::size_t count = routines.Count();
        const std::int64_t bias = count < 1240 ? 107 : count < 33900 ? 1131 : 32768;
        const std::int64_t number = m_stack.back() + bias;
        m_stack.pop_back();
        return number >= 0 && static_cast<std::size_t>(number) < count &&
               Step(routines.At(static_cast<std::size_t>(number)), depth + 1);
    }

    /// Whether the stack has the numbers that a move, line or curve takes. Where some are left over, and which of them
    /// then count, is as font engines have it.
    bool HasNumbersFor(std::uint32_t operation) const {
        const std::size_t count = m_stack.size();
        switch (operation) {
        case 4: // a move in one direction
        case 22:
            return count >= 1;
        case 21:
            return count >= 2;
        case 5: // lines
            return count % 2 == 0;
        case 24: // curves and a line
            return count % 6 >= 2;
        case 25: // lines and a curve
            return count == 0 || (count >= 6 && count % 2 == 0);
        case 26: // curves that begin, or end, in one direction
        case 27:
            return count != 1 && count != 3;
        case 30: // curves whose directions take turns
        case 31:
            return count != 1 && count % 4 != 3;
        default:
            return true;
        }
    }

    /// `place` is behind the operator, and moves behind what belongs to it.
    bool Operate(std::uint32_t operation, std::string_view code, std::size_t& place) {
        if (!HasNumbersFor(operation)) {
            return false;
        }
        switch (operation) {
        case 1: // hints
        case 3:
        case 18:
        case 23:
            m_nHints += m_bHintsDone ? 0 : m_stack.size() / 2;
            break;
        case 19: // masks of hints; what is left on the stack are hints, too
        case 20: {
            constexpr std::size_t kMostHints = 96;
            if (m_bHintsDone && m_stack.size() > 1) {
                break; // too late for hints: font engines pass over the operator
            }
            m_nHints += m_stack.size() / 2;
            m_bHintsDone = true;
            const std::size_t size = (m_nHints + 7) / 8;
            if (m_nHints > kMostHints || !Holds(code, place, size)) {
                return false;
            }
            place += size;
            break;
        }
        case 4: // moves
        case 21:
        case 22:
            m_bHintsDone = true;
            break;
        case 5: // lines and curves
        case 6:
        case 7:
        case 8:
        case 24:
        case 25:
        case 26:
        case 27:
        case 30:
        case 31:
            m_bDraws = true;
            break;
        case 14:
            if (!m_bSecond && !End()) {
                return false;
            }
            break;
        case 15: // which variations count
            break;
        case 16: // blends: as many numbers stay as its last one tells
            if (m_bSecond) {
                return Blend();
            }
            break;
        case kEscapeOperator:
            return Escape(code, place);
        default:
            break; // what means nothing
        }
        m_stack.clear();
        return true;
    }

    /// The end of a glyph. With numbers left it is put together from two characters, whose codes come last.
    bool End() {
        m_bEnded = true;
        if (m_stack.size() <= 1) {
            return true;
        }
        constexpr int kLastCode = 255;
        m_bDraws = true;
        return m_stack.size() >= 4 &&
               std::all_of(m_stack.end() - 2, m_stack.end(), [](int code) { return code >= 0 && code <= kLastCode; });
    }

    /// Each number that stays has a difference for each region; the regions are not read here, so what is below is
    /// taken to stay as it is.
    bool Blend() {
        if (m_stack.empty() || m_stack.back() < 0 || static_cast<std::size_t>(m_stack.back()) >= m_stack.size()) {
            return false;
        }
        const auto stay = static_cast<std::size_t>(m_stack.back());
        m_stack.pop_back();
        m_stack.resize(stay);
        return true;
    }

    bool Escape(std::string_view code, std::size_t& place) {
        if (!Holds(code, place, 1)) {
            return false;
        }
        const std::uint32_t second = ByteAt(code, place++);
        constexpr std::size_t kFlexes[] = {7, 12, 9, 11}; // and how many numbers they take
        constexpr std::uint32_t kFirstFlex = 34;
        if (second >= kFirstFlex && second - kFirstFlex < std::size(kFlexes)) {
            if (m_stack.size() < kFlexes[second - kFirstFlex]) {
                return false;
            }
            m_bDraws = true;
            m_stack.clear();
        }
        return true;
    }

    static constexpr std::uint32_t kCallLocal = 10;
    static constexpr std::uint32_t kReturn = 11;
    static constexpr std::uint32_t kCallGlobal = 29;

    const CIndex& m_global;
    const CIndex& m_local;
    bool m_bSecond;
    bool m_bEnded = false;
    bool m_bDraws = false;
    bool m_bHintsDone = false; // by a mask or a move
    std::size_t m_nHints = 0;
    std::vector<std::int32_t> m_stack;
};

/// The local subroutines of a font dictionary.
CIndex LocalSubroutines(std::string_view table, const std::map<int, std::vector<std::int64_t>>& dictionary,
                        bool second) {
    const std::size_t size = PlaceIn(dictionary, kPrivate);
    if (size == 0) {
        return {};
    }
    const std::size_t place = PlaceIn(dictionary, kPrivate, 1);
    const auto own = ReadDictionary(PartOf(table, place, size));
    const std::size_t subroutines = PlaceIn(own, kSubroutines);
    return subroutines == 0 ? CIndex() : CIndex(table, place + subroutines, second);
}

/// For each glyph which of several font dictionaries is its own.
std::vector<std::size_t> ReadSelection(std::string_view table, std::size_t place, std::size_t glyphs) {
    std::vector<std::size_t> selection(glyphs);
    const std::uint32_t format = ByteAt(PartOf(table, place, 1), 0);
    if (format == 0) {
        const std::string_view numbers = PartOf(table, place + 1, glyphs);
        for (std::size_t i = 0; i < glyphs; ++i) {
            selection[i] = ByteAt(numbers, i);
        }
    } else if (format == 3) {
        const std::size_t ranges = Word16At(PartOf(table, place + 1, 2), 0);
        const std::string_view list = PartOf(table, place + 3, ranges * 3 + 2);
        for (std::size_t i = 0; i < ranges; ++i) {
            for (std::size_t glyph = Word16At(list, i * 3); glyph < Word16At(list, i * 3 + 3) && glyph < glyphs;
                 ++glyph) {
                selection[glyph] = ByteAt(list, i * 3 + 2);
            }
        }
    } else {
        throw CMalformed("which glyph belongs to which dictionary is told in no known form");
    }
    return selection;
}

void Read(std::string_view table, bool second, GlyphOutlines& outlines) {
    const std::size_t headSize = ByteAt(PartOf(table, 0, 5), 2);
    std::map<int, std::vector<std::int64_t>> top;
    std::size_t globals = 0;
    if (second) {
        const std::size_t topSize = Word16At(table, 3);
        top = ReadDictionary(PartOf(table, headSize, topSize));
        globals = headSize + topSize;
    } else {
        const CIndex names(table, headSize, false);
        const CIndex tops(table, names.End(), false);
        if (tops.Count() == 0) {
            throw CMalformed("it has no top dictionary");
        }
        top = ReadDictionary(tops.At(0));
        globals = CIndex(table, tops.End(), false).End();
    }
    const CIndex global(table, globals, second);
    const std::size_t place = PlaceIn(top, kCharStrings);
    if (place == 0) {
        throw CMalformed("it has no outlines");
    }
    const CIndex charstrings(table, place, second);
    std::vector<CIndex> locals;
    std::vector<std::size_t> selection(charstrings.Count());
    if (const std::size_t array = PlaceIn(top, kFontArray); array != 0) {
        const CIndex fonts(table, array, second);
        for (std::size_t i = 0; i < fonts.Count(); ++i) {
            locals.push_back(LocalSubroutines(table, ReadDictionary(fonts.At(i)), second));
        }
        if (const std::size_t select = PlaceIn(top, kFontSelect); select != 0) {
            selection = ReadSelection(table, select, charstrings.Count());
        }
    } else {
        locals.push_back(LocalSubroutines(table, top, second));
    }
    outlines.empty.resize(charstrings.Count());
    for (std::size_t glyph = 0; glyph < charstrings.Count(); ++glyph) {
        if (selection[glyph] >= locals.size()) {
            throw CMalformed("glyph " + std::to_string(glyph) + " belongs to no dictionary");
        }
        CCharstring charstring(global, locals[selection[glyph]], second);
        if (!charstring.Run(charstrings.At(glyph))) {
            outlines.unreadable.push_back(static_cast<std::uint32_t>(glyph));
        }
        outlines.empty[glyph] = !charstring.Draws();
    }
}

} // namespace

GlyphOutlines ReadCompactOutlines(const CFontTables& font) {
    GlyphOutlines outlines;
    const bool second = !font.Lists("CFF ");
    const std::string_view table = font.Find(second ? "CFF2" : "CFF ");
    if (table.empty()) {
        return outlines; // missing, or outside the file: said elsewhere
    }
    try {
        Read(table, second, outlines);
    } catch (const CMalformed& error) {
        outlines.refusal = std::string("table \"") + (second ? "CFF2" : "CFF ") + "\": " + error.what();
    }
    return outlines;
}
