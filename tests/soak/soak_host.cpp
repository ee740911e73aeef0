#include "soak_host.h"

#include "cordelbox.h"
#include "soak_document.h"

#include <grp.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

void SetLimit(int which, rlim_t value) {
    rlimit limit{};
    ::getrlimit(static_cast<__rlimit_resource>(which), &limit);
    limit.rlim_cur = value;
    ::setrlimit(static_cast<__rlimit_resource>(which), &limit);
}

/// Signals that come all the time and interrupt what they can.
void StartSignals() {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval often{{0, 700}, {0, 700}};
    ::setitimer(ITIMER_REAL, &often, nullptr);
}

std::vector<int> CloseSomeStreams(std::mt19937& random) {
    std::vector<int> closed;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (OneIn(random, 2)) {
            ::close(stream);
            closed.push_back(stream);
        }
    }
    return closed;
}

/// A process that is born in the middle of whatever the others do, and keeps what it was born with.
void ForkAProcess() {
    if (::fork() == 0) {
        ::pause();
        ::_exit(0);
    }
}

AnsiString Text(const std::string& text) { return AnsiString(text.data(), text.size()); }

} // namespace

int RunHost(std::mt19937& random, int writer, std::chrono::milliseconds duration, bool bUnprivileged) {
    if (bUnprivileged &&
        (::setgroups(0, nullptr) != 0 || ::setresgid(kUnprivilegedUser, kUnprivilegedUser, kUnprivilegedUser) != 0 ||
         ::setresuid(kUnprivilegedUser, kUnprivilegedUser, kUnprivilegedUser) != 0)) {
        return 1;
    }
    const std::vector<int> closed = CloseSomeStreams(random);
    if (OneIn(random, 4)) {
        StartSignals();
    }
    if (OneIn(random, 4)) {
        SetLimit(RLIMIT_FSIZE, Below(random, 200'000));
    }
    if (OneIn(random, 6)) {
        SetLimit(RLIMIT_NOFILE, 3 + Below(random, 8));
    }

    sem_t semaphore;
    ::sem_init(&semaphore, 0, 1);
    PoolOwner owner{nullptr, nullptr, &semaphore};
    std::atomic<bool> bEnd = false;
    std::atomic<bool> bTaken = false;
    std::thread printer([&] {
        while (!bEnd) {
            for (const int stream : closed) {
                bTaken = bTaken || ::write(stream, "noise", 5) >= 0;
            }
            std::this_thread::yield();
        }
    });

    const auto end = Clock::now() + duration;
    while (Clock::now() < end) {
        GetXmlObj(&owner, "English");
        if (OneIn(random, 3)) {
            GetPrinterXmlObj("Hostile.xml");
            GetAttrValue("Stamp", "Text");
            WriteAttr("Stamp", "Text", "hostile");
            ReleaseXmlObj("Hostile.xml");
        }
        const std::string name = "Soak-" + std::to_string(Below(random, kDocuments)) + ".xml";
        if (GetPrinterXmlObj(name.c_str()) != nullptr) {
            std::vector<std::thread> threads;
            const std::size_t count = 1 + Below(random, 3);
            for (std::size_t thread = 0; thread < count; ++thread) {
                threads.emplace_back([seed = random(), writer] {
                    std::mt19937 own(seed);
                    for (std::size_t change = Below(own, 8); change > 0; --change) {
                        WriteAttr("Stamp", "Text", Text(NewStamp(own, writer)));
                        GetAttrValue1("Files", "Text", "row 25", "Text");
                    }
                });
            }
            if (OneIn(random, 5)) {
                ForkAProcess();
            }
            for (std::thread& thread : threads) {
                thread.join();
            }
            ReleaseXmlObj(name.c_str());
        }
        ReleaseAll();
    }
    bEnd = true;
    printer.join();
    return bTaken ? kStreamTaken : 0;
}
