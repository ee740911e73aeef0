#include "soft_font.h"

#include "verification/table_reader.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

constexpr char kEscape = '\x1B';

/// A command: its group, its last letter (a capital), its number and the bytes that belong to it.
struct Command {
    char group[2];
    char letter;
    long number;
    std::string_view data;
};

/// Takes one command after another from a file.
class CCommandReader {
public:
    enum class Result { Command, End, Text, Cut };

    explicit CCommandReader(std::string_view file) : m_strRest(file) {}

    Result Next(Command& command) {
        if (!m_bChained) {
            if (m_strRest.empty()) {
                return Result::End;
            }
            if (m_strRest[0] != kEscape) {
                return Result::Text;
            }
            if (m_strRest.size() < 2) {
                return Result::Cut;
            }
            if (IsIn(m_strRest[1], '0', '~')) { // a command of two characters, a reset say
                command = {{m_strRest[1], '\0'}, '\0', 0, {}};
                m_strRest.remove_prefix(2);
                return Result::Command;
            }
            if (m_strRest.size() < 4) {
                return Result::Cut;
            }
            m_group[0] = m_strRest[1];
            m_group[1] = m_strRest[2];
            m_strRest.remove_prefix(3);
        }
        return Parameter(command);
    }

private:
    static bool IsIn(char letter, char first, char last) { return letter >= first && letter <= last; }

    Result Parameter(Command& command) {
        std::size_t place = 0;
        const bool negative = !m_strRest.empty() && m_strRest[0] == '-';
        place += negative || (!m_strRest.empty() && m_strRest[0] == '+') ? 1 : 0;
        long number = 0;
        constexpr long kLargest = 1000000;
        while (place < m_strRest.size() && (IsIn(m_strRest[place], '0', '9') || m_strRest[place] == '.')) {
            if (m_strRest[place] != '.' && number < kLargest) {
                number = number * 10 + (m_strRest[place] - '0');
            }
            ++place;
        }
        if (place == m_strRest.size()) {
            return Result::Cut;
        }
        const char letter = m_strRest[place];
        m_bChained = IsIn(letter, 'a', 'z');
        if (!m_bChained && !IsIn(letter, '@', 'Z')) {
            return Result::Text;
        }
        m_strRest.remove_prefix(place + 1);
        command = {{m_group[0], m_group[1]},
                   m_bChained ? static_cast<char>(letter - ('a' - 'A')) : letter,
                   negative ? -number : number,
                   {}};
        if (command.letter == 'W') {
            const auto length = static_cast<std::size_t>(std::max(number, 0L));
            if (length > m_strRest.size()) {
                return Result::Cut;
            }
            command.data = m_strRest.substr(0, length);
            m_strRest.remove_prefix(length);
        }
        return Result::Command;
    }

    std::string_view m_strRest;
    char m_group[2] = {'\0', '\0'};
    bool m_bChained = false;
};

bool Is(const Command& command, const char* group, char letter) {
    return command.group[0] == group[0] && command.group[1] == group[1] && command.letter == letter;
}

/// "8U" for 277.
std::string SymbolSetText(std::uint32_t code) {
    constexpr std::uint32_t kLetters = 32;
    return std::to_string(code / kLetters) + static_cast<char>('@' + code % kLetters);
}

class CSoftFontReader {
public:
    explicit CSoftFontReader(FileFindings& findings) : m_findings(findings) {}

    std::optional<SoftFont> Read(std::string_view file) {
        CCommandReader reader(file);
        Command command{};
        CCommandReader::Result result{};
        while ((result = reader.Next(command)) == CCommandReader::Result::Command) {
            Take(command);
        }
        if (result == CCommandReader::Result::Cut) {
            Add(Cause::Truncated, "it ends within a command");
        } else if (result == CCommandReader::Result::Text) {
            Add(m_bHeader ? Cause::SoftFontCharacter : Cause::NotASoftFont,
                "something that is no command stands behind " + std::to_string(m_font.characters.size()) +
                    " characters");
        }
        if (!m_bHeader) {
            if (m_findings.empty()) {
                Add(Cause::NotASoftFont, "it has no header of a font");
            }
            return std::nullopt;
        }
        EndCharacter();
        CheckWhole();
        return m_font;
    }

private:
    void Add(Cause cause, const std::string& what) { m_findings.push_back({cause, what}); }

