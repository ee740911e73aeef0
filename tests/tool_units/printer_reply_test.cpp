// Captured replies of printers, in the shapes that devices, networks and terminals give them.

#include "replies/printer_reply.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

/// Fields with bars between them, volumes with line ends.
std::string Volumes(const PrinterReply& reply) {
    std::string text;
    if (!reply.volumes) {
        return "none";
    }
    for (const ReplyVolume& volume : *reply.volumes) {
        text += (text.empty() ? "" : "\n") + volume.volume + "|" + volume.totalSpace + "|" + volume.freeSpace + "|" +
                volume.location + "|" + volume.label + "|" + volume.status;
    }
    return text;
}

std::string VolumesOf(const std::string& capture) { return Volumes(ReadPrinterReply(capture)); }

std::string EntriesOf(const std::string& capture) {
    std::string text;
    for (const ReplyEntry& entry : ReadPrinterReply(capture).entries) {
        text += (text.empty() ? "" : "\n") + entry.volume + " " + entry.path + " " +
                (entry.isFolder ? "folder" : std::to_string(entry.size));
    }
    return text;
}

/// The line and the reason for which a capture is refused.
std::pair<unsigned int, std::string> Refusal(const std::string& capture) {
    try {
        ReadPrinterReply(capture);
    } catch (const CReplyError& error) {
        return {error.Line(), error.what()};
    }
    return {0, "it was taken"};
}

const std::string kHeading = "VOLUME TOTAL SIZE FREE SPACE LOCATION LABEL STATUS";
const std::string kExit = "\x1B%-12345X";

} // namespace

struct Shape {
    const char* name;
    std::string capture;
    std::string volumes;
};

class ReplyShapes : public ::testing::TestWithParam<Shape> {};

TEST_P(ReplyShapes, TellsTheVolumes) { EXPECT_EQ(VolumesOf(GetParam().capture), GetParam().volumes); }

