#include "font_names.h"

#include "platform/utf8.h"

namespace {

// Platforms of the name table, and their encodings.
constexpr unsigned int kUnicodePlatform = 0;
constexpr unsigned int kMacintoshPlatform = 1;
constexpr unsigned int kMacintoshRoman = 0;
constexpr unsigned int kMicrosoftPlatform = 3;
constexpr unsigned int kMicrosoftSymbol = 0;
constexpr unsigned int kMicrosoftUnicode = 1;
constexpr unsigned int kMicrosoftUcs4 = 10;

// Languages of the Microsoft platform. The primary language stands in the low bits.
constexpr unsigned int kUnitedStatesEnglish = 0x409;
constexpr unsigned int kPrimaryLanguage = 0x3FF;
constexpr unsigned int kEnglish = 0x09;

constexpr int kMacRomanRank = 1;

unsigned int ByteAt(std::string_view bytes, std::size_t index) { return static_cast<unsigned char>(bytes[index]); }

std::string FromUtf16BigEndian(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        text += static_cast<char16_t>((ByteAt(bytes, i) << 8) | ByteAt(bytes, i + 1));
    }
    return Utf16ToUtf8(text);
}

std::string FromMacRoman(std::string_view bytes) {
    constexpr std::u16string_view kUpperHalf = u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈"
                                               u"∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
    static_assert(kUpperHalf.size() == 128);
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned int c = ByteAt(bytes, i);
        AppendUtf8(text, c < 0x80 ? c : kUpperHalf[c - 0x80]);
    }
    return text;
}

/// How welcome a record is; 0 when it cannot be decoded.
int Rank(const FontName& name) {
    if (name.platform == kMicrosoftPlatform) {
        const bool utf16 =
            name.encoding == kMicrosoftUnicode || name.encoding == kMicrosoftUcs4 || name.encoding == kMicrosoftSymbol;
        return !utf16                                           ? 0
               : name.language == kUnitedStatesEnglish          ? 5
               : (name.language & kPrimaryLanguage) == kEnglish ? 4
                                                                : 2;
    }
    if (name.platform == kUnicodePlatform) {
        return 3;
    }
    return name.platform == kMacintoshPlatform && name.encoding == kMacintoshRoman ? kMacRomanRank : 0;
}

} // namespace

std::string ChooseName(const std::vector<FontName>& names, unsigned int name) {
    const FontName* best = nullptr;
    int bestRank = 0;
    for (const FontName& candidate : names) {
        if (candidate.name == name && Rank(candidate) > bestRank) {
            best = &candidate;
            bestRank = Rank(candidate);
        }
    }
    if (best == nullptr) {
        return "";
    }
    return bestRank == kMacRomanRank ? FromMacRoman(best->bytes) : FromUtf16BigEndian(best->bytes);
}