    void Take(const Command& command) {
        if (Is(command, "*c", 'D')) {
            if (!m_bHeader) {
                m_font.id = static_cast<unsigned int>(std::max(command.number, 0L));
            }
        } else if (Is(command, "*c", 'E')) {
            EndCharacter();
            m_nCode = static_cast<unsigned int>(std::max(command.number, 0L));
        } else if (Is(command, ")s", 'W')) {
            TakeHeader(command.data);
        } else if (Is(command, "(s", 'W')) {
            TakeCharacter(command.data);
        }
    }

    void TakeHeader(std::string_view header) {
        constexpr std::size_t kSize = 64;
        constexpr unsigned int kWithResolution = 20;
        if (m_bHeader) {
            Add(Cause::SoftFontHeader, "it has a second header");
            return;
        }
        m_bHeader = true;
        if (header.size() < kSize || Word16At(header, 0) < kSize || Word16At(header, 0) > header.size()) {
            Add(Cause::SoftFontHeader, "its header has " + std::to_string(header.size()) + " bytes");
            return;
        }
        m_font.format = ByteAt(header, 2);
        const bool withResolution = m_font.format == kWithResolution && Word16At(header, 0) >= kSize + 4;
        if (m_font.format != 0 && !withResolution) {
            Add(Cause::SoftFontHeader,
                "its header is of format " + std::to_string(m_font.format) + ", not of a bitmap font");
            return;
        }
        constexpr unsigned int kResolution = 300; // of printers that know no other
        m_font.xResolution = withResolution ? Word16At(header, 64) : kResolution;
        m_font.yResolution = withResolution ? Word16At(header, 66) : kResolution;
        m_font.fontType = ByteAt(header, 3);
        m_font.isProportional = ByteAt(header, 13) == 1;
        m_font.symbolSet = SymbolSetText(Word16At(header, 14));
        m_font.pitch = Word16At(header, 16) / 4.0;
        m_font.height = Word16At(header, 18) / 4.0;
        m_font.style = ByteAt(header, 4) << 8 | ByteAt(header, 23);
        const auto weight = static_cast<int>(ByteAt(header, 24)); // a signed byte
        m_font.strokeWeight = weight < 128 ? weight : weight - 256;
        m_font.typeFace = ByteAt(header, 26) << 8 | ByteAt(header, 25);
        m_font.firstCode = Word16At(header, 36);
        m_font.lastCode = Word16At(header, 38);
        const std::string_view name = header.substr(48, 16);
        for (const char letter : name.substr(0, name.find('\0'))) {
            m_font.name += letter >= 0x20 && letter < 0x7F ? letter : '?';
        }
        m_font.name.erase(m_font.name.find_last_not_of(' ') + 1);
        constexpr unsigned int kLastType = 2;
        constexpr unsigned int kLastOrientation = 3;
        if (m_font.fontType > kLastType || ByteAt(header, 13) > 1 || ByteAt(header, 12) > kLastOrientation ||
            Word16At(header, 8) == 0 || Word16At(header, 10) == 0 || m_font.xResolution == 0 ||
            m_font.yResolution == 0) {
            Add(Cause::SoftFontHeader, "its header has a value that none can have");
        }
    }

    void TakeCharacter(std::string_view data) {
        constexpr std::size_t kHead = 16;
        constexpr unsigned int kBitmapFormat = 4;
        constexpr std::size_t kDescriptor = 14;
        const auto damaged = [&](const std::string& what) {
            Add(Cause::SoftFontCharacter, "character " + std::to_string(m_nCode) + " " + what);
            m_nMissing = 0;
        };
        if (!m_bHeader || data.size() < 2) {
            damaged(m_bHeader ? "is cut short" : "comes before the header");
            return;
        }
        if (ByteAt(data, 1) != 0) { // goes on with the one before
            m_nMissing -= std::min(m_nMissing, data.size() - 2);
            return;
        }
        EndCharacter();
        if (ByteAt(data, 0) != kBitmapFormat || data.size() < kHead || ByteAt(data, 2) != kDescriptor) {
            damaged("has no descriptor of a bitmap character");
            return;
        }
        const unsigned int kind = ByteAt(data, 3);
        const std::size_t width = Word16At(data, 10);
        const std::size_t height = Word16At(data, 12);
        constexpr std::size_t kLargest = 16384;
        if ((kind != 1 && kind != 2) || width == 0 || height == 0 || width > kLargest || height > kLargest) {
            damaged("has a size that none can have");
            return;
        }
        if (!m_font.characters.insert(m_nCode).second) {
            damaged("is there twice");
            return;
        }
        if (kind == 1) { // compressed ones do not tell how many bytes they take
            const std::size_t needed = (width + 7) / 8 * height;
            m_nMissing = needed - std::min(needed, data.size() - kHead);
        }
    }