INSTANTIATE_TEST_SUITE_P(
    All, ReplyShapes,
    ::testing::Values(
        Shape{"Plain",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n" +
                  "0:     1755136    1718272    RAM      SYS   READ-WRITE\r\n\f",
              "0:|1755136|1718272|RAM|SYS|READ-WRITE"},
        Shape{"WithoutVolumes", "@PJL INFO FILESYS [1 TABLE]\r\n" + kHeading + "\r\n\f", ""},
        Shape{"WithoutFileSystem", "@PJL INFO FILESYS\r\n\"?\"\r\n\f", "none"},
        Shape{"BareQuestionMark", "@PJL INFO FILESYS\r\n?\r\n\f", "none"},
        Shape{"EmptyLocationAndLabel",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n" +
                  "0:     1755136    1718272                   READ-WRITE\r\n\f",
              "0:|1755136|1718272|||READ-WRITE"},
        Shape{"TabsForEmptyFields",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n" +
                  "0:     1755136    1718272    \t     \t  READ-WRITE\r\n\f",
              "0:|1755136|1718272|||READ-WRITE"},
        Shape{"TabForAnEmptyLabel", kHeading + "\r\n0: 1755136 1718272 RAM \t READ-WRITE\r\n\f",
              "0:|1755136|1718272|RAM||READ-WRITE"},
        Shape{"TabForAnEmptyLocation", kHeading + "\r\n0: 1755136 1718272 \t DISK1  READ-WRITE\r\n\f",
              "0:|1755136|1718272||DISK1|READ-WRITE"},
        Shape{"ControlsTypedOut",
              "@PJL INFO FILESYS [2 TABLE]\n" + kHeading + "<CR><LF>\n" +
                  "0:     1755136    1718272    <HT>     <HT>  READ-WRITE<CR><LF>\n<FF>\n",
              "0:|1755136|1718272|||READ-WRITE"},
        Shape{"QuestionMarks",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n" +
                  "0:     1755136    1718272    ?        ?     READ-WRITE\r\n\f",
              "0:|1755136|1718272|||READ-WRITE"},
        Shape{"QuestionMarksForSizes", kHeading + "\r\n" + "1:     ?          ?          SLOT     ?     EMPTY\r\n",
              "1:|||SLOT||EMPTY"},
        Shape{"EmptySizes", kHeading + "\r\n" + "1:                           SLOT           EMPTY\r\n",
              "1:|||SLOT||EMPTY"},
        Shape{"OnlyLineFeeds",
              "@PJL INFO FILESYS [2 TABLE]\n" + kHeading + "\n0:     100        50         A        B     C\n",
              "0:|100|50|A|B|C"},
        Shape{"OnlyCarriageReturns",
              "@PJL INFO FILESYS [2 TABLE]\r" + kHeading + "\r0:     100        50         A        B     C\r",
              "0:|100|50|A|B|C"},
        Shape{"BlankLinesBetween",
              "\r\n@PJL INFO FILESYS [2 TABLE]\r\n\r\n" + kHeading +
                  "\r\n\r\n0:     100        50         A        B     C\r\n\r\n\f",
              "0:|100|50|A|B|C"},
        Shape{"NoFormFeedAtTheEnd", "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C",
              "0:|100|50|A|B|C"},
        Shape{"CountOnALineOfItsOwn", "@PJL INFO FILESYS\r\n[2 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f",
              "0:|100|50|A|B|C"},
        Shape{"CountWithoutTheHeadings", "@PJL INFO FILESYS [1 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f",
              "0:|100|50|A|B|C"},
        Shape{"NoCountAtAll", "@PJL INFO FILESYS\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f", "0:|100|50|A|B|C"},
        Shape{"NoEchoAtAll", kHeading + "\n0: 100 50 A B C\n", "0:|100|50|A|B|C"},
        Shape{"ExitSequencesAround",
              kExit + "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f" + kExit,
              "0:|100|50|A|B|C"},
        Shape{"ExitSequenceTypedOut",
              "<ESC>%-12345X@PJL INFO FILESYS [2 TABLE]\n" + kHeading + "\n0: 100 50 A B C\n<ESC>%-12345X\n",
              "0:|100|50|A|B|C"},
        Shape{"TheInquiryEchoedFirst",
              kExit + "@PJL\r\n@PJL INFO FILESYS\r\n" + kExit + "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading +
                  "\r\n0: 100 50 A B C\r\n\f",
              "0:|100|50|A|B|C"},
        Shape{"OtherRepliesAround",
              "@PJL ECHO 11:33\r\n\f@PJL INFO ID\r\n\"A PRINTER\"\r\n\f@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading +
                  "\r\n0: 100 50 A B C\r\n\f@PJL INFO STATUS\r\nCODE=10001\r\nONLINE=TRUE\r\n\f",
              "0:|100|50|A|B|C"},
        Shape{"SeveralVolumes",
              "@PJL INFO FILESYS [4 TABLE]\r\n" + kHeading + "\r\n" +
                  "0:     1755136    1718272    RAM      ?     READ-WRITE\r\n" +
                  "1:     42949672   31138512   DISK     SYS   READ-ONLY\r\n" +
                  "2:     ?          ?          SLOT           EMPTY\r\n\f",
              "0:|1755136|1718272|RAM||READ-WRITE\n1:|42949672|31138512|DISK|SYS|READ-ONLY\n2:|||SLOT||EMPTY"},
        Shape{"SizesBeyond32Bits",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading +
                  "\r\n0: 4398046511104 4294967296 DISK SYS READ-WRITE\r\n\f",
              "0:|4398046511104|4294967296|DISK|SYS|READ-WRITE"},
        Shape{"SizesWiderThanTheirColumns",
              kHeading + "\r\n0:     107374182400   53687091200    DISK     ?     READ-WRITE\r\n",
              "0:|107374182400|53687091200|DISK||READ-WRITE"},
        Shape{"WideColumns",
              "VOLUME      TOTAL SIZE        FREE SPACE      LOCATION        LABEL           STATUS\r\n"
              "0:          1755136           1718272         HARD DISK       MY FONTS        READ-WRITE\r\n",
              "0:|1755136|1718272|HARD DISK|MY FONTS|READ-WRITE"},
        Shape{"WideColumnsWithEmptyLabel",
              "VOLUME      TOTAL SIZE        FREE SPACE      LOCATION        LABEL           STATUS\r\n"
              "0:          1755136           1718272         HARD DISK                       READ-WRITE\r\n",
              "0:|1755136|1718272|HARD DISK||READ-WRITE"},
        Shape{"WideColumnsWithEmptyLocation",
              "VOLUME      TOTAL SIZE        FREE SPACE      LOCATION        LABEL           STATUS\r\n"
              "0:          1755136           1718272                         MY FONTS        READ-WRITE\r\n",
              "0:|1755136|1718272||MY FONTS|READ-WRITE"},
        Shape{"SizesToTheRight",
              "VOLUME    TOTAL SIZE    FREE SPACE  LOCATION  LABEL  STATUS\r\n"
              "0:           1755136        718272  RAM       A B    READ-WRITE\r\n"
              "1:      107374182400             0  DISK             READ-ONLY\r\n",
              "0:|1755136|718272|RAM|A B|READ-WRITE\n1:|107374182400|0|DISK||READ-ONLY"},
        Shape{"OneBlankBetweenFullColumns",
              "VOLUME TOTAL SIZE FREE SPACE LOCATION LABEL STATUS\r\n"
              "0:     1755136000 1718272000 INTERNAL FONTS READ-WRITE\r\n",
              "0:|1755136000|1718272000|INTERNAL|FONTS|READ-WRITE"},
        Shape{"TabsBetweenFields",
              "VOLUME\tTOTAL SIZE\tFREE SPACE\tLOCATION\tLABEL\tSTATUS\r\n0:\t1755136\t1718272\tHARD DISK\tMY "
              "FONTS\tREAD-WRITE\r\n",
              "0:|1755136|1718272|HARD DISK|MY FONTS|READ-WRITE"},
        Shape{"TabsBetweenEmptyFields",
              "VOLUME\tTOTAL SIZE\tFREE SPACE\tLOCATION\tLABEL\tSTATUS\r\n0:\t1755136\t1718272\t\t\tREAD-WRITE\r\n",
              "0:|1755136|1718272|||READ-WRITE"},
        Shape{"TabsWithLastFieldsLeftOut",
              "VOLUME\tTOTAL SIZE\tFREE SPACE\tLOCATION\tLABEL\tSTATUS\r\n0:\t1755136\t1718272\tRAM\r\n",
              "0:|1755136|1718272|RAM||"},
        Shape{"TabsUnderHeadingsWithBlanks", kHeading + "\r\n0:\t1755136\t1718272\tRAM\tMY FONTS\tREAD-WRITE\r\n",
              "0:|1755136|1718272|RAM|MY FONTS|READ-WRITE"},
        Shape{"StatusLeftOut", kHeading + "\r\n0:     1755136    1718272    RAM      SYS\r\n",
              "0:|1755136|1718272|RAM|SYS|"},
        Shape{"StatusOfTwoWords", kHeading + "\r\n0:     1755136    1718272    RAM      SYS   NOT READY\r\n",
              "0:|1755136|1718272|RAM|SYS|NOT READY"},
        Shape{"Indented",
              "@PJL INFO FILESYS [2 TABLE]\r\n\t" + kHeading +
                  "\r\n\t0:     1755136    1718272    RAM      SYS   READ-WRITE\r\n\f",
              "0:|1755136|1718272|RAM|SYS|READ-WRITE"},
        Shape{
            "SmallLetters",
            "@pjl info filesys [2 table]\r\nVolume Total Size Free Space Location Label Status\r\n0: 100 50 A B C\r\n",
            "0:|100|50|A|B|C"},
        Shape{"SeveralInquiriesTheLastCounts",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f" +
                  "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n0: 100 40 A B C\r\n\f",
              "0:|100|40|A|B|C"},
        Shape{"AnEchoBehindTheTable",
              "@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f@PJL INFO FILESYS\r\n",
              "0:|100|50|A|B|C"},
        Shape{"LabelInRoman8", kHeading + "\r\n0:     100        50         RAM      B\xDAR\xDBX READ-WRITE\r\n",
              "0:|100|50|RAM|BÖRÜX|READ-WRITE"},
        Shape{"LabelInUtf8", kHeading + "\r\n0:     100        50         RAM      BÜROX READ-WRITE\r\n",
              "0:|100|50|RAM|BÜROX|READ-WRITE"}),
    [](const auto& shape) { return std::string(shape.param.name); });

