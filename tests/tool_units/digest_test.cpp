// Digests and the list that keeps them.

#include "digests/digest.h"
#include "digests/digest_list.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

// The values are those of the standards' own examples.
TEST(Digest, OfKnownTexts) {
    EXPECT_EQ(Sha256Of(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(Sha256Of("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Md5Of(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(Md5Of("abc"), "900150983cd24fb0d6963f7d28e17f72");
}

TEST(Digest, OfAFileIsThatOfItsBytes) {
    const std::string bytes(3000000, 'a');
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "cordelctl-digest-test";
    std::ofstream(file, std::ios::binary) << bytes;
    EXPECT_EQ(Sha256OfFile(file), Sha256Of(bytes));
    std::filesystem::remove(file);
    EXPECT_THROW(Sha256OfFile(file), std::runtime_error);
}

TEST(DigestList, ComesBackAsItWasWritten) {
    const DigestList list{
        {"/fonts/a b.ttf", Sha256Of("a")}, {"C:\\fonts\\b\n.ttf", Sha256Of("b")}, {"\\c", Sha256Of("c")}};
    EXPECT_EQ(ReadDigestList(DigestListText(list)), list);
}

TEST(DigestList, IsOneThatTheUsualToolsCheck) {
    EXPECT_EQ(DigestListText({{"/a", Sha256Of("abc")}}),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad  /a\n");
}

TEST(DigestList, LeavesOutWhatIsNoLine) {
    const std::string line = Sha256Of("abc") + "  /a\n";
    EXPECT_EQ(ReadDigestList("hello\n" + line + Sha256Of("x") + "\n" + Sha256Of("y") + " /b\n").size(), 1u);
    EXPECT_TRUE(ReadDigestList("").empty());
}
