// A command is one transaction: all or nothing, one save, and nothing lost between two people.

#include "preloaded.h"
#include "tool_test.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

using ::testing::HasSubstr;

class Transactions : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    std::filesystem::path LockFile() const { return UserPath().parent_path() / ".cordelctl" / "Cordelbox.xml.lock"; }

    /// Starts the work in a process of its own.
    template <class Work>
    pid_t Start(Work work) const {
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(work());
        }
        return child;
    }

    /// What another program puts in the document's place while cordelctl flushes the new contents to the disk.
    std::filesystem::path Overtaking() const { return UserPath().parent_path() / "overtaking"; }

    ToolRun RunOvertaken(const std::vector<std::string>& arguments, const std::string& input = {}) const {
        ::setenv("OVERTAKEN", UserPath().c_str(), 1);
        ::setenv("OVERTAKING", Overtaking().c_str(), 1);
        return RunWith(OVERTAKER_PATH, arguments, input);
    }

    /// A run into which a library is loaded before its own.
    ToolRun RunWith(const char* library, const std::vector<std::string>& arguments,
                    const std::string& input = {}) const {
        const CPreloaded preloaded(library);
        return Run(arguments, input);
    }

    static int End(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
};

TEST_F(Transactions, FourProcessesLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kChanges = 25; // of each; TOOL_TEST_CHANGES says how many otherwise
    const char* const more = std::getenv("TOOL_TEST_CHANGES");
    const int changes = more != nullptr ? std::atoi(more) : kChanges;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(Start([&] {
            int kept = 0;
            for (int i = 0; i < changes; ++i) {
                const std::string line = "XDG_CONFIG_HOME='" + UserFolder().string() + "' '" +
                                         (InstallFolder() / "cordelctl").string() + "' --wait 60 job add " +
                                         std::to_string(process) + "-" + std::to_string(i) + " Job >/dev/null 2>&1";
                kept += std::system(line.c_str()) == 0 ? 1 : 0;
            }
            return kept == changes ? 0 : 1;
        }));
    }
    for (const pid_t child : children) {
        EXPECT_EQ(End(child), 0);
    }
    std::set<std::string> ids;
    for (const Record& job : Saved("Jobs")) {
        ids.insert(ValueOf(job, "ID"));
    }
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(kProcesses * changes));
}

TEST_F(Transactions, WhoHoldsTheLockIsSaid) {
    Output({"set", "Project", "Name", "x"}); // makes the file
    WriteBytes(LockFile(), "cordelctl files add (process 1)");
    const int file = ::open(LockFile().c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    const ToolRun run = Run({"set", "Project", "Name", "y", "--wait", "0"});
    ::close(file);
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("cordelctl files add (process 1) still works on the main document"));
    EXPECT_EQ(Output({"get", "Project", "Name"}), "x\n");
}

TEST_F(Transactions, AReaderDoesNotWaitForThem) {
    Output({"set", "Project", "Name", "x"});
    const int file = ::open(LockFile().c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    EXPECT_EQ(Output({"get", "Project", "Name"}), "x\n");
    ::close(file);
}

TEST_F(Transactions, WhatAnotherProgramWritesMeanwhileIsNotOverwritten) {
    // Another program writes the document again and again, whole each time.
    const std::string text = ReadBytes(UserPath());
    const auto stop = m_folder / "stop";
    const pid_t writer = Start([&] {
        for (int i = 0; !std::filesystem::exists(stop) && i < 100000; ++i) {
            std::string next = text;
            next.replace(next.find("Untitled"), 8, "Writer" + std::to_string(i));
            const auto fresh = UserPath().parent_path() / "fresh";
            WriteBytes(fresh, next);
            std::filesystem::rename(fresh, UserPath());
            ::usleep(300);
        }
        return 0;
    });
    for (int i = 0; i < 5; ++i) {
        const ToolRun run = Run({"job", "add", std::to_string(i), "Job"});
        EXPECT_TRUE(run.status == kDone || run.status == kNotKept) << run.status << run.errors;
        if (run.status == kNotKept) {
            EXPECT_THAT(run.errors, HasSubstr("another program changed the document"));
        }
    }
    WriteBytes(stop, "");
    EXPECT_EQ(End(writer), 0);
    ReadSavedDocument(ReadBytes(UserPath())); // whole
}

TEST_F(Transactions, WhatAnotherProgramWritesAtTheLastMomentIsNotOverwritten) {
    std::string other = ReadBytes(UserPath());
    other.replace(other.find("Untitled"), 8, "Another");
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"job", "add", "1", "Job"}, {"batch"}}) {
        WriteBytes(Overtaking(), other);
        const ToolRun run = RunOvertaken(command, "job add 2 Here\njob add 3 There --printer Atrium\n");
        EXPECT_EQ(run.status, kDone) << run.errors;
        EXPECT_FALSE(std::filesystem::exists(Overtaking()));
        EXPECT_EQ(Output({"get", "Project", "Name"}), "Another\n");
        EXPECT_EQ(Saved("Jobs").size(), 1u);
    }
    EXPECT_EQ(Output({"--printer", "Atrium", "get", "Jobs", "Name", "--where", "ID=3"}), "There\n"); // once
}