TEST(PrinterReply, SaysWhenThePrinterHasNoFileSystem) {
    EXPECT_TRUE(ReadPrinterReply("@PJL INFO FILESYS\r\n\"?\"\r\n\f").hasNoFileSystem);
    EXPECT_FALSE(ReadPrinterReply(kHeading + "\r\n").hasNoFileSystem);
}

TEST(PrinterReply, TellsWhatFoldersHold) {
    EXPECT_EQ(
        EntriesOf("@PJL FSDIRLIST NAME=\"0:\\fonts\" ENTRY=1\r\n. TYPE=DIR\r\n.. TYPE=DIR\r\n"
                  "old TYPE=DIR\r\nSans Bold.ttf TYPE=FILE SIZE=705684\r\nbig.bin TYPE=FILE SIZE=5000000000\r\n\f"),
        "0: fonts/old folder\n0: fonts/Sans Bold.ttf 705684\n0: fonts/big.bin 5000000000");
}

TEST(PrinterReply, TellsWhatTheRootHolds) {
    EXPECT_EQ(
        EntriesOf(
            "@PJL FSDIRLIST NAME = \"1:\\\" ENTRY=1 COUNT=99\r\nlogs TYPE=DIR SIZE=4096\r\na TYPE=FILE SIZE=0\r\n"),
        "1: logs folder\n1: a 0");
}

