// soak SECONDS [SEED]: drives random hosts over one per-user root: threads, forks, signals, closed descriptors, limits,
// hostile documents, files that change, several processes, kills and stops. After each step every document is whole, is
// one that somebody wrote, and lets nobody do more than at the start; no host has died of anything but a kill, nobody
// waits.

#include "access_list.h"
#include "soak_document.h"
#include "soak_host.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto kLongestWait = 20s; // far more than a host needs on a busy machine

struct Counts {
    int steps = 0;
    int hosts = 0;
    int kills = 0;
    int stops = 0;
    int inPlace = 0;
    long readings = 0;
};

/// What a document lets whom do.
struct Rights {
    mode_t mode = 0;
    uid_t owner = 0;
    std::string list;

    static Rights Of(const fs::path& file) {
        struct stat status {};
        ::stat(file.c_str(), &status);
        return {status.st_mode & 07777U, status.st_uid, FileAttribute(file, kAccessList)};
    }
    bool AreWiderThan(const Rights& other) const {
        const bool bListShrank = list == other.list || (list == "(none)" && (mode & 077U) == 0);
        return (mode & ~other.mode) != 0 || owner != other.owner || !bListShrank;
    }
};

class CSoak {
public:
    explicit CSoak(unsigned seed)
        : m_random(seed), m_program(fs::read_symlink("/proc/self/exe").parent_path()), m_root(m_program / "PerUser"),
          m_folder(m_root / "Marvane" / "Hollivet" / "Cordelbox" / "xml"), m_victim(m_root / "letter.txt") {
        fs::remove_all(m_root);
        fs::create_directories(m_folder);
        fs::create_directories(m_program / "Cordelbox" / "xml");
        fs::create_directories(m_program / "Cordelbox" / "language" / "English");
        WriteBytes(m_program / "Cordelbox" / "xml" / "Cordelbox.xml", "<Cordelbox/>");
        WriteBytes(m_program / "Cordelbox" / "language" / "English" / "Strings.xml", "<Strings/>");
        for (const fs::path& document : Documents()) {
            WriteBytes(m_program / "Cordelbox" / "xml" / document.filename(), StampedDocument(NewStamp(m_random, 0)));
            WriteBytes(document, StampedDocument(NewStamp(m_random, 0)));
        }
        WriteBytes(m_victim, "a letter");
        ::setenv("XDG_CONFIG_HOME", m_root.c_str(), 1);
    }

    /// False when something is wrong; that is printed.
    bool Step() {
        ++m_counts.steps;
        const bool bInPlace = ::geteuid() == 0 && OthersReach(m_folder) && OneIn(m_random, 5);
        m_counts.inPlace += bInPlace ? 1 : 0;
        ::chmod(m_folder.c_str(), 0755);
        Prepare(bInPlace);
        std::vector<Rights> before;
        for (const fs::path& document : Documents()) {
            before.push_back(Rights::Of(document));
        }
        ::chmod(m_folder.c_str(), bInPlace ? 0555 : 0755);
        bool bGood = RunHosts(bInPlace);
        ::chmod(m_folder.c_str(), 0755);
        const std::vector<fs::path> documents = Documents();
        for (std::size_t number = 0; number < documents.size(); ++number) {
            bGood = IsWhole(documents[number]) && bGood;
            bGood = (!Rights::Of(documents[number]).AreWiderThan(before[number]) ||
                     Wrong(documents[number].string() + " lets somebody do more than before")) &&
                    bGood;
        }
        return (ReadBytes(m_victim) == "a letter" || Wrong("a file that was linked to changed")) && bGood;
    }

    const Counts& Done() const noexcept { return m_counts; }

private:
    std::vector<fs::path> Documents() const {
        std::vector<fs::path> documents;
        for (int number = 0; number < kDocuments; ++number) {
            documents.push_back(m_folder / ("Soak-" + std::to_string(number) + ".xml"));
        }
        return documents;
    }

    static bool Wrong(const std::string& what) {
        std::printf("WRONG: %s\n", what.c_str());
        return false;
    }

    static bool IsWhole(const fs::path& document) {
        const std::string fault = FaultOf(ReadBytes(document));
        return fault.empty() || Wrong(document.string() + ": " + fault);
    }

    static bool OthersReach(fs::path folder) {
        for (; folder.has_relative_path(); folder = folder.parent_path()) {
            if ((fs::status(folder).permissions() & fs::perms::others_exec) == fs::perms::none) {
                return false;
            }
        }
        return true;
    }

    /// New rights for the documents, a hostile document, and names that stand in the way.
    void Prepare(bool bInPlace) {
        using enum AccessEntry::Tag;
        for (const auto& entry : fs::directory_iterator(m_folder)) {
            if (!entry.path().filename().string().starts_with("Soak-")) {
                fs::remove_all(entry.path());
            }
        }
        for (const fs::path& document : Documents()) {
            ::removexattr(document.c_str(), kAccessList);
            constexpr mode_t kModes[] = {0600, 0640, 0644, 0660};
            ::chmod(document.c_str(), bInPlace ? 0666 : kModes[Below(m_random, 4)]);
            if (!bInPlace && OneIn(m_random, 3)) {
                SetFileAttribute(
                    document, kAccessList,
                    AccessListBytes({{Owner, 6}, {User, 4, 4321}, {OwningGroup, 0}, {Mask, 4}, {Others, 0}}));
            }
        }
        WriteBytes(m_folder / "Hostile.xml", HostileDocument(m_random));
        ::chmod((m_folder / "Hostile.xml").c_str(), 0666);
        const fs::path planted = m_folder / (".cordelbox-" + std::to_string(m_random()) + ".tmp");
        switch (m_random() % 5) {
        case 0:
            fs::create_hard_link(m_victim, planted);
            break;
        case 1:
            fs::create_symlink(m_victim, planted);
            break;
        case 2:
            ::mkfifo(planted.c_str(), 0666);
            break;
        case 3:
            fs::create_directory(planted);
            break;
        default:
            WriteBytes(planted, "half a document");
        }
    }

