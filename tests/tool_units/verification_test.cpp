// Damaged files are named with the right cause, and undamaged ones pass. Built once with the engines of this target and
// once without any: both have to say the same.

#include "damages.h"
#include "facts/file_bytes.h"
#include "facts/soft_font.h"
#include "verification/font_verification.h"
#include "verification/profile_verification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using ::testing::HasSubstr;

namespace {

FileFindings Verify(const Damage& damage) {
    FileFindings findings;
    switch (damage.kind) {
    case FileKind::Font:
        return VerifyFont(damage.bytes).findings;
    case FileKind::Profile:
        return VerifyProfile(damage.bytes);
    case FileKind::SoftFont:
        ReadSoftFont(damage.bytes, findings);
        break;
    }
    return findings;
}

std::string TextOf(const FileFindings& findings) {
    std::string text;
    for (const FileFinding& finding : findings) {
        text += std::string(TextOf(finding.cause).code) + ": " + finding.what + "\n";
    }
    return text;
}

bool Names(const FileFindings& findings, Cause cause) {
    return std::any_of(findings.begin(), findings.end(),
                       [cause](const FileFinding& finding) { return finding.cause == cause; });
}

} // namespace

TEST(Damages, AreNamedWithTheRightCause) {
    const auto damages = MakeDamages();
    ASSERT_GE(damages.size(), 200u);
    std::size_t named = 0;
    std::string missed;
    for (const Damage& damage : damages) {
        const FileFindings findings = Verify(damage);
        if (Names(findings, damage.cause)) {
            ++named;
        } else {
            missed += damage.name + ", which is " + TextOf(damage.cause).code + ", was named\n" + TextOf(findings);
        }
    }
    RecordProperty("damages", static_cast<int>(damages.size()));
    RecordProperty("named", static_cast<int>(named));
    std::printf("%zu of %zu damages were named with the right cause\n%s", named, damages.size(), missed.c_str());
    EXPECT_GE(static_cast<double>(named), 0.98 * static_cast<double>(damages.size()));
}

TEST(Damages, AreMadeFromFilesThatPass) {
    for (const std::string& path : UndamagedFonts()) {
        EXPECT_FALSE(HasError(VerifyFont(ReadFileBytes(path)).findings)) << path;
    }
    for (const std::string& path : UndamagedProfiles()) {
        EXPECT_EQ(TextOf(VerifyProfile(ReadFileBytes(path))), "") << path;
    }
    FileFindings findings;
    ReadSoftFont(WholeSoftFont(), findings);
    EXPECT_EQ(TextOf(findings), "");
}

TEST(Findings, SayWhatTheyMeanAndWhatToDo) {
    for (int i = 0; i <= static_cast<int>(Cause::SamePostScriptName); ++i) {
        const CauseText& text = TextOf(static_cast<Cause>(i));
        EXPECT_NE(std::string(text.code), "");
        EXPECT_NE(std::string(text.meaning), "") << text.code;
        EXPECT_NE(std::string(text.advice), "") << text.code;
    }
}

TEST(FontVerification, TellsTheNamesOfTheFont) {
    const auto members = VerifyFont(ReadFileBytes(UndamagedFonts()[0])).members;
    ASSERT_EQ(members.size(), 1u);
    EXPECT_EQ(members[0].fullName, "DejaVu Sans");
    EXPECT_EQ(members[0].postScriptName, "DejaVuSans");
}

TEST(FontVerification, TellsTheFontsOfACollection) {
    const auto result = VerifyFont(ReadFileBytes(UndamagedFonts()[2]));
    ASSERT_EQ(result.members.size(), 2u);
    EXPECT_EQ(result.members[1].postScriptName, "WenQuanYiMicroHeiMono");
    EXPECT_EQ(TextOf(result.findings), "collection: it holds 2 fonts: WenQuanYi Micro Hei, WenQuanYi Micro Hei Mono\n");
}