    void EndCharacter() {
        if (m_nMissing != 0) {
            Add(Cause::SoftFontCharacter, "character " + std::to_string(m_nCode) + " lacks " +
                                              std::to_string(m_nMissing) + " bytes of its shape");
            m_nMissing = 0;
        }
    }

    void CheckWhole() {
        const auto& codes = m_font.characters;
        if (codes.empty()) {
            if (!HasError(m_findings)) {
                Add(Cause::SoftFontEmpty, "it has no characters");
            }
            return;
        }
        if (!m_font.id) {
            Add(Cause::SoftFontID, "it gives itself no number");
        }
        if (m_font.lastCode != 0 && (*codes.begin() != m_font.firstCode || *codes.rbegin() != m_font.lastCode)) {
            Add(Cause::SoftFontCount, "its header tells of characters " + std::to_string(m_font.firstCode) + " to " +
                                          std::to_string(m_font.lastCode) + ", and it has " +
                                          std::to_string(codes.size()) + " of " + std::to_string(*codes.begin()) +
                                          " to " + std::to_string(*codes.rbegin()));
        }
    }

    FileFindings& m_findings;
    SoftFont m_font;
    bool m_bHeader = false;
    unsigned int m_nCode = 0;
    std::size_t m_nMissing = 0; // bytes of the character before
};

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

} // namespace

bool IsSoftFont(std::string_view file) noexcept {
    return file.size() > 3 && file[0] == kEscape &&
           (file.substr(1, 2) == "*c" || file.substr(1, 2) == ")s" || (file[1] == 'E' && IsSoftFont(file.substr(2))));
}

std::optional<SoftFont> ReadSoftFont(std::string_view file, FileFindings& findings) {
    return CSoftFontReader(findings).Read(file);
}

BitmapFontFacts FactsOf(const SoftFont& font) {
    constexpr const char* kFontTypes[] = {"7-bit", "8-bit", "PC-8"};
    BitmapFontFacts facts;
    facts.name = font.name;
    facts.format = std::to_string(font.format);
    facts.xResolution = std::to_string(font.xResolution);
    facts.yResolution = std::to_string(font.yResolution);
    facts.fontType = font.fontType < std::size(kFontTypes) ? kFontTypes[font.fontType] : std::to_string(font.fontType);
    facts.symbolSet = font.symbolSet;
    facts.proportional = font.isProportional ? "1" : "0";
    facts.pitchWidth = Number(font.pitch);
    facts.height = Number(font.height);
    facts.style = std::to_string(font.style);
    facts.strokeWeight = std::to_string(font.strokeWeight);
    facts.typeFace = std::to_string(font.typeFace);
    facts.escapeSequence = EscapeSequenceOf(font);
    return facts;
}

std::string EscapeSequenceOf(const SoftFont& font) {
    std::string text = "<Esc>(" + font.symbolSet + "<Esc>(s" + (font.isProportional ? "1p" : "0p");
    if (!font.isProportional && font.pitch > 0) {
        text += Number(font.xResolution / font.pitch) + "h";
    }
    constexpr double kPointsPerInch = 72;
    if (font.yResolution != 0) {
        text += Number(font.height * kPointsPerInch / font.yResolution) + "v";
    }
    return text + std::to_string(font.style) + "s" + std::to_string(font.strokeWeight) + "b" +
           std::to_string(font.typeFace) + "T";
}