TEST_F(Transactions, WhatAnotherProgramWritesWhileACommandIsUndoneIsNotOverwritten) {
    Output({"job", "add", "1", "Job"});
    std::string other = ReadBytes(UserPath());
    other.replace(other.find("Untitled"), 8, "Another");
    WriteBytes(Overtaking(), other);
    const ToolRun run = RunOvertaken({"undo"});
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("nothing was undone: "));
    EXPECT_THAT(run.errors, HasSubstr("another program wrote the file meanwhile"));
    EXPECT_EQ(ReadBytes(UserPath()), other);
    EXPECT_EQ(Run({"redo"}).status, kMissing);
}

TEST_F(Transactions, WhatFailsTakesNothingFromWhatWasUndone) {
    Output({"job", "add", "1", "Job"});
    Output({"undo"});
    std::filesystem::permissions(UserPath().parent_path(), std::filesystem::perms::owner_all);
    const auto limited = "ulimit -f 0; trap '' XFSZ; XDG_CONFIG_HOME='" + UserFolder().string() + "' '" +
                         (InstallFolder() / "cordelctl").string() + "' job add 2 Job >/dev/null 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(limited.c_str())), kNotKept);
    Output({"redo"});
    EXPECT_EQ(Saved("Jobs").size(), 1u);
}

TEST_F(Transactions, ADryRunPrintsTheDifferenceAndChangesNoByte) {
    Output({"files", "add", kSans});
    const std::string list = (m_folder / "list.json").string();
    Output({"export", list});
    Output({"files", "edit", "1", "--local-path", kSansBold});
    Output({"job", "add", "8", "A job"});
    Output({"storage", "add", "8:", "--total-space", "1G"});
    Output({"partition", "add", "P", "--size", "1K"});
    Output({"set", "DefaultDisk", "Size", "9"});
    const std::string before = ReadBytes(UserPath());
    const auto stamp = std::filesystem::last_write_time(UserPath());
    const std::string report = std::string(SAMPLES_PATH) + "/storage-report.json";
    const std::vector<std::vector<std::string>> commands{
        {"set", "Project", "Name", "x"},
        {"add", "Project", "Name=z"},
        {"remove", "Project", "--where", "Name=Untitled"},
        {"clear", "Project"},
        {"copy", "property", "Project", "CurrentChosePartition", "Name"},
        {"storage", "report", report},
        {"storage", "add", "9:"},
        {"partition", "add", "New", "--size", "1K"},
        {"files", "add", kMono},
        {"files", "edit", "1", "--volume", "1:"},
        {"files", "tick", "--all"},
        {"files", "remove", "1"},
        {"files", "renew", "--all"},
        {"import", list},
        {"storage", "edit", "8:", "--label", "x"},
        {"storage", "remove", "8:"},
        {"partition", "edit", "P", "--size", "2K"},
        {"partition", "remove", "P"},
        {"partition", "copy"},
        {"job", "add", "1", "A job"},
        {"job", "edit", "8", "--copies", "2"},
        {"job", "remove", "8"},
        {"undo"},
        {"restore", "1"}};
    for (const auto& command : commands) {
        auto trial = command;
        trial.emplace_back("--dry-run");
        const ToolRun run = Run(trial);
        EXPECT_EQ(run.status, kDone) << ::testing::PrintToString(command) << run.errors;
        EXPECT_THAT(run.output, HasSubstr("nothing was changed; this would be:\n"))
            << ::testing::PrintToString(command);
        EXPECT_THAT(run.output, ::testing::ContainsRegex("\n[-+~] ")) << ::testing::PrintToString(command);
        EXPECT_EQ(ReadBytes(UserPath()), before) << ::testing::PrintToString(command);
    }
    EXPECT_EQ(std::filesystem::last_write_time(UserPath()), stamp);
    EXPECT_EQ(Run({"--json", "history"}).Json().size(), 6u);
}

