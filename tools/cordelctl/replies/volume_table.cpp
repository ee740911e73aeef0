#include "volume_table.h"

#include "platform/utf8.h"
#include "reply_words.h"

#include <stdexcept>
#include <vector>

namespace {

constexpr std::array<std::string_view, 6> kHeadings{"VOLUME",   "TOTAL SIZE", "FREE SPACE",
                                                    "LOCATION", "LABEL",      "STATUS"};
constexpr std::size_t kLongestField = 255;

// Columns are counted in characters, so a line is taken apart as such.
using Text = std::u32string;
using TextView = std::u32string_view;

Text CharactersOf(std::string_view utf8) {
    Text text;
    for (std::size_t position = 0; position < utf8.size();) {
        char32_t codePoint = 0;
        text += DecodeUtf8(utf8, position, codePoint) ? codePoint : U'\uFFFD';
    }
    return text;
}

std::string Utf8Of(TextView text) {
    std::string utf8;
    for (const char32_t codePoint : text) {
        AppendUtf8(utf8, codePoint);
    }
    return utf8;
}

TextView Trim(TextView text) {
    const std::size_t start = text.find_first_not_of(U" \t");
    return start == TextView::npos ? TextView() : text.substr(start, text.find_last_not_of(U" \t") + 1 - start);
}

bool IsBlank(char32_t character) { return character == U' ' || character == U'\t'; }

/// As a terminal shows it.
Text WithoutTabs(TextView text) {
    constexpr std::size_t kTabStop = 8;
    Text expanded;
    for (const char32_t character : text) {
        if (character == U'\t') {
            expanded.append(kTabStop - expanded.size() % kTabStop, U' ');
        } else {
            expanded += character;
        }
    }
    return expanded;
}

std::vector<TextView> Split(TextView text, TextView separator) {
    std::vector<TextView> pieces;
    while (true) {
        const std::size_t end = text.find(separator);
        pieces.push_back(Trim(text.substr(0, end)));
        if (end == TextView::npos) {
            return pieces;
        }
        text.remove_prefix(end + separator.size());
    }
}

/// What stands between two blanks or more; single blanks belong to a field.
std::vector<TextView> Segments(TextView text) {
    std::vector<TextView> segments;
    for (const TextView piece : Split(text, U"  ")) {
        if (!piece.empty()) {
            segments.push_back(piece);
        }
    }
    return segments;
}

std::vector<TextView> Words(TextView text) {
    std::vector<TextView> words;
    for (const TextView word : Split(text, U" ")) {
        if (!word.empty()) {
            words.push_back(word);
        }
    }
    return words;
}

/// The word at the beginning; cuts it off.
TextView TakeWord(TextView& text) {
    text = Trim(text);
    std::size_t end = 0;
    while (end < text.size() && !IsBlank(text[end])) {
        ++end;
    }
    const TextView word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

bool IsUnknown(TextView text) { return text.empty() || text == U"?" || text == U"\"?\""; }

/// Location, label and status out of what stands behind the sizes, where no column tells them apart.
std::vector<TextView> LastFields(TextView text) {
    std::vector<TextView> fields = Split(text, U"\t");
    if (fields.size() == 3) {
        return fields;
    }
    if (fields.size() == 2) {
        // One tab parts two fields, or stands for an empty one.
        const auto before = Segments(fields[0]);
        const auto behind = Segments(fields[1]);
        fields = before;
        if (before.size() + behind.size() == 2) {
            fields.emplace_back();
        }
        fields.insert(fields.end(), behind.begin(), behind.end());
        return fields;
    }
    fields = Segments(text);
    return fields.size() == 1 ? Words(fields[0]) : fields;
}

std::array<Text, 6> ByWords(TextView line) {
    std::array<Text, 6> fields;
    for (std::size_t i = 0; i < 3; ++i) {
        fields[i] = TakeWord(line);
    }
    const auto last = LastFields(line);
    if (last.size() != 3) {
        throw std::runtime_error("it cannot be told what is the location, the label and the status of the volume");
    }
    for (std::size_t i = 0; i < 3; ++i) {
        fields[3 + i] = last[i];
    }
    return fields;
}

/// Throws what is wrong with the fields.
ReplyVolume VolumeOf(const std::array<Text, 6>& fields) {
    std::array<std::string, 6> texts;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const TextView field = Trim(fields[i]);
        texts[i] = IsUnknown(field) ? "" : Utf8Of(field);
        if (texts[i].size() > kLongestField) {
            throw std::runtime_error("the " + std::string(kHeadings[i]) + " is longer than 255 bytes");
        }
    }
    if (texts[0].empty() || texts[0].find_first_of(" \t") != std::string::npos) {
        throw std::runtime_error("it does not begin with the name of a volume");
    }
    for (const std::size_t i : {1U, 2U}) {
        if (!texts[i].empty() && !NumberOf(texts[i])) {
            throw std::runtime_error("the " + std::string(kHeadings[i]) + " is \"" + texts[i] +
                                     "\", which is no number of bytes");
        }
    }
    if (!texts[1].empty() && !texts[2].empty() && *NumberOf(texts[2]) > *NumberOf(texts[1])) {
        throw std::runtime_error("more is free (" + texts[2] + ") than there is (" + texts[1] + ")");
    }
    return {texts[0], texts[1], texts[2], texts[3], texts[4], texts[5]};
}

} // namespace