TEST(FontVerification, TellsWhichCharactersOfATextAreMissing) {
    const std::string font = ReadFileBytes(UndamagedFonts()[0]);
    EXPECT_EQ(TextOf(VerifyFont(font, "Grüße, Ελλάδα\n").findings), "");
    EXPECT_EQ(TextOf(VerifyFont(font, "A\xE6\xBC\xA2\xE6\xBC\xA2\xE5\xAD\x97").findings),
              "not-covered: U+6F22 \xE6\xBC\xA2, U+5B57 \xE5\xAD\x97\n");
}

TEST(FontVerification, SaysThatOutlinesAreCompact) {
    EXPECT_EQ(TextOf(VerifyFont(ReadFileBytes(UndamagedFonts()[3])).findings),
              "compact-outlines: its outlines are compact (CFF)\n");
}

TEST(ProfileVerification, HoldsTheClassAgainstTheSlots) {
    const std::string rgb = ReadFileBytes(UndamagedProfiles()[0]);
    EXPECT_EQ(TextOf(VerifyProfile(rgb, "0")), "");
    EXPECT_THAT(TextOf(VerifyProfile(rgb, "2")), HasSubstr("class-for-slot"));
    EXPECT_THAT(TextOf(VerifyProfile(rgb, "3")), HasSubstr("class-for-slot"));
    const std::string gray = ReadFileBytes(UndamagedProfiles()[2]);
    EXPECT_THAT(TextOf(VerifyProfile(gray, "0")), HasSubstr("class-for-slot"));
}

TEST(SoftFonts, TellWhatTheyAre) {
    FileFindings findings;
    const auto font = ReadSoftFont(WholeSoftFont(), findings);
    ASSERT_TRUE(font.has_value());
    EXPECT_EQ(font->id, 7u);
    EXPECT_EQ(font->name, "Tiny");
    EXPECT_EQ(font->symbolSet, "8U");
    EXPECT_EQ(font->characters, (std::set<unsigned int>{65, 66, 67}));
    EXPECT_EQ(font->xResolution, 300u);
    EXPECT_EQ(EscapeSequenceOf(*font), "<Esc>(8U<Esc>(s0p37.5h3.84v0s3b4100T");
}

TEST(SoftFonts, AreRecordedAsTheirHeaderTells) {
    FileFindings findings;
    const BitmapFontFacts facts = FactsOf(*ReadSoftFont(WholeSoftFont(), findings));
    EXPECT_EQ(facts.name, "Tiny");
    EXPECT_EQ(facts.format, "0");
    EXPECT_EQ(facts.xResolution + "x" + facts.yResolution, "300x300");
    EXPECT_EQ(facts.fontType, "8-bit");
    EXPECT_EQ(facts.symbolSet, "8U");
    EXPECT_EQ(facts.proportional, "0");
    EXPECT_EQ(facts.pitchWidth + " by " + facts.height, "8 by 16");
    EXPECT_EQ(facts.strokeWeight, "3");
    EXPECT_EQ(facts.escapeSequence, "<Esc>(8U<Esc>(s0p37.5h3.84v0s3b4100T");
}

TEST(SoftFonts, CharactersMayComeInSeveralBlocks) {
    std::string font = WholeSoftFont();
    const std::size_t block = font.rfind("\x1B(s28W");
    font.replace(block, 6, "\x1B(s22W");
    font.insert(block + 6 + 22, std::string("\x1B(s8W\x04\x01", 7));
    FileFindings findings;
    const auto read = ReadSoftFont(font, findings);
    EXPECT_EQ(TextOf(findings), "");
    EXPECT_EQ(read->characters.size(), 3u);
}

TEST(SoftFonts, AreToldFromOtherFiles) {
    EXPECT_TRUE(IsSoftFont(WholeSoftFont()));
    EXPECT_TRUE(IsSoftFont("\x1B"
                           "E" +
                           WholeSoftFont()));
    EXPECT_FALSE(IsSoftFont("\x1B&l1O"));
    EXPECT_FALSE(IsSoftFont(""));
}