TEST_F(Transactions, ABatchIsAllOrNothing) {
    EXPECT_EQ(Run({"batch"}, "job add 1 One\n# a comment\n\njob add 2 'Two words'\nset Project Name \"B\"\n").status,
              kDone);
    ASSERT_EQ(Saved("Jobs").size(), 2u);
    EXPECT_EQ(ValueOf(Saved("Jobs")[1], "Name"), "Two words");
    EXPECT_EQ(Run({"--json", "history"}).Json().size(), 1u); // one save
    const std::string before = ReadBytes(UserPath());
    const ToolRun run = Run({"batch"}, "job add 3 Three\njob add 1 Again\n");
    EXPECT_EQ(run.status, kRefused);
    EXPECT_THAT(run.errors, HasSubstr("line 2: a job with the ID 1 is recorded already; nothing was changed"));
    EXPECT_EQ(ReadBytes(UserPath()), before);
    EXPECT_EQ(Run({"batch"}, "undo\n").status, kUsage);
}

TEST_F(Transactions, ACommandOnManyFilesSavesOnce) {
    std::vector<std::string> command{"files", "add", "--type", "2"};
    for (int i = 0; i < 300; ++i) {
        command.push_back(UserFile(std::to_string(i) + ".mac", "x"));
    }
    Output(command);
    Output({"files", "tick", "--all"});
    Output({"files", "edit", "--all", "--volume", "1:"});
    EXPECT_EQ(Run({"--json", "history"}).Json().size(), 3u); // a state before each of the three saves
}

TEST_F(Transactions, AnInterruptionBeforeTheSaveChangesNothingAndSaysSo) {
    const std::string before = ReadBytes(UserPath());
    ::setenv("INTERRUPTED_WORK", "1", 1);
    const ToolRun run = RunWith(HURRIED_CLOCK_PATH, {"files", "add", "--type", "2", UserFile("a.mac", "x")});
    ::unsetenv("INTERRUPTED_WORK");
    EXPECT_EQ(run.status, kInterrupted);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "cordelctl: interrupted: nothing was changed\n");
    EXPECT_EQ(ReadBytes(UserPath()), before);
    EXPECT_EQ(Run({"--json", "history"}).Json().size(), 0u);
}

TEST_F(Transactions, AnInterruptionEndsTheWaitForInput) {
    const std::filesystem::path pipe = m_folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string started = "XDG_CONFIG_HOME='" + UserFolder().string() +
                                "' timeout --preserve-status --kill-after=20 --signal=INT 1 '" + ToolPath().string() +
                                "' ";
    const int import = std::system((started + "import '" + pipe.string() + "'").c_str());
    EXPECT_EQ(WEXITSTATUS(import), kInterrupted);
    const int batch = std::system(("sleep 3 | " + started + "batch").c_str());
    EXPECT_EQ(WEXITSTATUS(batch), kInterrupted);
}

TEST_F(Transactions, AnInterruptionDuringTheSaveChangesAllAndSaysSo) {
    ::setenv("INTERRUPTED_SAVE", "1", 1);
    const ToolRun run = RunWith(OVERTAKER_PATH, {"files", "add", "--type", "2", UserFile("a.mac", "x")});
    ::unsetenv("INTERRUPTED_SAVE");
    EXPECT_EQ(run.status, kInterrupted);
    EXPECT_THAT(run.errors, HasSubstr("interrupted, but the change was saved"));
    EXPECT_EQ(Saved("Files").size(), 1u);
    Output({"undo"});
}

