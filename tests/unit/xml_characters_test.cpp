// What XML can hold, at the edges of its ranges.

#include "platform/xml_characters.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Utf8(unsigned codePoint) {
    std::string text;
    const auto add = [&](unsigned byte) { text += static_cast<char>(byte); };
    if (codePoint < 0x80) {
        add(codePoint);
    } else if (codePoint < 0x800) {
        add(0xC0 | codePoint >> 6);
        add(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        add(0xE0 | codePoint >> 12);
        add(0x80 | (codePoint >> 6 & 0x3F));
        add(0x80 | (codePoint & 0x3F));
    } else {
        add(0xF0 | codePoint >> 18);
        add(0x80 | (codePoint >> 12 & 0x3F));
        add(0x80 | (codePoint >> 6 & 0x3F));
        add(0x80 | (codePoint & 0x3F));
    }
    return text;
}

bool IsTextCharacter(unsigned codePoint) { return IsXmlText(Utf8(codePoint)); }
bool StartsName(unsigned codePoint) { return IsXmlName(Utf8(codePoint)); }
bool ContinuesName(unsigned codePoint) { return IsXmlName("a" + Utf8(codePoint)); }

} // namespace

TEST(XmlText, MayBeEmpty) { EXPECT_TRUE(IsXmlText("")); }

TEST(XmlText, HoldsThreeControlCharactersAndNoOther) {
    for (unsigned codePoint = 1; codePoint < 0x20; ++codePoint) {
        EXPECT_EQ(IsTextCharacter(codePoint), codePoint == '\t' || codePoint == '\n' || codePoint == '\r') << codePoint;
    }
    EXPECT_FALSE(IsXmlText(std::string_view("\0", 1)));
}

TEST(XmlText, HoldsEverythingFromBlankToTheSurrogates) {
    for (unsigned codePoint = 0x20; codePoint < 0xD800; ++codePoint) {
        ASSERT_TRUE(IsTextCharacter(codePoint)) << codePoint;
    }
}

TEST(XmlText, HoldsEverythingBehindTheSurrogatesButTwo) {
    for (unsigned codePoint = 0xE000; codePoint < 0x110000; ++codePoint) {
        ASSERT_EQ(IsTextCharacter(codePoint), codePoint != 0xFFFE && codePoint != 0xFFFF) << codePoint;
    }
}

TEST(XmlText, IsJudgedToItsEnd) {
    EXPECT_FALSE(IsXmlText("good up to here\x01"));
    EXPECT_FALSE(IsXmlText("\x01 and good from here"));
    EXPECT_FALSE(IsXmlText("around \xEF\xBF\xBF here"));
}

TEST(XmlName, IsNotEmpty) { EXPECT_FALSE(IsXmlName("")); }

TEST(XmlName, StartsWithALetterAnUnderscoreOrAColon) {
    for (unsigned codePoint = 1; codePoint < 0x80; ++codePoint) {
        const bool bLetter = (codePoint >= 'A' && codePoint <= 'Z') || (codePoint >= 'a' && codePoint <= 'z');
        EXPECT_EQ(StartsName(codePoint), bLetter || codePoint == '_' || codePoint == ':') << codePoint;
    }
}

TEST(XmlName, GoesOnWithDigitsDotsAndHyphensToo) {
    for (unsigned codePoint = 1; codePoint < 0x80; ++codePoint) {
        const bool bDigit = codePoint >= '0' && codePoint <= '9';
        EXPECT_EQ(ContinuesName(codePoint), StartsName(codePoint) || bDigit || codePoint == '-' || codePoint == '.')
            << codePoint;
    }
}

TEST(XmlName, StartsWithLettersOfTheListedRangesAtTheirEdges) {
    for (const unsigned edge : {0xC0u,   0xD6u,   0xD8u,   0xF6u,   0xF8u,   0x2FFu,  0x370u,   0x37Du,
                                0x37Fu,  0x1FFFu, 0x200Cu, 0x200Du, 0x2070u, 0x218Fu, 0x2C00u,  0x2FEFu,
                                0x3001u, 0xD7FFu, 0xF900u, 0xFDCFu, 0xFDF0u, 0xFFFDu, 0x10000u, 0xEFFFFu}) {
        EXPECT_TRUE(StartsName(edge)) << edge;
        EXPECT_TRUE(ContinuesName(edge)) << edge;
    }
    for (const unsigned beyond : {0xBFu, 0xD7u, 0xF7u, 0x37Eu, 0x2000u, 0x200Bu, 0x200Eu, 0x2190u, 0x2BFFu, 0x2FF0u,
                                  0x3000u, 0xE000u, 0xF8FFu, 0xFDD0u, 0xFDEFu, 0xFFFEu, 0xF0000u}) {
        EXPECT_FALSE(StartsName(beyond)) << beyond;
    }
}

TEST(XmlName, GoesOnWithMarksThatCannotStartIt) {
    for (const unsigned edge : {0xB7u, 0x300u, 0x36Fu, 0x203Fu, 0x2040u}) {
        EXPECT_FALSE(StartsName(edge)) << edge;
        EXPECT_TRUE(ContinuesName(edge)) << edge;
    }
    for (const unsigned beyond : {0xB6u, 0xB8u, 0x203Eu, 0x2041u}) {
        EXPECT_FALSE(ContinuesName(beyond)) << beyond;
    }
}

TEST(XmlName, HoldsNoMarkup) {
    for (const char* const name : {"a b", "a=b", "a<b", "a>b", "a&b", "a\"b", "a'b", "a/b", " a", "a ", "*"}) {
        EXPECT_FALSE(IsXmlName(name)) << name;
    }
    EXPECT_TRUE(IsXmlName("ns:CMSET_VIEW-1.2"));
}

TEST(XmlNameInEveryEdition, IsAnXmlNameOfLettersThatTheEditionsShare) {
    EXPECT_TRUE(IsXmlNameInEveryEdition("ns:CMSET_VIEW-1.2"));
    for (const unsigned shared : {0xC0u,   0xD6u,   0xD8u,   0xF6u,   0xF8u,   0x131u,  0x134u,  0x13Eu, 0x141u,
                                  0x148u,  0x14Au,  0x17Eu,  0x401u,  0x40Cu,  0x40Eu,  0x44Fu,  0x451u, 0x45Cu,
                                  0x3041u, 0x3094u, 0x30A1u, 0x30FAu, 0x4E00u, 0x9FA5u, 0xAC00u, 0xD7A3u}) {
        EXPECT_TRUE(IsXmlNameInEveryEdition(Utf8(shared))) << shared;
    }
    for (const unsigned ofTheFifth : {0x132u, 0x17Fu, 0x37Fu, 0x400u, 0x45Du, 0x2070u, 0x9FA6u, 0xD7A4u, 0x10000u}) {
        EXPECT_TRUE(StartsName(ofTheFifth)) << ofTheFifth;
        EXPECT_FALSE(IsXmlNameInEveryEdition(Utf8(ofTheFifth))) << ofTheFifth;
        EXPECT_FALSE(IsXmlNameInEveryEdition("a" + Utf8(ofTheFifth))) << ofTheFifth;
    }
    EXPECT_TRUE(IsXmlNameInEveryEdition("a" + Utf8(0xB7)));
    for (const char* const noName : {"", "1a", "-a", "a b", "\xC2\xB7"}) {
        EXPECT_FALSE(IsXmlNameInEveryEdition(noName)) << noName;
    }
}
