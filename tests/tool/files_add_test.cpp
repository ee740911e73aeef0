// files add: what is taken, what is recorded of it, and what is refused.

#include "../tool_units/damages.h"
#include "tool_test.h"

using ::testing::HasSubstr;

class FilesAdd : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(FilesAdd, ATrueTypeFontIsRecordedWithItsOwnNames) {
    EXPECT_EQ(Output({"files", "add", kSansBold}),
              "added 1: \"DejaVu Sans Bold\" with ID 0, " + kSansBold + "\n1 file added\n");
    const auto files = Saved("Files");
    ASSERT_EQ(files.size(), 1u);
    const Record& file = files[0];
    ASSERT_EQ(file.size(), 16u);
    EXPECT_EQ(file[0], (std::pair<std::string, std::string>("FileID", "1")));
    EXPECT_EQ(ValueOf(file, "ID"), "0");
    EXPECT_EQ(ValueOf(file, "Type"), "5");
    EXPECT_EQ(ValueOf(file, "Component"), "Fonts");
    EXPECT_EQ(ValueOf(file, "Volume"), "0:");
    EXPECT_EQ(ValueOf(file, "Path"), "fonts/DejaVuSans-Bold.ttf");
    EXPECT_EQ(ValueOf(file, "LocalPath"), kSansBold);
    EXPECT_EQ(ValueOf(file, "Size"), std::to_string(std::filesystem::file_size(kSansBold)));
    EXPECT_THAT(ValueOf(file, "CreateDate"), ::testing::MatchesRegex("....-..-.. ..:..:.."));
    EXPECT_EQ(ValueOf(file, "checked"), "0");
    EXPECT_EQ(ValueOf(file, "FontFamilyName"), "DejaVu Sans");
    EXPECT_EQ(ValueOf(file, "TrueTypeTontName"), "DejaVu Sans Bold");
    EXPECT_EQ(ValueOf(file, "FontStyle"), "Bold");
    EXPECT_THAT(ValueOf(file, "Copyright"), HasSubstr("Copyright (c) 2003 by Bitstream, Inc. All Rights Reserved."));
    EXPECT_EQ(ValueOf(file, "PostScriptName"), "DejaVuSans-Bold");
    EXPECT_EQ(ValueOf(file, "SymbolSet"), "Unicode");
}

TEST_F(FilesAdd, AColourProfileIsRecordedWithWhatItSaysOfItself) {
    Output({"files", "add", kRgbProfile});
    const auto files = Saved("Files");
    ASSERT_EQ(files.size(), 1u);
    ASSERT_EQ(files[0].size(), 17u);
    EXPECT_EQ(ValueOf(files[0], "Type"), "6");
    EXPECT_EQ(ValueOf(files[0], "ID"), "2"); // the first slot of RGBSource is in use
    EXPECT_EQ(ValueOf(files[0], "ProfileType"), "0");
    EXPECT_EQ(ValueOf(files[0], "ColorSpace"), "RGB");
    EXPECT_EQ(ValueOf(files[0], "Description"), "sRGB");
    EXPECT_EQ(ValueOf(files[0], "DeviceClass"), "mntr");
    EXPECT_NE(ValueOf(files[0], "Copyright"), "");
}

TEST_F(FilesAdd, FontsGetRisingIDsAndProfilesSlotsOfTheirOwn) {
    Output({"files", "add", kSans, kRgbProfile, kSansBold, "/usr/share/color/icc/LStar-RGB.icc"});
    std::vector<std::string> ids;
    for (const Record& file : Saved("Files")) {
        ids.push_back(ValueOf(file, "FileID") + "/" + ValueOf(file, "ID"));
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"1/0", "2/2", "3/1", "4/3"}));
}

