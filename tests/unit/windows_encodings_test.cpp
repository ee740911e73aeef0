// Encodings as Windows reads them: the characters that differ from the standards by name, and every code of every code
// page against what the system's own tables say on Windows.

#include "code_page_digest.h"
#include "document_source.h"
#include "engine_document.h"
#include "platform/code_page.h"
#include "windows_encodings.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

std::string Declaration(const std::string& encoding) { return "<?xml version='1.0' encoding='" + encoding + "'?>"; }

/// The bytes in that encoding as UTF-8; nothing when they are refused.
std::optional<std::string> Decoded(const std::string& encoding, const std::string& bytes) {
    const CMemoryFile file(Declaration(encoding) + bytes);
    CDocumentSource source;
    if (!source.Open(file.Path())) {
        return {};
    }
    return std::string(source.Text().substr(Declaration(encoding).size()));
}

/// The one UTF-16 unit that the bytes are; 0 when they are not one.
unsigned UnitOf(const std::string& encoding, const std::string& bytes) {
    const std::optional<std::string> text = Decoded(encoding, bytes);
    if (!text || text->empty()) {
        return 0;
    }
    std::size_t position = 0;
    const char32_t codePoint = platform::NextCodePoint(*text, position);
    return position == text->size() && codePoint < 0x10000 ? static_cast<unsigned>(codePoint) : 0;
}

} // namespace

TEST(WindowsEncodings, HoldTheCharactersOfTheirCodePages) {
    for (const CodePageDigest& page : kCodePageDigests) {
        const auto unitOf = [&](const std::string& bytes) { return UnitOf(page.encoding, bytes); };
        EXPECT_EQ(DigestOf(page.codePage, unitOf), page.digest) << page.encoding;
    }
}

TEST(WindowsEncodings, ReadBackslashAndTildeOfShiftJisAsTheyAre) {
    EXPECT_EQ(Decoded("Shift_JIS", "C:\\Fonts\\\x95\x5C~1.ttf"), "C:\\Fonts\\\xE8\xA1\xA8~1.ttf");
    EXPECT_EQ(Decoded("shift_jis", "\x81\x60\x87\x40\xFB\xFC\xF0\x40\x80"),
              "\xEF\xBD\x9E\xE2\x91\xA0\xE9\xAB\x99\xEE\x80\x80\xC2\x80")
        << "the full-width tilde, a circled digit, an added ideograph, the first character of the user's own, a "
           "control";
}

TEST(WindowsEncodings, ReadChineseAndKoreanAsTheirCodePages) {
    EXPECT_EQ(Decoded("GB2312", "\x80\x81\x40\xA1\xA4\xAA\xA1"), "\xE2\x82\xAC\xE4\xB8\x82\xC2\xB7\xEE\x80\x80")
        << "the euro sign, an ideograph beyond the standard, the middle dot, a character of the user's own";
    EXPECT_EQ(Decoded("EUC-KR", "\x81\x41\xB0\xA1\xC9\xA1"), "\xEA\xB0\x82\xEA\xB0\x80\xEE\x80\x80");
    EXPECT_EQ(Decoded("KS_C_5601-1987", "\x81\x41"), "\xEA\xB0\x82");
    EXPECT_EQ(Decoded("ks_c_5601", "\x81\x41"), "\xEA\xB0\x82");
    EXPECT_EQ(Decoded("Big5", "\xA1\x45\xF9\xFE\xFA\x40"), "\xE2\x80\xA7\xE2\x96\x93\xEE\x80\x80");
}