TEST_F(Transactions, ALockedCopyIsNotReadAsTheInstalledOne) {
    Output({"set", "Project", "Name", "mine"});
    const int file = ::open(UserPath().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    const ToolRun run = Run({"get", "Project", "Name", "--wait", "0"});
    ::close(file);
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, HasSubstr("is held by another program"));
}

TEST_F(Transactions, WatchPrintsWhatOthersChange) {
    const auto output = m_folder / "watched";
    const pid_t watcher = Start([&] {
        const std::string line = "XDG_CONFIG_HOME='" + UserFolder().string() + "' timeout 20 '" +
                                 (InstallFolder() / "cordelctl").string() + "' watch --count 2 >'" + output.string() +
                                 "' 2>/dev/null";
        return std::system(line.c_str()) == 0 ? 0 : 1;
    });
    for (const char* const name : {"first", "second", "third", "fourth", "fifth"}) {
        ::usleep(300000);
        Output({"set", "Project", "Name", name}); // each replaces the file
        if (::waitpid(watcher, nullptr, WNOHANG) != 0) {
            break;
        }
    }
    EXPECT_THAT(ReadBytes(output), HasSubstr("is now \"second\""));
}

TEST_F(Transactions, OfTwoDocumentsThatIsEndedInTheMiddleIsToldOfAndCanBeTakenBack) {
    const auto folder = UserPath().parent_path();
    const std::filesystem::path documents[] = {UserPath(), folder / "Workshop.xml"};
    const std::string before[] = {ReadBytes(documents[0]), ReadBytes(documents[1])};
    int halves = 0;
    int status = -1;
    for (int flush = 1; status != kDone; ++flush) {
        ASSERT_LT(flush, 100);
        std::filesystem::remove_all(folder / ".cordelctl");
        std::ofstream(documents[0], std::ios::binary) << before[0];
        std::ofstream(documents[1], std::ios::binary) << before[1];
        ::setenv("ENDED_AT_FLUSH", std::to_string(flush).c_str(), 1);
        status = RunWith(OVERTAKER_PATH, {"batch"}, "job add 1 One\njob add 2 Two --printer Workshop\n").status;
        ::unsetenv("ENDED_AT_FLUSH");
        const bool changed[] = {ReadBytes(documents[0]) != before[0], ReadBytes(documents[1]) != before[1]};
        halves += changed[0] != changed[1] ? 1 : 0;
        const ToolRun undo = Run({"undo"});
        if (changed[0] != changed[1]) {
            EXPECT_THAT(undo.errors, HasSubstr("\"batch\" was ended before it was done"));
            EXPECT_THAT(undo.errors, HasSubstr("the main document has its changes, the printer document Workshop.xml "
                                               "has not; to take them back there: cordelctl undo"));
        } else {
            EXPECT_THAT(undo.errors, Not(HasSubstr("was ended")));
        }
        EXPECT_EQ(undo.status, changed[0] ? kDone : kMissing) << undo.errors;
        EXPECT_EQ(Run({"undo", "--printer", "Workshop"}).status, changed[1] ? kDone : kMissing) << flush;
        EXPECT_EQ(ReadBytes(documents[0]), before[0]) << flush;
        EXPECT_EQ(ReadBytes(documents[1]), before[1]) << flush;
    }
    EXPECT_GT(halves, 0);
}

TEST_F(Transactions, ThatAreEndedBeforeTheSaveLeaveTheUndoOfWhatWasBefore) {
    Output({"job", "add", "1", "One"});
    const std::string document = ReadBytes(UserPath());
    for (int flush = 1; flush <= 5; ++flush) {
        ::setenv("ENDED_AT_FLUSH", std::to_string(flush).c_str(), 1);
        RunWith(OVERTAKER_PATH, {"job", "add", "2", "Two"});
        ::unsetenv("ENDED_AT_FLUSH");
        ASSERT_EQ(ReadBytes(UserPath()), document) << flush;
    }
    Output({"undo"});
    EXPECT_THAT(Output({"job", "list"}), Not(HasSubstr("One")));
}

