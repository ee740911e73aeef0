// doctor: which file is loaded and which is saved, and which documents it looks at.

#include "doctor_test.h"

#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

using ::testing::HasSubstr;

class DoctorPlaces : public DoctorTest {};

TEST_F(DoctorPlaces, SoundDocumentsGiveNoFindingsAndStatusZero) {
    const ToolRun run = Run({"--json", "doctor"});
    EXPECT_EQ(run.status, kDone);
    EXPECT_EQ(run.Json()["errors"], 0);
    EXPECT_EQ(run.Json()["warnings"], 0);
    EXPECT_EQ(run.Json()["notes"], 0);
}

TEST_F(DoctorPlaces, LooksAtTheMainDocumentAllPrintersAndAllLanguages) {
    WriteBytes(UserPath("Attic.xml"), Document(""));
    std::vector<std::string> names;
    const auto report = Run({"--json", "doctor"}).Json();
    for (const auto& document : report["documents"]) {
        names.push_back(document["document"]);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"main", "Atrium.xml", "Attic.xml", "Workshop.xml", "English", "German"}));
}

TEST_F(DoctorPlaces, SaysWhichFileIsLoadedAndSaved) {
    const auto main = MainFindings();
    EXPECT_EQ(main["loaded"], UserPath().string());
    EXPECT_EQ(main["saved"], UserPath().string());
    EXPECT_EQ(main["encoding"], "UTF-8");
}

TEST_F(DoctorPlaces, AMissingPerUserCopyIsAWarning) {
    std::filesystem::remove(UserPath());
    const auto main = MainFindings();
    EXPECT_EQ(main["loaded"], InstalledPath().string());
    EXPECT_TRUE(main["saved"].is_null());
    ExpectIn(main["findings"], "no-per-user-copy", "warning", "");
    EXPECT_EQ(Run({"doctor"}).status, kNo);
}

TEST_F(DoctorPlaces, AFolderInPlaceOfTheCopyIsAnError) {
    std::filesystem::remove(UserPath());
    std::filesystem::create_directory(UserPath());
    const auto main = MainFindings();
    EXPECT_EQ(main["loaded"], InstalledPath().string());
    ExpectIn(main["findings"], "copy-is-no-file", "error", "");
}

TEST_F(DoctorPlaces, ALockedCopyIsAnError) {
    const int file = ::open(UserPath().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    const auto main = MainFindings();
    ::close(file);
    EXPECT_EQ(main["loaded"], InstalledPath().string());
    ExpectIn(main["findings"], "copy-is-locked", "error", "");
}

TEST_F(DoctorPlaces, AReadOnlyCopyIsAnError) {
    std::filesystem::permissions(UserPath(), std::filesystem::perms::owner_read);
    ExpectIn(MainFindings()["findings"], "copy-is-read-only", "error", "");
}

TEST_F(DoctorPlaces, ADocumentThatIsNowhereIsAnError) {
    std::filesystem::remove(UserPath());
    std::filesystem::remove(InstalledPath());
    const auto main = MainFindings();
    EXPECT_TRUE(main["loaded"].is_null());
    ExpectIn(main["findings"], "absent", "error", "");
}

TEST_F(DoctorPlaces, ACopyWithoutAnInstalledDocumentIsANote) {
    std::filesystem::remove(InstalledPath());
    ExpectIn(MainFindings()["findings"], "not-installed", "note", "");
    EXPECT_EQ(Run({"doctor", "main"}).status, kDone);
}

TEST_F(DoctorPlaces, APathThatTheLibraryCannotHandleIsAnError) {
    const std::string name = std::string(200, 'n') + ".xml";
    WriteBytes(InstalledPath(name), Document(""));
    ExpectIn(Run({"--json", "doctor", name}).Json()["documents"][0]["findings"], "path-too-long", "error", "");
}

TEST_F(DoctorPlaces, WithoutAFolderForApplicationDataNothingIsOpened) {
    const auto output = m_folder / "out.json";
    const std::string line = "env -u HOME -u XDG_CONFIG_HOME '" + (InstallFolder() / "cordelctl").string() +
                             "' --json doctor main >'" + output.string() + "'";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), kNo);
    ExpectIn(nlohmann::json::parse(ReadBytes(output))["documents"][0]["findings"], "no-per-user-folder", "error", "");
}

TEST_F(DoctorPlaces, APrinterALanguageAndAFileMayBeNamed) {
    EXPECT_EQ(Run({"--json", "doctor", "Atrium", "German"}).Json()["documents"].size(), 2u);
    EXPECT_EQ(Run({"doctor", UserFile("x.xml", Document("<Jobs/>"))}).status, kDone);
}

TEST_F(DoctorPlaces, AnUnknownNameIsReportedWithTheKnownOnes) {
    const ToolRun run = Run({"doctor", "Nowhere"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr("main, Atrium.xml, Workshop.xml, English, German"));
}

TEST_F(DoctorPlaces, AFindingIsPrintedWithPlaceConsequenceAndMend) {
    const ToolRun run = Run({"doctor", UserFile("x.xml", Document("<Jobs><Item ID='1'/></Jobs>"))});
    EXPECT_EQ(run.status, kNo);
    EXPECT_THAT(run.output, HasSubstr("error in Jobs, item 1 (ID \"1\"), line 3, column 7: "));
    EXPECT_THAT(run.output, HasSubstr("For a host: "));
    EXPECT_THAT(run.output, HasSubstr("To mend it: "));
}