    pid_t Start(std::chrono::milliseconds duration, bool bInPlace) {
        const unsigned seed = static_cast<unsigned>(m_random());
        const int writer = ++m_counts.hosts;
        const pid_t host = ::fork();
        if (host == 0) {
            ::setpgid(0, 0);
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            std::mt19937 random(seed);
            ::_exit(RunHost(random, writer, duration, bInPlace));
        }
        ::setpgid(host, host);
        return host;
    }

    /// What another program does to documents meanwhile.
    void Meddle(bool bInPlace) {
        WriteBytes(m_folder / "Hostile.xml", HostileDocument(m_random));
        if (bInPlace || !OneIn(m_random, 4)) {
            return;
        }
        const fs::path document = Documents()[Below(m_random, kDocuments)];
        const Rights rights = Rights::Of(document);
        const fs::path other = m_folder / "other program";
        WriteBytes(other, StampedDocument(NewStamp(m_random, 0)));
        ::chmod(other.c_str(), rights.mode);
        if (rights.list != "(none)") {
            SetFileAttribute(other, kAccessList, rights.list);
        }
        fs::rename(other, document);
    }

    /// Until all have ended, some of them by a kill. Readers see whole documents meanwhile, unless these are written in
    /// place.
    bool RunHosts(bool bInPlace) {
        const auto duration = std::chrono::milliseconds(20 + Below(m_random, 150));
        std::vector<pid_t> hosts;
        for (std::size_t count = 1 + Below(m_random, 3); count > 0; --count) {
            hosts.push_back(Start(duration, bInPlace));
        }
        // Written in place a document is torn when its writer is killed.
        std::optional<pid_t> stopped;
        std::optional<pid_t> killed;
        if (!bInPlace && OneIn(m_random, 2)) {
            ::usleep(static_cast<useconds_t>(Below(m_random, 60'000)));
            (OneIn(m_random, 2) ? killed : stopped) = hosts[0];
            ::kill(hosts[0], killed.has_value() ? SIGKILL : SIGSTOP);
            m_counts.kills += killed.has_value() ? 1 : 0;
            m_counts.stops += stopped.has_value() ? 1 : 0;
        }
        bool bGood = true;
        const auto latest = Clock::now() + duration + kLongestWait;
        for (const pid_t host : hosts) {
            bGood = (host == stopped || Await(host, host == killed, latest, bInPlace)) && bGood;
        }
        for (const pid_t host : hosts) {
            ::kill(-host, SIGKILL); // what it forked, and one that was stopped
        }
        if (stopped.has_value()) {
            ::waitpid(*stopped, nullptr, 0);
        }
        return bGood;
    }

    bool Await(pid_t host, bool bKilled, Clock::time_point latest, bool bInPlace) {
        bool bGood = true;
        int status = 0;
        while (::waitpid(host, &status, WNOHANG) == 0) {
            if (Clock::now() > latest) {
                ::kill(-host, SIGKILL);
                ::waitpid(host, &status, 0);
                return Wrong("a host waits");
            }
            if (!bInPlace) {
                bGood = IsWhole(Documents()[Below(m_random, kDocuments)]) && bGood;
                ++m_counts.readings;
            }
            Meddle(bInPlace);
            ::usleep(2000);
        }
        const bool bEnded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
        const bool bWasKilled = bKilled && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        if (WIFEXITED(status) && WEXITSTATUS(status) == kStreamTaken) {
            return Wrong("what a host printed to a closed stream went to a file");
        }
        return (bEnded || bWasKilled || Wrong("a host ended with status " + std::to_string(status))) && bGood;
    }

    std::mt19937 m_random;
    const fs::path m_program;
    const fs::path m_root;
    const fs::path m_folder;
    const fs::path m_victim; // somebody's file that others link to
    Counts m_counts;
};

} // namespace

int main(int count, char** arguments) {
    const auto seconds = std::chrono::seconds(count > 1 ? std::atoi(arguments[1]) : 5);
    const unsigned seed =
        count > 2 ? static_cast<unsigned>(std::strtoul(arguments[2], nullptr, 10)) : std::random_device()();
    std::printf("seed %u\n", seed);
    std::fflush(stdout);
    CSoak soak(seed);
    bool bGood = true;
    for (const auto end = Clock::now() + seconds; bGood && Clock::now() < end;) {
        bGood = soak.Step();
    }
    const Counts& done = soak.Done();
    std::printf("%d steps (%d in place), %d hosts, %d kills, %d stops, %ld readings: %s\n", done.steps, done.inPlace,
                done.hosts, done.kills, done.stops, done.readings, bGood ? "all whole" : "FAILED");
    return bGood ? 0 : 1;
}