TEST_F(FilesAdd, AProfileForNoSlotsIsRefusedUnlessItsKindIsGiven) {
    const ToolRun run = Run({"files", "add", kGrayProfile});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("class mntr and colour space GRAY"));
    Output({"files", "add", "--profile", "printer", kGrayProfile});
    EXPECT_EQ(ValueOf(Saved("Files")[0], "ProfileType"), "2");
    EXPECT_EQ(ValueOf(Saved("Files")[0], "ID"), "3"); // two slots of PrinterProfile are in use
}

TEST_F(FilesAdd, AProfileWithoutAFreeSlotIsRefused) {
    Output({"set", "RGBSource", "IDArray", "22"});
    const ToolRun run = Run({"files", "add", kRgbProfile});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("no slot"));
}

TEST_F(FilesAdd, AListedPathIsRefused) {
    Output({"files", "add", kSans});
    const ToolRun run = Run({"files", "add", kFontFolder + "../dejavu/DejaVuSans.ttf"});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("it is listed already"));
    EXPECT_EQ(Saved("Files").size(), 1u);
}

TEST_F(FilesAdd, AnyOtherFileIsRefusedUnlessItsTypeIsGiven) {
    const std::string macro = UserFile("letterhead.mac", "text");
    const ToolRun run = Run({"files", "add", macro});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("neither a TrueType font nor a colour profile"));
    EXPECT_THAT(run.errors, HasSubstr("--type"));
    Output({"files", "add", "--type", "2", macro});
    ASSERT_EQ(Saved("Files").size(), 1u);
    EXPECT_EQ(Saved("Files")[0].size(), 10u);
    EXPECT_EQ(ValueOf(Saved("Files")[0], "Type"), "2");
    EXPECT_EQ(ValueOf(Saved("Files")[0], "Path"), "macros/letterhead.mac");
}

TEST_F(FilesAdd, MacrosAndOverlaysCountTheirIDsSeparately) {
    Output({"files", "add", "--type", "2", UserFile("a.mac", "a")});
    Output({"files", "add", "--type", "8", UserFile("b.ovl", "b"), UserFile("c.ovl", "c")});
    const auto files = Saved("Files");
    EXPECT_EQ(ValueOf(files[0], "ID"), "0");
    EXPECT_EQ(ValueOf(files[1], "ID"), "0");
    EXPECT_EQ(ValueOf(files[2], "ID"), "1");
}

TEST_F(FilesAdd, ABitmapFontIsRecordedWithItsMeasures) {
    const std::string font = UserFile("tiny.bdf", R"(STARTFONT 2.1
FONT -misc-tiny-medium-r-normal--4-40-75-75-c-40-iso8859-1
SIZE 4 75 75
FONTBOUNDINGBOX 4 4 0 0
STARTPROPERTIES 7
FAMILY_NAME "Tiny"
RESOLUTION_X 75
RESOLUTION_Y 75
CHARSET_REGISTRY "ISO8859"
CHARSET_ENCODING "1"
FONT_ASCENT 4
FONT_DESCENT 0
ENDPROPERTIES
CHARS 1
STARTCHAR A
ENCODING 65
SWIDTH 1000 0
DWIDTH 4 0
BBX 4 4 0 0
BITMAP
60
90
F0
90
ENDCHAR
ENDFONT
)");
    Output({"files", "add", "--type", "1", font});
    const Record file = Saved("Files").at(0);
    ASSERT_EQ(file.size(), 23u);
    EXPECT_EQ(ValueOf(file, "BitMapFontName"), "Tiny");
    EXPECT_EQ(ValueOf(file, "Format"), "BDF");
    EXPECT_EQ(ValueOf(file, "Xresolution"), "75");
    EXPECT_EQ(ValueOf(file, "Height"), "4");
    EXPECT_EQ(ValueOf(file, "FontType"), "ISO8859-1");
}

TEST_F(FilesAdd, ADamagedFontIsRefused) {
    const ToolRun run = Run({"files", "add", UserFile("broken.ttf", ReadBytes(kSans).substr(0, 400))});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("truncated: it has 400 of "));
    EXPECT_TRUE(Saved("Files").empty());
}