TEST_F(Transactions, ThatAreEndedBeforeTheSaveArePassedByWhereTheirStatesCannotBeRemoved) {
    Output({"job", "add", "1", "One"});
    for (const char* const flush : {"4", "5"}) {
        ::setenv("ENDED_AT_FLUSH", flush, 1);
        RunWith(OVERTAKER_PATH, {"job", "add", "2", "Two"});
        ::unsetenv("ENDED_AT_FLUSH");
    }
    ASSERT_GT(Run({"--json", "history"}).Json().size(), 1u);
    ::setenv("NOTHING_REMOVED", "1", 1);
    EXPECT_EQ(RunWith(OVERTAKER_PATH, {"undo"}).status, 0);
    ::unsetenv("NOTHING_REMOVED");
    EXPECT_THAT(Output({"job", "list"}), Not(HasSubstr("One")));
}

TEST_F(Transactions, AreUndoneAndDoneAgainInTheirOrderWhateverTheClockSays) {
    const char* const behind[] = {"0", "86400", "-86400", "4000000000", "3600"};
    std::vector<std::string> states{ReadBytes(UserPath())};
    const auto run = [&](std::size_t clock, const std::vector<std::string>& command) {
        ::setenv("CLOCK_BEHIND", behind[clock], 1);
        const ToolRun done = RunWith(HURRIED_CLOCK_PATH, command);
        ::unsetenv("CLOCK_BEHIND");
        EXPECT_EQ(done.status, kDone) << done.errors;
        return done.output;
    };
    for (std::size_t i = 0; i < std::size(behind); ++i) {
        run(i, {"set", "Project", "Name", behind[i]});
        states.push_back(ReadBytes(UserPath()));
    }
    EXPECT_THAT(run(0, {"history"}), HasSubstr("    4  1900-")) << "before 1970";
    for (std::size_t i = std::size(behind); i-- > 0;) {
        run(i, {"undo"});
        EXPECT_EQ(ReadBytes(UserPath()), states[i]);
    }
    for (std::size_t i = 0; i < std::size(behind); ++i) {
        run(i, {"redo"});
        EXPECT_EQ(ReadBytes(UserPath()), states[i + 1]);
    }
}

TEST_F(Transactions, ThatAreEndedRightAfterTheSaveAreUndoneOnRequest) {
    const std::string document = ReadBytes(UserPath());
    ::setenv("ENDED_AT_FLUSH", "6", 1);
    RunWith(OVERTAKER_PATH, {"job", "add", "1", "One"});
    ::unsetenv("ENDED_AT_FLUSH");
    ASSERT_NE(ReadBytes(UserPath()), document);
    const ToolRun undo = Run({"undo"});
    EXPECT_EQ(undo.status, kRefused);
    EXPECT_THAT(undo.errors, HasSubstr("was ended before it could note how it left the document"));
    Output({"undo", "--force"});
    EXPECT_EQ(ReadBytes(UserPath()), document);
}

TEST_F(Transactions, TakeNoNoteOfSomebodyElseForAReasonToTouchOtherFiles) {
    const auto folder = UserPath().parent_path();
    const auto letters = folder / "letters";
    std::filesystem::create_directories(letters / ".cordelctl");
    std::ofstream(letters / "letter.txt") << "a letter";
    std::ofstream(letters / ".cordelctl" / "letter.txt.unfinished") << "another";
    Output({"job", "add", "1", "One"});
    std::ofstream(folder / ".cordelctl" / "Cordelbox.xml.unfinished")
        << "now\nbatch\n1 0 0 0 0 0\n"
        << (letters / "letter.txt").string() << "\n\x1b[31m";
    const ToolRun run = Run({"job", "add", "2", "Two"});
    EXPECT_EQ(run.status, kDone);
    EXPECT_EQ(run.errors, "");
    EXPECT_FALSE(std::filesystem::exists(folder / ".cordelctl" / "Cordelbox.xml.unfinished"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(letters / ".cordelctl"), {}), 1) << "as it was";
}