TEST(PrinterReply, TakesPathsWithSlashes) {
    EXPECT_EQ(EntriesOf("@PJL FSDIRLIST NAME=\"0:/pcl/macros/\"\nm TYPE=FILE SIZE=1\n"), "0: pcl/macros/m 1");
}

TEST(PrinterReply, PutsPagesOfAListingTogether) {
    EXPECT_EQ(EntriesOf("@PJL FSDIRLIST NAME=\"0:\\f\" ENTRY=1\r\na TYPE=FILE SIZE=1\r\nb TYPE=FILE SIZE=2\r\n\f"
                        "@PJL FSDIRLIST NAME=\"0:\\f\" ENTRY=2\r\nb TYPE=FILE SIZE=3\r\nc TYPE=FILE SIZE=4\r\n\f"),
              "0: f/a 1\n0: f/b 3\n0: f/c 4");
}

TEST(PrinterReply, TellsASingleEntry) {
    EXPECT_EQ(
        EntriesOf("@PJL FSQUERY NAME=\"0:\\f\\a\" TYPE=FILE SIZE=12\r\n\f@PJL FSQUERY NAME=\"0:\\f\" TYPE=DIR\r\n\f"),
        "0: f/a 12\n0: f folder");
    EXPECT_EQ(EntriesOf("@PJL FSQUERY NAME=\"0:\\f\\a\"\r\n~TYPE=FILE SIZE=12\r\n\f"), "0: f/a 12");
}

TEST(PrinterReply, TellsWhatThePrinterCouldNotList) {
    const auto reply = ReadPrinterReply("@PJL FSDIRLIST NAME=\"0:\\gone\" FILEERROR=3\r\n\f"
                                        "@PJL FSDIRLIST NAME=\"9:\\a\"\r\n~FILEERROR=1\r\n\f"
                                        "@PJL FSDIRLIST NAME=\"0:\\b\"\r\n\"?\"\r\n\f");
    ASSERT_EQ(reply.unlisted.size(), 3u);
    EXPECT_EQ(reply.unlisted[0].path, "gone");
    EXPECT_EQ(reply.unlisted[0].reason, "it is not there");
    EXPECT_EQ(reply.unlisted[1].volume, "9:");
    EXPECT_EQ(reply.unlisted[1].reason, "the volume is not there");
    EXPECT_FALSE(reply.volumes.has_value());
}

TEST(PrinterReply, TellsVolumesAndListingsOfOneCapture) {
    const auto reply = ReadPrinterReply("@PJL INFO FILESYS [2 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f" +
                                        "@PJL FSDIRLIST NAME=\"0:\\\" ENTRY=1\r\na TYPE=FILE SIZE=50\r\n\f");
    EXPECT_EQ(reply.volumes->size(), 1u);
    EXPECT_EQ(reply.entries.size(), 1u);
}

struct Refused {
    const char* name;
    std::string capture;
    unsigned int line;
    const char* reason;
};