TEST_F(FilesAdd, ADamagedFontIsTakenByForceWithNothingButItsName) {
    Output({"files", "add", "--force", UserFile("broken.ttf", ReadBytes(kSans).substr(0, 400))});
    const Record file = Saved("Files").at(0);
    EXPECT_EQ(ValueOf(file, "Type"), "5");
    EXPECT_EQ(ValueOf(file, "TrueTypeTontName"), "broken");
    EXPECT_EQ(ValueOf(file, "FontFamilyName"), "");
    EXPECT_EQ(ValueOf(file, "Size"), "400");
}

TEST_F(FilesAdd, ADamagedProfileIsTakenByForceWhenItsSlotsAreSaid) {
    const std::string profile = UserFile("broken.icc", ReadBytes(kRgbProfile).substr(0, 100));
    const ToolRun run = Run({"files", "add", "--force", profile});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("--profile"));
    Output({"files", "add", "--force", "--profile", "printer", profile});
    EXPECT_EQ(ValueOf(Saved("Files").at(0), "ProfileType"), "2");
}

TEST_F(FilesAdd, ASoftFontIsRecordedWithItsMeasures) {
    Output({"files", "add", UserFile("tiny.sfp", WholeSoftFont())});
    const Record file = Saved("Files").at(0);
    ASSERT_EQ(file.size(), 23u);
    EXPECT_EQ(ValueOf(file, "Type"), "1");
    EXPECT_EQ(ValueOf(file, "BitMapFontName"), "Tiny");
    EXPECT_EQ(ValueOf(file, "Format"), "0");
    EXPECT_EQ(ValueOf(file, "Xresolution"), "300");
    EXPECT_EQ(ValueOf(file, "FontType"), "8-bit");
    EXPECT_EQ(ValueOf(file, "SymbolSet"), "8U");
    EXPECT_EQ(ValueOf(file, "Proportional"), "0");
    EXPECT_EQ(ValueOf(file, "PitchWidth"), "8");
    EXPECT_EQ(ValueOf(file, "Height"), "16");
    EXPECT_EQ(ValueOf(file, "StrokeWeight"), "3");
    EXPECT_EQ(ValueOf(file, "EscapeSequence"), "<Esc>(8U<Esc>(s0p37.5h3.84v0s3b4100T");
}

TEST_F(FilesAdd, ABitmapFontThatIsNoneIsRefused) {
    const ToolRun run = Run({"files", "add", "--type", "1", UserFile("text.sfp", "text")});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("not-a-soft-font"));
}

TEST_F(FilesAdd, WhatIsListedAlreadyUnderAnotherPathIsSaid) {
    const auto copies = CopiesOf(kMono, 3);
    EXPECT_THAT(Output({"files", "add", copies[0], copies[1]}), HasSubstr("same-content: file 1 is the same; "));
    EXPECT_THAT(Output({"files", "add", copies[2]}), HasSubstr("same-content"));
    const auto other = UserFile("other.ttf", ReadBytes(kMono) + std::string(4, '\0'));
    const auto row = Run({"--json", "files", "add", other}).Json()[0];
    EXPECT_EQ(row["findings"][0]["code"], "same-postscript-name");
    EXPECT_EQ(row["findings"][0]["severity"], "warning");
    EXPECT_EQ(row["findings"][0]["what"], "file 1 is a font DejaVuSansMono, too");
    EXPECT_NE(row["findings"][0]["meaning"], "");
    EXPECT_NE(row["findings"][0]["advice"], "");
}

TEST_F(FilesAdd, ACollectionIsSaidWithItsFonts) {
    EXPECT_THAT(
        Output({"files", "add", "/usr/share/fonts/truetype/wqy/wqy-microhei.ttc"}),
        HasSubstr("collection: it holds 2 fonts: WenQuanYi Micro Hei, WenQuanYi Micro Hei Mono; many printers"));
}