TEST(WindowsEncodings, ReadTheUndefinedBytesOfSingleByteCodePagesAsControls) {
    EXPECT_EQ(Decoded("windows-1252", "\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
    EXPECT_EQ(Decoded("windows-1250", "\x81\x83\x88\x90\x98"), "\xC2\x81\xC2\x83\xC2\x88\xC2\x90\xC2\x98");
    EXPECT_EQ(Decoded("Windows-1251", "\x98"), "\xC2\x98");
    EXPECT_EQ(Decoded("cp1252", "\x80\x81"), "\xE2\x82\xAC\xC2\x81");
}

TEST(WindowsEncodings, JoinNoLetterWithTheAccentBehindIt) {
    EXPECT_EQ(Decoded("windows-1258", "a\xCC"
                                      "a\xECo"),
              "a\xCC\x80"
              "a\xCC\x81o");
    EXPECT_EQ(Decoded("windows-1255", "\xE0\xC8\xF9\xD1"), "\xD7\x90\xD6\xB8\xD7\xA9\xD7\x81");
}

TEST(WindowsEncodings, RefuseCodesThatTheirCodePagesLack) {
    for (const auto& [encoding, bytes] : {std::pair{"Shift_JIS", "\x85\x40"},
                                          {"Shift_JIS", "\x81\x20"},
                                          {"Shift_JIS", "a\x81"},
                                          {"GB2312", "\xFE\xFF"},
                                          {"EUC-KR", "\xC9\x41"},
                                          {"Big5", "\xA1\x20"}}) {
        EXPECT_EQ(Decoded(encoding, bytes), std::nullopt) << encoding;
    }
}

TEST(WindowsEncodings, AreFoundByEachOfTheirNames) {
    const std::map<unsigned, std::vector<const char*>> names = {
        {932,
         {"SHIFT_JIS", "SHIFT-JIS", "SJIS", "X-SJIS", "MS_KANJI", "CSSHIFTJIS", "WINDOWS-31J", "CSWINDOWS31J",
          "WINDOWS-932", "X-MS-CP932", "CP932"}},
        {936,
         {"GB2312", "GB2312-80", "GB_2312-80", "GB231280", "CSGB2312", "CN-GB", "CHINESE", "GBK", "WINDOWS-936",
          "CP936"}},
        {949,
         {"EUC-KR", "CSEUCKR", "KS_C_5601", "KS_C_5601-1987", "KS_C_5601_1987", "KS_C_5601-1989", "KSC_5601", "KSC5601",
          "KOREAN", "UHC", "WINDOWS-949", "CSKSC56011987", "CP949"}},
        {950, {"BIG5", "CSBIG5", "CN-BIG5", "X-X-BIG5", "WINDOWS-950", "CP950"}},
        {1250, {"WINDOWS-1250", "X-CP1250", "CP1250"}},
        {1251, {"WINDOWS-1251", "X-CP1251", "CP1251"}},
        {1252, {"WINDOWS-1252", "X-CP1252", "CP1252"}},
        {1253, {"WINDOWS-1253", "CP1253"}},
        {1254, {"WINDOWS-1254", "CP1254"}},
        {1255, {"WINDOWS-1255", "CP1255"}},
        {1256, {"WINDOWS-1256", "CP1256"}},
        {1257, {"WINDOWS-1257", "CP1257"}},
        {1258, {"WINDOWS-1258", "CP1258"}},
        {874, {"WINDOWS-874", "CP874"}},
    };
    for (const auto& [codePage, ofPage] : names) {
        for (const char* const name : ofPage) {
            EXPECT_EQ(WindowsCodePage(name), codePage) << name;
        }
    }
    EXPECT_EQ(WindowsCodePage(""), 0u);
}

TEST(WindowsEncodings, LeaveOtherEncodingsAsTheStandardsHaveThem) {
    EXPECT_EQ(WindowsCodePage("ISO-8859-1"), 0u);
    EXPECT_EQ(WindowsCodePage("UTF-8"), 0u);
    EXPECT_EQ(Decoded("ISO-8859-1", "\x81\xE4"), "\xC2\x81\xC3\xA4");
    EXPECT_EQ(Decoded("GB18030", "\x81\x30\x81\x30"), "\xC2\x80");
    EXPECT_EQ(Decoded("EUC-JP", "\xC6\xFC"), "\xE6\x97\xA5");
}