class RefusedReplies : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusedReplies, NamesTheLine) {
    const auto [line, reason] = Refusal(GetParam().capture);
    EXPECT_EQ(line, GetParam().line);
    EXPECT_THAT(reason, HasSubstr(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedReplies,
    ::testing::Values(
        Refused{"Nothing", "", 1, "neither a table of volumes nor a directory listing"},
        Refused{"OnlyEchoes", "@PJL ECHO a\r\n@PJL INFO ID\r\n\"X\"\r\n\f", 3, "neither"},
        Refused{"OtherText", "Dear Sirs,\n", 1, "belongs to no reply"},
        Refused{"TextBehindTheReply", kHeading + "\r\n0: 100 50 A B C\r\n\fhello\r\n", 3, "belongs to no reply"},
        Refused{"SizeThatIsNoNumber", "@PJL INFO FILESYS\r\n" + kHeading + "\r\n0: lots 50 A B C\r\n", 3, "TOTAL SIZE"},
        Refused{"SizeWithAUnit", kHeading + "\r\n0: 100M 50M A B C\r\n", 2, "no number of bytes"},
        Refused{"NegativeSize", kHeading + "\r\n0: 100 -1 A B C\r\n", 2, "FREE SPACE"},
        Refused{"SizeBeyond63Bits", kHeading + "\r\n0: 9223372036854775808 0 A B C\r\n", 2, "TOTAL SIZE"},
        Refused{"MoreFreeThanThereIs", kHeading + "\r\n0: 100 101 A B C\r\n", 2, "more is free"},
        Refused{"FieldsThatCannotBeToldApart", kHeading + "\r\n0: 100 50 HARD DISK MY FONTS READ-WRITE\r\n", 2,
                "cannot be told"},
        Refused{"CutTable", "@PJL INFO FILESYS [4 TABLE]\r\n" + kHeading + "\r\n0: 100 50 A B C\r\n\f", 3,
                "1 of the 3 volumes"},
        Refused{"TableWithoutHeadings", "@PJL INFO FILESYS [2 TABLE]\r\n0: 100 50 A B C\r\n", 2, "headings"},
        Refused{"AnnouncedTableThatIsMissing", "@PJL INFO FILESYS [2 TABLE]\r\n\f", 1, "missing"},
        Refused{"CountThatIsNone", "@PJL INFO FILESYS [many TABLE]\r\n", 1, "no part of a table"},
        Refused{"VolumeTwice", kHeading + "\r\n0: 100 50 A B C\r\n0: 100 50 A B C\r\n", 3, "twice"},
        Refused{"ListingOfNothing", "@PJL FSDIRLIST ENTRY=1\r\n", 1, "NAME"},
        Refused{"ListingWithoutVolume", "@PJL FSDIRLIST NAME=\"fonts\"\r\n", 1, "no volume"},
        Refused{"FileWithoutSize", "@PJL FSDIRLIST NAME=\"0:\\\"\r\na TYPE=FILE\r\n", 2, "size"},
        Refused{"FileWithOddSize", "@PJL FSDIRLIST NAME=\"0:\\\"\r\na TYPE=FILE SIZE=-4\r\n", 2, "size"},
        Refused{"EntryOfOddKind", "@PJL FSDIRLIST NAME=\"0:\\\"\r\na TYPE=PIPE SIZE=4\r\n", 2, "neither FILE nor DIR"},
        Refused{"EntryWithoutKind", "@PJL FSDIRLIST NAME=\"0:\\\"\r\na\r\n", 2, "no line of a directory listing"},
        Refused{"EntryOutsideItsFolder", "@PJL FSDIRLIST NAME=\"0:\\\"\r\n..\\a TYPE=FILE SIZE=4\r\n", 2, "no name"},
        Refused{"EntryBeforeAnyListing", "a TYPE=FILE SIZE=4\r\n", 1, "belongs to no reply"},
        Refused{"OtherEscapeSequence",
                kHeading + "\n0: 100 50 A B C\n\x1B"
                           "E",
                3, "escape sequence"},
        Refused{"ControlCharacter", kHeading + "\n0: 100 50 A \x01 C\n", 2, "control character (1)"},
        Refused{"ZeroByte", std::string("@PJL\n\0", 6), 2, "control character (0)"},
        Refused{"LongField", kHeading + "\n0: 100 50 A " + std::string(256, 'l') + " C\n", 2, "longer than 255"}),
    [](const auto& refused) { return std::string(refused.param.name); });

TEST(PrinterReply, CountsLinesInAnyKindOfLineEnd) {
    EXPECT_EQ(Refusal("@PJL\r\n\r\n@PJL\r@PJL\n\nX\n").first, 6u);
    EXPECT_EQ(Refusal("@PJL<CR><LF>\n@PJL<CR><LF>\nX").first, 3u);
}

TEST(PrinterReply, RefusesWhatIsLargerThanAnyReply) {
    EXPECT_THAT(Refusal(std::string((std::size_t{16} << 20) + 1, '\n')).second, HasSubstr("larger"));
}