TEST_F(FilesAdd, ADamagedProfileIsRefused) {
    EXPECT_EQ(Run({"files", "add", UserFile("broken.icc", ReadBytes(kRgbProfile).substr(0, 100))}).status, kRefused);
}

TEST_F(FilesAdd, AnEmptyOrMissingFileOrAFolderIsRefused) {
    EXPECT_EQ(Run({"files", "add", UserFile("empty.ttf", "")}).status, kRefused);
    EXPECT_THAT(Run({"files", "add", "/nowhere.ttf"}).errors, HasSubstr("cannot be found"));
    EXPECT_THAT(Run({"files", "add", kFontFolder}).errors, HasSubstr("it is a folder"));
}

TEST_F(FilesAdd, FoldersAreAddedWithAllFontsAndProfilesInThem) {
    UserFile("tree/readme.txt", "no font");
    UserFile("tree/a.ttf", ReadBytes(kSans));
    UserFile("tree/deep/er/b.ttf", ReadBytes(kMono));
    const std::string folder = m_folder / "files" / "tree";
    EXPECT_THAT(Output({"files", "add", "--recursive", folder}), HasSubstr("2 files added, 1 passed over"));
    EXPECT_EQ(Run({"files", "add", "--recursive", folder}).status, kRefused);
    EXPECT_THAT(Output({"files", "add", "--recursive", "--skip-listed", folder}),
                HasSubstr("0 files added, 3 passed over"));
}

TEST_F(FilesAdd, WhereOneFileIsRefusedNothingIsChanged) {
    const std::string before = ReadBytes(UserPath());
    const ToolRun run = Run({"files", "add", kSans, "/nowhere.ttf", kMono});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_EQ(run.output, "0 files added, 1 refused\n");
    EXPECT_THAT(run.errors, HasSubstr("/nowhere.ttf was not added: it cannot be found"));
    EXPECT_THAT(run.errors, HasSubstr("nothing was changed, since 1 of 3 files cannot be added; to take the others: "
                                      "--keep-going"));
    EXPECT_EQ(ReadBytes(UserPath()), before);
    EXPECT_EQ(Run({"files", "add", kSans, "/nowhere.ttf", "--dry-run"}).output, "0 files added, 1 refused\n");
    const auto rows = Run({"--json", "files", "add", kSans, "/nowhere.ttf"}).Json();
    EXPECT_EQ(rows[0]["added"], false);
    EXPECT_EQ(rows[0]["reason"], "others were refused");
    EXPECT_EQ(Run({"batch"}, "job add 1 One\nfiles add " + kSans + " /nowhere.ttf\n").status, kRefused);
    EXPECT_EQ(ReadBytes(UserPath()), before);
}

TEST_F(FilesAdd, OneRefusedFileDoesNotKeepOutTheOthersWhenToldToKeepGoing) {
    const ToolRun run = Run({"files", "add", "--keep-going", kSans, "/nowhere.ttf", kMono});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.output, HasSubstr("2 files added, 1 refused"));
    EXPECT_EQ(Saved("Files").size(), 2u);
    EXPECT_EQ(Run({"batch"}, "job add 1 One\nfiles add --keep-going " + kSansBold + " /nowhere.ttf\n").status,
              kRefused);
    EXPECT_EQ(Saved("Files").size(), 3u);
}