bool CVolumeTable::IsHeading(std::string_view line) {
    line = Trimmed(line);
    for (const std::string_view heading : kHeadings) {
        std::string_view words = heading;
        while (!words.empty()) {
            const std::string_view word = words.substr(0, words.find(' '));
            if (!SkipWord(line, word)) {
                return false;
            }
            words.remove_prefix(std::min(word.size() + 1, words.size()));
        }
    }
    return line.empty();
}

CVolumeTable::CVolumeTable(std::string_view heading) {
    const Text line = CharactersOf(heading);
    m_bTabbed = Split(line, U"\t").size() == kColumns;
    const Text expanded = WithoutTabs(line);
    std::size_t position = 0;
    const auto skip = [&](bool blanks) {
        while (position < expanded.size() && IsBlank(expanded[position]) == blanks) {
            ++position;
        }
    };
    for (std::size_t i = 0; i < kColumns; ++i) {
        skip(true);
        m_headings[i].start = position;
        skip(false);
        if (kHeadings[i].find(' ') != std::string_view::npos) { // a heading of two words
            skip(true);
            skip(false);
        }
        m_headings[i].end = position;
    }
}

bool CVolumeTable::ByTabs(std::u32string_view line, Fields& fields) const {
    const auto cells = Split(line, U"\t");
    if (cells.size() != kColumns && (!m_bTabbed || cells.size() < 3 || cells.size() > kColumns)) {
        return false;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        fields[i] = cells[i];
    }
    return true;
}

/// Each field lies under its heading, wherever under it.
bool CVolumeTable::ByHeadings(std::u32string_view line, Fields& fields) const {
    for (const TextView segment : Segments(line)) {
        const auto start = static_cast<std::size_t>(segment.data() - line.data());
        const std::size_t end = start + segment.size();
        std::size_t column = kColumns;
        for (std::size_t i = 0; i < kColumns; ++i) {
            if (start < m_headings[i].end && m_headings[i].start < end) {
                if (column != kColumns) {
                    return false;
                }
                column = i;
            }
        }
        if (column == kColumns || !fields[column].empty()) {
            return false;
        }
        fields[column] = segment;
    }
    return true;
}

/// Each field begins where its heading does.
bool CVolumeTable::ByColumnStarts(std::u32string_view line, Fields& fields) const {
    for (std::size_t i = 0; i < kColumns; ++i) {
        const std::size_t start = m_headings[i].start;
        if (start > 0 && start < line.size() && !IsBlank(line[start - 1])) {
            return false;
        }
        const std::size_t end = i + 1 < kColumns ? m_headings[i + 1].start : line.size();
        if (start < line.size()) {
            fields[i] = Trim(line.substr(start, end - start));
        }
    }
    return true;
}

ReplyVolume CVolumeTable::Row(std::string_view utf8) const {
    const Text line = CharactersOf(utf8);
    const Text expanded = WithoutTabs(line);
    const bool placed = m_bTabbed || line.find(U'\t') == Text::npos;
    const auto attempt = [&](bool (CVolumeTable::*way)(TextView, Fields&) const, TextView text, ReplyVolume& volume) {
        Fields fields;
        if (!(this->*way)(text, fields)) {
            return false;
        }
        try {
            volume = VolumeOf(fields);
            return true;
        } catch (const std::runtime_error&) {
            return false; // another way may read it
        }
    };
    ReplyVolume volume;
    if (attempt(&CVolumeTable::ByTabs, line, volume) ||
        (placed && (attempt(&CVolumeTable::ByHeadings, expanded, volume) ||
                    attempt(&CVolumeTable::ByColumnStarts, expanded, volume)))) {
        return volume;
    }
    return VolumeOf(ByWords(line));
}