TEST_F(FilesAdd, ALongNameIsCutAtACharacterAndSaidSo) {
    // A copyright text of 150 letters of two bytes each, in a copy of a font that has room for it.
    std::string bytes = ReadBytes(kSans);
    const std::string old = []() {
        std::string text; // UTF-16, as in the table of names
        for (const char c : std::string("Copyright (c) 2003 by Bitstream, Inc. All Rights Reserved.\nCopyright (c) "
                                        "2006 by Tavmjong Bah. All Rights Reserved.\n")) {
            text += '\0';
            text += c;
        }
        return text;
    }();
    const auto place = bytes.find(old);
    ASSERT_NE(place, std::string::npos);
    for (std::size_t i = 0; i < old.size(); i += 2) {
        bytes[place + i] = '\x20'; // U+20AC, three bytes in UTF-8
        bytes[place + i + 1] = '\xAC';
    }
    const ToolRun run = Run({"files", "add", UserFile("long.ttf", bytes)});
    EXPECT_EQ(run.status, kDone);
    EXPECT_THAT(run.errors, HasSubstr("the copyright was cut from "));
    const std::string copyright = ValueOf(Saved("Files").at(0), "Copyright");
    EXPECT_EQ(copyright.size(), 255u); // 85 whole characters
    EXPECT_EQ(copyright.substr(252), "\xE2\x82\xAC");
}

TEST_F(FilesAdd, APathThatDoesNotFitIsRefused) {
    const std::string path =
        UserFile(std::string(100, 'a') + "/" + std::string(100, 'b') + "/" + std::string(100, 'c'), ReadBytes(kMono));
    const ToolRun run = Run({"files", "add", path});
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("at most 255 fit"));
}

TEST_F(FilesAdd, APathThatIsNoTextIsRefused) {
    EXPECT_EQ(Run({"files", "add", UserFile("bad\xFFname.ttf", ReadBytes(kMono))}).status, kRefused);
    EXPECT_TRUE(Saved("Files").empty());
}

TEST_F(FilesAdd, ThePlaceOnThePrinterCanBeChosen) {
    Output({"files", "add", "--volume", "1:", "--folder", "own/fonts", "--component", "Mine", kSans});
    const Record file = Saved("Files").at(0);
    EXPECT_EQ(ValueOf(file, "Volume"), "1:");
    EXPECT_EQ(ValueOf(file, "Path"), "own/fonts/DejaVuSans.ttf");
    EXPECT_EQ(ValueOf(file, "Component"), "Mine");
}

TEST_F(FilesAdd, ReportsInJson) {
    const ToolRun run = Run({"--json", "files", "add", "--keep-going", kSans, "/nowhere.ttf"});
    EXPECT_EQ(run.status, kRefused);
    const auto rows = run.Json();
    EXPECT_EQ(rows[0]["added"], true);
    EXPECT_EQ(rows[0]["FileID"], "1");
    EXPECT_EQ(rows[1]["added"], false);
    EXPECT_THAT(rows[1]["reason"].get<std::string>(), HasSubstr("cannot be found"));
}

TEST_F(FilesAdd, AFreshFileIDIsNeverOneThatIsTaken) {
    Output({"files", "add", kSans});
    std::string text = ReadBytes(UserPath());
    text.replace(text.find("FileID=\"1\""), 10, "FileID=\"2\"");
    WriteBytes(UserPath(), text);
    Output({"files", "add", kMono, kSansBold});
    const auto files = Saved("Files");
    EXPECT_EQ(ValueOf(files[1], "FileID"), "3");
    EXPECT_EQ(ValueOf(files[2], "FileID"), "4");
}

TEST_F(FilesAdd, ADocumentWithoutAListIsReported) {
    std::string text = ReadBytes(UserPath());
    text.replace(text.find("<Files/>"), 8, "");
    WriteBytes(UserPath(), text);
    const ToolRun run = Run({"files", "add", kSans});
    EXPECT_EQ(run.status, kMissing);
    EXPECT_THAT(run.errors, HasSubstr("no container Files"));
}

TEST_F(FilesAdd, TakesHundredsOfFilesInOneCommand) {
    std::vector<std::string> command{"files", "add", "--type", "2"};
    for (int i = 0; i < 300; ++i) {
        command.push_back(UserFile(std::to_string(i) + ".mac", "x"));
    }
    EXPECT_THAT(Output(command), HasSubstr("300 files added"));
    const auto files = Saved("Files");
    ASSERT_EQ(files.size(), 300u);
    EXPECT_EQ(ValueOf(files[299], "ID"), "299");
}
